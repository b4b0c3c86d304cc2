#include "scanner/text_run.h"

#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using testing_support::randomParts;
using testing_support::repeated;
using testing_support::ScannerRun;

std::u16string runOf(const std::string& input, std::uint16_t charSet = 0x9000,
    std::uint32_t capacity = 64, std::uint32_t mode = 0)
{
    ScannerRun run(input, charSet);
    run.context.rawTextMode = mode;
    // The first byte fills the buffer; there is nothing to be had from an empty one.
    char16_t units[65];
    EXPECT_EQ(scanTextRun(units, capacity, run.context), 0u);
    EXPECT_TRUE(run.next());
    const std::uint32_t count = scanTextRun(units, capacity, run.context);
    EXPECT_LE(count, capacity);
    return std::u16string(units, count);
}

/// All that the scanner leaves behind and a later call could see.
std::string stateOf(const ScannerRun& run)
{
    std::string state = std::to_string(blockPosition(run.test.block)) + ' '
        + std::to_string(run.context.statusFlags) + ' ' + std::to_string(run.context.iso2022State)
        + ' ' + std::to_string(run.context.rawTextMode) + ' '
        + std::to_string(run.context.rawTextAtLineStart) + ' '
        + std::to_string(run.context.tokenBuffer[0]) + std::to_string(run.context.tokenBuffer[1]);
    for (const std::uint16_t byte : run.context.recentBytes)
        state += ' ' + std::to_string(byte);
    return state;
}

/// Scans an input to its end once in runs of random capacities and once one by one. Answers how
/// many units came in runs.
std::uint64_t compareRuns(ScannerRun& inRuns, ScannerRun& oneByOne, std::mt19937& random)
{
    std::uint64_t delivered = 0;
    const auto compare = [&] {
        char16_t units[64];
        const auto capacity = static_cast<std::uint32_t>(random() % (random() % 4 == 0 ? 64 : 16));
        const std::uint32_t count = scanTextRun(units, capacity, inRuns.context);
        ASSERT_LE(count, capacity);
        delivered += count;
        for (std::uint32_t index = 0; index < count; ++index) {
            ASSERT_TRUE(oneByOne.next());
            ASSERT_EQ(static_cast<char16_t>(oneByOne.result), units[index]);
            ASSERT_EQ(oneByOne.token.flags, TOKEN_CHARACTER);
        }
        if (count != 0) {
            ASSERT_EQ(stateOf(inRuns), stateOf(oneByOne));
        }
        const bool more = inRuns.next();
        ASSERT_EQ(more, oneByOne.next());
        ASSERT_EQ(inRuns.result, oneByOne.result);
        ASSERT_EQ(inRuns.token.flags, oneByOne.token.flags);
        ASSERT_EQ(stateOf(inRuns), stateOf(oneByOne));
    };
    do {
        compare();
    } while (!testing::Test::HasFatalFailure() && inRuns.context.statusFlags == 0);
    return delivered;
}

} // namespace

