#include "tree/insertion_modes.h"

#include "containers/linked_list.h"
#include "support/bail_out.h"
#include "support/exception.h"
#include "support/process_heap.h"
#include "tests/common/tree_context.h"
#include "tests/tree/mode_rules.h"

#include <gtest/gtest.h>

namespace {

using testing_support::checkModeRules;
using testing_support::TreeContext;

using enum InsertionMode;

TEST(HeadModes, BeforeHead)
{
    checkModeRules({BeforeHead, HandleBeforeHeadInsertion, "<html>",
        {
            {"space", ANSWER_IGNORED, BeforeHead, false, "html", "html", ""},
            {"null", ANSWER_IGNORED, BeforeHead, true, "html", "html", ""},
            {"<html>", ANSWER_USED, BeforeHead, true, "html", "html", ""},
            {"<head>", ANSWER_USED, InHead, false, "html[head]", "html head", "head"},
            {"</body> </br> </head> </html>", ANSWER_AGAIN, InHead, false, "html[head]",
                "html head", "head"},
            {"end", ANSWER_IGNORED, BeforeHead, true, "html", "html", ""},
            {"any", ANSWER_AGAIN, InHead, false, "html[head]", "html head", "head"},
        }});
}

TEST(HeadModes, InHead)
{
    const char* const head = "html[head]";
    checkModeRules({InHead, HandleInHeadInsertion, "<head>",
        {
            {"space", ANSWER_USED, InHead, false, "html[head[%]]", "html head", ""},
            {"null", ANSWER_IGNORED, InHead, true, head, "html head", ""},
            {"<html>", ANSWER_USED, InHead, true, head, "html head", ""},
            {"<base> <basefont> <bgsound> <command> <link> <meta>", ANSWER_USED, InHead, false,
                "html[head[%]]", "html head", ""},
            {"<title>", ANSWER_USED, Text, false, "html[head[title]]", "html head title",
                "original"},
            {"<noscript>", ANSWER_USED, InHeadNoscript, false, "html[head[noscript]]",
                "html head noscript", ""},
            {"<noframes> <style>", ANSWER_USED, Text, false, "html[head[%]]", "html head %",
                "original raw=1"},
            {"<script>", ANSWER_USED, InHead, false, head, "html head", ""},
            {"</head>", ANSWER_USED, AfterHead, false, head, "html", ""},
            {"</body> </br> </html>", ANSWER_AGAIN, AfterHead, false, head, "html", ""},
            {"<head> end", ANSWER_IGNORED, InHead, true, head, "html head", ""},
            {"any", ANSWER_AGAIN, AfterHead, false, head, "html", ""},
        }});
}

TEST(HeadModes, InHeadNoscript)
{
    const char* const noscript = "html[head[noscript]]";
    const char* const stack = "html head noscript";
    checkModeRules({InHeadNoscript, HandleInHeadNoscriptInsertion, "<head><noscript>",
        {
            {"null", ANSWER_IGNORED, InHeadNoscript, true, noscript, stack, ""},
            {"<html>", ANSWER_USED, InHeadNoscript, true, noscript, stack, ""},
            {"</noscript>", ANSWER_USED, InHead, false, noscript, "html head", ""},
            {"space <basefont> <bgsound> <link> <meta>", ANSWER_USED, InHeadNoscript, false,
                "html[head[noscript[%]]]", stack, ""},
            {"<noframes> <style>", ANSWER_USED, Text, false, "html[head[noscript[%]]]",
                "html head noscript %", "original raw=1"},
            {"</br>", ANSWER_AGAIN, InHead, false, noscript, "html head", ""},
            {"<head> <noscript> end", ANSWER_IGNORED, InHeadNoscript, true, noscript, stack, ""},
            {"any", ANSWER_AGAIN, InHead, true, noscript, "html head", ""},
        }});
}

TEST(HeadModes, AfterHead)
{
    const char* const head = "html[head]";
    checkModeRules({AfterHead, HandleAfterHeadInsertion, "<head></head>",
        {
            {"space", ANSWER_USED, AfterHead, false, "html[head %]", "html", ""},
            {"null", ANSWER_IGNORED, AfterHead, true, head, "html", ""},
            {"<html>", ANSWER_USED, AfterHead, true, head, "html", ""},
            {"<body>", ANSWER_USED, InBody, false, "html[head body]", "html body", "framesetOk=0"},
            {"<frameset>", ANSWER_USED, InFrameset, false, "html[head frameset]", "html frameset",
                ""},
            {"<base> <basefont> <bgsound> <link> <meta>", ANSWER_USED, AfterHead, true,
                "html[head[%]]", "html", ""},
            {"<title>", ANSWER_USED, Text, true, "html[head[%]]", "html %", "original"},
            {"<noframes> <style>", ANSWER_USED, Text, true, "html[head[%]]", "html %",
                "original raw=1"},
            {"<script>", ANSWER_USED, AfterHead, true, head, "html", ""},
            {"</body> </br> </html>", ANSWER_AGAIN, InBody, false, "html[head body]", "html body",
                "framesetOk=0"},
            {"<head> end", ANSWER_IGNORED, AfterHead, true, head, "html", ""},
            {"any", ANSWER_AGAIN, InBody, false, "html[head body]", "html body", "framesetOk=1"},
        }});
}

struct RawTextRow {
    const char* markup;
    std::uint32_t lenient;
    std::uint32_t rawTextMode;
    InsertionMode original;
};

TEST(HeadModes, RawTextModeOfTextElements)
{
    const RawTextRow rows[] = {
        {"<head><title>", 0, RAW_TEXT_NONE, InHead},
        {"<head><title>", 1, RAW_TEXT_NONE, InHead},
        {"<head><style>", 0, RAW_TEXT_STRICT, InHead},
        {"<head><style>", 1, RAW_TEXT_LENIENT, InHead},
        {"<head><noframes>", 0, RAW_TEXT_STRICT, InHead},
        {"<head><noscript><style>", 0, RAW_TEXT_STRICT, InHeadNoscript},
        {"<head></head><style>", 0, RAW_TEXT_STRICT, AfterHead},
        {"<body><style>", 0, RAW_TEXT_STRICT, InBody},
        {"<frameset><noframes>", 1, RAW_TEXT_LENIENT, InFrameset},
        {"<body><textarea>", 0, RAW_TEXT_TEXTAREA, InBody},
        {"<body><xmp>", 0, RAW_TEXT_STRICT, InBody},
        {"<body><xmp>", 1, RAW_TEXT_LENIENT, InBody},
        {"<body><noembed>", 0, RAW_TEXT_STRICT, InBody},
        {"<body><noembed>", 1, RAW_TEXT_LENIENT, InBody},
    };
    for (const RawTextRow& row : rows) {
        SCOPED_TRACE(row.markup);
        TreeContext tree(row.markup);
        tree.context.lenientRawText = row.lenient;
        tree.build();
        EXPECT_EQ(tree.context.rawTextMode, row.rawTextMode);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(Text));
        EXPECT_EQ(tree.context.originalInsertionMode, static_cast<std::uint32_t>(row.original));
    }
}

