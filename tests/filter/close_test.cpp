#include "filter/close.h"

#include "filter/entry_points.h"
#include "support/engine_options.h"
#include "support/exception.h"
#include "support/process_heap.h"
#include "tests/common/allocation_count.h"
#include "tests/common/document_run.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

namespace {

using testing_support::DocumentRun;

constexpr char kContent[] = "<html><head><title>t</title></head><body><div>a</div><div id=x>b<b>c"
                            "</b></div><pre>x\ny</pre><div><span style='color:red'>d</span></div>";

// A sheet whose rules give lists of all kinds: shared ones, in one font size or in any, ones of one
// element with a style attribute and attributes, several values of one declaration, inherit.
constexpr char kStyled[]
    = "<html><head><title>t</title><style>p, .x { color: red; margin-left: 2em; text-decoration: "
      "underline blink; font-family: Arial } div > p + p { color: inherit } p { border: 1px solid "
      "red !important; padding: 1px; background: red } ul { direction: rtl }</style></head><body>"
      "<p>a<p class=x>b<p style='color: blue; font: bold 12px Arial'>c<font color=red class=x>d"
      "</font><style>p, { } b { x</style><table class=x><tr><td class=x>e</table><div><p>f<p>g<b>h"
      "<p>i</b></div><ul class=x><li>j</ul>";

/// What a document leaves behind once it is closed, whatever happened to it before.
void expectNothingLeft(void (*use)(DocumentRun& run), const char* content = kContent)
{
    const std::size_t heapBefore = zorvan::heapBlocksLive();
    const std::size_t before = testing_support::liveAllocations();
    {
        DocumentRun run(content);
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

TEST(Close, WithASheetAfterTheEnd)
{
    expectNothingLeft(
        [](DocumentRun& run) {
            run.run();
            EXPECT_TRUE(run.isDone());
        },
        kStyled);
}

TEST(Close, WithASheetAfterAHostStopInMidSection)
{
    expectNothingLeft(
        [](DocumentRun& run) {
            run.host->stopEvery = 1;
            run.open();
            run.section();
            for (int i = 0; i < 3; ++i)
                run.read();
            EXPECT_FALSE(run.isDone());
            EXPECT_GT(run.context->deferredList.getCount(), 0);
        },
        kStyled);
}

TEST(Close, WithASheetWhenTheFilterAbandonsTheDocument)
{
    expectNothingLeft(
        [](DocumentRun& run) {
            run.open();
            run.section();
            // The bit is set where a break is sent, in the middle of the walk.
            static HtmlFilterContext* document = nullptr;
            document = run.context;
            SOEmitBreakRoutine routine = [](std::uint16_t, std::uint32_t, void*, void*) {
                document->statusFlags |= STATUS_OUT_OF_MEMORY;
                return std::uint32_t{0};
            };
            VwSetSoRtn(SO_EMIT_BREAK, reinterpret_cast<void*>(routine), run.context);
            run.read();
            EXPECT_EQ(run.host->calls.back(), "SOAbandonFilter 13");
        },
        kStyled);
}

TEST(Close, WithASheetAfterAnyCallThatTheHostGivesUpIn)
{
    static std::uint32_t failing = 0;
    static bool hasFailed = true;
    for (failing = 1; hasFailed; ++failing) {
        ASSERT_LT(failing, 1'000U);
        expectNothingLeft(
            [](DocumentRun& run) {
                hasFailed = false;
                run.host->throwAt = failing;
                try {
                    run.run();
                } catch (const testing_support::HostGaveUp&) {
                    hasFailed = true;
                }
            },
            kStyled);
    }
    EXPECT_GT(failing, 60U);
}

TEST(Close, WithASheetAfterAnyFailedAllocation)
{
    static std::uint32_t failing = 0;
    static bool wasReached = true;
    for (failing = 1; wasReached; ++failing) {
        ASSERT_LT(failing, 20'000U);
        expectNothingLeft(
            [](DocumentRun& run) {
                zorvan::failNthAllocation(failing);
                try {
                    run.open();
                    run.section();
                    for (int i = 0; i < 20 && !run.isDone(); ++i)
                        run.read();
                } catch (const std::bad_alloc&) {
                } catch (const zorvan::Exception&) {
                } catch (const UTBailOut&) {
                }
                wasReached = zorvan::allocationsSeen() >= failing;
                zorvan::clearAllocationFailure();
            },
            kStyled);
    }
    EXPECT_GT(failing, 300U);
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
