#include "style/cascade.h"

#include "tests/common/allocation_count.h"
#include "tests/style/sheet_document.h"

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

struct RankRow {
    const char* sheet;
    ZVHTMLElement element;
    const char* classes;
    const char* style;
    const char* color;
};

// The style attribute, rules by specificity and order, own declarations, built-in ones; and what is
// important displaces what is not.
TEST(Cascade, Ranks)
{
    const RankRow rows[] = {
        {"p { color: blue }", ELEMENT_P, "", "color:red", "color ff"},
        {"p { color: blue !important; }", ELEMENT_P, "", "color:red", "color ff0000!"},
        {"p { color: blue !important }", ELEMENT_P, "", "color:red", "color ff"},
        {"p { color: blue !important; }", ELEMENT_P, "", "color:red !important;", "color ff!"},
        {"p { color: red } p { color: blue }", ELEMENT_P, "", "", "color ff0000"},
        {".x { color: red } p { color: blue }", ELEMENT_P, "x", "", "color ff"},
        {".x { color: red } p { color: blue !important; }", ELEMENT_P, "x", "", "color ff0000!"},
        {"p { color: red !important; } p { color: blue !important; }", ELEMENT_P, "", "",
            "color ff0000!"},
        {"p { color: red !important; } p { color: blue }", ELEMENT_P, "", "", "color ff!"},
        {"p { color: red !important; color: blue }", ELEMENT_P, "", "", "color ff0000"},
        {"", ELEMENT_P, "", "color:red !important; color:blue", "color ff0000"},
        {".x { color: red } .x.x { color: lime } p { color: blue }", ELEMENT_P, "x", "",
            "color ff00"},
    };
    for (const RankRow& row : rows) {
        SheetDocument document(row.sheet);
        HtmlTreeNode& node = document.cascaded(row.element, row.classes, row.style);
        EXPECT_EQ(declarationsIn(document.listOf(node))[PROPERTY_COLOR], row.color) << row.sheet;
    }
}

TEST(Cascade, RulesStandAboveOwnDeclarations)
{
    SheetDocument document("font { color: blue } i { color: blue } b { color: blue !important; }");
    for (const bool important : {false, true}) {
        HtmlTreeNode& font = document.add(ELEMENT_FONT);
        document.declare(font, PROPERTY_COLOR, document.color(0xFF), important);
        document.cascadeOnly(font);
        EXPECT_EQ(declarationsIn(document.listOf(font)),
            written(important ? "color color ff!" : "color color ff0000"));
        HtmlTreeNode& bold = document.add(ELEMENT_B);
        document.declare(bold, PROPERTY_COLOR, document.color(0xFF), important);
        document.cascadeOnly(bold);
        EXPECT_EQ(declarationsIn(document.listOf(bold)),
            written("color color ff0000!; font-weight bold"));
    }
}

TEST(Cascade, RulesStandAboveTheBuiltIn)
{
    SheetDocument document("p { margin-top: 3px } h1 { font-weight: normal; font-size: 10px }");
    EXPECT_EQ(declarationsIn(document.listOf(document.cascaded(ELEMENT_P, "", ""))),
        written("margin-top 3px; margin-bottom 16px^"));
    EXPECT_EQ(declarationsIn(document.listOf(document.cascaded(ELEMENT_H1, "", ""))),
        written("font-weight normal; font-size 10px; margin-top 0.67em; margin-bottom 0.67em"));
}

