#include "scanner/tag_scanner.h"

#include "input/char_reader.h"
#include "support/html_names.h"
#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <string>
#include <vector>

namespace {

using testing_support::repeated;
using testing_support::scanned;
using testing_support::ScannerRun;
using testing_support::TestContext;
using testing_support::utf16;

/// What a routine has left in a small buffer.
struct Copied {
    std::u16string text;
    std::uint16_t position;
    std::int32_t next; // the next character
};

template <typename Routine> Copied copied(std::string_view input, Routine routine)
{
    TestContext test(input);
    char16_t buffer[64] = {};
    Copied result = {};
    routine(buffer, result.position, test.context);
    result.text = buffer;
    test.context.statusFlags = 0;
    result.next = readChar(test.context);
    return result;
}

std::string titleOf(const std::string& tag)
{
    ScannerRun run(tag);
    EXPECT_TRUE(run.next());
    return run.attribute(ATTRIBUTE_TITLE);
}

} // namespace

TEST(TagScanner, BackspaceIsSpaceAndFormFeedIsNot)
{
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        const std::string unit(1, static_cast<char>(byte));
        const Copied result = copied(unit + "x", [](auto* buffer, auto& position, auto& context) {
            copySpace(buffer, position, 60, context);
        });
        const bool space = byte == 8 || byte == 9 || byte == 10 || byte == 13 || byte == 32;
        EXPECT_EQ(result.position, space ? 1 : 0) << byte;
        if (space) {
            EXPECT_EQ(result.next, 'x') << byte;
        }
    }
    EXPECT_EQ(titleOf("<a\btitle\b=\bx\bid=y>"), "x");
    EXPECT_EQ(titleOf("<a \ftitle=x>"), "none");
    EXPECT_EQ(titleOf("<a title=x\fy>"), "x\fy");
}

// Each ends a name and an unquoted value, and nothing else of the kind does.
TEST(TagScanner, WhiteSpaceEndsNamesAndUnquotedValues)
{
    for (const char unit : {' ', '\t', '\n', '\r', '\b', '\f', '\v'}) {
        const bool space = unit != '\f' && unit != '\v';
        const auto tag = [unit](std::string text) {
            for (char& place : text)
                place = place == '@' ? unit : place;
            return text;
        };
        EXPECT_EQ(titleOf(tag("<a href=x@title=y>")), space ? "y" : "none");
        EXPECT_EQ(titleOf(tag("<a title=x@y>")), space ? "x" : tag("x@y"));
        EXPECT_EQ(titleOf(tag("<a nowrap@title=y>")), space ? "y" : "none");
        EXPECT_EQ(titleOf(tag("<a title@=@y>")), space ? "y" : "none");
        EXPECT_EQ(titleOf(tag("<a href='x'@title=y>")), space ? "y" : "none");
        EXPECT_EQ(titleOf(tag("<a@title=y>")), space ? "y" : "none");
    }
}

// A lead byte takes the byte behind it with it, whatever that is.
TEST(TagScanner, LeadBytesSwallowDelimiters)
{
    struct SetRow {
        std::uint16_t charSet;
        char lead;
    };
    const SetRow sets[] = {{CHARSET_SHIFT_JIS, '\x81'}, {CHARSET_BIG5, '\xA1'},
        {CHARSET_GB2312, '\x81'}, {CHARSET_KOREAN, '\xB0'}, {CHARSET_GB_8BIT, '\xA1'},
        {CHARSET_EUC_JP, '\xA1'}, {CHARSET_UTF8, '\xC3'}};
    // "@" is the lead byte. The second tokens are those of a set in which it is a character.
    const struct {
        const char* input;
        const char* swallowed;
        const char* single;
    } rows[] = {
        {"<a x=\"@\">z\">y", "{a}y", "{a}z\">y"},
        {"<a x='@'>z'>y", "{a}y", "{a}z'>y"},
        {"<a x=@>z>y", "{a}y", "{a}z>y"},
        {"<a @>z>y", "{a}y", "{a}z>y"},
        {"<a x@=\">\">y", "{a}\">y", "{a}y"},
        {"<a x=@ y=\">\">z", "{a}\">z", "{a}z"},
        {"<a x=\"@<\">y", "{a}y", "{a}y"},
        {"<a/@>z>y", "{a/}y", "{a/}z>y"},
        {"</a x=@>z>y", "{/a}y", "{/a}z>y"},
    };
    for (const auto& row : rows) {
        std::string input = row.input;
        char& place = input[input.find('@')];
        for (const SetRow& set : sets) {
            place = set.lead;
            EXPECT_EQ(scanned(input, set.charSet), row.swallowed) << set.charSet << row.input;
        }
        place = '\x81';
        EXPECT_EQ(scanned(input, CHARSET_WINDOWS_1250), row.single) << row.input;
    }
    // A swallowed "<" is text, and no markup begins with it.
    EXPECT_EQ(scanned("\x81<b>x", CHARSET_SHIFT_JIS), "\\-32452;b>x");
    EXPECT_EQ(scanned("\xC3<b>x", CHARSET_UTF8), "\\252;b>x");
    EXPECT_EQ(scanned("\x81<b>x", CHARSET_WINDOWS_1250), "\\129;{b}x");
}

