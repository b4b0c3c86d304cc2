#include "output/tree_walk.h"

#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

const char16_t* const kMixed = u"<html><head><title>t</title></head><body><h1>x</h1><p>y <b>z</b>"
                               u"<br></br>w</p><pre>a\nb</pre><ul><li>i</li><li>j<br></br></li>"
                               u"</ul><blockquote>q</blockquote><style>s</style>end</body></html>";

void declareMixed(OutputContext& document)
{
    document.declare(document.find(ELEMENT_H1), PROPERTY_FONT_SIZE, document.em(2));
    document.declare(document.find(ELEMENT_P), PROPERTY_MARGIN_BOTTOM, document.pixels(16));
    document.declare(document.find(ELEMENT_B), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.declare(document.find(ELEMENT_UL), PROPERTY_MARGIN_LEFT, document.pixels(36));
    document.attribute(document.find(ELEMENT_P), ATTRIBUTE_ID, u"x");
}

Lines texts(const Lines& lines)
{
    Lines found;
    for (const std::string& line : lines) {
        if (line.find("SOEmitTextAt") == 0)
            found.push_back(line);
    }
    return found;
}

} // namespace

TEST(TreeWalk, EmptyTreeIsDoneAtOnce)
{
    OutputContext document;
    EXPECT_TRUE(document.walkSlice());
    EXPECT_EQ(document.host.callCount, 0U);
}

TEST(TreeWalk, VisitsInDocumentOrderAndLeavesEachElement)
{
    OutputContext document;
    document.build(u"<b>a<i>b</i>c</b><u>d</u>");
    for (const ZVHTMLElement id : {ELEMENT_B, ELEMENT_I, ELEMENT_U})
        document.declare(document.find(id), PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    const std::string on = "SOSetProperty 8 2 1 0";
    const std::string off = "SOSetProperty 8 2 0 0";
    // The inner bold changes nothing, so there is nothing to undo.
    EXPECT_EQ(document.walkAll(),
        (Lines{on, textLine("a"), on, textLine("b"), textLine("c"), off, on, textLine("d"), off}));
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}

TEST(TreeWalk, StatusStopsBeforeTheFirstStep)
{
    OutputContext document;
    document.build(u"<b>a</b>");
    document.context.statusFlags = STATUS_OUT_OF_MEMORY;
    EXPECT_EQ(walkTree(document.tree.root(), nullptr, document.context), nullptr);
    EXPECT_EQ(walkTree(document.tree.root(), document.find(ELEMENT_B), document.context),
        document.find(ELEMENT_B));
    EXPECT_EQ(document.host.callCount, 0U);
}

TEST(TreeWalk, ChildrenOfStyleAreNeverDelivered)
{
    OutputContext document;
    document.build(u"<p>a</p><style>s<b>t</b></style><p>b</p>");
    document.context.walkState = WALK_IN_STYLE;
    EXPECT_EQ(texts(document.walkAll()), (Lines{textLine("a"), textLine("b")}));
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}

TEST(TreeWalk, StopsAtAnyBreakGiveTheSameCalls)
{
    OutputContext whole;
    whole.build(kMixed);
    declareMixed(whole);
    const Lines expected = whole.walkAll();
    ASSERT_GT(whole.host.breakCount, 6U);

    for (std::uint32_t every = 1; every <= 4; ++every) {
        OutputContext document;
        document.build(kMixed);
        declareMixed(document);
        document.host.stopEvery = every;
        std::uint32_t slices = 1;
        while (!document.walkSlice()) {
            EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
            ++slices;
        }
        EXPECT_EQ(document.host.takeCalls(), expected) << every;
        EXPECT_GT(slices, 1U);
        EXPECT_TRUE(document.context.deferredList.isEmpty());
    }
}

TEST(TreeWalk, SliceEndsAtTheParagraph)
{
    OutputContext document;
    document.build(u"<p>a</p><p>b</p>");
    document.host.stopEvery = 1;
    EXPECT_FALSE(document.walkSlice());
    // What follows the break in document order is entered before the slice ends.
    EXPECT_EQ(texts(document.host.calls), Lines{textLine("a")});
    EXPECT_EQ(document.context.walkNode, document.find(ELEMENT_P, 1));
    // The climb to the root ends the walk, whatever the host's last answer was.
    EXPECT_TRUE(document.walkSlice());
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
    EXPECT_EQ(texts(document.host.calls), (Lines{textLine("a"), textLine("b")}));
}

TEST(TreeWalk, HostStopInsideATableIsDropped)
{
    OutputContext document;
    document.build(u"<table><tr><td><p>a</p><p>b</p><table><tr><td><p>c</p></td></tr></table><p>d"
                   u"</p></td></tr></table><p>e</p><p>f</p>");
    document.host.stopEvery = 1;
    // The first stop is that at the end of the outer table, which needs no wish.
    EXPECT_FALSE(document.walkSlice());
    EXPECT_EQ(texts(document.host.takeCalls()),
        (Lines{textLine("a"), textLine("b"), textLine("c"), textLine("d")}));
    EXPECT_EQ(document.context.walkNode, document.find(ELEMENT_P, 4));
    EXPECT_EQ(document.context.internals->openTables, 0U);
    EXPECT_FALSE(document.walkSlice());
    EXPECT_EQ(texts(document.host.takeCalls()), (Lines{textLine("e")}));
}

TEST(TreeWalk, ResumeEntersTheNodeAgain)
{
    OutputContext document;
    document.build(u"<p>a</p><q>b</q>");
    HtmlTreeNode* const node = document.find(ELEMENT_Q);
    document.context.walkNode = node;
    document.context.walkResume = 1;
    EXPECT_TRUE(document.walkSlice());
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOEmitText \"\\u201c\" 1 347078656", textLine("b"),
            "SOEmitText \"\\u201d\" 1 347078656"}));
    EXPECT_EQ(document.context.walkResume, 0U);
}

