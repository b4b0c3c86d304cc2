#include "output/tables.h"

#include "output/open_tables.h"
#include "support/process_heap.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

const Lines kOneCell = joined({{rowLine(1, 100'001)}, kRowIndents,
    {kPlainCell + " -> 200001", textLine("x"), "SOEmitBreak 20 200001"}, kRowIndents,
    {"SOEmitBreak 19 100001"}});

void align(OutputContext& document, HtmlTreeNode* node, ZVCSSValue keyword)
{
    document.declare(node, PROPERTY_TEXT_ALIGN, document.keyword(keyword));
}

} // namespace

TEST(Tables, TableWithoutCells)
{
    const char16_t* const markups[] = {u"<table></table>", u"<table><tbody></tbody></table>"};
    for (const char16_t* markup : markups) {
        OutputContext document;
        document.build(markup);
        EXPECT_EQ(document.walkAll(), (Lines{kTableBreak, kPlainTable, kFinishTable, kTableBreak}));
    }
    OutputContext document;
    document.build(u"<table><tbody><tr></tr></tbody></table>");
    EXPECT_EQ(document.walkAll(),
        joined(
            {{kTableBreak, kPlainTable}, kRowIndents, kRowIndents, {kFinishTable, kTableBreak}}));
}

TEST(Tables, OneCell)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td>x</td></tr></tbody></table>");
    EXPECT_EQ(document.walkAll(),
        joined({{kTableBreak, kPlainTable}, kOneCell, {kFinishTable, kTableBreak}}));
    EXPECT_EQ(document.context.walkState, 0U);
    EXPECT_EQ(document.context.tableDepth, 0U);
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_BREAK_OWED);
}

TEST(Tables, OutermostTableEndsTheSlice)
{
    OutputContext document;
    document.build(u"<div><table></table></div><p>a</p>");
    EXPECT_FALSE(document.walkSlice());
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
    EXPECT_EQ(document.context.tableBreakSent, 0U);
    EXPECT_EQ(document.context.walkNode, document.find(ELEMENT_DIV));
    EXPECT_TRUE(document.walkSlice());
}

TEST(Tables, InnerTableHasNoBreaksOfItsOwn)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td>a<table></table>b</td></tr></tbody></table>");
    EXPECT_EQ(document.walkAll(),
        joined({{kTableBreak, kPlainTable, rowLine(1, 100'001)}, kRowIndents,
            {kPlainCell + " -> 200001", textLine("a"), kParagraphLine, kPlainTable, kFinishTable,
                textLine("b"), "SOEmitBreak 20 200001"},
            kRowIndents, {"SOEmitBreak 19 100001", kFinishTable, kTableBreak}}));
}

TEST(Tables, SideMarginsGoIntoAListOfItsOwn)
{
    OutputContext document;
    HtmlTreeNode* bare = document.element(document.tree.root(), ELEMENT_TABLE);
    HtmlTreeNode* styled = document.element(document.tree.root(), ELEMENT_TABLE);
    HtmlTreeNode* complete = document.element(document.tree.root(), ELEMENT_TABLE);
    document.declare(styled, PROPERTY_MARGIN_LEFT, document.pixels(4));
    document.declare(styled, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.declare(complete, PROPERTY_MARGIN_LEFT, document.pixels(5));
    document.declare(complete, PROPERTY_MARGIN_RIGHT, document.pixels(6));
    CssDeclarationList* const shared = &document.declarations(styled);
    CssDeclarationList* const own = &document.declarations(complete);
    const Lines lines = document.walkAll();

    const CssDeclarationList* made = bare->data->getDeclarations();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->getCount(), 2);
    EXPECT_EQ(made->findValue(PROPERTY_MARGIN_LEFT), document.pixels(0));
    EXPECT_EQ(made->findValue(PROPERTY_MARGIN_RIGHT), document.pixels(0));

    EXPECT_EQ(shared->getCount(), 2);
    const CssDeclarationList* copy = styled->data->getDeclarations();
    EXPECT_NE(copy, shared);
    EXPECT_EQ(copy->getCount(), 3);
    EXPECT_EQ(copy->findValue(PROPERTY_MARGIN_LEFT), document.pixels(4));
    EXPECT_EQ(copy->findValue(PROPERTY_MARGIN_RIGHT), document.pixels(0));
    EXPECT_EQ(copy->findValue(PROPERTY_FONT_WEIGHT), document.keyword(VALUE_BOLD));

    EXPECT_EQ(complete->data->getDeclarations(), own);
    EXPECT_EQ(column(recordsOf("SODefineTable", lines), 176),
        (std::vector<std::uint32_t>{0, 4 * 15, 5 * 15}));
}

TEST(Tables, ListsAndQuotationsStartAnewBehindATable)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td>x</td></tr></tbody></table>");
    document.context.listDepth = 3;
    document.context.blockquoteDepth = 2;
    HtmlTreeNode* const table = document.find(ELEMENT_TABLE);
    enterElement(*table, document.context);
    EXPECT_EQ(document.context.tableDepth, 1U);
    document.context.listDepth = 5;
    document.context.blockquoteDepth = 0;
    leaveElement(*table, document.context);
    EXPECT_EQ(document.context.listDepth, 3);
    EXPECT_EQ(document.context.blockquoteDepth, 2);
    EXPECT_EQ(document.context.tableDepth, 0U);
}

