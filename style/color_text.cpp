#include "style/color_text.h"

#include "style/text_lookup.h"
#include "support/color_names.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kNoColor = 0xFFFFFFFF;

/// Digits that count; what stands behind them does not.
constexpr std::uint32_t kColorDigits = 6;
constexpr std::uint32_t kShortColorDigits = 3;

/// Compares without regard to case: 0 when equal, else the sign of the first difference.
template <class Ch> int compareToName(const Ch* text, std::uint32_t length, const char* name)
{
    for (std::uint32_t i = 0;; ++i) {
        const std::uint32_t number = i < length ? foldedNumber(text[i]) : 0;
        const std::uint32_t letter = foldedNumber(name[i]);
        if (number != letter)
            return number < letter ? -1 : 1;
        if (letter == 0)
            return i < length ? 1 : 0;
    }
}

template <class Ch> const zorvan::ColorName* findColorName(const Ch* text, std::uint32_t length)
{
    std::uint32_t low = 0;
    std::uint32_t high = zorvan::kColorNameCount;
    while (low < high) {
        const std::uint32_t middle = (low + high) / 2;
        const int order = compareToName(text, length, zorvan::kColorNames[middle].name);
        if (order == 0)
            return &zorvan::kColorNames[middle];
        if (order < 0)
            high = middle;
        else
            low = middle + 1;
    }
    return nullptr;
}

/// The value of a hexadecimal digit, 16 for anything else.
template <class Ch> std::uint32_t hexDigit(Ch character)
{
    const std::uint32_t number = foldedNumber(character);
    if (number >= '0' && number <= '9')
        return number - '0';
    return number >= 'a' && number <= 'f' ? number - 'a' + 10 : 16;
}

/// The number 0xRRGGBB of the digits; false and 0 when there are none or one of them is no digit.
/// isMarked: a "#" stands in front of them, behind which three digits are each meant twice.
template <class Ch>
bool readDigits(const Ch* digits, std::uint32_t length, bool isMarked, std::uint32_t& number)
{
    number = 0;
    std::uint32_t doubled = 0;
    const std::uint32_t count = std::min(length, kColorDigits);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t digit = hexDigit(digits[i]);
        if (digit == 16) {
            number = 0;
            return false;
        }
        number = number * 16 + digit;
        doubled = doubled * 256 + digit * 17;
    }
    if (isMarked && length == kShortColorDigits)
        number = doubled;
    return count != 0;
}

/// 0xRRGGBB as 0x00BBGGRR.
constexpr std::uint32_t colorOf(std::uint32_t rgb)
{
    return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
}

} // namespace

template <class Ch>
bool parseColor(const Ch* text, std::uint32_t length, bool lenient, std::uint32_t& out)
{
    if (length == 0)
        return true;
    if (keywordOf(text, length) != VALUE_UNKNOWN) {
        out = kNoColor;
        return false;
    }
    if (const zorvan::ColorName* const known = findColorName(text, length)) {
        out = colorOf(known->rgb);
        return true;
    }
    const bool isMarked = zorvan::characterNumber(text[0]) == '#';
    const std::uint32_t skipped = isMarked ? 1 : 0;
    std::uint32_t number = 0;
    const bool hasDigits = readDigits(text + skipped, length - skipped, isMarked, number);
    out = colorOf(number);
    return lenient ? hasDigits : isMarked;
}

template bool parseColor(const char* text, std::uint32_t length, bool lenient, std::uint32_t& out);
template bool parseColor(
    const char16_t* text, std::uint32_t length, bool lenient, std::uint32_t& out);
