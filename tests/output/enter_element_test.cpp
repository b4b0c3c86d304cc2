#include "output/tree_walk.h"

#include "tests/output/output_fixture.h"
#include "tests/output/table_lines.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

// The lines of a row, in short.
const std::string kApply = "SOSetProperty 8 2 1 0"; // the style of the element goes out here
const std::string& kBreak = kParagraphLine;
const std::string kFormNotice = "SOSetExtraProperty 249 4 0 0";
const std::string kWideTabs = "SOSetProperty 88 1170 0 0";
const std::string kSpaceBefore = "SOSetProperty 98 1 0 0";
const std::string kSpaceAfter = "SOSetProperty 99 1 0 0";

struct EntryRow {
    ZVHTMLElement element;
    Lines closed; ///< in a paragraph that is not open
    Lines filled; ///< in an open one with a last character
    Lines owed; ///< in one that is open because a break is owed
    std::uint32_t walkState = 0;
    std::uint32_t answer = 0;
};

EntryRow always(ZVHTMLElement element, const Lines& lines, std::uint32_t walkState = 0,
    std::uint32_t answer = 0)
{
    return {element, lines, lines, lines, walkState, answer};
}

/// A block that ends a paragraph with text.
EntryRow block(ZVHTMLElement element) { return {element, {kApply}, {kBreak, kApply}, {kApply}}; }

/// The link that stands for a frame, which is a paragraph of its own.
EntryRow frameLink()
{
    const Lines before{kApply, "SOBeginTagged 2147680268 1 {@4=4294967295 @8=4294967295}",
        "SOSetTextColor 0 0", "SOSetProperty 8 4 1 0"};
    const Lines behind{
        kBreak, "SOSetTextColor 0 0", "SOSetProperty 8 4 0 0", "SOEndTagged 2147680268 1"};
    const Lines closed = joined({before, behind});
    const Lines open = joined({before, {kBreak}, behind});
    return {ELEMENT_FRAME, closed, open, open};
}

/// A block that is set off by an empty paragraph.
EntryRow apart(ZVHTMLElement element, const Lines& behind)
{
    EntryRow row{element, {kApply}, {kBreak, kBreak, kApply}, {kBreak, kApply}};
    for (Lines* lines : {&row.closed, &row.filled, &row.owed})
        lines->insert(lines->end(), behind.begin(), behind.end());
    return row;
}

const std::vector<EntryRow> kEntryRows = {
    block(ELEMENT_ADDRESS),
    always(ELEMENT_APPLET, {kApply}, 0x200000),
    always(ELEMENT_BASEFONT, {}),
    apart(ELEMENT_BLOCKQUOTE, {}),
    always(ELEMENT_BODY, {kApply}, 0x800),
    {ELEMENT_BR, {}, {kBreak, kSpaceBefore, kSpaceAfter}, {kBreak, kSpaceBefore, kSpaceAfter}},
    always(ELEMENT_CAPTION, {}, 0x8000000, 1),
    block(ELEMENT_CENTER),
    always(ELEMENT_DEL, {kApply, "SOSetProperty 8 20 1 0"}),
    apart(ELEMENT_DIR, {}),
    block(ELEMENT_DIV),
    {ELEMENT_DL, {kApply}, {kBreak, kApply}, {kBreak, kApply}},
    block(ELEMENT_DT),
    block(ELEMENT_FOOTER),
    {ELEMENT_FORM, {kApply, kFormNotice}, {kBreak, kApply, kFormNotice},
        {kBreak, kApply, kFormNotice}},
    frameLink(),
    block(ELEMENT_H1),
    block(ELEMENT_H2),
    block(ELEMENT_H3),
    block(ELEMENT_H4),
    block(ELEMENT_H5),
    block(ELEMENT_H6),
    always(ELEMENT_HEAD, {kApply}, 0x400),
    block(ELEMENT_HEADER),
    always(ELEMENT_HTML,
        {"SOSetProperty 88 540 0 0", "SOSetProperty 20 0 0 0", "SOSetProperty 37 0 0 0", kApply},
        0x1000),
    always(ELEMENT_INS, {kApply, "SOSetProperty 8 19 1 0"}),
    block(ELEMENT_LI),
    always(ELEMENT_LINK, {}),
    apart(ELEMENT_LISTING, {kWideTabs}),
    always(ELEMENT_MAP, {kApply}, 0x100000),
    apart(ELEMENT_MENU, {}),
    always(ELEMENT_META, {}),
    always(ELEMENT_NOFRAMES, {kApply, "SOBeginTagged 2685009920 1 null"}),
    apart(ELEMENT_OL, {}),
    block(ELEMENT_P),
    apart(ELEMENT_PLAINTEXT, {kWideTabs}),
    apart(ELEMENT_PRE, {kWideTabs}),
    always(ELEMENT_Q, {kApply, "SOEmitText \"\\u201c\" 1 347078656"}),
    always(ELEMENT_SELECT, {kApply}, 0x100),
    always(ELEMENT_STYLE, {}, 0x400000, 1),
    {ELEMENT_TABLE, {kTableBreak, kApply, kPlainTable}, {kBreak, kTableBreak, kApply, kPlainTable},
        {kTableBreak, kApply, kPlainTable}},
    always(ELEMENT_TD, {kApply, kPlainCell + " -> 200001"}, 0x8000),
    always(ELEMENT_TH, {kApply, kPlainHeading + " -> 200001"}, 0x8000),
    always(ELEMENT_TITLE, {kApply, "SOBeginTagged 2684420100 1 {@0=6}"}, 0x4000000),
    always(ELEMENT_TR, joined({{kApply}, kRowIndents})),
    apart(ELEMENT_UL, {}),
    apart(ELEMENT_XMP, {kWideTabs}),
};

