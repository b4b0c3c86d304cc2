#include "input/big_unicode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

constexpr std::uint32_t kDidNotFit = 0xFFFFFFFF;
constexpr std::uint8_t kUntouched = 0xAA;

struct Row {
    const char* name;
    std::vector<std::uint8_t> source;
    std::uint32_t capacity;
    std::uint32_t answer;
    std::vector<std::uint8_t> written; // with the terminator
};

std::vector<Row> makeRows()
{
    return {
        {"empty", {}, 4, 0, {0}},
        {"fits", {0, 'A', 0, 'B'}, 4, 2, {'A', 'B', 0}},
        {"fits exactly", {0, 'A', 0, 'B'}, 3, 2, {'A', 'B', 0}},
        {"one too long", {0, 'A', 0, 'B'}, 2, kDidNotFit, {'A', 0}},
        {"room for the terminator only", {0, 'A'}, 1, kDidNotFit, {0}},
        {"empty in one byte", {}, 1, 0, {0}},
        {"high bytes go", {0x20, 0x1D, 0xFF, 0xFE}, 8, 2, {0x1D, 0xFE, 0}},
        {"zero units are copied", {0, 0, 0, 'B'}, 8, 2, {0, 'B', 0}},
        {"an odd last byte is left out", {0, 'A', 'x'}, 8, 1, {'A', 0}},
        {"a single byte", {'x'}, 8, 0, {0}},
        {"no capacity", {0, 'A'}, 0, kDidNotFit, {}},
        {"no capacity for nothing", {}, 0, kDidNotFit, {}},
    };
}

TEST(BigUnicode, CopiesLowBytes)
{
    for (const Row& row : makeRows()) {
        std::vector<std::uint8_t> destination(16, kUntouched);
        EXPECT_EQ(row.answer,
            ConvertBigUnicodeToASCII(destination.data(), row.capacity, row.source.data(),
                static_cast<std::uint32_t>(row.source.size())))
            << row.name;
        std::vector<std::uint8_t> expected = row.written;
        expected.resize(16, kUntouched);
        EXPECT_EQ(expected, destination) << row.name;
    }
}

} // namespace
