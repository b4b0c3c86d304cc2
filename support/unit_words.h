#pragma once

#include <cstdint>
#include <cstring>

namespace zorvan {

// Four units of text at once, in a word of 64 bits. Which of them stands lowest is the machine's
// matter: good for questions about all four.

constexpr std::uint32_t kUnitsOfWord = 4;

/// A word with the number 1 in every unit; times a unit it is a word of four of them.
constexpr std::uint64_t kEveryUnit = 0x0001'0001'0001'0001;

inline std::uint64_t unitWordAt(const char16_t* units)
{
    std::uint64_t word = 0;
    std::memcpy(&word, units, sizeof word);
    return word;
}

/// Not 0 when one of the units is 0.
constexpr std::uint64_t markZeroUnits(std::uint64_t units)
{
    return (units - kEveryUnit) & ~units & 0x8000 * kEveryUnit;
}

} // namespace zorvan
