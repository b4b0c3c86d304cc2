#include "style/simple_selector.h"

#include "style/text_lookup.h"
#include "support/html_strings.h"
#include "support/text_search.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::uint32_t kElementSpecificity = 1;
constexpr std::uint32_t kClassSpecificity = 256;
constexpr std::uint32_t kIdSpecificity = 65'536;

/// A stretch of the text of an attribute.
using Units = std::u16string_view;

bool isSpace(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\f' || unit == u'\r';
}

/// Whether units are the characters of a text, one by one.
bool equals(Units units, const zorvan::String& text)
{
    if (units.size() != static_cast<std::size_t>(text.length))
        return false;
    return std::equal(units.begin(), units.end(), text.data,
        [](char16_t unit, char character) { return unit == zorvan::characterNumber(character); });
}

bool beginsWith(Units units, const zorvan::String& text)
{
    const auto length = static_cast<std::size_t>(text.length);
    return units.size() >= length && equals(units.substr(0, length), text);
}

bool endsWith(Units units, const zorvan::String& text)
{
    const auto length = static_cast<std::size_t>(text.length);
    return units.size() >= length && equals(units.substr(units.size() - length), text);
}

bool contains(Units units, const zorvan::String& text)
{
    const auto isSame
        = [](char16_t unit, char character) { return unit == zorvan::characterNumber(character); };
    const char* const end = text.data + text.length;
    return text.length == 0
        || std::search(units.begin(), units.end(), text.data, end, isSame) != units.end();
}

/// Whether one of the words that units are made of is a text.
bool hasWord(Units units, const zorvan::String& text)
{
    const char16_t* const end = units.data() + units.size();
    const char16_t* position = units.data();
    while (true) {
        const char16_t* const word = std::find_if_not(position, end, isSpace);
        if (word == end)
            return false;
        position = std::find_if(word, end, isSpace);
        if (equals(Units(word, static_cast<std::size_t>(position - word)), text))
            return true;
    }
}

/// The attribute of a node; null when there is none, as in a text.
const HtmlValue* attributeOf(const HtmlTreeNode& node, ZVHTMLAttribute id)
{
    const HtmlGenericNodeData* const data = node.data;
    if (data == nullptr || data->elementId == ELEMENT_NONE)
        return nullptr;
    return static_cast<const HtmlTagNodeData&>(*data).findAttribute(id);
}

/// The text of an attribute; null when the node has none or it is no text.
const HtmlWStringValue* textOf(const HtmlTreeNode& node, ZVHTMLAttribute id)
{
    return HtmlWStringValue::from(attributeOf(node, id));
}

Units unitsOf(const HtmlWStringValue& text) { return {text.text, text.length}; }

/// The attributes that a selector can ask for.
ZVHTMLAttribute attributeIdOf(const CssToken& name)
{
    if (equalsName(name.text, name.length, "class"))
        return ATTRIBUTE_CLASS;
    if (equalsName(name.text, name.length, "dir"))
        return ATTRIBUTE_DIR;
    if (equalsName(name.text, name.length, "id"))
        return ATTRIBUTE_ID;
    if (equalsName(name.text, name.length, "lang"))
        return ATTRIBUTE_LANG;
    return ATTRIBUTE_NONE;
}

ZVHTMLElement elementIdOf(const char* text, std::uint32_t length)
{
    const LowerCaseName name(text, length);
    return zorvan::HTMLStrings::elementFromText(name.text, name.length);
}

bool isFirstOfType(const HtmlTreeNode& node)
{
    // Of each element only the first one among its siblings makes the way to the beginning, so all
    // of them together cost as many steps as there are siblings, for each element that exists.
    const std::uint32_t element = elementOf(node);
    const HtmlTreeNode* sibling = node.prevSibling;
    while (sibling != nullptr && elementOf(*sibling) != element)
        sibling = sibling->prevSibling;
    return sibling == nullptr;
}

} // namespace

SimpleSelector::SimpleSelector(
    SimpleSelectorKind selectorKind, const char* text, std::uint32_t length)
    : kind(selectorKind)
{
    value.append(text, static_cast<std::int32_t>(length));
}

SimpleSelector::~SimpleSelector() = default;

std::uint32_t SimpleSelector::getSpecificity() const
{
    switch (kind) {
    case SELECTOR_ELEMENT:
        return kElementSpecificity;
    case SELECTOR_ATTRIBUTE:
    case SELECTOR_CLASS:
    case SELECTOR_PSEUDO_CLASS:
        return kClassSpecificity;
    case SELECTOR_ID:
        return kIdSpecificity;
    case SELECTOR_UNIVERSAL:
        break;
    }
    return 0;
}

