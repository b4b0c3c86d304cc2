#include "support/text_numbers.h"

#include "support/abstract_string.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

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

bool isDigit(char character) { return character >= '0' && character <= '9'; }

const char* skipDigits(const char* position, const char* end)
{
    return std::find_if_not(position, end, isDigit);
}

/// The number beyond the range of double that the text is: infinite, or so small that it is 0.
double unreachableNumber(const char* digits, const char* point)
{
    const bool large = std::any_of(digits, point, [](char digit) { return digit != '0'; });
    return large ? std::numeric_limits<double>::infinity() : 0;
}

} // namespace

namespace zorvan {

double numberFromText(const char* text, std::int32_t length, std::int32_t* end)
{
    const char* const limit = text + length;
    const char* position = text;
    const bool negative = position != limit && *position == '-';
    if (position != limit && (*position == '-' || *position == '+'))
        ++position;

    const char* const digits = position;
    const char* const point = skipDigits(digits, limit);
    position = point;
    if (limit - point > 1 && point[0] == '.' && isDigit(point[1]))
        position = skipDigits(point + 1, limit);
    const bool readable = position != digits;
    if (end != nullptr)
        *end = readable ? static_cast<std::int32_t>(position - text) : 0;
    if (!readable)
        return 0;

    double number = 0;
    const auto result = std::from_chars(digits, position, number, std::chars_format::fixed);
    if (result.ec == std::errc::result_out_of_range)
        number = unreachableNumber(digits, point);
    return negative ? -number : number;
}

bool lengthFromText(const char* text, std::int32_t length, float* number, ZVLinearUnits* units)
{
    std::int32_t end = 0;
    const double read = numberFromText(text, length, &end);
    if (end == 0)
        return false;
    const AbstractString<char> rest(text + end, length - end);
    for (const UnitName& row : kUnitNames) {
        if (!rest.equalsIgnoreCase(row.name))
            continue;
        *number = roundToFloat(read);
        *units = row.units;
        return true;
    }
    return false;
}

float roundToFloat(double number)
{
    // Half a step beyond the greatest float the nearest one is infinite; a cast there would be
    // undefined.
    constexpr double kFirstInfinite = 0x1.ffffffp+127;
    if (std::abs(number) >= kFirstInfinite)
        return std::copysign(
            std::numeric_limits<float>::infinity(), static_cast<float>(number < 0 ? -1 : 1));
    const double greatest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(number, -greatest, greatest));
}

} // namespace zorvan
