#include "style/selector.h"

#include <algorithm>

namespace {

/// A place that a combinator leaves open: one of the ancestors, or one of the siblings in front.
struct Choice {
    const HtmlTreeNode* node = nullptr; ///< tried last; null when there is nothing to choose
    std::int32_t sequence = 0; ///< what is to match there
};

/// The search for the nodes that the sequences of one selector mean, from the last one to the
/// first.
///
/// Of all choices made on the way only the newest of the ancestors has to be made anew when things
/// go wrong, and only the newest of the siblings behind it. An ancestor higher up has no ancestors
/// that the one tried had not, and siblings have one parent and all ancestors in common, so where
/// the newer choice has failed for all nodes there are, no other older one could save it. That
/// keeps the steps below the number of sequences times that of the nodes.
class Search {
public:
    Search(const Selector& selector, const HtmlTreeNode& node, const HtmlTreeNode* root)
        : sequences_(selector.sequences)
        , root_(root)
        , node_(&node)
        , index_(selector.sequences.getCount() - 1)
    {
    }

    bool run()
    {
        bool fits = sequence().matches(*node_);
        while (true) {
            if (fits && (index_ == 0 || sequence().combinator == COMBINATOR_NONE))
                return true;
            if (fits && stepsToOneNode()) {
                fits = step();
                continue;
            }
            if (fits)
                leaveOpen();
            if (!choose())
                return false;
            fits = sequence().matches(*node_);
        }
    }

private:
    const SimpleSelectorSequence& sequence() const { return *sequences_.begin()[index_]; }

    bool stepsToOneNode() const
    {
        const Combinator combinator = sequence().combinator;
        return combinator == COMBINATOR_CHILD || combinator == COMBINATOR_ADJACENT_SIBLING;
    }

    /// Goes to the parent or to the sibling in front; answers whether it fits.
    bool step()
    {
        const bool isChild = sequence().combinator == COMBINATOR_CHILD;
        node_ = isChild ? node_->parent : node_->prevSibling;
        if (node_ == nullptr)
            return false;
        --index_;
        // QUIRK(Selector.WhateverStandsOnTheRootMatches): the root is not asked.
        return node_ == root_ || sequence().matches(*node_);
    }

    void leaveOpen()
    {
        const bool isSibling = sequence().combinator == COMBINATOR_GENERAL_SIBLING;
        Choice& choice = isSibling ? sibling_ : ancestor_;
        choice.node = node_;
        choice.sequence = index_ - 1;
        if (!isSibling)
            sibling_.node = nullptr;
    }

    /// Goes to the next node that may do; false when there is none.
    bool choose()
    {
        if (sibling_.node != nullptr) {
            sibling_.node = sibling_.node->prevSibling;
            if (sibling_.node != nullptr)
                return take(sibling_);
        }
        if (ancestor_.node == nullptr || ancestor_.node == root_)
            return false;
        ancestor_.node = ancestor_.node->parent;
        if (ancestor_.node == nullptr || ancestor_.node == root_)
            return false;
        return take(ancestor_);
    }

    bool take(const Choice& choice)
    {
        node_ = choice.node;
        index_ = choice.sequence;
        return true;
    }

    const zorvan::ArrayList<SimpleSelectorSequence*>& sequences_;
    const HtmlTreeNode* const root_;
    const HtmlTreeNode* node_;
    std::int32_t index_;
    Choice ancestor_;
    Choice sibling_; ///< behind ancestor_
};

} // namespace

SimpleSelectorSequence::~SimpleSelectorSequence()
{
    for (SimpleSelector* selector : selectors)
        delete selector;
}

void SimpleSelectorSequence::add(std::unique_ptr<SimpleSelector> selector)
{
    selectors.add(selector.get());
    selector.release();
}

bool SimpleSelectorSequence::matches(const HtmlTreeNode& node) const
{
    for (std::int32_t i = selectors.getCount() - 1; i >= 0; --i) {
        if (!selectors.begin()[i]->matches(node))
            return false;
    }
    return true;
}

bool SimpleSelectorSequence::canMatch() const
{
    return std::all_of(selectors.begin(), selectors.end(),
        [](const SimpleSelector* selector) { return selector->canMatch(); });
}

std::uint32_t SimpleSelectorSequence::getSpecificity() const
{
    std::uint32_t sum = 0;
    for (const SimpleSelector* selector : selectors)
        sum += selector->getSpecificity();
    return sum;
}

Selector::Selector(std::int32_t number)
    : order(number)
{
}

Selector::~Selector()
{
    for (SimpleSelectorSequence* sequence : sequences)
        delete sequence;
}

void Selector::add(std::unique_ptr<SimpleSelectorSequence> sequence)
{
    sequences.add(sequence.get());
    sequence.release();
}

bool Selector::matches(const HtmlTreeNode& node, const HtmlTreeNode* root) const
{
    if (pseudoElement != 0 || sequences.getCount() == 0 || &node == root)
        return false;
    return Search(*this, node, root).run();
}

bool Selector::canMatch() const
{
    // The sequence that may stand on the root of the tree is not asked there, so what is impossible
    // further left says nothing.
    return pseudoElement == 0 && sequences.getCount() != 0 && sequences.last()->canMatch();
}

std::uint32_t Selector::getSpecificity() const
{
    if (specificity != kUncomputed)
        return specificity;
    std::uint32_t sum = pseudoElement != 0 ? 1 : 0;
    for (const SimpleSelectorSequence* sequence : sequences)
        sum += sequence->getSpecificity();
    specificity = sum;
    return sum;
}

std::int32_t Selector::compareTo(const zorvan::Comparable& other) const
{
    const auto& selector = static_cast<const Selector&>(other);
    const std::uint32_t own = getSpecificity();
    const std::uint32_t others = selector.getSpecificity();
    if (own != others)
        return own < others ? -1 : 1;
    if (order == selector.order)
        return 0;
    return order < selector.order ? -1 : 1;
}
