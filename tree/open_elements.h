#pragma once

#include "filter/html_filter_context.h"

#include <array>
#include <cstdint>

/// The stack of open elements of a tree: nodes in the order in which they were opened, position 0
/// is the bottom. Text nodes stand on it for a moment. It does not own the nodes. Each payload
/// knows its position (HtmlGenericNodeData::stackPosition), and for each element id the topmost
/// entry is known, so that the questions of the tree builder need no walk. Where there is no memory
/// for an entry, std::bad_alloc is thrown and the stack is as it was.
class OpenElements {
public:
    OpenElements();
    ~OpenElements();
    OpenElements(const OpenElements&) = delete;
    OpenElements& operator=(const OpenElements&) = delete;

    /// Entries on the stack.
    std::int32_t getCount() const { return count_; }

    /// Puts a node on top, which must have a payload and not be on the stack.
    void push(HtmlTreeNode* node);

    /// Takes the top node off and answers it; fails on an empty stack as last() does.
    HtmlTreeNode* pop();

    /// Top and bottom entry; an empty stack fails with "ArrayList.last(): ArrayList is empty" or
    /// "ArrayList.first(): ArrayList is empty", code 137.
    HtmlTreeNode* last() const;
    HtmlTreeNode* first() const;

    /// The entry at a position; out of range fails with "ArrayList.get(): invalid parameter".
    HtmlTreeNode* getAt(std::int32_t position) const;

    /// The position of a node, -1 when it is not on the stack.
    std::int32_t positionOf(const HtmlTreeNode& node) const;
    bool contains(const HtmlTreeNode& node) const { return positionOf(node) >= 0; }

    /// Puts a node at a position, moving those from there on up by one; getCount() is the top. Out
    /// of range fails with "ArrayList.insert(): invalid parameter". Time is that of the entries
    /// above.
    void insertAt(HtmlTreeNode* node, std::int32_t position);

    /// Takes a node out, wherever it stands; nothing happens when it is not on the stack. Time is
    /// that of the entries above.
    void remove(HtmlTreeNode* node);

    /// The topmost position of an element with this id, -1 none; of a text node for 0.
    std::int32_t topmost(std::uint32_t elementId) const { return topmost_[elementId]; }
    /// The topmost position of an element of the special set, -1 none.
    std::int32_t topmostSpecial() const { return topmostSpecial_; }

    /// Takes all entries off. The nodes are not looked at, so that they may be gone.
    void clear();

private:
    struct Entry {
        HtmlTreeNode* node;
        std::int32_t previousSame; ///< next lower entry with the same element id, -1 none
        std::int32_t previousSpecial; ///< topmost special entry below this one, -1 none
    };

    static constexpr std::uint32_t kElementLimit = 136;

    void growByOne();
    void linkFrom(std::int32_t position);
    void unlinkFrom(std::int32_t position);

    Entry* entries_ = nullptr; ///< owned
    std::int32_t count_ = 0;
    std::int32_t capacity_ = 0;
    std::array<std::int32_t, kElementLimit> topmost_;
    std::int32_t topmostSpecial_ = -1;
};
