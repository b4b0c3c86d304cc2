#include "tree/insertion_modes.h"

#include "tests/common/tree_context.h"
#include "tests/tree/mode_rules.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::checkModeRules;
using testing_support::tokenOf;
using testing_support::TreeContext;

using enum InsertionMode;

TEST(DocumentModes, Initial)
{
    checkModeRules({Initial, HandleInitialInsertion, "",
        {
            {"space null", ANSWER_IGNORED, Initial, false, ""},
            {"any", ANSWER_AGAIN, BeforeHtml, false, ""},
        }});
}

TEST(DocumentModes, BeforeHtml)
{
    checkModeRules({BeforeHtml, HandleBeforeHtmlInsertion, "",
        {
            {"null", ANSWER_IGNORED, BeforeHtml, true, ""},
            {"space", ANSWER_IGNORED, BeforeHtml, false, ""},
            {"<html>", ANSWER_USED, BeforeHead, false, "html"},
            {"</body> </br> </head> </html>", ANSWER_AGAIN, BeforeHead, false, "html"},
            {"end", ANSWER_IGNORED, BeforeHtml, true, ""},
            {"any", ANSWER_AGAIN, BeforeHead, false, "html"},
        }});
}

TEST(DocumentModes, Text)
{
    checkModeRules({Text, HandleTextInsertion, "<title>",
        {
            {"zero", ANSWER_USED, Text, false, "html[head[title]]"},
            {"space character", ANSWER_USED, Text, false, "html[head[title[%]]]"},
            {"end", ANSWER_USED, InHead, false, "html[head[title]]"},
            {"any", ANSWER_USED, Text, false, "html[head[title]]"},
        }});
}

TEST(DocumentModes, AfterBody)
{
    checkModeRules({AfterBody, HandleAfterBodyInsertion, "<body></body>",
        {
            {"space", ANSWER_USED, AfterBody, false, "html[head body[%]]"},
            {"null", ANSWER_IGNORED, AfterBody, true, "html[head body]"},
            {"<html>", ANSWER_USED, AfterBody, true, "html[head body]"},
            {"</html>", ANSWER_USED, AfterAfterBody, false, "html[head body]"},
            {"any", ANSWER_AGAIN, InBody, true, "html[head body]"},
        }});
}

TEST(DocumentModes, InFrameset)
{
    checkModeRules({InFrameset, HandleInFramesetInsertion, "<frameset>",
        {
            {"space", ANSWER_USED, InFrameset, false, "html[head frameset[%]]"},
            {"null", ANSWER_IGNORED, InFrameset, true, "html[head frameset]"},
            {"<html>", ANSWER_USED, InFrameset, true, "html[head frameset]"},
            {"<frameset>", ANSWER_USED, InFrameset, false, "html[head frameset[frameset]]"},
            {"</frameset>", ANSWER_USED, AfterFrameset, false, "html[head frameset]"},
            {"<frame>", ANSWER_USED, InFrameset, false, "html[head frameset[frame]]"},
            {"<noframes>", ANSWER_USED, Text, false, "html[head frameset[noframes]]"},
            {"any", ANSWER_IGNORED, InFrameset, true, "html[head frameset]"},
        }});
}

TEST(DocumentModes, AfterFrameset)
{
    checkModeRules({AfterFrameset, HandleAfterFramesetInsertion, "<frameset></frameset>",
        {
            {"space", ANSWER_USED, AfterFrameset, false, "html[head frameset %]"},
            {"null", ANSWER_IGNORED, AfterFrameset, true, "html[head frameset]"},
            {"<html>", ANSWER_USED, AfterFrameset, true, "html[head frameset]"},
            {"</html>", ANSWER_USED, AfterAfterFrameset, false, "html[head frameset]"},
            {"<noframes>", ANSWER_USED, Text, false, "html[head frameset noframes]"},
            {"any", ANSWER_IGNORED, AfterFrameset, true, "html[head frameset]"},
        }});
}

TEST(DocumentModes, AfterAfterBody)
{
    checkModeRules({AfterAfterBody, HandleAfterAfterBodyInsertion, "<body></body></html>",
        {
            {"null", ANSWER_IGNORED, AfterAfterBody, true, "html[head body]"},
            {"space", ANSWER_USED, AfterAfterBody, false, "html[head body[%]]"},
            {"<html>", ANSWER_USED, AfterAfterBody, true, "html[head body]"},
            {"any", ANSWER_AGAIN, InBody, true, "html[head body]"},
        }});
}

