#pragma once

#include "filter/html_filter_context.h"
#include "input/char_reader.h"

#include <cstdint>

// The inner half of the character reader: the multi-byte sets, and how a character leaves it.

/// Modes of the sets with escapes, in iso2022State; host identifiers.
enum Iso2022State : std::uint32_t {
    ISO2022_ASCII = 0x10000100,
    ISO2022_JIS_ROMAN = 0xA0102,
    ISO2022_JIS_X0208 = 0xF0C0000,
    ISO2022_HZ_GB = 0xF050000,
    ISO2022_KOREAN = 0xF060000,
};

constexpr std::uint32_t kShiftOut = 0x0E;
constexpr std::uint32_t kShiftIn = 0x0F;

/// The end met by a read.
inline std::int32_t endInput(HtmlFilterContext& context)
{
    context.statusFlags |= STATUS_END_OF_INPUT;
    return kEndOfInput;
}

/// A character that takes one place of recentBytes.
inline std::int32_t deliverOneByte(std::uint32_t value, HtmlFilterContext& context)
{
    noteRecentByte(static_cast<std::uint8_t>(value), context);
    return static_cast<std::int32_t>(value);
}

/// A character that was read as two bytes: it takes two places of recentBytes, the high byte first,
/// and is sign-extended.
inline std::int32_t deliverTwoBytes(std::uint32_t value, HtmlFilterContext& context)
{
    noteRecentByte(static_cast<std::uint8_t>(value >> 8), context);
    noteRecentByte(static_cast<std::uint8_t>(value), context);
    return static_cast<std::int16_t>(value);
}

/// kShiftOut or kShiftIn: a character at once in every set of bytes, and in the Korean one a change
/// of state too.
inline std::int32_t deliverShift(std::uint32_t byte, HtmlFilterContext& context)
{
    if (context.currentCharSet == CHARSET_ISO_2022_KR)
        context.iso2022State = byte == kShiftOut ? ISO2022_KOREAN : ISO2022_ASCII;
    return deliverOneByte(byte, context);
}

/// The character that begins with a byte just taken, which is none of the two shifts, in a set with
/// one of kMultiByteBits. What follows the byte is never validated.
std::int32_t decodeMultiByte(std::uint32_t byte, HtmlFilterContext& context);
