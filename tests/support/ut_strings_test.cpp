#include "support/ut_strings.h"

#include <gtest/gtest.h>

#include <string>

TEST(UtStrings, CopiesNarrowToWide)
{
    char16_t destination[8] = u"zzzzzzz";
    EXPECT_EQ(UTwsstrcpy(destination, "ab\xE9"), destination);
    EXPECT_EQ(std::u16string(destination), u"ab\u00E9");
    EXPECT_EQ(destination[4], u'z');
    UTwsstrcpy(destination, "");
    EXPECT_EQ(destination[0], 0);
    EXPECT_EQ(destination[1], u'b');
}

TEST(UtStrings, CopiesWideToNarrow)
{
    char destination[8] = "zzzzzzz";
    EXPECT_EQ(UTswstrcpy(destination, u"ab\u00E9\u0141"), destination);
    EXPECT_STREQ(destination,
        "ab\xE9"
        "A");
    EXPECT_EQ(destination[5], 'z');
    UTswstrcpy(destination, u"");
    EXPECT_STREQ(destination, "");
}

TEST(UtStrings, CopiesWideToWide)
{
    char16_t destination[8] = u"zzzzzzz";
    EXPECT_EQ(_UTwstrcpy(destination, u"a\u0161"), destination);
    EXPECT_EQ(std::u16string(destination), u"a\u0161");
    EXPECT_EQ(destination[3], u'z');
    _UTwstrcpy(destination, u"");
    EXPECT_EQ(destination[0], 0);
}

TEST(UtStrings, ComparesWideWithNarrow)
{
    struct Row {
        const char16_t* wide;
        const char* narrow;
        int sign;
    };
    constexpr Row rows[] = {
        {u"amp", "amp", 0},
        {u"", "", 0},
        {u"amp", "ampx", -1},
        {u"ampx", "amp", 1},
        {u"AMP", "amp", -1},
        {u"\u00E9", "\xE9", 0},
        {u"\u0161", "a", 1},
        {u"z", "\xE9", -1},
        {u"", "a", -1},
    };
    for (const Row& row : rows)
        EXPECT_EQ(UTwsstrcmp(row.wide, row.narrow), row.sign) << row.narrow;
}

TEST(UtStrings, ComparesACountOfCharacters)
{
    EXPECT_EQ(UTwsstrncmp(u"ampersand", "ampere", 5), 0);
    EXPECT_GT(UTwsstrncmp(u"ampersand", "ampere", 6), 0);
    EXPECT_EQ(UTwsstrncmp(u"a", "b", 0), 0);
    EXPECT_EQ(UTwsstrncmp(u"ab", "ab", 99), 0) << "the terminator ends both";
    EXPECT_LT(UTwsstrncmp(u"ab", "abc", 3), 0);
    EXPECT_EQ(UTwsstrncmp(u"ab", "abc", 2), 0);
}

TEST(UtStrings, FindsText)
{
    const char16_t* text = u"a [if gte mso 9] b";
    EXPECT_EQ(UTwcsstr(text, u"[if"), text + 2);
    EXPECT_EQ(UTwcsstr(text, u"[IF"), nullptr);
    EXPECT_EQ(UTwcsstr(text, u""), text);
    EXPECT_EQ(UTwcsstr(text, u" b"), text + 16);
    EXPECT_EQ(UTwcsstr(u"", u"a"), nullptr);
}

TEST(UtStrings, FindsAUnit)
{
    const char16_t* text = u"a,b,\u0161";
    EXPECT_EQ(UTwstrchr(text, u','), text + 1);
    EXPECT_EQ(UTwstrchr(text, u'\u0161'), text + 4);
    EXPECT_EQ(UTwstrchr(text, u'x'), nullptr);
    EXPECT_EQ(UTwstrchr(text, u'\0'), text + 5);
}

TEST(UtStrings, LeadBytesOfEveryCharacterSet)
{
    struct Range {
        std::uint32_t charSetId;
        unsigned first;
        unsigned last;
    };
    constexpr Range ranges[] = {
        {0x13A80000, 0x81, 0xFE},
        {0x13A40000, 0x81, 0x9F},
        {0x13A40000, 0xE0, 0xFC},
        {0x13B60000, 0xA1, 0xC6},
        {0x13B60000, 0xC9, 0xF9},
        {0x13B50000, 0xA1, 0xAC},
        {0x13B50000, 0xB0, 0xC8},
        {0x13B50000, 0xCA, 0xFD},
        {0x0F0D0000, 0xA1, 0xFE},
        {0x0F050000, 0xA1, 0xFE},
    };
    constexpr std::uint32_t sets[] = {0x13A80000, 0x13A40000, 0x13B60000, 0x13B50000, 0x0F0D0000,
        0x0F050000, 0x14E40100, 0x000B000B, 0x14B00000, 0};
    for (const std::uint32_t set : sets) {
        for (unsigned byte = 0; byte < 256; ++byte) {
            bool leads = false;
            for (const Range& range : ranges)
                leads |= range.charSetId == set && byte >= range.first && byte <= range.last;
            EXPECT_EQ(UTIsLeadByte(set, static_cast<std::uint8_t>(byte)) != 0, leads)
                << std::hex << set << ' ' << byte;
        }
    }
}
