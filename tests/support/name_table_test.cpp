#include "support/name_table.h"

#include <gtest/gtest.h>

namespace {

using zorvan::NameRow;
using zorvan::NameTable;

// Two names, one bucket: the shift of 1 puts both behind the slots of their hashes.
constexpr NameRow kRows[] = {{0, ""}, {1, "a"}, {0, ""}, {2, "bc"}};
constexpr std::uint16_t kShifts[] = {1};

struct Fixture {
    std::uint8_t slots[256] = {};
    NameTable table{0x811C9DC5, kRows, 4, slots, 255, kShifts, 0};

    Fixture()
    {
        for (const std::uint8_t number : {std::uint8_t{1}, std::uint8_t{3}}) {
            const NameRow& row = kRows[number];
            const std::uint32_t hash = zorvan::nameHash(row.text, row.length, table.seed);
            slots[((hash >> 16) + 1) & 255] = number;
        }
    }
};

} // namespace

TEST(NameTable, HashIsTheOneOfTheGenerator)
{
    EXPECT_EQ(zorvan::nameHash("", 0, 0x811C9DC5), 0x811C9DC5);
    EXPECT_EQ(zorvan::nameHash("a", 1, 0x811C9DC5), 0xE40C292C);
    EXPECT_EQ(zorvan::nameHash("foobar", 6, 0x811C9DC5), 0xBF9CF968);
    EXPECT_EQ(zorvan::nameHash("\xFF", 1, 0), 0xFFu * 0x01000193u) << "bytes are unsigned";
}

TEST(NameTable, FindsNamesAndNumbers)
{
    const Fixture fixture;
    EXPECT_EQ(findName(fixture.table, "a"), 1u);
    EXPECT_EQ(findName(fixture.table, "bc"), 3u);
    EXPECT_EQ(findName(fixture.table, "bcd", 2), 3u);
    EXPECT_EQ(findName(fixture.table, "b"), 0u);
    EXPECT_EQ(findName(fixture.table, ""), 0u);
    EXPECT_EQ(findName(fixture.table, nullptr), 0u);
    EXPECT_STREQ(nameOf(fixture.table, 1), "a");
    EXPECT_STREQ(nameOf(fixture.table, 2), "");
    EXPECT_STREQ(nameOf(fixture.table, 4), "");
}

TEST(NameTable, NamesTooLongForARowAreUnknown)
{
    const Fixture fixture;
    const char name[] = "abcdefghijklmnopqrstuvwxyzabcde";
    static_assert(sizeof name == sizeof(NameRow::text) + 1);
    EXPECT_EQ(findName(fixture.table, name), 0u);
    EXPECT_EQ(findName(fixture.table, name, 0xFFFFFFFF), 0u);
}
