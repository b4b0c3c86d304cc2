#include "tree/insertion_modes.h"

#include "support/html_names.h"
#include "tests/common/tree_context.h"
#include "tests/containers/expect_failure.h"
#include "tests/tree/mode_rules.h"
#include "tree/element_sets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing_support::checkModeRules;
using testing_support::expectFailure;
using testing_support::tokenOf;
using testing_support::TreeContext;

using enum InsertionMode;

TEST(InBody, Rules)
{
    const char* const body = "html[head body]";
    checkModeRules({InBody, HandleInBodyInsertion, "<body>",
        {
            {"zero", ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"space", ANSWER_USED, InBody, false, "html[head body[%]]", "html body", ""},
            {"character", ANSWER_USED, InBody, false, "html[head body[%]]", "html body",
                "framesetOk=0"},
            {"null", ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"<html>", ANSWER_USED, InBody, true, body, "html body", ""},
            {"<base> <basefont> <bgsound> <command> <link> <meta>", ANSWER_USED, InBody, false,
                "html[head body[%]]", "html body", ""},
            {"<title>", ANSWER_USED, Text, false, "html[head body[%]]", "html body %", "original"},
            {"<noframes> <style> <noembed>", ANSWER_USED, Text, false, "html[head body[%]]",
                "html body %", "original raw=1"},
            {"<xmp>", ANSWER_USED, Text, false, "html[head body[%]]", "html body %",
                "framesetOk=0 original raw=1"},
            {"<textarea>", ANSWER_USED, Text, false, "html[head body[%]]", "html body %",
                "framesetOk=0 original raw=3"},
            {"<script>", ANSWER_USED, InBody, false, body, "html body", ""},
            {"<body> <frameset>", ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"<image>", ANSWER_USED, InBody, true, "html[head body[img]]", "html body",
                "framesetOk=0"},
            {"<area> <br> <embed> <hr> <img> <input> <keygen> <wbr>", ANSWER_USED, InBody, false,
                "html[head body[%]]", "html body", "framesetOk=0"},
            {"<param> <source> <track>", ANSWER_USED, InBody, false, "html[head body[%]]",
                "html body", ""},
            {"start", ANSWER_USED, InBody, false, "html[head body[%]]", "html body %", ""},
            {"</body>", ANSWER_USED, AfterBody, false, body, "html body", ""},
            {"</html>", ANSWER_AGAIN, AfterBody, false, body, "html body", ""},
            {"end", ANSWER_IGNORED, InBody, true, body, "html body", ""},
        }});
}

struct VoidRow {
    const char* token;
    std::uint32_t framesetOk;
};

TEST(InBody, VoidElementsAreClosedAtOnce)
{
    const VoidRow rows[] = {{"<area>", 0}, {"<br>", 0}, {"<embed>", 0}, {"<img>", 0},
        {"<keygen>", 0}, {"<wbr>", 0}, {"<input>", 0}, {"<param>", 1}, {"<source>", 1},
        {"<track>", 1}, {"<hr>", 0}, {"<image>", 0}, {"<meta>", 1}};
    for (const VoidRow& row : rows) {
        TreeContext tree("<p>");
        tree.build();
        ASSERT_EQ(tree.context.framesetOk, 1U);
        const std::int32_t before = tree.stack().getCount() - (row.token == std::string("<hr>"));
        const Token token = tokenOf(row.token);
        HandleInBodyInsertion(&token, tree.context);
        EXPECT_EQ(tree.stack().getCount(), before) << row.token;
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.token;
    }
}

TEST(InBody, RuleClosesAParagraph)
{
    TreeContext tree("<p>a<hr>b");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[\"a\"] hr \"b\"]]");
}

TEST(InBody, HiddenInputsKeepFramesetOk)
{
    const VoidRow rows[] = {{"<input type=hidden>", 1}, {"<input type=HIDDEN>", 1},
        {"<input type='hidden'>", 1}, {"<input>", 0}, {"<input type>", 0}, {"<input type=''>", 0},
        {"<input type=hidde>", 0}, {"<input type=hiddenn>", 0}, {"<input type=text>", 0},
        {"<input type=hidden type=text>", 1}};
    for (const VoidRow& row : rows) {
        TreeContext tree("<p>" + std::string(row.token));
        tree.build();
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.token;
    }
}

TEST(InBody, SyntheticInputHasNoTypeOfATagBeforeIt)
{
    TreeContext tree("<p><input type=hidden>");
    tree.build();
    ASSERT_EQ(tree.context.tagAttributeCount, 1U);
    ASSERT_EQ(tree.context.framesetOk, 1U);
    const Token token = SyntheticStartTag(ELEMENT_INPUT);
    HandleInBodyInsertion(&token, tree.context);
    EXPECT_EQ(tree.context.framesetOk, 0U);
}

TEST(InBody, TextElementsAndFramesetOk)
{
    const VoidRow rows[] = {{"<textarea>", 0}, {"<xmp>", 0}, {"<noembed>", 1}, {"<style>", 1},
        {"<title>", 1}, {"<div>", 1}};
    for (const VoidRow& row : rows) {
        TreeContext tree("<p>" + std::string(row.token));
        tree.build();
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.token;
    }
}

TEST(InBody, OneLineFeedBehindATextareaIsDropped)
{
    struct Row {
        const char* markup;
        const char* outline;
    };
    const Row rows[] = {
        {"<p><textarea>\na</textarea>", "html[head body[p[textarea[\"a\"]]]]"},
        {"<p><textarea>\n\na</textarea>", "html[head body[p[textarea[\"\\u000aa\"]]]]"},
        {"<p><textarea>\r\na</textarea>", "html[head body[p[textarea[\"\\u000d\\u000aa\"]]]]"},
        {"<p><textarea>", "html[head body[p[textarea]]]"},
        {"<p><textarea>\n", "html[head body[p[textarea]]]"},
    };
    for (const Row& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.markup;
    }
}

