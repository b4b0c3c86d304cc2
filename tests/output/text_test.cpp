#include "output/text.h"

#include "input/charset.h"
#include "output/host_calls.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

/// Delivers a text in a fresh paragraph.
Lines deliver(OutputContext& document, const char16_t* text)
{
    deliverText(text, document.context);
    return document.host.takeCalls();
}

std::string runs(const Lines& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        const std::size_t start = line.find('"');
        text += '[' + line.substr(start + 1, line.rfind('"') - start - 1) + ']';
    }
    return text;
}

} // namespace

TEST(Text, EmptyStringDeliversNothing)
{
    OutputContext document;
    document.context.lastBlockMargin = 7;
    EXPECT_EQ(deliver(document, u""), Lines{});
    EXPECT_EQ(document.context.lastBlockMargin, 7U);
}

TEST(Text, EndsMarginCollapsing)
{
    OutputContext document;
    document.context.lastBlockMargin = 7;
    deliver(document, u"x");
    EXPECT_EQ(document.context.lastBlockMargin, 0U);
}

TEST(Text, NotesContentAndLastCharacter)
{
    OutputContext document;
    EXPECT_EQ(deliver(document, u"abc"), Lines{textLine("abc")});
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_HAS_CONTENT);
    EXPECT_EQ(document.context.lastChar, u'c');
}

struct SpaceRow {
    const char16_t* text;
    std::uint16_t lastChar;
    const char* runs;
};

// White space outside preformatted text: all five units count as one blank.
const SpaceRow kSpaceRows[] = {
    {u"a  b", 0, "[a b]"},
    {u"a\t\n\r\b b", 0, "[a b]"},
    {u"a\nb", 0, "[a b]"},
    {u"a\bb", 0, "[a b]"},
    {u"a\tb", 0, "[a b]"},
    {u"a\rb", 0, "[a b]"},
    {u" a", 0, "[ a]"},
    {u" a", u'x', "[ a]"},
    {u" a", 32, "[a]"},
    {u"\n a", 32, "[a]"},
    {u"a ", 32, "[a ]"},
    {u" ", u'x', "[ ]"},
    {u"  ", 32, ""},
    {u" ", 0, ""},
    {u" \n\t\r\b", 0, ""},
    {u"a\fb", 0, "[a\\u000cb]"},
    {u"a\u00A0 \u00A0b", 0, "[a\\u00a0 \\u00a0b]"},
    {u"a\x01\x7f\u0100b", 0, "[a\\u0001\\u007f\\u0100b]"},
    {u" & ", 0, "[ & ]"},
    // What stands in front of a reference goes out first, blanks too.
    {u" &#65;", 0, "[ ][A]"},
    {u"x &#65; y", 0, "[x ][A][ y]"},
    {u"x &#32; y", 0, "[x ][ ][y]"},
};

TEST(Text, CollapsesWhiteSpace)
{
    for (const SpaceRow& row : kSpaceRows) {
        OutputContext document;
        document.context.lastChar = row.lastChar;
        EXPECT_EQ(runs(deliver(document, row.text)), row.runs) << &row - kSpaceRows;
    }
}

TEST(Text, WhiteSpaceAloneIsDroppedAtTheStartOfAParagraph)
{
    OutputContext document;
    EXPECT_EQ(deliver(document, u"   "), Lines{});
    EXPECT_EQ(document.context.paragraphFlags, 0);
    EXPECT_EQ(document.context.lastChar, 0);
    // What was dropped does not come back in front of the next text.
    EXPECT_EQ(deliver(document, u"x"), Lines{textLine("x")});
}

TEST(Text, DocumentOfSpacesHasNoTextAndNoBreak)
{
    OutputContext document;
    document.build(u"<html><body> <span> \n </span> </body></html>");
    document.host.calls.clear();
    Lines calls = document.walkAll();
    for (const std::string& line : calls) {
        EXPECT_EQ(line.find("SOEmitText"), std::string::npos) << line;
        EXPECT_EQ(line.find("SOEmitBreak"), std::string::npos) << line;
    }
}

