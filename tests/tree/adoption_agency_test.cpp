#include "tree/adoption_agency.h"

#include "support/bail_out.h"
#include "support/exception.h"
#include "support/html_strings.h"
#include "support/process_heap.h"
#include "tests/common/tree_context.h"
#include "tests/tree/naive_tree_builder.h"
#include "tree/active_formatting.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

using testing_support::NaiveToken;
using testing_support::NaiveTreeBuilder;
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

struct Case {
    const char* content;
    const char* body;
};

void expectBodies(const std::vector<Case>& cases)
{
    for (const Case& row : cases)
        EXPECT_EQ(bodyOf(row.content), row.body) << row.content;
}

TEST(AdoptionAgency, ABlockOutlivesTheElement)
{
    expectBodies({
        {"<b>x<p>y</b>z</p>", "b[\"x\"] p[b[\"y\"] \"z\"]"},
        {"<b><p>x</b></p>y", "b p[b[\"x\"]] \"y\""},
        {"<b>x</b>y", "b[\"x\"] \"y\""},
        {"<b><i>x</b>y", "b[i[\"x\"]] i[\"y\"]"},
        {"<b>1<p>2<br>3</b>4", "b[\"1\"] p[b[\"2\" br \"3\"] \"4\"]"},
        {"<b><div>1<p>2</b>3", "b div[b[\"1\"] p[b[\"2\"] \"3\"]]"},
    });
}

TEST(AdoptionAgency, AnEndTagOfWhatIsNotOpen)
{
    expectBodies({
        {"x</b>y", "\"xy\""},
        // The b in the list is no longer open: it goes from the list.
        {"<p><b></p></b>y", "p[b] \"y\""},
        // Another block shuts the one out that is not in the list.
        {"<div></b>x", "div[\"x\"]"},
    });
}

