#include "filter/close.h"

#include "filter/entry_points.h"
#include "support/process_heap.h"
#include "tests/common/allocation_count.h"
#include "tests/common/document_run.h"

#include <gtest/gtest.h>

namespace {

using testing_support::DocumentRun;

constexpr char kContent[] = "<html><head><title>t</title></head><body><div>a</div><div id=x>b<b>c"
                            "</b></div><pre>x\ny</pre><div><span style='color:red'>d</span></div>";

/// What a document leaves behind once it is closed, whatever happened to it before.
void expectNothingLeft(void (*use)(DocumentRun& run))
{
    const std::size_t heapBefore = zorvan::heapBlocksLive();
    const std::size_t before = testing_support::liveAllocations();
    {
        DocumentRun run(kContent);
        use(run);
        run.close();
        const HtmlFilterContext& context = *run.context;
        EXPECT_EQ(context.treeList, nullptr);
        EXPECT_EQ(context.treeStates, nullptr);
        EXPECT_EQ(context.valueCache, nullptr);
        EXPECT_EQ(context.fontNames, nullptr);
        EXPECT_EQ(context.internals, nullptr);
        EXPECT_EQ(context.buildFrames.getCount(), 0);
        EXPECT_EQ(context.deferredList.getCount(), 0);
    }
    EXPECT_EQ(zorvan::heapBlocksLive(), heapBefore);
    EXPECT_LE(testing_support::liveAllocations(), before);
}

} // namespace

TEST(Close, WithoutAnyRead)
{
    expectNothingLeft([](DocumentRun& run) { run.open(); });
}

TEST(Close, AfterASectionWithoutARead)
{
    expectNothingLeft([](DocumentRun& run) {
        run.open();
        run.section();
    });
}

TEST(Close, AfterTheEnd)
{
    expectNothingLeft([](DocumentRun& run) { run.run(); });
}

TEST(Close, AfterABodyHasBeenDiscarded)
{
    const std::size_t heapBefore = zorvan::heapBlocksLive();
    const std::size_t before = testing_support::liveAllocations();
    {
        DocumentRun run("<p title=t style='color:red'> <b class=c></b>"
                        "<div id=k><frameset rows=1><frame src=x></frameset>");
        run.run();
        run.close();
    }
    EXPECT_EQ(zorvan::heapBlocksLive(), heapBefore);
    EXPECT_LE(testing_support::liveAllocations(), before);
}

TEST(Close, AfterAHostStopInMidWalk)
{
    expectNothingLeft([](DocumentRun& run) {
        run.host->stopEvery = 1;
        run.open();
        run.section();
        run.read();
        run.read();
        EXPECT_FALSE(run.isDone());
        EXPECT_GT(run.context->deferredList.getCount(), 0);
    });
}

TEST(Close, AfterSeveralSections)
{
    expectNothingLeft([](DocumentRun& run) {
        run.run();
        for (int i = 0; i < 40; ++i) {
            run.section();
            run.readToEnd();
        }
    });
}

TEST(Close, AfterAnException)
{
    expectNothingLeft([](DocumentRun& run) {
        run.host->throwAt = 9;
        EXPECT_THROW(run.run(), testing_support::HostGaveUp);
    });
}

TEST(Close, WithoutAnOpenIsHarmless)
{
    HtmlFilterContext* const context = VwAllocProc();
    EXPECT_EQ(VwStreamClose(nullptr, context), 0);
    VwFreeProc(context);
}

TEST(Close, TheBlockCanBeOpenedAgain)
{
    DocumentRun run("<title>t</title><div>a<b>b</b></div><pre>c</pre>");
    run.run();
    const std::vector<std::string> first = run.host->takeCalls();
    run.close();
    run.stream.position = 0;
    HostStream* hostStream = nullptr;
    VwLocalDown(run.block, &hostStream);
    StreamBlock* block = nullptr;
    void* routines[kSoRoutineCount];
    std::copy(std::begin(run.context->soRoutines), std::end(run.context->soRoutines), routines);
    VwLocalUp(hostStream, &block, run.context);
    std::copy(routines, routines + kSoRoutineCount, run.context->soRoutines);
    run.block = block;
    run.run();
    EXPECT_EQ(run.host->calls, first);
}