TEST(TagScanner, CopyNameTakesNameCharactersAndExtras)
{
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        const std::string unit(1, static_cast<char>(byte));
        const Copied result = copied(unit + "\n", [](auto* buffer, auto& position, auto& context) {
            EXPECT_EQ(copyName(buffer, position, 60, "+", context), buffer);
        });
        const bool member = (byte < 0x80 && std::isalnum(static_cast<int>(byte)) != 0)
            || byte == '.' || byte == '+';
        EXPECT_EQ(result.position, member ? 1 : 0) << byte;
        EXPECT_EQ(result.next == '\n', member || byte == '\n') << byte;
    }
}

TEST(TagScanner, CopyNameStopsAtTheLimit)
{
    for (std::uint32_t limit = 0; limit < 6; ++limit) {
        const Copied result
            = copied("abcdef>", [limit](auto* buffer, auto& position, auto& context) {
                  buffer[limit] = u'?';
                  copyName(buffer, position, limit, "", context);
              });
        EXPECT_EQ(result.text, std::u16string(u"abcdef").substr(0, limit));
        EXPECT_EQ(result.next, 'a' + static_cast<std::int32_t>(limit));
    }
}

TEST(TagScanner, CopyUntil)
{
    struct Row {
        const char* input;
        bool keep;
        std::u16string text;
        std::uint16_t position;
        std::int32_t next;
    };
    const Row rows[] = {
        {"abc>d", true, u"abc>", 4, 'd'},
        {"abc>d", false, u"abc", 3, '>'},
        {">d", false, u"", 0, '>'},
        {">d", true, u">", 1, 'd'},
        {"a;d", false, u"a", 1, ';'},
        {"abc", true, u"abc", 0, -1}, // cut text stays, the position goes back
        {"", true, u"", 0, -1},
    };
    for (const Row& row : rows) {
        const Copied result
            = copied(row.input, [&row](auto* buffer, auto& position, auto& context) {
                  copyUntil(buffer, position, 60, ">;", row.keep, context);
              });
        EXPECT_EQ(result.text, row.text) << row.input;
        EXPECT_EQ(result.position, row.position) << row.input;
        EXPECT_EQ(result.next, row.next) << row.input;
    }
}

TEST(TagScanner, CopyUntilBeyondTheLimit)
{
    TestContext test("abcdefg>h");
    char16_t buffer[8] = u"1234567";
    std::uint16_t position = 1;
    EXPECT_EQ(copyUntil(buffer, position, 4, ">", true, test.context), buffer + 1);
    EXPECT_EQ(position, 4);
    EXPECT_EQ(std::u16string(buffer), u"1abc567"); // no terminator at the limit
    EXPECT_EQ(readChar(test.context), 'h');
}

// Delimiters are compared whole: U+013E is no ">".
TEST(TagScanner, WideCharactersAreNoDelimiters)
{
    ScannerRun run(utf16(u"<a title=x\x013Ey\x0120z>"));
    run.context.unicodeBomMode = 254;
    EXPECT_TRUE(run.next());
    char16_t value[16];
    EXPECT_EQ(readAttributeValue(ATTRIBUTE_TITLE, value, 16, run.context), 1u);
    EXPECT_EQ(std::u16string(value), u"x\x013Ey\x0120z");
}

