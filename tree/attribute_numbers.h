#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>
#include <optional>

// Attribute texts as numbers and colors. All texts are zero-terminated; flags are reserved, 0.

/// The integer at the beginning of a text, negative when a percent sign ends it; nothing for a text
/// that has no digit there. It wraps at 32 bits.
std::optional<std::int32_t> ParseAttributeNumber(
    const char16_t* text, std::uint32_t flags, HtmlFilterContext& context);

/// Reads a color, by its name or hexadecimal digits: 1, with the color in colorOut (0x00BBGGRR), or
/// 0 for a text that is none.
int ParseColorAttribute(
    const char16_t* text, std::uint32_t flags, std::uint32_t& colorOut, HtmlFilterContext& context);

/// Compares a value with an ASCII keyword without regard to case: 0 when equal, else the sign of
/// the first difference.
int AttributeEquals(const char16_t* value, const char* keyword, HtmlFilterContext& context);
