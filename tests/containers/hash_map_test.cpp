#include "containers/hash_map.h"

#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <optional>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

using testing_support::expectFailure;
using zorvan::Array;
using zorvan::HashMap;

namespace {

constexpr const char* kNotFound = "item could not be found";
constexpr std::uint32_t kNone = 0xFFFFFFFF;

/// The rules of the map, step by step and without regard to speed or failure.
class Model {
public:
    Model(std::uint32_t hint, std::uint32_t overflowSlots)
        : overflow(overflowSlots)
    {
        std::size_t capacity = 1;
        while (capacity < hint)
            capacity *= 2;
        table.resize(std::min<std::size_t>(std::max<std::size_t>(capacity, 16), 65536));
    }

    void put(std::uint64_t key, int value)
    {
        Slot* slot = &table[bucketOf(key)];
        if (!slot->used) {
            *slot = {key, value, kNone, true};
            ++count;
        } else {
            while (slot->key != key && slot->next != kNone)
                slot = &overflow[slot->next];
            if (slot->key == key) {
                slot->value = value;
            } else {
                const bool inTable = slot >= table.data() && slot < table.data() + table.size();
                const auto at
                    = static_cast<std::size_t>(slot - (inTable ? table : overflow).data());
                const std::uint32_t taken = takeOverflow();
                overflow[taken] = {key, value, kNone, true};
                (inTable ? table : overflow)[at].next = taken;
                ++count;
            }
        }
        if (static_cast<float>(count) / static_cast<float>(table.size()) >= loadFactor)
            rehash();
    }

    std::optional<int> remove(std::uint64_t key)
    {
        Slot* before = nullptr;
        Slot* slot = &table[bucketOf(key)];
        if (!slot->used)
            return std::nullopt;
        while (slot->key != key) {
            if (slot->next == kNone)
                return std::nullopt;
            before = slot;
            slot = &overflow[slot->next];
        }
        const int value = slot->value;
        if (slot->next == kNone) {
            slot->used = false;
            if (before != nullptr)
                before->next = kNone;
        } else {
            Slot* last = slot;
            while (last->next != kNone) {
                before = last;
                last = &overflow[last->next];
            }
            slot->key = last->key;
            slot->value = last->value;
            before->next = kNone;
            last->used = false;
        }
        --count;
        return value;
    }

    void clear()
    {
        for (Slot& slot : table)
            slot = Slot();
        for (Slot& slot : overflow)
            slot = Slot();
        count = 0;
        freeHint = kNone;
    }

    std::vector<std::pair<std::uint64_t, int>> entries() const
    {
        std::vector<std::pair<std::uint64_t, int>> all;
        for (const Slot& head : table) {
            if (!head.used)
                continue;
            all.emplace_back(head.key, head.value);
            for (std::uint32_t i = head.next; i != kNone; i = overflow[i].next)
                all.emplace_back(overflow[i].key, overflow[i].value);
        }
        return all;
    }

    std::uint32_t capacity() const { return static_cast<std::uint32_t>(table.size()); }
    std::uint32_t overflowCapacity() const { return static_cast<std::uint32_t>(overflow.size()); }

    std::uint32_t count = 0;
    std::uint32_t freeHint = kNone;
    float loadFactor = 0.5F;

private:
    struct Slot {
        std::uint64_t key = 0;
        int value = 0;
        std::uint32_t next = kNone;
        bool used = false;
    };

    std::size_t bucketOf(std::uint64_t wholeKey) const
    {
        const std::uint64_t k = wholeKey % 0x100000000;
        const std::uint64_t a = (k * 1021 % 0x100000000) / 1024;
        const std::uint64_t b = k * 31 % 0x100000000;
        return (((a | b) / 1024) ^ k) % table.size();
    }

    std::uint32_t takeOverflow()
    {
        std::uint32_t taken = kNone;
        if (freeHint != kNone) {
            for (std::uint32_t i = freeHint; i < overflow.size() && taken == kNone; ++i)
                taken = overflow[i].used ? kNone : i;
        }
        for (std::uint32_t i = 0; i < overflow.size() && taken == kNone; ++i)
            taken = overflow[i].used ? kNone : i;
        if (taken == kNone) {
            taken = overflowCapacity();
            overflow.resize(overflow.size() * 2);
        }
        freeHint = taken;
        return taken;
    }

    void rehash()
    {
        const auto old = entries();
        table.assign(table.size() * 2, Slot());
        overflow.assign(overflow.size(), Slot());
        freeHint = kNone;
        count = 0;
        for (const auto& [key, value] : old)
            put(key, value);
    }