TEST(Tables, AlignmentOutsideIsGivenBack)
{
    struct Row {
        ZVCSSValue outer; ///< of the block around the table, VALUE_NONE for none
        ZVCSSValue own;
        Lines behind; ///< between SOFinishTable and the last break
    };
    const Row rows[] = {
        {VALUE_NONE, VALUE_NONE, {}},
        {VALUE_LEFT, VALUE_NONE, {"SOSetProperty 12 1 0 0"}},
        {VALUE_RIGHT, VALUE_CENTER, {"SOSetProperty 12 2 0 0"}},
        {VALUE_CENTER, VALUE_LEFT, {"SOSetProperty 12 3 0 0"}},
        {VALUE_JUSTIFY, VALUE_NONE, {"SOSetProperty 12 3 0 0"}},
        {VALUE_NONE, VALUE_CENTER, {"SOSetProperty 12 0 0 0"}},
    };
    for (const Row& row : rows) {
        for (const std::uint32_t flatten : {0U, 1U}) {
            OutputContext document;
            document.context.flattenTables = flatten;
            document.build(u"<body><table></table></body>");
            if (row.outer != VALUE_NONE)
                align(document, document.find(ELEMENT_BODY), row.outer);
            if (row.own != VALUE_NONE)
                align(document, document.find(ELEMENT_TABLE), row.own);
            enterElement(*document.find(ELEMENT_BODY), document.context);
            enterElement(*document.find(ELEMENT_TABLE), document.context);
            document.host.takeCalls();
            leaveElement(*document.find(ELEMENT_TABLE), document.context);
            const Lines finish = flatten != 0 ? Lines{} : Lines{kFinishTable};
            EXPECT_EQ(document.host.takeCalls(), joined({finish, row.behind, {kTableBreak}}))
                << &row - rows << ' ' << flatten;
        }
    }
}

