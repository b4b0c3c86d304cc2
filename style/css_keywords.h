#pragma once

#include "style/css_bytes.h"
#include "style/css_token.h"

#include <array>
#include <cstdint>
#include <string_view>

// The keywords of the style scanner that may hold escapes. `Bytes` is a pointer into a text that
// ends at a byte 0: const char*, or in tests a class that counts what is looked at.

namespace css_rules {

/// The colons that a name is a keyword behind.
enum class Colons : std::uint8_t { One, Two, Either };

struct PseudoKeyword {
    std::string_view name; ///< with the "(" that belongs to it
    CssTokenKind kind;
    Colons colons;
};

/// The names behind one or two colons, ascending.
constexpr auto kPseudoKeywords = std::to_array<PseudoKeyword>({
    {"active", CSS_ACTIVE, Colons::One},
    {"after", CSS_AFTER, Colons::Either},
    {"before", CSS_BEFORE, Colons::Either},
    {"checked", CSS_CHECKED, Colons::One},
    {"disabled", CSS_DISABLED, Colons::One},
    {"empty", CSS_EMPTY, Colons::One},
    {"enabled", CSS_ENABLED, Colons::One},
    {"first-child", CSS_FIRST_CHILD, Colons::One},
    {"first-letter", CSS_FIRST_LETTER, Colons::Either},
    {"first-line", CSS_FIRST_LINE, Colons::Either},
    {"first-of-type", CSS_FIRST_OF_TYPE, Colons::One},
    {"focus", CSS_FOCUS, Colons::One},
    {"hover", CSS_HOVER, Colons::One},
    {"lang(", CSS_LANG, Colons::One},
    {"last-child", CSS_LAST_CHILD, Colons::One},
    {"last-of-type", CSS_LAST_OF_TYPE, Colons::One},
    {"link", CSS_LINK, Colons::One},
    {"not(", CSS_NOT, Colons::One},
    {"nth-child(", CSS_NTH_CHILD, Colons::One},
    {"nth-last-child(", CSS_NTH_LAST_CHILD, Colons::One},
    {"nth-last-of-type(", CSS_NTH_LAST_OF_TYPE, Colons::One},
    {"nth-of-type(", CSS_NTH_OF_TYPE, Colons::One},
    {"only-child", CSS_ONLY_CHILD, Colons::One},
    {"only-of-type", CSS_ONLY_OF_TYPE, Colons::One},
    {"root", CSS_ROOT, Colons::One},
    {"selection", CSS_SELECTION, Colons::Two},
    {"target", CSS_TARGET, Colons::One},
    {"visited", CSS_VISITED, Colons::One},
});

struct AtKeyword {
    std::string_view name;
    CssTokenKind kind;
};

/// The names behind an "@" that may hold escapes.
constexpr auto kAtKeywords = std::to_array<AtKeyword>({
    {"import", CSS_IMPORT_SYM},
    {"page", CSS_PAGE_SYM},
    {"media", CSS_MEDIA_SYM},
});

constexpr bool ascendingWithoutPrefixes()
{
    for (std::size_t i = 1; i < kPseudoKeywords.size(); ++i) {
        const std::string_view name = kPseudoKeywords[i].name;
        const std::string_view before = kPseudoKeywords[i - 1].name;
        if (before >= name || name.substr(0, before.size()) == before)
            return false;
    }
    return true;
}
static_assert(ascendingWithoutPrefixes(), "the first keyword that fits has to be the longest");

/// The number of the first keyword that begins with each letter, and behind the letters the end.
constexpr auto kFirstPseudoKeyword = [] {
    std::array<std::uint8_t, 27> first{};
    std::uint8_t number = 0;
    for (std::size_t letter = 0; letter < first.size(); ++letter) {
        while (number < kPseudoKeywords.size()
            && static_cast<std::size_t>(kPseudoKeywords[number].name[0] - 'a') < letter)
            ++number;
        first[letter] = number;
    }
    return first;
}();

/// A byte of a keyword as it may be written, and where it ends.
template <class Bytes> struct Spelled {
    char byte; ///< letters in lower case; 0 for an escape that is no letter's
    Bytes end;
};

/// Behind one white space byte, or CR and LF, if there is one.
template <class Bytes> Bytes skipOneSpace(Bytes at)
{
    if (at[0] == '\r' && at[1] == '\n')
        return at + 2;
    return isIn(*at, BYTE_SPACE) ? at + 1 : at;
}

/// Reads the spelling of a letter behind a backslash: its code with up to four zeros in front and
/// one white space behind it, or the letter itself unless it is a hexadecimal digit.
// QUIRK(CssKeywords.CodeEndsBehindTwoDigits): the code has two digits and what follows them is the
// next letter, also where a name would take it for a further digit of the code.
template <class Bytes> Spelled<Bytes> readEscapedLetter(Bytes at)
{
    const auto letterOr0 = [](int code) {
        const char byte = lowerCase(static_cast<char>(code));
        return byte >= 'a' && byte <= 'z' ? byte : '\0';
    };
    if (!isIn(*at, BYTE_HEX))
        return {letterOr0(*at), at + 1};
    for (int zeros = 0; zeros < 4 && *at == '0'; ++zeros)
        ++at;
    if (!isIn(at[0], BYTE_HEX) || !isIn(at[1], BYTE_HEX))
        return {'\0', at};
    return {letterOr0(hexValue(at[0]) * 16 + hexValue(at[1])), skipOneSpace(at + 2)};
}

/// Reads what spells one byte of a keyword.
template <class Bytes> Spelled<Bytes> readSpelled(Bytes at)
{
    if (*at == '\\')
        return readEscapedLetter(at + 1);
    return {lowerCase(*at), at + 1};
}

/// The end of a keyword that stands at a place in any spelling; the place itself when it does not.
template <class Bytes> Bytes skipKeyword(Bytes at, std::string_view keyword)
{
    Bytes end = at;
    for (const char byte : keyword) {
        const Spelled<Bytes> spelled = readSpelled(end);
        if (spelled.byte != byte)
            return at;
        end = spelled.end;
    }
    return end;
}

} // namespace css_rules
