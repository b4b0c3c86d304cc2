#include "tree/tree_construction.h"

#include "support/html_names.h"
#include "tests/common/tree_context.h"
#include "tests/containers/expect_failure.h"
#include "tree/element_sets.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing_support::expectFailure;
using testing_support::TreeContext;

constexpr std::uint32_t kLastElement = 135;

/// A context whose stack holds these elements, each the child of the one below.
class StackContext : public TreeContext {
public:
    explicit StackContext(const std::vector<std::uint32_t>& elements)
    {
        for (const std::uint32_t element : elements)
            open(element);
    }

    HtmlTreeNode* open(std::uint32_t element)
    {
        const Token token = BareToken(element);
        return InsertElement(&token, context);
    }

    std::vector<std::uint32_t> elements()
    {
        std::vector<std::uint32_t> ids;
        for (const HtmlTreeNode* node : openNodes())
            ids.push_back(elementOf(*node));
        return ids;
    }
};

using Ids = std::vector<std::uint32_t>;

TEST(StackOperations, OneEntryIsTooFew)
{
    StackContext tree({ELEMENT_HTML});
    HtmlFilterContext& context = tree.context;
    const char* const text = "Index is too small.";
    expectFailure(137, text, [&] { HasElementInScope(ELEMENT_HTML, context); });
    expectFailure(137, text, [&] { HasElementInScope(ELEMENT_P, context); });
    expectFailure(137, text, [&] { HasElementInButtonScope(ELEMENT_P, context); });
    expectFailure(137, text, [&] {
        HasElementInListedScope(
            ELEMENT_P, kTableScopeStoppers.data(), kTableScopeStoppers.size(), context);
    });
    expectFailure(137, text, [&] { HasElementOnStack(ELEMENT_HTML, context); });
    expectFailure(137, text, [&] {
        HtmlTreeNode* node = nullptr;
        FindFosterParent(node, context);
    });
}

TEST(StackOperations, EmptyStack)
{
    TreeContext tree;
    HtmlFilterContext& context = tree.context;
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { CurrentStackNode(context); });
    expectFailure(137, "ArrayList.first(): ArrayList is empty", [&] { FirstStackNode(context); });
    expectFailure(137, "ArrayList.last(): ArrayList is empty", [&] { PopElement(context); });
}

bool IsInSet(std::uint32_t element, const std::uint32_t* stoppers, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        if (stoppers[i] == element)
            return true;
    }
    return false;
}

/// A scope test as told: from the top down, the element sought ahead of the stoppers.
bool NaiveScopeTest(
    const Ids& stack, std::uint32_t sought, const std::uint32_t* stoppers, std::uint32_t count)
{
    for (std::size_t i = stack.size(); i-- > 0;) {
        if (stack[i] == sought)
            return true;
        if (IsInSet(stack[i], stoppers, count))
            return false;
    }
    return false;
}

void expectScopes(StackContext& tree, std::uint32_t sought)
{
    const Ids ids = tree.elements();
    HtmlFilterContext& context = tree.context;
    EXPECT_EQ(HasElementInScope(sought, context),
        NaiveScopeTest(ids, sought, kDefaultScopeStoppers.data(), kDefaultScopeStoppers.size()));
    EXPECT_EQ(HasElementInButtonScope(sought, context),
        NaiveScopeTest(ids, sought, kButtonScopeStoppers.data(), kButtonScopeStoppers.size()));
    EXPECT_EQ(HasElementInListedScope(
                  sought, kListItemScopeStoppers.data(), kListItemScopeStoppers.size(), context),
        NaiveScopeTest(ids, sought, kListItemScopeStoppers.data(), kListItemScopeStoppers.size()));
    EXPECT_EQ(HasElementInListedScope(
                  sought, kTableScopeStoppers.data(), kTableScopeStoppers.size(), context),
        NaiveScopeTest(ids, sought, kTableScopeStoppers.data(), kTableScopeStoppers.size()));
    EXPECT_EQ(HasElementOnStack(sought, context), NaiveScopeTest(ids, sought, nullptr, 0));
}

TEST(StackOperations, ScopeTestsForEveryElementBetween)
{
    for (std::uint32_t between = 1; between <= kLastElement; ++between) {
        SCOPED_TRACE(between);
        StackContext tree({ELEMENT_HTML, ELEMENT_BODY, ELEMENT_P, between, ELEMENT_B});
        for (const std::uint32_t sought :
            {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_P, ELEMENT_B, ELEMENT_TABLE, ELEMENT_I})
            expectScopes(tree, sought);
        expectScopes(tree, between);
    }
}

