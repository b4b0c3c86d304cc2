#include "output/rows.h"

#include "output/open_tables.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

const char16_t* const kOneRow = u"<table><tbody><tr><td></td></tr></tbody></table>";

/// The only row record of a document.
Words rowOf(OutputContext& document)
{
    const auto rows = recordsOf("SODefineTableRow", document.walkAll());
    EXPECT_EQ(rows.size(), 1U);
    return rows.empty() ? Words{} : rows[0];
}

} // namespace

TEST(Rows, PlainRecord)
{
    OutputContext document;
    document.build(kOneRow);
    EXPECT_EQ(rowOf(document), (Words{{0, 0x200}, {8, 0xFFFFFFFF}, {24, 1}, {44, 1}, {48, 1}}));
}

TEST(Rows, FullRecord)
{
    OutputContext document;
    document.build(kOneRow);
    HtmlTreeNode* const table = document.find(ELEMENT_TABLE);
    document.attribute(table, ATTRIBUTE_CELLPADDING, document.pixels(3));
    document.attribute(table, ATTRIBUTE_ALIGN, document.values.enumValue(HORIZ_ALIGN_CENTER));
    document.declare(document.find(ELEMENT_TR), PROPERTY_HEIGHT, document.pixels(20.9F));
    EXPECT_EQ(rowOf(document),
        (Words{{0, 0x3F0}, {8, 0xFFFFFFFF}, {20, 300}, {24, 2}, {28, 3}, {32, 3}, {36, 3}, {40, 3},
            {44, 3}, {48, 1}}));
}

TEST(Rows, AlignmentIsThatOfTheTable)
{
    const std::uint32_t codes[] = {1, 3, 1, 1, 2}; // by EHorizAlign
    for (std::uint32_t align = HORIZ_ALIGN_NONE; align <= HORIZ_ALIGN_RIGHT; ++align) {
        OutputContext document;
        document.build(kOneRow);
        document.attribute(
            document.find(ELEMENT_TABLE), ATTRIBUTE_ALIGN, document.values.enumValue(align));
        const Words row = rowOf(document);
        EXPECT_EQ(row.at(44), codes[align]) << align;
        EXPECT_EQ(row.at(0), 0x200U);
    }
}

TEST(Rows, OnlyLengthsAreHeightsAndPaddings)
{
    OutputContext document;
    document.build(kOneRow);
    document.attribute(
        document.find(ELEMENT_TABLE), ATTRIBUTE_CELLPADDING, document.values.numberValue(3));
    document.declare(document.find(ELEMENT_TR), PROPERTY_HEIGHT, document.values.percentValue(50));
    EXPECT_EQ(rowOf(document), (Words{{0, 0x200}, {8, 0xFFFFFFFF}, {24, 1}, {44, 1}, {48, 1}}));
}

TEST(Rows, PaddingOfZeroIsOne)
{
    OutputContext document;
    document.build(kOneRow);
    document.attribute(document.find(ELEMENT_TABLE), ATTRIBUTE_CELLPADDING, document.pixels(0));
    EXPECT_EQ(rowOf(document).at(0), 0x3E0U);
}

TEST(Rows, ColumnsAreCountedByCells)
{
    OutputContext document;
    document.build(u"<table><tbody><tr>x<td></td><b></b><th></th><td></td><td></td></tr></tbody>"
                   u"</table>");
    const auto span = [&](int n, std::int32_t columns) {
        document.attribute(
            document.find(ELEMENT_TD, n), ATTRIBUTE_COLSPAN, document.values.numberValue(columns));
    };
    span(0, 3);
    span(1, 0);
    span(2, -7);
    EXPECT_EQ(rowOf(document).at(kColumnCount), 6U);
}

TEST(Rows, IndentsAreZeroInsideAndGoOutAgainBehind)
{
    OutputContext document;
    document.build(u"<blockquote><table><tbody><tr></tr></tbody></table></blockquote>");
    HtmlTreeNode* const quote = document.find(ELEMENT_BLOCKQUOTE);
    HtmlTreeNode* const row = document.find(ELEMENT_TR);
    document.declare(quote, PROPERTY_MARGIN_LEFT, document.pixels(10));
    document.declare(quote, PROPERTY_MARGIN_RIGHT, document.pixels(20));
    document.declare(row, PROPERTY_MARGIN_RIGHT, document.pixels(3));
    document.declare(row, PROPERTY_MARGIN_LEFT, document.pixels(4));
    for (const ZVHTMLElement id : {ELEMENT_BLOCKQUOTE, ELEMENT_TABLE, ELEMENT_TBODY})
        enterElement(*document.find(id), document.context);
    document.host.takeCalls();
    enterElement(*row, document.context);
    EXPECT_EQ(document.host.takeCalls(), kRowIndents);
    leaveElement(*row, document.context);
    // First line and right begin at 0 in a row, left does not; the row's own margins count.
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOSetProperty 97 2 0 60", "SOSetProperty 97 1 0 45", "SOSetProperty 97 0 0 210"}));
}

