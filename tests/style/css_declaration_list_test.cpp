#include "style/css_declaration_list.h"

#include "support/process_heap.h"
#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using Properties = std::vector<std::uint32_t>;

Properties propertiesOf(const CssDeclarationList& list)
{
    Properties all;
    list.forEach([&](ZVCSSProperty property, const CssDeclaration* declaration) {
        EXPECT_EQ(declaration->getProperty(), property);
        all.push_back(property);
    });
    return all;
}

ZVCSSProperty property(std::uint32_t number) { return static_cast<ZVCSSProperty>(number); }

/// Three properties of one chain.
const ZVCSSProperty kFirst = property(1);
const ZVCSSProperty kSecond = property(17);
const ZVCSSProperty kThird = property(33);

class DeclarationList : public testing::Test {
protected:
    void setAll(
        CssDeclarationList& list, const Properties& numbers, int value, bool important = false)
    {
        for (const std::uint32_t number : numbers)
            list.set(property(number), cache.numberValue(value), important, false);
    }

    static float numberIn(const CssDeclarationList& list, ZVCSSProperty at)
    {
        return HtmlNumberValue::from(list.get(at)->getValue())->number;
    }

    ValueCache cache;
};

} // namespace

TEST_F(DeclarationList, BeginsEmptyWithSixteenAndSixteen)
{
    zorvan::clearAllocationFailure();
    const CssDeclarationList list(&cache);
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
    EXPECT_EQ(list.valueCache, &cache);
    EXPECT_TRUE(list.isOwning());
    EXPECT_EQ(list.getCapacity(), 16U);
    EXPECT_EQ(list.getOverflowCapacity(), 16U);
    EXPECT_FALSE(list.contains(PROPERTY_COLOR));
    testing_support::expectFailure(
        25, "item could not be found", [&] { list.get(PROPERTY_COLOR); });
}

TEST_F(DeclarationList, EntryIsOneBlockBesideThatOfTheList)
{
    HtmlValue* const value = cache.numberValue(1);
    CssDeclarationList list(&cache);
    zorvan::clearAllocationFailure();
    list.set(PROPERTY_COLOR, value, false, false);
    EXPECT_EQ(zorvan::allocationsSeen(), 2U);
    list.set(PROPERTY_WIDTH, value, false, false);
    EXPECT_EQ(zorvan::allocationsSeen(), 3U);
}

TEST_F(DeclarationList, AListInAnArenaTakesItsStorageThere)
{
    zorvan::Arena arena;
    HtmlValue* const value = cache.numberValue(1);
    zorvan::clearAllocationFailure();
    for (int made = 0; made < 20; ++made) {
        CssDeclarationList list(&cache, arena);
        EXPECT_TRUE(list.isInArena());
        EXPECT_TRUE(list.isOwning());
        for (std::uint32_t number = 1; number < 30; ++number)
            list.set(property(number), value, false, false);
    }
    EXPECT_EQ(zorvan::allocationsSeen(), 1U);
    EXPECT_FALSE(CssDeclarationList(&cache).isInArena());
}

TEST_F(DeclarationList, AListInAnArenaIsLikeAnyOther)
{
    zorvan::Arena arena;
    CssDeclarationList inArena(&cache, arena);
    CssDeclarationList onHeap(&cache);
    std::mt19937 random(3);
    for (int step = 0; step < 2'000; ++step) {
        const ZVCSSProperty at = property(static_cast<std::uint32_t>(random() % 40 + 1));
        const bool important = random() % 4 == 0;
        HtmlValue* const value = cache.numberValue(step);
        CssDeclaration declaration(at, value, important, false);
        if (random() % 3 == 0)
            declaration.addValue(cache.numberValue(step + 1));
        CssDeclarationList source(&cache);
        source.setCopy(declaration);
        const auto kind = random() % 6;
        for (CssDeclarationList* list : {&inArena, &onHeap}) {
            switch (kind) {
            case 0:
                list->add(new CssDeclaration(declaration));
                break;
            case 1:
                list->setCopy(declaration);
                break;
            case 2:
                list->merge(source, /*copy=*/true);
                break;
            case 3:
                list->remove(at);
                break;
            case 4:
                list->replaceByCopy(declaration);
                break;
            default:
                list->set(at, value, important, false);
            }
        }
        ASSERT_EQ(propertiesOf(inArena), propertiesOf(onHeap));
        for (const std::uint32_t number : propertiesOf(onHeap))
            ASSERT_TRUE(inArena.get(property(number))->equals(*onHeap.get(property(number)), true));
    }
    CssDeclarationList copy(&cache, arena);
    setAll(copy, {1, 2}, 1);
    copy.copyExactlyFrom(onHeap);
    EXPECT_EQ(propertiesOf(copy), propertiesOf(onHeap));
    EXPECT_TRUE(copy.isInArena());
    // Its own declaration again.
    copy.add(copy.get(property(propertiesOf(copy).front())));
    EXPECT_EQ(copy.getCount(), onHeap.getCount());
    copy.clear();
    EXPECT_TRUE(copy.isEmpty());
}

