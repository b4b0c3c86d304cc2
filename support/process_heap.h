#pragma once

#include "support/export.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

/// A flag of HeapAlloc: the block is handed out filled with zeros.
constexpr std::uint32_t HEAP_ZERO_MEMORY = 0x8;

/// The heap that buffers come from. Never null; the same word at every call.
ZV_EXPORT void* GetProcessHeap();

/// A block of `size` bytes, aligned to 16, or null when there is no memory. A size of 0 gives a
/// block of its own. Large zeroed blocks are fresh pages of the system: what is never touched costs
/// nothing.
ZV_EXPORT void* HeapAlloc(void* heap, std::uint32_t flags, std::size_t size);

/// Gives a block of HeapAlloc back; null is fine. Answers other than 0 for success.
ZV_EXPORT int HeapFree(void* heap, std::uint32_t flags, void* block);

namespace zorvan {

/// Storage of strings and containers: `size` bytes aligned to 16. Throws std::bad_alloc when there
/// is no memory. Released with releaseStorage.
[[nodiscard]] ZV_EXPORT void* allocateStorage(std::size_t size);

/// Takes storage of allocateStorage back; null is fine.
ZV_EXPORT void releaseStorage(void* storage);

/// Whether the allocation that is about to happen may: counts it, and answers false for one that
/// failNthAllocation or failAllocationsFrom has marked. For allocators other than the three here.
[[nodiscard]] ZV_EXPORT bool countAllocation();

/// A new object, or null when there is no memory for it. What its constructor throws passes
/// through.
template <class T, class... Arguments> [[nodiscard]] T* newObject(Arguments&&... arguments)
{
    if (!countAllocation())
        return nullptr;
    return new (std::nothrow) T(std::forward<Arguments>(arguments)...);
}

/// Makes the n-th allocation from here on fail, once. Heap blocks, storage and objects count alike;
/// 1 is the next one. Like all of this group it concerns the calling thread only and starts the
/// count of allocationsSeen anew.
ZV_EXPORT void failNthAllocation(std::uint32_t n);

/// Makes the n-th allocation from here on fail and all that follow it.
ZV_EXPORT void failAllocationsFrom(std::uint32_t n);

/// Nothing fails on purpose any more.
ZV_EXPORT void clearAllocationFailure();

/// The allocations of this thread, failed ones included, since the last call of the three above.
ZV_EXPORT std::uint32_t allocationsSeen();

/// The blocks of HeapAlloc in this process that have not been given back.
ZV_EXPORT std::size_t heapBlocksLive();

} // namespace zorvan
