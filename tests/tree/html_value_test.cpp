#include "tree/html_value.h"

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

TEST(HtmlValue, KindsAreTheNumbersThatReadersTest)
{
    ValueCache cache;
    struct Row {
        const HtmlValue* value;
        std::uint32_t kind;
    };
    const Row rows[] = {
        {cache.percentValue(50), 1},
        {cache.numberValue(3), 2},
        {cache.stringValue(u"x"), 3},
        {cache.colorValue(0x00FF00), 4},
        {cache.keywordValue(VALUE_AUTO), 5},
        {cache.enumValue(2), 6},
        {cache.lengthValue(1, UNITS_PIXELS), 7},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.value->kind, row.kind);
}

TEST(HtmlValue, PayloadsAreReachedByKind)
{
    ValueCache cache;
    EXPECT_EQ(HtmlPercentValue::from(cache.percentValue(12.5F))->number, 12.5F);
    EXPECT_EQ(HtmlNumberValue::from(cache.numberValue(-7))->number, -7.0F);
    EXPECT_EQ(HtmlNumberValue::from(cache.numberValue(16'777'217))->number, 16'777'216.0F);
    EXPECT_EQ(HtmlColorValue::from(cache.colorValue(0xFFFFFFFF))->color, 0xFFFFFFFFU);
    EXPECT_EQ(HtmlCssKeywordValue::from(cache.keywordValue(VALUE_AUTO))->keyword, 14U);
    EXPECT_EQ(HtmlEnumValue::from(cache.enumValue(8))->enumerator, 8U);
    const HtmlLengthValue* length = HtmlLengthValue::from(cache.lengthValue(1.5F, UNITS_EM));
    EXPECT_EQ(length->length.value, 1.5F);
    EXPECT_EQ(length->length.units, UNITS_EM);
    EXPECT_EQ(length->pixels(), 0.0F);
    EXPECT_EQ(cache.lengthValue(1, UNITS_INCHES)->pixels(), 96.0F);
    EXPECT_EQ(HtmlLengthValue::from(cache.enumValue(8)), nullptr);
    EXPECT_EQ(HtmlLengthValue::from(nullptr), nullptr);
    EXPECT_EQ(HtmlWStringValue::from(cache.enumValue(3)), nullptr);
}

TEST(HtmlValue, TruncationGivesTheLowestNumberForWhatDoesNotFit)
{
    struct Row {
        double number;
        std::int32_t expected;
    };
    const Row rows[] = {
        {0, 0},
        {-0.0, 0},
        {2.9, 2},
        {-2.9, -2},
        {2147483647.0, INT32_MAX},
        {2147483647.9, INT32_MAX},
        {2147483648.0, INT32_MIN},
        {-2147483648.0, INT32_MIN},
        {-2147483648.9, INT32_MIN},
        {-2147483649.0, INT32_MIN},
        {1e30, INT32_MIN},
        {std::numeric_limits<double>::infinity(), INT32_MIN},
        {-std::numeric_limits<double>::infinity(), INT32_MIN},
        {std::nan(""), INT32_MIN},
    };
    for (const Row& row : rows)
        EXPECT_EQ(truncateToInt32(row.number), row.expected) << row.number;
}

TEST(HtmlValue, OrderIsByKindThenByNumber)
{
    ValueCache cache;
    const HtmlValue* const ascending[] = {
        cache.percentValue(-1),
        cache.percentValue(99),
        cache.numberValue(-5),
        cache.numberValue(7),
        cache.stringValue(u"b"),
        cache.colorValue(0),
        cache.colorValue(0x80000000),
        cache.keywordValue(VALUE_AUTO),
        cache.keywordValue(VALUE_BOLD),
        cache.enumValue(0),
        cache.enumValue(0xFFFFFFFF),
        cache.lengthValue(-2, UNITS_PIXELS),
        cache.lengthValue(1, UNITS_EM),
        cache.lengthValue(2, UNITS_PIXELS),
        cache.lengthValue(3, UNITS_EM),
    };
    constexpr std::size_t count = std::size(ascending);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = 0; k < count; ++k) {
            const int order = compareValues(*ascending[i], *ascending[k]);
            EXPECT_EQ(order < 0, i < k) << i << ' ' << k;
            EXPECT_EQ(order > 0, i > k) << i << ' ' << k;
        }
    }
    EXPECT_EQ(compareValues(*cache.stringValue(u"a"), *cache.stringValue(u"b")), 0);
    EXPECT_EQ(
        compareValues(*cache.lengthValue(1, UNITS_PIXELS), *cache.lengthValue(1, UNITS_EM)), 0);
    EXPECT_EQ(
        compareValues(*cache.lengthValue(1, UNITS_EM), *cache.lengthValue(1, UNITS_INCHES)), 0);
}

