#include "tree/in_body.h"

#include "tree/active_formatting_list.h"
#include "tree/element_attributes.h"
#include "tree/html_tree.h"
#include "tree/insertion_modes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

namespace {

/// The body that stands right below the top of the stack; null when something else does.
HtmlTreeNode* BodyBelowTop(HtmlFilterContext& context)
{
    // QUIRK(BodyMerge.BodyIsLookedForBelowTheTop): not right above the html, where it always is, so
    // that exactly one element has to be open in it.
    const OpenElements& stack = *context.openElements;
    if (stack.getCount() < 2)
        return nullptr;
    HtmlTreeNode* const node = stack.below(*stack.last());
    return elementOf(*node) == ELEMENT_BODY ? node : nullptr;
}

/// Takes a body and its content out of the document, for a frameset to come instead.
void DiscardBody(HtmlTreeNode& body, HtmlFilterContext& context)
{
    if (body.parent != nullptr) {
        // QUIRK(BodyMerge.FormattingElementAsFirstChildKeepsTheBody): a body whose first child may
        // be opened again stays in front of the frameset.
        const HtmlTreeNode* const first = body.firstChild;
        if (first != nullptr && context.activeFormatting->contains(*first))
            return;
        // QUIRK(BodyMerge.DiscardedBodyCountsAsOneNode): what was in it is still counted.
        --CurrentTree(context).nodeCount;
    }
    CurrentTree(context).discard(&body);
}

} // namespace

void MergeAttributes(HtmlGenericNodeData* target, const Token& token, HtmlFilterContext& context)
{
    // Without a list of its own, what the tag declares goes nowhere.
    HtmlTagNodeData merged(static_cast<ZVHTMLElement>(token.element));
    ApplyElementAttributes(&merged, context);
    if (target == nullptr || target->elementId != merged.elementId)
        return;
    auto& element = static_cast<HtmlTagNodeData&>(*target);
    for (const auto* link = merged.attributes.head; link != nullptr; link = link->next) {
        HtmlValue* present = nullptr;
        if (!element.getAttribute(link->value->key, present))
            element.setAttribute(link->value->key, link->value->value);
    }
}

int MergeSecondBody(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    HtmlTreeNode* const body = BodyBelowTop(context);
    if (body == nullptr)
        return ANSWER_USED;
    context.framesetOk = 0;
    MergeAttributes(body->data, *token, context);
    return ANSWER_USED;
}

int ReplaceBodyByFrameset(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    HtmlTreeNode* const body = BodyBelowTop(context);
    if (body == nullptr || context.framesetOk != 1)
        return ANSWER_IGNORED;
    while (context.openElements->getCount() > 1)
        PopElement(context);
    DiscardBody(*body, context);
    InsertElement(token, context);
    SetInsertionMode(InsertionMode::InFrameset, context);
    return ANSWER_USED;
}
