#include "output/tables.h"

#include "filter/filter_internals.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/row_spans.h"
#include "output/style_delivery.h"
#include "output/table_records.h"

#include <utility>

namespace {

constexpr ZVCSSProperty kSideMargins[] = {PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT};

bool hasSideMargins(const CssDeclarationList* declarations)
{
    return declarations != nullptr && declarations->contains(PROPERTY_MARGIN_LEFT)
        && declarations->contains(PROPERTY_MARGIN_RIGHT);
}

/// Sees to it that a table has side margins. Its list may belong to other elements as well, so a
/// copy takes what is missing.
void declareSideMargins(HtmlTreeNode& node, HtmlFilterContext& context)
{
    auto& tag = static_cast<HtmlTagNodeData&>(*node.data);
    if (hasSideMargins(tag.declarations))
        return;
    CssDeclarationList& own = makeNodeDeclarations(context);
    if (tag.declarations != nullptr)
        own.copyExactlyFrom(*tag.declarations);
    for (const ZVCSSProperty margin : kSideMargins) {
        if (!own.contains(margin))
            own.set(margin, context.valueCache->lengthValue(0, UNITS_PIXELS),
                /*important=*/false, /*edgeMargin=*/false);
    }
    tag.declarations = &own;
}

/// Ends the paragraph in front of a table.
void closeParagraph(HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    else
        context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
}

/// What follows a table is aligned as what went before it, also when nothing was said there.
void restoreAlignment(HtmlFilterContext& context)
{
    const auto* link = context.deferredList.head;
    const std::uint32_t outer = link->next != nullptr ? link->next->value->alignment : 0;
    if (link->value->alignment != 0)
        SOSetProperty(PROPERTY_KIND_ALIGNMENT, outer, 0, 0, context);
}

} // namespace

TableEntry enterTable(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    closeParagraph(context);
    if (context.internals->openTables == 0 && context.tableBreakSent == 0) {
        context.tableBreakSent = 1;
        SOEmitBreak(BREAK_TABLE, 0, context);
    }
    if (context.statusFlags != 0)
        return TableEntry::Postponed;
    declareSideMargins(node, context);
    frame.savedListDepth = static_cast<std::uint16_t>(context.listDepth);
    frame.savedBlockquoteDepth = context.blockquoteDepth;
    freeSpansOfTable(node, context);
    ++context.tableDepth;
    if (context.flattenTables != 0)
        return TableEntry::Entered;
    const OpenTable& table = noteTable(node, context);
    const bool hasCaption = table.caption != nullptr;
    applyStyle(declarationsOf(node), frame, ELEMENT_TABLE, context);
    return hasCaption ? TableEntry::CaptionFirst : TableEntry::Entered;
}

void completeTable(FramePointer frame, HtmlTreeNode& node, HtmlFilterContext& context)
{
    if (context.flattenTables == 0)
        defineTable(node, *frame, context);
    pushFrame(std::move(frame), node, context);
}

void leaveTable(HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HTML_SOINFO& frame = *newestFrame(context);
    context.lastChar = 0;
    context.listDepth = static_cast<std::int16_t>(frame.savedListDepth);
    context.blockquoteDepth = frame.savedBlockquoteDepth;
    --context.tableDepth;
    context.paragraphFlags |= PARAGRAPH_BREAK_OWED;
    freeSpansOfTable(node, context);
    forgetTable(node, context);
    if (context.flattenTables == 0)
        SOFinishTable(context);
    restoreAlignment(context);
}

// QUIRK(Tables.OutermostTableEndsTheSlice): the slice ends here whatever the host answers.
void finishTable(HtmlFilterContext& context)
{
    if (context.internals->openTables != 0)
        return;
    context.tableBreakSent = 0;
    context.statusFlags |= STATUS_HOST_STOP;
    SOEmitBreak(BREAK_TABLE, 0, context);
}
