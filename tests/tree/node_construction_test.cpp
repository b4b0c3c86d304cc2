#include "tree/tree_construction.h"

#include "support/exception.h"
#include "support/html_names.h"
#include "support/process_heap.h"
#include "tests/common/tree_context.h"
#include "tests/containers/expect_failure.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace {

using testing_support::expectFailure;
using testing_support::TreeContext;

HtmlTreeNode* Insert(std::uint32_t element, HtmlFilterContext& context, std::uint8_t flags = 0)
{
    Token token = BareToken(element);
    token.flags = flags;
    return InsertElement(&token, context);
}

Token CharacterToken(std::uint32_t character, std::uint8_t moreFlags = 0)
{
    Token token = {};
    token.flags = static_cast<std::uint8_t>(TOKEN_CHARACTER | moreFlags);
    token.character = character;
    return token;
}

TEST(NodeConstruction, FirstElementHangsUnderTheRoot)
{
    TreeContext tree;
    HtmlTreeNode* const html = Insert(ELEMENT_HTML, tree.context);
    EXPECT_EQ(html->parent, tree.tree.root());
    EXPECT_EQ(html->id, 1U);
    EXPECT_EQ(tree.context.currentNode, html);
    EXPECT_EQ(tree.stack().last(), html);
    HtmlTreeNode* const head = Insert(ELEMENT_HEAD, tree.context);
    EXPECT_EQ(head->parent, html);
    EXPECT_EQ(tree.tree.nodeCount, 2U);
}

TEST(NodeConstruction, PayloadClassFollowsFromTheElement)
{
    TreeContext tree;
    EXPECT_EQ(CreateNodeData(0, tree.context), nullptr);
    for (std::uint32_t id = 1; id <= 135; ++id) {
        HtmlGenericNodeData* const payload = CreateNodeData(id, tree.context);
        ASSERT_NE(payload, nullptr) << id;
        EXPECT_EQ(payload->elementId, id);
        EXPECT_NE(dynamic_cast<HtmlTagNodeData*>(payload), nullptr) << id;
        EXPECT_EQ(dynamic_cast<HtmlImgNodeData*>(payload) != nullptr, id == ELEMENT_IMG) << id;
        EXPECT_EQ(dynamic_cast<HtmlTrNodeData*>(payload) != nullptr, id == ELEMENT_TR) << id;
        payload->~HtmlGenericNodeData();
    }
}

TEST(NodeConstruction, ElementWithoutIdFails)
{
    TreeContext tree;
    expectFailure(15, "HtmlTagNodeData(): invalid elementId for non-privileged child!",
        [&] { Insert(0, tree.context); });
    EXPECT_EQ(tree.tree.nodeCount, 0U);
}

TEST(NodeConstruction, RootWithoutATreeFails)
{
    TreeContext tree;
    tree.tree.root()->tree = nullptr;
    expectFailure(13, "CreateAppendPushElement(): pTree is NULL!",
        [&] { Insert(ELEMENT_HTML, tree.context); });
    tree.tree.root()->tree = &tree.tree;
}

TEST(NodeConstruction, NoMemoryForAPayload)
{
    TreeContext tree;
    zorvan::failNthAllocation(1);
    expectFailure(13, "CreateAppendPushElement(): node creation failed!",
        [&] { Insert(ELEMENT_HTML, tree.context); });
    zorvan::clearAllocationFailure();
    EXPECT_EQ(tree.stack().getCount(), 0);
    EXPECT_EQ(tree.tree.root()->firstChild, nullptr);
}

TEST(NodeConstruction, NoMemoryForATextNode)
{
    TreeContext tree;
    tree.context.pendingText->append(u"x");
    zorvan::failNthAllocation(1);
    expectFailure(13, "CreateAppendPushText(): node creation failed!",
        [&] { CreateAppendPushText(tree.context); });
    // The copy of the text is the second allocation.
    zorvan::failNthAllocation(2);
    expectFailure(13, "CreateAppendPushText(): node creation failed!",
        [&] { CreateAppendPushText(tree.context); });
    zorvan::clearAllocationFailure();
    EXPECT_EQ(tree.context.pendingText->length, 1);
    CreateAppendPushText(tree.context);
    EXPECT_EQ(tree.shortOutline(), "\"x\"");
}