    std::vector<Slot> table;
    std::vector<Slot> overflow;
};

template <typename K> using Entries = std::vector<std::pair<K, int>>;

template <typename K> Entries<std::uint64_t> entriesOf(const HashMap<K, int>& map)
{
    Entries<std::uint64_t> all;
    map.forEach(
        [&](K key, int value) { all.emplace_back(static_cast<std::uint64_t>(key), value); });
    return all;
}

/// Whether the map holds what the model holds, in the same order and in the same arrays.
template <typename K>
testing::AssertionResult isLike(const HashMap<K, int>& map, const Model& model)
{
    if (map.getCount() != model.count)
        return testing::AssertionFailure() << "count " << map.getCount() << ", not " << model.count;
    if (map.getCapacity() != model.capacity())
        return testing::AssertionFailure() << "capacity " << map.getCapacity();
    if (map.getOverflowCapacity() != model.overflowCapacity())
        return testing::AssertionFailure() << "overflow " << map.getOverflowCapacity();
    if (map.getFreeHint() != model.freeHint)
        return testing::AssertionFailure() << "free hint " << map.getFreeHint();
    if (entriesOf(map) != model.entries())
        return testing::AssertionFailure() << "entries differ";
    return testing::AssertionSuccess();
}

enum Letter : std::uint32_t { LETTER_A = 1, LETTER_B = 2 };

template <typename K> K keyFrom(std::mt19937_64& random, int spread)
{
    std::uint64_t number = random();
    switch (spread) {
    case 0: // ids in close order
        number %= 400;
        break;
    case 1: // keys that meet in few buckets
        number = number % 100 * 4096;
        break;
    case 2: // 64-bit keys that differ in the high half alone
        number = (number % 50 << 32) | number % 4;
        break;
    default:
        break;
    }
    return static_cast<K>(number);
}

/// Where a map's storage comes from, which makes no difference to it.
struct StorageChoice {
    zorvan::Arena* arena = nullptr;
    std::uint32_t reservedKeys = 0;
    bool startsAnew = false; // in place of being cleared
};

template <typename K>
void runAgainstModel(
    std::uint32_t hint, std::uint32_t overflowSlots, int spread, const StorageChoice& storage = {})
{
    std::mt19937_64 random(hint * 31 + overflowSlots * 7 + static_cast<std::uint32_t>(spread));
    HashMap<K, int> map(hint, overflowSlots, storage.arena);
    map.reserveStorage(storage.reservedKeys);
    Model model(hint, overflowSlots);
    const std::uint32_t firstCapacity = map.getCapacity();
    std::vector<K> keys;
    for (int i = 0; i < 1'500; ++i) {
        const std::uint64_t dice = random() % 100;
        if (dice < (i % 500 < 300 ? 60U : 25U)) {
            const K key = keyFrom<K>(random, spread);
            if (dice % 2 == 0 && !map.contains(key))
                map.putNew(key, i);
            else
                map.put(key, i);
            model.put(static_cast<std::uint64_t>(key), i);
            keys.push_back(key);
        } else if (!keys.empty() && dice < 99) {
            const K key = keys[random() % keys.size()];
            int value = -1;
            const bool removed = map.tryRemove(key, value);
            const std::optional<int> expected = model.remove(static_cast<std::uint64_t>(key));
            ASSERT_EQ(removed, expected.has_value());
            ASSERT_EQ(value, expected.value_or(-1));
        } else if (random() % 5 == 0 && storage.startsAnew) {
            map.startAnew(firstCapacity, overflowSlots);
            model = Model(hint, overflowSlots);
        } else if (random() % 5 == 0) {
            map.clear();
            model.clear();
        }
        ASSERT_TRUE(isLike(map, model)) << i;
    }
    for (const auto& [key, value] : model.entries()) {
        ASSERT_TRUE(map.contains(static_cast<K>(key)));
        ASSERT_EQ(map.get(static_cast<K>(key)), value);
        ASSERT_EQ(*map.find(static_cast<K>(key)), value);
    }
}

} // namespace