TEST(DocumentModes, AfterAfterFrameset)
{
    checkModeRules(
        {AfterAfterFrameset, HandleAfterAfterFramesetInsertion, "<frameset></frameset></html>",
            {
                {"null", ANSWER_IGNORED, AfterAfterFrameset, true, "html[head frameset]"},
                {"space", ANSWER_USED, AfterAfterFrameset, false, "html[head frameset %]"},
                {"<html>", ANSWER_USED, AfterAfterFrameset, true, "html[head frameset]"},
                {"<noframes>", ANSWER_USED, Text, false, "html[head frameset noframes]"},
                {"any", ANSWER_IGNORED, AfterAfterFrameset, true, "html[head frameset]"},
            }});
}

TEST(DocumentModes, EndHtmlBehindTheBodyFlushesText)
{
    TreeContext tree("<body>x</body>");
    tree.build();
    const Token space = tokenOf("space");
    HandleAfterBodyInsertion(&space, tree.context);
    const Token endTag = tokenOf("</html>");
    HandleAfterBodyInsertion(&endTag, tree.context);
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"x\" \"\\u0009\"]]");
}

TEST(DocumentModes, SurplusFramesetEndTagMovesOn)
{
    TreeContext tree("<frameset></frameset>");
    tree.build();
    SetInsertionMode(InFrameset, tree.context);
    const Token endTag = tokenOf("</frameset>");
    EXPECT_EQ(HandleInFramesetInsertion(&endTag, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(AfterFrameset));
    EXPECT_EQ(tree.stack().getCount(), 1);
}

TEST(DocumentModes, InnerFramesetEndTagStays)
{
    TreeContext tree("<frameset><frameset></frameset>");
    tree.build();
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InFrameset));
    EXPECT_EQ(tree.context.parseError, 0U);
}

TEST(DocumentModes, TextGoesBackToTheModeItCameFrom)
{
    TreeContext tree("<body><title>t</title>u");
    tree.build();
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody));
    EXPECT_EQ(tree.shortOutline(), "html[head body[title[\"t\"] \"u\"]]");
}

TEST(DocumentModes, AnyEndTagClosesTheTitle)
{
    TreeContext tree("<title>a<b>c</b>d</title>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[title[\"ac\"]] body[\"d\"]]");
}

TEST(DocumentModes, RawTextEndsAtItsOwnEndTag)
{
    TreeContext tree("<noframes>a<b>c</b><!-- -->d</noframes>e");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[noframes[\"a<b>c</b><!-- -->d\"]] body[\"e\"]]");
}

TEST(DocumentModes, LenientTextEndsAtAStartTagOutsideRawText)
{
    TreeContext tree("<title>a<p>b");
    tree.context.lenientRawText = 1;
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[title[\"a\"]] body[p[\"b\"]]]");
}

TEST(DocumentModes, LenientTextEndsAtANullToken)
{
    TreeContext tree("<title>a<!-- -->b");
    tree.context.lenientRawText = 1;
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[title[\"a\"]] body[\"b\"]]");
}

TEST(DocumentModes, LenientRawTextEndsAtATagThatOpensALine)
{
    TreeContext tree("<body><xmp>a<i>b\n <p>c");
    tree.context.lenientRawText = 1;
    tree.build();
    EXPECT_EQ(tree.context.rawTextMode, static_cast<std::uint32_t>(RAW_TEXT_NONE));
    EXPECT_EQ(tree.shortOutline(), "html[head body[xmp[\"a<i>b\\u000a \"] p[\"c\"]]]");
}

TEST(DocumentModes, LenientTextareaKeepsStartTagsOut)
{
    // Its raw text mode is not 0, so that the rule for lenient text does not apply.
    TreeContext tree("<body><textarea>a<p>b</textarea>");
    tree.context.lenientRawText = 1;
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[textarea[\"ab\"]]]");
}

TEST(DocumentModes, UnclosedTextStays)
{
    for (const char* markup : {"<style>a", "<title>a", "<body><textarea>a", "<body><xmp>a"}) {
        TreeContext tree(markup);
        tree.build();
        EXPECT_NE(tree.shortOutline().find("[\"a\"]"), std::string::npos) << markup;
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(Text)) << markup;
    }
}

TEST(DocumentModes, EmptyStyleElement)
{
    TreeContext tree("<style></style>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[style]]");
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InHead));
}

TEST(DocumentModes, StyleWithoutATreeState)
{
    TreeContext tree("<style>p{}");
    tree.build();
    tree.treeStates.set(0, nullptr);
    const Token endTag = tokenOf("</style>");
    EXPECT_EQ(HandleTextInsertion(&endTag, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.shortOutline(), "html[head[style[\"p{}\"]]]");
}

} // namespace
