#include "tree/insertion_modes.h"

#include "support/html_names.h"
#include "tree/table_modes.h"
#include "tree/tree_construction.h"

namespace {

/// QUIRK(SelectModes.ResetWithoutASelect): the mode is found anew even when there is no select to
/// end.
int EndSelect(HtmlFilterContext& context)
{
    const bool isOpen = HasElementOnStack(ELEMENT_SELECT, context);
    if (isOpen)
        PopElementsUntil(ELEMENT_SELECT, context);
    else
        FlagParseError(context);
    ResetInsertionMode(context);
    return isOpen ? ANSWER_USED : ANSWER_IGNORED;
}

/// What ends a select from inside is then looked at again. When there was no select to end and the
/// mode stays all the same, the token counts as used: it would come back here for ever.
int EndSelectThenRetry(HtmlFilterContext& context)
{
    const std::uint32_t modeBefore = context.insertionMode;
    const Token endTag = SyntheticEndTag(ELEMENT_SELECT);
    const int answer = HandleInSelectInsertion(&endTag, context);
    const bool hasChanged = answer != ANSWER_IGNORED || context.insertionMode != modeBefore;
    return hasChanged ? ANSWER_AGAIN : ANSWER_USED;
}

/// A select in a select only ends the outer one.
int StartSelect(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    const Token endTag = SyntheticEndTag(token->element);
    HandleInSelectInsertion(&endTag, context);
    return ANSWER_USED;
}

int StartControl(HtmlFilterContext& context)
{
    FlagParseError(context);
    if (!HasElementOnStack(ELEMENT_SELECT, context))
        return ANSWER_IGNORED;
    return EndSelectThenRetry(context);
}

/// Takes one option down, when it is on top; parse error and ignored otherwise.
int EndOption(HtmlFilterContext& context)
{
    if (CurrentElementId(context) != ELEMENT_OPTION)
        return IgnoreWithParseError(context);
    PopElement(context);
    return ANSWER_USED;
}

int StartOption(const Token* token, HtmlFilterContext& context)
{
    if (CurrentElementId(context) == ELEMENT_OPTION)
        PopElement(context);
    InsertElement(token, context);
    return ANSWER_USED;
}

/// QUIRK(SelectModes.StartGroupEndsOneElement): behind an option the new group stands inside the
/// one that is open.
int StartOptionGroup(const Token* token, HtmlFilterContext& context)
{
    const std::uint32_t current = CurrentElementId(context);
    if (current == ELEMENT_OPTION || current == ELEMENT_OPTGROUP)
        PopElement(context);
    InsertElement(token, context);
    return ANSWER_USED;
}

int HandleInSelectStartTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_HTML:
        return HandleInBodyInsertion(token, context);

    case ELEMENT_OPTION:
        return StartOption(token, context);

    case ELEMENT_OPTGROUP:
        return StartOptionGroup(token, context);

    case ELEMENT_SELECT:
        return StartSelect(token, context);

    case ELEMENT_INPUT:
    case ELEMENT_KEYGEN:
    case ELEMENT_TEXTAREA:
        return StartControl(context);

    case ELEMENT_SCRIPT:
        return HandleInHeadInsertion(token, context);
    }
    return IgnoreWithParseError(context);
}

int HandleInSelectEndTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    // QUIRK(SelectModes.EndGroupEndsAnOptionOnly): the group itself stays open; the next group's
    // start tag or the end of the select closes it.
    case ELEMENT_OPTGROUP:
    case ELEMENT_OPTION:
        return EndOption(context);

    case ELEMENT_SELECT:
        return EndSelect(context);
    }
    return IgnoreWithParseError(context);
}

/// Whether a tag belongs to the table around a select.
bool IsTableTag(std::uint32_t elementId)
{
    switch (elementId) {
    case ELEMENT_CAPTION:
    case ELEMENT_TABLE:
    case ELEMENT_TBODY:
    case ELEMENT_TD:
    case ELEMENT_TFOOT:
    case ELEMENT_TH:
    case ELEMENT_THEAD:
    case ELEMENT_TR:
        return true;
    }
    return false;
}

} // namespace

int HandleInSelectInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
    case TokenKind::Character:
        if (token->character == 0)
            return IgnoreWithParseError(context);
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        return HandleInSelectStartTag(token, context);

    case TokenKind::EndTag:
        break;
    }
    return HandleInSelectEndTag(token, context);
}

int HandleInSelectInTableInsertion(const Token* token, HtmlFilterContext& context)
{
    if (!IsTableTag(token->element))
        return HandleInSelectInsertion(token, context);
    FlagParseError(context);
    // An end tag ends the select only when it ends something around it, too.
    if ((token->flags & TOKEN_END_TAG) != 0 && !HasElementInTableScope(token->element, context))
        return ANSWER_IGNORED;
    return EndSelectThenRetry(context);
}
