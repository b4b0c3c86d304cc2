#include "output/captions.h"
#include "output/cells.h"
#include "output/element_dispatch.h"
#include "output/host_calls.h"
#include "output/images.h"
#include "output/links.h"
#include "output/lists.h"
#include "output/node_values.h"
#include "output/paragraphs.h"
#include "output/properties.h"
#include "output/rows.h"
#include "output/style_delivery.h"
#include "output/tables.h"
#include "output/text.h"
#include "output/tree_walk.h"

namespace {

constexpr char16_t kClosingQuote = 0x201D;
constexpr std::uint32_t kDefaultTabs = 540;

/// What follows the action of an element's row, before and after its frame goes.
enum class Exit {
    Undo, ///< its style is undone
    UndoThenBreak, ///< the same, and then a paragraph is ended
    KeepStyle, ///< its style stays
};

using ExitAction = Exit (*)(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext&);

Exit undo(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext&) { return Exit::Undo; }

template <void (*Action)(HtmlTreeNode&, HtmlFilterContext&)>
Exit leaveThenUndo(HtmlTreeNode& node, const HTML_SOINFO&, HtmlFilterContext& context)
{
    Action(node, context);
    return Exit::Undo;
}

template <void (*Action)(const HTML_SOINFO&, HtmlFilterContext&)>
Exit closeThenUndo(HtmlTreeNode&, const HTML_SOINFO& frame, HtmlFilterContext& context)
{
    Action(frame, context);
    return Exit::Undo;
}

template <bool (*Action)(HtmlTreeNode&, HtmlFilterContext&)>
Exit leaveListThenUndo(HtmlTreeNode& node, const HTML_SOINFO&, HtmlFilterContext& context)
{
    return Action(node, context) ? Exit::UndoThenBreak : Exit::Undo;
}

void clearWalkState(std::uint32_t bits, HtmlFilterContext& context) { context.walkState &= ~bits; }

template <std::uint32_t Bit>
Exit clearThenUndo(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    clearWalkState(Bit, context);
    return Exit::Undo;
}

/// ins and del.
template <std::uint32_t Attribute>
Exit switchOffThenUndo(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    SOSetProperty(PROPERTY_KIND_CHARACTER, Attribute, 0, 0, context);
    return Exit::Undo;
}

Exit leaveBlock(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    if (context.lastChar != 0) {
        endParagraph(context);
        context.paragraphFlags |= PARAGRAPH_BREAK_OWED;
    }
    return Exit::Undo;
}

Exit leaveBlockquote(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    if (context.blockquoteDepth == 0)
        return Exit::Undo;
    --context.blockquoteDepth;
    if (!isParagraphOpen(context))
        return Exit::Undo;
    const bool hadText = context.lastChar != 0;
    endParagraph(context);
    return hadText ? Exit::UndoThenBreak : Exit::Undo;
}

Exit leaveCaptionRow(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    leaveCaption(context);
    return Exit::KeepStyle;
}

/// dd and dt.
Exit leaveDefinition(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    return Exit::Undo;
}

/// form and option.
Exit leaveControl(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    if (isParagraphOpen(context))
        endParagraph(context);
    return Exit::Undo;
}

Exit leaveRuleRow(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    leaveRule(context);
    return Exit::Undo;
}

Exit leaveHtml(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    clearWalkState(WALK_IN_HTML | WALK_IN_HEAD, context);
    return Exit::KeepStyle;
}

Exit leavePreformatted(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    SOSetProperty(PROPERTY_KIND_TAB_DISTANCE, kDefaultTabs, 0, 0, context);
    return Exit::Undo;
}

Exit leaveNoframes(HtmlTreeNode&, const HTML_SOINFO& frame, HtmlFilterContext& context)
{
    SOEndTagged(TAG_NOFRAMES, frame.handle, context);
    return Exit::Undo;
}

Exit leaveQuotation(HtmlTreeNode&, const HTML_SOINFO&, HtmlFilterContext& context)
{
    deliverChar(kClosingQuote, context);
    return Exit::Undo;
}

// Whatever has no row only has its style undone.
constexpr auto kExitRows = std::to_array<ElementRow<ExitAction>>({
    {ELEMENT_A, closeThenUndo<leaveAnchor>},
    {ELEMENT_ADDRESS, leaveBlock},
    {ELEMENT_APPLET, clearThenUndo<WALK_IN_APPLET>},
    {ELEMENT_BLOCKQUOTE, leaveBlockquote},
    {ELEMENT_BODY, clearThenUndo<WALK_IN_BODY>},
    {ELEMENT_CAPTION, leaveCaptionRow},
    {ELEMENT_CENTER, leaveBlock},
    {ELEMENT_DD, leaveDefinition},
    {ELEMENT_DEL, switchOffThenUndo<CHARACTER_DELETED>},
    {ELEMENT_DIR, leaveListThenUndo<leaveMenuList>},
    {ELEMENT_DIV, leaveBlock},
    {ELEMENT_DL, leaveListThenUndo<leaveList>},
    {ELEMENT_DT, leaveDefinition},
    {ELEMENT_FOOTER, leaveBlock},
    {ELEMENT_FORM, leaveControl},
    {ELEMENT_H1, leaveThenUndo<leaveHeading>},
    {ELEMENT_H2, leaveThenUndo<leaveHeading>},
    {ELEMENT_H3, leaveThenUndo<leaveHeading>},
    {ELEMENT_H4, leaveThenUndo<leaveHeading>},
    {ELEMENT_H5, leaveThenUndo<leaveHeading>},
    {ELEMENT_H6, leaveThenUndo<leaveHeading>},
    {ELEMENT_HEAD, clearThenUndo<WALK_IN_HEAD>},
    {ELEMENT_HEADER, leaveBlock},
    {ELEMENT_HR, leaveRuleRow},
    {ELEMENT_HTML, leaveHtml},
    {ELEMENT_INS, switchOffThenUndo<CHARACTER_INSERTED>},
    {ELEMENT_LISTING, leavePreformatted},
    {ELEMENT_MAP, clearThenUndo<WALK_IN_MAP>},
    {ELEMENT_MENU, leaveListThenUndo<leaveMenuList>},
    {ELEMENT_NOFRAMES, leaveNoframes},
    {ELEMENT_OL, leaveListThenUndo<leaveList>},
    {ELEMENT_OPTION, leaveControl},
    {ELEMENT_P, leaveThenUndo<leaveParagraph>},
    {ELEMENT_PLAINTEXT, leavePreformatted},
    {ELEMENT_PRE, leavePreformatted},
    {ELEMENT_Q, leaveQuotation},
    {ELEMENT_SELECT, clearThenUndo<WALK_IN_SELECT>},
    {ELEMENT_STYLE, clearThenUndo<WALK_IN_STYLE>},
    {ELEMENT_TABLE, leaveThenUndo<leaveTable>},
    {ELEMENT_TD, leaveThenUndo<leaveCell>},
    {ELEMENT_TH, leaveThenUndo<leaveCell>},
    {ELEMENT_TITLE, closeThenUndo<leaveTitle>},
    {ELEMENT_TR, leaveThenUndo<leaveRow>},
    {ELEMENT_UL, leaveListThenUndo<leaveList>},
    {ELEMENT_XMP, leavePreformatted},
});
static_assert(ascendByElement(kExitRows));

constexpr auto kExitActions = actionsByElement<ExitAction>(kExitRows, undo);

} // namespace

std::uint32_t leaveElement(HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HTML_SOINFO& frame = *newestFrame(context);
    const std::uint32_t element = frame.element;
    const Exit exit = kExitActions[element](node, frame, context);
    if (exit != Exit::KeepStyle && frame.undoList != nullptr)
        deliverStyle(*frame.undoList, element, /*restoring=*/1, context);
    popFrame(context);
    if (exit == Exit::UndoThenBreak)
        endParagraph(context);
    if (element == ELEMENT_TABLE)
        finishTable(context);
    return 0;
}
