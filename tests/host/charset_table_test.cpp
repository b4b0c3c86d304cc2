#include "host/charset_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

namespace {

TEST(CharsetTable, HoldsEveryIdentifierOfTheFilter)
{
    std::ifstream table(std::string(HTMLFILTER_SOURCE_DIR) + "/tools/data/charset_ids.tsv");
    int rows = 0;
    for (std::string id, code; table >> id >> code; ++rows) {
        const auto number = static_cast<std::uint32_t>(std::stoul(id, nullptr, 0));
        EXPECT_TRUE(host::readsDocumentsBy(number)) << id;
    }
    EXPECT_EQ(rows, 46);
    for (const std::uint32_t id : {0u, 1u, 0x0F060000u, 0x10000100u})
        EXPECT_FALSE(host::readsDocumentsBy(id)) << std::hex << id;
    EXPECT_EQ(host::charsetTable().size(), 48u);
}

TEST(CharsetTable, HoldsTheStates)
{
    for (const std::uint32_t id : {0x10000100u, 0xA0102u, 0xF0C0000u, 0xF050000u, 0xF060000u})
        EXPECT_NE(host::findCharset(id), nullptr) << std::hex << id;
}

TEST(CharsetTable, FindsNothingElse)
{
    std::set<std::uint32_t> known;
    for (const host::CharsetRow& row : host::charsetTable())
        known.insert(row.id);
    EXPECT_EQ(known.size(), host::charsetTable().size());
    for (const std::uint32_t id : known) {
        for (const std::uint32_t other : {id - 1, id + 1})
            EXPECT_EQ(host::findCharset(other) != nullptr, known.contains(other));
    }
    EXPECT_EQ(host::findCharset(0), nullptr);
    EXPECT_EQ(host::findCharset(0xFFFFFFFF), nullptr);
}

} // namespace
