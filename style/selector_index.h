#pragma once

#include "containers/array_list.h"
#include "style/selector.h"
#include "tree/value_index.h"

#include <array>
#include <cstdint>

/// Finds the selectors that mean a node without trying all of them: each one waits under one name
/// that its last sequence asks for, an id, a class or an element. The selectors are borrowed.
class SelectorIndex {
public:
    SelectorIndex() = default;
    SelectorIndex(const SelectorIndex&) = delete;
    SelectorIndex& operator=(const SelectorIndex&) = delete;
    ~SelectorIndex();

    bool isEmpty() const { return isEmpty_; }

    /// Adds a selector; one that can mean no element is left out. Throws std::bad_alloc.
    void add(Selector* selector);

    /// The selectors that mean an element, in ascending order, good until the next call. root: of
    /// the element's tree. Throws std::bad_alloc.
    const zorvan::ArrayList<Selector*>& findMatches(
        const HtmlTreeNode& node, const HtmlTreeNode* root);

private:
    using Bucket = zorvan::ArrayList<Selector*>;

    static constexpr std::uint32_t kElementLimit = 136;

    Bucket& bucketOf(const SimpleSelectorSequence& sequence);
    Bucket& bucketOfElement(std::uint32_t elementId);
    Bucket& bucketOfName(std::uint32_t key);
    void sortMatches();
    void tryNames(const HtmlTreeNode& node, const HtmlTreeNode* root);
    void tryAll(const Bucket* bucket, const HtmlTreeNode& node, const HtmlTreeNode* root);

    std::array<Bucket*, kElementLimit> elements_ = {}; // owned; null where there is no selector
    ValueIndex<Bucket> names_; // owned; by the hash of a class or an id, so that some share one
    Bucket others_; // selectors that any element may be meant by
    Bucket matches_; // of the last search
    zorvan::ArrayList<const zorvan::Comparable*> sorted_; // the same while they are sorted
    std::uint32_t visit_ = 0; // searches so far
    bool isEmpty_ = true;
};
