#include "tree/active_formatting.h"

#include "containers/linked_hash_map.h"
#include "tests/common/tree_context.h"

#include <gtest/gtest.h>

namespace {

using testing_support::TreeContext;

TEST(ActiveFormatting, AnEmptyListHasNothingToOpen)
{
    TreeContext tree("<body>");
    tree.build();
    ReconstructActiveFormatting(tree.context);
    EXPECT_EQ(tree.shortOutline(), "html[head body]");
    EXPECT_EQ(tree.stack().getCount(), 2);
}

TEST(ActiveFormatting, ClearFreesTheEntries)
{
    TreeContext tree("<body>");
    tree.build();
    auto& list = *tree.context.activeFormatting;
    HtmlTreeNode* const body = tree.find(ELEMENT_BODY);
    list.put(body->id, new ActiveFormattingElement{body, body->id});
    list.put(1ULL << 32, new ActiveFormattingElement{nullptr, 1ULL << 32});
    ClearActiveFormatting(tree.context);
    EXPECT_EQ(list.getCount(), 0);
    ClearActiveFormatting(tree.context);
}

TEST(ActiveFormatting, WithoutAList)
{
    TreeContext tree;
    auto* const list = tree.context.activeFormatting;
    tree.context.activeFormatting = nullptr;
    ReconstructActiveFormatting(tree.context);
    ClearActiveFormatting(tree.context);
    tree.context.activeFormatting = list;
}

} // namespace
