#include "support/dynamic_store.h"

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

/// The 16 bytes that a context gives a store.
struct alignas(8) Area {
    unsigned char bytes[16] = {};

    bool isZero() const
    {
        const Area zero;
        return std::memcmp(bytes, zero.bytes, sizeof bytes) == 0;
    }
};

int save(Area& area, std::uint16_t variable, std::uint32_t record, const std::string& text)
{
    return FUTSaveDynamicVar(
        &area, variable, record, text.data(), static_cast<std::uint32_t>(text.size()));
}

/// The record as text, or "(none)".
std::string restored(Area& area, std::uint16_t variable, std::uint32_t record)
{
    void* block = &area;
    std::uint32_t size = 99;
    const int result = FUTRestoreDynamicVar(&area, variable, record, &block, &size);
    EXPECT_EQ(result == 0, block != nullptr);
    if (block == nullptr) {
        EXPECT_EQ(size, 0u);
        return "(none)";
    }
    std::string text(static_cast<const char*>(block), size);
    HeapFree(GetProcessHeap(), 0, block);
    return text;
}

class DynamicStore : public testing::Test {
protected:
    DynamicStore()
    {
        EXPECT_EQ(FUTInitDynamicStore(&area), 0);
        EXPECT_EQ(FUTCreateDynamicVar(&area, &variable), 0);
    }
    ~DynamicStore() override
    {
        EXPECT_EQ(FUTDeinitDynamicStore(&area), 0);
        EXPECT_TRUE(area.isZero());
    }

    Area area;
    std::uint16_t variable = 0;
};

} // namespace

TEST_F(DynamicStore, RestoresWhatWasSaved)
{
    EXPECT_NE(variable, 0);
    EXPECT_EQ(save(area, variable, 1, "first"), 0);
    EXPECT_EQ(save(area, variable, 2, "second"), 0);
    EXPECT_EQ(restored(area, variable, 1), "first");
    EXPECT_EQ(restored(area, variable, 2), "second");
    EXPECT_EQ(restored(area, variable, 1), "first") << "as often as asked";
    EXPECT_EQ(restored(area, variable, 3), "(none)");
}

TEST_F(DynamicStore, SaveReplaces)
{
    save(area, variable, 1, "first");
    save(area, variable, 1, "another, longer than the first");
    EXPECT_EQ(restored(area, variable, 1), "another, longer than the first");
    save(area, variable, 1, "");
    EXPECT_EQ(restored(area, variable, 1), "");
    EXPECT_EQ(FUTSaveDynamicVar(&area, variable, 1, nullptr, 0), 0);
    EXPECT_EQ(restored(area, variable, 1), "");
}

TEST_F(DynamicStore, RestoredBlockIsACopy)
{
    save(area, variable, 1, "first");
    void* block = nullptr;
    ASSERT_EQ(FUTRestoreDynamicVar(&area, variable, 1, &block, nullptr), 0);
    std::memcpy(block, "FIRST", 5);
    save(area, variable, 1, "other");
    EXPECT_EQ(std::memcmp(block, "FIRST", 5), 0);
    HeapFree(GetProcessHeap(), 0, block);
    EXPECT_EQ(restored(area, variable, 1), "other");
}

TEST_F(DynamicStore, VariablesAreApart)
{
    std::uint16_t second = 0;
    ASSERT_EQ(FUTCreateDynamicVar(&area, &second), 0);
    EXPECT_NE(second, variable);
    save(area, variable, 1, "of the first");
    save(area, second, 1, "of the second");
    EXPECT_EQ(restored(area, variable, 1), "of the first");
    EXPECT_EQ(restored(area, second, 1), "of the second");
    EXPECT_EQ(restored(area, second, 2), "(none)");
}

