#pragma once

#include "support/export.h"

#include <cstdint>

/// Gives the filter up by throwing UTBailOut with the three words. Does not return.
[[noreturn]] ZV_EXPORT void UTBailOutEx(
    std::uint32_t code, std::uint32_t first, std::uint32_t second);
