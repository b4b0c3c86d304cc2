#pragma once

#include "containers/array_list.h"
#include "containers/indexed_list.h"
#include "style/cascade.h"
#include "style/css_declaration_list.h"
#include "style/style_sheet.h"
#include "tests/common/recording_host.h"
#include "tests/common/test_context.h"
#include "tests/common/tree_outline.h"
#include "tree/active_formatting.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// A context at the start of a section with an empty tree: what the tree builder needs, and no
/// more. Not to be copied or moved.
class TreeContext : public TestContext {
public:
    explicit TreeContext(std::string_view content = {}, std::uint16_t charSet = 0x9000,
        std::uint32_t bufferSize = 2'048)
        : TestContext(content, charSet, bufferSize)
        , host(context)
        , initialStyle(&values)
        , runningStyle(&values)
        , sheet(&values, &context)
        , treeStates(8)
    {
        makeTokenBuffer();
        context.valueCache = &values;
        context.pendingText = &pendingText_;
        context.pendingTableChars = &pendingTableChars_;
        context.fontNames = &fontNames_;
        context.activeFormatting = &formatting_;
        context.initialStyle = &initialStyle;
        context.runningStyle = &runningStyle;
        setUpStyle();
        treeList_.add(&tree);
        context.treeList = &treeList_;
        context.treeStates = &treeStates;
        context.currentTreeRoot = tree.root();
        treeState.styleContext = &sheet;
        treeStates.set(0, &treeState);
        context.openElements = &treeState.openElements;
        context.framesetOk = 1;
        SetInsertionMode(InsertionMode::Initial, context);
    }

    ~TreeContext()
    {
        endPayloads(tree.root());
        endPayloads(tree.discardedRoot());
        clearBuildFrames(context);
        for (zorvan::WString* name : fontNames_)
            delete name;
    }

    /// Reads and builds to the end of the input; the status is 0 again then, and more can be done.
    void build()
    {
        InsertNode(context);
        context.statusFlags = 0;
    }

    std::string outline() const { return outlineOf(*tree.root()); }
    std::string shortOutline() const { return shortOutlineOf(*tree.root()); }

    OpenElements& stack() { return treeState.openElements; }

    /// What is open, the bottom first.
    std::vector<HtmlTreeNode*> openNodes()
    {
        std::vector<HtmlTreeNode*> nodes;
        if (stack().getCount() == 0)
            return nodes;
        for (HtmlTreeNode* node = stack().first(); node != nullptr; node = stack().above(*node))
            nodes.push_back(node);
        return nodes;
    }

    /// The first element with this id in the order of the document; null when there is none.
    HtmlTreeNode* find(std::uint32_t elementId)
    {
        HtmlTreeNode* node = tree.root();
        while (node != nullptr && elementOf(*node) != elementId)
            node = nextInDocumentOrder(node, tree.root());
        return node;
    }

    static HtmlTagNodeData& payloadOf(const HtmlTreeNode& node)
    {
        return static_cast<HtmlTagNodeData&>(*node.data);
    }

    RecordingHost host;
    ValueCache values;
    CssDeclarationList initialStyle;
    CssDeclarationList runningStyle;
    StyleSheet sheet;
    HtmlTree tree;
    TreeState treeState;
    zorvan::IndexedList<TreeState> treeStates;

private:
    void setUpStyle()
    {
        HtmlValue* const transparent = values.keywordValue(VALUE_TRANSPARENT);
        context.buildBodyBackground = transparent;
        context.buildBlockBackground = transparent;
        context.buildInlineBackground = transparent;
        context.buildTableBackground = transparent;
        fillDefaultStyle(initialStyle, values);
        fillDefaultStyle(runningStyle, values);
    }

    static void endPayloads(HtmlTreeNode* root)
    {
        for (HtmlTreeNode* node = root; node != nullptr; node = nextInDocumentOrder(node, root)) {
            if (node->data == nullptr)
                continue;
            delete node->data->getUndoDeclarations();
            node->data->~HtmlGenericNodeData();
            node->data = nullptr;
        }
    }

    zorvan::ArrayList<HtmlTree*> treeList_;
    ActiveFormattingList formatting_;
    zorvan::ArrayList<zorvan::WString*> fontNames_;
    zorvan::WString pendingText_;
    zorvan::WString pendingTableChars_;
};

} // namespace testing_support