TEST(AdoptionAgency, AnElementThatIsListedAndNotOpenLeavesTheList)
{
    TreeContext tree("<body><p><b></p>");
    tree.build();
    tree.context.parseError = 0;
    const Token endTag = SyntheticEndTag(ELEMENT_B);
    EXPECT_EQ(HandleFormattingEndTag(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 0);
}

TEST(AdoptionAgency, AnElementThatIsOpenAndNotListedIsTakenDown)
{
    EXPECT_EQ(bodyOf(repeated("<font color=red>", 4) + "x" + repeated("</font>", 4) + "y"),
        "font[font[font[font[\"x\"]]]] \"y\"");
    // Without the fourth end tag the text stays in what is not listed.
    EXPECT_EQ(bodyOf(repeated("<font color=red>", 4) + "x" + repeated("</font>", 3) + "y"),
        "font[font[font[font[\"x\"]]] \"y\"]");
}

TEST(AdoptionAgency, OutOfScopeIsIgnored)
{
    TreeContext tree("<body><b><object>x");
    tree.build();
    ActiveFormattingList& list = *tree.context.activeFormatting;
    // Without its marker the object still shuts the b out.
    HtmlTreeNode* const b = tree.find(ELEMENT_B);
    ClearFormattingToMarker(list);
    ASSERT_EQ(list.last(), b);
    const Token endTag = SyntheticEndTag(ELEMENT_B);
    tree.context.parseError = 0;
    EXPECT_EQ(HandleFormattingEndTag(&endTag, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(list.last(), b);
    EXPECT_TRUE(tree.stack().contains(*b));
}

struct ErrorCase {
    const char* content;
    std::uint32_t parseError;
};

TEST(AdoptionAgency, ParseErrors)
{
    const ErrorCase cases[] = {
        {"<b>x</b>", 0},
        {"<b><i>x</b>", 1},
        {"<b><p>x</b>", 1},
        {"x</b>", 1},
        {"<div>x</b>", 1},
        {"<p><b></p></b>", 1},
        {"<a>x</a><a>y", 0},
        {"<a>x<a>", 1},
    };
    for (const ErrorCase& row : cases) {
        TreeContext tree(std::string("<html><head></head><body>") + row.content);
        tree.build();
        EXPECT_EQ(tree.context.parseError, row.parseError) << row.content;
    }
}

TEST(AdoptionAgency, AnElementInTheWayIsClosedOrCloned)
{
    expectBodies({
        {"<b><span><p>x</b>y", "b[span] p[b[\"x\"] \"y\"]"},
        {"<b><i><p>x</b>y", "b[i] i[p[b[\"x\"] \"y\"]]"},
        {"<b><i><span><u><p>x</b>y</p>z", "b[i[span[u]]] i[u[p[b[\"x\"] \"y\"] \"z\"]]"},
    });
}

TEST(AdoptionAgency, ThreePassesAtMost)
{
    expectBodies({
        // Four to clone: the i stays where it is, under the clones, and is open no more below p.
        {"<b><i><u><s><em><p>x</b>y", "b[i[u[s[em]]]] u[s[em[p[b[\"x\"] \"y\"]]]]"},
        // Four to close: the first span stays open and takes what comes behind the p.
        {"<b><span><span><span><span><p>x</b>y</p>z",
            "b[span[span[span[span]] \"z\"]] p[b[\"x\"] \"y\"]"},
        // Closed ones count as well.
        {"<b><u><span><i><span><p>x</b>y</p>z", "b[u[span[i[span]]]] i[p[b[\"x\"] \"y\"] \"z\"]"},
    });
}

TEST(AdoptionAgency, EightRoundsAtMost)
{
    const auto blocks = [](int from, int to, const std::string& inner) {
        std::string body = inner;
        for (int i = to; i >= from; --i)
            body = i == to ? "div[b[" + body + "]]" : "div[b " + body + "]";
        return body;
    };
    const auto content = [](int divs) { return "<b>" + repeated("<div>", divs) + "x</b>y"; };
    // Seven blocks leave a round for the last b to be closed in.
    EXPECT_EQ(
        bodyOf(content(7)), "b " + repeated("div[b ", 6) + "div[b[\"x\"] \"y\"" + repeated("]", 7));
    // With eight the last b stays open.
    EXPECT_EQ(bodyOf(content(8)), "b " + blocks(1, 8, "\"xy\""));
    // And more blocks are not looked at.
    EXPECT_EQ(bodyOf(content(10)), "b " + blocks(1, 8, "div[div[\"xy\"]]"));
}

TEST(AdoptionAgency, IntermediateClonesAreBare)
{
    TreeContext tree("<body><div><b class=c><i id=k style='color:red'><p>x</b></div>y");
    tree.build();
    // The i that is opened again behind the div comes from the clone and has nothing either.
    EXPECT_EQ(tree.outline(),
        "html\n  head\n  body\n    div\n      b class=\"c\"\n"
        "        i id=\"k\" style=\"color:red\"\n      i\n        p\n          b class=\"c\"\n"
        "            \"x\"\n    i\n      \"y\"\n");
    const HtmlTreeNode& div = *tree.find(ELEMENT_DIV);
    const HtmlTagNodeData& clone = tree.payloadOf(*div.lastChild);
    const HtmlTagNodeData& reopened = tree.payloadOf(*tree.stack().last());
    EXPECT_EQ(clone.elementId, ELEMENT_I);
    EXPECT_EQ(clone.declarations, nullptr);
    EXPECT_EQ(clone.undoDeclarations, nullptr);
    EXPECT_EQ(reopened.elementId, ELEMENT_I);
    EXPECT_EQ(reopened.declarations, nullptr);
}

TEST(AdoptionAgency, TheCopyInTheBlockHasAttributesAndStyle)
{
    TreeContext tree("<body><b class=c style='color:red'>" + repeated("<div>", 8) + "</b>");
    tree.build();
    const HtmlTreeNode* const first = tree.find(ELEMENT_B);
    const HtmlTreeNode* const last = tree.stack().last();
    ASSERT_EQ(elementOf(*last), ELEMENT_B);
    const HtmlTagNodeData& original = tree.payloadOf(*first);
    const HtmlTagNodeData& copy = tree.payloadOf(*last);
    EXPECT_EQ(copy.declarations, original.declarations);
    EXPECT_NE(copy.declarations, nullptr);
    EXPECT_EQ(copy.findAttribute(ATTRIBUTE_CLASS), original.findAttribute(ATTRIBUTE_CLASS));
    EXPECT_NE(copy.findAttribute(ATTRIBUTE_CLASS), nullptr);
    // What has to be undone is copied; the original's stays with it, as nothing has popped it.
    EXPECT_NE(copy.undoDeclarations, nullptr);
    EXPECT_NE(original.undoDeclarations, nullptr);
    EXPECT_NE(copy.undoDeclarations, original.undoDeclarations);
}

TEST(AdoptionAgency, CountsTheCopyAndNotTheClones)
{
    TreeContext tree("<body><b><i><p></b>");
    tree.build();
    // html, head, body, b, i, p and the b in the p; the clone of the i has a number only.
    EXPECT_EQ(tree.tree.nodeCount, 7U);
    EXPECT_EQ(tree.tree.nextId, 9U);
    EXPECT_EQ(tree.find(ELEMENT_P)->firstChild->id, 8U);
    EXPECT_EQ(tree.find(ELEMENT_P)->parent->id, 7U);
}

TEST(AdoptionAgency, TheCopyIsListedBehindTheInnermostClone)
{
    // The last b stays in the list: behind the i, so both are opened again, the b in the i.
    EXPECT_EQ(bodyOf("<div><b><i>" + repeated("<div>", 9) + "</b>" + repeated("</div>", 10) + "y"),
        "div[b[i] i[" + repeated("div[b ", 7) + "div[b[div]]" + repeated("]", 8) + "] i[b[\"y\"]]");
    TreeContext tree("<body><b><u><i>" + repeated("<div>", 9) + "</b>");
    tree.build();
    const ActiveFormattingList& list = *tree.context.activeFormatting;
    const HtmlTreeNode* const copy = list.last();
    ASSERT_EQ(elementOf(*copy), ELEMENT_B);
    ASSERT_EQ(elementOf(*list.before(*copy)), ELEMENT_I);
    EXPECT_EQ(list.before(*copy)->parent, list.before(*list.before(*copy)));
    EXPECT_EQ(list.getCount(), 3);
}

TEST(AdoptionAgency, WithoutAClonedOneTheCopyTakesThePlaceInTheList)
{
    TreeContext tree("<body><b><i><span><span><span>" + repeated("<div>", 9) + "</b>");
    tree.build();
    const ActiveFormattingList& list = *tree.context.activeFormatting;
    ASSERT_EQ(list.getCount(), 2);
    EXPECT_EQ(elementOf(*list.last()), ELEMENT_I);
    EXPECT_EQ(elementOf(*list.before(*list.last())), ELEMENT_B);
}

TEST(AdoptionAgency, InATableTheBlockGoesInFrontOfIt)
{
    expectBodies({
        {"<table><b><div>x</b>y", "b div[b[\"x\"] \"y\"] table"},
        {"<table><tr><b><i><div>x</b>y", "b[i] i[div[b[\"x\"] \"y\"]] table[tbody[tr]]"},
        {"<table><td><b><div>x</b>y", "table[tbody[tr[td[b div[b[\"x\"] \"y\"]]]]]"},
    });
}

TEST(AdoptionAgency, AnAnchorEndsTheOneBefore)
{
    TreeContext tree("<body><a href=1>x<a href=2>y</a>");
    tree.build();
    EXPECT_EQ(tree.outline(),
        "html\n  head\n  body\n    a href=\"1\"\n      \"x\"\n    a href=\"2\"\n      \"y\"\n");
    expectBodies({
        {"<a>x<p>y<a>z", "a[\"x\"] p[a[\"y\"] a[\"z\"]]"},
        // Out of scope the end tag does nothing; the a goes from stack and list all the same.
        {"<a>1<table><a>2</table>3", "a[\"1\" a[\"2\"] table] a[\"3\"]"},
        {"<p><a></p><a>x", "p[a] a[\"x\"]"},
        {"<a><object><a>x", "a[object[a[\"x\"]]]"},
    });
}

TEST(AdoptionAgency, CurrentNodeIsTheTopOfTheStackAfterwards)
{
    for (const char* content : {"<b><p>x</b>", "<b><i><p>x</b>", "<b><span><p>x</b>",
             "<b><div><div><div><div><div><div><div><div></b>", "<a><table><a>", "<a><p><a>"}) {
        TreeContext tree(std::string("<body>") + content);
        tree.build();
        EXPECT_EQ(tree.context.currentNode, tree.stack().last()) << content;
    }
}

/// Elements and texts that can be reached from the root.
std::size_t countNodes(TreeContext& tree)
{
    std::size_t count = 0;
    for (HtmlTreeNode* node = tree.tree.root(); node != nullptr;
         node = nextInDocumentOrder(node, tree.tree.root()))
        ++count;
    return count;
}

TEST(AdoptionAgency, NoFailedAllocationLosesAPartOfTheTree)
{
    bool failed = true;
    std::uint32_t n = 0;
    while (failed) {
        ++n;
        TreeContext tree("<body><b class=c style='color:red'><i><u><div><br><div>x");
        tree.build();
        FlushPendingText(tree.context);
        const std::size_t before = countNodes(tree);
        const Token endTag = SyntheticEndTag(ELEMENT_B);
        zorvan::failNthAllocation(n);
        failed = false;
        try {
            HandleFormattingEndTag(&endTag, tree.context);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        zorvan::clearAllocationFailure();
        EXPECT_GE(countNodes(tree), before) << n;
        // And the host may read on.
        HandleFormattingEndTag(&endTag, tree.context);
        EXPECT_GE(countNodes(tree), before) << n;
    }
    // The attributes and the undo list of two copies.
    EXPECT_GT(n, 4U);
}

// A table whose start tag has failed stands inside what moves in front of it later: the tree must
// stay a tree.
TEST(AdoptionAgency, TableThatHasFailedIsNoPlaceForItsOwnContainer)
{
    bool reached = true;
    for (std::uint32_t n = 1; reached; ++n) {
        TreeContext tree("<body><table id=k style='font-family:q;margin-left:3em'><font color=blue>"
                         "<div><table><font color=red><font color=red><font color=red>"
                         "<font color=red></font></font></font></font>x");
        zorvan::failNthAllocation(n);
        for (int slices = 0; slices < 2; ++slices) {
            try {
                tree.build();
            } catch (const std::bad_alloc&) {
            } catch (const zorvan::Exception&) {
            } catch (const UTBailOut&) {
            }
            reached = zorvan::allocationsSeen() >= n;
            zorvan::clearAllocationFailure();
            tree.context.statusFlags = 0;
        }
        HtmlTreeNode* node = tree.tree.root();
        std::uint32_t count = 0;
        while ((node = nextInDocumentOrder(node, tree.tree.root())) != nullptr) {
            ASSERT_LE(++count, tree.tree.nextId) << n;
            std::uint32_t depth = 0;
            for (const HtmlTreeNode* above = node; above != nullptr; above = above->parent)
                ASSERT_LE(++depth, tree.tree.nextId) << n;
        }
    }
}

// --- Random documents against rules that are told in arrays and walks.

NaiveToken startTag(std::uint32_t element, const char* attribute = "", const char* text = "",
    int attributeClass = 0)
{
    return {NaiveToken::StartTag, element, 0, attribute, text, attributeClass};
}

NaiveToken endTag(std::uint32_t element) { return {NaiveToken::EndTag, element, 0, {}, {}, 0}; }

NaiveToken character(char c) { return {NaiveToken::Character, 0, c, {}, {}, 0}; }

/// How many tokens of the alphabet stand in front of those of tables.
constexpr std::size_t kWithoutTables = 24;

/// What random documents are made of; what stands here twice is twice as frequent.
std::vector<NaiveToken> makeAlphabet()
{
    return {startTag(ELEMENT_B), endTag(ELEMENT_B), startTag(ELEMENT_B), endTag(ELEMENT_B),
        startTag(ELEMENT_B, " class=c", " class=\"c\"", -1), startTag(ELEMENT_I), endTag(ELEMENT_I),
        startTag(ELEMENT_A), endTag(ELEMENT_A),
        startTag(ELEMENT_FONT, " color=red", " color=color:#ff0000", 1),
        startTag(ELEMENT_FONT, " color=blue", " color=color:#0000ff", 2),
        startTag(ELEMENT_FONT, " face=f", " face=\"f\"", -1), endTag(ELEMENT_FONT),
        startTag(ELEMENT_P), endTag(ELEMENT_P), startTag(ELEMENT_DIV), endTag(ELEMENT_DIV),
        startTag(ELEMENT_SPAN), endTag(ELEMENT_SPAN), startTag(ELEMENT_OBJECT),
        endTag(ELEMENT_OBJECT), character('x'), character('y'), character(' '),
        startTag(ELEMENT_TABLE), endTag(ELEMENT_TABLE), startTag(ELEMENT_TD), endTag(ELEMENT_TD),
        startTag(ELEMENT_TR), endTag(ELEMENT_TR), startTag(ELEMENT_TBODY), endTag(ELEMENT_TBODY),
        startTag(ELEMENT_CAPTION, "", " align=enum:2048"), endTag(ELEMENT_CAPTION)};
}

std::string markupOf(const NaiveToken& token)
{
    if (token.kind == NaiveToken::Character)
        return std::string(1, token.character);
    const std::string name = zorvan::HTMLStrings::elementName(token.element);
    return token.kind == NaiveToken::EndTag ? "</" + name + '>'
                                            : '<' + name + token.attribute + '>';
}

class RandomDocuments {
public:
    explicit RandomDocuments(unsigned seed)
        : random_(seed)
        , alphabet_(makeAlphabet())
    {
    }

    /// Builds a document of so many tokens in both ways.
    void check(std::size_t length, bool withTables)
    {
        const std::size_t kinds = withTables ? alphabet_.size() : kWithoutTables;
        NaiveTreeBuilder naive;
        std::string markup = "<html><head></head><body>";
        for (std::size_t i = 0; i < length; ++i) {
            const NaiveToken& token = alphabet_[random_() % kinds];
            markup += markupOf(token);
            naive.process(token);
        }
        naive.finish();
        TreeContext tree(markup);
        tree.build();
        ASSERT_EQ(tree.outline(), naive.outline()) << markup;
        ASSERT_EQ(tree.tree.nodeCount, naive.nodeCount) << markup;
        ASSERT_EQ(tree.tree.nextId, naive.nextId) << markup;
        ASSERT_EQ(tree.context.parseError, naive.parseError ? 1U : 0U) << markup;
    }

private:
    std::mt19937 random_;
    std::vector<NaiveToken> alphabet_;
};

/// The seed of the run, which --gtest_shuffle changes.
unsigned runSeed()
{
    return 20'260'102U + static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed());
}

TEST(AdoptionAgency, RandomDocumentsWithoutTables)
{
    RandomDocuments documents(runSeed());
    for (std::size_t i = 0; i < 3'000 && !HasFatalFailure(); ++i)
        documents.check(4 + i % 60, /*withTables=*/false);
}

TEST(AdoptionAgency, RandomDocumentsWithTables)
{
    RandomDocuments documents(runSeed() + 1);
    for (std::size_t i = 0; i < 3'000 && !HasFatalFailure(); ++i)
        documents.check(4 + i % 60, /*withTables=*/true);
}

TEST(AdoptionAgency, LongRandomDocuments)
{
    RandomDocuments documents(runSeed() + 2);
    for (std::size_t i = 0; i < 20 && !HasFatalFailure(); ++i)
        documents.check(2'000, /*withTables=*/i % 2 != 0);
}

} // namespace
