#include "tree/tree_construction.h"

#include "containers/failures.h"
#include "containers/indexed_list.h"
#include "style/cascade.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"
#include "tree/insertion_modes.h"
#include "tree/tree_state.h"

#include <array>

namespace {

/// A search of the stack steps below its start at once, so it needs a second entry.
void RequireTwoEntries(const OpenElements& stack)
{
    // QUIRK(StackOperations.OneEntryIsTooFew): a lone html is not looked at.
    if (stack.getCount() < 2)
        zorvan::throwContainerFailure(zorvan::FAILURE_INDEX, "Index is too small.");
}

/// An open element, and the mode that goes on inside it.
struct ResumedMode {
    std::uint32_t element;
    InsertionMode mode;
};

// QUIRK(StackOperations.ResetInsertionMode): a select never resumes as one in a table, and a head
// resumes as the body.
constexpr auto kResumedModes = std::to_array<ResumedMode>({
    {ELEMENT_SELECT, InsertionMode::InSelect},
    {ELEMENT_TD, InsertionMode::InCell},
    {ELEMENT_TH, InsertionMode::InCell},
    {ELEMENT_TR, InsertionMode::InRow},
    {ELEMENT_TBODY, InsertionMode::InTableBody},
    {ELEMENT_TFOOT, InsertionMode::InTableBody},
    {ELEMENT_THEAD, InsertionMode::InTableBody},
    {ELEMENT_CAPTION, InsertionMode::InCaption},
    {ELEMENT_COLGROUP, InsertionMode::InColumnGroup},
    {ELEMENT_TABLE, InsertionMode::InTable},
    {ELEMENT_HEAD, InsertionMode::InBody},
    {ELEMENT_BODY, InsertionMode::InBody},
    {ELEMENT_FRAMESET, InsertionMode::InFrameset},
    {ELEMENT_HTML, InsertionMode::BeforeHead},
});

} // namespace

HtmlTree& CurrentTree(HtmlFilterContext& context) { return *context.currentTreeRoot->tree; }

TreeState* CurrentTreeState(HtmlFilterContext& context)
{
    if (context.treeStates == nullptr)
        return nullptr;
    return context.treeStates->get(context.currentTreeIndex);
}

HtmlTreeNode* CurrentStackNode(HtmlFilterContext& context) { return context.openElements->last(); }

HtmlTreeNode* FirstStackNode(HtmlFilterContext& context) { return context.openElements->first(); }

std::uint32_t CurrentElementId(HtmlFilterContext& context)
{
    return elementOf(*CurrentStackNode(context));
}

HtmlTreeNode* PopElement(HtmlFilterContext& context)
{
    FlushPendingText(context);
    OpenElements& stack = *context.openElements;
    HtmlTreeNode* const node = stack.pop();
    context.currentNode = stack.getCount() == 0 ? nullptr : stack.last();
    leaveStyle(*node->data, context);
    return node;
}

void PopElementsUntil(std::uint32_t elementId, HtmlFilterContext& context)
{
    while (elementOf(*PopElement(context)) != elementId) { }
}

void RemoveFromStack(HtmlTreeNode* node, HtmlFilterContext& context)
{
    // QUIRK(StackOperations.RemoveFromStackKeepsTheFrame): leaveStyle is not called. Frames of
    // style go in step with pops, so this one's goes with the next element that is popped.
    context.openElements->remove(node);
}

bool HasElementInListedScope(std::uint32_t elementId, const std::uint32_t* stoppers,
    std::uint32_t count, HtmlFilterContext& context)
{
    const OpenElements& stack = *context.openElements;
    RequireTwoEntries(stack);
    const OpenElements::Height height = stack.topmost(elementId);
    if (height == OpenElements::kNowhere)
        return false;
    // An element that is a stopper itself is found before it stops anything.
    for (std::uint32_t i = 0; i < count; ++i) {
        if (stack.topmost(stoppers[i]) > height)
            return false;
    }
    return true;
}

bool HasElementInScope(std::uint32_t elementId, HtmlFilterContext& context)
{
    return HasElementInListedScope(
        elementId, kDefaultScopeStoppers.data(), kDefaultScopeStoppers.size(), context);
}

bool HasElementInButtonScope(std::uint32_t elementId, HtmlFilterContext& context)
{
    return HasElementInListedScope(
        elementId, kButtonScopeStoppers.data(), kButtonScopeStoppers.size(), context);
}

bool HasElementOnStack(std::uint32_t elementId, HtmlFilterContext& context)
{
    return HasElementInListedScope(elementId, nullptr, 0, context);
}

std::uint32_t GenerateImpliedEndTags(std::uint32_t exceptElementId, HtmlFilterContext& context)
{
    std::uint32_t popped = 0;
    for (;; ++popped) {
        const std::uint32_t elementId = CurrentElementId(context);
        if (!IsImpliedEndTagElement(elementId) || elementId == exceptElementId)
            return popped;
        PopElement(context);
    }
}

HtmlTreeNode* FindFosterParent(HtmlTreeNode*& nodeOut, HtmlFilterContext& context)
{
    nodeOut = nullptr;
    const OpenElements& stack = *context.openElements;
    RequireTwoEntries(stack);
    HtmlTreeNode* const table = stack.topmostNode(ELEMENT_TABLE);
    if (table == nullptr)
        return stack.first();
    if (table->parent != nullptr) {
        nodeOut = table;
        return nullptr;
    }
    HtmlTreeNode* const below = stack.below(*table);
    if (below == nullptr)
        zorvan::throwContainerFailure(zorvan::FAILURE_INDEX, "Index is too small.");
    return below;
}

void ResetInsertionMode(HtmlFilterContext& context)
{
    const OpenElements& stack = *context.openElements;
    if (stack.getCount() == 0)
        return;
    // The bottom entry is not examined.
    OpenElements::Height highest = stack.heightOf(*stack.first());
    for (const ResumedMode& resumed : kResumedModes) {
        const OpenElements::Height height = stack.topmost(resumed.element);
        if (height <= highest)
            continue;
        highest = height;
        SetInsertionMode(resumed.mode, context);
    }
}

void ClosePElement(HtmlFilterContext& context)
{
    if (!HasElementInButtonScope(ELEMENT_P, context))
        return;
    const Token endTag = SyntheticEndTag(ELEMENT_P);
    HandleInBodyInsertion(&endTag, context);
}
