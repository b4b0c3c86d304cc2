#pragma once

#include "containers/storage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace zorvan {

/// Storage that is handed out piece by piece and freed at once. No destructor of what lies in it is
/// called.
class Arena {
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena() { release(); }

    /// Storage of this size, not cleared; alignment: a power of two, at most that of max_align_t.
    /// Throws std::bad_alloc.
    void* allocate(std::size_t size, std::size_t alignment)
    {
        const std::uintptr_t start = (next + alignment - 1) & ~(alignment - 1);
        if (start > end || size > end - start)
            return allocateInNewChunk(size);
        next = start + size;
        return reinterpret_cast<void*>(start);
    }

    /// The same; null when there is no memory.
    void* tryAllocate(std::size_t size, std::size_t alignment)
    {
        const std::uintptr_t start = (next + alignment - 1) & ~(alignment - 1);
        if (start > end || size > end - start)
            return tryAllocateInNewChunk(size);
        next = start + size;
        return reinterpret_cast<void*>(start);
    }

    /// Frees all storage.
    void release()
    {
        while (newest != nullptr) {
            Chunk* older = newest->older;
            releaseStorage(newest);
            newest = older;
        }
        next = 0;
        end = 0;
        chunkSize = kFirstChunkSize;
    }

private:
    struct alignas(std::max_align_t) Chunk {
        Chunk* older;
    };

    static constexpr std::size_t kFirstChunkSize = 65'536;
    static constexpr std::size_t kLargestChunkSize = 1'048'576;

    void* allocateInNewChunk(std::size_t size)
    {
        void* storage = tryAllocateInNewChunk(size);
        if (storage == nullptr)
            throwOutOfStorage();
        return storage;
    }

    void* tryAllocateInNewChunk(std::size_t size)
    {
        if (size > SIZE_MAX - sizeof(Chunk) || !countAllocation())
            return nullptr;
        const std::size_t bytes = std::max(chunkSize, size + sizeof(Chunk));
        auto* chunk = static_cast<Chunk*>(::operator new(bytes, std::nothrow));
        if (chunk == nullptr)
            return nullptr;
        chunk->older = newest;
        newest = chunk;
        chunkSize = std::min(chunkSize * 2, kLargestChunkSize);
        const auto first = reinterpret_cast<std::uintptr_t>(chunk + 1);
        next = first + size;
        end = reinterpret_cast<std::uintptr_t>(chunk) + bytes;
        return chunk + 1;
    }

    std::uintptr_t next = 0; // the first byte not handed out
    std::uintptr_t end = 0; // behind the last byte of the newest chunk
    Chunk* newest = nullptr; // owned, as all chunks are
    std::size_t chunkSize = kFirstChunkSize;
};

} // namespace zorvan
