#pragma once

#include "containers/array_list.h"
#include "containers/indexed_list.h"
#include "output/tree_walk.h"
#include "style/cascade.h"
#include "style/css_declaration_list.h"
#include "style/style_sheet.h"
#include "support/html_strings.h"
#include "tests/common/recording_host.h"
#include "tests/common/test_context.h"
#include "tree/html_node_data.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"
#include "tree/tree_state.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

using Lines = std::vector<std::string>;

/// A context at the start of a walk, and a tree that is built by hand. Not to be copied or moved.
class OutputContext : public TestContext {
public:
    OutputContext()
        : TestContext({})
        , host(context)
        , runningStyle(&values)
        , sheet_(&values, &context)
        , states_(kTreeStates)
    {
        makeTokenBuffer();
        fillDefaultStyle(runningStyle, values);
        HtmlValue* const transparent = values.keywordValue(VALUE_TRANSPARENT);
        context.valueCache = &values;
        context.runningStyle = &runningStyle;
        context.fontNames = &fontNames_;
        context.bodyBackground = transparent;
        context.blockBackground = transparent;
        context.inlineBackground = transparent;
        context.tableBackground = transparent;
        context.listDepth = -1;
        context.sectionCharSet = 0x9000;
        context.sectionCharSetId = CHARSET_ID_UTF16;
        context.currentTreeRoot = tree.root();
        state_.styleContext = &sheet_;
        states_.set(0, &state_);
        context.treeStates = &states_;
        context.walkStopNode = tree.root();
    }

    ~OutputContext()
    {
        clearDeferredList(context);
        for (HtmlTreeNode* node = tree.root(); node != nullptr;
             node = nextInDocumentOrder(node, tree.root())) {
            if (node->data != nullptr)
                node->data->~HtmlGenericNodeData();
        }
        for (zorvan::WString* name : fontNames_)
            delete name;
    }

    HtmlTreeNode* element(HtmlTreeNode* parent, ZVHTMLElement id)
    {
        void* place = tree.allocate(sizeof(HtmlTrNodeData), alignof(std::max_align_t));
        if (id == ELEMENT_TR)
            return tree.createNode(new (place) HtmlTrNodeData, parent);
        return tree.createNode(new (place) HtmlTagNodeData(id), parent);
    }

    HtmlTreeNode* text(HtmlTreeNode* parent, std::u16string_view units)
    {
        void* place = tree.allocate(sizeof(HtmlTextNodeData), alignof(HtmlTextNodeData));
        return tree.createNode(
            new (place) HtmlTextNodeData(units.data(), static_cast<std::uint32_t>(units.size())),
            parent);
    }

    /// Adds what a markup of tags without attributes says; every start tag has its end tag.
    void build(std::u16string_view markup, HtmlTreeNode* parent = nullptr)
    {
        HtmlTreeNode* open = parent == nullptr ? tree.root() : parent;
        while (!markup.empty()) {
            const std::size_t end = markup.front() == u'<'
                ? markup.find(u'>') + 1
                : std::min(markup.find(u'<'), markup.size());
            const std::u16string_view piece = markup.substr(0, end);
            markup.remove_prefix(end);
            if (piece.front() != u'<')
                text(open, piece);
            else if (piece[1] == u'/')
                open = open->parent;
            else
                open = element(open, elementNamed(piece.substr(1, piece.size() - 2)));
        }
    }

    static ZVHTMLElement elementNamed(std::u16string_view name)
    {
        const std::string narrow(name.begin(), name.end());
        return zorvan::HTMLStrings::elementFromString(narrow.c_str());
    }

    /// The n-th element with this id in the order of the document, from 0; null when there is none.
    HtmlTreeNode* find(ZVHTMLElement id, int n = 0)
    {
        for (HtmlTreeNode* node = tree.root(); node != nullptr;
             node = nextInDocumentOrder(node, tree.root())) {
            if (elementOf(*node) == id && n-- == 0)
                return node;
        }
        return nullptr;
    }

    void attribute(HtmlTreeNode* node, ZVHTMLAttribute id, const char16_t* value)
    {
        attribute(node, id, values.stringValue(value));
    }
    void attribute(HtmlTreeNode* node, ZVHTMLAttribute id, HtmlValue* value)
    {
        static_cast<HtmlTagNodeData*>(node->data)->setAttribute(id, value);
    }

    CssDeclarationList& declarations(HtmlTreeNode* node)
    {
        auto* tag = static_cast<HtmlTagNodeData*>(node->data);
        if (tag->declarations == nullptr) {
            lists_.push_back(std::make_unique<CssDeclarationList>(&values));
            tag->declarations = lists_.back().get();
        }
        return *tag->declarations;
    }
    void declare(HtmlTreeNode* node, ZVCSSProperty property, HtmlValue* value)
    {
        declarations(node).set(property, value, /*important=*/false, /*edgeMargin=*/false);
    }

    HtmlValue* pixels(float number) { return values.lengthValue(number, UNITS_PIXELS); }
    HtmlValue* em(float number) { return values.lengthValue(number, UNITS_EM); }
    HtmlValue* keyword(ZVCSSValue id) { return values.keywordValue(id); }
    HtmlValue* color(std::uint32_t number) { return values.colorValue(number); }

    void addFont(const char16_t* name) { fontNames_.add(new zorvan::WString(name)); }

    /// Walks to the first stop, as the read driver does; true when the tree is done.
    bool walkSlice()
    {
        context.statusFlags = 0;
        context.walkNode = walkTree(tree.root(), context.walkNode, context);
        return context.walkNode == tree.root();
    }

    /// Goes back to the beginning of the tree.
    void rewind()
    {
        context.walkNode = nullptr;
        context.walkClimbing = 0;
    }

    /// Walks to the end, however often the host stops.
    Lines walkAll()
    {
        while (!walkSlice()) { }
        return host.takeCalls();
    }

    RecordingHost host;
    ValueCache values;
    CssDeclarationList runningStyle;
    HtmlTree tree;

private:
    static constexpr std::int32_t kTreeStates = 4;

    StyleSheet sheet_;
    TreeState state_;
    zorvan::IndexedList<TreeState> states_;
    zorvan::ArrayList<zorvan::WString*> fontNames_;
    std::vector<std::unique_ptr<CssDeclarationList>> lists_;
};

/// The line of a run of text.
inline std::string textLine(std::string_view text, std::uint32_t charSetId = CHARSET_ID_UTF16)
{
    return "SOEmitTextAt \"" + std::string(text) + "\" " + std::to_string(text.size()) + ' '
        + std::to_string(charSetId) + " 4660";
}

inline const std::string kParagraphLine = "SOEmitBreak 1 0";

} // namespace testing_support
