#pragma once

#include "style/css_tokenizer.h"
#include "style/selector.h"
#include "style/selector_reader.h"
#include "tests/style/css_tokens.h"
#include "tree/html_node_data.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// A selector as the reader makes it of a text, with what the reader has left of the text.
class ReadSelector {
public:
    explicit ReadSelector(std::string_view text, std::int32_t order = 1)
        : selector(order)
    {
        setCssInput(tokens_, text);
        isError = readSelector(selector, tokens_);
        for (OwnedCssToken token = nextCssToken(tokens_); token.kind != CSS_END;
             token = nextCssToken(tokens_))
            rest += token.text;
    }

    Selector selector;
    bool isError = false;
    std::string rest;

private:
    CssTokenizer tokens_;
};

inline std::string charactersOf(const zorvan::String& text)
{
    return text.length == 0 ? "" : std::string(text.data, static_cast<std::size_t>(text.length));
}

/// A condition as a sheet may write it, "?" behind an unknown element's name, attributes and
/// pseudo-classes by their numbers.
inline std::string conditionText(const SimpleSelector& selector)
{
    static const char* const kOperators[] = {"", "", "=", "~=", "|=", "^=", "$=", "*="};
    std::string text;
    switch (selector.kind) {
    case SELECTOR_UNIVERSAL:
        text = "*";
        break;
    case SELECTOR_ELEMENT: {
        const auto& element = static_cast<const ElementSelector&>(selector);
        text = charactersOf(element.name) + (element.elementId == ELEMENT_NONE ? "?" : "");
        break;
    }
    case SELECTOR_ATTRIBUTE: {
        const auto& attribute = static_cast<const AttributeSelector&>(selector);
        text = '[' + std::to_string(attribute.attributeId) + kOperators[attribute.comparison]
            + charactersOf(selector.value) + ']';
        break;
    }
    case SELECTOR_CLASS:
        text = '.' + charactersOf(selector.value);
        break;
    case SELECTOR_ID:
        text = '#' + charactersOf(selector.value);
        break;
    case SELECTOR_PSEUDO_CLASS:
        text = ':' + std::to_string(static_cast<const PseudoClassSelector&>(selector).pseudoClass);
        break;
    }
    return selector.negated ? "not(" + text + ')' : text;
}

/// A selector: each sequence in braces behind its combinator, "u" in the brace while no element's
/// name has been seen; the kind of a pseudo-element behind "::".
inline std::string selectorText(const Selector& selector)
{
    static const char* const kCombinators[] = {"", " ", ">", "+", "~"};
    std::string text;
    for (const SimpleSelectorSequence* sequence : selector.sequences) {
        text += kCombinators[sequence->combinator];
        text += sequence->universal ? "{u" : "{";
        for (const SimpleSelector* condition : sequence->selectors)
            text += ' ' + conditionText(*condition);
        text += '}';
    }
    if (selector.pseudoElement != 0)
        text += "::" + std::to_string(selector.pseudoElement);
    return text;
}

/// A tree to match selectors in.
class SelectorTree {
public:
    SelectorTree() = default;
    SelectorTree(const SelectorTree&) = delete;
    SelectorTree& operator=(const SelectorTree&) = delete;

    ~SelectorTree()
    {
        for (HtmlTreeNode* node = tree.root(); node != nullptr;
             node = nextInDocumentOrder(node, tree.root())) {
            if (node->data != nullptr)
                node->data->~HtmlGenericNodeData();
        }
    }

    /// parent: null for the root.
    HtmlTreeNode& add(ZVHTMLElement element, HtmlTreeNode* parent = nullptr)
    {
        auto* payload = new (tree.allocate(sizeof(HtmlTagNodeData), alignof(HtmlTagNodeData)))
            HtmlTagNodeData(element);
        return *tree.createNode(payload, parent != nullptr ? parent : tree.root());
    }

    HtmlTreeNode& addText(HtmlTreeNode* parent = nullptr)
    {
        auto* payload = new (tree.allocate(sizeof(HtmlTextNodeData), alignof(HtmlTextNodeData)))
            HtmlTextNodeData();
        return *tree.createNode(payload, parent != nullptr ? parent : tree.root());
    }

    void set(HtmlTreeNode& node, ZVHTMLAttribute id, std::u16string_view text)
    {
        set(node, id, values.stringValue(text.data(), static_cast<std::uint32_t>(text.size())));
    }
    static void set(HtmlTreeNode& node, ZVHTMLAttribute id, HtmlValue* value)
    {
        static_cast<HtmlTagNodeData&>(*node.data).setAttribute(id, value);
    }

    HtmlTreeNode* root() { return tree.root(); }

    ValueCache values;
    HtmlTree tree;
};

/// Whether a selector, which must be read to its end, means a node.
inline bool selects(std::string_view text, const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    const ReadSelector read(std::string(text) + '{');
    return !read.isError && read.rest == "{" && read.selector.matches(node, root);
}

} // namespace testing_support