TEST(Text, VerticalTabBreaksTheLine)
{
    OutputContext document;
    EXPECT_EQ(deliver(document, u"a\vb\v"),
        (Lines{textLine("a"), kParagraphLine, textLine("b"), kParagraphLine}));
    EXPECT_EQ(document.context.lastChar, 0);
    // The flags stay: only the end of a paragraph clears them.
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_HAS_CONTENT);
    EXPECT_EQ(deliver(document, u"\v"), Lines{kParagraphLine});
}

TEST(Text, VerticalTabNotesTheHostsStop)
{
    OutputContext document;
    document.host.stopEvery = 1;
    deliver(document, u"a\vb");
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
    EXPECT_EQ(document.host.callCount, 3U);
}

// A unit that means something does so wherever it stands among ordinary ones.
TEST(Text, SpecialUnitsAtEveryPlace)
{
    struct Row {
        const char16_t* special;
        const char* runs;
    };
    const Row rows[] = {
        {u" ", " "},
        {u"  ", " "},
        {u"\n", " "},
        {u" \t", " "},
        {u"\b", " "},
        {u"   ", " "},
        {u"&#65;", "][A]["},
        {u"&", "&"},
        {u"~", "~"},
        {u"\v", "][SOEmitBreak 1 0]["},
        {u"\x01", "\\u0001"},
        {u"\xD800", ""},
        {u"\xDFFF", ""},
        {u"\xD7FF", "\\ud7ff"},
        {u"\u0420", "\\u0420"},
        {u"\uE000", "\\ue000"},
    };
    for (const Row& row : rows) {
        for (std::size_t place = 1; place < 12; ++place) {
            const std::u16string text
                = std::u16string(place, u'x') + row.special + std::u16string(12 - place, u'y');
            const std::string expected
                = '[' + std::string(place, 'x') + row.runs + std::string(12 - place, 'y') + ']';
            OutputContext document;
            EXPECT_EQ(runs(deliver(document, text.c_str())), expected)
                << &row - rows << ' ' << place;
        }
    }
}

struct PreRow {
    const char16_t* text;
    Lines lines;
};

TEST(Text, PreformattedTextKeepsItsWhiteSpace)
{
    const PreRow rows[] = {
        {u"a  b", {textLine("a  b")}},
        {u"  ", {textLine("  ")}},
        {u"a\bb", {"SOEmitTextAt \"a\\u0008b\" 3 347078656 4660"}},
        {u"a\nb", {textLine("a"), kParagraphLine, textLine("b")}},
        {u"a\rb", {textLine("a"), kParagraphLine, textLine("b")}},
        {u"a\r\nb", {textLine("a"), kParagraphLine, textLine("b")}},
        {u"a\n\rb", {textLine("a"), kParagraphLine, kParagraphLine, textLine("b")}},
        {u"\n", {kParagraphLine}},
        {u"a\tb", {textLine("a"), "SOEmitSpecial 1", textLine("b")}},
        {u"\t b", {"SOEmitSpecial 1", textLine(" b")}},
        {u"a\vb", {textLine("a"), kParagraphLine, textLine("b")}},
    };
    for (const PreRow& row : rows) {
        OutputContext document;
        document.context.internals->openPreformatted = 1;
        EXPECT_EQ(deliver(document, row.text), row.lines) << &row - rows;
    }
}

TEST(Text, PreformattedLineEndLeavesTheFlagsAlone)
{
    OutputContext document;
    document.context.internals->openPreformatted = 1;
    document.context.paragraphFlags = PARAGRAPH_MARKER | PARAGRAPH_BREAK_OWED;
    document.host.stopEvery = 1;
    deliver(document, u"\n");
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_MARKER | PARAGRAPH_BREAK_OWED);
    EXPECT_EQ(document.context.statusFlags, STATUS_HOST_STOP);
    EXPECT_EQ(document.context.lastChar, 0);
}

