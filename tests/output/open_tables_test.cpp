#include "output/open_tables.h"

#include "output/captions.h"
#include "support/process_heap.h"
#include "tests/output/output_fixture.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

#include <new>

using namespace testing_support;

namespace {

/// Words of a side, to be compared.
std::vector<std::uint32_t> wordsOf(const BorderSide& side)
{
    return {side.width, side.color, side.style};
}

} // namespace

TEST(OpenTables, NoneAtFirst)
{
    OutputContext document;
    EXPECT_EQ(innermostTable(document.context), nullptr);
    EXPECT_EQ(columnNodeAt(0, document.context), nullptr);
    document.build(u"<table></table>");
    forgetTable(*document.find(ELEMENT_TABLE), document.context);
    forgetAllTables(document.context);
}

TEST(OpenTables, AreAStack)
{
    OutputContext document;
    document.build(u"<table><table></table></table>");
    HtmlTreeNode* const outer = document.find(ELEMENT_TABLE);
    HtmlTreeNode* const inner = document.find(ELEMENT_TABLE, 1);
    EXPECT_EQ(noteTable(*outer, document.context).node, outer);
    EXPECT_EQ(noteTable(*inner, document.context).node, inner);
    EXPECT_EQ(innermostTable(document.context)->node, inner);
    // Only the innermost one can be forgotten.
    forgetTable(*outer, document.context);
    EXPECT_EQ(innermostTable(document.context)->node, inner);
    forgetTable(*inner, document.context);
    EXPECT_EQ(innermostTable(document.context)->node, outer);
    forgetTable(*outer, document.context);
    EXPECT_EQ(innermostTable(document.context), nullptr);
}

TEST(OpenTables, ColumnsRunThroughAllGroups)
{
    OutputContext document;
    document.build(
        u"<table><colgroup></colgroup><colgroup><col></col><b></b><col></col></colgroup>"
        u"<tbody><col></col></tbody><colgroup><col></col><col></col></colgroup></table>");
    const auto span = [&](int n, HtmlValue* value) {
        document.attribute(document.find(ELEMENT_COL, n), ATTRIBUTE_SPAN, value);
    };
    span(0, document.values.numberValue(2));
    span(1, document.values.numberValue(-5)); // counts as 1
    span(3, document.values.numberValue(0)); // the same
    span(4, document.values.numberValue(3));
    noteTable(*document.find(ELEMENT_TABLE), document.context);
    // The third col stands in no group.
    const int expected[] = {0, 0, 1, 3, 4, 4, 4};
    for (std::uint32_t column = 0; column < 7; ++column) {
        EXPECT_EQ(
            columnNodeAt(column, document.context), document.find(ELEMENT_COL, expected[column]))
            << column;
    }
    EXPECT_EQ(columnNodeAt(7, document.context), nullptr);
    EXPECT_EQ(columnNodeAt(0xFFFFFFFF, document.context), nullptr);
    bool isGiven = false;
    EXPECT_EQ(spanOfColumn(*document.find(ELEMENT_COL, 1), isGiven), 1);
    EXPECT_TRUE(isGiven);
    EXPECT_EQ(spanOfColumn(*document.find(ELEMENT_COL, 2), isGiven), 1);
    EXPECT_FALSE(isGiven);
}

TEST(OpenTables, ColumnsOfATableAreItsOwn)
{
    OutputContext document;
    document.build(u"<table><colgroup><col></col><col></col></colgroup><tbody><tr><td><table>"
                   u"<colgroup><col></col></colgroup></table></td></tr></tbody></table>");
    HtmlTreeNode* const inner = document.find(ELEMENT_TABLE, 1);
    noteTable(*document.find(ELEMENT_TABLE), document.context);
    EXPECT_EQ(columnNodeAt(1, document.context), document.find(ELEMENT_COL, 1));
    noteTable(*inner, document.context);
    EXPECT_EQ(columnNodeAt(0, document.context), document.find(ELEMENT_COL, 2));
    EXPECT_EQ(columnNodeAt(1, document.context), nullptr);
    forgetTable(*inner, document.context);
    EXPECT_EQ(columnNodeAt(0, document.context), document.find(ELEMENT_COL));
    EXPECT_EQ(columnNodeAt(2, document.context), nullptr);
}

