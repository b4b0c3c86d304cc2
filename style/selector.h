#pragma once

#include "containers/array_list.h"
#include "style/simple_selector.h"
#include "support/object.h"

#include <cstdint>
#include <memory>

class CssDeclarationList;

/// What joins a sequence to the one on its left.
enum Combinator : std::int32_t {
    COMBINATOR_NONE = 0,
    COMBINATOR_DESCENDANT,
    COMBINATOR_CHILD,
    COMBINATOR_ADJACENT_SIBLING,
    COMBINATOR_GENERAL_SIBLING,
};

/// Conditions on one node. Without any it matches every node.
class SimpleSelectorSequence {
public:
    SimpleSelectorSequence() = default;
    SimpleSelectorSequence(const SimpleSelectorSequence&) = delete;
    SimpleSelectorSequence& operator=(const SimpleSelectorSequence&) = delete;
    ~SimpleSelectorSequence();

    void add(std::unique_ptr<SimpleSelector> selector);

    bool matches(const HtmlTreeNode& node) const;
    bool canMatch() const;
    std::uint32_t getSpecificity() const;

    Combinator combinator = COMBINATOR_NONE;
    bool universal = true; ///< until an element's name is seen
    zorvan::ArrayList<SimpleSelector*> selectors; ///< owned
};

/// A selector of a rule.
class Selector : public zorvan::Comparable {
public:
    /// number: larger is later in the sheet.
    explicit Selector(std::int32_t number);

    ~Selector() override;
    Selector(const Selector&) = delete;
    Selector& operator=(const Selector&) = delete;

    void add(std::unique_ptr<SimpleSelectorSequence> sequence);

    /// Whether the selector means a node, which must have a parent. Time is at most that of the
    /// sequences times the ancestors of the node with their siblings.
    bool matches(const HtmlTreeNode& node, const HtmlTreeNode* root) const;

    /// False when no document has an element that the selector means.
    bool canMatch() const;

    /// Computed by the first call.
    std::uint32_t getSpecificity() const;

    /// The less specific one first, then the earlier one.
    std::int32_t compareTo(const zorvan::Comparable& other) const override;

    zorvan::ArrayList<SimpleSelectorSequence*> sequences; ///< owned, from left to right
    std::int32_t pseudoElement = 0; ///< its kind of token; 0 none
    CssDeclarationList* declarations = nullptr; ///< of the rule; borrowed
    const std::int32_t order;
    mutable std::uint32_t specificity = kUncomputed;
    /// The class or the id that is all it asks for, where an index then needn't look further; of
    /// the kind none for any other selector.
    struct WholeName {
        std::int32_t kind = 0; ///< SELECTOR_CLASS, SELECTOR_ID or 0
        std::int32_t length = 0;
        const char* text = nullptr; ///< borrowed from its condition
    };
    WholeName wholeName = {};
    std::uint32_t visit = 0; ///< the search in which an index came across the selector last

private:
    static constexpr std::uint32_t kUncomputed = 0xFFFFFFFF;
};