TEST(Text, TabOfPreformattedTextLeavesABlank)
{
    OutputContext document;
    document.context.internals->openPreformatted = 1;
    deliver(document, u"\t");
    EXPECT_EQ(document.context.lastChar, 32);
}

struct ReferenceRow {
    const char16_t* text;
    Lines lines;
    std::uint16_t lastChar;
};

std::string referenceLine(const std::string& units, int count)
{
    return "SOEmitTextAt \"" + units + "\" " + std::to_string(count) + " 347078656 4660";
}

TEST(Text, References)
{
    const ReferenceRow rows[] = {
        {u"&amp;", {referenceLine("&", 1)}, u'&'},
        {u"&amp", {referenceLine("&", 1)}, u'&'},
        {u"&lt;b", {referenceLine("<", 1), textLine("b")}, u'b'},
        {u"a&gt; b", {textLine("a"), referenceLine(">", 1), textLine(" b")}, u'b'},
        {u"&ampfoo;", {textLine("&ampfoo;")}, u';'},
        {u"&", {textLine("&")}, u'&'},
        {u"a & b", {textLine("a & b")}, u'b'},
        {u"&&amp;", {textLine("&"), referenceLine("&", 1)}, u'&'},
        {u"&#0;", {textLine("&#0;")}, u';'},
        {u"&#65;", {referenceLine("A", 1)}, u'A'},
        {u"&#x41;", {referenceLine("A", 1)}, u'A'},
        {u"&#X41;", {referenceLine("A", 1)}, u'A'},
        {u"&#150;", {referenceLine("\\u0096", 1)}, 150},
        {u"&#xD800;", {referenceLine("*", 1)}, 0xD800},
        {u"&#xDFFF;", {referenceLine("*", 1)}, 0xDFFF},
        {u"&#xD7FF;", {referenceLine("\\ud7ff", 1)}, 0xD7FF},
        {u"&#xE000;", {referenceLine("\\ue000", 1)}, 0xE000},
        {u"&#xFFFF;", {referenceLine("\\uffff", 1)}, 0xFFFF},
        // Of a large value lastChar keeps the low half.
        {u"&#x10000;", {referenceLine("\\ud800\\udc00", 2)}, 0},
        {u"&#x1F600;", {referenceLine("\\ud83d\\ude00", 2)}, 0xF600},
        {u"&#x10FFFF;", {referenceLine("\\udbff\\udfff", 2)}, 0xFFFF},
        {u"&#x110000;", {referenceLine("*", 1)}, 0},
    };
    for (const ReferenceRow& row : rows) {
        OutputContext document;
        EXPECT_EQ(deliver(document, row.text), row.lines) << &row - rows;
        EXPECT_EQ(document.context.lastChar, row.lastChar) << &row - rows;
        EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_HAS_CONTENT);
    }
}

TEST(Text, ReferencesGoOutAsUnicodeUnderAnyCharacterSet)
{
    OutputContext document;
    document.context.sectionCharSetId = 0x14E40100;
    EXPECT_EQ(
        deliver(document, u"a&lt;"), (Lines{textLine("a", 0x14E40100), referenceLine("<", 1)}));
}

struct EscapeRow {
    std::uint16_t charSet;
    std::uint32_t before; ///< sectionCharSetId
    const char16_t* text;
    Lines lines;
    std::uint32_t after;
};

constexpr std::uint32_t kAscii = 0x10000100;
constexpr std::uint32_t kJis = 0x0F0C0000;
constexpr std::uint32_t kJisRoman = 0x000A0102;
constexpr std::uint32_t kKorean = 0x0F060000;
constexpr std::uint32_t kGb = 0x0F050000;