EntryRow rowOf(ZVHTMLElement element)
{
    for (const EntryRow& row : kEntryRows) {
        if (row.element == element)
            return row;
    }
    return always(element, {kApply});
}

struct Entered {
    Lines lines;
    std::uint32_t answer;
    std::uint32_t walkState;
};

Entered enterIn(ZVHTMLElement element, std::uint16_t flags, std::uint16_t lastChar)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), element);
    document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.context.paragraphFlags = flags;
    document.context.lastChar = lastChar;
    const std::uint32_t answer = enterElement(*node, document.context);
    EXPECT_EQ(document.context.deferredList.getCount(), 1);
    EXPECT_EQ(newestFrame(document.context)->element, element);
    EXPECT_EQ(document.context.statusFlags, 0);
    return {document.host.takeCalls(), answer, document.context.walkState};
}

} // namespace

TEST(EnterElement, RowsOfAllElements)
{
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        const auto element = static_cast<ZVHTMLElement>(id);
        const EntryRow row = rowOf(element);
        const Entered closed = enterIn(element, 0, 0);
        EXPECT_EQ(closed.lines, row.closed) << id;
        EXPECT_EQ(closed.answer, row.answer) << id;
        EXPECT_EQ(closed.walkState, row.walkState) << id;
        EXPECT_EQ(enterIn(element, PARAGRAPH_HAS_CONTENT, u'x').lines, row.filled) << id;
        EXPECT_EQ(enterIn(element, PARAGRAPH_BREAK_OWED, 0).lines, row.owed) << id;
    }
}

TEST(EnterElement, EndsParagraphsCompletely)
{
    OutputContext document;
    document.context.paragraphFlags = PARAGRAPH_MARKER | PARAGRAPH_OPEN | 1;
    document.context.lastChar = u'x';
    document.host.stopEvery = 1;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_DIV);
    enterElement(*node, document.context);
    EXPECT_EQ(document.context.paragraphFlags, 1);
    EXPECT_EQ(document.context.lastChar, 0);
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
}

TEST(EnterElement, OnlyTheAnswerOneStopsTheSlice)
{
    OutputContext document;
    const SOEmitBreakRoutine answersTwo
        = [](std::uint16_t, std::uint32_t, void*, void*) -> std::uint32_t { return 2; };
    document.context.soRoutines[SO_EMIT_BREAK - 1] = reinterpret_cast<void*>(answersTwo);
    endParagraph(document.context);
    EXPECT_EQ(document.context.statusFlags, 0);
}

TEST(EnterElement, OptionsOfASelectStandOnTheirOwn)
{
    OutputContext document;
    document.context.walkState = WALK_IN_SELECT;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_OPTION);
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(), Lines{});
    document.context.paragraphFlags = PARAGRAPH_BREAK_OWED;
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(), Lines{kBreak});
}

TEST(EnterElement, BlockquotesAreCounted)
{
    OutputContext document;
    document.build(u"<blockquote></blockquote>");
    enterElement(*document.find(ELEMENT_BLOCKQUOTE), document.context);
    EXPECT_EQ(document.context.blockquoteDepth, 1);
}

TEST(EnterElement, StretchesAreNumberedInTheirFrames)
{
    OutputContext document;
    document.context.fieldCounter = 6;
    document.build(u"<noframes></noframes><title></title>");
    enterElement(*document.find(ELEMENT_NOFRAMES), document.context);
    EXPECT_EQ(newestFrame(document.context)->handle, 7U);
    enterElement(*document.find(ELEMENT_TITLE), document.context);
    EXPECT_EQ(newestFrame(document.context)->handle, 8U);
}

