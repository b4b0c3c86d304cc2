#include "tree/tree_construction.h"

#include "output/host_calls.h"
#include "style/cascade.h"
#include "support/bail_out.h"
#include "support/exception.h"
#include "support/wstring.h"
#include "tree/attribute_rules.h"
#include "tree/element_attributes.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"
#include "tree/tree_state.h"

#include <array>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr std::uint32_t FAILURE_OUT_OF_MEMORY = 13;
constexpr std::uint32_t FAILURE_NO_ELEMENT = 15;

// Characters that become the text of their decimal reference; the one above them does not.
constexpr std::uint32_t kFirstLargeCharacter = 0x10000;
constexpr std::uint32_t kLastLargeCharacter = 0x10FFFE;

/// Ends a payload that has found no node; its storage is the tree's.
struct PayloadEnd {
    void operator()(HtmlGenericNodeData* payload) const { payload->~HtmlGenericNodeData(); }
};
template <typename Payload> using PayloadPointer = std::unique_ptr<Payload, PayloadEnd>;

[[noreturn]] void Fail(std::uint32_t code, const char* message)
{
    throw zorvan::Exception(code, message, nullptr, nullptr, 0);
}

/// A payload in the tree's storage; null when there is no memory.
template <typename Payload, typename... Arguments>
PayloadPointer<Payload> MakePayload(HtmlTree& tree, Arguments&&... arguments)
{
    void* const storage = tree.tryAllocate(sizeof(Payload), alignof(Payload));
    if (storage == nullptr)
        return nullptr;
    return PayloadPointer<Payload>(new (storage) Payload(std::forward<Arguments>(arguments)...));
}

PayloadPointer<HtmlGenericNodeData> MakeElementPayload(
    std::uint32_t elementId, HtmlFilterContext& context)
{
    if (elementId == ELEMENT_NONE)
        Fail(FAILURE_NO_ELEMENT, "HtmlTagNodeData(): invalid elementId for non-privileged child!");
    if (context.currentTreeRoot == nullptr || context.currentTreeRoot->tree == nullptr)
        Fail(FAILURE_OUT_OF_MEMORY, "CreateAppendPushElement(): pTree is NULL!");
    PayloadPointer<HtmlGenericNodeData> payload(CreateNodeData(elementId, context));
    if (payload == nullptr)
        Fail(FAILURE_OUT_OF_MEMORY, "CreateAppendPushElement(): node creation failed!");
    return payload;
}

/// Makes the node of a payload where it belongs now. isFostered: in front of the table when the
/// current element is part of one.
HtmlTreeNode* PlaceNode(HtmlGenericNodeData* data, bool isFostered, HtmlFilterContext& context)
{
    HtmlTreeNode* const current = context.currentNode;
    if (current == nullptr)
        return CurrentTree(context).createNode(data, context.currentTreeRoot);
    if (isFostered && IsFosterTarget(elementOf(*current)))
        return InsertFostered(data, context);
    return CurrentTree(context).createNode(data, current);
}

void PushNode(HtmlTreeNode* node, HtmlFilterContext& context)
{
    context.openElements->push(node);
    context.currentNode = node;
}

/// What the style sheet makes of an element, in its place.
void CascadeNode(HtmlTreeNode& node, StyleSheet* sheet, HtmlFilterContext& context)
{
    auto& payload = static_cast<HtmlTagNodeData&>(*node.data);
    CssDeclarationList* const list
        = sheet == nullptr ? payload.declarations : cascade(*sheet, node, context.currentTreeRoot);
    // An element for which the cascade has nothing has a list of its own, an empty one.
    if (list == nullptr) {
        if (sheet != nullptr)
            EnsureDeclarations(payload, *sheet, context);
        return;
    }
    resolveInherit(*list, context);
    payload.declarations = list;
}

/// Attributes and style of a new element. A fault in here is a fault of the document's style: the
/// filter gives up by the engine's own road. Faults of the node itself leave as they are.
void DressNode(HtmlTreeNode& node, bool applyAttributes, HtmlFilterContext& context)
{
    try {
        if (applyAttributes)
            ApplyElementAttributes(node.data, context);
        const TreeState* const state = CurrentTreeState(context);
        if (state == nullptr)
            return;
        CascadeNode(node, state->styleContext, context);
        enterStyle(node, context);
    } catch (const zorvan::Exception& failure) {
        UTBailOutEx(failure.code(), 0, 0);
    }
}

