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

template <typename Test> HtmlTreeNode* topmostOf(const Model& model, Test test)
{
    for (std::size_t i = model.size(); i-- > 0;) {
        if (test(elementOf(*model[i])))
            return model[i];
    }
    return nullptr;
}

OpenElements::Height heightOf(const OpenElements& stack, const HtmlTreeNode* node)
{
    return node == nullptr ? OpenElements::kNowhere : stack.heightOf(*node);
}

/// The lowest special element above a position, found by a walk.
HtmlTreeNode* firstSpecialAbove(const Model& model, std::size_t position)
{
    for (std::size_t i = position + 1; i < model.size(); ++i) {
        if (IsSpecialElement(elementOf(*model[i])))
            return model[i];
    }
    return nullptr;
}

void expectEntry(const OpenElements& stack, const Model& model, std::size_t i)
{
    const HtmlTreeNode& node = *model[i];
    ASSERT_TRUE(stack.contains(node));
    ASSERT_EQ(stack.below(node), i == 0 ? nullptr : model[i - 1]);
    ASSERT_EQ(stack.above(node), i + 1 == model.size() ? nullptr : model[i + 1]);
    ASSERT_EQ(stack.firstSpecialAbove(node), firstSpecialAbove(model, i));
    ASSERT_GT(
        stack.heightOf(node), i == 0 ? OpenElements::kNowhere : stack.heightOf(*model[i - 1]));
}

void expectEqual(const OpenElements& stack, const Model& model)
{
    ASSERT_EQ(stack.getCount(), static_cast<std::int32_t>(model.size()));
    for (std::size_t i = 0; i < model.size(); ++i)
        expectEntry(stack, model, i);
    if (!model.empty()) {
        ASSERT_EQ(stack.first(), model.front());
        ASSERT_EQ(stack.last(), model.back());
    }
    for (std::uint32_t id = 0; id <= kLastElement; ++id) {
        HtmlTreeNode* const node = topmostOf(model, [id](std::uint32_t e) { return e == id; });
        ASSERT_EQ(stack.topmostNode(id), node) << id;
        ASSERT_EQ(stack.topmost(id), heightOf(stack, node)) << id;
    }
    ASSERT_EQ(stack.topmostSpecial(), heightOf(stack, topmostOf(model, IsSpecialElement)));
}

TEST(OpenElements, EmptyStack)
{
    OpenElements stack;
    expectEqual(stack, {});
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { stack.last(); });
    expectFailure(137, "ArrayList.first(): ArrayList is empty", [&] { stack.first(); });
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { stack.pop(); });
}

TEST(OpenElements, NodesThatAreNotThere)
{
    Nodes nodes;
    HtmlTree tree;
    OpenElements stack;
    HtmlTreeNode* const body = nodes.make(ELEMENT_BODY);
    stack.push(body);
    HtmlTreeNode* const other = nodes.make(ELEMENT_BODY);
    EXPECT_FALSE(stack.contains(*other));
    EXPECT_FALSE(stack.contains(*tree.root()));
    EXPECT_EQ(stack.heightOf(*other), OpenElements::kNowhere);
    stack.remove(other);
    stack.remove(tree.root());
    expectEqual(stack, {body});
    EXPECT_EQ(stack.pop(), body);
    EXPECT_FALSE(stack.contains(*body));
    stack.remove(body);
    expectEqual(stack, {});
}

TEST(OpenElements, ReplaceKeepsThePlace)
{
    Nodes nodes;
    OpenElements stack;
    Model model = {nodes.make(ELEMENT_HTML), nodes.make(ELEMENT_B), nodes.make(ELEMENT_P),
        nodes.make(ELEMENT_B)};
    for (HtmlTreeNode* node : model)
        stack.push(node);
    HtmlTreeNode* const clone = nodes.make(ELEMENT_B);
    stack.replace(*model[1], clone);
    EXPECT_FALSE(stack.contains(*model[1]));
    model[1] = clone;
    expectEqual(stack, model);
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

TEST(OpenElements, StaleEntriesFromBeforeAClear)
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
        } else if (place == model.end() && kind == 2 && !model.empty()
            && !IsSpecialElement(elementOf(*node))) {
            const std::size_t position = below(model.size());
            stack.insertAbove(*model[position], node);
            model.insert(model.begin() + static_cast<std::ptrdiff_t>(position) + 1, node);
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

TEST(OpenElements, AnyFailedAllocationLeavesTheStackAlone)
{
    Nodes nodes;
    OpenElements stack;
    Model model;
    for (int i = 0; i < 200; ++i) {
        HtmlTreeNode* const node = nodes.make(i % 2 == 0 ? ELEMENT_DIV : ELEMENT_B);
        zorvan::failNthAllocation(1);
        try {
            stack.push(node);
            model.push_back(node);
        } catch (const std::bad_alloc&) {
            zorvan::clearAllocationFailure();
            expectEqual(stack, model);
            EXPECT_FALSE(stack.contains(*node));
            stack.push(node);
            model.push_back(node);
        }
        zorvan::clearAllocationFailure();
    }
    expectEqual(stack, model);
}

} // namespace
