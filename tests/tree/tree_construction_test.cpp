#include "tree/tree_construction.h"

#include "input/charset.h"
#include "support/html_names.h"
#include "tests/common/tree_context.h"
#include "tests/containers/expect_failure.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::expectFailure;
using testing_support::TreeContext;

TEST(TreeConstruction, InvalidModeFails)
{
    for (const std::uint32_t mode : {0U, 23U, 0xFFFFFFFFU}) {
        TreeContext tree("x");
        tree.context.insertionMode = mode;
        expectFailure(
            15, "InsertNode(), invalid insertion mode!", [&] { InsertNode(tree.context); });
    }
}

TEST(TreeConstruction, EveryModeHasItsNumber)
{
    EXPECT_EQ(static_cast<std::uint32_t>(InsertionMode::Initial), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(InsertionMode::InBody), 7U);
    EXPECT_EQ(static_cast<std::uint32_t>(InsertionMode::Text), 8U);
    EXPECT_EQ(static_cast<std::uint32_t>(InsertionMode::InSelectInTable), 17U);
    EXPECT_EQ(static_cast<std::uint32_t>(InsertionMode::AfterAfterFrameset), 22U);
}

TEST(TreeConstruction, EveryModeIsDispatched)
{
    for (std::uint32_t mode = 1; mode <= 22; ++mode) {
        SCOPED_TRACE(mode);
        TreeContext tree("<head></head><body>\n");
        tree.build();
        tree.context.insertionMode = mode;
        tree.context.originalInsertionMode = static_cast<std::uint32_t>(InsertionMode::InBody);
        // What is read now leaves every mode sound, whatever it makes of it.
        tree.stream.bytes = {' '};
        tree.stream.position = 0;
        tree.block.bytesValid = 0;
        tree.block.bytesLeft = 0;
        EXPECT_NO_THROW(tree.build());
        EXPECT_EQ(tree.context.insertionMode, mode);
    }
}

TEST(TreeConstruction, NothingIsReadWithAStatus)
{
    TreeContext tree("<p>x");
    tree.context.statusFlags = STATUS_HOST_STOP;
    InsertNode(tree.context);
    EXPECT_EQ(tree.context.statusFlags, STATUS_HOST_STOP);
    EXPECT_EQ(tree.stream.calls.reads, 0U);
    EXPECT_EQ(tree.shortOutline(), "");
}

TEST(TreeConstruction, EmptyInput)
{
    TreeContext tree("");
    InsertNode(tree.context);
    EXPECT_EQ(tree.context.statusFlags, STATUS_END_OF_INPUT);
    EXPECT_EQ(tree.shortOutline(), "");
}

TEST(TreeConstruction, EndLeavesElementsOpen)
{
    TreeContext tree("<p>a<b>b");
    InsertNode(tree.context);
    EXPECT_EQ(tree.context.statusFlags, STATUS_END_OF_INPUT);
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[\"a\" b[\"b\"]]]]");
    EXPECT_EQ(tree.stack().getCount(), 4);
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_B));
    EXPECT_EQ(tree.context.buildFrames.getCount(), 4);
    EXPECT_EQ(tree.context.parseError, 0U);
}

struct DocumentRow {
    const char* name;
    const char* markup;
    const char* outline;
    std::uint32_t parseError;
};

