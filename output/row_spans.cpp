#include "output/row_spans.h"

#include "containers/failures.h"
#include "output/borders.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/tree_walk.h"
#include "support/sp_vector.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::uint32_t FAILURE_NO_VECTOR = 15;
constexpr std::int32_t kMostColumns = 1'000;

/// The whole number of an attribute; 0 when it has none.
std::int32_t numberOf(const HtmlTreeNode& cell, ZVHTMLAttribute attribute)
{
    const auto* value = HtmlNumberValue::from(attributeOf(cell, attribute));
    return value != nullptr ? truncateToInt32(value->number) : 0;
}

SPVector* vectorOf(const HtmlTrNodeData& row)
{
    return row.spanInfo != nullptr ? row.spanInfo->hSpanInfo : nullptr;
}

/// The record of a column; null when the row has none.
SpanInfo* spanAt(const HtmlTrNodeData& row, std::uint32_t column)
{
    return static_cast<SpanInfo*>(SPVectorElementAt(vectorOf(row), column));
}

/// Lets a span reach into one more row. Answers whether it reaches beyond that one.
bool stepDown(SpanInfo& span, bool isLast)
{
    span.continuing = 0;
    if (span.rowsLeft > 1 && isLast)
        span.rowsLeft = 1;
    else if (span.rowsLeft > 0)
        --span.rowsLeft;
    if (span.rowsLeft == 0)
        span.columnsLeft = 0;
    return span.rowsLeft > 1;
}

/// The side of a covered cell at which it is one with its neighbor has no line.
void clearMergedSides(TableCellRecord& record)
{
    if ((record.merge & MERGE_LEFT) != 0)
        record.left = kNoBorder;
    if ((record.merge & MERGE_RIGHT) != 0)
        record.right = kNoBorder;
    if ((record.merge & MERGE_ABOVE) != 0)
        record.top = kNoBorder;
    if ((record.merge & MERGE_BELOW) != 0)
        record.bottom = kNoBorder;
}

TableCellRecord emptyCell()
{
    TableCellRecord record{};
    record.size = sizeof record;
    return record;
}

// QUIRK(RowSpans.CoveredCellsKeepTheFlagsOfTheirCell): a covered cell claims padding, width and
// height as its cell has them, and gives 0 for each.
TableCellRecord coveredCell(const SpanInfo& span, std::uint32_t merge)
{
    TableCellRecord record = emptyCell();
    record.present = span.cellFlags | CELL_MERGE;
    record.merge = merge;
    if ((span.cellFlags & CELL_SHADING) != 0) {
        record.fill = FILL_SOLID;
        record.fillAgain = FILL_TABLE;
        record.color = span.color;
        record.colorAgain = span.color;
    }
    record.alignment = span.alignment;
    record.left = span.left;
    record.right = span.right;
    record.top = span.top;
    record.bottom = span.bottom;
    clearMergedSides(record);
    return record;
}

/// Delivers a cell without content.
void deliverCovered(const TableCellRecord& record, HtmlFilterContext& context)
{
    context.lastChar = 0;
    if (context.flattenTables != 0) {
        emitParagraphBreak(context);
        return;
    }
    const std::uint32_t handle = SODefineTableCell(record, context);
    if (SOEmitBreak(BREAK_CELL, handle, context) == 1)
        context.statusFlags |= STATUS_HOST_STOP;
}

/// How the cells of a span over several columns are merged with those above and below.
std::uint32_t verticalMerge(const SpanInfo& span)
{
    if (span.rowsLeft == 0)
        return 0;
    if (span.rowsLeft == 1)
        return MERGE_ABOVE;
    return span.continuing != 0 ? MERGE_BELOW : MERGE_ABOVE | MERGE_BELOW;
}

/// Delivers the cells of a span over several columns.
void deliverColumns(const SpanInfo& span, HtmlFilterContext& context)
{
    const std::uint32_t vertical = verticalMerge(span);
    for (std::uint32_t i = 1; i <= span.columnsLeft; ++i) {
        std::uint32_t merge = vertical;
        if (i == span.columnsLeft)
            merge |= MERGE_LEFT;
        else if (i == 1 && span.first != 0)
            merge |= MERGE_RIGHT;
        else
            merge |= MERGE_LEFT | MERGE_RIGHT;
        deliverCovered(coveredCell(span, merge), context);
    }
}

/// Whether the columns from here on belong to a span over several of them. In the row of its own
/// cell the first column is no covered one.
bool coversColumns(const SpanInfo& span)
{
    if (span.columnsLeft == 0)
        return false;
    return span.first == 0 || (span.rowsLeft > 0 && span.continuing == 0);
}

/// Delivers what covers one column. Answers false when nothing does.
bool deliverColumn(const SpanInfo& span, bool endOfRow, HtmlFilterContext& context)
{
    if (span.rowsLeft == 1)
        deliverCovered(coveredCell(span, MERGE_ABOVE), context);
    else if (span.rowsLeft > 1 && span.continuing == 0)
        deliverCovered(coveredCell(span, MERGE_ABOVE | MERGE_BELOW), context);
    else if (endOfRow)
        deliverCovered(emptyCell(), context);
    else
        return false;
    return true;
}

