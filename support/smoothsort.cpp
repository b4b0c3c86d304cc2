#include "support/smoothsort.h"

#include "support/object.h"

#include <array>
#include <bit>
#include <cstddef>

// Smoothsort keeps the items in front of the place it has reached as a row of heaps. Each heap has
// as many items as a Leonardo number, its root last, and the roots ascend. Taking the last item
// away then leaves its two children as roots, which only have to be put in order with the roots in
// front.

namespace {

using zorvan::Comparable;

/// Leonardo numbers, until one is beyond any count.
constexpr std::array<std::int64_t, 46> leonardoNumbers()
{
    std::array<std::int64_t, 46> numbers{1, 1};
    for (std::size_t order = 2; order < numbers.size(); ++order)
        numbers[order] = numbers[order - 1] + numbers[order - 2] + 1;
    return numbers;
}

constexpr auto kLeonardo = leonardoNumbers();

/// The row of heaps: bit n of `heaps` stands for a heap of order `order` + n, and bit 0, that of
/// the last heap, is set.
struct HeapRow {
    std::uint64_t heaps;
    std::uint32_t order;

    bool isLast() const { return heaps == 1; }

    /// Goes on to the heap in front of the last one.
    void dropLast()
    {
        const int step = std::countr_zero(heaps - 1);
        heaps >>= step;
        order += static_cast<std::uint32_t>(step);
    }
};

bool inOrder(const Comparable* a, const Comparable* b) { return a->compareTo(*b) <= 0; }

/// Lets the root of one heap sink to its place.
void siftDown(const Comparable** root, std::uint32_t order)
{
    const Comparable* item = *root;
    while (order > 1) {
        const Comparable** right = root - 1;
        const Comparable** left = right - kLeonardo[order - 2];
        const bool leftIsGreater = inOrder(*right, *left);
        const Comparable** child = leftIsGreater ? left : right;
        if (inOrder(*child, item))
            break;
        *root = *child;
        root = child;
        order -= leftIsGreater ? 1 : 2;
    }
    *root = item;
}

/// Moves the root of the last heap to its place among the roots in front of it and lets it sink
/// there. sifted: its heap is one already.
void placeRoot(const Comparable** root, HeapRow row, bool sifted)
{
    const Comparable* item = *root;
    while (!row.isLast()) {
        const Comparable** before = root - kLeonardo[row.order];
        if (inOrder(*before, item))
            break;
        if (!sifted && row.order > 1) {
            const Comparable** right = root - 1;
            const Comparable** left = right - kLeonardo[row.order - 2];
            if (inOrder(*before, *right) || inOrder(*before, *left))
                break;
        }
        *root = *before;
        root = before;
        row.dropLast();
        sifted = false;
    }
    *root = item;
    if (!sifted)
        siftDown(root, row.order);
}

/// Puts the item behind `root` into the row: the root of the last two heaps when their orders
/// follow each other, else a heap of its own.
void extendRow(HeapRow& row)
{
    if ((row.heaps & 3) == 3) {
        row.heaps >>= 2;
        row.order += 2;
    } else if (row.order == 1) {
        row.heaps <<= 1;
        row.order = 0;
    } else {
        row.heaps <<= row.order - 1;
        row.order = 1;
    }
    row.heaps |= 1;
}

HeapRow makeHeaps(const Comparable** items, std::int64_t count)
{
    HeapRow row{1, 1};
    for (std::int64_t i = 0; i + 1 < count; ++i) {
        const bool becomesChild = (row.heaps & 3) == 3;
        // A heap that no later one takes in has its final size, so its root goes to its place now.
        const bool isFinal = !becomesChild && kLeonardo[row.order - 1] >= count - 1 - i;
        if (isFinal)
            placeRoot(items + i, row, /*sifted=*/false);
        else
            siftDown(items + i, row.order);
        extendRow(row);
    }
    placeRoot(items + count - 1, row, /*sifted=*/false);
    return row;
}

} // namespace

namespace zorvan {

void Smoothsort(const Comparable** items, std::int32_t count)
{
    if (count < 2)
        return;
    HeapRow row = makeHeaps(items, count);
    for (const Comparable** last = items + count - 1; last != items; --last) {
        if (row.order <= 1) {
            row.dropLast();
            continue;
        }
        // The last heap gives up its root; its children become heaps, the left one first.
        row.heaps = ((row.heaps << 2) ^ 7) >> 1;
        row.order -= 2;
        placeRoot(last - kLeonardo[row.order] - 1, {row.heaps, row.order + 1}, /*sifted=*/true);
        row.heaps = row.heaps << 1 | 1;
        placeRoot(last - 1, row, /*sifted=*/true);
    }
}

} // namespace zorvan
