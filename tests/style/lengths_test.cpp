#include "style/lengths.h"

#include "tree/html_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

struct LengthRow {
    float number;
    ZVLinearUnits units;
    std::uint32_t fontSize;
    float pixels;
    std::int32_t whole;
};

constexpr float kInfinite = std::numeric_limits<float>::infinity();
constexpr std::int32_t kTooLarge = std::numeric_limits<std::int32_t>::min();

const LengthRow kLengthRows[] = {
    {0.67F, UNITS_EM, 16, 11, 11},
    {0.83F, UNITS_EM, 16, 13, 13},
    {1, UNITS_EM, 16, 16, 16},
    {1.33F, UNITS_EM, 16, 21, 21},
    {1.67F, UNITS_EM, 16, 27, 27},
    {2.33F, UNITS_EM, 16, 37, 37},
    {2, UNITS_EM, 16, 32, 32},
    {2, UNITS_EM, 10, 20, 20},
    {1.15F, UNITS_EM, 16, 18, 18},
    // The factors leave a little less than half a pixel, so a half goes down.
    {0.5F, UNITS_EM, 1, 0, 0},
    {0.5F, UNITS_EM, 3, 1, 1},
    {1, UNITS_EM, 0, 0, 0},
    {-1, UNITS_EM, 16, -15, -15},
    {1, UNITS_EM, 400'000, 399'999, 399'999},
    {kInfinite, UNITS_EM, 16, -2147483648.0F, kTooLarge},
    {1, UNITS_EX, 16, 8, 8},
    {1, UNITS_EX, 15, 7, 7},
    {-1, UNITS_EX, 15, -7, -7},
    {1.5F, UNITS_PIXELS, 16, 1.5F, 1},
    {-1.5F, UNITS_PIXELS, 16, -1.5F, -1},
    {1, UNITS_INCHES, 16, 96, 96},
    {12, UNITS_POINTS, 16, 16, 16},
    {50, UNITS_PERCENT, 16, 0, 0},
    {3e9F, UNITS_PIXELS, 16, 3e9F, kTooLarge},
    {kInfinite, UNITS_PIXELS, 16, kInfinite, kTooLarge},
};

TEST(Lengths, Conversions)
{
    for (const LengthRow& row : kLengthRows) {
        SCOPED_TRACE(
            testing::Message() << row.number << " of unit " << row.units << " at " << row.fontSize);
        const HtmlLengthValue length(row.number, row.units);
        EXPECT_EQ(lengthInPixels(length, row.fontSize), row.pixels);
        EXPECT_EQ(wholePixels(length, row.fontSize), row.whole);
        EXPECT_EQ(isRelative(length), row.units == UNITS_EM || row.units == UNITS_EX);
    }
}

// The product of number and size is rounded to single precision in front of the factors.
TEST(Lengths, ProductsAreSinglePrecision)
{
    const HtmlLengthValue length(0.1F, UNITS_EX);
    // In double the product is 2000000.0298; a tenth in single precision is a little more.
    EXPECT_EQ(wholePixels(length, 20'000'000), 1'000'000);
    const HtmlLengthValue third(1.0F / 3.0F, UNITS_EX);
    // 6 times the third is 2.00000006 in double and 2 in single precision.
    EXPECT_EQ(lengthInPixels(third, 6), 1);
    const HtmlLengthValue seventh(1.0F / 7.0F, UNITS_EM);
    EXPECT_EQ(lengthInPixels(seventh, 7), 1);
}

TEST(Lengths, FontSizes)
{
    struct Row {
        const HtmlValue& value;
        std::uint32_t parent;
        std::uint32_t size;
    };
    const HtmlCssKeywordValue small(VALUE_SMALL);
    const HtmlCssKeywordValue larger(VALUE_LARGER);
    const HtmlCssKeywordValue smaller(VALUE_SMALLER);
    const HtmlCssKeywordValue bold(VALUE_BOLD);
    const HtmlPercentValue half(50);
    const HtmlPercentValue third(33.3F);
    const HtmlLengthValue em(1.5F, UNITS_EM);
    const HtmlLengthValue ex(1, UNITS_EX);
    const HtmlLengthValue pixels(20.9F, UNITS_PIXELS);
    const HtmlNumberValue number(3);
    const Row rows[] = {
        {small, 40, 13},
        {larger, 40, kNoFontSize},
        {smaller, 40, kNoFontSize},
        {bold, 40, kNoFontSize},
        {half, 15, 7},
        {half, 0, 0},
        {third, 1000, 333},
        {em, 16, 24},
        {ex, 16, 8},
        {pixels, 16, 20},
        {number, 16, kNoFontSize},
    };
    for (const Row& row : rows)
        EXPECT_EQ(fontSizeInPixels(row.value, row.parent), row.size) << row.parent;
}

} // namespace
