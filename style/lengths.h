#pragma once

#include <cstdint>

class HtmlLengthValue;
class HtmlValue;

// From lengths to pixels. Font sizes are in pixels.

/// Whether a length hangs on a font size: em or ex.
bool isRelative(const HtmlLengthValue& length);

/// The pixels of a length: whole ones for em and ex, unrounded ones for any other unit.
float lengthInPixels(const HtmlLengthValue& length, std::uint32_t fontSize);

/// The same without a fraction; what does not fit is -2,147,483,648.
std::int32_t wholePixels(const HtmlLengthValue& length, std::uint32_t fontSize);

/// What fontSizeInPixels answers for a value that gives no size.
constexpr std::uint32_t kNoFontSize = 0xFFFFFFFF;

/// The size that a font-size value gives in a parent of some size: names, percentages and lengths;
/// kNoFontSize for larger, smaller and all else.
std::uint32_t fontSizeInPixels(const HtmlValue& value, std::uint32_t parentSize);
