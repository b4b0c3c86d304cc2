#include "support/css_strings.h"

#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

using testing_support::tableRows;
using zorvan::CSSStrings;

namespace {

struct NumberedName {
    std::uint32_t number;
    const char* name;
};

// The numbers that the filter goes by, written out: the tables themselves could be renumbered.
constexpr NumberedName kProperties[] = {{11, "backface-visibility"}, {12, "background"},
    {13, "background-attachment"}, {15, "background-color"}, {16, "background-image"},
    {18, "background-position"}, {19, "background-repeat"}, {22, "border"}, {23, "border-bottom"},
    {24, "border-bottom-color"}, {27, "border-bottom-style"}, {28, "border-bottom-width"},
    {29, "border-collapse"}, {30, "border-color"}, {37, "border-left"}, {38, "border-left-color"},
    {39, "border-left-style"}, {40, "border-left-width"}, {42, "border-right"},
    {43, "border-right-color"}, {44, "border-right-style"}, {45, "border-right-width"},
    {46, "border-spacing"}, {47, "border-style"}, {48, "border-top"}, {49, "border-top-color"},
    {52, "border-top-style"}, {53, "border-top-width"}, {54, "border-width"}, {61, "caption-side"},
    {62, "clear"}, {66, "color"}, {82, "counter-increment"}, {83, "counter-reset"}, {84, "cursor"},
    {85, "direction"}, {88, "empty-cells"}, {97, "font"}, {98, "font-family"}, {99, "font-size"},
    {100, "font-style"}, {101, "font-variant"}, {102, "font-weight"}, {105, "height"},
    {109, "letter-spacing"}, {111, "line-height"}, {112, "list-style"}, {113, "list-style-image"},
    {114, "list-style-position"}, {115, "list-style-type"}, {116, "margin"}, {117, "margin-bottom"},
    {118, "margin-left"}, {119, "margin-right"}, {120, "margin-top"}, {130, "max-height"},
    {131, "max-width"}, {132, "min-height"}, {133, "min-width"}, {135, "orphans"}, {144, "padding"},
    {145, "padding-bottom"}, {146, "padding-left"}, {147, "padding-right"}, {148, "padding-top"},
    {156, "quotes"}, {169, "table-layout"}, {170, "text-align"}, {172, "text-decoration"},
    {174, "text-indent"}, {175, "text-overflow"}, {179, "text-transform"}, {190, "vertical-align"},
    {191, "visibility"}, {192, "white-space"}, {194, "width"}, {195, "word-spacing"},
    {196, "word-wrap"}};

constexpr NumberedName kKeywords[] = {{1, "100"}, {2, "200"}, {3, "300"}, {4, "400"}, {5, "500"},
    {6, "600"}, {7, "700"}, {8, "800"}, {9, "900"}, {13, "armenian"}, {14, "auto"},
    {16, "baseline"}, {20, "blink"}, {22, "bold"}, {23, "bolder"}, {25, "bottom"}, {29, "center"},
    {32, "circle"}, {33, "clip"}, {40, "dashed"}, {41, "decimal"}, {42, "decimal-leading-zero"},
    {45, "disc"}, {46, "dotted"}, {47, "double"}, {49, "ellipsis"}, {56, "fixed"}, {57, "georgian"},
    {58, "groove"}, {60, "hidden"}, {65, "inherit"}, {69, "inset"}, {70, "inside"}, {72, "italic"},
    {74, "large"}, {75, "larger"}, {76, "left"}, {80, "lighter"}, {81, "line-through"},
    {86, "lower-alpha"}, {87, "lower-greek"}, {88, "lower-latin"}, {89, "lower-roman"}, {91, "ltr"},
    {92, "medium"}, {103, "no-repeat"}, {104, "none"}, {105, "normal"}, {108, "oblique"},
    {111, "outset"}, {112, "outside"}, {113, "overline"}, {120, "repeat"}, {121, "repeat-x"},
    {122, "repeat-y"}, {123, "ridge"}, {124, "right"}, {128, "rtl"}, {131, "scroll"},
    {133, "separate"}, {139, "small"}, {140, "small-caps"}, {142, "smaller"}, {144, "solid"},
    {146, "square"}, {149, "sub"}, {150, "super"}, {164, "thick"}, {165, "thin"}, {166, "top"},
    {167, "transparent"}, {168, "underline"}, {169, "upper-alpha"}, {170, "upper-latin"},
    {171, "upper-roman"}, {173, "visible"}, {178, "x-large"}, {182, "x-small"}, {184, "xx-large"},
    {185, "xx-small"}};

} // namespace

