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
            {"space null", ANSWER_IGNORED, Initial, false, "", "", ""},
            {"any", ANSWER_AGAIN, BeforeHtml, false, "", "", ""},
        }});
}

TEST(DocumentModes, BeforeHtml)
{
    checkModeRules({BeforeHtml, HandleBeforeHtmlInsertion, "",
        {
            {"null", ANSWER_IGNORED, BeforeHtml, true, "", "", ""},
            {"space", ANSWER_IGNORED, BeforeHtml, false, "", "", ""},
            {"<html>", ANSWER_USED, BeforeHead, false, "html", "html", ""},
            {"</body> </br> </head> </html>", ANSWER_AGAIN, BeforeHead, false, "html", "html", ""},
            {"end", ANSWER_IGNORED, BeforeHtml, true, "", "", ""},
            {"any", ANSWER_AGAIN, BeforeHead, false, "html", "html", ""},
        }});
}

TEST(DocumentModes, Text)
{
    const char* const title = "html[head[title]]";
    checkModeRules({Text, HandleTextInsertion, "<title>",
        {
            {"zero", ANSWER_USED, Text, false, title, "html head title", ""},
            {"space character", ANSWER_USED, Text, false, "html[head[title[%]]]", "html head title",
                ""},
            {"end", ANSWER_USED, InHead, false, title, "html head", ""},
            {"any", ANSWER_USED, Text, false, title, "html head title", ""},
        }});
}

TEST(DocumentModes, LenientText)
{
    const char* const title = "html[head[title]]";
    checkModeRules({Text, HandleTextInsertion, "<title>",
        {
            {"zero", ANSWER_USED, Text, false, title, "html head title", ""},
            {"space character", ANSWER_USED, Text, false, "html[head[title[%]]]", "html head title",
                ""},
            {"end", ANSWER_USED, InHead, false, title, "html head", ""},
            {"any", ANSWER_AGAIN, InHead, false, title, "html head", ""},
        },
        /*lenientRawText=*/1});
}

TEST(DocumentModes, LenientRawText)
{
    const char* const style = "html[head[style]]";
    checkModeRules({Text, HandleTextInsertion, "<style>",
        {
            {"zero", ANSWER_USED, Text, false, style, "html head style", ""},
            {"space character", ANSWER_USED, Text, false, "html[head[style[%]]]", "html head style",
                ""},
            {"</style>", ANSWER_USED, InHead, false, style, "html head", ""},
            {"any", ANSWER_AGAIN, InHead, false, style, "html head", ""},
        },
        /*lenientRawText=*/1});
}

TEST(DocumentModes, AfterBody)
{
    const char* const body = "html[head body]";
    checkModeRules({AfterBody, HandleAfterBodyInsertion, "<body></body>",
        {
            {"space", ANSWER_USED, AfterBody, false, "html[head body[%]]", "html body", ""},
            {"null", ANSWER_IGNORED, AfterBody, true, body, "html body", ""},
            {"<html>", ANSWER_USED, AfterBody, true, body, "html body", ""},
            {"</html>", ANSWER_USED, AfterAfterBody, false, body, "html body", ""},
            {"any", ANSWER_AGAIN, InBody, true, body, "html body", ""},
        }});
}

TEST(DocumentModes, InFrameset)
{
    const char* const frameset = "html[head frameset]";
    checkModeRules({InFrameset, HandleInFramesetInsertion, "<frameset>",
        {
            {"space", ANSWER_USED, InFrameset, false, "html[head frameset[%]]", "html frameset",
                ""},
            {"null", ANSWER_IGNORED, InFrameset, true, frameset, "html frameset", ""},
            {"<html>", ANSWER_USED, InFrameset, true, frameset, "html frameset", ""},
            {"<frameset>", ANSWER_USED, InFrameset, false, "html[head frameset[frameset]]",
                "html frameset frameset", ""},
            {"</frameset>", ANSWER_USED, AfterFrameset, false, frameset, "html", ""},
            {"<frame>", ANSWER_USED, InFrameset, false, "html[head frameset[frame]]",
                "html frameset", ""},
            {"<noframes>", ANSWER_USED, Text, false, "html[head frameset[noframes]]",
                "html frameset noframes", "original raw=1"},
            {"any", ANSWER_IGNORED, InFrameset, true, frameset, "html frameset", ""},
        }});
}

TEST(DocumentModes, AfterFrameset)
{
    const char* const frameset = "html[head frameset]";
    checkModeRules({AfterFrameset, HandleAfterFramesetInsertion, "<frameset></frameset>",
        {
            {"space", ANSWER_USED, AfterFrameset, false, "html[head frameset %]", "html", ""},
            {"null", ANSWER_IGNORED, AfterFrameset, true, frameset, "html", ""},
            {"<html>", ANSWER_USED, AfterFrameset, true, frameset, "html", ""},
            {"</html>", ANSWER_USED, AfterAfterFrameset, false, frameset, "html", ""},
            {"<noframes>", ANSWER_USED, Text, false, "html[head frameset noframes]",
                "html noframes", "original raw=1"},
            {"any", ANSWER_IGNORED, AfterFrameset, true, frameset, "html", ""},
        }});
}