TEST(ValueCache, EqualValuesAreOneObject)
{
    ValueCache cache;
    EXPECT_EQ(cache.percentValue(50), cache.percentValue(50));
    EXPECT_EQ(cache.numberValue(-3), cache.numberValue(-3));
    EXPECT_EQ(cache.colorValue(3), cache.colorValue(3));
    EXPECT_EQ(cache.keywordValue(VALUE_BOLD), cache.keywordValue(VALUE_BOLD));
    EXPECT_EQ(cache.enumValue(3), cache.enumValue(3));
    EXPECT_NE(cache.percentValue(50), cache.percentValue(51));
    EXPECT_NE(cache.numberValue(3), cache.numberValue(-3));
    EXPECT_NE(static_cast<HtmlValue*>(cache.colorValue(3)), cache.enumValue(3));
}

TEST(ValueCache, LengthsAreInternedInFourUnits)
{
    ValueCache cache;
    for (const ZVLinearUnits units : {UNITS_EM, UNITS_EX, UNITS_PIXELS, UNITS_POINTS}) {
        EXPECT_EQ(cache.lengthValue(2, units), cache.lengthValue(2, units));
        EXPECT_EQ(cache.lengthValue(2, units)->length.units, units);
    }
    EXPECT_NE(cache.lengthValue(2, UNITS_EM), cache.lengthValue(2, UNITS_EX));
    for (const ZVLinearUnits units : {UNITS_NONE, UNITS_INCHES, UNITS_CENTIMETERS,
             UNITS_MILLIMETERS, UNITS_PICAS, UNITS_PERCENT}) {
        const HtmlLengthValue* first = cache.lengthValue(2, units);
        const HtmlLengthValue* second = cache.lengthValue(2, units);
        EXPECT_NE(first, second);
        EXPECT_EQ(first->length.value, second->length.value);
        EXPECT_EQ(first->length.units, units);
    }
}

TEST(ValueCache, KeyOfAFloatIsItsBits)
{
    ValueCache cache;
    EXPECT_NE(cache.lengthValue(0.0F, UNITS_PIXELS), cache.lengthValue(-0.0F, UNITS_PIXELS));
    EXPECT_NE(cache.percentValue(0.0F), cache.percentValue(-0.0F));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(cache.percentValue(nan), cache.percentValue(nan));
}

TEST(ValueCache, StringsAreNewObjectsEachTime)
{
    ValueCache cache;
    const HtmlWStringValue* first = cache.stringValue(u"same");
    const HtmlWStringValue* second = cache.stringValue(u"same");
    EXPECT_NE(first, second);
    EXPECT_NE(first->text, second->text);
    EXPECT_EQ(std::u16string(first->text), u"same");
    EXPECT_EQ(first->length, 4U);
}

TEST(ValueCache, StringsAreCopiesThatEndAtTheFirstZero)
{
    ValueCache cache;
    char16_t source[] = u"abc\0def";
    const HtmlWStringValue* value = cache.stringValue(source, 7);
    source[0] = u'x';
    EXPECT_EQ(std::u16string(value->text), u"abc");
    EXPECT_EQ(value->length, 3U);
    EXPECT_EQ(cache.stringValue(u"abcdef", 2)->length, 2U);
    EXPECT_EQ(std::u16string(cache.stringValue(u"abcdef", 2)->text), u"ab");
    EXPECT_EQ(cache.stringValue(u"", 0)->length, 0U);
    EXPECT_EQ(cache.stringValue(nullptr)->length, 0U);
    auto string = std::make_unique<zorvan::WString>(u"taken over");
    EXPECT_EQ(std::u16string(cache.stringValue(std::move(string))->text), u"taken over");
}

