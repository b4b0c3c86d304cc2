#include "tree/open_elements.h"

#include "containers/failures.h"
#include "containers/storage.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

namespace {

constexpr std::int64_t kFirstCapacity = 128;

} // namespace

OpenElements::OpenElements() { topmost_.fill(-1); }

OpenElements::~OpenElements() { zorvan::releaseStorage(entries_); }

void OpenElements::push(HtmlTreeNode* node)
{
    assert(!contains(*node));
    growByOne();
    entries_[count_].node = node;
    ++count_;
    linkFrom(count_ - 1);
}

HtmlTreeNode* OpenElements::pop()
{
    HtmlTreeNode* const node = last();
    unlinkFrom(count_ - 1);
    --count_;
    return node;
}

HtmlTreeNode* OpenElements::last() const
{
    if (count_ == 0)
        zorvan::throwContainerFailure(
            zorvan::FAILURE_INDEX, "ArrayList.last(): ArrayList is empty");
    return entries_[count_ - 1].node;
}

HtmlTreeNode* OpenElements::first() const
{
    if (count_ == 0)
        zorvan::throwContainerFailure(
            zorvan::FAILURE_INDEX, "ArrayList.first(): ArrayList is empty");
    return entries_[0].node;
}

HtmlTreeNode* OpenElements::getAt(std::int32_t position) const
{
    if (position < 0 || position >= count_)
        zorvan::throwContainerFailure(zorvan::FAILURE_INDEX, "ArrayList.get(): invalid parameter");
    return entries_[position].node;
}

std::int32_t OpenElements::positionOf(const HtmlTreeNode& node) const
{
    // A payload may still carry a position from before the stack was cleared.
    const std::int32_t position = node.data == nullptr ? -1 : node.data->stackPosition;
    const bool isThere = position >= 0 && position < count_ && entries_[position].node == &node;
    return isThere ? position : -1;
}

void OpenElements::insertAt(HtmlTreeNode* node, std::int32_t position)
{
    assert(!contains(*node));
    if (position < 0 || position > count_)
        zorvan::throwContainerFailure(
            zorvan::FAILURE_INDEX, "ArrayList.insert(): invalid parameter");
    growByOne();
    unlinkFrom(position);
    Entry* const place = entries_ + position;
    std::memmove(place + 1, place, static_cast<std::size_t>(count_ - position) * sizeof(Entry));
    place->node = node;
    ++count_;
    linkFrom(position);
}

void OpenElements::remove(HtmlTreeNode* node)
{
    const std::int32_t position = positionOf(*node);
    if (position < 0)
        return;
    unlinkFrom(position);
    Entry* const place = entries_ + position;
    --count_;
    std::memmove(place, place + 1, static_cast<std::size_t>(count_ - position) * sizeof(Entry));
    linkFrom(position);
}

void OpenElements::clear()
{
    count_ = 0;
    topmost_.fill(-1);
    topmostSpecial_ = -1;
}

/// Makes room for one more entry.
void OpenElements::growByOne()
{
    if (count_ < capacity_)
        return;
    if (capacity_ == zorvan::kMaximumElements)
        zorvan::throwOutOfStorage();
    const std::int64_t capacity = std::clamp<std::int64_t>(
        std::int64_t{capacity_} * 2, kFirstCapacity, zorvan::kMaximumElements);
    auto grown = zorvan::allocateElements<Entry>(capacity);
    if (count_ != 0)
        std::memcpy(grown.get(), entries_, static_cast<std::size_t>(count_) * sizeof(Entry));
    zorvan::releaseStorage(std::exchange(entries_, grown.release()));
    capacity_ = static_cast<std::int32_t>(capacity);
}

/// Makes the entries from a position to the top known; those below are.
void OpenElements::linkFrom(std::int32_t position)
{
    for (; position < count_; ++position) {
        Entry& entry = entries_[position];
        const std::uint32_t elementId = elementOf(*entry.node);
        assert(elementId < kElementLimit);
        entry.previousSame = std::exchange(topmost_[elementId], position);
        entry.previousSpecial = topmostSpecial_;
        if (IsSpecialElement(elementId))
            topmostSpecial_ = position;
        entry.node->data->stackPosition = position;
    }
}

/// Makes the entries from the top down to a position unknown.
void OpenElements::unlinkFrom(std::int32_t position)
{
    for (std::int32_t i = count_ - 1; i >= position; --i) {
        const Entry& entry = entries_[i];
        topmost_[elementOf(*entry.node)] = entry.previousSame;
        topmostSpecial_ = entry.previousSpecial;
        entry.node->data->stackPosition = -1;
    }
}
