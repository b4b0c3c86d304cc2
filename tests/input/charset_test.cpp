#include "input/charset.h"

#include "input/char_reader.h"
#include "support/process_heap.h"
#include "tests/common/test_context.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;
using testing_support::TestContext;

std::uint16_t codeOfName(const std::string& name)
{
    TestContext test("");
    const std::u16string wide(name.begin(), name.end());
    return charSetCodeFromName(wide.c_str(), test.context);
}

std::ifstream openData(const std::string& name)
{
    return std::ifstream(std::string(HTMLFILTER_SOURCE_DIR "/tools/data/") + name);
}

TEST(CharSet, CodeOfEveryIdentifier)
{
    std::ifstream data = openData("charset_ids.tsv");
    std::string id;
    std::string code;
    std::map<std::uint32_t, std::uint16_t> codes;
    while (data >> id >> code)
        codes[static_cast<std::uint32_t>(std::stoul(id, nullptr, 16))]
            = static_cast<std::uint16_t>(std::stoul(code, nullptr, 16));
    EXPECT_EQ(46u, codes.size());
    for (const auto& [known, expected] : codes) {
        EXPECT_EQ(expected, charSetCodeFromId(known));
        for (const std::uint32_t neighbor : {known - 1, known + 1}) {
            const auto row = codes.find(neighbor);
            EXPECT_EQ(row == codes.end() ? 0 : row->second, charSetCodeFromId(neighbor));
        }
    }
    EXPECT_EQ(0, charSetCodeFromId(0));
    EXPECT_EQ(0, charSetCodeFromId(0x10000100));
    EXPECT_EQ(0, charSetCodeFromId(0xFFFFFFFF));
}

TEST(CharSet, IdentifierOfEveryCode)
{
    const std::map<std::uint16_t, std::uint32_t> ids = {{0x2004, 0x13A40000}, {0x2005, 0x13A40000},
        {0x4003, 0x13A40000}, {0x2006, 0x13B60000}, {0x2008, 0x13A80000}, {0x2009, 0x13B50000},
        {0x201D, 0x10000100}, {0x2029, 0x10000100}, {0x202C, 0x10000100}, {0x201E, 0x15510000},
        {0x401B, 0x15510000}, {0x402B, 0xF050000}, {0x8001, 0x14E20100}, {0x800A, 0x14E30100},
        {0x800B, 0x436E0100}, {0x800C, 0x80101}, {0x800D, 0x80102}, {0x800E, 0x80103},
        {0x800F, 0x80104}, {0x8010, 0x80105}, {0x8011, 0x80106}, {0x8012, 0x80107},
        {0x8013, 0x80108}, {0x8014, 0x80109}, {0x8015, 0x14E40100}, {0x8016, 0x14E50100},
        {0x8017, 0x14E60100}, {0x8018, 0x14E70100}, {0x8019, 0x14E80100}, {0x801A, 0x14E90100},
        {0x801F, 0x80000100}, {0x8020, 0x80030100}, {0x8021, 0x80050100}, {0x8022, 0x80060100},
        {0x8023, 0x80070100}, {0x8024, 0x80080100}, {0x8025, 0x80090100}, {0x8026, 0x800A0100},
        {0x8028, 0x136A0100}, {0x802D, 0x44900100}, {0x802E, 0x14EA0100}};
    for (std::uint32_t number = 0; number < 0x10000; ++number) {
        const auto code = static_cast<std::uint16_t>(number);
        const auto row = ids.find(code);
        const std::uint32_t expected = row == ids.end() ? 0x14B00000 : row->second;
        ASSERT_EQ(expected, charSetIdFromCode(code)) << std::hex << code;
    }
}

