#include "support/length.h"

#include "support/zv_string.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using zorvan::Length;
using zorvan::String;

TEST(Length, UnitsThatRulesNameByNumber)
{
    EXPECT_EQ(UNITS_EM, 1);
    EXPECT_EQ(UNITS_EX, 2);
    EXPECT_EQ(UNITS_PIXELS, 24);
    EXPECT_EQ(UNITS_POINTS, 25);
}

TEST(Length, Parses)
{
    struct Row {
        const char* text;
        float value;
        ZVLinearUnits units;
    };
    constexpr Row rows[] = {
        {"12px", 12, UNITS_PIXELS},
        {"1.5em", 1.5f, UNITS_EM},
        {"0", 0, UNITS_PIXELS},
        {"50%", 50, UNITS_PERCENT},
        {"2ex", 2, UNITS_EX},
        {"1in", 1, UNITS_INCHES},
        {"2.54cm", 2.54f, UNITS_CENTIMETERS},
        {"10mm", 10, UNITS_MILLIMETERS},
        {"12pt", 12, UNITS_POINTS},
        {"1pc", 1, UNITS_PICAS},
        {"-10px", -10, UNITS_PIXELS},
        {"-.5em", -0.5f, UNITS_EM},
        {"+3pt", 3, UNITS_POINTS},
        {"12PX", 12, UNITS_PIXELS},
        {"1Em", 1, UNITS_EM},
        {"100", 100, UNITS_PIXELS},
        {"0.1px", 0.1f, UNITS_PIXELS},
    };
    for (const Row& row : rows) {
        float value = -1;
        ZVLinearUnits units = UNITS_NONE;
        EXPECT_TRUE(Length::parse(String(row.text), &value, &units)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_EQ(units, row.units) << row.text;
        const Length length{String(row.text)};
        EXPECT_EQ(length.value, row.value) << row.text;
        EXPECT_EQ(length.units, row.units) << row.text;
    }
}

TEST(Length, UnitsInAnyCase)
{
    struct Row {
        const char* unit;
        ZVLinearUnits units;
    };
    constexpr Row rows[] = {
        {"em", UNITS_EM},
        {"ex", UNITS_EX},
        {"px", UNITS_PIXELS},
        {"in", UNITS_INCHES},
        {"cm", UNITS_CENTIMETERS},
        {"mm", UNITS_MILLIMETERS},
        {"pt", UNITS_POINTS},
        {"pc", UNITS_PICAS},
    };
    for (const Row& row : rows) {
        // Each of the two letters small and capital.
        for (const unsigned capitals : {0u, 1u, 2u, 3u}) {
            std::string text = std::string("7") + row.unit;
            for (const unsigned letter : {0u, 1u}) {
                if ((capitals >> letter & 1) != 0)
                    text[1 + letter] = static_cast<char>(text[1 + letter] - ('a' - 'A'));
            }
            const Length length{String(text.c_str())};
            EXPECT_EQ(length.value, 7) << text;
            EXPECT_EQ(length.units, row.units) << text;
        }
    }
}

TEST(Length, UnreadableTextIsZeroPixels)
{
    for (const char* text : {"", "px", "-", "-px", ".", "5.px", "12 px", " 12px", "12px ", "12pxx",
             "12foo", "12deg", "1e3px", "--1px", "auto", "%", "1.5.5em", "12p\\78"}) {
        float value = -1;
        ZVLinearUnits units = UNITS_EM;
        EXPECT_FALSE(Length::parse(String(text), &value, &units)) << text;
        EXPECT_EQ(value, -1) << text;
        EXPECT_EQ(units, UNITS_EM) << text;
        const Length length{String(text)};
        EXPECT_EQ(length.value, 0) << text;
        EXPECT_EQ(length.units, UNITS_PIXELS) << text;
    }
}

TEST(Length, ConstructionAndSetValue)
{
    Length length;
    EXPECT_EQ(length.value, 0);
    EXPECT_EQ(length.units, UNITS_PIXELS);
    length.setValue(1.5f, UNITS_EM);
    EXPECT_EQ(length.value, 1.5f);
    EXPECT_EQ(length.units, UNITS_EM);
    length = Length(12, UNITS_POINTS);
    EXPECT_EQ(length.value, 12);
    EXPECT_EQ(length.units, UNITS_POINTS);
}

TEST(Length, ConvertsToPixels)
{
    struct Row {
        float value;
        ZVLinearUnits units;
        std::int32_t dotsPerInch;
        float pixels;
    };
    constexpr Row rows[] = {
        {12, UNITS_PIXELS, 96, 12},
        {0.3f, UNITS_PIXELS, 96, 0.3f},
        {1, UNITS_INCHES, 96, 96},
        {-1, UNITS_INCHES, 96, -96},
        {2.54f, UNITS_CENTIMETERS, 96, static_cast<float>(double{2.54f} * 96 / 2.54)},
        {10, UNITS_MILLIMETERS, 96, static_cast<float>(10.0 * 96 / 25.4)},
        {12, UNITS_POINTS, 96, 16},
        {7.5f, UNITS_POINTS, 96, 10},
        {11, UNITS_POINTS, 96, static_cast<float>(11.0 * 96 / 72)},
        {1, UNITS_PICAS, 96, 16},
        {1, UNITS_INCHES, 72, 72},
        {12, UNITS_POINTS, 72, 12},
        {3, UNITS_EM, 96, 0},
        {3, UNITS_EX, 96, 0},
        {50, UNITS_PERCENT, 96, 0},
        {5, UNITS_NONE, 96, 0},
        {5, static_cast<ZVLinearUnits>(99), 96, 0},
        {1, UNITS_INCHES, 0, 0},
    };
    for (const Row& row : rows) {
        const Length length(row.value, row.units);
        EXPECT_EQ(length.getValueAsUnits(UNITS_PIXELS, row.dotsPerInch), row.pixels)
            << row.value << ' ' << row.units;
    }
}

TEST(Length, ConvertsToOtherUnits)
{
    EXPECT_EQ(Length(16, UNITS_PIXELS).getValueAsUnits(UNITS_POINTS, 96), 12);
    EXPECT_EQ(Length(96, UNITS_PIXELS).getValueAsUnits(UNITS_INCHES, 96), 1);
    EXPECT_EQ(Length(1, UNITS_INCHES).getValueAsUnits(UNITS_PICAS, 96), 6);
    EXPECT_EQ(Length(1, UNITS_CENTIMETERS).getValueAsUnits(UNITS_MILLIMETERS, 96), 10);
    EXPECT_EQ(Length(16, UNITS_PIXELS).getValueAsUnits(UNITS_EM, 96), 0);
    EXPECT_EQ(Length(2, UNITS_EM).getValueAsUnits(UNITS_EM, 96), 2);
    EXPECT_EQ(Length(50, UNITS_PERCENT).getValueAsUnits(UNITS_PERCENT, 96), 50);
    EXPECT_EQ(Length(50, UNITS_PIXELS).getValueAsUnits(UNITS_POINTS, 0), 0);
}

TEST(Length, NumbersBeyondFloatAreInfinite)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::string digits(60, '9');
    EXPECT_EQ(Length(String((digits + "px").c_str())).value, kInfinity);
    EXPECT_EQ(Length(String(("-" + digits + "px").c_str())).value, -kInfinity);
    const Length inches(3e38f, UNITS_INCHES);
    EXPECT_EQ(inches.getValueAsUnits(UNITS_PIXELS, 96), kInfinity);
    EXPECT_EQ(Length(kInfinity, UNITS_INCHES).getValueAsUnits(UNITS_PIXELS, 96), kInfinity);
}