TEST(DocumentModes, AfterAfterBody)
{
    const char* const body = "html[head body]";
    checkModeRules({AfterAfterBody, HandleAfterAfterBodyInsertion, "<body></body></html>",
        {
            {"null", ANSWER_IGNORED, AfterAfterBody, true, body, "html body", ""},
            {"space", ANSWER_USED, AfterAfterBody, false, "html[head body[%]]", "html body", ""},
            {"<html>", ANSWER_USED, AfterAfterBody, true, body, "html body", ""},
            {"any", ANSWER_AGAIN, InBody, true, body, "html body", ""},
        }});
}

TEST(DocumentModes, AfterAfterFrameset)
{
    const char* const frameset = "html[head frameset]";
    checkModeRules({AfterAfterFrameset, HandleAfterAfterFramesetInsertion,
        "<frameset></frameset></html>",
        {
            {"null", ANSWER_IGNORED, AfterAfterFrameset, true, frameset, "html", ""},
            {"space", ANSWER_USED, AfterAfterFrameset, false, "html[head frameset %]", "html", ""},
            {"<html>", ANSWER_USED, AfterAfterFrameset, true, frameset, "html", ""},
            {"<noframes>", ANSWER_USED, Text, false, "html[head frameset noframes]",
                "html noframes", "original raw=1"},
            {"any", ANSWER_IGNORED, AfterAfterFrameset, true, frameset, "html", ""},
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

struct LenientRow {
    const char* markup;
    const char* outline;
};

TEST(DocumentModes, LenientRawTextEndsAtAnEndTagThatOpensALine)
{
    const LenientRow rows[] = {
        // An end tag from outside has its effect there.
        {"<div><xmp>a\n</div>b", "html[head body[div[xmp[\"a\\u000a\"]] \"b\"]]"},
        {"<div><style>a\n</div>b", "html[head body[div[style[\"a\\u000a\"]] \"b\"]]"},
        {"<div><noframes>a\n</div>b", "html[head body[div[noframes[\"a\\u000a\"]] \"b\"]]"},
        {"<div><noembed>a\n</div>b", "html[head body[div[noembed[\"a\\u000a\"]] \"b\"]]"},
        {"<div><noscript>a\n</div>b", "html[head body[div[noscript[\"a\\u000a\"]] \"b\"]]"},
        {"<head><style>a\n</head>b", "html[head[style[\"a\\u000a\"]] body[\"b\"]]"},
        // The element's own is used up.
        {"<div><xmp>a\n</xmp>b", "html[head body[div[xmp[\"a\\u000a\"] \"b\"]]]"},
        {"<xmp><xmp>a\n</xmp>b</xmp>c", "html[head body[xmp[\"<xmp>a\\u000a\"] \"bc\"]]"},
        // Elsewhere than at the start of a line it is text.
        {"<div><xmp>a</div>b", "html[head body[div[xmp[\"a</div>b\"]]]]"},
        // Content that is scanned as markup ends at any end tag, which is used up.
        {"<div><title>a\n</div>b", "html[head body[div[title[\"a\\u000a\"] \"b\"]]]"},
        {"<div><textarea>a\n</div>b", "html[head body[div[textarea[\"a\\u000a\"] \"b\"]]]"},
    };
    for (const LenientRow& row : rows) {
        TreeContext tree(row.markup);
        tree.context.lenientRawText = 1;
        tree.context.noscriptRawText = 1;
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.markup;
    }
}

TEST(DocumentModes, StrictRawTextGoesOnAtAnEndTagThatOpensALine)
{
    TreeContext tree("<div><xmp>a\n</div>b");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[div[xmp[\"a\\u000a</div>b\"]]]]");
}

TEST(DocumentModes, TextareaLeavesItsRawTextModeBehind)
{
    const LenientRow rows[] = {
        {"<body><title>a<p>b", "html[head body[title[\"a\"] p[\"b\"]]]"},
        {"<textarea>x</textarea><title>a<p>b", "html[head body[textarea[\"x\"] title[\"ab\"]]]"},
        {"<textarea>x</textarea><xmp>y</xmp><title>a<p>b",
            "html[head body[textarea[\"x\"] xmp[\"y\"] title[\"a\"] p[\"b\"]]]"},
    };
    for (const LenientRow& row : rows) {
        TreeContext tree(row.markup);
        tree.context.lenientRawText = 1;
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.markup;
    }
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
