#include "scanner/char_refs.h"

#include "input/char_reader.h"
#include "support/html_names.h"
#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using testing_support::repeated;
using testing_support::ScannerRun;
using testing_support::TestContext;

struct TextReference {
    std::uint32_t units;
    std::uint32_t value;
};

TextReference inText(std::u16string_view text)
{
    TestContext test("");
    const std::u16string terminated(text);
    TextReference reference = {0, 0};
    reference.units = textCharRef(terminated.c_str(), reference.value, test.context);
    return reference;
}

/// The title of `<a title="text">`, decoded, and that of the same without quotes when it can do.
std::string inValue(std::string_view text)
{
    ScannerRun run("<a title=\"" + std::string(text) + "\">");
    EXPECT_TRUE(run.next());
    char16_t value[256];
    EXPECT_EQ(readAttributeValue(ATTRIBUTE_TITLE, value, 256, run.context), 1u);
    std::string shown;
    for (const char16_t* unit = value; *unit != 0; ++unit)
        shown += *unit < 0x80 ? std::string(1, static_cast<char>(*unit))
                              : "[" + std::to_string(static_cast<unsigned>(*unit)) + "]";
    return shown;
}

} // namespace

TEST(CharRefs, ResolvesNumbers)
{
    struct Row {
        std::u16string name;
        std::uint32_t value;
    };
    const Row rows[] = {
        {u"#65", 65},
        {u"#65x", 65},
        {u"#x41", 0x41},
        {u"#X41", 0x41},
        {u"#xaF", 0xAF},
        {u"#xg", 0},
        {u"#x", 0},
        {u"#", 0},
        {u"#a", 0},
        {u"#-1", 0},
        {u"#0", 0},
        {u"#150", 150},
        {u"#4294967295", 0xFFFFFFFF},
        {u"#4294967361", 65}, // wraps at 32 bits
        {u"#x100000041", 0x41},
        {u"", 0},
        {u"nosuch", 0},
        {u"amp", 38},
        {u"AMP", 38},
        {u"Amp", 0},
    };
    TestContext test("");
    for (const Row& row : rows)
        EXPECT_EQ(
            static_cast<std::uint32_t>(resolveCharRef(row.name.c_str(), test.context)), row.value)
            << testing::PrintToString(row.name);
}

TEST(CharRefs, InText)
{
    struct Row {
        std::u16string text;
        std::uint32_t units;
        std::uint32_t value;
    };
    const Row rows[] = {
        {u"&amp;", 5, 38},
        {u"&amp x", 4, 38},
        {u"&AMP;", 5, 38},
        {u"&amp", 4, 38},
        {u"amp;", 4, 38}, // also without its "&"
        {u"&amp\t", 4, 38},
        {u"&amp\n", 4, 38},
        {u"&amp\r", 4, 38},
        {u"&amp\b", 4, 38},
        {u"&amp\f", 0, 0}, // a form feed belongs to the name
        {u"&ampfoo;", 0, 0},
        {u"&amp=1", 0, 0},
        {u"&nbsp.", 0, 0},
        {u"AT&T,", 0, 0},
        {u"&T,", 0, 0},
        {u"&;", 0, 0},
        {u"&", 0, 0},
        {u"& ", 0, 0},
        {u"&&amp;", 0, 0},
        {u"&#0;", 0, 0},
        {u"&#;", 0, 0},
        {u"&#x;", 0, 0},
        {u"&#65;", 5, 65},
        {u"&#65x;", 4, 65}, // a digit that is none stops a number
        {u"&#65 ", 4, 65},
        {u"&#x41;", 6, 0x41},
        {u"&#X41g", 5, 0x41},
        {u"&#xD800;", 8, 0xD800},
        {u"&#150;", 6, 150},
        {u"&#x1F600;", 9, 0x1F600},
        {u"&#4294967361;", 13, 65},
        {u"&lang;", 6, 0x2329},
        {u"&rang;", 6, 0x232A},
        {u"&cos;", 0, 0},
        {u"&vepsilon;", 10, 0x3AD},
        {u"&CounterClockwiseContourIntegral;", 33, 0x2233},
    };
    for (const Row& row : rows) {
        const TextReference reference = inText(row.text);
        EXPECT_EQ(reference.units, row.units) << testing::PrintToString(row.text);
        if (row.units != 0) {
            EXPECT_EQ(reference.value, row.value) << testing::PrintToString(row.text);
        }
    }
}

