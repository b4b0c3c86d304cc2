#include "input/decoders.h"

#include "support/ut_strings.h"
#include "tests/common/test_context.h"
#include "tests/input/naive_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;
using testing_support::NaiveReader;
using testing_support::TestContext;

/// Puts a used context back to the start of another input.
void restart(std::string_view bytes, TestContext& test)
{
    test.stream.bytes.assign(bytes.begin(), bytes.end());
    test.stream.position = 0;
    test.block.bytesLeft = 0;
    test.block.bytesValid = 0;
    test.block.bufferPos = 0;
    test.context.statusFlags = 0;
    test.context.iso2022State = 0;
    std::memset(test.context.recentBytes, 0, sizeof test.context.recentBytes);
}

/// Whether both readers agree on all that the bytes give and do, up to the end.
testing::AssertionResult agree(std::string_view bytes, TestContext& test)
{
    restart(bytes, test);
    HtmlFilterContext& context = test.context;
    NaiveReader naive(bytes, context.currentCharSet);
    do {
        const std::int32_t expected = naive.read();
        const std::int32_t actual = readChar(context);
        const bool same = expected == actual && naive.at == blockPosition(test.block)
            && naive.ended == (context.statusFlags != 0) && naive.state == context.iso2022State
            && std::equal(naive.recent.begin(), naive.recent.end(), context.recentBytes);
        if (!same)
            return testing::AssertionFailure()
                << "expected " << expected << ", read " << actual << " before " << naive.at
                << " of " << testing::PrintToString(bytes);
    } while (!naive.ended);
    return testing::AssertionSuccess();
}

std::vector<std::int32_t> readAll(std::string_view bytes, std::uint16_t set)
{
    TestContext test(bytes, set);
    std::vector<std::int32_t> characters;
    for (std::int32_t character = readChar(test.context);
         (test.context.statusFlags & STATUS_END_OF_INPUT) == 0; character = readChar(test.context))
        characters.push_back(character);
    return characters;
}

struct PairRow {
    std::uint16_t set;
    std::string_view before;
    std::string_view behind;
};

/// All pairs of bytes, in each state that a set has and in front of text and of the end.
constexpr PairRow kPairRows[] = {
    {0x9000, "", ""},
    {0x800A, "", ""},
    {0, "", ""}, // sets of single bytes
    {0x2004, "", ""},
    {0x2004, "", "A"},
    {0x2005, "", ""},
    {0x2005, "", "A"},
    {0x2006, "", ""},
    {0x2006, "", "A"},
    {0x2007, "", ""},
    {0x2008, "", ""},
    {0x2008, "", "A"},
    {0x2009, "", ""},
    {0x2009, "", "A"},
    {0x201E, "", ""},
    {0x401B, "", ""},
    {0x402B, "", ""},
    {0x402B, "", "A"},
    {0x4003, "", ""},
    {0x4003, "", "A"}, // pairs
    {0x201D, "", "B"},
    {0x201D, "\x1B$", "AB"},
    {0x201D, "\x1B$B", ""},
    {0x201D, "\x1B$B", "ABC"},
    {0x201D, "\x1B", "B"},
    {0x201D, "\x1B$@", "\x1B(J"}, // escapes
    {0x202C, "", ""},
    {0x202C, "\x1B$)C\x0E", ""},
    {0x202C, "\x1B$)C\x0E", "A"},
    {0x202C, "\x0E\x1B$", "AB"},
    {0x202C, "\x0E\x1B$)", "AB"},
    {0x202C, "\x0E\x0F", "A"},
    {0x2029, "", ""},
    {0x2029, "~", "}"},
    {0x2029, "~{", ""},
    {0x2029, "~{", "~}A"},
    {0x2029, "~{AB", "~\n~}"},
    {0x2029, "~{~\n", "A"}, // HZ
    {0x3027, "", ""},
    {0x3027, "", "\x81\x82\x83\x84\x85"},
    {0x3027, "\xF0", "A"},
};