const DocumentRow kDocuments[] = {
    {"text alone", "x", "html[head body[\"x\"]]", 0},
    {"an element alone", "<p>", "html[head body[p]]", 0},
    {"white space alone", " \t\n\f\r", "", 0},
    {"a whole document", "<html><head><title>t</title></head><body>x</body></html>",
        "html[head[title[\"t\"]] body[\"x\"]]", 0},
    {"white space in front of everything is dropped", " <html> <head>a", "html[head body[\"a\"]]",
        0},
    {"white space in the head stays", "<head> <meta> </head>", "html[head[\" \" meta \" \"]]", 0},
    {"white space behind the head", "<head></head> <body>", "html[head \" \" body]", 0},
    {"white space behind the head without a body", "<head></head> ", "html[head \" \"]", 0},
    {"unknown elements vanish", "<foo>bar</foo>", "html[head body[\"bar\"]]", 1},
    {"an unknown element inside", "<p>a<foo>b</foo>c", "html[head body[p[\"abc\"]]]", 1},
    {"a comment in front", "<!-- c --><html>", "html", 0},
    {"a comment behind html", "<html><!-- c -->", "html", 1},
    {"a doctype", "<!DOCTYPE html><p>", "html[head body[p]]", 0},
    {"end head without a head", "</head>x", "html[head body[\"x\"]]", 0},
    {"end p in front of everything", "</p>x", "html[head body[\"x\"]]", 1},
    {"tags in a title", "<title>a<b>c</b>d</title>", "html[head[title[\"ac\"]] body[\"d\"]]", 1},
    {"script behind the head", "<head></head><script>x</script>", "html[head]", 1},
    {"text behind the body", "<body>a</body>b", "html[head body[\"a\" \"b\"]]", 1},
    {"text behind html", "<body>a</body></html>b", "html[head body[\"a\" \"b\"]]", 1},
    {"white space behind html", "<body>a</body></html> ", "html[head body[\"a\" \" \"]]", 0},
    {"elements behind the body", "<p>a</body><i>b", "html[head body[p[\"a\" i[\"b\"]]]]", 1},
    {"end html without a body", "<head></html>", "html[head body]", 0},
    {"frames", "<frameset cols=1><frame><frame></frameset>x", "html[head frameset[frame frame]]",
        1},
    {"a surplus end of a frameset", "<frameset></frameset></frameset>", "html[head frameset]", 1},
    {"noframes", "<frameset></frameset><noframes><p></noframes></html> ",
        "html[head frameset noframes[\"<p>\"] \" \"]", 0},
    {"noscript in the head", "<head><noscript><link>x</noscript>",
        "html[head[noscript[link]] body[\"x\"]]", 1},
    {"a cut tag is text", "<p>a<b", "html[head body[p[\"a<b\"]]]", 0},
    {"markup in plain text", "a < b <> c", "html[head body[\"a < b <> c\"]]", 0},
};

TEST(TreeConstruction, Documents)
{
    for (const DocumentRow& row : kDocuments) {
        SCOPED_TRACE(row.name);
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline);
        EXPECT_EQ(tree.context.parseError, row.parseError);
    }
}

TEST(TreeConstruction, BufferSizeChangesNothing)
{
    for (const DocumentRow& row : kDocuments) {
        SCOPED_TRACE(row.name);
        for (const std::uint32_t bufferSize : {1U, 2U, 3U, 5U, 8U, 13U}) {
            TreeContext tree(row.markup, 0x9000, bufferSize);
            tree.build();
            EXPECT_EQ(tree.shortOutline(), row.outline) << bufferSize;
            EXPECT_EQ(tree.context.parseError, row.parseError) << bufferSize;
        }
    }
}

TEST(TreeConstruction, SkeletonOfAFragment)
{
    TreeContext tree("<p id=a>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    p id=\"a\"\n");
    EXPECT_EQ(tree.context.framesetOk, 1U);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InsertionMode::InBody));
}

TEST(TreeConstruction, UnknownElementDoesNotEndTheInitialMode)
{
    TreeContext tree("<foo>");
    tree.build();
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InsertionMode::Initial));
    EXPECT_EQ(tree.context.parseError, 0U);
    EXPECT_EQ(tree.shortOutline(), "");
}

TEST(TreeConstruction, UnknownElementIsNoRawTextElement)
{
    TreeContext tree("<p><foo></p>");
    tree.build();
    EXPECT_EQ(tree.context.rawTextElement, static_cast<std::uint32_t>(ELEMENT_P));
}

TEST(TreeConstruction, LargeCharactersBecomeReferences)
{
    // U+10000, U+1F600, U+10FFFE and U+10FFFF.
    TreeContext tree("a\xF0\x90\x80\x80"
                     "b\xF0\x9F\x98\x80"
                     "c\xF4\x8F\xBF\xBE"
                     "d\xF4\x8F\xBF\xBF"
                     "e",
        CHARSET_UTF8);
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"a&#65536;b&#128512;c&#1114110;d\\uffffe\"]]");
}

std::string repeated(const std::string& text, std::uint32_t count)
{
    std::string result;
    result.reserve(text.size() * count);
    for (std::uint32_t i = 0; i < count; ++i)
        result += text;
    return result;
}

constexpr std::uint32_t kDepth = 200'000;

TEST(TreeConstruction, DeepNesting)
{
    TreeContext tree("<body>" + repeated("<span>", kDepth) + repeated("</span>", kDepth) + "x");
    tree.build();
    EXPECT_EQ(tree.tree.nodeCount, kDepth + 4);
    EXPECT_EQ(tree.stack().getCount(), 2);
    EXPECT_EQ(tree.find(ELEMENT_BODY)->childCount, 2U);
}

