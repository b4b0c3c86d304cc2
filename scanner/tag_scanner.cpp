#include "scanner/tag_scanner.h"

#include "input/char_reader.h"
#include "scanner/char_refs.h"
#include "scanner/markup_units.h"
#include "scanner/name_copy.h"
#include "support/html_names.h"

namespace {

constexpr CharacterSet kAttributeNameEnds = " \"=\n\r\t>\b";
constexpr CharacterSet kUnquotedEnds = "> \t\n\r\b";
constexpr CharacterSet kUnquotedStretchEnds = kUnquotedEnds | "&%";
constexpr CharacterSet kQuotedStretchEnds = "&\r\n%";

constexpr std::uint32_t kReferenceCapacity = 32;

bool isQuote(std::uint16_t unit) { return unit == '"' || unit == '\''; }

bool quoteOpensValue(const char16_t* buffer, std::uint16_t position)
{
    return position == 0 || kBehindThemQuotesOpen.contains(buffer[position - 1]);
}

/// Copies the plain bytes of the buffer that come in front of any delimiter, as so many calls of
/// readChar and appendUnit would. Not while places are watched, of which it passes over some.
void copyBufferedUntil(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& delimiters, HtmlFilterContext& context)
{
    const std::uint16_t charSet = context.currentCharSet;
    std::uint32_t buffered = 0;
    const std::uint8_t* const bytes = bufferedBytes(context, buffered);
    std::uint32_t count = 0;
    std::uint16_t place = position;
    for (; count < buffered; ++count) {
        const std::uint8_t byte = bytes[count];
        if (delimiters.contains(byte) || !isPlainByte(byte, charSet))
            break;
        appendUnit(byte, buffer, place, limit);
    }
    position = place;
    skipBufferedBytes(count, context);
}

/// Copies the buffered bytes that are members, all of them ASCII, up to the limit.
void copyBufferedName(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& members, HtmlFilterContext& context)
{
    if (context.statusFlags != 0 || !readsBytesAsCharacters(context))
        return;
    std::uint32_t buffered = 0;
    const std::uint8_t* const bytes = bufferedBytes(context, buffered);
    std::uint32_t count = 0;
    std::uint16_t place = position;
    while (count < buffered && place < limit && members.contains(bytes[count]))
        buffer[place++] = bytes[count++];
    position = place;
    skipBufferedBytes(count, context);
}

void takeUnit(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    appendUnit(readChar(context), buffer, position, limit);
}

/// A character reference of a value, whose "&" is next.
void scanReference(char16_t* buffer, std::uint16_t& position, std::uint32_t limit, bool keepRaw,
    HtmlFilterContext& context)
{
    readChar(context);
    char16_t reference[kReferenceCapacity];
    const std::uint16_t value = scanCharRef(reference, kReferenceCapacity, context);
    if (!keepRaw) {
        appendUnit(value, buffer, position, limit);
        return;
    }
    for (const char16_t* unit = reference; *unit != 0; ++unit)
        appendUnit(*unit, buffer, position, limit);
}

/// The value of a hexadecimal digit, -1 for anything else.
std::int32_t hexDigit(std::int32_t character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'A' && character <= 'F')
        return character - 'A' + 10;
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    return -1;
}

/// A "%" of a value, which is next. Decoded it takes the two characters behind it, whatever they
/// are.
void scanPercent(char16_t* buffer, std::uint16_t& position, std::uint32_t limit, bool decode,
    HtmlFilterContext& context)
{
    const std::int32_t percent = readChar(context);
    if (!decode) {
        appendUnit(percent, buffer, position, limit);
        return;
    }
    const std::int32_t high = hexDigit(readChar(context));
    const std::int32_t low = hexDigit(readChar(context));
    std::int32_t value = 0;
    if (high >= 0)
        value = low >= 0 ? high * 16 + low : high;
    appendUnit(value, buffer, position, limit);
}

/// The name of an attribute, up to a delimiter, which stays unread.
NameCopy scanAttributeName(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    NameCopy name;
    standAt(MarkupPlace::AttributeStart, context);
    while (!isKnownCut(context, &name)) {
        const std::int32_t character = readChar(context);
        if (context.statusFlags != 0)
            break;
        if (kAttributeNameEnds.contains(character)) {
            unreadChars(1, context);
            break;
        }
        name.add(static_cast<char16_t>(character));
        appendUnit(character, buffer, position, limit);
        standAt(
            name.isEmpty() ? MarkupPlace::NamelessAttribute : MarkupPlace::AttributeName, context);
    }
    buffer[position] = 0;
    return name;
}