TEST(Rows, FlattenedRowsKeepTheIndents)
{
    OutputContext document;
    document.context.flattenTables = 1;
    document.build(u"<blockquote><table><tbody><tr></tr></tbody></table></blockquote>");
    document.declare(document.find(ELEMENT_BLOCKQUOTE), PROPERTY_MARGIN_LEFT, document.pixels(10));
    for (const ZVHTMLElement id : {ELEMENT_BLOCKQUOTE, ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TR})
        enterElement(*document.find(id), document.context);
    document.host.takeCalls();
    document.context.lastChar = u'x';
    document.host.stopEvery = 1;
    leaveElement(*document.find(ELEMENT_TR), document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOSetProperty 97 2 0 150", "SOSetProperty 97 1 0 0", "SOSetProperty 97 0 0 150",
            kParagraphLine}));
    EXPECT_EQ(document.context.lastChar, 0);
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
}

TEST(Rows, EntryAndExitCloseTheParagraph)
{
    for (const char16_t* markup : {u"<tr></tr>", u"<tr><td></td></tr>"}) {
        OutputContext document;
        document.build(markup);
        HtmlTreeNode* const row = document.find(ELEMENT_TR);
        document.context.paragraphFlags = PARAGRAPH_OPEN | PARAGRAPH_MARKER;
        document.context.lastChar = u'x';
        document.host.stopEvery = 1;
        enterElement(*row, document.context);
        EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_MARKER);
        EXPECT_EQ(document.context.lastChar, 0);
        const bool hasHandle = row->firstChild != nullptr;
        EXPECT_EQ(newestFrame(document.context)->handle, hasHandle ? 100'001 : 0xFFFFFFFF);

        document.context.paragraphFlags = PARAGRAPH_OPEN | PARAGRAPH_MARKER;
        document.context.lastChar = u'x';
        leaveElement(*row, document.context);
        EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_MARKER);
        // A row that the host knows nothing of ends without a break.
        EXPECT_EQ(document.context.lastChar, hasHandle ? 0 : u'x');
        EXPECT_EQ(document.context.statusFlags, hasHandle ? STATUS_HOST_STOP : 0);
        EXPECT_EQ(callsOf("SOEmitBreak", document.host.takeCalls()),
            hasHandle ? Lines{"SOEmitBreak 19 100001"} : Lines{});
    }
}

TEST(Rows, RowThatTheHostRefusesEndsWithoutABreak)
{
    const SODefineTableRowRoutine refuse
        = [](const TableRowRecord*, void*, void*) -> std::uint32_t { return 0xFFFF'FFFF; };
    OutputContext document;
    document.build(u"<table><tbody><tr><td>x</td></tr></tbody></table>");
    document.context.soRoutines[SO_DEFINE_TABLE_ROW - 1] = reinterpret_cast<void*>(refuse);
    EXPECT_EQ(document.walkAll(),
        joined({{kTableBreak, kPlainTable}, kRowIndents,
            {kPlainCell + " -> 200001", textLine("x"), "SOEmitBreak 20 200001"}, kRowIndents,
            {kFinishTable, kTableBreak}}));
}

TEST(Rows, PlaceAmongTheOthers)
{
    OutputContext document;
    document.build(u"<tbody>x<tr></tr><style></style><tr></tr>x<tr></tr><style></style></tbody>");
    const std::uint32_t places[]
        = {ROW_HAS_NEXT, ROW_HAS_PREVIOUS | ROW_HAS_NEXT, ROW_HAS_PREVIOUS};
    for (int i = 0; i < 3; ++i) {
        enterElement(*document.find(ELEMENT_TR, i), document.context);
        EXPECT_EQ(newestFrame(document.context)->rowPlace, places[i]) << i;
        leaveElement(*document.find(ELEMENT_TR, i), document.context);
    }
}