TEST(HashMap, FailureTexts)
{
    HashMap<std::uint32_t, int> map(16, 16);
    expectFailure(25, kNotFound, [&] { map.get(1); });
    expectFailure(25, kNotFound, [&] { map.remove(1); });
    map.put(1, 10);
    expectFailure(25, kNotFound, [&] { map.get(2); });
    expectFailure(25, kNotFound, [&] { map.remove(2); });
    // A key that meets the one stored, so that the chain is walked.
    expectFailure(25, kNotFound, [&] { map.get(17); });
    expectFailure(25, kNotFound, [&] { map.remove(17); });
    EXPECT_EQ(map.getCount(), 1U);
    EXPECT_EQ(map.remove(1), 10);
    expectFailure(25, kNotFound, [&] { map.get(1); });
}

TEST(HashMap, CapacityFromTheHint)
{
    struct Row {
        std::uint32_t hint, capacity;
    };
    const Row rows[] = {{0, 16}, {1, 16}, {16, 16}, {17, 32}, {128, 128}, {129, 256},
        {65535, 65536}, {65536, 65536}, {65537, 65536}, {100000, 65536}, {kNone, 65536}};
    for (const Row& row : rows) {
        const HashMap<std::uint32_t, int> map(row.hint, 3);
        EXPECT_EQ(map.getCapacity(), row.capacity) << row.hint;
        EXPECT_EQ(map.getOverflowCapacity(), 3U);
        EXPECT_EQ(map.getFreeHint(), kNone);
    }
}

TEST(HashMap, GrowsBeyondTheFirstLimit)
{
    HashMap<std::uint32_t, int> map(100000, 16);
    for (std::uint32_t key = 0; key < 32768; ++key) {
        EXPECT_EQ(map.getCapacity(), 65536U);
        map.put(key, 1);
    }
    EXPECT_EQ(map.getCapacity(), 131072U);
    EXPECT_EQ(map.getCount(), 32768U);
}

TEST(HashMap, EighthKeyOfSixteenGrows)
{
    HashMap<std::uint32_t, int> map(16, 16);
    for (std::uint32_t key = 1; key <= 7; ++key)
        map.put(key, 0);
    EXPECT_EQ(map.getCapacity(), 16U);
    map.put(7, 1);
    EXPECT_EQ(map.getCapacity(), 16U);
    map.put(8, 0);
    EXPECT_EQ(map.getCapacity(), 32U);
    EXPECT_EQ(map.getOverflowCapacity(), 16U);
}

TEST(HashMap, ReplacementAtTheThresholdGrows)
{
    struct TestMap : HashMap<std::uint32_t, int> {
        using HashMap::HashMap;
        using HashMap::setLoadFactor;
    };
    TestMap map(16, 2);
    Model model(16, 2);
    for (const std::uint32_t key : {1U, 17U, 33U, 49U, 5U}) {
        map.put(key, static_cast<int>(key));
        model.put(key, static_cast<int>(key));
    }
    map.setLoadFactor(0.25F);
    model.loadFactor = 0.25F;
    map.put(33, 99);
    model.put(33, 99);
    EXPECT_EQ(map.getCapacity(), 32U);
    EXPECT_TRUE(isLike(map, model));
    EXPECT_EQ(map.get(33), 99);
}

TEST(HashMap, GrowthWithinGrowth)
{
    struct TestMap : HashMap<std::uint32_t, int> {
        using HashMap::HashMap;
        using HashMap::setLoadFactor;
    };
    TestMap map(16, 1);
    Model model(16, 1);
    for (std::uint32_t key = 0; key < 7; ++key) {
        map.put(key * 16, 1);
        model.put(key * 16, 1);
    }
    map.setLoadFactor(0.05F);
    model.loadFactor = 0.05F;
    map.put(1000, 2);
    model.put(1000, 2);
    EXPECT_GT(map.getCapacity(), 64U);
    EXPECT_TRUE(isLike(map, model));
}

TEST(HashMap, RemovedHeadIsReplacedByTheChainsLast)
{
    HashMap<std::uint32_t, int> map(16, 16);
    for (const std::uint32_t key : {1U, 17U, 33U})
        map.put(key, static_cast<int>(key));
    ASSERT_EQ(entriesOf(map), (Entries<std::uint64_t>{{1, 1}, {17, 17}, {33, 33}}));
    EXPECT_EQ(map.remove(1), 1);
    EXPECT_EQ(entriesOf(map), (Entries<std::uint64_t>{{33, 33}, {17, 17}}));
    map.put(1, 2);
    EXPECT_EQ(entriesOf(map), (Entries<std::uint64_t>{{33, 33}, {17, 17}, {1, 2}}));
}

