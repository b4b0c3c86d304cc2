#include "tree/attribute_numbers.h"

#include "style/color_text.h"
#include "support/text_search.h"
#include "support/ut_strings.h"

namespace {

constexpr std::uint32_t kNoDigit = 0xFF;

constexpr std::uint32_t foldedUnit(std::uint32_t unit)
{
    return unit >= 'A' && unit <= 'Z' ? unit + ('a' - 'A') : unit;
}

constexpr bool isDecimalDigit(char16_t unit) { return unit >= '0' && unit <= '9'; }

constexpr bool isHexLetter(char16_t unit)
{
    const std::uint32_t folded = foldedUnit(unit);
    return folded >= 'a' && folded <= 'f';
}

constexpr std::uint32_t hexDigit(char16_t unit)
{
    if (isDecimalDigit(unit))
        return unit - u'0';
    return isHexLetter(unit) ? foldedUnit(unit) - 'a' + 10 : kNoDigit;
}

/// A number on its way. The value wraps, which is meant: no number is too large to be read.
struct NumberReading {
    const char16_t* next;
    std::uint32_t value = 0;
    bool hasDigit = false;
};

void readHexadecimal(NumberReading& number)
{
    for (; hexDigit(*number.next) != kNoDigit; ++number.next) {
        number.value = number.value * 16 + hexDigit(*number.next);
        number.hasDigit = true;
    }
}

void readDecimal(NumberReading& number)
{
    for (; isDecimalDigit(*number.next) || *number.next == ','; ++number.next) {
        if (*number.next == ',')
            continue;
        number.value = number.value * 10 + (*number.next - u'0');
        number.hasDigit = true;
    }
    if (*number.next != '.')
        return;
    // A fraction counts for nothing but the percent sign behind it.
    for (++number.next; isDecimalDigit(*number.next); ++number.next)
        number.hasDigit = true;
}

} // namespace

std::optional<std::int32_t> ParseAttributeNumber(
    const char16_t* text, std::uint32_t /*flags*/, HtmlFilterContext& /*context*/)
{
    NumberReading number{*text == '"' ? text + 1 : text};
    if (*number.next == '#') {
        ++number.next;
        readHexadecimal(number);
    } else if (isHexLetter(*number.next)) {
        // QUIRK(AttributeNumbers.WordsOfHexadecimalLettersAreNumbers): "auto" is 10.
        readHexadecimal(number);
    } else {
        readDecimal(number);
    }
    if (!number.hasDigit)
        return std::nullopt;
    const bool isPercent = *number.next == '%';
    return static_cast<std::int32_t>(isPercent ? 0 - number.value : number.value);
}

int ParseColorAttribute(const char16_t* text, std::uint32_t /*flags*/, std::uint32_t& colorOut,
    HtmlFilterContext& context)
{
    if (context.embeddedMode != 0) {
        // Mail programs leave all sorts of things in front of the color.
        if (const char16_t* const mark = UTwstrchr(text, u'#'))
            text = mark;
    }
    std::uint32_t color = 0;
    const auto length = static_cast<std::uint32_t>(zorvan::textLength(text));
    if (length == 0 || !parseColor(text, length, /*lenient=*/true, color))
        return 0;
    colorOut = color;
    return 1;
}

int AttributeEquals(const char16_t* value, const char* keyword, HtmlFilterContext& /*context*/)
{
    for (;; ++value, ++keyword) {
        const std::uint32_t unit = foldedUnit(*value);
        const std::uint32_t letter = foldedUnit(static_cast<unsigned char>(*keyword));
        if (unit != letter)
            return unit < letter ? -1 : 1;
        if (unit == 0)
            return 0;
    }
}