bool SimpleSelector::matches(const HtmlTreeNode& node) const
{
    // QUIRK(SimpleSelector.NegatedClassIdAndStarMatchNothing): only an element's name can be
    // negated.
    if (negated)
        return false;
    if (kind == SELECTOR_UNIVERSAL)
        return true;
    if (kind != SELECTOR_CLASS && kind != SELECTOR_ID)
        return false;
    const HtmlWStringValue* const text
        = textOf(node, kind == SELECTOR_CLASS ? ATTRIBUTE_CLASS : ATTRIBUTE_ID);
    if (text == nullptr)
        return false;
    return kind == SELECTOR_CLASS ? hasWord(unitsOf(*text), value) : equals(unitsOf(*text), value);
}

bool SimpleSelector::canMatch() const { return !negated; }

ElementSelector::ElementSelector(const char* text, std::uint32_t length)
    : SimpleSelector(SELECTOR_ELEMENT, nullptr, 0)
    , elementId(elementIdOf(text, length))
{
    name.append(text, static_cast<std::int32_t>(length));
}

std::uint32_t ElementSelector::getSpecificity() const { return kElementSpecificity; }

bool ElementSelector::matches(const HtmlTreeNode& node) const
{
    if (node.data == nullptr)
        return negated;
    // QUIRK(ElementSelector.UnknownNameIsThatOfATextNode): both have the number 0.
    return (node.data->elementId == elementId) != negated;
}

bool ElementSelector::canMatch() const { return negated || elementId != ELEMENT_NONE; }

AttributeSelector::AttributeSelector(const CssToken& attributeName,
    AttributeOperator attributeOperator, const char* text, std::uint32_t length)
    : SimpleSelector(SELECTOR_ATTRIBUTE, text, length)
    , comparison(attributeOperator)
    , attributeId(attributeIdOf(attributeName))
{
}

std::uint32_t AttributeSelector::getSpecificity() const { return kClassSpecificity; }

bool AttributeSelector::matches(const HtmlTreeNode& node) const
{
    if (!canMatch())
        return false;
    if (comparison == OPERATOR_PRESENT)
        return attributeOf(node, attributeId) != nullptr;
    const HtmlWStringValue* const text = textOf(node, attributeId);
    if (text == nullptr)
        return false;
    const Units units = unitsOf(*text);
    switch (comparison) {
    case OPERATOR_EQUALS:
        return equals(units, value);
    case OPERATOR_INCLUDES:
        return hasWord(units, value);
    case OPERATOR_DASH_MATCH: {
        const auto length = static_cast<std::size_t>(value.length);
        return beginsWith(units, value) && (units.size() == length || units[length] == u'-');
    }
    case OPERATOR_PREFIX:
        return beginsWith(units, value);
    case OPERATOR_SUFFIX:
        return endsWith(units, value);
    case OPERATOR_SUBSTRING:
        return contains(units, value);
    case OPERATOR_PRESENT:
        break;
    }
    return false;
}

bool AttributeSelector::canMatch() const { return !negated && attributeId != ATTRIBUTE_NONE; }

PseudoClassSelector::PseudoClassSelector(std::int32_t tokenKind)
    : SimpleSelector(SELECTOR_PSEUDO_CLASS, nullptr, 0)
    , pseudoClass(tokenKind)
{
}

std::uint32_t PseudoClassSelector::getSpecificity() const { return kClassSpecificity; }

bool PseudoClassSelector::matches(const HtmlTreeNode& node) const
{
    if (negated)
        return false;
    switch (pseudoClass) {
    case CSS_LINK:
        return elementOf(node) == ELEMENT_A && attributeOf(node, ATTRIBUTE_HREF) != nullptr;
    case CSS_FIRST_CHILD:
        // QUIRK(PseudoClassSelector.TextInFrontIsASibling): white space in front of the first
        // element makes it the second child.
        return node.prevSibling == nullptr;
    case CSS_FIRST_OF_TYPE:
        return isFirstOfType(node);
    case CSS_ROOT:
        return elementOf(node) == ELEMENT_HTML;
    default:
        // What hangs on the user or on what is still to come is no.
        return false;
    }
}

bool PseudoClassSelector::canMatch() const
{
    if (negated)
        return false;
    switch (pseudoClass) {
    case CSS_LINK:
    case CSS_FIRST_CHILD:
    case CSS_FIRST_OF_TYPE:
    case CSS_ROOT:
        return true;
    default:
        return false;
    }
}