TEST(Cascade, EmptyOrOtherStyleAttributesDeclareNothing)
{
    SheetDocument document("p { color: red }");
    HtmlTreeNode& empty = document.add(ELEMENT_DIV);
    document.setText(empty, ATTRIBUTE_STYLE, u"");
    EXPECT_EQ(cascade(document.sheet, empty, document.tree.root()), nullptr);
    HtmlTreeNode& bad = document.cascaded(ELEMENT_P, "", "nosuchproperty: 1; ; color: blue");
    EXPECT_EQ(declarationsIn(document.listOf(bad))[PROPERTY_COLOR], "color ff");
    HtmlTreeNode& number = document.add(ELEMENT_DIV);
    document.tag(number).setAttribute(ATTRIBUTE_STYLE, document.values.numberValue(1));
    EXPECT_EQ(cascade(document.sheet, number, document.tree.root()), nullptr);
    // Another attribute is no style.
    HtmlTreeNode& other = document.add(ELEMENT_DIV);
    document.setText(other, ATTRIBUTE_CLASS, u"color: red");
    EXPECT_EQ(cascade(document.sheet, other, document.tree.root()), nullptr);
}

TEST(Cascade, AStyleAttributeIsCutToBytesAndEndsAtAZero)
{
    SheetDocument document;
    HtmlTreeNode& node = document.add(ELEMENT_DIV);
    document.setText(node, ATTRIBUTE_STYLE, u"\u0163olor:red");
    document.cascadeOnly(node);
    EXPECT_EQ(declarationsIn(document.listOf(node)), written("color color ff"));
    HtmlTreeNode& cut = document.add(ELEMENT_DIV);
    document.setText(cut, ATTRIBUTE_STYLE, u"color:red;\u0100width:2px");
    document.cascadeOnly(cut);
    EXPECT_EQ(declarationsIn(document.listOf(cut)), written("color color ff"));
}

// A sheet that comes later reaches nothing that stands already.
TEST(Cascade, RulesReachOnlyLaterElements)
{
    SheetDocument document;
    HtmlTreeNode& before = document.cascaded(ELEMENT_P, "", "");
    document.parse("p { color: red }");
    HtmlTreeNode& behind = document.cascaded(ELEMENT_P, "", "");
    document.parse("p { color: blue }");
    HtmlTreeNode& last = document.cascaded(ELEMENT_P, "", "");
    EXPECT_FALSE(document.listOf(before).contains(PROPERTY_COLOR));
    EXPECT_EQ(declarationsIn(document.listOf(behind))[PROPERTY_COLOR], "color ff");
    EXPECT_EQ(declarationsIn(document.listOf(last))[PROPERTY_COLOR], "color ff0000");
}

TEST(Cascade, DirectionFromAnySourceSwapsTheBuiltInMargin)
{
    SheetDocument document("ol { direction: rtl } .m { direction: rtl; margin-left: 5px }");
    const Declarations swapped = written("direction rtl; margin-right 36px; text-align right");
    EXPECT_EQ(declarationsIn(document.listOf(document.cascaded(ELEMENT_OL, "", ""))), swapped);
    EXPECT_EQ(declarationsIn(document.listOf(document.cascaded(ELEMENT_UL, "", "direction: rtl"))),
        swapped);
    EXPECT_EQ(declarationsIn(document.listOf(document.cascaded(ELEMENT_UL, "m", ""))),
        written("direction rtl; margin-left 5px; margin-right 36px; text-align right"));
    EXPECT_EQ(declarationsIn(document.listOf(document.cascaded(ELEMENT_OL, "", "direction: ltr"))),
        written("direction ltr; margin-left 36px; text-align left"));
    EXPECT_EQ(declarationsIn(*document.sheet.builtInDeclarations(ELEMENT_OL)),
        written("margin-left 36px"));
}

TEST(Cascade, DirectionAlignsTheSameElementOnly)
{
    SheetDocument document;
    HtmlTreeNode& outer = document.cascaded(ELEMENT_DIV, "", "direction: rtl");
    enterStyle(outer, document.context);
    EXPECT_EQ(declarationsIn(document.listOf(outer)), written("direction rtl; text-align right"));
    HtmlTreeNode& inner = document.add(ELEMENT_DIV, &outer);
    EXPECT_EQ(cascade(document.sheet, inner, document.tree.root()), nullptr);
}

