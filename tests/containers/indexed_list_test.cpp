#include "containers/indexed_list.h"

#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <random>

using testing_support::expectFailure;
using zorvan::IndexedList;

namespace {

constexpr const char* kNegative = "IndexedList.get(): index must be 0 or greater";

} // namespace

TEST(IndexedList, NegativeIndexFails)
{
    IndexedList<int> list(32);
    int entry = 0;
    for (const int index : {-1, -1000, INT_MIN}) {
        expectFailure(137, kNegative, [&] { list.get(index); });
        expectFailure(137, kNegative, [&] { list.set(index, &entry); });
    }
    EXPECT_EQ(list.getCapacity(), 0);
}

TEST(IndexedList, OutsideTheRangeIsNull)
{
    IndexedList<int> list(32);
    EXPECT_EQ(list.get(0), nullptr);
    EXPECT_EQ(list.get(1000), nullptr);
    EXPECT_EQ(list.get(INT_MAX), nullptr);
    int entry = 0;
    list.set(1000, &entry);
    EXPECT_EQ(list.get(1000), &entry);
    EXPECT_EQ(list.get(0), nullptr);
    EXPECT_EQ(list.get(999), nullptr);
    EXPECT_EQ(list.get(1'000'000), nullptr);
}

TEST(IndexedList, RangeOfAnEmptyListLiesAroundTheIndex)
{
    struct Row {
        int step, index, first, capacity;
    };
    const Row rows[] = {
        {32, 0, 0, 32},
        {32, 15, 0, 32},
        {32, 17, 1, 32},
        {32, 1000, 984, 32},
        {1, 5, 5, 1},
        {10, 100, 95, 10},
    };
    for (const Row& row : rows) {
        IndexedList<int> list(row.step);
        list.ensureIndex(row.index);
        EXPECT_EQ(list.getFirstIndex(), row.first);
        EXPECT_EQ(list.getCapacity(), row.capacity);
        EXPECT_EQ(list.getLastIndex(), row.first + row.capacity - 1);
    }
}

TEST(IndexedList, LastSlotTriggersTheMove)
{
    IndexedList<int> list(4);
    int entries[8] = {};
    list.set(2, &entries[2]);
    ASSERT_EQ(list.getFirstIndex(), 0);
    ASSERT_EQ(list.getLastIndex(), 3);
    // Index 3 is the last slot: the range is narrowed to index 2 and from there reaches index 3 by
    // a step of 4. From 2 to 6 are five indexes, which take two steps of slots.
    list.set(3, &entries[3]);
    EXPECT_EQ(list.getCapacity(), 8);
    EXPECT_EQ(list.getFirstIndex(), 2);
    EXPECT_EQ(list.get(2), &entries[2]);
    EXPECT_EQ(list.get(3), &entries[3]);
}

TEST(IndexedList, EntriesShiftInsideTheArray)
{
    IndexedList<int> list(8);
    int entry = 0;
    list.set(20, &entry);
    ASSERT_EQ(list.getFirstIndex(), 16);
    list.set(15, &entry);
    list.set(15, nullptr);
    list.set(27, &entry);
    EXPECT_EQ(list.get(20), &entry);
    EXPECT_EQ(list.get(27), &entry);
    EXPECT_EQ(list.get(15), nullptr);
    for (const int index : {16, 17, 18, 19, 21, 22, 26, 28})
        EXPECT_EQ(list.get(index), nullptr);
}

TEST(IndexedList, EmptiedListMovesToAFarIndex)
{
    struct Row {
        int index, first, last;
    };
    const Row rows[] = {{1'000, 996, 1'003}, {1'000'000, 999'996, 1'000'003}, {2, 0, 7},
        {INT_MAX - 8, INT_MAX - 12, INT_MAX - 5}};
    for (const Row& row : rows) {
        IndexedList<int> list(8);
        int entry = 0;
        list.set(20, &entry);
        list.set(20, nullptr);
        list.ensureIndex(row.index);
        EXPECT_EQ(list.getFirstIndex(), row.first);
        EXPECT_EQ(list.getLastIndex(), row.last);
        EXPECT_EQ(list.getCapacity(), 8) << "the slots that are there do";
        for (int index = row.first; index <= row.last; ++index)
            EXPECT_EQ(list.get(index), nullptr);
        list.set(row.index, &entry);
        EXPECT_EQ(list.get(row.index), &entry);
        EXPECT_EQ(list.get(20), nullptr);
    }
}

TEST(IndexedList, RangeAfterAShiftInsideTheArray)
{
    IndexedList<int> list(8);
    int entry = 0;
    list.set(20, &entry);
    list.ensureIndex(26);
    ASSERT_EQ(list.getFirstIndex(), 20);
    ASSERT_EQ(list.getCapacity(), 16);
    // From the one entry down by a step of 8, to 12. Nine indexes have room in 16 slots.
    list.ensureIndex(15);
    EXPECT_EQ(list.getFirstIndex(), 12);
    EXPECT_EQ(list.getLastIndex(), 27);
    EXPECT_EQ(list.getCapacity(), 16);
    for (int index = 12; index <= 27; ++index)
        EXPECT_EQ(list.get(index), index == 20 ? &entry : nullptr);
}

TEST(IndexedList, RangeAfterTheCutToZero)
{
    IndexedList<int> list(8);
    int entry = 0;
    list.set(10, &entry);
    ASSERT_EQ(list.getFirstIndex(), 6);
    list.ensureIndex(3);
    ASSERT_EQ(list.getFirstIndex(), 2);
    ASSERT_EQ(list.getCapacity(), 16);
    // Two steps of 8 down from 10 lead below 0.
    list.ensureIndex(1);
    EXPECT_EQ(list.getFirstIndex(), 0);
    EXPECT_EQ(list.getLastIndex(), 15);
    EXPECT_EQ(list.getCapacity(), 16);
    for (int index = 0; index <= 15; ++index)
        EXPECT_EQ(list.get(index), index == 10 ? &entry : nullptr);
}

TEST(IndexedList, FailedGrowthChangesNothing)
{
    IndexedList<int> list(4);
    int entry = 0;
    list.set(2, &entry);
    EXPECT_EQ(testing_support::failEachAllocation([&] { list.set(50, &entry); },
                  [&] {
                      EXPECT_EQ(list.get(2), &entry);
                      EXPECT_EQ(list.get(50), nullptr);
                      EXPECT_EQ(list.getCapacity(), 4);
                  }),
        1U);
    EXPECT_EQ(list.get(2), &entry);
    EXPECT_EQ(list.get(50), &entry);
}

TEST(IndexedList, MatchesANaiveModel)
{
    static int entries[16];
    for (const int step : {1, 2, 3, 7, 32}) {
        std::mt19937 random(static_cast<std::uint32_t>(step));
        for (int round = 0; round < 50; ++round) {
            IndexedList<int> list(step);
            std::map<int, int*> model;
            const auto base = static_cast<int>(random() % 200);
            for (int i = 0; i < 200; ++i) {
                const int index = base + static_cast<int>(random() % 100);
                int* entry = random() % 3 == 0 ? nullptr : &entries[random() % 16];
                list.set(index, entry);
                model[index] = entry;
                ASSERT_EQ(list.getCapacity() % step, 0);
                ASSERT_EQ(list.getLastIndex(), list.getFirstIndex() + list.getCapacity() - 1);
                for (int k = 0; k < 320; ++k)
                    ASSERT_EQ(list.get(k), model.count(k) != 0 ? model[k] : nullptr) << step;
            }
        }
    }
}
