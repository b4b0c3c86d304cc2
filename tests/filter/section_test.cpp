#include "filter/section.h"

#include "containers/array_list.h"
#include "containers/indexed_list.h"
#include "filter/entry_points.h"
#include "filter/filter_internals.h"
#include "input/stream_block.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tests/common/document_run.h"
#include "tree/html_tree.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using testing_support::DocumentRun;

struct FileTypeRow {
    std::uint16_t fileId;
    std::uint16_t defaultCharSet;
    std::uint32_t sectionCharSetId;
};

constexpr FileTypeRow kFileTypes[] = {
    {1101, 0x9000, 0x14B00000},
    {1109, 0x8001, 0x14E20100},
    {1110, 0x2005, 0x13A40000},
    {1111, 0x2004, 0x13A40000},
    {1112, 0x2006, 0x13B60000},
    {1113, 0x2007, 0x14B00000},
    {1114, 0x2008, 0x13A80000},
    {1115, 0x2009, 0x13B50000},
    {1116, 0x800A, 0x14E30100},
    {1117, 0x800B, 0x436E0100},
    {1153, 0x4003, 0x13A40000},
    {1147, 0x9000, 0x14B00000},
    {1148, 0x9000, 0x14B00000},
    {1149, 0x9000, 0x14B00000},
    {1182, 0x9000, 0x14B00000},
    {0, 0x9000, 0x14B00000},
    {4711, 0x9000, 0x14B00000},
};

} // namespace

TEST(Section, TheFileTypeGivesTheCharacterSet)
{
    for (const FileTypeRow& row : kFileTypes) {
        DocumentRun run("abc");
        run.open(row.fileId);
        run.section();
        EXPECT_EQ(run.context->defaultCharSet, row.defaultCharSet) << row.fileId;
        EXPECT_EQ(run.context->currentCharSet, row.defaultCharSet) << row.fileId;
        EXPECT_EQ(run.context->sectionCharSet, row.defaultCharSet) << row.fileId;
        EXPECT_EQ(run.context->sectionCharSetId, row.sectionCharSetId) << row.fileId;
    }
}

TEST(Section, AFileOf1181IsDecidedByItsFirstByte)
{
    DocumentRun wide(std::string_view("\0<\0p\0>\0a", 8));
    wide.open(1181);
    wide.section();
    EXPECT_EQ(wide.context->unicodeBomMode, 255);
    EXPECT_EQ(wide.context->defaultCharSet, 0x1000);
    wide.readToEnd();
    EXPECT_NE(std::find(wide.host->calls.begin(), wide.host->calls.end(),
                  "SOEmitTextAt \"a\" 1 347078656 4660"),
        wide.host->calls.end());

    DocumentRun narrow("<p>\x82");
    narrow.open(1181);
    narrow.section();
    narrow.readToEnd();
    EXPECT_NE(std::find(narrow.host->calls.begin(), narrow.host->calls.end(),
                  "SOEmitTextAt \"\\u0082\" 1 347078656 4660"),
        narrow.host->calls.end())
        << "nothing is replaced in this set";
    EXPECT_EQ(narrow.context->unicodeBomMode, 0);
    EXPECT_EQ(narrow.context->defaultCharSet, 0);
    EXPECT_EQ(narrow.context->sectionCharSetId, 0x14B00000u);
}

TEST(Section, ARequestAndMarksDecide)
{
    struct Row {
        const char* content;
        std::uint32_t requested;
        std::uint16_t charSet;
        std::uint16_t byteOrder;
        std::uint16_t mark;
    };
    for (const Row& row : {
             Row{"abc", 0x14E30100, 0x800A, 0, 0},
             Row{"abc", 0x12345678, 0, 0, 0},
             Row{"abcd", 0x14B00001, 0x1000, 254, 0},
             Row{"abcd", 0x14B00002, 0x1000, 255, 0},
             Row{"\xEF\xBB\xBF"
                 "a",
                 0, 0x3027, 0, 191},
             Row{"\xEF\xBB\xBF"
                 "a",
                 0x14E30100, 0x3027, 0, 191},
             Row{"\xEF\xBB\xBF"
                 "a",
                 0x14B00001, 0x3027, 0, 191},
             Row{"\xFF\xFE"
                 "ab",
                 0, 0x1000, 254, 254},
             Row{"\xFE\xFF"
                 "ab",
                 0x14E30100, 0x1000, 255, 255},
             Row{"\xFE\xFE"
                 "ab",
                 0, 0x1000, 254, 254},
             Row{"\xFF\xFF"
                 "ab",
                 0, 0x1000, 255, 255},
             Row{"", 0, 0x9000, 0, 0},
             Row{"\xEF\xBB", 0, 0x9000, 0, 0},
             Row{"\xFF", 0, 0x9000, 0, 0},
         }) {
        DocumentRun run(row.content);
        run.record.requestedCharSetId = row.requested;
        run.open();
        run.section();
        EXPECT_EQ(run.context->currentCharSet, row.charSet) << row.content << row.requested;
        EXPECT_EQ(run.context->unicodeBomMode, row.byteOrder) << row.content << row.requested;
        EXPECT_EQ(run.context->bomSeen, row.mark) << row.content << row.requested;
        EXPECT_EQ(run.context->statusFlags, 0);
    }
}