TEST(StackOperations, ScopeOfAStopper)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_TABLE});
    EXPECT_TRUE(HasElementInScope(ELEMENT_TABLE, tree.context));
    EXPECT_FALSE(HasElementInScope(ELEMENT_HTML, tree.context));
    EXPECT_TRUE(HasElementOnStack(ELEMENT_HTML, tree.context));
}

TEST(StackOperations, TitleStopsEveryDefaultScope)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_P, ELEMENT_TITLE});
    EXPECT_FALSE(HasElementInScope(ELEMENT_P, tree.context));
    EXPECT_FALSE(HasElementInButtonScope(ELEMENT_P, tree.context));
}

TEST(StackOperations, PopFlushesTextIntoTheElement)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_P});
    tree.context.pendingText->append(u"x");
    HtmlTreeNode* const popped = PopElement(tree.context);
    EXPECT_EQ(elementOf(*popped), ELEMENT_P);
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_HTML));
    EXPECT_EQ(tree.shortOutline(), "html[p[\"x\"]]");
    EXPECT_EQ(elementOf(*PopElement(tree.context)), ELEMENT_HTML);
    EXPECT_EQ(tree.context.currentNode, nullptr);
}

TEST(StackOperations, PopElementsUntilPopsAtLeastOne)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_P, ELEMENT_P, ELEMENT_B});
    PopElementsUntil(ELEMENT_P, tree.context);
    EXPECT_EQ(tree.elements(), (Ids{ELEMENT_HTML, ELEMENT_P}));
    PopElementsUntil(ELEMENT_P, tree.context);
    EXPECT_EQ(tree.elements(), (Ids{ELEMENT_HTML}));
}

TEST(StackOperations, PopElementsUntilWhatIsNotThereFails)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_P});
    expectFailure(137, "ArrayList.last(): ArrayList is empty",
        [&] { PopElementsUntil(ELEMENT_TABLE, tree.context); });
    EXPECT_EQ(tree.stack().getCount(), 0);
    EXPECT_EQ(tree.context.currentNode, nullptr);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 0);
}

TEST(StackOperations, PopTakesATextNodeThatStandsOnTheStack)
{
    StackContext tree({ELEMENT_HTML});
    tree.context.pendingText->append(u"x");
    EXPECT_EQ(CreateAppendPushText(tree.context), 1);
    EXPECT_EQ(tree.stack().getCount(), 2);
    EXPECT_EQ(tree.context.currentNode, tree.stack().last());
    EXPECT_EQ(elementOf(*PopElement(tree.context)), ELEMENT_NONE);
    EXPECT_EQ(tree.elements(), (Ids{ELEMENT_HTML}));
}

TEST(StackOperations, RemoveFromStackWhereverItStands)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_FORM, ELEMENT_DIV});
    HtmlTreeNode* const current = tree.context.currentNode;
    HtmlTreeNode* const form = tree.find(ELEMENT_FORM);
    RemoveFromStack(form, tree.context);
    EXPECT_EQ(tree.elements(), (Ids{ELEMENT_HTML, ELEMENT_DIV}));
    EXPECT_EQ(tree.context.currentNode, current);
    RemoveFromStack(form, tree.context);
    EXPECT_EQ(tree.elements(), (Ids{ELEMENT_HTML, ELEMENT_DIV}));
}

TEST(StackOperations, RemoveFromStackKeepsTheFrame)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_FORM});
    EXPECT_EQ(tree.context.buildFrames.getCount(), 2);
    RemoveFromStack(tree.find(ELEMENT_FORM), tree.context);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 2);
    PopElement(tree.context);
    EXPECT_EQ(tree.context.buildFrames.getCount(), 1);
}

TEST(StackOperations, ImpliedEndTagsOfEveryElement)
{
    for (std::uint32_t id = 1; id <= kLastElement; ++id) {
        SCOPED_TRACE(id);
        StackContext tree({ELEMENT_HTML, ELEMENT_DIV, id, ELEMENT_LI});
        const bool isImplied = IsImpliedEndTagElement(id);
        EXPECT_EQ(GenerateImpliedEndTags(0, tree.context), isImplied ? 2U : 1U);
        EXPECT_EQ(CurrentElementId(tree.context), isImplied ? ELEMENT_DIV : id);
    }
}

TEST(StackOperations, ImpliedEndTagsStopAtTheException)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_P, ELEMENT_LI, ELEMENT_DD});
    EXPECT_EQ(GenerateImpliedEndTags(ELEMENT_LI, tree.context), 1U);
    EXPECT_EQ(GenerateImpliedEndTags(ELEMENT_LI, tree.context), 0U);
    EXPECT_EQ(CurrentElementId(tree.context), ELEMENT_LI);
}

TEST(StackOperations, FosterParentIsInFrontOfTheNearestTable)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TD, ELEMENT_TABLE, ELEMENT_TR});
    HtmlTreeNode* node = nullptr;
    EXPECT_EQ(FindFosterParent(node, tree.context), nullptr);
    EXPECT_EQ(node, tree.openNodes().at(3));
}