TEST(HashMap, OrderOfPropertyNumbersWorkedOutByHand)
{
    // For numbers k below 256 the hash is k XOR the whole part of 31 k / 1024, for (1021 k) / 1024
    // has no bit at 10 or above. The slot is that in 16 slots, and in 32:
    //   66: 67 -> 3, 3      194: 199 -> 7, 7     116: 119 -> 7, 23    120: 123 -> 11, 27
    //   174: 171 -> 11, 11  170: 175 -> 15, 15   15: 15 -> 15, 15     98: 96 -> 0, 0
    HashMap<std::uint32_t, int> map(16, 16);
    for (const std::uint32_t key : {66U, 194U, 116U, 120U, 174U, 170U, 15U})
        map.put(key, 0);
    std::uint32_t keys[8] = {};
    ASSERT_EQ(map.keys(keys, 8), 7);
    EXPECT_EQ(std::vector<std::uint32_t>(keys, keys + 7),
        (std::vector<std::uint32_t>{66, 194, 116, 120, 174, 170, 15}));
    // The eighth key grows the map, which takes the chains of 7 and of 11 apart.
    map.put(98, 0);
    ASSERT_EQ(map.getCapacity(), 32U);
    ASSERT_EQ(map.keys(keys, 8), 8);
    EXPECT_EQ(std::vector<std::uint32_t>(keys, keys + 8),
        (std::vector<std::uint32_t>{98, 66, 194, 174, 170, 15, 116, 120}));
    map.remove(170);
    map.put(170, 0);
    ASSERT_EQ(map.keys(keys, 8), 8);
    EXPECT_EQ(std::vector<std::uint32_t>(keys, keys + 8),
        (std::vector<std::uint32_t>{98, 66, 194, 174, 15, 170, 116, 120}));
}

TEST(HashMap, OverflowDoublesWhenExhausted)
{
    HashMap<std::uint32_t, int> map(16, 1);
    for (const std::uint32_t key : {1U, 17U})
        map.put(key, 0);
    EXPECT_EQ(map.getOverflowCapacity(), 1U);
    EXPECT_EQ(map.getFreeHint(), 0U);
    map.put(33, 0);
    EXPECT_EQ(map.getOverflowCapacity(), 2U);
    EXPECT_EQ(map.getFreeHint(), 1U);
    map.remove(17);
    EXPECT_EQ(map.getFreeHint(), 1U);
    map.clear();
    EXPECT_EQ(map.getFreeHint(), kNone);
    EXPECT_EQ(map.getOverflowCapacity(), 2U);
}

TEST(HashMap, NoOverflowSlotsAtFirst)
{
    HashMap<std::uint32_t, int> map(16, 0);
    for (const std::uint32_t key : {1U, 17U, 33U})
        map.put(key, static_cast<int>(key));
    EXPECT_EQ(map.getOverflowCapacity(), 2U);
    for (const std::uint32_t key : {1U, 17U, 33U})
        EXPECT_EQ(map.get(key), static_cast<int>(key));
}

TEST(HashMap, KeysAndValuesFillWhatThereIsRoomFor)
{
    HashMap<std::uint32_t, int> map(16, 16);
    for (std::uint32_t key = 0; key < 5; ++key)
        map.put(key, static_cast<int>(key) * 10);
    const auto all = entriesOf(map);
    for (const int room : {0, 1, 3, 5, 9}) {
        const int expected = std::min(room, 5);
        std::uint32_t keys[9] = {};
        EXPECT_EQ(map.keys(keys, room), expected);
        Array<int> values(room);
        EXPECT_EQ(map.values(values), expected);
        for (int i = 0; i < expected; ++i) {
            EXPECT_EQ(keys[i], all[static_cast<std::size_t>(i)].first);
            EXPECT_EQ(values[i], all[static_cast<std::size_t>(i)].second);
        }
    }
}

TEST(HashMap, CursorReachesValuesInTheirPlace)
{
    HashMap<Letter, int> map(16, 16);
    EXPECT_TRUE(map.first().isAtEnd());
    map.put(LETTER_A, 1);
    map.put(LETTER_B, 2);
    for (auto cursor = map.first(); !cursor.isAtEnd(); cursor.advance())
        cursor.value() += 10;
    EXPECT_EQ(map.get(LETTER_A), 11);
    EXPECT_EQ(map.get(LETTER_B), 12);
    *map.find(LETTER_A) = 5;
    EXPECT_EQ(map.get(LETTER_A), 5);
    map.clear();
    EXPECT_TRUE(map.first().isAtEnd());
    EXPECT_EQ(map.find(LETTER_A), nullptr);
}