TEST(Text, EscapesSwitchTheStateOfJapaneseAndKoreanText)
{
    const EscapeRow rows[] = {
        {8221, kAscii, u"a\x1b$@b", {textLine("a", kAscii), textLine("b", kJis)}, kJis},
        {8221, kAscii, u"a\x1b$Bb", {textLine("a", kAscii), textLine("b", kJis)}, kJis},
        {8221, kJis, u"a\x1b(Bb", {textLine("a", kJis), textLine("b", kAscii)}, kAscii},
        {8221, kJis, u"a\x1b(Jb", {textLine("a", kJis), textLine("b", kJisRoman)}, kJisRoman},
        {8221, kAscii, u"\x1b$Bb", {textLine("b", kJis)}, kJis},
        {8221, kAscii, u"\x1b$)C", {"SOEmitTextAt \"\\u001b$)C\" 4 268435712 4660"}, kAscii},
        {8221, kAscii, u"\x1b(X", {"SOEmitTextAt \"\\u001b(X\" 3 268435712 4660"}, kAscii},
        {8221, kAscii, u"\x1b", {"SOEmitTextAt \"\\u001b\" 1 268435712 4660"}, kAscii},
        {8221, kAscii, u"\x1b$", {"SOEmitTextAt \"\\u001b$\" 2 268435712 4660"}, kAscii},
        {8236, kKorean, u"a\x1b$)Cb", {textLine("a", kKorean), textLine("b", kAscii)}, kAscii},
        {8236, kAscii, u"\x1b(B", {"SOEmitTextAt \"\\u001b(B\" 3 268435712 4660"}, kAscii},
        {0x9000, kAscii, u"\x1b$B", {"SOEmitTextAt \"\\u001b$B\" 3 268435712 4660"}, kAscii},
    };
    for (const EscapeRow& row : rows) {
        OutputContext document;
        document.context.sectionCharSet = row.charSet;
        document.context.sectionCharSetId = row.before;
        EXPECT_EQ(deliver(document, row.text), row.lines) << &row - rows;
        EXPECT_EQ(document.context.sectionCharSetId, row.after) << &row - rows;
    }
}

TEST(Text, EscapeOfTheStateInForceStays)
{
    OutputContext document;
    document.context.sectionCharSet = CHARSET_ISO_2022_JP;
    document.context.sectionCharSetId = kAscii;
    EXPECT_EQ(
        deliver(document, u"a\x1b(Bb"), Lines{"SOEmitTextAt \"a\\u001b(Bb\" 5 268435712 4660"});
}

TEST(Text, ShiftsSwitchKoreanTextOnly)
{
    const EscapeRow rows[] = {
        {8236, kAscii,
            u"a\x0e"
            u"b\x0f"
            u"c",
            {textLine("a", kAscii), textLine("b", kKorean), textLine("c", kAscii)}, kAscii},
        {8236, kKorean,
            u"\x0e"
            u"b",
            {textLine("b", kKorean)}, kKorean},
        {8221, kAscii,
            u"\x0e"
            u"b\x0f",
            {"SOEmitTextAt \"\\u000eb\\u000f\" 3 268435712 4660"}, kAscii},
        {0x9000, kAscii, u"\x0e", {"SOEmitTextAt \"\\u000e\" 1 268435712 4660"}, kAscii},
    };
    for (const EscapeRow& row : rows) {
        OutputContext document;
        document.context.sectionCharSet = row.charSet;
        document.context.sectionCharSetId = row.before;
        EXPECT_EQ(deliver(document, row.text), row.lines) << &row - rows;
        EXPECT_EQ(document.context.sectionCharSetId, row.after) << &row - rows;
    }
}