// No name is so long that the rest of a text without blanks has to be looked through for each "&".
TEST(CharRefs, LongNamesInTextAreNone)
{
    EXPECT_EQ(inText(u"&" + std::u16string(31, u'a') + u";").units, 0u);
    EXPECT_EQ(inText(u"&" + std::u16string(32, u'a') + u";").units, 0u);
    EXPECT_EQ(inText(u"&" + std::u16string(33, u'a') + u";").units, 0u);
    EXPECT_EQ(inText(u"&amp" + std::u16string(100'000, u'a') + u";").units, 0u);
    const TextReference number = inText(u"&#" + std::u16string(100'000, u'0') + u"65;");
    EXPECT_EQ(number.units, 100'005u);
    EXPECT_EQ(number.value, 65u);
}

TEST(CharRefs, InValues)
{
    struct Row {
        const char* text;
        const char* value;
    };
    const Row rows[] = {
        {"&amp;", "&"},
        {"&amp x", "& x"},
        {"&AMP;", "&"},
        {"&amp", "&"},
        {"&ampfoo;", "&ampfoo;"},
        {"&amp=1", "&=1"},
        {"&#0;", "&#0;"},
        {"&#xD800;", "[55296]"},
        {"&#x1F600;", "[62976]"}, // the low 16 bits only
        {"&#65536;", "&#65536;"},
        {"&#65;", "A"},
        {"&#65x;", "A"}, // the name goes on behind the digits, its value doesn't
        {"&#x41;b", "Ab"},
        {"&#", "&#"},
        {"&#;", "&#;"},
        {"&#150;", "[150]"},
        {"&lang;", "[9001]"},
        {"&cos;", "&cos;"},
        {"&;", "&;"},
        {"&", "&"},
        {"&&amp;&", "&&&"},
        {"a&lt;b&gt;c", "a<b>c"},
        {"&quot;", "[q]"},
        {"&amp;amp;", "&amp;"},
    };
    for (const Row& row : rows) {
        std::string expected = row.value;
        if (expected == "[q]")
            expected = "\"";
        EXPECT_EQ(inValue(row.text), expected) << row.text;
    }
}

// "#" is a part of the name anywhere behind a first "#", and nowhere else.
TEST(CharRefs, HashInNames)
{
    EXPECT_EQ(inValue("&#65#66;x"), "Ax");
    EXPECT_EQ(inValue("&amp#66;"), "&#66;");
}

TEST(CharRefs, LongestNameInAValueHas30Characters)
{
    EXPECT_EQ(inValue("&#" + repeated("0", 27) + "65;x"), "Ax");
    EXPECT_EQ(inValue("&#" + repeated("0", 28) + "65;x"), "&#" + repeated("0", 28) + "65;x");
    EXPECT_EQ(inValue("&CounterClockwiseContourIntegral;"), "&CounterClockwiseContourIntegral;");
    EXPECT_EQ(inValue("&" + repeated("a", 40) + ";&amp;"), "&" + repeated("a", 40) + ";&");
}

TEST(CharRefs, ScanCharRefTellsTheTextOfTheReference)
{
    struct Row {
        const char* input; // behind the "&"
        std::uint16_t value;
        std::u16string text;
        std::uint32_t position;
    };
    const Row rows[] = {
        {"amp;x", '&', u"&amp;", 4},
        {"amp x", '&', u"&amp", 3},
        {"lt;", '<', u"&lt;", 3},
        {"nosuch;", '&', u"&", 0},
        {";", '&', u"&", 0},
        {"", '&', u"&", 0},
        {"#x41;", 'A', u"&#x41;", 5},
        // The name fills the buffer, so that its ";" has no room.
        {"#0000000000000000000000000000", '&', u"&", 0},
        {"#00000000000000000000000000065;", 'A', u"&#00000000000000000000000000065", 31},
    };
    for (const Row& row : rows) {
        TestContext test(row.input);
        char16_t buffer[34];
        buffer[32] = buffer[33] = 0xABCD;
        EXPECT_EQ(scanCharRef(buffer, 32, test.context), row.value) << row.input;
        EXPECT_EQ(std::u16string(buffer), row.text) << row.input;
        EXPECT_EQ(test.context.statusFlags, 0) << row.input;
        EXPECT_EQ(currentPosition(test.context), row.position) << row.input;
        EXPECT_EQ(buffer[32], 0xABCD);
        EXPECT_EQ(buffer[33], 0xABCD);
    }
}

// The status is cleared, and the end of the input is met again by who reads on.
TEST(CharRefs, EndOfInputInAReference)
{
    for (const char* input :
        {"<a title=&amp", "<a title=\"&amp", "<a title=&", "<a title=&nosuch"}) {
        ScannerRun run(input);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.token.flags, TOKEN_CHARACTER) << input;
        EXPECT_EQ(run.result, '<') << input;
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'a') << input;
    }
}

// Every "&" reads a bounded stretch and goes back: counted by what the host is asked for.
TEST(CharRefs, ManyReferencesReadTheInputOnce)
{
    for (const char* part : {"&", "&a", "&#", "&aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"}) {
        const std::string input
            = "<a title=\"" + repeated(part, 400'000 / std::string(part).size()) + "\">";
        ScannerRun run(input);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.token.flags, TOKEN_START_TAG);
        EXPECT_LT(run.test.stream.calls.reads, input.size() / 256) << part;
    }
}
