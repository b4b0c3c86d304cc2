#pragma once

#include <cstddef>

/// A zeroed block of the process heap for the time of a call, which an exception frees as well.
class HeapBlock {
public:
    /// size: bytes.
    explicit HeapBlock(std::size_t size);
    HeapBlock(const HeapBlock&) = delete;
    HeapBlock& operator=(const HeapBlock&) = delete;
    ~HeapBlock();

    /// The block; null when there was no memory.
    void* get() const { return block_; }

private:
    void* block_;
};
