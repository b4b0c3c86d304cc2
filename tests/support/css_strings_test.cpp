#include "support/css_strings.h"

#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

#include <set>

using testing_support::tableRows;
using zorvan::CSSStrings;

TEST(CssStrings, EveryPropertyBothWays)
{
    std::uint32_t count = 0;
    for (const auto& [number, name] : tableRows("css_properties.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        EXPECT_EQ(CSSStrings::propertyFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(CSSStrings::propertyFromText((name + "-").c_str(), length), id) << name;
        EXPECT_EQ(CSSStrings::propertyName(id), name);
        ++count;
    }
    EXPECT_EQ(count, 199u);
    EXPECT_STREQ(CSSStrings::propertyName(0), "");
    EXPECT_STREQ(CSSStrings::propertyName(200), "");
}

TEST(CssStrings, EveryKeywordBothWays)
{
    std::uint32_t count = 0;
    for (const auto& [number, name] : tableRows("css_values.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        EXPECT_EQ(CSSStrings::valueFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(CSSStrings::valueFromText((name + "-").c_str(), length), id) << name;
        EXPECT_EQ(CSSStrings::valueName(id), name);
        ++count;
    }
    EXPECT_EQ(count, 189u);
    EXPECT_STREQ(CSSStrings::valueName(0), "");
    EXPECT_STREQ(CSSStrings::valueName(190), "");
}

TEST(CssStrings, NearMissesAreUnknown)
{
    for (const char* table : {"css_properties.tsv", "css_values.tsv"}) {
        std::set<std::string> names;
        for (const auto& [number, name] : tableRows(table))
            names.insert(name);
        for (const std::string& name : names) {
            for (const std::string& other :
                {name + "x", name.substr(1), name.substr(0, name.size() - 1), "-" + name}) {
                const bool property = std::string(table) == "css_properties.tsv";
                const std::uint32_t id = property
                    ? std::uint32_t{CSSStrings::propertyFromString(other.c_str())}
                    : std::uint32_t{CSSStrings::valueFromString(other.c_str())};
                EXPECT_EQ(id != 0, names.contains(other)) << other;
            }
        }
    }
}

TEST(CssStrings, EmptyTextIsNoPropertyAndInheritIsAKeyword)
{
    EXPECT_EQ(CSSStrings::propertyFromString(""), PROPERTY_NONE);
    EXPECT_EQ(CSSStrings::valueFromString("inherit"), 65);
    EXPECT_EQ(CSSStrings::valueFromString("inherit"), VALUE_INHERIT);
}

TEST(CssStrings, UnknownNames)
{
    const std::string longName(100'000, 'a');
    for (const char* name : {"", "Color", "450", "x-nothing", "azimuth", longName.c_str()}) {
        EXPECT_EQ(CSSStrings::propertyFromString(name), PROPERTY_NONE);
        EXPECT_EQ(CSSStrings::valueFromString(name), VALUE_UNKNOWN);
    }
    EXPECT_EQ(CSSStrings::propertyFromString(nullptr), PROPERTY_NONE);
    EXPECT_EQ(CSSStrings::valueFromString(nullptr), VALUE_UNKNOWN);
}
