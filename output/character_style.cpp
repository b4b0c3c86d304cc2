#include "output/character_style.h"

#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"
#include "style/cascade.h"
#include "style/css_declaration.h"
#include "style/font_names.h"
#include "style/lengths.h"
#include "support/css_names.h"
#include "support/ut_strings.h"
#include "tree/element_sets.h"

#include <span>

namespace {

constexpr std::uint32_t kColorBits = 0xFF'FFFF;
constexpr std::uint32_t kWhite = 0xFF'FFFF;
constexpr std::uint32_t kTwipsPerPixel = 15;
constexpr std::uint32_t kSymbolCharSetId = 0x2000'0100;

constexpr std::uint32_t kColorMode = 0;
constexpr std::uint32_t kClearMode = 1;
constexpr std::uint32_t kSpacingWidened = 1;
constexpr std::uint32_t kSpacingNarrowed = 2;

/// Elements whose vertical-align is that of a table, not of characters.
constexpr ElementSet kAlignedAsTable{ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TH,
    ELEMENT_TR, ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_BODY};

/// What a keyword of a property switches: a character attribute, on or off.
struct KeywordSwitch {
    ZVCSSValue keyword;
    std::uint32_t attribute; ///< a CHARACTER_ code
    std::uint32_t flag; ///< 1 on, 0 off
};

using KeywordSwitches = std::span<const KeywordSwitch>;

constexpr KeywordSwitch kFontStyles[] = {
    {VALUE_ITALIC, CHARACTER_ITALIC, 1},
    {VALUE_OBLIQUE, CHARACTER_ITALIC, 1},
    {VALUE_NORMAL, CHARACTER_ITALIC, 0},
};
constexpr KeywordSwitch kFontVariants[] = {
    {VALUE_SMALL_CAPS, CHARACTER_SMALL_CAPITALS, 1},
    {VALUE_NORMAL, CHARACTER_SMALL_CAPITALS, 0},
};
constexpr KeywordSwitch kFontWeights[] = {
    {VALUE_BOLD, CHARACTER_BOLD, 1},
    {VALUE_600, CHARACTER_BOLD, 1},
    {VALUE_700, CHARACTER_BOLD, 1},
    {VALUE_800, CHARACTER_BOLD, 1},
    {VALUE_900, CHARACTER_BOLD, 1},
    {VALUE_NORMAL, CHARACTER_BOLD, 0},
    {VALUE_100, CHARACTER_BOLD, 0},
    {VALUE_200, CHARACTER_BOLD, 0},
    {VALUE_300, CHARACTER_BOLD, 0},
    {VALUE_400, CHARACTER_BOLD, 0},
    {VALUE_500, CHARACTER_BOLD, 0},
};
constexpr KeywordSwitch kDecorations[] = {
    {VALUE_BLINK, CHARACTER_BLINK, 1},
    {VALUE_LINE_THROUGH, CHARACTER_STRIKE_THROUGH, 1},
    {VALUE_UNDERLINE, CHARACTER_UNDERLINE, 1},
};
constexpr KeywordSwitch kTransforms[] = {
    {VALUE_CAPITALIZE, CHARACTER_INITIAL_CAPITALS, 1},
    {VALUE_LOWERCASE, CHARACTER_LOWER_CASE, 1},
    {VALUE_UPPERCASE, CHARACTER_ALL_CAPITALS, 1},
};
constexpr KeywordSwitch kVerticalAlignments[] = {
    {VALUE_SUB, CHARACTER_SUBSCRIPT, 1},
    {VALUE_SUPER, CHARACTER_SUPERSCRIPT, 1},
    {VALUE_BASELINE, CHARACTER_SUBSCRIPT, 0},
    {VALUE_BASELINE, CHARACTER_SUPERSCRIPT, 0},
};

void setCharacter(std::uint32_t attribute, std::uint32_t flag, HtmlFilterContext& context)
{
    SOSetProperty(PROPERTY_KIND_CHARACTER, attribute, flag, 0, context);
}

void deliverSwitches(KeywordSwitches switches, const HtmlValue* value, HtmlFilterContext& context)
{
    const HtmlCssKeywordValue* keyword = HtmlCssKeywordValue::from(value);
    if (keyword == nullptr)
        return;
    for (const KeywordSwitch& row : switches) {
        if (row.keyword == keyword->keyword)
            setCharacter(row.attribute, row.flag, context);
    }
}

/// A property with a list of values: what it may have switched on goes off first.
void deliverValueList(
    const CssDeclaration& declaration, KeywordSwitches switches, HtmlFilterContext& context)
{
    const std::int32_t count = declaration.getValueCount();
    for (std::int32_t i = 0; i < count; ++i)
        deliverSwitches(switches, declaration.getValueAt(i), context);
}

void deliverDecoration(const CssDeclaration& declaration, HtmlFilterContext& context)
{
    setCharacter(CHARACTER_STRIKE_THROUGH, 0, context);
    setCharacter(CHARACTER_UNDERLINE, 0, context);
    setCharacter(CHARACTER_BLINK, 0, context);
    deliverValueList(declaration, kDecorations, context);
}

void deliverTransform(const CssDeclaration& declaration, HtmlFilterContext& context)
{
    setCharacter(CHARACTER_INITIAL_CAPITALS, 0, context);
    setCharacter(CHARACTER_LOWER_CASE, 0, context);
    setCharacter(CHARACTER_ALL_CAPITALS, 0, context);
    deliverValueList(declaration, kTransforms, context);
}

void deliverColor(const HtmlValue* value, HtmlFilterContext& context)
{
    const HtmlColorValue* color = HtmlColorValue::from(value);
    if (color == nullptr)
        return;
    const std::uint32_t sent = areColorsOverridden(context) ? 0 : color->color & kColorBits;
    SOSetTextColor(kColorMode, sent, context);
}

void deliverInlineBackground(const HtmlValue* value, HtmlFilterContext& context)
{
    const HtmlColorValue* color = HtmlColorValue::from(value);
    const HtmlCssKeywordValue* keyword = HtmlCssKeywordValue::from(value);
    const bool isTransparent = keyword != nullptr && keyword->keyword == VALUE_TRANSPARENT;
    if (color == nullptr && !isTransparent)
        return;
    if (areColorsOverridden(context)) {
        SOSetBackColor(kClearMode, kWhite, context);
        return;
    }
    if (isTransparent)
        SOSetBackColor(kClearMode, 0, context);
    else
        SOSetBackColor(kColorMode, color->color & kColorBits, context);
}

void deliverFontFamily(const HtmlValue* value, HtmlFilterContext& context)
{
    const HtmlWStringValue* family = HtmlWStringValue::from(value);
    if (family == nullptr)
        return;
    const std::int32_t font = findFont(*family, context);
    if (font != kNoFont)
        SOSelectFont(static_cast<std::uint32_t>(font), context);
}

void deliverFontSize(const HtmlValue* value, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (value == nullptr)
        return;
    const bool isSize
        = value->kind == KIND_KEYWORD || value->kind == KIND_PERCENT || value->kind == KIND_LENGTH;
    if (!isSize)
        return;
    const double pixels = fontSizePixels(*value, frame.fontSizePx);
    frame.fontSizePx = static_cast<std::uint32_t>(truncateToInt32(pixels));
    if (pixels > 0) {
        const std::int32_t halfPoints = truncateToInt32(2 * (pixels * 0.75));
        SOSetFontHeight(static_cast<std::uint32_t>(halfPoints), context);
    }
}

void deliverLetterSpacing(
    const HtmlValue* value, const HTML_SOINFO& frame, HtmlFilterContext& context)
{
    const HtmlCssKeywordValue* keyword = HtmlCssKeywordValue::from(value);
    if (keyword != nullptr && keyword->keyword == VALUE_NORMAL)
        SOSetExtraProperty(EXTRA_PROPERTY_SPACING, kSpacingWidened, 0, 0, context);
    const HtmlLengthValue* length = HtmlLengthValue::from(value);
    if (length == nullptr)
        return;
    const auto size = static_cast<float>(frame.fontSizePx);
    float pixels = length->pixels();
    if (length->length.units == UNITS_EM)
        pixels = length->length.value * size;
    else if (length->length.units == UNITS_EX)
        pixels = static_cast<float>(static_cast<double>(length->length.value * size) * 0.5);
    if (pixels == 0)
        return;
    const std::uint32_t sub = pixels > 0 ? kSpacingWidened : kSpacingNarrowed;
    const float amount = (pixels > 0 ? pixels : -pixels) * static_cast<float>(kTwipsPerPixel);
    SOSetExtraProperty(EXTRA_PROPERTY_SPACING, sub,
        static_cast<std::uint32_t>(truncateToInt32(amount)), 0, context);
}

} // namespace

