#pragma once

#include <cstdint>

/// A set of units from 1 to 255: delimiters, or characters that a name may hold. No other unit is
/// ever a member, nor is the end of the input.
class CharacterSet {
public:
    constexpr CharacterSet() = default;

    /// Implicit, so that a set of a few units can be written where it is used.
    constexpr CharacterSet(const char* members)
    {
        for (; *members != '\0'; ++members)
            add(static_cast<unsigned char>(*members));
    }

    constexpr void add(std::uint32_t unit)
    {
        if (unit >= 1 && unit <= 255)
            words_[unit / 64] |= std::uint64_t{1} << (unit % 64);
    }

    constexpr CharacterSet operator|(const CharacterSet& other) const
    {
        CharacterSet joined = *this;
        for (std::uint32_t index = 0; index < 4; ++index)
            joined.words_[index] |= other.words_[index];
        return joined;
    }

    constexpr bool contains(std::int32_t character) const
    {
        const auto unit = static_cast<std::uint32_t>(character);
        return unit < 256 && ((words_[unit / 64] >> (unit % 64)) & 1) != 0;
    }

private:
    std::uint64_t words_[4] = {};
};

/// White space of the scanner.
// QUIRK(TagScanner.BackspaceIsSpaceAndFormFeedIsNot): in tags and in all that is built like them.
inline constexpr CharacterSet kMarkupSpace = "\b\t\n\r ";

/// What every name may hold.
inline constexpr CharacterSet kNameCharacters
    = ".0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

/// What besides stands in the names of end tags, declarations and character references.
inline constexpr CharacterSet kNameExtras = ":-_";

/// What besides stands in the name of a start tag.
inline constexpr CharacterSet kStartTagExtras = "=:-_+";

/// Behind these a quote opens a value.
inline constexpr CharacterSet kBehindThemQuotesOpen = "\b\t\n\r =";
