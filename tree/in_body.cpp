#include "tree/in_body.h"

#include "input/char_reader.h"
#include "support/abstract_string.h"
#include "tree/active_formatting.h"
#include "tree/adoption_agency.h"
#include "tree/character_rules.h"
#include "tree/element_attributes.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"
#include "tree/insertion_modes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

#include <array>

namespace {

constexpr std::uint16_t kLineFeed = 10;

constexpr ElementSet kHeadings{
    ELEMENT_H1, ELEMENT_H2, ELEMENT_H3, ELEMENT_H4, ELEMENT_H5, ELEMENT_H6};

/// An item below such an element is not the one that a new item follows: it belongs to a list
/// further out.
constexpr bool IsItemBoundary(std::uint32_t elementId)
{
    return IsSpecialElement(elementId) && elementId != ELEMENT_ADDRESS && elementId != ELEMENT_DIV
        && elementId != ELEMENT_P;
}

constexpr std::size_t CountItemBoundaries()
{
    std::size_t count = 0;
    for (std::uint32_t elementId = ELEMENT_A; elementId <= ELEMENT_XMP; ++elementId)
        count += IsItemBoundary(elementId) ? 1 : 0;
    return count;
}

constexpr auto kItemBoundaries = [] {
    std::array<std::uint32_t, CountItemBoundaries()> boundaries{};
    std::size_t count = 0;
    for (std::uint32_t elementId = ELEMENT_A; elementId <= ELEMENT_XMP; ++elementId) {
        if (IsItemBoundary(elementId))
            boundaries[count++] = elementId;
    }
    return boundaries;
}();

/// Inserts an element that ends an open paragraph.
HtmlTreeNode* InsertBlockElement(const Token* token, HtmlFilterContext& context)
{
    ClosePElement(context);
    return InsertElement(token, context);
}

/// Inserts an element that stands in a line of text.
HtmlTreeNode* InsertInlineElement(const Token* token, HtmlFilterContext& context)
{
    ReconstructActiveFormatting(context);
    return InsertElement(token, context);
}

/// Inserts an element that has no content.
void InsertVoidElement(const Token* token, HtmlFilterContext& context)
{
    InsertElement(token, context);
    PopElement(context);
}

/// Drops one line feed right behind a tag; a carriage return stays.
void SkipLineFeed(HtmlFilterContext& context)
{
    if (peekChar(1, context) == kLineFeed)
        readChar(context);
}

int InsertHeading(const Token* token, HtmlFilterContext& context)
{
    ClosePElement(context);
    // Only the current element counts: a heading with something open in it takes in another.
    if (kHeadings.contains(CurrentElementId(context))) {
        FlagParseError(context);
        PopElement(context);
    }
    InsertElement(token, context);
    return ANSWER_USED;
}

int InsertPreformatted(const Token* token, HtmlFilterContext& context)
{
    InsertBlockElement(token, context);
    SkipLineFeed(context);
    context.preListingOpen = 1;
    context.framesetOk = 0;
    return ANSWER_USED;
}

int InsertForm(const Token* token, HtmlFilterContext& context)
{
    if (context.formElement != nullptr)
        return IgnoreWithParseError(context);
    context.formElement = InsertBlockElement(token, context);
    return ANSWER_USED;
}

/// Ends the item that a new one follows: the nearest with one of two names, unless it belongs to a
/// list further out.
void EndPreviousItem(ZVHTMLElement name, ZVHTMLElement otherName, HtmlFilterContext& context)
{
    context.framesetOk = 0;
    const OpenElements& stack = *context.openElements;
    if (stack.getCount() < 2)
        return;
    const ZVHTMLElement nearest = stack.topmost(name) > stack.topmost(otherName) ? name : otherName;
    const auto place = stack.topmost(nearest);
    if (place == OpenElements::kNowhere)
        return;
    // The one question answers for most items, which have nothing special open in them.
    if (stack.topmostSpecial() > place) {
        for (const std::uint32_t boundary : kItemBoundaries) {
            if (stack.topmost(boundary) > place)
                return;
        }
    }
    ActAsBodyEndTag(nearest, context);
}

int InsertListItem(const Token* token, HtmlFilterContext& context)
{
    // A header of a list is an item by another name.
    EndPreviousItem(ELEMENT_LI, ELEMENT_LH, context);
    InsertBlockElement(token, context);
    return ANSWER_USED;
}

int InsertDefinitionItem(const Token* token, HtmlFilterContext& context)
{
    EndPreviousItem(ELEMENT_DD, ELEMENT_DT, context);
    InsertBlockElement(token, context);
    return ANSWER_USED;
}

int InsertButton(const Token* token, HtmlFilterContext& context)
{
    if (HasElementInScope(ELEMENT_BUTTON, context)) {
        FlagParseError(context);
        ActAsBodyEndTag(ELEMENT_BUTTON, context);
        return ANSWER_AGAIN;
    }
    InsertInlineElement(token, context);
    context.framesetOk = 0;
    return ANSWER_USED;
}

int InsertFormattingElement(const Token* token, HtmlFilterContext& context)
{
    PushFormattingElement(*context.activeFormatting, InsertInlineElement(token, context));
    return ANSWER_USED;
}

int InsertNobr(const Token* token, HtmlFilterContext& context)
{
    ReconstructActiveFormatting(context);
    if (HasElementInScope(ELEMENT_NOBR, context)) {
        FlagParseError(context);
        ActAsBodyEndTag(ELEMENT_NOBR, context);
    }
    return InsertFormattingElement(token, context);
}

/// Inserts an element that keeps formatting from outside out.
int InsertEmbeddedContent(const Token* token, HtmlFilterContext& context)
{
    InsertInlineElement(token, context);
    InsertFormattingMarker(*context.activeFormatting);
    context.framesetOk = 0;
    return ANSWER_USED;
}

int InsertTable(const Token* token, HtmlFilterContext& context)
{
    InsertBlockElement(token, context);
    SetInsertionMode(InsertionMode::InTable, context);
    context.framesetOk = 0;
    return ANSWER_USED;
}

int InsertInput(const Token* token, HtmlFilterContext& context)
{
    ReconstructActiveFormatting(context);
    InsertVoidElement(token, context);
    if (!IsHiddenInput(*token, context))
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

int InsertTextarea(const Token* token, HtmlFilterContext& context)
{
    InsertTextElement(token, context);
    SkipLineFeed(context);
    context.rawTextMode = RAW_TEXT_TEXTAREA;
    context.framesetOk = 0;
    return ANSWER_USED;
}

/// How a select goes on that is met in a mode: in a table, the table's tags end it.
InsertionMode SelectModeFrom(std::uint32_t insertionMode)
{
    switch (static_cast<InsertionMode>(insertionMode)) {
    case InsertionMode::InTable:
    case InsertionMode::InCaption:
    case InsertionMode::InTableBody:
    case InsertionMode::InRow:
    case InsertionMode::InCell:
        return InsertionMode::InSelectInTable;

    default:
        return InsertionMode::InSelect;
    }
}

int InsertSelect(const Token* token, HtmlFilterContext& context)
{
    InsertInlineElement(token, context);
    context.framesetOk = 0;
    SetInsertionMode(SelectModeFrom(context.insertionMode), context);
    return ANSWER_USED;
}

int InsertOption(const Token* token, HtmlFilterContext& context)
{
    if (CurrentElementId(context) == ELEMENT_OPTION)
        ActAsBodyEndTag(ELEMENT_OPTION, context);
    InsertInlineElement(token, context);
    return ANSWER_USED;
}

int InsertRubyPart(const Token* token, HtmlFilterContext& context)
{
    if (HasElementInScope(ELEMENT_RUBY, context))
        GenerateImpliedEndTags(ELEMENT_NONE, context);
    else
        FlagParseError(context);
    InsertElement(token, context);
    return ANSWER_USED;
}

int HandleBodyStartTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_HTML:
        FlagParseError(context);
        MergeAttributes(FirstStackNode(context)->data, *token, context);
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
        return MergeSecondBody(token, context);

    case ELEMENT_FRAMESET:
        return ReplaceBodyByFrameset(token, context);

    case ELEMENT_ADDRESS:
    case ELEMENT_ARTICLE:
    case ELEMENT_ASIDE:
    case ELEMENT_BLOCKQUOTE:
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
    case ELEMENT_P:
    case ELEMENT_SECTION:
    case ELEMENT_SUMMARY:
    case ELEMENT_UL:
        InsertBlockElement(token, context);
        return ANSWER_USED;

    case ELEMENT_H1:
    case ELEMENT_H2:
    case ELEMENT_H3:
    case ELEMENT_H4:
    case ELEMENT_H5:
    case ELEMENT_H6:
        return InsertHeading(token, context);

    case ELEMENT_PRE:
    case ELEMENT_LISTING:
        return InsertPreformatted(token, context);

    case ELEMENT_FORM:
        return InsertForm(token, context);

    case ELEMENT_LI:
        return InsertListItem(token, context);

    case ELEMENT_DD:
    case ELEMENT_DT:
        return InsertDefinitionItem(token, context);

    case ELEMENT_PLAINTEXT:
        // QUIRK(InBody.PlaintextGoesOnAsMarkup): the mode stays, and tags inside are tags.
        InsertBlockElement(token, context);
        context.rawTextMode = RAW_TEXT_PLAINTEXT;
        return ANSWER_USED;

    case ELEMENT_BUTTON:
        return InsertButton(token, context);

    case ELEMENT_A:
        return HandleAnchorStartTag(token, context);

    case ELEMENT_B:
    case ELEMENT_BIG:
    case ELEMENT_CODE:
    case ELEMENT_EM:
    case ELEMENT_FONT:
    case ELEMENT_I:
    case ELEMENT_S:
    case ELEMENT_SMALL:
    case ELEMENT_STRIKE:
    case ELEMENT_STRONG:
    case ELEMENT_TT:
    case ELEMENT_U:
        return InsertFormattingElement(token, context);

    case ELEMENT_NOBR:
        return InsertNobr(token, context);

    case ELEMENT_APPLET:
    case ELEMENT_MARQUEE:
    case ELEMENT_OBJECT:
        return InsertEmbeddedContent(token, context);

    case ELEMENT_TABLE:
        return InsertTable(token, context);

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

    case ELEMENT_ISINDEX:
        return InsertIsindex(context);

    case ELEMENT_TEXTAREA:
        return InsertTextarea(token, context);

    case ELEMENT_XMP:
        ClosePElement(context);
        ReconstructActiveFormatting(context);
        context.framesetOk = 0;
        return InsertRawTextElement(token, context);

    case ELEMENT_IFRAME:
        // QUIRK(InBody.IframeContentIsMarkup): no raw text.
        context.framesetOk = 0;
        InsertElement(token, context);
        return ANSWER_USED;

    case ELEMENT_NOEMBED:
        return InsertRawTextElement(token, context);

    case ELEMENT_NOSCRIPT:
        if (context.noscriptRawText == 1)
            return InsertRawTextElement(token, context);
        break;

    case ELEMENT_SELECT:
        return InsertSelect(token, context);

    case ELEMENT_OPTGROUP:
    case ELEMENT_OPTION:
        return InsertOption(token, context);

    case ELEMENT_RP:
    case ELEMENT_RT:
        return InsertRubyPart(token, context);

    case ELEMENT_MATH:
    case ELEMENT_SVG:
        InsertInlineElement(token, context);
        if ((token->flags & TOKEN_SELF_CLOSING) != 0)
            PopElement(context);
        return ANSWER_USED;

    case ELEMENT_CAPTION:
    case ELEMENT_COL:
    case ELEMENT_COLGROUP:
    case ELEMENT_FRAME:
    case ELEMENT_HEAD:
    case ELEMENT_TBODY:
    case ELEMENT_TD:
    case ELEMENT_TFOOT:
    case ELEMENT_TH:
    case ELEMENT_THEAD:
    case ELEMENT_TR:
        return IgnoreWithParseError(context);
    }
    InsertInlineElement(token, context);
    return ANSWER_USED;
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

int ActAsBodyStartTag(ZVHTMLElement element, HtmlFilterContext& context)
{
    const Token startTag = SyntheticStartTag(element);
    return HandleInBodyInsertion(&startTag, context);
}

int ActAsBodyEndTag(ZVHTMLElement element, HtmlFilterContext& context)
{
    const Token endTag = SyntheticEndTag(element);
    return HandleInBodyInsertion(&endTag, context);
}

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
