#include "tree/in_body.h"

#include "tests/common/tree_context.h"
#include "tests/containers/expect_failure.h"
#include "tests/tree/mode_rules.h"
#include "tests/tree/naive_body.h"
#include "tests/tree/open_stack.h"
#include "tree/active_formatting.h"
#include "tree/element_sets.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace {

using testing_support::Elements;
using testing_support::expectFailure;
using testing_support::expectTrees;
using testing_support::kTellingElements;
using testing_support::NaiveBody;
using testing_support::openElementsOf;
using testing_support::openOnly;
using testing_support::tokenOf;
using testing_support::TreeContext;

using enum InsertionMode;

constexpr std::uint32_t kLastElement = 135;
constexpr std::uint32_t kNamelessElement = 116;

/// Elements whose end tags need more than a stack of element ids to tell about.
constexpr ElementSet kOtherRules{ELEMENT_A, ELEMENT_B, ELEMENT_BIG, ELEMENT_BODY, ELEMENT_BR,
    ELEMENT_CODE, ELEMENT_EM, ELEMENT_FONT, ELEMENT_FORM, ELEMENT_HTML, ELEMENT_I, ELEMENT_NOBR,
    ELEMENT_S, ELEMENT_SMALL, ELEMENT_STRIKE, ELEMENT_STRONG, ELEMENT_TT, ELEMENT_U};

std::string text(const Elements& elements)
{
    std::string joined;
    for (const std::uint32_t element : elements)
        joined += ' ' + std::to_string(element);
    return joined;
}

void compare(std::uint32_t endTag, const Elements& open, TreeContext& tree)
{
    SCOPED_TRACE("</" + std::to_string(endTag) + "> with" + text(open));
    NaiveBody naive(open);
    const int answer = naive.endTag(endTag);
    openOnly(open, tree);
    const Token token = SyntheticEndTag(endTag);
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), answer);
    EXPECT_EQ(tree.context.parseError, naive.parseError ? 1U : 0U);
    EXPECT_EQ(openElementsOf(tree), naive.stack);
    EXPECT_EQ(tree.context.currentNode, tree.stack().last());
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody));
}

TEST(InBodyEndTags, EveryEndTagAgainstTheWalk)
{
    TreeContext tree;
    for (std::uint32_t endTag = 1; endTag <= kLastElement; ++endTag) {
        if (endTag == kNamelessElement || kOtherRules.contains(endTag))
            continue;
        compare(endTag, {ELEMENT_HTML, ELEMENT_BODY}, tree);
        compare(endTag, {ELEMENT_HTML, ELEMENT_BODY, endTag}, tree);
        compare(endTag, {ELEMENT_HTML, ELEMENT_BODY, endTag, ELEMENT_P, ELEMENT_OPTION}, tree);
        compare(endTag, {ELEMENT_HTML, endTag, ELEMENT_SPAN, endTag, ELEMENT_RT}, tree);
        for (const std::uint32_t between : kTellingElements)
            compare(endTag, {ELEMENT_HTML, ELEMENT_BODY, endTag, between, ELEMENT_SPAN}, tree);
    }
}

TEST(InBodyEndTags, AnyOtherEndTagAgainstTheWalk)
{
    TreeContext tree;
    for (std::uint32_t between = 1; between <= kLastElement; ++between) {
        for (const std::uint32_t sought :
            Elements{ELEMENT_SPAN, ELEMENT_DIV, ELEMENT_B, ELEMENT_SAMP, between}) {
            SCOPED_TRACE(std::to_string(between) + " " + std::to_string(sought));
            const Elements open
                = {ELEMENT_SPAN, ELEMENT_DIV, ELEMENT_SPAN, ELEMENT_B, between, ELEMENT_I};
            NaiveBody naive(open);
            const int answer = naive.anyOtherEndTag(sought);
            openOnly(open, tree);
            const Token endTag = SyntheticEndTag(sought);
            EXPECT_EQ(HandleAnyOtherEndTag(&endTag, tree.context), answer);
            EXPECT_EQ(openElementsOf(tree), naive.stack);
            EXPECT_EQ(tree.context.parseError, naive.parseError ? 1U : 0U);
        }
    }
}

