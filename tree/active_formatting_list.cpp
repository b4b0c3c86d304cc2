#include "tree/active_formatting_list.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace {

constexpr std::uint32_t kFirstBucketCount = 64;

/// The kind of a marker, which is no element.
constexpr std::uint32_t kMarkerKind = ELEMENT_NONE;

HtmlTagNodeData& PayloadOf(const HtmlTreeNode& node)
{
    return static_cast<HtmlTagNodeData&>(*node.data);
}

std::uint64_t Mixed(std::uint64_t bits)
{
    // The product wraps, which is meant.
    bits = (bits ^ bits >> 32) * 0x9E3779B97F4A7C15;
    return bits ^ bits >> 29;
}

/// A number that is the same for elements between the same markers that are the same in name and
/// attributes, and hardly ever for others; 0 for an element without attributes.
std::uint64_t LikenessOf(const HtmlTreeNode& node, std::uint32_t markersBefore)
{
    const HtmlTagNodeData& payload = PayloadOf(node);
    if (!payload.hasAttributes())
        return 0;
    std::uint64_t likeness = Mixed(std::uint64_t{markersBefore} << 32 | payload.elementId);
    for (const auto* link = payload.attributes.head; link != nullptr; link = link->next) {
        // Values are one and the same object or different, whatever they say.
        likeness = Mixed(likeness + link->value->key);
        likeness = Mixed(likeness + reinterpret_cast<std::uintptr_t>(link->value->value));
    }
    return std::max(likeness, std::uint64_t{1});
}

bool HaveSameAttributes(const HtmlTreeNode& a, const HtmlTreeNode& b)
{
    const auto& attributes = PayloadOf(a).attributes;
    const auto& others = PayloadOf(b).attributes;
    if (attributes.getCount() != others.getCount())
        return false;
    const auto* other = others.head;
    for (const auto* link = attributes.head; link != nullptr; link = link->next) {
        if (link->value->key != other->value->key || link->value->value != other->value->value)
            return false;
        other = other->next;
    }
    return true;
}

} // namespace

HtmlTreeNode* ActiveFormattingList::find(std::uint32_t elementId) const
{
    const Number number = entries_.topmost(elementId);
    if (number == 0 || entries_.itemAt(number).markersBefore != markerCount_)
        return nullptr;
    return nodeAt(number);
}

HtmlTreeNode* ActiveFormattingList::findThirdAlike(const HtmlTreeNode& node) const
{
    const std::uint64_t likeness = LikenessOf(node, markerCount_);
    if (likeness == 0 || alikeCount_ == 0)
        return nullptr;
    std::array<Number, 3> lastOnes{};
    for (Number number = bucketOf(likeness); number != 0;) {
        const Entry& entry = entries_.itemAt(number);
        const Number next = entry.nextAlike;
        if (entry.likeness == likeness && entry.markersBefore == markerCount_
            && elementOf(*entry.node) == elementOf(node) && HaveSameAttributes(*entry.node, node)) {
            for (Number& place : lastOnes) {
                if (place == 0 || entries_.rankAt(number) > entries_.rankAt(place))
                    std::swap(number, place);
                if (number == 0)
                    break;
            }
        }
        number = next;
    }
    return nodeAt(lastOnes.back());
}

void ActiveFormattingList::addMarker()
{
    entries_.push(Entry{nullptr, 0, 0, 0, markerCount_}, kMarkerKind);
    ++markerCount_;
}

void ActiveFormattingList::add(HtmlTreeNode* node)
{
    assert(!contains(*node));
    makeRoomForOneAlike();
    enter(entries_.push(Entry{node, 0, 0, 0, markerCount_}, elementOf(*node)));
}

void ActiveFormattingList::addBehind(const HtmlTreeNode& reference, HtmlTreeNode* node)
{
    assert(contains(reference) && !contains(*node));
    makeRoomForOneAlike();
    const Number number = numberOf(reference);
    const std::uint32_t markersBefore = entries_.itemAt(number).markersBefore;
    enter(entries_.insertAbove(number, Entry{node, 0, 0, 0, markersBefore}, elementOf(*node)));
}

