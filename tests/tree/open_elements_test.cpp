#include "tree/open_elements.h"

#include "containers/left_child_right_sib_tree.h"
#include "support/process_heap.h"
#include "tests/containers/expect_failure.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <random>
#include <vector>

namespace {

using testing_support::expectFailure;

constexpr std::uint32_t kLastElement = 135;

/// Nodes that stand nowhere, with payloads of their own.
class Nodes {
public:
    HtmlTreeNode* make(std::uint32_t elementId)
    {
        payloads_.push_back(
            std::make_unique<HtmlGenericNodeData>(static_cast<ZVHTMLElement>(elementId)));
        return tree_.createDetachedNode(payloads_.back().get());
    }

private:
    HtmlTree tree_;
    std::vector<std::unique_ptr<HtmlGenericNodeData>> payloads_;
};

using Model = std::vector<HtmlTreeNode*>;

template <typename Test> std::int32_t topmostOf(const Model& model, Test test)
{
    for (std::size_t i = model.size(); i-- > 0;) {
        if (test(elementOf(*model[i])))
            return static_cast<std::int32_t>(i);
    }
    return -1;
}

void expectEqual(const OpenElements& stack, const Model& model)
{
    ASSERT_EQ(stack.getCount(), static_cast<std::int32_t>(model.size()));
    for (std::size_t i = 0; i < model.size(); ++i) {
        const auto position = static_cast<std::int32_t>(i);
        ASSERT_EQ(stack.getAt(position), model[i]);
        ASSERT_EQ(stack.positionOf(*model[i]), position);
        ASSERT_EQ(model[i]->data->stackPosition, position);
    }
    for (std::uint32_t id = 0; id <= kLastElement; ++id) {
        ASSERT_EQ(stack.topmost(id), topmostOf(model, [id](std::uint32_t e) { return e == id; }))
            << id;
    }
    ASSERT_EQ(stack.topmostSpecial(), topmostOf(model, IsSpecialElement));
}

TEST(OpenElements, EmptyStack)
{
    OpenElements stack;
    expectEqual(stack, {});
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { stack.last(); });
    expectFailure(137, "ArrayList.first(): ArrayList is empty", [&] { stack.first(); });
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { stack.pop(); });
    expectFailure(137, "ArrayList.get(): invalid parameter", [&] { stack.getAt(0); });
}

TEST(OpenElements, PositionsOutOfRange)
{
    Nodes nodes;
    OpenElements stack;
    stack.push(nodes.make(ELEMENT_HTML));
    HtmlTreeNode* const other = nodes.make(ELEMENT_B);
    expectFailure(137, "ArrayList.get(): invalid parameter", [&] { stack.getAt(-1); });
    expectFailure(137, "ArrayList.get(): invalid parameter", [&] { stack.getAt(1); });
    expectFailure(137, "ArrayList.insert(): invalid parameter", [&] { stack.insertAt(other, -1); });
    expectFailure(137, "ArrayList.insert(): invalid parameter", [&] { stack.insertAt(other, 2); });
    EXPECT_EQ(stack.getCount(), 1);
}

TEST(OpenElements, NodesThatAreNotThere)
{
    Nodes nodes;
    HtmlTree tree;
    OpenElements stack;
    HtmlTreeNode* const body = nodes.make(ELEMENT_BODY);
    stack.push(body);
    HtmlTreeNode* const other = nodes.make(ELEMENT_BODY);
    EXPECT_EQ(stack.positionOf(*other), -1);
    EXPECT_EQ(stack.positionOf(*tree.root()), -1);
    stack.remove(other);
    stack.remove(tree.root());
    expectEqual(stack, {body});
    EXPECT_EQ(stack.pop(), body);
    EXPECT_FALSE(stack.contains(*body));
    stack.remove(body);
    expectEqual(stack, {});
}

TEST(OpenElements, ClearDoesNotLookAtTheNodes)
{
    OpenElements stack;
    {
        Nodes nodes;
        stack.push(nodes.make(ELEMENT_HTML));
        stack.push(nodes.make(ELEMENT_BODY));
    }
    stack.clear();
    expectEqual(stack, {});
    Nodes nodes;
    HtmlTreeNode* const html = nodes.make(ELEMENT_HTML);
    stack.push(html);
    expectEqual(stack, {html});
}

TEST(OpenElements, StalePositionsFromBeforeAClear)
{
    Nodes nodes;
    OpenElements stack;
    HtmlTreeNode* const first = nodes.make(ELEMENT_HTML);
    HtmlTreeNode* const second = nodes.make(ELEMENT_HTML);
    stack.push(first);
    stack.clear();
    EXPECT_FALSE(stack.contains(*first));
    stack.push(second);
    EXPECT_FALSE(stack.contains(*first));
    EXPECT_TRUE(stack.contains(*second));
}

TEST(OpenElements, AgainstANaiveModel)
{
    Nodes nodes;
    OpenElements stack;
    Model model;
    std::vector<HtmlTreeNode*> pool;
    const std::uint32_t kinds[] = {
        0, ELEMENT_HTML, ELEMENT_DIV, ELEMENT_B, ELEMENT_TABLE, ELEMENT_P, ELEMENT_XMP, ELEMENT_A};
    for (int i = 0; i < 200; ++i)
        pool.push_back(nodes.make(kinds[static_cast<std::size_t>(i) % std::size(kinds)]));

    std::mt19937 random(20'260'101);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int step = 0; step < 4'000; ++step) {
        HtmlTreeNode* const node = pool[below(pool.size())];
        const auto place = std::find(model.begin(), model.end(), node);
        const std::size_t kind = below(5);
        if (kind == 0 && !model.empty()) {
            ASSERT_EQ(stack.pop(), model.back());
            model.pop_back();
        } else if (kind == 1) {
            stack.remove(node);
            if (place != model.end())
                model.erase(place);
        } else if (place == model.end() && kind == 2) {
            const std::size_t position = below(model.size() + 1);
            stack.insertAt(node, static_cast<std::int32_t>(position));
            model.insert(model.begin() + static_cast<std::ptrdiff_t>(position), node);
        } else if (place == model.end()) {
            stack.push(node);
            model.push_back(node);
        }
        expectEqual(stack, model);
        if (step % 1'000 == 999) {
            stack.clear();
            model.clear();
        }
    }
}

TEST(OpenElements, GrowthBeyondTheFirstStorage)
{
    Nodes nodes;
    OpenElements stack;
    Model model;
    for (int i = 0; i < 1'000; ++i) {
        model.push_back(nodes.make(i % 2 == 0 ? ELEMENT_DIV : ELEMENT_B));
        stack.push(model.back());
    }
    expectEqual(stack, model);
}

TEST(OpenElements, FailedGrowthLeavesTheStackAlone)
{
    Nodes nodes;
    OpenElements stack;
    Model model;
    for (int i = 0; i < 128; ++i) {
        model.push_back(nodes.make(ELEMENT_DIV));
        stack.push(model.back());
    }
    HtmlTreeNode* const more = nodes.make(ELEMENT_B);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(stack.push(more), std::bad_alloc);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(stack.insertAt(more, 3), std::bad_alloc);
    zorvan::clearAllocationFailure();
    expectEqual(stack, model);
    EXPECT_FALSE(stack.contains(*more));
}

} // namespace
