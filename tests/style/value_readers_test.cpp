#include "style/value_readers.h"

#include "tests/containers/allocation_failures.h"
#include "tests/style/value_tokens.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <set>
#include <string>

using testing_support::allKeywords;
using testing_support::DeclarationSheet;
using testing_support::expectedText;
using testing_support::textOf;
using testing_support::ValueTokens;

namespace {

using Reader = HtmlValue* (*)(const CssToken& token, HtmlFilterContext& context);

/// What a reader makes of the first token of a text behind the joining of signs.
std::string read(Reader reader, const std::string& text)
{
    DeclarationSheet sheet;
    ValueTokens tokens(text);
    joinSigns(tokens.list);
    return textOf(reader(tokens.at(0), sheet.context));
}

struct ReaderRow {
    const char* text;
    const char* value;
};

template <std::size_t Count> void check(Reader reader, const ReaderRow (&rows)[Count])
{
    for (const ReaderRow& row : rows)
        EXPECT_EQ(read(reader, row.text), expectedText(row.value)) << row.text;
}

} // namespace

TEST(ValueReaders, SignsAreJoined)
{
    struct Row {
        const char* text;
        const char* texts;
    };
    const Row rows[] = {
        {"-1px", "n1px"},
        {"- 1px", "n1px"},
        {"-1em -2ex -3px -4deg -5s -6hz -7foo -8% -9",
            "n1em n2ex n3px n4deg n5s n6hz n7foo n8% n9"},
        {"1px -2px 3px", "1px n2px 3px"},
        // All signs are joined, and what has two is no number.
        {"- -1px", "n-"},
        {"- - - 1% 5", "n- 5"},
        {"-", "-"},
        {"- -", "- -"},
        {"1px -", "1px -"},
        {"- red", "- red"},
        {"- #123 -'x' -url(x) -1", "- #123 - 'x' -url( x ) n1"},
        {"+ -1px", "+ n1px"},
        {"-+1px", "- + 1px"},
    };
    for (const Row& row : rows) {
        ValueTokens tokens(row.text);
        joinSigns(tokens.list);
        EXPECT_EQ(tokens.texts(), row.texts) << row.text;
    }
}

TEST(ValueReaders, SignsOfAnEmptyList)
{
    CssTokenList tokens;
    joinSigns(tokens);
    EXPECT_EQ(tokens.getCount(), 0);
}

TEST(ValueReaders, ManySigns)
{
    constexpr std::int32_t kCount = 500'000;
    std::string text;
    for (std::int32_t i = 0; i < kCount; ++i)
        text += "-1 ";
    ValueTokens tokens(text + std::string(kCount, '-') + "2px");
    ASSERT_EQ(tokens.list.getCount(), 3 * kCount + 1);
    joinSigns(tokens.list);
    ASSERT_EQ(tokens.list.getCount(), kCount + 1);
    DeclarationSheet sheet;
    EXPECT_EQ(numberOf(tokens.at(kCount - 1)), -1);
    EXPECT_EQ(textOf(readMeasure(tokens.at(kCount), sheet.context)), "0px");
}

TEST(ValueReaders, EveryKeyword)
{
    for (const std::string& name : allKeywords()) {
        std::string upper;
        for (const char each : name)
            upper += static_cast<char>(std::toupper(each));
        EXPECT_EQ(read(readKeyword, upper), expectedText(name)) << name;
        // Only words are measures, the names of weights are numbers.
        const bool isWord = std::isdigit(name.front()) == 0;
        EXPECT_EQ(read(readMeasure, name), isWord ? expectedText(name) : "null") << name;
    }
    EXPECT_EQ(allKeywords().size(), 189U);
}

TEST(ValueReaders, Keywords)
{
    const ReaderRow rows[] = {
        {"700", "700"},
        {"450", "null"},
        {"foo", "null"},
        {"bol\\64", "null"},
        {"bold-and-longer-than-any-keyword-there-is", "null"},
        {"'bold'", "null"},
        {"#bold", "null"},
        {"bold(", "null"},
        {"\xC4", "null"},
    };
    check(readKeyword, rows);
}

TEST(ValueReaders, Measures)
{
    const ReaderRow rows[] = {
        {"auto", "auto"},
        {"foo", "null"},
        {"2em", "2em"},
        {"1.5EX", "1.5ex"},
        {".5px", "0.5px"},
        {"-10PX", "-10px"},
        {"1in", "1?"},
        {"50%", "50%"},
        {"-12.5%", "-12.5%"},
        {"0", "null"},
        {"1deg", "null"},
        {"1s", "null"},
        {"1hz", "null"},
        {"1foo", "null"},
        {"'1px'", "null"},
        {"#1", "null"},
        {"url(1px)", "null"},
        // What can't be read is 0.
        {"--3em", "0px"},
        {"- -3%", "0%"},
    };
    check(readMeasure, rows);
}

