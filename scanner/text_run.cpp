#include "scanner/text_run.h"

#include "input/char_reader.h"
#include "input/decoders.h"
#include "scanner/markup_units.h"
#include "support/unit_words.h"
#include "support/wstring.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

using zorvan::kEveryUnit;

constexpr std::uint64_t kEveryByte = 0x0101'0101'0101'0101;
constexpr std::uint64_t kHighBits = 0x80 * kEveryByte;
constexpr std::uint32_t kBlock = 8;

constexpr bool kWordsAreReadable = std::endian::native == std::endian::little;

/// Which bytes are a unit of ordinary text each, of the same number. 0 and "<" never are.
enum class PlainBytes { Ascii, AllButUpperControls, All };

PlainBytes plainBytesOf(const HtmlFilterContext& context)
{
    if ((context.currentCharSet & kMultiByteBits) != 0)
        return PlainBytes::Ascii;
    return context.currentCharSet == CHARSET_DEFAULT ? PlainBytes::AllButUpperControls
                                                     : PlainBytes::All;
}

template <PlainBytes kPlain> bool isPlain(std::uint8_t byte)
{
    if (byte < 0x80)
        return byte != 0 && byte != '<';
    return kPlain == PlainBytes::All || (kPlain == PlainBytes::AllButUpperControls && byte >= 0xA0);
}

/// A word whose lowest set high bit is that of the first byte that is 0. Those above may be wrong.
constexpr std::uint64_t markZeros(std::uint64_t bytes) { return (bytes - kEveryByte) & ~bytes; }

/// A word whose lowest set bit is the high bit of the first byte that isn't plain. 0 when all eight
/// are. Bits above that one may be wrong.
template <PlainBytes kPlain> std::uint64_t markOthers(std::uint64_t bytes)
{
    std::uint64_t marks = markZeros(bytes) | markZeros(bytes ^ (std::uint64_t{'<'} * kEveryByte));
    if constexpr (kPlain == PlainBytes::Ascii)
        marks |= bytes;
    else if constexpr (kPlain == PlainBytes::AllButUpperControls)
        marks |= markZeros((bytes & 0xE0 * kEveryByte) ^ kHighBits);
    return marks & kHighBits;
}

std::uint64_t wordAt(const std::uint8_t* bytes)
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// The leading bytes that are plain.
template <PlainBytes kPlain>
std::uint32_t countPlain(const std::uint8_t* bytes, std::uint32_t count)
{
    std::uint32_t length = 0;
    if constexpr (kWordsAreReadable) {
        for (; length + kBlock <= count; length += kBlock) {
            const std::uint64_t marks = markOthers<kPlain>(wordAt(bytes + length));
            if (marks != 0)
                return length + static_cast<std::uint32_t>(std::countr_zero(marks)) / 8;
        }
    }
    while (length < count && isPlain<kPlain>(bytes[length]))
        ++length;
    return length;
}

/// Bytes of the buffer on their way to units. Room for units is written to beyond what is taken.
struct Taking {
    const std::uint8_t* next;
    const std::uint8_t* end;
    char16_t* units;
    char16_t* unitsEnd;

    bool hasRoom() const { return units != unitsEnd; }
    std::ptrdiff_t bytesLeft() const { return end - next; }
    std::ptrdiff_t unitsLeft() const { return unitsEnd - units; }

    void takeOneByte() { *units++ = *next++; }
};

/// The four lower bytes of a word as the four units of one.
constexpr std::uint64_t widened(std::uint64_t bytes)
{
    constexpr std::uint64_t kEveryOtherPair = 0x0000'FFFF'0000'FFFF;
    bytes &= 0xFFFF'FFFF;
    bytes = (bytes | bytes << 16) & kEveryOtherPair;
    return (bytes | bytes << 8) & 0xFF * kEveryUnit;
}

void storeUnits(char16_t* place, std::uint64_t units) { std::memcpy(place, &units, sizeof units); }

