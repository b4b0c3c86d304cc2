#include "output/borders.h"

#include "style/css_declaration_list.h"
#include "tree/html_value.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace {

struct SideRow {
    ZVCSSProperty color;
    ZVCSSProperty style;
    ZVCSSProperty width;
    BorderSide BorderSides::*side;
    bool BorderSides::*has;
};

constexpr SideRow kSides[] = {
    {PROPERTY_BORDER_TOP_COLOR, PROPERTY_BORDER_TOP_STYLE, PROPERTY_BORDER_TOP_WIDTH,
        &BorderSides::top, &BorderSides::hasTop},
    {PROPERTY_BORDER_LEFT_COLOR, PROPERTY_BORDER_LEFT_STYLE, PROPERTY_BORDER_LEFT_WIDTH,
        &BorderSides::left, &BorderSides::hasLeft},
    {PROPERTY_BORDER_BOTTOM_COLOR, PROPERTY_BORDER_BOTTOM_STYLE, PROPERTY_BORDER_BOTTOM_WIDTH,
        &BorderSides::bottom, &BorderSides::hasBottom},
    {PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_BORDER_RIGHT_STYLE, PROPERTY_BORDER_RIGHT_WIDTH,
        &BorderSides::right, &BorderSides::hasRight},
};

using Words = std::array<std::uint32_t, 5>;

Words wordsOf(const BorderSide& side)
{
    return {side.width, side.color, side.style, side.reserved[0], side.reserved[1]};
}

constexpr Words kNotGiven{15, 0, 1, 0, 0};

class Borders : public testing::Test {
protected:
    void set(ZVCSSProperty property, HtmlValue* value)
    {
        list.set(property, value, /*important=*/false, /*edgeMargin=*/false);
    }

    ValueCache values;
    CssDeclarationList list{&values};
};

TEST_F(Borders, WithoutDeclarationsNothingIsGiven)
{
    set(PROPERTY_COLOR, values.colorValue(1));
    const BorderSides sides = borderSidesOf(list);
    EXPECT_FALSE(sides.isGiven);
    for (const SideRow& row : kSides)
        EXPECT_EQ(wordsOf(sides.*row.side), kNotGiven);
}

TEST_F(Borders, EachDeclarationOfEachSide)
{
    for (const SideRow& row : kSides) {
        struct Declared {
            ZVCSSProperty property;
            HtmlValue* value;
            Words expected;
        };
        const Declared rows[] = {
            {row.color, values.colorValue(0x123456), {15, 0x123456, 1, 0, 0}},
            {row.color, values.keywordValue(VALUE_INHERIT), kNotGiven},
            {row.style, values.keywordValue(VALUE_SOLID), {15, 0, 0, 0, 0}},
            {row.style, values.keywordValue(VALUE_NONE), kNotGiven},
            {row.width, values.lengthValue(2.9F, UNITS_PIXELS), {30, 0, 1, 0, 0}},
            {row.width, values.lengthValue(1, UNITS_INCHES), {1440, 0, 1, 0, 0}},
            {row.width, values.lengthValue(0, UNITS_PIXELS), {0, 0, 1, 0, 0}},
            {row.width, values.lengthValue(2, UNITS_EM), {0, 0, 1, 0, 0}},
            {row.width, values.keywordValue(VALUE_THICK), kNotGiven},
        };
        for (const Declared& declared : rows) {
            CssDeclarationList one(&values);
            one.set(declared.property, declared.value, false, false);
            const BorderSides sides = borderSidesOf(one);
            EXPECT_TRUE(sides.isGiven) << declared.property;
            for (const SideRow& other : kSides) {
                EXPECT_EQ(wordsOf(sides.*other.side),
                    other.side == row.side ? declared.expected : kNotGiven)
                    << declared.property;
                EXPECT_EQ(sides.*other.has, other.side == row.side) << declared.property;
            }
        }
    }
}

TEST_F(Borders, StylesOfEveryKeyword)
{
    const std::map<std::uint32_t, std::uint32_t> codes{
        {VALUE_SOLID, BORDER_STYLE_SOLID},
        {VALUE_INSET, BORDER_STYLE_SOLID},
        {VALUE_OUTSET, BORDER_STYLE_SOLID},
        {VALUE_RIDGE, BORDER_STYLE_SOLID},
        {VALUE_DOUBLE, 2},
        {VALUE_GROOVE, 0x10},
        {VALUE_DOTTED, 0x20},
        {VALUE_DASHED, 0x80},
    };
    for (std::uint32_t keyword = 0; keyword <= VALUE_RUN_IN; ++keyword) {
        const auto code = codes.find(keyword);
        EXPECT_EQ(borderStyleOf(values.keywordValue(static_cast<ZVCSSValue>(keyword))),
            code == codes.end() ? 1 : code->second)
            << keyword;
    }
    EXPECT_EQ(borderStyleOf(nullptr), 1U);
    EXPECT_EQ(borderStyleOf(values.colorValue(0)), 1U);
}

} // namespace
