#include "output/cell_records.h"

#include "output/open_tables.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

/// A table of three rows of three cells, in whose middle stands the cell in question.
class CellRecords : public testing::Test {
protected:
    CellRecords()
    {
        document.build(u"<table><colgroup><col></col><col></col><col></col></colgroup><tbody>"
                       u"<tr><td></td><td></td><td></td></tr><tr><td></td><td></td><td></td></tr>"
                       u"<tr><td></td><td></td><td></td></tr></tbody></table>");
        table = document.find(ELEMENT_TABLE);
        row = document.find(ELEMENT_TR, 1);
        cell = document.find(ELEMENT_TD, 4);
        col = document.find(ELEMENT_COL, 1);
    }

    /// The records of all cells, row by row.
    std::vector<Words> records() { return recordsOf("SODefineTableCell", document.walkAll()); }
    Words record() { return records().at(4); }

    OutputContext document;
    HtmlTreeNode* table;
    HtmlTreeNode* row;
    HtmlTreeNode* cell;
    HtmlTreeNode* col;
};

} // namespace

TEST_F(CellRecords, PlainCell)
{
    EXPECT_EQ(record(),
        (Words{{0, 224}, {4, 0x43C}, {8, 0x10}, {20, 15}, {24, 15}, {28, 15}, {32, 15}, {44, 1},
            {92, 0x30001}, {100, 15}, {108, 1}, {120, 15}, {128, 1}, {140, 15}, {148, 1}, {160, 15},
            {168, 1}}));
}

