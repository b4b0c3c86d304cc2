#include "output/table_records.h"

#include "output/open_tables.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

/// A table in a block.
class TableRecords : public testing::Test {
protected:
    TableRecords()
    {
        document.build(u"<div><table></table></div>");
        block = document.find(ELEMENT_DIV);
        table = document.find(ELEMENT_TABLE);
    }

    Words record()
    {
        const auto records = recordsOf("SODefineTable", document.walkAll());
        EXPECT_EQ(records.size(), 1U);
        return records.empty() ? Words{} : records[0];
    }

    OutputContext document;
    HtmlTreeNode* block;
    HtmlTreeNode* table;
};

} // namespace

TEST_F(TableRecords, PlainTable)
{
    EXPECT_EQ(record(), (Words{{0, 0x8008}, {4, 0x60}, {20, 15}, {28, 0xFFFFFF}}));
}

TEST_F(TableRecords, TakesAlignmentAndBackgroundOfTheBlockAround)
{
    document.declare(block, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_CENTER));
    document.declare(block, PROPERTY_BACKGROUND_COLOR, document.color(0x1234));
    document.declare(block, PROPERTY_MARGIN_LEFT, document.pixels(10));
    EXPECT_EQ(
        record(), (Words{{0, 0x800C}, {4, 0x60}, {12, 3}, {20, 15}, {28, 0x1234}, {176, 150}}));
}

TEST_F(TableRecords, OwnAlignment)
{
    const std::uint32_t codes[] = {1, 3, 4, 1, 2}; // by EHorizAlign; left sets nothing
    document.declare(block, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_LEFT));
    for (std::uint32_t align = HORIZ_ALIGN_NONE; align <= HORIZ_ALIGN_RIGHT; ++align) {
        document.attribute(table, ATTRIBUTE_ALIGN, document.values.enumValue(align));
        document.rewind();
        EXPECT_EQ(record().at(12), codes[align]) << align;
    }
    // The table's text-align is no alignment of the table.
    static_cast<HtmlTagNodeData*>(table->data)->clearAttributes();
    document.declare(table, PROPERTY_TEXT_ALIGN, document.keyword(VALUE_RIGHT));
    document.rewind();
    EXPECT_EQ(record().at(12), 1U);
}

TEST_F(TableRecords, OwnBackgroundEndsTheShadingOfParagraphs)
{
    document.declare(block, PROPERTY_BACKGROUND_COLOR, document.color(0x1234));
    document.declare(table, PROPERTY_BACKGROUND_COLOR, document.color(0xFF00AB00));
    const Lines lines = document.walkAll();
    ASSERT_GT(lines.size(), 3U);
    EXPECT_EQ(lines[2], "SOSetParagraphShading 0 {}");
    EXPECT_EQ(lines[3], "SODefineTable {@0=32776 @4=96 @20=15 @28=43776}");
}

TEST_F(TableRecords, IndentIsThatAroundAndTheMargin)
{
    document.declare(block, PROPERTY_MARGIN_LEFT, document.pixels(10.9F));
    document.declare(table, PROPERTY_MARGIN_LEFT, document.pixels(-3.9F));
    EXPECT_EQ(record().at(176), 7U * 15);
    document.declare(table, PROPERTY_MARGIN_LEFT, document.keyword(VALUE_AUTO));
    document.rewind();
    EXPECT_EQ(record().at(176), 10U * 15);
    document.declare(table, PROPERTY_MARGIN_LEFT, document.em(2));
    document.rewind();
    EXPECT_EQ(record().at(176), 42U * 15);
}

TEST_F(TableRecords, WidthIsThatOfTheDeclarations)
{
    document.attribute(table, ATTRIBUTE_WIDTH, document.pixels(-50));
    EXPECT_EQ(record().count(180), 0U);
    document.declare(table, PROPERTY_WIDTH, document.values.percentValue(50.9F));
    document.rewind();
    Words words = record();
    EXPECT_EQ(words.at(180), 50U);
    EXPECT_EQ(words.at(4), 0x64U);
    EXPECT_EQ(words.at(0), 0x18008U);
    document.declare(table, PROPERTY_WIDTH, document.pixels(50));
    document.rewind();
    words = record();
    EXPECT_EQ(words.at(180), 750U);
    EXPECT_EQ(words.at(4), 0x60U);
    EXPECT_EQ(words.at(0), 0x18008U);
    document.declare(table, PROPERTY_WIDTH, document.keyword(VALUE_AUTO));
    document.rewind();
    EXPECT_EQ(record().at(0), 0x8008U);
}

TEST_F(TableRecords, DirectionAndSpacing)
{
    document.attribute(table, ATTRIBUTE_DIR, document.values.enumValue(TEXT_DIRECTION_RTL));
    document.attribute(table, ATTRIBUTE_CELLSPACING, document.pixels(4));
    EXPECT_EQ(record(), (Words{{0, 0xC008}, {4, 0x61}, {20, 15}, {28, 0xFFFFFF}, {172, 4}}));
    document.attribute(table, ATTRIBUTE_DIR, document.values.enumValue(TEXT_DIRECTION_LTR));
    for (const float spacing : {0.0F, -4.0F}) {
        document.attribute(table, ATTRIBUTE_CELLSPACING, document.pixels(spacing));
        document.rewind();
        EXPECT_EQ(record(), (Words{{0, 0x8008}, {4, 0x60}, {20, 15}, {28, 0xFFFFFF}}));
    }
}

TEST_F(TableRecords, SidesThatWereGiven)
{
    struct Side {
        ZVCSSProperty width;
        ZVCSSProperty style;
        ZVCSSProperty color;
        std::uint32_t flag;
        std::uint32_t offset;
    };
    const Side sides[] = {
        {PROPERTY_BORDER_LEFT_WIDTH, PROPERTY_BORDER_LEFT_STYLE, PROPERTY_BORDER_LEFT_COLOR, 0x10,
            36},
        {PROPERTY_BORDER_RIGHT_WIDTH, PROPERTY_BORDER_RIGHT_STYLE, PROPERTY_BORDER_RIGHT_COLOR,
            0x20, 56},
        {PROPERTY_BORDER_TOP_WIDTH, PROPERTY_BORDER_TOP_STYLE, PROPERTY_BORDER_TOP_COLOR, 0x40, 76},
        {PROPERTY_BORDER_BOTTOM_WIDTH, PROPERTY_BORDER_BOTTOM_STYLE, PROPERTY_BORDER_BOTTOM_COLOR,
            0x80, 96},
    };
    for (const Side& side : sides) {
        const auto words = [&](std::uint32_t width, std::uint32_t color, std::uint32_t style) {
            Words expected{{0, 0x8008 | side.flag}, {4, 0x60}, {20, 15}, {28, 0xFFFFFF}};
            for (const auto& [at, word] : {std::pair{0U, width}, {4U, color}, {8U, style}}) {
                if (word != 0)
                    expected[side.offset + at] = word;
            }
            return expected;
        };
        const auto check = [&](const Words& expected) {
            document.rewind();
            EXPECT_EQ(record(), expected) << side.offset;
            document.declarations(table).clear();
        };
        document.declare(table, side.color, document.color(7));
        check(words(15, 7, 1));
        document.declare(table, side.width, document.pixels(0));
        document.declare(table, side.style, document.keyword(VALUE_SOLID));
        check(words(0, 0, 0));
        document.declare(table, side.style, document.keyword(VALUE_DOUBLE));
        check(words(15, 0, 2));
        document.declare(table, side.width, document.pixels(3));
        check(words(45, 0, 1));
    }
}
