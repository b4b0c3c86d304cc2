#include "style/cascade.h"

#include "tests/containers/allocation_failures.h"
#include "tests/style/sheet_document.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

class StyleContext : public testing::Test {
protected:
    /// Enters an html element, so that 16 pixels are in force.
    HtmlTreeNode& enterHtml()
    {
        HtmlTreeNode& html = document.add(ELEMENT_HTML);
        document.enter(html);
        return html;
    }

    StyleDocument document;
};

TEST_F(StyleContext, TheFirstFrameStartsFromNothing)
{
    HtmlTreeNode& node = document.add(ELEMENT_DIV);
    document.declare(node, PROPERTY_FONT_SIZE, document.percent(200));
    document.declare(node, PROPERTY_MARGIN_LEFT, document.length(2, UNITS_EM));
    document.enter(node);
    EXPECT_EQ(document.frame().fontSize, 0U);
    EXPECT_EQ(document.frame().leftIndent, 0);
}

TEST_F(StyleContext, Html)
{
    enterHtml();
    EXPECT_EQ(document.frame().fontSize, 16U);
    EXPECT_EQ(document.frame().firstLineIndent, 8);
    EXPECT_EQ(document.frame().leftIndent, 8);
    EXPECT_EQ(document.frame().rightIndent, 8);
    EXPECT_EQ(document.fonts(), (std::vector<std::string>{"Times New Roman"}));
}

TEST_F(StyleContext, AnElementWithoutDeclarationsGetsAFrame)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& node = document.add(ELEMENT_DIV, &html);
    document.enter(node);
    EXPECT_EQ(document.context.buildFrames.getCount(), 2);
    EXPECT_EQ(document.frame().fontSize, 16U);
    EXPECT_EQ(document.tag(node).undoDeclarations, nullptr);
    document.tag(node).declarations = nullptr;
    enterStyle(node, document.context);
    EXPECT_EQ(document.context.buildFrames.getCount(), 3);
    document.leave(node);
    document.leave(node);
    EXPECT_EQ(document.context.buildFrames.getCount(), 1);
}

TEST_F(StyleContext, FontSizes)
{
    struct Row {
        HtmlValue* value;
        std::uint32_t size;
        const char* declared; // what stands in the list afterwards
    };
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& parent = document.add(ELEMENT_DIV, &html);
    document.declare(parent, PROPERTY_FONT_SIZE, document.length(10));
    document.enter(parent);
    const Row rows[] = {
        {document.keyword(VALUE_XX_LARGE), 32, "font-size xx-large"},
        {document.keyword(VALUE_LARGER), 10, "font-size larger"},
        {document.keyword(VALUE_SMALLER), 10, "font-size smaller"},
        {document.keyword(VALUE_BOLD), 10, "font-size bold"},
        {document.percent(155), 15, "font-size 155%"},
        {document.length(2, UNITS_EM), 20, "font-size 20px"},
        {document.length(3, UNITS_EX), 15, "font-size 15px"},
        {document.length(20.75F), 20, "font-size 20.75px"},
        {document.length(12, UNITS_POINTS), 16, "font-size 16px"},
        {document.length(-1), 10, "font-size -1px"},
        {document.text(u"x"), 10, "font-size \"x\""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.declared);
        HtmlTreeNode& node = document.add(ELEMENT_SPAN, &parent);
        document.declare(node, PROPERTY_FONT_SIZE, row.value);
        document.enter(node);
        EXPECT_EQ(document.frame().fontSize, row.size);
        EXPECT_EQ(declarationsIn(document.listOf(node)), written(row.declared));
        document.leave(node);
    }
}

TEST_F(StyleContext, TheParentsSizeIsTheBaseOfLengths)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& parent = document.add(ELEMENT_DIV, &html);
    document.declare(parent, PROPERTY_FONT_SIZE, document.length(10));
    document.enter(parent);
    HtmlTreeNode& node = document.add(ELEMENT_DIV, &parent);
    document.declare(node, PROPERTY_MARGIN_LEFT, document.length(2, UNITS_EM));
    document.declare(node, PROPERTY_FONT_SIZE, document.length(40));
    document.enter(node);
    EXPECT_EQ(declarationsIn(document.listOf(node)), written("margin-left 20px; font-size 40px"));
    EXPECT_EQ(document.frame().fontSize, 40U);
    EXPECT_EQ(document.frame().leftIndent, 28);
}

