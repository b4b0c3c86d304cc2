#include "output/open_tables.h"

#include "filter/filter_internals.h"
#include "output/borders.h"
#include "output/node_values.h"
#include "output/tree_walk.h"
#include "output/units.h"
#include "support/process_heap.h"
#include "tree/enum_from_string.h"

#include <algorithm>
#include <memory>
#include <new>

namespace {

/// Makes room for one more, so that adding it can't fail. A list grows by half of what it holds, or
/// to its double as long as it does so by itself, never by equal steps: what is kept here may be as
/// many as the document likes.
template <typename T> void reserveOne(zorvan::ArrayList<T>& list)
{
    constexpr std::int32_t kFirstLength = 16;
    const std::int32_t count = list.getCount();
    if (count + 1 >= list.getArrayLength())
        list.ensureCapacity(std::max(kFirstLength, count + count / 2));
}

template <typename T> void shorten(zorvan::ArrayList<T>& list, std::int32_t count)
{
    while (list.getCount() > count)
        list.remove(list.getCount() - 1);
}

/// Takes back what was added to the columns unless it is kept.
class AddedColumns {
public:
    explicit AddedColumns(TableWalk& walk)
        : walk_(&walk)
        , count_(walk.columns.getCount())
    {
    }

    AddedColumns(const AddedColumns&) = delete;
    AddedColumns& operator=(const AddedColumns&) = delete;

    ~AddedColumns()
    {
        if (walk_ != nullptr)
            shorten(walk_->columns, count_);
    }

    std::int32_t firstColumn() const { return count_; }
    void keep() { walk_ = nullptr; }

private:
    TableWalk* walk_; // null: what was added stays
    std::int32_t count_; // columns before
};

/// Adds the cols of a group behind those before it. end: the column behind the last one so far.
void addColumns(const HtmlTreeNode& group, std::uint64_t& end, TableWalk& walk)
{
    for (HtmlTreeNode* col = group.firstChild; col != nullptr; col = col->nextSibling) {
        if (elementOf(*col) != ELEMENT_COL)
            continue;
        bool isGiven = false;
        end += static_cast<std::uint32_t>(spanOfColumn(*col, isGiven));
        reserveOne(walk.columns);
        walk.columns.add({col, end});
    }
}

/// Finds the caption and the columns of a table.
void readParts(OpenTable& table, TableWalk& walk)
{
    std::uint64_t end = 0;
    for (HtmlTreeNode* child = table.node->firstChild; child != nullptr;
         child = child->nextSibling) {
        const std::uint32_t element = elementOf(*child);
        if (element == ELEMENT_CAPTION && table.caption == nullptr)
            table.caption = child;
        else if (element == ELEMENT_COLGROUP)
            addColumns(*child, end, walk);
    }
}

std::uint32_t alignmentOf(const HtmlTreeNode& table)
{
    const auto* align = HtmlEnumValue::from(attributeOf(table, ATTRIBUTE_ALIGN));
    switch (align != nullptr ? align->enumerator : std::uint32_t{HORIZ_ALIGN_NONE}) {
    case HORIZ_ALIGN_CENTER:
        return ALIGNMENT_CENTER;
    case HORIZ_ALIGN_JUSTIFY:
        return ALIGNMENT_JUSTIFIED;
    case HORIZ_ALIGN_RIGHT:
        return ALIGNMENT_RIGHT;
    default:
        return 0;
    }
}

/// Reads between which cells the table draws. border: its border attribute; null without one.
void readRules(OpenTable& table, const HtmlLengthValue* border)
{
    const HtmlValue* rules = attributeOf(*table.node, ATTRIBUTE_RULES);
    if (rules == nullptr) {
        table.drawsAllSides = border != nullptr && pixelsOf(*border) > 0;
        return;
    }
    const auto* kind = HtmlEnumValue::from(rules);
    const std::uint32_t drawn = kind != nullptr ? kind->enumerator : TABLE_RULES_UNKNOWN;
    table.drawsColumns = drawn == TABLE_RULES_ALL || drawn == TABLE_RULES_COLS;
    table.drawsRows = drawn == TABLE_RULES_ALL || drawn == TABLE_RULES_ROWS;
}

BorderSide drawnSide(ZVCSSProperty colorProperty, const BorderSide& common, const OpenTable& table)
{
    BorderSide side = common;
    const CssDeclarationList* declarations = declarationsOf(*table.node);
    if (declarations == nullptr)
        return side;
    if (const auto* color = HtmlColorValue::from(declarations->findValue(colorProperty)))
        side.color = color->color & kColorBits;
    return side;
}

void readBorders(OpenTable& table)
{
    const auto* border = HtmlLengthValue::from(attributeOf(*table.node, ATTRIBUTE_BORDER));
    readRules(table, border);
    BorderSide common = kNoBorder;
    common.style = BORDER_STYLE_SOLID;
    if (border != nullptr)
        common.width = twips(pixelsOf(*border));
    if (const auto* color = HtmlColorValue::from(attributeOf(*table.node, ATTRIBUTE_BORDERCOLOR)))
        common.color = color->color & kColorBits;
    table.top = drawnSide(PROPERTY_BORDER_TOP_COLOR, common, table);
    table.bottom = drawnSide(PROPERTY_BORDER_BOTTOM_COLOR, common, table);
    table.left = drawnSide(PROPERTY_BORDER_LEFT_COLOR, common, table);
    table.right = drawnSide(PROPERTY_BORDER_RIGHT_COLOR, common, table);
}

void readStyle(OpenTable& table)
{
    table.alignment = alignmentOf(*table.node);
    if (const auto* padding
        = HtmlLengthValue::from(attributeOf(*table.node, ATTRIBUTE_CELLPADDING))) {
        table.hasCellPadding = true;
        table.cellPadding = pixelsOf(*padding);
    }
    if (const CssDeclarationList* declarations = declarationsOf(*table.node)) {
        table.background = HtmlColorValue::from(declarations->findValue(PROPERTY_BACKGROUND_COLOR));
    }
    readBorders(table);
}

void dropCaptions(TableWalk& walk)
{
    while (walk.captions.getCount() != 0)
        freeFrame(walk.captions.remove(walk.captions.getCount() - 1).tableFrame);
}

} // namespace

