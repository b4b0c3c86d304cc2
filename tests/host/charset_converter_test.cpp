#include "host/charset_converter.h"

#include "host/charset_table.h"

#include <gtest/gtest.h>

#include <iconv.h>
#include <set>
#include <string>

namespace {

using host::CharsetConverter;

struct ConversionRow {
    std::uint32_t id;
    std::u16string units;
    const char* utf8;
    std::uint64_t unmapped = 0;
};

void expectRow(const ConversionRow& row)
{
    CharsetConverter converter;
    std::string out = "<";
    converter.append(out, row.units, row.id);
    converter.flush(out);
    EXPECT_EQ(out, std::string("<") + row.utf8) << std::hex << row.id;
    EXPECT_EQ(converter.unmapped(), row.unmapped) << std::hex << row.id;
}

// One row at least for each identifier.
const ConversionRow kKnown[] = {
    {0x00080101, u"a\u00E9", "aé"},
    {0x00080102, u"a\u00B3", "ał"},
    {0x00080103, u"a\u00B6", "aĥ"},
    {0x00080104, u"a\u00BB", "aģ"},
    {0x00080105, u"a\u00B6", "aЖ"},
    {0x00080106, u"a\u00C8", "aب"},
    {0x00080107, u"a\u00D9", "aΩ"},
    {0x00080108, u"a\u00E0", "aא"},
    {0x00080109, u"a\u00F0", "ağ"},
    {0x000A0102, u"a\\~[\u00B1", "a¥‾[ｱ"},
    {0x000A0103, u"a\\~", "a\\~"},
    {0x000B000B, u"a\u6F22\xD83D\xDE00", "a漢😀"},
    {0x000B000D, u"a\u3441", "a漢"},
    {0x000B000E, u"a\u4751", "a한"},
    {0x000B000F, u"a\uBABA", "a汉"},
    {0x0F050000, u"a\uBABA", "a汉"},
    {0x0F060000, u"\u4751 a", "한 a"},
    {0x0F0C0000, u"\u3441 \u2422", "漢 あ"},
    {0x0F0D0000, u"a\uB4C1", "a漢"},
    {0x10000100, u"a\\~\x1B", "a\\~\x1B"},
    {0x136A0100, u"a\u00A1", "aก"},
    {0x13A40000, u"a\u8ABF\u00B1\\", "a漢ｱ\\"},
    {0x13A80000, u"a\uBABA\u8140", "a汉丂"},
    {0x13B50000, u"a\uC7D1", "a한"},
    {0x13B60000, u"a\uBA7E", "a漢"},
    {0x14B00000, u"a\u00E9\u6F22\xD83D\xDE00", "aé漢😀"},
    {0x14B00001, u"a\u00E9", "aé"},
    {0x14B00002, u"a\u00E9", "aé"},
    {0x14E20100, u"a\u00B3", "ał"},
    {0x14E30100, u"a\u00C6", "aЖ"},
    {0x14E40100, u"a\u0080\u0096", "a€–"},
    {0x14E50100, u"a\u00D9", "aΩ"},
    {0x14E60100, u"a\u00F0", "ağ"},
    {0x14E70100, u"a\u00E0", "aא"},
    {0x14E80100, u"a\u00C8", "aب"},
    {0x14E90100, u"a\u00EC", "aģ"},
    {0x14EA0100, u"a\u00F5", "aơ"},
    {0x15510000, u"a\u0088\u0061\uD3BD", "a가힣"},
    {0x436E0100, u"a\u00F6", "aЖ"},
    {0x44900100, u"a\u00B7", "aЇ"},
    {0x80000100, u"a\u008E", "aé"},
    {0x80030100, u"a\u00DB", "ağ"},
    {0x80050100, u"a\u008E", "aé"},
    {0x80060100, u"a\u00BF", "aΩ"},
    {0x80070100, u"a\u00B8", "ał"},
    {0x80080100, u"a\u0086", "aЖ"},
    {0x80090100, u"a\u008E", "aé"},
    {0x800A0100, u"a\u008E", "aé"},
};

TEST(CharsetConverter, ConvertsEverySet)
{
    std::set<std::uint32_t> tested;
    for (const ConversionRow& row : kKnown) {
        expectRow(row);
        tested.insert(row.id);
    }
    for (const host::CharsetRow& row : host::charsetTable())
        EXPECT_TRUE(tested.contains(row.id)) << row.name;
}

TEST(CharsetConverter, EverySetKeepsAscii)
{
    for (const host::CharsetRow& row : host::charsetTable()) {
        for (char16_t unit = 0x20; unit < 0x7F; ++unit) {
            if (row.form == host::UnitForm::JisRoman && (unit == u'\\' || unit == u'~'))
                continue;
            CharsetConverter converter;
            std::string out;
            converter.append(out, std::u16string(1, unit), row.id);
            EXPECT_EQ(out, std::string(1, static_cast<char>(unit))) << row.name;
        }
    }
}

TEST(CharsetConverter, CountsWhatHasNoMapping)
{
    const ConversionRow rows[] = {
        {0x14B00000, u"a\xD800z", "a\uFFFDz", 1},
        {0x14B00000, u"\xDC00\xD800", "\uFFFD\uFFFD", 2},
        {0x14B00000, u"\xFFFD", "\uFFFD"},
        {0x14E40100, u"a\u0416", "a\uFFFD", 1},
        {0x00080106, u"\u00A1z", "\uFFFDz", 1},
        {0x10000100, u"\u0080\u00FF\uB0A1", "\uFFFD\uFFFD\uFFFD", 3},
        {0x000A0102, u"\u00FF", "\uFFFD", 1},
        {0x13A40000, u"\uEFFCz", "\uFFFDz", 1},
        {0x13A40000, u"z\u0081", "z\uFFFD", 1},
        {0x0F0C0000, u"\u7E7E\u00B0z", "\uFFFD\uFFFDz", 2},
        {0x15510000, u"\u00D8\u0041\u0088", "\uFFFD\uFFFD", 2},
        {0x12345678, u"a\u00E9", "a\uFFFD", 1},
    };
    for (const ConversionRow& row : rows)
        expectRow(row);
}

TEST(CharsetConverter, JoinsBytesThatTheFilterTookForSingleOnes)
{
    const ConversionRow rows[] = {
        {0x13B50000, u"\u0081\u0041a", "갂a"},
        {0x13B50000, u"\u0088\u0061\u0099\u0062", "늏셚"},
        // Codes that this set leaves to its users.
        {0x13B60000, u"\u00C7\u00F3\u00C8\u0041a", "\uF7A0\uF7ADa"},
        {0x15510000, u"\u0088\u0061\u00D3\u00BD", "가힣"},
        // What is no second byte stays what it is.
        {0x13B50000, u"\u0081 a", "\uFFFD a", 1},
        {0x13B50000, u"\u0081\n", "\uFFFD\n", 1},
        {0x13B60000, u"\u00C7 a", "\uFFFD a", 1},
        {0x13B60000, u"\u00C7", "\uFFFD", 1},
        // A unit of two bytes joins nothing, on either side.
        {0x13B50000, u"\u0081\uB0A1a", "\uFFFD가a", 1},
        {0x13B50000, u"\uB0A1\u0041", "가A"},
        {0x13B60000, u"\u00C7\uA440a", "\uFFFD一a", 1},
    };
    for (const ConversionRow& row : rows)
        expectRow(row);
}

TEST(CharsetConverter, JoinsNothingWhereTheFilterKnowsAllFirstBytes)
{
    const ConversionRow rows[] = {
        {0x13A40000, u"\u008A\u00BFz", "\uFFFDｿz", 1},
        {0x13A40000, u"\u0081\u0041", "\uFFFDA", 1},
        {0x13A80000, u"\u0081\u0040", "\uFFFD@", 1},
        {0x13A80000, u"\u00BA\u00BA", "\uFFFD\uFFFD", 2},
        {0x0F050000, u"\u00BA\u00BA", "\uFFFD\uFFFD", 2},
        {0x0F0D0000, u"\u00B4\u00C1", "\uFFFD\uFFFD", 2},
    };
    for (const ConversionRow& row : rows)
        expectRow(row);
}

TEST(CharsetConverter, AUnitOfTwoBytesIsOneCharacter)
{
    const ConversionRow rows[] = {
        // The second byte begins a pair of its own, or the first none.
        {0x13A40000, u"\u8120\u8ABF", "\uFFFD漢", 1},
        {0x13A40000, u"\u81FF\u8ABF", "\uFFFD漢", 1},
        {0x13A40000, u"\u4142z", "\uFFFDz", 1},
        {0x13A40000, u"\u8A0A\u8ABF", "\uFFFD漢", 1},
        {0x13A80000, u"\u81FF\uBABA", "\uFFFD汉", 1},
        {0x13A80000, u"\uBA20a", "\uFFFDa", 1},
        {0x13B50000, u"\uB041\uB0A1", "캚가"},
        {0x13B50000, u"\uB020\uB0A1", "\uFFFD가", 1},
        {0x13B60000, u"\uA4FF\uA440", "\uFFFD一", 1},
        {0x0F0D0000, u"\u8FA2\uB4C1", "\uFFFD漢", 1},
        {0x0F0D0000, u"\u8EB1z", "ｱz"},
        {0x15510000, u"\u8820\u8861", "\uFFFD가", 1},
        {0x15510000, u"\u4142\u8861", "\uFFFD가", 1},
    };
    for (const ConversionRow& row : rows)
        expectRow(row);
}

TEST(CharsetConverter, BothHalvesOfASevenBitPairAreGraphic)
{
    for (const std::uint32_t id : {0x0F0C0000u, 0x0F060000u, 0x000B000Du, 0x000B000Eu}) {
        const std::u16string known = id == 0x0F0C0000u || id == 0x000B000Du ? u"\u3441" : u"\u4751";
        const char* character = known == u"\u3441" ? "漢" : "한";
        for (const char16_t bad : {u'\u2042', u'\u4220', u'\u427F', u'\u7F42', u'\uB4C1', u'\u34C1',
                 u'\uB441', u'\u0A42', u'\u420A', u'\uFFFF', u'\u8EB1'}) {
            expectRow({id, known + bad + known,
                (std::string(character) + "\uFFFD" + character).c_str(), 1});
        }
    }
}

TEST(CharsetConverter, EverySetKeepsControls)
{
    for (const host::CharsetRow& row : host::charsetTable()) {
        for (char16_t unit = 0; unit <= 0x7F; ++unit) {
            if (unit >= 0x20 && unit != 0x7F)
                continue;
            CharsetConverter converter;
            std::string out;
            converter.append(out, std::u16string(1, unit), row.id);
            EXPECT_EQ(out, std::string(1, static_cast<char>(unit))) << row.name << " " << int{unit};
        }
    }
}

TEST(CharsetConverter, JoinsHalvesOfAPairThatTheFilterCut)
{
    CharsetConverter converter;
    std::string out;
    converter.append(out, u"a\xD83D", 0x14B00000);
    converter.append(out, u"", 0x14B00000);
    EXPECT_EQ(out, "a");
    converter.append(out, u"\xDE00z\xD83D", 0x14B00000);
    converter.append(out, u"\xDE00", 0x000B000B);
    converter.flush(out);
    EXPECT_EQ(out, "a😀z😀");
    EXPECT_EQ(converter.unmapped(), 0u);
}

TEST(CharsetConverter, AHalfWaitsForNothingElse)
{
    const struct {
        std::u16string next;
        std::uint32_t id;
        const char* utf8;
        std::uint64_t unmapped;
    } rows[] = {
        {u"z", 0x14B00000, "\uFFFDz", 1},
        {u"\xD83D", 0x14B00000, "\uFFFD\uFFFD", 2},
        {u"\xD83D\xDE00", 0x14B00000, "\uFFFD😀", 1},
        {u"z", 0x14E40100, "\uFFFDz", 1},
        {u"\xDE00", 0x13A40000, "\uFFFD\uFFFD", 2},
        {u"", 0x14B00000, "\uFFFD", 1},
    };
    for (const auto& row : rows) {
        CharsetConverter converter;
        std::string out;
        converter.append(out, u"\xD83D", 0x14B00000);
        converter.append(out, row.next, row.id);
        converter.flush(out);
        converter.flush(out);
        EXPECT_EQ(out, row.utf8);
        EXPECT_EQ(converter.unmapped(), row.unmapped);
    }
}

TEST(CharsetConverter, CarriesNoByteFromRunToRun)
{
    CharsetConverter converter;
    std::string out;
    converter.append(out, u"\u0081", 0x13B50000);
    converter.append(out, u"\u0041", 0x13B50000);
    EXPECT_EQ(out, "\uFFFDA");
    EXPECT_EQ(converter.unmapped(), 1u);
}

/// The character of a byte as the C library knows it; empty when it knows none.
std::string libraryCharacter(const char* set, unsigned byte)
{
    const iconv_t converter = ::iconv_open("UTF-8", set);
    EXPECT_NE(converter, reinterpret_cast<iconv_t>(-1)) << set;
    char source[] = {static_cast<char>(byte)};
    char target[8] = {};
    char* from = source;
    char* to = target;
    std::size_t fromLeft = 1;
    std::size_t toLeft = sizeof target;
    const bool known = ::iconv(converter, &from, &fromLeft, &to, &toLeft) == 0
        && ::iconv(converter, nullptr, nullptr, &to, &toLeft) == 0;
    ::iconv_close(converter);
    return known ? std::string(target, sizeof target - toLeft) : "";
}

TEST(CharsetConverter, UpperHalvesAreThoseOfTheCLibrary)
{
    const struct {
        std::uint32_t id;
        const char* set;
    } rows[] = {{0x00080101, "ISO-8859-1"}, {0x00080102, "ISO-8859-2"}, {0x00080103, "ISO-8859-3"},
        {0x00080104, "ISO-8859-4"}, {0x00080105, "ISO-8859-5"}, {0x00080106, "ISO-8859-6"},
        {0x00080107, "ISO-8859-7"}, {0x00080108, "ISO-8859-8"}, {0x00080109, "ISO-8859-9"},
        {0x136A0100, "CP874"}, {0x14E20100, "CP1250"}, {0x14E30100, "CP1251"},
        {0x14E40100, "CP1252"}, {0x14E50100, "CP1253"}, {0x14E60100, "CP1254"},
        {0x14E70100, "CP1255"}, {0x14E80100, "CP1256"}, {0x14E90100, "CP1257"},
        {0x14EA0100, "CP1258"}, {0x436E0100, "KOI8-R"}, {0x44900100, "KOI8-U"}};
    for (const auto& row : rows) {
        for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
            const std::string wanted = libraryCharacter(row.set, byte);
            if (wanted.empty())
                continue;
            CharsetConverter converter;
            std::string out;
            converter.append(out, std::u16string(1, static_cast<char16_t>(byte)), row.id);
            EXPECT_EQ(out, wanted) << row.set << std::hex << " " << byte;
        }
    }
}

TEST(CharsetConverter, ConvertsLongRuns)
{
    CharsetConverter converter;
    std::string out;
    converter.append(out, std::u16string(65'534, u'\u8ABF'), 0x13A40000);
    ASSERT_EQ(out.size(), 3u * 65'534);
    EXPECT_EQ(out.substr(out.size() - 6), "漢漢");
    EXPECT_EQ(converter.unmapped(), 0u);
}

} // namespace
