#include "output/paragraphs.h"

#include "containers/indexed_list.h"
#include "style/built_in_styles.h"
#include "style/style_sheet.h"
#include "tests/output/output_fixture.h"
#include "tree/element_sets.h"
#include "tree/tree_state.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

class Paragraphs : public testing::Test {
protected:
    Lines deliver(ZVCSSProperty property, HtmlValue* value, ZVHTMLElement element)
    {
        const CssDeclaration declaration(property, value, /*important=*/false, false);
        deliverBlockDeclaration(declaration, frame, element, output.context);
        return output.host.takeCalls();
    }

    /// Gives all elements their built-in declarations, with lengths in pixels as the tree builder
    /// leaves them.
    void giveBuiltInStyles()
    {
        for (HtmlTreeNode* node = output.tree.root(); node != nullptr;
             node = nextInDocumentOrder(node, output.tree.root())) {
            const auto list = makeBuiltInDeclarations(elementOf(*node), output.values);
            if (list == nullptr)
                continue;
            CssDeclarationList& declarations = output.declarations(node);
            declarations.merge(*list, /*copy=*/true);
            for (const ZVCSSProperty property : {PROPERTY_FONT_SIZE, PROPERTY_MARGIN_TOP,
                     PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT})
                resolveLength(declarations, property, 16);
        }
    }

    Lines enter(void (*entry)(HtmlTreeNode&, HTML_SOINFO&, HtmlFilterContext&), HtmlTreeNode* node)
    {
        HTML_SOINFO entered = emptyFrame();
        entry(*node, entered, output.context);
        return output.host.takeCalls();
    }
    Lines leave(void (*exit)(HtmlTreeNode&, HtmlFilterContext&), HtmlTreeNode* node)
    {
        exit(*node, output.context);
        return output.host.takeCalls();
    }

    OutputContext output;
    HTML_SOINFO frame = emptyFrame();
};

constexpr ZVHTMLElement kTableParts[] = {ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TABLE,
    ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TH, ELEMENT_TR};