TEST(InBody, ImageAndImgAreTheSameNode)
{
    TreeContext tree("<image id=a><img id=b>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    img id=\"a\"\n    img id=\"b\"\n");
    EXPECT_NE(dynamic_cast<HtmlImgNodeData*>(tree.find(ELEMENT_IMG)->data), nullptr);
}

TEST(InBody, XmpClosesAParagraph)
{
    TreeContext tree("<p>a<xmp><b></xmp>c");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[\"a\"] xmp[\"<b>\"] \"c\"]]");
}

TEST(InBody, NoembedStaysInAParagraph)
{
    TreeContext tree("<p>a<noembed><b></noembed>c");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[\"a\" noembed[\"<b>\"] \"c\"]]]");
}

TEST(InBody, EndBodyLeavesTheRestOpen)
{
    TreeContext tree("<p><b>a</body>");
    tree.build();
    EXPECT_EQ(tree.stack().getCount(), 4);
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(AfterBody));
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

TEST(InBody, EndBodyWithoutABodyIsIgnored)
{
    WithoutBody tree;
    const Token token = tokenOf("</body>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody));
}

TEST(InBody, EndHtmlWithoutABodyIsIgnored)
{
    WithoutBody tree;
    const Token token = tokenOf("</html>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody));
}

TEST(InBody, EndBodyWithALoneHtmlFails)
{
    TreeContext tree("<html>");
    tree.build();
    const Token token = tokenOf("</body>");
    expectFailure(137, "Index is too small.", [&] { HandleInBodyInsertion(&token, tree.context); });
}

/// The rule as told: down the stack, the element first, then the special ones.
struct EndTagAnswer {
    int answer;
    bool isStopped;
    std::size_t left;
};

EndTagAnswer NaiveEndTag(const std::vector<std::uint32_t>& stack, std::uint32_t sought)
{
    for (std::size_t i = stack.size(); i-- > 0;) {
        if (stack[i] == sought)
            return {ANSWER_USED, false, i};
        if (IsSpecialElement(stack[i]))
            return {ANSWER_IGNORED, true, stack.size()};
    }
    return {ANSWER_USED, false, stack.size()};
}

TEST(InBody, AnyOtherEndTagAgainstTheWalk)
{
    for (std::uint32_t between = 1; between <= 135; ++between) {
        for (const std::uint32_t sought : {static_cast<std::uint32_t>(ELEMENT_SPAN),
                 static_cast<std::uint32_t>(ELEMENT_DIV), static_cast<std::uint32_t>(ELEMENT_B),
                 static_cast<std::uint32_t>(ELEMENT_SAMP), between}) {
            SCOPED_TRACE(std::to_string(between) + " " + std::to_string(sought));
            const std::vector<std::uint32_t> stack
                = {ELEMENT_SPAN, ELEMENT_DIV, ELEMENT_SPAN, ELEMENT_B, between, ELEMENT_I};
            TreeContext tree;
            for (const std::uint32_t element : stack) {
                const Token token = BareToken(element);
                InsertElement(&token, tree.context);
            }
            const EndTagAnswer expected = NaiveEndTag(stack, sought);
            const Token endTag = SyntheticEndTag(sought);
            EXPECT_EQ(HandleAnyOtherEndTag(&endTag, tree.context), expected.answer);
            EXPECT_EQ(tree.stack().getCount(), static_cast<std::int32_t>(expected.left));
        }
    }
}

TEST(InBody, AnyOtherEndTagAtTheBottom)
{
    TreeContext tree;
    const Token endTag = SyntheticEndTag(ELEMENT_SPAN);
    const Token open = BareToken(ELEMENT_B);
    InsertElement(&open, tree.context);
    EXPECT_EQ(HandleAnyOtherEndTag(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.stack().getCount(), 1);
}

TEST(InBody, AnyOtherEndTagImpliesEndTags)
{
    TreeContext tree;
    for (const std::uint32_t element : {ELEMENT_HTML, ELEMENT_SPAN, ELEMENT_RT}) {
        const Token token = BareToken(element);
        InsertElement(&token, tree.context);
    }
    // The special ones among the implied end tags would stop the search.
    const Token endTag = SyntheticEndTag(ELEMENT_SPAN);
    EXPECT_EQ(HandleAnyOtherEndTag(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.stack().getCount(), 1);
}

TEST(InBody, AnyOtherEndTagOverOtherElementsIsAParseError)
{
    TreeContext tree;
    for (const std::uint32_t element : {ELEMENT_HTML, ELEMENT_SPAN, ELEMENT_B}) {
        const Token token = BareToken(element);
        InsertElement(&token, tree.context);
    }
    const Token endTag = SyntheticEndTag(ELEMENT_SPAN);
    EXPECT_EQ(HandleAnyOtherEndTag(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.stack().getCount(), 1);
}

TEST(InBody, NoscriptContentIsBodyContent)
{
    TreeContext tree("<body><noscript><b>x</b></noscript>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[noscript[b[\"x\"]]]]");
}

TEST(InBody, ScriptIsSkipped)
{
    TreeContext tree("<p>a<script>b<p>c</script>d");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[\"ad\"]]]");
    EXPECT_EQ(tree.context.parseError, 1U);
}

} // namespace