TEST(NodeConstruction, TextIsInTheTreeOnceWhateverFails)
{
    constexpr std::int32_t kFirstStackCapacity = 127;
    constexpr std::uint32_t kMost = 20;
    std::uint32_t failuresBehindTheNode = 0;
    for (std::uint32_t n = 1; n < kMost; ++n) {
        TreeContext tree;
        // The stack has to grow for one more node.
        while (tree.stack().getCount() < kFirstStackCapacity)
            Insert(ELEMENT_I, tree.context);
        const HtmlTreeNode* const current = tree.context.currentNode;
        tree.context.pendingText->append(u"x");
        tree.context.pendingTextFoster = 1;
        zorvan::failNthAllocation(n);
        bool failed = false;
        try {
            FlushPendingText(tree.context);
        } catch (const std::bad_alloc&) {
            failed = true;
        } catch (const zorvan::Exception&) {
            failed = true;
        }
        zorvan::clearAllocationFailure();
        if (failed && current->childCount == 1) {
            ++failuresBehindTheNode;
            EXPECT_EQ(tree.context.pendingTextFoster, 0U);
        }
        EXPECT_EQ(tree.context.currentNode, current);
        FlushPendingText(tree.context);
        EXPECT_EQ(current->childCount, 1U) << n;
        EXPECT_EQ(tree.stack().getCount(), kFirstStackCapacity);
        if (!failed)
            break;
    }
    EXPECT_EQ(failuresBehindTheNode, 1U);
}

/// Takes pieces of 8 bytes from what the tree has in store, up to so many; answers how many.
std::uint32_t TakeStorage(HtmlTree& tree, std::uint32_t most = 0xFFFFFFFF)
{
    zorvan::failAllocationsFrom(1);
    std::uint32_t taken = 0;
    while (taken < most && tree.tryAllocate(8, 8) != nullptr)
        ++taken;
    zorvan::clearAllocationFailure();
    return taken;
}

TEST(NodeConstruction, NoMemoryForAFosteredNode)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    Insert(ELEMENT_TABLE, tree.context);
    HtmlGenericNodeData* const payload = CreateNodeData(ELEMENT_B, tree.context);
    TakeStorage(tree.tree);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(InsertFostered(payload, tree.context), std::bad_alloc);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(tree.tree.nodeCount, 2U);
    EXPECT_EQ(tree.tree.nextId, 3U);
    EXPECT_EQ(tree.shortOutline(), "html[table]");
    InsertFostered(payload, tree.context);
    EXPECT_EQ(tree.shortOutline(), "html[b table]");
}

TEST(NodeConstruction, NoMemoryForAFosteredNodeOfAnElement)
{
    std::uint32_t pieces = 0;
    for (const bool isMeasured : {false, true}) {
        TreeContext tree;
        Insert(ELEMENT_HTML, tree.context);
        Insert(ELEMENT_TABLE, tree.context);
        if (!isMeasured) {
            pieces = TakeStorage(tree.tree);
            continue;
        }
        // The payload still fits, and the node doesn't.
        TakeStorage(tree.tree, pieces - static_cast<std::uint32_t>(sizeof(HtmlTagNodeData) / 8));
        zorvan::failNthAllocation(1);
        EXPECT_THROW(Insert(ELEMENT_B, tree.context, TOKEN_FOSTER), std::bad_alloc);
        zorvan::clearAllocationFailure();
        EXPECT_EQ(tree.stack().getCount(), 2);
        EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_TABLE));
        Insert(ELEMENT_B, tree.context, TOKEN_FOSTER);
        EXPECT_EQ(tree.shortOutline(), "html[b table]");
    }
}

TEST(NodeConstruction, EveryAllocationMayFail)
{
    constexpr std::uint32_t kMost = 200;
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < kMost; ++n) {
        TreeContext tree("<html version=1><body id=a dir=rtl class='b c'>text<p title=x>more<br>");
        zorvan::failNthAllocation(n);
        try {
            InsertNode(tree.context);
            if ((tree.context.statusFlags & STATUS_OUT_OF_MEMORY) == 0) {
                const bool wasReached = zorvan::allocationsSeen() >= n;
                zorvan::clearAllocationFailure();
                if (!wasReached)
                    break;
                continue;
            }
        } catch (const std::bad_alloc&) {
        } catch (const zorvan::Exception& failure) {
            EXPECT_EQ(failure.code(), 13U);
        }
        zorvan::clearAllocationFailure();
        ++failures;
    }
    EXPECT_GT(failures, 10U);
    EXPECT_LT(failures, kMost - 1);
}

