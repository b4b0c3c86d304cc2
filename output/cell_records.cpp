#include "output/cell_records.h"

#include "output/borders.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/tree_walk.h"
#include "output/units.h"

#include <initializer_list>

namespace {

/// A value with the element that declares it.
struct Declared {
    const HtmlValue* value; ///< null when nobody does
    const HtmlTreeNode* element;
};

/// What the first of some elements, nulls apart, declares for a property.
Declared firstDeclared(ZVCSSProperty property, std::initializer_list<const HtmlTreeNode*> elements)
{
    for (const HtmlTreeNode* element : elements) {
        const CssDeclarationList* list = element != nullptr ? declarationsOf(*element) : nullptr;
        if (list == nullptr)
            continue;
        if (const HtmlValue* value = list->findValue(property))
            return {value, element};
    }
    return {nullptr, nullptr};
}

const HtmlValue* declaredFor(const HtmlTreeNode& node, ZVCSSProperty property)
{
    return firstDeclared(property, {&node}).value;
}

void setWidth(const CellPlace& place, TableCellRecord& record)
{
    const Declared width = firstDeclared(PROPERTY_WIDTH, {place.cell, place.column});
    // The width of a col is that of all its columns.
    bool isGiven = false;
    const std::int32_t shares = width.element != nullptr && width.element == place.column
        ? spanOfColumn(*place.column, isGiven)
        : 1;
    if (const auto* length = HtmlLengthValue::from(width.value)) {
        record.present |= CELL_WIDTH;
        record.width = twips(pixelsOf(*length) / shares);
    } else if (const auto* percent = HtmlPercentValue::from(width.value)) {
        record.present |= CELL_WIDTH;
        record.widthKind = CELL_WIDTH_PERCENT;
        record.width = static_cast<std::uint32_t>(truncateToInt32(percent->number) / shares);
    } else {
        record.widthKind = CELL_WIDTH_NONE;
    }
}

void setHeight(const CellPlace& place, TableCellRecord& record)
{
    const auto* height = HtmlLengthValue::from(declaredFor(*place.cell, PROPERTY_HEIGHT));
    record.heightRule = height != nullptr ? HEIGHT_EXACT : HEIGHT_AUTOMATIC;
    if (height == nullptr)
        return;
    record.present |= CELL_HEIGHT;
    record.height = twips(pixelsOf(*height));
}

struct PaddingSide {
    ZVCSSProperty property;
    std::uint32_t flag;
    std::uint32_t TableCellRecord::*field;
};

// The order counts: what is no length repeats the one before it.
constexpr PaddingSide kPaddingSides[] = {
    {PROPERTY_PADDING_TOP, CELL_PADDING_TOP, &TableCellRecord::paddingTop},
    {PROPERTY_PADDING_RIGHT, CELL_PADDING_RIGHT, &TableCellRecord::paddingRight},
    {PROPERTY_PADDING_LEFT, CELL_PADDING_LEFT, &TableCellRecord::paddingLeft},
    {PROPERTY_PADDING_BOTTOM, CELL_PADDING_BOTTOM, &TableCellRecord::paddingBottom},
};

// QUIRK(CellRecords.PaddingOfAnotherKindRepeatsTheLastLength): a padding in percent is that of the
// side before it.
void setPadding(const CellPlace& place, const OpenTable* table, TableCellRecord& record)
{
    constexpr std::int32_t kUsualPadding = 1;
    std::int32_t last
        = table != nullptr && table->hasCellPadding ? table->cellPadding : kUsualPadding;
    record.present |= CELL_PADDING;
    for (const PaddingSide& side : kPaddingSides)
        record.*side.field = twips(last);
    const CssDeclarationList* declarations = declarationsOf(*place.cell);
    if (declarations == nullptr)
        return;
    for (const PaddingSide& side : kPaddingSides) {
        const HtmlValue* value = declarations->findValue(side.property);
        if (value == nullptr)
            continue;
        if (const auto* length = HtmlLengthValue::from(value))
            last = pixelsOf(*length);
        record.*side.field = twips(last);
        if (last == 0)
            record.present &= ~side.flag;
    }
}

const HtmlColorValue* backgroundOf(const HtmlTreeNode* node)
{
    return node != nullptr ? HtmlColorValue::from(declaredFor(*node, PROPERTY_BACKGROUND_COLOR))
                           : nullptr;
}

void setBackground(const CellPlace& place, const OpenTable* table, TableCellRecord& record)
{
    const HtmlColorValue* color = backgroundOf(place.cell);
    if (color == nullptr)
        color = backgroundOf(place.row);
    if (color == nullptr)
        color = backgroundOf(place.column);
    if (color == nullptr && table != nullptr)
        color = table->background;
    if (color == nullptr)
        return;
    record.present |= CELL_SHADING;
    record.fill = FILL_SOLID;
    record.fillAgain = FILL_TABLE;
    record.color = color->color & kColorBits;
    record.colorAgain = record.color;
}

std::uint32_t horizontalAlignment(const CellPlace& place)
{
    const HtmlValue* value
        = firstDeclared(PROPERTY_TEXT_ALIGN, {place.cell, place.row, place.column}).value;
    if (value == nullptr)
        return elementOf(*place.cell) == ELEMENT_TH ? ALIGNMENT_CENTER : ALIGNMENT_LEFT;
    const auto* keyword = HtmlCssKeywordValue::from(value);
    switch (keyword != nullptr ? keyword->keyword : VALUE_NONE) {
    case VALUE_LEFT:
        return ALIGNMENT_LEFT;
    case VALUE_RIGHT:
        return ALIGNMENT_RIGHT;
    case VALUE_CENTER:
        return ALIGNMENT_CENTER;
    case VALUE_JUSTIFY:
        return ALIGNMENT_JUSTIFIED;
    default:
        return 0;
    }
}

std::uint32_t verticalAlignment(const CellPlace& place)
{
    const HtmlValue* value
        = firstDeclared(PROPERTY_VERTICAL_ALIGN, {place.cell, place.row, place.column}).value;
    if (value == nullptr)
        return CELL_MIDDLE;
    const auto* keyword = HtmlCssKeywordValue::from(value);
    switch (keyword != nullptr ? keyword->keyword : VALUE_NONE) {
    case VALUE_BOTTOM:
        return CELL_BOTTOM;
    case VALUE_MIDDLE:
        return CELL_MIDDLE;
    case VALUE_TOP:
        return CELL_TOP;
    default:
        return 0;
    }
}

void setAlignment(const CellPlace& place, TableCellRecord& record)
{
    record.alignment = horizontalAlignment(place) | verticalAlignment(place);
    if (record.alignment != 0)
        record.present |= CELL_ALIGNMENT;
}

/// Which sides of a cell the table draws, as CELL_BORDER_ flags.
std::uint32_t drawnSides(const CellPlace& place, const OpenTable& table)
{
    if (table.drawsAllSides)
        return CELL_BORDER_LEFT | CELL_BORDER_RIGHT | CELL_BORDER_TOP | CELL_BORDER_BOTTOM;
    std::uint32_t sides = 0;
    if (place.rowFrame == nullptr)
        return sides;
    const HTML_SOINFO& frame = *place.rowFrame;
    if (table.drawsColumns && frame.columnIndex != 0)
        sides |= CELL_BORDER_LEFT;
    if (table.drawsColumns && frame.columnIndex + 1 != frame.columnCount)
        sides |= CELL_BORDER_RIGHT;
    if (table.drawsRows && (frame.rowPlace & ROW_HAS_PREVIOUS) != 0)
        sides |= CELL_BORDER_TOP;
    if (table.drawsRows && (frame.rowPlace & ROW_HAS_NEXT) != 0)
        sides |= CELL_BORDER_BOTTOM;
    return sides;
}

struct Side {
    std::uint32_t flag;
    BorderSide TableCellRecord::*field;
    BorderSide OpenTable::*drawn;
    BorderSide BorderSides::*own;
    bool BorderSides::*isOwn;
};

constexpr Side kSides[] = {
    {CELL_BORDER_LEFT, &TableCellRecord::left, &OpenTable::left, &BorderSides::left,
        &BorderSides::hasLeft},
    {CELL_BORDER_RIGHT, &TableCellRecord::right, &OpenTable::right, &BorderSides::right,
        &BorderSides::hasRight},
    {CELL_BORDER_TOP, &TableCellRecord::top, &OpenTable::top, &BorderSides::top,
        &BorderSides::hasTop},
    {CELL_BORDER_BOTTOM, &TableCellRecord::bottom, &OpenTable::bottom, &BorderSides::bottom,
        &BorderSides::hasBottom},
};

void setBorders(const CellPlace& place, const OpenTable* table, TableCellRecord& record)
{
    const std::uint32_t drawn = table != nullptr ? drawnSides(place, *table) : 0;
    const CssDeclarationList* declarations = declarationsOf(*place.cell);
    const BorderSides own = declarations != nullptr ? borderSidesOf(*declarations) : BorderSides{};
    record.present |= drawn;
    for (const Side& side : kSides) {
        const BorderSide& ownSide = own.*side.own;
        if (own.*side.isOwn && static_cast<std::int32_t>(ownSide.width) > 0) {
            record.present |= side.flag;
            record.*side.field = ownSide;
        } else {
            record.*side.field = (drawn & side.flag) != 0 ? table->*side.drawn : kNoBorder;
        }
    }
}

} // namespace

TableCellRecord cellRecord(const CellPlace& place, const HtmlFilterContext& context)
{
    const OpenTable* table = innermostTable(context);
    TableCellRecord record{};
    record.size = sizeof record;
    setWidth(place, record);
    setHeight(place, record);
    setPadding(place, table, record);
    setBackground(place, table, record);
    setAlignment(place, record);
    setBorders(place, table, record);
    return record;
}
