#include "tree/in_body.h"

#include "style/css_declaration_list.h"
#include "tests/common/tree_context.h"
#include "tests/tree/mode_rules.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::tokenOf;
using testing_support::TreeContext;

struct OutlineRow {
    const char* markup;
    const char* outline;
};

TEST(BodyMerge, SecondHtmlGivesWhatTheFirstLacks)
{
    const OutlineRow rows[] = {
        {"<html id=a title=t><body><html id=b class=c>",
            "html class=\"c\" id=\"a\" title=\"t\"\n  head\n  body\n"},
        {"<html><html style=s id=a class=c>", "html class=\"c\" id=\"a\" style=\"s\"\n"},
        {"<html id=a><html>", "html id=\"a\"\n"},
        {"<html id=''><html id=b>", "html id=\"\"\n"},
        {"<html id><html id=b>", "html id=\"b\"\n"},
        {"<head><html id=a>", "html id=\"a\"\n  head\n"},
        {"<frameset><html id=a>", "html id=\"a\"\n  head\n  frameset\n"},
        {"<body><div><span><html class=c><html class=d id=e>",
            "html class=\"c\" id=\"e\"\n  head\n  body\n    div\n      span\n"},
    };
    for (const OutlineRow& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.outline(), row.outline) << row.markup;
    }
}

TEST(BodyMerge, SecondHtmlInTablesAndSelects)
{
    struct Row {
        const char* markup;
        InsertionMode mode;
        const char* open; ///< what is still open, and takes what comes next
        const char* outline;
    };
    using enum InsertionMode;
    const Row rows[] = {
        {"<html id=a><table><colgroup><html id=b class=c>", InColumnGroup, "<col>",
            "html[head body[table[colgroup[col]]]]"},
        {"<html id=a><select><html id=b class=c>", InSelect, "<option>",
            "html[head body[select[option]]]"},
        {"<html id=a><select><option><html id=b class=c>", InSelect, "x",
            "html[head body[select[option[\"x\"]]]]"},
        {"<html id=a><table><td><select><html id=b class=c>", InSelectInTable, "<option>",
            "html[head body[table[tbody[tr[td[select[option]]]]]]]"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.markup);
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.outline().substr(0, tree.outline().find('\n')), "html class=\"c\" id=\"a\"");
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(row.mode));
        const std::string next = row.open;
        tree.stream.bytes.insert(tree.stream.bytes.end(), next.begin(), next.end());
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline);
    }
}

