#include "containers/linked_list.h"

#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <cstring>
#include <list>
#include <random>
#include <type_traits>
#include <vector>

using testing_support::expectFailure;
using zorvan::Iterator;
using zorvan::LinkedList;
using zorvan::LinkedListIterator;
using zorvan::MutableLinkedListIterator;

static_assert(std::is_trivially_copyable_v<LinkedList<int*>>);
static_assert(std::is_trivially_default_constructible_v<LinkedList<int*>>);
static_assert(sizeof(LinkedList<int*>) == 24);

namespace {

constexpr const char* kNextEmpty = "LinkedList.next(): List is empty";
constexpr const char* kNextEnd = "LinkedList.next(): At end of list or list is empty";
constexpr const char* kPreviousEmpty = "LinkedList.prev(): List is empty";
constexpr const char* kPreviousStart = "LinkedList.prev(): At beginning of list or list is empty";

/// A list that is emptied with its test.
struct TestList : LinkedList<int> {
    explicit TestList(const std::vector<int>& values = {})
        : LinkedList<int>()
    {
        for (const int value : values)
            append(value);
    }

    ~TestList() { clear(); }
};

std::vector<int> forward(const LinkedList<int>& list)
{
    std::vector<int> values;
    for (const auto* link = list.head; link != nullptr; link = link->next)
        values.push_back(link->value);
    return values;
}

std::vector<int> backward(const LinkedList<int>& list)
{
    std::vector<int> values;
    for (const auto* link = list.tail; link != nullptr; link = link->prev)
        values.insert(values.begin(), link->value);
    return values;
}

} // namespace

TEST(LinkedList, AllZeroIsEmpty)
{
    LinkedList<int> list;
    std::memset(static_cast<void*>(&list), 0, sizeof list);
    EXPECT_EQ(list.getCount(), 0);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(list.pop(), 0);
    list.push(1);
    EXPECT_EQ(list.pop(), 1);
    EXPECT_EQ(list.head, nullptr);
    EXPECT_EQ(list.tail, nullptr);
    list.clear();
}