TEST(ValueCache, HoldsManyValues)
{
    ValueCache cache;
    std::vector<const HtmlValue*> numbers;
    for (std::int32_t i = 0; i < 10'000; ++i)
        numbers.push_back(cache.numberValue(i * 37));
    for (std::int32_t i = 0; i < 10'000; ++i)
        EXPECT_EQ(cache.numberValue(i * 37), numbers[static_cast<std::size_t>(i)]);
    for (int i = 0; i < 10'000; ++i)
        cache.stringValue(u"text");
}

TEST(ValueCache, EmptyCacheAllocatesNothing)
{
    zorvan::clearAllocationFailure();
    const ValueCache cache;
    EXPECT_EQ(zorvan::allocationsSeen(), 0U);
}

TEST(ValueCache, FailedObjectStaysNull)
{
    using Make = HtmlValue* (*)(ValueCache&, std::int16_t);
    // The values of each kind that are one object, for some number.
    const Make makers[] = {
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* { return cache.percentValue(n); },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* { return cache.numberValue(n); },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.colorValue(static_cast<std::uint32_t>(n));
        },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.keywordValue(static_cast<ZVCSSValue>(n));
        },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.enumValue(static_cast<std::uint32_t>(n));
        },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.lengthValue(n, UNITS_EM);
        },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.lengthValue(n, UNITS_EX);
        },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.lengthValue(n, UNITS_PIXELS);
        },
        [](ValueCache& cache, std::int16_t n) -> HtmlValue* {
            return cache.lengthValue(n, UNITS_POINTS);
        },
    };
    for (const Make make : makers) {
        ValueCache cache;
        // The storage of the index is two blocks; what fails behind it is the object.
        zorvan::failNthAllocation(3);
        EXPECT_EQ(make(cache, 7), nullptr);
        zorvan::clearAllocationFailure();
        EXPECT_EQ(make(cache, 7), nullptr);
        HtmlValue* const other = make(cache, 8);
        EXPECT_NE(other, nullptr);
        EXPECT_EQ(make(cache, 7), nullptr);
        EXPECT_EQ(make(cache, 8), other);
    }
}

TEST(ValueCache, FailedObjectOfAnUncachedUnitIsNullOnce)
{
    ValueCache cache;
    for (int round = 0; round < 3; ++round) {
        zorvan::failNthAllocation(1);
        EXPECT_EQ(cache.lengthValue(7, UNITS_INCHES), nullptr);
        zorvan::clearAllocationFailure();
        // Each call makes a new object, so the next one has nothing to remember.
        EXPECT_NE(cache.lengthValue(7, UNITS_INCHES), nullptr);
    }
}

TEST(ValueCache, FailedStringIsNull)
{
    ValueCache cache;
    // The block of the text, then the object.
    for (const std::uint32_t n : {1U, 2U}) {
        zorvan::failNthAllocation(n);
        EXPECT_EQ(cache.stringValue(u"text"), nullptr);
        zorvan::clearAllocationFailure();
    }
    EXPECT_NE(cache.stringValue(u"text"), nullptr);
}

TEST(ValueCache, FailedIndexLeavesNothingBehind)
{
    ValueCache cache;
    // Both blocks of the index, ahead of the object.
    for (const std::uint32_t n : {1U, 2U}) {
        zorvan::failNthAllocation(n);
        EXPECT_THROW(cache.colorValue(7), std::bad_alloc);
        zorvan::clearAllocationFailure();
    }
    EXPECT_NE(cache.colorValue(7), nullptr);
    for (const std::uint32_t n : {2U}) {
        zorvan::failNthAllocation(n);
        EXPECT_THROW(cache.lengthValue(7, UNITS_INCHES), std::bad_alloc);
        zorvan::clearAllocationFailure();
    }
}
