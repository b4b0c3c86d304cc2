#pragma once

#include "style/selector.h"
#include "tree/html_tree.h"

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace testing_support {

/// Whether a selector means a node, tried step by step and way by way, however many there are. What
/// Selector::matches must answer.
bool plainMatches(const Selector& selector, const HtmlTreeNode* node, const HtmlTreeNode* root);

/// Random selectors of elements, classes, ids, pseudo-classes and empty sequences.
class SelectorWriter {
public:
    explicit SelectorWriter(std::uint32_t seed)
        : random_(seed)
    {
    }

    /// A selector of at most that many sequences, as it stands in a sheet.
    std::string selector(std::uint32_t mostSequences);

    std::uint32_t below(std::uint32_t bound)
    {
        return static_cast<std::uint32_t>(random_()) % bound;
    }

private:
    std::string sequence();
    std::string condition();
    std::string combinator();

    std::mt19937 random_;
};

} // namespace testing_support
