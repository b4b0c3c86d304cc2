#include "support/length.h"

#include "support/text_numbers.h"
#include "support/zv_string.h"

namespace {

/// How many of the unit make an inch; 0 for a unit that has no size of its own.
double unitsPerInch(ZVLinearUnits units, std::int32_t dotsPerInch)
{
    switch (units) {
    case UNITS_INCHES:
        return 1;
    case UNITS_CENTIMETERS:
        return 2.54;
    case UNITS_MILLIMETERS:
        return 25.4;
    case UNITS_PICAS:
        return 6;
    case UNITS_POINTS:
        return 72;
    case UNITS_PIXELS:
        return dotsPerInch;
    default:
        return 0;
    }
}

} // namespace

namespace zorvan {

Length::Length(const String& text) { parse(text, &value, &units); }

bool Length::parse(const String& text, float* number, ZVLinearUnits* unit)
{
    return lengthFromText(text.data, text.length, number, unit);
}

float Length::getValueAsUnits(ZVLinearUnits target, std::int32_t dotsPerInch) const
{
    if (target == units)
        return value;
    const double perInch = unitsPerInch(units, dotsPerInch);
    const double targetPerInch = unitsPerInch(target, dotsPerInch);
    if (perInch <= 0 || targetPerInch <= 0)
        return 0;
    return roundToFloat(value * targetPerInch / perInch);
}

} // namespace zorvan
