#include "tree/adoption_agency.h"

#include "containers/failures.h"
#include "support/html_names.h"
#include "tree/active_formatting.h"
#include "tree/element_sets.h"
#include "tree/insertion_modes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

namespace {

constexpr int kMostRounds = 8;
constexpr int kMostPasses = 3;

/// One repair: a formatting element in which a block stands that outlives it.
struct Repair {
    HtmlTreeNode* formatting;
    HtmlTreeNode* furthestBlock; ///< the lowest special element above formatting
    HtmlTreeNode* commonAncestor; ///< what is open right below formatting
    HtmlTreeNode* bookmark; ///< behind which of the list the inner copy goes
    HtmlTreeNode* lastNode; ///< the topmost of what moves out of formatting
};

/// A node that stands nowhere, for a payload that has no attributes yet.
HtmlTreeNode* MakeDetachedElement(std::uint32_t elementId, HtmlFilterContext& context)
{
    HtmlGenericNodeData* const payload = CreateNodeData(elementId, context);
    if (payload == nullptr)
        zorvan::throwOutOfStorage();
    return CurrentTree(context).createDetachedNode(payload);
}

void MoveTo(HtmlTreeNode* parent, HtmlTreeNode* node)
{
    HtmlTree& tree = *parent->tree;
    tree.detach(node);
    tree.appendChild(parent, node);
}

/// Puts a bare element in the place of an open formatting element, around what moves out.
void WrapInClone(HtmlTreeNode& node, Repair& repair, HtmlFilterContext& context)
{
    // QUIRK(AdoptionAgency.IntermediateClonesAreBare): neither attributes nor style are copied, and
    // nodeCount does not know the clone.
    HtmlTreeNode* const clone = MakeDetachedElement(elementOf(node), context);
    ReplaceFormattingNode(*context.activeFormatting, node, clone);
    context.openElements->replace(node, clone);
    context.currentNode = CurrentStackNode(context);
    if (repair.lastNode == repair.furthestBlock)
        repair.bookmark = clone;
    // It has its place in the tree at once, so that no failure leaves a part of the tree nowhere.
    MoveTo(repair.commonAncestor, clone);
    MoveTo(clone, repair.lastNode);
    repair.lastNode = clone;
}

/// Goes down the stack from the block towards the formatting element: what is no active formatting
/// element is closed, the others are cloned around the block.
void CloneWhatIsBetween(Repair& repair, HtmlFilterContext& context)
{
    OpenElements& stack = *context.openElements;
    HtmlTreeNode* upper = repair.furthestBlock;
    // QUIRK(AdoptionAgency.ThreePassesAtMost): what is closed counts as well, and what is further
    // down stays open where it is.
    for (int pass = 0; pass < kMostPasses; ++pass) {
        HtmlTreeNode* const node = stack.below(*upper);
        if (node == nullptr)
            zorvan::throwContainerFailure(
                zorvan::FAILURE_INDEX, "HandleInBodyInsertion(): No prev node!");
        if (!context.activeFormatting->contains(*node)) {
            stack.remove(node);
            context.currentNode = CurrentStackNode(context);
            continue;
        }
        if (node == repair.formatting)
            return;
        WrapInClone(*node, repair, context);
        upper = repair.lastNode;
    }
}

/// Puts the topmost of what moves where formatting stands, or in front of the table.
void PlaceLastNode(const Repair& repair, HtmlFilterContext& context)
{
    HtmlTree& tree = CurrentTree(context);
    tree.detach(repair.lastNode);
    if (!IsFosterTarget(elementOf(*repair.commonAncestor))) {
        tree.appendChild(repair.commonAncestor, repair.lastNode);
        return;
    }
    HtmlTreeNode* table = nullptr;
    HtmlTreeNode* const parent = FindFosterParent(table, context);
    const OpenElements& stack = *context.openElements;
    // A table further in would be part of what moves. Cells shut out the elements before them, so
    // that this takes a failure in the middle of a table's start tag.
    if (table != nullptr && stack.heightOf(*table) > stack.heightOf(*repair.commonAncestor))
        tree.appendChild(repair.commonAncestor, repair.lastNode);
    else if (table != nullptr)
        tree.insertSiblingBefore(table, repair.lastNode);
    else
        tree.appendChild(parent, repair.lastNode);
}

/// A copy of the formatting element becomes the one child of the block, around its children.
HtmlTreeNode* CopyIntoBlock(const Repair& repair, HtmlFilterContext& context)
{
    HtmlTree& tree = CurrentTree(context);
    HtmlTreeNode* const copy = MakeDetachedElement(elementOf(*repair.formatting), context);
    while (repair.furthestBlock->firstChild != nullptr)
        MoveTo(copy, repair.furthestBlock->firstChild);
    tree.appendChild(repair.furthestBlock, copy);
    ++tree.nodeCount;
    // What it takes over can fail, so it is in the tree by then, which ends its payload.
    copy->data->copyFrom(repair.formatting->data, context.valueCache);
    return copy;
}

void MakeRepair(HtmlTreeNode& formatting, HtmlTreeNode& furthestBlock, HtmlFilterContext& context)
{
    OpenElements& stack = *context.openElements;
    ActiveFormattingList& list = *context.activeFormatting;
    HtmlTreeNode* const commonAncestor = stack.below(formatting);
    if (commonAncestor == nullptr)
        zorvan::throwContainerFailure(zorvan::FAILURE_INDEX, "Index is too small.");
    Repair repair = {&formatting, &furthestBlock, commonAncestor, &formatting, &furthestBlock};
    CloneWhatIsBetween(repair, context);
    PlaceLastNode(repair, context);
    HtmlTreeNode* const copy = CopyIntoBlock(repair, context);
    InsertFormattingAfter(list, *repair.bookmark, copy);
    RemoveFormattingNode(list, formatting);
    stack.insertAbove(furthestBlock, copy);
    stack.remove(&formatting);
    context.currentNode = CurrentStackNode(context);
}

} // namespace

