#include "tree/element_attributes.h"

#include "scanner/markup_scanner.h"
#include "style/css_declaration_list.h"
#include "support/css_names.h"
#include "support/html_names.h"
#include "tree/attribute_numbers.h"
#include "tree/attribute_rules.h"
#include "tree/border_attributes.h"
#include "tree/enum_from_string.h"
#include "tree/font_sizes.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"
#include "tree/image_source.h"

#include <span>

namespace {

using Rules = std::span<const AttributeRule>;

/// Alignments of a caption, as the output knows them.
enum CaptionAlign : std::uint32_t {
    CAPTION_ALIGN_OTHER = 0x800,
    CAPTION_ALIGN_BOTTOM = 0x1000,
    CAPTION_ALIGN_LEFT = 0x2000,
    CAPTION_ALIGN_RIGHT = 0x4000,
};

void KeepDirection(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const std::uint32_t direction = ETextDirectionFromString(ReadAttribute(rule.id, context));
    KeepEnum(
        payload, rule, direction, direction == TEXT_DIRECTION_RTL ? VALUE_RTL : VALUE_LTR, context);
}

/// href of an anchor, which then looks like a link unless its list says otherwise by now.
void KeepAnchorAddress(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    if (text == nullptr)
        return;
    KeepValue(payload, rule, context.valueCache->stringValue(text), context);
    const CssDeclarationList* const list = OwnDeclarations(payload, context);
    if (list == nullptr)
        return;
    if (!list->contains(PROPERTY_TEXT_DECORATION))
        Declare(payload, PROPERTY_TEXT_DECORATION,
            context.valueCache->keywordValue(VALUE_UNDERLINE), context);
    if (!list->contains(PROPERTY_COLOR))
        Declare(
            payload, PROPERTY_COLOR, context.valueCache->colorValue(context.linkColor), context);
}

/// link of the body: what anchors from here on are colored with.
void KeepLinkColor(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    KeepColor(payload, rule, context);
    if (const auto* color = HtmlColorValue::from(payload.findAttribute(rule.id)))
        context.linkColor = color->color;
}

void KeepNoWrap(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    if (ReadAttribute(rule.id, context) == nullptr)
        return;
    KeepValue(payload, rule, context.valueCache->numberValue(1), context);
    Declare(payload, PROPERTY_WHITE_SPACE, context.valueCache->keywordValue(VALUE_NOWRAP), context);
}

/// One of the characters that stand for list types, on their own and in their case.
std::uint32_t ListTypeOfCharacter(const char16_t* text)
{
    if (text == nullptr || text[0] == 0 || text[1] != 0)
        return LI_TYPE_NONE;
    switch (text[0]) {
    case u'1':
        return LI_TYPE_NUMERAL;
    case u'A':
        return LI_TYPE_UPPER_ALPHA;
    case u'I':
        return LI_TYPE_UPPER_ROMAN;
    case u'a':
        return LI_TYPE_LOWER_ALPHA;
    case u'i':
        return LI_TYPE_LOWER_ROMAN;
    }
    return LI_TYPE_NONE;
}

ZVCSSValue ListStyleOf(std::uint32_t type)
{
    switch (type) {
    case LI_TYPE_CIRCLE:
        return VALUE_CIRCLE;
    case LI_TYPE_DISC:
        return VALUE_DISC;
    case LI_TYPE_LOWER_ALPHA:
        return VALUE_LOWER_ALPHA;
    case LI_TYPE_LOWER_ROMAN:
        return VALUE_LOWER_ROMAN;
    case LI_TYPE_NUMERAL:
        return VALUE_DECIMAL;
    case LI_TYPE_SQUARE:
        return VALUE_SQUARE;
    case LI_TYPE_UPPER_ALPHA:
        return VALUE_UPPER_ALPHA;
    case LI_TYPE_UPPER_ROMAN:
        return VALUE_UPPER_ROMAN;
    }
    return VALUE_UNKNOWN;
}

void KeepListType(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    std::uint32_t type = LI_TYPE_NONE;
    // QUIRK(ElementAttributes.ListTypes): an item takes both spellings, ordered lists only
    // characters and unordered ones only names.
    if (payload.elementId != ELEMENT_UL)
        type = ListTypeOfCharacter(text);
    if (payload.elementId != ELEMENT_OL && type == LI_TYPE_NONE)
        type = ELiTypeFromString(text);
    KeepEnum(payload, rule, type, ListStyleOf(type), context);
}

constexpr AttributeRule kCommonRules[] = {
    {ATTRIBUTE_ID, KeepText},
    {ATTRIBUTE_STYLE, KeepText},
    {ATTRIBUTE_CLASS, KeepText},
    {ATTRIBUTE_DIR, KeepDirection, PROPERTY_DIRECTION},
    {ATTRIBUTE_TITLE, KeepText},
};
constexpr AttributeRule kAnchorRules[] = {
    {ATTRIBUTE_HREF, KeepAnchorAddress},
    {ATTRIBUTE_NAME, KeepText},
    {ATTRIBUTE_TARGET, KeepText},
};
constexpr AttributeRule kAreaRules[] = {
    {ATTRIBUTE_ALT, KeepText},
    {ATTRIBUTE_COORDS, KeepText},
    {ATTRIBUTE_HREF, KeepText},
};
constexpr AttributeRule kBaseRules[] = {{ATTRIBUTE_HREF, KeepText}};
constexpr AttributeRule kBaseFontRules[] = {
    {ATTRIBUTE_FACE, KeepText, PROPERTY_FONT_FAMILY},
    {ATTRIBUTE_SIZE, KeepBaseFontSize},
    {ATTRIBUTE_COLOR, KeepColor, PROPERTY_COLOR},
};
constexpr AttributeRule kQuotationRules[] = {{ATTRIBUTE_CITE, KeepText}};
constexpr AttributeRule kBodyRules[] = {
    {ATTRIBUTE_ALINK, KeepColor},
    {ATTRIBUTE_LINK, KeepLinkColor},
    {ATTRIBUTE_VLINK, KeepColor},
    {ATTRIBUTE_BACKGROUND, KeepText, PROPERTY_BACKGROUND_IMAGE},
    {ATTRIBUTE_BGCOLOR, KeepColor, PROPERTY_BACKGROUND_COLOR},
    {ATTRIBUTE_TEXT, KeepColor, PROPERTY_COLOR},
};
constexpr AttributeRule kColumnRules[] = {
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_SPAN, KeepNumber},
    {ATTRIBUTE_WIDTH, KeepWidth},
    {ATTRIBUTE_VALIGN, KeepVertAlign, PROPERTY_VERTICAL_ALIGN},
};
constexpr AttributeRule kChangeRules[] = {
    {ATTRIBUTE_CITE, KeepText},
    {ATTRIBUTE_DATETIME, KeepText},
};
constexpr AttributeRule kBlockRules[] = {{ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN}};
constexpr AttributeRule kDefinitionListRules[] = {{ATTRIBUTE_COMPACT, KeepMark}};
constexpr AttributeRule kFontRules[] = {
    {ATTRIBUTE_COLOR, KeepColor, PROPERTY_COLOR},
    {ATTRIBUTE_FACE, KeepText, PROPERTY_FONT_FAMILY},
    {ATTRIBUTE_SIZE, KeepFontSize},
};
constexpr AttributeRule kFrameRules[] = {
    {ATTRIBUTE_BORDERCOLOR, KeepColor},
    {ATTRIBUTE_FRAMEBORDER, KeepFrameBorder},
    {ATTRIBUTE_LONGDESC, KeepText},
    {ATTRIBUTE_NAME, KeepText},
    {ATTRIBUTE_SRC, KeepText},
};
constexpr AttributeRule kFramesetRules[] = {
    {ATTRIBUTE_BORDER, KeepLength},
    {ATTRIBUTE_BORDERCOLOR, KeepColor},
    {ATTRIBUTE_COLS, KeepText},
    {ATTRIBUTE_ROWS, KeepText},
    {ATTRIBUTE_FRAMESPACING, KeepLength},
};
constexpr AttributeRule kRuleRules[] = {
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_COLOR, KeepColor, PROPERTY_COLOR},
    {ATTRIBUTE_NOSHADE, KeepNoShade},
    {ATTRIBUTE_SIZE, KeepMeasure, PROPERTY_HEIGHT},
    {ATTRIBUTE_WIDTH, KeepWidth},
};
constexpr AttributeRule kHtmlRules[] = {{ATTRIBUTE_VERSION, KeepText}};
constexpr AttributeRule kImageRules[] = {
    {ATTRIBUTE_ALT, KeepText},
    {ATTRIBUTE_BORDER, KeepImageBorder},
    {ATTRIBUTE_HEIGHT, KeepHeight},
    {ATTRIBUTE_HSPACE, KeepLength, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT},
    {ATTRIBUTE_LONGDESC, KeepText},
    {ATTRIBUTE_NAME, KeepText},
    {ATTRIBUTE_SRC, KeepImageSource},
    {ATTRIBUTE_VSPACE, KeepLength, PROPERTY_MARGIN_TOP, PROPERTY_MARGIN_BOTTOM},
    {ATTRIBUTE_WIDTH, KeepWidth},
};
constexpr AttributeRule kInputRules[] = {
    {ATTRIBUTE_NAME, KeepText},
    {ATTRIBUTE_TYPE, KeepEnumerator<EInputTypeFromString>},
    {ATTRIBUTE_VALUE, KeepText},
};
constexpr AttributeRule kIsIndexRules[] = {{ATTRIBUTE_PROMPT, KeepText}};
constexpr AttributeRule kListItemRules[] = {
    {ATTRIBUTE_VALUE, KeepNumber},
    {ATTRIBUTE_TYPE, KeepListType, PROPERTY_LIST_STYLE_TYPE},
};
constexpr AttributeRule kLinkRules[] = {
    {ATTRIBUTE_HREF, KeepText},
    {ATTRIBUTE_NAME, KeepText},
    {ATTRIBUTE_REL, KeepText},
};
constexpr AttributeRule kMapRules[] = {{ATTRIBUTE_NAME, KeepText}};
constexpr AttributeRule kMetaRules[] = {
    {ATTRIBUTE_CHARSET, KeepText},
    {ATTRIBUTE_CONTENT, KeepText},
    {ATTRIBUTE_HTTP_EQUIV, KeepText},
    {ATTRIBUTE_NAME, KeepText},
    {ATTRIBUTE_SCHEME, KeepText},
};
constexpr AttributeRule kOrderedListRules[] = {
    {ATTRIBUTE_COMPACT, KeepMark},
    {ATTRIBUTE_START, KeepNumber},
    {ATTRIBUTE_TYPE, KeepListType, PROPERTY_LIST_STYLE_TYPE},
};
constexpr AttributeRule kOptionGroupRules[] = {{ATTRIBUTE_LABEL, KeepText}};
constexpr AttributeRule kOptionRules[] = {
    {ATTRIBUTE_SELECTED, KeepMark},
    {ATTRIBUTE_VALUE, KeepText},
};
constexpr AttributeRule kSpacerRules[] = {
    {ATTRIBUTE_TYPE, KeepEnumerator<ESpacerTypeFromString>},
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_HEIGHT, KeepHeight},
    {ATTRIBUTE_SIZE, KeepMeasure, PROPERTY_HEIGHT},
    {ATTRIBUTE_WIDTH, KeepWidth},
};
constexpr AttributeRule kStyleRules[] = {{ATTRIBUTE_TYPE, KeepText}};
constexpr AttributeRule kTableRules[] = {
    {ATTRIBUTE_ALIGN, KeepHorizAlign},
    {ATTRIBUTE_BGCOLOR, KeepColor, PROPERTY_BACKGROUND_COLOR},
    {ATTRIBUTE_BORDERCOLOR, KeepBorderColor},
    {ATTRIBUTE_BORDER, KeepTableBorder},
    {ATTRIBUTE_CELLPADDING, KeepLength},
    {ATTRIBUTE_CELLSPACING, KeepLength},
    {ATTRIBUTE_COLS, KeepNumber},
    {ATTRIBUTE_FRAME, KeepTableFrame},
    {ATTRIBUTE_HEIGHT, KeepHeight},
    {ATTRIBUTE_RULES, KeepEnumerator<ETableRulesFromString>},
    {ATTRIBUTE_SUMMARY, KeepText},
    {ATTRIBUTE_WIDTH, KeepWidth},
};
constexpr AttributeRule kTableBodyRules[] = {
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_BGCOLOR, KeepColor, PROPERTY_BACKGROUND_COLOR},
    {ATTRIBUTE_VALIGN, KeepVertAlign, PROPERTY_VERTICAL_ALIGN},
};
constexpr AttributeRule kCellRules[] = {
    {ATTRIBUTE_ABBR, KeepText},
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_AXIS, KeepText},
    {ATTRIBUTE_BGCOLOR, KeepColor, PROPERTY_BACKGROUND_COLOR},
    {ATTRIBUTE_BORDERCOLOR, KeepBorderColor},
    {ATTRIBUTE_COLSPAN, KeepNumber},
    {ATTRIBUTE_ROWSPAN, KeepNumber},
    {ATTRIBUTE_HEIGHT, KeepHeight},
    {ATTRIBUTE_NOWRAP, KeepNoWrap},
    {ATTRIBUTE_WIDTH, KeepWidth},
    {ATTRIBUTE_VALIGN, KeepVertAlign, PROPERTY_VERTICAL_ALIGN},
};
constexpr AttributeRule kTextAreaRules[] = {
    {ATTRIBUTE_COLS, KeepNumber},
    {ATTRIBUTE_ROWS, KeepNumber},
    {ATTRIBUTE_NAME, KeepText},
};
// QUIRK(ElementAttributes.TableHeadHasNoColor): unlike the other parts of a table.
constexpr AttributeRule kTableHeadRules[] = {
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_VALIGN, KeepVertAlign, PROPERTY_VERTICAL_ALIGN},
};
constexpr AttributeRule kRowRules[] = {
    {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN},
    {ATTRIBUTE_BGCOLOR, KeepColor, PROPERTY_BACKGROUND_COLOR},
    {ATTRIBUTE_BORDERCOLOR, KeepBorderColor},
    {ATTRIBUTE_HEIGHT, KeepHeight},
    {ATTRIBUTE_VALIGN, KeepVertAlign, PROPERTY_VERTICAL_ALIGN},
};
constexpr AttributeRule kUnorderedListRules[] = {
    {ATTRIBUTE_COMPACT, KeepMark},
    {ATTRIBUTE_TYPE, KeepListType, PROPERTY_LIST_STYLE_TYPE},
};