/// Takes plain bytes, up to the first other.
template <PlainBytes kPlain> void takePlain(Taking& taking)
{
    if constexpr (kWordsAreReadable) {
        while (taking.bytesLeft() >= kBlock && taking.unitsLeft() >= kBlock) {
            const std::uint64_t word = wordAt(taking.next);
            const std::uint64_t marks = markOthers<kPlain>(word);
            storeUnits(taking.units, widened(word));
            storeUnits(taking.units + 4, widened(word >> 32));
            const std::uint32_t count
                = marks == 0 ? kBlock : static_cast<std::uint32_t>(std::countr_zero(marks)) / 8;
            taking.next += count;
            taking.units += count;
            if (marks != 0)
                return;
        }
    }
    while (taking.hasRoom() && taking.next != taking.end && isPlain<kPlain>(*taking.next))
        taking.takeOneByte();
}

/// Takes characters of the default set.
void takeDefault(Taking& taking)
{
    for (;;) {
        takePlain<PlainBytes::AllButUpperControls>(taking);
        if (!taking.hasRoom() || taking.next == taking.end)
            return;
        const std::uint32_t byte = *taking.next;
        const std::uint16_t unit = byte >= 0x80 && byte < 0xA0 ? kDefaultSetUpper[byte - 0x80] : 0;
        if (unit == 0)
            return;
        *taking.units++ = unit;
        ++taking.next;
    }
}

/// Takes up to four characters of two well-formed bytes of UTF-8 at once, when there are eight
/// bytes and room for four units. Answers false when there was none.
bool takeUtf8Pairs(Taking& taking)
{
    if (!kWordsAreReadable || taking.bytesLeft() < 8 || taking.unitsLeft() < 4)
        return false;
    // Each unit of the word has the lead byte below and the other one above.
    const std::uint64_t word = wordAt(taking.next);
    const std::uint64_t units = (word & 0x1F * kEveryUnit) << 6 | ((word >> 8) & 0x3F * kEveryUnit);
    const std::uint64_t notOverlong = (units & 0x780 * kEveryUnit) + 0x7F80 * kEveryUnit;
    const std::uint64_t others = ((word & 0xC0E0 * kEveryUnit) ^ 0x80C0 * kEveryUnit)
        | (~notOverlong & 0x8000 * kEveryUnit);
    const auto count = others == 0 ? 4 : std::countr_zero(others) / 16;
    storeUnits(taking.units, units);
    taking.next += 2 * count;
    taking.units += count;
    return count != 0;
}

/// Takes one UTF-8 character of two or three bytes. Answers false when it is something else, isn't
/// whole in the buffer or needs care.
bool takeUtf8Character(Taking& taking)
{
    const std::uint8_t* const lead = taking.next;
    std::uint32_t value = 0;
    std::ptrdiff_t length = 0;
    if (lead[0] >= 0xC2 && lead[0] < 0xE0 && taking.bytesLeft() >= 2) {
        value = (lead[0] & 0x1Fu) << 6 | (lead[1] & 0x3Fu);
        length = 2;
    } else if (lead[0] >= 0xE0 && lead[0] < 0xF0 && taking.bytesLeft() >= 3) {
        value = (lead[0] & 0x0Fu) << 12 | (lead[1] & 0x3Fu) << 6 | (lead[2] & 0x3Fu);
        length = 3;
    }
    if (value < 0x80 || value == 0xFFFF)
        return false;
    *taking.units++ = static_cast<char16_t>(value);
    taking.next += length;
    return true;
}

void takeUtf8(Taking& taking)
{
    while (taking.hasRoom() && taking.next != taking.end) {
        if (*taking.next >= 0x80) {
            if (!takeUtf8Pairs(taking) && !takeUtf8Character(taking))
                return;
            continue;
        }
        if (!isPlain<PlainBytes::Ascii>(*taking.next))
            return;
        // Between words there is mostly but one.
        taking.takeOneByte();
        if (taking.next != taking.end && *taking.next < 0x80)
            takePlain<PlainBytes::Ascii>(taking);
    }
}

