#include "support/length.h"

#include "support/zv_string.h"

#include <cmath>
#include <limits>

namespace {

struct UnitName {
    const char* name;
    ZVLinearUnits units;
};

constexpr UnitName kUnitNames[] = {
    {"", UNITS_PIXELS},
    {"px", UNITS_PIXELS},
    {"pt", UNITS_POINTS},
    {"em", UNITS_EM},
    {"%", UNITS_PERCENT},
    {"in", UNITS_INCHES},
    {"cm", UNITS_CENTIMETERS},
    {"mm", UNITS_MILLIMETERS},
    {"pc", UNITS_PICAS},
    {"ex", UNITS_EX},
};

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

float roundToFloat(double number)
{
    if (std::abs(number) > std::numeric_limits<float>::max())
        return std::copysign(
            std::numeric_limits<float>::infinity(), static_cast<float>(number < 0 ? -1 : 1));
    return static_cast<float>(number);
}

} // namespace

namespace zorvan {

Length::Length(const String& text) { parse(text, &value, &units); }

bool Length::parse(const String& text, float* number, ZVLinearUnits* unit)
{
    std::int32_t end = 0;
    const double read = text.toDouble(0, &end);
    if (end == 0)
        return false;
    const AbstractString<char> rest(text.data + end, text.length - end);
    for (const UnitName& row : kUnitNames) {
        if (!rest.equalsIgnoreCase(row.name))
            continue;
        *number = roundToFloat(read);
        *unit = row.units;
        return true;
    }
    return false;
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
