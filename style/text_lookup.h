#pragma once

#include "style/css_token.h"
#include "support/css_strings.h"
#include "support/text_search.h"

#include <cstddef>
#include <cstdint>

// Looks texts of style sheets and attributes up among the names of CSS, in any case. Nothing is
// allocated for it. Only the letters of ASCII have a case.

/// The number of a character, that of an upper case letter as of its lower case.
template <class Ch> std::uint32_t foldedNumber(Ch character)
{
    const std::uint32_t number = zorvan::characterNumber(character);
    return number >= 'A' && number <= 'Z' ? number + ('a' - 'A') : number;
}

/// The lower case of a text that may be a name; empty when the text is longer than any name.
class LowerCaseName {
public:
    template <class Ch> LowerCaseName(const Ch* characters, std::uint32_t count)
    {
        if (count > sizeof text)
            return;
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t number = foldedNumber(characters[i]);
            // No name has characters beyond ASCII, so which of them it was does not matter.
            text[i] = number < 0x80 ? static_cast<char>(number) : '\0';
        }
        length = count;
    }

    char text[32];
    std::uint32_t length = 0;
};

/// The number of a keyword; 0 for any other text.
template <class Ch> ZVCSSValue keywordOf(const Ch* text, std::uint32_t length)
{
    const LowerCaseName name(text, length);
    return zorvan::CSSStrings::valueFromText(name.text, name.length);
}

inline ZVCSSValue keywordOf(const CssToken& token) { return keywordOf(token.text, token.length); }

/// The number of a property; 0 for any other text.
inline ZVCSSProperty propertyOf(const CssToken& token)
{
    const LowerCaseName name(token.text, token.length);
    return zorvan::CSSStrings::propertyFromText(name.text, name.length);
}

/// Whether a text is this lower case literal in any case.
template <std::size_t Size>
bool equalsName(const char* text, std::uint32_t length, const char (&lowerCase)[Size])
{
    if (length != Size - 1)
        return false;
    for (std::uint32_t i = 0; i < length; ++i) {
        if (foldedNumber(text[i]) != zorvan::characterNumber(lowerCase[i]))
            return false;
    }
    return true;
}

inline bool isInherit(const CssToken& token)
{
    return equalsName(token.text, token.length, "inherit");
}
