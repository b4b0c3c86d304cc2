#pragma once

#include <cstdint>

/// Bits of Token.flags.
enum TokenFlag : std::uint8_t {
    TOKEN_CHARACTER = 1,
    TOKEN_SKIPPED = 2, ///< never set by the scanner; the prescan passes over such tokens
    TOKEN_START_TAG = 4,
    TOKEN_END_TAG = 8,
    TOKEN_SYNTHETIC = 0x10, ///< made by the tree builder: has no attributes
    TOKEN_FOSTER = 0x20, ///< what it makes goes through foster parenting
    TOKEN_SELF_CLOSING = 0x40, ///< a "/" stands in front of the closing of a start tag
};

/// What Scan hands to InsertNode. Element 0 and flags 0 is the null token: a comment, a
/// declaration, an instruction or a tag of unknown name.
struct Token {
    std::uint32_t element; ///< ZVHTMLElement of a tag, 0 none or unknown
    std::uint8_t flags; ///< TokenFlag bits
    std::uint8_t reserved5; ///< 0
    std::uint16_t marker; ///< 0xFFFF; nothing reads it
    std::uint32_t character; ///< code of a character token
    std::uint32_t reserved12; ///< 0
};
static_assert(sizeof(Token) == 16);