TEST(Cascade, InheritIsResolvedAtOnce)
{
    SheetDocument document("p { color: inherit } div { color: blue }");
    HtmlTreeNode& outer = document.cascaded(ELEMENT_DIV, "", "");
    HtmlTreeNode& before = document.cascaded(ELEMENT_P, "", "");
    EXPECT_EQ(declarationsIn(document.listOf(before))[PROPERTY_COLOR], "color 0");
    enterStyle(outer, document.context);
    HtmlTreeNode& inner = document.cascaded(ELEMENT_P, "", "", &outer);
    EXPECT_EQ(declarationsIn(document.listOf(inner))[PROPERTY_COLOR], "color ff0000");
    HtmlTreeNode& styled
        = document.cascaded(ELEMENT_SPAN, "", "color: inherit; font-size: inherit", &outer);
    EXPECT_EQ(declarationsIn(document.listOf(styled)), written("color color ff0000"));
}

TEST(Cascade, OneFontNameReachesTheList)
{
    SheetDocument document("p { font-family: Arial, Helvetica }");
    HtmlTreeNode& node = document.cascaded(ELEMENT_P, "", "");
    EXPECT_EQ(declarationsIn(document.listOf(node))[PROPERTY_FONT_FAMILY], "\"Arial\"");
}

TEST(Cascade, RelativeLengthsAreSharedInOneFontSizeOnly)
{
    SheetDocument document(".e { width: 2em } .x { width: 2px } .big { font-size: 20px } "
                           ".small { font-size: 10px }");
    const auto listIn = [&](const char* outer, const char* classes) {
        HtmlTreeNode& parent = document.cascaded(ELEMENT_DIV, outer, "");
        enterStyle(parent, document.context);
        HtmlTreeNode& node = document.cascaded(ELEMENT_SPAN, classes, "", &parent);
        enterStyle(node, document.context);
        CssDeclarationList* const list = &document.listOf(node);
        document.leave(node);
        document.leave(parent);
        return list;
    };
    CssDeclarationList* const big = listIn("big", "e");
    CssDeclarationList* const small = listIn("small", "e");
    EXPECT_NE(big, small);
    EXPECT_EQ(declarationsIn(*big), written("width 40px"));
    EXPECT_EQ(declarationsIn(*small), written("width 20px"));
    EXPECT_EQ(listIn("big", "e"), big);
    EXPECT_EQ(listIn("small", "e"), small);
    EXPECT_EQ(listIn("big", "x"), listIn("small", "x"));
}

TEST(Cascade, ElementsOfTheSameRulesShareOneList)
{
    SheetDocument document(
        "p { color: red } .x { width: 2px } .e { width: 2em } .i { color: inherit } div, table, "
        "body { color: red }");
    const auto shared = [&](ZVHTMLElement element, const char* classes) {
        const CssDeclarationList& first = document.listOf(document.cascaded(element, classes, ""));
        return &first == &document.listOf(document.cascaded(element, classes, ""));
    };
    EXPECT_TRUE(shared(ELEMENT_P, ""));
    EXPECT_TRUE(shared(ELEMENT_P, "x"));
    EXPECT_TRUE(shared(ELEMENT_DIV, "x"));
    EXPECT_NE(&document.listOf(document.cascaded(ELEMENT_P, "", "")),
        &document.listOf(document.cascaded(ELEMENT_P, "x", "")));
    EXPECT_NE(&document.listOf(document.cascaded(ELEMENT_P, "", "")),
        &document.listOf(document.cascaded(ELEMENT_DIV, "", "")));
    // What hangs on the place, what others add to, and what has declarations of its own.
    EXPECT_FALSE(shared(ELEMENT_P, "i"));
    EXPECT_FALSE(shared(ELEMENT_BODY, ""));
    EXPECT_FALSE(shared(ELEMENT_TABLE, ""));
    EXPECT_TRUE(shared(ELEMENT_P, "e"));
    EXPECT_TRUE(shared(ELEMENT_H1, "x")); // its built-in margins are in em
    const CssDeclarationList& plain = document.listOf(document.cascaded(ELEMENT_P, "", ""));
    EXPECT_NE(&document.listOf(document.cascaded(ELEMENT_P, "", "width: 1px")), &plain);
    HtmlTreeNode& own = document.add(ELEMENT_P);
    document.declare(own, PROPERTY_WIDTH, document.length(1));
    document.cascadeOnly(own);
    EXPECT_NE(&document.listOf(own), &plain);
    EXPECT_EQ(declarationsIn(plain)[PROPERTY_COLOR], "color ff");
}

