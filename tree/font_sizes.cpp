#include "tree/font_sizes.h"

#include "style/css_declaration_list.h"
#include "style/lengths.h"
#include "tree/attribute_numbers.h"
#include "tree/enum_from_string.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::int32_t kSmallestSize = 1;
constexpr std::int32_t kLargestSize = 7;
constexpr std::int32_t kMostSteps = 6;

/// Of the largest size, which has no keyword.
constexpr float kLargestSizeInPixels = 48;

/// A size: the enumerator of its name, and its keyword.
struct FontSize {
    EFontSize enumerator;
    ZVCSSValue keyword;
};

constexpr std::array<FontSize, 7> kSizes = {{
    {FONT_SIZE_ONE, VALUE_X_SMALL},
    {FONT_SIZE_TWO, VALUE_SMALL},
    {FONT_SIZE_THREE, VALUE_MEDIUM},
    {FONT_SIZE_FOUR, VALUE_LARGE},
    {FONT_SIZE_FIVE, VALUE_X_LARGE},
    {FONT_SIZE_SIX, VALUE_XX_LARGE},
    {FONT_SIZE_SEVEN, VALUE_UNKNOWN},
}};

/// A number of steps: the enumerator of its name, and the factor of the font size in force.
struct FontStep {
    EFontSize enumerator;
    float factor;
};

// From -6 to 6.
constexpr std::array<FontStep, 2 * kMostSteps + 1> kSteps = {{
    {FONT_SIZE_SIX_SMALLER, 0.1F},
    {FONT_SIZE_FIVE_SMALLER, 0.25F},
    {FONT_SIZE_FOUR_SMALLER, 0.4F},
    {FONT_SIZE_THREE_SMALLER, 0.55F},
    {FONT_SIZE_TWO_SMALLER, 0.7F},
    {FONT_SIZE_ONE_SMALLER, 0.85F},
    {FONT_SIZE_NONE, 1.0F},
    {FONT_SIZE_ONE_LARGER, 1.15F},
    {FONT_SIZE_TWO_LARGER, 1.3F},
    {FONT_SIZE_THREE_LARGER, 1.45F},
    {FONT_SIZE_FOUR_LARGER, 1.6F},
    {FONT_SIZE_FIVE_LARGER, 1.75F},
    {FONT_SIZE_SIX_LARGER, 1.9F},
}};

const FontSize& SizeOf(std::int32_t number)
{
    const std::int32_t size = std::clamp(number, kSmallestSize, kLargestSize);
    return kSizes[static_cast<std::size_t>(size - kSmallestSize)];
}

void DeclareSize(HtmlTagNodeData& payload, const FontSize& size, HtmlFilterContext& context)
{
    HtmlValue* value = nullptr;
    if (size.keyword == VALUE_UNKNOWN)
        value = context.valueCache->lengthValue(kLargestSizeInPixels, UNITS_PIXELS);
    else
        value = context.valueCache->keywordValue(size.keyword);
    Declare(payload, PROPERTY_FONT_SIZE, value, context);
}

/// A part of the font size in force: pixels when that is a length, else a length in em.
HtmlValue* RelativeSize(float factor, HtmlFilterContext& context)
{
    ValueCache& values = *context.valueCache;
    const auto* base = HtmlLengthValue::from(context.initialStyle->findValue(PROPERTY_FONT_SIZE));
    const bool isAbsolute = base != nullptr && !isRelative(*base)
        && base->length.units != UNITS_PERCENT && base->length.units != UNITS_NONE;
    if (!isAbsolute)
        return values.lengthValue(factor, UNITS_EM);
    const auto basePixels = static_cast<std::uint32_t>(truncateToInt32(base->pixels()));
    const HtmlLengthValue step(factor, UNITS_EM);
    return values.lengthValue(static_cast<float>(wholePixels(step, basePixels)), UNITS_PIXELS);
}

void KeepFontStep(HtmlTagNodeData& payload, const AttributeRule& rule, std::int32_t number,
    HtmlFilterContext& context)
{
    const std::int32_t steps = std::clamp(number, -kMostSteps, kMostSteps);
    const FontStep& step = kSteps[static_cast<std::size_t>(steps + kMostSteps)];
    KeepEnum(payload, rule, step.enumerator, VALUE_UNKNOWN, context);
    // QUIRK(FontSizes.NoStepIsDeclaredAndNotKept): a font of "+0" takes the size in force.
    Declare(payload, PROPERTY_FONT_SIZE, RelativeSize(step.factor, context), context);
}

} // namespace

void KeepBaseFontSize(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    if (text == nullptr)
        return;
    const auto number = ParseAttributeNumber(text, /*flags=*/0, context);
    if (!number)
        return;
    KeepValue(payload, rule, context.valueCache->numberValue(*number), context);
    DeclareSize(payload, SizeOf(*number), context);
}

void KeepFontSize(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    if (text == nullptr)
        return;
    const bool hasSign = *text == '+' || *text == '-';
    const auto number = ParseAttributeNumber(hasSign ? text + 1 : text, /*flags=*/0, context);
    if (!number)
        return;
    if (hasSign) {
        // Clamped first, so that the sign of no number is beyond 32 bits.
        const std::int32_t steps = std::clamp(*number, -kMostSteps, kMostSteps);
        KeepFontStep(payload, rule, *text == '-' ? -steps : steps, context);
        return;
    }
    const FontSize& size = SizeOf(*number);
    KeepEnum(payload, rule, size.enumerator, VALUE_UNKNOWN, context);
    DeclareSize(payload, size, context);
}
