#include "tree/active_formatting.h"

#include "tree/insertion_modes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

namespace {

/// The first of the elements at the end of the list that are not open; null when there is none.
HtmlTreeNode* FirstToReopen(const ActiveFormattingList& list, const OpenElements& stack)
{
    HtmlTreeNode* first = nullptr;
    HtmlTreeNode* node = list.last();
    while (node != nullptr && !stack.contains(*node)) {
        first = node;
        node = list.before(*node);
    }
    return first;
}

/// Opens a second element of a node's kind, with its attributes and style. Pending characters stay
/// pending: they belong into the element that is opened.
HtmlTreeNode* Reopen(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const Token token = BareToken(elementOf(node));
    HtmlTreeNode* const copy
        = CreateAppendPushElement(&token, /*applyAttributes=*/false, context, /*flushText=*/false);
    copy->data->copyFrom(node.data, context.valueCache);
    return copy;
}

} // namespace

void InsertFormattingMarker(ActiveFormattingList& list) { list.addMarker(); }

void PushFormattingElement(ActiveFormattingList& list, HtmlTreeNode* node)
{
    if (node == nullptr) {
        list.addMarker();
        return;
    }
    // QUIRK(ActiveFormatting.ElementsWithoutAttributesAllStay): a row of bare elements has no
    // limit, and neither has one whose attributes are texts, since each text is a value of its own.
    const HtmlTreeNode* const third = list.findThirdAlike(*node);
    list.add(node);
    if (third != nullptr)
        list.remove(*third);
}

void ClearFormattingToMarker(ActiveFormattingList& list)
{
    while (list.getCount() > 0 && !list.removeLast()) { }
}

HtmlTreeNode* FindFormattingElement(const ActiveFormattingList& list, std::uint32_t elementId)
{
    return list.find(elementId);
}

void RemoveFormattingNode(ActiveFormattingList& list, const HtmlTreeNode& node)
{
    if (list.contains(node))
        list.remove(node);
}

void ReplaceFormattingNode(
    ActiveFormattingList& list, const HtmlTreeNode& oldNode, HtmlTreeNode* newNode)
{
    if (list.contains(oldNode))
        list.replace(oldNode, newNode);
}

void InsertFormattingAfter(
    ActiveFormattingList& list, const HtmlTreeNode& bookmark, HtmlTreeNode* newNode)
{
    if (list.contains(bookmark))
        list.addBehind(bookmark, newNode);
}

void ReconstructActiveFormatting(HtmlFilterContext& context)
{
    if (context.activeFormatting == nullptr)
        return;
    ActiveFormattingList& list = *context.activeFormatting;
    HtmlTreeNode* node = FirstToReopen(list, *context.openElements);
    while (node != nullptr) {
        HtmlTreeNode* const copy = Reopen(*node, context);
        ReplaceFormattingNode(list, *node, copy);
        node = list.behind(*copy);
    }
}

void ClearActiveFormatting(HtmlFilterContext& context)
{
    if (context.activeFormatting != nullptr)
        context.activeFormatting->clear();
}
