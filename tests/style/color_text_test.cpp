#include "style/color_text.h"

#include "support/color_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

constexpr std::uint32_t kUntouched = 0x12345678;

/// A color, as either kind of text gives it.
bool parse(std::u16string_view text, bool isLenient, std::uint32_t& color)
{
    const auto length = static_cast<std::uint32_t>(text.size());
    const bool isColor = parseColor(text.data(), length, isLenient, color);
    std::string bytes;
    for (const char16_t unit : text)
        bytes += static_cast<char>(unit);
    std::uint32_t byteColor = kUntouched;
    EXPECT_EQ(parseColor(bytes.data(), length, isLenient, byteColor), isColor) << bytes;
    EXPECT_EQ(byteColor, color) << bytes;
    return isColor;
}

struct ColorRow {
    const char16_t* text;
    bool isColor; ///< as CSS reads it
    std::uint32_t color;
    bool isLenientColor; ///< as attributes are read
};

const ColorRow kRows[] = {
    {u"red", true, 0x0000FF, true},
    {u"RED", true, 0x0000FF, true},
    {u"blue", true, 0xFF0000, true},
    {u"#abc", true, 0xCCBBAA, true},
    {u"#fff", true, 0xFFFFFF, true},
    {u"#aabbcc", true, 0xCCBBAA, true},
    {u"#AABBCC", true, 0xCCBBAA, true},
    {u"#aabbccdd", true, 0xCCBBAA, true},
    {u"#aabbcczz", true, 0xCCBBAA, true},
    {u"#12", true, 0x120000, true},
    {u"#1234", true, 0x341200, true},
    {u"#12345", true, 0x452301, true},
    // Without the mark three digits are meant once.
    {u"abc", false, 0xBC0A00, true},
    {u"aabbcc", false, 0xCCBBAA, true},
    {u"0", false, 0, true},
    {u"#", true, 0, false},
    {u"#ggg", true, 0, false},
    {u"#12345g", true, 0, false},
    {u"##112233", true, 0, false},
    {u" red", false, 0, false},
    {u"red ", false, 0, false},
    {u"no such color", false, 0, false},
    {u"\u00F2ed", false, 0, false},
    {u"aquamarines", false, 0, false},
    {u"aquamarin", false, 0, false},
    {u"a text that is longer than any name of a color, and than any keyword", false, 0, false},
    // Keywords are no colors.
    {u"transparent", false, 0xFFFFFFFF, false},
    {u"inherit", false, 0xFFFFFFFF, false},
    {u"NONE", false, 0xFFFFFFFF, false},
    {u"menu", false, 0xFFFFFFFF, false},
    {u"Menu", false, 0xFFFFFFFF, false},
};

TEST(ColorText, Rows)
{
    for (const ColorRow& row : kRows) {
        SCOPED_TRACE(::testing::PrintToString(std::u16string(row.text)));
        std::uint32_t color = kUntouched;
        EXPECT_EQ(parse(row.text, /*isLenient=*/false, color), row.isColor);
        EXPECT_EQ(color, row.color);
        color = kUntouched;
        EXPECT_EQ(parse(row.text, /*isLenient=*/true, color), row.isLenientColor);
        if (row.isLenientColor) {
            EXPECT_EQ(color, row.color);
        }
    }
}

TEST(ColorText, RowsOfBytes)
{
    for (const ColorRow& row : kRows) {
        std::string bytes;
        for (const char16_t unit : std::u16string_view(row.text))
            bytes += static_cast<char>(std::min<std::uint32_t>(unit, 0xFF));
        const auto length = static_cast<std::uint32_t>(bytes.size());
        // What follows the text does not count.
        bytes += "0red";
        for (const bool isLenient : {false, true}) {
            std::uint32_t color = kUntouched;
            EXPECT_EQ(parseColor(bytes.data(), length, isLenient, color),
                isLenient ? row.isLenientColor : row.isColor)
                << bytes;
            if (!isLenient || row.isLenientColor) {
                EXPECT_EQ(color, row.color) << bytes;
            }
        }
    }
}

TEST(ColorText, BytesAboveAscii)
{
    std::uint32_t color = kUntouched;
    EXPECT_FALSE(parseColor("\xF2"
                            "ed",
        3, /*lenient=*/false, color));
    EXPECT_FALSE(parseColor("\xF2"
                            "ed",
        3, /*lenient=*/true, color));
    EXPECT_TRUE(parseColor("#\xE1"
                           "aa",
        4, /*lenient=*/false, color));
    EXPECT_EQ(color, 0U);
}

TEST(ColorText, EmptyTextLeavesTheColor)
{
    for (const bool isLenient : {false, true}) {
        std::uint32_t color = kUntouched;
        EXPECT_TRUE(parse(u"", isLenient, color));
        EXPECT_EQ(color, kUntouched);
    }
}

TEST(ColorText, UnitsBeyondBytesAreNoLetters)
{
    std::uint32_t color = kUntouched;
    EXPECT_FALSE(parseColor(u"\u0172ed", 3, /*lenient=*/true, color));
    EXPECT_FALSE(parseColor(u"#12345\u0136", 7, /*lenient=*/true, color));
}

TEST(ColorText, TextsNeedNoTerminator)
{
    std::uint32_t color = kUntouched;
    EXPECT_TRUE(parseColor("redder", 3, /*lenient=*/false, color));
    EXPECT_EQ(color, 0x0000FFU);
    EXPECT_TRUE(parseColor("#abcdef", 4, /*lenient=*/false, color));
    EXPECT_EQ(color, 0xCCBBAAU);
}

TEST(ColorText, EveryName)
{
    std::uint32_t found = 0;
    for (const zorvan::ColorName& row : zorvan::kColorNames) {
        const std::string name = row.name;
        // A keyword, which comes first in every case.
        if (name == "Menu")
            continue;
        const std::uint32_t expected
            = (row.rgb & 0xFF) << 16 | (row.rgb & 0xFF00) | (row.rgb >> 16 & 0xFF);
        std::string lower = name;
        std::string upper = name;
        std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
        std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
        for (const std::string& spelling : {name, lower, upper}) {
            for (const bool isLenient : {false, true}) {
                std::uint32_t color = kUntouched;
                EXPECT_TRUE(
                    parse(std::u16string(spelling.begin(), spelling.end()), isLenient, color))
                    << spelling;
                EXPECT_EQ(color, expected) << spelling;
                color = kUntouched;
                EXPECT_TRUE(parseColor(spelling.data(), static_cast<std::uint32_t>(spelling.size()),
                    isLenient, color));
                EXPECT_EQ(color, expected) << spelling;
            }
        }
        ++found;
    }
    EXPECT_EQ(found, zorvan::kColorNameCount - 1);
}

} // namespace