TEST_F(CellRecords, Widths)
{
    struct Row {
        HtmlValue* own;
        HtmlValue* ofCol;
        HtmlValue* span;
        std::uint32_t kind;
        std::uint32_t width;
    };
    const auto percent = [&](float number) { return document.values.percentValue(number); };
    const auto number = [&](std::int32_t n) { return document.values.numberValue(n); };
    HtmlValue* const automatic = document.keyword(VALUE_AUTO);
    const Row rows[] = {
        {document.pixels(100.9F), nullptr, nullptr, 0, 1'500},
        {document.pixels(0), document.pixels(7), nullptr, 0, 0},
        {percent(12.5F), nullptr, nullptr, 8, 12},
        {automatic, document.pixels(7), nullptr, 0x10, 0},
        {nullptr, automatic, nullptr, 0x10, 0},
        {nullptr, document.pixels(100), nullptr, 0, 1'500},
        {nullptr, document.pixels(100), number(3), 0, 33 * 15},
        {nullptr, document.pixels(100), number(-3), 0, 1'500},
        {nullptr, document.pixels(100), document.pixels(3), 0, 1'500},
        {nullptr, percent(50), number(3), 8, 16},
        {document.pixels(100), percent(50), number(3), 0, 1'500},
        {document.em(3), nullptr, nullptr, 0, 48 * 15},
    };
    for (const Row& test : rows) {
        OutputContext& context = document;
        for (HtmlTreeNode* node : {cell, col})
            context.declarations(node).clear();
        static_cast<HtmlTagNodeData*>(col->data)->clearAttributes();
        if (test.own != nullptr)
            context.declare(cell, PROPERTY_WIDTH, test.own);
        if (test.ofCol != nullptr)
            context.declare(col, PROPERTY_WIDTH, test.ofCol);
        // The col stays that of the cell when it spans to its right.
        if (test.span != nullptr)
            context.attribute(col, ATTRIBUTE_SPAN, test.span);
        context.rewind();
        const Words words = record();
        const std::vector<Words> only{words};
        EXPECT_EQ(column(only, 8)[0], test.kind) << &test - rows;
        EXPECT_EQ(column(only, 36)[0], test.width) << &test - rows;
        EXPECT_EQ((words.at(kCellPresent) & 0x40) != 0, test.kind != 0x10) << &test - rows;
    }
}

TEST_F(CellRecords, Heights)
{
    document.declare(cell, PROPERTY_HEIGHT, document.pixels(3));
    document.declare(document.find(ELEMENT_TD), PROPERTY_HEIGHT, document.values.percentValue(9));
    const auto cells = records();
    EXPECT_EQ(column(cells, 40), (std::vector<std::uint32_t>{0, 0, 0, 0, 45, 0, 0, 0, 0}));
    EXPECT_EQ(column(cells, 44), (std::vector<std::uint32_t>{1, 1, 1, 1, 2, 1, 1, 1, 1}));
    EXPECT_EQ(cells[4].at(kCellPresent), 0x4BCU);
    EXPECT_EQ(cells[0].at(kCellPresent), 0x43CU);
}

TEST_F(CellRecords, PaddingOfAnotherKindRepeatsTheLastLength)
{
    struct Row {
        HtmlValue* table;
        HtmlValue* top;
        HtmlValue* right;
        HtmlValue* left;
        HtmlValue* bottom;
        std::vector<std::uint32_t> pixels; ///< left, right, top, bottom
        std::uint32_t flags;
    };
    const auto px = [&](float number) { return document.pixels(number); };
    HtmlValue* const other = document.values.percentValue(5);
    HtmlValue* const none = nullptr;
    const Row rows[] = {
        {none, none, none, none, none, {1, 1, 1, 1}, 0x3C},
        {px(4), none, none, none, none, {4, 4, 4, 4}, 0x3C},
        {px(0), none, none, none, none, {0, 0, 0, 0}, 0x3C},
        {other, none, none, none, none, {1, 1, 1, 1}, 0x3C},
        {px(4), px(5), px(6), px(7), px(8), {7, 6, 5, 8}, 0x3C},
        {px(4), px(0), none, none, none, {4, 4, 0, 4}, 0x2C},
        {px(4), px(0.9F), none, none, none, {4, 4, 0, 4}, 0x2C},
        {px(4), none, px(0), px(0), px(0), {0, 0, 4, 0}, 0x10},
        {px(4), other, none, none, none, {4, 4, 4, 4}, 0x3C},
        {none, px(5), other, none, other, {1, 5, 5, 5}, 0x3C},
        {none, px(5), px(0), other, none, {0, 0, 5, 1}, 0x30},
        {none, none, none, px(6), other, {6, 1, 1, 6}, 0x3C},
        {none, other, px(9), other, none, {9, 9, 1, 1}, 0x3C},
        {px(0), other, none, none, none, {0, 0, 0, 0}, 0x2C},
    };
    for (const Row& test : rows) {
        document.declarations(cell).clear();
        static_cast<HtmlTagNodeData*>(table->data)->clearAttributes();
        const auto declare = [&](ZVCSSProperty property, HtmlValue* value) {
            if (value != nullptr)
                document.declare(cell, property, value);
        };
        if (test.table != nullptr)
            document.attribute(table, ATTRIBUTE_CELLPADDING, test.table);
        // The order in which they are declared is no matter.
        declare(PROPERTY_PADDING_BOTTOM, test.bottom);
        declare(PROPERTY_PADDING_LEFT, test.left);
        declare(PROPERTY_PADDING_RIGHT, test.right);
        declare(PROPERTY_PADDING_TOP, test.top);
        document.rewind();
        const std::vector<Words> words{record()};
        for (std::uint32_t i = 0; i < 4; ++i)
            EXPECT_EQ(column(words, 20 + 4 * i)[0], test.pixels[i] * 15)
                << &test - rows << ' ' << i;
        EXPECT_EQ(column(words, kCellPresent)[0], 0x400 | test.flags) << &test - rows;
    }
}

TEST_F(CellRecords, BackgroundOfTheFirstThatHasAColor)
{
    HtmlTreeNode* const chain[] = {table, col, row, cell};
    document.declare(document.find(ELEMENT_TBODY), PROPERTY_BACKGROUND_COLOR, document.color(99));
    EXPECT_EQ(column({record()}, 56)[0], 0U);
    for (std::uint32_t i = 0; i < 4; ++i) {
        document.declare(chain[i], PROPERTY_BACKGROUND_COLOR, document.color(0xFF000001 + i));
        document.rewind();
        const std::vector<Words> words{record()};
        EXPECT_EQ(column(words, kCellPresent)[0], 0x63CU);
        EXPECT_EQ(column(words, 56)[0], 13U);
        EXPECT_EQ(column(words, 60)[0], 15U);
        EXPECT_EQ(column(words, 64)[0], i + 1);
        EXPECT_EQ(column(words, 68)[0], i + 1);
        EXPECT_EQ(column(words, 72)[0], 0U);
    }
    // What is no color lets the next one speak.
    document.declare(cell, PROPERTY_BACKGROUND_COLOR, document.keyword(VALUE_TRANSPARENT));
    document.rewind();
    EXPECT_EQ(record().at(64), 3U);
}

TEST_F(CellRecords, AlignmentOfTheFirstThatHasOne)
{
    struct Row {
        ZVCSSProperty property;
        ZVCSSValue keyword;
        std::uint32_t word; ///< of a td, together with the part that is not declared
    };
    const Row rows[] = {
        {PROPERTY_TEXT_ALIGN, VALUE_LEFT, 0x30001},
        {PROPERTY_TEXT_ALIGN, VALUE_RIGHT, 0x30002},
        {PROPERTY_TEXT_ALIGN, VALUE_CENTER, 0x30003},
        {PROPERTY_TEXT_ALIGN, VALUE_JUSTIFY, 0x30004},
        {PROPERTY_TEXT_ALIGN, VALUE_INHERIT, 0x30000},
        {PROPERTY_VERTICAL_ALIGN, VALUE_BOTTOM, 0x20001},
        {PROPERTY_VERTICAL_ALIGN, VALUE_MIDDLE, 0x30001},
        {PROPERTY_VERTICAL_ALIGN, VALUE_TOP, 0x10001},
        {PROPERTY_VERTICAL_ALIGN, VALUE_BASELINE, 0x00001},
    };
    for (const Row& test : rows) {
        for (HtmlTreeNode* node : {col, row, cell}) {
            document.declare(node, test.property, document.keyword(test.keyword));
            document.rewind();
            EXPECT_EQ(column({record()}, kCellAlignment)[0], test.word) << &test - rows;
            // The nearer one wins, also when what it says adds nothing.
            document.declare(node, test.property, document.keyword(VALUE_INHERIT));
            document.rewind();
            const std::uint32_t other = test.property == PROPERTY_TEXT_ALIGN ? 0x30000 : 0x00001;
            EXPECT_EQ(column({record()}, kCellAlignment)[0], other) << &test - rows;
        }
        for (HtmlTreeNode* node : {col, row, cell})
            document.declarations(node).clear();
    }
}

TEST_F(CellRecords, AlignmentThatSaysNothingIsNotPresent)
{
    document.declare(cell, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_INHERIT));
    document.declare(cell, PROPERTY_VERTICAL_ALIGN, document.keyword(VALUE_BASELINE));
    const Words words = record();
    EXPECT_EQ(words.count(kCellAlignment), 0U);
    EXPECT_EQ(words.at(kCellPresent), 0x3CU);
}

TEST_F(CellRecords, HeadingsAreCentered)
{
    OutputContext other;
    other.build(u"<table><tbody><tr><th></th><th></th></tr></tbody></table>");
    other.declare(other.find(ELEMENT_TH, 1), PROPERTY_TEXT_ALIGN, other.keyword(VALUE_LEFT));
    EXPECT_EQ(column(recordsOf("SODefineTableCell", other.walkAll()), kCellAlignment),
        (std::vector<std::uint32_t>{0x30003, 0x30001}));
}

TEST_F(CellRecords, RulesByThePlaceOfTheCell)
{
    constexpr std::uint32_t kLeft = 0x1000;
    constexpr std::uint32_t kRight = 0x2000;
    constexpr std::uint32_t kTop = 0x4000;
    constexpr std::uint32_t kBottom = 0x8000;
    struct Row {
        HtmlValue* rules;
        HtmlValue* border;
        bool columns;
        bool rows;
        bool all;
    };
    const auto rule = [&](std::uint32_t kind) { return document.values.enumValue(kind); };
    const Row rows[] = {
        {nullptr, nullptr, false, false, false},
        {nullptr, document.pixels(2), false, false, true},
        {nullptr, document.pixels(0), false, false, false},
        {nullptr, document.values.numberValue(2), false, false, false},
        {rule(TABLE_RULES_ALL), nullptr, true, true, false},
        {rule(TABLE_RULES_ALL), document.pixels(2), true, true, false},
        {rule(TABLE_RULES_ALL), document.pixels(0), true, true, false},
        {rule(TABLE_RULES_COLS), document.pixels(2), true, false, false},
        {rule(TABLE_RULES_ROWS), document.pixels(2), false, true, false},
        {rule(TABLE_RULES_GROUPS), document.pixels(2), false, false, false},
        {rule(TABLE_RULES_NONE), document.pixels(2), false, false, false},
    };
    for (const Row& test : rows) {
        static_cast<HtmlTagNodeData*>(table->data)->clearAttributes();
        if (test.rules != nullptr)
            document.attribute(table, ATTRIBUTE_RULES, test.rules);
        if (test.border != nullptr)
            document.attribute(table, ATTRIBUTE_BORDER, test.border);
        const auto* length = HtmlLengthValue::from(test.border);
        const auto width = length != nullptr ? static_cast<std::uint32_t>(length->pixels()) : 1;
        document.rewind();
        const auto cells = records();
        ASSERT_EQ(cells.size(), 9U);
        for (std::uint32_t i = 0; i < 9; ++i) {
            std::uint32_t drawn = test.all ? kLeft | kRight | kTop | kBottom : 0;
            if (test.columns)
                drawn |= (i % 3 != 0 ? kLeft : 0) | (i % 3 != 2 ? kRight : 0);
            if (test.rows)
                drawn |= (i / 3 != 0 ? kTop : 0) | (i / 3 != 2 ? kBottom : 0);
            EXPECT_EQ(cells[i].at(kCellPresent), 0x43C | drawn) << &test - rows << ' ' << i;
            const std::uint32_t flags[] = {kLeft, kRight, kTop, kBottom};
            for (std::uint32_t side = 0; side < 4; ++side) {
                const BorderSide words = sideAt(100 + 20 * side, cells[i]);
                const bool isDrawn = (drawn & flags[side]) != 0;
                EXPECT_EQ(words.width, isDrawn ? width * 15 : 15U) << &test - rows << ' ' << i;
                EXPECT_EQ(words.style, isDrawn ? 0U : 1U) << &test - rows << ' ' << i;
                EXPECT_EQ(words.color, 0U);
            }
        }
    }
}

TEST_F(CellRecords, LastColumnGoesByTheFirstOfTheCell)
{
    document.attribute(table, ATTRIBUTE_RULES, document.values.enumValue(TABLE_RULES_COLS));
    document.attribute(
        document.find(ELEMENT_TD, 2), ATTRIBUTE_COLSPAN, document.values.numberValue(2));
    // The row has four columns; the cell over the last two is not in the last one.
    EXPECT_EQ(records().at(2).at(kCellPresent), 0x53CU | 0x3000);
}

TEST_F(CellRecords, ColorsOfDrawnSides)
{
    document.attribute(table, ATTRIBUTE_BORDER, document.pixels(1));
    document.attribute(table, ATTRIBUTE_BORDERCOLOR, document.color(0x111111));
    document.declare(table, PROPERTY_BORDER_TOP_COLOR, document.color(0x222222));
    document.declare(table, PROPERTY_BORDER_RIGHT_COLOR, document.color(0x333333));
    document.declare(table, PROPERTY_BORDER_LEFT_COLOR, document.keyword(VALUE_TRANSPARENT));
    const Words words = record();
    EXPECT_EQ(sideAt(100, words).color, 0x111111U);
    EXPECT_EQ(sideAt(120, words).color, 0x333333U);
    EXPECT_EQ(sideAt(140, words).color, 0x222222U);
    EXPECT_EQ(sideAt(160, words).color, 0x111111U);
}

TEST_F(CellRecords, OwnBordersReplaceWhatIsDrawn)
{
    document.attribute(table, ATTRIBUTE_BORDER, document.pixels(1));
    document.declare(cell, PROPERTY_BORDER_LEFT_WIDTH, document.pixels(3));
    document.declare(cell, PROPERTY_BORDER_LEFT_STYLE, document.keyword(VALUE_DASHED));
    document.declare(cell, PROPERTY_BORDER_LEFT_COLOR, document.color(0x123456));
    document.declare(cell, PROPERTY_BORDER_TOP_COLOR, document.color(0x654321));
    document.declare(cell, PROPERTY_BORDER_RIGHT_WIDTH, document.pixels(0));
    document.declare(cell, PROPERTY_BORDER_BOTTOM_WIDTH, document.pixels(-2));
    const Words words = record();
    EXPECT_EQ(words.at(kCellPresent), 0xF43CU);
    const auto side = [&](std::uint32_t offset) {
        const BorderSide found = sideAt(offset, words);
        return std::vector<std::uint32_t>{found.width, found.color, found.style};
    };
    EXPECT_EQ(side(100), (std::vector<std::uint32_t>{45, 0x123456, 0x80}));
    // A color alone makes a side of the usual width that has no line.
    EXPECT_EQ(side(140), (std::vector<std::uint32_t>{15, 0x654321, 1}));
    // Without a width there is nothing to replace the drawn side by.
    EXPECT_EQ(side(120), (std::vector<std::uint32_t>{15, 0, 0}));
    EXPECT_EQ(side(160), (std::vector<std::uint32_t>{15, 0, 0}));
}

TEST_F(CellRecords, OwnBordersOfACellOnly)
{
    document.declare(cell, PROPERTY_BORDER_BOTTOM_WIDTH, document.pixels(1));
    document.declare(row, PROPERTY_BORDER_LEFT_WIDTH, document.pixels(1));
    const auto cells = records();
    EXPECT_EQ(column(cells, kCellPresent),
        (std::vector<std::uint32_t>{
            0x43C, 0x43C, 0x43C, 0x43C, 0x843C, 0x43C, 0x43C, 0x43C, 0x43C}));
}