TEST(Section, SetsTheOutputStateToItsDefaults)
{
    DocumentRun run("x");
    run.open();
    run.context->fieldCounter = 5;
    run.context->pageColor = 5;
    run.section();
    const HtmlFilterContext& context = *run.context;
    EXPECT_EQ(context.statusFlags, 0);
    EXPECT_EQ(context.fieldCounter, 0u);
    EXPECT_EQ(context.linkCounter, 0);
    EXPECT_EQ(context.bookmarkCounter, 0);
    EXPECT_EQ(context.pendingTab, 0u);
    EXPECT_EQ(context.baseFontHeight, 24);
    EXPECT_EQ(context.listDepth, -1);
    EXPECT_EQ(context.textColorMode, 1u);
    EXPECT_EQ(context.textColor, 0u);
    EXPECT_EQ(context.linkColor, 0xFF0000u);
    EXPECT_EQ(context.defaultLinkColor, 0xFF0000u);
    EXPECT_EQ(context.pageColor, 0xFFFFFFFFu);
    EXPECT_EQ(context.lastStyleSheetId, -1);
    EXPECT_EQ(context.savedWalkNodeId, -1);
    EXPECT_EQ(context.insertionMode, 1u);
    EXPECT_EQ(context.framesetOk, 1u);
    EXPECT_EQ(context.currentNode, nullptr);
    EXPECT_EQ(context.walkNode, nullptr);
}

TEST(Section, MakesAnEmptyTree)
{
    DocumentRun run("x");
    run.open();
    run.section();
    const HtmlFilterContext& context = *run.context;
    ASSERT_EQ(context.treeList->getCount(), 1);
    EXPECT_EQ(context.currentTreeIndex, 0);
    HtmlTree* const tree = context.treeList->get(0);
    EXPECT_EQ(context.currentTreeRoot, tree->root());
    EXPECT_EQ(tree->root()->id, 0u);
    EXPECT_EQ(tree->root()->data, nullptr);
    EXPECT_EQ(tree->nextId, 1u);
    const TreeState* const state = context.treeStates->get(0);
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(state->index, 0u);
    EXPECT_EQ(state->parsed, 0u);
    EXPECT_NE(state->styleContext, nullptr);
    EXPECT_EQ(context.openElements, &state->openElements);
}

TEST(Section, IsAnnouncedBeforeTheFeatures)
{
    DocumentRun run("x");
    run.open();
    run.section();
    const std::vector<std::string> expected
        = {"SOAnnounceSection 12 0 0", "SOAnnounceFeatures 1343640"};
    EXPECT_EQ(run.host->calls, expected);
}

TEST(Section, ASecondOneKeepsTheOldTree)
{
    DocumentRun run("<p>one");
    run.run();
    HtmlTree* const first = run.context->treeList->get(0);
    EXPECT_EQ(run.context->readCount, 1);
    run.host->takeCalls();
    run.section();
    const HtmlFilterContext& context = *run.context;
    ASSERT_EQ(context.treeList->getCount(), 2);
    EXPECT_EQ(context.treeList->get(0), first);
    EXPECT_NE(first->root()->firstChild, nullptr);
    EXPECT_EQ(context.currentTreeIndex, 1);
    EXPECT_EQ(context.currentTreeRoot, context.treeList->get(1)->root());
    EXPECT_EQ(context.walkFinished, 0u);
    EXPECT_EQ(context.readCount, 1) << "the count of reads survives";
    EXPECT_EQ(run.host->calls, std::vector<std::string>{"SOAnnounceSection 12 0 0"})
        << "the features are announced once";
}

TEST(Section, ASecondOneBeginsClean)
{
    DocumentRun run("<title>a");
    run.open();
    run.section();
    HtmlFilterContext& context = *run.context;
    context.rawTextMode = RAW_TEXT_STRICT;
    context.parseError = 1;
    context.walkPending = 1;
    context.pendingText->append(u'x');
    context.pendingChars->append(u'y');
    context.internals->pendingCharsTaken = 1;
    context.headElement = context.currentTreeRoot;
    context.formElement = context.currentTreeRoot;
    context.internals->hasRetryToken = true;
    run.section();
    EXPECT_FALSE(context.internals->hasRetryToken);
    EXPECT_EQ(context.rawTextMode, 0u);
    EXPECT_EQ(context.parseError, 0u);
    EXPECT_EQ(context.walkPending, 0u);
    EXPECT_EQ(context.pendingText->length, 0);
    EXPECT_EQ(context.pendingChars->length, 0);
    EXPECT_EQ(context.internals->pendingCharsTaken, 0);
    EXPECT_EQ(context.headElement, nullptr);
    EXPECT_EQ(context.formElement, nullptr);
    EXPECT_EQ(context.buildFrames.getCount(), 0);
    EXPECT_EQ(context.deferredList.getCount(), 0);
}

