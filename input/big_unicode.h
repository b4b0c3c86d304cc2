#pragma once

#include "support/export.h"

#include <cstdint>

extern "C" {

/// Narrows big-endian UTF-16 to the low bytes of its units. destination: room for `capacity` bytes,
/// always ended by 0. sourceLength: bytes; an odd last one is left out. Answers the count of bytes
/// without the terminator, or 0xFFFFFFFF when not all fitted. A capacity of 0 writes nothing and
/// answers 0xFFFFFFFF.
ZV_EXPORT std::uint32_t ConvertBigUnicodeToASCII(std::uint8_t* destination, std::uint32_t capacity,
    const std::uint8_t* source, std::uint32_t sourceLength);

} // extern "C"
