#include "tree/insertion_modes.h"

#include "scanner/markup_scanner.h"
#include "support/html_names.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

namespace {

void ActAsStartHead(HtmlFilterContext& context)
{
    const Token startTag = SyntheticStartTag(ELEMENT_HEAD);
    HandleBeforeHeadInsertion(&startTag, context);
}

int EndHeadThenRetry(HtmlFilterContext& context)
{
    const Token endTag = SyntheticEndTag(ELEMENT_HEAD);
    HandleInHeadInsertion(&endTag, context);
    return ANSWER_AGAIN;
}

int EndNoscriptThenRetry(HtmlFilterContext& context)
{
    FlagParseError(context);
    const Token endTag = SyntheticEndTag(ELEMENT_NOSCRIPT);
    HandleInHeadNoscriptInsertion(&endTag, context);
    return ANSWER_AGAIN;
}

void ActAsStartBody(HtmlFilterContext& context)
{
    const Token startTag = SyntheticStartTag(ELEMENT_BODY);
    HandleAfterHeadInsertion(&startTag, context);
}

/// A head that an end tag asks for, which is then looked at again.
int MakeHeadThenRetry(HtmlFilterContext& context)
{
    const Token head = BareToken(ELEMENT_HEAD);
    context.headElement
        = CreateAppendPushElement(&head, /*applyAttributes=*/false, context, /*flushText=*/true);
    SetInsertionMode(InsertionMode::InHead, context);
    return ANSWER_AGAIN;
}

int LeaveHead(int answer, HtmlFilterContext& context)
{
    PopElement(context);
    SetInsertionMode(InsertionMode::AfterHead, context);
    return answer;
}

int LeaveNoscript(int answer, HtmlFilterContext& context)
{
    PopElement(context);
    SetInsertionMode(InsertionMode::InHead, context);
    return answer;
}

int HandleInHeadStartTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_HTML:
        return HandleInBodyInsertion(token, context);

    case ELEMENT_BASE:
    case ELEMENT_BASEFONT:
    case ELEMENT_BGSOUND:
    case ELEMENT_COMMAND:
    case ELEMENT_LINK:
    case ELEMENT_META:
        InsertElement(token, context);
        PopElement(context);
        return ANSWER_USED;

    case ELEMENT_TITLE:
        // QUIRK(HeadModes.TitleIsScannedAsMarkup): tags inside are tags, and lost.
        return InsertTextElement(token, context);

    case ELEMENT_NOSCRIPT:
        if (context.noscriptRawText == 1)
            return InsertRawTextElement(token, context);
        InsertElement(token, context);
        SetInsertionMode(InsertionMode::InHeadNoscript, context);
        return ANSWER_USED;

    case ELEMENT_NOFRAMES:
    case ELEMENT_STYLE:
        return InsertRawTextElement(token, context);

    case ELEMENT_SCRIPT:
        SkipScriptContent(token->element, context);
        return ANSWER_USED;

    case ELEMENT_HEAD:
        return IgnoreWithParseError(context);
    }
    return EndHeadThenRetry(context);
}

/// Has a closed head on the stack for as long as this lives.
class ReopenedHead {
public:
    explicit ReopenedHead(HtmlFilterContext& context)
        : context_(context)
    {
        context.openElements->push(context.headElement);
        context.currentNode = context.headElement;
    }

    ReopenedHead(const ReopenedHead&) = delete;
    ReopenedHead& operator=(const ReopenedHead&) = delete;

    ~ReopenedHead()
    {
        OpenElements& stack = *context_.openElements;
        stack.remove(context_.headElement);
        context_.currentNode = stack.getCount() == 0 ? nullptr : stack.last();
    }

private:
    HtmlFilterContext& context_;
};

/// What belongs into the head and comes behind it.
int InsertIntoClosedHead(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    const ReopenedHead head(context);
    return HandleInHeadInsertion(token, context);
}

int HandleAfterHeadStartTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_HTML:
        return HandleInBodyInsertion(token, context);

    case ELEMENT_BODY:
        InsertElement(token, context);
        context.framesetOk = 0;
        SetInsertionMode(InsertionMode::InBody, context);
        return ANSWER_USED;

    case ELEMENT_FRAMESET:
        InsertElement(token, context);
        SetInsertionMode(InsertionMode::InFrameset, context);
        return ANSWER_USED;

    case ELEMENT_BASE:
    case ELEMENT_BASEFONT:
    case ELEMENT_BGSOUND:
    case ELEMENT_LINK:
    case ELEMENT_META:
    case ELEMENT_NOFRAMES:
    case ELEMENT_SCRIPT:
    case ELEMENT_STYLE:
    case ELEMENT_TITLE:
        return InsertIntoClosedHead(token, context);

    case ELEMENT_HEAD:
        return IgnoreWithParseError(context);
    }
    ActAsStartBody(context);
    context.framesetOk = 1;
    return ANSWER_AGAIN;
}

} // namespace

void SkipScriptContent(std::uint32_t elementId, HtmlFilterContext& context)
{
    skipToEndTag(elementId, context);
}

int HandleBeforeHeadInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        return ANSWER_IGNORED;

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        if (token->element == ELEMENT_HTML)
            return HandleInBodyInsertion(token, context);
        if (token->element != ELEMENT_HEAD)
            break;
        context.headElement = InsertElement(token, context);
        SetInsertionMode(InsertionMode::InHead, context);
        return ANSWER_USED;

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_BODY:
        case ELEMENT_BR:
        case ELEMENT_HEAD:
        case ELEMENT_HTML:
            return MakeHeadThenRetry(context);
        }
        return IgnoreWithParseError(context);

    case TokenKind::Character:
        break;
    }
    ActAsStartHead(context);
    return ANSWER_AGAIN;
}

int HandleInHeadInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        return HandleInHeadStartTag(token, context);

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_HEAD:
            return LeaveHead(ANSWER_USED, context);

        case ELEMENT_BODY:
        case ELEMENT_BR:
        case ELEMENT_HTML:
            return LeaveHead(ANSWER_AGAIN, context);
        }
        return IgnoreWithParseError(context);

    case TokenKind::Character:
        break;
    }
    return EndHeadThenRetry(context);
}

int HandleInHeadNoscriptInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::Space:
        return HandleInHeadInsertion(token, context);

    case TokenKind::StartTag:
        switch (token->element) {
        case ELEMENT_HTML:
            return HandleInBodyInsertion(token, context);

        case ELEMENT_BASEFONT:
        case ELEMENT_BGSOUND:
        case ELEMENT_LINK:
        case ELEMENT_META:
        case ELEMENT_NOFRAMES:
        case ELEMENT_STYLE:
            return HandleInHeadInsertion(token, context);

        case ELEMENT_HEAD:
        case ELEMENT_NOSCRIPT:
            return IgnoreWithParseError(context);
        }
        break;

    case TokenKind::EndTag:
        if (token->element == ELEMENT_NOSCRIPT)
            return LeaveNoscript(ANSWER_USED, context);
        if (token->element == ELEMENT_BR)
            return LeaveNoscript(ANSWER_AGAIN, context);
        return IgnoreWithParseError(context);

    case TokenKind::Character:
        break;
    }
    return EndNoscriptThenRetry(context);
}

int HandleAfterHeadInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        return HandleAfterHeadStartTag(token, context);

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_BODY:
        case ELEMENT_BR:
        case ELEMENT_HTML:
            // QUIRK(HeadModes.BodyMadeByAnEndTagRulesOutAFrameset): framesetOk stays 0.
            ActAsStartBody(context);
            return ANSWER_AGAIN;
        }
        return IgnoreWithParseError(context);

    case TokenKind::Character:
        break;
    }
    ActAsStartBody(context);
    context.framesetOk = 1;
    return ANSWER_AGAIN;
}
