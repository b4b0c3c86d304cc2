#include "input/char_reader.h"

#include "input/decoders.h"

namespace {

constexpr std::uint16_t kLittleEndian = 254;

/// The unit of two bytes; the second may be kNoByte.
std::uint16_t utf16Unit(std::uint32_t first, std::uint32_t second, std::uint16_t byteOrder)
{
    const std::uint32_t unit
        = byteOrder == kLittleEndian ? second * 256 + first : first * 256 + second;
    return static_cast<std::uint16_t>(unit);
}

/// A unit of 0xFFFF reads as -1, the end of the input, to who looks at the value only.
std::int32_t readUtf16(HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    const std::uint32_t first = takeByte(block);
    if (first == kNoByte)
        return endInput(context);
    const std::uint32_t second = takeByte(block);
    if (second == kNoByte)
        block.loneUnitEnd = blockPlace(block);
    return deliverTwoBytes(utf16Unit(first, second, context.unicodeBomMode), context);
}

/// The n-th following byte, kNoByte at the end, 0 for an n of 0. The position stays.
std::uint32_t lookAhead(std::uint32_t n, StreamBlock& block)
{
    if (n != 0 && n <= static_cast<std::uint32_t>(block.bytesLeft))
        return block.next[n - 1];
    const std::int64_t start = blockPlace(block);
    std::uint32_t byte = 0;
    for (; n != 0 && byte != kNoByte; --n)
        byte = takeByte(block);
    moveBlock(block, start);
    return byte;
}

/// The n-th following unit as in lookAhead; `ended` when it is none but the end.
std::uint16_t lookAheadUtf16(std::uint32_t n, bool& ended, HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    const std::int64_t start = blockPlace(block);
    std::uint16_t unit = 0;
    for (; n != 0 && !ended; --n) {
        const std::uint32_t first = takeByte(block);
        ended = first == kNoByte;
        unit = ended ? 0xFFFF : utf16Unit(first, takeByte(block), context.unicodeBomMode);
    }
    moveBlock(block, start);
    return unit;
}

} // namespace

std::int32_t readCharSlow(HtmlFilterContext& context)
{
    if ((context.statusFlags & STATUS_END_OF_INPUT) != 0)
        return kEndOfInput;
    if (context.unicodeBomMode != 0)
        return readUtf16(context);
    const std::uint32_t byte = takeByte(*context.stream);
    if (byte == kNoByte)
        return endInput(context);
    if (byte == kShiftOut || byte == kShiftIn)
        return deliverShift(byte, context);
    if ((context.currentCharSet & kMultiByteBits) != 0)
        return decodeMultiByte(byte, context);
    if (context.currentCharSet == CHARSET_DEFAULT && byte >= 0x80 && byte <= 0x9F)
        return deliverOneByte(kDefaultSetUpper[byte - 0x80], context);
    return deliverOneByte(byte, context);
}

std::uint16_t peekCharSlow(std::uint16_t n, HtmlFilterContext& context)
{
    if (context.statusFlags != 0)
        return 0;
    bool ended = false;
    std::uint16_t unit = 0;
    if (context.unicodeBomMode != 0) {
        unit = lookAheadUtf16(n, ended, context);
    } else {
        unit = static_cast<std::uint16_t>(lookAhead(n, *context.stream));
        ended = unit == kNoByte;
    }
    if (ended)
        context.statusFlags |= STATUS_END_OF_INPUT;
    return unit;
}

std::uint16_t peekByte(std::uint16_t n, HtmlFilterContext& context)
{
    if (context.statusFlags != 0)
        return 0;
    return static_cast<std::uint16_t>(lookAhead(n, *context.stream));
}

void unreadCharsSlow(std::uint32_t n, HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    std::int64_t bytes = n;
    if (context.unicodeBomMode != 0) {
        const bool behindLoneUnit = n != 0 && blockPlace(block) == block.loneUnitEnd;
        bytes = bytes * 2 - (behindLoneUnit ? 1 : 0);
    }
    // A host that fails here fails again when the next byte is taken, which is then the end.
    moveBlock(block, placeFromHere(block, -bytes));
}

std::uint32_t seekTo(std::uint32_t position, HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    if (position == 0xFFFFFFFF)
        return blockPosition(block);
    return moveBlock(block, position) ? position : 0xFFFFFFFF;
}
