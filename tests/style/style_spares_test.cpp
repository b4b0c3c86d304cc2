#include "style/style_spares.h"

#include "support/process_heap.h"
#include "tests/style/style_document.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using namespace testing_support;

CssDeclaration declarationOf(ZVCSSProperty property, HtmlValue* value)
{
    return CssDeclaration(property, value, /*important=*/false, /*edgeMargin=*/false);
}

std::vector<ZVCSSProperty> orderOf(const CssDeclarationList& list)
{
    std::vector<ZVCSSProperty> order;
    list.forEach([&](ZVCSSProperty property, CssDeclaration*) { order.push_back(property); });
    return order;
}

TEST(StyleSpares, AListComesBackEmpty)
{
    StyleDocument document;
    StyleSpares spares;
    auto list = spares.takeList(&document.values);
    CssDeclarationList* const first = list.get();
    spares.setCopy(declarationOf(PROPERTY_COLOR, document.color(1)), *list);
    spares.giveBack(std::move(list));
    list = spares.takeList(&document.values);
    EXPECT_EQ(list.get(), first);
    EXPECT_TRUE(list->isEmpty());
    EXPECT_TRUE(list->isOwning());
    EXPECT_EQ(list->find(PROPERTY_COLOR), nullptr);
}

// The order of a list goes into what the host hears, so a used one must go on as a new one does.
TEST(StyleSpares, AListThatHasBeenUsedKeepsTheOrderOfANewOne)
{
    StyleDocument document;
    StyleSpares spares;
    for (int rounds = 0; rounds < 3; ++rounds) {
        for (std::uint32_t from = 1; from <= PROPERTY_ZOOM; ++from) {
            for (std::uint32_t count = 1; count < 12; ++count) {
                CssDeclarationList fresh(&document.values);
                auto used = spares.takeList(&document.values);
                for (std::uint32_t i = 0; i < count; ++i) {
                    const auto property
                        = static_cast<ZVCSSProperty>(1 + (from + i * 5) % PROPERTY_ZOOM);
                    fresh.setCopy(declarationOf(property, document.color(1)));
                    spares.setCopy(declarationOf(property, document.color(1)), *used);
                }
                ASSERT_EQ(orderOf(*used), orderOf(fresh)) << from << ' ' << count;
                ASSERT_EQ(used->getCapacity(), fresh.getCapacity());
                ASSERT_EQ(used->getOverflowCapacity(), fresh.getOverflowCapacity());
                ASSERT_EQ(used->getFreeHint(), fresh.getFreeHint());
                spares.giveBack(std::move(used));
            }
        }
    }
}

TEST(StyleSpares, AListThatHasGrownComesBackAsANewOneWithItsStorage)
{
    StyleDocument document;
    StyleSpares spares;
    auto list = spares.takeList(&document.values);
    for (int property = 1; property < 20; ++property)
        list->set(static_cast<ZVCSSProperty>(property), document.color(1), false, false);
    ASSERT_GT(list->getCapacity(), 16U);
    spares.giveBack(std::move(list));
    list = spares.takeList(&document.values);
    EXPECT_TRUE(list->isEmpty());
    EXPECT_EQ(list->getCapacity(), 16U);
    zorvan::clearAllocationFailure();
    const CssDeclaration declaration = declarationOf(PROPERTY_COLOR, document.color(1));
    for (std::uint32_t property = 1; property < 20; ++property)
        spares.addCopy(
            declarationOf(static_cast<ZVCSSProperty>(property), document.color(1)), *list);
    EXPECT_EQ(list->getCapacity(), 64U);
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
}

TEST(StyleSpares, ListsInAnArenaAndHugeOnesAreNotKept)
{
    StyleDocument document;
    StyleSpares spares;
    zorvan::Arena arena;
    spares.giveBack(std::make_unique<CssDeclarationList>(&document.values, arena));
    EXPECT_FALSE(spares.takeList(&document.values)->isInArena());
    auto list = spares.takeList(&document.values);
    for (std::uint32_t property = 1; property < 70; ++property)
        list->set(static_cast<ZVCSSProperty>(property), document.color(1), false, false);
    ASSERT_GT(list->getCapacity(), 64U);
    const CssDeclarationList* const huge = list.get();
    spares.giveBack(std::move(list));
    zorvan::clearAllocationFailure();
    EXPECT_NE(spares.takeList(&document.values), nullptr);
    EXPECT_EQ(zorvan::allocationsSeen(), 1U) << huge;
}

TEST(StyleSpares, ListsOfAnotherCacheAreNotHandedOut)
{
    StyleDocument document;
    ValueCache other;
    StyleSpares spares;
    spares.giveBack(spares.takeList(&other));
    EXPECT_EQ(spares.takeList(&document.values)->valueCache, &document.values);
}