TEST(HeadModes, NoscriptAsRawText)
{
    TreeContext tree("<head><noscript><b>x</b></noscript><body><noscript><b>y</b></noscript>");
    tree.context.noscriptRawText = 1;
    tree.build();
    EXPECT_EQ(
        tree.shortOutline(), "html[head[noscript[\"<b>x</b>\"]] body[noscript[\"<b>y</b>\"]]]");
}

TEST(HeadModes, EndTagOfALineBreakLeavesNoscriptAndHead)
{
    TreeContext tree("<head><noscript></br>");
    tree.build();
    EXPECT_EQ(tree.shortOutline().rfind("html[head[noscript] body", 0), 0U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody));
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_BODY));
    EXPECT_EQ(tree.stack().getCount(), 2);
}

TEST(HeadModes, TitleIsScannedAsMarkup)
{
    TreeContext tree("<title>a<p>b</title><body>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[title[\"ab\"]] body]");
    EXPECT_EQ(tree.context.parseError, 0U);
}

TEST(HeadModes, HeadElementIsRemembered)
{
    for (const char* markup : {"<head>", "</head>", "x", "<p>", "</br>"}) {
        TreeContext tree(markup);
        tree.build();
        ASSERT_NE(tree.context.headElement, nullptr) << markup;
        EXPECT_EQ(tree.context.headElement, tree.find(ELEMENT_HEAD)) << markup;
    }
}

