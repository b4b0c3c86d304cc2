#include "style/css_declaration.h"

#include "support/process_heap.h"
#include "tests/containers/allocation_failures.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

std::vector<HtmlValue*> valuesOf(const CssDeclaration& declaration)
{
    std::vector<HtmlValue*> all;
    for (std::int32_t i = 0; i < declaration.getValueCount(); ++i)
        all.push_back(declaration.getValueAt(i));
    return all;
}

} // namespace

static_assert(sizeof(CssDeclaration) == 24);

TEST(CssDeclaration, HoldsOneValueWithoutAList)
{
    ValueCache cache;
    HtmlValue* const value = cache.numberValue(1);
    zorvan::clearAllocationFailure();
    const CssDeclaration declaration(PROPERTY_COLOR, value, true, false);
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
    EXPECT_EQ(declaration.getProperty(), PROPERTY_COLOR);
    EXPECT_EQ(declaration.getValue(), value);
    EXPECT_EQ(declaration.getValueCount(), 1);
    EXPECT_TRUE(declaration.important);
    EXPECT_FALSE(declaration.edgeMargin);
    EXPECT_EQ(declaration.getValueAt(0), value);
    EXPECT_EQ(declaration.getValueAt(1), nullptr);
    EXPECT_EQ(declaration.getValueAt(-1), nullptr);
}

TEST(CssDeclaration, EmptyOneHasNoValue)
{
    const CssDeclaration declaration;
    EXPECT_EQ(declaration.getProperty(), 0U);
    EXPECT_EQ(declaration.getValue(), nullptr);
    EXPECT_EQ(declaration.getValueCount(), 0);
}

TEST(CssDeclaration, AddedValuesStandInOrder)
{
    ValueCache cache;
    HtmlValue* const percent = cache.percentValue(5);
    HtmlValue* const text = cache.stringValue(u"a");
    HtmlValue* const laterText = cache.stringValue(u"a");
    HtmlValue* const underline = cache.keywordValue(VALUE_UNDERLINE);
    HtmlValue* const blink = cache.keywordValue(VALUE_BLINK);
    CssDeclaration declaration(PROPERTY_TEXT_DECORATION, underline, false, false);
    declaration.addValue(nullptr);
    EXPECT_EQ(valuesOf(declaration), (std::vector<HtmlValue*>{underline}));
    declaration.addValue(blink);
    EXPECT_EQ(valuesOf(declaration), (std::vector<HtmlValue*>{blink, underline}));
    EXPECT_EQ(declaration.getValue(), blink);
    declaration.addValue(text);
    declaration.addValue(laterText);
    declaration.addValue(percent);
    declaration.addValue(blink);
    // Equal ones go behind those that are there.
    EXPECT_EQ(valuesOf(declaration),
        (std::vector<HtmlValue*>{percent, text, laterText, blink, blink, underline}));
    EXPECT_EQ(declaration.getValueAt(6), nullptr);
    EXPECT_EQ(declaration.getValueAt(-1), nullptr);
}

TEST(CssDeclaration, FirstAddedValueOfAnEmptyOne)
{
    ValueCache cache;
    HtmlValue* const value = cache.enumValue(3);
    CssDeclaration declaration(PROPERTY_FONT_FAMILY, nullptr, false, false);
    declaration.addValue(value);
    EXPECT_EQ(valuesOf(declaration), (std::vector<HtmlValue*>{value}));
}

TEST(CssDeclaration, CopiesHaveAListOfTheirOwn)
{
    ValueCache cache;
    HtmlValue* const a = cache.enumValue(1);
    HtmlValue* const b = cache.enumValue(2);
    HtmlValue* const c = cache.enumValue(3);
    CssDeclaration declaration(PROPERTY_FONT_FAMILY, a, true, true);
    declaration.addValue(b);
    CssDeclaration copy(declaration);
    CssDeclaration assigned;
    assigned = declaration;
    EXPECT_TRUE(copy.equals(declaration, true));
    EXPECT_TRUE(assigned.equals(declaration, true));
    declaration.addValue(c);
    EXPECT_EQ(valuesOf(copy), (std::vector<HtmlValue*>{a, b}));
    EXPECT_EQ(valuesOf(assigned), (std::vector<HtmlValue*>{a, b}));
    EXPECT_TRUE(copy.important);
    EXPECT_TRUE(copy.edgeMargin);
    CssDeclaration& self = copy;
    copy = self;
    EXPECT_EQ(valuesOf(copy), (std::vector<HtmlValue*>{a, b}));
}