TEST(NodeConstruction, NoTreeStateAbandonsTheFilter)
{
    TreeContext tree;
    tree.treeStates.set(0, nullptr);
    HtmlTreeNode* const html = Insert(ELEMENT_HTML, tree.context);
    ASSERT_NE(html, nullptr);
    ASSERT_EQ(tree.host.calls.size(), 1U);
    EXPECT_EQ(tree.host.calls[0], "SOAbandonFilter 30");
    EXPECT_EQ(tree.payloadOf(*html).declarations, nullptr);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 0);
}

TEST(NodeConstruction, HostMayGiveUpWhenTheFilterIsAbandoned)
{
    TreeContext tree;
    tree.treeStates.set(0, nullptr);
    tree.host.throwAt = 1;
    EXPECT_THROW(Insert(ELEMENT_HTML, tree.context), testing_support::HostGaveUp);
    EXPECT_EQ(tree.host.calls, std::vector<std::string>{"SOAbandonFilter 30"});
    // The element stands, and is the one that a host which reads on goes on with.
    EXPECT_EQ(tree.shortOutline(), "html");
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_HTML));
    EXPECT_EQ(tree.stack().last(), tree.find(ELEMENT_HTML));
}

TEST(NodeConstruction, FailedBufferLeavesNoEmptyAttributes)
{
    constexpr std::uint32_t kMost = 100;
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < kMost; ++n) {
        TreeContext tree("<html version=v id=a class=b title=c>");
        zorvan::failNthAllocation(n);
        try {
            InsertNode(tree.context);
        } catch (const std::bad_alloc&) {
        } catch (const zorvan::Exception&) {
        }
        const bool wasReached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if ((tree.context.statusFlags & STATUS_OUT_OF_MEMORY) != 0) {
            EXPECT_EQ(tree.outline(), "html\n");
            ++failures;
        }
        if (!wasReached)
            break;
    }
    EXPECT_EQ(failures, 1U);
}

TEST(NodeConstruction, ElementWithoutStyleKeepsItsOwnEmptyList)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    HtmlTreeNode* const div = Insert(ELEMENT_DIV, tree.context);
    const CssDeclarationList* const list = tree.payloadOf(*div).declarations;
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->isEmpty());
    EXPECT_EQ(tree.context.buildFrames.getCount(), 2);
}

TEST(NodeConstruction, CascadedListTakesThePlaceOfTheOwnOne)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    HtmlTreeNode* const bold = Insert(ELEMENT_B, tree.context);
    const CssDeclarationList* const list = tree.payloadOf(*bold).declarations;
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->contains(PROPERTY_FONT_WEIGHT));
    EXPECT_NE(tree.payloadOf(*bold).undoDeclarations, nullptr);
    PopElement(tree.context);
    EXPECT_EQ(tree.payloadOf(*bold).undoDeclarations, nullptr);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 1);
}

TEST(NodeConstruction, WithoutAStyleSheetNothingIsDeclared)
{
    TreeContext tree("<html id=a dir=rtl>");
    tree.treeState.styleContext = nullptr;
    tree.build();
    EXPECT_EQ(tree.outline(), "html dir=enum:2 id=\"a\"\n");
    EXPECT_EQ(tree.payloadOf(*tree.find(ELEMENT_HTML)).declarations, nullptr);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 1);
}

TEST(NodeConstruction, AttributesOfATagOnly)
{
    TreeContext tree("<html id=a>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html id=\"a\"\n");
    // What the scanner has recorded is not a synthetic token's.
    Insert(ELEMENT_HEAD, tree.context, TOKEN_START_TAG | TOKEN_SYNTHETIC);
    const Token body = BareToken(ELEMENT_BODY);
    CreateAppendPushElement(&body, /*applyAttributes=*/false, tree.context, /*flushText=*/true);
    EXPECT_EQ(tree.outline(), "html id=\"a\"\n  head\n    body\n");
}

