#include "host/cli/numbers.h"

#include <gtest/gtest.h>

namespace {

using host::cli::parseNumber;
using host::cli::parseOptionValue;

TEST(Numbers, ReadsDecimalAndHexadecimal)
{
    const struct {
        const char* text;
        std::uint32_t number;
    } rows[] = {{"0", 0}, {"1101", 1101}, {"007", 7}, {"0x10", 16}, {"0XfF", 255},
        {"4294967295", 0xFFFFFFFF}, {"0xFFFFFFFF", 0xFFFFFFFF}, {"0x0000000001", 1}};
    for (const auto& row : rows)
        EXPECT_EQ(parseNumber(row.text), row.number) << row.text;
}

TEST(Numbers, RefusesAllElse)
{
    for (const char* text : {"", "x", "0x", "-1", "+1", " 1", "1 ", "1.0", "4294967296",
             "0x100000000", "12a", "0xg", "0x-1", "1e3"})
        EXPECT_FALSE(parseNumber(text)) << text;
}

TEST(Numbers, ReadsOptionValues)
{
    const auto value = parseOptionValue("0x52B6A=1");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->id, 0x52B6Au);
    EXPECT_EQ(value->value, 1u);
    for (const char* text : {"", "=", "1", "1=", "=1", "1=2=3", "a=1", "1=b", "1 =2"})
        EXPECT_FALSE(parseOptionValue(text)) << text;
}

TEST(Numbers, WritesHexadecimal)
{
    EXPECT_EQ(host::cli::hexadecimal(0), "0x00000000");
    EXPECT_EQ(host::cli::hexadecimal(0x14B00000), "0x14B00000");
}

} // namespace
