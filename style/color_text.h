#pragma once

#include <cstdint>

/// Reads a color by its name or its hexadecimal digits. Answers whether out is one, 0x00BBGGRR; for
/// an empty text the answer is true and out stays. A CSS keyword is none, and out is all ones then.
/// lenient: as attributes write colors, where the "#" may be missing and digits that are none are
/// no color; else they are black. Made for char and char16_t.
template <class Ch>
bool parseColor(const Ch* text, std::uint32_t length, bool lenient, std::uint32_t& out);

extern template bool parseColor(
    const char* text, std::uint32_t length, bool lenient, std::uint32_t& out);
extern template bool parseColor(
    const char16_t* text, std::uint32_t length, bool lenient, std::uint32_t& out);
