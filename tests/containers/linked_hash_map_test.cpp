#include "containers/linked_hash_map.h"

#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

using testing_support::expectFailure;
using zorvan::LinkedHashMap;

namespace {

using Map = LinkedHashMap<std::uint64_t, int>;
using Entries = std::vector<std::pair<std::uint64_t, int>>;

/// The pairs in order; also checks that every position is known under its key.
Entries entriesOf(const Map& map)
{
    Entries all;
    for (int i = 0; i < map.getCount(); ++i) {
        const auto* pair = map.getAt(i);
        EXPECT_EQ(map.indexOf(pair->key), i);
        EXPECT_TRUE(map.contains(pair->key));
        EXPECT_EQ(map.get(pair->key), pair->value);
        all.emplace_back(pair->key, pair->value);
    }
    return all;
}

} // namespace

TEST(LinkedHashMap, FailureTexts)
{
    Map map(128, 128);
    expectFailure(25, "item could not be found", [&] { map.get(1); });
    expectFailure(25, "item could not be found", [&] { map.remove(1); });
    expectFailure(137, "ArrayList.get(): invalid parameter", [&] { map.getAt(0); });
    expectFailure(137, "ArrayList.get(): invalid parameter", [&] { map.getAt(-1); });
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { map.last(); });
    expectFailure(137, "ArrayList.insert(): invalid parameter", [&] { map.insertAt(1, 1, 1); });
    expectFailure(137, "ArrayList.insert(): invalid parameter", [&] { map.insertAt(1, 1, -1); });
    EXPECT_EQ(map.getCount(), 0);
    EXPECT_FALSE(map.contains(1));
    EXPECT_EQ(map.indexOf(1), -1);
    EXPECT_EQ(map.find(1), nullptr);
}

TEST(LinkedHashMap, KeepsTheOrderOfInsertion)
{
    Map map(16, 16);
    for (const std::uint64_t key : {9U, 3U, 7U, 0U})
        map.put(key, static_cast<int>(key));
    map.put(3, 33);
    EXPECT_EQ(entriesOf(map), (Entries{{9, 9}, {3, 33}, {7, 7}, {0, 0}}));
    EXPECT_EQ(map.last()->key, 0U);
    *map.find(7) = 77;
    EXPECT_EQ(map.remove(9), 9);
    EXPECT_EQ(entriesOf(map), (Entries{{3, 33}, {7, 77}, {0, 0}}));
    map.insertAt(5, 5, 1);
    map.insertAt(6, 6, 4);
    map.insertAt(4, 4, 0);
    EXPECT_EQ(entriesOf(map), (Entries{{4, 4}, {3, 33}, {5, 5}, {7, 77}, {0, 0}, {6, 6}}));
    EXPECT_EQ(map.list().getCount(), 6);
    map.clear();
    EXPECT_EQ(map.getCount(), 0);
    EXPECT_FALSE(map.contains(3));
    map.put(3, 1);
    EXPECT_EQ(entriesOf(map), (Entries{{3, 1}}));
}

TEST(LinkedHashMap, ListBeginsWithFiveAndGrowsToTen)
{
    Map map(16, 16);
    for (std::uint64_t key = 0; key < 4; ++key)
        map.put(key, 0);
    EXPECT_EQ(map.list().getArrayLength(), 5);
    map.put(4, 0);
    EXPECT_EQ(map.list().getArrayLength(), 10);
}

TEST(LinkedHashMap, KeyInsertedTwiceStaysConsistent)
{
    Map map(16, 16);
    map.put(1, 1);
    map.put(2, 2);
    map.insertAt(2, 22, 0);
    EXPECT_EQ(map.indexOf(2), 0);
    EXPECT_EQ(map.get(2), 22);
    EXPECT_EQ(map.getCount(), 3);
    // Without the first entry the other one of the key is found again.
    EXPECT_EQ(map.remove(2), 22);
    EXPECT_EQ(map.indexOf(2), 1);
    EXPECT_EQ(map.remove(2), 2);
    EXPECT_EQ(entriesOf(map), (Entries{{1, 1}}));
}

TEST(LinkedHashMap, FailedInsertionChangesNothing)
{
    Map map(16, 1);
    for (int i = 0; i < 60; ++i) {
        const Entries before = entriesOf(map);
        const auto key = static_cast<std::uint64_t>(i) * 16;
        testing_support::failEachAllocation(
            [&] {
                if (i % 2 == 0)
                    map.put(key, i);
                else
                    map.insertAt(key, i, i / 2);
            },
            [&] {
                EXPECT_EQ(entriesOf(map), before);
                EXPECT_FALSE(map.contains(key));
            });
        EXPECT_EQ(map.getCount(), i + 1);
    }
}

TEST(LinkedHashMap, MatchesANaiveModel)
{
    std::mt19937 random(23);
    Map map(128, 128);
    Entries model;
    for (int i = 0; i < 6'000; ++i) {
        const std::uint64_t key = random() % 60 + (random() % 2 == 0 ? 0 : 0x100000000);
        const auto place = std::find_if(
            model.begin(), model.end(), [&](const auto& entry) { return entry.first == key; });
        const bool present = place != model.end();
        switch (random() % 3) {
        case 0:
            map.put(key, i);
            if (present)
                place->second = i;
            else
                model.emplace_back(key, i);
            break;
        case 1:
            if (!present) {
                const auto at = static_cast<std::ptrdiff_t>(random() % (model.size() + 1));
                map.insertAt(key, i, static_cast<std::int32_t>(at));
                model.insert(model.begin() + at, {key, i});
            }
            break;
        default:
            if (present) {
                EXPECT_EQ(map.remove(key), place->second);
                model.erase(place);
            } else {
                expectFailure(25, "item could not be found", [&] { map.remove(key); });
            }
        }
        ASSERT_EQ(entriesOf(map), model);
    }
}
