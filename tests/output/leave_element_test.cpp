#include "output/tree_walk.h"

#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

const std::string kUndo = "SOSetProperty 8 2 0 0"; // the style of the element is undone here
const std::string& kBreak = kParagraphLine;
const std::string kSpaceBefore = "SOSetProperty 98 1 0 0";
const std::string kSpaceAfter = "SOSetProperty 99 1 0 0";

struct ExitRow {
    ZVHTMLElement element;
    Lines closed; ///< in a paragraph that is not open
    Lines filled; ///< in an open one with a last character
    Lines owed; ///< in one that is open because a break is owed
};

ExitRow always(ZVHTMLElement element, const Lines& lines) { return {element, lines, lines, lines}; }

/// Ends a paragraph with text.
ExitRow block(ZVHTMLElement element) { return {element, {kUndo}, {kBreak, kUndo}, {kUndo}}; }

/// Ends an open paragraph.
ExitRow control(ZVHTMLElement element)
{
    return {element, {kUndo}, {kBreak, kUndo}, {kBreak, kUndo}};
}

/// An outermost list, which a blank line follows.
ExitRow list(ZVHTMLElement element)
{
    return {element, {kUndo, kBreak}, {kBreak, kUndo, kBreak}, {kUndo, kBreak}};
}

/// A list that a blank line follows when there was text.
ExitRow menuList(ZVHTMLElement element)
{
    return {element, {kUndo}, {kBreak, kUndo, kBreak}, {kBreak, kUndo}};
}

/// Ends an open paragraph and the space around it.
ExitRow spaced(ZVHTMLElement element)
{
    const Lines open = {kBreak, kSpaceBefore, kSpaceAfter, kUndo};
    return {element, {kSpaceBefore, kSpaceAfter, kUndo}, open, open};
}

const std::vector<ExitRow> kExitRows = {
    block(ELEMENT_ADDRESS),
    always(ELEMENT_BASEFONT, {}),
    {ELEMENT_BLOCKQUOTE, {kUndo}, {kBreak, kUndo, kBreak}, {kBreak, kUndo}},
    always(ELEMENT_BODY, {}),
    always(ELEMENT_BR, {}),
    always(ELEMENT_CAPTION, {}),
    block(ELEMENT_CENTER),
    block(ELEMENT_DD),
    always(ELEMENT_DEL, {"SOSetProperty 8 20 0 0", kUndo}),
    menuList(ELEMENT_DIR),
    block(ELEMENT_DIV),
    list(ELEMENT_DL),
    block(ELEMENT_DT),
    block(ELEMENT_FOOTER),
    control(ELEMENT_FORM),
    spaced(ELEMENT_H1),
    spaced(ELEMENT_H2),
    spaced(ELEMENT_H3),
    spaced(ELEMENT_H4),
    spaced(ELEMENT_H5),
    spaced(ELEMENT_H6),
    block(ELEMENT_HEADER),
    always(ELEMENT_HR, {kBreak, "SOSetLineSpacing 1 0 0 0", kUndo}),
    always(ELEMENT_HTML, {}),
    always(ELEMENT_INS, {"SOSetProperty 8 19 0 0", kUndo}),
    always(ELEMENT_LINK, {}),
    always(ELEMENT_LISTING, {"SOSetProperty 88 540 0 0", kUndo}),
    menuList(ELEMENT_MENU),
    always(ELEMENT_META, {}),
    always(ELEMENT_NOFRAMES, {"SOEndTagged 2685009920 1", kUndo}),
    list(ELEMENT_OL),
    control(ELEMENT_OPTION),
    spaced(ELEMENT_P),
    always(ELEMENT_PLAINTEXT, {"SOSetProperty 88 540 0 0", kUndo}),
    always(ELEMENT_PRE, {"SOSetProperty 88 540 0 0", kUndo}),
    always(ELEMENT_Q, {"SOEmitText \"\\u201d\" 1 347078656", kUndo}),
    always(ELEMENT_STYLE, {}),
    always(ELEMENT_TABLE, {kFinishTable, kUndo, kTableBreak}),
    always(ELEMENT_TD, {"SOEmitBreak 20 200001", kUndo}),
    always(ELEMENT_TH, {"SOEmitBreak 20 200001", kUndo}),
    always(ELEMENT_TITLE, {"SOEndTagged 2684420100 1", kUndo}),
    always(ELEMENT_TR, joined({kRowIndents, {kUndo}})),
    list(ELEMENT_UL),
    always(ELEMENT_XMP, {"SOSetProperty 88 540 0 0", kUndo}),
};

ExitRow rowOf(ZVHTMLElement element)
{
    for (const ExitRow& row : kExitRows) {
        if (row.element == element)
            return row;
    }
    return always(element, {kUndo});
}

