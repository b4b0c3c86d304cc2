#include "tree/in_body.h"

#include "tree/active_formatting.h"
#include "tree/adoption_agency.h"
#include "tree/element_sets.h"
#include "tree/insertion_modes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

namespace {

/// Ends the nearest open element with an id and all above it, which is a parse error where more is
/// open than what may lack an end tag. spared: an element that needs one here, 0 none.
void EndElement(std::uint32_t elementId, std::uint32_t spared, HtmlFilterContext& context)
{
    GenerateImpliedEndTags(spared, context);
    if (CurrentElementId(context) != elementId)
        FlagParseError(context);
    PopElementsUntil(elementId, context);
}

int EndBody(HtmlFilterContext& context)
{
    if (!HasElementOnStack(ELEMENT_BODY, context))
        return IgnoreWithParseError(context);
    // What is open stays open, for there may be more to come.
    FlushPendingText(context);
    SetInsertionMode(InsertionMode::AfterBody, context);
    return ANSWER_USED;
}

int EndHtml(HtmlFilterContext& context)
{
    // Without a body the tag would come back here for ever, so it is ignored then.
    return EndBody(context) == ANSWER_IGNORED ? ANSWER_IGNORED : ANSWER_AGAIN;
}

int EndBlock(const Token* token, HtmlFilterContext& context)
{
    if (!HasElementInScope(token->element, context))
        return IgnoreWithParseError(context);
    EndElement(token->element, /*spared=*/ELEMENT_NONE, context);
    return ANSWER_USED;
}

int EndForm(HtmlFilterContext& context)
{
    HtmlTreeNode* const form = context.formElement;
    context.formElement = nullptr;
    if (form == nullptr || !HasElementInScope(ELEMENT_FORM, context))
        return IgnoreWithParseError(context);
    GenerateImpliedEndTags(/*exceptElementId=*/ELEMENT_NONE, context);
    if (context.currentNode != form)
        FlagParseError(context);
    // QUIRK(InBodyEndTags.TextAtTheEndOfAFormGoesBehindIt): the form is no longer open and nothing
    // is popped, so what is pending goes to the element around it, and what is open in it stays.
    RemoveFromStack(form, context);
    context.currentNode = CurrentStackNode(context);
    return ANSWER_USED;
}

int EndParagraph(HtmlFilterContext& context)
{
    if (!HasElementInButtonScope(ELEMENT_P, context)) {
        FlagParseError(context);
        ActAsBodyStartTag(ELEMENT_P, context);
        return ANSWER_AGAIN;
    }
    EndElement(ELEMENT_P, /*spared=*/ELEMENT_P, context);
    return ANSWER_USED;
}

int EndListItem(HtmlFilterContext& context)
{
    if (HasElementInListedScope(
            ELEMENT_LI, kListItemScopeStoppers.data(), kListItemScopeStoppers.size(), context))
        EndElement(ELEMENT_LI, /*spared=*/ELEMENT_LI, context);
    else
        FlagParseError(context);
    return ANSWER_USED;
}

int EndDefinitionItem(const Token* token, HtmlFilterContext& context)
{
    if (HasElementInScope(token->element, context))
        EndElement(token->element, /*spared=*/token->element, context);
    else
        FlagParseError(context);
    return ANSWER_USED;
}

int EndHeading(const Token* token, HtmlFilterContext& context)
{
    // QUIRK(InBodyEndTags.HeadingIsNotClosedByTheEndTagOfAnother)
    if (HasElementInScope(token->element, context))
        EndElement(token->element, /*spared=*/ELEMENT_NONE, context);
    else
        FlagParseError(context);
    return ANSWER_USED;
}

int EndEmbeddedContent(const Token* token, HtmlFilterContext& context)
{
    if (!HasElementInScope(token->element, context)) {
        FlagParseError(context);
        return ANSWER_USED;
    }
    EndElement(token->element, /*spared=*/ELEMENT_NONE, context);
    ClearFormattingToMarker(*context.activeFormatting);
    return ANSWER_USED;
}

} // namespace

int HandleBodyEndTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_BODY:
        return EndBody(context);

    case ELEMENT_HTML:
        return EndHtml(context);

    case ELEMENT_LISTING:
    case ELEMENT_PRE:
        context.preListingOpen = 0;
        return EndBlock(token, context);

    case ELEMENT_ADDRESS:
    case ELEMENT_ARTICLE:
    case ELEMENT_ASIDE:
    case ELEMENT_BLOCKQUOTE:
    case ELEMENT_BUTTON:
    case ELEMENT_CENTER:
    case ELEMENT_DETAILS:
    case ELEMENT_DIALOG:
    case ELEMENT_DIR:
    case ELEMENT_DIV:
    case ELEMENT_DL:
    case ELEMENT_FIELDSET:
    case ELEMENT_FIGCAPTION:
    case ELEMENT_FIGURE:
    case ELEMENT_FOOTER:
    case ELEMENT_HEADER:
    case ELEMENT_HGROUP:
    case ELEMENT_MENU:
    case ELEMENT_NAV:
    case ELEMENT_OL:
    case ELEMENT_SECTION:
    case ELEMENT_SUMMARY:
    case ELEMENT_UL:
        return EndBlock(token, context);

    case ELEMENT_FORM:
        return EndForm(context);

    case ELEMENT_P:
        return EndParagraph(context);

    case ELEMENT_LI:
        return EndListItem(context);

    case ELEMENT_DD:
    case ELEMENT_DT:
        return EndDefinitionItem(token, context);

    case ELEMENT_H1:
    case ELEMENT_H2:
    case ELEMENT_H3:
    case ELEMENT_H4:
    case ELEMENT_H5:
    case ELEMENT_H6:
        return EndHeading(token, context);

    case ELEMENT_A:
    case ELEMENT_B:
    case ELEMENT_BIG:
    case ELEMENT_CODE:
    case ELEMENT_EM:
    case ELEMENT_FONT:
    case ELEMENT_I:
    case ELEMENT_NOBR:
    case ELEMENT_S:
    case ELEMENT_SMALL:
    case ELEMENT_STRIKE:
    case ELEMENT_STRONG:
    case ELEMENT_TT:
    case ELEMENT_U:
        return HandleFormattingEndTag(token, context);

    case ELEMENT_APPLET:
    case ELEMENT_MARQUEE:
    case ELEMENT_OBJECT:
        return EndEmbeddedContent(token, context);

    case ELEMENT_BR:
        FlagParseError(context);
        return ActAsBodyStartTag(ELEMENT_BR, context);
    }
    return HandleAnyOtherEndTag(token, context);
}

int HandleAnyOtherEndTag(const Token* token, HtmlFilterContext& context)
{
    const OpenElements& stack = *context.openElements;
    const auto place = stack.topmost(token->element);
    // A special element that the tag itself names is found before it stops anything.
    if (stack.topmostSpecial() > place)
        return IgnoreWithParseError(context);
    if (place == OpenElements::kNowhere)
        return ANSWER_USED;
    const HtmlTreeNode* const node = stack.topmostNode(token->element);
    GenerateImpliedEndTags(token->element, context);
    if (CurrentElementId(context) != token->element)
        FlagParseError(context);
    while (PopElement(context) != node) { }
    return ANSWER_USED;
}
