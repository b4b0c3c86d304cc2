#include "tree/font_sizes.h"

#include "tests/tree/tag_reading.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::TagReading;

struct SizeRow {
    const char* size;
    const char* attribute; ///< of font
    const char* declaration;
};

// Without a sign.
const SizeRow kSizes[] = {
    {"1", "enum:7", "keyword:x-small"},
    {"2", "enum:17", "keyword:small"},
    {"3", "enum:14", "keyword:medium"},
    {"4", "enum:4", "keyword:large"},
    {"5", "enum:1", "keyword:x-large"},
    {"6", "enum:11", "keyword:xx-large"},
    {"7", "enum:10", "length:48px"},
    // Clamped.
    {"0", "enum:7", "keyword:x-small"},
    {"8", "enum:10", "length:48px"},
    {"9", "enum:10", "length:48px"},
    {"2147483647", "enum:10", "length:48px"},
    {"2147483648", "enum:7", "keyword:x-small"},
    {"50%", "enum:7", "keyword:x-small"},
    {"3.9", "enum:14", "keyword:medium"},
    {"4pt", "enum:4", "keyword:large"},
    {"#5", "enum:1", "keyword:x-large"},
    {"a", "enum:10", "length:48px"},
};

std::string attributePart(const std::string& value)
{
    return value.empty() ? std::string() : "size=" + value + ' ';
}

/// What a tag of one attribute makes, with a certain font size in force.
std::string appliedIn(const std::string& tag, const char* name, HtmlValue* (*base)(ValueCache&))
{
    TagReading reading(tag + "x");
    reading.context.initialStyle->set(
        PROPERTY_FONT_SIZE, base(reading.tree.values), /*important=*/false, /*edgeMargin=*/false);
    reading.apply();
    EXPECT_EQ(reading.list.getCount(), reading.list.contains(PROPERTY_FONT_SIZE) ? 1U : 0U) << name;
    return reading.text();
}

HtmlValue* mediumKeyword(ValueCache& values) { return values.keywordValue(VALUE_MEDIUM); }

TEST(FontSizes, SizesOfFont)
{
    for (const SizeRow& row : kSizes) {
        EXPECT_EQ(appliedIn(std::string("<font size='") + row.size + "'>", row.size, mediumKeyword),
            attributePart(row.attribute) + "| font-size: " + row.declaration)
            << row.size;
    }
}

TEST(FontSizes, SizesOfBaseFontAreKeptAsRead)
{
    struct Row {
        const char* size;
        const char* number;
    };
    const Row numbers[] = {{"1", "1"}, {"2", "2"}, {"3", "3"}, {"4", "4"}, {"5", "5"}, {"6", "6"},
        {"7", "7"}, {"0", "0"}, {"8", "8"}, {"9", "9"}, {"2147483647", "2147483648"},
        {"2147483648", "-2147483648"}, {"50%", "-50"}, {"3.9", "3"}, {"4pt", "4"}, {"#5", "5"},
        {"a", "10"}};
    ASSERT_EQ(std::size(numbers), std::size(kSizes));
    for (std::size_t i = 0; i < std::size(kSizes); ++i) {
        ASSERT_STREQ(numbers[i].size, kSizes[i].size);
        EXPECT_EQ(
            testing_support::appliedTo(std::string("<basefont size='") + kSizes[i].size + "'>"),
            std::string("size=number:") + numbers[i].number
                + " | font-size: " + kSizes[i].declaration)
            << kSizes[i].size;
    }
}

TEST(FontSizes, TextsThatAreNoSize)
{
    for (const char* const size : {"", "x", "+", "-", "+x", "- 1", "--1", "+-1", " 3", "%"}) {
        EXPECT_EQ(testing_support::appliedTo(std::string("<font size='") + size + "'>"), "")
            << size;
        EXPECT_EQ(testing_support::appliedTo(std::string("<basefont size='") + size + "'>"), "")
            << size;
    }
    // The sign is the font's alone.
    EXPECT_EQ(testing_support::appliedTo("<basefont size=+1>"), "");
}

struct StepRow {
    const char* size;
    const char* attribute; ///< empty: none is kept
    const char* ems;
    const char* of16; ///< pixels, where 16 of them are in force
    const char* of100;
};