TEST(StyleSpares, SetCopyReplacesWhatIsThere)
{
    StyleDocument document;
    StyleSpares spares;
    auto list = spares.takeList(&document.values);
    spares.setCopy(declarationOf(PROPERTY_COLOR, document.color(1)), *list);
    spares.setCopy(declarationOf(PROPERTY_COLOR, document.color(2)), *list);
    EXPECT_EQ(list->getCount(), 1U);
    EXPECT_EQ(list->findValue(PROPERTY_COLOR), document.color(2));
}

TEST(StyleSpares, ADeclarationThatHadValuesTakesAnotherAsItIs)
{
    StyleDocument document;
    StyleSpares spares;
    CssDeclaration many = declarationOf(PROPERTY_TEXT_DECORATION, nullptr);
    many.addValue(document.keyword(VALUE_UNDERLINE));
    many.addValue(document.keyword(VALUE_BLINK));
    auto list = spares.takeList(&document.values);
    spares.setCopy(many, *list);
    spares.giveBack(std::move(list));
    list = spares.takeList(&document.values);
    const CssDeclaration one = declarationOf(PROPERTY_COLOR, document.color(3));
    spares.setCopy(one, *list);
    EXPECT_TRUE(list->get(PROPERTY_COLOR)->equals(one, /*compareImportant=*/true));
    EXPECT_EQ(list->get(PROPERTY_COLOR)->getValueCount(), 1);
}

TEST(StyleSpares, AFailedAllocationLeavesTheListAsItWas)
{
    StyleDocument document;
    StyleSpares spares;
    const CssDeclaration declaration = declarationOf(PROPERTY_COLOR, document.color(1));
    auto list = spares.takeList(&document.values);
    for (std::uint32_t n = 1; n <= 2; ++n) {
        zorvan::failNthAllocation(n);
        EXPECT_THROW(spares.setCopy(declaration, *list), std::bad_alloc) << n;
        zorvan::clearAllocationFailure();
        EXPECT_TRUE(list->isEmpty());
    }
    spares.setCopy(declaration, *list);
    EXPECT_EQ(list->getCount(), 1U);
    zorvan::failNthAllocation(1);
    EXPECT_EQ(spares.takeList(&document.values), nullptr);
    zorvan::clearAllocationFailure();
}

TEST(StyleSpares, FramesGoAndComeWithoutAllocations)
{
    StyleSpares spares;
    zorvan::LinkedList<BuildFrame*> frames{};
    for (std::uint32_t i = 0; i < 200; ++i) {
        spares.reserveFrame();
        spares.pushFrame({i, 1, 2, 3}, frames);
    }
    for (std::uint32_t i = 200; i-- > 0;) {
        ASSERT_EQ(frames.head->value->fontSize, i);
        spares.popFrame(frames);
    }
    EXPECT_TRUE(frames.isEmpty());
    zorvan::failAllocationsFrom(1);
    for (std::uint32_t i = 0; i < 64; ++i) {
        spares.reserveFrame();
        spares.pushFrame({i, 0, 0, 0}, frames);
    }
    EXPECT_THROW(spares.reserveFrame(), std::bad_alloc);
    zorvan::clearAllocationFailure();
    while (!frames.isEmpty())
        spares.popFrame(frames);
}

TEST(StyleSpares, ManyGivenBackAreNotAllKept)
{
    StyleDocument document;
    StyleSpares spares;
    std::vector<std::unique_ptr<CssDeclarationList>> lists(500);
    const auto takeAll = [&] {
        for (auto& list : lists) {
            list = spares.takeList(&document.values);
            spares.setCopy(declarationOf(PROPERTY_COLOR, document.color(1)), *list);
        }
    };
    takeAll();
    for (auto& list : lists)
        spares.giveBack(std::move(list));
    zorvan::failAllocationsFrom(UINT32_MAX);
    takeAll();
    EXPECT_GT(zorvan::allocationsSeen(), 500U);
    zorvan::clearAllocationFailure();
}

// A document whose first frames come from a stored position has no spares yet.
TEST(StyleSpares, ADocumentWithoutSparesDoesWithoutThem)
{
    StyleDocument document;
    const CssDeclaration declaration = declarationOf(PROPERTY_COLOR, document.color(1));
    for (int rounds = 0; rounds < 2; ++rounds) {
        auto list = takeUndoList(document.context);
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->valueCache, &document.values);
        setUndo(declaration, *list, document.context);
        EXPECT_EQ(list->findValue(PROPERTY_COLOR), document.color(1));
        giveBackUndoList(std::move(list), document.context);
        EXPECT_EQ(document.internals.styleSpares != nullptr, rounds == 1);
        styleSparesOf(document.context);
    }
    EXPECT_EQ(&styleSparesOf(document.context), document.internals.styleSpares.get());
}

} // namespace