TEST_F(DeclarationList, EachAllocationOfAListInAnArenaMayFail)
{
    HtmlValue* const value = cache.numberValue(1);
    CssDeclaration many(PROPERTY_TEXT_DECORATION, value, false, false);
    many.addValue(cache.numberValue(2));
    std::uint32_t failures = 0;
    for (int made = 0; made < 3; ++made) {
        zorvan::Arena arena;
        CssDeclarationList list(&cache, arena);
        failures += testing_support::failEachAllocation(
            [&] { list.setCopy(many); }, [&] { EXPECT_TRUE(list.isEmpty()); });
        EXPECT_EQ(list.get(PROPERTY_TEXT_DECORATION)->getValueCount(), 2);
    }
    EXPECT_GT(failures, 3U);
}

TEST_F(DeclarationList, SetStoresAndReplaces)
{
    CssDeclarationList list(&cache);
    list.set(PROPERTY_COLOR, cache.numberValue(1), true, false);
    EXPECT_TRUE(list.get(PROPERTY_COLOR)->important);
    // The later one wins, with no regard to importance.
    list.set(PROPERTY_COLOR, cache.numberValue(2), false, true);
    EXPECT_EQ(list.getCount(), 1U);
    EXPECT_EQ(numberIn(list, PROPERTY_COLOR), 2);
    EXPECT_FALSE(list.get(PROPERTY_COLOR)->important);
    EXPECT_TRUE(list.get(PROPERTY_COLOR)->edgeMargin);
    list.set(PROPERTY_COLOR, nullptr, false, false);
    EXPECT_EQ(numberIn(list, PROPERTY_COLOR), 2);
    EXPECT_EQ(list.findValue(PROPERTY_COLOR), cache.numberValue(2));
    EXPECT_EQ(list.findValue(PROPERTY_WIDTH), nullptr);
}

TEST_F(DeclarationList, ReplacingIsRemovingAndPutting)
{
    CssDeclarationList list(&cache);
    setAll(list, {kFirst, kSecond, kThird}, 1);
    ASSERT_EQ(propertiesOf(list), (Properties{1, 17, 33}));
    // The last of the chain takes the place of the first, and the new one goes to the end.
    list.set(kFirst, cache.numberValue(2), false, false);
    EXPECT_EQ(propertiesOf(list), (Properties{33, 17, 1}));
    list.setCopy(CssDeclaration(kThird, cache.numberValue(3), false, false));
    EXPECT_EQ(propertiesOf(list), (Properties{1, 17, 33}));
    list.add(new CssDeclaration(kSecond, cache.numberValue(4), false, false));
    EXPECT_EQ(propertiesOf(list), (Properties{1, 33, 17}));
    CssDeclarationList source(&cache);
    setAll(source, {kFirst}, 5, true);
    list.merge(source, false);
    EXPECT_EQ(propertiesOf(list), (Properties{17, 33, 1}));
    EXPECT_EQ(numberIn(list, kFirst), 5);
}

TEST_F(DeclarationList, RemoveOfAnAbsentPropertyHasNoEffect)
{
    CssDeclarationList list(&cache);
    list.remove(PROPERTY_COLOR);
    setAll(list, {kFirst, kSecond}, 1);
    list.remove(kThird);
    EXPECT_EQ(list.getCount(), 2U);
    list.remove(kFirst);
    EXPECT_EQ(propertiesOf(list), (Properties{17}));
    list.clear();
    EXPECT_EQ(list.getCount(), 0U);
    setAll(list, {kFirst}, 2);
    EXPECT_EQ(numberIn(list, kFirst), 2);
}