TEST_F(StyleContext, HeadingMarginsBecomePixels)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& heading = document.add(ELEMENT_H1, &html);
    document.enter(heading);
    EXPECT_EQ(declarationsIn(document.listOf(heading)),
        written("margin-top 11px; margin-bottom 11px; font-size 32px; font-weight bold"));
    EXPECT_EQ(declarationsIn(*document.sheet.builtInDeclarations(ELEMENT_H1)),
        written("margin-top 0.67em; margin-bottom 0.67em; font-size 2em; font-weight bold"));
}

TEST_F(StyleContext, Indents)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& list = document.add(ELEMENT_UL, &html);
    document.enter(list);
    HtmlTreeNode& item = document.add(ELEMENT_LI, &list);
    document.declare(item, PROPERTY_MARGIN_LEFT, document.length(10.9F));
    document.declare(item, PROPERTY_MARGIN_RIGHT, document.length(-3.9F));
    document.declare(item, PROPERTY_TEXT_INDENT, document.length(-5));
    document.enter(item);
    EXPECT_EQ(document.frame().leftIndent, 8 + 36 + 10);
    EXPECT_EQ(document.frame().firstLineIndent, 8 + 36 + 10 - 5);
    EXPECT_EQ(document.frame().rightIndent, 8 - 3);
    // What is no length adds nothing.
    HtmlTreeNode& other = document.add(ELEMENT_DIV, &item);
    document.declare(other, PROPERTY_MARGIN_LEFT, document.percent(10));
    document.declare(other, PROPERTY_MARGIN_RIGHT, document.keyword(VALUE_AUTO));
    document.enter(other);
    EXPECT_EQ(document.frame().leftIndent, 54);
    EXPECT_EQ(document.frame().rightIndent, 5);
}

TEST_F(StyleContext, HugeIndentsWrap)
{
    HtmlTreeNode* node = &enterHtml();
    for (int i = 0; i < 3; ++i) {
        node = &document.add(ELEMENT_DIV, node);
        document.declare(*node, PROPERTY_MARGIN_LEFT, document.length(3e9F));
        document.enter(*node);
    }
    EXPECT_EQ(document.frame().leftIndent, INT32_MIN + 8);
}

TEST_F(StyleContext, InARowIndentsStartAtZero)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& row = document.add(ELEMENT_TR, &html);
    document.enter(row);
    EXPECT_EQ(document.frame().leftIndent, 8);
    HtmlTreeNode& cell = document.add(ELEMENT_TD, &row);
    document.declare(cell, PROPERTY_MARGIN_LEFT, document.length(3));
    document.enter(cell);
    EXPECT_EQ(document.frame().leftIndent, 3);
    EXPECT_EQ(document.frame().firstLineIndent, 3);
    EXPECT_EQ(document.frame().rightIndent, 0);
    EXPECT_EQ(document.frame().fontSize, 16U);
    HtmlTreeNode& plain = document.add(ELEMENT_TD, &row);
    document.tag(plain).declarations = nullptr;
    enterStyle(plain, document.context);
    EXPECT_EQ(document.frame().leftIndent, 0);
}

TEST_F(StyleContext, FontsAreNumberedByFirstUse)
{
    HtmlTreeNode& html = enterHtml();
    for (HtmlValue* family : {document.text(u"Arial,Helvetica"), document.text(u"Arial"),
             document.text(u"arial"), document.keyword(VALUE_INHERIT), document.text(u"")}) {
        HtmlTreeNode& node = document.add(ELEMENT_FONT, &html);
        document.listOf(node).set(PROPERTY_FONT_FAMILY, family, false, false);
        enterStyle(node, document.context);
        document.leave(node);
    }
    EXPECT_EQ(
        document.fonts(), (std::vector<std::string>{"Times New Roman", "Arial", "arial", ""}));
}

