#include "support/process_heap.h"

#include <sys/mman.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define HEAP_IS_WATCHED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HEAP_IS_WATCHED 1
#endif
#endif

namespace {

// The address sanitizer watches the edges of the allocator's blocks, not those of mappings, and
// large blocks are the ones that overruns happen in: there, none is mapped.
#ifdef HEAP_IS_WATCHED
constexpr std::size_t kMappedFrom = std::numeric_limits<std::size_t>::max();
#else
constexpr std::size_t kMappedFrom = 256 * 1024;
#endif

/// Stands in front of every heap block and keeps it aligned to 16.
struct alignas(16) BlockHeader {
    std::size_t mappedSize; // bytes of the mapping with this header, 0 when the block is not one
};

/// The failures that a test has asked for on this thread.
struct FailurePlan {
    std::uint64_t seen;
    std::uint64_t first; // the allocation that fails first
    std::uint64_t last; // and the one that fails last
};

constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

// A few bytes, at a fixed distance from the thread's pointer: every allocation passes here.
[[gnu::tls_model("initial-exec")]] constinit thread_local FailurePlan failurePlan
    = {0, kNever, kNever};

constinit std::atomic<std::size_t> liveBlocks = 0;

BlockHeader* mapZeroed(std::size_t size)
{
    void* pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED)
        return nullptr;
    return new (pages) BlockHeader{size};
}

BlockHeader* allocateBlock(std::uint32_t flags, std::size_t size)
{
    const bool zeroed = (flags & HEAP_ZERO_MEMORY) != 0;
    if (zeroed && size >= kMappedFrom)
        return mapZeroed(size);
    void* memory = zeroed ? std::calloc(1, size) : std::malloc(size);
    return memory == nullptr ? nullptr : new (memory) BlockHeader{0};
}

} // namespace

void* GetProcessHeap()
{
    // There is one heap, which needs a name and nothing else.
    static constinit char heap = 0;
    return &heap;
}

void* HeapAlloc(void*, std::uint32_t flags, std::size_t size)
{
    if (!zorvan::countAllocation() || size > std::numeric_limits<std::size_t>::max() / 2) {
        errno = ENOMEM; // as when the system refuses
        return nullptr;
    }
    BlockHeader* header = allocateBlock(flags, size + sizeof(BlockHeader));
    if (header == nullptr)
        return nullptr;
    liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return header + 1;
}

int HeapFree(void*, std::uint32_t, void* block)
{
    if (block == nullptr)
        return 1;
    BlockHeader* header = static_cast<BlockHeader*>(block) - 1;
    if (header->mappedSize == 0)
        std::free(header);
    else if (munmap(header, header->mappedSize) != 0)
        return 0;
    liveBlocks.fetch_sub(1, std::memory_order_relaxed);
    return 1;
}

namespace zorvan {

void* allocateStorage(std::size_t size)
{
    if (!countAllocation())
        throw std::bad_alloc();
    return ::operator new(size);
}

void releaseStorage(void* storage) { ::operator delete(storage); }

bool countAllocation()
{
    const std::uint64_t number = ++failurePlan.seen;
    return number < failurePlan.first || number > failurePlan.last;
}

void failNthAllocation(std::uint32_t n) { failurePlan = {0, n, n}; }

void failAllocationsFrom(std::uint32_t n) { failurePlan = {0, n, kNever}; }

void clearAllocationFailure() { failurePlan = {0, kNever, kNever}; }

std::uint32_t allocationsSeen() { return static_cast<std::uint32_t>(failurePlan.seen); }

std::size_t heapBlocksLive() { return liveBlocks.load(std::memory_order_relaxed); }

} // namespace zorvan