TEST_F(DeclarationList, BorrowingListDeletesNothing)
{
    CssDeclaration first(PROPERTY_COLOR, cache.numberValue(1), false, false);
    CssDeclaration second(PROPERTY_COLOR, cache.numberValue(2), false, false);
    CssDeclarationList list(&cache, /*owning=*/false);
    list.add(&first);
    list.add(&second);
    EXPECT_EQ(list.get(PROPERTY_COLOR), &second);
    list.remove(PROPERTY_COLOR);
    list.add(&first);
    list.clear();
    list.add(&first);
    EXPECT_FALSE(list.isOwning());
}

TEST_F(DeclarationList, TakingOwnershipCopiesInPlace)
{
    std::vector<CssDeclaration> declarations;
    for (const ZVCSSProperty each : {kThird, kFirst, kSecond})
        declarations.emplace_back(each, cache.numberValue(1), false, false);
    CssDeclarationList list(&cache, /*owning=*/false);
    for (CssDeclaration& declaration : declarations)
        list.add(&declaration);
    const Properties order = propertiesOf(list);
    list.takeOwnership();
    EXPECT_TRUE(list.isOwning());
    EXPECT_EQ(propertiesOf(list), order);
    for (CssDeclaration& declaration : declarations) {
        EXPECT_NE(list.get(declaration.getProperty()), &declaration);
        EXPECT_TRUE(list.get(declaration.getProperty())->equals(declaration, true));
    }
    const CssDeclaration* own = list.get(kFirst);
    list.takeOwnership();
    EXPECT_EQ(list.get(kFirst), own);
}

TEST_F(DeclarationList, SetAndSetCopyMakeTheListOwning)
{
    CssDeclaration declaration(PROPERTY_COLOR, cache.numberValue(1), false, false);
    CssDeclarationList set(&cache, /*owning=*/false);
    set.add(&declaration);
    set.set(PROPERTY_WIDTH, nullptr, false, false);
    EXPECT_TRUE(set.isOwning());
    EXPECT_NE(set.get(PROPERTY_COLOR), &declaration);
    EXPECT_EQ(set.getCount(), 1U);
    CssDeclarationList copied(&cache, /*owning=*/false);
    copied.setCopy(declaration);
    EXPECT_TRUE(copied.isOwning());
    EXPECT_NE(copied.get(PROPERTY_COLOR), &declaration);
}

TEST_F(DeclarationList, MergeKeepsWhatIsThereButForImportance)
{
    struct Row {
        bool ownImportant, newImportant, replaced;
    };
    const Row rows[] = {
        {false, false, false},
        {false, true, true},
        {true, false, false},
        {true, true, false},
    };
    for (const Row& row : rows) {
        CssDeclarationList list(&cache);
        setAll(list, {PROPERTY_COLOR}, 1, row.ownImportant);
        CssDeclarationList source(&cache);
        setAll(source, {PROPERTY_COLOR, PROPERTY_WIDTH}, 2, row.newImportant);
        list.merge(source, true);
        EXPECT_EQ(list.getCount(), 2U);
        EXPECT_EQ(numberIn(list, PROPERTY_COLOR), row.replaced ? 2 : 1);
        EXPECT_EQ(list.get(PROPERTY_COLOR)->important, row.ownImportant || row.replaced);
        EXPECT_EQ(numberIn(list, PROPERTY_WIDTH), 2);
        EXPECT_NE(list.get(PROPERTY_WIDTH), source.get(PROPERTY_WIDTH));
    }
}

TEST_F(DeclarationList, MergeFollowsTheOrderOfTheSource)
{
    CssDeclarationList source(&cache);
    setAll(source, {kFirst, kSecond, kThird}, 1);
    source.remove(kFirst);
    ASSERT_EQ(propertiesOf(source), (Properties{33, 17}));
    CssDeclarationList list(&cache);
    list.merge(source, true);
    EXPECT_EQ(propertiesOf(list), (Properties{33, 17}));
}

