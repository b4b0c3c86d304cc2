#pragma once

#include "containers/failures.h"
#include "containers/storage.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

/// A sequence of items from bottom to top, each of a kind, a number below kKinds. It grows and
/// shrinks at the top like a stack, in constant time, and takes insertions and removals anywhere:
/// what they cost grows with the logarithm of its length. An item is known by a number that it
/// keeps until it goes; 0 is no item. Items know their order without a walk, and each kind its
/// topmost item.
///
/// Neighbours are linked. Each entry has a rank that grows from bottom to top; where there is no
/// rank left between two entries, those around are spread. The entries of a kind are a pairing heap
/// by rank: a push makes the entry the root, with the old root as its only child, so that pushes
/// and pops, which are nearly all there is, have nothing to compare.
template <typename Item, std::uint32_t kKinds> class KindSequence {
    static_assert(std::is_trivially_copyable_v<Item>);

public:
    using Number = std::uint32_t;
    /// Greater for what stands further up; above 0.
    using Rank = std::int64_t;

    KindSequence() = default;
    KindSequence(const KindSequence&) = delete;
    KindSequence& operator=(const KindSequence&) = delete;
    ~KindSequence() { zorvan::releaseStorage(entries_); }

    std::int32_t getCount() const { return count_; }

    /// Bottom and top; 0 when there is none.
    Number first() const { return count_ == 0 ? 0 : entries_[0].above; }
    Number last() const { return last_; }

    /// The neighbours of an item; 0 beyond bottom and top.
    Number below(Number number) const { return entries_[number].below; }
    Number above(Number number) const { return entries_[number].above; }

    /// The topmost item of a kind; 0 when there is none.
    Number topmost(std::uint32_t kind) const { return topmost_[kind]; }

    /// Whether a number can be that of an item; one that has gone may still answer true.
    bool isNumber(Number number) const { return number != 0 && number < used_; }

    Item& itemAt(Number number) { return entries_[number].item; }
    const Item& itemAt(Number number) const { return entries_[number].item; }
    Rank rankAt(Number number) const { return entries_[number].rank; }
    std::uint32_t kindAt(Number number) const { return entries_[number].kind; }

    /// Puts an item on top. Throws std::bad_alloc, as insertAbove does, and then nothing has
    /// changed.
    Number push(const Item& item, std::uint32_t kind)
    {
        const Number number = takeEntry();
        const Number top = last_;
        if (entries_[top].rank > kHighestRank - kStride)
            spreadAll();
        Entry& entry = entries_[number];
        entry.item = item;
        entry.kind = kind;
        entry.rank = entries_[top].rank + kStride;
        entry.below = top;
        entry.above = 0;
        entries_[top].above = number;
        last_ = number;
        const Number root = std::exchange(topmost_[kind], number);
        entry.child = root;
        entries_[root].next = 0;
        entries_[root].previous = number;
        return number;
    }

    /// Puts an item right above another one.
    Number insertAbove(Number reference, const Item& item, std::uint32_t kind)
    {
        if (entries_[reference].above == 0)
            return push(item, kind);
        const Number number = takeEntry();
        Entry& entry = entries_[number];
        entry.item = item;
        entry.kind = kind;
        entry.rank = rankAbove(reference);
        entry.below = reference;
        entry.above = std::exchange(entries_[reference].above, number);
        entries_[entry.above].below = number;
        entry.child = 0;
        topmost_[kind] = merged(topmost_[kind], number);
        return number;
    }

    /// Takes the topmost item out, which must be there.
    void removeLast()
    {
        const Number number = last_;
        const Entry& entry = entries_[number];
        topmost_[entry.kind] = mergedChildren(entry.child);
        last_ = entry.below;
        entries_[last_].above = 0;
        free(number);
    }

    /// Takes an item out.
    void remove(Number number)
    {
        if (number == last_) {
            removeLast();
            return;
        }
        Entry& entry = entries_[number];
        if (topmost_[entry.kind] == number)
            topmost_[entry.kind] = mergedChildren(entry.child);
        else
            takeFromHeap(number);
        entries_[entry.below].above = entry.above;
        entries_[entry.above].below = entry.below;
        free(number);
    }

    /// Takes all items out. They are not looked at.
    void clear()
    {
        topmost_.fill(0);
        count_ = 0;
        last_ = 0;
        free_ = 0;
        used_ = std::min(used_, Number{1});
        if (entries_ != nullptr)
            entries_[0] = Entry{};
    }

private:
    /// Entry 0 stands below the bottom.
    struct Entry {
        Item item;
        Rank rank;
        Number below;
        Number above; ///< of a free entry: the next free one
        Number child; ///< the first of those below it in the heap; 0: none
        Number next; ///< its sibling in the heap, 0: none; means nothing for a root, like previous
        Number previous; ///< its sibling in the heap, or the parent of a first child
        std::uint32_t kind;
    };

    static constexpr std::int64_t kFirstCapacity = 64;
    static constexpr Rank kStride = Rank{1} << 24;
    static constexpr int kRankBits = 62;
    static constexpr Rank kHighestRank = (Rank{1} << kRankBits) - 1;

    Number takeEntry()
    {
        if (free_ == 0) {
            if (used_ == capacity_)
                grow();
            ++count_;
            return used_++;
        }
        ++count_;
        return std::exchange(free_, entries_[free_].above);
    }

    void free(Number number)
    {
        entries_[number].above = std::exchange(free_, number);
        --count_;
    }

    void grow()
    {
        if (capacity_ == zorvan::kMaximumElements)
            zorvan::throwOutOfStorage();
        const std::int64_t capacity = std::clamp<std::int64_t>(
            std::int64_t{capacity_} * 2, kFirstCapacity, zorvan::kMaximumElements);
        auto grown = zorvan::allocateElements<Entry>(capacity);
        if (used_ != 0)
            std::memcpy(static_cast<void*>(grown.get()), entries_, used_ * sizeof(Entry));
        else
            grown.get()[used_++] = Entry{};
        zorvan::releaseStorage(std::exchange(entries_, grown.release()));
        capacity_ = static_cast<Number>(capacity);
    }

    /// A rank between an entry and the one above it, which is there.
    Rank rankAbove(Number reference)
    {
        const auto gap = [this, reference] {
            return entries_[entries_[reference].above].rank - entries_[reference].rank;
        };
        if (gap() < 2)
            spreadAround(reference);
        return entries_[reference].rank + gap() / 2;
    }

    /// Spreads the entries around one, in the smallest range of ranks that is sparse enough: the
    /// wider the range, the sparser it has to be, so that it takes many insertions to fill it
    /// again. The cost for each insertion stays that of the logarithm.
    void spreadAround(Number number)
    {
        Number lowest = number;
        Number highest = number;
        std::int64_t inRange = 1;
        double mostInRange = 1;
        for (int bits = 1; bits < kRankBits; ++bits) {
            mostInRange *= kGrowthOfRange;
            const Rank size = Rank{1} << bits;
            // Ranges begin at odd places, since 0 is the rank of what stands below the bottom.
            const Rank from = ((entries_[number].rank - 1) & -size) + 1;
            for (; entries_[lowest].below != 0 && entries_[entries_[lowest].below].rank >= from;
                 ++inRange)
                lowest = entries_[lowest].below;
            for (; entries_[highest].above != 0
                 && entries_[entries_[highest].above].rank < from + size;
                 ++inRange)
                highest = entries_[highest].above;
            // Two ranks for each leave room for one between, also in front of the range's end.
            if (inRange * 2 <= size && static_cast<double>(inRange) <= mostInRange) {
                spread(lowest, inRange, from, size / inRange);
                return;
            }
        }
        spreadAll();
    }

    /// Gives so many entries, from one on upwards, ranks at equal distances.
    void spread(Number number, std::int64_t count, Rank from, Rank distance)
    {
        for (Rank rank = from; count > 0; --count, rank += distance) {
            entries_[number].rank = rank;
            number = entries_[number].above;
        }
    }

    void spreadAll()
    {
        Rank rank = 0;
        for (Number number = entries_[0].above; number != 0; number = entries_[number].above)
            entries_[number].rank = rank += kStride;
    }

    /// Two heaps made one, either of them 0 for none.
    Number merged(Number a, Number b)
    {
        if (a == 0 || b == 0)
            return a == 0 ? b : a;
        if (entries_[a].rank < entries_[b].rank)
            std::swap(a, b);
        Entry& parent = entries_[a];
        Entry& child = entries_[b];
        child.next = parent.child;
        child.previous = a;
        if (parent.child != 0)
            entries_[parent.child].previous = b;
        parent.child = b;
        return a;
    }

    /// The children that have lost their parent as one heap, from the first on.
    Number mergedChildren(Number child)
    {
        if (child == 0 || entries_[child].next == 0)
            return child;
        // By twos, which are kept in a chain; then all of the chain.
        Number chain = 0;
        while (child != 0) {
            const Number second = entries_[child].next;
            const Number rest = second == 0 ? 0 : entries_[second].next;
            const Number pair = merged(std::exchange(child, rest), second);
            entries_[pair].next = std::exchange(chain, pair);
        }
        Number root = 0;
        while (chain != 0) {
            const Number rest = entries_[chain].next;
            root = merged(root, std::exchange(chain, rest));
        }
        return root;
    }

    /// Takes an entry that is no root out of its heap.
    void takeFromHeap(Number number)
    {
        const Entry& entry = entries_[number];
        Entry& previous = entries_[entry.previous];
        (previous.child == number ? previous.child : previous.next) = entry.next;
        if (entry.next != 0)
            entries_[entry.next].previous = entry.previous;
        Number& root = topmost_[entry.kind];
        root = merged(root, mergedChildren(entry.child));
    }

    /// How many times as many entries a range of ranks twice as wide may hold.
    static constexpr double kGrowthOfRange = 1.5;

    Entry* entries_ = nullptr; ///< owned; entry 0 is there with the first item
    std::int32_t count_ = 0;
    Number last_ = 0;
    Number used_ = 0; ///< entries that have been handed out, 0 included
    Number capacity_ = 0;
    Number free_ = 0; ///< the first of the free entries below used_
    std::array<Number, kKinds> topmost_{};
};
