#pragma once

#include "containers/failures.h"
#include "containers/storage.h"
#include "support/object.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace zorvan {

template <typename T> class ArrayList;

/// An array of fixed length whose every access is checked. The elements are plain values or
/// pointers; what they point at is never deleted here.
template <typename T> class Array : public virtual Object, public virtual AbstractObject {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    /// count: the number of elements, all zero at first; below 1 there is no storage.
    explicit Array(std::int32_t count)
        : data(count > 0 ? allocateElements<T>(count).release() : nullptr)
        , length(std::max(count, 0))
        , reserved(length)
        , adopted(false)
    {
        clearElements(0, length);
    }

    /// Adopts storage of somebody else, who keeps it alive longer than the array and frees it.
    Array(T* storage, std::int32_t count)
        : data(storage)
        , length(std::max(count, 0))
        , reserved(length)
        , adopted(true)
    {
    }

    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;

    ~Array() override
    {
        if (!adopted)
            releaseStorage(data);
    }

    std::int32_t getLength() const { return length; }

    T get(std::int32_t index) const
    {
        if (!holds(index))
            throwContainerFailure(FAILURE_INDEX, "Array.get(): requested index is out of range");
        return data[index];
    }

    void set(std::int32_t index, T value)
    {
        if (!holds(index))
            throwContainerFailure(FAILURE_INDEX, "Array.set: requested index is out of range");
        data[index] = value;
    }

    T& operator[](std::int32_t index)
    {
        checkSubscript(index);
        return data[index];
    }

    const T& operator[](std::int32_t index) const
    {
        checkSubscript(index);
        return data[index];
    }

    /// Copies elements of source, which may be this array itself. count -1: the whole rest of the
    /// source from sourcePos on.
    void copyFromArray(
        const Array& source, std::int32_t sourcePos, std::int32_t destPos, std::int32_t count)
    {
        if (sourcePos < 0 || destPos < 0) {
            // QUIRK(Array.CopyAcceptsPositionZero): position 0 is good, whatever the text says.
            throwContainerFailure(
                FAILURE_INDEX, "Array.copyFromArray: srcPos and destPos must be > 0");
        }
        if (count == -1)
            count = std::max(source.length - sourcePos, 0);
        if (std::int64_t{sourcePos} + count > source.length)
            throwContainerFailure(FAILURE_INDEX,
                "Array.copyFromArray: copy operation would exceed source array length");
        if (std::int64_t{destPos} + count > length)
            throwContainerFailure(FAILURE_INDEX,
                "Array.copyFromArray: copy operation would exceed destination array length");
        if (count > 0)
            std::memmove(data + destPos, source.data + sourcePos, bytesOf(count));
    }

    /// The elements themselves, getLength() of them; null when there are none.
    T* elements() { return data; }
    const T* elements() const { return data; }

private:
    friend class ArrayList<T>;

    static std::size_t bytesOf(std::int32_t count)
    {
        return static_cast<std::size_t>(count) * sizeof(T);
    }

    // One compare for both ends: a negative index is a huge unsigned one.
    bool holds(std::int32_t index) const
    {
        return static_cast<std::uint32_t>(index) < static_cast<std::uint32_t>(length);
    }

    void checkSubscript(std::int32_t index) const
    {
        if (!holds(index))
            throwContainerFailure(FAILURE_INDEX, "Array[]: requested index is out of range");
    }

    void clearElements(std::int32_t from, std::int32_t to)
    {
        if (to > from)
            std::memset(static_cast<void*>(data + from), 0, bytesOf(to - from));
    }

    /// Makes the array longer for its list. The list's lengths rise by steps of fixed size, which
    /// would copy a long list over and over, so the storage behind them grows in proportion.
    void extend(std::int32_t newLength)
    {
        if (newLength > reserved) {
            const std::int64_t proportional
                = std::min(std::int64_t{reserved} + reserved / 2, kMaximumElements);
            const std::int64_t reserve = std::max<std::int64_t>(newLength, proportional);
            StoragePointer<T> storage = allocateElements<T>(reserve);
            if (length > 0)
                std::memcpy(storage.get(), data, bytesOf(length));
            releaseStorage(std::exchange(data, storage.release()));
            reserved = static_cast<std::int32_t>(reserve);
        }
        clearElements(length, newLength);
        length = newLength;
    }

    T* data;
    std::int32_t length;
    std::int32_t reserved; // elements that data has room for
    bool adopted;
};

} // namespace zorvan
