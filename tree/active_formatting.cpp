#include "tree/active_formatting.h"

#include "containers/linked_hash_map.h"

void ReconstructActiveFormatting(HtmlFilterContext& context)
{
    if (context.activeFormatting == nullptr || context.activeFormatting->getCount() == 0)
        return;
    // STAND-IN: what the stack has lost stays closed; nothing enters an element in the list yet.
}

void ClearActiveFormatting(HtmlFilterContext& context)
{
    if (context.activeFormatting == nullptr)
        return;
    auto& list = *context.activeFormatting;
    for (std::int32_t i = 0; i < list.getCount(); ++i)
        delete list.getAt(i)->value;
    list.clear();
}
