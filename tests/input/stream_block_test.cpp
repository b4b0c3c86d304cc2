#include "input/stream_block.h"

#include "support/engine_options.h"
#include "support/process_heap.h"
#include "tests/common/memory_stream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace {

using testing_support::MemoryStream;

constexpr std::uint32_t kFailed = 0xFFFFFFFF;
constexpr std::int64_t kFourGiB = std::int64_t{1} << 32;

struct BlockDeleter {
    void operator()(StreamBlock* block) const { destroyStreamBlock(block); }
};
using BlockPointer = std::unique_ptr<StreamBlock, BlockDeleter>;

BlockPointer makeBlock(MemoryStream& stream) { return BlockPointer(createStreamBlock(&stream)); }

/// A block whose buffer is used to that size only.
BlockPointer makeSmallBlock(MemoryStream& stream, std::uint32_t bufferSize)
{
    BlockPointer block = makeBlock(stream);
    block->bufferSize = bufferSize;
    return block;
}

std::string takeAll(StreamBlock& block)
{
    std::string taken;
    for (std::uint32_t byte = takeByte(block); byte != kNoByte; byte = takeByte(block))
        taken.push_back(static_cast<char>(byte));
    return taken;
}

std::string numberedBytes(std::size_t count)
{
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes.push_back(static_cast<char>(i * 7 % 251));
    return bytes;
}

TEST(StreamBlock, NewBlockStandsAtTheStart)
{
    MemoryStream stream("abc");
    const std::size_t live = zorvan::heapBlocksLive();
    {
        const BlockPointer block = makeBlock(stream);
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(block.get(), block->self);
        EXPECT_EQ(&stream, block->hostStream);
        EXPECT_EQ(0u, blockPosition(*block));
        EXPECT_EQ(0u, stream.calls.moves());
    }
    EXPECT_EQ(live, zorvan::heapBlocksLive());
    destroyStreamBlock(nullptr);
}

TEST(StreamBlock, BufferSizeIsGlobalOption112)
{
    struct Row {
        std::uint32_t units;
        std::uint32_t bytes;
    };
    constexpr Row kRows[] = {{1, 1'024}, {2, 2'048}, {3, 3'072}, {64, 65'536},
        // What is no size counts as an option that can't be read.
        {0, 2'048}, {0x200000, 2'048}, {0x400000, 2'048}, {0xFFFFFFFF, 2'048}};
    MemoryStream stream("");
    for (const Row& row : kRows) {
        ASSERT_EQ(0, UTSetGlobalOption(112, &row.units, sizeof row.units));
        EXPECT_EQ(row.bytes, makeBlock(stream)->bufferSize) << row.units;
    }
    ASSERT_EQ(0, UTSetGlobalOption(112, nullptr, 0));
    EXPECT_EQ(2'048u, makeBlock(stream)->bufferSize);
}

TEST(StreamBlock, NoMemoryGivesNoBlock)
{
    MemoryStream stream("");
    const std::size_t live = zorvan::heapBlocksLive();
    for (std::uint32_t n = 1; n <= 2; ++n) {
        zorvan::failNthAllocation(n);
        EXPECT_EQ(nullptr, createStreamBlock(&stream)) << n;
        zorvan::clearAllocationFailure();
        EXPECT_EQ(live, zorvan::heapBlocksLive());
    }
}

TEST(StreamBlock, EveryBufferSizeGivesTheSameBytes)
{
    const std::string bytes = numberedBytes(100);
    for (std::uint32_t size = 1; size <= 102; ++size) {
        MemoryStream stream(bytes);
        const BlockPointer block = makeSmallBlock(stream, size);
        EXPECT_EQ(bytes, takeAll(*block)) << size;
        EXPECT_EQ(100u, blockPosition(*block));
    }
}

TEST(StreamBlock, HostsMayDeliverLittle)
{
    const std::string bytes = numberedBytes(100);
    MemoryStream stream(bytes);
    stream.readLimit = 3;
    const BlockPointer block = makeBlock(stream);
    EXPECT_EQ(bytes, takeAll(*block));
    EXPECT_EQ(35u, stream.calls.reads); // 33 of three bytes, one of one, and the end
}

TEST(StreamBlock, TakingWithinTheBufferLeavesTheHostAlone)
{
    MemoryStream stream("abc");
    const BlockPointer block = makeBlock(stream);
    EXPECT_EQ('a', static_cast<int>(takeByte(*block)));
    const auto before = stream.calls;
    EXPECT_EQ('b', static_cast<int>(takeByte(*block)));
    EXPECT_EQ('c', static_cast<int>(takeByte(*block)));
    EXPECT_EQ(before.moves(), stream.calls.moves());
    EXPECT_EQ(before.tells, stream.calls.tells);
}

TEST(StreamBlock, ATakeAtTheEndConsumesNothing)
{
    MemoryStream stream("ab");
    const BlockPointer block = makeBlock(stream);
    EXPECT_EQ("ab", takeAll(*block));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(kNoByte, takeByte(*block));
        EXPECT_EQ(2u, blockPosition(*block));
        EXPECT_EQ(0, block->bytesLeft);
        EXPECT_EQ(0u, block->bytesValid);
        EXPECT_EQ(block->buffer + 1, block->next);
    }
}