TEST(TreeWalk, ResumeWhileClimbingGoesOnBehindTheNode)
{
    OutputContext document;
    document.build(u"<q>a</q><q>b</q>");
    document.context.walkNode = document.find(ELEMENT_Q);
    document.context.walkResume = 1;
    document.context.walkClimbing = 1;
    EXPECT_TRUE(document.walkSlice());
    EXPECT_EQ(texts(document.host.takeCalls()), Lines{textLine("b")});
}

TEST(TreeWalk, ElementsAreLeftOnlyWhenTheNewestFrameIsTheirs)
{
    OutputContext document;
    document.build(u"<q>a</q><q>b</q>");
    HtmlTreeNode* const node = document.find(ELEMENT_Q);
    // No frame is open: the climb out of the first one leaves nothing.
    document.context.walkNode = node->firstChild;
    EXPECT_TRUE(document.walkSlice());
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOEmitText \"\\u201c\" 1 347078656", textLine("b"),
            "SOEmitText \"\\u201d\" 1 347078656"}));
}

TEST(TreeWalk, EndsAtTheStopNode)
{
    OutputContext document;
    document.build(u"<div><p>a</p></div><p>b</p>");
    document.context.walkStopNode = document.find(ELEMENT_P);
    EXPECT_EQ(walkTree(document.tree.root(), nullptr, document.context), document.find(ELEMENT_P));
    EXPECT_EQ(document.context.walkClimbing, 1U);
    EXPECT_EQ(texts(document.host.takeCalls()), Lines{textLine("a")});
}

