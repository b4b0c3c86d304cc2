#include "support/css_names.h"

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
    const char* unknown; // the enumerator of 0
};

constexpr Enumeration kEnumerations[] = {
    {"ZVCSSProperty", "PROPERTY_", "css_properties.tsv", "PROPERTY_NONE"},
    {"ZVCSSValue", "VALUE_", "css_values.tsv", "VALUE_UNKNOWN"},
};

} // namespace

TEST(CssNames, EnumeratorsAreTheRowsOfTheTables)
{
    for (const Enumeration& enumeration : kEnumerations) {
        std::map<std::string, unsigned> expected{{enumeration.unknown, 0u}};
        for (const auto& [number, name] : tableRows(enumeration.table))
            expected[enumeratorName(enumeration.prefix, name)]
                = static_cast<unsigned>(std::stoul(number));
        std::map<std::string, unsigned> declared;
        for (const auto& [name, number] : enumerators("support/css_names.h", enumeration.name))
            declared[name] = number;
        EXPECT_EQ(declared, expected) << enumeration.name;
    }
}

TEST(CssNames, NoneIsAKeyword)
{
    EXPECT_EQ(VALUE_UNKNOWN, 0);
    EXPECT_EQ(VALUE_NONE, 104);
    EXPECT_EQ(VALUE_900, 9);
    EXPECT_EQ(zorvan::PROPERTY_WORD_WRAP, 196);
}