TEST_F(Paragraphs, Direction)
{
    struct Row {
        HtmlValue* value;
        Lines lines;
    };
    const Row rows[] = {
        {output.keyword(VALUE_LTR), {"SOSetProperty 172 0 0 0"}},
        {output.keyword(VALUE_RTL), {"SOSetProperty 172 1 0 0"}},
        {output.keyword(VALUE_INHERIT), {}},
        {output.pixels(1), {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(deliver(PROPERTY_DIRECTION, row.value, ELEMENT_SPAN), row.lines);
}

TEST_F(Paragraphs, OnlyListedElementsTakeSideMargins)
{
    constexpr ElementSet kTaking{ELEMENT_BLOCKQUOTE, ELEMENT_DD, ELEMENT_DIV, ELEMENT_DT,
        ELEMENT_LI, ELEMENT_MENU, ELEMENT_OL, ELEMENT_P, ELEMENT_UL, 71};
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        const auto element = static_cast<ZVHTMLElement>(id);
        frame = emptyFrame();
        frame.leftIndentPx = 3;
        frame.firstIndentPx = -1;
        frame.rightIndentPx = 4;
        const bool takes = kTaking.contains(id);
        const Lines left{"SOSetProperty 97 0 0 195", "SOSetProperty 97 2 0 135"};
        EXPECT_EQ(
            deliver(PROPERTY_MARGIN_LEFT, output.pixels(10.9F), element), takes ? left : Lines{})
            << id;
        EXPECT_EQ(frame.leftIndentPx, takes ? 13 : 3);
        EXPECT_EQ(frame.firstIndentPx, takes ? 9 : -1);
        EXPECT_EQ(deliver(PROPERTY_MARGIN_RIGHT, output.pixels(10.9F), element),
            takes ? Lines{"SOSetProperty 97 1 0 210"} : Lines{})
            << id;
        EXPECT_EQ(frame.rightIndentPx, takes ? 14 : 4);
    }
}

TEST_F(Paragraphs, IndentsOfOtherKindsOfValues)
{
    for (HtmlValue* value : {output.keyword(VALUE_AUTO),
             static_cast<HtmlValue*>(output.values.percentValue(10)), output.color(3)}) {
        for (const ZVCSSProperty property :
            {PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT, PROPERTY_TEXT_INDENT})
            EXPECT_EQ(deliver(property, value, ELEMENT_P), Lines{});
    }
    // An em length that has not been resolved goes by the frame's font size.
    EXPECT_EQ(
        deliver(PROPERTY_TEXT_INDENT, output.em(2), ELEMENT_P), Lines{"SOSetProperty 97 2 0 480"});
    EXPECT_EQ(deliver(PROPERTY_TEXT_INDENT, output.pixels(-40.5F), ELEMENT_SPAN),
        Lines{"SOSetProperty 97 2 0 4294967176"});
    EXPECT_EQ(frame.leftIndentPx, 0);
}

TEST_F(Paragraphs, Alignment)
{
    struct Row {
        ZVCSSValue keyword;
        const char* line;
    };
    const Row rows[] = {
        {VALUE_LEFT, "SOSetProperty 12 1 0 0"},
        {VALUE_RIGHT, "SOSetProperty 12 2 0 0"},
        {VALUE_JUSTIFY, "SOSetProperty 12 4 0 0"},
        {VALUE_CENTER, "SOSetProperty 12 3 0 0"},
        {VALUE_INHERIT, "SOSetProperty 12 3 0 0"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(
            deliver(PROPERTY_TEXT_ALIGN, output.keyword(row.keyword), ELEMENT_P), Lines{row.line});
    EXPECT_EQ(deliver(PROPERTY_TEXT_ALIGN, output.pixels(1), ELEMENT_P), Lines{});
    for (const ZVHTMLElement element : kTableParts)
        EXPECT_EQ(deliver(PROPERTY_TEXT_ALIGN, output.keyword(VALUE_LEFT), element), Lines{});
}

TEST_F(Paragraphs, Shading)
{
    EXPECT_EQ(deliver(PROPERTY_BACKGROUND_COLOR, output.color(0x123456), ELEMENT_DIV),
        Lines{"SOSetParagraphShading 1 {@0=13 @12=1193046}"});
    EXPECT_EQ(deliver(PROPERTY_BACKGROUND_COLOR, output.keyword(VALUE_TRANSPARENT), ELEMENT_DIV),
        Lines{"SOSetParagraphShading 0 {}"});
    EXPECT_EQ(
        deliver(PROPERTY_BACKGROUND_COLOR, output.keyword(VALUE_INHERIT), ELEMENT_DIV), Lines{});
    constexpr ElementSet kOthers{ELEMENT_A, ELEMENT_ABBR, ELEMENT_ACRONYM, ELEMENT_B, ELEMENT_BDO,
        ELEMENT_BIG, ELEMENT_BR, ELEMENT_BUTTON, ELEMENT_CITE, ELEMENT_CODE, ELEMENT_DFN,
        ELEMENT_EM, ELEMENT_FONT, ELEMENT_I, ELEMENT_IMG, ELEMENT_INPUT, ELEMENT_KBD, ELEMENT_LABEL,
        ELEMENT_MAP, ELEMENT_OBJECT, ELEMENT_Q, ELEMENT_SAMP, ELEMENT_SCRIPT, ELEMENT_SELECT,
        ELEMENT_SMALL, ELEMENT_SPAN, ELEMENT_STRIKE, ELEMENT_STRONG, ELEMENT_SUB, ELEMENT_SUP,
        ELEMENT_TEXTAREA, ELEMENT_TT, ELEMENT_U, ELEMENT_VAR, ELEMENT_UNNAMED_116, ELEMENT_BODY,
        ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TH,
        ELEMENT_TR};
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        const Lines lines
            = deliver(PROPERTY_BACKGROUND_COLOR, output.color(1), static_cast<ZVHTMLElement>(id));
        EXPECT_EQ(lines.empty(), kOthers.contains(id)) << id;
    }
}

TEST_F(Paragraphs, LineHeights)
{
    struct Row {
        HtmlValue* value;
        Lines lines;
    };
    ValueCache& values = output.values;
    const Row rows[] = {
        {output.keyword(VALUE_NORMAL), {"SOSetLineSpacing 1 0 0 0"}},
        {output.keyword(VALUE_INHERIT), {}},
        {values.numberValue(1), {"SOSetLineSpacing 2 240 0 0"}},
        {values.numberValue(-1), {"SOSetLineSpacing 2 4294967056 0 0"}},
        {values.numberValue(0), {}},
        {values.percentValue(150), {"SOSetLineSpacing 2 360 0 0"}},
        {values.percentValue(0.1F), {"SOSetLineSpacing 2 0 0 0"}},
        {values.percentValue(0), {}},
        {values.percentValue(-5), {}},
        {output.em(1.5F), {"SOSetLineSpacing 4 360 0 0"}},
        {values.lengthValue(2, UNITS_EX), {"SOSetLineSpacing 4 480 0 0"}},
        {output.pixels(24.9F), {"SOSetLineSpacing 2 360 0 0"}},
        {output.pixels(0), {"SOSetLineSpacing 2 0 0 0"}},
        {values.lengthValue(12, UNITS_POINTS), {"SOSetLineSpacing 2 240 0 0"}},
        {values.stringValue(u"x"), {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(deliver(PROPERTY_LINE_HEIGHT, row.value, ELEMENT_SPAN), row.lines);
}

TEST_F(Paragraphs, LineHeightOfANumberAndOfALengthLookAlike)
{
    EXPECT_EQ(deliver(PROPERTY_LINE_HEIGHT, output.values.percentValue(150), ELEMENT_P),
        deliver(PROPERTY_LINE_HEIGHT, output.pixels(24), ELEMENT_P));
}

TEST_F(Paragraphs, AnswersForPropertiesOfItsOwn)
{
    const auto answer = [&](ZVCSSProperty property, ZVHTMLElement element) {
        const CssDeclaration declaration(property, output.color(1), false, false);
        return deliverBlockDeclaration(declaration, frame, element, output.context);
    };
    for (std::uint32_t number = 1; number <= PROPERTY_ZOOM; ++number) {
        const auto property = static_cast<ZVCSSProperty>(number);
        const bool isOwn = property == PROPERTY_DIRECTION || property == PROPERTY_MARGIN_LEFT
            || property == PROPERTY_MARGIN_RIGHT || property == PROPERTY_TEXT_INDENT
            || property == PROPERTY_TEXT_ALIGN || property == PROPERTY_BACKGROUND_COLOR
            || property == PROPERTY_LINE_HEIGHT;
        EXPECT_EQ(answer(property, ELEMENT_DIV), isOwn) << number;
    }
    EXPECT_FALSE(answer(PROPERTY_BACKGROUND_COLOR, ELEMENT_SPAN));
}

TEST_F(Paragraphs, Borders)
{
    constexpr ElementSet kBordered{ELEMENT_DIV, ELEMENT_H1, ELEMENT_H2, ELEMENT_H3, ELEMENT_H4,
        ELEMENT_H5, ELEMENT_H6, ELEMENT_OL, ELEMENT_P, ELEMENT_UL};
    CssDeclarationList list(&output.values);
    deliverParagraphBorder(list, ELEMENT_DIV, 1, output.context);
    EXPECT_EQ(output.host.takeCalls(), Lines{});
    list.set(PROPERTY_BORDER_TOP_WIDTH, output.pixels(2), false, false);
    list.set(PROPERTY_BORDER_LEFT_COLOR, output.color(7), false, false);
    list.set(PROPERTY_BORDER_BOTTOM_STYLE, output.keyword(VALUE_DASHED), false, false);
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        deliverParagraphBorder(list, id, id % 2, output.context);
        const Lines lines{"SOSetParagraphBorder " + std::to_string(id % 2)
            + " {@4=30 @12=1 @24=15 @28=7 @32=1 @44=15 @52=128 @64=15 @72=1}"};
        EXPECT_EQ(output.host.takeCalls(), kBordered.contains(id) ? lines : Lines{}) << id;
    }
}

TEST_F(Paragraphs, Frames)
{
    HTML_SOINFO parent = emptyFrame();
    parent.fontSizePx = 20;
    parent.leftIndentPx = 5;
    parent.firstIndentPx = 6;
    parent.rightIndentPx = 7;
    parent.alignment = 2;
    HTML_SOINFO made = parent;
    buildFrame(made, parent, nullptr, output.context);
    EXPECT_EQ(made.fontSizePx, 20U);

    CssDeclarationList list(&output.values);
    buildFrame(made, parent, &list, output.context);
    EXPECT_EQ(made.fontSizePx, 20U);
    EXPECT_EQ(made.alignment, 2U);
    list.set(PROPERTY_FONT_SIZE, output.values.percentValue(50), false, false);
    list.set(PROPERTY_MARGIN_LEFT, output.em(2), false, false);
    list.set(PROPERTY_MARGIN_RIGHT, output.pixels(3.9F), false, false);
    list.set(PROPERTY_TEXT_INDENT, output.pixels(-4.9F), false, false);
    list.set(PROPERTY_TEXT_ALIGN, output.keyword(VALUE_JUSTIFY), false, false);
    buildFrame(made, parent, &list, output.context);
    EXPECT_EQ(made.fontSizePx, 10U);
    EXPECT_EQ(made.leftIndentPx, 25);
    EXPECT_EQ(made.firstIndentPx, 22);
    EXPECT_EQ(made.rightIndentPx, 10);
    EXPECT_EQ(made.alignment, 3U);
}

TEST_F(Paragraphs, FramesKeepWhatOtherValuesDontChange)
{
    struct SizeRow {
        HtmlValue* value;
        std::uint32_t size;
    };
    const SizeRow rows[] = {
        {output.keyword(VALUE_XX_SMALL), 9},
        {output.keyword(VALUE_LARGER), 20},
        {output.keyword(VALUE_SMALLER), 20},
        {output.keyword(VALUE_BOLD), 20},
        {output.em(1.5F), 30},
        {output.pixels(12.9F), 12},
        {output.values.numberValue(3), 20},
    };
    for (const SizeRow& row : rows) {
        HTML_SOINFO parent = emptyFrame();
        parent.fontSizePx = 20;
        HTML_SOINFO made = parent;
        CssDeclarationList list(&output.values);
        list.set(PROPERTY_FONT_SIZE, row.value, false, false);
        list.set(PROPERTY_MARGIN_LEFT, output.keyword(VALUE_AUTO), false, false);
        list.set(PROPERTY_TEXT_ALIGN, output.pixels(3), false, false);
        buildFrame(made, parent, &list, output.context);
        EXPECT_EQ(made.fontSizePx, row.size);
        EXPECT_EQ(made.leftIndentPx, 0);
        EXPECT_EQ(made.alignment, 0U);
    }
    HTML_SOINFO made = emptyFrame();
    for (const auto& [keyword, alignment] : std::vector<std::pair<ZVCSSValue, std::uint32_t>>{
             {VALUE_LEFT, 1}, {VALUE_RIGHT, 2}, {VALUE_CENTER, 3}, {VALUE_INHERIT, 3}}) {
        CssDeclarationList list(&output.values);
        list.set(PROPERTY_TEXT_ALIGN, output.keyword(keyword), false, false);
        buildFrame(made, made, &list, output.context);
        EXPECT_EQ(made.alignment, alignment);
    }
}

// --- Margins between blocks

TEST_F(Paragraphs, TopMargins)
{
    struct Row {
        std::int32_t last;
        HtmlValue* margin;
        Lines lines;
        std::int32_t lastAfter;
    };
    const Row rows[] = {
        {0, output.pixels(16.9F), {"SOSetProperty 98 1 240 0"}, 16},
        {11, output.pixels(16), {"SOSetProperty 98 1 75 0"}, 16},
        {16, output.pixels(16), {"SOSetProperty 98 1 0 0"}, 16},
        {20, output.pixels(16), {"SOSetProperty 98 1 0 0"}, 20},
        {20, output.pixels(0), {"SOSetProperty 98 1 0 0"}, 20},
        {0, output.pixels(0), {"SOSetProperty 98 1 0 0"}, 0},
        {0, output.pixels(-2), {"SOSetProperty 98 1 4294967266 0"}, -2},
        {-2, output.pixels(3), {"SOSetProperty 98 1 75 0"}, 3},
        {3, output.pixels(-2), {"SOSetProperty 98 1 0 0"}, 3},
        {0, output.em(0.67F), {"SOSetProperty 98 1 165 0"}, 11},
        {7, output.keyword(VALUE_AUTO), {}, 7},
        {7, output.values.percentValue(50), {}, 7},
        {7, nullptr, {}, 7},
    };
    for (const Row& row : rows) {
        HtmlTreeNode* heading = output.element(output.tree.root(), ELEMENT_H1);
        output.declarations(heading).set(PROPERTY_MARGIN_TOP, row.margin, false, false);
        output.context.lastBlockMargin = static_cast<std::uint32_t>(row.last);
        EXPECT_EQ(enter(enterHeading, heading), row.lines) << row.last;
        EXPECT_EQ(static_cast<std::int32_t>(output.context.lastBlockMargin), row.lastAfter);
    }
}

TEST_F(Paragraphs, BordersAndPaddingsEndTheCollapsing)
{
    struct Row {
        ZVCSSProperty property;
        HtmlValue* value;
        bool isTop;
        bool ends;
    };
    ValueCache& values = output.values;
    const Row rows[] = {
        {PROPERTY_BORDER_TOP_WIDTH, output.pixels(1), true, true},
        {PROPERTY_BORDER_TOP_WIDTH, output.pixels(0.9F), true, false},
        {PROPERTY_BORDER_TOP_WIDTH, output.keyword(VALUE_THIN), true, true},
        {PROPERTY_BORDER_TOP_STYLE, output.keyword(VALUE_SOLID), true, false},
        {PROPERTY_PADDING_TOP, output.pixels(-1), true, true},
        {PROPERTY_PADDING_TOP, output.pixels(0), true, false},
        {PROPERTY_PADDING_TOP, values.percentValue(5), true, true},
        {PROPERTY_PADDING_TOP, values.stringValue(u"x"), true, false},
        {PROPERTY_BORDER_BOTTOM_WIDTH, output.pixels(1), false, true},
        {PROPERTY_PADDING_BOTTOM, output.pixels(1), false, true},
        {PROPERTY_PADDING_TOP, output.pixels(1), false, false},
        {PROPERTY_PADDING_BOTTOM, output.pixels(1), true, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.property);
        HtmlTreeNode* heading = output.element(output.tree.root(), ELEMENT_H1);
        output.declare(heading, row.property, row.value);
        const ZVCSSProperty margin = row.isTop ? PROPERTY_MARGIN_TOP : PROPERTY_MARGIN_BOTTOM;
        output.declare(heading, margin, output.pixels(10));
        output.context.lastBlockMargin = 4;
        const Lines lines = row.isTop ? enter(enterHeading, heading) : leave(leaveHeading, heading);
        ASSERT_FALSE(lines.empty());
        // At the top the margin is sent first, at the bottom the collapsing ends first.
        if (row.isTop) {
            EXPECT_EQ(lines[0], "SOSetProperty 98 1 90 0");
            EXPECT_EQ(output.context.lastBlockMargin, row.ends ? 0U : 10U);
        } else {
            EXPECT_EQ(lines[0], row.ends ? "SOSetProperty 99 1 150 0" : "SOSetProperty 99 1 90 0");
            EXPECT_EQ(output.context.lastBlockMargin, 10U);
        }
        // A margin that is no length sends nothing, yet ends the collapsing all the same.
        output.declare(heading, margin, output.keyword(VALUE_AUTO));
        output.context.lastBlockMargin = 4;
        row.isTop ? enter(enterHeading, heading) : leave(leaveHeading, heading);
        EXPECT_EQ(output.context.lastBlockMargin, row.ends ? 0U : 4U);
        output.declarations(heading).remove(margin);
        output.context.lastBlockMargin = 4;
        row.isTop ? enter(enterHeading, heading) : leave(leaveHeading, heading);
        EXPECT_EQ(output.context.lastBlockMargin, 4U);
    }
}

TEST_F(Paragraphs, ABlockEndsTheParagraphBeforeIt)
{
    struct Row {
        std::uint16_t flags;
        std::uint16_t lastChar;
        bool breaksAtEntry;
        bool breaksAtExit;
    };
    const Row rows[] = {
        {0, 0, false, false},
        {PARAGRAPH_HAS_CONTENT, u'x', true, true},
        {PARAGRAPH_BREAK_OWED, u'x', true, true},
        {PARAGRAPH_BREAK_OWED, 0, false, true},
        {PARAGRAPH_MARKER, u'x', false, false},
    };
    for (const Row& row : rows) {
        for (const ZVHTMLElement element : {ELEMENT_H2, ELEMENT_P}) {
            HtmlTreeNode* node = output.element(output.tree.root(), element);
            output.context.paragraphFlags = row.flags;
            output.context.lastChar = row.lastChar;
            EXPECT_EQ(enter(element == ELEMENT_P ? enterParagraph : enterHeading, node),
                row.breaksAtEntry ? Lines{kParagraphLine} : Lines{});
            output.context.paragraphFlags = row.flags;
            output.context.lastChar = row.lastChar;
            Lines expected{"SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0"};
            if (row.breaksAtExit)
                expected.insert(expected.begin(), kParagraphLine);
            EXPECT_EQ(leave(element == ELEMENT_P ? leaveParagraph : leaveHeading, node), expected);
        }
    }
}

struct EdgeRow {
    const char16_t* markup; // the p in question is the one with the text "p"
    std::uint32_t tableDepth;
    bool hasTop;
    bool hasBottom;
    bool hasTopOfItsOwn; // with a margin that is not the built-in one
    bool hasBottomOfItsOwn;
};

const EdgeRow kEdgeRows[] = {
    {u"<body><p>p</p></body>", 0, false, false, false, false},
    {u"<body> <p>p</p></body>", 0, true, false, true, false},
    {u"<body><p>p</p> </body>", 0, false, true, false, true},
    {u"<body><h1></h1><p>p</p><h1></h1></body>", 0, true, true, true, true},
    {u"<div><p>p</p></div>", 0, true, true, true, true},
    {u"<td><p>p</p></td>", 0, true, true, true, true},
    {u"<td><p>p</p></td>", 1, false, false, true, true},
    {u"<td> <p>p</p>\n</td>", 1, false, false, true, true},
    {u"<td>x<p>p</p>y</td>", 1, true, true, true, true},
    {u"<td> <b></b> <p>p</p> <b></b> </td>", 1, true, true, true, true},
    {u"<div><p>p</p></div>", 2, false, false, true, true},
    {u"<body><b></b><p>p</p></body>", 1, true, false, true, true},
};

TEST_F(Paragraphs, MarginsAtTheEdges)
{
    for (const EdgeRow& row : kEdgeRows) {
        SCOPED_TRACE(
            std::string(row.markup, row.markup + std::char_traits<char16_t>::length(row.markup)));
        for (const bool isBuiltIn : {true, false}) {
            OutputContext document;
            document.build(row.markup);
            HtmlTreeNode* paragraph = document.find(ELEMENT_P);
            CssDeclarationList& list = document.declarations(paragraph);
            list.set(PROPERTY_MARGIN_TOP, document.pixels(16), false, isBuiltIn);
            list.set(PROPERTY_MARGIN_BOTTOM, document.pixels(16), false, isBuiltIn);
            document.context.tableDepth = row.tableDepth;
            HTML_SOINFO entered = emptyFrame();
            enterParagraph(*paragraph, entered, document.context);
            const bool hasTop = isBuiltIn ? row.hasTop : row.hasTopOfItsOwn;
            EXPECT_EQ(
                document.host.takeCalls(), hasTop ? Lines{"SOSetProperty 98 1 240 0"} : Lines{});
            document.context.lastBlockMargin = 0;
            leaveParagraph(*paragraph, document.context);
            const bool hasBottom = isBuiltIn ? row.hasBottom : row.hasBottomOfItsOwn;
            Lines expected{"SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0"};
            if (hasBottom)
                expected.insert(expected.begin(), "SOSetProperty 99 1 240 0");
            EXPECT_EQ(document.host.takeCalls(), expected);
        }
    }
}

TEST_F(Paragraphs, TwoParagraphsShareTheirMargins)
{
    output.build(u"<div><p>a</p><p>b</p></div>");
    giveBuiltInStyles();
    EXPECT_EQ(output.walkAll(),
        (Lines{"SOSetProperty 98 1 240 0", textLine("a"), "SOSetProperty 99 1 240 0",
            kParagraphLine, "SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0",
            "SOSetProperty 98 1 0 0", textLine("b"), "SOSetProperty 99 1 240 0", kParagraphLine,
            "SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0"}));
}

TEST_F(Paragraphs, AMarginOfASpanMovesNothing)
{
    output.build(u"<div><span>a</span></div>");
    output.declare(output.find(ELEMENT_SPAN), PROPERTY_MARGIN_LEFT, output.pixels(10));
    EXPECT_EQ(output.walkAll(), (Lines{textLine("a"), kParagraphLine}));
}

TEST_F(Paragraphs, IndentsAreGivenBack)
{
    output.build(u"<div><p>a</p></div>");
    output.declare(output.find(ELEMENT_P), PROPERTY_MARGIN_LEFT, output.pixels(10));
    EXPECT_EQ(output.walkAll(),
        (Lines{"SOSetProperty 97 0 0 150", "SOSetProperty 97 2 0 150", textLine("a"),
            kParagraphLine, "SOSetProperty 98 1 0 0", "SOSetProperty 99 1 0 0",
            "SOSetProperty 97 0 0 0", "SOSetProperty 97 2 0 0"}));
}

// --- html and body

TEST_F(Paragraphs, HtmlWithoutDeclarations)
{
    HtmlTreeNode* html = output.element(output.tree.root(), ELEMENT_HTML);
    EXPECT_EQ(enter(enterHtml, html),
        (Lines{"SOSetProperty 88 540 0 0", "SOSetProperty 20 0 0 0", "SOSetProperty 37 0 0 0"}));
    EXPECT_EQ(output.context.walkState, std::uint32_t{WALK_IN_HTML});
}

TEST_F(Paragraphs, HtmlMarginsAreReadAsIntegers)
{
    HtmlTreeNode* html = output.element(output.tree.root(), ELEMENT_HTML);
    output.declare(html, PROPERTY_MARGIN_LEFT, output.pixels(1.9F));
    output.declare(html, PROPERTY_MARGIN_RIGHT, output.values.percentValue(2));
    output.declare(html, PROPERTY_MARGIN_TOP, output.keyword(VALUE_AUTO));
    output.declare(html, PROPERTY_MARGIN_BOTTOM, output.values.stringValue(u"9"));
    EXPECT_EQ(enter(enterHtml, html),
        (Lines{
            "SOSetProperty 88 540 0 0", "SOSetProperty 20 15 30 0", "SOSetProperty 37 210 0 0"}));
}

TEST_F(Paragraphs, HtmlDefinesFontsAndTellsOfParseErrors)
{
    HtmlTreeNode* html = output.element(output.tree.root(), ELEMENT_HTML);
    output.attribute(html, ATTRIBUTE_VERSION, u"4");
    output.declare(html, PROPERTY_FONT_STYLE, output.keyword(VALUE_ITALIC));
    for (const char16_t* name : {u"Arial", u"CURSIVE", u"Fantasy", u"\u0141a", u"fantasy1"})
        output.addFont(name);
    output.context.parseError = 1;
    const Lines lines = enter(enterHtml, html);
    const Lines expected{"SOSetProperty 88 540 0 0", "SOSetProperty 20 0 0 0",
        "SOSetProperty 37 0 0 0", "SODefineFont 0 1 \"Arial\"", "SODefineFont 1 5 \"CURSIVE\"",
        "SODefineFont 2 6 \"Fantasy\"", "SODefineFont 3 1 \"Aa\"", "SODefineFont 4 1 \"fantasy1\"",
        "SOSetExtraProperty 249 14 0 0", "SOSetProperty 8 3 1 0",
        "SOBeginTagged 2684420100 1 {@0=57}", textLine("4"), "SOEndTagged 2684420100 1"};
    EXPECT_EQ(lines, expected);
}

TEST_F(Paragraphs, BodyTakesOverTheFirstBaseFontOfTheHead)
{
    output.build(u"<html><head><link></link><basefont></basefont><basefont></basefont></head>"
                 u"<body></body></html>");
    output.declare(
        output.find(ELEMENT_BASEFONT), PROPERTY_FONT_STYLE, output.keyword(VALUE_ITALIC));
    output.declare(output.find(ELEMENT_BASEFONT), PROPERTY_COLOR, output.color(0x12));
    output.declare(
        output.find(ELEMENT_BASEFONT, 1), PROPERTY_FONT_WEIGHT, output.keyword(VALUE_BOLD));
    HtmlTreeNode* body = output.find(ELEMENT_BODY);
    output.declare(body, PROPERTY_COLOR, output.color(0x34));
    enter(enterBody, body);
    const CssDeclarationList& list = output.declarations(body);
    EXPECT_EQ(list.getCount(), 2U);
    EXPECT_EQ(list.findValue(PROPERTY_FONT_STYLE), output.keyword(VALUE_ITALIC));
    EXPECT_EQ(list.findValue(PROPERTY_COLOR), output.color(0x34));
    EXPECT_EQ(output.context.textColor, 0x34U);
}

TEST_F(Paragraphs, BodyGetsAListForTheBaseFont)
{
    zorvan::IndexedList<TreeState> states(32);
    TreeState state;
    StyleSheet sheet(&output.values, &output.context);
    state.styleContext = &sheet;
    states.set(0, &state);
    output.context.treeStates = &states;
    output.build(u"<html><head><basefont></basefont></head><body></body></html>");
    HtmlTreeNode* body = output.find(ELEMENT_BODY);
    // Without declarations of the basefont there is nothing to hold.
    enter(enterBody, body);
    EXPECT_EQ(body->data->getDeclarations(), nullptr);
    output.declare(
        output.find(ELEMENT_BASEFONT), PROPERTY_FONT_STYLE, output.keyword(VALUE_ITALIC));
    EXPECT_EQ(enter(enterBody, body), Lines{"SOSetProperty 8 3 1 0"});
    ASSERT_NE(body->data->getDeclarations(), nullptr);
    EXPECT_EQ(body->data->getDeclarations()->getCount(), 1U);
}

TEST_F(Paragraphs, BodyColors)
{
    HtmlTreeNode* body = output.element(output.tree.root(), ELEMENT_BODY);
    output.context.walkState = WALK_IN_HEAD | WALK_IN_HTML;
    output.context.textColorMode = 1;
    output.context.linkColor = 0xFF0000;
    output.attribute(body, ATTRIBUTE_LINK, output.color(0x77));
    output.declare(body, PROPERTY_COLOR, output.color(0));
    output.declare(body, PROPERTY_BACKGROUND_COLOR, output.color(0x55));
    const Lines lines = enter(enterBody, body);
    EXPECT_EQ(output.context.walkState, std::uint32_t{WALK_IN_BODY | WALK_IN_HTML});
    EXPECT_EQ(output.context.linkColor, 0x77U);
    EXPECT_EQ(output.context.textColor, 0U);
    EXPECT_EQ(output.context.textColorMode, 0U);
    EXPECT_EQ(output.context.pageColor, 0x55U);
    EXPECT_EQ(output.context.backgroundSeen, 0U);
    EXPECT_EQ(output.context.bodyBackground, output.color(0x55));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "SOSetTextColor 0 0");
    EXPECT_EQ(lines[1], "SOSetProperty 117 85 0 0");
}

TEST_F(Paragraphs, BodyTextColorCountsWhenItDiffersOrNoneWasSet)
{
    struct Row {
        std::uint32_t mode;
        HtmlValue* color;
        std::uint32_t modeAfter;
        std::uint32_t colorAfter;
    };
    const Row rows[] = {
        {1, output.color(5), 0, 5},
        {0, output.color(5), 0, 5},
        {0, output.color(6), 0, 6},
        {1, output.keyword(VALUE_INHERIT), 1, 5},
    };
    for (const Row& row : rows) {
        HtmlTreeNode* body = output.element(output.tree.root(), ELEMENT_BODY);
        output.declare(body, PROPERTY_COLOR, row.color);
        output.context.textColor = 5;
        output.context.textColorMode = row.mode;
        enter(enterBody, body);
        EXPECT_EQ(output.context.textColorMode, row.modeAfter);
        EXPECT_EQ(output.context.textColor, row.colorAfter);
    }
}

TEST_F(Paragraphs, AHostWithColorsOfItsOwnGetsAWhitePage)
{
    HtmlTreeNode* body = output.element(output.tree.root(), ELEMENT_BODY);
    output.context.backgroundOption = 1;
    output.declare(body, PROPERTY_COLOR, output.color(5));
    EXPECT_EQ(enter(enterBody, body), Lines{"SOSetTextColor 0 5"});
    EXPECT_EQ(output.context.backgroundSeen, 0U);
    output.declare(body, PROPERTY_BACKGROUND_COLOR, output.color(0x55));
    // The color goes out before the page's color shows that all colors are the host's.
    EXPECT_EQ(
        enter(enterBody, body), (Lines{"SOSetTextColor 0 5", "SOSetProperty 117 16777215 0 0"}));
    EXPECT_EQ(output.context.backgroundSeen, 1U);
    EXPECT_EQ(output.context.pageColor, 0xFFFFFFU);
}

TEST_F(Paragraphs, ATransparentPageHasNoColor)
{
    HtmlTreeNode* body = output.element(output.tree.root(), ELEMENT_BODY);
    output.context.pageColor = 0xFFFFFFFF;
    output.declare(body, PROPERTY_BACKGROUND_COLOR, output.keyword(VALUE_TRANSPARENT));
    EXPECT_EQ(enter(enterBody, body), Lines{});
    EXPECT_EQ(output.context.pageColor, 0xFFFFFFFFU);
}

TEST_F(Paragraphs, PageBorders)
{
    HtmlTreeNode* body = output.element(output.tree.root(), ELEMENT_BODY);
    output.declare(body, PROPERTY_BORDER_RIGHT_STYLE, output.keyword(VALUE_DOUBLE));
    output.declare(body, PROPERTY_BORDER_LEFT_WIDTH, output.pixels(3));
    EXPECT_EQ(enter(enterBody, body),
        Lines{"SOSetPageBorders 1 {@0=15 @8=1 @20=45 @28=1 @40=15 @48=1 @60=15 @68=2}"});
}

TEST_F(Paragraphs, BodyHasNothingToUndo)
{
    output.build(u"<html><body>a</body></html>");
    output.declare(output.find(ELEMENT_BODY), PROPERTY_FONT_STYLE, output.keyword(VALUE_ITALIC));
    EXPECT_EQ(output.walkAll(),
        (Lines{"SOSetProperty 88 540 0 0", "SOSetProperty 20 0 0 0", "SOSetProperty 37 0 0 0",
            "SOSetProperty 8 3 1 0", textLine("a")}));
}

TEST_F(Paragraphs, AWholeDocument)
{
    output.build(u"<html><head><title>t</title></head><body><h1>x</h1><p>y <b>z</b></p> </body>"
                 u"</html>");
    giveBuiltInStyles();
    output.addFont(u"Times New Roman");
    output.host.takeCalls();
    const Lines lines = output.walkAll();
    const Lines expected{
        "SOSetProperty 88 540 0 0",
        "SOSetProperty 20 120 120 0",
        "SOSetProperty 37 120 120 0",
        "SODefineFont 0 1 \"Times New Roman\"",
        "SOSelectFont 0",
        "SOSetFontHeight 24",
        "SOSetProperty 12 1 0 0",
        "SOBeginTagged 2684420100 1 {@0=6}",
        textLine("t"),
        "SOEndTagged 2684420100 1",
        "SOSetProperty 98 1 165 0",
        "SOSetFontHeight 48",
        "SOSetProperty 8 2 1 0",
        textLine("x"),
        "SOSetProperty 99 1 165 0",
        kParagraphLine,
        "SOSetProperty 98 1 0 0",
        "SOSetProperty 99 1 0 0",
        "SOSetFontHeight 24",
        "SOSetProperty 8 2 0 0",
        "SOSetProperty 98 1 75 0",
        textLine("y "),
        "SOSetProperty 8 2 1 0",
        textLine("z"),
        "SOSetProperty 8 2 0 0",
        "SOSetProperty 99 1 240 0",
        kParagraphLine,
        "SOSetProperty 98 1 0 0",
        "SOSetProperty 99 1 0 0",
    };
    EXPECT_EQ(lines, expected);
}

} // namespace