TEST_F(StyleContext, PutsDeclarationsIntoForceAndTakesThemBack)
{
    HtmlTreeNode& html = enterHtml();
    const Declarations before = declarationsIn(document.initialStyle);
    HtmlTreeNode& node = document.add(ELEMENT_SPAN, &html);
    document.declare(node, PROPERTY_COLOR, document.color(0xFF), /*important=*/true);
    document.declare(node, PROPERTY_FONT_FAMILY, document.text(u"Arial"));
    document.declare(node, PROPERTY_FONT_SIZE, document.keyword(VALUE_SMALL));
    document.declare(node, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_RIGHT));
    document.declare(node, PROPERTY_WHITE_SPACE, document.keyword(VALUE_NOWRAP));
    document.enter(node);
    Declarations inForce = before;
    inForce[PROPERTY_COLOR] = "color ff!";
    inForce[PROPERTY_FONT_FAMILY] = "\"Arial\"";
    inForce[PROPERTY_FONT_SIZE] = expectedText("small");
    inForce[PROPERTY_TEXT_ALIGN] = expectedText("right");
    EXPECT_EQ(declarationsIn(document.initialStyle), inForce);
    EXPECT_NE(document.tag(node).getUndoDeclarations(), nullptr);
    document.leave(node);
    EXPECT_EQ(declarationsIn(document.initialStyle), before);
    EXPECT_EQ(document.tag(node).getUndoDeclarations(), nullptr);
    EXPECT_EQ(document.context.buildFrames.getCount(), 1);
}

TEST_F(StyleContext, MarginsAreUndoneByTheirNegative)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& node = document.add(ELEMENT_P, &html);
    document.declare(node, PROPERTY_MARGIN_LEFT, document.length(1, UNITS_EM));
    document.declare(node, PROPERTY_TEXT_INDENT, document.length(1, UNITS_INCHES));
    document.declare(node, PROPERTY_MARGIN_RIGHT, document.percent(3));
    document.enter(node);
    EXPECT_EQ(declarationsIn(*document.tag(node).undoDeclarations),
        written("margin-top -16px; margin-bottom -16px; margin-left -16px; text-indent -96px"));
    document.leave(node);
    EXPECT_EQ(textOf(document.initialStyle.findValue(PROPERTY_MARGIN_LEFT)), "-16px");
    EXPECT_EQ(textOf(document.initialStyle.findValue(PROPERTY_MARGIN_RIGHT)), "3%");
}

TEST_F(StyleContext, UndoLists)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& outer = document.add(ELEMENT_DIV, &html);
    document.declare(outer, PROPERTY_COLOR, document.color(0x77));
    document.declare(outer, PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC));
    document.enter(outer);
    HtmlTreeNode& node = document.add(ELEMENT_DIV, &outer);
    // In force alike, but for the mark of importance: nothing to undo.
    document.declare(node, PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC), true);
    document.declare(node, PROPERTY_COLOR, document.color(0x88));
    document.declare(node, PROPERTY_BORDER_TOP_COLOR, document.color(0x99));
    document.declare(node, PROPERTY_BORDER_TOP_WIDTH, document.length(2));
    document.declare(node, PROPERTY_VERTICAL_ALIGN, document.keyword(VALUE_TOP));
    document.declare(node, PROPERTY_LIST_STYLE_TYPE, document.keyword(VALUE_SQUARE));
    document.enter(node);
    // Properties that are not inherited go back to their initial values, border colors to the color
    // of the running style of the walk; list-style-type was not in force at all.
    EXPECT_EQ(declarationsIn(*document.tag(node).undoDeclarations),
        written("color color 77; border-top-color color 0; border-top-width medium; "
                "vertical-align baseline"));
}

