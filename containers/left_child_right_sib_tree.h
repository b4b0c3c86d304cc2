#pragma once

#include "containers/arena.h"
#include "containers/failures.h"

#include <cstddef>
#include <cstdint>
#include <new>

namespace zorvan {

template <typename T> class LeftChildRightSibTree;

/// A node of a tree. Nodes are made by their tree, lie in its storage and go with it; the payload
/// belongs to whoever handed it in. The links are plain fields, read by all and changed by the
/// tree.
template <typename T> class LeftChildRightSibTreeNode {
public:
    LeftChildRightSibTreeNode(std::uint32_t nodeId, T payload, LeftChildRightSibTree<T>* owner)
        : id(nodeId)
        , data(payload)
        , tree(owner)
    {
    }

    LeftChildRightSibTreeNode(const LeftChildRightSibTreeNode&) = delete;
    LeftChildRightSibTreeNode& operator=(const LeftChildRightSibTreeNode&) = delete;
    virtual ~LeftChildRightSibTreeNode() = default;

    std::uint32_t id; // unique in the tree, in the order of making; 0 is the root
    std::uint32_t childCount = 0; // direct children
    T data;
    LeftChildRightSibTree<T>* tree;
    LeftChildRightSibTreeNode* parent = nullptr; // null at the root and while detached
    LeftChildRightSibTreeNode* firstChild = nullptr;
    LeftChildRightSibTreeNode* nextSibling = nullptr;
    LeftChildRightSibTreeNode* prevSibling = nullptr;
    LeftChildRightSibTreeNode* lastChild = nullptr;
};

/// A tree of nodes with any number of children each. It never touches payloads: their owner ends
/// them before the tree goes.
template <typename T> class LeftChildRightSibTree {
public:
    using Node = LeftChildRightSibTreeNode<T>;

    LeftChildRightSibTree()
        : rootNode(0, T(), this)
        , discardedRootNode(0, T(), this)
    {
    }

    LeftChildRightSibTree(const LeftChildRightSibTree&) = delete;
    LeftChildRightSibTree& operator=(const LeftChildRightSibTree&) = delete;

    /// All nodes go at once with the storage that they lie in.
    virtual ~LeftChildRightSibTree() = default;

    /// The root, with id 0 and no payload. It is always there.
    Node* root() { return &rootNode; }
    const Node* root() const { return &rootNode; }

    /// Where discarded nodes are: not part of the document, but to be seen by whoever ends
    /// payloads.
    Node* discardedRoot() { return &discardedRootNode; }

    /// Makes a node with the next id and counts it in, as the last child of parent, which must be
    /// of this tree.
    Node* createNode(T data, Node* parent)
    {
        checkAppend(parent->tree == this);
        Node* node = createDetachedNode(data);
        ++nodeCount;
        appendChild(parent, node);
        return node;
    }

    /// Makes a node with the next id that stands nowhere; whoever wants it counted adds to
    /// nodeCount.
    Node* createDetachedNode(T data)
    {
        Node* node = new (allocate(sizeof(Node), alignof(Node))) Node(nextId, data, this);
        ++nextId;
        return node;
    }

    /// Makes a node, which must stand nowhere, the last child of parent.
    void appendChild(Node* parent, Node* node)
    {
        checkAppend(parent->tree == node->tree);
        node->parent = parent;
        node->prevSibling = parent->lastChild;
        node->nextSibling = nullptr;
        (parent->lastChild != nullptr ? parent->lastChild->nextSibling : parent->firstChild) = node;
        parent->lastChild = node;
        ++parent->childCount;
    }

    /// Puts a node, which must stand nowhere, in front of reference, which must have a parent.
    void insertSiblingBefore(Node* reference, Node* node)
    {
        if (reference->tree != node->tree)
            throwContainerFailure(
                FAILURE_FOREIGN_NODE, "insertSiblingBefore: Nodes must belong to the same tree!");
        Node* const before = reference->prevSibling;
        node->parent = reference->parent;
        node->prevSibling = before;
        node->nextSibling = reference;
        reference->prevSibling = node;
        (before != nullptr ? before->nextSibling : node->parent->firstChild) = node;
        ++node->parent->childCount;
    }

    /// Takes a node, with all that is below it, from its parent and siblings. No effect on a node
    /// that stands nowhere.
    void detach(Node* node)
    {
        Node* const parent = node->parent;
        if (parent == nullptr)
            return;
        Node* const before = node->prevSibling;
        Node* const behind = node->nextSibling;
        (before != nullptr ? before->nextSibling : parent->firstChild) = behind;
        (behind != nullptr ? behind->prevSibling : parent->lastChild) = before;
        --parent->childCount;
        node->parent = nullptr;
        node->prevSibling = nullptr;
        node->nextSibling = nullptr;
    }

    /// Takes a node, with all that is below it, out of the document for good. It stays readable
    /// until the tree goes.
    void discard(Node* node)
    {
        detach(node);
        appendChild(&discardedRootNode, node);
    }

    /// Storage that lives as long as the tree, for payloads, whose owner then calls the destructor
    /// alone. alignment: at most that of max_align_t. Throws std::bad_alloc.
    void* allocate(std::size_t size, std::size_t alignment)
    {
        return arena.allocate(size, alignment);
    }

    /// The same; null when there is no memory.
    void* tryAllocate(std::size_t size, std::size_t alignment)
    {
        return arena.tryAllocate(size, alignment);
    }

    std::uint32_t nodeCount = 0; // nodes made and not taken away again, the root left out
    std::uint32_t nextId = 1; // id of the node to be made next

private:
    static void checkAppend(bool isOfOneTree)
    {
        if (!isOfOneTree)
            throwContainerFailure(
                FAILURE_FOREIGN_NODE, "appendChild: Nodes must belong to the same tree!");
    }

    Node rootNode;
    Node discardedRootNode;
    Arena arena;
};

/// The node behind this one in the order of the document, stopRoot being the top: the first child,
/// else the next sibling, else that of the nearest ancestor that has one. Null at the end.
template <typename Node> Node* nextInDocumentOrder(Node* node, const Node* stopRoot)
{
    if (node->firstChild != nullptr)
        return node->firstChild;
    while (node != stopRoot) {
        if (node->nextSibling != nullptr)
            return node->nextSibling;
        node = node->parent;
        if (node == nullptr)
            return nullptr;
    }
    return nullptr;
}

} // namespace zorvan
