#include "tree/tree_construction.h"

#include "input/charset.h"
#include "support/exception.h"
#include "support/html_names.h"
#include "support/process_heap.h"
#include "tests/common/tree_context.h"
#include "tests/containers/expect_failure.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

using testing_support::expectFailure;
using testing_support::MemoryStream;
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

/// Goes on with more markup behind what a context has read.
void giveMarkup(TreeContext& tree, const std::string& markup)
{
    tree.stream.bytes.insert(tree.stream.bytes.end(), markup.begin(), markup.end());
}

struct DispatchRow {
    InsertionMode mode;
    const char* markup;
    InsertionMode modeAfter;
    std::uint32_t parseError;
    const char* outline; ///< what it makes of html[head body]
};

// Together the rows of a mode tell it from every other that has rules of its own.
const DispatchRow kDispatched[] = {
    {InsertionMode::Initial, " <!-- -->", InsertionMode::Initial, 0, "html[head body]"},
    {InsertionMode::BeforeHtml, "<html>", InsertionMode::BeforeHead, 0, "html[head body[html]]"},
    {InsertionMode::BeforeHead, "<head>", InsertionMode::InHead, 0, "html[head body[head]]"},
    {InsertionMode::InHead, "</head>", InsertionMode::AfterHead, 0, "html[head body]"},
    {InsertionMode::InHead, " </head>", InsertionMode::AfterHead, 0, "html[head body[\" \"]]"},
    {InsertionMode::InHeadNoscript, "</noscript>", InsertionMode::InHead, 0, "html[head body]"},
    {InsertionMode::AfterHead, "<body>", InsertionMode::InBody, 0, "html[head body[body]]"},
    {InsertionMode::InBody, "<i></body>", InsertionMode::AfterBody, 0, "html[head body[i]]"},
    {InsertionMode::Text, "<i>x", InsertionMode::Text, 0, "html[head body[\"x\"]]"},
    {InsertionMode::AfterBody, "</html>", InsertionMode::AfterAfterBody, 0, "html[head body]"},
    {InsertionMode::AfterBody, "<i>", InsertionMode::InBody, 1, "html[head body[i]]"},
    {InsertionMode::InFrameset, "<frame><frame>", InsertionMode::InFrameset, 0,
        "html[head body[frame frame]]"},
    {InsertionMode::AfterFrameset, "</html>", InsertionMode::AfterAfterFrameset, 0,
        "html[head body]"},
    {InsertionMode::AfterAfterBody, " ", InsertionMode::AfterAfterBody, 0,
        "html[head body[\" \"]]"},
    {InsertionMode::AfterAfterBody, "</html>", InsertionMode::AfterAfterBody, 1, "html[head body]"},
    {InsertionMode::AfterAfterFrameset, "</html>", InsertionMode::AfterAfterFrameset, 1,
        "html[head body]"},
    {InsertionMode::AfterAfterFrameset, "<noframes>", InsertionMode::Text, 0,
        "html[head body[noframes]]"},
};

TEST(TreeConstruction, EveryModeIsDispatched)
{
    for (const DispatchRow& row : kDispatched) {
        SCOPED_TRACE(std::to_string(static_cast<std::uint32_t>(row.mode)) + " " + row.markup);
        TreeContext tree("<head></head><body>");
        tree.build();
        SetInsertionMode(row.mode, tree.context);
        giveMarkup(tree, row.markup);
        tree.build();
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(row.modeAfter));
        EXPECT_EQ(tree.context.parseError, row.parseError);
        EXPECT_EQ(tree.shortOutline(), row.outline);
    }
}

TEST(TreeConstruction, EveryModeHasAHandler)
{
    for (std::uint32_t mode = 1; mode <= 22; ++mode) {
        SCOPED_TRACE(mode);
        TreeContext tree("<head></head><body>\n");
        tree.build();
        tree.context.insertionMode = mode;
        tree.context.originalInsertionMode = static_cast<std::uint32_t>(InsertionMode::InBody);
        // What is read now leaves every mode sound, whatever it makes of it.
        giveMarkup(tree, " ");
        EXPECT_NO_THROW(tree.build());
        EXPECT_EQ(tree.stream.position, static_cast<std::int64_t>(tree.stream.bytes.size()));
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
    {"white space around the end of html behind frames is one text",
        "<frameset></frameset> </html> ", "html[head frameset \"  \"]", 0},
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

/// A document that a failure interrupts in the middle of a read of its stream.
class InterruptedReads : public ::testing::Test {
protected:
    ~InterruptedReads() override { context_ = nullptr; }

    /// Builds to the failure, which the n-th read brings, from 1.
    void buildUntilRead(TreeContext& tree, std::uint32_t n)
    {
        context_ = &tree.context;
        originals_ = tree.stream.operations;
        StreamOperations operations = *originals_;
        operations.read = readAndFail;
        failingRead_ = n;
        tree.stream.operations = &operations;
        InsertNode(tree.context);
        tree.stream.operations = originals_;
        EXPECT_EQ(tree.context.statusFlags, STATUS_OUT_OF_MEMORY);
        tree.context.statusFlags = 0;
    }

private:
    static std::int32_t readAndFail(
        HostStream* stream, void* buffer, std::uint32_t size, std::uint32_t* count)
    {
        const std::int32_t answer = originals_->read(stream, buffer, size, count);
        if (static_cast<MemoryStream*>(stream)->calls.reads == failingRead_)
            context_->statusFlags |= STATUS_OUT_OF_MEMORY;
        return answer;
    }

    static inline HtmlFilterContext* context_ = nullptr;
    static inline const StreamOperations* originals_ = nullptr;
    static inline std::uint32_t failingRead_ = 0;
};

TEST_F(InterruptedReads, TokenIsDroppedAndTheTextInFrontOfItKept)
{
    TreeContext tree("abcdefgh", 0x9000, /*bufferSize=*/4);
    buildUntilRead(tree, 2);
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"abcd\"]]");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"abcd\" \"fgh\"]]");
}

TEST_F(InterruptedReads, TextInFrontOfAnInterruptedScriptIsKept)
{
    TreeContext tree("ab<script>cde</script>fg", 0x9000, /*bufferSize=*/4);
    buildUntilRead(tree, 4);
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"ab\"]]");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"ab\" \"fg\"]]");
}

TEST(TreeConstruction, TokenToBeProcessedAgainOutlivesAFailure)
{
    constexpr std::uint32_t kMost = 100;
    std::uint32_t interrupted = 0;
    for (std::uint32_t n = 1; n < kMost; ++n) {
        TreeContext tree("ab<p>cd");
        zorvan::failNthAllocation(n);
        try {
            InsertNode(tree.context);
        } catch (const std::bad_alloc&) {
        } catch (const zorvan::Exception&) {
        }
        const bool wasReached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (!wasReached)
            break;
        if (tree.context.statusFlags != STATUS_OUT_OF_MEMORY)
            continue;
        ++interrupted;
        tree.context.statusFlags = 0;
        InsertNode(tree.context);
        EXPECT_EQ(tree.shortOutline(), "html[head body[\"ab\" p[\"cd\"]]]") << n;
        EXPECT_FALSE(tree.internals.hasRetryToken);
    }
    // The lists of head and body; html and p have built-in ones.
    EXPECT_EQ(interrupted, 2U);
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
