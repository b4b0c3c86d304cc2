#include "output/lists.h"

#include "output/list_markers.h"
#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>

using namespace testing_support;

namespace {

const std::string kGapLine = "SOEmitSpecial 6";
const std::string kTabLine = "SOEmitSpecial 1";
const std::string kBulletLine = "SOEmitText \"\\u2022\" 1 347078656";

/// The markers and texts of a walk and its breaks, in short: "1. a|" is an item with its line end,
/// "* ", "o " and "# " are the glyphs, ">" is a tab; a gap of two specials is the blank.
std::string summary(const Lines& lines)
{
    struct Row {
        std::string line;
        const char* text;
    };
    const Row rows[] = {
        {kParagraphLine, "|"},
        {kTabLine, ">"},
        {kBulletLine, "*"},
        {"SOEmitText \"\\u25cb\" 1 347078656", "o"},
        {"SOEmitText \"\\u25aa\" 1 347078656", "#"},
        {"SOEmitText \".\" 1 347078656", "."},
    };
    std::string text;
    bool halfGap = false;
    for (const std::string& line : lines) {
        if (line == kGapLine) {
            if (halfGap)
                text += ' ';
            halfGap = !halfGap;
            continue;
        }
        const Row* row = std::find_if(std::begin(rows), std::end(rows),
            [&line](const Row& candidate) { return candidate.line == line; });
        if (row != std::end(rows))
            text += row->text;
        else if (line.find("SOEmitTextAt \"") == 0)
            text += line.substr(14, line.find('"', 14) - 14);
        else
            text += '{' + line + '}';
    }
    return text;
}

std::string summaryOf(const char16_t* markup)
{
    OutputContext document;
    document.build(markup);
    return summary(document.walkAll());
}

std::u16string repeated(const std::u16string& text, int times)
{
    std::u16string all;
    for (; times != 0; --times)
        all += text;
    return all;
}

} // namespace

