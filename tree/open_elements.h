#pragma once

#include "containers/storage.h"
#include "filter/html_filter_context.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"
#include "tree/kind_sequence.h"

#include <cassert>
#include <cstdint>

/// The stack of open elements of a tree: nodes in the order in which they were opened, the bottom
/// first. Text nodes stand on it for a moment. It does not own the nodes. Each payload knows its
/// entry (HtmlGenericNodeData::stackEntry), and the stack the topmost node of each element, so that
/// no question of the tree builder needs a walk, however deep the stack. Where there is no memory
/// for an entry, std::bad_alloc is thrown and the stack is as it was.
class OpenElements {
    struct Entry {
        HtmlTreeNode* node;
    };

    static constexpr std::uint32_t kElementLimit = 136;
    using Entries = KindSequence<Entry, kElementLimit>;

public:
    /// How far up something stands, for comparisons only: what is higher is greater.
    using Height = Entries::Rank;
    /// The height of what is not on the stack, below all others.
    static constexpr Height kNowhere = -1;

    /// Entries on the stack.
    std::int32_t getCount() const { return entries_.getCount(); }

    /// Puts a node on top, which must have a payload and not be on the stack.
    void push(HtmlTreeNode* node)
    {
        assert(!contains(*node));
        const std::uint32_t elementId = elementOf(*node);
        assert(elementId < kElementLimit);
        const bool isSpecial = IsSpecialElement(elementId);
        if (isSpecial && specialCount_ == specialCapacity_)
            growSpecial();
        const Number number = entries_.push({node}, elementId);
        node->data->stackEntry = number;
        if (isSpecial)
            special_.get()[specialCount_++] = number;
    }

    /// Takes the top node off and answers it; fails on an empty stack as last() does.
    HtmlTreeNode* pop()
    {
        HtmlTreeNode* const node = last();
        if (specialCount_ != 0 && special_.get()[specialCount_ - 1] == entries_.last())
            --specialCount_;
        entries_.removeLast();
        node->data->stackEntry = 0;
        return node;
    }

    /// Top and bottom entry; an empty stack fails with "ArrayList.last(): ArrayList is empty" or
    /// "ArrayList.first(): ArrayList is empty", code 137.
    HtmlTreeNode* last() const
    {
        if (getCount() == 0)
            failEmpty("ArrayList.last(): ArrayList is empty");
        return nodeAt(entries_.last());
    }
    HtmlTreeNode* first() const
    {
        if (getCount() == 0)
            failEmpty("ArrayList.first(): ArrayList is empty");
        return nodeAt(entries_.first());
    }

    bool contains(const HtmlTreeNode& node) const { return numberOf(node) != 0; }

    /// The entries next to a node that is on the stack; null beyond bottom and top.
    HtmlTreeNode* below(const HtmlTreeNode& node) const
    {
        return nodeAt(entries_.below(numberOf(node)));
    }
    HtmlTreeNode* above(const HtmlTreeNode& node) const
    {
        return nodeAt(entries_.above(numberOf(node)));
    }

    /// The topmost element with this id, a text node for 0; null none.
    HtmlTreeNode* topmostNode(std::uint32_t elementId) const
    {
        return nodeAt(entries_.topmost(elementId));
    }

    /// The height of the topmost element with this id, and of the topmost of the special set.
    Height topmost(std::uint32_t elementId) const { return heightAt(entries_.topmost(elementId)); }
    Height topmostSpecial() const
    {
        return specialCount_ == 0 ? kNowhere : heightAt(special_.get()[specialCount_ - 1]);
    }

    Height heightOf(const HtmlTreeNode& node) const { return heightAt(numberOf(node)); }

    /// The lowest element of the special set above a node, which must be on the stack; null none.
    HtmlTreeNode* firstSpecialAbove(const HtmlTreeNode& node) const;

    /// Puts a node, not of the special set, right above another one that is on the stack.
    void insertAbove(const HtmlTreeNode& reference, HtmlTreeNode* node);

    /// Puts a node of the same element in the place of another one that is on the stack.
    void replace(const HtmlTreeNode& old, HtmlTreeNode* node);

    /// Takes a node out, wherever it stands; nothing happens when it is not on the stack.
    void remove(HtmlTreeNode* node);

    /// Takes all entries off. The nodes are not looked at, so that they may be gone.
    void clear();

private:
    using Number = Entries::Number;

    [[noreturn]] static void failEmpty(const char* message);

    HtmlTreeNode* nodeAt(Number number) const
    {
        return number == 0 ? nullptr : entries_.itemAt(number).node;
    }

    Height heightAt(Number number) const
    {
        return number == 0 ? kNowhere : entries_.rankAt(number);
    }

    /// The entry of a node, 0 when it is not on the stack. A payload may still carry a number from
    /// before the stack was cleared.
    Number numberOf(const HtmlTreeNode& node) const
    {
        const Number number = node.data == nullptr ? 0 : node.data->stackEntry;
        return entries_.isNumber(number) && nodeAt(number) == &node ? number : 0;
    }

    void growSpecial();
    std::int32_t specialFrom(Height height) const;

    Entries entries_;
    /// The entries of special elements, upwards. They are only ever pushed; what goes from between
    /// has few above it that were not pushed while it was open.
    zorvan::StoragePointer<Number> special_;
    std::int32_t specialCount_ = 0;
    std::int32_t specialCapacity_ = 0;
};