TEST(TagScanner, AttributesAreRecordedInOrder)
{
    ScannerRun run("<a id=1 HREF = x nowrap foo=2 title='t'>");
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.context.tagAttributeCount, 4);
    const TagAttribute* pairs = run.context.tagAttributes;
    EXPECT_EQ(pairs[0].attribute, ATTRIBUTE_ID);
    EXPECT_EQ(pairs[0].position, 6u);
    EXPECT_EQ(pairs[1].attribute, ATTRIBUTE_HREF);
    EXPECT_EQ(pairs[1].position, 15u);
    EXPECT_EQ(pairs[2].attribute, ATTRIBUTE_NOWRAP);
    EXPECT_EQ(pairs[2].position, 0u);
    EXPECT_EQ(pairs[3].attribute, ATTRIBUTE_TITLE);
    EXPECT_EQ(pairs[3].position, 36u);
    EXPECT_EQ(run.context.currentAttribute, 0u);
    EXPECT_EQ(run.attribute(ATTRIBUTE_HREF), "x");
    EXPECT_EQ(run.attribute(ATTRIBUTE_NOWRAP), "none");
    EXPECT_EQ(run.attribute(ATTRIBUTE_CLASS), "none");
}

TEST(TagScanner, EndTagsRecordAttributes)
{
    ScannerRun run("<b id=1></p class=1>");
    EXPECT_TRUE(run.next());
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.token.flags, TOKEN_END_TAG);
    EXPECT_EQ(run.context.tagAttributeCount, 1);
    EXPECT_EQ(run.context.tagAttributes[0].attribute, ATTRIBUTE_CLASS);
    EXPECT_EQ(run.attribute(ATTRIBUTE_CLASS), "1");
}

TEST(TagScanner, EveryAttributeNameInEitherCase)
{
    std::ifstream file(std::string(HTMLFILTER_SOURCE_DIR) + "/tools/data/attributes.tsv");
    std::uint32_t id = 0;
    std::string name;
    std::uint32_t rows = 0;
    while (file >> id >> name) {
        ++rows;
        std::string upper = name;
        for (char& letter : upper)
            letter = static_cast<char>(std::toupper(letter));
        for (const std::string& spelling : {name, upper}) {
            ScannerRun run("<a " + spelling + "=v>");
            EXPECT_TRUE(run.next());
            EXPECT_EQ(run.context.tagAttributeCount, 1) << name;
            EXPECT_EQ(run.context.tagAttributes[0].attribute, id) << name;
            EXPECT_EQ(run.attribute(id), "v") << name;
        }
    }
    EXPECT_EQ(rows, 243u);
}

TEST(TagScanner, SeventeenthKnownAttributeHasNoEffect)
{
    std::string tag = "<a";
    for (std::uint32_t index = 0; index < 15; ++index)
        tag += " id=" + std::to_string(index);
    ScannerRun last(tag + " foo=1 bar=2 title=t>");
    EXPECT_TRUE(last.next());
    EXPECT_EQ(last.context.tagAttributeCount, 16);
    EXPECT_EQ(last.attribute(ATTRIBUTE_TITLE), "t");
    ScannerRun beyond(tag + " id=15 title=t class=c>x");
    EXPECT_TRUE(beyond.next());
    EXPECT_EQ(beyond.context.tagAttributeCount, 16);
    EXPECT_EQ(beyond.attribute(ATTRIBUTE_TITLE), "none");
    EXPECT_TRUE(beyond.next());
    EXPECT_EQ(beyond.result, 'x');
}

TEST(TagScanner, FirstDuplicateWithAValueWins)
{
    EXPECT_EQ(titleOf("<a title=1 title=2>"), "1");
    EXPECT_EQ(titleOf("<a title title=2 title=3>"), "2");
    EXPECT_EQ(titleOf("<a title>"), "none");
    EXPECT_EQ(titleOf("<a title=>"), "");
}