TEST(ValueReaders, UnitsOfLengths)
{
    struct Row {
        const char* text;
        ZVLinearUnits units;
        float pixels;
    };
    const Row rows[] = {
        {"2px", UNITS_PIXELS, 2},
        {"2CM", UNITS_CENTIMETERS, 75.590551F},
        {"2mm", UNITS_MILLIMETERS, 7.5590553F},
        {"2in", UNITS_INCHES, 192},
        {"3pt", UNITS_POINTS, 4},
        {"2Pc", UNITS_PICAS, 32},
        {"2em", UNITS_EM, 0},
        {"2ex", UNITS_EX, 0},
    };
    DeclarationSheet sheet;
    for (const Row& row : rows) {
        const ValueTokens tokens(row.text);
        const auto* value = HtmlLengthValue::from(readMeasure(tokens.at(0), sheet.context));
        ASSERT_NE(value, nullptr) << row.text;
        EXPECT_EQ(value->length.units, row.units) << row.text;
        EXPECT_EQ(value->pixels(), row.pixels) << row.text;
    }
}

TEST(ValueReaders, ValuesAreCached)
{
    DeclarationSheet sheet;
    const ValueTokens tokens("1px 1.0px 5% 5.0% bold BOLD red #f00 1 1.5 'a' 'a'");
    for (const std::int32_t index : {0, 2, 4})
        EXPECT_EQ(readMeasure(tokens.at(index), sheet.context),
            readMeasure(tokens.at(index + 1), sheet.context));
    std::int32_t name = 6;
    std::int32_t digits = 7;
    CssTokenList colors;
    for (const CssToken& token : tokens.list)
        colors.add(token);
    EXPECT_EQ(readColor(colors, name, sheet.context), readColor(colors, digits, sheet.context));
    EXPECT_EQ(
        readLineHeight(tokens.at(8), sheet.context), readLineHeight(tokens.at(9), sheet.context));
    EXPECT_NE(stringOf(tokens.at(10), sheet.context), stringOf(tokens.at(11), sheet.context));
}

TEST(ValueReaders, NegativeZeroIsAnotherLength)
{
    DeclarationSheet sheet;
    ValueTokens tokens("-0px");
    joinSigns(tokens.list);
    const auto* value = HtmlLengthValue::from(readMeasure(tokens.at(0), sheet.context));
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(std::signbit(value->length.value));
    EXPECT_NE(value, sheet.values.lengthValue(0, UNITS_PIXELS));
}

TEST(ValueReaders, Widths)
{
    const ReaderRow rows[] = {
        {"thin", "thin"},
        {"foo", "null"},
        {"1em", "1em"},
        {"2ex", "2ex"},
        {"-3px", "-3px"},
        {"50%", "null"},
        {"0", "null"},
    };
    check(readWidth, rows);
}

TEST(ValueReaders, Sizes)
{
    const ReaderRow rows[] = {
        {"auto", "auto"},
        {"1em", "1em"},
        {"2ex", "2ex"},
        {"3px", "3px"},
        {"50%", "50%"},
        {"100", "100px"},
        {"-1.5", "-1.5px"},
        {"- -7", "0px"},
        {"1foo", "null"},
        {"url(x)", "null"},
    };
    check(readSize, rows);
}

TEST(ValueReaders, LineHeightNumbers)
{
    const ReaderRow rows[] = {
        {"normal", "normal"},
        {"2em", "2em"},
        {"2ex", "2ex"},
        {"12px", "12px"},
        {"150%", "150%"},
        {"1.5", "number 1"},
        {"0.99999999999", "number 0"},
        {"2147483647", "number 2.14748e+09"},
        {"2147483648", "number -2.14748e+09"},
        {"1deg", "null"},
        {"#1", "null"},
    };
    check(readLineHeight, rows);
}

