#include "output/captions.h"

#include "output/open_tables.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(Captions, GoOutInFrontOfTheTable)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td>x</td></tr></tbody><caption>c</caption></table>");
    const Lines lines = document.walkAll();
    ASSERT_GT(lines.size(), 4U);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4),
        (Lines{kTableBreak, textLine("c"), kParagraphLine, kPlainTable}));
    EXPECT_EQ(callsOf("SOEmitTextAt", lines), (Lines{textLine("c"), textLine("x")}));
    EXPECT_EQ(document.context.walkState, 0U);
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}

TEST(Captions, OnlyTheFirstOneIsDelivered)
{
    OutputContext document;
    document.build(u"<table><caption>c</caption><caption>d</caption></table>");
    EXPECT_EQ(document.walkAll(),
        (Lines{
            kTableBreak, textLine("c"), kParagraphLine, kPlainTable, kFinishTable, kTableBreak}));
}

TEST(Captions, EmptyOneEndsAParagraphAllTheSame)
{
    OutputContext document;
    document.build(u"<table><caption></caption></table>");
    document.context.paragraphFlags = PARAGRAPH_MARKER;
    EXPECT_EQ(document.walkAll(),
        (Lines{kTableBreak, kParagraphLine, kPlainTable, kFinishTable, kTableBreak}));
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_BREAK_OWED);
    EXPECT_EQ(document.context.internals->openTables, 0U);
}

