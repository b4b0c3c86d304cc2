#include "output/captions.h"

#include "output/open_tables.h"
#include "support/process_heap.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

#include <new>

using namespace testing_support;

namespace {

std::string alignmentLine(std::uint32_t code)
{
    return "SOSetProperty 12 " + std::to_string(code) + " 0 0";
}

/// A document that runs out of memory wherever a text ends in an exclamation mark.
class FailingDocument : public OutputContext {
public:
    FailingDocument()
    {
        void*& slot = context.soRoutines[SO_EMIT_TEXT_AT - 1];
        failing = this;
        emitTextAt_ = reinterpret_cast<SOEmitTextAtRoutine>(slot);
        const SOEmitTextAtRoutine emit
            = [](const char16_t* text, std::uint16_t count, std::uint32_t charSetId,
                  std::uint32_t word, void* user1, void* user2) {
                  failing->emitTextAt_(text, count, charSetId, word, user1, user2);
                  if (text[count - 1] == u'!')
                      failing->context.statusFlags |= STATUS_OUT_OF_MEMORY;
              };
        slot = reinterpret_cast<void*>(emit);
    }

private:
    static inline FailingDocument* failing = nullptr;
    SOEmitTextAtRoutine emitTextAt_;
};

/// What stands behind the table's record in a table of one cell.
Lines restOfTable(const std::string& text, std::uint32_t handle)
{
    const std::string row = std::to_string(100'000 + handle);
    const std::string cell = std::to_string(200'000 + handle);
    return joined({{rowLine(1, 100'000 + handle)}, kRowIndents,
        {kPlainCell + " -> " + cell, textLine(text), "SOEmitBreak 20 " + cell}, kRowIndents,
        {"SOEmitBreak 19 " + row, kFinishTable}});
}

/// Nothing is open but the outermost table, which has been entered completely.
void expectOnlyTheTable(OutputContext& document)
{
    const HtmlFilterContext& context = document.context;
    EXPECT_EQ(context.statusFlags, STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(context.walkNode, document.find(ELEMENT_TABLE));
    EXPECT_EQ(context.walkClimbing, 0U);
    EXPECT_EQ(context.walkResume, 0U);
    EXPECT_EQ(context.tableDepth, 1U);
    EXPECT_EQ(context.tableBreakSent, 1U);
    EXPECT_EQ(context.lastChar, 0);
    ASSERT_EQ(context.deferredList.getCount(), 1);
    EXPECT_EQ(newestFrame(context)->element, std::uint32_t{ELEMENT_TABLE});
    EXPECT_EQ(captionInWalk(context), nullptr);
    EXPECT_EQ(innermostTable(context)->node, document.find(ELEMENT_TABLE));
    EXPECT_EQ(context.internals->openTables, 1U);
    EXPECT_EQ(context.internals->openPreformatted, 0U);
    EXPECT_EQ(context.internals->openParagraphs.getCount(), 0);
    EXPECT_EQ(context.internals->openListItems.getCount(), 0);
    EXPECT_EQ(context.internals->tableWalk->spanOwners, 0U);
}

} // namespace

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

TEST(Captions, EndWithTheSliceThatEndsInsideThem)
{
    struct Row {
        const char16_t* caption;
        Lines calls; ///< between the first break and the record of the table
    };
    const Row rows[] = {
        {u"a!", {textLine("a!"), kParagraphLine}},
        {u"a!<b>never</b>", {textLine("a!"), kParagraphLine}},
        {u"<b><i>a!</i>never</b>", {textLine("a!"), kParagraphLine}},
        {u"<pre><ul><li><b>a!</b></li></ul></pre>",
            {"SOSetProperty 88 1170 0 0", "SOEmitText \"\\u2022\" 1 347078656", "SOEmitSpecial 6",
                "SOEmitSpecial 6", textLine("a!"), kParagraphLine}},
        {u"<p>a!</p>", {textLine("a!"), kParagraphLine}},
        // A table inside, in its caption.
        {u"a<table><caption>b!</caption><tbody><tr><td>never</td></tr></tbody></table>c",
            {textLine("a"), kParagraphLine, textLine("b!"), kParagraphLine, kPlainTable,
                kFinishTable, kParagraphLine}},
        {u"<b><table><caption><i>b!</i></caption></table></b>",
            {textLine("b!"), kParagraphLine, kPlainTable, kFinishTable, kParagraphLine}},
        // The same in a cell: what the host knows of ends.
        {u"<table><tbody><tr><td>b!</td><td>never</td></tr></tbody></table>",
            joined({{kPlainTable, rowLine(2, 100'001)}, kRowIndents,
                {kPlainCell + " -> 200001", textLine("b!"), kFinishTable, kParagraphLine}})},
    };
    for (const Row& row : rows) {
        for (const std::uint32_t stopEvery : {0U, 1U}) {
            FailingDocument document;
            document.build(u"<table><caption></caption><tbody><tr><td>x</td></tr></tbody></table>");
            document.build(row.caption, document.find(ELEMENT_CAPTION));
            document.host.stopEvery = stopEvery;
            EXPECT_FALSE(document.walkSlice()) << &row - rows;
            EXPECT_EQ(document.host.takeCalls(), joined({{kTableBreak}, row.calls, {kPlainTable}}))
                << &row - rows;
            expectOnlyTheTable(document);
            // Who reads on comes to the rows.
            const std::uint32_t handle = &row - rows == std::size(rows) - 1 ? 2 : 1;
            EXPECT_EQ(document.walkAll(), joined({restOfTable("x", handle), {kTableBreak}}))
                << &row - rows;
            EXPECT_EQ(document.context.tableDepth, 0U);
            EXPECT_EQ(document.context.tableBreakSent, 0U);
            EXPECT_EQ(innermostTable(document.context), nullptr);
            EXPECT_TRUE(document.context.deferredList.isEmpty());
        }
    }
}

TEST(Captions, StyleIsUndoneWhenTheSliceEndsInside)
{
    FailingDocument document;
    document.build(u"<div><table><caption><b>a!</b></caption></table>x</div>");
    document.declare(
        document.find(ELEMENT_CAPTION), PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC));
    document.declare(document.find(ELEMENT_B), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    EXPECT_FALSE(document.walkSlice());
    // Of what is open in it only the caption itself is undone.
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{kTableBreak, "SOSetProperty 8 3 1 0", "SOSetProperty 8 2 1 0", textLine("a!"),
            kParagraphLine, "SOSetProperty 8 3 0 0", kPlainTable}));
    EXPECT_EQ(
        document.walkAll(), (Lines{kFinishTable, kTableBreak, textLine("x"), kParagraphLine}));
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}

TEST(Captions, TableThatWasToBeMetAgainGoesWithTheRest)
{
    OutputContext document;
    document.build(u"<table><caption>a<table></table></caption></table>");
    enterElement(*document.find(ELEMENT_TABLE), document.context);
    document.context.statusFlags = STATUS_OUT_OF_MEMORY;
    enterElement(*document.find(ELEMENT_TABLE, 1), document.context);
    EXPECT_EQ(document.context.walkResume, 1U);
    EXPECT_EQ(endCaption(document.context), document.find(ELEMENT_TABLE));
    EXPECT_EQ(document.context.walkResume, 0U);
    EXPECT_EQ(document.context.tableDepth, 1U);
    EXPECT_EQ(document.context.deferredList.getCount(), 1);
}

TEST(Captions, MemoryThatRunsOutAnywhereLeavesTablesInBalance)
{
    const char16_t* const markup
        = u"<table><caption>a<ul><li>b</li></ul><table><caption><b>c</b></caption><tbody><tr><td>d"
          u"<p>e</p></td></tr></tbody></table>f</caption><tbody><tr><td>g</td></tr></tbody>"
          u"</table><p>h</p>";
    std::uint32_t endings = 0;
    for (std::uint32_t n = 1;; ++n) {
        OutputContext document;
        document.build(markup);
        for (const ZVHTMLElement id : {ELEMENT_CAPTION, ELEMENT_B, ELEMENT_P})
            document.declare(
                document.find(id), PROPERTY_FONT_STYLE, document.keyword(VALUE_ITALIC));
        zorvan::failNthAllocation(n);
        bool threw = false;
        try {
            document.walkSlice();
        } catch (const std::bad_alloc&) {
            threw = true;
        }
        const bool failed = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (!failed)
            break;
        if (threw)
            continue;
        ++endings;
        while (!document.walkSlice()) { }
        const Lines lines = document.host.takeCalls();
        EXPECT_EQ(callsOf("SODefineTable", lines).size(), callsOf(kFinishTable, lines).size()) << n;
        // Without a frame a table is none.
        const bool hasTables = !callsOf("SODefineTable", lines).empty();
        EXPECT_EQ(callsOf(kTableBreak, lines).size(), hasTables ? 2U : 0U) << n;
        EXPECT_EQ(document.context.tableDepth, 0U) << n;
        EXPECT_EQ(document.context.internals->openTables, 0U) << n;
        EXPECT_TRUE(document.context.deferredList.isEmpty()) << n;
    }
    EXPECT_GT(endings, 10U);
}

TEST(Captions, AlignmentAndBackgroundAreDeliveredAndUndone)
{
    for (const bool isShaded : {false, true}) {
        OutputContext document;
        document.build(u"<div><table><caption>c</caption></table></div>");
        HtmlTreeNode* const div = document.find(ELEMENT_DIV);
        HtmlTreeNode* const caption = document.find(ELEMENT_CAPTION);
        document.declare(div, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_RIGHT));
        if (isShaded)
            document.declare(div, PROPERTY_BACKGROUND_COLOR, document.color(0x654321));
        document.declare(caption, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_CENTER));
        document.declare(caption, PROPERTY_BACKGROUND_COLOR, document.color(0x123456));
        const std::string outside = isShaded ? "SOSetParagraphShading 1 {@0=13 @12=6636321}"
                                             : "SOSetParagraphShading 0 {}";
        const Lines lines = document.walkAll();
        const auto begin = std::find(lines.begin(), lines.end(), kTableBreak);
        ASSERT_GT(lines.end() - begin, 8);
        // The alignment outside comes from what is undone and goes out once more behind it.
        EXPECT_EQ(Lines(begin, begin + 8),
            (Lines{kTableBreak, alignmentLine(3), "SOSetParagraphShading 1 {@0=13 @12=1193046}",
                textLine("c"), kParagraphLine, alignmentLine(2), outside, alignmentLine(2)}))
            << isShaded;
    }
}

TEST(Captions, AlignTheTablesInside)
{
    OutputContext document;
    document.build(u"<table><caption>a<table></table>b</caption></table>");
    document.declare(
        document.find(ELEMENT_CAPTION), PROPERTY_TEXT_ALIGN, document.keyword(VALUE_CENTER));
    EXPECT_EQ(document.walkAll(),
        (Lines{kTableBreak, alignmentLine(3), textLine("a"), kParagraphLine,
            "SODefineTable {@0=32780 @4=96 @12=3 @20=15 @28=16777215}", kFinishTable,
            alignmentLine(3), textLine("b"), kParagraphLine, alignmentLine(1), kPlainTable,
            kFinishTable, kTableBreak}));
}

TEST(Captions, TableInsideWithAnAlignmentOfItsOwn)
{
    OutputContext document;
    document.build(u"<table><caption>a<table><caption>i</caption></table>b</caption></table>");
    document.declare(
        document.find(ELEMENT_CAPTION), PROPERTY_TEXT_ALIGN, document.keyword(VALUE_CENTER));
    document.attribute(document.find(ELEMENT_TABLE, 1), ATTRIBUTE_ALIGN,
        document.values.enumValue(HORIZ_ALIGN_RIGHT));
    EXPECT_EQ(document.walkAll(),
        (Lines{kTableBreak, alignmentLine(3), textLine("a"), kParagraphLine, alignmentLine(2),
            textLine("i"), kParagraphLine, alignmentLine(3),
            "SODefineTable {@0=32780 @4=96 @12=2 @20=15 @28=16777215}", kFinishTable,
            alignmentLine(3), textLine("b"), kParagraphLine, alignmentLine(1), kPlainTable,
            kFinishTable, kTableBreak}));
}

TEST(Captions, ParagraphsAtTheirEdgesAreInATable)
{
    const std::string noSpaceBefore = "SOSetProperty 98 1 0 0";
    const std::string noSpaceAfter = "SOSetProperty 99 1 0 0";
    for (const bool isBuiltIn : {true, false}) {
        OutputContext document;
        document.build(u"<table><caption> <p>a</p><p>b</p> </caption></table>");
        for (int i = 0; i < 2; ++i) {
            for (const ZVCSSProperty margin : {PROPERTY_MARGIN_TOP, PROPERTY_MARGIN_BOTTOM})
                document.declarations(document.find(ELEMENT_P, i))
                    .set(margin, document.pixels(16), /*important=*/false, isBuiltIn);
        }
        const Lines top = isBuiltIn ? Lines{} : Lines{"SOSetProperty 98 1 240 0"};
        const Lines bottom = isBuiltIn ? Lines{} : Lines{"SOSetProperty 99 1 240 0"};
        // The margins of the two between them are one.
        EXPECT_EQ(document.walkAll(),
            joined({{kTableBreak}, top,
                {textLine("a"), "SOSetProperty 99 1 240 0", kParagraphLine, noSpaceBefore,
                    noSpaceAfter, noSpaceBefore, textLine("b")},
                bottom,
                {kParagraphLine, noSpaceBefore, noSpaceAfter, kParagraphLine, kPlainTable,
                    kFinishTable, kTableBreak}}))
            << isBuiltIn;
    }
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