TEST(LinkedList, IsAStackFromItsHead)
{
    TestList list;
    for (int i = 1; i <= 3; ++i)
        list.push(i);
    EXPECT_EQ(forward(list), (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(backward(list), (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(list.pop(), 3);
    EXPECT_EQ(list.pop(), 2);
    EXPECT_EQ(list.pop(), 1);
    EXPECT_EQ(list.getCount(), 0);
}

TEST(LinkedList, FailedPushChangesNothing)
{
    TestList list({1, 2});
    EXPECT_EQ(testing_support::failEachAllocation([&] { list.push(0); },
                  [&] {
                      EXPECT_EQ(forward(list), (std::vector<int>{1, 2}));
                  }),
        1U);
    EXPECT_EQ(forward(list), (std::vector<int>{0, 1, 2}));
}

TEST(LinkedList, MatchesANaiveModel)
{
    std::mt19937 random(3);
    TestList list;
    std::list<int> model;
    for (int i = 0; i < 5'000; ++i) {
        auto place = model.begin();
        auto* link = list.head;
        for (std::size_t k = random() % (model.size() + 1); k > 0; --k) {
            ++place;
            link = link->next;
        }
        if (random() % (model.size() > 20 ? 2 : 4) != 0) {
            list.insertBefore(link, i);
            model.insert(place, i);
        } else if (link != nullptr) {
            EXPECT_EQ(list.remove(link), *place);
            model.erase(place);
        }
        const std::vector<int> expected(model.begin(), model.end());
        ASSERT_EQ(forward(list), expected);
        ASSERT_EQ(backward(list), expected);
        ASSERT_EQ(list.getCount(), static_cast<int>(model.size()));
    }
}

TEST(LinkedListIterator, WalksForward)
{
    const TestList list({1, 2, 3});
    LinkedListIterator<int> iterator(list);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_TRUE(iterator.hasNext());
        EXPECT_EQ(iterator.next(), i);
    }
    EXPECT_FALSE(iterator.hasNext());
    expectFailure(137, kNextEnd, [&] { iterator.next(); });
}

TEST(LinkedListIterator, OnAnEmptyList)
{
    TestList list;
    LinkedListIterator<int> iterator(list);
    EXPECT_FALSE(iterator.hasNext());
    EXPECT_FALSE(iterator.hasPrevious());
    expectFailure(137, kNextEmpty, [&] { iterator.next(); });
    expectFailure(137, kPreviousEmpty, [&] { iterator.previous(); });
    MutableLinkedListIterator<int> mutableIterator(list);
    EXPECT_FALSE(mutableIterator.hasNext());
    EXPECT_FALSE(mutableIterator.hasPrevious());
    expectFailure(137, kNextEmpty, [&] { mutableIterator.next(); });
    expectFailure(137, kPreviousEmpty, [&] { mutableIterator.previous(); });
}

TEST(LinkedListIterator, PreviousAtTheFirstLinkStartsOver)
{
    const TestList list({1, 2, 3});
    LinkedListIterator<int> iterator(list);
    expectFailure(137, kPreviousStart, [&] { iterator.previous(); });
    EXPECT_EQ(iterator.next(), 1);
    EXPECT_FALSE(iterator.hasPrevious());
    expectFailure(137, kPreviousStart, [&] { iterator.previous(); });
    EXPECT_EQ(iterator.next(), 2);
    EXPECT_EQ(iterator.next(), 3);
    EXPECT_TRUE(iterator.hasPrevious());
    EXPECT_EQ(iterator.previous(), 2);
    EXPECT_EQ(iterator.next(), 3);
    EXPECT_EQ(iterator.previous(), 2);
    EXPECT_EQ(iterator.previous(), 1);
    // At the start again: the first element is still to come.
    EXPECT_EQ(iterator.next(), 1);
    EXPECT_EQ(iterator.next(), 2);
}

TEST(LinkedListIterator, OneElementStartsAndEnds)
{
    const TestList list({7});
    LinkedListIterator<int> iterator(list);
    EXPECT_TRUE(iterator.hasNext());
    EXPECT_EQ(iterator.next(), 7);
    EXPECT_FALSE(iterator.hasNext());
    EXPECT_FALSE(iterator.hasPrevious());
}

TEST(LinkedListIterator, PreviousBeforeTheFirstNextFailsBehindANewHead)
{
    TestList list({1, 2});
    LinkedListIterator<int> iterator(list);
    list.push(0);
    EXPECT_TRUE(iterator.hasPrevious());
    expectFailure(137, kPreviousStart, [&] { iterator.previous(); });
    EXPECT_EQ(iterator.next(), 1);
    EXPECT_EQ(iterator.previous(), 0);
}

TEST(MutableLinkedListIterator, PreviousBeforeTheFirstNextStepsToANewHead)
{
    TestList list({1, 2});
    MutableLinkedListIterator<int> iterator(list);
    list.push(0);
    EXPECT_TRUE(iterator.hasPrevious());
    EXPECT_EQ(iterator.previous(), 0);
    // Still at the start, which is elsewhere now: the element there is given again.
    EXPECT_EQ(iterator.next(), 0);
    EXPECT_EQ(iterator.next(), 1);
}

TEST(MutableLinkedListIterator, PreviousLeavesTheStartAlone)
{
    TestList list({1, 2});
    MutableLinkedListIterator<int> iterator(list);
    EXPECT_EQ(iterator.next(), 1);
    EXPECT_EQ(iterator.next(), 2);
    EXPECT_EQ(iterator.previous(), 1);
    // Not at the start: the first element has been given.
    EXPECT_EQ(iterator.next(), 2);
}

TEST(LinkedList, MoveHeadToTakesTheLinkAlong)
{
    LinkedList<int> from{};
    LinkedList<int> to{};
    for (const int value : {1, 2, 3})
        from.append(value);
    const auto* const link = from.head;
    zorvan::failAllocationsFrom(1);
    from.moveHeadTo(to);
    from.moveHeadTo(to);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(to.tail, link);
    EXPECT_EQ(from.getCount(), 1);
    EXPECT_EQ(from.head, from.tail);
    EXPECT_EQ(from.head->prev, nullptr);
    EXPECT_EQ(to.getCount(), 2);
    EXPECT_EQ(to.head->value, 2);
    EXPECT_EQ(to.tail->prev, to.head);
    EXPECT_EQ(to.head->prev, nullptr);
    from.moveHeadTo(to);
    EXPECT_TRUE(from.isEmpty());
    EXPECT_EQ(from.head, nullptr);
    EXPECT_EQ(from.tail, nullptr);
    EXPECT_EQ(to.pop(), 3);
    EXPECT_EQ(to.pop(), 2);
    EXPECT_EQ(to.pop(), 1);
}

TEST(MutableLinkedListIterator, PreviousAtFirstLinkSpeaksOfNext)
{
    TestList list({1, 2});
    MutableLinkedListIterator<int> iterator(list);
    expectFailure(137, kNextEnd, [&] { iterator.previous(); });
    EXPECT_EQ(iterator.next(), 1);
    expectFailure(137, kNextEnd, [&] { iterator.previous(); });
    EXPECT_EQ(iterator.next(), 2);
    expectFailure(137, kNextEnd, [&] { iterator.next(); });
}

TEST(Iterator, IsReachedThroughItsBase)
{
    TestList list({4, 5});
    LinkedListIterator<int> first(list);
    MutableLinkedListIterator<int> second(list);
    for (Iterator<int>* iterator :
        {static_cast<Iterator<int>*>(&first), static_cast<Iterator<int>*>(&second)}) {
        EXPECT_EQ(iterator->next(), 4);
        EXPECT_EQ(iterator->next(), 5);
        EXPECT_TRUE(iterator->hasPrevious());
        EXPECT_EQ(iterator->previous(), 4);
    }
}
