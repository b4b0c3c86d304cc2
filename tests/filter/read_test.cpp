#include "filter/entry_points.h"

#include "containers/indexed_list.h"
#include "support/bail_out.h"
#include "support/exception.h"
#include "support/process_heap.h"
#include "tests/common/document_run.h"
#include "tree/html_tree.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using testing_support::DocumentRun;
using testing_support::HostGaveUp;

std::size_t countOf(const std::vector<std::string>& calls, const std::string& line)
{
    return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), line));
}

constexpr char kEndOfDocument[] = "SOEmitBreak 2 0";

} // namespace

TEST(Read, AnEmptyStreamEndsOnTheFirstCall)
{
    DocumentRun run("");
    run.open();
    run.section();
    run.host->takeCalls();
    EXPECT_EQ(run.read(), 0);
    EXPECT_EQ(run.host->calls, std::vector<std::string>{kEndOfDocument});
    EXPECT_EQ(run.context->walkFinished, 1u);
    EXPECT_EQ(run.context->currentTreeRoot->firstChild, nullptr);
}

TEST(Read, AfterTheEndEachCallSendsTheEndAgain)
{
    DocumentRun run("<p>a");
    run.run();
    run.host->takeCalls();
    EXPECT_EQ(run.read(), 0);
    EXPECT_EQ(run.read(), 0);
    EXPECT_EQ(run.host->calls, (std::vector<std::string>{kEndOfDocument, kEndOfDocument}));
}

TEST(Read, WithoutHeadBodyAndMetaThePrescanReadsAllAndRewinds)
{
    DocumentRun run("just text");
    run.run();
    EXPECT_EQ(countOf(run.host->calls, "SOEmitTextAt \"just text\" 9 347078656 4660"), 1u);
}

TEST(Read, TheTokenBufferIsThereDuringTheCallOnly)
{
    DocumentRun run("<p>a");
    run.open();
    run.section();
    const std::size_t live = zorvan::heapBlocksLive();
    run.read();
    EXPECT_EQ(run.context->tokenBuffer, nullptr);
    EXPECT_EQ(run.context->tokenBufferAlloc, nullptr);
    EXPECT_GE(zorvan::heapBlocksLive(), live);
}

TEST(Read, AHostThatStopsGetsTheSameCallsInSlices)
{
    const char* content = "<html><head><title>t</title></head><body><div>a</div><div>b<b>c</b>"
                          "</div><pre>x\ny\n</pre><div>d</div></body></html>";
    DocumentRun plain(content);
    EXPECT_EQ(plain.run(), 1u);
    for (const std::uint32_t stop : {1u, 2u, 3u}) {
        DocumentRun sliced(content);
        sliced.host->stopEvery = stop;
        EXPECT_GT(sliced.run(), 1u);
        EXPECT_EQ(sliced.host->calls, plain.host->calls) << stop;
    }
}

TEST(Read, AStandAloneLastReadAnswersZero)
{
    DocumentRun run("<p>a");
    run.open();
    run.section();
    EXPECT_EQ(run.read(), 0);
    EXPECT_TRUE(run.isDone());
}

TEST(Read, AnEmbeddedLastReadAnswersTheEndAndSendsNoBreak)
{
    DocumentRun run("<p>a");
    run.open();
    run.context->embeddedMode = 1;
    run.section();
    EXPECT_EQ(run.read(), READ_FINISHED);
    EXPECT_EQ(countOf(run.host->calls, kEndOfDocument), 0u);
}

TEST(Read, WithoutScratchOrTokenBufferTheCallFailsAndCanBeRepeated)
{
    for (const std::uint32_t failing : {1u, 2u}) {
        DocumentRun run("<p>a");
        run.open();
        run.section();
        run.host->takeCalls();
        const std::size_t live = zorvan::heapBlocksLive();
        zorvan::failNthAllocation(failing);
        EXPECT_EQ(run.read(), 0);
        zorvan::clearAllocationFailure();
        EXPECT_EQ(run.context->statusFlags, STATUS_OUT_OF_MEMORY) << failing;
        EXPECT_EQ(run.context->readCount, 0) << failing;
        EXPECT_TRUE(run.host->calls.empty()) << "no bail-out on this road";
        EXPECT_EQ(zorvan::heapBlocksLive(), live);
        run.readToEnd();
        EXPECT_TRUE(run.isDone());
    }
}

TEST(Read, WithoutATreeStateTheFilterGivesUp)
{
    DocumentRun run("<p>a");
    run.open();
    run.section();
    run.host->takeCalls();
    run.context->currentTreeIndex = 5;
    EXPECT_EQ(run.read(), 0);
    EXPECT_EQ(run.host->calls, std::vector<std::string>{"SOAbandonFilter 30"});
    run.context->currentTreeIndex = 0;
}

