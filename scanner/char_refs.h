#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

/// The value of a reference's name: without "&", zero-terminated, "#" and digits for a number. 0 if
/// unknown.
std::int32_t resolveCharRef(const char16_t* name, HtmlFilterContext& context);

/// Reads a reference of an attribute value behind its "&". buffer: capacity units (32), receives
/// the text read from the "&" on. Answers the value, or "&" with the stream right behind the "&".
std::uint16_t scanCharRef(char16_t* buffer, std::uint32_t capacity, HtmlFilterContext& context);

/// A reference of running text. text: zero-terminated, at the "&". Answers the units that it takes
/// and its value, or 0 when it is none.
std::uint32_t textCharRef(const char16_t* text, std::uint32_t& value, HtmlFilterContext& context);
