#include "tree/tree_construction.h"

#include "filter/filter_internals.h"
#include "scanner/markup_scanner.h"
#include "support/exception.h"
#include "tree/character_rules.h"
#include "tree/insertion_modes.h"

#include <utility>

namespace {

constexpr std::uint32_t FAILURE_INVALID_MODE = 15;

/// The next token. A tag of unknown name becomes the null token, so that it leaves no trace.
void FetchToken(Token& token, HtmlFilterContext& context)
{
    token.character
        = static_cast<std::uint32_t>(Scan(token, context.tokenBuffer, kTokenLimit, context));
    const bool isTag = (token.flags & (TOKEN_START_TAG | TOKEN_END_TAG)) != 0;
    if (isTag && token.element == 0)
        token.flags = 0;
    // The scanner has to know whose end tag closes raw text.
    if ((token.flags & TOKEN_START_TAG) != 0)
        context.rawTextElement = token.element;
}

int DispatchToken(const Token* token, HtmlFilterContext& context)
{
    switch (static_cast<InsertionMode>(context.insertionMode)) {
    case InsertionMode::Initial:
        return HandleInitialInsertion(token, context);
    case InsertionMode::BeforeHtml:
        return HandleBeforeHtmlInsertion(token, context);
    case InsertionMode::BeforeHead:
        return HandleBeforeHeadInsertion(token, context);
    case InsertionMode::InHead:
        return HandleInHeadInsertion(token, context);
    case InsertionMode::InHeadNoscript:
        return HandleInHeadNoscriptInsertion(token, context);
    case InsertionMode::AfterHead:
        return HandleAfterHeadInsertion(token, context);
    case InsertionMode::InBody:
        return HandleInBodyInsertion(token, context);
    case InsertionMode::Text:
        return HandleTextInsertion(token, context);
    case InsertionMode::InTable:
        return HandleInTableInsertion(token, context);
    case InsertionMode::InTableText:
        return HandleInTableTextInsertion(token, context);
    case InsertionMode::InCaption:
        return HandleInCaptionInsertion(token, context);
    case InsertionMode::InColumnGroup:
        return HandleInColumnGroupInsertion(token, context);
    case InsertionMode::InTableBody:
        return HandleInTableBodyInsertion(token, context);
    case InsertionMode::InRow:
        return HandleInRowInsertion(token, context);
    case InsertionMode::InCell:
        return HandleInCellInsertion(token, context);
    case InsertionMode::InSelect:
        return HandleInSelectInsertion(token, context);
    case InsertionMode::InSelectInTable:
        return HandleInSelectInTableInsertion(token, context);
    case InsertionMode::AfterBody:
        return HandleAfterBodyInsertion(token, context);
    case InsertionMode::InFrameset:
        return HandleInFramesetInsertion(token, context);
    case InsertionMode::AfterFrameset:
        return HandleAfterFramesetInsertion(token, context);
    case InsertionMode::AfterAfterBody:
        return HandleAfterAfterBodyInsertion(token, context);
    case InsertionMode::AfterAfterFrameset:
        return HandleAfterAfterFramesetInsertion(token, context);
    }
    throw zorvan::Exception(
        FAILURE_INVALID_MODE, "InsertNode(), invalid insertion mode!", nullptr, nullptr, 0);
}

} // namespace

void InsertNode(HtmlFilterContext& context)
{
    if (context.statusFlags != 0)
        return;
    HtmlFilterInternals& internals = *context.internals;
    Token token = internals.retryToken;
    int answer = std::exchange(internals.hasRetryToken, false) ? ANSWER_AGAIN : ANSWER_USED;
    do {
        if (answer != ANSWER_AGAIN) {
            AppendTextRuns(context);
            FetchToken(token, context);
            if (context.statusFlags != 0)
                break;
        }
        answer = DispatchToken(&token, context);
    } while (context.statusFlags == 0);
    // A failure in the middle of a token's work must not cost the rest of it, should the host read
    // on.
    if (answer == ANSWER_AGAIN) {
        internals.retryToken = token;
        internals.hasRetryToken = true;
    }
    // What has been read stays, whatever ended the reading.
    FlushPendingText(context);
}

TokenKind ClassifyToken(const Token& token)
{
    if ((token.flags & TOKEN_CHARACTER) != 0)
        return IsSpaceCharacter(token.character) ? TokenKind::Space : TokenKind::Character;
    if ((token.flags & TOKEN_START_TAG) != 0)
        return TokenKind::StartTag;
    if ((token.flags & TOKEN_END_TAG) != 0)
        return TokenKind::EndTag;
    return TokenKind::Null;
}

Token BareToken(std::uint32_t elementId)
{
    Token token = {};
    token.element = elementId;
    return token;
}

Token SyntheticStartTag(std::uint32_t elementId)
{
    Token token = BareToken(elementId);
    token.flags = TOKEN_SYNTHETIC | TOKEN_START_TAG;
    return token;
}

Token SyntheticEndTag(std::uint32_t elementId)
{
    Token token = BareToken(elementId);
    token.flags = TOKEN_SYNTHETIC | TOKEN_END_TAG;
    return token;
}