TEST(Text, TildesSwitchTextThatAMetaDeclaresAsHz)
{
    const EscapeRow rows[] = {
        {8233, kAscii, u"a~{b", {textLine("a", kAscii), textLine("b", kGb)}, kGb},
        {8233, kGb, u"a~}b", {textLine("a", kGb), textLine("b", kAscii)}, kAscii},
        // A redundant switch keeps its tilde as a character.
        {8233, kGb, u"a~{b", {textLine("a~{b", kGb)}, kGb},
        {8233, kAscii, u"a~}b", {textLine("a~}b", kAscii)}, kAscii},
        {8233, kAscii, u"a~~b", {textLine("a~b", kAscii)}, kAscii},
        {8233, kAscii, u"~~~", {textLine("~~", kAscii)}, kAscii},
        {8233, kGb, u"a~~b", {textLine("a~~b", kGb)}, kGb},
        {8233, kAscii, u"a~b", {textLine("a~b", kAscii)}, kAscii},
        {8233, kAscii, u"a~", {textLine("a~", kAscii)}, kAscii},
        {0, kAscii, u"a~{b~~", {textLine("a~{b~~", kAscii)}, kAscii},
    };
    for (const EscapeRow& row : rows) {
        OutputContext document;
        document.context.metaCharSet = row.charSet;
        document.context.sectionCharSetId = row.before;
        EXPECT_EQ(deliver(document, row.text), row.lines) << &row - rows;
        EXPECT_EQ(document.context.sectionCharSetId, row.after) << &row - rows;
    }
}

TEST(Text, SurrogatesOfARunAreLost)
{
    OutputContext document;
    EXPECT_EQ(deliver(document, u"a\xD83D\xDE00z"), Lines{textLine("az")});
    EXPECT_EQ(document.context.lastChar, u'z');
    // lastChar is that of the run as it stood in the text.
    EXPECT_EQ(deliver(document, u"b\xD83D\xDE00"), Lines{textLine("b")});
    EXPECT_EQ(document.context.lastChar, 0xDE00);
    EXPECT_EQ(deliver(document, u"\xD83D\xDE00"), Lines{textLine("")});
    EXPECT_EQ(deliver(document, u"\xD7FF\xE000"),
        Lines{"SOEmitTextAt \"\\ud7ff\\ue000\" 2 347078656 4660"});
}