bool areColorsOverridden(const HtmlFilterContext& context)
{
    return context.backgroundOption != 0 && context.backgroundSeen != 0;
}

bool deliverCharacterDeclaration(const CssDeclaration& declaration, HTML_SOINFO& frame,
    std::uint32_t element, HtmlFilterContext& context)
{
    const HtmlValue* value = declaration.getValue();
    switch (declaration.getProperty()) {
    case PROPERTY_COLOR:
        deliverColor(value, context);
        return true;
    case PROPERTY_BACKGROUND_COLOR:
        if (backgroundGroupOf(element) != BackgroundGroup::Inline)
            return false;
        deliverInlineBackground(value, context);
        return true;
    case PROPERTY_FONT_FAMILY:
        deliverFontFamily(value, context);
        return true;
    case PROPERTY_FONT_SIZE:
        deliverFontSize(value, frame, context);
        return true;
    case PROPERTY_FONT_STYLE:
        deliverSwitches(kFontStyles, value, context);
        return true;
    case PROPERTY_FONT_VARIANT:
        deliverSwitches(kFontVariants, value, context);
        return true;
    case PROPERTY_FONT_WEIGHT:
        deliverSwitches(kFontWeights, value, context);
        return true;
    case PROPERTY_LETTER_SPACING:
        deliverLetterSpacing(value, frame, context);
        return true;
    case PROPERTY_TEXT_DECORATION:
        deliverDecoration(declaration, context);
        return true;
    case PROPERTY_TEXT_TRANSFORM:
        deliverTransform(declaration, context);
        return true;
    case PROPERTY_VERTICAL_ALIGN:
        if (!kAlignedAsTable.contains(element))
            deliverSwitches(kVerticalAlignments, value, context);
        return true;
    default:
        return false;
    }
}