TableWalk::~TableWalk() { dropCaptions(*this); }

TableWalk& tableWalkOf(HtmlFilterContext& context)
{
    auto& walk = context.internals->tableWalk;
    if (walk == nullptr) {
        TableWalk* const made = zorvan::newObject<TableWalk>();
        if (made == nullptr)
            throw std::bad_alloc();
        walk = {made, [](TableWalk* old) { delete old; }};
    }
    return *walk;
}

OpenTable* innermostTable(const HtmlFilterContext& context)
{
    TableWalk* const walk = context.internals->tableWalk.get();
    return walk != nullptr && walk->tables.getCount() != 0 ? walk->tables.end() - 1 : nullptr;
}

OpenTable& noteTable(HtmlTreeNode& node, HtmlFilterContext& context)
{
    TableWalk& walk = tableWalkOf(context);
    AddedColumns added(walk);
    OpenTable table{};
    table.node = &node;
    table.firstColumn = added.firstColumn();
    reserveOne(walk.tables);
    readParts(table, walk);
    readStyle(table);
    walk.tables.add(table);
    added.keep();
    return *(walk.tables.end() - 1);
}

void forgetTable(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const OpenTable* const table = innermostTable(context);
    if (table == nullptr || table->node != &node)
        return;
    TableWalk& walk = *context.internals->tableWalk;
    shorten(walk.columns, table->firstColumn);
    shorten(walk.tables, walk.tables.getCount() - 1);
}

void reindexOpenTables(HtmlFilterContext& context)
{
    forgetAllTables(context);
    if (context.flattenTables != 0)
        return;
    // A table that is to be entered again is not open yet.
    HtmlTreeNode* node = context.walkNode;
    if (node != nullptr && context.walkResume != 0 && context.walkClimbing == 0)
        node = node->parent;
    zorvan::ArrayList<HtmlTreeNode*> nodes;
    for (; node != nullptr; node = node->parent) {
        if (elementOf(*node) == ELEMENT_TABLE)
            nodes.add(node);
    }
    for (std::int32_t i = nodes.getCount(); i > 0; --i)
        noteTable(*nodes.get(i - 1), context);
}

void forgetAllTables(HtmlFilterContext& context)
{
    TableWalk* const walk = context.internals->tableWalk.get();
    if (walk == nullptr)
        return;
    dropCaptions(*walk);
    walk->tables.clear();
    walk->columns.clear();
}

const HtmlTreeNode* columnNodeAt(std::uint32_t column, const HtmlFilterContext& context)
{
    const OpenTable* const table = innermostTable(context);
    if (table == nullptr)
        return nullptr;
    const TableWalk& walk = *context.internals->tableWalk;
    const TableColumn* const first = walk.columns.begin() + table->firstColumn;
    const TableColumn* const found = std::upper_bound(first, walk.columns.end(), column,
        [](std::uint64_t wanted, const TableColumn& candidate) { return wanted < candidate.end; });
    return found != walk.columns.end() ? found->node : nullptr;
}

std::int32_t spanOfColumn(const HtmlTreeNode& column, bool& isGiven)
{
    const auto* span = HtmlNumberValue::from(attributeOf(column, ATTRIBUTE_SPAN));
    isGiven = span != nullptr;
    return isGiven ? std::max(truncateToInt32(span->number), 1) : 1;
}
