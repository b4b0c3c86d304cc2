#include "scanner/number_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace {

double read(std::u16string_view text)
{
    double value = -1;
    HTMLWToF(text.data(), static_cast<std::uint32_t>(text.size()), &value);
    return value;
}

} // namespace

TEST(NumberReader, ReadsEveryPart)
{
    struct Row {
        std::u16string_view text;
        double value;
    };
    const Row rows[] = {
        {u"", 0}, {u"0", 0}, {u"7", 7}, {u"-7", -7}, {u"5.5", 5.5}, {u".5", 0.5}, {u"5.", 5},
        {u"-.25", -0.25}, {u"12.375x", 12.375}, {u"3E2", 300}, {u"3E+2", 300}, {u"3E-2", 0.03},
        {u"3E-+2", 0.03}, // first a "-", then a "+"
        {u"3E+-2", 3}, // in this order only
        {u"3e2", 3}, // upper case only
        {u"3E", 3}, {u"1.5E1", 15}, {u"+3", 0}, {u" 3", 0}, {u"--3", 0}, {u"x", 0}, {u"1,5", 1},
        {u"1.2.3", 1.2}, {u"E5", 0}, {u"0E999", 0}, {u"1E-999", 0},
        {u"5E4294967297", 50}, // exponents wrap at 32 bits
    };
    for (const Row& row : rows)
        EXPECT_DOUBLE_EQ(read(row.text), row.value) << testing::PrintToString(row.text);
    EXPECT_EQ(read(u"1E999"), std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isinf(read(std::u16string(400, u'9'))));
}

TEST(NumberReader, LengthBoundsAllReading)
{
    const std::u16string_view text = u"-12.34E56";
    const double values[] = {0, 0, -1, -12, -12, -12.3, -12.34, -12.34, -12.34E5, -12.34E56};
    for (std::uint32_t length = 0; length <= text.size(); ++length) {
        double value = -1;
        HTMLWToF(text.data(), length, &value);
        EXPECT_DOUBLE_EQ(value, values[length]) << length;
    }
}

// The digits are summed one by one, so the last place is not that of a correctly rounded reader.
TEST(NumberReader, FractionIsSummedDigitByDigit)
{
    double expected = 0;
    double scale = 10;
    for (const char digit : std::string("123456789123456789")) {
        expected += (digit - '0') / scale;
        scale *= 10;
    }
    EXPECT_EQ(read(u"0.123456789123456789"), expected);
}
