#pragma once

#include "containers/storage.h"
#include "style/css_token.h"

#include <cstdint>

/// Cuts a style text into tokens, longest match first, with room for one token that is pushed back.
class CssTokenizer {
public:
    CssTokenizer() = default;
    CssTokenizer(const CssTokenizer&) = delete;
    CssTokenizer& operator=(const CssTokenizer&) = delete;

    /// Takes a text over as a copy of its low bytes, which ends at the first that is 0, and forgets
    /// a token pushed back. Without memory the filter gives up with code 18 and does not come back.
    void setInput(const char16_t* text, std::uint32_t length);

    /// The same; without memory it answers false, and there is no input.
    bool trySetInput(const char16_t* text, std::uint32_t length);

    /// The token pushed back, or the next of the input; kind 0 at the end, time and again.
    void next(CssToken& out);

    /// The same, white space left out.
    void nextSkippingSpace(CssToken& out);

    /// Makes next hand this token out; a second one without a next in between takes its place.
    void pushBack(const CssToken& token);

private:
    void scan(CssToken& out);

    zorvan::StoragePointer<char> buffer_; // zero-terminated; null before the first input
    std::uint32_t capacity_ = 0; // of the buffer, which one input leaves to the next
    const char* position_ = ""; // what is scanned next
    CssToken pushedBack_;
    bool hasPushedBack_ = false;
};
