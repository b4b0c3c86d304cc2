#pragma once

#include "support/export.h"
#include "support/length.h"

#include <cstdint>

namespace zorvan {

// What String::toDouble and Length::parse do, for texts that no String holds: of the numbers of a
// style sheet none is worth an allocation.

/// Reads a decimal number as String::toDouble does. text: `length` characters, no terminator is
/// needed. Writes the number of characters read when `end` is not null, 0 without a digit.
ZV_EXPORT double numberFromText(const char* text, std::int32_t length, std::int32_t* end);

/// Reads a number with its unit as Length::parse does.
ZV_EXPORT bool lengthFromText(
    const char* text, std::int32_t length, float* number, ZVLinearUnits* units);

/// The nearest float; infinite beyond its range.
ZV_EXPORT float roundToFloat(double number);

} // namespace zorvan