TEST(NodeConstruction, TextIsFlushedInFrontOfAnElementOrNot)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    tree.context.pendingText->append(u"a");
    Insert(ELEMENT_P, tree.context);
    tree.context.pendingText->append(u"b");
    const Token bold = BareToken(ELEMENT_B);
    CreateAppendPushElement(&bold, /*applyAttributes=*/false, tree.context, /*flushText=*/false);
    FlushPendingText(tree.context);
    EXPECT_EQ(tree.shortOutline(), "html[\"a\" p[b[\"b\"]]]");
}

TEST(NodeConstruction, FlushOfNothing)
{
    TreeContext tree;
    FlushPendingText(tree.context);
    EXPECT_EQ(tree.tree.nodeCount, 0U);
    EXPECT_EQ(tree.context.currentNode, nullptr);
}

TEST(NodeConstruction, FlushLeavesTheStackAsItWas)
{
    TreeContext tree;
    HtmlTreeNode* const html = Insert(ELEMENT_HTML, tree.context);
    tree.context.pendingText->append(u"a");
    tree.context.pendingTextFoster = 1;
    FlushPendingText(tree.context);
    EXPECT_EQ(tree.stack().getCount(), 1);
    EXPECT_EQ(tree.context.currentNode, html);
    EXPECT_EQ(tree.context.pendingText->length, 0);
    EXPECT_EQ(tree.context.pendingTextFoster, 0U);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 1);
}

TEST(NodeConstruction, TextEndsAtAUnitZero)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    for (const std::uint32_t character : {0x61U, 0x110000U, 0x62U}) {
        const Token token = CharacterToken(character);
        AppendPendingChar(&token, tree.context);
    }
    EXPECT_EQ(tree.context.pendingText->length, 3);
    FlushPendingText(tree.context);
    EXPECT_EQ(tree.shortOutline(), "html[\"a\"]");
}

struct CharacterRow {
    std::uint32_t character;
    const char16_t* text;
};

TEST(NodeConstruction, CharactersBeyondTheLastAreOneTruncatedUnit)
{
    const CharacterRow rows[] = {
        {0, u""},
        {1, u"\u0001"},
        {0x61, u"a"},
        {0xFFFF, u"\uFFFF"},
        {0x10000, u"&#65536;"},
        {0x1F600, u"&#128512;"},
        {0x10FFFE, u"&#1114110;"},
        {0x10FFFF, u"\uFFFF"},
        {0x110041, u"A"},
        {0xFFFFD83D, u"\xD83D"},
    };
    for (const CharacterRow& row : rows) {
        TreeContext tree;
        const Token token = CharacterToken(row.character);
        AppendPendingChar(&token, tree.context);
        EXPECT_TRUE(tree.context.pendingText->equals(zorvan::WString(row.text))) << row.character;
        EXPECT_EQ(tree.context.pendingTextFoster, 0U);
    }
}

TEST(NodeConstruction, FosterFlagOfACharacterStays)
{
    TreeContext tree;
    Token token = CharacterToken(0, TOKEN_FOSTER);
    AppendPendingChar(&token, tree.context);
    EXPECT_EQ(tree.context.pendingTextFoster, 0U);
    token = CharacterToken(0x20, TOKEN_FOSTER);
    AppendPendingChar(&token, tree.context);
    token = CharacterToken(0x20);
    AppendPendingChar(&token, tree.context);
    EXPECT_EQ(tree.context.pendingTextFoster, 1U);
}

