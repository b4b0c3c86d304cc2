#include "style/style_sheet.h"

#include "style/built_in_styles.h"
#include "style/css_declaration_list.h"

#include <memory>

namespace {

constexpr std::uint32_t kBuckets = 16;
constexpr std::uint32_t kOverflowSlots = 16;

void keep(CssDeclarationList* list, zorvan::ArrayList<CssDeclarationList*>& lists)
{
    std::unique_ptr<CssDeclarationList> guard(list);
    lists.add(list);
    guard.release();
}

void deleteLists(const zorvan::ArrayList<CssDeclarationList*>& lists)
{
    for (CssDeclarationList* list : lists)
        delete list;
}

} // namespace

StyleSheet::StyleSheet(ValueCache* cache, HtmlFilterContext* context)
    : values(cache)
    , filter(context)
    , defaultDeclarations_(kBuckets, kOverflowSlots)
{
}

StyleSheet::~StyleSheet()
{
    deleteLists(ruleDeclarations_);
    for (Selector* selector : selectors_)
        delete selector;
    deleteLists(nodeDeclarations_);
    deleteLists(savedDeclarations_);
    defaultDeclarations_.forEach([](ZVHTMLElement, CssDeclarationList* list) { delete list; });
}

void StyleSheet::keepNodeDeclarations(CssDeclarationList* list) { keep(list, nodeDeclarations_); }

void StyleSheet::keepSavedDeclarations(CssDeclarationList* list) { keep(list, savedDeclarations_); }

bool StyleSheet::dropNodeDeclarations(const CssDeclarationList* list)
{
    const std::int32_t newest = nodeDeclarations_.getCount() - 1;
    if (newest < 0 || nodeDeclarations_.get(newest) != list)
        return false;
    delete nodeDeclarations_.remove(newest);
    return true;
}

CssDeclarationList* StyleSheet::builtInDeclarations(std::uint32_t elementId)
{
    if (builtInStyleOf(elementId).empty())
        return nullptr;
    const auto element = static_cast<ZVHTMLElement>(elementId);
    if (CssDeclarationList* const* known = defaultDeclarations_.find(element))
        return *known;
    std::unique_ptr<CssDeclarationList> made = makeBuiltInDeclarations(elementId, *values);
    defaultDeclarations_.put(element, made.get());
    return made.release();
}
