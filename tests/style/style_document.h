#pragma once

#include "containers/array_list.h"
#include "filter/filter_internals.h"
#include "filter/html_filter_context.h"
#include "style/cascade.h"
#include "style/css_declaration_list.h"
#include "style/style_sheet.h"
#include "support/css_strings.h"
#include "support/wstring.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// The text of a value: "keyword 72", "11px", "0.67em", "50%", "number 3", "color ff", "\"Arial\"".
inline std::string textOf(const HtmlValue* value)
{
    if (value == nullptr)
        return "null";
    char text[64] = "";
    switch (value->kind) {
    case KIND_PERCENT:
        std::snprintf(
            text, sizeof text, "%g%%", double{static_cast<const HtmlPercentValue*>(value)->number});
        return text;
    case KIND_NUMBER:
        std::snprintf(text, sizeof text, "number %g",
            double{static_cast<const HtmlNumberValue*>(value)->number});
        return text;
    case KIND_STRING: {
        std::string quoted = "\"";
        const auto* string = static_cast<const HtmlWStringValue*>(value);
        for (std::uint32_t i = 0; i < string->length; ++i)
            quoted += static_cast<char>(string->text[i]);
        return quoted + '"';
    }
    case KIND_COLOR:
        std::snprintf(
            text, sizeof text, "color %x", static_cast<const HtmlColorValue*>(value)->color);
        return text;
    case KIND_KEYWORD:
        return "keyword " + std::to_string(static_cast<const HtmlCssKeywordValue*>(value)->keyword);
    case KIND_LENGTH: {
        const zorvan::Length& length = static_cast<const HtmlLengthValue*>(value)->length;
        const char* unit = length.units == UNITS_EM ? "em"
            : length.units == UNITS_EX              ? "ex"
            : length.units == UNITS_PIXELS          ? "px"
                                                    : "?";
        std::snprintf(text, sizeof text, "%g%s", double{length.value}, unit);
        return text;
    }
    default:
        return "?";
    }
}

/// What textOf gives for a value as a table writes it: keywords by name, the rest as it stands.
inline std::string expectedText(const std::string& written)
{
    const ZVCSSValue keyword
        = static_cast<ZVCSSValue>(zorvan::CSSStrings::valueFromString(written.c_str()));
    return keyword != VALUE_UNKNOWN ? "keyword " + std::to_string(keyword) : written;
}

inline ZVCSSProperty propertyOf(const std::string& name)
{
    return static_cast<ZVCSSProperty>(zorvan::CSSStrings::propertyFromString(name.c_str()));
}

using Declarations = std::map<ZVCSSProperty, std::string>;

/// The declarations of a list by property, with "!" for an important one and "^" for an edge
/// margin.
inline Declarations declarationsIn(const CssDeclarationList& list)
{
    Declarations found;
    list.forEach([&](ZVCSSProperty property, const CssDeclaration* declaration) {
        std::string text;
        for (std::int32_t i = 0; i < declaration->getValueCount(); ++i)
            text += (i == 0 ? "" : " ") + textOf(declaration->getValueAt(i));
        found[property]
            = text + (declaration->important ? "!" : "") + (declaration->edgeMargin ? "^" : "");
    });
    return found;
}

