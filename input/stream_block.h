#pragma once

#include "filter/entry_table.h"

#include <cstdint>

/// The buffered reader over the host's stream. Made by VwLocalUp, freed by VwLocalDown; it outlives
/// every document read through it.
struct StreamBlock {
    std::int32_t bytesLeft; ///< bytes not yet taken; negative only within the refill test
    std::uint32_t bytesValid; ///< bytes that the last read delivered
    std::int64_t bufferPos; ///< stream position of the first byte of the buffer
    const std::uint8_t* next; ///< next byte to take
    HostStream* hostStream; ///< borrowed from the host
    StreamBlock* self; ///< the block's own address, which VwLocalDown frees
    std::uint8_t* buffer; ///< owned, freed with the block
    std::uint32_t bufferSize; ///< bytes
    /// The place behind a UTF-16 unit of one byte, with which an odd number of bytes ends; 0 none
    /// met. Going back over that unit is going back one byte.
    std::int64_t loneUnitEnd;
};

/// What taking a byte gives at the end of the stream, and after a failed read or seek.
constexpr std::uint32_t kNoByte = 0xFFFF;

/// Makes the block and its buffer, whose size global option 112 tells. Null without memory.
StreamBlock* createStreamBlock(HostStream* hostStream);

/// Frees the block and its buffer; null is fine.
void destroyStreamBlock(StreamBlock* block);

/// Refills the buffer and takes its first byte; kNoByte at the end. The slow half of takeByte.
std::uint32_t refillAndTakeByte(StreamBlock& block);

/// Takes the next byte, 0 to 255, or kNoByte.
inline std::uint32_t takeByte(StreamBlock& block)
{
    if (--block.bytesLeft >= 0)
        return *block.next++;
    return refillAndTakeByte(block);
}

/// The position of the next byte, computed in 32 bits.
inline std::uint32_t blockPosition(const StreamBlock& block)
{
    return static_cast<std::uint32_t>(block.bufferPos) + block.bytesValid
        - static_cast<std::uint32_t>(block.bytesLeft);
}

/// The place of the next byte, whole: what blockPosition has the low 32 bits of.
inline std::int64_t blockPlace(const StreamBlock& block)
{
    return block.bufferPos + block.bytesValid - block.bytesLeft;
}

/// Moves the block to a place, of which the low 32 bits count: within the buffer the host is not
/// asked, else it is asked to seek and the next take refills from there. False when the host's seek
/// failed; the place holds then too, and the next take tries again.
bool moveBlock(StreamBlock& block, std::int64_t place);

/// The place `distance` bytes from the next byte. In front of the start of the stream it is the
/// 32-bit position that the distance wraps to, at which there is nothing to read.
inline std::int64_t placeFromHere(const StreamBlock& block, std::int64_t distance)
{
    const std::int64_t place = blockPlace(block) + distance;
    return place >= 0 ? place : static_cast<std::uint32_t>(place);
}

/// Moves the block; within the buffer the host is not asked. origin: 0 absolute (the offset counts
/// as unsigned), 1 relative to the position, 2 from the end. Answers 0, or 0xFFFFFFFF when the
/// host's seek failed; from the end it then stays where it was.
std::uint32_t seekBlock(StreamBlock& block, std::int32_t offset, std::uint32_t origin);
