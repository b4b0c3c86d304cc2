#include "support/html_strings.h"

#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

#include <set>

using testing_support::tableRows;
using zorvan::HTMLStrings;

TEST(HtmlStrings, EveryElementBothWays)
{
    std::set<std::uint32_t> named;
    for (const auto& [number, name] : tableRows("elements.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        named.insert(id);
        EXPECT_EQ(HTMLStrings::elementFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(HTMLStrings::elementFromText((name + "x").c_str(), length), id) << name;
        EXPECT_EQ(HTMLStrings::elementName(id), name);
    }
    EXPECT_EQ(named.size(), 134u);
    for (std::uint32_t id = 0; id < 300; ++id) {
        if (!named.contains(id)) {
            EXPECT_STREQ(HTMLStrings::elementName(id), "") << id;
        }
    }
}

TEST(HtmlStrings, EveryAttributeBothWays)
{
    std::set<std::uint32_t> named;
    for (const auto& [number, name] : tableRows("attributes.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        named.insert(id);
        EXPECT_EQ(HTMLStrings::attributeFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(HTMLStrings::attributeFromText((name + "x").c_str(), length), id) << name;
        EXPECT_EQ(HTMLStrings::attributeName(id), name);
    }
    EXPECT_EQ(named.size(), 243u);
    EXPECT_STREQ(HTMLStrings::attributeName(0), "");
    EXPECT_STREQ(HTMLStrings::attributeName(0xFFFFFFFF), "");
}

TEST(HtmlStrings, NearMissesAreUnknown)
{
    for (const char* table : {"elements.tsv", "attributes.tsv"}) {
        std::set<std::string> names;
        for (const auto& [number, name] : tableRows(table))
            names.insert(name);
        for (const std::string& name : names) {
            for (const std::string& other :
                {name + "x", name.substr(1), name.substr(0, name.size() - 1), "x" + name}) {
                const bool element = std::string(table) == "elements.tsv";
                const std::uint32_t id = element
                    ? std::uint32_t{HTMLStrings::elementFromString(other.c_str())}
                    : std::uint32_t{HTMLStrings::attributeFromString(other.c_str())};
                EXPECT_EQ(id != 0, names.contains(other)) << other;
            }
        }
    }
}

TEST(HtmlStrings, UnknownNames)
{
    const std::string longName(100'000, 'a');
    for (const char* name : {"", "P", "TABLE", "td ", "nosuchelement", longName.c_str()}) {
        EXPECT_EQ(HTMLStrings::elementFromString(name), ELEMENT_NONE);
        EXPECT_EQ(HTMLStrings::attributeFromString(name), ATTRIBUTE_NONE);
    }
    EXPECT_EQ(HTMLStrings::elementFromString(nullptr), ELEMENT_NONE);
    EXPECT_EQ(HTMLStrings::attributeFromString(nullptr), ATTRIBUTE_NONE);
    // A zero inside counts as a character like any other.
    EXPECT_EQ(HTMLStrings::elementFromText("p\0", 2), ELEMENT_NONE);
    EXPECT_EQ(HTMLStrings::elementFromText(nullptr, 0), ELEMENT_NONE);
}