TEST_F(DeclarationList, MergeWithoutCopyShares)
{
    CssDeclarationList source(&cache);
    setAll(source, {kFirst}, 1);
    CssDeclarationList list(&cache, /*owning=*/false);
    list.merge(source, false);
    EXPECT_FALSE(list.isOwning());
    EXPECT_EQ(list.get(kFirst), source.get(kFirst));
    const CssDeclarationList empty(&cache);
    list.merge(empty, true);
    EXPECT_FALSE(list.isOwning());
    list.merge(list, true);
    EXPECT_FALSE(list.isOwning());
    list.merge(source, true);
    EXPECT_TRUE(list.isOwning());
    EXPECT_NE(list.get(kFirst), source.get(kFirst));
    // An owning list takes copies, asked or not.
    CssDeclarationList owning(&cache);
    owning.merge(source, false);
    EXPECT_NE(owning.get(kFirst), source.get(kFirst));
}

TEST_F(DeclarationList, MergeKeepsTheMarkOfAnEdgeMargin)
{
    CssDeclarationList source(&cache);
    source.set(PROPERTY_MARGIN_TOP, cache.numberValue(1), false, true);
    source.set(PROPERTY_MARGIN_BOTTOM, cache.numberValue(1), false, false);
    source.set(PROPERTY_MARGIN_LEFT, cache.numberValue(1), true, true);
    for (const bool copy : {false, true}) {
        CssDeclarationList list(&cache, /*owning=*/copy);
        CssDeclaration left(PROPERTY_MARGIN_LEFT, cache.numberValue(2), false, false);
        if (copy)
            list.setCopy(left);
        else
            list.add(&left);
        list.merge(source, copy);
        EXPECT_TRUE(list.get(PROPERTY_MARGIN_TOP)->edgeMargin);
        EXPECT_FALSE(list.get(PROPERTY_MARGIN_BOTTOM)->edgeMargin);
        EXPECT_TRUE(list.get(PROPERTY_MARGIN_LEFT)->edgeMargin);
    }
}

TEST_F(DeclarationList, ReplaceValueGivesANewAndOnlyValue)
{
    CssDeclarationList list(&cache);
    list.set(kFirst, cache.enumValue(1), true, true);
    list.get(kFirst)->addValue(cache.enumValue(2));
    setAll(list, {kSecond, kThird}, 1);
    list.replaceValue(kFirst, cache.numberValue(7));
    const CssDeclaration* replaced = list.get(kFirst);
    EXPECT_EQ(replaced->getValueCount(), 1);
    EXPECT_EQ(replaced->getValue(), cache.numberValue(7));
    EXPECT_TRUE(replaced->important);
    EXPECT_TRUE(replaced->edgeMargin);
    // The order is that of removing and putting, also when the value is the same.
    EXPECT_EQ(propertiesOf(list), (Properties{33, 17, 1}));
    list.replaceValue(kThird, cache.numberValue(1));
    EXPECT_EQ(propertiesOf(list), (Properties{1, 17, 33}));
    list.replaceValue(kThird, cache.numberValue(1));
    EXPECT_EQ(propertiesOf(list), (Properties{1, 17, 33}));
    testing_support::expectFailure(25, "item could not be found",
        [&] { list.replaceValue(PROPERTY_COLOR, cache.numberValue(1)); });
}

TEST_F(DeclarationList, ReplaceValueLeavesTheOwnerOfABorrowedOneAlone)
{
    CssDeclaration declaration(PROPERTY_COLOR, cache.numberValue(1), false, false);
    CssDeclarationList list(&cache, /*owning=*/false);
    list.add(&declaration);
    list.replaceValue(PROPERTY_COLOR, cache.numberValue(1));
    EXPECT_FALSE(list.isOwning()) << "nothing changes";
    list.replaceValue(PROPERTY_COLOR, cache.numberValue(2));
    EXPECT_TRUE(list.isOwning());
    EXPECT_EQ(numberIn(list, PROPERTY_COLOR), 2);
    EXPECT_EQ(declaration.getValue(), cache.numberValue(1));
}

TEST_F(DeclarationList, CopyOfTheOwnDeclaration)
{
    for (const bool owning : {true, false}) {
        CssDeclaration declaration(kFirst, cache.enumValue(1), true, true);
        declaration.addValue(cache.enumValue(2));
        CssDeclaration other(kSecond, cache.enumValue(3), false, false);
        CssDeclarationList list(&cache, owning);
        list.add(owning ? new CssDeclaration(declaration) : &declaration);
        list.add(owning ? new CssDeclaration(other) : &other);
        list.setCopy(*list.get(kFirst));
        EXPECT_TRUE(list.isOwning());
        EXPECT_EQ(propertiesOf(list), (Properties{17, 1}));
        EXPECT_NE(list.get(kFirst), &declaration);
        EXPECT_TRUE(list.get(kFirst)->equals(declaration, true));
        EXPECT_EQ(list.get(kFirst)->getValueAt(1), cache.enumValue(2));
    }
}