TEST(ValueReaders, FontSizes)
{
    const ReaderRow rows[] = {
        {"2em", "2em"},
        {"2ex", "2ex"},
        {"12PT", "12?"},
        {"120%", "120%"},
        {"12", "null"},
        {"700", "null"},
        {"foo", "null"},
        {"#12", "null"},
        {"12foo", "null"},
        {"'12px'", "null"},
        // A length that can't be read is 0 elsewhere.
        {"--12px", "null"},
    };
    check(readFontSize, rows);
    const std::set<std::string> sizes = {"large", "larger", "medium", "small", "smaller", "x-large",
        "x-small", "xx-large", "xx-small"};
    for (const std::string& name : allKeywords()) {
        EXPECT_EQ(read(readFontSize, name), sizes.count(name) != 0 ? expectedText(name) : "null")
            << name;
    }
}

TEST(ValueReaders, FontFamilies)
{
    const ReaderRow rows[] = {
        {"Arial", "\"Arial\""},
        {"Times New Roman", "\"Times\""},
        {"\"Courier New\"", "\"Courier New\""},
        {"'Courier New'", "\"Courier New\""},
        {"\"it's\"", "\"it's\""},
        {"\"\"", "\"\""},
        {"''", "\"\""},
        {"'x", "\"'x\""},
        {"\"x'", "\"\"x'\""},
        {"'", "\"'\""},
        {"inherit", "\"inherit\""},
        {"serif", "\"Times New Roman\""},
        {"SANS-serif", "\"Arial\""},
        {"monospace", "\"Courier New\""},
        {"Cursive", "\"Comic Sans MS\""},
        {"'fantasy'", "\"Impact\""},
        {"fantasy2", "\"fantasy2\""},
        {"12px", "\"12px\""},
        {",", "\",\""},
    };
    for (const ReaderRow& row : rows)
        EXPECT_EQ(read(readFontFamily, row.text), row.value) << row.text;
}

TEST(ValueReaders, StringsAreBytesAsUnits)
{
    DeclarationSheet sheet;
    for (const std::size_t length : {1U, 127U, 128U, 129U, 100'000U}) {
        const ValueTokens tokens(std::string(length, '\xE9'));
        const auto* value = HtmlWStringValue::from(stringOf(tokens.at(0), sheet.context));
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(std::u16string(value->text, value->length), std::u16string(length, u'\u00E9'));
    }
}

TEST(ValueReaders, StringsWithoutMemory)
{
    DeclarationSheet sheet;
    const ValueTokens tokens(std::string(1'000, 'a'));
    const HtmlValue* value = nullptr;
    EXPECT_GT(testing_support::failEachAllocation(
                  [&] {
                      value = stringOf(tokens.at(0), sheet.context);
                      if (value == nullptr)
                          throw std::bad_alloc();
                  },
                  [] {}),
        0U);
    EXPECT_EQ(HtmlWStringValue::from(value)->length, 1'000U);
}

TEST(ValueReaders, Colors)
{
    struct Row {
        const char* text;
        const char* color;
        std::int32_t index;
    };
    const Row rows[] = {
        {"red blue", "color ff", 0},
        {"#abc", "color ccbbaa", 0},
        {"#12", "color 120000", 0},
        {"#xyz", "color 0", 0},
        {"#\\61 bc", "color 0", 0},
        {"abc", "null", 0},
        {"inherit", "null", 0},
        {"rgb(1, 2, 3) 4", "color 30201", 6},
        {"rgb(1, 2 3)", "null", 4},
        {"rgba(1, 2, 3, 4)", "null", 8},
        {"'red'", "null", 0},
        {"url(red)", "null", 0},
        {"12", "null", 0},
        {",", "null", 0},
    };
    DeclarationSheet sheet;
    for (const Row& row : rows) {
        ValueTokens tokens(row.text);
        std::int32_t index = 0;
        EXPECT_EQ(textOf(readColor(tokens.list, index, sheet.context)), row.color) << row.text;
        EXPECT_EQ(index, row.index) << row.text;
    }
}

TEST(ValueReaders, Numbers)
{
    struct Row {
        const char* text;
        double number;
    };
    const Row rows[] = {{"1.25", 1.25}, {"-3", -3}, {"50%", 50}, {"--3", 0}, {"red", 0}};
    for (const Row& row : rows) {
        ValueTokens tokens(row.text);
        joinSigns(tokens.list);
        EXPECT_EQ(numberOf(tokens.at(0)), row.number) << row.text;
    }
}

TEST(ValueReaders, NumbersOutOfRange)
{
    const std::string digits(400, '9');
    EXPECT_EQ(read(readMeasure, digits + "px"), "infpx");
    EXPECT_EQ(read(readMeasure, "-" + digits + "%"), "-inf%");
    EXPECT_EQ(read(readSize, digits), "infpx");
    EXPECT_EQ(read(readLineHeight, digits), "number -2.14748e+09");
}
