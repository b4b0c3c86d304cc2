#include "tree/value_index.h"

#include "support/process_heap.h"
#include "tests/containers/allocation_failures.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <vector>

namespace {

/// Enters a key with its own place in `numbers` as the value; answers whether it was new.
bool enter(ValueIndex<const int>& index, std::uint32_t key, const int& number)
{
    bool added = false;
    const int*& place = index.findOrAdd(key, added);
    if (added) {
        EXPECT_EQ(place, nullptr);
        place = &number;
    } else {
        EXPECT_EQ(place, &number) << key;
    }
    return added;
}

/// The key that the index takes for `path`: the inverse of its factor, times the path.
std::uint32_t keyOfPath(std::uint32_t path)
{
    std::uint32_t inverse = 1;
    for (int i = 0; i < 5; ++i)
        inverse *= 2 - 0x9E3779B1U * inverse;
    return path * inverse;
}

} // namespace

TEST(ValueIndex, BeginsWithoutStorage)
{
    zorvan::clearAllocationFailure();
    const ValueIndex<const int> index;
    index.forEach([](const int*) { ADD_FAILURE(); });
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
}

TEST(ValueIndex, MatchesANaiveModel)
{
    static const int kNumbers[4'096] = {};
    std::mt19937 random(4);
    for (const std::uint32_t spread : {8U, 200U, 100'000U, 0xFFFFFFFFU}) {
        ValueIndex<const int> index;
        std::map<std::uint32_t, const int*> model;
        std::vector<const int*> inOrder;
        for (int i = 0; i < 4'000; ++i) {
            const auto key = static_cast<std::uint32_t>(random()) % spread;
            const int* next = &kNumbers[model.size()];
            const auto [known, isNew] = model.emplace(key, next);
            ASSERT_EQ(enter(index, key, *known->second), isNew);
            if (isNew)
                inOrder.push_back(next);
        }
        for (std::uint32_t i = 0; i < 1'000; ++i) {
            const auto key = static_cast<std::uint32_t>(random()) % spread;
            const auto known = model.find(key);
            ASSERT_EQ(index.find(key), known != model.end() ? known->second : nullptr) << key;
        }
        for (const auto& [key, value] : model)
            ASSERT_EQ(index.find(key), value) << key;
        std::vector<const int*> visited;
        index.forEach([&](const int* value) { visited.push_back(value); });
        EXPECT_EQ(visited, inOrder);
    }
}

TEST(ValueIndex, KeysThatAgreeInAllButTheLastBitsArePartedByThem)
{
    static const int kNumbers[300] = {};
    // All below one root, each behind all before it: first the longest row of branches that there
    // is, then the whole of its lowest corner.
    std::vector<std::uint32_t> paths;
    for (std::uint32_t bit = 1U << 24; bit != 0; bit >>= 1)
        paths.push_back(0xFE000000U | (0x01FFFFFFU & ~(bit - 1)));
    for (std::uint32_t low = 0; low < 256; ++low)
        paths.push_back(0xFE000000U | low);
    ValueIndex<const int> index;
    for (std::size_t i = 0; i < paths.size(); ++i)
        EXPECT_TRUE(enter(index, keyOfPath(paths[i]), kNumbers[i])) << i;
    for (std::size_t i = 0; i < paths.size(); ++i)
        EXPECT_FALSE(enter(index, keyOfPath(paths[i]), kNumbers[i])) << i;
}

TEST(ValueIndex, ManyKeysOfOneRootStayFast)
{
    // A million keys that would all be one chain to a table of 128 places; quadratic work on them
    // would not end within the time that a test has.
    static const int kNumber = 0;
    constexpr std::uint32_t kCount = 1'000'000;
    ValueIndex<const int> index;
    for (std::uint32_t i = 0; i < kCount; ++i)
        ASSERT_TRUE(enter(index, keyOfPath(i), kNumber));
    for (std::uint32_t i = 0; i < kCount; ++i)
        ASSERT_FALSE(enter(index, keyOfPath(i), kNumber));
}

TEST(ValueIndex, FindingAddsNothing)
{
    static const int kNumber = 0;
    ValueIndex<const int> index;
    zorvan::clearAllocationFailure();
    for (const std::uint32_t key : {0U, 1U, 0xFFFFFFFFU})
        EXPECT_EQ(index.find(key), nullptr);
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
    EXPECT_TRUE(enter(index, 1, kNumber));
    EXPECT_EQ(index.find(1), &kNumber);
    for (const std::uint32_t key : {0U, 2U, 0xFFFFFFFFU, keyOfPath(0)})
        EXPECT_EQ(index.find(key), nullptr);
    std::uint32_t count = 0;
    index.forEach([&](const int*) { ++count; });
    EXPECT_EQ(count, 1U);
}

TEST(ValueIndex, FindsBehindTheLongestRowOfBranches)
{
    static const int kNumbers[26] = {};
    ValueIndex<const int> index;
    std::vector<std::uint32_t> keys;
    for (std::uint32_t bit = 1U << 24; bit != 0; bit >>= 1)
        keys.push_back(keyOfPath(0xFE000000U | (0x01FFFFFFU & ~(bit - 1))));
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(index.find(keys[i]), nullptr);
        EXPECT_TRUE(enter(index, keys[i], kNumbers[i]));
    }
    for (std::size_t i = 0; i < keys.size(); ++i)
        EXPECT_EQ(index.find(keys[i]), &kNumbers[i]);
    EXPECT_EQ(index.find(keyOfPath(0xFE000000U)), nullptr);
}

TEST(ValueIndex, FailedAdditionLeavesTheIndexUnharmed)
{
    static const int kNumbers[64] = {};
    ValueIndex<const int> index;
    std::uint32_t failures = 0;
    for (std::uint32_t key = 0; key < 64; ++key) {
        failures += testing_support::failEachAllocation(
            [&] { EXPECT_TRUE(enter(index, key, kNumbers[key])); },
            [&] {
                std::uint32_t count = 0;
                index.forEach([&](const int*) { ++count; });
                EXPECT_EQ(count, key);
            });
    }
    EXPECT_GT(failures, 2U);
    for (std::uint32_t key = 0; key < 64; ++key)
        EXPECT_FALSE(enter(index, key, kNumbers[key]));
}

TEST(ValueIndex, NullIsAnAnswer)
{
    ValueIndex<const int> index;
    bool added = false;
    EXPECT_EQ(index.findOrAdd(5, added), nullptr);
    EXPECT_TRUE(added);
    EXPECT_EQ(index.findOrAdd(5, added), nullptr);
    EXPECT_FALSE(added);
    EXPECT_EQ(index.find(5), nullptr);
}
