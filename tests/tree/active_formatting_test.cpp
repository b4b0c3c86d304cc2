#include "tree/active_formatting.h"

#include "tests/common/tree_context.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::TreeContext;

/// The part of a short outline below the body.
std::string bodyOf(const std::string& content)
{
    TreeContext tree("<body>" + content);
    tree.build();
    const std::string outline = tree.shortOutline();
    const std::string before = "html[head body[";
    EXPECT_EQ(outline.substr(0, before.size()), before);
    return outline.substr(before.size(), outline.size() - before.size() - 2);
}

std::string repeated(const std::string& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST(ActiveFormatting, AnEmptyListHasNothingToOpen)
{
    TreeContext tree("<body>");
    tree.build();
    ReconstructActiveFormatting(tree.context);
    EXPECT_EQ(tree.shortOutline(), "html[head body]");
    EXPECT_EQ(tree.stack().getCount(), 2);
}

TEST(ActiveFormatting, WithoutAList)
{
    TreeContext tree;
    ActiveFormattingList* const list = tree.context.activeFormatting;
    tree.context.activeFormatting = nullptr;
    ReconstructActiveFormatting(tree.context);
    ClearActiveFormatting(tree.context);
    tree.context.activeFormatting = list;
}

TEST(ActiveFormatting, ClearEmptiesTheList)
{
    TreeContext tree("<body><b><object><i>");
    tree.build();
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 3);
    ClearActiveFormatting(tree.context);
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 0);
    EXPECT_EQ(tree.context.activeFormatting->getMarkerCount(), 0U);
}

TEST(ActiveFormatting, NullPushesAMarker)
{
    ActiveFormattingList list;
    PushFormattingElement(list, nullptr);
    InsertFormattingMarker(list);
    EXPECT_EQ(list.getMarkerCount(), 2U);
    ClearFormattingToMarker(list);
    EXPECT_EQ(list.getMarkerCount(), 1U);
    ClearFormattingToMarker(list);
    ClearFormattingToMarker(list);
    EXPECT_EQ(list.getCount(), 0);
}

TEST(ActiveFormatting, ClearStopsAtTheLastMarkerOrTakesAll)
{
    TreeContext tree("<body><b><object><i><u>");
    tree.build();
    ActiveFormattingList& list = *tree.context.activeFormatting;
    EXPECT_EQ(FindFormattingElement(list, ELEMENT_B), nullptr);
    ClearFormattingToMarker(list);
    EXPECT_EQ(list.last(), tree.find(ELEMENT_B));
    EXPECT_EQ(FindFormattingElement(list, ELEMENT_B), tree.find(ELEMENT_B));
    EXPECT_EQ(FindFormattingElement(list, ELEMENT_I), nullptr);
    ClearFormattingToMarker(list);
    EXPECT_EQ(list.getCount(), 0);
}

TEST(ActiveFormatting, FindTakesTheLastOne)
{
    TreeContext tree("<body><b><i><b id=x><i id=y>");
    tree.build();
    const HtmlTreeNode* const found
        = FindFormattingElement(*tree.context.activeFormatting, ELEMENT_B);
    EXPECT_TRUE(tree.payloadOf(*found).hasAttributes());
    EXPECT_EQ(FindFormattingElement(*tree.context.activeFormatting, ELEMENT_U), nullptr);
}

TEST(ActiveFormatting, WhatIsNotInTheListIsNeitherRemovedNorReplacedNorABookmark)
{
    TreeContext tree("<body><b><span><i>");
    tree.build();
    ActiveFormattingList& list = *tree.context.activeFormatting;
    HtmlTreeNode& b = *tree.find(ELEMENT_B);
    HtmlTreeNode& i = *tree.find(ELEMENT_I);
    HtmlTreeNode& span = *tree.find(ELEMENT_SPAN);
    RemoveFormattingNode(list, span);
    ReplaceFormattingNode(list, span, &span);
    InsertFormattingAfter(list, span, &span);
    EXPECT_EQ(list.getCount(), 2);
    EXPECT_FALSE(list.contains(span));
    RemoveFormattingNode(list, i);
    EXPECT_EQ(list.last(), &b);
    InsertFormattingAfter(list, b, &i);
    EXPECT_EQ(list.last(), &i);
}

// Whatever is in the list is opened again by the text behind its paragraph.
TEST(ActiveFormatting, ElementsWithoutAttributesAllStay)
{
    EXPECT_EQ(
        bodyOf("<p>" + repeated("<b>", 5) + "</p>x"), "p[b[b[b[b[b]]]]] b[b[b[b[b[\"x\"]]]]]");
}

TEST(ActiveFormatting, TheFourthWithTheSameColorRemovesTheFirst)
{
    EXPECT_EQ(bodyOf("<p>" + repeated("<font color=red>", 3) + "</p>x"),
        "p[font[font[font]]] font[font[font[\"x\"]]]");
    EXPECT_EQ(bodyOf("<p>" + repeated("<font color=red>", 5) + "</p>x"),
        "p[font[font[font[font[font]]]]] font[font[font[\"x\"]]]");
}