TEST(TreeWalk, ReindexFindsWhatTheWalkKnew)
{
    OutputContext document;
    document.build(
        u"<table><li><pre><p><li><p><xmp><b>x</b></xmp></p></li></p></pre></li></table>");
    for (HtmlTreeNode* node = document.find(ELEMENT_TABLE); node->data->elementId != ELEMENT_NONE;
         node = node->firstChild) {
        enterElement(*node, document.context);
        document.context.walkNode = node;
    }
    HtmlFilterInternals& internals = *document.context.internals;
    const auto check = [&] {
        EXPECT_EQ(internals.openTables, 1U);
        EXPECT_EQ(internals.openPreformatted, 2U);
        ASSERT_EQ(internals.openParagraphs.getCount(), 2);
        EXPECT_EQ(internals.openParagraphs.get(0), document.find(ELEMENT_P));
        EXPECT_EQ(internals.openParagraphs.get(1), document.find(ELEMENT_P, 1));
        ASSERT_EQ(internals.openListItems.getCount(), 2);
        EXPECT_EQ(internals.openListItems.get(0), document.find(ELEMENT_LI));
        EXPECT_EQ(internals.openListItems.get(1), document.find(ELEMENT_LI, 1));
    };
    check();
    internals.openTables = 9;
    internals.openPreformatted = 9;
    internals.openParagraphs.clear();
    internals.openListItems.clear();
    reindexOpenFrames(document.context);
    check();
    clearDeferredList(document.context);
    EXPECT_EQ(internals.openTables, 0U);
    EXPECT_EQ(internals.openPreformatted, 0U);
    EXPECT_EQ(internals.openParagraphs.getCount(), 0);
}

TEST(TreeWalk, ElementsWhoseFramesAreLostAreLeftAllTheSame)
{
    struct Row {
        const char16_t* markup;
        ZVHTMLElement first;
    };
    const Row rows[] = {
        {u"<p>a</p><div>x<br></br>y</div>", ELEMENT_P},
        {u"<li>a</li><div>x<br></br>y</div>", ELEMENT_LI},
        {u"<p><li><p>a</p></li></p><div>x<br></br>y</div>", ELEMENT_LI},
    };
    for (const Row& row : rows) {
        OutputContext document;
        document.build(row.markup);
        for (int i = 0; HtmlTreeNode* const paragraph = document.find(ELEMENT_P, i); ++i)
            document.declare(paragraph, PROPERTY_MARGIN_BOTTOM, document.pixels(16));
        // As behind a position in the text of the first element.
        HtmlTreeNode* node = document.find(row.first);
        while (node->firstChild != nullptr)
            node = node->firstChild;
        document.context.walkNode = node;
        reindexOpenFrames(document.context);
        EXPECT_TRUE(document.walkSlice());
        // Neither the margin of the p nor the indent of the item.
        EXPECT_EQ(document.host.takeCalls(),
            (Lines{textLine("x"), kParagraphLine, "SOSetProperty 98 1 0 0",
                "SOSetProperty 99 1 0 0", textLine("y"), kParagraphLine}))
            << &row - rows;
        EXPECT_EQ(document.context.internals->openParagraphs.getCount(), 0);
        EXPECT_EQ(document.context.internals->openListItems.getCount(), 0);
    }
}

TEST(TreeWalk, WalkBehindAnExceptionKnowsWhereItIs)
{
    for (const ZVHTMLElement id : {ELEMENT_P, ELEMENT_LI}) {
        OutputContext document;
        document.build(id == ELEMENT_P ? u"<p>a</p><div>x<br></br>y</div>"
                                       : u"<li>a</li><div>x<br></br>y</div>");
        document.declare(document.find(id), PROPERTY_MARGIN_BOTTOM, document.pixels(16));
        document.host.throwAt = 1;
        EXPECT_THROW(document.walkSlice(), HostGaveUp);
        EXPECT_EQ(document.host.takeCalls(), Lines{textLine("a")});
        // The walk begins anew, and the element of the first try is no longer one that it is in.
        const Lines lines = document.walkAll();
        const auto x = std::find(lines.begin(), lines.end(), textLine("x"));
        ASSERT_NE(x, lines.end());
        EXPECT_EQ(Lines(x, lines.end()),
            (Lines{textLine("x"), kParagraphLine, "SOSetProperty 98 1 0 0",
                "SOSetProperty 99 1 0 0", textLine("y"), kParagraphLine}));
        EXPECT_EQ(document.context.internals->openParagraphs.getCount(), 0);
        EXPECT_EQ(document.context.internals->openListItems.getCount(), 0);
    }
}