/// The units of "&#", the number and ";".
void AppendReference(std::uint32_t character, zorvan::WString& text)
{
    std::array<char16_t, 16> units;
    std::size_t first = units.size();
    units[--first] = u';';
    for (; character != 0; character /= 10)
        units[--first] = static_cast<char16_t>(u'0' + character % 10);
    units[--first] = u'#';
    units[--first] = u'&';
    text.append(units.data() + first, static_cast<std::int32_t>(units.size() - first));
}

} // namespace

HtmlTreeNode* CreateAppendPushElement(
    const Token* token, bool applyAttributes, HtmlFilterContext& context, bool flushText)
{
    if (flushText)
        FlushPendingText(context);
    auto payload = MakeElementPayload(token->element, context);
    HtmlTreeNode* const node
        = PlaceNode(payload.get(), (token->flags & TOKEN_FOSTER) != 0, context);
    payload.release();
    PushNode(node, context);

    if (CurrentTreeState(context) == nullptr)
        SOAbandonFilter(ABANDON_NO_TREE_OR_BUFFER, context);
    DressNode(*node, applyAttributes && (token->flags & TOKEN_SYNTHETIC) == 0, context);
    return node;
}

HtmlTreeNode* InsertElement(const Token* token, HtmlFilterContext& context)
{
    return CreateAppendPushElement(token, /*applyAttributes=*/true, context, /*flushText=*/true);
}

HtmlGenericNodeData* CreateNodeData(std::uint32_t elementId, HtmlFilterContext& context)
{
    HtmlTree& tree = CurrentTree(context);
    switch (elementId) {
    case ELEMENT_NONE:
        return nullptr;
    case ELEMENT_IMG:
        return MakePayload<HtmlImgNodeData>(tree).release();
    case ELEMENT_TR:
        return MakePayload<HtmlTrNodeData>(tree).release();
    }
    return MakePayload<HtmlTagNodeData>(tree, static_cast<ZVHTMLElement>(elementId)).release();
}

int CreateAppendPushText(HtmlFilterContext& context)
{
    zorvan::WString& text = *context.pendingText;
    auto payload = MakePayload<HtmlTextNodeData>(CurrentTree(context));
    if (payload == nullptr
        || !payload->trySetText(text.data, static_cast<std::uint32_t>(text.length)))
        Fail(FAILURE_OUT_OF_MEMORY, "CreateAppendPushText(): node creation failed!");
    HtmlTreeNode* const node = PlaceNode(payload.get(), context.pendingTextFoster == 1, context);
    payload.release();
    // The text stands in the tree now. Should the stack have no room for its node, a host that
    // reads on must not get it twice.
    text.clear();
    context.pendingTextFoster = 0;
    PushNode(node, context);
    return 1;
}

void FlushPendingText(HtmlFilterContext& context)
{
    if (context.pendingText->length == 0)
        return;
    CreateAppendPushText(context);
    // A text node has no style to leave.
    OpenElements& stack = *context.openElements;
    stack.pop();
    context.currentNode = stack.getCount() == 0 ? nullptr : stack.last();
}

void AppendCharacter(std::uint32_t character, zorvan::WString& text)
{
    if (character >= kFirstLargeCharacter && character <= kLastLargeCharacter) {
        AppendReference(character, text);
        return;
    }
    // QUIRK(NodeConstruction.CharactersBeyondTheLastAreOneTruncatedUnit): the last code point and
    // all numbers above it lose their upper half.
    text.append(static_cast<char16_t>(character));
}

void AppendPendingChar(const Token* token, HtmlFilterContext& context)
{
    if (token->character == 0)
        return;
    if ((token->flags & TOKEN_FOSTER) != 0)
        context.pendingTextFoster = 1;
    AppendCharacter(token->character, *context.pendingText);
}

HtmlTreeNode* InsertFostered(HtmlGenericNodeData* data, HtmlFilterContext& context)
{
    HtmlTree& tree = CurrentTree(context);
    HtmlTreeNode* table = nullptr;
    HtmlTreeNode* const parent = FindFosterParent(table, context);
    if (table == nullptr)
        return tree.createNode(data, parent);
    HtmlTreeNode* const node = tree.createDetachedNode(data);
    ++tree.nodeCount;
    tree.insertSiblingBefore(table, node);
    return node;
}
