#pragma once

#include <cstdint>

namespace host {

/// What a two-byte code of the Korean combination code stands for.
struct JohabCode {
    char16_t unit; ///< a Hangul syllable or letter; 0 for none
    std::uint16_t
        wansung; ///< the two bytes of the same sign in the 8-bit KS C 5601 set; 0 for none
};

/// True for a byte that begins a two-byte code.
bool isJohabLead(std::uint32_t byte);
/// True for a byte that ends one.
bool isJohabTrail(std::uint32_t byte);
/// Both words are 0 when the code stands for nothing.
JohabCode decodeJohab(std::uint16_t code);

} // namespace host
