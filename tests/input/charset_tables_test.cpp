#include "input/charset_tables.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::ifstream openData(const std::string& name)
{
    return std::ifstream(std::string(HTMLFILTER_SOURCE_DIR "/tools/data/") + name);
}

TEST(CharSetTables, NameRowsAreTheDataInItsOrder)
{
    std::ifstream data = openData("charset_names.tsv");
    std::string code;
    std::string name;
    std::size_t row = 0;
    for (; data >> code >> name; ++row) {
        ASSERT_LT(row, std::size(kCharSetNames));
        EXPECT_EQ(name, kCharSetNames[row].name);
        EXPECT_EQ(std::stoul(code, nullptr, 16), kCharSetNames[row].code) << name;
    }
    EXPECT_EQ(92u, row);
    EXPECT_EQ(std::size(kCharSetNames), row);
}

TEST(CharSetTables, IdentifierRowsAreTheDataInItsOrder)
{
    std::ifstream data = openData("charset_ids.tsv");
    std::string id;
    std::string code;
    std::size_t row = 0;
    for (; data >> id >> code; ++row) {
        ASSERT_LT(row, std::size(kCharSetIdentifiers));
        EXPECT_EQ(std::stoul(id, nullptr, 16), kCharSetIdentifiers[row].id);
        EXPECT_EQ(std::stoul(code, nullptr, 16), kCharSetIdentifiers[row].code) << id;
        if (row > 0) {
            EXPECT_LT(kCharSetIdentifiers[row - 1].id, kCharSetIdentifiers[row].id);
        }
    }
    EXPECT_EQ(46u, row);
    EXPECT_EQ(std::size(kCharSetIdentifiers), row);
}

} // namespace
