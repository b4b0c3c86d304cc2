#include "tools/htmltree/tree_outline.h"

#include "style/css_declaration_list.h"
#include "support/css_strings.h"
#include "support/html_strings.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"

#include <charconv>
#include <cstdint>

namespace htmltree {

namespace {

    /// Why a name that has no text is shown by its number.
    std::string nameOr(const char* name, std::string_view what, std::uint32_t id)
    {
        if (*name != '\0')
            return name;
        return std::string(what) + '#' + std::to_string(id);
    }

    /// The shortest digits that give the number again, without an exponent.
    std::string digitsOf(float number)
    {
        char digits[64];
        const auto end
            = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed).ptr;
        return {digits, end};
    }

    std::string hexadecimal(std::uint32_t number, std::uint32_t places)
    {
        static constexpr std::string_view kDigits = "0123456789abcdef";
        std::string text;
        for (std::uint32_t shift = places * 4; shift != 0; shift -= 4)
            text += kDigits[number >> (shift - 4) & 0xF];
        return text;
    }

    /// As CSS writes it. A number beyond the 24 bits of a color stays a number.
    std::string colorText(std::uint32_t color)
    {
        if (color > 0xFFFFFF)
            return std::to_string(color);
        const std::uint32_t redFirst
            = (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
        return '#' + hexadecimal(redFirst, 6);
    }

    std::string unitsText(ZVLinearUnits units)
    {
        switch (units) {
        case UNITS_EM:
            return "em";

        case UNITS_EX:
            return "ex";

        case UNITS_INCHES:
            return "in";

        case UNITS_CENTIMETERS:
            return "cm";

        case UNITS_MILLIMETERS:
            return "mm";

        case UNITS_PICAS:
            return "pc";

        case UNITS_PERCENT:
            return "%";

        case UNITS_PIXELS:
            return "px";

        case UNITS_POINTS:
            return "pt";

        case UNITS_NONE:
            break;
        }
        return "units#" + std::to_string(units);
    }

    /// A value of any kind: the name of the kind, and what the value is.
    struct ValueParts {
        const char* kind;
        std::string text;
    };

    ValueParts partsOf(const HtmlValue* value)
    {
        if (const auto* text = HtmlWStringValue::from(value))
            return {"string", quotedText({text->text, text->length})};
        if (const auto* percent = HtmlPercentValue::from(value))
            return {"percent", digitsOf(percent->number)};
        if (const auto* number = HtmlNumberValue::from(value))
            return {"number", digitsOf(number->number)};
        if (const auto* color = HtmlColorValue::from(value))
            return {"color", colorText(color->color)};
        if (const auto* keyword = HtmlCssKeywordValue::from(value))
            return {"keyword",
                nameOr(zorvan::CSSStrings::valueName(keyword->keyword), "", keyword->keyword)};
        if (const auto* enumerator = HtmlEnumValue::from(value))
            return {"enum", std::to_string(enumerator->enumerator)};
        if (const auto* length = HtmlLengthValue::from(value))
            return {"length", digitsOf(length->length.value) + unitsText(length->length.units)};
        return {"", "null"};
    }

    /// A value as a style sheet would have it, where that tells what it is.
    std::string cssText(const HtmlValue* value)
    {
        const ValueParts parts = partsOf(value);
        if (HtmlPercentValue::from(value) != nullptr)
            return parts.text + '%';
        // A position in a list of names would look like a number.
        if (HtmlEnumValue::from(value) != nullptr)
            return "enum:" + parts.text;
        return parts.text;
    }

    void appendIndent(std::string& outline, std::size_t depth)
    {
        if (depth <= kDeepestIndent)
            outline.append(depth * 2, ' ');
        else
            outline += "[level " + std::to_string(depth) + "] ";
    }

    /// Calls visit(node, depth) for all nodes below a node, in their order.
    template <typename Visit> void visitBelow(const HtmlTreeNode& top, Visit visit)
    {
        std::size_t depth = 0;
        const HtmlTreeNode* node = top.firstChild;
        while (node != nullptr) {
            visit(*node, depth);
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
    }

} // namespace

std::string quotedText(std::u16string_view text)
{
    std::string quoted = "\"";
    for (const char16_t unit : text) {
        if (unit >= 0x20 && unit <= 0x7E && unit != u'"' && unit != u'\\')
            quoted += static_cast<char>(unit);
        else
            quoted += "\\u" + hexadecimal(unit, 4);
    }
    return quoted + '"';
}

std::string valueText(const HtmlValue* value)
{
    const ValueParts parts = partsOf(value);
    if (value == nullptr || value->kind == KIND_STRING)
        return parts.text;
    return std::string(parts.kind) + ':' + parts.text;
}

std::string valuesText(const CssDeclaration& declaration)
{
    std::string text;
    const std::int32_t count = declaration.getValueCount();
    if (count == 0)
        text += "null";
    for (std::int32_t index = 0; index < count; ++index) {
        if (index != 0)
            text += ", ";
        text += cssText(declaration.getValueAt(index));
    }
    if (declaration.important)
        text += " !important";
    return text;
}

std::string propertyText(ZVCSSProperty property)
{
    return nameOr(zorvan::CSSStrings::propertyName(property), "property", property);
}

std::string declarationsText(const CssDeclarationList* declarations)
{
    std::string text;
    if (declarations == nullptr)
        return text;
    declarations->forEach([&text](ZVCSSProperty property, const CssDeclaration* declaration) {
        if (!text.empty())
            text += "; ";
        text += propertyText(property) + ": " + valuesText(*declaration);
    });
    return text;
}

std::string nodeText(const HtmlTreeNode& node)
{
    if (elementOf(node) == ELEMENT_NONE) {
        const auto& text = static_cast<const HtmlTextNodeData&>(*node.data);
        return quotedText({text.text, text.length});
    }
    const auto& element = static_cast<const HtmlTagNodeData&>(*node.data);
    std::string line
        = nameOr(zorvan::HTMLStrings::elementName(element.elementId), "element", element.elementId);
    for (const auto* link = element.attributes.head; link != nullptr; link = link->next) {
        const HtmlAttribute& attribute = *link->value;
        line += ' ';
        line += nameOr(
            zorvan::HTMLStrings::attributeName(attribute.key), "attribute", attribute.key);
        line += '=';
        line += valueText(attribute.value);
    }
    return line;
}

std::string outlineOf(const HtmlTreeNode& top, Declarations declarations)
{
    std::string outline;
    visitBelow(top, [&](const HtmlTreeNode& node, std::size_t depth) {
        appendIndent(outline, depth);
        outline += nodeText(node);
        if (declarations == Declarations::Shown) {
            const std::string text = declarationsText(node.data->getDeclarations());
            if (!text.empty())
                outline += " -> " + text;
        }
        outline += '\n';
    });
    return outline;
}

std::string outlineOf(const HtmlTreeNode& top, const Notes& notes)
{
    std::string outline;
    visitBelow(top, [&](const HtmlTreeNode& node, std::size_t depth) {
        appendIndent(outline, depth);
        outline += nodeText(node) + '\n';
        if (elementOf(node) == ELEMENT_NONE)
            return;
        for (const std::string& note : notes(node)) {
            appendIndent(outline, depth + 1);
            outline += "-> " + note + '\n';
        }
    });
    return outline;
}

std::string shortOutlineOf(const HtmlTreeNode& top)
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

} // namespace htmltree
