#pragma once

#include "filter/html_filter_context.h"
#include "scanner/character_set.h"

#include <cstdint>

// Names, attributes and values. A position is an index of UTF-16 units into the caller's buffer, 16
// bits wide; it wraps at 65,536. A limit is a number of units, of which the buffer has two more;
// some routines cut it to 16 bits. What doesn't fit is read and not stored.

/// First and last stream position of a value.
struct ValueRange {
    std::uint32_t first;
    std::uint32_t last;
};

/// The attributes of a tag up to its ">", recorded in tagAttributes.
void scanAttributes(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context);

/// An attribute value, quoted or not. keepRaw: copy quotes and references as they stand.
/// decodePercent: replace "%" and two digits. range: null, or receives the value's place.
void scanValue(char16_t* buffer, std::uint16_t& position, std::uint32_t limit, bool keepRaw,
    bool decodePercent, HtmlFilterContext& context, ValueRange* range = nullptr);

/// As scanValue, for a value whose quote is next.
void scanQuoted(char16_t* buffer, std::uint16_t& position, std::uint32_t limit, bool keepRaw,
    bool decodePercent, HtmlFilterContext& context, ValueRange* range = nullptr);

/// Copies up to a delimiter, which is kept or unread. Answers the start of what was copied, which
/// is terminated below the limit. At the end of the input the position goes back to that start.
char16_t* copyUntil(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& delimiters, bool keepDelimiter, HtmlFilterContext& context);

/// Copies name characters and those of extra. Answers the start of the name, zero-terminated. Its
/// limit is cut to 16 bits and ends the name.
char16_t* copyName(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& extra, HtmlFilterContext& context);

/// Copies white space. Its limit is cut to 16 bits.
void copySpace(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context);

/// Reads the value of an attribute of the tag just scanned from the stream again, decoded, into
/// destination (capacity units with the terminator). Answers 1, or 0 and an empty text without one.
std::uint32_t readAttributeValue(std::uint32_t attribute, char16_t* destination,
    std::uint32_t capacity, HtmlFilterContext& context, ValueRange* range = nullptr);