TEST(BodyMerge, SecondHtmlIsAParseError)
{
    TreeContext tree("<html><head></head><body><p>");
    tree.build();
    ASSERT_EQ(tree.context.parseError, 0U);
    tree.context.framesetOk = 1;
    const Token token = tokenOf("<html>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.framesetOk, 1U);
}

TEST(BodyMerge, DeclarationsAreNotTakenOver)
{
    TreeContext tree("<html><body><div><html dir=rtl><body dir=rtl>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html dir=enum:2\n  head\n  body dir=enum:2\n    div\n");
    for (const std::uint32_t element : {ELEMENT_HTML, ELEMENT_BODY}) {
        const auto* list = TreeContext::payloadOf(*tree.find(element)).declarations;
        ASSERT_NE(list, nullptr);
        EXPECT_FALSE(list->contains(PROPERTY_DIRECTION));
    }
}

TEST(BodyMerge, LinkColorOfASecondBodyCounts)
{
    TreeContext tree("<body link=#010203><div><body link=#040506>");
    tree.build();
    EXPECT_EQ(tree.context.linkColor, 0x060504U);
}

TEST(BodyMerge, MergedValuesAreThoseOfTheCache)
{
    TreeContext tree("<body><div dir=rtl id=a>");
    tree.build();
    auto& body = TreeContext::payloadOf(*tree.find(ELEMENT_BODY));
    // The tag's table still stands: what it holds goes to the body, once.
    MergeAttributes(&body, BareToken(ELEMENT_BODY), tree.context);
    HtmlValue* const id = body.findAttribute(ATTRIBUTE_ID);
    MergeAttributes(&body, BareToken(ELEMENT_BODY), tree.context);
    EXPECT_EQ(body.findAttribute(ATTRIBUTE_ID), id);
    EXPECT_EQ(body.findAttribute(ATTRIBUTE_DIR), tree.values.enumValue(2));
    EXPECT_EQ(body.attributes.getCount(), 2);
}

TEST(BodyMerge, TargetOfAnotherElementOrNone)
{
    TreeContext tree("<body><div id=a>");
    tree.build();
    auto& body = TreeContext::payloadOf(*tree.find(ELEMENT_BODY));
    MergeAttributes(&body, BareToken(ELEMENT_HTML), tree.context);
    MergeAttributes(nullptr, BareToken(ELEMENT_BODY), tree.context);
    EXPECT_FALSE(body.hasAttributes());
}

TEST(BodyMerge, BodyIsLookedForBelowTheTop)
{
    struct Row {
        const char* markup;
        const char* outline;
        std::uint32_t framesetOk;
    };
    const Row rows[] = {
        {"<body id=a><body id=b class=c>", "html\n  head\n  body id=\"a\"\n", 0},
        {"<body id=a><div><body id=b class=c>",
            "html\n  head\n  body class=\"c\" id=\"a\"\n    div\n", 0},
        {"<body><div><p><body class=c>", "html\n  head\n  body\n    div\n      p\n", 0},
        {"<div><body class=c>", "html\n  head\n  body class=\"c\"\n    div\n", 0},
        {"<div><p><body class=c>", "html\n  head\n  body\n    div\n      p\n", 1},
        {"<div></div><body class=c>", "html\n  head\n  body\n    div\n", 1},
        {"<div></div><p><body>", "html\n  head\n  body\n    div\n    p\n", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.markup);
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.outline(), row.outline);
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk);
        EXPECT_EQ(tree.context.parseError, 1U);
    }
}

TEST(BodyMerge, LoneEntryHasNothingBelow)
{
    for (const char* tag : {"<body>", "<frameset>"}) {
        TreeContext tree("<html>");
        tree.build();
        const Token token = tokenOf(tag);
        HandleInBodyInsertion(&token, tree.context);
        EXPECT_EQ(tree.shortOutline(), "html") << tag;
        EXPECT_EQ(tree.context.parseError, 1U) << tag;
        EXPECT_EQ(tree.context.framesetOk, 1U) << tag;
    }
}

TEST(BodyMerge, FramesetTakesThePlaceOfTheBody)
{
    const OutlineRow rows[] = {
        {"<div><frameset>", "html[head frameset]"},
        {"<p> <frameset><frame>", "html[head frameset[frame]]"},
        {"<div><p>a</p></div><div><frameset>", R"(html[head body[div[p["a"]] div]])"},
        {"<div><p></p></div><div><frameset>", "html[head frameset]"},
        {"<span><input type=HIDDEN><frameset>", "html[head frameset]"},
        {"<span><input><frameset>", "html[head body[span[input]]]"},
        // Exactly one element has to be open in the body.
        {"<div></div><frameset>", "html[head body[div]]"},
        {"<div><p><frameset>", "html[head body[div[p]]]"},
        // A body with a tag of its own stays.
        {"<body><div><frameset>", "html[head body[div]]"},
        {"<div>a<frameset>b", R"(html[head body[div["ab"]]])"},
        {"<hr><div><frameset>", "html[head body[hr div]]"},
    };
    for (const OutlineRow& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.markup;
        EXPECT_EQ(tree.context.parseError, 1U) << row.markup;
    }
}

