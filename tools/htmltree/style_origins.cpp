#include "tools/htmltree/style_origins.h"

#include "style/css_declaration_list.h"
#include "style/selector.h"
#include "tools/htmltree/selector_text.h"
#include "tools/htmltree/tree_outline.h"
#include "tree/html_tree.h"

#include <utility>

namespace htmltree {

namespace {

    constexpr char kBuiltIn[] = "built-in";

    std::string ruleText(const Selector& selector)
    {
        return "rule " + selectorText(selector) + " (" + std::to_string(selector.getSpecificity())
            + ')';
    }

    bool indentsAtTheStart(std::uint32_t elementId)
    {
        return elementId == ELEMENT_ADDRESS || elementId == ELEMENT_DD || elementId == ELEMENT_MENU
            || elementId == ELEMENT_OL || elementId == ELEMENT_UL;
    }

    /// What a declaration comes from that no source of the cascade had.
    std::string laterOrigin(ZVCSSProperty property, const CssDeclarationList& declarations)
    {
        const bool isAligned
            = property == PROPERTY_TEXT_ALIGN && declarations.contains(PROPERTY_DIRECTION);
        return isAligned ? "direction" : "later";
    }

} // namespace

void StyleOrigins::onCascade(const HtmlTreeNode& node, const CascadeSources& sources)
{
    current_.clear();
    addSource(sources.styleAttribute, "attribute");
    for (std::int32_t i = sources.rules.getCount() - 1; i >= 0; --i) {
        const Selector& selector = *sources.rules.get(i);
        addSource(selector.declarations, ruleText(selector));
    }
    addSource(sources.presentational, "presentational");
    if (sources.builtIn == nullptr)
        return;
    const auto direction = current_.find(PROPERTY_DIRECTION);
    const bool isSwapped = indentsAtTheStart(elementOf(node)) && direction != current_.end()
        && direction->second.value.starts_with("rtl")
        && sources.builtIn->contains(PROPERTY_MARGIN_LEFT);
    if (isSwapped)
        addSwapped(*sources.builtIn);
    else
        addSource(sources.builtIn, kBuiltIn);
}

void StyleOrigins::onCascaded(const CssDeclarationList& result)
{
    // Elements that share a list have it from the same sources.
    lists_.try_emplace(&result, std::move(current_));
    current_ = {};
}

std::vector<std::string> StyleOrigins::linesOf(const CssDeclarationList* declarations) const
{
    std::vector<std::string> lines;
    if (declarations == nullptr)
        return lines;
    const auto known = lists_.find(declarations);
    declarations->forEach([&](ZVCSSProperty property, const CssDeclaration* declaration) {
        const std::string value = valuesText(*declaration);
        std::string line = propertyText(property) + ": ";
        std::string source = laterOrigin(property, *declarations);
        if (known != lists_.end()) {
            const auto origin = known->second.find(property);
            if (origin != known->second.end()) {
                source = origin->second.source;
                if (origin->second.value != value)
                    line += origin->second.value + " => ";
            }
        }
        lines.push_back(line + value + " [" + source + ']');
    });
    return lines;
}

/// Adds what a source of lower rank declares. declarations: null for nothing.
void StyleOrigins::addSource(const CssDeclarationList* declarations, const std::string& source)
{
    if (declarations == nullptr)
        return;
    declarations->forEach([&](ZVCSSProperty property, const CssDeclaration* declaration) {
        add(property, *declaration, source);
    });
}

/// The same for built-in declarations whose left margin goes to the right.
void StyleOrigins::addSwapped(const CssDeclarationList& builtIn)
{
    builtIn.forEach([&](ZVCSSProperty property, const CssDeclaration* declaration) {
        if (property == PROPERTY_MARGIN_LEFT)
            add(PROPERTY_MARGIN_RIGHT, *declaration, kBuiltIn);
        else if (property != PROPERTY_MARGIN_RIGHT)
            add(property, *declaration, kBuiltIn);
    });
}

void StyleOrigins::add(
    ZVCSSProperty property, const CssDeclaration& declaration, const std::string& source)
{
    const auto place = current_.find(property);
    if (place != current_.end() && (place->second.isImportant || !declaration.important))
        return;
    current_[property] = {source, valuesText(declaration), declaration.important};
}

} // namespace htmltree
