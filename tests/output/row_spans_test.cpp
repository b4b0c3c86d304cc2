#include "output/row_spans.h"

#include "output/open_tables.h"
#include "support/exception.h"
#include "support/sp_vector.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

struct CellOf {
    std::int32_t columns;
    std::int32_t rows;
};
using RowOf = std::vector<CellOf>;

constexpr CellOf kOne{0, 0};
constexpr std::int32_t kZero = INT32_MIN; ///< an attribute with the number 0

/// A table of cells; spans of 0 are attributes that are not there.
void buildTable(OutputContext& document, const std::vector<RowOf>& rows)
{
    document.build(u"<table><tbody></tbody></table>");
    for (const RowOf& cells : rows) {
        HtmlTreeNode* const row = document.element(document.find(ELEMENT_TBODY), ELEMENT_TR);
        for (const CellOf& cell : cells) {
            HtmlTreeNode* const node = document.element(row, ELEMENT_TD);
            const auto span = [&](ZVHTMLAttribute attribute, std::int32_t number) {
                if (number != 0)
                    document.attribute(
                        node, attribute, document.values.numberValue(number == kZero ? 0 : number));
            };
            span(ATTRIBUTE_COLSPAN, cell.columns);
            span(ATTRIBUTE_ROWSPAN, cell.rows);
        }
    }
}

/// The merge words of the cells of each row, 99 for an empty cell that only fills the row.
std::vector<std::vector<std::uint32_t>> mergesOf(const Lines& lines)
{
    std::vector<std::vector<std::uint32_t>> rows(1);
    for (const std::string& line : lines) {
        if (line.rfind("SODefineTableCell", 0) == 0) {
            const Words words = wordsOf(line);
            rows.back().push_back(words.size() == 1 ? 99 : column({words}, kCellMerge)[0]);
        }
        if (line.rfind("SOEmitBreak 19", 0) == 0)
            rows.emplace_back();
    }
    rows.pop_back();
    return rows;
}

HtmlTrNodeData& rowData(OutputContext& document, int n)
{
    return static_cast<HtmlTrNodeData&>(*document.find(ELEMENT_TR, n)->data);
}

} // namespace

TEST(RowSpans, MergeWordsOfEveryCell)
{
    struct Case {
        const char* name;
        std::vector<RowOf> rows;
        std::vector<std::vector<std::uint32_t>> merges;
        std::vector<std::uint32_t> columns;
    };
    const Case cases[] = {
        {"spans of 1 and below are none", {{{1, 1}, {1, 0}, {0, 1}, {-3, -3}}}, {{0, 0, 0, 0}},
            {4}},
        {"spans of 0 are none", {{{kZero, kZero}, {2, kZero}, {kZero, 2}, {0, kZero}}, {kOne}},
            {{0, 2, 1, 8, 0}, {0, 99, 99, 4}}, {5, 2}},
        {"colspan 2", {{{2, 0}, kOne}}, {{2, 1, 0}}, {3}},
        {"colspan 4", {{{4, 1}}}, {{2, 3, 3, 1}}, {4}},
        {"two colspans", {{{2, 0}, {3, 0}}}, {{2, 1, 2, 3, 1}}, {5}},
        {"rowspan 2", {{{0, 2}, kOne}, {kOne}}, {{8, 0}, {4, 0}}, {2, 2}},
        {"rowspan 3", {{{0, 3}}, {kOne}, {kOne}, {kOne}}, {{8}, {12, 0}, {4, 0}, {0}},
            {1, 2, 2, 1}},
        {"rowspan behind a cell", {{kOne, {0, 2}}, {kOne}}, {{0, 8}, {0, 4}}, {2, 2}},
        {"rowspan that overruns", {{{0, 9}}, {kOne}, {kOne}}, {{8}, {12, 0}, {4, 0}}, {1, 2, 2}},
        {"rowspan that overruns at once", {{{0, 9}}, {kOne}}, {{8}, {4, 0}}, {1, 2}},
        {"rowspan in the last row", {{{0, 9}}}, {{8}}, {1}},
        {"both", {{{2, 2}, kOne}, {kOne}}, {{10, 9, 0}, {6, 5, 0}}, {3, 3}},
        {"both, three rows", {{{3, 3}}, {}, {kOne}}, {{10, 11, 9}, {14, 15, 13}, {6, 7, 5, 0}},
            {3, 3, 4}},
        {"rows of nothing but covered cells", {{{0, 3}}, {}, {}}, {{8}, {12}, {4}}, {1, 1, 1}},
        {"missing cells are filled", {{kOne, kOne, {0, 2}}, {kOne}}, {{0, 0, 8}, {0, 99, 4}},
            {3, 2}},
        {"a row without a span is not filled", {{kOne, kOne}, {kOne}}, {{0, 0}, {0}}, {2, 1}},
        {"columns of a span above are gone below", {{{2, 2}}, {kOne}, {kOne}},
            {{10, 9}, {6, 5, 0}, {0}}, {2, 3, 1}},
        {"a span that ends leaves its columns to be filled", {{{0, 2}, {0, 3}}, {}, {}},
            {{8, 8}, {4, 12}, {99, 4}}, {2, 2, 1}},
        {"a cell over a column that is covered", {{kOne, {2, 2}}, {{2, 0}}},
            {{0, 10, 9}, {2, 1, 5}}, {3, 4}},
        {"interleaved", {{{0, 2}, {2, 0}, {0, 3}}, {{0, 2}, kOne}, {}},
            {{8, 2, 1, 8}, {4, 8, 0, 12}, {99, 4, 99, 4}}, {4, 4, 2}},
        {"colspan 2 and rowspan 1", {{{2, 1}}, {kOne}}, {{2, 1}, {0}}, {2, 1}},
    };
    for (const Case& test : cases) {
        OutputContext document;
        buildTable(document, test.rows);
        const Lines lines = document.walkAll();
        EXPECT_EQ(mergesOf(lines), test.merges) << test.name;
        EXPECT_EQ(column(recordsOf("SODefineTableRow", lines), kColumnCount), test.columns)
            << test.name;
        EXPECT_EQ(tableWalkOf(document.context).spanOwners, 0U) << test.name;
    }
}