TEST(TagScanner, Values)
{
    struct Row {
        const char* tag;
        const char* title;
    };
    const Row rows[] = {
        {"<a title=x>", "x"},
        {"<a title=x/>", "x/"},
        {"<a title=\"x\">", "x"},
        {"<a title='x'>", "x"},
        {"<a title = \t\"x\" >", "x"},
        {"<a title=\"a'b\">", "a'b"},
        {"<a title='a\"b'>", "a\"b"},
        {"<a title=a\"b\">", "a\"b\""},
        {"<a title=\"a\nb\">", "ab"},
        {"<a title=\"a\r\nb\">", "ab"},
        {"<a title='\n'>", ""},
        {"<a title=\"a>b\">", "a>b"},
        {"<a title=\"a\tb\">", "a\tb"},
        {"<a title=a%41b>", "a%41b"},
        {"<a title=\"a%41b\">", "a%41b"},
        {"<a title=a&lt;b>", "a<b"},
        {"<a title=a=b>", "a=b"},
        {"<a/title=x>", "none"}, // behind a "/" nothing is an attribute
        {"<a id/title=x>", "none"},
        {"<a \"title=x>", "none"}, // a stray quote ends the attributes
        {"<a id\"title=x>", "x"}, // behind a name it doesn't
        {"<a id\" title=x>", "none"}, // but then a blank begins an empty name
        {"<a id=\"1\"title=x>", "x"},
        {"<a 'title=x>", "none"},
        {"<a =title=x>", "none"},
        {"<a = title=x>", "none"},
        {"<a =y title=x>", "x"},
        {"<a titlE=x>", "x"},
        {"<a title.=x>", "none"},
        {"<a <title=x>", "none"},
        {"<a title<=x>", "none"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(titleOf(row.tag), row.title) << row.tag;
}

TEST(TagScanner, LineEndsVanishFromQuotedValues)
{
    ScannerRun run("<img alt=\"a\nb\">");
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.attribute(ATTRIBUTE_ALT), "ab");
}

TEST(TagScanner, QuotedHrefKeepsItsReferences)
{
    struct Row {
        const char* tag;
        const char* href;
        std::u16string text;
    };
    const Row rows[] = {
        {"<a href=\"?a&copy=1&amp;b\">", "?a&copy=1&amp;b", u"<a href=\"?a&copy=1&amp;b\">"},
        {"<a href='&#65;'>", "&#65;", u"<a href='&#65;'>"},
        {"<a href=&#65;>", "A", u"<a href=&#65;>"},
        {"<a href='&'>", "&", u"<a href='&'>"},
    };
    for (const Row& row : rows) {
        ScannerRun run(row.tag);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.text(), row.text);
        EXPECT_EQ(run.attribute(ATTRIBUTE_HREF), row.href) << row.tag;
        EXPECT_EQ(run.context.currentAttribute, 0u);
    }
}

TEST(TagScanner, NamesEndAtTheirFirstZero)
{
    // A name that begins with a 0 is empty, so the rest of the tag is swallowed.
    ScannerRun inside(std::string("<a title\0x=1 id=2>", 18));
    EXPECT_TRUE(inside.next());
    EXPECT_EQ(inside.attribute(ATTRIBUTE_TITLE), "1");
    EXPECT_EQ(inside.attribute(ATTRIBUTE_ID), "2");
    ScannerRun front(std::string("<a \0title id=2>y", 16));
    EXPECT_TRUE(front.next());
    EXPECT_EQ(front.context.tagAttributeCount, 0);
    EXPECT_TRUE(front.next());
    EXPECT_EQ(front.result, 'y');
    // Only as far as the tag has a name: there a 0 is no name character.
    ScannerRun tag(std::string("<b\0i>", 5));
    EXPECT_TRUE(tag.next());
    EXPECT_EQ(tag.token.element, ELEMENT_B);
    ScannerRun value(std::string("<a title='x\0y'>", 15));
    EXPECT_TRUE(value.next());
    EXPECT_EQ(value.attribute(ATTRIBUTE_TITLE), "x");
}

TEST(TagScanner, NamesAreLookedUpByTheirLowBytes)
{
    ScannerRun run(utf16(u"<a \x0169\x0244=1 id\x0100x=2>"));
    run.context.unicodeBomMode = 254;
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.context.tagAttributeCount, 2);
    EXPECT_EQ(run.context.tagAttributes[0].attribute, ATTRIBUTE_ID);
    EXPECT_EQ(run.context.tagAttributes[1].attribute, ATTRIBUTE_ID);
}

