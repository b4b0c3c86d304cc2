#pragma once

#include "filter/html_filter_context.h"

#include <array>
#include <cstdint>

// What stands in front of the text of a list item.

/// Marker styles, as a ListLevel keeps them. Any other number counts as MARKER_DECIMAL.
enum MarkerStyle : std::uint32_t {
    MARKER_NONE = 0,
    MARKER_DISC = 1,
    MARKER_CIRCLE = 2,
    MARKER_SQUARE = 3,
    MARKER_DECIMAL = 4,
    MARKER_UPPER_ALPHA = 5,
    MARKER_LOWER_ALPHA = 6,
    MARKER_UPPER_ROMAN = 7,
    MARKER_LOWER_ROMAN = 8,
};

constexpr char16_t kBullet = 0x2022;

/// The text of a number, zero-terminated.
using MarkerText = std::array<char16_t, 64>;

/// The marker style of a list-style-type keyword (a ZVCSSValue); otherwise for a keyword that has
/// none.
std::uint32_t markerStyleOf(std::uint32_t keyword, std::uint32_t otherwise);

/// The number of an item in a style that counts. Letters and Roman numerals have none for 0, and
/// Roman numerals end at 3,999. Styles that don't count give decimals.
MarkerText markerNumber(std::uint16_t number, std::uint32_t style);

/// Delivers an item's marker and the gap behind it. style: any but MARKER_NONE.
void deliverMarker(std::uint32_t style, std::uint16_t number, HtmlFilterContext& context);
