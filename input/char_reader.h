#pragma once

#include "filter/html_filter_context.h"
#include "input/charset.h"
#include "input/stream_block.h"

#include <bit>
#include <cstdint>
#include <cstring>

// The character reader: frames the bytes of the stream into characters by currentCharSet. Positions
// are byte positions of the stream. What nearly every character needs is inline: all that is said
// to be within the buffer asks the host for nothing.

/// The end of the input, as a character.
constexpr std::int32_t kEndOfInput = -1;

/// A set with one of these bits has more than one byte a character, or states.
constexpr std::uint16_t kMultiByteBits = 0x6000;

/// The sets in which also a byte below 0x80 can be a part of something: bit n stands for all codes
/// whose low six bits are n. Another code with the same bits is only read the slow way.
constexpr std::uint64_t kEntangledSets = std::uint64_t{1} << (CHARSET_JIS & 0x3F)
    | std::uint64_t{1} << (CHARSET_ISO_2022_JP & 0x3F) | std::uint64_t{1} << (CHARSET_HZ & 0x3F)
    | std::uint64_t{1} << (CHARSET_ISO_2022_KR & 0x3F);

/// Whether the byte is a character of its own number, without any effect but that on recentBytes.
/// False is no statement: such a byte is for readCharSlow.
inline bool isPlainByte(std::uint8_t byte, std::uint16_t charSet)
{
    if (byte < 0x80)
        return ((kEntangledSets >> (charSet & 0x3F)) & 1) == 0;
    return (charSet & kMultiByteBits) == 0 && charSet != CHARSET_DEFAULT;
}

/// Notes a byte of a character in recentBytes, from which the oldest falls out.
inline void noteRecentByte(std::uint8_t byte, HtmlFilterContext& context)
{
    // The four places as one word: this stands in the innermost loop of the filter.
    static_assert(sizeof context.recentBytes == sizeof(std::uint64_t));
    std::uint64_t places = 0;
    std::memcpy(&places, context.recentBytes, sizeof places);
    if constexpr (std::endian::native == std::endian::little)
        places = places >> 16 | std::uint64_t{byte} << 48;
    else
        places = places << 16 | byte;
    std::memcpy(context.recentBytes, &places, sizeof places);
}

/// readChar for everything that the inline part leaves over.
std::int32_t readCharSlow(HtmlFilterContext& context);

/// The next character, or kEndOfInput with STATUS_END_OF_INPUT set. Two-byte characters and UTF-16
/// units are sign-extended from 16 bits; UTF-8 gives up to 31 bits.
inline std::int32_t readChar(HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    if (block.bytesLeft > 0 && context.unicodeBomMode == 0
        && (context.statusFlags & STATUS_END_OF_INPUT) == 0) {
        const std::uint8_t byte = *block.next;
        if (isPlainByte(byte, context.currentCharSet)) {
            --block.bytesLeft;
            ++block.next;
            noteRecentByte(byte, context);
            return byte;
        }
    }
    return readCharSlow(context);
}

/// peekChar for everything that the inline part leaves over.
std::uint16_t peekCharSlow(std::uint16_t n, HtmlFilterContext& context);

/// The n-th following unit (1 is the next) without consuming it: a raw byte, or a UTF-16 unit; 0
/// when statusFlags is not 0 already, and for an n of 0; 0xFFFF at the end of the input, with
/// STATUS_END_OF_INPUT left set.
inline std::uint16_t peekChar(std::uint16_t n, HtmlFilterContext& context)
{
    const StreamBlock& block = *context.stream;
    if (context.statusFlags == 0 && context.unicodeBomMode == 0 && n != 0 && n <= block.bytesLeft)
        return block.next[n - 1];
    return peekCharSlow(n, context);
}

/// The n-th following raw byte; the position and the status stay. 0xFFFF at the end of the input; 0
/// when statusFlags is not 0 already, and for an n of 0.
std::uint16_t peekByte(std::uint16_t n, HtmlFilterContext& context);

/// unreadChars for everything that the inline part leaves over.
void unreadCharsSlow(std::uint32_t n, HtmlFilterContext& context);

/// Moves back n bytes; in UTF-16 n units, which are 2n bytes unless the last one read was a lone
/// byte at the end of the input. Leaves the status alone.
inline void unreadChars(std::uint32_t n, HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    const std::uint32_t taken = block.bytesValid - static_cast<std::uint32_t>(block.bytesLeft);
    if (n > taken || context.unicodeBomMode != 0) {
        unreadCharsSlow(n, context);
        return;
    }
    block.bytesLeft += static_cast<std::int32_t>(n);
    block.next -= n;
}

/// Moves to a position; 0xFFFFFFFF is ignored. Answers the position at which the stream then is, or
/// 0xFFFFFFFF when the host's seek failed. Leaves the status alone.
std::uint32_t seekTo(std::uint32_t position, HtmlFilterContext& context);

/// The position; 0xFFFFFFFF when STATUS_END_OF_INPUT is set.
inline std::uint32_t currentPosition(const HtmlFilterContext& context)
{
    if ((context.statusFlags & STATUS_END_OF_INPUT) != 0)
        return 0xFFFFFFFF;
    return blockPosition(*context.stream);
}

// Reading in bulk. Who has found in bufferedBytes a stretch of plain bytes can use it where it lies
// and take it with skipBufferedBytes, to the same effect as that many calls of readChar.

/// Whether each byte below 0x80 is one character of its own number, as isPlainByte tells of a
/// single byte. False in UTF-16, JIS and the sets with escapes.
inline bool readsBytesAsCharacters(const HtmlFilterContext& context)
{
    return context.unicodeBomMode == 0 && isPlainByte(0, context.currentCharSet);
}

/// The bytes still in the buffer, and their count: 0 when the next read would go to the host, at
/// the end of the input and in UTF-16. Good until the next operation of this header but
/// skipBufferedBytes.
inline const std::uint8_t* bufferedBytes(const HtmlFilterContext& context, std::uint32_t& count)
{
    const StreamBlock& block = *context.stream;
    const bool usable = context.unicodeBomMode == 0
        && (context.statusFlags & STATUS_END_OF_INPUT) == 0 && block.bytesLeft > 0;
    count = usable ? static_cast<std::uint32_t>(block.bytesLeft) : 0;
    return block.next;
}

/// Takes `count` of the buffered bytes, all of them plain.
inline void skipBufferedBytes(std::uint32_t count, HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    block.bytesLeft -= static_cast<std::int32_t>(count);
    block.next += count;
    for (std::uint32_t place = count < 4 ? count : 4; place > 0; --place)
        noteRecentByte(*(block.next - place), context);
}