TEST(Captions, StyleIsUndoneAgainstTheFrameAround)
{
    OutputContext document;
    document.build(u"<div><table><caption>c</caption></table></div>");
    HtmlTreeNode* const div = document.find(ELEMENT_DIV);
    HtmlTreeNode* const caption = document.find(ELEMENT_CAPTION);
    document.declare(div, PROPERTY_TEXT_INDENT, document.pixels(10));
    document.declare(caption, PROPERTY_TEXT_INDENT, document.pixels(2));
    document.declare(caption, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    const Lines lines = document.walkAll();
    const Lines expected = {"SOSetProperty 97 2 0 150", kTableBreak, "SOSetProperty 97 2 0 180",
        "SOSetProperty 8 2 1 0", textLine("c"), kParagraphLine,
        // The indent of the caption is taken from that of the block, in which it does not count
        // any more.
        "SOSetProperty 97 2 0 120", "SOSetProperty 8 2 0 0", kPlainTable, kFinishTable, kTableBreak,
        "SOSetProperty 97 2 0 0"};
    Lines sorted = expected;
    Lines actual = lines;
    std::sort(sorted.begin(), sorted.end());
    std::sort(actual.begin(), actual.end());
    EXPECT_EQ(actual, sorted);
    const auto at = [&](const std::string& line) {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    };
    EXPECT_LT(at("SOSetProperty 97 2 0 180"), at(textLine("c")));
    EXPECT_LT(at(kParagraphLine), at("SOSetProperty 97 2 0 120"));
    EXPECT_LT(at("SOSetProperty 97 2 0 120"), at(kPlainTable));
    EXPECT_LT(at("SOSetProperty 8 2 0 0"), at(kPlainTable));
}

TEST(Captions, TakeTheAlignmentOfTheTable)
{
    struct Row {
        std::uint32_t align;
        std::uint32_t code; ///< 0: none goes out
    };
    const Row rows[] = {{HORIZ_ALIGN_NONE, 0}, {HORIZ_ALIGN_CENTER, 3}, {HORIZ_ALIGN_JUSTIFY, 4},
        {HORIZ_ALIGN_LEFT, 0}, {HORIZ_ALIGN_RIGHT, 2}};
    for (const Row& row : rows) {
        OutputContext document;
        document.build(u"<body><table><caption>c</caption></table></body>");
        document.attribute(
            document.find(ELEMENT_TABLE), ATTRIBUTE_ALIGN, document.values.enumValue(row.align));
        document.declare(
            document.find(ELEMENT_BODY), PROPERTY_TEXT_ALIGN, document.keyword(VALUE_LEFT));
        enterElement(*document.find(ELEMENT_BODY), document.context);
        document.host.takeCalls();
        document.context.walkNode = document.find(ELEMENT_BODY);
        const Lines own = row.code == 0
            ? Lines{}
            : Lines{"SOSetProperty 12 " + std::to_string(row.code) + " 0 0"};
        Lines lines = document.walkAll();
        ASSERT_GT(lines.size(), own.size() + 4);
        lines.resize(own.size() + 4);
        EXPECT_EQ(lines,
            joined({{kTableBreak}, own, {textLine("c"), kParagraphLine, "SOSetProperty 12 1 0 0"}}))
            << row.align;
    }
}

TEST(Captions, TableInsideIsAnInnerOne)
{
    OutputContext document;
    document.build(u"<table><caption>a<table><tbody><tr><td>b</td></tr></tbody></table>c</caption>"
                   u"<tbody><tr><td>d</td></tr></tbody></table>");
    document.host.stopEvery = 1;
    EXPECT_EQ(document.walkAll(),
        joined({{kTableBreak, textLine("a"), kParagraphLine, kPlainTable, rowLine(1, 100'001)},
            kRowIndents, {kPlainCell + " -> 200001", textLine("b"), "SOEmitBreak 20 200001"},
            kRowIndents,
            {"SOEmitBreak 19 100001", kFinishTable, textLine("c"), kParagraphLine, kPlainTable,
                rowLine(1, 100'002)},
            kRowIndents, {kPlainCell + " -> 200002", textLine("d"), "SOEmitBreak 20 200002"},
            kRowIndents, {"SOEmitBreak 19 100002", kFinishTable, kTableBreak}}));
}

TEST(Captions, IdIsAnnouncedWhereTheWalkComesToTheCaption)
{
    OutputContext document;
    document.build(u"<table><caption>c</caption></table>");
    document.attribute(document.find(ELEMENT_CAPTION), ATTRIBUTE_ID, u"n");
    const Lines lines = document.walkAll();
    ASSERT_GT(lines.size(), 4U);
    EXPECT_EQ(lines[3], kPlainTable);
    EXPECT_EQ(lines[4], "SOStoreString \"n\" 347078656 1 -> 1");
    EXPECT_EQ(callsOf("SOStoreString", lines).size(), 1U);
}

TEST(Captions, SeeNothingOfTheParagraphsOutside)
{
    OutputContext document;
    document.build(u"<li><p><table><caption>a<br></br>b</caption></table></p></li>");
    document.declare(document.find(ELEMENT_P), PROPERTY_MARGIN_BOTTOM, document.pixels(3));
    HtmlFilterInternals& internals = *document.context.internals;
    enterElement(*document.find(ELEMENT_LI), document.context);
    enterElement(*document.find(ELEMENT_P), document.context);
    document.host.takeCalls();
    document.context.walkNode = document.find(ELEMENT_P);
    EXPECT_FALSE(document.walkSlice() && document.context.statusFlags == 0);
    const Lines lines = document.host.takeCalls();
    ASSERT_GT(lines.size(), 7U);
    // Neither the margin of the p nor the indent of the item.
    EXPECT_EQ(Lines(lines.begin() + 1, lines.begin() + 7),
        (Lines{textLine("a"), kParagraphLine, "SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0",
            textLine("b"), kParagraphLine}));
    EXPECT_EQ(internals.openParagraphs.getCount(), internals.openListItems.getCount());
}

TEST(Captions, EntryAndEndCount)
{
    OutputContext document;
    document.build(u"<p><table><caption>a</caption></table></p>");
    HtmlFilterInternals& internals = *document.context.internals;
    enterElement(*document.find(ELEMENT_P), document.context);
    HtmlTreeNode* const table = document.find(ELEMENT_TABLE);
    HtmlTreeNode* const caption = document.find(ELEMENT_CAPTION);
    EXPECT_EQ(captionInWalk(document.context), nullptr);
    enterElement(*table, document.context);
    EXPECT_EQ(captionInWalk(document.context), caption);
    EXPECT_EQ(internals.openTables, 1U);
    EXPECT_EQ(internals.openParagraphs.last(), nullptr);
    EXPECT_EQ(newestFrame(document.context)->element, std::uint32_t{ELEMENT_CAPTION});
    document.context.walkClimbing = 1;
    EXPECT_EQ(endCaption(document.context), table);
    EXPECT_EQ(document.context.walkClimbing, 0U);
    EXPECT_EQ(captionInWalk(document.context), nullptr);
    EXPECT_EQ(internals.openTables, 1U);
    EXPECT_EQ(internals.openParagraphs.last(), document.find(ELEMENT_P));
    EXPECT_EQ(newestFrame(document.context)->element, std::uint32_t{ELEMENT_TABLE});
}

TEST(Captions, AbandonedOnesLeaveNothing)
{
    OutputContext document;
    document.build(u"<table><caption><table><caption>a</caption></table></caption></table>");
    HtmlFilterInternals& internals = *document.context.internals;
    enterElement(*document.find(ELEMENT_TABLE), document.context);
    enterElement(*document.find(ELEMENT_TABLE, 1), document.context);
    EXPECT_EQ(internals.openTables, 2U);
    abandonCaptions(document.context);
    EXPECT_EQ(internals.openTables, 0U);
    EXPECT_EQ(internals.openParagraphs.getCount(), 0);
    EXPECT_EQ(internals.openListItems.getCount(), 0);
    EXPECT_EQ(captionInWalk(document.context), nullptr);
}

TEST(Captions, WalkThatEndsInsideGoesOnWithTheTable)
{
    OutputContext document;
    document.build(u"<table><caption><b>a</b></caption><tbody><tr><td>x</td></tr></tbody></table>");
    document.context.walkStopNode = document.find(ELEMENT_B);
    while (!document.walkSlice()) { }
    EXPECT_EQ(
        callsOf("SOEmitTextAt", document.host.takeCalls()), (Lines{textLine("a"), textLine("x")}));
}

TEST(Captions, FlattenedOneIsDeliveredWhereItStands)
{
    OutputContext document;
    document.context.flattenTables = 1;
    document.build(u"<table><tbody><tr><td>x</td></tr></tbody><caption>c</caption></table>");
    EXPECT_EQ(callsOf("SOEmitTextAt", document.walkAll()), (Lines{textLine("x"), textLine("c")}));
    EXPECT_EQ(document.context.walkState, 0U);
}

TEST(Captions, TenThousandInsideOneAnother)
{
    constexpr int kDepth = 10'000;
    OutputContext document;
    HtmlTreeNode* parent = document.tree.root();
    for (int i = 0; i < kDepth; ++i)
        parent = document.element(document.element(parent, ELEMENT_TABLE), ELEMENT_CAPTION);
    document.text(parent, u"x");
    const Lines lines = document.walkAll();
    // All captions begin in front of the first table that is told of.
    ASSERT_GT(lines.size(), 3U);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4),
        (Lines{kTableBreak, textLine("x"), kParagraphLine, kPlainTable}));
    EXPECT_EQ(callsOf("SODefineTable", lines).size(), std::size_t{kDepth});
    EXPECT_EQ(callsOf(kFinishTable, lines).size(), std::size_t{kDepth});
    EXPECT_EQ(callsOf(kParagraphLine, lines).size(), std::size_t{kDepth});
    EXPECT_EQ(document.context.internals->openTables, 0U);
    EXPECT_EQ(document.context.internals->openParagraphs.getCount(), 0);
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}
