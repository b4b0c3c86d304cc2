#include "support/zv_string.h"

#include "support/wstring.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

using zorvan::String;

TEST(String, Construction)
{
    EXPECT_STREQ(String().value(), "");
    EXPECT_STREQ(String("text").value(), "text");
    const char* none = nullptr;
    EXPECT_STREQ(String(none).value(), "");
    const String text("text");
    const String copy(text);
    EXPECT_STREQ(copy.value(), "text");
    EXPECT_NE(copy.value(), text.value());
    EXPECT_EQ(copy.length, 4);
}

TEST(String, Assignment)
{
    String text;
    text = "one";
    EXPECT_STREQ(text.value(), "one");
    const String other("another");
    text = other;
    EXPECT_STREQ(text.value(), "another");
    String moved(std::move(text));
    EXPECT_STREQ(moved.value(), "another");
    text = std::move(moved);
    EXPECT_STREQ(text.value(), "another");
    text = text.value() + 3;
    EXPECT_STREQ(text.value(), "ther") << "a text may be part of the object";
}

TEST(String, Append)
{
    String text("a");
    text.append("bc");
    text.append('d');
    text.append(String("ef"));
    text.append(text);
    text.append("");
    const char* none = nullptr;
    text.append(none);
    EXPECT_STREQ(text.value(), "abcdefabcdef");
    EXPECT_EQ(text.length, 12);
}

TEST(String, SetValue)
{
    struct Row {
        std::int32_t start;
        std::int32_t count;
        const char* expected;
    };
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr Row rows[] = {
        {0, 6, "source"},
        {3, kMost, "rce"},
        {3, 2, "rc"},
        {6, 1, ""},
        {99, 1, ""},
        {-5, 2, "so"},
        {2, 0, ""},
        {2, -1, ""},
    };
    const String source("source");
    for (const Row& row : rows) {
        String text("before");
        text.setValue(source, row.start, row.count);
        EXPECT_STREQ(text.value(), row.expected) << row.start << ' ' << row.count;
        String self("source");
        self.setValue(self, row.start, row.count);
        EXPECT_STREQ(self.value(), row.expected) << row.start << ' ' << row.count;
    }
    String text;
    text.setValue("plain");
    EXPECT_STREQ(text.value(), "plain");
    text.setValue(source, 4);
    EXPECT_STREQ(text.value(), "ce");
    text.setValue(source);
    EXPECT_STREQ(text.value(), "source");
}

TEST(String, ToDouble)
{
    struct Row {
        const char* text;
        std::int32_t start;
        double number;
        std::int32_t end;
    };
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr Row rows[] = {
        {"12px", 0, 12, 2},
        {"1.5em", 0, 1.5, 3},
        {"0", 0, 0, 1},
        {"50%", 0, 50, 2},
        {"-10px", 0, -10, 3},
        {"+10px", 0, 10, 3},
        {".5em", 0, 0.5, 2},
        {"-.5em", 0, -0.5, 3},
        {"5.", 0, 5, 1},
        {"5.px", 0, 5, 1},
        {"1e3", 0, 1, 1},
        {"1.25.5", 0, 1.25, 4},
        {"0.1", 0, 0.1, 3},
        {"16777217", 0, 16777217, 8},
        {"", 0, 0, 0},
        {"px", 0, 0, 0},
        {"-", 0, 0, 0},
        {".", 0, 0, 0},
        {"--5", 0, 0, 0},
        {"inf", 0, 0, 0},
        {"nan", 0, 0, 0},
        {"0x10", 0, 0, 1},
        {" 5", 0, 0, 0},
        {"ab12cd", 2, 12, 4},
        {"ab12cd", 3, 2, 4},
        {"ab", 1, 0, 1},
        {"12", 2, 0, 2},
        {"12", 99, 0, 2},
        {"12", -99, 12, 2},
        {"1,5", 0, 1, 1},
    };
    for (const Row& row : rows) {
        const String text(row.text);
        std::int32_t end = -7;
        EXPECT_EQ(text.toDouble(row.start, &end), row.number) << row.text;
        EXPECT_EQ(end, row.end) << row.text;
        EXPECT_EQ(text.toDouble(row.start, nullptr), row.number) << row.text;
    }
    EXPECT_TRUE(std::signbit(String("-0").toDouble(0, nullptr)));
    const String large(std::string(400, '9').c_str());
    EXPECT_EQ(large.toDouble(0, nullptr), kInfinity);
    const String small(("-0." + std::string(400, '0') + "1").c_str());
    EXPECT_EQ(small.toDouble(0, nullptr), 0);
}

TEST(String, EqualsByContent)
{
    const String text("text");
    EXPECT_TRUE(text.equals(String("text")));
    EXPECT_FALSE(text.equals(String("texts")));
    const zorvan::Object& object = text;
    EXPECT_TRUE(object.equals(String("text")));
    EXPECT_FALSE(object.equals(zorvan::WString("text")));
    EXPECT_EQ(object.hashCode(), String("text").hashCode());
    EXPECT_EQ(&object.toString(), &text);
}