TEST(HashMap, FirstPutMakesOneBlockAndClearKeepsIt)
{
    zorvan::clearAllocationFailure();
    HashMap<std::uint32_t, void*> map(16, 16);
    EXPECT_FALSE(map.contains(3));
    map.clear();
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
    for (std::uint32_t key = 0; key < 7; ++key)
        map.put(key * 16, nullptr);
    EXPECT_EQ(zorvan::allocationsSeen(), 1U);
    map.clear();
    map.put(1, nullptr);
    EXPECT_EQ(zorvan::allocationsSeen(), 1U);
}

TEST(HashMap, LongKeysAreComparedWhole)
{
    HashMap<std::uint64_t, int> map(16, 16);
    map.put(5, 1);
    map.put(0x100000005, 2);
    map.put(0x200000005, 3);
    EXPECT_EQ(map.get(5), 1);
    EXPECT_EQ(map.get(0x100000005), 2);
    EXPECT_EQ(map.get(0x200000005), 3);
    EXPECT_FALSE(map.contains(0x300000005));
}

TEST(HashMap, MatchesANaiveModel)
{
    for (const std::uint32_t hint : {1U, 16U, 40U, 128U}) {
        for (const std::uint32_t overflowSlots : {1U, 3U, 16U, 128U}) {
            for (int spread = 0; spread < 4; ++spread) {
                runAgainstModel<std::uint32_t>(hint, overflowSlots, spread);
                runAgainstModel<std::uint64_t>(hint, overflowSlots, spread);
            }
        }
    }
    runAgainstModel<Letter>(16, 16, 0);
}

