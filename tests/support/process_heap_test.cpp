#include "support/process_heap.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define PAGES_ARE_WATCHED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define PAGES_ARE_WATCHED 1
#endif
#endif

namespace {

#ifdef PAGES_ARE_WATCHED
constexpr bool kPagesAreWatched = true;
#else
constexpr bool kPagesAreWatched = false;
#endif

constexpr std::size_t kSizes[]
    = {0, 1, 15, 16, 17, 4096, 262'127, 262'128, 262'143, 262'144, 262'145, 500'004, 1 << 20};

void* take(std::uint32_t flags, std::size_t size)
{
    return HeapAlloc(GetProcessHeap(), flags, size);
}

void give(void* block) { EXPECT_NE(HeapFree(GetProcessHeap(), 0, block), 0); }

struct Counted {
    explicit Counted(int& count)
        : count_(count)
    {
        ++count_;
    }
    ~Counted() { --count_; }
    int& count_;
};

} // namespace

TEST(ProcessHeap, IsOneHeap)
{
    EXPECT_NE(GetProcessHeap(), nullptr);
    EXPECT_EQ(GetProcessHeap(), GetProcessHeap());
}

TEST(ProcessHeap, BlocksOfAllSizes)
{
    for (const std::uint32_t flags : {0u, HEAP_ZERO_MEMORY}) {
        std::vector<void*> blocks;
        for (const std::size_t size : kSizes) {
            // A block that was written to and given back must come again zeroed.
            void* used = take(0, size);
            std::memset(used, 0xAB, size);
            give(used);
            auto* block = static_cast<unsigned char*>(take(flags, size));
            ASSERT_NE(block, nullptr) << size;
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u) << size;
            if (flags != 0) {
                EXPECT_TRUE(std::all_of(block, block + size, [](auto byte) { return byte == 0; }));
            }
            std::memset(block, 0xCD, size);
            blocks.push_back(block);
        }
        std::sort(blocks.begin(), blocks.end());
        EXPECT_EQ(std::adjacent_find(blocks.begin(), blocks.end()), blocks.end());
        for (void* block : blocks)
            give(block);
    }
}

TEST(ProcessHeap, CountsLiveBlocks)
{
    const std::size_t before = zorvan::heapBlocksLive();
    void* small = take(0, 10);
    void* large = take(HEAP_ZERO_MEMORY, 1 << 20);
    EXPECT_EQ(zorvan::heapBlocksLive(), before + 2);
    give(small);
    give(large);
    give(nullptr);
    EXPECT_EQ(zorvan::heapBlocksLive(), before);
}

TEST(ProcessHeap, ImpossibleSizesGiveNull)
{
    for (const std::uint32_t flags : {0u, HEAP_ZERO_MEMORY}) {
        EXPECT_EQ(take(flags, std::numeric_limits<std::size_t>::max()), nullptr);
        EXPECT_EQ(take(flags, std::numeric_limits<std::size_t>::max() - 15), nullptr);
    }
}

TEST(ProcessHeap, UntouchedPagesOfLargeZeroedBlocksCostNothing)
{
    if (kPagesAreWatched)
        GTEST_SKIP() << "the sanitizer keeps pages of its own for those of the block";
    constexpr std::size_t kSize = 64 << 20;
    const auto faults = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_minflt;
    };
    const long before = faults();
    for (int round = 0; round < 50; ++round) {
        void* block = take(HEAP_ZERO_MEMORY, kSize);
        ASSERT_NE(block, nullptr);
        static_cast<unsigned char*>(block)[kSize / 2] = 1;
        give(block);
    }
    // A block that is cleared takes 16,384 faults in pages of 4 KiB, and 32 in those of 2 MiB.
    EXPECT_LT(faults() - before, 50 * 16);
}

TEST(ProcessHeap, BlockThatIsNotTakenBackStaysCounted)
{
    if (kPagesAreWatched)
        GTEST_SKIP()
            << "a large block may be no mapping here, and a wrong size misleads the sanitizer";
    const std::size_t before = zorvan::heapBlocksLive();
    auto* const block = static_cast<unsigned char*>(take(HEAP_ZERO_MEMORY, 1 << 20));
    ASSERT_NE(block, nullptr);
    // The mapping's size stands in front of the block; no mapping reaches beyond all addresses.
    std::size_t* const mappedSize = reinterpret_cast<std::size_t*>(block) - 2;
    const std::size_t kept = std::exchange(*mappedSize, std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(HeapFree(GetProcessHeap(), 0, block), 0);
    EXPECT_EQ(zorvan::heapBlocksLive(), before + 1);
    *mappedSize = kept;
    give(block);
    EXPECT_EQ(zorvan::heapBlocksLive(), before);
}

TEST(ProcessHeap, Storage)
{
    void* storage = zorvan::allocateStorage(100);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(storage) % 16, 0u);
    std::memset(storage, 1, 100);
    zorvan::releaseStorage(storage);
    zorvan::releaseStorage(nullptr);
}

TEST(ProcessHeap, NewObject)
{
    int count = 0;
    std::unique_ptr<Counted> object(zorvan::newObject<Counted>(count));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(count, 1);
    object.reset();
    EXPECT_EQ(count, 0);
    zorvan::failNthAllocation(1);
    EXPECT_EQ(zorvan::newObject<Counted>(count), nullptr);
    EXPECT_EQ(count, 0);
    zorvan::clearAllocationFailure();
}

TEST(ProcessHeap, FailsTheNthAllocationOfAnyKind)
{
    zorvan::failNthAllocation(3);
    void* first = take(0, 8);
    EXPECT_NE(first, nullptr);
    void* second = zorvan::allocateStorage(8);
    EXPECT_EQ(take(HEAP_ZERO_MEMORY, 1 << 20), nullptr);
    EXPECT_EQ(zorvan::allocationsSeen(), 3u);
    const std::unique_ptr<int> fourth(zorvan::newObject<int>(4));
    EXPECT_NE(fourth, nullptr) << "once only";
    EXPECT_EQ(zorvan::allocationsSeen(), 4u);
    give(first);
    zorvan::releaseStorage(second);

    zorvan::failNthAllocation(1);
    EXPECT_THROW(static_cast<void>(zorvan::allocateStorage(8)), std::bad_alloc);
    zorvan::failNthAllocation(1);
    EXPECT_EQ(zorvan::newObject<int>(1), nullptr);
    zorvan::failNthAllocation(1);
    EXPECT_FALSE(zorvan::countAllocation());
    EXPECT_TRUE(zorvan::countAllocation());
    zorvan::clearAllocationFailure();
    EXPECT_EQ(zorvan::allocationsSeen(), 0u);
}

TEST(ProcessHeap, FailsFromTheNthAllocationOn)
{
    zorvan::failAllocationsFrom(2);
    void* first = take(0, 8);
    EXPECT_NE(first, nullptr);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(take(0, 8), nullptr);
        EXPECT_EQ(zorvan::newObject<int>(1), nullptr);
        EXPECT_THROW(static_cast<void>(zorvan::allocateStorage(8)), std::bad_alloc);
    }
    zorvan::clearAllocationFailure();
    void* second = take(0, 8);
    EXPECT_NE(second, nullptr);
    give(first);
    give(second);
}

TEST(ProcessHeap, FailureConcernsItsThreadOnly)
{
    zorvan::failAllocationsFrom(1);
    void* block = nullptr;
    std::thread([&block] { block = take(0, 8); }).join();
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(take(0, 8), nullptr);
    zorvan::clearAllocationFailure();
    give(block);
}
