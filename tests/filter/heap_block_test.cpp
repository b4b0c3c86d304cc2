#include "filter/heap_block.h"

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

TEST(HeapBlock, IsZeroedAndGivenBack)
{
    const std::size_t before = zorvan::heapBlocksLive();
    {
        const HeapBlock block(500'004);
        ASSERT_NE(block.get(), nullptr);
        const auto* bytes = static_cast<const unsigned char*>(block.get());
        EXPECT_TRUE(
            std::all_of(bytes, bytes + 500'004, [](unsigned char byte) { return byte == 0; }));
        EXPECT_EQ(zorvan::heapBlocksLive(), before + 1);
    }
    EXPECT_EQ(zorvan::heapBlocksLive(), before);
}

TEST(HeapBlock, IsGivenBackByAnException)
{
    const std::size_t before = zorvan::heapBlocksLive();
    EXPECT_THROW(
        {
            const HeapBlock block(16);
            throw std::runtime_error("gone");
        },
        std::runtime_error);
    EXPECT_EQ(zorvan::heapBlocksLive(), before);
}

TEST(HeapBlock, IsNullWithoutMemory)
{
    zorvan::failNthAllocation(1);
    const HeapBlock block(16);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(block.get(), nullptr);
}