/// The rules of the attributes that an element has beside the common ones.
Rules RulesOf(std::uint32_t elementId)
{
    switch (elementId) {
    case ELEMENT_A:
        return kAnchorRules;
    case ELEMENT_AREA:
        return kAreaRules;
    case ELEMENT_BASE:
        return kBaseRules;
    case ELEMENT_BASEFONT:
        return kBaseFontRules;
    case ELEMENT_BLOCKQUOTE:
    case ELEMENT_Q:
        return kQuotationRules;
    case ELEMENT_BODY:
        return kBodyRules;
    case ELEMENT_COL:
    case ELEMENT_COLGROUP:
        return kColumnRules;
    case ELEMENT_DEL:
    case ELEMENT_INS:
        return kChangeRules;
    case ELEMENT_DIV:
    case ELEMENT_FIELDSET:
    case ELEMENT_H1:
    case ELEMENT_H2:
    case ELEMENT_H3:
    case ELEMENT_H4:
    case ELEMENT_H5:
    case ELEMENT_H6:
    case ELEMENT_LEGEND:
    case ELEMENT_P:
        return kBlockRules;
    case ELEMENT_DL:
        return kDefinitionListRules;
    case ELEMENT_FONT:
        return kFontRules;
    case ELEMENT_FRAME:
    case ELEMENT_IFRAME:
        return kFrameRules;
    case ELEMENT_FRAMESET:
        return kFramesetRules;
    case ELEMENT_HR:
        return kRuleRules;
    case ELEMENT_HTML:
        return kHtmlRules;
    case ELEMENT_IMG:
        return kImageRules;
    case ELEMENT_INPUT:
        return kInputRules;
    case ELEMENT_ISINDEX:
        return kIsIndexRules;
    case ELEMENT_LI:
        return kListItemRules;
    case ELEMENT_LINK:
        return kLinkRules;
    case ELEMENT_MAP:
        return kMapRules;
    case ELEMENT_META:
        return kMetaRules;
    case ELEMENT_OL:
        return kOrderedListRules;
    case ELEMENT_OPTGROUP:
        return kOptionGroupRules;
    case ELEMENT_OPTION:
        return kOptionRules;
    case ELEMENT_SPACER:
        return kSpacerRules;
    case ELEMENT_STYLE:
        return kStyleRules;
    case ELEMENT_TABLE:
        return kTableRules;
    case ELEMENT_TBODY:
    case ELEMENT_TFOOT:
        return kTableBodyRules;
    case ELEMENT_TD:
    case ELEMENT_TH:
        return kCellRules;
    case ELEMENT_TEXTAREA:
        return kTextAreaRules;
    case ELEMENT_THEAD:
        return kTableHeadRules;
    case ELEMENT_TR:
        return kRowRules;
    case ELEMENT_UL:
        return kUnorderedListRules;
    }
    return {};
}