TEST(CharSet, EveryNameOfTheTable)
{
    std::ifstream data = openData("charset_names.tsv");
    std::string code;
    std::string name;
    std::size_t rows = 0;
    std::size_t notFound = 0;
    for (; data >> code >> name; ++rows) {
        const bool hidden = name == "x-mac-cyrillic" || name == "x-mac-greek"
            || name == "x-mac-roman" || name == "x-mac-turkish";
        notFound += hidden ? 1 : 0;
        const auto expected
            = static_cast<std::uint16_t>(hidden ? 0 : std::stoul(code, nullptr, 16));
        EXPECT_EQ(expected, codeOfName(name)) << name;
        std::string upper = name;
        std::transform(upper.begin(), upper.end(), upper.begin(),
            [](unsigned char byte) { return static_cast<char>(std::toupper(byte)); });
        EXPECT_EQ(expected, codeOfName(upper)) << upper;
        EXPECT_EQ(0, codeOfName(name + "x")) << name;
    }
    EXPECT_EQ(92u, rows);
    EXPECT_EQ(4u, notFound);
}

TEST(CharSet, NamesBehindTheMisplacedRowAreNotFound)
{
    EXPECT_EQ(0, codeOfName("x-mac-cyrillic"));
    EXPECT_EQ(0, codeOfName("x-mac-greek"));
    EXPECT_EQ(0, codeOfName("x-mac-roman"));
    EXPECT_EQ(0, codeOfName("x-mac-turkish"));
    EXPECT_EQ(0x8023, codeOfName("x-mac-ce"));
}

TEST(CharSet, CaseDoesNotMatterInNames)
{
    EXPECT_EQ(0x2005, codeOfName("Shift_JIS"));
    EXPECT_EQ(0x3027, codeOfName("utf-8"));
    EXPECT_EQ(0x8028, codeOfName("dos-874"));
}

TEST(CharSet, WhatEndsAName)
{
    for (const char* name : {"utf-8", "utf-8 x", "utf-8\"x", "utf-8'x", "utf-8;x", "utf-8;"})
        EXPECT_EQ(0x3027, codeOfName(name)) << name;
    for (const char* name : {"", " utf-8", "utf-8>", "utf-8\t", "utf-8,", "utf", "zzz", "1"})
        EXPECT_EQ(0, codeOfName(name)) << name;
    TestContext test("");
    EXPECT_EQ(0, charSetCodeFromName(u"\u0455jis", test.context)); // a wide unit is no byte
    EXPECT_EQ(0, charSetCodeFromName(u"utf-8\u0131", test.context));
}

TEST(CharSet, NamesOfMoreThan31UnitsAreCut)
{
    EXPECT_EQ(0, codeOfName(std::string(31, 'a')));
    EXPECT_EQ(0, codeOfName(std::string(32, 'a')));
    EXPECT_EQ(0, codeOfName("utf-8" + std::string(100, 'x')));
    // The unit behind the last one that counts is not looked at.
    EXPECT_EQ(0, codeOfName(std::string(31, 'z') + ";"));
}

TEST(CharSet, NoMemoryEndsTheSearchAtTheRowReached)
{
    struct Row {
        std::uint32_t allocation;
        std::uint16_t code;
    };
    // Of "8859_1": rows 45, 22, 10, 4, 1, 0.
    constexpr Row kRows[]
        = {{1, 0x8013}, {2, 0x201D}, {3, 0x8011}, {4, 0x800F}, {5, 0x8028}, {6, 0x800C}};
    for (const Row& row : kRows) {
        TestContext test("");
        zorvan::failNthAllocation(row.allocation);
        EXPECT_EQ(row.code, charSetCodeFromName(u"8859_1", test.context)) << row.allocation;
        zorvan::clearAllocationFailure();
        EXPECT_EQ(STATUS_OUT_OF_MEMORY, test.context.statusFlags);
    }
}

TEST(CharSet, DefaultSetOfEveryFileId)
{
    const std::map<std::uint16_t, std::uint16_t> codes
        = {{1109, 0x8001}, {1110, 0x2005}, {1111, 0x2004}, {1112, 0x2006}, {1113, 0x2007},
            {1114, 0x2008}, {1115, 0x2009}, {1116, 0x800A}, {1117, 0x800B}, {1153, 0x4003}};
    for (std::uint32_t number = 0; number < 0x10000; ++number) {
        const auto fileId = static_cast<std::uint16_t>(number);
        if (fileId == 1181)
            continue;
        TestContext test("\0<"sv);
        test.context.fileId = fileId;
        chooseDefaultCharSet(test.context);
        const auto row = codes.find(fileId);
        ASSERT_EQ(row == codes.end() ? 0x9000 : row->second, test.context.defaultCharSet);
        ASSERT_EQ(0, test.context.unicodeBomMode);
    }
}

