#include "scanner/cut_markup.h"

#include "support/process_heap.h"
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
using testing_support::shown;
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
    std::u16string text;

    bool operator==(const Outcome&) const = default;
};

Outcome outcomeOf(const ScannerRun& run)
{
    const HtmlFilterContext& context = run.context;
    // Of the recent bytes those of escape sequences matter, and in the sets with escapes only.
    const bool escapes = context.unicodeBomMode == 0 && context.currentCharSet != CHARSET_JIS
        && !readsBytesAsCharacters(context);
    std::uint32_t decoder = context.iso2022State;
    for (const std::uint16_t byte : context.recentBytes) {
        const bool matters = escapes && std::strchr("\x1B$)C~", static_cast<char>(byte)) != nullptr;
        decoder = decoder * 257 + (matters ? byte : 0u);
    }
    const bool tag = (run.token.flags & (TOKEN_START_TAG | TOKEN_END_TAG)) != 0;
    // The texts of tags only are terminated: behind others stands what cut markup has left.
    return {run.result, run.token.element, run.token.flags, blockPosition(run.test.block),
        context.statusFlags, decoder, tag ? context.tagAttributeCount : 0u,
        tag ? run.text() : std::u16string()};
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
        "title=\"", "x='", "y =", "%4", "= \"", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", "x=y&lt;",
        "<a xhref='", "<a q'href=\"&amp;", "<a x=yz&lt;", "    "};

/// Every set with a way of reading of its own, and what stands for one of its own characters.
struct SetRow {
    std::uint16_t charSet;
    std::uint16_t byteOrder;
    std::string own;
};

const std::vector<SetRow> kSets = {{CHARSET_DEFAULT, 0, "\xE9"}, {CHARSET_WINDOWS_1250, 0, "\x80"},
    {CHARSET_UTF8, 0, "\xC3\xA9"}, {CHARSET_SHIFT_JIS, 0, "\x83\x41"},
    {CHARSET_EUC_JP, 0, "\xA4\xA2"}, {CHARSET_BIG5, 0, "\xA4\x40"}, {CHARSET_GB2312, 0, "\xB0\xA1"},
    {CHARSET_KOREAN, 0, "\xB0\xA1"}, {CHARSET_GB_8BIT, 0, "\xB0\xA1"}, {CHARSET_HZ, 0, "~{!!~}"},
    {CHARSET_ISO_2022_JP, 0, "\x1B$B!!\x1B(B"}, {CHARSET_ISO_2022_KR, 0, "\x0E!!\x0F"},
    {CHARSET_UTF16, 254, "\xE9"}, {CHARSET_UTF16, 255, "\xE9"}};

/// The bytes of an input, which is given as one unit a byte, in the set.
std::string encoded(const std::string& input, std::uint16_t byteOrder)
{
    if (byteOrder == 0)
        return input;
    std::string bytes = utf16(std::u16string(input.begin(), input.end()));
    if (byteOrder == 255) {
        for (std::size_t index = 0; index < bytes.size(); index += 2)
            std::swap(bytes[index], bytes[index + 1]);
    }
    return bytes;
}

/// The bytes that the marks occupy.
std::size_t bytesOfMarks(const CutMarkup& cut)
{
    return cut.marks.size * sizeof(CutMark) + cut.steps.size * sizeof(DeclarationStep)
        + cut.pendingSize * sizeof(PendingMark);
}

