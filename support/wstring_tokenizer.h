#pragma once

#include "support/export.h"
#include "support/wstring.h"

namespace zorvan {

/// Splits a text at delimiters: runs of them separate the tokens, and no token is empty.
class ZV_EXPORT WStringTokenizer {
public:
    /// Both texts are zero-terminated, are not copied and must outlive the tokenizer; null is
    /// empty. returnDelimiters: every delimiter is a token of one unit as well.
    WStringTokenizer(const char16_t* text, const char16_t* delimiters, bool returnDelimiters);

    bool hasMoreTokens();

    /// The next token, good until the next call; empty when there is none left.
    const WString& nextToken();

private:
    bool isDelimiter(char16_t unit) const;

    const char16_t* position_; // borrowed
    const char16_t* delimiters_; // borrowed
    bool returnDelimiters_;
    WString token_;
};

} // namespace zorvan
