#pragma once

#include "support/html_strings.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace testing_support {

/// A text in quotes: U+0020 to U+007E stand as they are but for quote and backslash, all others as
/// \uXXXX.
inline std::string quotedText(std::u16string_view text)
{
    static constexpr std::string_view kDigits = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char16_t unit : text) {
        if (unit >= 0x20 && unit <= 0x7E && unit != u'"' && unit != u'\\') {
            quoted += static_cast<char>(unit);
            continue;
        }
        quoted += "\\u";
        for (std::uint32_t shift = 16; shift != 0; shift -= 4)
            quoted += kDigits[static_cast<std::uint32_t>(unit) >> (shift - 4) & 0xF];
    }
    return quoted + '"';
}

/// A value of an attribute: a text in quotes, any other as its kind, a colon and its number.
inline std::string valueText(const HtmlValue* value)
{
    if (const auto* text = HtmlWStringValue::from(value))
        return quotedText({text->text, text->length});
    if (const auto* percent = HtmlPercentValue::from(value))
        return "percent:" + std::to_string(percent->number);
    if (const auto* number = HtmlNumberValue::from(value))
        return "number:" + std::to_string(number->number);
    if (const auto* color = HtmlColorValue::from(value))
        return "color:" + std::to_string(color->color);
    if (const auto* keyword = HtmlCssKeywordValue::from(value))
        return "keyword:" + std::to_string(keyword->keyword);
    if (const auto* enumerator = HtmlEnumValue::from(value))
        return "enum:" + std::to_string(enumerator->enumerator);
    if (const auto* length = HtmlLengthValue::from(value))
        return "pixels:" + std::to_string(length->pixels());
    return "null";
}

/// A node on a line of its own: a text in quotes, or an element with its attributes.
inline std::string nodeText(const HtmlTreeNode& node)
{
    if (elementOf(node) == ELEMENT_NONE) {
        const auto& text = static_cast<const HtmlTextNodeData&>(*node.data);
        return quotedText({text.text, text.length});
    }
    const auto& element = static_cast<const HtmlTagNodeData&>(*node.data);
    std::string line = zorvan::HTMLStrings::elementName(element.elementId);
    for (const auto* link = element.attributes.head; link != nullptr; link = link->next) {
        line += ' ';
        line += zorvan::HTMLStrings::attributeName(link->value->key);
        line += '=';
        line += valueText(link->value->value);
    }
    return line;
}

/// What is below a node, one line for each node, indented by two blanks for each level.
inline std::string outlineOf(const HtmlTreeNode& top)
{
    std::string outline;
    std::size_t depth = 0;
    const HtmlTreeNode* node = top.firstChild;
    while (node != nullptr) {
        outline.append(depth * 2, ' ');
        outline += nodeText(*node) + '\n';
        if (node->firstChild != nullptr) {
            node = node->firstChild;
            ++depth;
            continue;
        }
        while (node != &top && node->nextSibling == nullptr) {
            node = node->parent;
            --depth;
        }
        node = node == &top ? nullptr : node->nextSibling;
    }
    return outline;
}

/// What is below a node, on one line: children stand in brackets, attributes are left out.
inline std::string shortOutlineOf(const HtmlTreeNode& top)
{
    std::string outline;
    const HtmlTreeNode* node = top.firstChild;
    while (node != nullptr) {
        outline += elementOf(*node) == ELEMENT_NONE
            ? nodeText(*node)
            : zorvan::HTMLStrings::elementName(elementOf(*node));
        if (node->firstChild != nullptr) {
            outline += '[';
            node = node->firstChild;
            continue;
        }
        while (node != &top && node->nextSibling == nullptr) {
            node = node->parent;
            if (node != &top)
                outline += ']';
        }
        if (node == &top)
            break;
        outline += ' ';
        node = node->nextSibling;
    }
    return outline;
}

} // namespace testing_support
