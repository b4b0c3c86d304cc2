#include "tree/insertion_modes.h"

#include "style/style_sheet.h"
#include "tree/html_tree.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

namespace {

/// Gives the text of a closed style element to the style sheet of its tree.
void ParseStyleElement(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlTreeNode* const child = node.firstChild;
    if (child == nullptr || elementOf(*child) != ELEMENT_NONE)
        return;
    const TreeState* const state = CurrentTreeState(context);
    if (state == nullptr || state->styleContext == nullptr)
        return;
    const auto& text = static_cast<const HtmlTextNodeData&>(*child->data);
    state->styleContext->parseStyleSheet(text.text, text.length);
}

/// Closes the element whose content was text and goes back to the mode that it was met in.
void LeaveTextMode(HtmlFilterContext& context)
{
    const bool isStyle = CurrentElementId(context) == ELEMENT_STYLE;
    const HtmlTreeNode* const closed = PopElement(context);
    context.insertionMode = context.originalInsertionMode;
    if (isStyle)
        ParseStyleElement(*closed, context);
}

/// Elements in whose content markup is text.
bool IsRawTextElement(std::uint32_t elementId)
{
    switch (elementId) {
    case ELEMENT_NOEMBED:
    case ELEMENT_NOFRAMES:
    case ELEMENT_NOSCRIPT:
    case ELEMENT_STYLE:
    case ELEMENT_XMP:
        return true;

    default:
        return false;
    }
}

/// Whether an end tag in text mode is that of an element outside, which has ended raw text because
/// it opens a line. It then has its effect on that element.
bool IsEndTagFromOutside(const Token& token, HtmlFilterContext& context)
{
    if (context.lenientRawText != 1 || context.rawTextMode != RAW_TEXT_NONE)
        return false;
    const std::uint32_t elementId = CurrentElementId(context);
    return token.element != elementId && IsRawTextElement(elementId);
}

int RetryInBody(HtmlFilterContext& context)
{
    FlagParseError(context);
    SetInsertionMode(InsertionMode::InBody, context);
    return ANSWER_AGAIN;
}

int EndFrameset(HtmlFilterContext& context)
{
    int answer = ANSWER_USED;
    if (CurrentElementId(context) == ELEMENT_HTML)
        answer = IgnoreWithParseError(context);
    else
        PopElement(context);
    // QUIRK(DocumentModes.SurplusFramesetEndTagMovesOn): also when nothing was closed.
    if (CurrentElementId(context) != ELEMENT_FRAMESET)
        SetInsertionMode(InsertionMode::AfterFrameset, context);
    return answer;
}

} // namespace

int IgnoreWithParseError(HtmlFilterContext& context)
{
    FlagParseError(context);
    return ANSWER_IGNORED;
}

int InsertTextElement(const Token* token, HtmlFilterContext& context)
{
    InsertElement(token, context);
    context.originalInsertionMode = context.insertionMode;
    SetInsertionMode(InsertionMode::Text, context);
    return ANSWER_USED;
}

int InsertRawTextElement(const Token* token, HtmlFilterContext& context)
{
    const int answer = InsertTextElement(token, context);
    context.rawTextMode = context.lenientRawText == 1 ? RAW_TEXT_LENIENT : RAW_TEXT_STRICT;
    return answer;
}

int HandleInitialInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Null:
    case TokenKind::Space:
        return ANSWER_IGNORED;

    default:
        break;
    }
    SetInsertionMode(InsertionMode::BeforeHtml, context);
    return ANSWER_AGAIN;
}

int HandleBeforeHtmlInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::Space:
        return ANSWER_IGNORED;

    case TokenKind::StartTag:
        if (token->element != ELEMENT_HTML)
            break;
        InsertElement(token, context);
        SetInsertionMode(InsertionMode::BeforeHead, context);
        return ANSWER_USED;

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_BODY:
        case ELEMENT_BR:
        case ELEMENT_HEAD:
        case ELEMENT_HTML:
            break;

        default:
            return IgnoreWithParseError(context);
        }
        break;

    case TokenKind::Character:
        break;
    }
    const Token html = BareToken(ELEMENT_HTML);
    CreateAppendPushElement(&html, /*applyAttributes=*/false, context, /*flushText=*/true);
    SetInsertionMode(InsertionMode::BeforeHead, context);
    return ANSWER_AGAIN;
}

int HandleTextInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
    case TokenKind::Character:
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::EndTag: {
        // QUIRK(DocumentModes.AnyEndTagClosesTheTitle): it need not be the element's own.
        const int answer = IsEndTagFromOutside(*token, context) ? ANSWER_AGAIN : ANSWER_USED;
        LeaveTextMode(context);
        return answer;
    }

    case TokenKind::Null:
    case TokenKind::StartTag:
        break;
    }
    // QUIRK(DocumentModes.TextareaLeavesItsRawTextModeBehind): its mode outlasts it, up to the next
    // raw text, and a lenient title keeps tags out for that long.
    if (context.lenientRawText != 1 || context.rawTextMode != RAW_TEXT_NONE)
        return ANSWER_USED;
    LeaveTextMode(context);
    return ANSWER_AGAIN;
}

int HandleAfterBodyInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        return HandleInBodyInsertion(token, context);

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        if (token->element == ELEMENT_HTML)
            return HandleInBodyInsertion(token, context);
        break;

    case TokenKind::EndTag:
        if (token->element != ELEMENT_HTML)
            break;
        FlushPendingText(context);
        SetInsertionMode(InsertionMode::AfterAfterBody, context);
        return ANSWER_USED;

    case TokenKind::Character:
        break;
    }
    return RetryInBody(context);
}

int HandleInFramesetInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::StartTag:
        switch (token->element) {
        case ELEMENT_HTML:
            return HandleInBodyInsertion(token, context);

        case ELEMENT_FRAMESET:
            InsertElement(token, context);
            return ANSWER_USED;

        case ELEMENT_FRAME:
            InsertElement(token, context);
            PopElement(context);
            return ANSWER_USED;

        case ELEMENT_NOFRAMES:
            return HandleInHeadInsertion(token, context);
        }
        break;

    case TokenKind::EndTag:
        if (token->element == ELEMENT_FRAMESET)
            return EndFrameset(context);
        break;

    case TokenKind::Null:
    case TokenKind::Character:
        break;
    }
    return IgnoreWithParseError(context);
}

int HandleAfterFramesetInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::StartTag:
        if (token->element == ELEMENT_HTML)
            return HandleInBodyInsertion(token, context);
        if (token->element == ELEMENT_NOFRAMES)
            return HandleInHeadInsertion(token, context);
        break;

    case TokenKind::EndTag:
        if (token->element != ELEMENT_HTML)
            break;
        SetInsertionMode(InsertionMode::AfterAfterFrameset, context);
        return ANSWER_USED;

    case TokenKind::Null:
    case TokenKind::Character:
        break;
    }
    return IgnoreWithParseError(context);
}

int HandleAfterAfterBodyInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Null:
    case TokenKind::Space:
        return HandleInBodyInsertion(token, context);

    case TokenKind::StartTag:
        if (token->element == ELEMENT_HTML)
            return HandleInBodyInsertion(token, context);
        break;

    case TokenKind::Character:
    case TokenKind::EndTag:
        break;
    }
    return RetryInBody(context);
}

int HandleAfterAfterFramesetInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Null:
    case TokenKind::Space:
        return HandleInBodyInsertion(token, context);

    case TokenKind::StartTag:
        if (token->element == ELEMENT_HTML)
            return HandleInBodyInsertion(token, context);
        if (token->element == ELEMENT_NOFRAMES)
            return HandleInHeadInsertion(token, context);
        break;

    case TokenKind::Character:
    case TokenKind::EndTag:
        break;
    }
    return IgnoreWithParseError(context);
}
