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

/// What the bytes 0x80 to 0x9F are in the default set; 0 is dropped when text is stored.
// QUIRK(CharReader.DefaultSetReplacesControlBytes): 0x84 and 0x88 are the high closing quote and
// the caret, and the euro's 0x80 is nothing, as documents are converted out there.
inline constexpr std::uint16_t kDefaultSetUpper[32] = {
    0, 0, 0x201A, 0x0192, 0x201D, 0x2026, 0x2020, 0x2021, // 0x80
    0x2038, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0, 0, // 0x88
    0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 0x90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0, 0x0178, // 0x98
};

/// The bytes of a set that begin a pair. All others are characters by themselves.
struct LeadBytes {
    bool isLead[256];
};

/// The pairs of a set with one of kMultiByteBits. Means nothing for UTF-8, JIS and the sets with
/// escapes, which are framed in other ways.
const LeadBytes& leadBytesOf(std::uint16_t charSet);

/// The Shift-JIS form of a JIS character. The numbers are signed: trail bytes that are none may be
/// below 0, and the end of the input is far above 0xFF.
inline std::uint32_t shiftJisFromJis(std::int32_t first, std::int32_t second)
{
    std::int32_t lead = 0;
    // QUIRK(Decoders.JisRowsAtTheSeam): rows 0x5F and 0x60 go with the first group.
    if (first >= 0x21 && first <= 0x60)
        lead = (first + 1) / 2 + 0x70;
    else if (first >= 0x3D && first <= 0x7E)
        lead = (first + 1) / 2 + 0xB0;
    std::int32_t trail = second + 0x7E;
    if (first % 2 != 0)
        trail = second + 0x1F + (second > 0x5F ? 1 : 0);
    return static_cast<std::uint32_t>(lead * 256 + (trail & 0xFF));
}

/// By how much the bytes of EUC-JP are above those of JIS.
constexpr std::int32_t kEucBias = 0x80;

/// The character that begins with a byte just taken, which is none of the two shifts, in a set with
/// one of kMultiByteBits. What follows the byte is never validated.
std::int32_t decodeMultiByte(std::uint32_t byte, HtmlFilterContext& context);
