#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using Mapper = std::uint32_t (*)(const char16_t*);

struct Table {
    Mapper mapper;
    std::vector<std::string> names; // from 1
};

const std::vector<Table>& tables()
{
    static const std::vector<Table> all = {
        {EFontSizeFromString,
            {"five", "fivelarger", "fivesmaller", "four", "fourlarger", "foursmaller", "one",
                "onelarger", "onesmaller", "seven", "six", "sixlarger", "sixsmaller", "three",
                "threelarger", "threesmaller", "two", "twolarger", "twosmaller"}},
        {EHorizAlignFromString, {"center", "justify", "left", "right"}},
        {EInputTypeFromString,
            {"button", "checkbox", "file", "hidden", "image", "password", "radio", "reset",
                "submit", "text"}},
        {ELiTypeFromString,
            {"circle", "disc", "loweralpha", "lowerroman", "numeral", "square", "upperalpha",
                "upperroman"}},
        {ESpacerTypeFromString, {"block", "horizontal", "vertical"}},
        {ETableFrameFromString,
            {"above", "below", "border", "box", "hsides", "lhs", "rhs", "void", "vsides"}},
        {ETableRulesFromString, {"all", "cols", "groups", "none", "rows"}},
        {ETextDirectionFromString, {"ltr", "rtl"}},
        {EVertAlignFromString, {"baseline", "bottom", "middle", "top"}},
    };
    return all;
}

std::u16string wide(const std::string& text) { return std::u16string(text.begin(), text.end()); }

std::string upper(std::string text)
{
    for (char& letter : text)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return text;
}

} // namespace

class EnumFromString : public testing::Test {
protected:
    static void SetUpTestSuite() { tables(); }
};

TEST_F(EnumFromString, EveryNameIsItsPositionInAnyCase)
{
    for (const Table& table : tables()) {
        for (std::size_t i = 0; i < table.names.size(); ++i) {
            const std::string& name = table.names[i];
            EXPECT_EQ(table.mapper(wide(name).c_str()), i + 1) << name;
            EXPECT_EQ(table.mapper(wide(upper(name)).c_str()), i + 1) << name;
            std::string capital = name;
            capital[0] = upper(name)[0];
            EXPECT_EQ(table.mapper(wide(capital).c_str()), i + 1) << name;
        }
    }
}

TEST_F(EnumFromString, AnythingElseIsNone)
{
    for (const Table& table : tables()) {
        EXPECT_EQ(table.mapper(u""), 0U);
        EXPECT_EQ(table.mapper(nullptr), 0U);
        EXPECT_EQ(table.mapper(u"\u2028"), 0U);
        EXPECT_EQ(table.mapper(u"!"), 0U);
        EXPECT_EQ(table.mapper(u"zzz"), 0U);
        for (const std::string& name : table.names) {
            for (const std::string& other : {name + "x", name + " ", " " + name,
                     name.substr(0, name.size() - 1), name.substr(1)}) {
                const auto known = std::find(table.names.begin(), table.names.end(), other);
                const auto expected
                    = known == table.names.end() ? 0 : known - table.names.begin() + 1;
                EXPECT_EQ(table.mapper(wide(other).c_str()), expected) << other;
            }
            // A unit whose low byte is a letter is no letter.
            std::u16string high = wide(name);
            high[0] = static_cast<char16_t>(high[0] + 0x100);
            EXPECT_EQ(table.mapper(high.c_str()), 0U) << name;
        }
    }
}

TEST_F(EnumFromString, OlderNamesOfAlignments)
{
    struct Row {
        const char16_t* text;
        std::uint32_t expected;
    };
    const Row rows[] = {
        {u"CENTER", 1},
        {u"", 0},
        {u"middle", 1},
        {u"Middle", 1},
        {u"bleedright", 4},
        {u"BLEEDRIGHT", 4},
        {u"indent", 2},
        {u"Indent", 2},
        {u"bleedleft", 0},
        {u"middles", 0},
        {u"char", 0},
    };
    for (const Row& row : rows)
        EXPECT_EQ(EHorizAlignFromString(row.text), row.expected);
}

TEST_F(EnumFromString, OlderNamesBelongToHorizontalAlignmentAlone)
{
    EXPECT_EQ(EVertAlignFromString(u"middle"), 3U);
    EXPECT_EQ(EVertAlignFromString(u"center"), 0U);
}
