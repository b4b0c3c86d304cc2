#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

class HtmlWStringValue;

// The fonts of a document: fontNames holds them in the order of first use, and their indexes there
// are what the host knows them by.

constexpr std::int32_t kNoFont = -1;

/// The index of the font that a font-family value names first: the text up to the first comma,
/// compared exactly. kNoFont when the document has no such font.
std::int32_t findFont(const HtmlWStringValue& family, HtmlFilterContext& context);

/// The same for a text of length units.
std::int32_t findFont(const char16_t* text, std::uint32_t length, HtmlFilterContext& context);

/// As findFont, but a font that is missing is added.
std::int32_t findOrAddFont(const HtmlWStringValue& family, HtmlFilterContext& context);
std::int32_t findOrAddFont(const char16_t* text, std::uint32_t length, HtmlFilterContext& context);
