#pragma once

#include "scanner/markup_scanner.h"
#include "style/css_declaration_list.h"
#include "support/css_strings.h"
#include "support/html_strings.h"
#include "tests/common/tree_context.h"
#include "tree/element_attributes.h"
#include "tree/html_node_data.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace testing_support {

/// A tag that has just been scanned, and a payload of its element with a list of its own: what the
/// attributes of the tag make of them, without any other style.
class TagReading {
public:
    explicit TagReading(std::string_view markup, std::uint16_t charSet = 0x9000,
        std::uint32_t bufferSize = 2'048, std::uint16_t unicodeBomMode = 0)
        : tree(markup, charSet, bufferSize)
        , context(tree.context)
        , list(&tree.values)
    {
        context.unicodeBomMode = unicodeBomMode;
        Token token;
        Scan(token, context.tokenBuffer, kTokenLimit, context);
        const auto element = static_cast<ZVHTMLElement>(token.element);
        if (element == ELEMENT_IMG)
            payload = std::make_unique<HtmlImgNodeData>();
        else
            payload = std::make_unique<HtmlTagNodeData>(element);
        payload->declarations = &list;
    }

    void apply() { ApplyElementAttributes(payload.get(), context); }

    /// Attributes and declarations, these sorted by property: `a=kind:value b="text" | c:
    /// kind:value; d: kind:value`. What there is none of is left out with its mark.
    std::string text() const
    {
        const std::string attributes = attributesText();
        const std::string declarations = declarationsText();
        if (declarations.empty())
            return attributes;
        return attributes + (attributes.empty() ? "| " : " | ") + declarations;
    }

    std::string attributesText() const
    {
        std::string text;
        for (const auto* link = payload->attributes.head; link != nullptr; link = link->next) {
            text += text.empty() ? "" : " ";
            text += zorvan::HTMLStrings::attributeName(link->value->key);
            text += '=' + valueText(link->value->value);
        }
        return text;
    }

    std::string declarationsText() const
    {
        std::string text;
        for (std::uint32_t id = 1; id <= PROPERTY_ZOOM; ++id) {
            const auto property = static_cast<ZVCSSProperty>(id);
            if (!list.contains(property))
                continue;
            text += text.empty() ? "" : "; ";
            text += zorvan::CSSStrings::propertyName(property);
            text += ": " + valueText(list.findValue(property));
        }
        return text;
    }

    TreeContext tree;
    HtmlFilterContext& context;
    CssDeclarationList list;
    std::unique_ptr<HtmlTagNodeData> payload;
};

/// What the attributes of a tag make, as TagReading::text tells it.
inline std::string appliedTo(const std::string& tag)
{
    TagReading reading(tag + "x");
    reading.apply();
    return reading.text();
}

/// All twelve declarations of borders, as TagReading tells them.
inline std::string borderText(const std::string& color, const std::string& width)
{
    std::string text;
    for (const char* const side : {"bottom", "left", "right", "top"}) {
        const std::string name = std::string("border-") + side;
        text += text.empty() ? "" : "; ";
        text += name + "-color: " + color + "; " + name + "-style: keyword:solid; " + name
            + "-width: " + width;
    }
    return text;
}

/// The same for one of the three properties of each side: "color", "style" or "width".
inline std::string sidesText(const std::string& what, const std::string& value)
{
    std::string text;
    for (const char* const side : {"bottom", "left", "right", "top"}) {
        text += text.empty() ? "" : "; ";
        text += std::string("border-") + side + '-' + what + ": " + value;
    }
    return text;
}

} // namespace testing_support
