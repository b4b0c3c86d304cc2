#include "output/line_break.h"

#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

const std::string kSpaceBefore = "SOSetProperty 98 1 0 0";

std::string spaceAfter(std::uint32_t twips)
{
    return "SOSetProperty 99 1 " + std::to_string(twips) + " 0";
}

/// Enters all ancestors of a br, then the br itself in an open paragraph.
Lines breakIn(OutputContext& document, const char16_t* markup)
{
    document.build(markup);
    HtmlTreeNode* const node = document.find(ELEMENT_BR);
    std::vector<HtmlTreeNode*> ancestors;
    for (HtmlTreeNode* parent = node->parent; parent->data != nullptr; parent = parent->parent)
        ancestors.insert(ancestors.begin(), parent);
    for (HtmlTreeNode* ancestor : ancestors)
        enterElement(*ancestor, document.context);
    document.context.paragraphFlags = PARAGRAPH_HAS_CONTENT;
    document.context.lastChar = u'x';
    document.host.takeCalls();
    enterElement(*node, document.context);
    return document.host.takeCalls();
}

} // namespace

TEST(LineBreak, AtTheStartOfAParagraphOnlyOpensIt)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BR);
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(), Lines{});
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_BREAK_OWED);
    // The next one gives the break.
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(), (Lines{kParagraphLine, kSpaceBefore, spaceAfter(0)}));
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_BREAK_OWED);
    EXPECT_EQ(document.context.lastChar, 0);
}

TEST(LineBreak, WithoutAParagraphElement)
{
    OutputContext document;
    EXPECT_EQ(breakIn(document, u"<div><br></br></div>"),
        (Lines{kParagraphLine, kSpaceBefore, spaceAfter(0)}));
}

TEST(LineBreak, TakesTheSpacingOfItsParagraphAlong)
{
    OutputContext document;
    document.build(u"<p><b><br></br></b></p>");
    document.declare(document.find(ELEMENT_P), PROPERTY_MARGIN_BOTTOM, document.pixels(16.9F));
    EXPECT_EQ(breakIn(document, u""),
        (Lines{spaceAfter(0), kParagraphLine, kSpaceBefore, spaceAfter(240)}));
}

TEST(LineBreak, MarginThatIsNoLengthCountsAsNone)
{
    OutputContext document;
    document.build(u"<p><br></br></p>");
    document.declare(
        document.find(ELEMENT_P), PROPERTY_MARGIN_BOTTOM, document.keyword(VALUE_AUTO));
    EXPECT_EQ(breakIn(document, u""),
        (Lines{spaceAfter(0), kParagraphLine, kSpaceBefore, spaceAfter(0)}));
}

TEST(LineBreak, ParagraphWithoutDeclarationsIsNotAsked)
{
    OutputContext document;
    EXPECT_EQ(breakIn(document, u"<p><br></br></p>"),
        (Lines{kParagraphLine, kSpaceBefore, spaceAfter(0)}));
}

TEST(LineBreak, InAnItemGoesOnAtTheLeftIndent)
{
    OutputContext document;
    document.build(u"<ul><li><b><br></br></b></li></ul>");
    document.declare(document.find(ELEMENT_UL), PROPERTY_MARGIN_LEFT, document.pixels(36));
    EXPECT_EQ(breakIn(document, u""),
        (Lines{kParagraphLine, kSpaceBefore, spaceAfter(0), "SOSetProperty 97 2 0 540"}));
}

TEST(LineBreak, FindsTheInnermostParagraphAndItem)
{
    OutputContext document;
    document.build(u"<li><p><div><p></p><li></li><br></br></div></p></li>");
    document.declare(document.find(ELEMENT_P), PROPERTY_MARGIN_BOTTOM, document.pixels(2));
    document.declare(document.find(ELEMENT_P, 1), PROPERTY_MARGIN_BOTTOM, document.pixels(5));
    EXPECT_EQ(breakIn(document, u""),
        (Lines{spaceAfter(0), kParagraphLine, kSpaceBefore, spaceAfter(30),
            "SOSetProperty 97 2 0 0"}));
}

TEST(LineBreak, NotesTheHostsStop)
{
    OutputContext document;
    document.host.stopEvery = 1;
    breakIn(document, u"<p><br></br></p>");
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
}

TEST(LineBreak, ManyInADeepParagraphTakeNoTime)
{
    OutputContext document;
    HtmlTreeNode* parent = document.element(document.tree.root(), ELEMENT_P);
    document.declare(parent, PROPERTY_MARGIN_BOTTOM, document.pixels(1));
    for (int i = 0; i < 30'000; ++i) {
        parent = document.element(parent, ELEMENT_SPAN);
        document.text(parent, u"x");
        document.element(parent, ELEMENT_BR);
    }
    int breaks = 0;
    for (const std::string& line : document.walkAll())
        breaks += line == spaceAfter(15) ? 1 : 0;
    // Each break brings the margin, and so does the end of the paragraph.
    EXPECT_EQ(breaks, 30'001);
}