TEST_F(StyleContext, ValueListsAreTakenBack)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& outer = document.add(ELEMENT_U, &html);
    document.enter(outer);
    HtmlTreeNode& node = document.add(ELEMENT_SPAN, &outer);
    auto* both = new CssDeclaration(PROPERTY_TEXT_DECORATION, nullptr, false, false);
    both->addValue(document.keyword(VALUE_UNDERLINE));
    both->addValue(document.keyword(VALUE_OVERLINE));
    document.listOf(node).add(both);
    document.enter(node);
    const std::string inForce = expectedText("overline") + " " + expectedText("underline");
    EXPECT_EQ(declarationsIn(document.initialStyle)[PROPERTY_TEXT_DECORATION], inForce);
    document.leave(node);
    EXPECT_EQ(
        declarationsIn(document.initialStyle)[PROPERTY_TEXT_DECORATION], expectedText("underline"));
    document.leave(outer);
    EXPECT_EQ(
        declarationsIn(document.initialStyle)[PROPERTY_TEXT_DECORATION], expectedText("none"));
}

TEST_F(StyleContext, BackgroundGroups)
{
    std::map<std::uint32_t, BackgroundGroup> expected;
    for (const ZVHTMLElement element :
        {ELEMENT_A, ELEMENT_B, ELEMENT_BIG, ELEMENT_CODE, ELEMENT_EM, ELEMENT_FONT, ELEMENT_I,
            ELEMENT_SPAN, ELEMENT_STRONG, ELEMENT_SUB, ELEMENT_SUP, ELEMENT_U})
        expected[element] = BackgroundGroup::Inline;
    for (const ZVHTMLElement element : {ELEMENT_TABLE, ELEMENT_TD, ELEMENT_TH, ELEMENT_TR})
        expected[element] = BackgroundGroup::Table;
    expected[ELEMENT_BODY] = BackgroundGroup::Body;
    for (std::uint32_t element = 0; element < 200; ++element) {
        const auto row = expected.find(element);
        EXPECT_EQ(backgroundGroupOf(element),
            row == expected.end() ? BackgroundGroup::Block : row->second)
            << element;
    }
}

TEST_F(StyleContext, BackgroundsAreKeptByGroup)
{
    struct Row {
        ZVHTMLElement element;
        HtmlValue* HtmlFilterContext::*field;
    };
    const Row rows[] = {
        {ELEMENT_SPAN, &HtmlFilterContext::buildInlineBackground},
        {ELEMENT_BODY, &HtmlFilterContext::buildBodyBackground},
        {ELEMENT_TD, &HtmlFilterContext::buildTableBackground},
        {ELEMENT_DIV, &HtmlFilterContext::buildBlockBackground},
    };
    HtmlTreeNode* parent = &enterHtml();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.element);
        HtmlFilterContext& context = document.context;
        HtmlTreeNode& outer = document.add(row.element, parent);
        document.declare(outer, PROPERTY_BACKGROUND_COLOR, document.color(1));
        document.enter(outer);
        HtmlTreeNode& inner = document.add(row.element, &outer);
        document.declare(inner, PROPERTY_BACKGROUND_COLOR, document.color(2));
        document.enter(inner);
        EXPECT_EQ(context.*row.field, document.color(2));
        document.leave(inner);
        EXPECT_EQ(context.*row.field, document.color(1));
        document.leave(outer);
        EXPECT_EQ(context.*row.field, document.keyword(VALUE_TRANSPARENT));
        EXPECT_EQ(document.initialStyle.findValue(PROPERTY_BACKGROUND_COLOR),
            document.keyword(VALUE_TRANSPARENT));
    }
}

TEST_F(StyleContext, LeavingATextOrWithoutAFrameDoesNothing)
{
    HtmlTreeNode& html = enterHtml();
    HtmlTreeNode& text = document.addText(u"x", html);
    document.leave(text);
    EXPECT_EQ(document.context.buildFrames.getCount(), 1);
    clearBuildFrames(document.context);
    const Declarations before = declarationsIn(document.initialStyle);
    document.leave(html);
    EXPECT_EQ(declarationsIn(document.initialStyle), before);
    EXPECT_NE(document.tag(html).getUndoDeclarations(), nullptr);
}

