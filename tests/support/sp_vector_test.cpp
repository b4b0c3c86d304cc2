#include "support/sp_vector.h"

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>

namespace {

struct Span {
    std::uint32_t words[27];
};
static_assert(sizeof(Span) == 108);

Span span(std::uint32_t number)
{
    Span result{};
    result.words[0] = number;
    result.words[26] = ~number;
    return result;
}

using Vector = std::unique_ptr<SPVector, void (*)(SPVector*)>;

Vector newVector() { return {SPVectorCreate(), &SPVectorDestroy}; }

} // namespace

TEST(SpVector, KeepsCopiesOfRecords)
{
    const Vector vector = newVector();
    ASSERT_NE(vector, nullptr);
    EXPECT_EQ(SPVectorSize(vector.get()), 0u);
    for (std::uint32_t i = 0; i < 1000; ++i) {
        Span record = span(i);
        EXPECT_EQ(SPVectorAddElement(vector.get(), &record, sizeof record), 0);
        record.words[0] = 0;
    }
    EXPECT_EQ(SPVectorSize(vector.get()), 1000u);
    for (std::uint32_t i = 0; i < 1000; ++i) {
        const Span expected = span(i);
        EXPECT_EQ(std::memcmp(SPVectorElementAt(vector.get(), i), &expected, sizeof expected), 0);
    }
}

TEST(SpVector, StoredRecordsCanBeChanged)
{
    const Vector vector = newVector();
    const Span record = span(1);
    SPVectorAddElement(vector.get(), &record, sizeof record);
    static_cast<Span*>(SPVectorElementAt(vector.get(), 0))->words[3] = 42;
    EXPECT_EQ(static_cast<Span*>(SPVectorElementAt(vector.get(), 0))->words[3], 42u);
}

TEST(SpVector, RecordMayBeOneOfItsOwn)
{
    const Vector vector = newVector();
    const Span record = span(7);
    SPVectorAddElement(vector.get(), &record, sizeof record);
    for (int i = 0; i < 100; ++i)
        SPVectorAddElement(vector.get(), SPVectorElementAt(vector.get(), 0), sizeof(Span));
    EXPECT_EQ(std::memcmp(SPVectorElementAt(vector.get(), 100), &record, sizeof record), 0);
}

TEST(SpVector, RefusesWhatDoesNotFit)
{
    const Vector vector = newVector();
    const Span record = span(1);
    EXPECT_NE(SPVectorAddElement(nullptr, &record, sizeof record), 0);
    EXPECT_NE(SPVectorAddElement(vector.get(), nullptr, sizeof record), 0);
    EXPECT_NE(SPVectorAddElement(vector.get(), &record, 0), 0);
    EXPECT_EQ(SPVectorSize(vector.get()), 0u);
    EXPECT_EQ(SPVectorAddElement(vector.get(), &record, sizeof record), 0);
    EXPECT_NE(SPVectorAddElement(vector.get(), &record, 4), 0);
    EXPECT_EQ(SPVectorSize(vector.get()), 1u);
    EXPECT_EQ(SPVectorElementAt(vector.get(), 1), nullptr);
    EXPECT_EQ(SPVectorElementAt(vector.get(), 0xFFFFFFFF), nullptr);
    EXPECT_EQ(SPVectorElementAt(nullptr, 0), nullptr);
    EXPECT_EQ(SPVectorSize(nullptr), 0u);
}

TEST(SpVector, RemoveAllElements)
{
    const Vector vector = newVector();
    const Span record = span(1);
    SPVectorAddElement(vector.get(), &record, sizeof record);
    SPVectorRemoveAllElements(vector.get());
    EXPECT_EQ(SPVectorSize(vector.get()), 0u);
    EXPECT_EQ(SPVectorElementAt(vector.get(), 0), nullptr);
    const std::uint32_t word = 5;
    EXPECT_EQ(SPVectorAddElement(vector.get(), &word, sizeof word), 0);
    EXPECT_EQ(*static_cast<std::uint32_t*>(SPVectorElementAt(vector.get(), 0)), 5u);
    SPVectorRemoveAllElements(nullptr);
    SPVectorDestroy(nullptr);
}

TEST(SpVector, FailedAllocations)
{
    zorvan::failNthAllocation(1);
    EXPECT_EQ(SPVectorCreate(), nullptr);
    zorvan::clearAllocationFailure();
    const Vector vector = newVector();
    std::uint32_t stored = 0;
    const Span record = span(1);
    for (int failures = 0; failures < 3;) {
        zorvan::failNthAllocation(1);
        try {
            SPVectorAddElement(vector.get(), &record, sizeof record);
            ++stored;
        } catch (const std::bad_alloc&) {
            ++failures;
            zorvan::clearAllocationFailure();
            EXPECT_EQ(SPVectorSize(vector.get()), stored);
            EXPECT_EQ(SPVectorAddElement(vector.get(), &record, sizeof record), 0);
            ++stored;
        }
    }
    zorvan::clearAllocationFailure();
    EXPECT_EQ(SPVectorSize(vector.get()), stored);
}
