#include "tree/attribute_numbers.h"

#include "support/color_names.h"
#include "tests/common/test_context.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

using testing_support::TestContext;

struct NumberRow {
    const char16_t* text;
    std::optional<std::int32_t> number;
};

const NumberRow kNumbers[] = {
    {u"0", 0},
    {u"50", 50},
    {u"007", 7},
    {u"50%", -50},
    {u"0%", 0},
    {u"\"50\"", 50},
    {u"\"50%", -50},
    {u"\"\"50", std::nullopt},
    {u"50px", 50},
    {u"50 %", 50},
    {u"50%%", -50},
    {u"1a", 1},
    // What is no digit at the beginning makes it no number.
    {u"", std::nullopt},
    {u"\"", std::nullopt},
    {u" 50", std::nullopt},
    {u"+50", std::nullopt},
    {u"-50", std::nullopt},
    {u"px50", std::nullopt},
    {u"%", std::nullopt},
    {u"none", std::nullopt},
    // Fractions are read over.
    {u"12.5", 12},
    {u"12.5%", -12},
    {u"12.%", -12},
    {u"12.", 12},
    {u".5", 0},
    {u".5%", 0},
    {u".", std::nullopt},
    {u".%", std::nullopt},
    {u".x5", std::nullopt},
    {u"1.2.3%", 1},
    // Digits in groups.
    {u"1,000", 1000},
    {u"1,234,567%", -1234567},
    {u"1,2", 12},
    {u"1,,2", 12},
    {u"5,%", -5},
    {u",", std::nullopt},
    {u"1,000.5%", -1000},
    {u"1.000,5%", 1},
    // Hexadecimal.
    {u"#10", 16},
    {u"#fF", 255},
    {u"#10%", -16},
    {u"#10.5%", 16},
    {u"#1,0", 1},
    {u"#", std::nullopt},
    {u"#%", std::nullopt},
    {u"#g", std::nullopt},
    {u"##1", std::nullopt},
    {u"\"#10", 16},
    {u"a", 10},
    {u"F", 15},
    {u"fg", 15},
    {u"b0", 176},
    {u"c%", -12},
    {u"auto", 10},
    {u"default", 0xDEFA},
    {u"g", std::nullopt},
    // 32 bits.
    {u"2147483647", INT_MAX},
    {u"2147483648", INT_MIN},
    {u"2147483648%", INT_MIN},
    {u"2147483649%", INT_MAX},
    {u"4294967295", -1},
    {u"4294967295%", 1},
    {u"4294967296", 0},
    {u"4294967301", 5},
    {u"#100000005", 5},
    // Digits of other scripts are none.
    {u"\u0661", std::nullopt},
    {u"1\u0130", 1},
    {u"\u0161", std::nullopt},
};

TEST(AttributeNumbers, Rows)
{
    TestContext test("");
    for (const NumberRow& row : kNumbers)
        EXPECT_EQ(ParseAttributeNumber(row.text, /*flags=*/0, test.context), row.number)
            << ::testing::PrintToString(std::u16string(row.text));
}

TEST(AttributeNumbers, WordsOfHexadecimalLettersAreNumbers)
{
    TestContext test("");
    EXPECT_EQ(ParseAttributeNumber(u"auto", /*flags=*/0, test.context), 10);
    EXPECT_EQ(ParseAttributeNumber(u"bottom", /*flags=*/0, test.context), 11);
    EXPECT_EQ(ParseAttributeNumber(u"none", /*flags=*/0, test.context), std::nullopt);
}

constexpr std::uint32_t kUntouched = 0x12345678;

struct ColorRow {
    const char16_t* text;
    int answer;
    std::uint32_t color;
};

