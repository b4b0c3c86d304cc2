#include "tools/htmltree/style_origins.h"

#include "style/css_declaration_list.h"
#include "style/selector.h"
#include "tree/html_node_data.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"

#include <gtest/gtest.h>

namespace {

using htmltree::StyleOrigins;
using Lines = std::vector<std::string>;

/// One element with lists to declare things in.
class StyleOriginsTest : public testing::Test {
protected:
    StyleOriginsTest()
    {
        auto classSelector = std::make_unique<SimpleSelectorSequence>();
        classSelector->add(std::make_unique<SimpleSelector>(SELECTOR_CLASS, "x", 1));
        rule.add(std::move(classSelector));
        rule.declarations = &ruleList;
    }

    void color(CssDeclarationList& list, std::uint32_t number, bool important = false)
    {
        list.set(PROPERTY_COLOR, values.colorValue(number), important, /*edgeMargin=*/false);
    }

    void pixels(CssDeclarationList& list, ZVCSSProperty property, float number)
    {
        list.set(property, values.lengthValue(number, UNITS_PIXELS), false, false);
    }

    void keyword(CssDeclarationList& list, ZVCSSProperty property, ZVCSSValue value)
    {
        list.set(property, values.keywordValue(value), false, false);
    }

    /// The cascade of an element whose list is `result`.
    void cascade(ZVHTMLElement element)
    {
        HtmlTagNodeData payload(element);
        HtmlTree tree;
        HtmlTreeNode& node = *tree.createNode(&payload, tree.root());
        zorvan::ArrayList<Selector*> rules;
        rules.add(&rule);
        origins.onCascade(node, {&style, rules, &own, &builtIn});
        origins.onCascaded(result);
    }

    Lines lines() const { return origins.linesOf(&result); }

    ValueCache values;
    CssDeclarationList style{&values};
    CssDeclarationList ruleList{&values};
    CssDeclarationList own{&values};
    CssDeclarationList builtIn{&values};
    CssDeclarationList result{&values};
    Selector rule{1};
    StyleOrigins origins;
};

TEST_F(StyleOriginsTest, TheFirstSourceInRankThatHasAProperty)
{
    color(builtIn, 4);
    color(result, 4);
    cascade(ELEMENT_P);
    EXPECT_EQ(lines(), Lines{"color: #040000 [built-in]"});
    CssDeclarationList* const sources[] = {&own, &ruleList, &style};
    const char* const names[] = {"presentational", "rule .x (256)", "attribute"};
    for (std::size_t i = 0; i < std::size(sources); ++i) {
        const auto number = static_cast<std::uint32_t>(3 - i);
        color(*sources[i], number);
        color(result, number);
        origins = {};
        cascade(ELEMENT_P);
        EXPECT_EQ(lines(), Lines{"color: #0" + std::to_string(number) + "0000 [" + names[i] + ']'});
    }
}

TEST_F(StyleOriginsTest, AnImportantOneDisplacesOneThatIsNot)
{
    color(style, 1);
    color(ruleList, 2, /*important=*/true);
    color(own, 3, /*important=*/true);
    color(result, 2, /*important=*/true);
    cascade(ELEMENT_P);
    EXPECT_EQ(lines(), Lines{"color: #020000 !important [rule .x (256)]"});
}

TEST_F(StyleOriginsTest, WhatChangedAfterTheCascade)
{
    style.set(PROPERTY_WIDTH, values.lengthValue(2, UNITS_EM), false, false);
    pixels(result, PROPERTY_WIDTH, 32);
    cascade(ELEMENT_P);
    EXPECT_EQ(lines(), Lines{"width: 2em => 32px [attribute]"});
    pixels(result, PROPERTY_HEIGHT, 1);
    EXPECT_EQ(lines(), (Lines{"width: 2em => 32px [attribute]", "height: 1px [later]"}));
}

TEST_F(StyleOriginsTest, AlignmentByDirection)
{
    keyword(own, PROPERTY_DIRECTION, VALUE_RTL);
    keyword(result, PROPERTY_DIRECTION, VALUE_RTL);
    keyword(result, PROPERTY_TEXT_ALIGN, VALUE_RIGHT);
    cascade(ELEMENT_P);
    EXPECT_EQ(lines(), (Lines{"direction: rtl [presentational]", "text-align: right [direction]"}));
}

TEST_F(StyleOriginsTest, BuiltInMarginsOfListsThatRunFromTheRight)
{
    keyword(own, PROPERTY_DIRECTION, VALUE_RTL);
    pixels(builtIn, PROPERTY_MARGIN_LEFT, 36);
    pixels(result, PROPERTY_MARGIN_RIGHT, 36);
    for (const ZVHTMLElement element :
        {ELEMENT_ADDRESS, ELEMENT_DD, ELEMENT_MENU, ELEMENT_OL, ELEMENT_UL}) {
        origins = {};
        cascade(element);
        EXPECT_EQ(lines(), Lines{"margin-right: 36px [built-in]"}) << element;
    }
    origins = {};
    cascade(ELEMENT_P);
    EXPECT_EQ(lines(), Lines{"margin-right: 36px [later]"});
}

TEST_F(StyleOriginsTest, ListsThatNoCascadeMade)
{
    EXPECT_EQ(origins.linesOf(nullptr), Lines());
    EXPECT_EQ(origins.linesOf(&result), Lines());
    color(result, 1);
    EXPECT_EQ(origins.linesOf(&result), Lines{"color: #010000 [later]"});
}

} // namespace
