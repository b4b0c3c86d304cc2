#include "containers/left_child_right_sib_tree.h"

#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <vector>

using testing_support::expectFailure;

namespace {

using Tree = zorvan::LeftChildRightSibTree<int*>;
using Node = Tree::Node;

static_assert(sizeof(Node) == 72);

/// The ids of a node's children; checks all links on the way.
std::vector<std::uint32_t> childrenOf(const Node& parent)
{
    std::vector<std::uint32_t> ids;
    const Node* before = nullptr;
    for (const Node* child = parent.firstChild; child != nullptr; child = child->nextSibling) {
        EXPECT_EQ(child->parent, &parent);
        EXPECT_EQ(child->prevSibling, before);
        EXPECT_EQ(child->tree, parent.tree);
        ids.push_back(child->id);
        before = child;
    }
    EXPECT_EQ(parent.lastChild, before);
    EXPECT_EQ(parent.childCount, ids.size());
    return ids;
}

using Ids = std::vector<std::uint32_t>;

} // namespace

TEST(LeftChildRightSibTree, BeginsWithARoot)
{
    Tree tree;
    EXPECT_EQ(tree.root()->id, 0U);
    EXPECT_EQ(tree.root()->data, nullptr);
    EXPECT_EQ(tree.root()->tree, &tree);
    EXPECT_EQ(tree.root()->parent, nullptr);
    EXPECT_EQ(tree.nextId, 1U);
    EXPECT_EQ(tree.nodeCount, 0U);
    EXPECT_EQ(childrenOf(*tree.root()), Ids());
}

TEST(LeftChildRightSibTree, CreatedNodesAreNumberedAndAppended)
{
    Tree tree;
    int payload = 0;
    Node* first = tree.createNode(&payload, tree.root());
    Node* second = tree.createNode(nullptr, tree.root());
    Node* inner = tree.createNode(nullptr, first);
    EXPECT_EQ(first->id, 1U);
    EXPECT_EQ(first->data, &payload);
    EXPECT_EQ(second->id, 2U);
    EXPECT_EQ(inner->id, 3U);
    EXPECT_EQ(tree.nodeCount, 3U);
    EXPECT_EQ(tree.nextId, 4U);
    EXPECT_EQ(childrenOf(*tree.root()), (Ids{1, 2}));
    EXPECT_EQ(childrenOf(*first), (Ids{3}));
}

TEST(LeftChildRightSibTree, DetachedNodeIsNotCounted)
{
    Tree tree;
    Node* node = tree.createDetachedNode(nullptr);
    EXPECT_EQ(node->id, 1U);
    EXPECT_EQ(node->parent, nullptr);
    EXPECT_EQ(tree.nodeCount, 0U);
    tree.detach(node);
    tree.appendChild(tree.root(), node);
    EXPECT_EQ(childrenOf(*tree.root()), (Ids{1}));
}

TEST(LeftChildRightSibTree, InsertsInFrontOfASibling)
{
    Tree tree;
    Node* last = tree.createNode(nullptr, tree.root());
    Node* first = tree.createDetachedNode(nullptr);
    tree.insertSiblingBefore(last, first);
    Node* middle = tree.createDetachedNode(nullptr);
    tree.insertSiblingBefore(last, middle);
    EXPECT_EQ(childrenOf(*tree.root()), (Ids{2, 3, 1}));
}

TEST(LeftChildRightSibTree, NodesOfAnotherTreeAreRefused)
{
    Tree tree;
    Tree other;
    Node* own = tree.createNode(nullptr, tree.root());
    Node* foreign = other.createDetachedNode(nullptr);
    Node* foreignParent = other.createNode(nullptr, other.root());
    expectFailure(15, "appendChild: Nodes must belong to the same tree!",
        [&] { tree.appendChild(own, foreign); });
    expectFailure(15, "appendChild: Nodes must belong to the same tree!",
        [&] { tree.createNode(nullptr, foreignParent); });
    expectFailure(15, "insertSiblingBefore: Nodes must belong to the same tree!",
        [&] { tree.insertSiblingBefore(own, foreign); });
    EXPECT_EQ(childrenOf(*own), Ids());
    EXPECT_EQ(childrenOf(*foreignParent), Ids());
    EXPECT_EQ(childrenOf(*tree.root()), (Ids{1}));
    EXPECT_EQ(childrenOf(*other.root()), (Ids{2}));
    EXPECT_EQ(foreign->parent, nullptr);
    EXPECT_EQ(tree.nodeCount, 1U);
    EXPECT_EQ(tree.nextId, 2U);
    EXPECT_EQ(other.nodeCount, 1U);
}

TEST(LeftChildRightSibTree, FailedNodeChangesNothing)
{
    Tree tree;
    EXPECT_EQ(testing_support::failEachAllocation([&] { tree.createNode(nullptr, tree.root()); },
                  [&] {
                      EXPECT_EQ(tree.nextId, 1U);
                      EXPECT_EQ(tree.nodeCount, 0U);
                      EXPECT_EQ(childrenOf(*tree.root()), Ids());
                  }),
        1U);
    EXPECT_EQ(childrenOf(*tree.root()), (Ids{1}));
}