/// The record that stands for the cell itself.
SpanInfo spanOfRecord(const TableCellRecord& record, CellSpan span)
{
    SpanInfo info{};
    info.continuing = 1;
    info.first = 1;
    info.rowsLeft = span.rows >= 2 ? static_cast<std::uint32_t>(span.rows) : 0;
    info.columnsLeft = span.columns >= 2 ? static_cast<std::uint32_t>(span.columns) : 0;
    info.cellFlags = record.present;
    info.alignment = record.alignment;
    info.color = record.color;
    info.left = record.left;
    info.right = record.right;
    info.top = record.top;
    info.bottom = record.bottom;
    return info;
}

/// Puts a record at a column, behind as many empty ones as it takes.
void storeSpan(SPVector* vector, std::uint32_t column, const SpanInfo& span)
{
    const SpanInfo empty{};
    bool grows = true;
    while (grows && SPVectorSize(vector) <= column)
        grows = SPVectorAddElement(vector, &empty, sizeof empty) == 0;
    void* const place = grows ? SPVectorElementAt(vector, column) : nullptr;
    if (place == nullptr)
        zorvan::throwContainerFailure(
            zorvan::FAILURE_INDEX, "pSpanInfo is NULL, not enough elements in hSpanInfo!");
    *static_cast<SpanInfo*>(place) = span;
}

void freeSpansOfGroup(const HtmlTreeNode& group, HtmlFilterContext& context)
{
    for (HtmlTreeNode* row = group.firstChild; row != nullptr; row = row->nextSibling) {
        if (elementOf(*row) == ELEMENT_TR)
            freeRowSpans(static_cast<HtmlTrNodeData&>(*row->data), context);
    }
}

} // namespace

CellSpan spanOfCell(const HtmlTreeNode& cell)
{
    const auto* columns = HtmlNumberValue::from(attributeOf(cell, ATTRIBUTE_COLSPAN));
    CellSpan span{};
    if (columns != nullptr)
        span.columns = truncateToInt32(std::min(columns->number, static_cast<float>(kMostColumns)));
    span.rows = numberOf(cell, ATTRIBUTE_ROWSPAN);
    return span;
}

void updateRowSpans(
    HtmlTrNodeData& row, const HtmlTrNodeData* previous, bool isLast, HtmlFilterContext& context)
{
    if (row.spanInfo == nullptr) {
        TableWalk& walk = tableWalkOf(context);
        row.ensureSpanInfo();
        ++walk.spanOwners;
    }
    HtmlSpanInfo& spans = *row.spanInfo;
    SPVectorRemoveAllElements(spans.hSpanInfo);
    spans.hasRowSpans = 0;
    if (previous == nullptr || previous->spanInfo == nullptr
        || previous->spanInfo->hasRowSpans == 0)
        return;
    for (std::uint32_t column = 0; const SpanInfo* above = spanAt(*previous, column); ++column) {
        SpanInfo span = *above;
        if (stepDown(span, isLast))
            spans.hasRowSpans = 1;
        SPVectorAddElement(spans.hSpanInfo, &span, sizeof span);
    }
}

std::uint32_t countPendingSpans(const HtmlTrNodeData& row)
{
    std::uint32_t count = 0;
    for (std::uint32_t column = 0; const SpanInfo* span = spanAt(row, column); ++column) {
        if (span->rowsLeft != 0)
            ++count;
    }
    return count;
}

void recordSpan(
    HtmlTrNodeData& row, std::uint32_t column, CellSpan span, const TableCellRecord& record)
{
    SPVector* const vector = vectorOf(row);
    if (vector == nullptr)
        zorvan::throwContainerFailure(FAILURE_NO_VECTOR, "Row node doesn't have a span vector!");
    SpanInfo info = spanOfRecord(record, span);
    storeSpan(vector, column, info);
    if (info.rowsLeft > 0)
        row.spanInfo->hasRowSpans = 1;
    info.first = 0;
    while (info.columnsLeft > 1) {
        --info.columnsLeft;
        storeSpan(vector, ++column, info);
    }
}

void deliverPendingSpans(
    HtmlTrNodeData& row, HTML_SOINFO& frame, bool endOfRow, HtmlFilterContext& context)
{
    while (const SpanInfo* pending = spanAt(row, frame.columnIndex)) {
        const SpanInfo span = *pending;
        if (coversColumns(span)) {
            frame.columnIndex += span.columnsLeft;
            deliverColumns(span, context);
            continue;
        }
        if (!deliverColumn(span, endOfRow, context))
            return;
        ++frame.columnIndex;
    }
}

void freeRowSpans(HtmlTrNodeData& row, HtmlFilterContext& context)
{
    HtmlSpanInfo* const spans = std::exchange(row.spanInfo, nullptr);
    if (spans == nullptr)
        return;
    SPVectorDestroy(spans->hSpanInfo);
    delete spans;
    --tableWalkOf(context).spanOwners;
}

void freeSpansOfTable(const HtmlTreeNode& table, HtmlFilterContext& context)
{
    // Nearly always nothing is left, and the rows needn't be looked at.
    if (tableWalkOf(context).spanOwners == 0)
        return;
    for (HtmlTreeNode* child = table.firstChild; child != nullptr; child = child->nextSibling) {
        const std::uint32_t element = elementOf(*child);
        if (element == ELEMENT_TBODY || element == ELEMENT_TFOOT || element == ELEMENT_THEAD)
            freeSpansOfGroup(*child, context);
    }
}