TEST(StackOperations, FosterParentOfADetachedTable)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_DIV, ELEMENT_TABLE, ELEMENT_TR});
    HtmlTreeNode* const table = tree.find(ELEMENT_TABLE);
    tree.tree.detach(table);
    HtmlTreeNode* node = table;
    EXPECT_EQ(FindFosterParent(node, tree.context), tree.openNodes().at(1));
    EXPECT_EQ(node, nullptr);
    tree.tree.appendChild(tree.tree.root(), table);
}

TEST(StackOperations, FosterParentOfADetachedTableAtTheBottom)
{
    StackContext tree({ELEMENT_TABLE, ELEMENT_TR});
    HtmlTreeNode* const table = tree.find(ELEMENT_TABLE);
    tree.tree.detach(table);
    HtmlTreeNode* node = nullptr;
    expectFailure(137, "Index is too small.", [&] { FindFosterParent(node, tree.context); });
    tree.tree.appendChild(tree.tree.root(), table);
}

TEST(StackOperations, FosterParentWithoutATable)
{
    StackContext tree({ELEMENT_HTML, ELEMENT_BODY});
    HtmlTreeNode* node = tree.find(ELEMENT_BODY);
    EXPECT_EQ(FindFosterParent(node, tree.context), tree.find(ELEMENT_HTML));
    EXPECT_EQ(node, nullptr);
}

TEST(StackOperations, ResetInsertionMode)
{
    using enum InsertionMode;
    struct Row {
        std::uint32_t element;
        InsertionMode mode;
    };
    const Row rows[] = {{ELEMENT_SELECT, InSelect}, {ELEMENT_TD, InCell}, {ELEMENT_TH, InCell},
        {ELEMENT_TR, InRow}, {ELEMENT_TBODY, InTableBody}, {ELEMENT_TFOOT, InTableBody},
        {ELEMENT_THEAD, InTableBody}, {ELEMENT_CAPTION, InCaption},
        {ELEMENT_COLGROUP, InColumnGroup}, {ELEMENT_TABLE, InTable}, {ELEMENT_HEAD, InBody},
        {ELEMENT_BODY, InBody}, {ELEMENT_FRAMESET, InFrameset}, {ELEMENT_HTML, BeforeHead}};
    for (std::uint32_t id = 1; id <= kLastElement; ++id) {
        InsertionMode expected = InsertionMode::Text;
        for (const Row& row : rows) {
            if (row.element == id)
                expected = row.mode;
        }
        StackContext tree({ELEMENT_HTML, id, ELEMENT_DIV, ELEMENT_B});
        SetInsertionMode(InsertionMode::Text, tree.context);
        ResetInsertionMode(tree.context);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(expected)) << id;
    }
}

TEST(StackOperations, ResetInsertionModeTakesTheTopmost)
{
    StackContext tree(
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE, ELEMENT_TR, ELEMENT_TD, ELEMENT_SELECT});
    using enum InsertionMode;
    for (const InsertionMode mode : {InSelect, InCell, InRow, InTable, InBody}) {
        ResetInsertionMode(tree.context);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(mode));
        PopElement(tree.context);
    }
}

TEST(StackOperations, ResetInsertionModeLeavesTheBottomOut)
{
    StackContext tree({ELEMENT_BODY});
    SetInsertionMode(InsertionMode::AfterBody, tree.context);
    ResetInsertionMode(tree.context);
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InsertionMode::AfterBody));
}

TEST(StackOperations, ClosePElement)
{
    StackContext open({ELEMENT_HTML, ELEMENT_P, ELEMENT_B});
    ClosePElement(open.context);
    EXPECT_EQ(open.elements(), (Ids{ELEMENT_HTML}));

    StackContext shielded({ELEMENT_HTML, ELEMENT_P, ELEMENT_BUTTON});
    ClosePElement(shielded.context);
    EXPECT_EQ(shielded.elements(), (Ids{ELEMENT_HTML, ELEMENT_P, ELEMENT_BUTTON}));
    EXPECT_EQ(shielded.context.parseError, 0U);
}

TEST(StackOperations, NoTreeStateIsNull)
{
    TreeContext tree;
    EXPECT_EQ(CurrentTreeState(tree.context), &tree.treeState);
    EXPECT_EQ(&CurrentTree(tree.context), &tree.tree);
    tree.context.currentTreeIndex = 7;
    EXPECT_EQ(CurrentTreeState(tree.context), nullptr);
    tree.context.treeStates = nullptr;
    EXPECT_EQ(CurrentTreeState(tree.context), nullptr);
}

} // namespace