TEST(TextRun, DeliversUpToWhatNeedsCare)
{
    struct Row {
        std::string input;
        std::u16string run;
    };
    const Row rows[] = {
        {"?abc<b>", u"abc"},
        {"?a b\tc\r\n\f\bd&amp;>", u"a b\tc\r\n\f\bd&amp;>"},
        {"?", u""},
        {"?<", u""},
        {std::string("?ab\0c", 5), u"ab"},
        {"?ab\x85\x93z\x80z", u"ab\x2026\x201Cz"}, // replaced by the default set
        {"?ab\xA0\xE9z", u"ab\xA0\xE9z"},
        {"?12345678<", u"12345678"},
        {"?1234567<9", u"1234567"},
        {"?123456789012345\x7F<", u"123456789012345\x7F"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(runOf(row.input), row.run) << row.input;
}

TEST(TextRun, Utf8)
{
    struct Row {
        std::string input;
        std::u16string run;
    };
    const Row rows[] = {
        {"?a\xC3\xA9\xE2\x82\xAC-<", u"a\xE9\x20AC-"}, {"?a\x80z", u"a"}, // the character 0
        {"?a\xC0\xBCz", u"a"}, // an overlong "<"
        {"?a\xE0\x80\xBCz", u"a"}, {"?a\xEF\xBF\xBFz", u"a"}, // 0xFFFF
        {"?a\xF0\x9F\x98\x80z", u"a"}, // above 16 bits
        {"?a\xE2\x82", u"a"}, // not whole in the buffer
        {"?a\xE2<bcd",
            u"a\x2F22"
            u"cd"}, // whatever follows is taken
    };
    for (const Row& row : rows)
        EXPECT_EQ(runOf(row.input, CHARSET_UTF8), row.run) << row.input;
}

TEST(TextRun, SetsOfPairs)
{
    struct Row {
        std::uint16_t charSet;
        std::string input;
        std::u16string run;
    };
    const Row rows[] = {
        {CHARSET_SHIFT_JIS, "?ab\x89\x63\x8B<c\xB1 d<",
            u"ab\x8963\x8B3C"
            u"c\xB1 d"},
        {CHARSET_SHIFT_JIS, std::string("?\x81\0\xFC\xFF\x80\xA0\xFD\xFF.", 10),
            u"\x8100\xFCFF\x80\xA0\xFD\xFF."},
        {CHARSET_SHIFT_JIS, "?ab\x81", u"ab"}, // not whole in the buffer
        {CHARSET_BIG5, "?\xA4\x40\xC7\xC8\xC9\xFF<", u"\xA440\xC7\xC8\xC9FF"},
        {CHARSET_GB2312, "?\x81\x30\x80\xFF\xFE\xFE<", u"\x8130\x80\xFF\xFEFE"},
        {CHARSET_KOREAN, "?\xB0\xA1\xAD\xAF\xC9\xFE<", u"\xB0A1\xAD\xAF\xC9\xFE"},
        {CHARSET_GB_8BIT, "?\xA1\xA1\xA0\xFF<", u"\xA1A1\xA0\xFF"},
        {CHARSET_EUC_JP, "?\xB1\xB2\xFE<\x8E\xB1\xB1<", u"\x8951\xEF3A\x8E\x8950"},
        {CHARSET_CHINESE_EUC, "?\xB1\xB2<", u"\xB1\xB2"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(runOf(row.input, row.charSet), row.run) << row.input;
}

TEST(TextRun, KeepsToItsCapacity)
{
    for (std::uint32_t capacity = 0; capacity < 20; ++capacity) {
        EXPECT_EQ(runOf("?abcdefghijkl<", CHARSET_DEFAULT, capacity),
            std::u16string(u"abcdefghijkl").substr(0, capacity));
        EXPECT_EQ(runOf("?\xC3\xA9\xC3\xA9"
                        "abc\xC3\xA9<",
                      CHARSET_UTF8, capacity),
            std::u16string(u"\xE9\xE9"
                           u"abc\xE9")
                .substr(0, capacity));
    }
}

TEST(TextRun, NoneWhereCharactersAreNotBytes)
{
    EXPECT_EQ(runOf("?abc", CHARSET_HZ), u"");
    EXPECT_EQ(runOf("?abc", CHARSET_ISO_2022_JP), u"");
    EXPECT_EQ(runOf("?abc", CHARSET_ISO_2022_KR), u"");
    EXPECT_EQ(runOf("??abc", CHARSET_JIS), u"");
    ScannerRun wide(testing_support::utf16(u"abc"));
    wide.context.unicodeBomMode = 254;
    EXPECT_TRUE(wide.next());
    char16_t units[8];
    EXPECT_EQ(scanTextRun(units, 8, wide.context), 0u);
}

TEST(TextRun, NoneInLenientRawTextAndWithPendingCharacters)
{
    EXPECT_EQ(runOf("?abc<", CHARSET_DEFAULT, 64, RAW_TEXT_STRICT), u"abc");
    EXPECT_EQ(runOf("?abc<", CHARSET_DEFAULT, 64, RAW_TEXT_LENIENT), u"");
    EXPECT_EQ(runOf("?abc<", CHARSET_DEFAULT, 64, RAW_TEXT_TEXTAREA), u"abc");
    EXPECT_EQ(runOf("?abc<", CHARSET_DEFAULT, 64, RAW_TEXT_PLAINTEXT), u"abc");
    ScannerRun run("?abc");
    EXPECT_TRUE(run.next());
    run.context.pendingChars->append(u"x");
    char16_t units[8];
    EXPECT_EQ(scanTextRun(units, 8, run.context), 0u);
}

// As the next token would.
TEST(TextRun, EmptiesTheTokenBuffer)
{
    ScannerRun run("<b class=x>abc<i>");
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.text(), u"<b class=x>");
    char16_t units[8];
    EXPECT_EQ(scanTextRun(units, 8, run.context), 3u);
    for (std::uint32_t index = 0; index < 12; ++index)
        EXPECT_EQ(run.context.tokenBuffer[index], 0) << index;
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.text(), u"<i>");
    EXPECT_EQ(scanTextRun(units, 8, run.context), 0u);
}

TEST(TextRun, NoneWithAStatus)
{
    ScannerRun run("?abc");
    EXPECT_TRUE(run.next());
    run.context.statusFlags = STATUS_HOST_STOP;
    char16_t units[8];
    EXPECT_EQ(scanTextRun(units, 8, run.context), 0u);
}

// A run is so many calls of Scan, in what it delivers and in what it leaves: in every set, with
// buffers that end anywhere in a character, and any capacity.
TEST(TextRun, SameAsScan)
{
    const std::vector<std::string> parts
        = {"a", " ", "\n", "text and more text", "<b>", "<", ">", "&amp;", std::string(1, '\0'),
            "\x80", "\x9F", "\xA0", "\xFF", "\xC3\xA9", "\xE2\x82\xAC", "\xC0\xBC", "\xE0\x80\xBC",
            "\xE3", "\xEF\xBF\xBF", "\xF0\x9F\x98\x80", "\x1B$B", "~{", "\x0E", "\x0F", "\xF0",
            "\xD0\x9F\xD0\xBE\xD0\xB5\xD0\xB7\xD0\xB4", "\xC2\x80\xC1\xBF\xDF\xBF\xD0z\xC2\xC2",
            "\x89\x63\x8B\xC6\x8E\x9E\x8A\xD4", "\xB1\xB2\xC8\xAD\xFE\xFE"};
    const std::uint16_t charSets[] = {CHARSET_DEFAULT, CHARSET_UTF8, CHARSET_SHIFT_JIS,
        CHARSET_BIG5, CHARSET_GB2312, CHARSET_KOREAN, CHARSET_EUC_JP, CHARSET_GB_8BIT,
        CHARSET_CHINESE_EUC, 0x201E, 0x401B, CHARSET_WINDOWS_1250, CHARSET_WINDOWS_1251,
        CHARSET_KOI8_R, CHARSET_HZ, CHARSET_ISO_2022_JP, CHARSET_ISO_2022_KR, CHARSET_JIS};
    const std::uint32_t bufferSizes[] = {7, 64, 5, 2'048, 31};
    std::mt19937 random(1234);
    std::uint64_t delivered = 0;
    for (const std::uint16_t charSet : charSets) {
        for (std::uint32_t round = 0; round < 25; ++round) {
            const std::string input = randomParts(parts, 200, random);
            ScannerRun inRuns(input, charSet, bufferSizes[round / 5]);
            ScannerRun oneByOne(input, charSet, bufferSizes[round / 5]);
            inRuns.context.rawTextMode = oneByOne.context.rawTextMode = round % 5;
            delivered += compareRuns(inRuns, oneByOne, random);
            ASSERT_FALSE(HasFatalFailure()) << std::hex << charSet << ' ' << std::dec << round;
        }
    }
    EXPECT_GT(delivered, 50'000u);
}

TEST(TextRun, CountsTextBytes)
{
    ScannerRun run("xabc\xE9\x80<");
    EXPECT_EQ(countTextBytes(run.context), 0u);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(countTextBytes(run.context), 4u);
    run.context.currentCharSet = CHARSET_KOI8_R;
    EXPECT_EQ(countTextBytes(run.context), 5u);
    run.context.currentCharSet = CHARSET_UTF8;
    EXPECT_EQ(countTextBytes(run.context), 3u);
    run.context.currentCharSet = CHARSET_HZ;
    EXPECT_EQ(countTextBytes(run.context), 0u);
}
