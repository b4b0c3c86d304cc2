#include "support/html_names.h"

#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using testing_support::enumeratorName;
using testing_support::enumerators;
using testing_support::tableRows;

struct Enumeration {
    const char* name;
    const char* prefix;
    const char* table;
    std::map<std::string, unsigned> unnamed; // enumerators that are no row of the table
};

const Enumeration kEnumerations[] = {
    {"ZVHTMLElement", "ELEMENT_", "elements.tsv",
        {{"ELEMENT_NONE", 0}, {"ELEMENT_UNNAMED_116", 116}}},
    {"ZVHTMLAttribute", "ATTRIBUTE_", "attributes.tsv", {{"ATTRIBUTE_NONE", 0}}},
};

} // namespace

TEST(HtmlNames, EnumeratorsAreTheRowsOfTheTables)
{
    for (const Enumeration& enumeration : kEnumerations) {
        std::map<std::string, unsigned> expected = enumeration.unnamed;
        for (const auto& [number, name] : tableRows(enumeration.table))
            expected[enumeratorName(enumeration.prefix, name)]
                = static_cast<unsigned>(std::stoul(number));
        std::map<std::string, unsigned> declared;
        for (const auto& [name, number] : enumerators("support/html_names.h", enumeration.name))
            declared[name] = number;
        EXPECT_EQ(declared, expected) << enumeration.name;
    }
}

TEST(HtmlNames, NumbersThatRulesNameByNumber)
{
    EXPECT_EQ(ELEMENT_LH, 71);
    EXPECT_EQ(ELEMENT_UNNAMED_116, 116);
    EXPECT_EQ(ELEMENT_XMP, 135);
    EXPECT_EQ(ATTRIBUTE_HTTP_EQUIV, 74);
    EXPECT_EQ(ATTRIBUTE_WIDTH, 240);
    EXPECT_EQ(zorvan::ELEMENT_IMG, ELEMENT_IMG);
}
