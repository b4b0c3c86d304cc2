#include "input/stream_block.h"

#include "support/engine_options.h"
#include "support/process_heap.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kBufferUnit = 1'024;
constexpr std::uint32_t kDefaultBufferUnits = 2;
/// Counts of bytes are signed numbers of 32 bits.
constexpr std::uint32_t kMaxBufferUnits = 0x7FFFFFFF / kBufferUnit;

/// What the host is asked with whether a stream knows positions of 64 bits.
constexpr std::uint32_t kQueryWidePositions = 24;

constexpr std::uint32_t kSeekFromStart = 0;
constexpr std::uint32_t kSeekFromHere = 1;
constexpr std::uint32_t kSeekFromEnd = 2;
constexpr std::uint32_t kSeekFailed = 0xFFFFFFFF;

std::uint32_t bufferSizeOption()
{
    std::uint32_t units = 0;
    const bool known = UTGetGlobalOption(GLOBAL_OPTION_STREAM_BUFFER, &units, sizeof units) == 0;
    if (!known || units == 0 || units > kMaxBufferUnits)
        units = kDefaultBufferUnits;
    return units * kBufferUnit;
}

bool hasWidePositions(HostStream& stream)
{
    const StreamOperations& operations = *stream.operations;
    return operations.query != nullptr && operations.query(&stream, kQueryWidePositions, 0) == 0
        && operations.seek64 != nullptr && operations.tell64 != nullptr;
}

/// Brings the host's stream to bufferPos. A stream that does not tell where it is is moved.
bool placeHostStream(const StreamBlock& block)
{
    HostStream& stream = *block.hostStream;
    const StreamOperations& operations = *stream.operations;
    if (hasWidePositions(stream)) {
        std::int64_t place = 0;
        if (operations.tell64(&stream, &place) == 0 && place == block.bufferPos)
            return true;
        return operations.seek64(&stream, kSeekFromStart, block.bufferPos) == 0;
    }
    const auto wanted = static_cast<std::uint32_t>(block.bufferPos);
    std::uint32_t position = 0;
    if (operations.tell(&stream, &position) == 0 && position == wanted)
        return true;
    return operations.seek(&stream, kSeekFromStart, wanted) == 0;
}

/// Where the host's stream stands. False when it does not tell.
bool tellHostStream(HostStream& stream, std::int64_t& place)
{
    const StreamOperations& operations = *stream.operations;
    if (hasWidePositions(stream))
        return operations.tell64(&stream, &place) == 0;
    std::uint32_t position = 0;
    if (operations.tell(&stream, &position) != 0)
        return false;
    place = position;
    return true;
}

/// Leaves the block without bytes at a place: the next take refills from there.
void emptyBlockAt(StreamBlock& block, std::int64_t place)
{
    block.bufferPos = place;
    block.bytesValid = 0;
    block.bytesLeft = 0;
    block.next = block.buffer + 1;
}

bool moveBlockFromEnd(StreamBlock& block, std::int32_t offset)
{
    emptyBlockAt(block, blockPlace(block));
    HostStream& stream = *block.hostStream;
    std::int64_t place = 0;
    if (stream.operations->seek(&stream, kSeekFromEnd, static_cast<std::uint32_t>(offset)) != 0
        || !tellHostStream(stream, place))
        return false;
    block.bufferPos = place;
    return true;
}

} // namespace

StreamBlock* createStreamBlock(HostStream* hostStream)
{
    void* heap = GetProcessHeap();
    auto* block = static_cast<StreamBlock*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, sizeof(StreamBlock)));
    if (block == nullptr)
        return nullptr;
    block->self = block;
    block->hostStream = hostStream;
    block->bufferSize = bufferSizeOption();
    block->buffer = static_cast<std::uint8_t*>(HeapAlloc(heap, 0, block->bufferSize));
    if (block->buffer == nullptr) {
        HeapFree(heap, 0, block);
        return nullptr;
    }
    block->next = block->buffer;
    return block;
}

void destroyStreamBlock(StreamBlock* block)
{
    if (block == nullptr)
        return;
    void* heap = GetProcessHeap();
    HeapFree(heap, 0, block->buffer);
    HeapFree(heap, 0, block->self);
}

std::uint32_t refillAndTakeByte(StreamBlock& block)
{
    // The failed take has left bytesLeft at -1; a take at the end consumes nothing.
    emptyBlockAt(block, block.bufferPos + block.bytesValid);
    if (!placeHostStream(block))
        return kNoByte;
    HostStream& stream = *block.hostStream;
    std::uint32_t count = 0;
    if (stream.operations->read(&stream, block.buffer, block.bufferSize, &count) != 0)
        return kNoByte;
    count = std::min(count, block.bufferSize);
    if (count == 0)
        return kNoByte;
    block.bytesValid = count;
    block.bytesLeft = static_cast<std::int32_t>(count - 1);
    return block.buffer[0];
}

bool moveBlock(StreamBlock& block, std::int64_t place)
{
    // In 32 bits, so that a position finds its place in a buffer of a stream of any length.
    const std::uint32_t offset
        = static_cast<std::uint32_t>(place) - static_cast<std::uint32_t>(block.bufferPos);
    if (offset <= block.bytesValid) {
        block.bytesLeft = static_cast<std::int32_t>(block.bytesValid - offset);
        block.next = block.buffer + offset;
        return true;
    }
    emptyBlockAt(block, place);
    HostStream& stream = *block.hostStream;
    return stream.operations->seek(&stream, kSeekFromStart, static_cast<std::uint32_t>(place)) == 0;
}

std::uint32_t seekBlock(StreamBlock& block, std::int32_t offset, std::uint32_t origin)
{
    bool moved = false;
    if (origin == kSeekFromStart)
        moved = moveBlock(block, static_cast<std::uint32_t>(offset));
    else if (origin == kSeekFromHere)
        moved = moveBlock(block, placeFromHere(block, offset));
    else if (origin == kSeekFromEnd)
        moved = moveBlockFromEnd(block, offset);
    return moved ? 0 : kSeekFailed;
}