TEST(Read, AFailureBitIsMappedToACode)
{
    // The bit is set where a break is sent, in the middle of the walk.
    struct Row {
        std::uint16_t bits;
        const char* call;
    };
    for (const Row& row : {Row{STATUS_OUT_OF_MEMORY, "SOAbandonFilter 13"},
             Row{STATUS_INTERNAL_ERROR, "SOAbandonFilter 260"},
             Row{STATUS_OUT_OF_MEMORY | STATUS_INTERNAL_ERROR, "SOAbandonFilter 13"}}) {
        DocumentRun run("<div>a</div><div>b</div>");
        run.open();
        run.section();
        static std::uint16_t bits = 0;
        bits = row.bits;
        static HtmlFilterContext* document = nullptr;
        document = run.context;
        SOEmitBreakRoutine routine = [](std::uint16_t, std::uint32_t, void*, void*) {
            document->statusFlags |= bits;
            return std::uint32_t{0};
        };
        VwSetSoRtn(SO_EMIT_BREAK, reinterpret_cast<void*>(routine), run.context);
        EXPECT_EQ(run.read(), 0);
        EXPECT_EQ(run.host->calls.back(), row.call);
    }
}

TEST(Read, TheWalkNowBitAloneEndsTheParseAndRunsTheWalk)
{
    DocumentRun run(std::string(3'000, 'a')); // more than a buffer, so that the parse reads
    run.open();
    run.section();
    run.context->readCount = 1; // no prescan, so that the parse meets the bit
    static HtmlFilterContext* document = nullptr;
    document = run.context;
    static const StreamOperations* plain = nullptr;
    plain = run.stream.operations;
    StreamOperations marking = *plain;
    marking.read = [](HostStream* stream, void* buffer, std::uint32_t size, std::uint32_t* count) {
        document->statusFlags |= STATUS_WALK_NOW;
        return plain->read(stream, buffer, size, count);
    };
    run.stream.operations = &marking;
    EXPECT_EQ(run.read(), 0);
    EXPECT_EQ(run.context->walkFinished, 1u) << "the walk ran over what there is of the tree";
    EXPECT_EQ(run.context->treeStates->get(0)->parsed, 0u);
}

TEST(Read, AnInvalidInsertionModeLeavesAsAnException)
{
    for (const std::uint32_t mode : {0u, 23u, 0xFFFFFFFFu}) {
        DocumentRun run("<p>a");
        run.open();
        run.section();
        run.context->insertionMode = mode;
        try {
            run.read();
            ADD_FAILURE() << mode;
        } catch (const zorvan::Exception& failure) {
            EXPECT_EQ(failure.code(), 15u);
            EXPECT_STREQ(failure.message(), "InsertNode(), invalid insertion mode!");
        }
        EXPECT_EQ(run.context->tokenBuffer, nullptr);
    }
}

TEST(Read, AHostMayLeaveThroughAnyCall)
{
    const char* content = "<html><head><title>t</title></head><body><h1>x</h1><p id=i>y <b>z</b>"
                          "<table><tr><td>c</table>";
    DocumentRun plain(content);
    plain.run();
    for (std::uint32_t call = 1; call <= plain.host->callCount; ++call) {
        DocumentRun run(content);
        run.host->throwAt = call;
        EXPECT_THROW(run.run(), HostGaveUp) << call;
        EXPECT_EQ(run.context->tokenBuffer, nullptr);
    }
}

TEST(Read, AnyFailedAllocationEndsInOrder)
{
    const char* content
        = "<html><head><title>t&amp;</title><meta name=a content=b></head><body>"
          "<h1 id=x class=y style='color:red'>x</h1><p>y <b>z</b> &#128512;</p>"
          "<style>p { color: red }</style><pre>a\nb</pre><foo>c</foo></body></html>";
    std::uint32_t ends = 0;
    for (std::uint32_t n = 1; n < 20'000; ++n) {
        DocumentRun run(content);
        run.open();
        run.section();
        zorvan::failNthAllocation(n);
        try {
            run.readToEnd();
        } catch (const std::bad_alloc&) {
            ++ends;
        } catch (const zorvan::Exception& failure) {
            EXPECT_TRUE(failure.code() == 13 || failure.code() == 137) << failure.code();
            ++ends;
        } catch (const UTBailOut& failure) {
            // 18 is that of a style sheet whose text finds no memory.
            EXPECT_TRUE(failure.code == 13 || failure.code == 18) << failure.code;
            ++ends;
        }
        const bool reached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (!reached)
            break;
    }
    EXPECT_GT(ends, 20u);
}

// The count of reads has 16 bits: behind 65,535 it begins anew, and the read that is the first
// again looks for a character set at the end of the input.
TEST(Read, SeventyThousandSlicesEndInOrder)
{
    std::string content;
    for (int i = 0; i < 70'000; ++i)
        content += "<div>x</div>";
    DocumentRun run(content);
    run.host->stopEvery = 1;
    EXPECT_GE(run.run(), 70'000u);
    EXPECT_TRUE(run.isDone());
    EXPECT_LT(run.context->readCount, 5'000);
    EXPECT_EQ(countOf(run.host->calls, "SOEmitTextAt \"x\" 1 347078656 4660"), 70'000u);
}

TEST(Read, EveryByteValueAloneIsADocument)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string content(1, static_cast<char>(byte));
        DocumentRun run(content);
        run.run();
        EXPECT_TRUE(run.isDone()) << byte;
    }
}