TEST(CharSet, FirstByteDecidesAFileOf1181)
{
    TestContext wide("\0<\0p"sv);
    wide.context.fileId = 1181;
    chooseDefaultCharSet(wide.context);
    chooseSectionCharSet(wide.context);
    EXPECT_EQ(0x1000, wide.context.defaultCharSet);
    EXPECT_EQ(0x1000, wide.context.currentCharSet);
    EXPECT_EQ(255, wide.context.unicodeBomMode);
    EXPECT_EQ('<', readChar(wide.context));
    EXPECT_EQ('p', readChar(wide.context));

    for (const std::string_view bytes : {"\x80<"sv, ""sv}) {
        for (const std::uint16_t before : std::to_array<std::uint16_t>({0, 0x800A})) {
            TestContext narrow(bytes);
            narrow.context.fileId = 1181;
            narrow.context.defaultCharSet = before;
            chooseDefaultCharSet(narrow.context);
            chooseSectionCharSet(narrow.context);
            EXPECT_EQ(before, narrow.context.defaultCharSet);
            EXPECT_EQ(before, narrow.context.currentCharSet);
            EXPECT_EQ(0, narrow.context.unicodeBomMode);
            EXPECT_EQ(0, narrow.context.statusFlags);
            EXPECT_EQ(bytes.empty() ? kEndOfInput : 0x80, readChar(narrow.context));
        }
    }
}

/// What a section's choice settles.
struct Choice {
    std::uint16_t charSet;
    std::uint16_t bomMode;
    std::uint16_t bomSeen;
    std::uint32_t position;
};