TEST(ActiveFormatting, TheFirstOfFourIsTheOneThatGoes)
{
    TreeContext tree("<body><font color=red><i><font color=red><font color=red><font color=red>");
    tree.build();
    ActiveFormattingList& list = *tree.context.activeFormatting;
    EXPECT_EQ(list.getCount(), 4);
    EXPECT_FALSE(list.contains(*tree.find(ELEMENT_FONT)));
    EXPECT_TRUE(list.contains(*tree.find(ELEMENT_I)));
}

TEST(ActiveFormatting, TextsAreNeverTheSame)
{
    EXPECT_EQ(bodyOf("<p>" + repeated("<font face=Arial>", 4) + "</p>x"),
        "p[font[font[font[font]]]] font[font[font[font[\"x\"]]]]");
    EXPECT_EQ(bodyOf("<p>" + repeated("<font color=red face=Arial>", 4) + "</p>x"),
        "p[font[font[font[font]]]] font[font[font[font[\"x\"]]]]");
}

TEST(ActiveFormatting, OtherColorsBetweenDoNotCount)
{
    EXPECT_EQ(bodyOf("<p><font color=red><font color=red><font color=blue><font color=red>"
                     "<font color=red></p>x"),
        "p[font[font[font[font[font]]]]] font[font[font[font[\"x\"]]]]");
}

TEST(ActiveFormatting, AMarkerEndsTheCount)
{
    TreeContext tree("<body>" + repeated("<font color=red>", 3) + "<object><font color=red>");
    tree.build();
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 5);
}

TEST(ActiveFormatting, ReopenedWithItsAttributesInTheBody)
{
    TreeContext tree("<body><p><b class=c>x</p>y");
    tree.build();
    EXPECT_EQ(tree.outline(),
        "html\n  head\n  body\n    p\n      b class=\"c\"\n        \"x\"\n"
        "    b class=\"c\"\n      \"y\"\n");
}

TEST(ActiveFormatting, SharesTheStyleAndIsUndoneByItself)
{
    TreeContext tree("<body><p><b style='color:red'></p>y");
    tree.build();
    const HtmlTagNodeData& first = tree.payloadOf(*tree.find(ELEMENT_B));
    const HtmlTagNodeData& second = tree.payloadOf(*tree.stack().last());
    ASSERT_NE(&first, &second);
    EXPECT_EQ(second.elementId, ELEMENT_B);
    EXPECT_EQ(second.declarations, first.declarations);
    EXPECT_NE(second.declarations, nullptr);
    // The first has been closed and has nothing to undo; the second keeps what it has to.
    EXPECT_EQ(first.undoDeclarations, nullptr);
    EXPECT_NE(second.undoDeclarations, nullptr);
}

TEST(ActiveFormatting, TheTagThatReopensItGivesItNothing)
{
    TreeContext tree("<body><p><b></p><span style='color:red' class=c>");
    tree.build();
    const HtmlTagNodeData& reopened = tree.payloadOf(*tree.stack().below(*tree.stack().last()));
    ASSERT_EQ(reopened.elementId, ELEMENT_B);
    EXPECT_FALSE(reopened.hasAttributes());
    EXPECT_FALSE(reopened.declarations->contains(PROPERTY_COLOR));
    EXPECT_FALSE(reopened.undoDeclarations->contains(PROPERTY_COLOR));
}

TEST(ActiveFormatting, PendingTextGoesIntoWhatIsReopened)
{
    // The blank waits in the table until the text behind the comment opens the b.
    EXPECT_EQ(bodyOf("<p><b></p><table> <!---->x<!---->"), "p[b] table[b[\" x\"]]");
}

TEST(ActiveFormatting, NothingIsReopenedBehindAMarker)
{
    EXPECT_EQ(bodyOf("<p><b><object>x"), "p[b[object[\"x\"]]]");
    EXPECT_EQ(bodyOf("<table><td><b>x</td><td>y"), "table[tbody[tr[td[b[\"x\"]] td[\"y\"]]]]");
    EXPECT_EQ(bodyOf("<p><b></p><object>x</object>"), "p[b] b[object[\"x\"]]");
}

TEST(ActiveFormatting, OnlyWhatIsBehindTheLastOpenOneIsReopened)
{
    EXPECT_EQ(bodyOf("<b><p><i><u></p>x"), "b[p[i[u]] i[u[\"x\"]]]");
}

TEST(ActiveFormatting, ReopensWhatStandsInTheListAlone)
{
    EXPECT_EQ(bodyOf("<p><b></p>x</b>y"), "p[b] b[\"x\"] \"y\"");
}

TEST(ActiveFormatting, AReopenedElementCountsAsANode)
{
    TreeContext tree("<body><p><b></p>x");
    tree.build();
    // html, head, body, p, b, b and the text.
    EXPECT_EQ(tree.tree.nodeCount, 7U);
    EXPECT_EQ(tree.tree.nextId, 8U);
}

} // namespace
