// The main program of every test: counts allocations, so that a test which leaks fails. Blocks that
// a library keeps on purpose for the life of the process show once; a test that meets such a
// library warms it up in its fixture's SetUpTestSuite.

#include "tests/common/allocation_count.h"

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> liveBlocks{0};

void* countedAllocation(std::size_t size)
{
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr)
        liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void* countedAlignedAllocation(std::size_t size, std::align_val_t alignment)
{
    const auto align = static_cast<std::size_t>(alignment);
    void* block = std::aligned_alloc(align, (size + align - 1) / align * align);
    if (block != nullptr)
        liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void countedRelease(void* block)
{
    if (block == nullptr)
        return;
    liveBlocks.fetch_sub(1, std::memory_order_relaxed);
    std::free(block);
}

/// Fails the test that ends with more live blocks, of operator new or of the process heap, than it
/// began with.
class LeakListener : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override
    {
        zorvan::clearAllocationFailure();
        heapBefore_ = zorvan::heapBlocksLive();
        before_ = liveBlocks.load();
    }

    void OnTestEnd(const testing::TestInfo& info) override
    {
        // A test that gave up half way must not make the next one fail.
        zorvan::clearAllocationFailure();
        const std::size_t heapAfter = zorvan::heapBlocksLive();
        const std::size_t after = liveBlocks.load();
        // A failed test's report is itself an allocation, so only passing tests are held to this.
        if (info.result()->Passed()
            && after > before_ + static_cast<std::size_t>(info.result()->total_part_count()))
            ADD_FAILURE() << info.test_suite_name() << '.' << info.name() << " leaks "
                          << after - before_ << " blocks";
        if (info.result()->Passed() && heapAfter > heapBefore_)
            ADD_FAILURE() << info.test_suite_name() << '.' << info.name() << " leaks "
                          << heapAfter - heapBefore_ << " heap blocks";
    }

    std::size_t before_ = 0;
    std::size_t heapBefore_ = 0;
};

} // namespace

namespace testing_support {

std::size_t liveAllocations() { return liveBlocks.load(); }

} // namespace testing_support

void* operator new(std::size_t size)
{
    void* block = countedAllocation(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return countedAllocation(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return countedAllocation(size);
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    void* block = countedAlignedAllocation(size, alignment);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return operator new(size, alignment);
}
void operator delete(void* block) noexcept { countedRelease(block); }
void operator delete[](void* block) noexcept { countedRelease(block); }
void operator delete(void* block, std::size_t) noexcept { countedRelease(block); }
void operator delete[](void* block, std::size_t) noexcept { countedRelease(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { countedRelease(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { countedRelease(block); }
void operator delete(void* block, std::align_val_t) noexcept { countedRelease(block); }
void operator delete[](void* block, std::align_val_t) noexcept { countedRelease(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { countedRelease(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept
{
    countedRelease(block);
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    {
        // The library keeps the storage of the first trace, which is no leak of the test that has
        // it.
        const testing::ScopedTrace warmUp(__FILE__, __LINE__, "");
    }
    return RUN_ALL_TESTS();
}