void copySpaceAt(MarkupPlace place, char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    HtmlFilterContext& context)
{
    standAt(place, context);
    copySpace(buffer, position, limit, context);
}

/// The "=" of an attribute, which is next, and its value. pair: null, or receives the place.
void scanAttributeValue(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    TagAttribute* pair, HtmlFilterContext& context)
{
    takeUnit(buffer, position, limit, context);
    // Where bytes are read in pairs, the "=" can be a part of something, behind which a quote opens
    // nothing.
    const bool equals = context.unicodeBomMode != 0 || readsBytesAsCharacters(context);
    copySpaceAt(equals ? MarkupPlace::BehindEquals : MarkupPlace::Unwatched, buffer, position,
        limit, context);
    if (pair != nullptr)
        pair->position = currentPosition(context);
    scanValue(buffer, position, limit, /*keepRaw=*/true, /*decodePercent=*/false, context);
    copySpaceAt(MarkupPlace::BehindValue, buffer, position, limit, context);
}

/// One attribute, with the white space behind it.
void scanAttribute(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    const NameCopy name = scanAttributeName(buffer, position, limit, context);
    const std::uint32_t attribute = name.attribute();
    context.currentAttribute = attribute;
    TagAttribute* pair = nullptr;
    if (attribute != 0 && context.tagAttributeCount < kTagAttributeCapacity) {
        pair = &context.tagAttributes[context.tagAttributeCount++];
        *pair = {attribute, 0};
    }
    copySpaceAt(name.isEmpty() ? MarkupPlace::BehindNoName : MarkupPlace::BehindName, buffer,
        position, limit, context);
    const std::uint16_t next = peekChar(1, context);
    if (next == '=') {
        scanAttributeValue(buffer, position, limit, pair, context);
        return;
    }
    if (next == '"')
        takeUnit(buffer, position, limit, context);
    if (name.isEmpty()) {
        standAt(MarkupPlace::Swallowed, context);
        copyUntil(buffer, position, limit, ">", /*keepDelimiter=*/false, context);
    }
}

const TagAttribute* findTagAttribute(std::uint32_t attribute, const HtmlFilterContext& context)
{
    for (std::uint32_t index = 0; index < context.tagAttributeCount; ++index) {
        const TagAttribute& pair = context.tagAttributes[index];
        if (pair.attribute == attribute && pair.position != 0)
            return &pair;
    }
    return nullptr;
}

} // namespace

void scanAttributes(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    std::uint16_t next = 0;
    do {
        scanAttribute(buffer, position, limit, context);
        next = peekChar(1, context);
    } while (context.statusFlags == 0 && next != '>');
    context.currentAttribute = 0;
}

void scanValue(char16_t* buffer, std::uint16_t& position, std::uint32_t limit, bool keepRaw,
    bool decodePercent, HtmlFilterContext& context, ValueRange* range)
{
    if (isQuote(peekChar(1, context)) && quoteOpensValue(buffer, position)) {
        scanQuoted(buffer, position, limit, keepRaw, decodePercent, context, range);
        return;
    }
    if (range != nullptr)
        range->first = currentPosition(context);
    for (;;) {
        standAt(MarkupPlace::Value, context);
        if (isKnownCut(context))
            break;
        const std::uint16_t next = peekChar(1, context);
        if (context.statusFlags != 0 || kUnquotedEnds.contains(next))
            break;
        if (next == '&') {
            scanReference(buffer, position, limit, keepRaw, context);
        } else if (next == '%') {
            scanPercent(buffer, position, limit, decodePercent, context);
        } else {
            standAt(MarkupPlace::ValueStretch, context);
            copyUntil(
                buffer, position, limit, kUnquotedStretchEnds, /*keepDelimiter=*/false, context);
        }
    }
    if (range != nullptr)
        range->last = currentPosition(context) - 1;
}