TEST_F(DeclarationList, IntegersOfTheKinds)
{
    struct Row {
        HtmlValue* value;
        std::uint32_t kind;
        std::int32_t expected;
    };
    constexpr std::int32_t kUntouched = -77;
    const float huge = 1e20F;
    const float infinite = std::numeric_limits<float>::infinity();
    const Row rows[] = {
        {cache.percentValue(12.9F), 1, 12},
        {cache.percentValue(-12.9F), 1, -12},
        {cache.percentValue(huge), 1, INT32_MIN},
        {cache.percentValue(-huge), 1, INT32_MIN},
        {cache.percentValue(2147483648.0F), 1, INT32_MIN},
        {cache.percentValue(2147483520.0F), 1, 2147483520},
        {cache.percentValue(std::nanf("")), 1, INT32_MIN},
        {cache.numberValue(42), 2, 42},
        {cache.numberValue(INT32_MAX), 2, INT32_MIN},
        {cache.numberValue(INT32_MIN), 2, INT32_MIN},
        {cache.stringValue(u"12"), 3, kUntouched},
        {cache.colorValue(0x00FF8000), 4, 0x00FF8000},
        {cache.colorValue(0xFFFFFFFF), 4, -1},
        {cache.keywordValue(VALUE_BOLD), 5, 22},
        {cache.enumValue(7), 6, 7},
        {cache.lengthValue(3.9F, UNITS_PIXELS), 7, 3},
        {cache.lengthValue(-3.9F, UNITS_PIXELS), 7, -3},
        {cache.lengthValue(1, UNITS_INCHES), 7, 96},
        {cache.lengthValue(12, UNITS_POINTS), 7, 16},
        {cache.lengthValue(2, UNITS_EM), 7, 0},
        {cache.lengthValue(infinite, UNITS_PIXELS), 7, INT32_MIN},
    };
    for (const Row& row : rows) {
        CssDeclarationList list(&cache);
        list.set(PROPERTY_WIDTH, row.value, false, false);
        std::int32_t out = kUntouched;
        EXPECT_EQ(list.getIntValue(PROPERTY_WIDTH, &out), row.kind);
        EXPECT_EQ(out, row.expected) << row.kind;
        EXPECT_EQ(list.getIntValue(PROPERTY_WIDTH, nullptr), 0U);
        EXPECT_EQ(list.getIntValue(PROPERTY_COLOR, &out), 0U);
        EXPECT_EQ(out, row.expected);
    }
}

TEST_F(DeclarationList, IntegerOfAListIsThatOfItsFirstValue)
{
    CssDeclaration declaration(PROPERTY_WIDTH, cache.enumValue(5), false, false);
    declaration.addValue(cache.percentValue(3));
    CssDeclarationList list(&cache);
    list.setCopy(declaration);
    list.setCopy(CssDeclaration(PROPERTY_COLOR, nullptr, false, false));
    std::int32_t out = 0;
    EXPECT_EQ(list.getIntValue(PROPERTY_WIDTH, &out), 1U);
    EXPECT_EQ(out, 3);
    EXPECT_EQ(list.getIntValue(PROPERTY_COLOR, &out), 0U);
}

TEST_F(DeclarationList, ExactCopyGoesOnAlike)
{
    std::mt19937 random(9);
    CssDeclarationList list(&cache);
    for (int i = 0; i < 200; ++i) {
        const ZVCSSProperty each = property(static_cast<std::uint32_t>(1 + random() % 12 * 16));
        if (random() % 3 == 0)
            list.remove(each);
        else
            list.set(each, cache.numberValue(i), false, false);
        CssDeclarationList copy(&cache);
        setAll(copy, {1, 2, 3}, 0);
        copy.copyExactlyFrom(list);
        ASSERT_EQ(propertiesOf(copy), propertiesOf(list));
        ASSERT_EQ(copy.getCapacity(), list.getCapacity());
        ASSERT_EQ(copy.getOverflowCapacity(), list.getOverflowCapacity());
        ASSERT_EQ(copy.getFreeHint(), list.getFreeHint());
        ASSERT_TRUE(copy.isOwning());
        list.forEach([&](ZVCSSProperty at, const CssDeclaration* declaration) {
            EXPECT_NE(copy.get(at), declaration);
            EXPECT_TRUE(copy.get(at)->equals(*declaration, true));
        });
        copy.copyExactlyFrom(copy);
        ASSERT_EQ(propertiesOf(copy), propertiesOf(list));
    }
}