TEST(TagScanner, LongNamesAreUnknown)
{
    for (const std::uint32_t length : {31u, 32u, 33u, 34u, 300u, 70'000u}) {
        ScannerRun run("<a " + repeated("i", length) + "=1 id=2>");
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.context.tagAttributeCount, 1) << length;
        EXPECT_EQ(run.attribute(ATTRIBUTE_ID), "2") << length;
    }
}

// A name of one byte that is no ASCII, and one of three of which the last is read again.
TEST(TagScanner, UnreadGoesBackOneByte)
{
    ScannerRun run("<b\xE2\x82\xAC id=1>x", CHARSET_UTF8);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.token.element, ELEMENT_B);
    // The name in between begins with the 0 that a lone following byte is, and so ends the rest.
    EXPECT_EQ(run.context.tagAttributeCount, 0);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 'x');
}

TEST(TagScanner, ScanValueRanges)
{
    struct Row {
        const char* input;
        std::uint32_t first;
        std::uint32_t last;
        std::u16string text;
    };
    const Row rows[] = {
        {"abc>", 0, 2, u"abc"},
        {"abc d>", 0, 2, u"abc"},
        {"\"abc\">", 1, 3, u"abc"},
        {"'a\nbc'>", 1, 4, u"abc"},
        {"a&lt;c>", 0, 5, u"a<c"},
        {">", 0, 0xFFFFFFFF, u""},
        {"\"\">", 1, 0, u""},
    };
    for (const Row& row : rows) {
        TestContext test(row.input);
        char16_t buffer[64] = {};
        std::uint16_t position = 0;
        ValueRange range = {};
        scanValue(buffer, position, 60, false, false, test.context, &range);
        EXPECT_EQ(range.first, row.first) << row.input;
        EXPECT_EQ(range.last, row.last) << row.input;
        buffer[position] = 0;
        EXPECT_EQ(std::u16string(buffer), row.text) << row.input;
    }
    ScannerRun run("<a title=\"xyz\">");
    EXPECT_TRUE(run.next());
    char16_t value[8];
    ValueRange range = {};
    EXPECT_EQ(readAttributeValue(ATTRIBUTE_TITLE, value, 8, run.context, &range), 1u);
    EXPECT_EQ(range.first, 10u);
    EXPECT_EQ(range.last, 12u);
}

TEST(TagScanner, PercentDecoding)
{
    struct Row {
        const char* input;
        bool decode;
        std::u16string text;
    };
    const Row rows[] = {
        {"a%41b>", true, u"aAb"},
        {"a%4a%4Ab>", true, u"aJJb"},
        {"%4g>", true, u"\x04"}, // the digit in front counts, both are consumed
        {"%g4x>", true, std::u16string(1, u'\0') + u"x"},
        {"\"%41%\">\">", true, u"A\0"},
        {"a%41b>", false, u"a%41b"},
        {"'%41%'>", false, u"%41%"},
    };
    for (const Row& row : rows) {
        TestContext test(row.input);
        char16_t buffer[64] = {};
        std::uint16_t position = 0;
        scanValue(buffer, position, 60, false, row.decode, test.context);
        EXPECT_EQ(std::u16string(buffer, position).substr(0, row.text.size()), row.text)
            << row.input;
    }
}

TEST(TagScanner, QuoteOpensAValueOnlyBehindSpaceEqualsOrNothing)
{
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        TestContext test("'x'>");
        char16_t buffer[16] = {static_cast<char16_t>(byte)};
        std::uint16_t position = 1;
        scanValue(buffer, position, 14, false, false, test.context);
        const bool opens
            = byte == 8 || byte == 9 || byte == 10 || byte == 13 || byte == 32 || byte == '=';
        EXPECT_EQ(position, opens ? 2 : 4) << byte;
    }
}

TEST(TagScanner, ReadAttributeValueLeavesTheStreamWhereItWas)
{
    ScannerRun run("<a title=\"abc\" id=1>x", CHARSET_DEFAULT, 4);
    EXPECT_TRUE(run.next());
    const std::uint32_t position = currentPosition(run.context);
    EXPECT_EQ(run.attribute(ATTRIBUTE_TITLE), "abc");
    EXPECT_EQ(run.attribute(ATTRIBUTE_ID), "1");
    EXPECT_EQ(currentPosition(run.context), position);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 'x');
}

