#include "tree/active_formatting_list.h"

#include "support/process_heap.h"
#include "tree/html_value.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <random>
#include <vector>

namespace {

/// Elements that stand nowhere, with a few values for their attributes.
class Elements {
public:
    HtmlTreeNode* make(std::uint32_t elementId)
    {
        payloads_.push_back(
            std::make_unique<HtmlTagNodeData>(static_cast<ZVHTMLElement>(elementId)));
        return tree_.createDetachedNode(payloads_.back().get());
    }

    /// With one attribute of a number of its own; 0: none.
    HtmlTreeNode* make(std::uint32_t elementId, std::uint32_t number)
    {
        HtmlTreeNode* const node = make(elementId);
        if (number != 0)
            set(*node, ATTRIBUTE_COLOR, values_.colorValue(number));
        return node;
    }

    static void set(const HtmlTreeNode& node, ZVHTMLAttribute id, HtmlValue* value)
    {
        static_cast<HtmlTagNodeData&>(*node.data).setAttribute(id, value);
    }

    ValueCache& values() { return values_; }

private:
    HtmlTree tree_;
    ValueCache values_;
    std::vector<std::unique_ptr<HtmlTagNodeData>> payloads_;
};

/// Nodes in order, null for a marker; with the number of each node's attribute.
struct ModelEntry {
    HtmlTreeNode* node;
    std::uint32_t number;
};

using Model = std::vector<ModelEntry>;

HtmlTreeNode* thirdAlike(const Model& model, std::uint32_t elementId, std::uint32_t number)
{
    int count = 0;
    for (std::size_t i = model.size(); i-- > 0 && model[i].node != nullptr;) {
        if (number != 0 && elementOf(*model[i].node) == elementId && model[i].number == number
            && ++count == 3)
            return model[i].node;
    }
    return nullptr;
}

HtmlTreeNode* lastOf(const Model& model, std::uint32_t elementId)
{
    for (std::size_t i = model.size(); i-- > 0 && model[i].node != nullptr;) {
        if (elementOf(*model[i].node) == elementId)
            return model[i].node;
    }
    return nullptr;
}

void expectEqual(const ActiveFormattingList& list, const Model& model, Elements& elements)
{
    ASSERT_EQ(list.getCount(), static_cast<std::int32_t>(model.size()));
    ASSERT_EQ(list.getMarkerCount(),
        static_cast<std::uint32_t>(std::count_if(model.begin(), model.end(),
            [](const ModelEntry& entry) { return entry.node == nullptr; })));
    ASSERT_EQ(list.last(), model.empty() ? nullptr : model.back().node);
    for (std::size_t i = 0; i < model.size(); ++i) {
        if (model[i].node == nullptr)
            continue;
        ASSERT_TRUE(list.contains(*model[i].node));
        ASSERT_EQ(list.before(*model[i].node), i == 0 ? nullptr : model[i - 1].node);
        ASSERT_EQ(list.behind(*model[i].node), i + 1 == model.size() ? nullptr : model[i + 1].node);
    }
    for (const std::uint32_t elementId : {ELEMENT_A, ELEMENT_B, ELEMENT_FONT, ELEMENT_I}) {
        ASSERT_EQ(list.find(elementId), lastOf(model, elementId));
        for (std::uint32_t number = 0; number <= 2; ++number) {
            const HtmlTreeNode* const asked = elements.make(elementId, number);
            ASSERT_EQ(list.findThirdAlike(*asked), thirdAlike(model, elementId, number));
        }
    }
}

TEST(ActiveFormattingList, Empty)
{
    Elements elements;
    ActiveFormattingList list;
    expectEqual(list, {}, elements);
    EXPECT_FALSE(list.contains(*elements.make(ELEMENT_B)));
    HtmlTree tree;
    EXPECT_FALSE(list.contains(*tree.root()));
    HtmlTextNodeData text;
    EXPECT_FALSE(list.contains(*tree.createDetachedNode(&text)));
    list.clear();
}

TEST(ActiveFormattingList, ClearDoesNotLookAtTheNodes)
{
    ActiveFormattingList list;
    {
        Elements elements;
        list.add(elements.make(ELEMENT_FONT, 1));
        list.addMarker();
        list.add(elements.make(ELEMENT_FONT, 1));
    }
    list.clear();
    Elements elements;
    expectEqual(list, {}, elements);
    HtmlTreeNode* const node = elements.make(ELEMENT_FONT, 1);
    list.add(node);
    expectEqual(list, {{node, 1}}, elements);
}

TEST(ActiveFormattingList, StaleEntriesFromBeforeAClear)
{
    Elements elements;
    ActiveFormattingList list;
    HtmlTreeNode* const first = elements.make(ELEMENT_B);
    list.add(first);
    list.clear();
    EXPECT_FALSE(list.contains(*first));
    list.add(elements.make(ELEMENT_B));
    EXPECT_FALSE(list.contains(*first));
}

TEST(ActiveFormattingList, AlikeMeansTheSameValues)
{
    Elements elements;
    ValueCache& values = elements.values();
    ActiveFormattingList list;
    const auto make = [&elements](HtmlValue* size, HtmlValue* face) {
        HtmlTreeNode* const node = elements.make(ELEMENT_FONT);
        Elements::set(*node, ATTRIBUTE_SIZE, size);
        if (face != nullptr)
            Elements::set(*node, ATTRIBUTE_FACE, face);
        return node;
    };
    HtmlValue* const face = values.stringValue(u"Arial");
    HtmlTreeNode* const first = make(values.numberValue(3), face);
    list.add(first);
    list.add(make(values.numberValue(3), face));
    list.add(make(values.numberValue(3), face));
    EXPECT_EQ(list.findThirdAlike(*make(values.numberValue(3), face)), first);
    EXPECT_EQ(
        list.findThirdAlike(*make(values.numberValue(3), values.stringValue(u"Arial"))), nullptr);
    EXPECT_EQ(list.findThirdAlike(*make(values.numberValue(4), face)), nullptr);
    EXPECT_EQ(list.findThirdAlike(*make(values.numberValue(3), nullptr)), nullptr);
    HtmlTreeNode* const otherName = elements.make(ELEMENT_FONT);
    Elements::set(*otherName, ATTRIBUTE_SIZE, values.numberValue(3));
    Elements::set(*otherName, ATTRIBUTE_CLASS, face);
    EXPECT_EQ(list.findThirdAlike(*otherName), nullptr);
    HtmlTreeNode* const otherElement = elements.make(ELEMENT_B);
    Elements::set(*otherElement, ATTRIBUTE_SIZE, values.numberValue(3));
    Elements::set(*otherElement, ATTRIBUTE_FACE, face);
    EXPECT_EQ(list.findThirdAlike(*otherElement), nullptr);
}

TEST(ActiveFormattingList, AgainstANaiveModel)
{
    Elements elements;
    ActiveFormattingList list;
    Model model;
    std::mt19937 random(1'967);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    const std::uint32_t kinds[] = {ELEMENT_A, ELEMENT_B, ELEMENT_FONT, ELEMENT_I};
    for (int step = 0; step < 3'000; ++step) {
        const std::size_t what = model.size() > 60 ? 6 : below(8);
        const auto place
            = model.begin() + static_cast<std::ptrdiff_t>(model.empty() ? 0 : below(model.size()));
        const bool isNode = !model.empty() && place->node != nullptr;
        const auto number = static_cast<std::uint32_t>(below(3));
        if (what == 0) {
            list.addMarker();
            model.push_back({nullptr, 0});
        } else if (what == 1 && isNode) {
            HtmlTreeNode* const node = elements.make(kinds[below(4)], number);
            list.addBehind(*place->node, node);
            model.insert(place + 1, {node, number});
        } else if (what == 2 && isNode) {
            HtmlTreeNode* const node = elements.make(elementOf(*place->node), number);
            list.replace(*place->node, node);
            EXPECT_FALSE(list.contains(*place->node));
            *place = {node, number};
        } else if (what == 3 && isNode) {
            list.remove(*place->node);
            EXPECT_FALSE(list.contains(*place->node));
            model.erase(place);
        } else if (what == 6 && !model.empty()) {
            EXPECT_EQ(list.removeLast(), model.back().node == nullptr);
            model.pop_back();
        } else {
            HtmlTreeNode* const node = elements.make(kinds[below(4)], number);
            list.add(node);
            model.push_back({node, number});
        }
        expectEqual(list, model, elements);
    }
}

TEST(ActiveFormattingList, ManyDifferentAttributes)
{
    Elements elements;
    ActiveFormattingList list;
    std::vector<HtmlTreeNode*> nodes;
    for (std::uint32_t i = 0; i < 3'000; ++i) {
        nodes.push_back(elements.make(ELEMENT_FONT, i / 3 + 1));
        list.add(nodes.back());
    }
    for (std::uint32_t i = 0; i < 1'000; ++i)
        EXPECT_EQ(list.findThirdAlike(*elements.make(ELEMENT_FONT, i + 1)), nodes[i * 3]);
    for (std::size_t i = 0; i < 3'000; i += 3)
        list.remove(*nodes[i]);
    for (std::uint32_t i = 0; i < 1'000; ++i)
        EXPECT_EQ(list.findThirdAlike(*elements.make(ELEMENT_FONT, i + 1)), nullptr);
}

TEST(ActiveFormattingList, AnyFailedAllocationLeavesTheListAlone)
{
    Elements elements;
    ActiveFormattingList list;
    Model model;
    for (std::uint32_t i = 0; i < 200; ++i) {
        const std::uint32_t number = i % 7 == 0 ? 1 : 0;
        HtmlTreeNode* const node = elements.make(ELEMENT_FONT, number);
        zorvan::failNthAllocation(1);
        bool isIn = true;
        try {
            if (i % 2 == 0 || model.empty())
                list.add(node);
            else
                list.addBehind(*model.back().node, node);
        } catch (const std::bad_alloc&) {
            isIn = false;
        }
        zorvan::clearAllocationFailure();
        expectEqual(list, model.empty() || !isIn ? model : [&] {
            Model with = model;
            with.push_back({node, number});
            return with;
        }(), elements);
        if (!isIn)
            list.add(node);
        model.push_back({node, number});
    }
    expectEqual(list, model, elements);
}

} // namespace