TEST(Length, InfiniteLengthsConvertLikeOthers)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    struct Row {
        ZVLinearUnits units, target;
        std::int32_t dotsPerInch;
        float result;
    };
    constexpr Row rows[] = {
        {UNITS_PIXELS, UNITS_PIXELS, 96, kInfinity},
        {UNITS_POINTS, UNITS_PIXELS, 96, kInfinity},
        {UNITS_PIXELS, UNITS_INCHES, 96, kInfinity},
        {UNITS_EM, UNITS_EM, 96, kInfinity},
        // Where the other unit has no size, so has the result.
        {UNITS_EM, UNITS_PIXELS, 96, 0},
        {UNITS_PERCENT, UNITS_PIXELS, 96, 0},
        {UNITS_PIXELS, UNITS_EM, 96, 0},
        {UNITS_PIXELS, UNITS_EX, 96, 0},
        {UNITS_PIXELS, UNITS_PERCENT, 96, 0},
        {UNITS_INCHES, UNITS_NONE, 96, 0},
        {UNITS_INCHES, UNITS_PIXELS, 0, 0},
        {UNITS_PIXELS, UNITS_INCHES, 0, 0},
    };
    for (const Row& row : rows) {
        const Length length(kInfinity, row.units);
        EXPECT_EQ(length.getValueAsUnits(row.target, row.dotsPerInch), row.result)
            << row.units << ' ' << row.target;
        const Length negative(-kInfinity, row.units);
        EXPECT_EQ(negative.getValueAsUnits(row.target, row.dotsPerInch), -row.result)
            << row.units << ' ' << row.target;
    }
}

TEST(Length, ConversionIsInDoubleAndRoundedOnce)
{
    // In single precision both come out one step off.
    for (const float value : {0.1f, 0.2f}) {
        const auto expected = static_cast<float>(double{value} * 96 / 25.4);
        const volatile float product = value * 96.0f;
        const volatile float single = product / 25.4f;
        EXPECT_NE(single, expected) << value;
        EXPECT_EQ(Length(value, UNITS_MILLIMETERS).getValueAsUnits(UNITS_PIXELS, 96), expected);
    }
}
