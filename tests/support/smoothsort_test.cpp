#include "support/smoothsort.h"

#include "support/object.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

namespace {

std::uint64_t comparisons = 0;

class Number : public zorvan::Comparable {
public:
    explicit Number(int number)
        : value(number)
    {
    }

    std::int32_t compareTo(const zorvan::Comparable& other) const override
    {
        ++comparisons;
        const int otherValue = static_cast<const Number&>(other).value;
        return value < otherValue ? -1 : value > otherValue ? 1 : 0;
    }

    int value;
};

/// Sorts the numbers and checks that nothing else came out than went in.
void expectSorted(const std::vector<int>& values)
{
    std::vector<Number> numbers(values.begin(), values.end());
    std::vector<const zorvan::Comparable*> items;
    for (const Number& number : numbers)
        items.push_back(&number);
    std::vector<const zorvan::Comparable*> before = items;
    comparisons = 0;
    zorvan::Smoothsort(items.data(), static_cast<std::int32_t>(items.size()));
    const std::uint64_t spent = comparisons;
    for (std::size_t i = 1; i < items.size(); ++i)
        ASSERT_LE(items[i - 1]->compareTo(*items[i]), 0) << i << " of " << items.size();
    comparisons = spent;
    std::sort(before.begin(), before.end());
    std::sort(items.begin(), items.end());
    ASSERT_EQ(items, before);
}

std::vector<int> shuffled(std::size_t count, int range)
{
    std::uint32_t state = 7;
    std::vector<int> values;
    while (values.size() < count) {
        state = state * 1664525 + 1013904223;
        values.push_back(static_cast<int>(state >> 8) % range);
    }
    return values;
}

} // namespace

TEST(Smoothsort, NothingToSort)
{
    zorvan::Smoothsort(nullptr, 0);
    const Number number(5);
    const zorvan::Comparable* item = &number;
    zorvan::Smoothsort(&item, 1);
    EXPECT_EQ(item, &number);
    zorvan::Smoothsort(&item, -1);
    EXPECT_EQ(item, &number);
}

TEST(Smoothsort, EveryOrderOfAFew)
{
    for (int count = 1; count <= 8; ++count) {
        std::vector<int> values(static_cast<std::size_t>(count));
        std::iota(values.begin(), values.end(), 0);
        do
            expectSorted(values);
        while (std::next_permutation(values.begin(), values.end()));
    }
}

TEST(Smoothsort, ManyCountsAndKinds)
{
    for (std::size_t count = 1; count <= 300; ++count) {
        expectSorted(shuffled(count, 1'000'000));
        expectSorted(shuffled(count, 3));
        std::vector<int> falling(count);
        std::iota(falling.rbegin(), falling.rend(), 0);
        expectSorted(falling);
    }
}

TEST(Smoothsort, ComparisonsStayWithinBounds)
{
    constexpr std::size_t kCount = 100'000;
    expectSorted(shuffled(kCount, 1'000'000'000));
    EXPECT_LE(comparisons, 5'000'000u);
    std::vector<int> values(kCount);
    std::iota(values.begin(), values.end(), 0);
    expectSorted(values);
    EXPECT_LE(comparisons, 500'000u) << "what is in order already takes linear time";
    std::reverse(values.begin(), values.end());
    expectSorted(values);
    EXPECT_LE(comparisons, 5'000'000u);
}
