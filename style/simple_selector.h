#pragma once

#include "style/css_token.h"
#include "support/html_names.h"
#include "support/zv_string.h"
#include "tree/html_tree.h"

#include <cstdint>

/// Kinds of simple selectors.
enum SimpleSelectorKind : std::int32_t {
    SELECTOR_UNIVERSAL = 1,
    SELECTOR_ELEMENT,
    SELECTOR_ATTRIBUTE,
    SELECTOR_CLASS,
    SELECTOR_ID,
    SELECTOR_PSEUDO_CLASS,
};

/// What an attribute selector asks of the value.
enum AttributeOperator : std::int32_t {
    OPERATOR_PRESENT = 1,
    OPERATOR_EQUALS, ///< =
    OPERATOR_INCLUDES, ///< ~=
    OPERATOR_DASH_MATCH, ///< |=
    OPERATOR_PREFIX, ///< ^=
    OPERATOR_SUFFIX, ///< $=
    OPERATOR_SUBSTRING, ///< *=
};

/// One condition on a node. Of its own: everything, a class or an id.
class SimpleSelector {
public:
    /// text: the class or the id, as it stands in the sheet; copied.
    SimpleSelector(SimpleSelectorKind selectorKind, const char* text, std::uint32_t length);

    SimpleSelector(const SimpleSelector&) = delete;
    SimpleSelector& operator=(const SimpleSelector&) = delete;
    virtual ~SimpleSelector();

    virtual std::uint32_t getSpecificity() const;

    /// Whether a node, which may be a text, meets the condition.
    virtual bool matches(const HtmlTreeNode& node) const;

    /// Whether any element at all, which a text is not, can meet the condition.
    virtual bool canMatch() const;

    bool negated = false; ///< the argument of :not(
    const SimpleSelectorKind kind;
    zorvan::String value; ///< class, id, or value of an attribute selector
};

class ElementSelector : public SimpleSelector {
public:
    ElementSelector(const char* text, std::uint32_t length);

    std::uint32_t getSpecificity() const override;
    bool matches(const HtmlTreeNode& node) const override;
    bool canMatch() const override;

    const ZVHTMLElement elementId; ///< 0 for a name that is no element's
    zorvan::String name; ///< as written
};

class AttributeSelector : public SimpleSelector {
public:
    /// name: of the attribute, in any case. text: the value that is asked for.
    AttributeSelector(const CssToken& name, AttributeOperator attributeOperator, const char* text,
        std::uint32_t length);

    std::uint32_t getSpecificity() const override;
    bool matches(const HtmlTreeNode& node) const override;
    bool canMatch() const override;

    const AttributeOperator comparison;
    const ZVHTMLAttribute attributeId; ///< class, dir, id or lang; 0 for every other name
};

class PseudoClassSelector : public SimpleSelector {
public:
    /// tokenKind: CSS_LANG to CSS_CHECKED.
    explicit PseudoClassSelector(std::int32_t tokenKind);

    std::uint32_t getSpecificity() const override;
    bool matches(const HtmlTreeNode& node) const override;
    bool canMatch() const override;

    const std::int32_t pseudoClass;
};
