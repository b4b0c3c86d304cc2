#include "input/decoders.h"

#include "support/ut_strings.h"

#include <bit>

namespace {

constexpr std::uint32_t kEscape = 0x1B;
constexpr std::uint32_t kGb2312Id = 0x13A80000;

bool within(std::uint32_t byte, std::uint32_t first, std::uint32_t last)
{
    return byte >= first && byte <= last;
}

/// Lead and trail byte as one number. At the end of the input the trail counts as 0xFF.
std::int32_t decodePair(std::uint32_t lead, HtmlFilterContext& context)
{
    const std::uint32_t trail = takeByte(*context.stream) & 0xFF;
    return deliverTwoBytes(lead * 256 + trail, context);
}

/// The Shift-JIS form of a JIS character. The numbers are signed: trail bytes that are none may be
/// below 0, and the end of the input is far above 0xFF.
std::uint32_t shiftJisFromJis(std::int32_t first, std::int32_t second)
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

std::int32_t decodeMultiByte(std::uint32_t byte, HtmlFilterContext& context)
{
    bool isLead = false;
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
    case CHARSET_EUC_JP:
        if (within(byte, 0xA1, 0xFE))
            return decodeJisPair(byte, /*bias=*/0x80, context);
        break;
    case CHARSET_SHIFT_JIS:
        isLead = within(byte, 0x81, 0x9F) || within(byte, 0xE0, 0xFC);
        break;
    case CHARSET_BIG5:
        isLead = within(byte, 0xA1, 0xC6) || within(byte, 0xC9, 0xF9);
        break;
    case CHARSET_GB2312:
        isLead = UTIsLeadByte(kGb2312Id, static_cast<std::uint8_t>(byte)) != 0;
        break;
    case CHARSET_KOREAN:
        isLead = within(byte, 0xA1, 0xAC) || within(byte, 0xB0, 0xC8) || within(byte, 0xCA, 0xFD);
        break;
    case CHARSET_GB_8BIT:
        isLead = within(byte, 0xA1, 0xFE);
        break;
    default:
        break;
    }
    return isLead ? decodePair(byte, context) : deliverOneByte(byte, context);
}
