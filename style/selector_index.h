#pragma once

#include "containers/array_list.h"
#include "style/selector.h"
#include "tree/value_index.h"

#include <array>
#include <cstddef>
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

    /// Tells that the tree has an element of a kind. From the first call on every kind has to be
    /// told before findMatches is called for a node that stands behind or below such an element.
    void noteElement(std::uint32_t elementId)
    {
        isSeen_[elementId < kElementLimit ? elementId : ELEMENT_NONE] = true;
        countsElements_ = true;
    }

    /// The selectors that mean an element, in ascending order, good until the next call. root: of
    /// the element's tree. Throws std::bad_alloc.
    const zorvan::ArrayList<Selector*>& findMatches(
        const HtmlTreeNode& node, const HtmlTreeNode* root);

private:
    static constexpr std::uint32_t kElementLimit = 136;
    static constexpr std::size_t kMostNeeded = 4;

    /// A selector that waits. What tells most elements apart stands here, as the selectors lie all
    /// over the memory.
    struct Entry {
        Selector* selector;
        std::uint32_t element; ///< that the last sequence asks for; all ones when it doesn't
        /// Some elements without which the sequences in front of the last one match nothing; behind
        /// them ELEMENT_NONE.
        std::array<std::uint8_t, kMostNeeded> needed;
    };
    using Bucket = zorvan::ArrayList<Entry>;

    /// A class or the id of an element.
    struct Name {
        SimpleSelectorKind kind;
        const char16_t* text;
        const char16_t* end;
    };

    static std::array<std::uint8_t, kMostNeeded> neededBy(const Selector& selector);
    bool isPossible(const Entry& entry) const;
    Bucket& bucketOf(const SimpleSelectorSequence& sequence);
    Bucket& bucketOfElement(std::uint32_t elementId);
    Bucket& bucketOfName(std::uint32_t key);
    void sortMatches();
    void tryNames(const HtmlTreeNode& node, const HtmlTreeNode* root);
    void tryAll(const Bucket* bucket, const HtmlTreeNode& node, const HtmlTreeNode* root);
    void tryNamed(const Name& name, const HtmlTreeNode& node, const HtmlTreeNode* root);

    std::array<Bucket*, kElementLimit> elements_ = {}; // owned; null where there is no selector
    ValueIndex<Bucket> names_; // owned; by the hash of a class or an id, so that some share one
    Bucket others_; // selectors that any element may be meant by
    zorvan::ArrayList<Selector*> matches_; // of the last search
    zorvan::ArrayList<const zorvan::Comparable*> sorted_; // the same while they are sorted
    std::uint32_t visit_ = 0; // searches so far
    std::array<bool, kElementLimit> isSeen_ = {}; // kinds of elements that the tree has had
    bool countsElements_ = false; // isSeen_ is in use
    bool isEmpty_ = true;
};