/// The parts of a text between separators, without leading blanks and without empty ones.
inline std::vector<std::string> partsOf(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        std::string_view part = text.substr(0, end);
        part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
        if (!part.empty())
            parts.emplace_back(part);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

/// The declarations of a text like "margin-top 0.67em; font-weight bold".
inline Declarations written(std::string_view text)
{
    Declarations result;
    for (const std::string& each : partsOf(text, ';')) {
        const std::size_t blank = each.find(' ');
        result[propertyOf(each.substr(0, blank))] = expectedText(each.substr(blank + 1));
    }
    return result;
}

/// The properties of a list in its order.
inline std::vector<ZVCSSProperty> orderOf(const CssDeclarationList& list)
{
    std::vector<ZVCSSProperty> order;
    list.forEach([&](ZVCSSProperty property, const CssDeclaration*) { order.push_back(property); });
    return order;
}

/// Properties, ascending, that share the chain of this one in a list as it begins.
inline std::vector<ZVCSSProperty> chainOf(ZVCSSProperty property, std::size_t count)
{
    std::vector<ZVCSSProperty> chain;
    for (std::uint32_t number = 1; number <= PROPERTY_ZOOM && chain.size() < count; ++number) {
        const auto other = static_cast<ZVCSSProperty>(number);
        zorvan::HashMap<ZVCSSProperty, int> probe(16, 16);
        probe.put(property, 0);
        probe.put(other, 0);
        if (!probe.isLastOfChain(property))
            chain.push_back(other);
    }
    return chain;
}

/// A document as far as style needs one: a context with the default styles, a tree and its sheet.
class StyleDocument {
public:
    StyleDocument()
        : initialStyle(&values)
        , runningStyle(&values)
        , sheet(&values, &context)
    {
        std::memset(&context, 0, sizeof context);
        context.internals = &internals;
        context.valueCache = &values;
        context.fontNames = &fontNames;
        context.initialStyle = &initialStyle;
        context.runningStyle = &runningStyle;
        HtmlValue* const transparent = values.keywordValue(VALUE_TRANSPARENT);
        for (HtmlValue** background : {&context.buildBodyBackground, &context.buildBlockBackground,
                 &context.buildInlineBackground, &context.buildTableBackground,
                 &context.bodyBackground, &context.blockBackground, &context.inlineBackground,
                 &context.tableBackground})
            *background = transparent;
        fillDefaultStyle(initialStyle, values);
        fillDefaultStyle(runningStyle, values);
        context.currentTreeRoot = tree.root();
    }
    StyleDocument(const StyleDocument&) = delete;
    StyleDocument& operator=(const StyleDocument&) = delete;

    ~StyleDocument()
    {
        for (HtmlTreeNode* node = tree.root(); node != nullptr;
             node = nextInDocumentOrder(node, tree.root())) {
            if (node->data == nullptr)
                continue;
            delete node->data->getUndoDeclarations();
            node->data->~HtmlGenericNodeData();
        }
        for (zorvan::WString* name : fontNames)
            delete name;
        clearBuildFrames(context);
    }

    /// A new element with an empty list of its own. parent: null for the root.
    HtmlTreeNode& add(ZVHTMLElement element, HtmlTreeNode* parent = nullptr)
    {
        auto* payload = new (tree.allocate(sizeof(HtmlTagNodeData), alignof(HtmlTagNodeData)))
            HtmlTagNodeData(element);
        payload->declarations = new CssDeclarationList(&values);
        sheet.keepNodeDeclarations(payload->declarations);
        return *tree.createNode(payload, parent != nullptr ? parent : tree.root());
    }

    HtmlTreeNode& addText(const std::u16string& text, HtmlTreeNode& parent)
    {
        auto* payload = new (tree.allocate(sizeof(HtmlTextNodeData), alignof(HtmlTextNodeData)))
            HtmlTextNodeData(text.data(), static_cast<std::uint32_t>(text.size()));
        return *tree.createNode(payload, &parent);
    }

    static HtmlTagNodeData& tag(HtmlTreeNode& node)
    {
        return static_cast<HtmlTagNodeData&>(*node.data);
    }
    static CssDeclarationList& listOf(HtmlTreeNode& node) { return *tag(node).declarations; }

    /// Declares something for an element.
    void declare(
        HtmlTreeNode& node, ZVCSSProperty property, HtmlValue* value, bool important = false)
    {
        listOf(node).set(property, value, important, /*edgeMargin=*/false);
    }

    /// Cascades an element and enters it, as the tree builder does.
    void enter(HtmlTreeNode& node)
    {
        cascadeOnly(node);
        enterStyle(node, context);
    }
    void cascadeOnly(HtmlTreeNode& node)
    {
        CssDeclarationList* const list = cascade(sheet, node, tree.root());
        if (list == nullptr)
            return;
        resolveInherit(*list, context);
        tag(node).declarations = list;
    }
    void leave(HtmlTreeNode& node) { leaveStyle(*node.data, context); }

    HtmlValue* keyword(ZVCSSValue id) { return values.keywordValue(id); }
    HtmlValue* color(std::uint32_t number) { return values.colorValue(number); }
    HtmlValue* percent(float number) { return values.percentValue(number); }
    HtmlValue* length(float number, ZVLinearUnits units = UNITS_PIXELS)
    {
        return values.lengthValue(number, units);
    }
    HtmlValue* text(const char16_t* units) { return values.stringValue(units); }

    const BuildFrame& frame() const { return *context.buildFrames.head->value; }

    std::vector<std::string> fonts() const
    {
        std::vector<std::string> names;
        for (const zorvan::WString* name : fontNames)
            names.emplace_back(name->data, name->data + name->length);
        return names;
    }

    HtmlFilterContext context;
    HtmlFilterInternals internals;
    ValueCache values;
    CssDeclarationList initialStyle;
    CssDeclarationList runningStyle;
    zorvan::ArrayList<zorvan::WString*> fontNames;
    HtmlTree tree;
    StyleSheet sheet;
};

} // namespace testing_support