TEST(HashMap, WhereTheStorageComesFromMakesNoDifference)
{
    zorvan::Arena arena;
    for (const std::uint32_t overflowSlots : {1U, 16U}) {
        for (int spread = 0; spread < 4; ++spread) {
            for (const std::uint32_t reservedKeys : {0U, 8U, 40U, 100'000U}) {
                for (const bool startsAnew : {false, true}) {
                    runAgainstModel<std::uint32_t>(
                        16, overflowSlots, spread, {nullptr, reservedKeys, startsAnew});
                    runAgainstModel<std::uint32_t>(
                        16, overflowSlots, spread, {&arena, reservedKeys, startsAnew});
                }
            }
        }
    }
}

TEST(HashMap, ReservedStorageIsTakenAtOnce)
{
    zorvan::clearAllocationFailure();
    HashMap<std::uint32_t, int> map(16, 16);
    map.reserveStorage(31);
    EXPECT_EQ(map.getCapacity(), 16U);
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
    for (std::uint32_t key = 0; key < 31; ++key)
        map.put(key, 0);
    EXPECT_EQ(map.getCapacity(), 64U);
    EXPECT_EQ(zorvan::allocationsSeen(), 1U);
    map.startAnew(16, 16);
    EXPECT_EQ(map.getCapacity(), 16U);
    for (std::uint32_t key = 0; key < 31; ++key)
        map.put(key, 0);
    EXPECT_EQ(zorvan::allocationsSeen(), 1U);
    map.put(31, 0);
    EXPECT_EQ(zorvan::allocationsSeen(), 2U);
    map.startAnew(4096, 64);
    map.put(1, 1);
    EXPECT_EQ(map.getCapacity(), 4096U);
    EXPECT_EQ(map.get(1), 1);
}

TEST(HashMap, ExactCopyGoesOnAlike)
{
    std::mt19937_64 random(5);
    HashMap<std::uint32_t, int> map(16, 2);
    Model model(16, 2);
    const auto change = [&](HashMap<std::uint32_t, int>& changed) {
        for (int i = 0; i < 60; ++i) {
            const auto key = static_cast<std::uint32_t>(random() % 40 * 16);
            int ignored = 0;
            if (random() % 3 == 0) {
                changed.tryRemove(key, ignored);
                model.remove(key);
            } else {
                changed.put(key, i);
                model.put(key, i);
            }
        }
    };
    change(map);
    HashMap<std::uint32_t, int> copy(64, 64);
    copy.put(3, 3);
    copy.copyExactly(map);
    EXPECT_TRUE(isLike(copy, model));
    EXPECT_TRUE(isLike(map, model));
    change(copy);
    EXPECT_TRUE(isLike(copy, model));
    copy.copyExactly(copy);
    EXPECT_TRUE(isLike(copy, model));
    const HashMap<std::uint32_t, int> empty(32, 5);
    copy.copyExactly(empty);
    EXPECT_EQ(copy.getCount(), 0U);
    EXPECT_EQ(copy.getCapacity(), 32U);
    EXPECT_EQ(copy.getOverflowCapacity(), 5U);
    copy.put(1, 1);
    copy.swapEntries(map);
    EXPECT_EQ(map.getCount(), 1U);
}

TEST(HashMap, FailedPutChangesNothing)
{
    HashMap<std::uint32_t, int> map(16, 1);
    Model model(16, 1);
    std::uint32_t failures = 0;
    for (std::uint32_t i = 0; i < 300; ++i) {
        const std::uint32_t key = i * 16 % 1024;
        failures += testing_support::failEachAllocation(
            [&] { map.put(key, static_cast<int>(i)); }, [&] { EXPECT_TRUE(isLike(map, model)); });
        model.put(key, static_cast<int>(i));
        ASSERT_TRUE(isLike(map, model));
    }
    // The first block, that of each growth, and those with more overflow slots on the way.
    EXPECT_GT(failures, 6U);
    HashMap<std::uint32_t, int> copy(16, 16);
    copy.put(1, 1);
    EXPECT_EQ(testing_support::failEachAllocation(
                  [&] { copy.copyExactly(map); }, [&] { EXPECT_EQ(copy.getCount(), 1U); }),
        1U);
}

TEST(HashMap, BeyondTheLimitIsAFailedAllocation)
{
    HashMap<std::uint32_t, int> map(16, 0x80000000);
    EXPECT_THROW(map.put(1, 1), std::bad_alloc);
    EXPECT_EQ(map.getCount(), 0U);
    EXPECT_FALSE(map.contains(1));
    EXPECT_EQ(map.getOverflowCapacity(), 0x80000000);
}

TEST(HashMap, FindTellsWhetherAKeyIsTheLastOfItsChain)
{
    HashMap<std::uint32_t, std::uint32_t> map(16, 16);
    // Few enough to share sixteen buckets; some of them chain.
    for (std::uint32_t key = 0; key < 112; key += 16)
        map.put(key, key + 1);
    bool isLast = false;
    EXPECT_EQ(map.find(999, isLast), nullptr);
    std::uint32_t chained = 0;
    for (auto cursor = map.first(); !cursor.isAtEnd(); cursor.advance()) {
        const std::uint32_t* const value = map.find(cursor.key(), isLast);
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(*value, cursor.key() + 1);
        EXPECT_EQ(isLast, map.isLastOfChain(cursor.key()));
        EXPECT_EQ(isLast, cursor.isLastOfChain());
        chained += isLast ? 0 : 1;
    }
    EXPECT_GT(chained, 0U);
}

// A map that has been emptied must go on as a new one, chained keys and lone ones alike.
TEST(HashMap, AClearedMapGoesOnAsANewOne)
{
    HashMap<std::uint32_t, std::uint32_t> used(16, 16);
    for (std::uint32_t step = 1; step <= 64; ++step) {
        HashMap<std::uint32_t, std::uint32_t> fresh(16, 16);
        for (std::uint32_t i = 0; i < 7; ++i) {
            used.put(i * step, i);
            fresh.put(i * step, i);
        }
        std::vector<std::uint32_t> usedKeys;
        std::vector<std::uint32_t> freshKeys;
        used.forEach([&](std::uint32_t key, std::uint32_t) { usedKeys.push_back(key); });
        fresh.forEach([&](std::uint32_t key, std::uint32_t) { freshKeys.push_back(key); });
        EXPECT_EQ(usedKeys, freshKeys) << step;
        EXPECT_EQ(used.getFreeHint(), fresh.getFreeHint()) << step;
        used.clear();
        EXPECT_TRUE(used.isEmpty());
        EXPECT_EQ(used.getFreeHint(), 0xFFFFFFFF);
        EXPECT_TRUE(used.first().isAtEnd());
        for (std::uint32_t i = 0; i < 7; ++i)
            EXPECT_FALSE(used.contains(i * step));
    }
}

TEST(HashMap, IsAnObject)
{
    static_assert(std::is_base_of_v<zorvan::Object, HashMap<std::uint32_t, int>>);
    zorvan::AbstractObject* map = new HashMap<std::uint32_t, int>(16, 16);
    static_cast<void>(dynamic_cast<HashMap<std::uint32_t, int>*>(map)->getCount());
    delete map;
}