TEST(InBodyEndTags, AnyOtherEndTagAtTheBottom)
{
    TreeContext tree;
    openOnly({ELEMENT_SPAN}, tree);
    const Token other = SyntheticEndTag(ELEMENT_SAMP);
    EXPECT_EQ(HandleAnyOtherEndTag(&other, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.stack().getCount(), 1);
    const Token same = SyntheticEndTag(ELEMENT_SPAN);
    EXPECT_EQ(HandleAnyOtherEndTag(&same, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.stack().getCount(), 0);
}

TEST(InBodyEndTags, AnyOtherEndTagImpliesEndTags)
{
    TreeContext tree;
    openOnly({ELEMENT_HTML, ELEMENT_SPAN, ELEMENT_RT}, tree);
    const Token endTag = SyntheticEndTag(ELEMENT_SPAN);
    EXPECT_EQ(HandleAnyOtherEndTag(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.stack().getCount(), 1);
}

TEST(InBodyEndTags, EndBodyLeavesTheRestOpen)
{
    TreeContext tree("<p><b>a</body>");
    tree.build();
    EXPECT_EQ(tree.stack().getCount(), 4);
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(AfterBody));
}

TEST(InBodyEndTags, EndBodyFlushesText)
{
    TreeContext tree("<p>");
    tree.build();
    Token character = {};
    character.flags = TOKEN_CHARACTER;
    character.character = u'a';
    HandleInBodyInsertion(&character, tree.context);
    const Token token = tokenOf("</body>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.pendingText->length, 0);
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[p["a"]]])");
}

/// A body that is not on the stack.
class WithoutBody : public TreeContext {
public:
    WithoutBody()
        : TreeContext("<p>")
    {
        build();
        RemoveFromStack(find(ELEMENT_BODY), context);
    }
};

TEST(InBodyEndTags, EndBodyWithoutABodyIsIgnored)
{
    for (const char* tag : {"</body>", "</html>"}) {
        WithoutBody tree;
        const Token token = tokenOf(tag);
        EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_IGNORED) << tag;
        EXPECT_EQ(tree.context.parseError, 1U) << tag;
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody)) << tag;
    }
}

TEST(InBodyEndTags, EndBodyWithALoneHtmlFails)
{
    TreeContext tree("<html>");
    tree.build();
    const Token token = tokenOf("</body>");
    expectFailure(137, "Index is too small.", [&] { HandleInBodyInsertion(&token, tree.context); });
}

TEST(InBodyEndTags, ParagraphEndTagAlone)
{
    expectTrees({
        {"<body>a</p>b", R"(html[head body["a" p "b"]])"},
        {"<body><p>a</p>b</p>c", R"(html[head body[p["a"] "b" p "c"]])"},
        {"<p><button></p>a", R"(html[head body[p[button[p "a"]]]])"},
        {"<p><span>a</p>b", R"(html[head body[p[span["a"]] "b"]])"},
        {"<p><object></p>a", R"(html[head body[p[object[p "a"]]]])"},
    });
}

TEST(InBodyEndTags, ParagraphMadeByAnEndTagHasNoAttributes)
{
    TreeContext tree("<body></p id=a>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    p\n");
    EXPECT_EQ(tree.context.parseError, 1U);
}

TEST(InBodyEndTags, BreakEndTagIsABreak)
{
    TreeContext tree("<p>a</br id=x>b");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[p["a" br "b"]]])");
    EXPECT_FALSE(tree.find(ELEMENT_BR)->data->hasAttributes());
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.framesetOk, 0U);
}

TEST(InBodyEndTags, HeadingIsNotClosedByTheEndTagOfAnother)
{
    for (std::uint32_t open = ELEMENT_H1; open <= ELEMENT_H6; ++open) {
        for (std::uint32_t closed = ELEMENT_H1; closed <= ELEMENT_H6; ++closed) {
            const std::string name = "h" + std::to_string(open - ELEMENT_H1 + 1);
            const std::string other = "h" + std::to_string(closed - ELEMENT_H1 + 1);
            TreeContext tree("<body><" + name + ">a</" + other + ">b");
            tree.build();
            EXPECT_EQ(tree.shortOutline(),
                "html[head body[" + name + (open == closed ? R"(["a"] "b"]])" : R"(["ab"]]])"));
            EXPECT_EQ(tree.context.parseError, open == closed ? 0U : 1U);
        }
    }
}

TEST(InBodyEndTags, PreformattedEndTagsClearTheMark)
{
    for (const char* tag : {"</pre>", "</listing>"}) {
        for (const char* markup : {"<body>", "<pre>", "<listing>"}) {
            TreeContext tree(markup);
            tree.build();
            tree.context.preListingOpen = 1;
            const Token token = tokenOf(tag);
            HandleInBodyInsertion(&token, tree.context);
            EXPECT_EQ(tree.context.preListingOpen, 0U) << tag << markup;
        }
    }
    TreeContext tree("<pre></div>");
    tree.build();
    EXPECT_EQ(tree.context.preListingOpen, 1U);
}