void enterBaseFont(HtmlTreeNode& node, HtmlFilterContext& context)
{
    static constexpr std::uint16_t kHeights[] = {16, 20, 24, 32, 40, 48, 64};

    const CssDeclarationList* declarations = declarationsOf(node);
    const HtmlColorValue* color = declarations == nullptr
        ? nullptr
        : HtmlColorValue::from(declarations->findValue(PROPERTY_COLOR));
    if (color != nullptr && (color->color != context.textColor || context.textColorMode != 0)) {
        context.textColor = color->color;
        context.textColorMode = 0;
    }
    const HtmlNumberValue* size = HtmlNumberValue::from(attributeOf(node, ATTRIBUTE_SIZE));
    if (size != nullptr && size->number >= 1 && size->number <= 7)
        context.baseFontHeight = kHeights[truncateToInt32(size->number) - 1];
}

void noteSymbolSpan(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    if (context.unicodeBomMode != 0)
        return;
    const HtmlWStringValue* style = stringAttribute(node, ATTRIBUTE_STYLE);
    if (style == nullptr)
        return;
    const char16_t* mark = UTwcsstr(style->text, u"mso-char-type");
    if (mark != nullptr && UTwcsstr(mark, u"symbol") != nullptr)
        context.symbolCharSetId = kSymbolCharSetId;
}