TEST(Decoders, EveryPairOfBytesInEverySet)
{
    for (const PairRow& row : kPairRows) {
        TestContext test("", row.set);
        std::string bytes;
        for (std::uint32_t pair = 0; pair < 0x10000; ++pair) {
            bytes.assign(row.before);
            bytes.push_back(static_cast<char>(pair >> 8));
            bytes.push_back(static_cast<char>(pair));
            bytes.append(row.behind);
            ASSERT_TRUE(agree(bytes, test)) << std::hex << row.set;
        }
    }
}

TEST(Decoders, LeadBytesOfEachSet)
{
    struct Row {
        std::uint16_t set;
        std::vector<std::pair<int, int>> leads;
    };
    const Row kRows[] = {
        {0x2004, {{0xA1, 0xFE}}},
        {0x2005, {{0x81, 0x9F}, {0xE0, 0xFC}}},
        {0x2006, {{0xA1, 0xC6}, {0xC9, 0xF9}}},
        {0x2008, {{0x81, 0xFE}}},
        {0x2009, {{0xA1, 0xAC}, {0xB0, 0xC8}, {0xCA, 0xFD}}},
        {0x402B, {{0xA1, 0xFE}}},
        {0x2007, {}},
        {0x201E, {}},
        {0x401B, {}},
    };
    for (const Row& row : kRows) {
        for (int byte = 0; byte < 256; ++byte) {
            bool lead = false;
            for (const auto& [first, last] : row.leads)
                lead = lead || (byte >= first && byte <= last);
            const std::string bytes{static_cast<char>(byte), '1'};
            EXPECT_EQ(lead ? 1u : 2u, readAll(bytes, row.set).size())
                << std::hex << row.set << ' ' << byte;
        }
    }
}

TEST(Decoders, LeadBytesOfGb2312AreThoseOfTheEngine)
{
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(leadBytesOf(CHARSET_GB2312).isLead[byte],
            UTIsLeadByte(0x13A80000, static_cast<std::uint8_t>(byte)) != 0)
            << byte;
    }
}

struct TextRow {
    const char* name;
    std::uint16_t set;
    std::string_view bytes;
    std::vector<std::int32_t> characters;
};

void expectRows(const std::vector<TextRow>& rows)
{
    for (const TextRow& row : rows)
        EXPECT_EQ(row.characters, readAll(row.bytes, row.set)) << row.name;
}

std::int32_t negative(std::uint16_t value) { return static_cast<std::int16_t>(value); }

TEST(Decoders, PairsAreSignExtendedAndNeverValidated)
{
    expectRows({
        {"Shift-JIS", 0x2005, "\x83\x41", {negative(0x8341)}},
        {"a markup byte as trail", 0x2005, "\x83<p", {negative(0x833C), 'p'}},
        {"the end as trail", 0x2005, "a\x83", {'a', negative(0x83FF)}},
        {"half-width katakana", 0x2005, "\xB1\xB2", {0xB1, 0xB2}},
        {"Big5", 0x2006, "\xA4\x40", {negative(0xA440)}},
        {"Korean", 0x2009, "\xB0\xA1", {negative(0xB0A1)}},
        {"shifts are characters", 0x2005, "\x0E\x83\x0F\x0F", {0x0E, negative(0x830F), 0x0F}},
    });
}

TEST(Decoders, JisGoesOutAsShiftJis)
{
    expectRows({
        {"hiragana a", 0x2004, "\xA4\xA2", {negative(0x82A0)}},
        {"kanji", 0x2004, "\xB0\xA1", {negative(0x889F)}},
        {"last of a row", 0x2004, "\xA1\xFE", {negative(0x819E)}},
        {"row 0x61 and on", 0x2004, "\xE1\xA1", {negative(0xE140)}},
        {"an ASCII trail", 0x2004, "\xA4<", {negative(0x823A)}},
        {"the end as trail", 0x2004, "\xA1", {negative(0x819F)}},
        {"the end as trail of an even row", 0x2004, "\xA2", {negative(0x81FD)}},
        {"7-bit", 0x4003, "$\"0!", {negative(0x82A0), negative(0x889F)}},
        {"markup too", 0x4003, "<p", {negative(0x8EEE)}},
        {"shifts are characters", 0x4003, "\x0E\x0F$\"", {0x0E, 0x0F, negative(0x82A0)}},
        {"a shift as trail", 0x4003, "!\x0E", {negative(0x812D)}},
        {"the end as trail", 0x4003, "!", {negative(0x811F)}},
        {"no row", 0x4003, "\x01\x02", {0x0021}},
        {"above all rows", 0x4003, "\x7F\x30", {0x004F}},
    });
}

