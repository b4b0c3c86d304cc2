#include "style/cascade.h"

#include "tests/common/allocation_count.h"
#include "tests/style/style_document.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

TEST(Cascade, AnElementWithNothingKeepsItsEmptyList)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_DIV);
    CssDeclarationList* const own = document.tag(node).declarations;
    EXPECT_EQ(cascade(document.sheet, node, document.tree.root()), nullptr);
    EXPECT_EQ(document.tag(node).declarations, own);
    EXPECT_TRUE(own->isEmpty());
}

TEST(Cascade, AnElementWithoutAListHasItsBuiltInDeclarations)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_B);
    document.tag(node).declarations = nullptr;
    document.enter(node);
    EXPECT_EQ(declarationsIn(document.listOf(node)), written("font-weight bold"));
    HtmlTreeNode& plain = document.add(ELEMENT_DIV);
    document.tag(plain).declarations = nullptr;
    EXPECT_EQ(cascade(document.sheet, plain, document.tree.root()), nullptr);
    EXPECT_EQ(document.tag(plain).declarations, nullptr);
}

TEST(Cascade, OwnDeclarationsStandAboveTheBuiltIn)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_TH);
    document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_NORMAL));
    document.declare(node, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_RIGHT));
    document.cascadeOnly(node);
    EXPECT_EQ(
        declarationsIn(document.listOf(node)), written("font-weight normal; text-align right"));

    HtmlTreeNode& paragraph = document.add(ELEMENT_P);
    document.declare(paragraph, PROPERTY_MARGIN_TOP, document.length(4));
    document.cascadeOnly(paragraph);
    EXPECT_EQ(
        declarationsIn(document.listOf(paragraph)), written("margin-top 4px; margin-bottom 16px^"));
}

TEST(Cascade, OwnDeclarationsAloneAreTheResult)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_DIV);
    document.declare(node, PROPERTY_COLOR, document.color(0xFF), /*important=*/true);
    CssDeclarationList* const result = cascade(document.sheet, node, document.tree.root());
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(document.tag(node).declarations, nullptr);
    EXPECT_EQ(declarationsIn(*result), written("color color ff!"));
}

// A list with a history comes out as if its declarations had been merged one by one.
TEST(Cascade, AGrownListIsMergedAnew)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_TABLE);
    CssDeclarationList expected(&document.values);
    for (const char* name : {"border-top-width", "border-bottom-width", "border-left-width",
             "border-right-width", "border-top-style", "border-bottom-style", "border-left-style",
             "border-right-style", "border-top-color", "border-bottom-color", "margin-left"})
        document.declare(node, propertyOf(name), document.length(1));
    ASSERT_GT(document.listOf(node).getCapacity(), 16U);
    document.listOf(node).remove(PROPERTY_BORDER_TOP_WIDTH);
    expected.merge(document.listOf(node), /*copy=*/true);
    CssDeclarationList* const own = document.tag(node).declarations;

    CssDeclarationList* const result = cascade(document.sheet, node, document.tree.root());
    EXPECT_NE(result, own);
    EXPECT_EQ(declarationsIn(*result), declarationsIn(*own));
    EXPECT_EQ(orderOf(*result), orderOf(expected));
}

TEST(Cascade, OrderIsThatOfAMergeOfAllSources)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_H1);
    CssDeclarationList expected(&document.values);
    for (const ZVCSSProperty property : chainOf(PROPERTY_MARGIN_TOP, 3))
        document.declare(node, property, document.length(1));
    ASSERT_EQ(document.listOf(node).getCount(), 3U);
    document.listOf(node).remove(orderOf(document.listOf(node)).front());
    expected.merge(document.listOf(node), /*copy=*/true);
    expected.merge(*document.sheet.builtInDeclarations(ELEMENT_H1), /*copy=*/true);
    document.cascadeOnly(node);
    EXPECT_EQ(orderOf(document.listOf(node)), orderOf(expected));
    EXPECT_EQ(declarationsIn(document.listOf(node)), declarationsIn(expected));
}