TEST_F(DeclarationList, FailureChangesNothing)
{
    CssDeclarationList source(&cache);
    setAll(source, {1, 17, 33, 49, 5, 6, 7, 8, 9}, 1);
    CssDeclarationList list(&cache);
    setAll(list, {2, 18}, 2);
    HtmlValue* const value = cache.numberValue(3);
    EXPECT_GT(testing_support::failEachAllocation([&] { list.set(kFirst, value, false, false); },
                  [&] {
                      EXPECT_EQ(propertiesOf(list), (Properties{2, 18}));
                  }),
        0U);
    const Properties before = propertiesOf(list);
    EXPECT_GT(testing_support::failEachAllocation([&] { list.copyExactlyFrom(source); },
                  [&] { EXPECT_EQ(propertiesOf(list), before); }),
        9U);
    EXPECT_EQ(propertiesOf(list), propertiesOf(source));

    CssDeclarationList borrowing(&cache, /*owning=*/false);
    borrowing.merge(source, false);
    EXPECT_GT(testing_support::failEachAllocation([&] { borrowing.takeOwnership(); },
                  [&] {
                      EXPECT_FALSE(borrowing.isOwning());
                      EXPECT_EQ(borrowing.get(kFirst), source.get(kFirst));
                  }),
        9U);
    EXPECT_NE(borrowing.get(kFirst), source.get(kFirst));
}

TEST_F(DeclarationList, FailureAmidAMergeKeepsWhatIsMerged)
{
    CssDeclarationList source(&cache);
    setAll(source, {1, 17, 33, 5, 6}, 1);
    const Properties all = propertiesOf(source);
    CssDeclaration own(kSecond, cache.numberValue(2), true, false);
    CssDeclarationList list(&cache, /*owning=*/false);
    list.add(&own);
    std::size_t held = 1;
    const std::uint32_t failures
        = testing_support::failEachAllocation([&] { list.merge(source, true); },
            [&] {
                // Never less than before, the own one always with them, and each one whole.
                EXPECT_GE(propertiesOf(list).size(), held);
                held = propertiesOf(list).size();
                EXPECT_EQ(numberIn(list, kSecond), 2);
                list.forEach([&](ZVCSSProperty at, const CssDeclaration* declaration) {
                    EXPECT_EQ(numberIn(list, at), at == kSecond ? 2 : 1);
                    EXPECT_NE(declaration, source.get(at));
                });
            });
    EXPECT_GT(failures, 2U);
    EXPECT_GT(held, 1U) << "a failure behind the first";
    EXPECT_TRUE(list.isOwning());
    EXPECT_EQ(list.getCount(), all.size());
    EXPECT_EQ(own.getValue(), cache.numberValue(2));
}

TEST_F(DeclarationList, FailureAmidSetCopyChangesNothingButTheOwner)
{
    CssDeclaration several(kFirst, cache.enumValue(1), false, false);
    several.addValue(cache.enumValue(2));
    CssDeclaration second(kSecond, cache.numberValue(5), false, false);
    CssDeclaration first(kFirst, cache.numberValue(6), false, false);
    for (const bool isThere : {false, true}) {
        CssDeclarationList list(&cache, /*owning=*/false);
        if (isThere)
            list.add(&first);
        list.add(&second);
        const Properties before = propertiesOf(list);
        EXPECT_GT(testing_support::failEachAllocation([&] { list.setCopy(several); },
                      [&] {
                          EXPECT_EQ(propertiesOf(list), before);
                          EXPECT_EQ(numberIn(list, kSecond), 5);
                          if (isThere) {
                              EXPECT_EQ(numberIn(list, kFirst), 6);
                          }
                      }),
            2U);
        EXPECT_TRUE(list.isOwning());
        EXPECT_EQ(propertiesOf(list), (Properties{17, 1}));
        EXPECT_TRUE(list.get(kFirst)->equals(several, true));
        EXPECT_EQ(first.getValue(), cache.numberValue(6));
    }
}
