#include "style/lengths.h"

#include "style/cascade.h"
#include "tree/html_value.h"

namespace {

// A pixel is three quarters of a point, and a point about 1.33333 pixels: sizes in em go through
// points, and what the two factors leave over decides where the rounding goes.
constexpr double kPointsPerPixel = 0.75;
constexpr double kPixelsPerPoint = 1.33333;
constexpr double kExPerEm = 0.5;

std::int32_t relativePixels(const HtmlLengthValue& length, std::uint32_t fontSize)
{
    // The product of number and size is a float, the factors are doubles.
    const float product = length.length.value * static_cast<float>(fontSize);
    if (length.length.units == UNITS_EX)
        return truncateToInt32(product * kExPerEm);
    return truncateToInt32(product * kPointsPerPixel * kPixelsPerPoint + 0.5);
}

} // namespace

bool isRelative(const HtmlLengthValue& length)
{
    return length.length.units == UNITS_EM || length.length.units == UNITS_EX;
}

float lengthInPixels(const HtmlLengthValue& length, std::uint32_t fontSize)
{
    return isRelative(length) ? static_cast<float>(relativePixels(length, fontSize))
                              : length.pixels();
}

std::int32_t wholePixels(const HtmlLengthValue& length, std::uint32_t fontSize)
{
    return isRelative(length) ? relativePixels(length, fontSize) : truncateToInt32(length.pixels());
}

std::uint32_t fontSizeInPixels(const HtmlValue& value, std::uint32_t parentSize)
{
    if (const auto* name = HtmlCssKeywordValue::from(&value))
        return namedFontSize(name->keyword);
    if (const auto* percent = HtmlPercentValue::from(&value)) {
        const float share = percent->number / 100.0F;
        return static_cast<std::uint32_t>(truncateToInt32(share * static_cast<float>(parentSize)));
    }
    if (const auto* length = HtmlLengthValue::from(&value))
        return static_cast<std::uint32_t>(wholePixels(*length, parentSize));
    return kNoFontSize;
}
