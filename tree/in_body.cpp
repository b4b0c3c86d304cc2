#include "tree/insertion_modes.h"

#include "input/char_reader.h"
#include "support/abstract_string.h"
#include "support/html_names.h"
#include "tree/active_formatting.h"
#include "tree/character_rules.h"
#include "tree/element_attributes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

#include <array>

namespace {

constexpr std::uint16_t kLineFeed = 10;

/// Drops one line feed right behind a tag.
void SkipLineFeed(HtmlFilterContext& context)
{
    if (peekChar(1, context) == kLineFeed)
        readChar(context);
}

/// Inserts an element that has no content.
void InsertVoidElement(const Token* token, HtmlFilterContext& context)
{
    InsertElement(token, context);
    PopElement(context);
}

/// Whether an input is not to be seen by its tag, which is the one just scanned or synthetic.
bool IsHiddenInput(const Token& token, HtmlFilterContext& context)
{
    if ((token.flags & TOKEN_SYNTHETIC) != 0)
        return false;
    constexpr std::uint32_t kLimit = 32;
    std::array<char16_t, kLimit> type;
    if (GetRawAttributeValue(ATTRIBUTE_TYPE, type.data(), kLimit, context, nullptr) == 0)
        return false;
    return zorvan::AbstractString<char16_t>(type.data()).equalsIgnoreCase(u"hidden");
}

int InsertInput(const Token* token, HtmlFilterContext& context)
{
    ReconstructActiveFormatting(context);
    InsertVoidElement(token, context);
    if (!IsHiddenInput(*token, context))
        context.framesetOk = 0;
    return ANSWER_USED;
}

int InsertTextarea(const Token* token, HtmlFilterContext& context)
{
    InsertTextElement(token, context);
    SkipLineFeed(context);
    context.rawTextMode = RAW_TEXT_TEXTAREA;
    context.framesetOk = 0;
    return ANSWER_USED;
}

/// An image is an img.
int InsertImage(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    Token img = *token;
    img.element = ELEMENT_IMG;
    return HandleInBodyInsertion(&img, context);
}

int HandleBodyStartTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_HTML:
        // STAND-IN: a second html is a parse error and its attributes are dropped.
        FlagParseError(context);
        return ANSWER_USED;

    case ELEMENT_BASE:
    case ELEMENT_BASEFONT:
    case ELEMENT_BGSOUND:
    case ELEMENT_COMMAND:
    case ELEMENT_LINK:
    case ELEMENT_META:
    case ELEMENT_NOFRAMES:
    case ELEMENT_SCRIPT:
    case ELEMENT_STYLE:
    case ELEMENT_TITLE:
        return HandleInHeadInsertion(token, context);

    case ELEMENT_BODY:
    case ELEMENT_FRAMESET:
        // STAND-IN: neither merges attributes nor takes the place of the body.
        return IgnoreWithParseError(context);

    case ELEMENT_AREA:
    case ELEMENT_BR:
    case ELEMENT_EMBED:
    case ELEMENT_IMG:
    case ELEMENT_KEYGEN:
    case ELEMENT_WBR:
        ReconstructActiveFormatting(context);
        InsertVoidElement(token, context);
        context.framesetOk = 0;
        return ANSWER_USED;

    case ELEMENT_INPUT:
        return InsertInput(token, context);

    case ELEMENT_PARAM:
    case ELEMENT_SOURCE:
    case ELEMENT_TRACK:
        InsertVoidElement(token, context);
        return ANSWER_USED;

    case ELEMENT_HR:
        ClosePElement(context);
        InsertVoidElement(token, context);
        context.framesetOk = 0;
        return ANSWER_USED;

    case ELEMENT_IMAGE:
        return InsertImage(token, context);

    case ELEMENT_TEXTAREA:
        return InsertTextarea(token, context);

    case ELEMENT_XMP:
        ClosePElement(context);
        ReconstructActiveFormatting(context);
        context.framesetOk = 0;
        return InsertRawTextElement(token, context);

    case ELEMENT_NOEMBED:
        return InsertRawTextElement(token, context);

    case ELEMENT_NOSCRIPT:
        if (context.noscriptRawText == 1)
            return InsertRawTextElement(token, context);
        break;
    }
    // STAND-IN: every other element is put into the current one and stays open until its end tag.
    ReconstructActiveFormatting(context);
    InsertElement(token, context);
    return ANSWER_USED;
}

int EndBody(HtmlFilterContext& context)
{
    if (!HasElementOnStack(ELEMENT_BODY, context))
        return IgnoreWithParseError(context);
    FlushPendingText(context);
    SetInsertionMode(InsertionMode::AfterBody, context);
    return ANSWER_USED;
}

int HandleBodyEndTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_BODY:
        return EndBody(context);

    case ELEMENT_HTML:
        // Without a body the tag would come back here for ever, so it is ignored then.
        return EndBody(context) == ANSWER_IGNORED ? ANSWER_IGNORED : ANSWER_AGAIN;
    }
    // STAND-IN: every other end tag takes down its element where nothing special stands above it.
    return HandleAnyOtherEndTag(token, context);
}

} // namespace

int HandleInBodyInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
    case TokenKind::Character:
        return InsertBodyCharacter(token, context);

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        return HandleBodyStartTag(token, context);

    case TokenKind::EndTag:
        break;
    }
    return HandleBodyEndTag(token, context);
}

int HandleAnyOtherEndTag(const Token* token, HtmlFilterContext& context)
{
    const OpenElements& stack = *context.openElements;
    const std::int32_t position = stack.topmost(token->element);
    const std::int32_t special = stack.topmostSpecial();
    // A special element that the tag itself names is found before it stops anything.
    if (special > position)
        return IgnoreWithParseError(context);
    if (position < 0)
        return ANSWER_USED;
    const HtmlTreeNode* const node = stack.getAt(position);
    GenerateImpliedEndTags(token->element, context);
    if (CurrentElementId(context) != token->element)
        FlagParseError(context);
    while (PopElement(context) != node) { }
    return ANSWER_USED;
}
