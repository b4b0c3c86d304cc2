#include "filter/entry_points.h"

#include "input/stream_block.h"
#include "support/engine_options.h"
#include "support/process_heap.h"
#include "tests/common/document_run.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <map>

namespace {

using testing_support::DocumentRun;
using testing_support::MemoryStream;

template <class Routine> void* addressOf(Routine* routine)
{
    return reinterpret_cast<void*>(routine);
}

/// The first table generation that fills each slot, and what it holds then.
struct Slot {
    int number;
    std::uint16_t generation;
    void* content;
};

std::vector<Slot> expectedSlots()
{
    std::vector<Slot> slots = {
        {0, 1, addressOf(VwStreamOpen)},
        {1, 1, addressOf(VwStreamSection)},
        {2, 1, addressOf(VwStreamRead)},
        {3, 1, addressOf(VwStreamTell)},
        {4, 1, addressOf(VwStreamSeek)},
        {5, 1, addressOf(VwGetInfo)},
        {6, 1, addressOf(VwGetData)},
        {7, 1, addressOf(VwSetData)},
        {8, 1, addressOf(VwLocalUp)},
        {9, 1, addressOf(VwLocalDown)},
        {10, 1, addressOf(VwAllocProc)},
        {11, 1, addressOf(VwFreeProc)},
        {12, 1, addressOf(VwSetUser)},
        {13, 1, addressOf(VwSetSoRtn)},
        {14, 1, addressOf(VwStreamClose)},
        {15, 1, nullptr},
        {16, 1, nullptr},
        {17, 1, addressOf(SODummy)},
        {18, 19, addressOf(VwDoSpecial)},
    };
    for (int number = 19; number <= 22; ++number)
        slots.push_back({number, 23, nullptr});
    for (int number = 23; number <= 33; ++number)
        slots.push_back({number, 30, nullptr});
    slots.push_back({34, 0, nullptr});
    slots.push_back({35, 0, nullptr});
    return slots;
}

} // namespace

TEST(EntryPoints, FillTheSlotsOfEachTableGeneration)
{
    int filler = 0;
    for (const int generation : {0, 1, 17, 18, 19, 22, 23, 29, 30, 31, 0x7FFF, 0x8000, 0xFFFF}) {
        std::array<void*, 37> table;
        table.fill(&filler);
        VwGetRtns(table.data(), static_cast<std::uint16_t>(generation));
        for (const Slot& slot : expectedSlots()) {
            void* const expected
                = generation >= slot.generation ? slot.content : static_cast<void*>(&filler);
            EXPECT_EQ(table[static_cast<std::size_t>(slot.number)], expected)
                << "slot " << slot.number << " of generation " << generation;
        }
        EXPECT_EQ(table[36], &filler);
    }
}

TEST(EntryPoints, GenerationZeroWritesTheLastTwoSlotsOnly)
{
    int filler = 0;
    std::array<void*, 36> table;
    table.fill(&filler);
    VwGetRtns(table.data(), 0);
    for (std::size_t slot = 0; slot < 34; ++slot)
        EXPECT_EQ(table[slot], &filler);
    EXPECT_EQ(table[34], nullptr);
    EXPECT_EQ(table[35], nullptr);
}

TEST(EntryPoints, GenerationEighteenLeavesSlotEighteen)
{
    int filler = 0;
    std::array<void*, 36> table;
    table.fill(&filler);
    VwGetRtns(table.data(), 18);
    EXPECT_EQ(table[18], &filler);
}

TEST(EntryPoints, AllocProcYieldsAZeroedBlockThatKnowsItself)
{
    HtmlFilterContext* const context = VwAllocProc();
    ASSERT_NE(context, nullptr);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(context);
    for (std::size_t i = 0; i < offsetof(HtmlFilterContext, allocationBase); ++i)
        ASSERT_EQ(bytes[i], 0) << i;
    EXPECT_EQ(context->allocationBase, context);
    VwFreeProc(context);
}

TEST(EntryPoints, AllocProcAnswersNullWithoutMemory)
{
    zorvan::failNthAllocation(1);
    HtmlFilterContext* const context = VwAllocProc();
    zorvan::clearAllocationFailure();
    EXPECT_EQ(context, nullptr);
}

TEST(EntryPoints, FreeProcWithoutABaseDoesNothing)
{
    HtmlFilterContext* const context = VwAllocProc();
    const std::size_t live = zorvan::heapBlocksLive();
    context->allocationBase = nullptr;
    VwFreeProc(context);
    EXPECT_EQ(zorvan::heapBlocksLive(), live);
    context->allocationBase = context;
    VwFreeProc(context);
    EXPECT_EQ(zorvan::heapBlocksLive(), live - 1);
}

TEST(EntryPoints, LocalUpSetsEveryRoutineToTheDummy)
{
    MemoryStream stream("x");
    HtmlFilterContext* const context = VwAllocProc();
    StreamBlock* block = nullptr;
    VwLocalUp(&stream, &block, context);
    ASSERT_NE(block, nullptr);
    for (void* routine : context->soRoutines)
        EXPECT_EQ(routine, addressOf(SODummy));
    HostStream* given = nullptr;
    VwLocalDown(block, &given);
    EXPECT_EQ(given, &stream);
    VwFreeProc(context);
}