struct RightToLeftRow {
    ZVHTMLElement element;
    const char* declarations;
};

TEST(Cascade, RightToLeftSwapsTheBuiltInMargin)
{
    const RightToLeftRow rows[] = {
        {ELEMENT_ADDRESS,
            "direction rtl; font-style italic; margin-right -36px; font-family \"Times New "
            "Roman\"; "
            "text-align right"},
        {ELEMENT_DD, "direction rtl; margin-right 36px; text-align right"},
        {ELEMENT_MENU, "direction rtl; margin-right 36px; text-align right"},
        {ELEMENT_OL, "direction rtl; margin-right 36px; text-align right"},
        {ELEMENT_UL, "direction rtl; margin-right 36px; text-align right"},
        {ELEMENT_DIR, "direction rtl; text-align right"},
        {ELEMENT_BLOCKQUOTE,
            "direction rtl; margin-left 40px; margin-right 40px; text-align right"},
        {ELEMENT_HTML,
            "direction rtl; font-size medium; font-family \"Times New Roman\"; text-align left; "
            "margin-top 8px; margin-right 8px; margin-bottom 8px; margin-left 8px"},
    };
    StyleDocument document;
    for (const RightToLeftRow& row : rows) {
        SCOPED_TRACE(row.element);
        HtmlTreeNode& node = document.add(row.element);
        document.declare(node, PROPERTY_DIRECTION, document.keyword(VALUE_RTL));
        document.cascadeOnly(node);
        EXPECT_EQ(declarationsIn(document.listOf(node)), written(row.declarations));
    }
    // The list that all others share has stayed as it is.
    EXPECT_EQ(declarationsIn(*document.sheet.builtInDeclarations(ELEMENT_UL)),
        written("margin-left 36px"));
}

TEST(Cascade, AMarginOfAnotherSourceIsNotSwapped)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_UL);
    document.declare(node, PROPERTY_DIRECTION, document.keyword(VALUE_RTL));
    document.declare(node, PROPERTY_MARGIN_LEFT, document.length(5));
    document.cascadeOnly(node);
    EXPECT_EQ(declarationsIn(document.listOf(node)),
        written("direction rtl; margin-left 5px; margin-right 36px; text-align right"));

    HtmlTreeNode& other = document.add(ELEMENT_UL);
    document.declare(other, PROPERTY_DIRECTION, document.keyword(VALUE_RTL));
    document.declare(other, PROPERTY_MARGIN_RIGHT, document.length(5));
    document.cascadeOnly(other);
    EXPECT_EQ(declarationsIn(document.listOf(other)),
        written("direction rtl; margin-right 5px; text-align right"));
}

TEST(Cascade, LeftToRightSwapsNothing)
{
    StyleDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_UL);
    document.declare(node, PROPERTY_DIRECTION, document.keyword(VALUE_LTR));
    document.cascadeOnly(node);
    EXPECT_EQ(declarationsIn(document.listOf(node)),
        written("direction ltr; margin-left 36px; text-align left"));
}

TEST(ResolveInherit, TakesWhatIsInForce)
{
    StyleDocument document;
    document.initialStyle.set(PROPERTY_COLOR, document.color(0x123), /*important=*/true, false);
    HtmlTreeNode& node = document.add(ELEMENT_P);
    document.declare(node, PROPERTY_COLOR, document.keyword(VALUE_INHERIT));
    document.declare(node, PROPERTY_WHITE_SPACE, document.keyword(VALUE_INHERIT));
    document.declare(node, PROPERTY_BACKGROUND_COLOR, document.keyword(VALUE_INHERIT));
    document.cascadeOnly(node);
    // Nothing is in force for white-space, so the keyword stays.
    EXPECT_EQ(declarationsIn(document.listOf(node)),
        written("color color 123!; white-space inherit; background-color transparent; "
                "margin-top 16px^; margin-bottom 16px^"));
}

