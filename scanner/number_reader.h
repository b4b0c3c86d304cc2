#pragma once

#include <cstdint>

/// Reads a number: sign, digits, fraction, upper-case exponent. length bounds all reading; what
/// can't be read is 0.
extern "C" __attribute__((visibility("default"))) void HTMLWToF(
    const char16_t* text, std::uint32_t length, double* result);
