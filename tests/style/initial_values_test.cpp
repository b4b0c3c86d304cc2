#include "style/cascade.h"

#include "tests/style/style_document.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace testing_support;

std::set<ZVCSSProperty> propertiesOf(const std::string& names)
{
    std::set<ZVCSSProperty> properties;
    for (const std::string& name : partsOf(names, ' '))
        properties.insert(propertyOf(name));
    return properties;
}

TEST(InitialValues, Inherited)
{
    const std::set<ZVCSSProperty> expected = propertiesOf(
        "background-color border-spacing caption-side color cursor direction empty-cells font "
        "font-family font-size font-style font-variant font-weight letter-spacing line-height "
        "list-style list-style-image list-style-position list-style-type orphans quotes text-align "
        "text-decoration text-indent text-transform visibility white-space word-spacing");
    EXPECT_EQ(expected.size(), 28U);
    for (std::uint32_t number = 0; number < 300; ++number) {
        const auto property = static_cast<ZVCSSProperty>(number);
        EXPECT_EQ(isInherited(property), expected.count(property) != 0) << number;
    }
}

struct InitialRow {
    const char* properties;
    const char* value;
};

const InitialRow kInitialRows[] = {
    {"backface-visibility visibility", "visible"},
    {"background-attachment", "scroll"},
    {"background-color", "transparent"},
    {"background-image border-bottom-style border-left-style border-right-style border-top-style "
     "clear counter-increment counter-reset list-style-image max-height max-width min-height "
     "min-width text-transform",
        "none"},
    {"background-repeat", "repeat"},
    {"border-bottom-color border-left-color border-right-color border-top-color", "color 0"},
    {"border-bottom-width border-left-width border-right-width border-top-width font-size",
        "medium"},
    {"border-collapse", "separate"},
    {"border-spacing margin-bottom margin-left margin-right margin-top padding-bottom padding-left "
     "padding-right padding-top text-indent",
        "0px"},
    {"caption-side", "top"},
    {"color", "color 0"},
    {"cursor height width", "auto"},
    {"direction", "ltr"},
    {"font-family", "\"Times New Roman\""},
    {"font-style font-variant font-weight letter-spacing line-height white-space word-spacing "
     "word-wrap",
        "normal"},
    {"list-style-position", "outside"},
    {"list-style-type", "disc"},
    {"text-align", "left"},
    {"text-decoration", "none"},
    {"vertical-align", "baseline"},
};

TEST(InitialValues, EveryRowAndNoOther)
{
    StyleDocument document;
    std::map<ZVCSSProperty, std::string> expected;
    for (const InitialRow& row : kInitialRows) {
        for (const ZVCSSProperty property : propertiesOf(row.properties))
            expected[property] = expectedText(row.value);
    }
    EXPECT_EQ(expected.size(), 59U);
    for (std::uint32_t number = 0; number < 300; ++number) {
        const auto property = static_cast<ZVCSSProperty>(number);
        CssDeclaration out;
        const bool isThere = getInitialDeclaration(property, out, 0, document.context);
        ASSERT_EQ(isThere, expected.count(property) != 0) << number;
        if (!isThere)
            continue;
        EXPECT_EQ(out.getProperty(), property);
        EXPECT_EQ(out.getValueCount(), 1);
        EXPECT_EQ(textOf(out.getValue()), expected[property]) << number;
        EXPECT_FALSE(out.important);
        EXPECT_FALSE(out.edgeMargin);
    }
}

TEST(InitialValues, BorderColorIsTheColorInForce)
{
    StyleDocument document;
    document.initialStyle.set(PROPERTY_COLOR, document.color(0x11), false, false);
    document.runningStyle.set(PROPERTY_COLOR, document.color(0x22), false, false);
    for (const ZVCSSProperty side :
        propertiesOf("border-bottom-color border-left-color border-right-color border-top-color")) {
        CssDeclaration out;
        ASSERT_TRUE(getInitialDeclaration(side, out, 1, document.context));
        EXPECT_EQ(textOf(out.getValue()), "color 11");
        for (const std::uint32_t running : {0U, 2U}) {
            ASSERT_TRUE(getInitialDeclaration(side, out, running, document.context));
            EXPECT_EQ(textOf(out.getValue()), "color 22");
        }
    }
}

TEST(InitialValues, NamedFontSizes)
{
    const std::map<std::string, std::uint32_t> expected{{"xx-small", 9}, {"x-small", 10},
        {"small", 13}, {"medium", 16}, {"large", 18}, {"x-large", 24}, {"xx-large", 32}};
    std::map<std::uint32_t, std::uint32_t> sizes;
    for (const auto& [name, size] : expected)
        sizes[zorvan::CSSStrings::valueFromString(name.c_str())] = size;
    for (std::uint32_t value = 0; value < 250; ++value) {
        const std::uint32_t size = sizes.count(value) != 0 ? sizes[value] : 0xFFFFFFFF;
        EXPECT_EQ(namedFontSize(value), size) << value;
    }
}

const InitialRow kDefaultRows[] = {
    {"background-color", "transparent"},
    {"border-bottom-color border-left-color border-right-color border-top-color", "color 0"},
    {"border-bottom-style border-left-style border-right-style border-top-style", "none"},
    {"border-bottom-width border-left-width border-right-width border-top-width", "0px"},
    {"color", "color 0"},
    {"direction", "ltr"},
    {"font-family", "\"Times New Roman\""},
    {"font-size", "16px"},
    {"font-style font-variant font-weight", "normal"},
    {"height", "auto"},
    {"letter-spacing line-height", "normal"},
    {"margin-bottom margin-left margin-right margin-top", "0px"},
    {"padding-bottom padding-left padding-right padding-top", "0px"},
    {"text-align", "left"},
    {"text-decoration", "none"},
    {"text-indent", "0px"},
    {"text-transform", "none"},
    {"vertical-align", "center"},
    {"width", "auto"},
};

TEST(InitialValues, DefaultStyle)
{
    ValueCache values;
    CssDeclarationList list(&values);
    fillDefaultStyle(list, values);
    Declarations expected;
    for (const InitialRow& row : kDefaultRows) {
        for (const ZVCSSProperty property : propertiesOf(row.properties))
            expected[property] = expectedText(row.value);
    }
    EXPECT_EQ(expected.size(), 37U);
    EXPECT_EQ(declarationsIn(list), expected);
}

TEST(InitialValues, DefaultStyleCentersVertically)
{
    StyleDocument document;
    EXPECT_EQ(
        document.initialStyle.findValue(PROPERTY_VERTICAL_ALIGN), document.keyword(VALUE_CENTER));
    CssDeclaration initial;
    getInitialDeclaration(PROPERTY_VERTICAL_ALIGN, initial, 0, document.context);
    EXPECT_EQ(initial.getValue(), document.keyword(VALUE_BASELINE));
}

TEST(InitialValues, AListWithEntriesIsLeftAlone)
{
    ValueCache values;
    CssDeclarationList list(&values);
    list.set(PROPERTY_COLOR, values.colorValue(5), false, false);
    fillDefaultStyle(list, values);
    EXPECT_EQ(list.getCount(), 1U);
    EXPECT_EQ(list.findValue(PROPERTY_COLOR), values.colorValue(5));
}

} // namespace
