#include "style/declaration_builder.h"

#include "containers/failures.h"
#include "style/shorthands.h"
#include "style/text_lookup.h"
#include "style/value_readers.h"
#include "support/process_heap.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>

namespace {

/// How the value of a property is read. A keyword is not checked against its property: what output
/// has no use for it passes over.
enum class ValueRule : std::uint8_t {
    Unused,
    Keyword,
    Color,
    Image,
    Width,
    SignedWidth,
    SignedMeasure,
    Size,
    SignedSize,
    LineHeight,
    FontSize,
    FontFamily,
    TextDecoration,
    TextOverflow,
    Shorthand,
};

constexpr std::size_t kRuleCount = PROPERTY_WORD_WRAP + 1;
using ValueRules = std::array<ValueRule, kRuleCount>;

constexpr void setRule(
    ValueRules& rules, ValueRule rule, std::initializer_list<ZVCSSProperty> properties)
{
    for (const ZVCSSProperty property : properties)
        rules[property] = rule;
}

constexpr ValueRules makeRules()
{
    ValueRules rules{};
    setRule(rules, ValueRule::Shorthand,
        {PROPERTY_BACKGROUND, PROPERTY_BORDER, PROPERTY_BORDER_BOTTOM, PROPERTY_BORDER_COLOR,
            PROPERTY_BORDER_LEFT, PROPERTY_BORDER_RIGHT, PROPERTY_BORDER_STYLE, PROPERTY_BORDER_TOP,
            PROPERTY_BORDER_WIDTH, PROPERTY_FONT, PROPERTY_LIST_STYLE, PROPERTY_MARGIN,
            PROPERTY_PADDING});
    setRule(rules, ValueRule::Keyword,
        {PROPERTY_BACKGROUND_ATTACHMENT, PROPERTY_BACKGROUND_REPEAT, PROPERTY_BORDER_BOTTOM_STYLE,
            PROPERTY_BORDER_COLLAPSE, PROPERTY_BORDER_LEFT_STYLE, PROPERTY_BORDER_RIGHT_STYLE,
            PROPERTY_BORDER_TOP_STYLE, PROPERTY_CAPTION_SIDE, PROPERTY_DIRECTION,
            PROPERTY_EMPTY_CELLS, PROPERTY_FONT_STYLE, PROPERTY_FONT_VARIANT, PROPERTY_FONT_WEIGHT,
            PROPERTY_LIST_STYLE_POSITION, PROPERTY_LIST_STYLE_TYPE, PROPERTY_TABLE_LAYOUT,
            PROPERTY_TEXT_ALIGN, PROPERTY_TEXT_TRANSFORM, PROPERTY_WHITE_SPACE,
            PROPERTY_WORD_WRAP});
    setRule(rules, ValueRule::Color,
        {PROPERTY_BACKGROUND_COLOR, PROPERTY_BORDER_BOTTOM_COLOR, PROPERTY_BORDER_LEFT_COLOR,
            PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_BORDER_TOP_COLOR, PROPERTY_COLOR});
    setRule(rules, ValueRule::Image, {PROPERTY_BACKGROUND_IMAGE, PROPERTY_LIST_STYLE_IMAGE});
    setRule(rules, ValueRule::Width,
        {PROPERTY_BORDER_BOTTOM_WIDTH, PROPERTY_BORDER_LEFT_WIDTH, PROPERTY_BORDER_RIGHT_WIDTH,
            PROPERTY_BORDER_TOP_WIDTH});
    setRule(rules, ValueRule::SignedWidth, {PROPERTY_LETTER_SPACING, PROPERTY_WORD_SPACING});
    setRule(rules, ValueRule::SignedMeasure,
        {PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT, PROPERTY_MARGIN_TOP,
            PROPERTY_PADDING_BOTTOM, PROPERTY_PADDING_LEFT, PROPERTY_PADDING_RIGHT,
            PROPERTY_PADDING_TOP});
    setRule(rules, ValueRule::Size,
        {PROPERTY_HEIGHT, PROPERTY_MAX_WIDTH, PROPERTY_MIN_WIDTH, PROPERTY_VERTICAL_ALIGN,
            PROPERTY_WIDTH});
    setRule(rules, ValueRule::SignedSize, {PROPERTY_TEXT_INDENT});
    setRule(rules, ValueRule::LineHeight, {PROPERTY_LINE_HEIGHT});
    setRule(rules, ValueRule::FontSize, {PROPERTY_FONT_SIZE});
    setRule(rules, ValueRule::FontFamily, {PROPERTY_FONT_FAMILY});
    setRule(rules, ValueRule::TextDecoration, {PROPERTY_TEXT_DECORATION});
    setRule(rules, ValueRule::TextOverflow, {PROPERTY_TEXT_OVERFLOW});
    return rules;
}

// Properties behind the last of these have no use either.
constexpr ValueRules kValueRules = makeRules();

HtmlValue* readColorOrInherit(CssTokenList& tokens, HtmlFilterContext& context)
{
    if (isInherit(*tokens.begin()))
        return context.valueCache->keywordValue(VALUE_INHERIT);
    std::int32_t index = 0;
    return readColor(tokens, index, context);
}

HtmlValue* readImage(const CssToken& token, HtmlFilterContext& context)
{
    if (token.kind == CSS_URI)
        return stringOf(token, context);
    return token.kind == CSS_IDENT ? readKeyword(token, context) : nullptr;
}

HtmlValue* readTextOverflow(const CssToken& token, HtmlFilterContext& context)
{
    switch (const ZVCSSValue keyword = keywordOf(token)) {
    case VALUE_CLIP:
    case VALUE_ELLIPSIS:
    case VALUE_INHERIT:
        return context.valueCache->keywordValue(keyword);
    default:
        return stringOf(token, context);
    }
}

/// The only value of a property of one value; its first token is what counts.
HtmlValue* readValue(ValueRule rule, CssTokenList& tokens, HtmlFilterContext& context)
{
    const CssToken& first = *tokens.begin();
    switch (rule) {
    case ValueRule::Keyword:
        return readKeyword(first, context);
    case ValueRule::Color:
        return readColorOrInherit(tokens, context);
    case ValueRule::Image:
        return readImage(first, context);
    case ValueRule::Width:
        return readWidth(first, context);
    case ValueRule::SignedWidth:
        joinSigns(tokens);
        return readWidth(first, context);
    case ValueRule::SignedMeasure:
        joinSigns(tokens);
        return readMeasure(first, context);
    case ValueRule::Size:
        return readSize(first, context);
    case ValueRule::SignedSize:
        joinSigns(tokens);
        return readSize(first, context);
    case ValueRule::LineHeight:
        return readLineHeight(first, context);
    case ValueRule::FontSize:
        return readFontSize(first, context);
    case ValueRule::FontFamily:
        return readFontFamily(first, context);
    case ValueRule::TextOverflow:
        return readTextOverflow(first, context);
    default:
        return nullptr;
    }
}

// By number, which is the order in which a declaration keeps them.
constexpr ZVCSSValue kTextDecorations[]
    = {VALUE_BLINK, VALUE_INHERIT, VALUE_LINE_THROUGH, VALUE_NONE, VALUE_OVERLINE, VALUE_UNDERLINE};
constexpr std::size_t kTextDecorationCount = std::size(kTextDecorations);

/// How often each of the decorations occurs. False when a token is something else.
bool countTextDecorations(const CssTokenList& tokens, std::uint32_t (&counts)[kTextDecorationCount])
{
    for (const CssToken& token : tokens) {
        const ZVCSSValue keyword = keywordOf(token);
        std::size_t place = 0;
        while (place < kTextDecorationCount && kTextDecorations[place] != keyword)
            ++place;
        if (place == kTextDecorationCount)
            return false;
        ++counts[place];
    }
    return true;
}

void applyTextDecoration(CssDeclarationList& list, const CssTokenList& tokens, bool important,
    HtmlFilterContext& context)
{
    // Counted first and added in order, as adding in front of others moves them all.
    std::uint32_t counts[kTextDecorationCount] = {};
    if (!countTextDecorations(tokens, counts))
        return;
    if (tokens.getCount() == 1) {
        list.set(PROPERTY_TEXT_DECORATION, readKeyword(*tokens.begin(), context), important,
            /*edgeMargin=*/false);
        return;
    }
    std::unique_ptr<CssDeclaration> made(zorvan::newObject<CssDeclaration>(
        PROPERTY_TEXT_DECORATION, nullptr, important, /*edgeMargin=*/false));
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    for (std::size_t place = 0; place < kTextDecorationCount; ++place) {
        if (counts[place] == 0)
            continue;
        HtmlValue* const value = context.valueCache->keywordValue(kTextDecorations[place]);
        for (std::uint32_t i = 0; i < counts[place]; ++i)
            made->addValue(value);
    }
    list.takeOwnership();
    list.add(made.release());
}

} // namespace

void applyDeclaration(CssDeclarationList& list, const CssToken& name, CssTokenList& tokens,
    bool important, HtmlFilterContext& context)
{
    if (tokens.getCount() == 0)
        return;
    const ZVCSSProperty property = propertyOf(name);
    const ValueRule rule = property < kRuleCount ? kValueRules[property] : ValueRule::Unused;
    switch (rule) {
    case ValueRule::Unused:
        return;
    case ValueRule::Shorthand:
        applyShorthand(property, list, tokens, important, context);
        return;
    case ValueRule::TextDecoration:
        applyTextDecoration(list, tokens, important, context);
        return;
    default:
        list.set(property, readValue(rule, tokens, context), important, /*edgeMargin=*/false);
    }
}