TEST(InBodyEndTags, FormEndsAndIsForgotten)
{
    struct Row {
        const char* markup;
        const char* outline;
        std::int32_t open;
        std::uint32_t parseError;
    };
    const Row rows[] = {
        {"<html><head></head><body><form><p></p></form><i>", "html[head body[form[p] i]]", 3, 0},
        {"<html><head></head><body><form><p></form><i>", "html[head body[form[p] i]]", 3, 0},
        // What is open in the form stays open.
        {"<html><head></head><body><form><div></form><i>", "html[head body[form[div[i]]]]", 4, 1},
        {"<html><head></head><body><form></form></form><i>", "html[head body[form i]]", 3, 1},
        {"<html><head></head><body></form><i>", "html[head body[i]]", 3, 1},
        // A form behind a stopper is forgotten all the same.
        {"<html><head></head><body><form><object></form></object></form><i>",
            "html[head body[form[object i]]]", 4, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.markup);
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline);
        EXPECT_EQ(tree.stack().getCount(), row.open);
        EXPECT_EQ(tree.context.parseError, row.parseError);
        EXPECT_EQ(tree.context.formElement, nullptr);
        EXPECT_EQ(tree.context.currentNode, tree.stack().last());
    }
}

TEST(InBodyEndTags, FormEndTagAnswers)
{
    for (const auto& [markup, answer] :
        {std::pair{"<form>", ANSWER_USED}, {"<body>", ANSWER_IGNORED},
            {"<form><object>", ANSWER_IGNORED}, {"<form><div>", ANSWER_USED}}) {
        TreeContext tree(markup);
        tree.build();
        const Token token = tokenOf("</form>");
        EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), answer) << markup;
    }
}

TEST(InBodyEndTags, TextAtTheEndOfAFormGoesBehindIt)
{
    expectTrees({
        {"<body><form>a</form>b", R"(html[head body[form "ab"]])"},
        {"<body><form><p>a</form>b", R"(html[head body[form[p["a"]] "b"]])"},
        {"<body><form>a<br>b</form><i>c", R"(html[head body[form["a" br] "b" i["c"]]])"},
        {"<body><form><div>a</form>b</div>c", R"(html[head body[form[div["ab"]] "c"]])"},
    });
}

TEST(InBodyEndTags, ListItemEndTagStopsAtLists)
{
    expectTrees({
        {"<body><li><ul></li>a", R"(html[head body[li[ul["a"]]]])"},
        {"<body><li><ol></li>a", R"(html[head body[li[ol["a"]]]])"},
        {"<body><li><dl></li>a", R"(html[head body[li[dl] "a"]])"},
        {"<body><dd><ul></dd>a", R"(html[head body[dd[ul] "a"]])"},
        {"<body><dd></dt>a", R"(html[head body[dd["a"]]])"},
    });
}

TEST(InBodyEndTags, EmbeddedContentTakesItsMarkerAlong)
{
    for (const std::string name : {"applet", "marquee", "object"}) {
        SCOPED_TRACE(name);
        TreeContext tree("<body><b><" + name + "><i>");
        tree.build();
        const ActiveFormattingList& list = *tree.context.activeFormatting;
        ASSERT_EQ(list.getCount(), 3);
        const Token endTag = tokenOf("</" + name + ">");
        EXPECT_EQ(HandleInBodyInsertion(&endTag, tree.context), ANSWER_USED);
        ASSERT_EQ(list.getCount(), 1);
        EXPECT_EQ(list.last(), tree.find(ELEMENT_B));
        // One that is not open leaves the list alone.
        EXPECT_EQ(HandleInBodyInsertion(&endTag, tree.context), ANSWER_USED);
        EXPECT_EQ(list.getCount(), 1);
    }
}

TEST(InBodyEndTags, EmbeddedContentOutOfScopeKeepsItsMarker)
{
    TreeContext tree("<body><object><marquee>");
    tree.build();
    const Token endTag = tokenOf("</object>");
    EXPECT_EQ(HandleInBodyInsertion(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 2);
    EXPECT_EQ(tree.context.parseError, 1U);
}

TEST(InBodyEndTags, FormattingEndTagsRepairWhatTheyEnd)
{
    for (const std::string name : {"a", "b", "big", "code", "em", "font", "i", "nobr", "s", "small",
             "strike", "strong", "tt", "u"}) {
        TreeContext tree("<body><" + name + "><p>x</" + name + ">y");
        tree.build();
        EXPECT_EQ(tree.shortOutline(), "html[head body[" + name + " p[" + name + R"(["x"] "y"]]])");
    }
}

TEST(InBodyEndTags, DeepNestingEndsInLinearTime)
{
    // Each end tag asks for the whole stack by the rule as it is told.
    constexpr int kDepth = 20'000;
    std::string markup = "<body>";
    for (int i = 0; i < kDepth; ++i)
        markup += "<div>";
    for (int i = 0; i < kDepth; ++i)
        markup += "</span></li></h1></form>";
    for (int i = 0; i < kDepth; ++i)
        markup += "</div>";
    TreeContext tree(markup);
    tree.build();
    EXPECT_EQ(tree.stack().getCount(), 2);
}

} // namespace