TEST(Lists, Walks)
{
    struct Row {
        const char16_t* markup;
        const char* summary;
    };
    const Row rows[] = {
        // An outermost list stands between blank lines, an inner one only on its own line.
        {u"<ul><li>a</li><li>b</li></ul>", "* a|* b||"},
        {u"x<ul><li>a</li></ul>y", "x||* a||y"},
        {u"x<br></br><ul></ul>", "x|{SOSetProperty 98 1 0 0}{SOSetProperty 99 1 0 0}||"},
        {u"<ul><li>a<ul><li>b</li></ul></li></ul>", "* a|o b||"},
        {u"<ol><li>a</li><li>b</li></ol>", "1. a|2. b||"},
        {u"<ol><li>a<ol><li>b</li></ol></li><li>c</li></ol>", "1. a|1. b|2. c||"},
        {u"<ol><li> a</li></ol>", "1. a||"},
        {u"<ol><li></li><li>b</li></ol>", "1. 2. b||"},
        {u"<ul></ul>", "|"},
        // Items without a list, and of a list that has no markers.
        {u"<li>a</li><li>b</li>", "a|b"},
        {u"<menu><li>a</li><li>b</li></menu>", "a|b||"},
        {u"<menu></menu>", ""},
        {u"<dir><li>a</li><li>b</li></dir>", "* a|* b||"},
        {u"<ol><li>a<dir><li>b</li></dir></li></ol>", "1. a|* b|||"},
        {u"<dl><li>a</li></dl>", "a||"},
        // Terms and definitions.
        {u"<dl><dt>a</dt><dd>b</dd></dl>", "a|b||"},
        {u"x<dl><dt>a</dt></dl>", "x|a||"},
        {u"<dl><dd>x<dl><dt>a</dt><dd>b</dd></dl></dd></dl>", "x||a|>b||"},
        {u"<dl><dd><dl><dt>a</dt><dd>b</dd><dd>c</dd></dl></dd></dl>", "a|>b|c||"},
        {u"<dl><dd><dl><dt>a</dt></dl></dd><dd>b</dd></dl>", "a|>b||"},
        {u"<ul><li>x<dl><dt>a</dt><dd>b</dd></dl></li></ul>", "* x||a|>b||"},
        {u"<dt>a</dt><dd>b</dd>", "a|b|"},
        // A list in a definition list has its styles from the beginning.
        {u"<dl><dd><ul><li>a<ul><li>b<ul><li>c<ul><li>d</li></ul></li></ul></li></ul></li></ul>"
         u"</dd></dl>",
            "* a|o b|# c|# d||"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(summaryOf(row.markup), row.summary) << &row - rows;
}

TEST(Lists, ItemsOfEachKindOfList)
{
    struct Row {
        ZVHTMLElement list;
        ZVCSSValue onList; ///< list-style-type of the list; VALUE_UNKNOWN none
        ZVCSSValue onItem;
        const char* summary;
    };
    const Row rows[] = {
        {ELEMENT_UL, VALUE_CIRCLE, VALUE_UNKNOWN, "o a||"},
        {ELEMENT_UL, VALUE_LOWER_ROMAN, VALUE_UNKNOWN, "i. a||"},
        {ELEMENT_UL, VALUE_ARMENIAN, VALUE_UNKNOWN, "* a||"},
        {ELEMENT_UL, VALUE_NONE, VALUE_UNKNOWN, "a||"},
        {ELEMENT_UL, VALUE_NONE, VALUE_SQUARE, "# a||"},
        {ELEMENT_UL, VALUE_CIRCLE, VALUE_ARMENIAN, "* a||"},
        {ELEMENT_OL, VALUE_UPPER_ALPHA, VALUE_UNKNOWN, "A. a||"},
        {ELEMENT_OL, VALUE_ARMENIAN, VALUE_UNKNOWN, "1. a||"},
        {ELEMENT_OL, VALUE_DISC, VALUE_UNKNOWN, "* a||"},
        {ELEMENT_OL, VALUE_UPPER_ALPHA, VALUE_ARMENIAN, "1. a||"},
        {ELEMENT_OL, VALUE_UPPER_ALPHA, VALUE_NONE, "a||"},
        // These have their style whatever is declared, but for what the item says.
        {ELEMENT_MENU, VALUE_DISC, VALUE_UNKNOWN, "a||"},
        {ELEMENT_DIR, VALUE_SQUARE, VALUE_UNKNOWN, "* a||"},
        {ELEMENT_MENU, VALUE_UNKNOWN, VALUE_DECIMAL, "1. a||"},
    };
    for (const Row& row : rows) {
        OutputContext document;
        HtmlTreeNode* const list = document.element(document.tree.root(), row.list);
        document.build(u"<li>a</li>", list);
        if (row.onList != VALUE_UNKNOWN)
            document.declare(list, PROPERTY_LIST_STYLE_TYPE, document.keyword(row.onList));
        if (row.onItem != VALUE_UNKNOWN)
            document.declare(
                document.find(ELEMENT_LI), PROPERTY_LIST_STYLE_TYPE, document.keyword(row.onItem));
        EXPECT_EQ(summary(document.walkAll()), row.summary) << &row - rows;
    }
}

TEST(Lists, StartAndValue)
{
    struct Row {
        ZVHTMLElement list;
        std::int32_t start;
        std::int32_t value; ///< of the second of three items
        const char* summary;
    };
    const Row rows[] = {
        {ELEMENT_OL, 0, 0, "1. a|2. b|3. c||"},
        {ELEMENT_OL, 5, 0, "5. a|6. b|7. c||"},
        {ELEMENT_OL, -3, 0, "1. a|2. b|3. c||"},
        {ELEMENT_OL, 70'000, 0, "4464. a|4465. b|4466. c||"},
        {ELEMENT_OL, std::numeric_limits<std::int32_t>::min(), 0, "1. a|2. b|3. c||"},
        {ELEMENT_OL, std::numeric_limits<std::int32_t>::max(), 0, "1. a|2. b|3. c||"},
        {ELEMENT_OL, 0, 10, "1. a|10. b|11. c||"},
        {ELEMENT_OL, 0, -1, "1. a|65535. b|0. c||"},
        {ELEMENT_UL, 5, 10, "1. a|2. b|3. c||"},
    };
    for (const Row& row : rows) {
        OutputContext document;
        HtmlTreeNode* const list = document.element(document.tree.root(), row.list);
        document.build(u"<li>a</li><li>b</li><li>c</li>", list);
        document.declare(list, PROPERTY_LIST_STYLE_TYPE, document.keyword(VALUE_DECIMAL));
        document.attribute(list, ATTRIBUTE_START, document.values.numberValue(row.start));
        document.attribute(
            document.find(ELEMENT_LI, 1), ATTRIBUTE_VALUE, document.values.numberValue(row.value));
        EXPECT_EQ(summary(document.walkAll()), row.summary) << &row - rows;
        const ListLevel& level = document.context.listLevels[0];
        EXPECT_EQ(level.lastItem, row.list == ELEMENT_OL ? level.item : 0);
    }
}

TEST(Lists, CompactOnesHaveNoBlankLineBehind)
{
    for (const ZVHTMLElement id : {ELEMENT_UL, ELEMENT_OL}) {
        OutputContext document;
        HtmlTreeNode* const list = document.element(document.tree.root(), id);
        document.build(u"<li></li>", list);
        document.attribute(list, ATTRIBUTE_COMPACT, document.values.numberValue(1));
        EXPECT_TRUE(callsOf("SOEmitBreak", document.walkAll()).empty());
        EXPECT_EQ(document.context.listLevels[0].flags & 0x5000, 0x4000);
    }
}

TEST(Lists, DefinitionListKeepsCompactOfTheListBefore)
{
    OutputContext document;
    document.build(u"<ul></ul><dl><dd>a</dd></dl><ul></ul><dl><dd>b</dd></dl>");
    document.attribute(
        document.find(ELEMENT_UL), ATTRIBUTE_COMPACT, document.values.numberValue(1));
    EXPECT_EQ(summary(document.walkAll()), "a||b||");
}

TEST(Lists, DefinitionListIsSetOffOnlyInAnOutermostList)
{
    for (const bool isCompact : {false, true}) {
        OutputContext document;
        document.build(u"x<dl><dd>a<dl><dd>b<dl><dd>c</dd></dl></dd></dl></dd></dl>");
        if (isCompact) {
            document.attribute(
                document.find(ELEMENT_DL, 1), ATTRIBUTE_COMPACT, document.values.numberValue(1));
        }
        EXPECT_EQ(summary(document.walkAll()), isCompact ? "x|a|b|c||" : "x|a||b|c||");
    }
}

TEST(Lists, StyleOfALevelStaysForTheNextListOfIt)
{
    EXPECT_EQ(summaryOf(u"<ul><li>a<ol><li>b</li></ol><ul><li>c</li></ul></li></ul>"
                        u"<ul><li>d<ul><li>e</li></ul></li></ul>"),
        "* a|1. b|1. c||* d|o e||");
}

TEST(Lists, LevelsPastTheTenth)
{
    OutputContext document;
    document.build(repeated(u"<ol><li>", 12) + u"a</li><li> b" + repeated(u"</li></ol>", 12));
    const Lines lines = document.walkAll();
    EXPECT_EQ(summary(lines), "1. 1. 1. 1. 1. 1. 1. 1. 1. 1. **a|*b||");
    EXPECT_EQ(document.context.listDepth, -1);
    for (const ListLevel& level : document.context.listLevels) {
        EXPECT_EQ(level.flags, 2);
        EXPECT_EQ(level.item, 1);
        EXPECT_EQ(level.lastItem, 1);
        EXPECT_EQ(level.reserved, 0U);
    }
}

TEST(Lists, DefinitionsPastTheTenth)
{
    EXPECT_EQ(summaryOf((repeated(u"<dl><dd>", 10) + u"<dl><dt>a</dt><dd>b</dd></dl>"
                  + repeated(u"</dd></dl>", 10))
                            .c_str()),
        "*a|>>b||");
}

TEST(Lists, DepthWrapsAroundOutsideTheRecords)
{
    constexpr int kLists = 40'000;
    OutputContext document;
    HtmlTreeNode* node = document.tree.root();
    for (int i = 0; i < kLists; ++i)
        node = document.element(node, ELEMENT_UL);
    document.build(u"<li>a</li><dl><dt>b</dt><dd>c</dd></dl>", node);
    EXPECT_EQ(summary(document.walkAll()).substr(0, 4), "a|b|");
}

TEST(Lists, InATableEndWithIt)
{
    OutputContext document;
    document.build(
        u"<ul><li>a<table><tbody><tr><td><li>b</li></td></tr></tbody></table></li></ul>");
    const Lines lines = document.walkAll();
    EXPECT_EQ(callsOf(kBulletLine, lines).size(), 2U);
    EXPECT_EQ(document.context.listDepth, -1);
}

TEST(Lists, ManyItemsDeepInsideCostTheSameEach)
{
    constexpr int kCount = 100'000;
    OutputContext document;
    HtmlTreeNode* const list = document.element(document.tree.root(), ELEMENT_OL);
    HtmlTreeNode* node = list;
    for (int i = 0; i < kCount; ++i)
        node = document.element(node, ELEMENT_B);
    for (int i = 0; i < kCount; ++i)
        document.element(document.element(node, ELEMENT_B), ELEMENT_LI);
    EXPECT_EQ(callsOf(kGapLine, document.walkAll()).size(), 2U * kCount);
    EXPECT_EQ(document.context.listLevels[0].lastItem, static_cast<std::uint16_t>(kCount));
}