TEST(OpenTables, ManyColumns)
{
    constexpr std::uint32_t kColumns = 100'000;
    OutputContext document;
    document.build(u"<table><colgroup></colgroup></table>");
    std::vector<HtmlTreeNode*> cols;
    for (std::uint32_t i = 0; i < kColumns; ++i)
        cols.push_back(document.element(document.find(ELEMENT_COLGROUP), ELEMENT_COL));
    noteTable(*document.find(ELEMENT_TABLE), document.context);
    for (std::uint32_t i = 0; i < kColumns; ++i)
        ASSERT_EQ(columnNodeAt(i, document.context), cols[i]);
}

TEST(OpenTables, TableThatCantBeNotedLeavesNoColumns)
{
    constexpr int kColumns = 100;
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1;; ++n) {
        OutputContext document;
        document.build(u"<table><colgroup><col></col></colgroup><table><colgroup></colgroup>"
                       u"</table></table>");
        HtmlTreeNode* const inner = document.find(ELEMENT_TABLE, 1);
        for (int i = 0; i < kColumns; ++i)
            document.element(inner->firstChild, ELEMENT_COL);
        noteTable(*document.find(ELEMENT_TABLE), document.context);
        bool failed = false;
        zorvan::failNthAllocation(n);
        try {
            noteTable(*inner, document.context);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        zorvan::clearAllocationFailure();
        const TableWalk& walk = tableWalkOf(document.context);
        EXPECT_EQ(walk.tables.getCount(), failed ? 1 : 2) << n;
        EXPECT_EQ(walk.columns.getCount(), failed ? 1 : 1 + kColumns) << n;
        if (!failed)
            break;
        EXPECT_EQ(columnNodeAt(1, document.context), nullptr) << n;
        ++failures;
    }
    EXPECT_GT(failures, 1U);
}

TEST(OpenTables, FactsOfATable)
{
    OutputContext document;
    document.build(u"<table><tbody></tbody><caption></caption><caption></caption></table>");
    HtmlTreeNode* const table = document.find(ELEMENT_TABLE);
    const OpenTable bare = noteTable(*table, document.context);
    EXPECT_EQ(bare.caption, document.find(ELEMENT_CAPTION));
    EXPECT_FALSE(bare.hasCellPadding);
    EXPECT_EQ(bare.alignment, 0U);
    EXPECT_EQ(bare.background, nullptr);
    EXPECT_FALSE(bare.drawsAllSides || bare.drawsColumns || bare.drawsRows);
    EXPECT_EQ(wordsOf(bare.top), (std::vector<std::uint32_t>{15, 0, BORDER_STYLE_SOLID}));
    forgetTable(*table, document.context);

    document.attribute(table, ATTRIBUTE_CELLPADDING, document.pixels(7));
    document.attribute(table, ATTRIBUTE_BORDER, document.pixels(2));
    document.attribute(table, ATTRIBUTE_BORDERCOLOR, document.color(0xFF112233));
    document.attribute(table, ATTRIBUTE_ALIGN, document.values.enumValue(HORIZ_ALIGN_RIGHT));
    document.declare(table, PROPERTY_BACKGROUND_COLOR, document.color(5));
    document.declare(table, PROPERTY_BORDER_LEFT_COLOR, document.color(0x445566));
    const OpenTable full = noteTable(*table, document.context);
    EXPECT_TRUE(full.hasCellPadding);
    EXPECT_EQ(full.cellPadding, 7);
    EXPECT_EQ(full.alignment, std::uint32_t{ALIGNMENT_RIGHT});
    EXPECT_EQ(full.background, document.color(5));
    EXPECT_TRUE(full.drawsAllSides);
    const std::vector<std::uint32_t> common{30, 0x112233, BORDER_STYLE_SOLID};
    EXPECT_EQ(wordsOf(full.top), common);
    EXPECT_EQ(wordsOf(full.bottom), common);
    EXPECT_EQ(wordsOf(full.right), common);
    EXPECT_EQ(wordsOf(full.left), (std::vector<std::uint32_t>{30, 0x445566, BORDER_STYLE_SOLID}));
}

