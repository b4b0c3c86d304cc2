#include "input/big_unicode.h"

#include <algorithm>
#include <cstddef>

std::uint32_t ConvertBigUnicodeToASCII(std::uint8_t* destination, std::uint32_t capacity,
    const std::uint8_t* source, std::uint32_t sourceLength)
{
    constexpr std::uint32_t kDidNotFit = 0xFFFFFFFF;
    if (capacity == 0)
        return kDidNotFit;
    const std::uint32_t units = sourceLength / 2;
    const std::uint32_t count = std::min(units, capacity - 1);
    for (std::uint32_t i = 0; i < count; ++i)
        destination[i] = source[std::size_t{i} * 2 + 1];
    destination[count] = 0;
    return count == units ? count : kDidNotFit;
}