TEST(Decoders, JisRowsAtTheSeam)
{
    expectRows({
        {"row 0x5E", 0x4003, "\x5E!", {negative(0x9F9F)}},
        {"row 0x5F", 0x4003, "\x5F!", {negative(0xA040)}},
        {"row 0x60", 0x4003, "\x60!", {negative(0xA09F)}},
        {"row 0x61", 0x4003, "\x61!", {negative(0xE140)}},
    });
}

TEST(Decoders, Utf8)
{
    expectRows({
        {"ASCII", 0x3027, "\x7F", {0x7F}},
        {"two bytes", 0x3027, "\xC3\xA9", {0xE9}},
        {"three bytes", 0x3027, "\xE3\x81\x82", {0x3042}},
        {"four bytes", 0x3027, "\xF0\x9F\x98\x80", {0x1F600}},
        {"five bytes", 0x3027, "\xFB\xBF\xBF\xBF\xBF", {0x3FFFFFF}},
        {"six bytes", 0x3027, "\xFD\xBF\xBF\xBF\xBF\xBF", {0x7FFFFFFF}},
        {"surrogates pass", 0x3027, "\xED\xA0\xBD", {0xD83D}},
        {"0xFFFF is no end", 0x3027, "\xEF\xBF\xBF!", {0xFFFF, '!'}},
        {"stray bytes are 0", 0x3027, "\x80\xBF\xFE\xFF", {0, 0, 0, 0}},
        {"ASCII followers are taken", 0x3027, "\xE3<pa", {0x3F30, 'a'}},
        {"shifts as followers", 0x3027, "\xC3\x0E\x0F", {0xCE, 0x0F}},
    });
}

TEST(Decoders, Utf8OverlongFormsStand)
{
    expectRows({
        {"a slash", 0x3027, "\xC0\xAF", {0x2F}},
        {"a zero", 0x3027, "\xC0\x80", {0}},
        {"a less-than sign in three", 0x3027, "\xE0\x80\xBC", {0x3C}},
    });
}

TEST(Decoders, Utf8LeadByteAtTheVeryEnd)
{
    struct Row {
        std::string_view bytes;
        std::int32_t character;
    };
    constexpr Row kRows[] = {{"\xC3", 0xFF}, {"\xE3", 0x3FFF}, {"\xE3\x81", 0x307F},
        {"\xF0", 0x3FFFF}, {"\xFD", 0x7FFFFFFF}};
    for (const Row& row : kRows) {
        TestContext test(row.bytes, 0x3027);
        EXPECT_EQ(row.character, readChar(test.context));
        EXPECT_EQ(0, test.context.statusFlags);
        EXPECT_EQ(row.bytes.size(), currentPosition(test.context));
        EXPECT_EQ(kEndOfInput, readChar(test.context));
        EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
    }
}

TEST(Decoders, Iso2022JpEscapesStayInTheText)
{
    expectRows({
        {"in and out", 0x201D, "a\x1B$B$\"\x1B(Bb",
            {'a', 0x1B, '$', 'B', 0x2422, 0x1B, '(', 'B', 'b'}},
        {"the old designation", 0x201D, "\x1B$@0!", {0x1B, '$', '@', 0x3021}},
        {"JIS-Roman", 0x201D, "\x1B(Ja", {0x1B, '(', 'J', 'a'}},
        {"a shift inside", 0x201D, "\x1B$B\x0E$\"", {0x1B, '$', 'B', 0x0E, 0x2422}},
        {"designated twice", 0x201D, "\x1B$B\x1B$B$\"", {0x1B, '$', 'B', 0x1B, 0x2442, 0x2422}},
        {"an unknown designation changes nothing", 0x201D, "\x1B$B\x1B(I$\"",
            {0x1B, '$', 'B', 0x1B, 0x2849, 0x2422}},
        {"8-bit pairs", 0x201D, "\x1B$B\xA4\xA2", {0x1B, '$', 'B', negative(0xA4A2)}},
    });
}