TEST(Text, LongRunsGoOutInPieces)
{
    OutputContext document;
    zorvan::WString run;
    const auto deliverRun = [&](std::int32_t count) {
        for (std::int32_t i = 0; i < count; ++i)
            run.append(i == 0 ? u'\xD800' : u'x');
        flushRun(run, document.context);
        EXPECT_EQ(run.length, 0);
        return document.host.takeCalls();
    };
    const auto units = [](std::size_t count) { return std::string(count, 'x'); };

    EXPECT_EQ(deliverRun(65'534), Lines{textLine(units(65'533))});
    EXPECT_EQ(deliverRun(65'535),
        (Lines{"SOEmitText \"\\ud800" + units(65'533) + "\" 65534 347078656",
            "SOEmitText \"x\" 1 347078656"}));
    EXPECT_EQ(deliverRun(131'069),
        (Lines{"SOEmitText \"\\ud800" + units(65'533) + "\" 65534 347078656",
            "SOEmitText \"" + units(65'534) + "\" 65534 347078656",
            "SOEmitText \"x\" 1 347078656"}));
    EXPECT_EQ(document.context.lastChar, u'x');
}

TEST(Text, EmptyRunIsNotFlushed)
{
    OutputContext document;
    zorvan::WString run;
    document.context.lastChar = u'q';
    flushRun(run, document.context);
    EXPECT_EQ(document.host.callCount, 0U);
    EXPECT_EQ(document.context.paragraphFlags, 0);
    EXPECT_EQ(document.context.lastChar, u'q');
}

TEST(Text, SingleCharactersOfTheC1RangeHaveASetOfTheirOwn)
{
    struct Row {
        char16_t unit;
        std::uint32_t charSetId;
    };
    const Row rows[] = {{127, CHARSET_ID_UTF16}, {128, CHARSET_ID_WINDOWS_1252},
        {159, CHARSET_ID_WINDOWS_1252}, {160, CHARSET_ID_UTF16}, {0x2022, CHARSET_ID_UTF16}};
    for (const Row& row : rows) {
        OutputContext document;
        document.context.lastBlockMargin = 5;
        deliverChar(row.unit, document.context);
        ASSERT_EQ(document.host.calls.size(), 1U);
        const std::string& line = document.host.calls.front();
        EXPECT_EQ(line.substr(line.rfind('"') + 1), " 1 " + std::to_string(row.charSetId));
        EXPECT_EQ(document.context.lastChar, row.unit);
        EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_HAS_CONTENT);
        EXPECT_EQ(document.context.lastBlockMargin, 5U);
    }
}

TEST(Text, HostThatGaveUpLeavesNoRunBehind)
{
    OutputContext document;
    document.host.throwAt = 1;
    EXPECT_THROW(deliverText(u"abc", document.context), HostGaveUp);
    document.host.takeCalls();
    EXPECT_EQ(deliver(document, u"x"), Lines{textLine("x")});
}

// --- Text nodes: what stands around a text decides about the white space at its ends.

struct TrimRow {
    const char16_t* markup;
    std::uint16_t lastChar; ///< at the text
    const char* runs; ///< of the text node " x "
};

// The text is the one that holds an x.
const TrimRow kTrimRows[] = {
    // No previous sibling: trimmed unless the parent is inline and something stands in front.
    {u"<div> x </div>", 0, "[x]"},
    {u"<div> x </div>", u'q', "[x]"},
    {u"<b> x <i>i</i></b>", 0, "[x ]"},
    {u"<b> x <i>i</i></b>", u'q', "[ x ]"},
    {u" x ", u'q', "[x]"},
    // A previous sibling: trimmed at the start of a paragraph.
    {u"<div><b></b> x </div>", 0, "[x]"},
    {u"<div><b></b> x </div>", u'q', "[ x]"},
    {u"<div><div></div> x </div>", u'q', "[ x]"},
    // A next sibling.
    {u"<div> x <b>i</b></div>", 0, "[x ]"},
    {u"<div> x <b></b></div>", 0, "[x ]"},
    {u"<div> x <b><i></i></b></div>", 0, "[x ]"},
    {u"<div> x <b> \n</b></div>", 0, "[x]"},
    {u"<div> x <b> <i></i></b></div>", 0, "[x]"},
    {u"<div> x <div>i</div></div>", 0, "[x]"},
    {u"<div> x <title> </title></div>", 0, "[x ]"},
    {u"<div> x <nobr> </nobr></div>", 0, "[x ]"},
    {u"<div> x <br></br></div>", 0, "[x ]"},
    {u"<div> x <img></img></div>", 0, "[x ]"},
    {u"<div> x <ins>i</ins></div>", 0, "[x]"},
    // No next sibling: what follows the inline elements that end here.
    {u"<div> x </div><b>i</b>", 0, "[x]"},
    {u"<div><b> x </b></div>", 0, "[x]"},
    {u"<div><b> x </b>y</div>", 0, "[x ]"},
    {u"<div><b> x </b> </div>", 0, "[x]"},
    {u"<div><b> x </b><div>i</div></div>", 0, "[x]"},
    {u"<div><b> x </b><i>i</i></div>", 0, "[x ]"},
    {u"<div><b> x </b><i> </i></div>", 0, "[x]"},
    {u"<div><b> x </b><i></i></div>", 0, "[x ]"},
    {u"<div><b> x </b><nobr>i</nobr></div>", 0, "[x]"},
    {u"<div><i><b> x </b></i>y</div>", 0, "[x ]"},
    {u"<div><i><b> x </b></i><u> </u></div>", 0, "[x]"},
    {u"<b><i> x </i></b>", 0, "[x]"},
    // Unit 11 and unit 12 are no white space.
    {u"<div>\fx\f</div>", 0, "[\\u000cx\\u000c]"},
    {u"<div>\t\n\r\b x \b\r\n\t</div>", 0, "[x]"},
};

TEST(Text, TrimsTextNodesByTheirSurroundings)
{
    for (const TrimRow& row : kTrimRows) {
        OutputContext document;
        document.build(row.markup);
        const HtmlTreeNode* node = document.tree.root();
        const auto holdsX = [](const HtmlTreeNode& candidate) {
            return candidate.data != nullptr && candidate.data->elementId == ELEMENT_NONE
                && std::u16string_view(static_cast<HtmlTextNodeData*>(candidate.data)->text)
                       .find(u'x')
                != std::u16string_view::npos;
        };
        while (node->data == nullptr || !holdsX(*node))
            node = nextInDocumentOrder<const HtmlTreeNode>(node, document.tree.root());
        document.context.lastChar = row.lastChar;
        deliverTextNode(*node, document.context);
        EXPECT_EQ(runs(document.host.takeCalls()), row.runs) << &row - kTrimRows;
    }
}

TEST(Text, EveryElementOfTheInlineGroupKeepsTheBlankInFrontOfIt)
{
    // All ids; the group is spelt out here once more, so that neither list can lose a member alone.
    const std::vector<std::uint32_t> group
        = {1, 2, 3, 10, 14, 16, 19, 20, 24, 25, 33, 39, 44, 60, 63, 64, 67, 69, 75, 87, 97, 102,
            103, 105, 106, 109, 110, 111, 113, 115, 116, 121, 129, 130, 132};
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        OutputContext document;
        const HtmlTreeNode* text = document.text(document.tree.root(), u"x ");
        document.element(document.tree.root(), static_cast<ZVHTMLElement>(id));
        deliverTextNode(*text, document.context);
        const bool isMember = std::find(group.begin(), group.end(), id) != group.end();
        const bool keeps = isMember || id == ELEMENT_TITLE || id == ELEMENT_NOBR;
        EXPECT_EQ(runs(document.host.takeCalls()), keeps ? "[x ]" : "[x]") << id;
    }
}

TEST(Text, NothingIsTrimmedInPreformattedText)
{
    OutputContext document;
    document.build(u"<pre> x </pre>");
    document.context.internals->openPreformatted = 1;
    deliverTextNode(*document.find(ELEMENT_PRE)->firstChild, document.context);
    EXPECT_EQ(document.host.takeCalls(), Lines{textLine(" x ")});
}

TEST(Text, BlankBetweenInlineElementsStays)
{
    OutputContext document;
    document.build(u"<div><b>a</b> <i>b</i></div>");
    EXPECT_EQ(runs(document.walkAll()).substr(0, 9), "[a][ ][b]");
}

TEST(Text, BlanksInAParagraphAndInPre)
{
    OutputContext document;
    document.build(u"<p>a  b</p><pre>a  b</pre>");
    Lines texts;
    for (const std::string& line : document.walkAll()) {
        if (line.find("SOEmitTextAt") == 0)
            texts.push_back(line);
    }
    EXPECT_EQ(texts, (Lines{textLine("a b"), textLine("a  b")}));
}

TEST(Text, TextBehindDeepInlineElementsIsReadOnce)
{
    // Each closing element has its own text: climbing must not start over for each of them.
    OutputContext document;
    HtmlTreeNode* parent = document.tree.root();
    for (int i = 0; i < 20'000; ++i)
        parent = document.element(parent, ELEMENT_B);
    document.text(parent, u"x ");
    for (; parent != document.tree.root(); parent = parent->parent)
        document.text(parent, u"y ");
    const Lines lines = document.walkAll();
    EXPECT_EQ(lines.size(), 20'001U);
    EXPECT_EQ(lines.front(), textLine("x"));
    EXPECT_EQ(lines.back(), textLine("y"));
}