TEST(StreamBlock, AStreamThatGrowsIsReadOn)
{
    MemoryStream stream("ab");
    const BlockPointer block = makeBlock(stream);
    EXPECT_EQ("ab", takeAll(*block));
    stream.bytes.push_back('c');
    EXPECT_EQ("c", takeAll(*block));
}

TEST(StreamBlock, RefillPutsTheHostWhereItBelongs)
{
    MemoryStream stream(numberedBytes(20));
    stream.position = 13; // whoever had it before
    const BlockPointer block = makeSmallBlock(stream, 4);
    EXPECT_EQ(0u, takeByte(*block));
    EXPECT_EQ(1u, stream.calls.seeks);
    stream.position = 1;
    EXPECT_EQ(numberedBytes(20).substr(1), takeAll(*block));
    EXPECT_EQ(2u, stream.calls.seeks);
}

TEST(StreamBlock, WithoutA64BitAnswerTheNarrowSlotsAreUsed)
{
    MemoryStream stream(numberedBytes(20));
    stream.offerWidePositions();
    stream.queryAnswer = 1;
    stream.position = 7;
    const BlockPointer block = makeSmallBlock(stream, 8);
    EXPECT_EQ(numberedBytes(20), takeAll(*block));
    EXPECT_EQ(4u, stream.calls.queries); // once for each refill
    EXPECT_EQ(4u, stream.calls.tells);
    EXPECT_EQ(1u, stream.calls.seeks);
    EXPECT_EQ(0u, stream.calls.tells64 + stream.calls.seeks64);
}

TEST(StreamBlock, WideSlotsAreUsedWhenOffered)
{
    MemoryStream stream(numberedBytes(20));
    stream.offerWidePositions();
    stream.position = 7;
    const BlockPointer block = makeSmallBlock(stream, 8);
    EXPECT_EQ(numberedBytes(20), takeAll(*block));
    EXPECT_EQ(4u, stream.calls.tells64);
    EXPECT_EQ(1u, stream.calls.seeks64);
    EXPECT_EQ(0u, stream.calls.tells + stream.calls.seeks);
}

TEST(StreamBlock, OneWideSlotIsNoneAtAll)
{
    for (const bool withSeek : {false, true}) {
        MemoryStream stream(numberedBytes(20));
        stream.offerWidePositions();
        StreamOperations operations = *stream.operations;
        if (withSeek)
            operations.tell64 = nullptr;
        else
            operations.seek64 = nullptr;
        stream.operations = &operations;
        const BlockPointer block = makeSmallBlock(stream, 8);
        EXPECT_EQ(numberedBytes(20), takeAll(*block));
        EXPECT_EQ(4u, stream.calls.tells);
    }
}

TEST(StreamBlock, AHostThatDoesNotTellIsMoved)
{
    for (const bool wide : {false, true}) {
        MemoryStream stream(numberedBytes(20));
        if (wide)
            stream.offerWidePositions();
        stream.failTells = true;
        const BlockPointer block = makeSmallBlock(stream, 8);
        EXPECT_EQ(numberedBytes(20), takeAll(*block));
        EXPECT_EQ(4u, stream.calls.seeks + stream.calls.seeks64);
    }
}

TEST(StreamBlock, AFailedReadIsTheEnd)
{
    MemoryStream stream(numberedBytes(20));
    stream.readsUntilFailure = 2;
    const BlockPointer block = makeSmallBlock(stream, 8);
    EXPECT_EQ(numberedBytes(16), takeAll(*block));
    EXPECT_EQ(16u, blockPosition(*block));
    EXPECT_EQ(block->buffer + 1, block->next);
    EXPECT_EQ(kNoByte, takeByte(*block));
    stream.readsUntilFailure = 0xFFFFFFFF;
    EXPECT_EQ(numberedBytes(20).substr(16), takeAll(*block));
}