// Elements of a kind share the list, so entering one must leave it as it was.
TEST_F(StyleContext, SharedListsStayAsTheyAre)
{
    HtmlTreeNode& html = enterHtml();
    for (std::uint32_t number = ELEMENT_A; number <= ELEMENT_XMP; ++number) {
        const auto element = static_cast<ZVHTMLElement>(number);
        const CssDeclarationList* const builtIn = document.sheet.builtInDeclarations(element);
        if (builtIn == nullptr)
            continue;
        SCOPED_TRACE(element);
        const std::vector<ZVCSSProperty> order = orderOf(*builtIn);
        const Declarations declarations = declarationsIn(*builtIn);
        HtmlTreeNode& outer = document.add(element, &html);
        document.enter(outer);
        HtmlTreeNode& inner = document.add(element, &outer);
        document.enter(inner);
        document.leave(inner);
        document.leave(outer);
        EXPECT_EQ(orderOf(*builtIn), order);
        EXPECT_EQ(declarationsIn(*builtIn), declarations);
        const bool isHeading = element >= ELEMENT_H1 && element <= ELEMENT_H6;
        EXPECT_EQ(document.tag(outer).declarations == builtIn, !isHeading);
    }
}

// Replacing a length moves its property to the end of its chain, twice for each element entered.
TEST_F(StyleContext, ResolvingMovesALengthToTheEndOfItsChain)
{
    const std::vector<ZVCSSProperty> chain = chainOf(PROPERTY_WIDTH, 3);
    ASSERT_EQ(chain.size(), 3U);
    CssDeclarationList list(&document.values);
    list.set(chain[0], document.length(1), /*important=*/true, /*edgeMargin=*/true);
    list.set(chain[1], document.keyword(VALUE_AUTO), false, false);
    list.set(chain[2], document.length(3), false, false);
    resolveLength(list, chain[0], 16);
    EXPECT_EQ(orderOf(list), (std::vector<ZVCSSProperty>{chain[2], chain[1], chain[0]}));
    EXPECT_EQ(declarationsIn(list)[chain[0]], "1px!^");
    resolveLength(list, chain[0], 16);
    EXPECT_EQ(orderOf(list), (std::vector<ZVCSSProperty>{chain[2], chain[1], chain[0]}));
    resolveLength(list, chain[1], 16);
    EXPECT_EQ(orderOf(list), (std::vector<ZVCSSProperty>{chain[2], chain[1], chain[0]}));
    resolveLength(list, chain[2], 16);
    EXPECT_EQ(orderOf(list), (std::vector<ZVCSSProperty>{chain[0], chain[1], chain[2]}));
}

TEST_F(StyleContext, ResolvingLeavesAListThatOnlyPointsAtDeclarationsToItsOwner)
{
    CssDeclarationList owner(&document.values);
    owner.set(PROPERTY_WIDTH, document.length(2, UNITS_EM), false, false);
    CssDeclarationList view(&document.values, /*owning=*/false);
    view.merge(owner, /*copy=*/false);
    resolveLength(view, PROPERTY_WIDTH, 16);
    resolveLength(view, PROPERTY_HEIGHT, 16);
    EXPECT_EQ(declarationsIn(view), written("width 32px"));
    EXPECT_EQ(declarationsIn(owner), written("width 2em"));
}

// A failure leaves through enterStyle, and close finds nothing that it can't free.
TEST_F(StyleContext, EachAllocationMayFail)
{
    HtmlTreeNode& html = enterHtml();
    HtmlValue* const family = document.text(u"Arial");
    const auto attempt = [&] {
        HtmlTreeNode& node = document.add(ELEMENT_H1, &html);
        document.declare(node, PROPERTY_COLOR, document.color(0xFF));
        document.declare(node, PROPERTY_FONT_FAMILY, family);
        document.declare(node, PROPERTY_DIRECTION, document.keyword(VALUE_INHERIT));
        document.enter(node);
        return &node;
    };
    // Values that are already there: where there is no memory for one, it is left out instead.
    document.leave(*attempt());
    const std::uint32_t failures = failEachAllocation(attempt, [&] {
        EXPECT_EQ(document.context.buildFrames.getCount(), 1);
        EXPECT_EQ(document.frame().fontSize, 16U);
    });
    EXPECT_GT(failures, 10U);
    EXPECT_EQ(document.context.buildFrames.getCount(), 2);
    EXPECT_EQ(document.frame().fontSize, 32U);
    EXPECT_EQ(document.fonts(), (std::vector<std::string>{"Times New Roman", "Arial"}));
}