TEST(TreeWalk, ParagraphLeftByAWalkThatFailedIsKnownAgain)
{
    OutputContext document;
    document.build(u"<p>a<br></br>b<br></br>c</p><div>d</div>");
    document.declare(document.find(ELEMENT_P), PROPERTY_MARGIN_BOTTOM, document.pixels(16));
    document.host.stopEvery = 1;
    EXPECT_FALSE(document.walkSlice());
    EXPECT_EQ(document.context.walkNode, document.find(ELEMENT_BR));
    document.host.takeCalls();
    document.host.stopEvery = 0;
    // The host gives up at the text behind the p.
    document.host.throwAt = document.host.callCount + 11;
    EXPECT_THROW(document.walkSlice(), HostGaveUp);
    const Lines once = document.host.takeCalls();
    ASSERT_EQ(once.back(), textLine("d"));
    const Lines again = document.walkAll();
    ASSERT_GT(again.size(), 6U);
    const Lines breaks{textLine("b"), "SOSetProperty 99 1 0 0", kParagraphLine,
        "SOSetProperty 98 1 0 0", "SOSetProperty 99 1 240 0", textLine("c")};
    EXPECT_EQ(Lines(once.begin(), once.begin() + 6), breaks);
    EXPECT_EQ(Lines(again.begin(), again.begin() + 6), breaks);
    EXPECT_EQ(document.context.internals->openParagraphs.getCount(), 0);
}

TEST(TreeWalk, TablesOfAWalkThatFailedAreOnlyThoseWithAFrame)
{
    OutputContext document;
    document.build(u"<table><caption>a</caption><tbody><tr><td>b</td></tr></tbody></table><p>c</p>"
                   u"<p>d</p>");
    document.host.throwAt = 2;
    EXPECT_THROW(document.walkSlice(), HostGaveUp);
    // Only the frame of the caption is left, so the table is an outermost one again.
    EXPECT_EQ(document.context.tableBreakSent, 1U);
    EXPECT_FALSE(document.walkSlice());
    EXPECT_EQ(document.context.internals->openTables, 0U);
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
    EXPECT_EQ(document.host.calls.back(), "SOEmitBreak 9 0");
}

TEST(TreeWalk, HostThatGivesUpAtAnyCallLeaksNothing)
{
    std::uint32_t calls = 1;
    for (std::uint32_t at = 1; at <= calls; ++at) {
        OutputContext document;
        document.build(kMixed);
        declareMixed(document);
        document.host.throwAt = at;
        bool gaveUp = false;
        try {
            document.walkAll();
        } catch (const HostGaveUp&) {
            gaveUp = true;
        }
        ASSERT_EQ(document.host.callCount == at, gaveUp);
        calls = std::max(calls, document.host.callCount + (gaveUp ? 1U : 0U));
        if (!gaveUp)
            break;
    }
    EXPECT_GT(calls, 40U);
}

TEST(TreeWalk, DeepDocumentsNeedNoStack)
{
    OutputContext document;
    HtmlTreeNode* parent = document.tree.root();
    for (int i = 0; i < 100'000; ++i)
        parent = document.element(parent, i % 2 == 0 ? ELEMENT_DIV : ELEMENT_SPAN);
    document.text(parent, u"x");
    EXPECT_EQ(texts(document.walkAll()), Lines{textLine("x")});
    EXPECT_TRUE(document.context.deferredList.isEmpty());
}