TEST(LeftChildRightSibTree, ArenaHoldsPayloads)
{
    Tree tree;
    void* payload = tree.allocate(100, 16);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(payload) % 16, 0U);
    int* number = new (tree.allocate(sizeof(int), alignof(int))) int(5);
    EXPECT_EQ(*tree.createNode(number, tree.root())->data, 5);
}

TEST(LeftChildRightSibTree, DiscardedNodesStayReadableOutsideTheDocument)
{
    Tree tree;
    Node* a = tree.createNode(nullptr, tree.root()); // 1
    Node* b = tree.createNode(nullptr, tree.root()); // 2
    Node* c = tree.createNode(nullptr, b); // 3
    Node* d = tree.createNode(nullptr, tree.root()); // 4
    EXPECT_EQ(tree.discardedRoot()->firstChild, nullptr);
    tree.discard(b);
    EXPECT_EQ(a->nextSibling, d);
    EXPECT_EQ(d->prevSibling, a);
    EXPECT_EQ(tree.root()->childCount, 2U);
    EXPECT_EQ(b->parent, tree.discardedRoot());
    EXPECT_EQ(b->firstChild, c);
    EXPECT_EQ(c->parent, b);
    EXPECT_EQ(tree.nodeCount, 4U);
    // One that stands nowhere, too.
    tree.detach(a);
    tree.discard(a);
    EXPECT_EQ(b->nextSibling, a);
    EXPECT_EQ(tree.discardedRoot()->childCount, 2U);
    EXPECT_EQ(tree.root()->firstChild, d);
}

TEST(LeftChildRightSibTree, DeepTreeIsWalkedAndFreedInALoop)
{
    Tree tree;
    Node* node = tree.root();
    constexpr std::uint32_t kDepth = 500'000;
    for (std::uint32_t i = 0; i < kDepth; ++i)
        node = tree.createNode(nullptr, node);
    std::uint32_t seen = 0;
    for (Node* at = tree.root(); at != nullptr; at = zorvan::nextInDocumentOrder(at, tree.root()))
        ++seen;
    EXPECT_EQ(seen, kDepth + 1);
}

TEST(LeftChildRightSibTree, DocumentOrderStaysBelowItsTop)
{
    Tree tree;
    Node* a = tree.createNode(nullptr, tree.root()); // 1
    Node* b = tree.createNode(nullptr, a); // 2
    tree.createNode(nullptr, b); // 3
    tree.createNode(nullptr, a); // 4
    tree.createNode(nullptr, tree.root()); // 5
    const auto walk = [](Node* top) {
        Ids ids;
        for (Node* at = top; at != nullptr; at = zorvan::nextInDocumentOrder(at, top))
            ids.push_back(at->id);
        return ids;
    };
    EXPECT_EQ(walk(tree.root()), (Ids{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(walk(a), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(walk(b), (Ids{2, 3}));
    EXPECT_EQ(walk(tree.root()->lastChild), (Ids{5}));
    tree.detach(a);
    EXPECT_EQ(zorvan::nextInDocumentOrder<Node>(a->lastChild, nullptr), nullptr);
}

TEST(LeftChildRightSibTree, MatchesANaiveModel)
{
    std::mt19937 random(17);
    Tree tree;
    std::vector<Node*> nodes{tree.root()};
    std::map<Node*, Ids> model;
    model[tree.root()];
    const auto isBelow = [](const Node* node, const Node* top) {
        while (node != nullptr && node != top)
            node = node->parent;
        return node != nullptr;
    };
    for (int i = 0; i < 3'000; ++i) {
        Node* other = nodes[random() % nodes.size()];
        const std::uint32_t dice = random() % 4;
        if (dice == 0) {
            Node* made = tree.createNode(nullptr, other);
            nodes.push_back(made);
            model[made];
            model[other].push_back(made->id);
        } else {
            Node* moved = nodes[random() % nodes.size()];
            if (moved == tree.root() || isBelow(other, moved) || other == moved)
                continue;
            if (moved->parent != nullptr)
                std::erase(model[moved->parent], moved->id);
            tree.detach(moved);
            EXPECT_EQ(moved->parent, nullptr);
            if (dice == 1) {
                tree.appendChild(other, moved);
                model[other].push_back(moved->id);
            } else if (dice == 2 && other->parent != nullptr) {
                Ids& siblings = model[other->parent];
                siblings.insert(std::find(siblings.begin(), siblings.end(), other->id), moved->id);
                tree.insertSiblingBefore(other, moved);
            }
        }
        if (i % 20 == 0) {
            for (const Node* node : nodes)
                ASSERT_EQ(childrenOf(*node), model[const_cast<Node*>(node)]);
        }
    }
}