/// Puts a length and a keyword into one chain by a rule, the length first.
std::string ruleWithAMovingLength(std::vector<ZVCSSProperty>& order)
{
    // Both stand in one chain, and resolving a length moves it to the end.
    const std::string text = "margin-left: 3pt; font-weight: bold";
    SheetDocument probe;
    CssDeclarationList list(&probe.values);
    list.set(PROPERTY_MARGIN_LEFT, probe.length(1), false, false);
    list.set(PROPERTY_FONT_WEIGHT, probe.keyword(VALUE_BOLD), false, false);
    EXPECT_FALSE(list.isLastOfChain(PROPERTY_MARGIN_LEFT));
    order = orderOf(list);
    return text;
}

// Each further element that shares a list is entered as if it had the list anew.
TEST(SharedStyle, EachElementIsEnteredInTheSameOrder)
{
    std::vector<ZVCSSProperty> order;
    SheetDocument document("div { " + ruleWithAMovingLength(order) + " }");
    std::vector<ZVCSSProperty> resolved;
    for (int i = 0; i < 3; ++i) {
        HtmlTreeNode& node = document.cascaded(ELEMENT_DIV, "", "");
        EXPECT_EQ(declarationsIn(document.listOf(node)),
            i == 0 ? written("margin-left 3?; font-weight bold")
                   : written("margin-left 4px; font-weight bold"));
        enterStyle(node, document.context);
        EXPECT_EQ(
            declarationsIn(document.listOf(node)), written("margin-left 4px; font-weight bold"));
        EXPECT_EQ(orderOf(document.listOf(node)), (std::vector<ZVCSSProperty>{order[1], order[0]}));
        EXPECT_EQ(orderOf(*document.tag(node).undoDeclarations), order);
        EXPECT_EQ(document.frame().leftIndent, 4);
        document.leave(node);
    }
}

TEST(SharedStyle, WhatStaysAsItIsNeedsNoNotes)
{
    SheetDocument document("div { width: 3pt; color: red } p { width: 3em; color: inherit }");
    HtmlTreeNode& node = document.cascaded(ELEMENT_DIV, "", "");
    using Lengths = CssDeclarationList::Lengths;
    EXPECT_EQ(document.listOf(node).lengths, Lengths::ResolveOnce);
    enterStyle(node, document.context);
    EXPECT_EQ(document.listOf(node).lengths, Lengths::Resolved);
    HtmlTreeNode& inheriting = document.cascaded(ELEMENT_P, "", "");
    EXPECT_EQ(document.listOf(inheriting).lengths, Lengths::Resolve);
    enterStyle(inheriting, document.context);
    EXPECT_EQ(document.listOf(inheriting).lengths, Lengths::Resolve);
    EXPECT_EQ(document.listOf(inheriting).visits, nullptr);
}

TEST(SharedStyle, EachAllocationMayFail)
{
    std::vector<ZVCSSProperty> order;
    SheetDocument document("div { " + ruleWithAMovingLength(order) + "; font-family: Arial }");
    HtmlTreeNode* entered = nullptr;
    const std::uint32_t failures = failEachAllocation(
        [&] {
            HtmlTreeNode& node = document.cascaded(ELEMENT_DIV, "", "");
            enterStyle(node, document.context);
            entered = &node;
        },
        [&] { EXPECT_TRUE(document.context.buildFrames.isEmpty()); });
    EXPECT_GT(failures, 5U);
    ASSERT_NE(entered, nullptr);
    EXPECT_EQ(document.frame().leftIndent, 4);
}

} // namespace
