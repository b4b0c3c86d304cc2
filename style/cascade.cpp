#include "style/cascade.h"

#include "containers/failures.h"
#include "filter/filter_internals.h"
#include "style/built_in_styles.h"
#include "style/css_declaration_list.h"
#include "style/lengths.h"
#include "style/make_object.h"
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
    auto* list = zorvan::newObject<CssDeclarationList>(sheet.values, sheet.arena());
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

using Selectors = zorvan::ArrayList<Selector*>;

CssDeclarationList* nonEmpty(CssDeclarationList* list)
{
    return list != nullptr && !list->isEmpty() ? list : nullptr;
}

/// What an element's style attribute declares, in a list that the sheet keeps; null for nothing.
CssDeclarationList* parseStyleOf(const HtmlTagNodeData& element, StyleSheet& sheet)
{
    if (!element.hasAttributes())
        return nullptr;
    const auto* text = HtmlWStringValue::from(element.findAttribute(ATTRIBUTE_STYLE));
    if (text == nullptr || text->length == 0)
        return nullptr;
    auto list = makeObject<CssDeclarationList>(sheet.values, sheet.arena());
    sheet.parseStyleAttribute(text->text, text->length, *list);
    if (list->isEmpty())
        return nullptr;
    CssDeclarationList* const kept = list.get();
    sheet.keepNodeDeclarations(list.release());
    return kept;
}

/// Who wants to be told of the cascade; null for nobody.
CascadeObserver* observerOf(const StyleSheet& sheet)
{
    const HtmlFilterContext* const context = sheet.filter;
    if (context == nullptr || context->internals == nullptr)
        return nullptr;
    return context->internals->cascadeObserver;
}

/// The declarations of all rules, whether or not they are for one property.
std::uint32_t countDeclarations(const Selectors& rules)
{
    std::uint32_t count = 0;
    for (const Selector* selector : rules)
        count += selector->declarations != nullptr ? selector->declarations->getCount() : 0;
    return count;
}

/// Joins what the rules declare, the greatest selector first, to what has a higher rank.
CssDeclarationList* mergeRules(
    CssDeclarationList* fromStyle, const Selectors& rules, StyleSheet& sheet)
{
    // A list that nothing was ever taken out of for good would be the same list again in a copy.
    CssDeclarationList* result = fromStyle;
    for (std::int32_t i = rules.getCount() - 1; i >= 0; --i) {
        const CssDeclarationList* const declarations = rules.get(i)->declarations;
        if (declarations == nullptr)
            continue;
        if (result == nullptr) {
            result = &makeKeptList(sheet);
            result->reserveStorage(countDeclarations(rules));
        }
        result->merge(*declarations, /*copy=*/true);
    }
    return result;
}

/// Joins the built-in declarations of an element to what has a higher rank, null for nothing.
CssDeclarationList* joinBuiltIn(
    CssDeclarationList* result, HtmlTagNodeData& element, StyleSheet& sheet)
{
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

/// Whether elements of a kind can have a list together: nobody adds to it later.
bool mayShare(std::uint32_t elementId)
{
    return elementId != ELEMENT_BODY && elementId != ELEMENT_TABLE;
}

/// What the list of an element comes to, where the same rules mean it.
enum class HangsOn { Nothing, FontSize, Place };

HangsOn whatHangsOn(const CssDeclarationList& list)
{
    HangsOn answer = HangsOn::Nothing;
    for (auto cursor = list.first(); !cursor.isAtEnd(); cursor.advance()) {
        const HtmlValue* const value = cursor.value()->getValue();
        const auto* keyword = HtmlCssKeywordValue::from(value);
        if (keyword != nullptr && keyword->keyword == VALUE_INHERIT)
            return HangsOn::Place;
        const auto* length = HtmlLengthValue::from(value);
        if (length != nullptr && isRelative(*length))
            answer = HangsOn::FontSize;
    }
    return answer;
}

/// That of the parent of the element in the making, in pixels.
std::uint32_t fontSizeInForce(const StyleSheet& sheet)
{
    const HtmlFilterContext* const context = sheet.filter;
    if (context == nullptr || context->buildFrames.isEmpty())
        return 0;
    return context->buildFrames.head->value->fontSize;
}

/// The list of an element of which rules alone say how it looks: the one that another such element
/// has, if the place makes no difference.
CssDeclarationList* shareRules(HtmlTagNodeData& element, const Selectors& rules, StyleSheet& sheet)
{
    SharedDeclarations& shared = sheet.sharedDeclarations();
    const std::uint32_t fontSize = fontSizeInForce(sheet);
    CssDeclarationList* const known = shared.find(element.elementId, rules, fontSize);
    if (known != nullptr) {
        dropEmptyOwn(element, sheet);
        return known;
    }
    CssDeclarationList* const made = joinBuiltIn(mergeRules(nullptr, rules, sheet), element, sheet);
    const HangsOn hangsOn = whatHangsOn(*made);
    if (hangsOn == HangsOn::Place)
        return made;
    const bool isForAll = hangsOn == HangsOn::Nothing;
    if (shared.add(
            element.elementId, rules, isForAll ? SharedDeclarations::kAnyFontSize : fontSize, made))
        made->lengths = CssDeclarationList::Lengths::ResolveOnce;
    return made;
}

/// fromStyle, own: null for nothing declared there.
CssDeclarationList* joinSources(HtmlTagNodeData& element, CssDeclarationList* fromStyle,
    const Selectors& rules, CssDeclarationList* own, StyleSheet& sheet)
{
    const bool hasRulesOnly = rules.getCount() != 0 && fromStyle == nullptr && own == nullptr;
    if (hasRulesOnly && mayShare(element.elementId))
        return shareRules(element, rules, sheet);
    CssDeclarationList* result = mergeRules(fromStyle, rules, sheet);
    if (own != nullptr) {
        element.declarations = nullptr;
        result = joinOwn(result, *own, sheet);
    }
    return joinBuiltIn(result, element, sheet);
}

} // namespace

CssDeclarationList* cascade(StyleSheet& sheet, HtmlTreeNode& node, HtmlTreeNode* root)
{
    auto& element = static_cast<HtmlTagNodeData&>(*node.data);
    CssDeclarationList* const fromStyle = parseStyleOf(element, sheet);
    sheet.noteElement(element.elementId);
    const Selectors& rules = sheet.findMatches(node, root);
    CssDeclarationList* const own = nonEmpty(element.declarations);
    CascadeObserver* const observer = observerOf(sheet);
    if (observer != nullptr)
        observer->onCascade(
            node, {fromStyle, rules, own, sheet.builtInDeclarations(element.elementId)});
    CssDeclarationList* const result = joinSources(element, fromStyle, rules, own, sheet);
    if (observer != nullptr && result != nullptr)
        observer->onCascaded(*result);
    return result;
}

void resolveInherit(CssDeclarationList& list, HtmlFilterContext& context)
{
    if (list.isEmpty() || list.lengths == CssDeclarationList::Lengths::Resolved)
        return;
    const InheritTraits traits = inheritTraitsOf(list);
    if (traits.hasInherit)
        replaceInherit(list, context);
    if (traits.hasDirection)
        alignByDirection(list);
}