TEST(OpenTables, RulesGoBeforeTheBorder)
{
    struct Row {
        std::uint32_t rules;
        bool columns;
        bool rows;
    };
    const Row rows[] = {{TABLE_RULES_UNKNOWN, false, false}, {TABLE_RULES_ALL, true, true},
        {TABLE_RULES_COLS, true, false}, {TABLE_RULES_GROUPS, false, false},
        {TABLE_RULES_NONE, false, false}, {TABLE_RULES_ROWS, false, true}};
    for (const Row& row : rows) {
        OutputContext document;
        document.build(u"<table></table>");
        HtmlTreeNode* const table = document.find(ELEMENT_TABLE);
        document.attribute(table, ATTRIBUTE_BORDER, document.pixels(1));
        document.attribute(table, ATTRIBUTE_RULES, document.values.enumValue(row.rules));
        const OpenTable& noted = noteTable(*table, document.context);
        EXPECT_FALSE(noted.drawsAllSides) << row.rules;
        EXPECT_EQ(noted.drawsColumns, row.columns) << row.rules;
        EXPECT_EQ(noted.drawsRows, row.rows) << row.rules;
    }
}

TEST(OpenTables, ReindexFindsTheTablesAround)
{
    OutputContext document;
    document.build(u"<table><colgroup><col></col></colgroup><tbody><tr><td><table><tbody><tr><td>x"
                   u"</td></tr></tbody></table></td></tr></tbody></table>");
    HtmlTreeNode* const outer = document.find(ELEMENT_TABLE);
    HtmlTreeNode* const inner = document.find(ELEMENT_TABLE, 1);
    document.context.walkNode = document.find(ELEMENT_TD, 1)->firstChild;
    noteTable(*inner, document.context);
    reindexOpenFrames(document.context);
    TableWalk& walk = tableWalkOf(document.context);
    ASSERT_EQ(walk.tables.getCount(), 2);
    EXPECT_EQ(walk.tables.get(0).node, outer);
    EXPECT_EQ(walk.tables.get(1).node, inner);
    EXPECT_EQ(walk.columns.getCount(), 1);

    // One that is to be entered again is not open yet.
    document.context.walkNode = inner;
    reindexOpenTables(document.context);
    EXPECT_EQ(walk.tables.getCount(), 2);
    document.context.walkResume = 1;
    reindexOpenTables(document.context);
    ASSERT_EQ(walk.tables.getCount(), 1);
    EXPECT_EQ(walk.tables.get(0).node, outer);
    document.context.walkNode = nullptr;
    reindexOpenTables(document.context);
    EXPECT_EQ(walk.tables.getCount(), 0);
}

TEST(OpenTables, TableWithoutAFrameIsForgottenOnTheWayOut)
{
    OutputContext document;
    document.build(u"<body><table><tbody><tr><td>x</td></tr></tbody></table>y</body>");
    // As behind a position whose frames are lost.
    document.context.walkNode = document.find(ELEMENT_TD)->firstChild;
    document.context.walkClimbing = 1;
    reindexOpenFrames(document.context);
    EXPECT_NE(innermostTable(document.context), nullptr);
    EXPECT_TRUE(document.walkSlice());
    EXPECT_EQ(innermostTable(document.context), nullptr);
    EXPECT_EQ(document.host.takeCalls(), Lines{textLine("y")});
}

TEST(OpenTables, ForgettingAllFreesCaptionsOnTheirWay)
{
    OutputContext document;
    document.build(u"<table><caption>x</caption></table>");
    document.declare(
        document.find(ELEMENT_TABLE), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    enterElement(*document.find(ELEMENT_TABLE), document.context);
    ASSERT_NE(captionInWalk(document.context), nullptr);
    clearDeferredList(document.context);
    EXPECT_EQ(captionInWalk(document.context), nullptr);
    EXPECT_EQ(innermostTable(document.context), nullptr);
    EXPECT_EQ(document.context.internals->openTables, 0U);
}
