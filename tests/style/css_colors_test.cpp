#include "style/css_colors.h"

#include "tests/style/value_tokens.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

using testing_support::DeclarationSheet;
using testing_support::textOf;
using testing_support::ValueTokens;

namespace {

struct FunctionRow {
    const char* text;
    const char* color; ///< 00BBGGRR, "null" for none
    std::int32_t index; ///< where reading ends
    bool failed;
};

const FunctionRow kFunctions[] = {
    {"rgb(255, 0, 0)", "color ff", 6, false},
    {"RGB(1, 2, 3)", "color 30201", 6, false},
    {"rgb(300, 0, -5)", "color ff", 7, false},
    {"rgb(-1, -2, -3) 4", "color 0", 9, false},
    {"rgb(1.9, 254.999, 255.5)", "color fffe01", 6, false},
    {"rgb(100%, 0%, 0%)", "color ff", 6, false},
    {"rgb(50%, 33.3%, 250%)", "color ff547f", 6, false},
    {"rgb(-50%, 10%, 20%)", "color 331900", 7, false},
    {"rgb(1e3, 0, 0)", "null", 1, true},
    // The first component says what all are to be.
    {"rgb(100%, 0, 0)", "null", 3, true},
    {"rgb(0, 100%, 0)", "null", 3, true},
    {"rgb(0, 0, 0%)", "null", 5, true},
    {"rgb(0 0 0)", "null", 2, true},
    {"rgb(0, 0)", "null", 4, true},
    {"rgb(0, 0, 0, 0)", "null", 6, true},
    {"rgb(0, 0, 0 red", "null", 6, true},
    {"rgb(0, 0, 0", "null", 6, true},
    {"rgb(0, 0,", "null", 5, true},
    {"rgb(", "null", 1, true},
    {"rgb(-", "null", 2, true},
    {"rgb(- - 1, 2, 3)", "null", 2, true},
    {"rgb(+1, 2, 3)", "null", 1, true},
    {"rgb(red, 2, 3)", "null", 1, true},
    {"rgb(1px, 2px, 3px)", "null", 1, true},
    {"hsl(120, 100%, 50%)", "color ff00", 6, false},
    {"HSL(-120, 100%, 50%)", "color ff0000", 7, false},
    {"hsl(0, 100%, 50%)", "color ff", 6, false},
    {"hsl(360, 100%, 50%)", "color ff", 6, false},
    {"hsl(480, 100%, 50%)", "color ff00", 6, false},
    {"hsl(-480, 100%, 50%)", "color ff0000", 7, false},
    {"hsl(60, 100%, 50%)", "color fffe", 6, false},
    {"hsl(120.9, 100%, 50%)", "color ff00", 6, false},
    {"hsl(0, 0%, 100%)", "color ffffff", 6, false},
    {"hsl(0, 0%, 0%)", "color 0", 6, false},
    {"hsl(0, 0%, 50%)", "color 7f7f7f", 6, false},
    {"hsl(90, 50%, 25%)", "color 1f5f3f", 6, false},
    {"hsl(210, 60%, 75%)", "color e5bf98", 6, false},
    {"hsl(15, 80%, 40%)", "color 143db7", 6, false},
    {"hsl(45, 80%, 40%)", "color 148eb7", 6, false},
    {"hsl(75, 80%, 40%)", "color 14b78e", 6, false},
    {"hsl(105, 80%, 40%)", "color 14b73d", 6, false},
    {"hsl(135, 80%, 40%)", "color 3db714", 6, false},
    {"hsl(165, 80%, 40%)", "color 8eb714", 6, false},
    {"hsl(195, 80%, 40%)", "color b78e14", 6, false},
    {"hsl(225, 80%, 40%)", "color b73d14", 6, false},
    {"hsl(255, 80%, 40%)", "color b7143d", 6, false},
    {"hsl(285, 80%, 40%)", "color b7148e", 6, false},
    {"hsl(315, 80%, 40%)", "color 8e14b7", 6, false},
    {"hsl(345, 80%, 40%)", "color 3d14b7", 6, false},
    {"hsl(0, 200%, 150%)", "color ffffff", 6, false},
    {"hsl(0, -100%, 50%)", "color 7f7f7f", 7, false},
    {"hsl(0, 100%, -50%)", "color 0", 7, false},
    // As a whole number the hue is -2,147,483,648 degrees, 232 behind full circles.
    {"hsl(99999999999, 100%, 50%)", "color ff2100", 6, false},
    {"hsl(100%, 100%, 50%)", "null", 1, true},
    {"hsl(120, 100, 50)", "null", 3, true},
    {"hsl(120, 100%, 50)", "null", 5, true},
    {"rgba(1, 2, 3, 0.5) 7", "null", 8, false},
    {"HSLA(1, 2%, 3%, 0.5)", "null", 8, false},
    {"rgba(1, 2", "null", 4, false},
    {"rgba()", "null", 1, false},
    {"foo(1, 2, 3)", "null", 0, true},
    {"rgb\\28(1, 2, 3)", "null", 0, true},
};

} // namespace

TEST(CssColors, Functions)
{
    DeclarationSheet sheet;
    for (const FunctionRow& row : kFunctions) {
        SCOPED_TRACE(row.text);
        const ValueTokens tokens(row.text);
        std::int32_t index = 0;
        bool failed = false;
        EXPECT_EQ(textOf(parseColorFunction(tokens.list, index, failed, sheet.context)), row.color);
        EXPECT_EQ(index, row.index);
        EXPECT_EQ(failed, row.failed);
    }
}

TEST(CssColors, FunctionsBehindOtherTokens)
{
    DeclarationSheet sheet;
    const ValueTokens tokens("red rgb(0, 0, 1) rgb(0, 0, 2)");
    std::int32_t index = 1;
    bool failed = false;
    EXPECT_EQ(textOf(parseColorFunction(tokens.list, index, failed, sheet.context)), "color 10000");
    EXPECT_EQ(index, 7);
    ++index;
    EXPECT_EQ(textOf(parseColorFunction(tokens.list, index, failed, sheet.context)), "color 20000");
    EXPECT_EQ(index, 14);
    EXPECT_FALSE(failed);
}

// Every grey by its share and every number as it stands.
TEST(CssColors, EveryChannelNumber)
{
    DeclarationSheet sheet;
    for (std::uint32_t channel = 0; channel < 256; ++channel) {
        const std::string number = std::to_string(channel);
        const ValueTokens tokens("rgb(" + number + ", 0, " + number + ")");
        std::int32_t index = 0;
        bool failed = false;
        const auto* color
            = HtmlColorValue::from(parseColorFunction(tokens.list, index, failed, sheet.context));
        ASSERT_NE(color, nullptr);
        EXPECT_EQ(color->color, channel | channel << 16);
    }
}