TEST(NodeConstruction, FosteringNeedsFlagAndTarget)
{
    struct Row {
        std::uint32_t current;
        bool flag;
        const char* outline;
    };
    const Row rows[] = {
        {ELEMENT_TABLE, true, "html[b \"x\" table]"},
        {ELEMENT_TABLE, false, "html[table[b[\"x\"]]]"},
        {ELEMENT_TBODY, true, "html[b \"x\" table[tbody]]"},
        {ELEMENT_TFOOT, true, "html[b \"x\" table[tfoot]]"},
        {ELEMENT_THEAD, true, "html[b \"x\" table[thead]]"},
        {ELEMENT_TR, true, "html[b \"x\" table[tr]]"},
        {ELEMENT_TD, true, "html[table[td[b \"x\"]]]"},
    };
    for (const Row& row : rows) {
        TreeContext tree;
        HtmlFilterContext& context = tree.context;
        Insert(ELEMENT_HTML, context);
        Insert(ELEMENT_TABLE, context);
        if (row.current != ELEMENT_TABLE)
            Insert(row.current, context);
        const std::uint8_t flags = row.flag ? TOKEN_FOSTER : 0;
        Insert(ELEMENT_B, context, flags);
        if (row.flag)
            PopElement(context);
        const Token token = CharacterToken('x', flags);
        AppendPendingChar(&token, context);
        FlushPendingText(context);
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.current;
    }
}

TEST(NodeConstruction, FosteredNodeIsCounted)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    Insert(ELEMENT_TABLE, tree.context);
    HtmlTreeNode* const node
        = InsertFostered(CreateNodeData(ELEMENT_B, tree.context), tree.context);
    EXPECT_EQ(node->id, 3U);
    EXPECT_EQ(tree.tree.nodeCount, 3U);
    EXPECT_EQ(tree.tree.nextId, 4U);
    EXPECT_EQ(node->nextSibling, tree.find(ELEMENT_TABLE));
}

TEST(NodeConstruction, FosteredWithoutATableGoesToTheBottom)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    Insert(ELEMENT_TR, tree.context);
    Insert(ELEMENT_B, tree.context, TOKEN_FOSTER);
    EXPECT_EQ(tree.shortOutline(), "html[tr b]");
}

/// A stream whose seeks fail by an exception, as only a fault of the filter's own would.
const StreamOperations* originalOperations = nullptr;

std::int32_t throwingSeek(HostStream*, std::uint32_t, std::uint32_t)
{
    throw zorvan::Exception(25, "item could not be found", nullptr, nullptr, 0);
}

std::int32_t exhaustedSeek(HostStream*, std::uint32_t, std::uint32_t) { throw std::bad_alloc(); }

/// A document whose attribute value can only be read again by a seek.
class FaultyStyle : public ::testing::Test {
protected:
    FaultyStyle()
        : tree("<html id=abcdefghij>", 0x9000, /*bufferSize=*/4)
    {
        originalOperations = tree.stream.operations;
        operations_ = *originalOperations;
        tree.stream.operations = &operations_;
    }
    ~FaultyStyle() override { tree.stream.operations = originalOperations; }

    TreeContext tree;
    StreamOperations operations_;
};

TEST_F(FaultyStyle, ExceptionOfTheAttributePassGivesTheFilterUp)
{
    operations_.seek = throwingSeek;
    try {
        InsertNode(tree.context);
        ADD_FAILURE() << "passes";
    } catch (const UTBailOut& bailOut) {
        EXPECT_EQ(bailOut.code, 25U);
        EXPECT_EQ(bailOut.first, 0U);
        EXPECT_EQ(bailOut.second, 0U);
    }
    // The node stands all the same.
    EXPECT_EQ(tree.shortOutline(), "html");
}

TEST(NodeConstruction, ExceptionOfEnteringTheStyleGivesTheFilterUp)
{
    TreeContext tree;
    Insert(ELEMENT_HTML, tree.context);
    // A font that isn't among the names.
    constexpr std::int32_t kMissingFont = 50;
    tree.internals.fontTree.fontCount = kMissingFont + 1;
    tree.internals.fontTree.top = ~kMissingFont;
    try {
        Insert(ELEMENT_CODE, tree.context);
        ADD_FAILURE() << "passes";
    } catch (const UTBailOut& bailOut) {
        EXPECT_EQ(bailOut.code, 137U);
        EXPECT_EQ(bailOut.first, 0U);
        EXPECT_EQ(bailOut.second, 0U);
    }
    EXPECT_EQ(tree.shortOutline(), "html[code]");
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_CODE));
    EXPECT_EQ(tree.context.buildFrames.getCount(), 1);
}

TEST_F(FaultyStyle, OtherExceptionsLeaveAsTheyAre)
{
    operations_.seek = exhaustedSeek;
    EXPECT_THROW(InsertNode(tree.context), std::bad_alloc);
}

} // namespace
