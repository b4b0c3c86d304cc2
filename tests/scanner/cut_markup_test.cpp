#include "scanner/cut_markup.h"

#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using testing_support::randomParts;
using testing_support::repeated;
using testing_support::ScannerRun;
using testing_support::utf16;

/// What a token leaves that a later call, or the tree builder, can see.
struct Outcome {
    std::int32_t result;
    std::uint32_t element;
    std::uint32_t flags;
    std::uint32_t position;
    std::uint32_t status;
    std::uint32_t decoder;
    std::uint32_t attributes;

    bool operator==(const Outcome&) const = default;
};

Outcome outcomeOf(const ScannerRun& run)
{
    const HtmlFilterContext& context = run.context;
    // The recent bytes mean something in the sets with escapes only.
    const bool escapes = context.unicodeBomMode == 0 && context.currentCharSet != CHARSET_JIS
        && !readsBytesAsCharacters(context);
    std::uint32_t decoder = context.iso2022State;
    for (const std::uint16_t byte : context.recentBytes)
        decoder = decoder * 257 + (escapes ? byte : 0u);
    const bool tag = (run.token.flags & (TOKEN_START_TAG | TOKEN_END_TAG)) != 0;
    return {run.result, run.token.element, run.token.flags, blockPosition(run.test.block),
        context.statusFlags, decoder, tag ? context.tagAttributeCount : 0u};
}

/// Scans with and without the marks and compares every token. Answers the tokens that were cut off.
std::uint32_t compareWithPlainReading(
    const std::string& input, std::uint16_t charSet, std::uint16_t byteOrder, std::uint32_t mode)
{
    ScannerRun marked(input, charSet);
    ScannerRun plain(input, charSet);
    marked.context.unicodeBomMode = plain.context.unicodeBomMode = byteOrder;
    marked.context.rawTextMode = plain.context.rawTextMode = mode;
    marked.context.rawTextElement = plain.context.rawTextElement = 999;
    std::uint32_t cut = 0;
    bool more = true;
    while (more) {
        more = marked.next();
        EXPECT_EQ(plain.nextAnew(), more);
        const bool same = outcomeOf(marked) == outcomeOf(plain);
        EXPECT_TRUE(same) << "charset " << charSet << " position " << outcomeOf(marked).position
                          << " or " << outcomeOf(plain).position;
        if (!same)
            break;
        if (marked.result == '<' && marked.token.flags == TOKEN_CHARACTER)
            ++cut;
    }
    return cut;
}

struct Reading {
    std::uint32_t characters;
    std::uint32_t reads;
};

/// Scans everything as text and counts how often the host is asked for bytes.
Reading readAll(const std::string& input, std::uint16_t charSet = CHARSET_DEFAULT,
    std::uint16_t byteOrder = 0, std::uint32_t mode = 0)
{
    ScannerRun run(input, charSet);
    run.context.unicodeBomMode = byteOrder;
    run.context.rawTextMode = mode;
    run.context.rawTextElement = 999;
    Reading reading = {0, 0};
    while (run.next()) {
        EXPECT_EQ(run.token.flags, TOKEN_CHARACTER);
        ++reading.characters;
    }
    reading.reads = run.test.stream.calls.reads;
    return reading;
}

const std::vector<std::string> kParts
    = {"<a ", "<a", "<b\n", "<", "\"", "'", "=", " ", "x", "\n", "/", "-", "</b", "</", "<?", "<!",
        "<!--", "<![if ", "<!a ", "[", "]", "&", "&amp;", "&#1", "?", "href=\"", "href='&",
        "title=\"", "x='", "y =", "%4", "= \"", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"};

} // namespace

