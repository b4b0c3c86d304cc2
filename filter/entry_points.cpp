#include "filter/entry_points.h"

#include "input/stream_block.h"
#include "output/host_routines.h"
#include "support/process_heap.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

template <class Routine> void* slotOf(Routine* routine) { return reinterpret_cast<void*>(routine); }

void fillSlots(void** table, int first, int last)
{
    std::fill(table + first, table + last + 1, nullptr);
}

} // namespace

// A table of a lower generation is shorter, so nothing is written behind what its generation holds.
// The two last slots are cleared even for generation 0.
void VwGetRtns(void** table, std::uint16_t version)
{
    constexpr std::uint16_t kGenerationWithSpecial = 19;
    constexpr std::uint16_t kGenerationOf23 = 23;
    constexpr std::uint16_t kGenerationOf30 = 30;

    fillSlots(table, 34, 35);
    if (version == 0)
        return;
    table[SLOT_STREAM_OPEN] = slotOf(VwStreamOpen);
    table[SLOT_STREAM_SECTION] = slotOf(VwStreamSection);
    table[SLOT_STREAM_READ] = slotOf(VwStreamRead);
    table[SLOT_STREAM_TELL] = slotOf(VwStreamTell);
    table[SLOT_STREAM_SEEK] = slotOf(VwStreamSeek);
    table[SLOT_GET_INFO] = slotOf(VwGetInfo);
    table[SLOT_GET_DATA] = slotOf(VwGetData);
    table[SLOT_SET_DATA] = slotOf(VwSetData);
    table[SLOT_LOCAL_UP] = slotOf(VwLocalUp);
    table[SLOT_LOCAL_DOWN] = slotOf(VwLocalDown);
    table[SLOT_ALLOC_PROC] = slotOf(VwAllocProc);
    table[SLOT_FREE_PROC] = slotOf(VwFreeProc);
    table[SLOT_SET_USER] = slotOf(VwSetUser);
    table[SLOT_SET_SO_RTN] = slotOf(VwSetSoRtn);
    table[SLOT_STREAM_CLOSE] = slotOf(VwStreamClose);
    fillSlots(table, 15, 16);
    table[SLOT_DUMMY] = slotOf(SODummy);
    if (version >= kGenerationWithSpecial)
        table[SLOT_DO_SPECIAL] = slotOf(VwDoSpecial);
    if (version >= kGenerationOf23)
        fillSlots(table, 19, 22);
    if (version >= kGenerationOf30)
        fillSlots(table, 23, 33);
}

HtmlFilterContext* VwAllocProc()
{
    void* const block = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(HtmlFilterContext));
    if (block == nullptr)
        return nullptr;
    auto* const context = static_cast<HtmlFilterContext*>(block);
    context->allocationBase = block;
    return context;
}

void VwFreeProc(HtmlFilterContext* context)
{
    if (context->allocationBase != nullptr)
        HeapFree(GetProcessHeap(), 0, context->allocationBase);
}

void VwLocalUp(HostStream* hostStream, StreamBlock** stream, HtmlFilterContext* context)
{
    *stream = createStreamBlock(hostStream);
    std::fill(std::begin(context->soRoutines), std::end(context->soRoutines), slotOf(SODummy));
}

void VwLocalDown(StreamBlock* stream, HostStream** hostStream)
{
    *hostStream = stream != nullptr ? stream->hostStream : nullptr;
    destroyStreamBlock(stream);
}

void VwSetUser(void* userData1, void* userData2, HtmlFilterContext* context)
{
    context->userData1 = userData1;
    context->userData2 = userData2;
}

void VwSetSoRtn(std::int16_t routineId, void* routine, HtmlFilterContext* context)
{
    if (routineId < 1 || routineId > SO_ROUTINE_COUNT)
        return;
    context->soRoutines[routineId - 1] = routine != nullptr ? routine : slotOf(SODummy);
}

std::uint16_t VwGetData(void* destination, HtmlFilterContext* context)
{
    std::memcpy(destination, context, kSaveBlockSize);
    return 0;
}

std::uint16_t VwSetData(const void* source, HtmlFilterContext* context)
{
    // The whole context may be written as bytes: it is plain data.
    std::memcpy(static_cast<void*>(context), source, kSaveBlockSize);
    return 0;
}

std::uint16_t VwDoSpecial(void*, void** interfaceRecord)
{
    interfaceRecord[0] = slotOf(IOInitializeHtml);
    interfaceRecord[1] = slotOf(IOParseHtml);
    interfaceRecord[4] = slotOf(IODestroyHtml);
    return 0;
}

// The safe target of every output call that the host did not install. Its other names stand for
// operations that this filter has none of; all four are one routine with one address.
std::uintptr_t SODummy() { return 0; }

extern "C" std::uintptr_t VwGetSectionDataFunc() __attribute__((alias("SODummy")));
extern "C" std::uintptr_t VwSetSectionDataFunc() __attribute__((alias("SODummy")));
extern "C" std::uintptr_t VwStreamReadRecord() __attribute__((alias("SODummy")));