TEST(CssDeclaration, Equality)
{
    ValueCache cache;
    HtmlValue* const value = cache.enumValue(1);
    HtmlValue* const other = cache.enumValue(2);
    const CssDeclaration base(PROPERTY_COLOR, value, false, false);
    struct Row {
        CssDeclaration declaration;
        bool equal, equalWithImportant;
    };
    const Row rows[] = {
        {CssDeclaration(PROPERTY_COLOR, value, false, false), true, true},
        {CssDeclaration(PROPERTY_COLOR, value, true, false), true, false},
        {CssDeclaration(PROPERTY_COLOR, value, false, true), false, false},
        {CssDeclaration(PROPERTY_COLOR, other, false, false), false, false},
        {CssDeclaration(PROPERTY_COLOR, nullptr, false, false), false, false},
        {CssDeclaration(PROPERTY_WIDTH, value, false, false), false, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(base.equals(row.declaration, false), row.equal);
        EXPECT_EQ(base.equals(row.declaration, true), row.equalWithImportant);
        EXPECT_EQ(row.declaration.equals(base, false), row.equal);
    }
    CssDeclaration two(PROPERTY_COLOR, value, false, false);
    two.addValue(other);
    CssDeclaration listOfOne(PROPERTY_COLOR, nullptr, false, false);
    listOfOne.addValue(value);
    EXPECT_FALSE(base.equals(two, false));
    EXPECT_TRUE(base.equals(listOfOne, true));
}

TEST(CssDeclaration, ListsThatDifferLaterAreNotEqual)
{
    ValueCache cache;
    const auto listOf = [&](std::vector<std::uint32_t> numbers) {
        CssDeclaration declaration(PROPERTY_FONT_FAMILY, nullptr, false, false);
        for (const std::uint32_t number : numbers)
            declaration.addValue(cache.enumValue(number));
        return declaration;
    };
    const CssDeclaration base = listOf({1, 2, 3});
    EXPECT_TRUE(base.equals(listOf({3, 1, 2}), true));
    EXPECT_FALSE(base.equals(listOf({1, 2, 4}), true));
    EXPECT_FALSE(base.equals(listOf({1, 3, 3}), true));
    EXPECT_FALSE(base.equals(listOf({1, 2}), true));
    EXPECT_FALSE(base.equals(listOf({1, 2, 3, 3}), true));
}

TEST(CssDeclaration, LengthsOfOneNumberKeepTheirTurn)
{
    ValueCache cache;
    HtmlValue* const pixels = cache.lengthValue(1, UNITS_PIXELS);
    HtmlValue* const ems = cache.lengthValue(1, UNITS_EM);
    HtmlValue* const less = cache.lengthValue(0.5F, UNITS_POINTS);
    CssDeclaration declaration(PROPERTY_MARGIN, pixels, false, false);
    declaration.addValue(ems);
    declaration.addValue(less);
    declaration.addValue(pixels);
    EXPECT_EQ(valuesOf(declaration), (std::vector<HtmlValue*>{less, pixels, ems, pixels}));
}

TEST(CssDeclaration, ManyEqualValuesAreNoTask)
{
    // A look at all that is there for each one would not end within the time that a test has.
    constexpr std::int32_t kCount = 500'000;
    ValueCache cache;
    HtmlValue* const low = cache.keywordValue(VALUE_BLINK);
    HtmlValue* const high = cache.keywordValue(VALUE_UNDERLINE);
    CssDeclaration declaration(PROPERTY_TEXT_DECORATION, low, false, false);
    for (std::int32_t i = 1; i < kCount; ++i)
        declaration.addValue(low);
    declaration.addValue(high);
    EXPECT_EQ(declaration.getValueCount(), kCount + 1);
    EXPECT_EQ(declaration.getValueAt(kCount - 1), low);
    EXPECT_EQ(declaration.getValueAt(kCount), high);
}

TEST(CssDeclaration, StringsAreEqualByPointerAlone)
{
    ValueCache cache;
    HtmlValue* const text = cache.stringValue(u"same");
    const CssDeclaration a(PROPERTY_FONT_FAMILY, text, false, false);
    EXPECT_TRUE(a.equals(CssDeclaration(PROPERTY_FONT_FAMILY, text, false, false), true));
    EXPECT_FALSE(a.equals(
        CssDeclaration(PROPERTY_FONT_FAMILY, cache.stringValue(u"same"), false, false), true));
}

TEST(CssDeclaration, FailedAdditionChangesNothing)
{
    ValueCache cache;
    HtmlValue* const a = cache.enumValue(1);
    HtmlValue* const b = cache.enumValue(2);
    CssDeclaration declaration(PROPERTY_COLOR, a, false, false);
    testing_support::failEachAllocation(
        [&] { declaration.addValue(b); }, [&] { EXPECT_EQ(valuesOf(declaration).at(0), a); });
    EXPECT_EQ(valuesOf(declaration), (std::vector<HtmlValue*>{a, b}));
    EXPECT_EQ(
        testing_support::failEachAllocation([&] { const CssDeclaration copy(declaration); }, [] {}),
        2U);
}