const StepRow kSteps[] = {
    {"-6", "enum:13", "0.1", "2", "10"},
    {"-5", "enum:3", "0.25", "4", "25"},
    {"-4", "enum:6", "0.4", "6", "40"},
    {"-3", "enum:16", "0.55", "9", "55"},
    {"-2", "enum:19", "0.7", "11", "70"},
    {"-1", "enum:9", "0.85", "14", "85"},
    {"+0", "", "1", "16", "100"},
    {"-0", "", "1", "16", "100"},
    {"+1", "enum:8", "1.15", "18", "115"},
    {"+2", "enum:18", "1.3", "21", "130"},
    {"+3", "enum:15", "1.45", "23", "145"},
    {"+4", "enum:5", "1.6", "26", "160"},
    {"+5", "enum:2", "1.75", "28", "175"},
    {"+6", "enum:12", "1.9", "30", "190"},
    // Beyond the last step.
    {"+7", "enum:12", "1.9", "30", "190"},
    {"-7", "enum:13", "0.1", "2", "10"},
    {"+2147483647", "enum:12", "1.9", "30", "190"},
    {"-2147483648", "enum:12", "1.9", "30", "190"},
    {"+2147483648", "enum:13", "0.1", "2", "10"},
    // What stands behind the sign is read like any number.
    {"+1.9", "enum:8", "1.15", "18", "115"},
    {"+1%", "enum:9", "0.85", "14", "85"},
    {"-1%", "enum:8", "1.15", "18", "115"},
    {"+a", "enum:12", "1.9", "30", "190"},
};

TEST(FontSizes, StepsOfAKeyword)
{
    for (const StepRow& row : kSteps)
        EXPECT_EQ(appliedIn(std::string("<font size='") + row.size + "'>", row.size, mediumKeyword),
            attributePart(row.attribute) + "| font-size: length:" + row.ems + "em")
            << row.size;
}

TEST(FontSizes, StepsOfPixels)
{
    const auto pixels16
        = [](ValueCache& values) -> HtmlValue* { return values.lengthValue(16, UNITS_PIXELS); };
    const auto pixels100
        = [](ValueCache& values) -> HtmlValue* { return values.lengthValue(100, UNITS_PIXELS); };
    for (const StepRow& row : kSteps) {
        const std::string tag = std::string("<font size='") + row.size + "'>";
        const std::string expected = attributePart(row.attribute) + "| font-size: length:";
        EXPECT_EQ(appliedIn(tag, row.size, pixels16), expected + row.of16 + "px") << row.size;
        EXPECT_EQ(appliedIn(tag, row.size, pixels100), expected + row.of100 + "px") << row.size;
    }
}

TEST(FontSizes, OnlyAbsoluteLengthsAreAPixelSize)
{
    struct Row {
        const char* name;
        HtmlValue* (*base)(ValueCache&);
        const char* declaration;
    };
    const Row rows[] = {
        {"points", [](ValueCache& v) -> HtmlValue* { return v.lengthValue(12, UNITS_POINTS); },
            "length:21px"},
        {"inches", [](ValueCache& v) -> HtmlValue* { return v.lengthValue(1, UNITS_INCHES); },
            "length:125px"},
        {"parts of a pixel fall away",
            [](ValueCache& v) -> HtmlValue* { return v.lengthValue(16.9F, UNITS_PIXELS); },
            "length:21px"},
        {"em", [](ValueCache& v) -> HtmlValue* { return v.lengthValue(2, UNITS_EM); },
            "length:1.3em"},
        {"ex", [](ValueCache& v) -> HtmlValue* { return v.lengthValue(2, UNITS_EX); },
            "length:1.3em"},
        {"percent", [](ValueCache& v) -> HtmlValue* { return v.percentValue(150); },
            "length:1.3em"},
        {"length in percent",
            [](ValueCache& v) -> HtmlValue* { return v.lengthValue(150, UNITS_PERCENT); },
            "length:1.3em"},
        {"keyword", [](ValueCache& v) -> HtmlValue* { return v.keywordValue(VALUE_XX_LARGE); },
            "length:1.3em"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(appliedIn("<font size=+2>", row.name, row.base),
            std::string("size=enum:18 | font-size: ") + row.declaration)
            << row.name;
}

TEST(FontSizes, NoFontSizeInForce)
{
    TagReading reading("<font size=-2>x");
    reading.context.initialStyle->remove(PROPERTY_FONT_SIZE);
    reading.apply();
    EXPECT_EQ(reading.text(), "size=enum:19 | font-size: length:0.7em");
}

TEST(FontSizes, NoStepIsDeclaredAndNotKept)
{
    EXPECT_EQ(appliedIn("<font size=+0>", "+0", mediumKeyword), "| font-size: length:1em");
}

} // namespace