const ColorRow kColors[] = {
    {u"red", 1, 0x0000FF},
    {u"ReD", 1, 0x0000FF},
    {u"navy", 1, 0x800000},
    {u"#fff", 1, 0xFFFFFF},
    {u"#abc", 1, 0xCCBBAA},
    {u"abc", 1, 0xBC0A00},
    {u"#102030", 1, 0x302010},
    {u"102030", 1, 0x302010},
    {u"#10203040", 1, 0x302010},
    {u"#102030 and more", 1, 0x302010},
    {u"#12", 1, 0x120000},
    {u"0", 1, 0},
    // Nothing can be read.
    {u"", 0, kUntouched},
    {u"#", 0, kUntouched},
    {u"##102030", 0, kUntouched},
    {u"#10203g", 0, kUntouched},
    {u"1 2", 0, kUntouched},
    {u" #102030", 0, kUntouched},
    {u"a color", 0, kUntouched},
    {u"rgb(1,2,3)", 0, kUntouched},
    // Keywords are no colors.
    {u"transparent", 0, kUntouched},
    {u"Inherit", 0, kUntouched},
    {u"none", 0, kUntouched},
};

TEST(AttributeNumbers, Colors)
{
    TestContext test("");
    for (const ColorRow& row : kColors) {
        std::uint32_t color = kUntouched;
        EXPECT_EQ(ParseColorAttribute(row.text, /*flags=*/0, color, test.context), row.answer)
            << ::testing::PrintToString(std::u16string(row.text));
        EXPECT_EQ(color, row.color) << ::testing::PrintToString(std::u16string(row.text));
    }
}

TEST(AttributeNumbers, EveryColorName)
{
    TestContext test("");
    std::uint32_t found = 0;
    for (const zorvan::ColorName& row : zorvan::kColorNames) {
        const std::string_view name = row.name;
        const std::u16string text(name.begin(), name.end());
        std::uint32_t color = kUntouched;
        if (ParseColorAttribute(text.c_str(), /*flags=*/0, color, test.context) == 0) {
            EXPECT_EQ(name, "Menu") << "all others are found";
            continue;
        }
        ++found;
        EXPECT_EQ(color, (row.rgb & 0xFF) << 16 | (row.rgb & 0xFF00) | (row.rgb >> 16 & 0xFF))
            << name;
    }
    EXPECT_EQ(found, zorvan::kColorNameCount - 1);
}

TEST(AttributeNumbers, EmbeddedColorsBeginAtTheirMark)
{
    const ColorRow rows[] = {
        {u"red#102030", 1, 0x302010},
        {u"x #abc", 1, 0xCCBBAA},
        {u"transparent#000001", 1, 0x010000},
        {u"#102030#405060", 1, 0x302010},
        {u"#abc", 1, 0xCCBBAA},
        {u"red", 1, 0x0000FF},
        {u"102030", 1, 0x302010},
        {u"red#", 0, kUntouched},
        {u"red#red", 0, kUntouched},
        {u"", 0, kUntouched},
    };
    TestContext test("");
    for (const ColorRow& row : rows) {
        std::uint32_t color = kUntouched;
        test.context.embeddedMode = 1;
        EXPECT_EQ(ParseColorAttribute(row.text, /*flags=*/0, color, test.context), row.answer)
            << ::testing::PrintToString(std::u16string(row.text));
        EXPECT_EQ(color, row.color) << ::testing::PrintToString(std::u16string(row.text));
    }
    // Elsewhere what stands in front of the mark spoils it.
    std::uint32_t color = kUntouched;
    test.context.embeddedMode = 0;
    EXPECT_EQ(ParseColorAttribute(u"red#102030", /*flags=*/0, color, test.context), 0);
}

TEST(AttributeNumbers, AttributeEquals)
{
    struct Row {
        const char16_t* value;
        const char* keyword;
        int answer;
    };
    const Row rows[] = {
        {u"yes", "yes", 0},
        {u"YES", "yes", 0},
        {u"yes", "YeS", 0},
        {u"", "", 0},
        {u"ye", "yes", -1},
        {u"yesterday", "yes", 1},
        {u"", "yes", -1},
        {u"no", "yes", -1},
        {u"zero", "yes", 1},
        {u"\u0179es", "yes", 1},
        {u"@", "`", -1},
        {u"[", "{", -1},
    };
    TestContext test("");
    for (const Row& row : rows)
        EXPECT_EQ(AttributeEquals(row.value, row.keyword, test.context), row.answer)
            << ::testing::PrintToString(std::u16string(row.value)) << ' ' << row.keyword;
}

} // namespace
