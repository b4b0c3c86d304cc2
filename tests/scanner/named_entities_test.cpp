#include "scanner/named_entities.h"

#include "scanner/char_refs.h"
#include "support/html_names.h"
#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

using testing_support::ScannerRun;
using testing_support::TestContext;

struct Row {
    std::string name;
    std::uint32_t value;
};

std::vector<Row> rowsOfTheData()
{
    std::ifstream file(std::string(HTMLFILTER_SOURCE_DIR) + "/tools/data/entities.tsv");
    std::vector<Row> rows;
    Row row;
    while (file >> row.value >> row.name)
        rows.push_back(row);
    return rows;
}

} // namespace

TEST(NamedEntities, TableIsTheDataInByteOrder)
{
    const std::vector<Row> rows = rowsOfTheData();
    ASSERT_EQ(rows.size(), 2'001u);
    ASSERT_EQ(kNamedEntityCount, 2'001u);
    for (std::uint32_t index = 0; index < kNamedEntityCount; ++index) {
        EXPECT_EQ(kNamedEntityTable[index].name, rows[index].name);
        EXPECT_EQ(kNamedEntityTable[index].value, rows[index].value);
        if (index > 0) {
            EXPECT_LT(std::strcmp(kNamedEntityTable[index - 1].name, rows[index].name.c_str()), 0);
        }
    }
}

TEST(NamedEntities, RequiredDeviations)
{
    TestContext test("");
    struct Deviation {
        const char16_t* name;
        std::int32_t value;
    };
    const Deviation rows[] = {
        {u"fjlig", 0x66},
        {u"bne", 0x3D},
        {u"NotEqualTilde", 0x2242},
        {u"lang", 0x2329},
        {u"rang", 0x232A},
        {u"vepsilon", 0x3AD},
        {u"cos", 0},
        {u"cosh", 0},
        {u"dotfill", 0},
        {u"log", 0},
        {u"sin", 0},
        {u"sinh", 0},
        {u"tan", 0},
        {u"tanh", 0},
        {u"Afr", 0}, // above 0xFFFF, hence absent
        {u"ascr", 0},
        {u"Aopf", 0},
    };
    for (const Deviation& row : rows)
        EXPECT_EQ(resolveCharRef(row.name, test.context), row.value)
            << testing::PrintToString(row.name);
}

TEST(NamedEntities, EveryRowInText)
{
    TestContext test("");
    for (const Row& row : rowsOfTheData()) {
        for (const char* end : {"", ";", " "}) {
            std::u16string text = u"&";
            for (const char byte : row.name + end)
                text += static_cast<char16_t>(byte);
            std::uint32_t value = 0;
            const std::uint32_t units = textCharRef(text.c_str(), value, test.context);
            const bool found = row.value != 0;
            EXPECT_EQ(units, found ? row.name.size() + 1 + (*end == ';' ? 1 : 0) : 0) << row.name;
            EXPECT_EQ(value, row.value) << row.name;
        }
    }
}

TEST(NamedEntities, EveryRowInAValue)
{
    for (const Row& row : rowsOfTheData()) {
        TestContext test(row.name + ";x");
        char16_t buffer[32];
        const std::uint16_t value = scanCharRef(buffer, 32, test.context);
        const bool found = row.value != 0 && row.name.size() <= 30;
        EXPECT_EQ(value, found ? row.value : '&') << row.name;
        EXPECT_EQ(readChar(test.context), found ? 'x' : row.name[0]) << row.name;
    }
}

// The whole road of a value, with all references in one tag's attribute at a time.
TEST(NamedEntities, EveryRowThroughATag)
{
    std::string input;
    const std::vector<Row> rows = rowsOfTheData();
    for (const Row& row : rows)
        input += "<a title=\"&" + row.name + ";\">";
    ScannerRun run(input);
    for (const Row& row : rows) {
        ASSERT_TRUE(run.next());
        char16_t value[64];
        ASSERT_EQ(readAttributeValue(ATTRIBUTE_TITLE, value, 64, run.context), 1u);
        std::u16string expected;
        if (row.value != 0 && row.name.size() <= 30)
            expected = static_cast<char16_t>(row.value);
        else
            expected = u"&" + std::u16string(row.name.begin(), row.name.end()) + u";";
        EXPECT_EQ(std::u16string(value), expected) << row.name;
    }
}