/// Takes characters of a set with pairs, whose trail bytes are taken whatever they are. No pair is
/// a unit that needs care: no lead byte is 0 or 0xFF.
template <bool kEuc> void takePairs(Taking& taking, const LeadBytes& leads)
{
    while (taking.hasRoom() && taking.next != taking.end) {
        const std::uint32_t first = *taking.next;
        if (first < 0x80) {
            if (!isPlain<PlainBytes::Ascii>(*taking.next))
                return;
            takePlain<PlainBytes::Ascii>(taking);
        } else if (!leads.isLead[first]) {
            taking.takeOneByte();
        } else {
            if (taking.bytesLeft() < 2)
                return;
            const std::uint32_t second = taking.next[1];
            if constexpr (kEuc)
                *taking.units++ = static_cast<char16_t>(
                    shiftJisFromJis(static_cast<std::int32_t>(first) - kEucBias,
                        static_cast<std::int32_t>(second) - kEucBias));
            else
                *taking.units++ = static_cast<char16_t>(first << 8 | second);
            taking.next += 2;
        }
    }
}

void takeText(Taking& taking, const HtmlFilterContext& context)
{
    if ((context.currentCharSet & kMultiByteBits) == 0) {
        if (plainBytesOf(context) == PlainBytes::All)
            takePlain<PlainBytes::All>(taking);
        else
            takeDefault(taking);
    } else if (context.currentCharSet == CHARSET_UTF8) {
        takeUtf8(taking);
    } else if (context.currentCharSet == CHARSET_EUC_JP) {
        takePairs</*kEuc=*/true>(taking, leadBytesOf(CHARSET_EUC_JP));
    } else {
        takePairs</*kEuc=*/false>(taking, leadBytesOf(context.currentCharSet));
    }
}

/// Notes the bytes of delivered units as the character reader does: of a pair both, of what was
/// read as one value the low one.
void noteRecentUnits(const char16_t* units, std::uint32_t count, HtmlFilterContext& context)
{
    const bool hasPairs
        = (context.currentCharSet & kMultiByteBits) != 0 && context.currentCharSet != CHARSET_UTF8;
    for (std::uint32_t place = std::min(count, 4u); place > 0; --place) {
        const char16_t unit = units[count - place];
        if (hasPairs && unit > 0xFF)
            noteRecentByte(static_cast<std::uint8_t>(unit >> 8), context);
        noteRecentByte(static_cast<std::uint8_t>(unit), context);
    }
}

/// Whether Scan would do nothing but read a character, once it has emptied the token buffer.
bool deliversPlainText(const HtmlFilterContext& context)
{
    return context.rawTextMode != RAW_TEXT_LENIENT && context.pendingChars->length == 0
        && context.statusFlags == 0 && readsBytesAsCharacters(context);
}

} // namespace

std::uint32_t countTextBytes(const HtmlFilterContext& context)
{
    if (!readsBytesAsCharacters(context))
        return 0;
    std::uint32_t count = 0;
    const std::uint8_t* bytes = bufferedBytes(context, count);
    switch (plainBytesOf(context)) {
    case PlainBytes::Ascii:
        return countPlain<PlainBytes::Ascii>(bytes, count);
    case PlainBytes::AllButUpperControls:
        return countPlain<PlainBytes::AllButUpperControls>(bytes, count);
    case PlainBytes::All:
        break;
    }
    return countPlain<PlainBytes::All>(bytes, count);
}

std::uint32_t scanTextRun(char16_t* destination, std::uint32_t capacity, HtmlFilterContext& context)
{
    if (!deliversPlainText(context))
        return 0;
    std::uint32_t buffered = 0;
    const std::uint8_t* const bytes = bufferedBytes(context, buffered);
    Taking taking = {bytes, bytes + buffered, destination, destination + capacity};
    takeText(taking, context);
    const auto count = static_cast<std::uint32_t>(taking.units - destination);
    if (count == 0)
        return 0;
    StreamBlock& block = *context.stream;
    block.bytesLeft -= static_cast<std::int32_t>(taking.next - bytes);
    block.next = taking.next;
    noteRecentUnits(destination, count, context);
    if (context.tokenBuffer != nullptr)
        clearTokenText(context.tokenBuffer, kTokenLimit);
    return count;
}
