#include "output/cells.h"

#include "output/open_tables.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(Cells, EntryAndExit)
{
    OutputContext document;
    document.build(u"<tr><td></td></tr>");
    HtmlTreeNode* const cell = document.find(ELEMENT_TD);
    document.declare(cell, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.host.stopEvery = 1;
    enterElement(*document.find(ELEMENT_TR), document.context);
    const HTML_SOINFO* const rowFrame = newestFrame(document.context);
    document.host.takeCalls();

    document.context.paragraphFlags = PARAGRAPH_OPEN | PARAGRAPH_MARKER;
    document.context.lastChar = u'x';
    enterElement(*cell, document.context);
    EXPECT_EQ(
        document.host.takeCalls(), (Lines{"SOSetProperty 8 2 1 0", kPlainCell + " -> 200001"}));
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_MARKER);
    EXPECT_EQ(document.context.lastChar, 0);
    EXPECT_EQ(document.context.walkState, std::uint32_t{WALK_IN_CELL});
    EXPECT_EQ(newestFrame(document.context)->handle, 200'001U);
    EXPECT_EQ(rowFrame->columnIndex, 1U);

    document.context.paragraphFlags = PARAGRAPH_OPEN | PARAGRAPH_MARKER;
    document.context.lastChar = u'x';
    document.context.lastBlockMargin = 5;
    leaveElement(*cell, document.context);
    EXPECT_EQ(document.host.takeCalls(), (Lines{"SOEmitBreak 20 200001", "SOSetProperty 8 2 0 0"}));
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_MARKER);
    EXPECT_EQ(document.context.lastChar, 0);
    EXPECT_EQ(document.context.walkState, 0U);
    EXPECT_EQ(document.context.lastBlockMargin, 0U);
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
}

TEST(Cells, FlattenedOnes)
{
    OutputContext document;
    document.context.flattenTables = 1;
    document.build(u"<tr><td></td></tr>");
    HtmlTreeNode* const cell = document.find(ELEMENT_TD);
    document.declare(cell, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    enterElement(*document.find(ELEMENT_TR), document.context);
    const HTML_SOINFO* const rowFrame = newestFrame(document.context);
    enterElement(*cell, document.context);
    EXPECT_EQ(document.host.takeCalls(), Lines{"SOSetProperty 8 2 1 0"});
    EXPECT_EQ(newestFrame(document.context)->handle, 0U);
    EXPECT_EQ(rowFrame->columnIndex, 1U);
    document.context.lastChar = u'x';
    document.context.lastBlockMargin = 5;
    leaveElement(*cell, document.context);
    EXPECT_EQ(document.host.takeCalls(), (Lines{kParagraphLine, "SOSetProperty 8 2 0 0"}));
    EXPECT_EQ(document.context.lastChar, 0);
    EXPECT_EQ(document.context.lastBlockMargin, 0U);
    EXPECT_EQ(document.context.walkState, 0U);
}

TEST(Cells, ColIsLookedUpInFrontOfPendingSpans)
{
    OutputContext document;
    document.build(u"<table><colgroup><col></col><col></col><col></col></colgroup><tbody><tr><td>"
                   u"</td><td></td><td></td></tr><tr><td></td><td></td></tr></tbody></table>");
    for (int i = 0; i < 3; ++i) {
        document.declare(document.find(ELEMENT_COL, i), PROPERTY_WIDTH,
            document.pixels(static_cast<float>(i + 1)));
    }
    document.attribute(
        document.find(ELEMENT_TD), ATTRIBUTE_ROWSPAN, document.values.numberValue(2));
    const auto cells = recordsOf("SODefineTableCell", document.walkAll());
    // The first cell of the second row stands in the second column, and is as wide as the first.
    EXPECT_EQ(column(cells, 36), (std::vector<std::uint32_t>{15, 30, 45, 0, 15, 45}));
}

TEST(Cells, CellInNoRow)
{
    OutputContext document;
    document.build(u"<table><td>x</td><b><td>y</td></b></table>");
    document.attribute(
        document.find(ELEMENT_TD), ATTRIBUTE_COLSPAN, document.values.numberValue(2));
    const Lines lines = document.walkAll();
    EXPECT_EQ(callsOf("SODefineTableCell", lines),
        (Lines{kPlainCell + " -> 200001", kPlainCell + " -> 200002"}));
    EXPECT_EQ(callsOf("SOEmitTextAt", lines), (Lines{textLine("x"), textLine("y")}));
}

TEST(Cells, LongRowWithAsManyCols)
{
    constexpr int kCells = 100'000;
    OutputContext document;
    document.build(u"<table><colgroup></colgroup><tbody><tr></tr></tbody></table>");
    HtmlTreeNode* const row = document.find(ELEMENT_TR);
    HtmlTreeNode* const group = document.find(ELEMENT_COLGROUP);
    for (int i = 0; i < kCells; ++i) {
        document.element(row, ELEMENT_TD);
        document.element(group, ELEMENT_COL);
    }
    document.declare(group->firstChild, PROPERTY_WIDTH, document.pixels(1));
    const Lines lines = document.walkAll();
    EXPECT_EQ(callsOf("SODefineTableCell", lines).size(), std::size_t{kCells});
    EXPECT_EQ(callsOf("SODefineTableRow", lines), Lines{rowLine(kCells, 100'001)});
}

TEST(Cells, ManyRowsAndWhatStandsBetweenThem)
{
    constexpr int kRows = 20'000;
    OutputContext document;
    document.build(u"<table><colgroup></colgroup><tbody></tbody></table>");
    HtmlTreeNode* const body = document.find(ELEMENT_TBODY);
    for (int i = 0; i < kRows; ++i) {
        HtmlTreeNode* const row = document.element(body, ELEMENT_TR);
        document.element(row, ELEMENT_TD);
        document.element(body, ELEMENT_STYLE);
    }
    const Lines lines = document.walkAll();
    EXPECT_EQ(callsOf("SODefineTableRow", lines).size(), std::size_t{kRows});
    EXPECT_EQ(tableWalkOf(document.context).spanOwners, 0U);
}
