#pragma once

#include "host/session.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace host::cli {

/// Reads a number, decimal or behind 0x hexadecimal, of at most 32 bits; nothing when the text is
/// anything else.
std::optional<std::uint32_t> parseNumber(std::string_view text);

/// Reads `ID=VALUE`, both numbers.
std::optional<OptionValue> parseOptionValue(std::string_view text);

/// 0x and eight hexadecimal digits.
std::string hexadecimal(std::uint32_t number);

} // namespace host::cli
