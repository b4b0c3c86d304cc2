#include "tree/kind_sequence.h"

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <random>
#include <vector>

namespace {

constexpr std::uint32_t kKinds = 5;

struct Item {
    int value;
};

using Sequence = KindSequence<Item, kKinds>;
using Number = Sequence::Number;

struct ModelEntry {
    Number number;
    int value;
    std::uint32_t kind;
};

using Model = std::vector<ModelEntry>;

/// The number of the topmost entry of a kind, found by a walk.
Number topmostIn(const Model& model, std::uint32_t kind)
{
    for (auto entry = model.rbegin(); entry != model.rend(); ++entry) {
        if (entry->kind == kind)
            return entry->number;
    }
    return 0;
}

void expectTopmost(const Sequence& sequence, const Model& model)
{
    for (std::uint32_t kind = 0; kind < kKinds; ++kind)
        ASSERT_EQ(sequence.topmost(kind), topmostIn(model, kind)) << kind;
}

void expectEqual(const Sequence& sequence, const Model& model)
{
    ASSERT_EQ(sequence.getCount(), static_cast<std::int32_t>(model.size()));
    ASSERT_EQ(sequence.first(), model.empty() ? 0 : model.front().number);
    ASSERT_EQ(sequence.last(), model.empty() ? 0 : model.back().number);
    Number below = 0;
    Sequence::Rank rank = 0;
    for (const ModelEntry& entry : model) {
        ASSERT_TRUE(sequence.isNumber(entry.number));
        ASSERT_EQ(sequence.itemAt(entry.number).value, entry.value);
        ASSERT_EQ(sequence.kindAt(entry.number), entry.kind);
        ASSERT_EQ(sequence.below(entry.number), below);
        ASSERT_GT(sequence.rankAt(entry.number), rank);
        if (below != 0) {
            ASSERT_EQ(sequence.above(below), entry.number);
        }
        below = entry.number;
        rank = sequence.rankAt(entry.number);
    }
    if (below != 0) {
        ASSERT_EQ(sequence.above(below), 0U);
    }
    expectTopmost(sequence, model);
}

TEST(KindSequence, Empty)
{
    Sequence sequence;
    expectEqual(sequence, {});
    EXPECT_FALSE(sequence.isNumber(0));
    EXPECT_FALSE(sequence.isNumber(1));
    sequence.clear();
    expectEqual(sequence, {});
}

TEST(KindSequence, ClearAndFillAgain)
{
    Sequence sequence;
    const Number first = sequence.push({1}, 1);
    sequence.push({2}, 2);
    sequence.clear();
    expectEqual(sequence, {});
    EXPECT_FALSE(sequence.isNumber(first));
    Model model;
    model.push_back({sequence.push({3}, 3), 3, 3});
    expectEqual(sequence, model);
}

TEST(KindSequence, AgainstANaiveModel)
{
    std::mt19937 random(4'711);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    // The share of pushes and removals: sequences that grow, stay small, and shrink.
    for (const std::size_t most : {std::size_t{4}, std::size_t{30}, std::size_t{200}}) {
        Sequence sequence;
        Model model;
        for (int step = 0; step < 5'000; ++step) {
            const std::size_t what = below(4);
            const auto kind = static_cast<std::uint32_t>(below(kKinds));
            if (model.size() >= most || (what == 0 && !model.empty())) {
                if (below(4) == 0) {
                    sequence.removeLast();
                    model.pop_back();
                    continue;
                }
                const auto place = model.begin()
                    + static_cast<std::ptrdiff_t>(
                        below(2) == 0 ? model.size() - 1 : below(model.size()));
                sequence.remove(place->number);
                model.erase(place);
            } else if (what == 1 && !model.empty()) {
                const auto place = model.begin() + static_cast<std::ptrdiff_t>(below(model.size()));
                const Number number = sequence.insertAbove(place->number, {step}, kind);
                model.insert(place + 1, {number, step, kind});
            } else {
                model.push_back({sequence.push({step}, kind), step, kind});
            }
            expectEqual(sequence, model);
        }
    }
}

/// Inserts above one entry again and again: no room is ever left there.
TEST(KindSequence, ManyInsertionsInOnePlace)
{
    constexpr int kInsertions = 60'000;
    Sequence sequence;
    const Number bottom = sequence.push({0}, 0);
    const Number top = sequence.push({1}, 1);
    std::vector<Number> inserted;
    for (int i = 0; i < kInsertions; ++i)
        inserted.push_back(sequence.insertAbove(bottom, {i}, 2));
    EXPECT_EQ(sequence.topmost(2), inserted.front());
    EXPECT_EQ(sequence.topmost(1), top);
    Model model = {{bottom, 0, 0}};
    for (int i = kInsertions; i-- > 0;)
        model.push_back({inserted[static_cast<std::size_t>(i)], i, 2});
    model.push_back({top, 1, 1});
    expectEqual(sequence, model);
}

/// Room has to be made at the very bottom, too, where ranks begin.
TEST(KindSequence, RanksRightAboveTheBottomStayApart)
{
    constexpr int kInsertions = 60'000;
    Sequence sequence;
    const Number bottom = sequence.push({0}, 0);
    const Number top = sequence.push({1}, 0);
    for (int i = 0; i < kInsertions; ++i) {
        const Number inserted = sequence.insertAbove(bottom, {i}, 0);
        ASSERT_LT(sequence.rankAt(bottom), sequence.rankAt(inserted)) << i;
        ASSERT_LT(sequence.rankAt(inserted), sequence.rankAt(sequence.above(inserted))) << i;
        ASSERT_EQ(sequence.topmost(0), top) << i;
    }
    while (sequence.getCount() > 0) {
        ASSERT_EQ(sequence.topmost(0), sequence.last());
        sequence.removeLast();
    }
}

/// The same upwards: each new entry above the one before.
TEST(KindSequence, ManyInsertionsUpwards)
{
    constexpr int kInsertions = 60'000;
    Sequence sequence;
    Model model = {{sequence.push({0}, 0), 0, 0}};
    const Number top = sequence.push({1}, 1);
    for (int i = 0; i < kInsertions; ++i)
        model.push_back({sequence.insertAbove(model.back().number, {i}, 2), i, 2});
    model.push_back({top, 1, 1});
    expectEqual(sequence, model);
}

TEST(KindSequence, InsertionsAtManyPlacesThenRemovalFromTheTop)
{
    constexpr int kEntries = 20'000;
    Sequence sequence;
    std::vector<Number> pushed;
    for (int i = 0; i < kEntries; ++i)
        pushed.push_back(sequence.push({i}, 0));
    std::mt19937 random(99);
    for (int i = 0; i < kEntries; ++i)
        sequence.insertAbove(pushed[random() % pushed.size()], {i}, 1);
    Sequence::Rank rank = sequence.rankAt(sequence.last()) + 1;
    while (sequence.getCount() > 0) {
        const Number last = sequence.last();
        const std::uint32_t kind = sequence.kindAt(last);
        ASSERT_EQ(sequence.topmost(kind), last);
        ASSERT_LT(sequence.rankAt(last), rank);
        rank = sequence.rankAt(last);
        sequence.remove(last);
    }
}

TEST(KindSequence, FailedGrowthChangesNothing)
{
    Sequence sequence;
    Model model;
    zorvan::failNthAllocation(1);
    EXPECT_THROW(sequence.push({0}, 0), std::bad_alloc);
    zorvan::clearAllocationFailure();
    expectEqual(sequence, model);
    // Until the storage is full.
    for (int i = 0; i < 63; ++i)
        model.push_back({sequence.push({i}, 1), i, 1});
    zorvan::failAllocationsFrom(1);
    EXPECT_THROW(sequence.push({0}, 0), std::bad_alloc);
    EXPECT_THROW(sequence.insertAbove(model[3].number, {0}, 0), std::bad_alloc);
    zorvan::clearAllocationFailure();
    expectEqual(sequence, model);
    model.push_back({sequence.push({5}, 2), 5, 2});
    expectEqual(sequence, model);
}

} // namespace
