#include "support/text_numbers.h"

#include "support/zv_string.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

using zorvan::lengthFromText;
using zorvan::numberFromText;

namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

std::int32_t lengthOf(std::string_view text) { return static_cast<std::int32_t>(text.size()); }

struct NumberRow {
    std::string_view text;
    double number;
    std::int32_t end;
};

const NumberRow kNumbers[] = {
    {"0", 0, 1},
    {"12px", 12, 2},
    {"1.5", 1.5, 3},
    {".5em", 0.5, 2},
    {"-.5", -0.5, 3},
    {"+7", 7, 2},
    {"1.", 1, 1},
    {"1.2.3", 1.2, 3},
    {"1e3", 1, 1},
    {"", 0, 0},
    {"-", 0, 0},
    {"--5", 0, 0},
    {".", 0, 0},
    {"px", 0, 0},
    {" 1", 0, 0},
};

} // namespace

TEST(TextNumbers, Numbers)
{
    for (const NumberRow& row : kNumbers) {
        std::int32_t end = -1;
        EXPECT_EQ(numberFromText(row.text.data(), lengthOf(row.text), &end), row.number)
            << row.text;
        EXPECT_EQ(end, row.end) << row.text;
        EXPECT_EQ(numberFromText(row.text.data(), lengthOf(row.text), nullptr), row.number);
        const std::string terminated(row.text);
        EXPECT_EQ(zorvan::String(terminated.c_str()).toDouble(0, &end), row.number) << row.text;
        EXPECT_EQ(end, row.end) << row.text;
    }
}

TEST(TextNumbers, TextEndsWithItsLength)
{
    std::int32_t end = 0;
    EXPECT_EQ(numberFromText("1234", 2, &end), 12);
    EXPECT_EQ(end, 2);
    EXPECT_EQ(numberFromText("1.25", 2, &end), 1);
    EXPECT_EQ(end, 1);
    float number = 0;
    ZVLinearUnits units = UNITS_NONE;
    EXPECT_TRUE(lengthFromText("12px", 2, &number, &units));
    EXPECT_EQ(units, UNITS_PIXELS);
    EXPECT_FALSE(lengthFromText("12em", 3, &number, &units));
}

TEST(TextNumbers, NumbersOutOfRange)
{
    const std::string large(400, '9');
    EXPECT_EQ(numberFromText(large.data(), 400, nullptr), kInfinite);
    const std::string small = "0." + std::string(400, '0') + "1";
    EXPECT_EQ(numberFromText(small.data(), lengthOf(small), nullptr), 0);
    EXPECT_TRUE(std::signbit(numberFromText("-0", 2, nullptr)));
}

TEST(TextNumbers, Lengths)
{
    float number = -1;
    ZVLinearUnits units = UNITS_NONE;
    EXPECT_TRUE(lengthFromText("1.5EM", 5, &number, &units));
    EXPECT_EQ(number, 1.5F);
    EXPECT_EQ(units, UNITS_EM);
    EXPECT_FALSE(lengthFromText("2deg", 4, &number, &units));
    EXPECT_FALSE(lengthFromText("px", 2, &number, &units));
    EXPECT_EQ(number, 1.5F);
    EXPECT_EQ(units, UNITS_EM);
}

TEST(TextNumbers, RoundsToFloat)
{
    EXPECT_EQ(zorvan::roundToFloat(0.1), 0.1F);
    EXPECT_EQ(zorvan::roundToFloat(1e39), std::numeric_limits<float>::infinity());
    EXPECT_EQ(zorvan::roundToFloat(-1e39), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(zorvan::roundToFloat(-kInfinite), -std::numeric_limits<float>::infinity());
    // The greatest float is also the nearest to what lies within half a step of it.
    constexpr float kGreatest = std::numeric_limits<float>::max();
    EXPECT_EQ(zorvan::roundToFloat(3.4028235e38), kGreatest);
    EXPECT_EQ(zorvan::roundToFloat(-3.4028235e38), -kGreatest);
    EXPECT_EQ(zorvan::roundToFloat(0x1.fffffefffffffp+127), kGreatest);
    EXPECT_EQ(zorvan::roundToFloat(0x1.ffffffp+127), std::numeric_limits<float>::infinity());
}