TEST(HeadModes, ContentBehindTheHeadGoesIntoIt)
{
    TreeContext tree("<head></head><meta><title>t</title><link><body>x");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[meta title[\"t\"] link] body[\"x\"]]");
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.stack().getCount(), 2);
    EXPECT_FALSE(tree.stack().contains(*tree.context.headElement));
}

TEST(HeadModes, TextPendingBehindTheHeadIsFlushedIntoItsContent)
{
    // The head is current already when the element flushes what is pending.
    TreeContext tree("<head></head> <meta> <body>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[\" \" meta] \" \" body]");
}

struct FramesetRow {
    const char* markup;
    std::uint32_t framesetOk;
};

TEST(HeadModes, BodyMadeByAnEndTagRulesOutAFrameset)
{
    const FramesetRow rows[] = {
        {"<head></head></body>", 0},
        {"<head></head></br>", 0},
        {"<head></head></html>", 0},
        {"<head></head><body>", 0},
        {"<head></head><p>", 1},
        {"<head></head><br>", 0},
        {"<head></head>x", 0},
        {"<head></head><div>", 1},
    };
    for (const FramesetRow& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.markup;
        EXPECT_NE(tree.find(ELEMENT_BODY), nullptr) << row.markup;
    }
}

TEST(HeadModes, ScriptIsSkipped)
{
    TreeContext tree("<head><script>if (a < b) '</b>' <!-- </script><meta>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head[meta]]");
    // The end tag is one that the head has no rule for.
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InHead));
}

TEST(HeadModes, ScriptEndsAtTheFirstEndTagWithItsName)
{
    const char* const markups[] = {"<head><script>a<b</script><meta>",
        "<head><script><</script><meta>", "<head><script></b</script><meta>",
        "<head><script></scriptx></script ><meta>", "<head><SCRIPT></Script><meta>"};
    for (const char* markup : markups) {
        TreeContext tree(markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), "html[head[meta]]") << markup;
    }
}

TEST(HeadModes, UnclosedScriptKeepsTheTextInFrontOfIt)
{
    TreeContext tree("<body>x<script>y");
    InsertNode(tree.context);
    EXPECT_EQ(tree.context.statusFlags, STATUS_END_OF_INPUT);
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"x\"]]");
}

TEST(HeadModes, ScriptBehindTheHead)
{
    TreeContext tree("<head></head><script>x</script>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head]");
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(AfterHead));
    EXPECT_EQ(tree.stack().getCount(), 1);
}

TEST(HeadModes, EndHeadBeforeTheHead)
{
    TreeContext tree("<html></p></head><body>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body]");
    EXPECT_EQ(tree.context.parseError, 1U);
}

TEST(HeadModes, FailureBehindTheHeadTakesItOffTheStack)
{
    bool reached = true;
    for (std::uint32_t n = 1; reached; ++n) {
        TreeContext tree("<head></head><base href=1 id=k><link id=j><body>x");
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
        if (tree.context.headElement != nullptr) {
            EXPECT_FALSE(tree.stack().contains(*tree.context.headElement)) << n;
        }
    }
}

} // namespace
