#include "tests/style/plain_selector.h"

namespace testing_support {

namespace {

    bool matchesFrom(const Selector& selector, std::int32_t i, const HtmlTreeNode* node,
        const HtmlTreeNode* root, bool matched);

    bool matchesAncestor(const Selector& selector, std::int32_t i, const HtmlTreeNode* node,
        const HtmlTreeNode* root)
    {
        while (node != root) {
            node = node->parent;
            if (matchesFrom(selector, i - 1, node, root, /*matched=*/false))
                return true;
        }
        return false;
    }

    bool matchesSibling(const Selector& selector, std::int32_t i, const HtmlTreeNode* node,
        const HtmlTreeNode* root)
    {
        while (node != nullptr) {
            node = node->prevSibling;
            if (matchesFrom(selector, i - 1, node, root, /*matched=*/false))
                return true;
        }
        return false;
    }

    bool matchesFrom(const Selector& selector, std::int32_t i, const HtmlTreeNode* node,
        const HtmlTreeNode* root, bool matched)
    {
        while (true) {
            const SimpleSelectorSequence& sequence = *selector.sequences.get(i);
            if (node != nullptr && node != root)
                matched = sequence.matches(*node);
            if (i == 0 || !matched)
                return matched;
            switch (sequence.combinator) {
            case COMBINATOR_NONE:
                return matched;
            case COMBINATOR_DESCENDANT:
                return matchesAncestor(selector, i, node, root);
            case COMBINATOR_GENERAL_SIBLING:
                return matchesSibling(selector, i, node, root);
            case COMBINATOR_CHILD:
                node = node->parent;
                break;
            case COMBINATOR_ADJACENT_SIBLING:
                node = node->prevSibling;
                break;
            }
            if (node == nullptr)
                return false;
            --i;
        }
    }

} // namespace

bool plainMatches(const Selector& selector, const HtmlTreeNode* node, const HtmlTreeNode* root)
{
    if (selector.pseudoElement != 0)
        return false;
    return matchesFrom(selector, selector.sequences.getCount() - 1, node, root, /*matched=*/false);
}

std::string SelectorWriter::selector(std::uint32_t mostSequences)
{
    std::string text = sequence();
    for (std::uint32_t more = below(mostSequences); more > 0; --more)
        text += combinator() + sequence();
    return text;
}

std::string SelectorWriter::combinator()
{
    static const char* const kCombinators[] = {" ", " ", " ", ">", ">", "+", "~", " > + "};
    return kCombinators[below(8)];
}

std::string SelectorWriter::sequence()
{
    static const char* const kElements[] = {"a", "b", "p", "div", "nosuchname"};
    std::string text = below(4) == 0 ? "*" : "";
    if (text.empty() && below(3) != 0)
        text = kElements[below(5)];
    else if (text.empty())
        text = condition();
    while (below(4) == 0)
        text += condition();
    return text;
}

std::string SelectorWriter::condition()
{
    static const char* const kConditions[] = {".x", ".y", ".z", "#x", ":first-child",
        ":first-of-type", ":root", ":not(a)", ":not(nosuchname)", "[class]", "[class~=y]"};
    return kConditions[below(11)];
}

} // namespace testing_support
