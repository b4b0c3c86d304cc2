#pragma once

#include "containers/array.h"

#include <cstring>

namespace zorvan {

/// A growable list over one array, which grows by fixed rules and never shrinks. The elements are
/// plain values or pointers; the owner of the list deletes what they point at.
template <typename T> class ArrayList : public virtual Object, public virtual AbstractObject {
public:
    /// arrayLength: the length the array begins with; 0 fits it to the first growth. The storage
    /// comes with the first element.
    explicit ArrayList(std::int32_t arrayLength = 0)
        : array(0)
        , firstLength(arrayLength)
        , count(0)
    {
    }

    ArrayList(const ArrayList&) = delete;
    ArrayList& operator=(const ArrayList&) = delete;
    ~ArrayList() override = default;

    std::int32_t getCount() const { return count; }

    void add(T value)
    {
        growByOne();
        array.data[count++] = value;
    }

    T get(std::int32_t index) const
    {
        if (!holds(index))
            throwContainerFailure(FAILURE_INDEX, "ArrayList.get(): invalid parameter");
        return array.data[index];
    }

    /// Replaces the element at index.
    void put(std::int32_t index, T value)
    {
        if (!holds(index))
            throwContainerFailure(FAILURE_INDEX, "ArrayList.put(): invalid parameter");
        array.data[index] = value;
    }

    /// Puts value in front of the element at index; index getCount() is the end of the list.
    void insert(std::int32_t index, T value)
    {
        checkInsert(index);
        growByOne();
        moveElements(index + 1, index);
        array.data[index] = value;
        ++count;
    }

    /// Takes the element at index out, moves the rest down by one, and returns it.
    T remove(std::int32_t index)
    {
        if (!holds(index))
            throwContainerFailure(FAILURE_INDEX, "ArrayList.remove(): invalid parameter");
        const T removed = array.data[index];
        moveElements(index, index + 1);
        --count;
        return removed;
    }

    T first() const
    {
        if (count == 0)
            throwContainerFailure(FAILURE_INDEX, "ArrayList.first(): ArrayList is empty");
        return array.data[0];
    }

    T last() const
    {
        if (count == 0)
            throwContainerFailure(FAILURE_INDEX, "ArrayList.last(): ArrayList is empty");
        return array.data[count - 1];
    }

    /// Empties the list; the array stays as long as it is.
    void clear() { count = 0; }

    /// Makes the array long enough for n elements and, but for its first length, one more.
    void ensureCapacity(std::int32_t n)
    {
        if (n <= 0)
            return;
        const bool unmade = array.length == 0;
        std::int64_t length = unmade ? firstLength : array.length;
        if (length <= 0) {
            array.extend(n);
            return;
        }
        if (n < length) {
            if (unmade)
                array.extend(firstLength);
            return;
        }
        while (length <= n)
            length = length < kStepLength ? length * 2 : length + kStepLength;
        if (length > kMaximumElements)
            throwOutOfStorage();
        array.extend(static_cast<std::int32_t>(length));
    }

    /// The length of the array behind the list.
    std::int32_t getArrayLength() const { return array.getLength(); }

    /// Fails as insert would for this index; a caller with more to change asks first.
    void checkInsert(std::int32_t index) const
    {
        if (index < 0 || index > count)
            throwContainerFailure(FAILURE_INDEX, "ArrayList.insert(): invalid parameter");
    }

    /// The elements themselves, getCount() of them, for loops that change nothing else.
    T* begin() { return array.data; }
    T* end() { return array.data + count; }
    const T* begin() const { return array.data; }
    const T* end() const { return array.data + count; }

private:
    // From this length on the array grows by as much, no longer to its double.
    static constexpr std::int64_t kStepLength = 4096;

    bool holds(std::int32_t index) const
    {
        return static_cast<std::uint32_t>(index) < static_cast<std::uint32_t>(count);
    }

    void growByOne()
    {
        if (count == kMaximumElements)
            throwOutOfStorage();
        // What ensureCapacity would leave alone is by far the most common.
        if (count + 1 >= array.length)
            ensureCapacity(count + 1);
    }

    /// Moves the elements from index `from` to the end of the list so that they begin at `to`.
    void moveElements(std::int32_t to, std::int32_t from)
    {
        if (count > from)
            std::memmove(array.data + to, array.data + from, Array<T>::bytesOf(count - from));
    }

    Array<T> array;
    std::int32_t firstLength;
    std::int32_t count;
};

} // namespace zorvan