TEST(Tables, StyleOfATableIsUndoneBehindIt)
{
    OutputContext document;
    document.build(u"<table></table>");
    HtmlTreeNode* const table = document.find(ELEMENT_TABLE);
    document.declare(table, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.declare(table, PROPERTY_BACKGROUND_COLOR, document.color(0x123456));
    const Lines lines = document.walkAll();
    // The shading of the table is not given back.
    EXPECT_EQ(lines,
        (Lines{kTableBreak, "SOSetProperty 8 2 1 0", "SOSetParagraphShading 0 {}",
            "SODefineTable {@0=32776 @4=96 @20=15 @28=1193046}", kFinishTable,
            "SOSetProperty 8 2 0 0", kTableBreak}));
}

TEST(Tables, TableMetWhileTheSliceEndsIsMetAgain)
{
    OutputContext document;
    document.build(u"<p>a</p><table></table>");
    document.attribute(document.find(ELEMENT_TABLE), ATTRIBUTE_ID, u"n");
    document.host.stopEvery = 1;
    const Lines announced = {"SOBeginReference -> 1", "SOAddReferencePart 512 1 0",
        "SOEndReference", "SOBeginTagged 2147614728 1 {@4=1}", "SOEndTagged 2147614728 1"};
    const Lines again = {"SOBeginReference -> 2", "SOAddReferencePart 512 2 0", "SOEndReference",
        "SOBeginTagged 2147614728 2 {@4=2}", "SOEndTagged 2147614728 2"};

    EXPECT_FALSE(document.walkSlice());
    EXPECT_EQ(document.context.walkNode, document.find(ELEMENT_TABLE));
    EXPECT_EQ(document.context.walkResume, 1U);
    EXPECT_TRUE(document.context.deferredList.isEmpty());
    EXPECT_EQ(document.context.tableDepth, 0U);
    EXPECT_EQ(document.host.takeCalls(),
        joined({{textLine("a"), kParagraphLine, "SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0",
                    "SOStoreString \"n\" 347078656 1 -> 1"},
            announced, {kTableBreak}}));
    // The rest, with no break of kind 9 in front a second time.
    EXPECT_FALSE(document.walkSlice() && document.context.statusFlags == 0);
    EXPECT_EQ(document.host.takeCalls(),
        joined({{"SOStoreString \"n\" 347078656 1 -> 2"}, again,
            {kPlainTable, kFinishTable, kTableBreak}}));
    EXPECT_EQ(document.context.walkResume, 0U);
}

TEST(Tables, TwoTablesInARow)
{
    OutputContext document;
    document.build(u"<body><table></table><table></table></body>");
    EXPECT_FALSE(document.walkSlice());
    // The second one has been met, but its entry waits for the next slice.
    EXPECT_EQ(document.context.walkNode, document.find(ELEMENT_TABLE, 1));
    EXPECT_EQ(document.context.walkResume, 1U);
    EXPECT_EQ(document.walkAll(),
        (Lines{kTableBreak, kPlainTable, kFinishTable, kTableBreak, kTableBreak, kPlainTable,
            kFinishTable, kTableBreak}));
}

TEST(Tables, StopAtTheBreakInFrontIsDropped)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td>x</td></tr></tbody></table>");
    document.attribute(document.find(ELEMENT_TABLE), ATTRIBUTE_ID, u"n");
    document.host.stopEvery = 1;
    // Only breaks of other kinds can end the slice, so the table is met once.
    EXPECT_FALSE(document.walkSlice() && document.context.statusFlags == 0);
    EXPECT_EQ(document.host.takeCalls(),
        joined({{"SOStoreString \"n\" 347078656 1 -> 1", "SOBeginReference -> 1",
                    "SOAddReferencePart 512 1 0", "SOEndReference",
                    "SOBeginTagged 2147614728 1 {@4=1}", "SOEndTagged 2147614728 1", kTableBreak,
                    kPlainTable},
            kOneCell, {kFinishTable, kTableBreak}}));
    EXPECT_EQ(document.walkAll(), Lines{});
}

TEST(Tables, StopInFrontOfAnInnerTableIsDropped)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td>a<table></table>b</td></tr></tbody></table>");
    document.attribute(document.find(ELEMENT_TABLE, 1), ATTRIBUTE_ID, u"n");
    document.host.stopEvery = 1;
    EXPECT_FALSE(document.walkSlice() && document.context.statusFlags == 0);
    const Lines lines = document.host.takeCalls();
    // It is met a second time at once.
    EXPECT_EQ(callsOf("SOStoreString", lines).size(), 2U);
    EXPECT_EQ(callsOf("SODefineTable", lines).size(), 2U);
    EXPECT_EQ(callsOf(kTableBreak, lines).size(), 2U);
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}

TEST(Tables, FlattenedTablesAreParagraphs)
{
    OutputContext document;
    document.context.flattenTables = 1;
    document.build(u"<table><caption>c</caption><tbody><tr><td>a</td><td>b</td></tr></tbody>"
                   u"</table>");
    document.declare(
        document.find(ELEMENT_TABLE), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.declare(
        document.find(ELEMENT_CAPTION), PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC));
    // Neither the table's style nor the caption's is applied.
    EXPECT_EQ(document.walkAll(),
        joined({{kTableBreak, textLine("c"), textLine("a"), kParagraphLine, textLine("b"),
                    kParagraphLine},
            kRowIndents, {kParagraphLine, kTableBreak}}));
    EXPECT_EQ(innermostTable(document.context), nullptr);
}

