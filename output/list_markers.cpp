#include "output/list_markers.h"

#include "output/host_calls.h"
#include "output/text.h"
#include "support/css_names.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

constexpr char16_t kWhiteBullet = 0x25CB;
constexpr char16_t kSmallSquare = 0x25AA;

/// Digits of a number, the last one first.
class ReversedDigits {
public:
    void add(char16_t digit) { digits_[count_++] = digit; }

    MarkerText text() const
    {
        MarkerText text{};
        std::reverse_copy(
            digits_.begin(), digits_.begin() + static_cast<std::ptrdiff_t>(count_), text.begin());
        return text;
    }

private:
    MarkerText digits_{};
    std::size_t count_ = 0;
};

MarkerText decimalNumber(std::uint32_t number)
{
    constexpr std::uint32_t kBase = 10;
    ReversedDigits digits;
    do {
        digits.add(static_cast<char16_t>(u'0' + number % kBase));
        number /= kBase;
    } while (number != 0);
    return digits.text();
}

/// Counts a to z, aa to az and so on: there is no digit for 0.
MarkerText alphabeticNumber(std::uint32_t number, char16_t firstLetter)
{
    constexpr std::uint32_t kLetters = 26;
    ReversedDigits digits;
    while (number != 0) {
        --number;
        digits.add(static_cast<char16_t>(firstLetter + number % kLetters));
        number /= kLetters;
    }
    return digits.text();
}

void addTimes(std::uint32_t times, char16_t digit, ReversedDigits& digits)
{
    for (; times != 0; --times)
        digits.add(digit);
}

/// ones, fives: the numerals of the powers of ten, from the lowest, and of five times the power.
MarkerText romanNumber(std::uint32_t number, std::u16string_view ones, std::u16string_view fives)
{
    constexpr std::uint32_t kLargest = 3'999;
    ReversedDigits digits;
    number = std::min(number, kLargest);
    for (std::size_t power = 0; number != 0; ++power, number /= 10) {
        const std::uint32_t digit = number % 10;
        // 4 and 9 are one less than the numeral in front of which they put a one.
        const bool isOneLess = digit % 5 == 4;
        if (isOneLess)
            digits.add(digit == 9 ? ones[power + 1] : fives[power]);
        addTimes(isOneLess ? 1 : digit % 5, ones[power], digits);
        if (digit >= 5 && !isOneLess)
            digits.add(fives[power]);
    }
    return digits.text();
}

char16_t glyphOf(std::uint32_t style)
{
    switch (style) {
    case MARKER_DISC:
        return kBullet;
    case MARKER_CIRCLE:
        return kWhiteBullet;
    case MARKER_SQUARE:
        return kSmallSquare;
    default:
        return 0;
    }
}

} // namespace

std::uint32_t markerStyleOf(std::uint32_t keyword, std::uint32_t otherwise)
{
    switch (keyword) {
    case VALUE_NONE:
        return MARKER_NONE;
    case VALUE_DISC:
        return MARKER_DISC;
    case VALUE_CIRCLE:
        return MARKER_CIRCLE;
    case VALUE_SQUARE:
        return MARKER_SQUARE;
    case VALUE_DECIMAL:
    case VALUE_DECIMAL_LEADING_ZERO:
    case VALUE_GEORGIAN:
    case VALUE_LOWER_GREEK:
        return MARKER_DECIMAL;
    case VALUE_UPPER_ALPHA:
    case VALUE_UPPER_LATIN:
        return MARKER_UPPER_ALPHA;
    case VALUE_LOWER_ALPHA:
    case VALUE_LOWER_LATIN:
        return MARKER_LOWER_ALPHA;
    case VALUE_UPPER_ROMAN:
        return MARKER_UPPER_ROMAN;
    case VALUE_LOWER_ROMAN:
        return MARKER_LOWER_ROMAN;
    default:
        return otherwise;
    }
}

MarkerText markerNumber(std::uint16_t number, std::uint32_t style)
{
    switch (style) {
    case MARKER_UPPER_ALPHA:
        return alphabeticNumber(number, u'A');
    case MARKER_LOWER_ALPHA:
        return alphabeticNumber(number, u'a');
    case MARKER_UPPER_ROMAN:
        return romanNumber(number, u"IXCM", u"VLD");
    case MARKER_LOWER_ROMAN:
        return romanNumber(number, u"ixcm", u"vld");
    default:
        return decimalNumber(number);
    }
}

void deliverMarker(std::uint32_t style, std::uint16_t number, HtmlFilterContext& context)
{
    const char16_t glyph = glyphOf(style);
    context.paragraphFlags |= PARAGRAPH_HAS_CONTENT;
    if (glyph != 0) {
        deliverChar(glyph, context);
    } else {
        deliverText(markerNumber(number, style).data(), context);
        deliverChar(u'.', context);
    }
    SOEmitSpecial(SPECIAL_MARKER_GAP, context);
    SOEmitSpecial(SPECIAL_MARKER_GAP, context);
}