TEST(BodyMerge, FramesetHasItsAttributesAndMode)
{
    TreeContext tree("<div id=d><frameset id=f>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  frameset id=\"f\"\n");
    EXPECT_EQ(tree.stack().getCount(), 2);
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_FRAMESET));
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InsertionMode::InFrameset));
}

TEST(BodyMerge, FramesetAnswers)
{
    TreeContext tree("<div>");
    tree.build();
    const Token token = tokenOf("<frameset>");
    tree.context.framesetOk = 0;
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InsertionMode::InBody));
    tree.context.framesetOk = 1;
    tree.context.tagAttributeCount = 0;
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InsertionMode::InFrameset));
}

TEST(BodyMerge, DiscardedBodyCountsAsOneNode)
{
    TreeContext tree("<div><p></p><p></p>");
    tree.build();
    const std::uint32_t before = tree.tree.nodeCount;
    ASSERT_EQ(before, 6U);
    const std::uint32_t nextId = tree.tree.nextId;
    const Token token = tokenOf("<frameset>");
    HandleInBodyInsertion(&token, tree.context);
    EXPECT_EQ(tree.tree.nodeCount, before - 1 + 1);
    EXPECT_EQ(tree.find(ELEMENT_FRAMESET)->id, nextId);
    const HtmlTreeNode* const html = tree.find(ELEMENT_HTML);
    EXPECT_EQ(html->childCount, 2U);
    EXPECT_EQ(html->lastChild->prevSibling, tree.find(ELEMENT_HEAD));
    EXPECT_EQ(tree.find(ELEMENT_HEAD)->nextSibling, html->lastChild);
}

TEST(BodyMerge, FormattingElementAsFirstChildKeepsTheBody)
{
    const OutlineRow rows[] = {
        {"<b><frameset>", "html[head body[b] frameset]"},
        {"<b></b><div><frameset>", "html[head frameset]"},
        {"<b><p></b></p><frameset>", "html[head body[b p[b]]]"},
    };
    for (const OutlineRow& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.markup;
    }
}

TEST(BodyMerge, KeptBodyStaysCounted)
{
    TreeContext tree("<b><frameset>");
    tree.build();
    EXPECT_EQ(tree.tree.nodeCount, 5U);
    EXPECT_EQ(tree.stack().getCount(), 2);
    EXPECT_EQ(tree.tree.discardedRoot()->firstChild, nullptr);
}

TEST(BodyMerge, ListedElementsOfADiscardedBodyStayReadable)
{
    // White space behind the document opens again what the list still has.
    TreeContext tree("<div><b id=x></div><p><frameset></frameset></html> ");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  frameset\n  b id=\"x\"\n    \" \"\n");
}

TEST(BodyMerge, FormOfADiscardedBodyStaysReadable)
{
    TreeContext tree("<form id=x><frameset>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head frameset]");
    ASSERT_NE(tree.context.formElement, nullptr);
    EXPECT_EQ(testing_support::nodeText(*tree.context.formElement), "form id=\"x\"");
}

TEST(BodyMerge, DeepBodyIsDiscardedInALoop)
{
    std::string markup;
    for (int i = 0; i < 20'000; ++i)
        markup += "<span>";
    TreeContext tree(markup);
    tree.build();
    while (tree.stack().getCount() > 3)
        PopElement(tree.context);
    SetInsertionMode(InsertionMode::InBody, tree.context);
    ASSERT_EQ(tree.context.framesetOk, 1U);
    const Token token = tokenOf("<frameset>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.shortOutline(), "html[head frameset]");
}

TEST(BodyMerge, BodyThatHangsNowhereIsDiscardedUncounted)
{
    TreeContext tree("<div>");
    tree.build();
    tree.tree.detach(tree.find(ELEMENT_BODY));
    const std::uint32_t before = tree.tree.nodeCount;
    const Token token = tokenOf("<frameset>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.tree.nodeCount, before + 1);
    EXPECT_EQ(tree.shortOutline(), "html[head frameset]");
}

} // namespace