TEST(Section, AByteOrderFoundInTheInputDoesNotOutliveIt)
{
    DocumentRun run(std::string_view("\xFF\xFE"
                                     "a\0abcd",
        8));
    run.open();
    run.section();
    EXPECT_EQ(run.context->unicodeBomMode, 254);
    run.section();
    EXPECT_EQ(run.context->unicodeBomMode, 0) << "the stream stands behind the mark";
    EXPECT_EQ(run.context->bomSeen, 0);

    DocumentRun requested("abcdefgh");
    requested.record.requestedCharSetId = 0x14B00001;
    requested.open();
    requested.section();
    EXPECT_EQ(requested.context->unicodeBomMode, 254);
    requested.section();
    EXPECT_EQ(requested.context->unicodeBomMode, 254) << "a request is good for all sections";
}

TEST(Section, AForcedCharacterSetReplacesTheRequest)
{
    DocumentRun run("x");
    run.record.requestedCharSetId = 0x14E30100;
    run.open();
    run.context->forcedCharSetId = 0x436E0100;
    run.section();
    EXPECT_EQ(run.context->requestedCharSetId, 0x436E0100u);
    EXPECT_EQ(run.context->currentCharSet, 0x800B);
    EXPECT_EQ(run.context->defaultCharSet, 0x800B);
}

TEST(Section, DoesNotSeekTheStream)
{
    DocumentRun run("abcdef");
    run.open();
    run.section();
    EXPECT_EQ(run.stream.calls.seeks, 0u);
}

TEST(Section, CreateTreeCanBeRepeated)
{
    DocumentRun run("x");
    run.open();
    run.section();
    for (int i = 0; i < 100; ++i)
        createTree(*run.context);
    EXPECT_EQ(run.context->currentTreeIndex, 100);
    EXPECT_EQ(run.context->treeStates->get(100)->index, 100u);
    EXPECT_EQ(run.context->treeList->getCount(), 101);
}

// A mark overrules a request for good: the request has become one for UTF-16 of either order.
TEST(Section, AnOverruledRequestIsNotBroughtBack)
{
    DocumentRun run(std::string_view("\xFE\xFF\0abcdef", 9));
    run.record.requestedCharSetId = 0x14B00001;
    run.open();
    run.section();
    EXPECT_EQ(run.context->unicodeBomMode, 255);
    EXPECT_EQ(run.context->requestedCharSetId, 0x14B00000u);
    run.section();
    EXPECT_EQ(run.context->unicodeBomMode, 0);
    EXPECT_EQ(run.context->currentCharSet, 0x1000);
}

TEST(Section, TheFirstByteOf1181IsAskedAnewEachTime)
{
    DocumentRun run(std::string_view("\0<\0p", 4));
    run.open(1181);
    run.section();
    EXPECT_EQ(run.context->unicodeBomMode, 255);
    run.readToEnd();
    run.section();
    EXPECT_EQ(run.context->unicodeBomMode, 0) << "there is no byte left";
    EXPECT_EQ(run.context->defaultCharSet, 0x1000) << "what is not decided keeps its value";
}

// What the scanner has learned of one section's bytes says nothing of the next one's.
TEST(Section, CutOffMarkupOfOneSectionDoesNotReachTheNext)
{
    std::string first = "<p>x";
    for (int i = 0; i < 100; ++i)
        first += "<!--q ";
    DocumentRun run(first);
    run.run();
    run.host->takeCalls();
    const std::string second = "<p>x<!-- " + std::string(600, 'q') + "--><b>second</b>";
    run.stream.bytes.assign(second.begin(), second.end());
    run.stream.position = 0;
    run.block->bufferPos = 0;
    run.block->bytesValid = 0;
    run.block->bytesLeft = 0;
    run.section();
    run.readToEnd();
    const auto& calls = run.host->calls;
    EXPECT_NE(
        std::find(calls.begin(), calls.end(), "SOEmitTextAt \"x\" 1 347078656 4660"), calls.end());
    EXPECT_NE(std::find(calls.begin(), calls.end(), "SOEmitTextAt \"second\" 6 347078656 4660"),
        calls.end());
}