TEST(TreeConstruction, DeepNestingOfSpecialElements)
{
    TreeContext tree("<body>" + repeated("<section>", kDepth) + repeated("</section>", kDepth));
    tree.build();
    EXPECT_EQ(tree.tree.nodeCount, kDepth + 3);
    EXPECT_EQ(tree.stack().getCount(), 2);
}

TEST(TreeConstruction, EndTagsThatFindNothingInADeepTree)
{
    // Each would be a walk through the whole stack.
    TreeContext tree("<body>" + repeated("<span>", kDepth) + repeated("</samp>", kDepth)
        + repeated("<hr>", kDepth));
    tree.build();
    EXPECT_EQ(tree.tree.nodeCount, 2 * kDepth + 3);
    EXPECT_EQ(tree.stack().getCount(), static_cast<std::int32_t>(kDepth) + 2);
}

TEST(TreeConstruction, DeepNestingLeftOpen)
{
    TreeContext tree(repeated("<i>", kDepth) + "x");
    tree.build();
    EXPECT_EQ(tree.stack().getCount(), static_cast<std::int32_t>(kDepth) + 2);
}

TEST(TreeConstruction, LongText)
{
    const std::string text = repeated("abcdefg ", 100'000);
    TreeContext tree("<p>" + text);
    tree.build();
    const HtmlTreeNode* const node = tree.find(ELEMENT_P)->firstChild;
    ASSERT_NE(node, nullptr);
    const auto& payload = static_cast<const HtmlTextNodeData&>(*node->data);
    EXPECT_EQ(payload.length, text.size());
    EXPECT_EQ(
        std::u16string(payload.text, payload.length), std::u16string(text.begin(), text.end()));
}

struct KindRow {
    std::uint8_t flags;
    std::uint32_t element;
    std::uint32_t character;
    TokenKind kind;
};

TEST(TreeConstruction, TokenKinds)
{
    const KindRow rows[] = {
        {0, 0, 0, TokenKind::Null},
        {TOKEN_CHARACTER, 0, 9, TokenKind::Space},
        {TOKEN_CHARACTER, 0, 10, TokenKind::Space},
        {TOKEN_CHARACTER, 0, 12, TokenKind::Space},
        {TOKEN_CHARACTER, 0, 13, TokenKind::Space},
        {TOKEN_CHARACTER, 0, 32, TokenKind::Space},
        {TOKEN_CHARACTER, 0, 0, TokenKind::Character},
        {TOKEN_CHARACTER, 0, 8, TokenKind::Character},
        {TOKEN_CHARACTER, 0, 11, TokenKind::Character},
        {TOKEN_CHARACTER, 0, 0xA0, TokenKind::Character},
        {TOKEN_CHARACTER, 0, 0x10020, TokenKind::Character},
        {TOKEN_CHARACTER | TOKEN_FOSTER, 0, 32, TokenKind::Space},
        // The "<" of a tag that the input has cut off.
        {TOKEN_CHARACTER, ELEMENT_P, '<', TokenKind::Character},
        {TOKEN_START_TAG, ELEMENT_P, '<', TokenKind::StartTag},
        {TOKEN_START_TAG | TOKEN_SELF_CLOSING | TOKEN_FOSTER, ELEMENT_P, '<', TokenKind::StartTag},
        {TOKEN_END_TAG, ELEMENT_P, '<', TokenKind::EndTag},
        {TOKEN_SYNTHETIC | TOKEN_END_TAG, ELEMENT_P, 0, TokenKind::EndTag},
    };
    for (const KindRow& row : rows) {
        Token token = BareToken(row.element);
        token.flags = row.flags;
        token.character = row.character;
        EXPECT_EQ(ClassifyToken(token), row.kind) << int{row.flags} << ' ' << row.character;
    }
}

TEST(TreeConstruction, SyntheticTokens)
{
    const Token start = SyntheticStartTag(ELEMENT_P);
    EXPECT_EQ(start.element, static_cast<std::uint32_t>(ELEMENT_P));
    EXPECT_EQ(start.flags, 0x14);
    EXPECT_EQ(start.character, 0U);
    const Token end = SyntheticEndTag(ELEMENT_P);
    EXPECT_EQ(end.flags, 0x18);
    EXPECT_EQ(BareToken(ELEMENT_P).flags, 0);
}

} // namespace
