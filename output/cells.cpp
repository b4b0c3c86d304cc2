#include "output/cells.h"

#include "output/cell_records.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/row_spans.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"

namespace {

/// The frame of the row that a cell stands in; null when it stands in none.
HTML_SOINFO* rowFrameOf(const HtmlTreeNode& cell, const HtmlFilterContext& context)
{
    HTML_SOINFO* const newest = newestFrame(context);
    const bool isInRow = cell.parent != nullptr && elementOf(*cell.parent) == ELEMENT_TR;
    return isInRow && newest != nullptr && newest->element == ELEMENT_TR ? newest : nullptr;
}

/// Notes a cell over several columns or rows in its row, and in its own record that it is one.
void mergeCell(
    const CellSpan& span, const HTML_SOINFO& rowFrame, HtmlTrNodeData& row, TableCellRecord& record)
{
    if (span.columns < 2 && span.rows < 2)
        return;
    record.merge = (span.columns >= 2 ? std::uint32_t{MERGE_RIGHT} : 0)
        | (span.rows >= 2 ? std::uint32_t{MERGE_BELOW} : 0);
    record.present |= CELL_MERGE;
    recordSpan(row, rowFrame.columnIndex, span, record);
}

} // namespace

void enterCell(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
    context.walkState |= WALK_IN_CELL;
    applyStyle(declarationsOf(node), frame, elementOf(node), context);

    const bool isFlat = context.flattenTables != 0;
    HTML_SOINFO* const rowFrame = rowFrameOf(node, context);
    CellPlace place{&node, nullptr, nullptr, rowFrame};
    // QUIRK(Cells.ColIsLookedUpInFrontOfPendingSpans): a cell that stands behind columns covered
    // from above takes what the first of these has.
    if (!isFlat)
        place.column = columnNodeAt(rowFrame != nullptr ? rowFrame->columnIndex : 0, context);
    HtmlTrNodeData* row = nullptr;
    if (rowFrame != nullptr) {
        place.row = node.parent;
        row = static_cast<HtmlTrNodeData*>(node.parent->data);
        deliverPendingSpans(*row, *rowFrame, /*endOfRow=*/false, context);
    }
    context.lastChar = 0;

    TableCellRecord record{};
    if (!isFlat)
        record = cellRecord(place, context);
    if (row != nullptr) {
        mergeCell(spanOfCell(node), *rowFrame, *row, record);
        ++rowFrame->columnIndex;
    }
    frame.handle = isFlat ? 0 : SODefineTableCell(record, context);
}

void leaveCell(HtmlTreeNode&, HtmlFilterContext& context)
{
    const std::uint32_t handle = newestFrame(context)->handle;
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
    context.walkState &= ~std::uint32_t{WALK_IN_CELL};
    context.lastChar = 0;
    context.lastBlockMargin = 0;
    if (context.flattenTables != 0)
        emitParagraphBreak(context);
    else if (SOEmitBreak(BREAK_CELL, handle, context) == 1)
        context.statusFlags |= STATUS_HOST_STOP;
}