/// The attributes that every element keeps.
void ApplyCommonAttributes(
    HtmlTagNodeData& payload, const AttributeSet& present, HtmlFilterContext& context)
{
    ApplyRules(payload, kCommonRules, present, context);
}

/// A basefont of the head speaks for the whole body.
void TakeBaseFont(HtmlTagNodeData& body, HtmlFilterContext& context)
{
    // A temporary payload has nowhere to keep it.
    if (context.headElement == nullptr || context.currentNode == nullptr
        || context.currentNode->data != &body)
        return;
    const HtmlTreeNode* baseFont = context.headElement->firstChild;
    while (baseFont != nullptr && elementOf(*baseFont) != ELEMENT_BASEFONT)
        baseFont = baseFont->nextSibling;
    const CssDeclarationList* const declarations
        = baseFont != nullptr ? baseFont->data->getDeclarations() : nullptr;
    if (declarations == nullptr || declarations->isEmpty())
        return;
    if (CssDeclarationList* const list = OwnDeclarations(body, context))
        list->merge(*declarations, /*copy=*/true);
}

void KeepCaptionAlign(HtmlTagNodeData& caption, HtmlFilterContext& context)
{
    const char16_t* const text
        = context.tagAttributeCount == 0 ? nullptr : ReadAttribute(ATTRIBUTE_ALIGN, context);
    std::uint32_t alignment = CAPTION_ALIGN_OTHER;
    if (text == nullptr)
        alignment = CAPTION_ALIGN_OTHER;
    else if (AttributeEquals(text, "bottom", context) == 0)
        alignment = CAPTION_ALIGN_BOTTOM;
    else if (AttributeEquals(text, "left", context) == 0)
        alignment = CAPTION_ALIGN_LEFT;
    else if (AttributeEquals(text, "right", context) == 0)
        alignment = CAPTION_ALIGN_RIGHT;
    if (HtmlValue* const value = context.valueCache->enumValue(alignment))
        caption.setAttribute(ATTRIBUTE_ALIGN, value);
}