TEST(Tables, StopsAtAnyBreakGiveTheSameCalls)
{
    const char16_t* const markup
        = u"<p>a</p><table><caption>c<table><caption>d</caption><tbody><tr><td>e</td></tr></tbody>"
          u"</table>f</caption><tbody><tr><td>g<table><tbody><tr><td>h</td></tr></tbody></table>"
          u"</td><td><p>i</p><p>j</p></td></tr></tbody></table><p>k</p><table></table>l";
    for (const std::uint32_t flatten : {0U, 1U}) {
        OutputContext whole;
        whole.context.flattenTables = flatten;
        whole.build(markup);
        const Lines expected = whole.walkAll();
        for (std::uint32_t every = 1; every <= 7; ++every) {
            OutputContext document;
            document.context.flattenTables = flatten;
            document.build(markup);
            document.host.stopEvery = every;
            EXPECT_EQ(document.walkAll(), expected) << every;
            EXPECT_TRUE(document.context.deferredList.isEmpty());
        }
    }
}

TEST(Tables, TenThousandNestedTables)
{
    constexpr int kDepth = 10'000;
    OutputContext document;
    HtmlTreeNode* parent = document.tree.root();
    for (int i = 0; i < kDepth; ++i) {
        parent = document.element(document.element(parent, ELEMENT_TABLE), ELEMENT_TBODY);
        parent = document.element(document.element(parent, ELEMENT_TR), ELEMENT_TD);
    }
    document.text(parent, u"x");
    const Lines lines = document.walkAll();
    EXPECT_EQ(callsOf("SODefineTable", lines).size(), std::size_t{kDepth});
    EXPECT_EQ(callsOf(kFinishTable, lines).size(), std::size_t{kDepth});
    EXPECT_EQ(callsOf(kTableBreak, lines).size(), 2U);
    EXPECT_EQ(document.context.tableDepth, 0U);
    EXPECT_EQ(document.context.internals->openTables, 0U);
    EXPECT_EQ(document.context.internals->tableWalk->tables.getCount(), 0);
    EXPECT_EQ(document.context.internals->tableWalk->spanOwners, 0U);
}

TEST(Tables, HostThatGivesUpAtAnyCallLeaksNothing)
{
    const char16_t* const markup
        = u"<table><caption>c<table><caption>d</caption></table></caption><tbody><tr><td>g</td>"
          u"<td>h</td></tr><tr><td>i</td></tr></tbody></table>";
    for (std::uint32_t at = 1;; ++at) {
        OutputContext document;
        document.build(markup);
        document.declare(
            document.find(ELEMENT_TABLE), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        document.declare(
            document.find(ELEMENT_CAPTION, 1), PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC));
        document.attribute(
            document.find(ELEMENT_TD), ATTRIBUTE_ROWSPAN, document.values.numberValue(2));
        document.host.throwAt = at;
        bool gaveUp = false;
        try {
            document.walkAll();
        } catch (const HostGaveUp&) {
            gaveUp = true;
        }
        // Whatever the walk was in, no caption is left on its way.
        EXPECT_EQ(document.context.internals->tableWalk == nullptr
                ? 0
                : document.context.internals->tableWalk->captions.getCount(),
            0);
        if (!gaveUp) {
            EXPECT_GT(at, 40U);
            break;
        }
    }
}

TEST(Tables, FailedAllocationsEndTheWalkOrTheRead)
{
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < 60; ++n) {
        OutputContext document;
        document.build(u"<table><caption>c</caption><tbody><tr><td>g</td></tr></tbody></table>");
        document.attribute(
            document.find(ELEMENT_TD), ATTRIBUTE_ROWSPAN, document.values.numberValue(2));
        document.declare(
            document.find(ELEMENT_CAPTION), PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC));
        // A value that can't be made is left out, which is no failure.
        document.pixels(-0.0F);
        document.pixels(0);
        zorvan::failNthAllocation(n);
        try {
            document.walkSlice();
        } catch (const std::bad_alloc&) {
            document.context.statusFlags = STATUS_OUT_OF_MEMORY;
        }
        const bool failed = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        EXPECT_EQ((document.context.statusFlags & STATUS_OUT_OF_MEMORY) != 0, failed) << n;
        failures += failed ? 1 : 0;
    }
    EXPECT_GT(failures, 15U);
    EXPECT_LT(failures, 59U);
}
