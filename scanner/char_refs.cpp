#include "scanner/char_refs.h"

#include "input/char_reader.h"
#include "scanner/character_set.h"
#include "scanner/markup_units.h"
#include "scanner/named_entities.h"
#include "support/ut_strings.h"

namespace {

constexpr CharacterSet kReferenceCharacters = kNameCharacters | kNameExtras;
constexpr CharacterSet kNumberReferenceCharacters = kReferenceCharacters | "#";

/// What ends a reference in text.
constexpr CharacterSet kTextReferenceEnds = "; \t\n\r\b";

/// More units than any name of the table has: a longer one in text is not looked up, so that a
/// text of nothing but "&" and letters is read once.
constexpr std::uint32_t kTextNameCapacity = 32;

bool isDecimalDigit(char16_t unit) { return unit >= '0' && unit <= '9'; }

/// The value of a hexadecimal digit, 16 for anything else.
std::uint32_t hexValue(char16_t unit)
{
    if (isDecimalDigit(unit))
        return unit - u'0';
    const auto folded = static_cast<char16_t>(unit | 0x20);
    if (folded >= 'a' && folded <= 'f')
        return folded - u'a' + 10u;
    return 16;
}

// The numbers wrap at 32 bits, which is meant: no value is too large to be read.
std::uint32_t hexNumber(const char16_t* digits)
{
    std::uint32_t value = 0;
    for (; hexValue(*digits) < 16; ++digits)
        value = value * 16 + hexValue(*digits);
    return value;
}

std::uint32_t decimalNumber(const char16_t* digits)
{
    std::uint32_t value = 0;
    for (; isDecimalDigit(*digits); ++digits)
        value = value * 10 + (*digits - u'0');
    return value;
}

bool isHexMark(char16_t unit) { return unit == 'x' || unit == 'X'; }

std::uint32_t namedReference(const char16_t* name)
{
    std::int32_t low = 0;
    std::int32_t high = static_cast<std::int32_t>(kNamedEntityCount) - 1;
    while (low <= high) {
        const std::int32_t middle = (low + high) / 2;
        const NamedEntity& row = kNamedEntityTable[middle];
        const int order = UTwsstrcmp(name, row.name);
        if (order == 0)
            return row.value;
        if (order > 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return 0;
}

/// The name of a reference in a value, from index 1 of the buffer on, terminated. Answers the index
/// behind it, or 0 for one that has no room.
std::uint32_t readReferenceName(const CharacterSet& members, char16_t* buffer,
    std::uint32_t capacity, HtmlFilterContext& context)
{
    std::uint32_t index = 1;
    for (;;) {
        const std::int32_t character = readChar(context);
        if (context.statusFlags != 0)
            break;
        if (!members.contains(character)) {
            unreadChars(1, context);
            break;
        }
        if (index == capacity - 1)
            return 0;
        buffer[index++] = static_cast<char16_t>(character);
    }
    buffer[index] = 0;
    return index;
}

/// The value of the reference whose name is next, 0 if it is none; its text goes to the buffer.
std::uint16_t readReference(char16_t* buffer, std::uint32_t capacity, HtmlFilterContext& context)
{
    const std::uint16_t first = peekChar(1, context);
    if (first == kPeekedEnd || context.statusFlags != 0)
        return 0;
    const CharacterSet& members = first == '#' ? kNumberReferenceCharacters : kReferenceCharacters;
    const std::uint32_t index = readReferenceName(members, buffer, capacity, context);
    if (index == 0)
        return 0;
    const auto value = static_cast<std::uint16_t>(resolveCharRef(buffer + 1, context));
    if (value == 0 || peekChar(1, context) != ';')
        return value;
    readChar(context);
    if (index < capacity - 1) {
        buffer[index] = ';';
        buffer[index + 1] = 0;
    }
    return value;
}

/// The units of a number's digits, with its "#" and "x".
std::uint32_t numberLength(const char16_t* name)
{
    const bool hexadecimal = isHexMark(name[1]);
    std::uint32_t length = hexadecimal ? 2 : 1;
    while (hexadecimal ? hexValue(name[length]) < 16 : isDecimalDigit(name[length]))
        ++length;
    return length;
}

/// Copies a name of text, terminated. Answers its units, 0 for one too long to be known.
std::uint32_t copyTextName(const char16_t* text, char16_t* name)
{
    std::uint32_t length = 0;
    while (text[length] != 0 && !kTextReferenceEnds.contains(text[length])) {
        if (length == kTextNameCapacity)
            return 0;
        name[length] = text[length];
        ++length;
    }
    name[length] = 0;
    return length;
}

} // namespace

std::int32_t resolveCharRef(const char16_t* name, [[maybe_unused]] HtmlFilterContext& context)
{
    std::uint32_t value = 0;
    if (name[0] != '#')
        value = namedReference(name);
    else if (isHexMark(name[1]))
        value = hexNumber(name + 2);
    else
        value = decimalNumber(name + 1);
    return static_cast<std::int32_t>(value);
}

std::uint16_t scanCharRef(char16_t* buffer, std::uint32_t capacity, HtmlFilterContext& context)
{
    const std::uint32_t start = currentPosition(context);
    buffer[0] = '&';
    const std::uint16_t value = readReference(buffer, capacity, context);
    context.statusFlags = 0;
    if (value != 0)
        return value;
    // What was read behind the "&" comes again as plain text, so it is no text of a reference.
    buffer[1] = 0;
    seekTo(start, context);
    return '&';
}

std::uint32_t textCharRef(const char16_t* text, std::uint32_t& value, HtmlFilterContext& context)
{
    const std::uint32_t skipped = text[0] == '&' ? 1 : 0;
    const char16_t* const place = text + skipped;
    char16_t name[kTextNameCapacity + 1];
    std::uint32_t length = 0;
    std::uint32_t found = 0;
    if (place[0] == '#') {
        // The digits end where the name does, so they can be read where they stand.
        length = numberLength(place);
        found = static_cast<std::uint32_t>(resolveCharRef(place, context));
    } else {
        length = copyTextName(place, name);
        found = length == 0 ? 0 : static_cast<std::uint32_t>(resolveCharRef(name, context));
    }
    if (found == 0)
        return 0;
    value = found;
    return skipped + length + (place[length] == ';' ? 1 : 0);
}