TEST(StreamBlock, AFailedSeekOfARefillIsTheEnd)
{
    for (const bool wide : {false, true}) {
        MemoryStream stream(numberedBytes(20));
        if (wide)
            stream.offerWidePositions();
        stream.position = 5;
        stream.seeksUntilFailure = 0;
        const BlockPointer block = makeSmallBlock(stream, 8);
        EXPECT_EQ(kNoByte, takeByte(*block));
        EXPECT_EQ(0u, blockPosition(*block));
        EXPECT_EQ(0u, stream.calls.reads);
        EXPECT_EQ(0u, block->bytesValid);
        EXPECT_EQ(0, block->bytesLeft);
        EXPECT_EQ(block->buffer + 1, block->next);
    }
}

TEST(StreamBlock, AReadOfMoreThanTheBufferIsCutToIt)
{
    MemoryStream stream("abcd");
    StreamOperations operations = *stream.operations;
    operations.read = [](HostStream*, void* buffer, std::uint32_t size, std::uint32_t* count) {
        std::memset(buffer, 'x', size);
        *count = size + 100;
        return std::int32_t{0};
    };
    stream.operations = &operations;
    const BlockPointer block = makeSmallBlock(stream, 4);
    EXPECT_EQ('x', static_cast<int>(takeByte(*block)));
    EXPECT_EQ(4u, block->bytesValid);
    EXPECT_EQ(3, block->bytesLeft);
}

TEST(StreamBlock, AHostThatThrowsLeavesThePlace)
{
    MemoryStream stream(numberedBytes(20));
    const BlockPointer block = makeSmallBlock(stream, 8);
    ASSERT_EQ(numberedBytes(8).back(), [&] {
        for (int i = 0; i < 7; ++i)
            takeByte(*block);
        return static_cast<char>(takeByte(*block));
    }());
    const StreamOperations* const working = stream.operations;
    StreamOperations operations = *working;
    operations.read
        = [](HostStream*, void*, std::uint32_t, std::uint32_t*) -> std::int32_t { throw 1; };
    stream.operations = &operations;
    EXPECT_THROW(takeByte(*block), int);
    EXPECT_EQ(8u, blockPosition(*block));
    stream.operations = working;
    EXPECT_EQ(numberedBytes(20).substr(8), takeAll(*block));
}

TEST(StreamBlock, SeeksWithinTheBufferLeaveTheHostAlone)
{
    const std::string bytes = numberedBytes(40);
    MemoryStream stream(bytes);
    const BlockPointer block = makeSmallBlock(stream, 16);
    for (int i = 0; i < 20; ++i)
        takeByte(*block); // the buffer holds 16 to 31
    const auto before = stream.calls;
    for (std::uint32_t position = 16; position <= 32; ++position) {
        EXPECT_EQ(0u, seekBlock(*block, static_cast<std::int32_t>(position), 0));
        EXPECT_EQ(position, blockPosition(*block));
        if (position < 32) {
            EXPECT_EQ(static_cast<std::uint8_t>(bytes[position]), takeByte(*block));
        }
    }
    EXPECT_EQ(before.moves(), stream.calls.moves());
    EXPECT_EQ(before.tells, stream.calls.tells);
    EXPECT_EQ(bytes.substr(32), takeAll(*block));
}

TEST(StreamBlock, SeeksFromAllOrigins)
{
    struct Row {
        std::int32_t offset;
        std::uint32_t origin;
        std::uint32_t position; // from position 20
    };
    constexpr Row kRows[] = {{0, 0, 0}, {39, 0, 39}, {3, 1, 23}, {-3, 1, 17}, {-20, 1, 0},
        {15, 1, 35}, {0, 2, 40}, {-1, 2, 39}, {-40, 2, 0}, {0, 1, 20}};
    const std::string bytes = numberedBytes(40);
    for (const bool wide : {false, true}) {
        for (const Row& row : kRows) {
            MemoryStream stream(bytes);
            if (wide)
                stream.offerWidePositions();
            const BlockPointer block = makeSmallBlock(stream, 8);
            ASSERT_EQ(0u, seekBlock(*block, 20, 0));
            takeByte(*block);
            ASSERT_EQ(0u, seekBlock(*block, -1, 1));
            EXPECT_EQ(0u, seekBlock(*block, row.offset, row.origin));
            EXPECT_EQ(row.position, blockPosition(*block));
            EXPECT_EQ(bytes.substr(row.position), takeAll(*block));
        }
    }
}

