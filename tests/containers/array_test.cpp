#include "containers/array.h"

#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <vector>

using testing_support::expectFailure;
using zorvan::Array;

namespace {

void fill(Array<int>& array)
{
    for (int i = 0; i < array.getLength(); ++i)
        array.set(i, i + 1);
}

std::vector<int> contentOf(const Array<int>& array)
{
    return std::vector<int>(array.elements(), array.elements() + array.getLength());
}

constexpr const char* kCopyPosition = "Array.copyFromArray: srcPos and destPos must be > 0";
constexpr const char* kCopySource
    = "Array.copyFromArray: copy operation would exceed source array length";
constexpr const char* kCopyDestination
    = "Array.copyFromArray: copy operation would exceed destination array length";

} // namespace

TEST(Array, IsZeroAtFirst)
{
    const Array<std::uint64_t> array(100);
    EXPECT_EQ(array.getLength(), 100);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(array.get(i), 0U);
}

TEST(Array, BelowLengthOneThereIsNoStorage)
{
    for (const int length : {0, -1, INT_MIN}) {
        const Array<int> array(length);
        EXPECT_EQ(array.getLength(), 0);
        EXPECT_EQ(array.elements(), nullptr);
        expectFailure(137, "Array.get(): requested index is out of range", [&] { array.get(0); });
    }
}

TEST(Array, EveryAccessIsChecked)
{
    Array<int> array(3);
    const Array<int>& constant = array;
    array.set(2, 9);
    EXPECT_EQ(array.get(2), 9);
    array[0] = 4;
    EXPECT_EQ(constant[0], 4);
    for (const int index : {-1, 3, 4, INT_MAX, INT_MIN}) {
        expectFailure(
            137, "Array.get(): requested index is out of range", [&] { array.get(index); });
        expectFailure(
            137, "Array.set: requested index is out of range", [&] { array.set(index, 1); });
        expectFailure(137, "Array[]: requested index is out of range", [&] { array[index] = 1; });
        expectFailure(137, "Array[]: requested index is out of range",
            [&] { static_cast<void>(constant[index]); });
    }
}

TEST(Array, AdoptedStorageStays)
{
    int storage[] = {5, 6, 7};
    {
        Array<int> array(storage, 3);
        EXPECT_EQ(array.get(1), 6);
        array.set(1, 8);
    }
    EXPECT_EQ(storage[1], 8);
}

TEST(Array, CopyFailures)
{
    struct Row {
        int sourcePos, destPos, count;
        const char* message;
    };
    // Source of 4, destination of 3.
    const Row rows[] = {
        {-1, 0, 1, kCopyPosition},
        {0, -1, 1, kCopyPosition},
        {-1, -1, -1, kCopyPosition},
        {0, 0, 5, kCopySource},
        {4, 0, 1, kCopySource},
        {1, 0, INT_MAX, kCopySource},
        {5, 0, -1, kCopySource},
        {0, 0, 4, kCopyDestination},
        {0, 0, -1, kCopyDestination},
        {0, 3, 1, kCopyDestination},
        {0, INT_MAX, 4, kCopyDestination},
    };
    Array<int> source(4);
    fill(source);
    for (const Row& row : rows) {
        Array<int> target(3);
        expectFailure(137, row.message,
            [&] { target.copyFromArray(source, row.sourcePos, row.destPos, row.count); });
        EXPECT_EQ(contentOf(target), (std::vector<int>{0, 0, 0}));
    }
}

TEST(Array, CopyAcceptsPositionZero)
{
    Array<int> source(4);
    fill(source);
    Array<int> target(5);
    target.copyFromArray(source, 0, 0, 4);
    EXPECT_EQ(contentOf(target), (std::vector<int>{1, 2, 3, 4, 0}));
}

TEST(Array, CopyOfTheRest)
{
    Array<int> source(4);
    fill(source);
    Array<int> target(5);
    target.copyFromArray(source, 2, 3, -1);
    EXPECT_EQ(contentOf(target), (std::vector<int>{0, 0, 0, 3, 4}));
    target.copyFromArray(source, 4, 0, -1);
    target.copyFromArray(source, 4, 5, -1);
    target.copyFromArray(source, 0, 5, 0);
    EXPECT_EQ(contentOf(target), (std::vector<int>{0, 0, 0, 3, 4}));
}

TEST(Array, CopyWithinOneArray)
{
    Array<int> array(5);
    fill(array);
    array.copyFromArray(array, 0, 1, 4);
    EXPECT_EQ(contentOf(array), (std::vector<int>{1, 1, 2, 3, 4}));
}

TEST(Array, IsAnObject)
{
    const Array<int> a(1);
    const Array<int> b(1);
    EXPECT_TRUE(a.equals(a));
    EXPECT_FALSE(a.equals(b));
    const zorvan::AbstractObject* root = &a;
    EXPECT_NE(dynamic_cast<const zorvan::Object*>(root), nullptr);
}
