#include "style/cascade.h"

#include "containers/failures.h"
#include "style/built_in_styles.h"
#include "style/css_declaration_list.h"
#include "style/property_snapshot.h"
#include "style/style_sheet.h"
#include "support/process_heap.h"
#include "tree/html_tree.h"

#include <memory>
#include <utility>

namespace {

// The number of primary slots that a declaration list begins with.
constexpr std::uint32_t kFewestBuckets = 16;

CssDeclarationList& makeKeptList(StyleSheet& sheet)
{
    auto* list = zorvan::newObject<CssDeclarationList>(sheet.values);
    if (list == nullptr)
        zorvan::throwOutOfStorage();
    sheet.keepNodeDeclarations(list);
    return *list;
}

/// Joins an element's own list to what has a higher rank, null for nothing.
CssDeclarationList* joinOwn(CssDeclarationList* result, CssDeclarationList& own, StyleSheet& sheet)
{
    // With nothing above it, a copy would be the same list again, and the sheet keeps this one
    // already. Only a list that has grown might come out in another order.
    if (result == nullptr && own.isOwning() && own.getCapacity() == kFewestBuckets)
        return &own;
    if (result == nullptr)
        result = &makeKeptList(sheet);
    result->merge(own, /*copy=*/true);
    return result;
}

/// Frees the own list of an element that takes another one: it is empty, and there would be one for
/// nearly each element until close.
void dropEmptyOwn(HtmlTagNodeData& element, StyleSheet& sheet)
{
    if (element.declarations != nullptr && sheet.dropNodeDeclarations(element.declarations))
        element.declarations = nullptr;
}

bool hasKeyword(const CssDeclarationList& list, ZVCSSProperty property, ZVCSSValue keyword)
{
    const auto* value = HtmlCssKeywordValue::from(list.findValue(property));
    return value != nullptr && value->keyword == keyword;
}

bool indentsAtTheStart(std::uint32_t elementId)
{
    switch (elementId) {
    case ELEMENT_ADDRESS:
    case ELEMENT_DD:
    case ELEMENT_MENU:
    case ELEMENT_OL:
    case ELEMENT_UL:
        return true;
    default:
        return false;
    }
}

/// The built-in declarations with the left margin on the right, for text that runs from there.
CssDeclarationList& makeRightToLeft(const CssDeclarationList& builtIn, StyleSheet& sheet)
{
    CssDeclarationList& swapped = makeKeptList(sheet);
    swapped.merge(builtIn, /*copy=*/true);
    HtmlValue* const margin = swapped.findValue(PROPERTY_MARGIN_LEFT);
    swapped.remove(PROPERTY_MARGIN_LEFT);
    swapped.set(PROPERTY_MARGIN_RIGHT, margin, /*important=*/false, /*edgeMargin=*/false);
    return swapped;
}

/// The built-in declarations of an element as they fit what has been declared for it; null for
/// none.
CssDeclarationList* builtInFor(
    std::uint32_t elementId, const CssDeclarationList* result, StyleSheet& sheet)
{
    CssDeclarationList* const builtIn = sheet.builtInDeclarations(elementId);
    if (builtIn == nullptr || result == nullptr || !indentsAtTheStart(elementId))
        return builtIn;
    if (!hasKeyword(*result, PROPERTY_DIRECTION, VALUE_RTL)
        || !builtIn->contains(PROPERTY_MARGIN_LEFT))
        return builtIn;
    return &makeRightToLeft(*builtIn, sheet);
}

/// What resolveInherit asks of a list.
struct InheritTraits {
    bool hasInherit = false;
    bool hasDirection = false;
};

InheritTraits inheritTraitsOf(const CssDeclarationList& list)
{
    InheritTraits traits;
    for (auto cursor = list.first(); !cursor.isAtEnd(); cursor.advance()) {
        const auto* keyword = HtmlCssKeywordValue::from(cursor.value()->getValue());
        if (keyword != nullptr && keyword->keyword == VALUE_INHERIT)
            traits.hasInherit = true;
        if (cursor.key() == PROPERTY_DIRECTION)
            traits.hasDirection = true;
    }
    return traits;
}

void replaceInherit(CssDeclarationList& list, const HtmlFilterContext& context)
{
    for (const ZVCSSProperty property : PropertySnapshot(list)) {
        if (!hasKeyword(list, property, VALUE_INHERIT))
            continue;
        CssDeclaration* const* inForce = context.initialStyle->find(property);
        if (inForce != nullptr)
            list.setCopy(**inForce);
    }
}

/// Lets direction, which the list must have, set the alignment.
void alignByDirection(CssDeclarationList& list)
{
    if (list.contains(PROPERTY_TEXT_ALIGN))
        return;
    ZVCSSValue alignment = VALUE_LEFT;
    if (hasKeyword(list, PROPERTY_DIRECTION, VALUE_RTL))
        alignment = VALUE_RIGHT;
    else if (!hasKeyword(list, PROPERTY_DIRECTION, VALUE_LTR))
        return;
    list.set(PROPERTY_TEXT_ALIGN, list.valueCache->keywordValue(alignment), /*important=*/false,
        /*edgeMargin=*/false);
}

} // namespace

CssDeclarationList* cascade(StyleSheet& sheet, HtmlTreeNode& node, HtmlTreeNode*)
{
    auto& element = static_cast<HtmlTagNodeData&>(*node.data);
    CssDeclarationList* result = nullptr;
    // STAND-IN: the declarations of the style attribute are the first to be merged; that comes with
    // the style sheet parser.
    // STAND-IN: the declarations of matching rules follow, from the greatest selector to the least.
    if (element.declarations != nullptr && !element.declarations->isEmpty())
        result = joinOwn(result, *std::exchange(element.declarations, nullptr), sheet);

    CssDeclarationList* const builtIn = builtInFor(element.elementId, result, sheet);
    if (builtIn == nullptr)
        return result;
    // Most elements have nothing but these. The list stays as it is when the element is entered,
    // unless a length of it hangs on the font size, so all elements of a kind can share it.
    if (result == nullptr && !hasRelativeBuiltInStyle(element.elementId)) {
        dropEmptyOwn(element, sheet);
        return builtIn;
    }
    if (result == nullptr)
        result = &makeKeptList(sheet);
    result->merge(*builtIn, /*copy=*/true);
    return result;
}

void resolveInherit(CssDeclarationList& list, HtmlFilterContext& context)
{
    if (list.isEmpty())
        return;
    const InheritTraits traits = inheritTraitsOf(list);
    if (traits.hasInherit)
        replaceInherit(list, context);
    if (traits.hasDirection)
        alignByDirection(list);
}
