#include "output/rows.h"

#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/row_spans.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"
#include "output/units.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kNoHandle = 0xFFFF'FFFF;

/// The next row in a direction; null when there is none.
HtmlTreeNode* rowBeside(const HtmlTreeNode& node, HtmlTreeNode* HtmlTreeNode::*direction)
{
    HtmlTreeNode* sibling = node.*direction;
    while (sibling != nullptr && elementOf(*sibling) != ELEMENT_TR)
        sibling = sibling->*direction;
    return sibling;
}

HtmlTrNodeData& rowDataOf(const HtmlTreeNode& node)
{
    return static_cast<HtmlTrNodeData&>(*node.data);
}

/// The columns of a row, those included into which cells of earlier rows reach.
std::uint32_t countColumns(const HtmlTreeNode& node)
{
    std::uint32_t count = countPendingSpans(rowDataOf(node));
    for (const HtmlTreeNode* cell = node.firstChild; cell != nullptr; cell = cell->nextSibling) {
        const std::uint32_t element = elementOf(*cell);
        if (element == ELEMENT_TD || element == ELEMENT_TH)
            count += static_cast<std::uint32_t>(std::max(spanOfCell(*cell).columns, 1));
    }
    return count;
}

TableRowRecord rowRecord(
    const HtmlTreeNode& node, std::uint32_t columnCount, const HtmlFilterContext& context)
{
    TableRowRecord record{};
    record.present = ROW_ALIGNMENT;
    record.word8 = 0xFFFF'FFFF;
    record.alignment = ALIGNMENT_LEFT;
    record.columnCount = columnCount;
    record.heightRule = HEIGHT_AUTOMATIC;
    const CssDeclarationList* declarations = declarationsOf(node);
    const auto* height = declarations != nullptr
        ? HtmlLengthValue::from(declarations->findValue(PROPERTY_HEIGHT))
        : nullptr;
    if (height != nullptr) {
        record.present |= ROW_HEIGHT;
        record.height = twips(pixelsOf(*height));
        record.heightRule = HEIGHT_EXACT;
    }
    const OpenTable* table = innermostTable(context);
    if (table == nullptr)
        return record;
    if (table->hasCellPadding) {
        record.present |= ROW_CELL_PADDING;
        std::fill(std::begin(record.cellPadding), std::end(record.cellPadding),
            static_cast<std::uint32_t>(table->cellPadding));
    }
    if (table->alignment == ALIGNMENT_CENTER || table->alignment == ALIGNMENT_RIGHT)
        record.alignment = table->alignment;
    return record;
}

void sendIndents(
    std::int32_t firstLine, std::int32_t right, std::int32_t left, HtmlFilterContext& context)
{
    SOSetProperty(PROPERTY_KIND_INDENT, INDENT_FIRST_LINE, 0, twips(firstLine), context);
    SOSetProperty(PROPERTY_KIND_INDENT, INDENT_RIGHT, 0, twips(right), context);
    SOSetProperty(PROPERTY_KIND_INDENT, INDENT_LEFT, 0, twips(left), context);
}

/// Frees what no row needs any more: the vector of the row before, and that of the last one.
void freeUsedSpans(const HtmlTreeNode& node, std::uint32_t place, HtmlFilterContext& context)
{
    const HtmlTreeNode* previous
        = (place & ROW_HAS_PREVIOUS) != 0 ? rowBeside(node, &HtmlTreeNode::prevSibling) : nullptr;
    if (previous != nullptr)
        freeRowSpans(rowDataOf(*previous), context);
    if ((place & ROW_HAS_NEXT) == 0)
        freeRowSpans(rowDataOf(node), context);
}

void emitRowBreak(std::uint32_t handle, HtmlFilterContext& context)
{
    if (context.flattenTables != 0) {
        context.lastChar = 0;
        emitParagraphBreak(context);
        return;
    }
    if (handle == kNoHandle)
        return;
    context.lastChar = 0;
    if (SOEmitBreak(BREAK_ROW, handle, context) == 1)
        context.statusFlags |= STATUS_HOST_STOP;
}

} // namespace

void enterRow(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_TR, context);
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
    context.lastChar = 0;
    frame.columnIndex = 0;

    const HtmlTreeNode* previous = rowBeside(node, &HtmlTreeNode::prevSibling);
    const bool isLast = rowBeside(node, &HtmlTreeNode::nextSibling) == nullptr;
    frame.rowPlace = (previous != nullptr ? std::uint32_t{ROW_HAS_PREVIOUS} : 0)
        | (isLast ? 0 : std::uint32_t{ROW_HAS_NEXT});
    updateRowSpans(
        rowDataOf(node), previous != nullptr ? &rowDataOf(*previous) : nullptr, isLast, context);
    if (context.flattenTables != 0)
        return;

    frame.columnCount = countColumns(node);
    frame.firstIndentPx = 0;
    frame.rightIndentPx = 0;
    frame.handle = kNoHandle;
    if (frame.columnCount != 0)
        frame.handle = SODefineTableRow(rowRecord(node, frame.columnCount, context), context);
    sendIndents(0, 0, 0, context);
}

void leaveRow(HtmlTreeNode& node, HtmlFilterContext& context)
{
    HTML_SOINFO& frame = *newestFrame(context);
    deliverPendingSpans(rowDataOf(node), frame, /*endOfRow=*/true, context);
    freeUsedSpans(node, frame.rowPlace, context);
    sendIndents(frame.firstIndentPx, frame.rightIndentPx, frame.leftIndentPx, context);
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
    emitRowBreak(frame.handle, context);
}
