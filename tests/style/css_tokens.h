#pragma once

#include "style/css_tokenizer.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// A token with a text of its own.
struct OwnedCssToken {
    std::int32_t kind;
    std::string text;

    bool operator==(const OwnedCssToken&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const OwnedCssToken& token)
{
    return out << token.kind << " \"" << token.text << '"';
}

inline void setCssInput(CssTokenizer& tokenizer, std::string_view text)
{
    std::u16string units;
    for (const char byte : text)
        units.push_back(static_cast<std::uint8_t>(byte));
    tokenizer.setInput(units.data(), static_cast<std::uint32_t>(units.size()));
}

/// The next token of a tokenizer.
inline OwnedCssToken nextCssToken(CssTokenizer& tokenizer)
{
    CssToken token;
    tokenizer.next(token);
    return {token.kind, std::string(token.text, token.length)};
}

/// All tokens of a text, the end left out.
inline std::vector<OwnedCssToken> cssTokensOf(std::string_view text)
{
    CssTokenizer tokenizer;
    setCssInput(tokenizer, text);
    std::vector<OwnedCssToken> tokens;
    for (;;) {
        OwnedCssToken token = nextCssToken(tokenizer);
        if (token.kind == CSS_END)
            return tokens;
        tokens.push_back(std::move(token));
    }
}

} // namespace testing_support