TEST(StreamBlock, FailedSeeksAreTold)
{
    MemoryStream stream(numberedBytes(40));
    const BlockPointer block = makeSmallBlock(stream, 8);
    takeByte(*block);
    stream.seeksUntilFailure = 0;
    EXPECT_EQ(kFailed, seekBlock(*block, -5, 2));
    EXPECT_EQ(1u, blockPosition(*block));
    EXPECT_EQ(kFailed, seekBlock(*block, 30, 0));
    EXPECT_EQ(30u, blockPosition(*block));
    EXPECT_EQ(0u, block->bytesValid);
    EXPECT_EQ(kNoByte, takeByte(*block)); // the refill seeks once more
    stream.seeksUntilFailure = 0xFFFFFFFF;
    EXPECT_EQ(numberedBytes(40).substr(30), takeAll(*block));
    stream.failTells = true;
    EXPECT_EQ(kFailed, seekBlock(*block, 0, 2));
    EXPECT_EQ(kFailed, seekBlock(*block, 0, 3)); // no such origin
    EXPECT_EQ(40u, blockPosition(*block));
}

TEST(StreamBlock, PositionsBeforeTheStartWrap)
{
    MemoryStream stream(numberedBytes(10));
    const BlockPointer block = makeBlock(stream);
    takeByte(*block);
    EXPECT_EQ(0u, seekBlock(*block, -4, 1));
    EXPECT_EQ(0xFFFFFFFDu, blockPosition(*block));
    EXPECT_EQ(kNoByte, takeByte(*block));
    EXPECT_EQ(0u, seekBlock(*block, 9, 1));
    EXPECT_EQ(6u, blockPosition(*block));
}

TEST(StreamBlock, PositionsBeyondFourGiBAreComputedIn32Bits)
{
    const std::string bytes = numberedBytes(64);
    MemoryStream stream(bytes);
    stream.offerWidePositions();
    stream.beginAt(kFourGiB - 16);
    const BlockPointer block = makeSmallBlock(stream, 32);
    block->bufferPos = kFourGiB - 16;
    EXPECT_EQ(0xFFFFFFF0u, blockPosition(*block));
    for (std::uint32_t i = 0; i < 20; ++i)
        EXPECT_EQ(static_cast<std::uint8_t>(bytes[i]), takeByte(*block));
    EXPECT_EQ(4u, blockPosition(*block)); // across the boundary, within one buffer
    const auto before = stream.calls;
    EXPECT_EQ(0u, seekBlock(*block, -0x10, 0)); // 0xFFFFFFF0
    EXPECT_EQ(0u, takeByte(*block));
    EXPECT_EQ(0u, seekBlock(*block, 8, 0));
    EXPECT_EQ(static_cast<std::uint8_t>(bytes[24]), takeByte(*block));
    EXPECT_EQ(before.moves(), stream.calls.moves());
    EXPECT_EQ(bytes.substr(25), takeAll(*block)); // the wide slots go on behind the boundary
    EXPECT_EQ(48u, blockPosition(*block));
}

TEST(StreamBlock, RelativeSeeksBeyondFourGiBFindTheirPlaceThroughWideSlots)
{
    const std::string bytes = numberedBytes(64);
    MemoryStream stream(bytes);
    stream.offerWidePositions();
    stream.beginAt(kFourGiB + 100);
    const BlockPointer block = makeSmallBlock(stream, 8);
    block->bufferPos = kFourGiB + 100;
    for (int i = 0; i < 30; ++i)
        takeByte(*block);
    EXPECT_EQ(0u, seekBlock(*block, -20, 1));
    EXPECT_EQ(110u, blockPosition(*block));
    EXPECT_EQ(bytes.substr(10), takeAll(*block));
}

TEST(StreamBlock, NarrowHostsWrapAtFourGiB)
{
    // A host of 32 bits tells low words only, and they are all that is compared.
    const std::string bytes = numberedBytes(64);
    MemoryStream stream(bytes);
    stream.beginAt(kFourGiB - 16);
    const BlockPointer block = makeSmallBlock(stream, 8);
    block->bufferPos = kFourGiB - 16;
    EXPECT_EQ(bytes, takeAll(*block));
    EXPECT_EQ(0u, stream.calls.seeks);
    EXPECT_EQ(48u, blockPosition(*block));
}

} // namespace