TEST(EntryPoints, LocalUpTakesTheBufferSizeFromTheGlobalOption)
{
    struct Row {
        std::uint32_t option;
        std::uint32_t bytes;
    };
    for (const Row& row : {Row{1, 1'024}, Row{2, 2'048}, Row{64, 65'536}, Row{0, 2'048}}) {
        MemoryStream stream("x");
        HtmlFilterContext* const context = VwAllocProc();
        UTSetGlobalOption(GLOBAL_OPTION_STREAM_BUFFER, &row.option, sizeof row.option);
        StreamBlock* block = nullptr;
        VwLocalUp(&stream, &block, context);
        UTSetGlobalOption(GLOBAL_OPTION_STREAM_BUFFER, nullptr, 0);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(block->bufferSize, row.bytes) << row.option;
        HostStream* given = nullptr;
        VwLocalDown(block, &given);
        VwFreeProc(context);
    }
}

TEST(EntryPoints, LocalUpWithoutMemoryStoresNull)
{
    for (const std::uint32_t failing : {1u, 2u}) {
        MemoryStream stream("x");
        HtmlFilterContext* const context = VwAllocProc();
        int filler = 0;
        auto* block = reinterpret_cast<StreamBlock*>(&filler);
        zorvan::failNthAllocation(failing);
        VwLocalUp(&stream, &block, context);
        zorvan::clearAllocationFailure();
        EXPECT_EQ(block, nullptr) << failing;
        VwFreeProc(context);
    }
}

TEST(EntryPoints, SetUserWordsComeBackWithEveryCall)
{
    HtmlFilterContext* const context = VwAllocProc();
    int first = 0;
    int second = 0;
    VwSetUser(&first, &second, context);
    EXPECT_EQ(context->userData1, &first);
    EXPECT_EQ(context->userData2, &second);
    VwFreeProc(context);
}

TEST(EntryPoints, SetSoRtnStoresAllIdsAndIgnoresOthers)
{
    HtmlFilterContext* const context = VwAllocProc();
    int routine = 0;
    for (int id = -3; id <= 160; ++id)
        VwSetSoRtn(static_cast<std::int16_t>(id), &routine, context);
    VwSetSoRtn(INT16_MIN, &routine, context);
    VwSetSoRtn(INT16_MAX, &routine, context);
    for (void* entry : context->soRoutines)
        EXPECT_EQ(entry, &routine);
    EXPECT_EQ(context->recentBytes[3], 0);
    EXPECT_EQ(context->userData1, nullptr);
    VwFreeProc(context);
}

TEST(EntryPoints, ANullRoutineBecomesTheDummy)
{
    HtmlFilterContext* const context = VwAllocProc();
    for (std::int16_t id = 1; id <= 150; ++id) {
        VwSetSoRtn(id, nullptr, context);
        EXPECT_EQ(context->soRoutines[id - 1], addressOf(SODummy)) << id;
    }
    VwFreeProc(context);
}

TEST(EntryPoints, GetAndSetDataCopyTheSaveBlock)
{
    HtmlFilterContext* const context = VwAllocProc();
    std::array<std::uint8_t, 360> data;
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(i * 7 + 1);
    EXPECT_EQ(VwSetData(data.data(), context), 0);
    EXPECT_EQ(context->hostFilterContext[0], 0);
    std::array<std::uint8_t, 360> copy = {};
    EXPECT_EQ(VwGetData(copy.data(), context), 0);
    EXPECT_EQ(std::memcmp(copy.data(), data.data(), 352), 0);
    EXPECT_EQ(copy[352], 0);
    VwFreeProc(context);
}

TEST(EntryPoints, DoSpecialHandsOutTheEmbeddedOperations)
{
    int filler = 0;
    std::array<void*, 6> record;
    record.fill(&filler);
    EXPECT_EQ(VwDoSpecial(nullptr, record.data()), 0);
    EXPECT_EQ(record[0], addressOf(IOInitializeHtml));
    EXPECT_EQ(record[1], addressOf(IOParseHtml));
    EXPECT_EQ(record[2], &filler);
    EXPECT_EQ(record[3], &filler);
    EXPECT_EQ(record[4], addressOf(IODestroyHtml));
    EXPECT_EQ(record[5], &filler);
}

TEST(EntryPoints, TheDummyHasThreeOtherNames)
{
    EXPECT_EQ(SODummy(), 0u);
    EXPECT_EQ(VwGetSectionDataFunc, SODummy);
    EXPECT_EQ(VwSetSectionDataFunc, SODummy);
    EXPECT_EQ(VwStreamReadRecord, SODummy);
}

TEST(EntryPoints, AHostWithoutRoutinesHearsNothingAndNothingBreaks)
{
    MemoryStream stream("<p>a<b>b</b><table><tr><td>c</table>");
    HtmlFilterContext* const context = VwAllocProc();
    StreamBlock* block = nullptr;
    VwLocalUp(&stream, &block, context);
    OpenRecord record = {};
    VwStreamOpen(block, 1101, nullptr, &record, context);
    VwStreamSection(block, context);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(VwStreamRead(block, context), 0);
    EXPECT_EQ(context->walkFinished, 1u);
    VwStreamClose(block, context);
    HostStream* given = nullptr;
    VwLocalDown(block, &given);
    VwFreeProc(context);
}
