#include "host/cli/numbers.h"

#include <charconv>
#include <cstdio>

namespace host::cli {

std::optional<std::uint32_t> parseNumber(std::string_view text)
{
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc() || behind != end)
        return std::nullopt;
    return number;
}

std::optional<OptionValue> parseOptionValue(std::string_view text)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos)
        return std::nullopt;
    const auto id = parseNumber(text.substr(0, equals));
    const auto value = parseNumber(text.substr(equals + 1));
    if (!id || !value)
        return std::nullopt;
    return OptionValue{*id, *value};
}

std::string hexadecimal(std::uint32_t number)
{
    char digits[11];
    std::snprintf(digits, sizeof digits, "0x%08X", static_cast<unsigned>(number));
    return digits;
}

} // namespace host::cli