void scanQuoted(char16_t* buffer, std::uint16_t& position, std::uint32_t limit, bool keepRaw,
    bool decodePercent, HtmlFilterContext& context, ValueRange* range)
{
    const std::uint16_t quote = peekChar(1, context);
    readChar(context);
    if (range != nullptr)
        range->first = currentPosition(context);
    if (keepRaw)
        appendUnit(quote, buffer, position, limit);
    CharacterSet stretchEnds = kQuotedStretchEnds;
    stretchEnds.add(quote);
    context.internals->cutMarkup.quote = quote == '"' ? 1 : 2;
    for (;;) {
        standAt(MarkupPlace::Value, context);
        if (isKnownCut(context))
            break;
        const std::uint16_t next = peekChar(1, context);
        if (context.statusFlags != 0 || next == kPeekedEnd)
            break;
        if (next == '&' && context.currentAttribute == ATTRIBUTE_HREF) {
            // QUIRK(TagScanner.QuotedHrefKeepsItsReferences): addresses with "&copy=" in a query
            // are common; unquoted ones are decoded all the same.
            takeUnit(buffer, position, limit, context);
        } else if (next == '&') {
            scanReference(buffer, position, limit, keepRaw, context);
        } else if (next == quote) {
            readChar(context);
            if (keepRaw)
                appendUnit(quote, buffer, position, limit);
            break;
        } else if (next == '\r' || next == '\n') {
            readChar(context);
        } else if (next == '%') {
            scanPercent(buffer, position, limit, decodePercent, context);
        } else {
            standAt(MarkupPlace::ValueStretch, context);
            copyUntil(buffer, position, limit, stretchEnds, /*keepDelimiter=*/false, context);
        }
    }
    context.internals->cutMarkup.quote = 0;
    if (range != nullptr)
        range->last = currentPosition(context) - 2;
}

char16_t* copyUntil(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& delimiters, bool keepDelimiter, HtmlFilterContext& context)
{
    const std::uint16_t start = position;
    while (context.statusFlags == 0 && !isKnownCut(context)) {
        if (!context.internals->cutMarkup.watching)
            copyBufferedUntil(buffer, position, limit, delimiters, context);
        const std::int32_t character = readChar(context);
        if (context.statusFlags != 0)
            break;
        if (delimiters.contains(character)) {
            if (keepDelimiter)
                appendUnit(character, buffer, position, limit);
            else
                unreadChars(1, context);
            break;
        }
        appendUnit(character, buffer, position, limit);
    }
    if (position < limit)
        buffer[position] = 0;
    if ((context.statusFlags & ~STATUS_HOST_STOP) != 0)
        position = start;
    return buffer + start;
}

char16_t* copyName(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& extra, HtmlFilterContext& context)
{
    const CharacterSet members = kNameCharacters | extra;
    const std::uint32_t end = cutLimit(limit);
    char16_t* const start = buffer + position;
    copyBufferedName(buffer, position, end, members, context);
    for (;;) {
        const std::int32_t character = readChar(context);
        if (context.statusFlags != 0)
            break;
        if (!members.contains(character) || position >= end) {
            unreadChars(1, context);
            break;
        }
        buffer[position++] = static_cast<char16_t>(character);
    }
    buffer[position] = 0;
    return start;
}

void copySpace(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    const std::uint32_t end = cutLimit(limit);
    while (!isKnownCut(context) && kMarkupSpace.contains(peekChar(1, context)))
        appendUnit(readChar(context) & 0xFF, buffer, position, end);
}

std::uint32_t readAttributeValue(std::uint32_t attribute, char16_t* destination,
    std::uint32_t capacity, HtmlFilterContext& context, ValueRange* range)
{
    const TagAttribute* pair = findTagAttribute(attribute, context);
    if (pair == nullptr || capacity == 0) {
        if (capacity != 0)
            destination[0] = 0;
        return 0;
    }
    const std::uint32_t resume = currentPosition(context);
    const std::uint16_t statusBefore = context.statusFlags;
    const std::uint32_t attributeBefore = context.currentAttribute;
    seekTo(pair->position, context);
    context.currentAttribute = attribute;
    std::uint16_t position = 0;
    scanValue(destination, position, capacity - 1, /*keepRaw=*/false, /*decodePercent=*/false,
        context, range);
    destination[position] = 0;
    context.currentAttribute = attributeBefore;
    // A set with escapes can frame the value differently this time and run into the end of the
    // input. That is no end of the document.
    if ((statusBefore & STATUS_END_OF_INPUT) == 0)
        context.statusFlags &= static_cast<std::uint16_t>(~STATUS_END_OF_INPUT);
    seekTo(resume, context);
    return 1;
}
