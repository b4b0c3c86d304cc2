#pragma once

#include <array>
#include <cstdint>

// What the rules of the style scanner ask about a single byte. Texts end at a byte 0, which is in
// no class, so that every run of a class ends by itself.

namespace css_rules {

/// Classes of bytes, as bits.
enum ByteClass : std::uint8_t {
    BYTE_SPACE = 0x01,
    BYTE_DIGIT = 0x02,
    BYTE_HEX = 0x04,
    BYTE_NAME_START = 0x08, ///< begins a name; a backslash may, but is none of these
    BYTE_NAME = 0x10,
    BYTE_URL = 0x20, ///< stands for itself in a url without quotes; the backslash is left out
    BYTE_STRING = 0x40, ///< stands for itself in a string; either quote is left out
};

/// By what its first byte is, a token is tried against a few rules only.
enum class TokenStart : std::uint8_t {
    Character, ///< is a token for itself
    End,
    Space,
    Quote,
    Name, ///< also a backslash, which begins one or is a character
    Digit,
    At,
    Bar,
    Colon,
    Dot,
    Exclamation,
    Hash,
    Less,
    Minus,
    Operator, ///< makes a token together with "="
    Slash,
};

constexpr std::uint8_t classesOf(int byte)
{
    const bool isDigit = byte >= '0' && byte <= '9';
    const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    const bool isHex = isDigit || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
    const bool isLineEnd = byte == '\n' || byte == '\r' || byte == '\f';
    // QUIRK(CssTokenizer.BytesBelowA0AreCharacters): 0x80 to 0x9F belong to no name, which cuts
    // names in UTF-8 to pieces.
    const bool isNonAscii = byte >= 0xA0;
    const bool isNameStart = isLetter || byte == '_' || isNonAscii;
    const bool isUrl
        = byte == '!' || (byte >= '#' && byte <= '&') || (byte >= '*' && byte <= '~') || isNonAscii;
    const bool isString = byte != 0 && !isLineEnd && byte != '\\' && byte != '"' && byte != '\'';
    return static_cast<std::uint8_t>((isLineEnd || byte == ' ' || byte == '\t' ? BYTE_SPACE : 0)
        | (isDigit ? BYTE_DIGIT : 0) | (isHex ? BYTE_HEX : 0) | (isNameStart ? BYTE_NAME_START : 0)
        | (isNameStart || isDigit || byte == '-' ? BYTE_NAME : 0)
        | (isUrl && byte != '\\' ? BYTE_URL : 0) | (isString ? BYTE_STRING : 0));
}

constexpr TokenStart startOf(int byte)
{
    const std::uint8_t classes = classesOf(byte);
    if ((classes & BYTE_SPACE) != 0)
        return TokenStart::Space;
    if ((classes & BYTE_NAME_START) != 0)
        return TokenStart::Name;
    if ((classes & BYTE_DIGIT) != 0)
        return TokenStart::Digit;
    switch (byte) {
    case 0:
        return TokenStart::End;
    case '"':
    case '\'':
        return TokenStart::Quote;
    case '\\':
        return TokenStart::Name;
    case '@':
        return TokenStart::At;
    case '|':
        return TokenStart::Bar;
    case ':':
        return TokenStart::Colon;
    case '.':
        return TokenStart::Dot;
    case '!':
        return TokenStart::Exclamation;
    case '#':
        return TokenStart::Hash;
    case '<':
        return TokenStart::Less;
    case '-':
        return TokenStart::Minus;
    case '~':
    case '^':
    case '$':
    case '*':
        return TokenStart::Operator;
    case '/':
        return TokenStart::Slash;
    }
    return TokenStart::Character;
}

constexpr auto kByteClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    for (int byte = 0; byte < 256; ++byte)
        classes[static_cast<std::uint8_t>(byte)] = classesOf(byte);
    return classes;
}();

constexpr auto kTokenStarts = [] {
    std::array<TokenStart, 256> starts{};
    for (int byte = 0; byte < 256; ++byte)
        starts[static_cast<std::uint8_t>(byte)] = startOf(byte);
    return starts;
}();

/// Whether a byte is in a class, or in one of several.
constexpr bool isIn(char byte, int classes)
{
    return (kByteClasses[static_cast<std::uint8_t>(byte)] & classes) != 0;
}

constexpr TokenStart tokenStart(char byte) { return kTokenStarts[static_cast<std::uint8_t>(byte)]; }

/// A letter in lower case; any other byte as it is.
constexpr char lowerCase(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte;
}

/// The value of a hexadecimal digit.
constexpr int hexValue(char digit)
{
    return isIn(digit, BYTE_DIGIT) ? digit - '0' : lowerCase(digit) - 'a' + 10;
}

} // namespace css_rules
