#include "containers/array_list.h"

#include "support/process_heap.h"
#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <random>
#include <vector>

using testing_support::expectFailure;
using zorvan::ArrayList;

namespace {

std::vector<int> contentOf(const ArrayList<int>& list)
{
    return std::vector<int>(list.begin(), list.end());
}

/// What the rules say of the length of the array behind a list.
int lengthAfter(int length, int n)
{
    if (n <= 0)
        return length;
    if (length == 0)
        return n;
    if (n < length)
        return length;
    while (length <= n)
        length += length >= 4096 ? 4096 : length;
    return length;
}

} // namespace

TEST(ArrayList, FailureTexts)
{
    ArrayList<int> list;
    expectFailure(137, "ArrayList.first(): ArrayList is empty", [&] { list.first(); });
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { list.last(); });
    expectFailure(137, "ArrayList.get(): invalid parameter", [&] { list.get(0); });
    list.add(1);
    list.add(2);
    for (const int index : {-1, 2, 3, INT_MAX, INT_MIN}) {
        expectFailure(137, "ArrayList.get(): invalid parameter", [&] { list.get(index); });
        expectFailure(137, "ArrayList.put(): invalid parameter", [&] { list.put(index, 0); });
        expectFailure(137, "ArrayList.remove(): invalid parameter", [&] { list.remove(index); });
    }
    for (const int index : {-1, 3, INT_MAX, INT_MIN})
        expectFailure(137, "ArrayList.insert(): invalid parameter", [&] { list.insert(index, 0); });
    EXPECT_EQ(contentOf(list), (std::vector<int>{1, 2}));
}

TEST(ArrayList, InsertAtTheEndIsAdd)
{
    ArrayList<int> list;
    list.insert(0, 1);
    list.insert(1, 2);
    list.insert(0, 0);
    EXPECT_EQ(contentOf(list), (std::vector<int>{0, 1, 2}));
    expectFailure(137, "ArrayList.put(): invalid parameter", [&] { list.put(3, 3); });
    EXPECT_EQ(list.first(), 0);
    EXPECT_EQ(list.last(), 2);
}

TEST(ArrayList, LengthOfTheArrayGrowsByTheRules)
{
    for (const int firstLength : {0, 1, 5, 128, 5000}) {
        ArrayList<int> list(firstLength);
        int expected = firstLength;
        EXPECT_EQ(list.getArrayLength(), 0);
        for (int i = 0; i < 20'000; ++i) {
            list.add(i);
            expected = lengthAfter(expected, i + 1);
            ASSERT_EQ(list.getArrayLength(), expected) << firstLength << ' ' << i;
        }
        for (int i = 0; i < 20'000; ++i)
            ASSERT_EQ(list.get(i), i);
    }
}

TEST(ArrayList, LengthFiveGrowsToTenWithTheFifthElement)
{
    ArrayList<int> list(5);
    for (int i = 0; i < 4; ++i)
        list.add(i);
    EXPECT_EQ(list.getArrayLength(), 5);
    list.add(4);
    EXPECT_EQ(list.getArrayLength(), 10);
}

TEST(ArrayList, EnsureCapacity)
{
    struct Row {
        int firstLength, n, expected;
    };
    const Row rows[] = {
        {0, 0, 0},
        {0, -5, 0},
        {0, 7, 7},
        {5, 0, 0},
        {5, 4, 5},
        {5, 5, 10},
        {5, 40, 80},
        {3, 4096, 6144},
        {4096, 4096, 8192},
        {4096, 20'000, 20'480},
        {4095, 8190, 12'286},
    };
    for (const Row& row : rows) {
        ArrayList<int> list(row.firstLength);
        list.ensureCapacity(row.n);
        EXPECT_EQ(list.getArrayLength(), row.expected) << row.firstLength << ' ' << row.n;
        EXPECT_EQ(list.getCount(), 0);
    }
}

TEST(ArrayList, NeverShrinks)
{
    ArrayList<int> list;
    for (int i = 0; i < 100; ++i)
        list.add(i);
    const int length = list.getArrayLength();
    list.clear();
    EXPECT_EQ(list.getCount(), 0);
    list.add(1);
    EXPECT_EQ(list.getArrayLength(), length);
    EXPECT_EQ(list.remove(0), 1);
    EXPECT_EQ(list.getArrayLength(), length);
}

TEST(ArrayList, LongListIsCopiedInProportion)
{
    ArrayList<int> list;
    zorvan::clearAllocationFailure();
    for (int i = 0; i < 1'000'000; ++i)
        list.add(i);
    // By steps of 4,096 alone it would be 250 blocks.
    EXPECT_LT(zorvan::allocationsSeen(), 40U);
}

TEST(ArrayList, BeyondTheLimitIsAFailedAllocation)
{
    ArrayList<int> list(5);
    list.add(3);
    EXPECT_THROW(list.ensureCapacity(INT_MAX), std::bad_alloc);
    EXPECT_EQ(contentOf(list), (std::vector<int>{3}));
    EXPECT_EQ(list.getArrayLength(), 5);
}

TEST(ArrayList, FailedGrowthChangesNothing)
{
    ArrayList<int> list(2);
    for (int i = 0; i < 200; ++i) {
        const int length = list.getArrayLength();
        const std::vector<int> before = contentOf(list);
        testing_support::failEachAllocation([&] { list.insert(list.getCount() / 2, i); },
            [&] {
                EXPECT_EQ(contentOf(list), before);
                EXPECT_EQ(list.getArrayLength(), length);
            });
        EXPECT_EQ(list.getCount(), i + 1);
    }
}

TEST(ArrayList, MatchesANaiveModel)
{
    std::mt19937 random(11);
    ArrayList<int> list;
    std::vector<int> model;
    for (int i = 0; i < 20'000; ++i) {
        const int value = static_cast<int>(random() % 1000);
        const auto count = static_cast<std::uint32_t>(model.size());
        const auto place = static_cast<int>(random() % (count + 1));
        switch (random() % (count > 300 ? 4 : 3)) {
        case 0:
            list.add(value);
            model.push_back(value);
            break;
        case 1:
            list.insert(place, value);
            model.insert(model.begin() + place, value);
            break;
        case 2:
            if (place < static_cast<int>(count)) {
                list.put(place, value);
                model[static_cast<std::size_t>(place)] = value;
            }
            break;
        default:
            for (int k = 0; k < 200; ++k) {
                const auto at = static_cast<int>(random() % model.size());
                EXPECT_EQ(list.remove(at), model[static_cast<std::size_t>(at)]);
                model.erase(model.begin() + at);
            }
        }
        ASSERT_EQ(contentOf(list), model);
    }
}
