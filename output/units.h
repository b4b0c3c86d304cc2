#pragma once

#include "tree/html_value.h"

#include <cstdint>

// From what a document says to the numbers that go out.

constexpr std::uint32_t kTwipsPerPixel = 15;
constexpr std::uint32_t kColorBits = 0xFF'FFFF; ///< of a color's number, what goes out

/// Whole pixels as twips; what is too much wraps.
inline std::uint32_t twips(std::int32_t pixels)
{
    return static_cast<std::uint32_t>(pixels) * kTwipsPerPixel;
}

/// The whole pixels of a length that hangs on no font size; 0 for em and ex.
inline std::int32_t pixelsOf(const HtmlLengthValue& length)
{
    return truncateToInt32(length.pixels());
}