int HandleAnchorStartTag(const Token* token, HtmlFilterContext& context)
{
    ActiveFormattingList& list = *context.activeFormatting;
    if (HtmlTreeNode* const open = FindFormattingElement(list, ELEMENT_A); open != nullptr) {
        FlagParseError(context);
        const Token endTag = SyntheticEndTag(ELEMENT_A);
        HandleInBodyInsertion(&endTag, context);
        // What is out of scope is still there.
        RemoveFromStack(open, context);
        context.currentNode = CurrentStackNode(context);
        RemoveFormattingNode(list, *open);
    }
    ReconstructActiveFormatting(context);
    PushFormattingElement(list, InsertElement(token, context));
    return ANSWER_USED;
}

int HandleFormattingEndTag(const Token* token, HtmlFilterContext& context)
{
    OpenElements& stack = *context.openElements;
    ActiveFormattingList& list = *context.activeFormatting;
    // QUIRK(AdoptionAgency.EightRoundsAtMost): blocks further up keep what is in them.
    for (int round = 0; round < kMostRounds; ++round) {
        HtmlTreeNode* const formatting = FindFormattingElement(list, token->element);
        if (formatting == nullptr)
            return HandleAnyOtherEndTag(token, context);
        if (!stack.contains(*formatting)) {
            FlagParseError(context);
            RemoveFormattingNode(list, *formatting);
            return ANSWER_USED;
        }
        if (!HasElementInScope(token->element, context))
            return IgnoreWithParseError(context);
        if (formatting != context.currentNode)
            FlagParseError(context);
        HtmlTreeNode* const furthestBlock = stack.firstSpecialAbove(*formatting);
        if (furthestBlock == nullptr) {
            while (PopElement(context) != formatting) { }
            RemoveFormattingNode(list, *formatting);
            return ANSWER_USED;
        }
        MakeRepair(*formatting, *furthestBlock, context);
    }
    return ANSWER_USED;
}