TEST(ResolveInherit, OfAnElementIsWhatItsParentBroughtIntoForce)
{
    StyleDocument document;
    HtmlTreeNode& parent = document.add(ELEMENT_DIV);
    document.declare(parent, PROPERTY_COLOR, document.color(0xAB));
    document.enter(parent);
    HtmlTreeNode& child = document.add(ELEMENT_SPAN, &parent);
    document.declare(child, PROPERTY_COLOR, document.keyword(VALUE_INHERIT));
    document.enter(child);
    EXPECT_EQ(declarationsIn(document.listOf(child)), written("color color ab"));
}

TEST(ResolveInherit, ReplacesAsRemoveAndPut)
{
    StyleDocument document;
    const std::vector<ZVCSSProperty> chain = chainOf(PROPERTY_COLOR, 2);
    ASSERT_EQ(chain.size(), 2U);
    CssDeclarationList list(&document.values);
    list.set(PROPERTY_COLOR, document.keyword(VALUE_INHERIT), false, false);
    list.set(chain[0], document.color(1), false, false);
    list.set(chain[1], document.color(2), false, false);
    resolveInherit(list, document.context);
    EXPECT_EQ(orderOf(list), (std::vector<ZVCSSProperty>{chain[1], chain[0], PROPERTY_COLOR}));
}

TEST(ResolveInherit, DirectionAligns)
{
    struct Row {
        ZVCSSValue direction;
        bool hasAlignment;
        const char* declarations;
    };
    const Row rows[] = {
        {VALUE_LTR, false, "direction ltr; text-align left"},
        {VALUE_RTL, false, "direction rtl; text-align right"},
        {VALUE_NORMAL, false, "direction normal"},
        {VALUE_RTL, true, "direction rtl; text-align center"},
    };
    StyleDocument document;
    for (const Row& row : rows) {
        CssDeclarationList list(&document.values);
        list.set(PROPERTY_DIRECTION, document.keyword(row.direction), /*important=*/false, false);
        if (row.hasAlignment)
            list.set(PROPERTY_TEXT_ALIGN, document.keyword(VALUE_CENTER), false, false);
        resolveInherit(list, document.context);
        EXPECT_EQ(declarationsIn(list), written(row.declarations));
    }
}

TEST(ResolveInherit, TheDirectionInForceAlignsToo)
{
    StyleDocument document;
    document.initialStyle.set(PROPERTY_DIRECTION, document.keyword(VALUE_RTL), false, false);
    CssDeclarationList list(&document.values);
    list.set(PROPERTY_DIRECTION, document.keyword(VALUE_INHERIT), false, false);
    resolveInherit(list, document.context);
    EXPECT_EQ(declarationsIn(list), written("direction rtl; text-align right"));
}

// One empty list for nearly each element of a document would stay until close.
TEST(Cascade, AnElementThatSharesItsListGivesItsOwnUp)
{
    StyleDocument document;
    HtmlTreeNode& plain = document.add(ELEMENT_B);
    document.cascadeOnly(plain);
    const CssDeclarationList* const shared = &document.listOf(plain);
    EXPECT_EQ(shared, document.sheet.builtInDeclarations(ELEMENT_B));
    const std::size_t after = liveAllocations();
    for (int i = 0; i < 10; ++i) {
        HtmlTreeNode& next = document.add(ELEMENT_B);
        document.cascadeOnly(next);
        EXPECT_EQ(&document.listOf(next), shared);
    }
    EXPECT_EQ(liveAllocations(), after);
    HtmlTreeNode& styled = document.add(ELEMENT_B);
    document.declare(styled, PROPERTY_COLOR, document.color(1));
    document.cascadeOnly(styled);
    EXPECT_NE(&document.listOf(styled), shared);
}

} // namespace
