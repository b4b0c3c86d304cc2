#include "scanner/text_run.h"

#include "input/char_reader.h"
#include "support/wstring.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr std::uint64_t kEveryByte = 0x0101'0101'0101'0101;
constexpr std::uint32_t kBlock = 16;
constexpr std::uint64_t kHighBits = 0x80 * kEveryByte;

/// A word whose lowest set bit is the high bit of the first byte that is no ASCII text: 0, "<" or
/// from 0x80 on. 0 when all eight are. Bits above that one may be wrong.
std::uint64_t markOtherBytes(std::uint64_t bytes)
{
    const std::uint64_t brackets = bytes ^ (std::uint64_t{'<'} * kEveryByte);
    const std::uint64_t zeros = (bytes - kEveryByte) | (brackets - kEveryByte);
    return (zeros | bytes) & kHighBits;
}

bool isAsciiText(std::uint8_t byte) { return byte != 0 && byte != '<' && byte < 0x80; }

/// The leading bytes that are ASCII text.
std::uint32_t countAsciiText(const std::uint8_t* bytes, std::uint32_t count)
{
    std::uint32_t length = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; length + 8 <= count; length += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes + length, sizeof word);
            const std::uint64_t marks = markOtherBytes(word);
            if (marks != 0)
                return length + static_cast<std::uint32_t>(std::countr_zero(marks)) / 8;
        }
    }
    while (length < count && isAsciiText(bytes[length]))
        ++length;
    return length;
}

/// The first byte from 0x80 on that is a character of its own number in the set, 0x100 for none.
std::uint32_t firstPlainHighByte(const HtmlFilterContext& context)
{
    if ((context.currentCharSet & kMultiByteBits) != 0)
        return 0x100;
    return context.currentCharSet == CHARSET_DEFAULT ? 0xA0 : 0x80;
}

std::uint32_t countText(
    const std::uint8_t* bytes, std::uint32_t count, const HtmlFilterContext& context)
{
    const std::uint32_t firstHigh = firstPlainHighByte(context);
    std::uint32_t length = countAsciiText(bytes, count);
    while (length < count && bytes[length] >= firstHigh) {
        ++length;
        length += countAsciiText(bytes + length, count - length);
    }
    return length;
}

/// Widens bytes to units. In blocks of a fixed length, which compilers turn into a few
/// instructions.
void widen(char16_t* destination, const std::uint8_t* bytes, std::uint32_t count)
{
    std::uint32_t index = 0;
    for (; index + kBlock <= count; index += kBlock) {
        for (std::uint32_t place = 0; place < kBlock; ++place)
            destination[index + place] = bytes[index + place];
    }
    for (; index < count; ++index)
        destination[index] = bytes[index];
}

/// Takes plain bytes from the buffer. Answers how many.
std::uint32_t takePlainBytes(
    char16_t* destination, std::uint32_t capacity, HtmlFilterContext& context)
{
    std::uint32_t count = 0;
    const std::uint8_t* bytes = bufferedBytes(context, count);
    count = countText(bytes, std::min(count, capacity), context);
    widen(destination, bytes, count);
    skipBufferedBytes(count, context);
    return count;
}

/// Takes UTF-8 characters of two or three bytes from the buffer, up to what is something else or
/// needs care. Answers how many.
std::uint32_t takeUtf8Units(
    char16_t* destination, std::uint32_t capacity, HtmlFilterContext& context)
{
    std::uint32_t count = 0;
    const std::uint8_t* bytes = bufferedBytes(context, count);
    std::uint32_t taken = 0;
    std::uint32_t units = 0;
    while (units < capacity && count - taken >= 3) {
        const std::uint8_t* lead = bytes + taken;
        std::uint32_t value = 0;
        if (lead[0] >= 0xC2 && lead[0] < 0xE0)
            value = (lead[0] & 0x1Fu) << 6 | (lead[1] & 0x3Fu);
        else if (lead[0] >= 0xE0 && lead[0] < 0xF0)
            value = (lead[0] & 0x0Fu) << 12 | (lead[1] & 0x3Fu) << 6 | (lead[2] & 0x3Fu);
        if (value < 0x80 || value == 0xFFFF)
            break;
        taken += lead[0] < 0xE0 ? 2 : 3;
        destination[units++] = static_cast<char16_t>(value);
    }
    StreamBlock& block = *context.stream;
    block.bytesLeft -= static_cast<std::int32_t>(taken);
    block.next += taken;
    for (std::uint32_t place = std::min(units, 4u); place > 0; --place)
        noteRecentByte(static_cast<std::uint8_t>(destination[units - place]), context);
    return units;
}

/// Whether Scan would do nothing but read a character. The token buffer is emptied by Scan.
bool deliversPlainText(const HtmlFilterContext& context)
{
    return context.rawTextMode != RAW_TEXT_LENIENT && context.pendingChars->length == 0
        && context.statusFlags == 0 && readsBytesAsCharacters(context)
        && (context.tokenBuffer == nullptr || context.tokenBuffer[0] == 0);
}

} // namespace

std::uint32_t countTextBytes(const HtmlFilterContext& context)
{
    if (!readsBytesAsCharacters(context))
        return 0;
    std::uint32_t count = 0;
    const std::uint8_t* bytes = bufferedBytes(context, count);
    return countText(bytes, count, context);
}

std::uint32_t scanTextRun(char16_t* destination, std::uint32_t capacity, HtmlFilterContext& context)
{
    if (!deliversPlainText(context))
        return 0;
    std::uint32_t delivered = takePlainBytes(destination, capacity, context);
    if (context.currentCharSet != CHARSET_UTF8)
        return delivered;
    while (delivered < capacity) {
        const std::uint32_t units
            = takeUtf8Units(destination + delivered, capacity - delivered, context);
        if (units == 0)
            break;
        delivered += units;
        delivered += takePlainBytes(destination + delivered, capacity - delivered, context);
    }
    return delivered;
}
