#pragma once

#include "containers/failures.h"
#include "containers/storage.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace zorvan {

/// Pointers addressed by a small index that may begin anywhere: one array over the range of indexes
/// in use. The owner deletes what the entries point at.
template <typename T> class IndexedList {
public:
    /// step: the capacity is always a multiple of this; at least 1.
    explicit IndexedList(std::int32_t step)
        : items(nullptr)
        , capacity(0)
        , firstIndex(0)
        , lastIndex(0)
        , growStep(std::max(step, 1))
    {
    }

    IndexedList(const IndexedList&) = delete;
    IndexedList& operator=(const IndexedList&) = delete;
    ~IndexedList() { releaseStorage(items); }

    /// The entry at index; null outside the range. Fails for a negative index only.
    T* get(std::int32_t index) const
    {
        checkIndex(index);
        if (capacity == 0 || index < firstIndex || index > lastIndex)
            return nullptr;
        return items[index - firstIndex];
    }

    /// Stores an entry, which may be null.
    void set(std::int32_t index, T* entry)
    {
        checkIndex(index);
        ensureIndex(index);
        items[index - firstIndex] = entry;
    }

    /// Makes the range hold index. Entries keep their indexes.
    void ensureIndex(std::int32_t index)
    {
        // The last slot of the range counts as outside, so an index there moves the range as one
        // behind it would. It may be the last slot again afterwards.
        if (capacity != 0 && index >= firstIndex && index < lastIndex)
            return;
        moveTo(rangeFor(index));
    }

    /// The range of indexes that have a slot, and the number of slots; 0 at first.
    std::int32_t getFirstIndex() const { return firstIndex; }
    std::int32_t getLastIndex() const { return lastIndex; }
    std::int32_t getCapacity() const { return capacity; }

private:
    struct Range {
        std::int64_t first;
        std::int64_t capacity;
    };

    static void checkIndex(std::int32_t index)
    {
        if (index < 0)
            throwContainerFailure(FAILURE_INDEX, "IndexedList.get(): index must be 0 or greater");
    }

    /// Cuts the empty slots off both ends of the range. Answers false when all slots are empty.
    bool narrow(std::int64_t& first, std::int64_t& last) const
    {
        const auto isUsed = [](const T* item) { return item != nullptr; };
        T* const* const end = items + capacity;
        T* const* firstUsed = items;
        while (firstUsed != end && !isUsed(*firstUsed))
            ++firstUsed;
        if (firstUsed == end)
            return false;
        T* const* lastUsed = end - 1;
        while (!isUsed(*lastUsed))
            --lastUsed;
        first = firstIndex + (firstUsed - items);
        last = firstIndex + (lastUsed - items);
        return true;
    }

    Range rangeFor(std::int64_t index) const
    {
        const std::int64_t step = growStep;
        std::int64_t first = 0;
        std::int64_t last = 0;
        if (capacity == 0 || !narrow(first, last)) {
            first = std::max<std::int64_t>(index - step / 2, 0);
            last = first + step - 1;
        }
        if (first > index)
            first = std::max<std::int64_t>(first - roundUp(first - index), 0);
        if (last < index)
            last += roundUp(index - last);
        const std::int64_t width = std::max<std::int64_t>(last - first + 1, capacity);
        return {first, roundUp(width)};
    }

    std::int64_t roundUp(std::int64_t number) const
    {
        return (number + growStep - 1) / growStep * growStep;
    }

    void moveTo(Range range)
    {
        const std::int64_t from = std::max<std::int64_t>(range.first, firstIndex);
        const std::int64_t to = std::min<std::int64_t>(
            range.first + range.capacity, std::int64_t{firstIndex} + capacity);
        const std::int64_t kept = std::max<std::int64_t>(to - from, 0);
        if (range.capacity == capacity)
            shiftItems(range, from, kept);
        else
            replaceItems(range, from, kept);
        firstIndex = static_cast<std::int32_t>(range.first);
        capacity = static_cast<std::int32_t>(range.capacity);
        lastIndex = static_cast<std::int32_t>(
            std::min(range.first + range.capacity - 1, kMaximumElements));
    }

    void shiftItems(Range range, std::int64_t from, std::int64_t kept)
    {
        // When nothing is kept, from lies outside one of the two ranges or both.
        const std::int64_t before = kept > 0 ? from - range.first : 0;
        if (kept > 0)
            std::memmove(items + before, items + (from - firstIndex), bytesOf(kept));
        std::fill(items, items + before, nullptr);
        std::fill(items + before + kept, items + capacity, nullptr);
    }

    void replaceItems(Range range, std::int64_t from, std::int64_t kept)
    {
        StoragePointer<T*> moved = allocateElements<T*>(range.capacity);
        std::fill(moved.get(), moved.get() + range.capacity, nullptr);
        if (kept > 0)
            std::memcpy(
                moved.get() + (from - range.first), items + (from - firstIndex), bytesOf(kept));
        releaseStorage(std::exchange(items, moved.release()));
    }

    static std::size_t bytesOf(std::int64_t count)
    {
        return static_cast<std::size_t>(count) * sizeof(T*);
    }

    T** items; // owned; the entries are not
    std::int32_t capacity; // slots in items
    std::int32_t firstIndex; // index that items[0] stands for
    std::int32_t lastIndex; // index that the last slot stands for
    std::int32_t growStep;
};

} // namespace zorvan