testing::AssertionResult chose(const Choice& expected, const TestContext& test)
{
    const HtmlFilterContext& context = test.context;
    if (context.currentCharSet == expected.charSet && context.defaultCharSet == expected.charSet
        && context.unicodeBomMode == expected.bomMode && context.bomSeen == expected.bomSeen
        && currentPosition(context) == expected.position && context.statusFlags == 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
        << "set " << context.currentCharSet << ", default " << context.defaultCharSet << ", order "
        << context.unicodeBomMode << ", mark " << context.bomSeen << ", position "
        << currentPosition(context) << ", status " << context.statusFlags;
}

TEST(CharSet, RequestsAndMarks)
{
    struct Row {
        std::string_view bytes;
        std::uint32_t request;
        Choice choice;
        std::uint32_t requestAfter;
    };
    const Row kRows[] = {
        {"abc", 0, {0x9000, 0, 0, 0}, 0},
        {"abc", 0x436E0100, {0x800B, 0, 0, 0}, 0x436E0100},
        {"abc", 0x12345678, {0, 0, 0, 0}, 0x12345678}, // not known: single bytes
        {"abc", 0x14B00000, {0x1000, 0, 0, 0}, 0x14B00000},
        {"a\0"sv, 0x14B00001, {0x1000, 254, 0, 0}, 0x14B00000},
        {"\0a"sv, 0x14B00002, {0x1000, 255, 0, 0}, 0x14B00000},
        {"\xEF\xBB\xBF"
         "a",
            0, {0x3027, 0, 0xBF, 3}, 0},
        {"\xEF\xBB\xBF", 0x436E0100, {0x3027, 0, 0xBF, 3}, 0x436E0100}, // a mark wins
        {"\xEF\xBB\xBF", 0x14B00001, {0x3027, 0, 0xBF, 3}, 0x14B00000},
        {"\xEF\xBB\xBE", 0, {0x9000, 0, 0, 0}, 0},
        {"\xEF\xBB", 0, {0x9000, 0, 0, 0}, 0},
        {"\xFF\xFE", 0, {0x1000, 254, 254, 2}, 0},
        {"\xFE\xFF\0a"sv, 0, {0x1000, 255, 255, 2}, 0},
        {"\xFF\xFE", 0x436E0100, {0x1000, 254, 254, 2}, 0x436E0100},
        {"\xFE\xFF", 0x14B00001, {0x1000, 255, 255, 2}, 0x14B00000},
        {"\xFE", 0, {0x9000, 0, 0, 0}, 0},
        {"\xFF", 0, {0x9000, 0, 0, 0}, 0},
        {"", 0, {0x9000, 0, 0, 0}, 0},
        {"", 0x14B00001, {0x1000, 254, 0, 0}, 0x14B00000},
    };
    for (const Row& row : kRows) {
        for (std::uint32_t size = 1; size < 5; ++size) {
            TestContext test(row.bytes, 0, size);
            test.context.fileId = 1101;
            test.context.requestedCharSetId = row.request;
            chooseDefaultCharSet(test.context);
            EXPECT_EQ(0x9000, test.context.defaultCharSet);
            chooseSectionCharSet(test.context);
            EXPECT_TRUE(chose(row.choice, test))
                << testing::PrintToString(row.bytes) << ' ' << row.request;
            EXPECT_EQ(row.requestAfter, test.context.requestedCharSetId);
        }
    }
}

TEST(CharSet, LooseUtf16Marks)
{
    for (const std::uint16_t byte : std::to_array<std::uint16_t>({254, 255})) {
        const std::string bytes(2, static_cast<char>(byte));
        TestContext test(bytes);
        chooseDefaultCharSet(test.context);
        chooseSectionCharSet(test.context);
        EXPECT_TRUE(chose({0x1000, byte, byte, 2}, test));
    }
}

TEST(CharSet, ASectionWithoutAMarkForgetsTheLastOne)
{
    TestContext test("\xEF\xBB\xBF"
                     "abc");
    chooseDefaultCharSet(test.context);
    chooseSectionCharSet(test.context);
    EXPECT_EQ(0xBF, test.context.bomSeen);
    chooseDefaultCharSet(test.context);
    chooseSectionCharSet(test.context);
    EXPECT_TRUE(chose({0x9000, 0, 0, 3}, test));
}

TEST(CharSet, PrescanRule)
{
    struct Row {
        const char* name;
        std::uint16_t code;
        std::uint16_t bomSeen;
        std::uint16_t defaultCharSet;
        std::uint32_t forced;
        std::uint32_t requested;
        std::uint16_t expected; // from a current set of 0x9000
    };
    constexpr Row kRows[] = {
        {"plain", 0x800B, 0, 0x9000, 0, 0, 0x800B},
        {"a mark beats a declaration", 0x800B, 191, 0x9000, 0, 0, 0x9000},
        {"a mark, but another default", 0x800B, 191, 0x3027, 0, 0, 0x800B},
        {"bit 14", 0x402B, 0, 0x9000, 0, 0, 0x9000},
        {"bit 14 before the forced set", 0x4003, 0, 0x9000, 0x436E0100, 0x436E0100, 0x9000},
        {"forced, another one", 0x800A, 0, 0x9000, 0x436E0100, 0x436E0100, 0x800B},
        {"forced, the same one", 0x800B, 0, 0x9000, 0x436E0100, 0x436E0100, 0x800B},
        {"forced, one that goes out alike", 0x2004, 0, 0x9000, 0x13A40000, 0x13A40000, 0x2004},
        {"forced, with a request that is not known", 0x800A, 0, 0x9000, 0x436E0100, 7, 0},
        {"a request alone", 0x800A, 0, 0x9000, 0, 0x436E0100, 0x800A},
    };
    for (const Row& row : kRows) {
        TestContext test("");
        test.context.bomSeen = row.bomSeen;
        test.context.defaultCharSet = row.defaultCharSet;
        test.context.forcedCharSetId = row.forced;
        test.context.requestedCharSetId = row.requested;
        applyPrescanCharSet(row.code, test.context);
        EXPECT_EQ(row.expected, test.context.currentCharSet) << row.name;
        EXPECT_EQ(row.defaultCharSet, test.context.defaultCharSet) << row.name;
    }
}

TEST(CharSet, AUtf8MarkBeatsAMetaCharSet)
{
    TestContext test("\xEF\xBB\xBF\xC3\xA9");
    chooseDefaultCharSet(test.context);
    chooseSectionCharSet(test.context);
    applyPrescanCharSet(0x800C, test.context);
    EXPECT_EQ(0x3027, test.context.currentCharSet);
    EXPECT_EQ(0xE9, readChar(test.context));
}

} // namespace