void ZeroSideMargins(HtmlTagNodeData& table, HtmlFilterContext& context)
{
    HtmlValue* const zero = context.valueCache->lengthValue(0, UNITS_PIXELS);
    Declare(table, PROPERTY_MARGIN_LEFT, zero, context);
    Declare(table, PROPERTY_MARGIN_RIGHT, zero, context);
}

/// What an element has by its tag alone, whatever stands in it.
void ApplyImplied(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    switch (payload.elementId) {
    case ELEMENT_BODY:
        TakeBaseFont(payload, context);
        return;

    case ELEMENT_CAPTION:
        KeepCaptionAlign(payload, context);
        return;

    case ELEMENT_TABLE:
        ZeroSideMargins(payload, context);
        return;

    default:
        return;
    }
}

} // namespace

void ApplyElementAttributes(HtmlGenericNodeData* payload, HtmlFilterContext& context)
{
    auto& element = static_cast<HtmlTagNodeData&>(*payload);
    // Most tags have none.
    if (context.tagAttributeCount == 0) {
        ApplyImplied(element, context);
        return;
    }
    const AttributeSet present(context);
    ApplyCommonAttributes(element, present, context);
    ApplyImplied(element, context);
    ApplyRules(element, RulesOf(element.elementId), present, context);
}

int GetRawAttributeValue(std::uint32_t attributeId, char16_t* buffer, std::uint32_t limit,
    HtmlFilterContext& context, void* /*reserved*/)
{
    // The scanner reads nothing once a bit is set, which is no empty value.
    if (context.statusFlags != 0) {
        if (limit != 0)
            buffer[0] = 0;
        return 0;
    }
    return readAttributeValue(attributeId, buffer, limit, context) != 0 ? 1 : 0;
}