TEST(TagScanner, ReadAttributeValueKeepsToItsCapacity)
{
    ScannerRun run("<a title=\"abcdef\">");
    EXPECT_TRUE(run.next());
    for (std::uint32_t capacity = 0; capacity < 10; ++capacity) {
        char16_t value[12];
        std::fill(value, value + 12, u'#');
        EXPECT_EQ(readAttributeValue(ATTRIBUTE_TITLE, value, capacity, run.context),
            capacity == 0 ? 0u : 1u);
        for (std::uint32_t index = capacity; index < 12; ++index)
            EXPECT_EQ(value[index], u'#');
        if (capacity != 0) {
            EXPECT_EQ(std::u16string(value), std::u16string(u"abcdef").substr(0, capacity - 1));
        }
    }
    char16_t none[2] = {u'#', u'#'};
    EXPECT_EQ(readAttributeValue(ATTRIBUTE_ID, none, 2, run.context), 0u);
    EXPECT_EQ(none[0], 0);
    EXPECT_EQ(readAttributeValue(ATTRIBUTE_ID, none, 0, run.context), 0u);
}

// The state of a set with escapes isn't put back for the second reading, which can then miss the
// end of the value; the document goes on all the same.
TEST(TagScanner, SecondReadingMayNotEndTheDocument)
{
    ScannerRun run("<a title=\"b\x0E\">xy</a>z", CHARSET_ISO_2022_KR);
    while (run.next()) {
        if (run.token.flags == TOKEN_START_TAG)
            run.attribute(ATTRIBUTE_TITLE);
        EXPECT_EQ(run.context.statusFlags, 0);
    }
}

TEST(TagScanner, PositionWrapsAt65536)
{
    // "<a title=" and ">" make ten units; the value is read from the stream, whatever its length.
    for (const std::uint32_t length : {53'391u, 53'392u, 53'393u, 65'535u, 65'536u, 65'537u}) {
        for (const char* quote : {"", "\""}) {
            const std::uint32_t count = length - 10 - (*quote == 0 ? 0 : 2);
            ScannerRun run("<a title=" + (quote + repeated("v", count)) + quote + ">y");
            EXPECT_TRUE(run.next());
            EXPECT_EQ(run.token.flags, TOKEN_START_TAG);
            const std::u16string text = run.text();
            EXPECT_EQ(text.size(), length % 65'536) << quote;
            if (length > 65'536) {
                EXPECT_EQ(text, u">");
            }
            std::vector<char16_t> value(250'002);
            EXPECT_EQ(readAttributeValue(ATTRIBUTE_TITLE, value.data(), 200'000, run.context), 1u);
            EXPECT_EQ(std::u16string(value.data()), std::u16string(count, u'v'));
            EXPECT_TRUE(run.next());
            EXPECT_EQ(run.result, 'y');
        }
    }
}

// Attributes behind the wrap are found as all others: their names come from what was read.
TEST(TagScanner, AttributesAcrossTheWrap)
{
    for (std::uint32_t length = 65'536 - 30; length < 65'536 + 5; ++length) {
        ScannerRun run("<a id=" + repeated("v", length - 6) + " title='t' class=c>y");
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.context.tagAttributeCount, 3) << length;
        EXPECT_EQ(run.attribute(ATTRIBUTE_TITLE), "t") << length;
        EXPECT_EQ(run.attribute(ATTRIBUTE_CLASS), "c") << length;
        EXPECT_EQ(run.context.tokenBuffer[65'536], 0);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'y');
    }
}

TEST(TagScanner, ManyAttributesOnOneTag)
{
    const std::string input = "<a " + repeated("x=\"1\" y ", 100'000) + "title=t>z";
    ScannerRun run(input);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.token.flags, TOKEN_START_TAG);
    EXPECT_EQ(run.attribute(ATTRIBUTE_TITLE), "t");
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 'z');
    EXPECT_LT(run.test.stream.calls.reads, input.size() / 1'024);
}