TEST_F(DynamicStore, KeepsManyRecords)
{
    constexpr std::uint32_t kCount = 20'000;
    for (std::uint32_t i = 0; i < kCount; ++i)
        ASSERT_EQ(save(area, variable, i * 65'536, std::to_string(i)), 0);
    for (std::uint32_t i = 0; i < kCount; ++i)
        ASSERT_EQ(restored(area, variable, i * 65'536), std::to_string(i));
    EXPECT_EQ(restored(area, variable, 1), "(none)");
}

TEST_F(DynamicStore, RefusesVariablesThatWereNotMade)
{
    const auto unknown = static_cast<std::uint16_t>(variable + 1);
    for (const std::uint16_t handle : {std::uint16_t{0}, unknown, std::uint16_t{0xFFFF}}) {
        EXPECT_NE(save(area, handle, 1, "x"), 0);
        EXPECT_EQ(restored(area, handle, 1), "(none)");
    }
    EXPECT_NE(FUTSaveDynamicVar(&area, variable, 1, nullptr, 5), 0);
    EXPECT_NE(FUTRestoreDynamicVar(&area, variable, 1, nullptr, nullptr), 0);
    EXPECT_NE(FUTCreateDynamicVar(&area, nullptr), 0);
}

TEST_F(DynamicStore, MakesNoMoreVariablesThanHandles)
{
    std::uint16_t handle = variable;
    while (handle != 0xFFFF)
        ASSERT_EQ(FUTCreateDynamicVar(&area, &handle), 0);
    EXPECT_NE(FUTCreateDynamicVar(&area, &handle), 0);
    EXPECT_EQ(save(area, 0xFFFF, 1, "last"), 0);
    EXPECT_EQ(restored(area, 0xFFFF, 1), "last");
}

TEST_F(DynamicStore, FailedAllocationsLeaveTheStoreAsItWas)
{
    save(area, variable, 1, "first");
    zorvan::failNthAllocation(1);
    EXPECT_NE(save(area, variable, 1, "second"), 0);
    zorvan::failNthAllocation(1);
    EXPECT_EQ(restored(area, variable, 1), "(none)");
    zorvan::clearAllocationFailure();
    EXPECT_EQ(restored(area, variable, 1), "first");

    // Without memory for more buckets the records are kept all the same.
    for (std::uint32_t i = 0; i < 100; ++i) {
        zorvan::failNthAllocation(2);
        ASSERT_EQ(save(area, variable, i, std::to_string(i)), 0);
        zorvan::clearAllocationFailure();
    }
    for (std::uint32_t i = 0; i < 100; ++i)
        ASSERT_EQ(restored(area, variable, i), std::to_string(i));
}

TEST(DynamicStoreArea, OfZerosIsNoStore)
{
    Area area;
    std::uint16_t variable = 1;
    EXPECT_NE(FUTCreateDynamicVar(&area, &variable), 0);
    EXPECT_NE(save(area, 1, 1, "x"), 0);
    EXPECT_EQ(restored(area, 1, 1), "(none)");
    EXPECT_EQ(FUTDeinitDynamicStore(&area), 0);
    EXPECT_TRUE(area.isZero());
    EXPECT_NE(FUTInitDynamicStore(nullptr), 0);
    EXPECT_EQ(FUTDeinitDynamicStore(nullptr), 0);
}

TEST(DynamicStoreArea, CanBePreparedAgain)
{
    Area area;
    for (int round = 0; round < 2; ++round) {
        std::uint16_t variable = 0;
        ASSERT_EQ(FUTInitDynamicStore(&area), 0);
        ASSERT_EQ(FUTCreateDynamicVar(&area, &variable), 0);
        EXPECT_EQ(restored(area, variable, 1), "(none)");
        EXPECT_EQ(save(area, variable, 1, "x"), 0);
        EXPECT_EQ(FUTDeinitDynamicStore(&area), 0);
        EXPECT_EQ(FUTDeinitDynamicStore(&area), 0) << "twice does no harm";
    }
}

TEST(DynamicStoreArea, StaysZeroWithoutMemory)
{
    for (std::uint32_t n = 1; n <= 2; ++n) {
        Area area;
        zorvan::failNthAllocation(n);
        EXPECT_NE(FUTInitDynamicStore(&area), 0);
        zorvan::clearAllocationFailure();
        EXPECT_TRUE(area.isZero());
    }
}