TEST(RowSpans, HugeColspanCountsAsAThousand)
{
    for (const std::int32_t columns : {1'000, 1'001, 65'535, INT32_MAX}) {
        OutputContext document;
        buildTable(document, {{{columns, 0}}});
        const Lines lines = document.walkAll();
        EXPECT_EQ(callsOf("SODefineTableCell", lines).size(), 1'000U) << columns;
        EXPECT_EQ(column(recordsOf("SODefineTableRow", lines), kColumnCount),
            std::vector<std::uint32_t>{1'000});
    }
}

TEST(RowSpans, HugeRowspanIsAnyOther)
{
    OutputContext document;
    // The largest number has become one that does not fit, which is below any span.
    buildTable(document, {{{0, INT32_MAX}, {0, 2'000'000'000}}, {kOne}});
    EXPECT_EQ(
        mergesOf(document.walkAll()), (std::vector<std::vector<std::uint32_t>>{{0, 8}, {0, 4}}));
}

TEST(RowSpans, OtherKindsOfNumbersAreNone)
{
    OutputContext document;
    document.build(u"<table><tbody><tr><td></td></tr></tbody></table>");
    HtmlTreeNode* const cell = document.find(ELEMENT_TD);
    document.attribute(cell, ATTRIBUTE_COLSPAN, document.pixels(3));
    document.attribute(cell, ATTRIBUTE_ROWSPAN, u"3");
    const CellSpan span = spanOfCell(*cell);
    EXPECT_EQ(span.columns, 0);
    EXPECT_EQ(span.rows, 0);
}

TEST(RowSpans, CoveredCellsKeepTheFlagsOfTheirCell)
{
    OutputContext document;
    buildTable(document, {{{2, 2}}, {}});
    HtmlTreeNode* const cell = document.find(ELEMENT_TD);
    document.declare(cell, PROPERTY_WIDTH, document.pixels(10));
    document.declare(cell, PROPERTY_HEIGHT, document.pixels(10));
    document.declare(cell, PROPERTY_BACKGROUND_COLOR, document.color(0x102030));
    for (const ZVCSSProperty side : {PROPERTY_BORDER_LEFT_WIDTH, PROPERTY_BORDER_RIGHT_WIDTH,
             PROPERTY_BORDER_TOP_WIDTH, PROPERTY_BORDER_BOTTOM_WIDTH})
        document.declare(cell, side, document.pixels(2));
    const auto cells = recordsOf("SODefineTableCell", document.walkAll());
    ASSERT_EQ(cells.size(), 4U);
    const std::uint32_t flags = 0x3C | 0x40 | 0x80 | 0x100 | 0x200 | 0x400 | 0xF000;
    EXPECT_EQ(column(cells, kCellPresent), std::vector<std::uint32_t>(4, flags));
    EXPECT_EQ(column(cells, kCellMerge), (std::vector<std::uint32_t>{10, 9, 6, 5}));
    // Shading and alignment are those of the cell; padding, width and height are not given.
    for (const std::uint32_t offset : {56U, 60U, 64U, 68U, kCellAlignment}) {
        EXPECT_EQ(column(cells, offset), std::vector<std::uint32_t>(4, column(cells, offset)[0]))
            << offset;
    }
    EXPECT_EQ(column(cells, 64)[0], 0x102030U);
    for (const std::uint32_t offset : {20U, 24U, 28U, 32U, 36U, 40U, 44U}) {
        EXPECT_NE(column(cells, offset)[0], 0U) << offset;
        EXPECT_EQ(column(cells, offset)[1], 0U) << offset;
    }
    EXPECT_EQ(column(cells, 8), (std::vector<std::uint32_t>{0, 0, 0, 0}));
    // Sides that carry a merge have no line; the cell itself keeps all of its own.
    EXPECT_EQ(column(cells, 100), (std::vector<std::uint32_t>{30, 15, 30, 15})); // left
    EXPECT_EQ(column(cells, 120), (std::vector<std::uint32_t>{30, 30, 15, 30})); // right
    EXPECT_EQ(column(cells, 140), (std::vector<std::uint32_t>{30, 30, 15, 15})); // top
    EXPECT_EQ(column(cells, 160), (std::vector<std::uint32_t>{30, 15, 30, 30})); // bottom
}

TEST(RowSpans, EmptyCellHasNothingButItsSize)
{
    OutputContext document;
    buildTable(document, {{kOne, {0, 2}}, {}});
    const Lines cells = callsOf("SODefineTableCell", document.walkAll());
    ASSERT_EQ(cells.size(), 4U);
    EXPECT_EQ(cells[2], "SODefineTableCell {@0=224} -> 200003");
}

TEST(RowSpans, CoveredCellsEndLikeOthers)
{
    OutputContext document;
    buildTable(document, {{{2, 0}}});
    document.context.lastChar = u'x';
    const Lines lines = document.walkAll();
    EXPECT_EQ(callsOf("SOEmitBreak 20", lines),
        (Lines{"SOEmitBreak 20 200001", "SOEmitBreak 20 200002"}));
    EXPECT_EQ(document.context.lastChar, 0);
}

TEST(RowSpans, StopAtACoveredCellIsNoted)
{
    for (const std::uint32_t flatten : {0U, 1U}) {
        OutputContext document;
        document.context.flattenTables = flatten;
        document.build(u"<tr><td></td></tr>");
        HtmlTreeNode* const cell = document.find(ELEMENT_TD);
        document.attribute(cell, ATTRIBUTE_COLSPAN, document.values.numberValue(2));
        enterElement(*document.find(ELEMENT_TR), document.context);
        HTML_SOINFO& frame = *newestFrame(document.context);
        enterElement(*cell, document.context);
        leaveElement(*cell, document.context);
        EXPECT_EQ(document.context.statusFlags, 0) << flatten;
        document.host.takeCalls();
        document.host.stopEvery = 1;
        deliverPendingSpans(rowData(document, 0), frame, /*endOfRow=*/true, document.context);
        EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP) << flatten;
        EXPECT_EQ(callsOf("SOEmitBreak", document.host.takeCalls()),
            Lines{flatten != 0 ? kParagraphLine : "SOEmitBreak 20 200002"});
        EXPECT_EQ(frame.columnIndex, 2U);
    }
}

TEST(RowSpans, RowOfFillersOnlyIsNoRowOfTheHost)
{
    OutputContext document;
    // The cell over two columns covers the only one that reaches into the second row, and nothing
    // reaches into the third: it has no columns, but a vector to be filled.
    buildTable(document, {{kOne, {0, 3}}, {{2, 0}}, {}});
    const Lines lines = document.walkAll();
    EXPECT_EQ(
        callsOf("SODefineTableRow", lines), (Lines{rowLine(2, 100'001), rowLine(3, 100'002)}));
    const auto second = std::find(lines.begin(), lines.end(), std::string("SOEmitBreak 19 100002"));
    ASSERT_NE(second, lines.end());
    EXPECT_EQ(Lines(second + 1, lines.end()),
        joined({kRowIndents,
            {"SODefineTableCell {@0=224} -> 200005", "SOEmitBreak 20 200005",
                "SODefineTableCell {@0=224} -> 200006", "SOEmitBreak 20 200006"},
            kRowIndents, {kFinishTable, kTableBreak}}));
}

TEST(RowSpans, FlattenedOnesAreParagraphs)
{
    OutputContext document;
    document.context.flattenTables = 1;
    buildTable(document, {{{3, 2}, kOne}, {kOne}});
    const Lines lines = document.walkAll();
    EXPECT_TRUE(callsOf("SODefineTableCell", lines).empty());
    // Four columns and the row, twice.
    EXPECT_EQ(callsOf("SOEmitBreak", lines),
        (joined({{kTableBreak}, Lines(10, kParagraphLine), {kTableBreak}})));
}

TEST(RowSpans, VectorsGoWithTheRowsThatUsedThem)
{
    OutputContext document;
    buildTable(document, {{{0, 3}}, {kOne}, {kOne}, {kOne}});
    HtmlFilterContext& context = document.context;
    enterElement(*document.find(ELEMENT_TABLE), context);
    enterElement(*document.find(ELEMENT_TBODY), context);
    for (int i = 0; i < 4; ++i) {
        enterElement(*document.find(ELEMENT_TR, i), context);
        EXPECT_NE(rowData(document, i).spanInfo, nullptr);
        EXPECT_EQ(tableWalkOf(context).spanOwners, i == 0 ? 1U : 2U);
        enterElement(*document.find(ELEMENT_TD, i), context);
        leaveElement(*document.find(ELEMENT_TD, i), context);
        leaveElement(*document.find(ELEMENT_TR, i), context);
        EXPECT_EQ(tableWalkOf(context).spanOwners, i == 3 ? 0U : 1U);
    }
}

TEST(RowSpans, LeftOversGoAtTheNextEntry)
{
    OutputContext document;
    buildTable(document, {{{0, 3}}, {kOne}});
    HtmlFilterContext& context = document.context;
    enterElement(*document.find(ELEMENT_TABLE), context);
    enterElement(*document.find(ELEMENT_TBODY), context);
    enterElement(*document.find(ELEMENT_TR), context);
    enterElement(*document.find(ELEMENT_TD), context);
    EXPECT_EQ(tableWalkOf(context).spanOwners, 1U);
    clearDeferredList(context);
    enterElement(*document.find(ELEMENT_TABLE), context);
    EXPECT_EQ(rowData(document, 0).spanInfo, nullptr);
    EXPECT_EQ(tableWalkOf(context).spanOwners, 0U);
}

TEST(RowSpans, RowsEnteredAgainBeginWithAnEmptyVector)
{
    OutputContext document;
    buildTable(document, {{{0, 3}}});
    HtmlFilterContext& context = document.context;
    enterElement(*document.find(ELEMENT_TR), context);
    enterElement(*document.find(ELEMENT_TD), context);
    EXPECT_EQ(SPVectorSize(rowData(document, 0).spanInfo->hSpanInfo), 1U);
    EXPECT_EQ(rowData(document, 0).spanInfo->hasRowSpans, 1U);
    enterElement(*document.find(ELEMENT_TR), context);
    EXPECT_EQ(SPVectorSize(rowData(document, 0).spanInfo->hSpanInfo), 0U);
    EXPECT_EQ(rowData(document, 0).spanInfo->hasRowSpans, 0U);
}

TEST(RowSpans, RecordsOfASpan)
{
    OutputContext document;
    document.build(u"<tr></tr>");
    HtmlTrNodeData& row = rowData(document, 0);
    updateRowSpans(row, nullptr, /*isLast=*/false, document.context);
    TableCellRecord record{};
    record.present = 0x3C;
    record.alignment = 3;
    record.color = 9;
    record.top.width = 4;
    recordSpan(row, 2, {3, 0}, record);
    EXPECT_EQ(row.spanInfo->hasRowSpans, 0U);
    recordSpan(row, 6, {0, 2}, record);
    EXPECT_EQ(row.spanInfo->hasRowSpans, 1U);
    struct Words4 {
        std::uint32_t continuing, first, rowsLeft, columnsLeft;
    };
    const Words4 expected[] = {{0, 0, 0, 0}, {0, 0, 0, 0}, {1, 1, 0, 3}, {1, 0, 0, 2}, {1, 0, 0, 1},
        {0, 0, 0, 0}, {1, 1, 2, 0}};
    SPVector* const vector = row.spanInfo->hSpanInfo;
    ASSERT_EQ(SPVectorSize(vector), 7U);
    for (std::uint32_t i = 0; i < 7; ++i) {
        const auto& span = *static_cast<SpanInfo*>(SPVectorElementAt(vector, i));
        EXPECT_EQ(span.continuing, expected[i].continuing) << i;
        EXPECT_EQ(span.first, expected[i].first) << i;
        EXPECT_EQ(span.rowsLeft, expected[i].rowsLeft) << i;
        EXPECT_EQ(span.columnsLeft, expected[i].columnsLeft) << i;
        const bool isEmpty = expected[i].continuing == 0;
        EXPECT_EQ(span.cellFlags, isEmpty ? 0 : 0x3CU) << i;
        EXPECT_EQ(span.alignment, isEmpty ? 0 : 3U) << i;
        EXPECT_EQ(span.color, isEmpty ? 0 : 9U) << i;
        EXPECT_EQ(span.top.width, isEmpty ? 0 : 4U) << i;
    }
    freeRowSpans(row, document.context);
}

TEST(RowSpans, UpdateStepsEveryRecordDown)
{
    struct Row {
        std::uint32_t rowsLeft;
        std::uint32_t columnsLeft;
        bool isLast;
        std::uint32_t rowsThen;
        std::uint32_t columnsThen;
        std::uint32_t hasRowSpans;
    };
    const Row rows[] = {
        {0, 3, false, 0, 0, 0},
        {0, 3, true, 0, 0, 0},
        {1, 3, false, 0, 0, 0},
        {1, 3, true, 0, 0, 0},
        {2, 3, false, 1, 3, 0},
        {2, 3, true, 1, 3, 0},
        {3, 3, false, 2, 3, 1},
        {3, 3, true, 1, 3, 0},
        {9, 0, true, 1, 0, 0},
        {9, 0, false, 8, 0, 1},
    };
    for (const Row& test : rows) {
        OutputContext document;
        document.build(u"<tr></tr><tr></tr>");
        HtmlTrNodeData& above = rowData(document, 0);
        HtmlTrNodeData& row = rowData(document, 1);
        updateRowSpans(above, nullptr, /*isLast=*/false, document.context);
        SpanInfo span{};
        span.continuing = 1;
        span.first = 1;
        span.rowsLeft = test.rowsLeft;
        span.columnsLeft = test.columnsLeft;
        SPVectorAddElement(above.spanInfo->hSpanInfo, &span, sizeof span);
        // Without the mark nothing is taken over.
        updateRowSpans(row, &above, test.isLast, document.context);
        EXPECT_EQ(SPVectorSize(row.spanInfo->hSpanInfo), 0U);
        above.spanInfo->hasRowSpans = 1;
        updateRowSpans(row, &above, test.isLast, document.context);
        ASSERT_EQ(SPVectorSize(row.spanInfo->hSpanInfo), 1U);
        const auto& then = *static_cast<SpanInfo*>(SPVectorElementAt(row.spanInfo->hSpanInfo, 0));
        EXPECT_EQ(then.continuing, 0U);
        EXPECT_EQ(then.first, 1U);
        EXPECT_EQ(then.rowsLeft, test.rowsThen) << &test - rows;
        EXPECT_EQ(then.columnsLeft, test.columnsThen) << &test - rows;
        EXPECT_EQ(row.spanInfo->hasRowSpans, test.hasRowSpans) << &test - rows;
        freeRowSpans(above, document.context);
        freeRowSpans(row, document.context);
    }
}

TEST(RowSpans, RowWithoutAVectorFails)
{
    OutputContext document;
    document.build(u"<tr></tr>");
    try {
        recordSpan(rowData(document, 0), 0, {2, 0}, TableCellRecord{});
        FAIL();
    } catch (const zorvan::Exception& failure) {
        EXPECT_STREQ(failure.message(), "Row node doesn't have a span vector!");
        EXPECT_EQ(failure.code(), 15U);
    }
}

TEST(RowSpans, VectorThatDoesNotGrowFails)
{
    OutputContext document;
    document.build(u"<tr></tr>");
    HtmlTrNodeData& row = rowData(document, 0);
    const std::uint32_t foreign = 1;
    SPVectorAddElement(row.ensureSpanInfo().hSpanInfo, &foreign, sizeof foreign);
    try {
        recordSpan(row, 1, {0, 2}, TableCellRecord{});
        FAIL();
    } catch (const zorvan::Exception& failure) {
        EXPECT_STREQ(failure.message(), "pSpanInfo is NULL, not enough elements in hSpanInfo!");
        EXPECT_EQ(failure.code(), 137U);
    }
}

TEST(RowSpans, SectionsOfATableHaveSpansOfTheirOwn)
{
    OutputContext document;
    document.build(u"<table><thead><tr><td></td></tr></thead><tbody><tr><td></td></tr></tbody>"
                   u"</table>");
    document.attribute(
        document.find(ELEMENT_TD), ATTRIBUTE_ROWSPAN, document.values.numberValue(2));
    EXPECT_EQ(mergesOf(document.walkAll()), (std::vector<std::vector<std::uint32_t>>{{8}, {0}}));
    EXPECT_EQ(tableWalkOf(document.context).spanOwners, 0U);
}