/// Notes what it is told.
class NotingObserver : public CascadeObserver {
public:
    void onCascade(const HtmlTreeNode& node, const CascadeSources& sources) override
    {
        told = std::to_string(elementOf(node)) + ' ' + countIn(sources.styleAttribute) + ' '
            + std::to_string(sources.rules.getCount()) + ' ' + countIn(sources.presentational) + ' '
            + countIn(sources.builtIn);
    }

    void onCascaded(const CssDeclarationList& list) override { result = &list; }

    std::string told;
    const CssDeclarationList* result = nullptr;

private:
    static std::string countIn(const CssDeclarationList* list)
    {
        return list == nullptr ? "-" : std::to_string(list->getCount());
    }
};

TEST(Cascade, TellsItsObserver)
{
    SheetDocument document("p { color: red } .x { width: 1px } .x.y { width: 1px }");
    NotingObserver observer;
    document.internals.cascadeObserver = &observer;
    document.cascaded(ELEMENT_DIV, "", "");
    EXPECT_EQ(observer.told, std::to_string(ELEMENT_DIV) + " - 0 - -");
    EXPECT_EQ(observer.result, nullptr);
    HtmlTreeNode& styled = document.cascaded(ELEMENT_P, "x y", "width: 2px; color: red");
    EXPECT_EQ(observer.told, std::to_string(ELEMENT_P) + " 2 3 - 2");
    EXPECT_EQ(observer.result, &document.listOf(styled));
    HtmlTreeNode& shared = document.cascaded(ELEMENT_P, "", "");
    EXPECT_EQ(observer.result, &document.listOf(shared));
    HtmlTreeNode& own = document.add(ELEMENT_B);
    document.declare(own, PROPERTY_COLOR, document.color(1));
    document.cascadeOnly(own);
    EXPECT_EQ(observer.told, std::to_string(ELEMENT_B) + " - 0 1 1");
}

TEST(Cascade, EachAllocationMayFail)
{
    SheetDocument document("p { color: red; margin: 1px 2pt } .x { border: 1px solid red } "
                           "h1 { width: 2em } ul { direction: rtl }");
    for (const ZVHTMLElement element : {ELEMENT_P, ELEMENT_H1, ELEMENT_UL})
        document.cascaded(element, "x", "width: 3px; font-family: Arial");
    std::uint32_t failures = 0;
    for (const ZVHTMLElement element : {ELEMENT_P, ELEMENT_H1, ELEMENT_UL}) {
        for (const char* style : {"", "width: 3px; font-weight: bold; padding: 2px"}) {
            HtmlTreeNode* node = nullptr;
            const auto prepare = [&] {
                node = &document.add(element);
                document.setText(*node, ATTRIBUTE_CLASS, u"x");
                if (*style != 0)
                    document.setText(*node, ATTRIBUTE_STYLE, unitsOf(style));
            };
            for (std::uint32_t n = 1;; ++n) {
                ASSERT_LT(n, 500U);
                prepare();
                zorvan::failNthAllocation(n);
                bool hasFailed = false;
                try {
                    document.cascadeOnly(*node);
                } catch (const std::bad_alloc&) {
                    hasFailed = true;
                }
                const bool wasReached = zorvan::allocationsSeen() >= n;
                zorvan::clearAllocationFailure();
                if (!hasFailed && !wasReached)
                    break;
                ++failures;
            }
            EXPECT_TRUE(document.listOf(*node).contains(PROPERTY_BORDER_TOP_WIDTH));
        }
    }
    EXPECT_GT(failures, 10U);
}

} // namespace
