#pragma once

#include "containers/failures.h"
#include "support/process_heap.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

namespace zorvan {

/// The number of elements that no container goes beyond.
inline constexpr std::int64_t kMaximumElements = std::numeric_limits<std::int32_t>::max();

/// Gives storage back to where allocateStorage took it from.
struct StorageDeleter {
    void operator()(void* storage) const { releaseStorage(storage); }
};

/// Owns the storage of elements that need no destructor.
template <typename T> using StoragePointer = std::unique_ptr<T, StorageDeleter>;

/// Storage for count elements, not cleared. Fails as allocateStorage does, also beyond
/// kMaximumElements.
template <typename T> StoragePointer<T> allocateElements(std::int64_t count)
{
    if (count > kMaximumElements)
        throwOutOfStorage();
    void* storage = allocateStorage(static_cast<std::size_t>(count) * sizeof(T));
    return StoragePointer<T>(static_cast<T*>(storage));
}

/// The same; null when there is no memory.
template <typename T> StoragePointer<T> tryAllocateElements(std::int64_t count)
{
    if (count > kMaximumElements || !countAllocation())
        return nullptr;
    void* storage = ::operator new(static_cast<std::size_t>(count) * sizeof(T), std::nothrow);
    return StoragePointer<T>(static_cast<T*>(storage));
}

} // namespace zorvan