/// A document whose only element has been entered.
struct Entered {
    explicit Entered(ZVHTMLElement element)
        : node(document.element(document.tree.root(), element))
    {
        document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        enterElement(*node, document.context);
        document.host.takeCalls();
    }

    Lines leaveIn(std::uint16_t flags, std::uint16_t lastChar)
    {
        document.context.paragraphFlags = flags;
        document.context.lastChar = lastChar;
        EXPECT_EQ(leaveElement(*node, document.context), 0U);
        EXPECT_TRUE(document.context.deferredList.isEmpty());
        return document.host.takeCalls();
    }

    OutputContext document;
    HtmlTreeNode* node;
};

} // namespace

TEST(LeaveElement, RowsOfAllElements)
{
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        const auto element = static_cast<ZVHTMLElement>(id);
        const ExitRow row = rowOf(element);
        EXPECT_EQ(Entered(element).leaveIn(0, 0), row.closed) << id;
        EXPECT_EQ(Entered(element).leaveIn(PARAGRAPH_HAS_CONTENT, u'x'), row.filled) << id;
        EXPECT_EQ(Entered(element).leaveIn(PARAGRAPH_BREAK_OWED, 0), row.owed) << id;
    }
}

TEST(LeaveElement, WalkStateIsThatInFrontOfTheElement)
{
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        Entered entered(static_cast<ZVHTMLElement>(id));
        entered.leaveIn(0, 0);
        EXPECT_EQ(entered.document.context.walkState, 0U) << id;
    }
}

TEST(LeaveElement, HtmlClosesTheHeadToo)
{
    Entered entered(ELEMENT_HTML);
    entered.document.context.walkState |= WALK_IN_HEAD | WALK_IN_MAP;
    entered.leaveIn(0, 0);
    EXPECT_EQ(entered.document.context.walkState, std::uint32_t{WALK_IN_MAP});
}

TEST(LeaveElement, BlocksWithTextOweABreak)
{
    for (const ZVHTMLElement element :
        {ELEMENT_ADDRESS, ELEMENT_CENTER, ELEMENT_DIV, ELEMENT_FOOTER, ELEMENT_HEADER}) {
        Entered filled(element);
        filled.leaveIn(PARAGRAPH_HAS_CONTENT, u'x');
        EXPECT_EQ(filled.document.context.paragraphFlags, PARAGRAPH_BREAK_OWED);
        Entered empty(element);
        empty.leaveIn(0, 0);
        EXPECT_EQ(empty.document.context.paragraphFlags, 0);
    }
}

TEST(LeaveElement, BlockquoteOutsideOneDoesNothing)
{
    Entered entered(ELEMENT_BLOCKQUOTE);
    entered.document.context.blockquoteDepth = 0;
    EXPECT_EQ(entered.leaveIn(PARAGRAPH_HAS_CONTENT, u'x'), Lines{kUndo});
    EXPECT_EQ(entered.document.context.blockquoteDepth, 0);
}

TEST(LeaveElement, QuotationMarkIsTheLastCharacter)
{
    Entered entered(ELEMENT_Q);
    EXPECT_EQ(entered.document.context.lastChar, 0x201C);
    entered.leaveIn(PARAGRAPH_HAS_CONTENT, u'x');
    EXPECT_EQ(entered.document.context.lastChar, 0x201D);
}

TEST(LeaveElement, FlattenedCaptionLeavesTheStateAlone)
{
    OutputContext document;
    document.context.flattenTables = 1;
    document.build(u"<caption></caption>");
    enterElement(*document.find(ELEMENT_CAPTION), document.context);
    EXPECT_EQ(document.context.walkState, 0U);
    document.context.walkState = WALK_CAPTION_MET;
    leaveElement(*document.find(ELEMENT_CAPTION), document.context);
    EXPECT_EQ(document.context.walkState, std::uint32_t{WALK_CAPTION_MET});
}

TEST(LeaveElement, UndoIsDeliveredWithTheElementsOwnFrame)
{
    OutputContext document;
    document.build(u"<div></div>");
    HtmlTreeNode* node = document.find(ELEMENT_DIV);
    document.declare(node, PROPERTY_MARGIN_LEFT, document.pixels(10));
    enterElement(*node, document.context);
    EXPECT_EQ(
        document.host.takeCalls(), (Lines{"SOSetProperty 97 0 0 150", "SOSetProperty 97 2 0 150"}));
    leaveElement(*node, document.context);
    EXPECT_EQ(
        document.host.takeCalls(), (Lines{"SOSetProperty 97 0 0 0", "SOSetProperty 97 2 0 0"}));
}