TEST(CutMarkup, SameTokensAsPlainReading)
{
    std::mt19937 random(2024);
    std::uint32_t cut = 0;
    for (std::uint32_t round = 0; round < 300; ++round) {
        std::vector<std::string> parts = kParts;
        // Brackets are rare, so that much is cut off; in every third document there are none.
        if (round % 3 != 0) {
            for (std::uint32_t copy = 0; copy < 8; ++copy)
                parts.insert(parts.end(), kParts.begin(), kParts.end());
            parts.insert(parts.end(), {">", "-->", "]>"});
        }
        const std::string tails[] = {"", ">", "\">", "x=\">", " '>", "]]]>", "-->", "->"};
        const std::string input
            = randomParts(parts, 120 + random() % 200, random) + tails[round % 8];
        cut += compareWithPlainReading(input, CHARSET_DEFAULT, 0, round % 4);
        cut += compareWithPlainReading(
            utf16(std::u16string(input.begin(), input.end())), CHARSET_UTF16, 254, round % 4);
    }
    EXPECT_GT(cut, 5'000u);
}

TEST(CutMarkup, SameTokensInEveryKindOfCharacterSet)
{
    const std::uint16_t charSets[] = {CHARSET_UTF8, CHARSET_SHIFT_JIS, CHARSET_EUC_JP, CHARSET_JIS,
        CHARSET_HZ, CHARSET_ISO_2022_JP, CHARSET_ISO_2022_KR, CHARSET_WINDOWS_1250};
    std::vector<std::string> parts;
    for (std::uint32_t copy = 0; copy < 3; ++copy)
        parts.insert(parts.end(), kParts.begin(), kParts.end());
    parts.insert(parts.end(),
        {">", "\x80", "\xE9", "\xC3\xA9", "\xE2\x82\xAC", "\xC0\xBE", "\xC0\xA2", "\xE3", "\x1B$B",
            "\x1B(B", "\x1B$)C", "~{", "~}", "~\n", "~", "\x0E", "\x0F", "\xA1", "!"});
    std::mt19937 random(77);
    std::uint32_t cut = 0;
    for (std::uint32_t round = 0; round < 320; ++round) {
        const std::string input = randomParts(parts, 100 + random() % 200, random);
        cut += compareWithPlainReading(input, charSets[round % 8], 0, round % 4);
    }
    EXPECT_GT(cut, 2'000u);
}

// Long stretches of one kind, with an end that only some of the pieces can reach.
TEST(CutMarkup, SameTokensInRepetitions)
{
    const char* starts[] = {"<a ", "<a x=\"", "<a x='<b y=\"", "<!", "<!--", "<![if ", "<!x \"",
        "<?", "</", "</b ", "<a href=\"&amp;", "<a x=\"<a y='", "<a=\"", "<a \"x", "<a/", "<a<b<"};
    const char* tails[] = {"", ">", "\">", "'>", "x=\">", "x='\">", "]>", "]]]]]]]]]]]]>", "-->",
        "--", "\"'>", " \">", "]]]>]]]>]]]>]]]>>>"};
    for (const char* start : starts) {
        for (const char* tail : tails) {
            for (const std::size_t times : {40u, 41u}) {
                compareWithPlainReading(repeated(start, times) + tail, CHARSET_DEFAULT, 0, 0);
                compareWithPlainReading(
                    repeated(start, times) + tail + repeated("z<a ", 20), CHARSET_DEFAULT, 0, 0);
            }
        }
    }
}

// Each piece is found out within a stretch, so the host is asked for little more than the input.
TEST(CutMarkup, EveryConstructIsReadInLinearTime)
{
    const std::string parts[] = {"<a ", "<a", "<!--", "<!-- -", "&", "<", "<!", "<?", "</", "</b ",
        "<a href=\"", "<a x='", "<a x=\"<a y='", "<![if ", "<!a \"", "<a &#", "<a/", "<a\n",
        "<b =", "<a x= "};
    for (const std::string& part : parts) {
        const std::string input = repeated(part, 200'000 / part.size());
        for (const std::uint32_t mode : {0u, 1u}) {
            const Reading reading = readAll(input, CHARSET_DEFAULT, 0, mode);
            EXPECT_LT(reading.reads, input.size() / 8) << part;
        }
    }
}

TEST(CutMarkup, LinearAlsoWhenTheBracketStandsInAQuote)
{
    struct Row {
        std::string part;
        std::string tail;
    };
    const Row rows[] = {{"<a ", "x=\">"}, {"<a", " x=\">"}, {"<a<", " x='>"}, {"<!a ", "\">"},
        {"<![if ", ">"}, {"<!--", "-- >"}, {"<a x=y ", "z='>"}, {"</b ", "z='>"}};
    for (const Row& row : rows) {
        const std::string input = repeated(row.part, 150'000 / row.part.size()) + row.tail;
        const Reading reading = readAll(input);
        EXPECT_EQ(reading.characters, input.size()) << row.part;
        EXPECT_LT(reading.reads, input.size() / 8) << row.part;
    }
}

TEST(CutMarkup, LinearInEveryKindOfCharacterSet)
{
    const std::uint16_t charSets[] = {CHARSET_UTF8, CHARSET_SHIFT_JIS, CHARSET_HZ,
        CHARSET_ISO_2022_JP, CHARSET_ISO_2022_KR, CHARSET_WINDOWS_1250};
    for (const std::uint16_t charSet : charSets) {
        const std::string input = repeated("<a ", 40'000);
        const Reading reading = readAll(input + "x=\">", charSet);
        EXPECT_EQ(reading.characters, input.size() + 4) << charSet;
        EXPECT_LT(reading.reads, input.size() / 8) << charSet;
    }
    const std::string wide = utf16(std::u16string(u"<a "));
    const Reading reading = readAll(repeated(wide, 40'000), CHARSET_UTF16, 254);
    EXPECT_EQ(reading.characters, 120'000u);
    EXPECT_LT(reading.reads, 240'000u / 8);
}

// What is known of one stream or character set says nothing of another.
TEST(CutMarkup, MarksAreDroppedWithTheCharacterSet)
{
    const std::string input = repeated("<a <a \xE3>", 100);
    ScannerRun run(input, CHARSET_UTF8);
    std::string whole;
    while (run.next())
        whole += static_cast<char>(run.result);
    EXPECT_GT(run.context.internals->cutMarkup.tableUsed, 0u);
    run.context.statusFlags = 0;
    run.context.currentCharSet = CHARSET_WINDOWS_1250;
    seekTo(0, run.context);
    std::uint32_t tags = 0;
    while (run.next())
        tags += run.token.flags == TOKEN_START_TAG ? 1u : 0u;
    EXPECT_EQ(tags, 100u);
}

// What was read once and found whole may be read again: the prescan goes over it first.
TEST(CutMarkup, SecondPassSeesTheSame)
{
    const std::string input = repeated("<a ", 50) + repeated("<a x='1' y=2>z", 50)
        + repeated("<b title='", 51) + "<![if " + repeated("<![if ", 40) + ">";
    ScannerRun run(input);
    std::vector<Outcome> first;
    while (run.next())
        first.push_back(outcomeOf(run));
    run.context.statusFlags = 0;
    seekTo(0, run.context);
    std::vector<Outcome> second;
    while (run.next())
        second.push_back(outcomeOf(run));
    EXPECT_EQ(first.size(), second.size());
    EXPECT_TRUE(first == second);
}

// A limit within 16 bits has a say in what is a value, so nothing is remembered under it.
TEST(CutMarkup, NoMarksUnderSmallLimits)
{
    testing_support::TestContext test(repeated("<a ", 200));
    std::vector<char16_t> buffer(70'000);
    Token token = {};
    while (test.context.statusFlags == 0)
        Scan(token, buffer.data(), 0xFFFF, test.context);
    EXPECT_EQ(test.internals.cutMarkup.tableUsed, 0u);
    EXPECT_TRUE(test.internals.cutMarkup.cutBefore);
}
