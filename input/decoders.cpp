#include "input/decoders.h"

#include <bit>
#include <initializer_list>

namespace {

constexpr std::uint32_t kEscape = 0x1B;

struct ByteRange {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr LeadBytes leadBytesIn(std::initializer_list<ByteRange> ranges)
{
    LeadBytes bytes = {};
    for (const ByteRange& range : ranges) {
        for (std::uint32_t byte = range.first; byte <= range.last; ++byte)
            bytes.isLead[byte] = true;
    }
    return bytes;
}

constexpr LeadBytes kNoLeadBytes = {};
constexpr LeadBytes kShiftJisLeadBytes = leadBytesIn({{0x81, 0x9F}, {0xE0, 0xFC}});
constexpr LeadBytes kBig5LeadBytes = leadBytesIn({{0xA1, 0xC6}, {0xC9, 0xF9}});
// What UTIsLeadByte answers for the set.
constexpr LeadBytes kGb2312LeadBytes = leadBytesIn({{0x81, 0xFE}});
constexpr LeadBytes kKoreanLeadBytes = leadBytesIn({{0xA1, 0xAC}, {0xB0, 0xC8}, {0xCA, 0xFD}});
constexpr LeadBytes kEucLeadBytes = leadBytesIn({{0xA1, 0xFE}});

/// Lead and trail byte as one number. At the end of the input the trail counts as 0xFF.
std::int32_t decodePair(std::uint32_t lead, HtmlFilterContext& context)
{
    const std::uint32_t trail = takeByte(*context.stream) & 0xFF;
    return deliverTwoBytes(lead * 256 + trail, context);
}

/// `bias` is what the bytes of the set are above those of JIS.
std::int32_t decodeJisPair(std::uint32_t byte, std::int32_t bias, HtmlFilterContext& context)
{
    const auto first = static_cast<std::int32_t>(byte);
    const auto second = static_cast<std::int32_t>(takeByte(*context.stream));
    return deliverTwoBytes(shiftJisFromJis(first - bias, second - bias), context);
}

/// The end of the input within a pair: it counts as read, so its low byte is among the recent ones.
std::int32_t endPair(HtmlFilterContext& context)
{
    noteRecentByte(0xFF, context);
    return endInput(context);
}

/// A character of two 7-bit bytes, the end of the input apart.
std::int32_t decodeIso2022JpPair(std::uint32_t first, HtmlFilterContext& context)
{
    const std::uint32_t second = takeByte(*context.stream);
    if (second == kNoByte) {
        endInput(context);
        return deliverOneByte(first, context);
    }
    return deliverTwoBytes(first * 256 + second, context);
}

/// The escape sequences stay in the text, byte by byte; here they only change the state.
std::int32_t decodeIso2022Jp(std::uint32_t byte, HtmlFilterContext& context)
{
    const std::uint16_t* recent = context.recentBytes;
    if (byte == kEscape) {
        if (peekByte(1, context) == '(') {
            const std::uint16_t designation = peekByte(2, context);
            if (designation == 'B')
                context.iso2022State = ISO2022_ASCII;
            else if (designation == 'J')
                context.iso2022State = ISO2022_JIS_ROMAN;
        }
        return deliverOneByte(byte, context);
    }
    if (recent[2] == kEscape && recent[3] == '$' && (byte == '@' || byte == 'B')) {
        context.iso2022State = ISO2022_JIS_X0208;
        return deliverOneByte(byte, context);
    }
    if (context.iso2022State == ISO2022_JIS_X0208)
        return decodeIso2022JpPair(byte, context);
    return deliverOneByte(byte, context);
}

std::int32_t decodeIso2022Kr(std::uint32_t byte, HtmlFilterContext& context)
{
    const std::uint16_t* recent = context.recentBytes;
    if (recent[0] == kEscape && recent[1] == '$') {
        if (recent[2] == ')' && recent[3] == 'C')
            context.iso2022State = ISO2022_ASCII;
        return deliverOneByte(byte, context);
    }
    if (context.iso2022State != ISO2022_KOREAN)
        return deliverOneByte(byte, context);
    const std::uint32_t second = takeByte(*context.stream);
    if (second == kNoByte)
        return endPair(context);
    return deliverTwoBytes(byte * 256 + second, context);
}

std::int32_t decodeHz(std::uint32_t byte, HtmlFilterContext& context)
{
    StreamBlock& block = *context.stream;
    while (byte == '~' && peekByte(1, context) == '\n') {
        takeByte(block);
        byte = takeByte(block);
    }
    if (byte == kNoByte)
        return endInput(context);
    if (byte == kShiftOut || byte == kShiftIn)
        return deliverShift(byte, context);
    if (byte == '~' && peekByte(1, context) == '}') {
        context.iso2022State = ISO2022_ASCII;
        return deliverOneByte(byte, context);
    }
    if (byte == '{' && context.recentBytes[3] == '~') {
        context.iso2022State = ISO2022_HZ_GB;
        return deliverOneByte(byte, context);
    }
    if (context.iso2022State != ISO2022_HZ_GB)
        return deliverOneByte(byte, context);
    const std::uint32_t second = takeByte(block);
    if (second == kNoByte)
        return endPair(context);
    return deliverTwoBytes(byte * 256 + second + 0x8080, context); // the 8-bit form
}

/// Bytes that follow are taken whatever they are, the end of the input included, which looks like a
/// byte of ones.
std::int32_t decodeUtf8(std::uint32_t lead, HtmlFilterContext& context)
{
    // The length is the number of leading ones; a lone continuation byte and 0xFE, 0xFF are the
    // character 0, which is dropped when text is stored.
    const std::int32_t length = std::countl_one(static_cast<std::uint8_t>(lead));
    if (length == 0)
        return deliverOneByte(lead, context);
    if (length == 1 || length > 6)
        return deliverOneByte(0, context);
    StreamBlock& block = *context.stream;
    const std::int32_t followers = length - 1;
    std::uint32_t value = lead & (0x7Fu >> length);
    if (followers <= block.bytesLeft) {
        const std::uint8_t* const end = block.next + followers;
        for (const std::uint8_t* next = block.next; next != end; ++next)
            value = value << 6 | (*next & 0x3Fu);
        block.next = end;
        block.bytesLeft -= followers;
    } else {
        for (std::int32_t i = 0; i < followers; ++i)
            value = value << 6 | (takeByte(block) & 0x3F);
    }
    return deliverOneByte(value, context);
}

} // namespace

const LeadBytes& leadBytesOf(std::uint16_t charSet)
{
    switch (charSet) {
    case CHARSET_SHIFT_JIS:
        return kShiftJisLeadBytes;
    case CHARSET_BIG5:
        return kBig5LeadBytes;
    case CHARSET_GB2312:
        return kGb2312LeadBytes;
    case CHARSET_KOREAN:
        return kKoreanLeadBytes;
    case CHARSET_EUC_JP:
    case CHARSET_GB_8BIT:
        return kEucLeadBytes;
    default:
        return kNoLeadBytes;
    }
}

std::int32_t decodeMultiByte(std::uint32_t byte, HtmlFilterContext& context)
{
    switch (context.currentCharSet) {
    case CHARSET_UTF8:
        return decodeUtf8(byte, context);
    case CHARSET_ISO_2022_JP:
        return decodeIso2022Jp(byte, context);
    case CHARSET_ISO_2022_KR:
        return decodeIso2022Kr(byte, context);
    case CHARSET_HZ:
        return decodeHz(byte, context);
    case CHARSET_JIS:
        return decodeJisPair(byte, /*bias=*/0, context);
    default:
        break;
    }
    if (!leadBytesOf(context.currentCharSet).isLead[byte])
        return deliverOneByte(byte, context);
    if (context.currentCharSet == CHARSET_EUC_JP)
        return decodeJisPair(byte, kEucBias, context);
    return decodePair(byte, context);
}