TEST(Decoders, Iso2022JpPairCutOffIsOneByteAndTheEnd)
{
    TestContext test("\x1B$B$", 0x201D);
    for (const std::int32_t character : {0x1B, 0x24, 0x42})
        EXPECT_EQ(character, readChar(test.context));
    EXPECT_EQ(ISO2022_JIS_X0208, test.context.iso2022State);
    EXPECT_EQ('$', readChar(test.context));
    EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
    EXPECT_EQ(kEndOfInput, readChar(test.context));
}

TEST(Decoders, LooksAheadLeaveTheStatus)
{
    struct Row {
        std::uint16_t set;
        std::string_view bytes;
    };
    constexpr Row kRows[] = {{0x201D, "\x1B"}, {0x201D, "\x1B("}, {0x2029, "~"}};
    for (const Row& row : kRows) {
        TestContext test(row.bytes, row.set);
        for (const char byte : row.bytes) {
            EXPECT_EQ(byte, readChar(test.context));
            EXPECT_EQ(0, test.context.statusFlags);
        }
        EXPECT_EQ(kEndOfInput, readChar(test.context));
    }
}

TEST(Decoders, Iso2022KrShiftsStayInTheText)
{
    expectRows({
        {"out and in", 0x202C, "\x1B$)C\x0E\x30\x21\x0F!",
            {0x1B, '$', ')', 'C', 0x0E, 0x3021, 0x0F, '!'}},
        {"without a designation", 0x202C, "\x0E\x30\x21", {0x0E, 0x3021}},
        {"a designation ends it", 0x202C, "\x1B$)CAB", {0x1B, '$', ')', 'C', 'A', 'B'}},
        {"cut off", 0x202C, "\x0E\x30", {0x0E}},
    });
}

TEST(Decoders, Iso2022KrDesignationInsideAShift)
{
    // What follows ESC, "$" two places on is a byte even while shifted out.
    TestContext test("\x0E\x1B$)CAB", 0x202C);
    std::vector<std::int32_t> characters;
    for (int i = 0; i < 4; ++i)
        characters.push_back(readChar(test.context));
    EXPECT_EQ((std::vector<std::int32_t>{0x0E, 0x1B24, 0x2943, 'A'}), characters);
    EXPECT_EQ(ISO2022_ASCII, test.context.iso2022State);
}

TEST(Decoders, HzStates)
{
    expectRows({
        {"in and out", 0x2029, "a~{0!~}b", {'a', '~', '{', negative(0xB0A1), '~', '}', 'b'}},
        {"a continued line", 0x2029, "a~\nb", {'a', 'b'}},
        {"two of them", 0x2029, "a~\n~\nb", {'a', 'b'}},
        {"a tilde behind one", 0x2029, "a~\n~b", {'a', '~', 'b'}},
        {"a continued line of pairs", 0x2029, "~{0!~\n0!",
            {'~', '{', negative(0xB0A1), negative(0xB0A1)}},
        {"a shift behind a continued line", 0x2029, "~{~\n\x0E", {'~', '{', 0x0E}},
        {"continued to the end", 0x2029, "a~\n", {'a'}},
        {"the sum wraps", 0x2029, "~{\xFF\xFF", {'~', '{', negative(0x807F)}},
        {"a tilde among pairs", 0x2029, "~{~~", {'~', '{', negative(0xFEFE)}},
        {"cut off", 0x2029, "~{0", {'~', '{'}},
    });
}

TEST(Decoders, HzDoubleTildeIsTwoTildes)
{
    expectRows(
        {{"two", 0x2029, "~~", {'~', '~'}}, {"in text", 0x2029, "a~~b", {'a', '~', '~', 'b'}},
            {"a state all the same", 0x2029, "~~{0!", {'~', '~', '{', negative(0xB0A1)}}});
}

} // namespace