TEST(EnterElement, FramesStartFromTheNewestOne)
{
    OutputContext document;
    document.build(u"<div><p></p></div>");
    HtmlTreeNode* div = document.find(ELEMENT_DIV);
    document.declare(div, PROPERTY_BACKGROUND_COLOR, document.color(0x123456));
    document.declare(div, PROPERTY_FONT_SIZE, document.pixels(20));
    enterElement(*div, document.context);
    const HTML_SOINFO outer = *newestFrame(document.context);
    EXPECT_EQ(outer.handle, 0xFFFFFFFFU);
    EXPECT_EQ(outer.bookmark, 0xFFFFFFFFU);
    EXPECT_EQ(outer.backColor, 0x123456U);
    EXPECT_EQ(outer.fontSizePx, 20U);
    EXPECT_NE(outer.undoList, nullptr);

    newestFrame(document.context)->handle = 5;
    newestFrame(document.context)->bookmark = 6;
    enterElement(*document.find(ELEMENT_P), document.context);
    const HTML_SOINFO inner = *newestFrame(document.context);
    EXPECT_EQ(inner.element, std::uint32_t{ELEMENT_P});
    EXPECT_EQ(inner.handle, 5U);
    EXPECT_EQ(inner.bookmark, 6U);
    EXPECT_EQ(inner.backColor, 0x123456U);
    EXPECT_EQ(inner.fontSizePx, 20U);
    EXPECT_EQ(inner.undoList, nullptr);
}

TEST(EnterElement, FirstFrameHasTheEmptyValues)
{
    OutputContext document;
    document.build(u"<p></p>");
    HtmlTreeNode* node = document.find(ELEMENT_P);
    document.declare(node, PROPERTY_BACKGROUND_COLOR, document.keyword(VALUE_TRANSPARENT));
    enterElement(*node, document.context);
    const HTML_SOINFO& frame = *newestFrame(document.context);
    EXPECT_EQ(frame.backColor, 0xFFFFFFU);
    EXPECT_EQ(frame.fontSizePx, 16U);
    EXPECT_EQ(frame.alignment, 0U);
    EXPECT_EQ(frame.leftIndentPx, 0);
}

TEST(EnterElement, EmptyUndoListIsDropped)
{
    OutputContext document;
    document.build(u"<p></p>");
    HtmlTreeNode* node = document.find(ELEMENT_P);
    document.declare(
        node, PROPERTY_FONT_WEIGHT, document.runningStyle.findValue(PROPERTY_FONT_WEIGHT));
    enterElement(*node, document.context);
    EXPECT_EQ(newestFrame(document.context)->undoList, nullptr);
}

TEST(EnterElement, NodeWithoutPayloadIsPassedOver)
{
    OutputContext document;
    EXPECT_EQ(enterElement(*document.tree.root(), document.context), 0U);
    EXPECT_TRUE(document.context.deferredList.isEmpty());
    EXPECT_EQ(document.host.callCount, 0U);
}

TEST(EnterElement, HeadSetsTheCharacterSetOfTheText)
{
    struct Row {
        std::vector<const char16_t*> charSets; ///< of the meta elements in the head
        std::uint16_t metaCharSet; ///< before
        std::uint16_t code;
        std::uint32_t id;
    };
    const Row rows[] = {
        {{}, 0, 0x9000, CHARSET_ID_UTF16},
        {{u"koi8-r"}, 0, 0x800B, 0x436E0100},
        {{u"koi8-r", u"big5"}, 0, 0x800B, 0x436E0100},
        {{u"nothing", u"big5"}, 0, 0x2006, 0x13B60000},
        {{u"nothing"}, 0, 0x9000, CHARSET_ID_UTF16},
        {{u"koi8-r"}, 0x2005, 0x2005, 0x13A40000},
    };
    for (const Row& row : rows) {
        OutputContext document;
        HtmlTreeNode* head = document.element(document.tree.root(), ELEMENT_HEAD);
        document.element(head, ELEMENT_TITLE);
        for (const char16_t* charSet : row.charSets)
            document.attribute(document.element(head, ELEMENT_META), ATTRIBUTE_CHARSET, charSet);
        document.context.metaCharSet = row.metaCharSet;
        enterElement(*head, document.context);
        EXPECT_EQ(document.context.sectionCharSet, row.code) << &row - rows;
        EXPECT_EQ(document.context.sectionCharSetId, row.id) << &row - rows;
    }
}

TEST(EnterElement, FailedAllocationsEndTheWalkOrTheRead)
{
    // However early the memory ends, nothing is lost: the walk stops, or the failure leaves.
    for (std::uint32_t n = 1; n < 40; ++n) {
        OutputContext document;
        document.build(u"<div><p>x</p></div>");
        document.declare(
            document.find(ELEMENT_DIV), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        document.declare(document.find(ELEMENT_P), PROPERTY_COLOR, document.color(1));
        zorvan::failNthAllocation(n);
        try {
            document.walkSlice();
        } catch (const std::bad_alloc&) {
            document.context.statusFlags = STATUS_OUT_OF_MEMORY;
        }
        const bool failed = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        EXPECT_EQ(document.context.statusFlags, failed ? STATUS_OUT_OF_MEMORY : 0) << n;
    }
}
