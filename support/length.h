#pragma once

#include "support/export.h"

#include <cstdint>

/// Units of a Length.
enum ZVLinearUnits : std::uint32_t {
    UNITS_NONE = 0,
    UNITS_EM = 1,
    UNITS_EX = 2,
    UNITS_INCHES = 3,
    UNITS_CENTIMETERS = 4,
    UNITS_MILLIMETERS = 5,
    UNITS_PICAS = 6,
    UNITS_PERCENT = 7,
    UNITS_PIXELS = 24,
    UNITS_POINTS = 25,
};

namespace zorvan {

using ::ZVLinearUnits;

class String;

/// A number and its unit.
class ZV_EXPORT Length {
public:
    /// 0 pixels.
    Length() = default;
    /// Reads the text as parse does; a text that can't be read gives 0 pixels.
    explicit Length(const String& text);
    Length(float number, ZVLinearUnits unit)
        : value(number)
        , units(unit)
    {
    }

    /// Reads a number, with a sign if need be, and a unit right behind it, in any case: em, ex, px,
    /// in, cm, mm, pt, pc or %. A number without a unit is in pixels. False, with both results left
    /// alone, when the text is anything else. A number beyond the range of float is infinite.
    static bool parse(const String& text, float* number, ZVLinearUnits* unit);

    void setValue(float number, ZVLinearUnits unit)
    {
        value = number;
        units = unit;
    }

    /// The length in another unit. dotsPerInch says how large a pixel is. em, ex and percent hang
    /// on what they are used for: from and to them the result is 0, unless the units are the same;
    /// so it is for pixels when dotsPerInch is not above 0.
    float getValueAsUnits(ZVLinearUnits target, std::int32_t dotsPerInch) const;

    float value = 0;
    ZVLinearUnits units = UNITS_PIXELS;
};

} // namespace zorvan
