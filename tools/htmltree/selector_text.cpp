#include "tools/htmltree/selector_text.h"

#include "style/selector.h"
#include "support/html_strings.h"
#include "tools/htmltree/tree_outline.h"

#include <iterator>

namespace htmltree {

namespace {

    /// A text of the sheet, whose bytes are characters.
    std::string nameText(const zorvan::String& name)
    {
        std::u16string units;
        for (std::int32_t i = 0; i < name.length; ++i)
            units += static_cast<char16_t>(static_cast<unsigned char>(name.data[i]));
        const std::string quoted = quotedText(units);
        return quoted.substr(1, quoted.size() - 2);
    }

    std::string attributeText(const AttributeSelector& selector)
    {
        static const char* const kOperators[] = {"", "", "=", "~=", "|=", "^=", "$=", "*="};
        std::string text = "[";
        text += selector.attributeId == ATTRIBUTE_NONE
            ? "?"
            : zorvan::HTMLStrings::attributeName(selector.attributeId);
        if (selector.comparison != OPERATOR_PRESENT)
            text += kOperators[selector.comparison] + ('"' + nameText(selector.value) + '"');
        return text + ']';
    }

    /// The names stand in the order of the kinds of tokens.
    std::string pseudoClassText(std::int32_t kind)
    {
        static const char* const kNames[]
            = {":lang()", ":nth-child()", ":nth-last-child()", ":nth-of-type()",
                ":nth-last-of-type()", ":link", ":visited", ":active", ":hover", ":focus",
                ":first-child", ":last-child", ":first-of-type", ":last-of-type", ":only-child",
                ":only-of-type", ":root", ":empty", ":target", ":enabled", ":disabled", ":checked"};
        static_assert(std::size(kNames) == CSS_CHECKED - CSS_LANG + 1);
        return kNames[kind - CSS_LANG];
    }

    std::string pseudoElementText(std::int32_t kind)
    {
        static const char* const kNames[]
            = {"::first-letter", "::first-line", "::before", "::after", "::selection"};
        static_assert(std::size(kNames) == CSS_SELECTION - CSS_FIRST_LETTER + 1);
        return kNames[kind - CSS_FIRST_LETTER];
    }

    std::string conditionText(const SimpleSelector& selector)
    {
        switch (selector.kind) {
        case SELECTOR_UNIVERSAL:
            return "*";

        case SELECTOR_ELEMENT:
            return nameText(static_cast<const ElementSelector&>(selector).name);

        case SELECTOR_ATTRIBUTE:
            return attributeText(static_cast<const AttributeSelector&>(selector));

        case SELECTOR_CLASS:
            return '.' + nameText(selector.value);

        case SELECTOR_ID:
            return '#' + nameText(selector.value);

        case SELECTOR_PSEUDO_CLASS:
            return pseudoClassText(static_cast<const PseudoClassSelector&>(selector).pseudoClass);
        }
        return {};
    }

    std::string sequenceText(const SimpleSelectorSequence& sequence)
    {
        std::string text;
        for (const SimpleSelector* selector : sequence.selectors) {
            const std::string condition = conditionText(*selector);
            text += selector->negated ? ":not(" + condition + ')' : condition;
        }
        return text.empty() ? "*" : text;
    }

} // namespace

std::string selectorText(const Selector& selector)
{
    static const char* const kCombinators[] = {"", " ", " > ", " + ", " ~ "};
    std::string text;
    for (const SimpleSelectorSequence* sequence : selector.sequences)
        text += kCombinators[sequence->combinator] + sequenceText(*sequence);
    if (selector.pseudoElement != 0)
        text += pseudoElementText(selector.pseudoElement);
    return text;
}

} // namespace htmltree