void ActiveFormattingList::replace(const HtmlTreeNode& old, HtmlTreeNode* node)
{
    assert(contains(old) && !contains(*node) && elementOf(old) == elementOf(*node));
    makeRoomForOneAlike();
    const Number number = numberOf(old);
    leave(number);
    entries_.itemAt(number).node = node;
    enter(number);
}

void ActiveFormattingList::remove(const HtmlTreeNode& node)
{
    assert(contains(node));
    takeOut(numberOf(node));
}

bool ActiveFormattingList::removeLast()
{
    const Number number = entries_.last();
    const bool isMarker = nodeAt(number) == nullptr;
    takeOut(number);
    return isMarker;
}

void ActiveFormattingList::clear()
{
    entries_.clear();
    markerCount_ = 0;
    alikeCount_ = 0;
    std::fill_n(buckets_.get(), bucketCount_, Number{0});
}

/// The entry of a node; 0 when it is not in the list. A payload may still carry a number from
/// before the list was cleared.
ActiveFormattingList::Number ActiveFormattingList::numberOf(const HtmlTreeNode& node) const
{
    if (elementOf(node) == ELEMENT_NONE)
        return 0;
    const Number number = PayloadOf(node).formattingEntry;
    return entries_.isNumber(number) && nodeAt(number) == &node ? number : 0;
}

/// Makes an entry known to its node and to those alike.
void ActiveFormattingList::enter(Number number)
{
    Entry& entry = entries_.itemAt(number);
    PayloadOf(*entry.node).formattingEntry = number;
    entry.likeness = LikenessOf(*entry.node, entry.markersBefore);
    if (entry.likeness != 0)
        linkAlike(number);
}

void ActiveFormattingList::leave(Number number)
{
    const Entry& entry = entries_.itemAt(number);
    PayloadOf(*entry.node).formattingEntry = 0;
    if (entry.likeness != 0)
        unlinkAlike(number);
}

void ActiveFormattingList::takeOut(Number number)
{
    if (nodeAt(number) != nullptr)
        leave(number);
    else
        --markerCount_;
    entries_.remove(number);
}

/// Sees to it that there are as many chains as entries in them.
void ActiveFormattingList::makeRoomForOneAlike()
{
    if (alikeCount_ < bucketCount_)
        return;
    const std::uint32_t count = std::max(bucketCount_ * 2, kFirstBucketCount);
    buckets_ = zorvan::allocateElements<Number>(count);
    std::fill_n(buckets_.get(), count, Number{0});
    bucketCount_ = count;
    alikeCount_ = 0;
    for (Number number = entries_.first(); number != 0; number = entries_.above(number)) {
        if (entries_.itemAt(number).likeness != 0)
            linkAlike(number);
    }
}

void ActiveFormattingList::linkAlike(Number number)
{
    Entry& entry = entries_.itemAt(number);
    entry.previousAlike = 0;
    entry.nextAlike = std::exchange(bucketOf(entry.likeness), number);
    if (entry.nextAlike != 0)
        entries_.itemAt(entry.nextAlike).previousAlike = number;
    ++alikeCount_;
}

void ActiveFormattingList::unlinkAlike(Number number)
{
    const Entry& entry = entries_.itemAt(number);
    if (entry.previousAlike != 0)
        entries_.itemAt(entry.previousAlike).nextAlike = entry.nextAlike;
    else
        bucketOf(entry.likeness) = entry.nextAlike;
    if (entry.nextAlike != 0)
        entries_.itemAt(entry.nextAlike).previousAlike = entry.previousAlike;
    --alikeCount_;
}

ActiveFormattingList::Number& ActiveFormattingList::bucketOf(std::uint64_t likeness) const
{
    return buckets_.get()[likeness & (bucketCount_ - 1)];
}