/// Declarations that are longer than their buffer: long stretches with a few of them in between,
/// with quotes, some of them long, and brackets.
std::string overlongDeclarations(std::mt19937& random)
{
    const std::vector<std::string> fillings = {"x", "x ", " ", "y=", " z"};
    const std::vector<std::string> parts = {"<!a ", "<!x", "<![if ", "<![if [", "<!b=", "\" ", "'",
        "=\"q\" ", "]", " \"", "<!a ", "<!x "};
    const std::size_t length = 56'000 + random() % 20'000;
    std::string text;
    while (text.size() < length) {
        text += randomParts(parts, random() % 6, random);
        text += repeated(fillings[random() % 5], 200 + random() % 1'500);
    }
    return text;
}

void readThrough(ScannerRun& run)
{
    while (run.next())
        continue;
}

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

// What is stored of a declaration decides about its quotes, and where its buffer is full hangs on
// where it begins.
TEST(CutMarkup, SameTokensInOverlongDeclarations)
{
    const std::string tails[]
        = {"", ">", "x\">", " \">", "x' >", "\">\">", "]]>", "[[[>]]]]]>", " \"'>", "x\">y' \">"};
    std::mt19937 random(53'392);
    std::uint32_t cut = 0;
    std::uint32_t withSteps = 0;
    for (std::uint32_t round = 0; round < 20; ++round) {
        const std::string input
            = overlongDeclarations(random) + tails[round % 10] + repeated("<!b ", round % 3);
        const std::uint16_t byteOrder = round % 4 == 3 ? 254 : 0;
        const std::uint16_t charSet = round % 4 == 1 ? CHARSET_UTF8 : CHARSET_DEFAULT;
        cut += compareWithPlainReading(encoded(input, byteOrder), charSet, byteOrder, round % 2);
        ScannerRun run(encoded(input, byteOrder), charSet);
        run.context.unicodeBomMode = byteOrder;
        readThrough(run);
        withSteps += run.context.internals->cutMarkup.steps.used != 0 ? 1u : 0u;
    }
    EXPECT_GT(cut, 300u);
    EXPECT_GT(withSteps, 5u);
}

// The first of these declarations are cut off: the last unit that has room is a blank, so that the
// quote of the tail is opened and never closed. The first for which it isn't is whole, and its text
// is read although parts of it have been gone over.
TEST(CutMarkup, WholeDeclarationBehindCutOnes)
{
    constexpr std::size_t kDeclarations = 300;
    constexpr std::size_t kCut = 200;
    constexpr std::size_t kRoom = 53'392;
    for (const std::string& start : {std::string("<!a "), std::string("<![if ")}) {
        std::string input = repeated(start, kDeclarations);
        input += repeated("x", kRoom - 1 - input.size());
        input += repeated(" ", start.size() * kCut);
        input
            += repeated("x", start.size() * kDeclarations) + repeated("]", kDeclarations) + "\">z";
        EXPECT_GT(compareWithPlainReading(input, CHARSET_DEFAULT, 0, 0), kCut - 1) << start;
        ScannerRun run(input);
        std::size_t characters = 0;
        while (run.next() && (run.token.flags & TOKEN_CHARACTER) != 0)
            ++characters;
        EXPECT_EQ(characters, start.size() * kCut) << start;
        EXPECT_GT(run.context.internals->cutMarkup.steps.used, 100u);
        const std::string text = input.substr(characters, kRoom);
        EXPECT_TRUE(run.text() == std::u16string(text.begin(), text.end())) << start;
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'z');
    }
}

// A ">" between brackets ends those declarations that began behind the brackets. They are not moved
// on over it.
TEST(CutMarkup, WholeDeclarationOfFewerBrackets)
{
    const std::string start = "<![if [";
    std::string input = repeated(start, 300);
    input += repeated("x", 20'000 - input.size()) + repeated("]", 200) + ">";
    const std::size_t end = input.size();
    input += repeated("x", 53'391 - end) + repeated(" ", start.size() * 250) + "x\">z";
    EXPECT_EQ(compareWithPlainReading(input, CHARSET_DEFAULT, 0, 0), 200u);
    ScannerRun run(input);
    while (run.next() && (run.token.flags & TOKEN_CHARACTER) != 0)
        continue;
    EXPECT_GT(run.context.internals->cutMarkup.steps.used, 100u);
    EXPECT_EQ(blockPosition(run.test.block), end);
}

// In one reading the quote is that of an href, whose "&" is a unit like any other, and the two
// bytes behind the name are a character. In the other they are not, and the second one ends the
// value.
TEST(CutMarkup, HrefIsPartOfTheState)
{
    for (std::size_t shift = 0; shift < 70; ++shift) {
        for (const char* equals : {"=", "   =", "=   "}) {
            for (const std::size_t length : {0u, 80u}) {
                const std::string input = std::string(shift, 'x') + "<!--<z a='<b q'href" + equals
                    + "\"" + repeated("y", length) + "&amp\x81\">z";
                EXPECT_EQ(compareWithPlainReading(input, CHARSET_SHIFT_JIS, 0, 0), 2u);
                ScannerRun run(input, CHARSET_SHIFT_JIS);
                std::string tokens;
                while (run.next())
                    tokens += shown(run);
                EXPECT_EQ(tokens, std::string(shift, 'x') + "<!--<z a='{b}z") << shift << equals;
            }
        }
    }
}

// These readings come by one place in two modes of the decoder, or with an escape half read.
TEST(CutMarkup, DecoderIsPartOfTheState)
{
    struct Row {
        std::uint16_t charSet;
        std::string input;
    };
    const Row rows[] = {
        {CHARSET_HZ,
            "<!--~{&&&&&&&~}\x1B(B>\x1Bxxxxxxxx<!--~{&&&&&&&~}B\x1B(Bxxxxxxxxxxxxxx<!--~{&&&&&&&~}"
                + repeated("\x1B(B", 10) + "xxxxxxxxxxxxxx<!--~{&~}"},
        {CHARSET_ISO_2022_KR,
            "</b\x1B$)C'x=y~}<\x0Ex=y~}<a \x1B$B</b\x1B$)C'x=y~}<a \x1B$Bx</b\x1B$)Ca "
            "\x1B$B</)C'x"},
    };
    for (const Row& row : rows)
        EXPECT_GT(compareWithPlainReading(row.input, row.charSet, 0, 0), 2u) << row.charSet;
}

// Each piece is found out within a stretch, so the host is asked for little more than the input.
TEST(CutMarkup, EveryConstructIsReadInLinearTime)
{
    const std::string parts[]
        = {"<a ", "<a", "<!--", "<!-- -", "&", "<", "<!", "<?", "</", "</b ", "<a href=\"",
            "<a x='", "<a x=\"<a y='", "<![if ", "<!a ", "<a &#", "<a/", "<a\n", "<b =", "<a x= "};
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
    const Row rows[] = {{"<a ", "x=\">"}, {"<a", " x=\">"}, {"<a<", " x='>"}, {"<![if ", ">"},
        {"<!--", "-- >"}, {"<a x=y ", "z='>"}, {"</b ", "z='>"}};
    for (const Row& row : rows) {
        const std::string input = repeated(row.part, 150'000 / row.part.size()) + row.tail;
        const Reading reading = readAll(input);
        EXPECT_EQ(reading.characters, input.size()) << row.part;
        EXPECT_LT(reading.reads, input.size() / 8) << row.part;
    }
}

// A declaration with quotes that is longer than its buffer is gone over in a few moves, each of
// which can ask the host.
TEST(CutMarkup, OverlongDeclarationsAreReadInLinearTime)
{
    struct Row {
        std::string part;
        std::string tail;
    };
    const Row rows[] = {{"<!a ", "\">"}, {"<!a ", "x\">"}, {"<!a \"", ""}, {"<!a 'b \"", ""},
        {"<![if ", "x\">"}, {"<![if \"", ""}, {"<!<!<!<!<! href='", ""},
        {"\"<!a <!a <!a <!a <!a <!a <!a <!a <!a <!a <!a <!a <!a <!a <!a <!a \" ", ""}};
    for (const Row& row : rows) {
        const std::string input = repeated(row.part, 150'000 / row.part.size()) + row.tail;
        ScannerRun run(input);
        readThrough(run);
        EXPECT_LT(run.test.stream.calls.reads, input.size()) << row.part;
    }
}

TEST(CutMarkup, LinearInEveryKindOfCharacterSet)
{
    for (const SetRow& set : kSets) {
        const std::string input = repeated("<a ", 20'000) + "x=\">";
        const std::string bytes = encoded(input, set.byteOrder);
        const Reading reading = readAll(bytes, set.charSet, set.byteOrder);
        EXPECT_EQ(reading.characters, input.size()) << set.charSet;
        EXPECT_LT(reading.reads, bytes.size() / 8) << set.charSet;
    }
}

// What is taken between two questions may straddle any place, in every period.
TEST(CutMarkup, LinearWhateverThePeriod)
{
    const std::string fillings[] = {"<a ", "<a x=y&lt;", "<a x=\"&amp;", "<!a ", "</b x"};
    std::uint32_t row = 0;
    for (const SetRow& set : kSets) {
        for (std::size_t period = 29; period <= 62; ++period, ++row) {
            const std::string& filling = fillings[row % 5];
            std::string part = repeated(filling, (period - set.own.size()) / filling.size());
            part += set.own;
            part += repeated("x", period - part.size());
            const std::string bytes = encoded(
                std::string(row % 31, 'x') + repeated(part, 12'000 / period), set.byteOrder);
            const Reading reading = readAll(bytes, set.charSet, set.byteOrder);
            EXPECT_LT(reading.reads, bytes.size() / 8) << set.charSet << ' ' << part;
        }
    }
}

TEST(CutMarkup, LinearWhereQuestionsAreFar)
{
    struct Row {
        std::uint16_t charSet;
        std::string input;
    };
    const Row rows[] = {
        {CHARSET_UTF8, "xxx" + repeated(repeated("<a ", 9) + "\xC3\xA9xy", 3'000)},
        {CHARSET_DEFAULT,
            std::string(23, 'x') + repeated("<a x=y&lt;<a x=y&lt;<a x=yz&lt;", 3'000)},
        {CHARSET_HZ, "xxxxx" + repeated("<a x" + repeated("~\n", 29), 1'500)},
        {CHARSET_HZ, repeated("<a x" + repeated("~\n", 2'000) + repeated("<a ", 20), 25)},
        {CHARSET_UTF8, repeated("<a x=&\xFC\x80\x80\x80\x81\xA1\xFC\x80\x80\x80\x81\xA1", 5'000)},
        {CHARSET_DEFAULT, repeated("<a x=&aaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", 2'500)},
        {CHARSET_DEFAULT, repeated("<a x='&aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", 2'500)},
    };
    for (const Row& row : rows) {
        const Reading reading = readAll(row.input, row.charSet);
        EXPECT_LT(reading.reads, row.input.size() / 8) << row.charSet;
    }
}

// Brackets that close more than is open count for nothing, so that what follows opens anew.
TEST(CutMarkup, LinearWhereBracketsCloseMoreThanIsOpen)
{
    struct Row {
        std::string part;
        std::string closing;
        std::string tail;
    };
    const Row rows[] = {{"<![if ", "]]", "[>"}, {"<![if ", "]", "[>"},
        {"<![if [ ] ] ", "]", "[[>]>"}, {"<![if [>] ", "]", "[>"}, {"<![if ", "", ">"}};
    for (const Row& row : rows) {
        for (const std::size_t times : {40u, 10'000u}) {
            const std::string input
                = repeated(row.part, times) + repeated(row.closing, times) + row.tail;
            ScannerRun run(input);
            readThrough(run);
            EXPECT_LT(run.test.stream.calls.reads, input.size() / 8 + 64) << row.part << row.tail;
            if (times == 40)
                compareWithPlainReading(input, CHARSET_DEFAULT, 0, 0);
        }
    }
}

TEST(CutMarkup, MemoryOfMarksIsBounded)
{
    const std::string parts[] = {"<a ", "<!--<a <?<!a ", "<!<!<!<!<! href='",
        "<a x='<a y=\"<!a '<![if \"<?</b x=<!--", "<![if [[[["};
    for (const SetRow& set : kSets) {
        for (const std::string& part : parts) {
            const std::string input
                = encoded(repeated(part + set.own, 60'000 / part.size()), set.byteOrder);
            ScannerRun run(input, set.charSet);
            run.context.unicodeBomMode = set.byteOrder;
            const CutMarkup& cut = run.context.internals->cutMarkup;
            std::size_t most = 0;
            while (run.next()) {
                EXPECT_LE(cut.pendingSize, 64u); // what only a long piece needs is given back
                most = std::max(most, bytesOfMarks(cut));
            }
            // While a table grows, the old one stands beside it.
            EXPECT_LT(most * 3 / 2, input.size() * 4) << set.charSet << ' ' << part;
        }
    }
}

// Marks spare time only: without memory for them everything is read as it would be anyway.
TEST(CutMarkup, MarksWithoutMemoryAreLeftOut)
{
    const std::string input = repeated("<a <!a \" <![if [", 60) + repeated("<!x '", 40) + ">";
    ScannerRun plain(input);
    std::vector<Outcome> expected;
    while (plain.nextAnew())
        expected.push_back(outcomeOf(plain));
    for (std::uint32_t failing = 0; failing < 20; ++failing) {
        ScannerRun run(input);
        std::vector<Outcome> outcomes;
        if (failing == 0)
            zorvan::failAllocationsFrom(1);
        else
            zorvan::failNthAllocation(failing);
        while (run.next())
            outcomes.push_back(outcomeOf(run));
        if (failing == 0) {
            EXPECT_EQ(run.context.internals->cutMarkup.marks.used, 0u);
        }
        zorvan::clearAllocationFailure();
        EXPECT_TRUE(outcomes == expected) << failing;
    }
}

// What is known of one stream or character set says nothing of another.
TEST(CutMarkup, MarksAreDroppedWithTheCharacterSet)
{
    const std::string input = repeated("<a <a \xE3>", 100);
    ScannerRun run(input, CHARSET_UTF8);
    std::string whole;
    while (run.next())
        whole += static_cast<char>(run.result);
    EXPECT_GT(run.context.internals->cutMarkup.marks.used, 0u);
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
    EXPECT_EQ(test.internals.cutMarkup.marks.used, 0u);
    EXPECT_TRUE(test.internals.cutMarkup.cutBefore);
}
