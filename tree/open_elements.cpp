#include "tree/open_elements.h"

#include "containers/failures.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int64_t kFirstSpecialCapacity = 64;

} // namespace

HtmlTreeNode* OpenElements::firstSpecialAbove(const HtmlTreeNode& node) const
{
    const std::int32_t position = specialFrom(heightOf(node) + 1);
    return position == specialCount_ ? nullptr : nodeAt(special_.get()[position]);
}

void OpenElements::insertAbove(const HtmlTreeNode& reference, HtmlTreeNode* node)
{
    const std::uint32_t elementId = elementOf(*node);
    assert(contains(reference) && !contains(*node) && !IsSpecialElement(elementId));
    node->data->stackEntry = entries_.insertAbove(numberOf(reference), {node}, elementId);
}

void OpenElements::replace(const HtmlTreeNode& old, HtmlTreeNode* node)
{
    assert(contains(old) && !contains(*node) && elementOf(old) == elementOf(*node));
    const Number number = numberOf(old);
    entries_.itemAt(number).node = node;
    old.data->stackEntry = 0;
    node->data->stackEntry = number;
}

void OpenElements::remove(HtmlTreeNode* node)
{
    const Number number = numberOf(*node);
    if (number == 0)
        return;
    if (IsSpecialElement(entries_.kindAt(number))) {
        Number* const place = special_.get() + specialFrom(entries_.rankAt(number));
        std::copy(place + 1, special_.get() + specialCount_, place);
        --specialCount_;
    }
    entries_.remove(number);
    node->data->stackEntry = 0;
}

void OpenElements::clear()
{
    entries_.clear();
    specialCount_ = 0;
}

void OpenElements::failEmpty(const char* message)
{
    zorvan::throwContainerFailure(zorvan::FAILURE_INDEX, message);
}

/// Makes room for one more special entry.
void OpenElements::growSpecial()
{
    if (specialCapacity_ == zorvan::kMaximumElements)
        zorvan::throwOutOfStorage();
    const std::int64_t capacity = std::clamp<std::int64_t>(
        std::int64_t{specialCapacity_} * 2, kFirstSpecialCapacity, zorvan::kMaximumElements);
    auto grown = zorvan::allocateElements<Number>(capacity);
    std::copy_n(special_.get(), specialCount_, grown.get());
    special_ = std::move(grown);
    specialCapacity_ = static_cast<std::int32_t>(capacity);
}

/// The position among the special entries of the first one that is not below a height.
std::int32_t OpenElements::specialFrom(Height height) const
{
    std::int32_t from = 0;
    std::int32_t to = specialCount_;
    while (from < to) {
        const std::int32_t middle = from + (to - from) / 2;
        if (entries_.rankAt(special_.get()[middle]) < height)
            from = middle + 1;
        else
            to = middle;
    }
    return from;
}
