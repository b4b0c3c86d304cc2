#pragma once

#include "support/html_strings.h"
#include "tests/style/style_document.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace testing_support {

inline std::u16string unitsOf(std::string_view text)
{
    std::u16string units;
    for (const char byte : text)
        units += static_cast<char16_t>(static_cast<std::uint8_t>(byte));
    return units;
}

/// A document whose sheet comes from texts.
class SheetDocument : public StyleDocument {
public:
    SheetDocument() = default;
    explicit SheetDocument(std::string_view text) { parse(text); }

    void parse(std::string_view text)
    {
        const std::u16string units = unitsOf(text);
        sheet.parseStyleSheet(units.data(), static_cast<std::uint32_t>(units.size()));
    }

    /// What the rules alone declare for a new element right below the root.
    Declarations rulesFor(const char* element, std::u16string_view classes = {})
    {
        HtmlTreeNode& node = add(zorvan::HTMLStrings::elementFromString(element));
        if (!classes.empty())
            setText(node, ATTRIBUTE_CLASS, classes);
        CssDeclarationList declared(&values);
        const auto& matched = sheet.findMatches(node, tree.root());
        for (std::int32_t i = matched.getCount() - 1; i >= 0; --i)
            declared.merge(*matched.get(i)->declarations, /*copy=*/true);
        return declarationsIn(declared);
    }

    /// What a text declares as a style attribute.
    Declarations attribute(std::string_view text)
    {
        const std::u16string units = unitsOf(text);
        CssDeclarationList list(&values);
        sheet.parseStyleAttribute(units.data(), static_cast<std::uint32_t>(units.size()), list);
        return declarationsIn(list);
    }

    void setText(HtmlTreeNode& node, ZVHTMLAttribute id, std::u16string_view text)
    {
        tag(node).setAttribute(
            id, values.stringValue(text.data(), static_cast<std::uint32_t>(text.size())));
    }

    /// A new element with a class and a style attribute, empty for none, cascaded.
    HtmlTreeNode& cascaded(ZVHTMLElement element, std::string_view classes, std::string_view style,
        HtmlTreeNode* parent = nullptr)
    {
        HtmlTreeNode& node = add(element, parent);
        if (!classes.empty())
            setText(node, ATTRIBUTE_CLASS, unitsOf(classes));
        if (!style.empty())
            setText(node, ATTRIBUTE_STYLE, unitsOf(style));
        cascadeOnly(node);
        return node;
    }
};

} // namespace testing_support