TEST(CssStrings, NumbersOfThePropertiesInUse)
{
    for (const NumberedName& row : kProperties)
        EXPECT_EQ(CSSStrings::propertyFromString(row.name), row.number) << row.name;
}

TEST(CssStrings, NumbersOfTheKeywordsInUse)
{
    for (const NumberedName& row : kKeywords)
        EXPECT_EQ(CSSStrings::valueFromString(row.name), row.number) << row.name;
}

TEST(CssStrings, EveryPropertyBothWays)
{
    std::uint32_t count = 0;
    for (const auto& [number, name] : tableRows("css_properties.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        EXPECT_EQ(CSSStrings::propertyFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(CSSStrings::propertyFromText((name + "-").c_str(), length), id) << name;
        EXPECT_EQ(CSSStrings::propertyName(id), name);
        ++count;
    }
    EXPECT_EQ(count, 199u);
    EXPECT_STREQ(CSSStrings::propertyName(0), "");
    EXPECT_STREQ(CSSStrings::propertyName(200), "");
}

TEST(CssStrings, EveryKeywordBothWays)
{
    std::uint32_t count = 0;
    for (const auto& [number, name] : tableRows("css_values.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        EXPECT_EQ(CSSStrings::valueFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(CSSStrings::valueFromText((name + "-").c_str(), length), id) << name;
        EXPECT_EQ(CSSStrings::valueName(id), name);
        ++count;
    }
    EXPECT_EQ(count, 189u);
    EXPECT_STREQ(CSSStrings::valueName(0), "");
    EXPECT_STREQ(CSSStrings::valueName(190), "");
}

TEST(CssStrings, NearMissesAreUnknown)
{
    for (const char* table : {"css_properties.tsv", "css_values.tsv"}) {
        std::set<std::string> names;
        for (const auto& [number, name] : tableRows(table))
            names.insert(name);
        for (const std::string& name : names) {
            for (const std::string& other :
                {name + "x", name.substr(1), name.substr(0, name.size() - 1), "-" + name}) {
                const bool property = std::string(table) == "css_properties.tsv";
                const std::uint32_t id = property
                    ? std::uint32_t{CSSStrings::propertyFromString(other.c_str())}
                    : std::uint32_t{CSSStrings::valueFromString(other.c_str())};
                EXPECT_EQ(id != 0, names.contains(other)) << other;
            }
        }
    }
}

TEST(CssStrings, EmptyTextIsNoPropertyAndInheritIsAKeyword)
{
    EXPECT_EQ(CSSStrings::propertyFromString(""), PROPERTY_NONE);
    EXPECT_EQ(CSSStrings::valueFromString("inherit"), 65);
    EXPECT_EQ(CSSStrings::valueFromString("inherit"), VALUE_INHERIT);
}

TEST(CssStrings, UnknownNames)
{
    const std::string longName(100'000, 'a');
    for (const char* name : {"", "Color", "450", "x-nothing", "azimuth", longName.c_str()}) {
        EXPECT_EQ(CSSStrings::propertyFromString(name), PROPERTY_NONE);
        EXPECT_EQ(CSSStrings::valueFromString(name), VALUE_UNKNOWN);
    }
    EXPECT_EQ(CSSStrings::propertyFromString(nullptr), PROPERTY_NONE);
    EXPECT_EQ(CSSStrings::valueFromString(nullptr), VALUE_UNKNOWN);
}
