#include "filter/close.h"

#include "containers/array_list.h"
#include "containers/indexed_list.h"
#include "filter/entry_points.h"
#include "filter/filter_internals.h"
#include "output/tree_walk.h"
#include "style/cascade.h"
#include "style/css_declaration_list.h"
#include "style/style_sheet.h"
#include "support/dynamic_store.h"
#include "support/wstring.h"
#include "tree/active_formatting.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"
#include "tree/tree_state.h"

namespace {

/// Deletes an object that a field owns, and clears the field.
template <class Object> void deleteField(Object*& field)
{
    delete field;
    field = nullptr;
}

/// Ends the payloads below a root in the order of the document. They lie in the tree's storage;
/// their declarations belong to the style sheet, what is left of undo lists to them.
void endPayloads(HtmlTreeNode* root)
{
    for (HtmlTreeNode* node = root; node != nullptr; node = nextInDocumentOrder(node, root)) {
        HtmlGenericNodeData* const payload = node->data;
        if (payload == nullptr)
            continue;
        delete payload->getUndoDeclarations();
        payload->~HtmlGenericNodeData();
        node->data = nullptr;
    }
}

void deleteTrees(HtmlFilterContext& context)
{
    if (context.treeList == nullptr)
        return;
    while (context.treeList->getCount() > 0) {
        HtmlTree* const tree = context.treeList->remove(context.treeList->getCount() - 1);
        endPayloads(tree->root());
        endPayloads(tree->discardedRoot());
        delete tree;
    }
}

void deleteTreeStates(HtmlFilterContext& context)
{
    if (context.treeStates == nullptr)
        return;
    for (std::int32_t index = context.treeStates->getFirstIndex();
         index <= context.treeStates->getLastIndex(); ++index) {
        TreeState* const state = context.treeStates->get(index);
        if (state == nullptr)
            continue;
        deleteField(state->styleContext);
        delete state;
    }
    deleteField(context.treeStates);
}

void deleteFontNames(HtmlFilterContext& context)
{
    if (context.fontNames == nullptr)
        return;
    for (zorvan::WString* name : *context.fontNames)
        delete name;
    deleteField(context.fontNames);
}

void forgetTrees(HtmlFilterContext& context)
{
    context.openElements = nullptr;
    context.currentNode = nullptr;
    context.walkNode = nullptr;
    context.walkStopNode = nullptr;
    context.headElement = nullptr;
    context.formElement = nullptr;
    context.currentTreeRoot = nullptr;
}

} // namespace

// The order is that of who refers to whom: payloads and lists hold values, so the cache goes after
// them.
void closeDocument(HtmlFilterContext& context)
{
    deleteField(context.initialStyle);
    deleteField(context.runningStyle);
    deleteTrees(context);
    deleteTreeStates(context);
    deleteField(context.treeList);
    forgetTrees(context);
    deleteField(context.valueCache);
    deleteField(context.activeFormatting);
    deleteField(context.pendingText);
    deleteField(context.pendingTableChars);
    deleteField(context.pendingChars);
    deleteFontNames(context);
    FUTDeinitDynamicStore(context.dynamicStore);
    clearBuildFrames(context);
    clearDeferredList(context);
    deleteField(context.internals);
}

std::uint16_t VwStreamClose(StreamBlock*, HtmlFilterContext* context)
{
    closeDocument(*context);
    return 0;
}
