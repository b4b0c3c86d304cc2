#include "scanner/markup_scanner.h"

#include "support/html_names.h"
#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using testing_support::randomParts;
using testing_support::repeated;
using testing_support::scanned;
using testing_support::ScannerRun;
using testing_support::shown;
using testing_support::utf16;

constexpr std::uint32_t kCutLimit = 53'392;

struct Row {
    std::string input;
    std::string tokens;
};

void expectTokens(const std::vector<Row>& rows)
{
    for (const Row& row : rows)
        EXPECT_EQ(scanned(row.input), row.tokens) << row.input;
}

std::string rawText(const std::string& input, std::uint32_t mode = RAW_TEXT_STRICT,
    std::uint32_t lineStart = 0, std::uint32_t element = ELEMENT_STYLE)
{
    ScannerRun run(input);
    run.context.rawTextMode = mode;
    run.context.rawTextElement = element;
    run.context.rawTextAtLineStart = lineStart;
    std::string text;
    while (run.next())
        text += shown(run);
    return text;
}

std::string skipped(const std::string& input, std::uint16_t charSet = 0x9000)
{
    ScannerRun run(input, charSet);
    skipToEndTag(ELEMENT_SCRIPT, run.context);
    std::string text;
    while (run.context.statusFlags == 0 && run.next())
        text += shown(run);
    return text;
}

} // namespace

TEST(MarkupScanner, BracketsThatAreText)
{
    expectTokens({
        {"a < b", "a < b"},
        {"<>", "<>"},
        {"<<", "<<"},
        {"<1>", "<1>"},
        {"<", "<"},
        {"< b>", "< b>"},
        {"<<b>", "<{b}"},
        {"<>x", "<>x"},
        {"<\xC4>", "<\\196;>"},
        {"<=>", "<=>"},
        {"<_a>", "<_a>"},
    });
}

TEST(MarkupScanner, Tags)
{
    expectTokens({
        {"<b>x</b>", "{b}x{/b}"},
        {"<DIV></Div>", "{div}{/div}"},
        {"<div/>", "{div/}"},
        {"<br/>", "{br/}"},
        {"<br />", "{br/}"},
        {"<br \t\r\n\b/>", "{br/}"},
        {"<br/x>", "{br/}"},
        {"<div id=\"a\"/>", "{div}"},
        {"<img src=\"x\" />", "{img}"},
        {"<input disabled/>", "{input}"},
        {"<foo>x</foo>", "{?}x{/?}"},
        {"<x:y>", "{?}"},
        {"<a=b>", "{?}"},
        {"<h1></h1>", "{h1}{/h1}"},
        {"</b attr=1>", "{/b}"},
        {"</b/>", "{/b}"},
        {"</b / x>y", "{/b}y"},
        {"</>", "{/?}"},
        {"</ b>", "{/?}"},
        {"</b=c>", "{/b}"}, // "=" ends the name of an end tag
        {"<b\n>", "{b}"},
        {"<b<i>", "{b}"},
        {"<p title='>'>x", "{p}x"},
        {"<p title=x'>'>x", "{p}'>x"},
    });
}

TEST(MarkupScanner, NamesTakeTheExtraCharactersOfTheirTag)
{
    struct ExtraRow {
        char extra;
        bool inStartTag;
        bool inEndTag;
    };
    const ExtraRow rows[] = {{'-', true, true}, {'_', true, true}, {':', true, true},
        {'.', true, true}, {'+', true, false}, {'=', true, false}, {'!', false, false},
        {'/', false, false}, {';', false, false}, {'&', false, false}, {'#', false, false}};
    for (const ExtraRow& row : rows) {
        // Behind an extra character the name goes on and is unknown.
        const std::string name = std::string("b") + row.extra + "i";
        EXPECT_EQ(scanned("<" + name + ">y"),
            row.inStartTag         ? "{?}y"
                : row.extra == '/' ? "{b/}y"
                                   : "{b}y")
            << row.extra;
        EXPECT_EQ(scanned("</" + name + ">y"), row.inEndTag ? "{/?}y" : "{/b}y") << row.extra;
    }
}

TEST(MarkupScanner, OnlyTagsHaveAttributes)
{
    for (const char* markup : {"<!x id=1>", "<!-- id=1 -->", "<?x id=1>", "<1", "< ", "<>"}) {
        ScannerRun run("<a href=x id=y>" + std::string(markup));
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.context.tagAttributeCount, 2) << markup;
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.context.tagAttributeCount, 0) << markup;
        EXPECT_EQ(run.attribute(ATTRIBUTE_ID), "none") << markup;
    }
}

// Only a "/" right behind the name and white space counts.
TEST(MarkupScanner, SelfClosingWithoutAttributesOnly)
{
    expectTokens({
        {"<br/>", "{br/}"},
        {"<br  />", "{br/}"},
        {"<br/ class=x>", "{br/}"},
        {"<br class=x/>", "{br}"},
        {"<br class=x />", "{br}"},
        {"<br class />", "{br}"},
        {"</br/>", "{/br}"},
    });
}

TEST(MarkupScanner, CutTagsAreText)
{
    expectTokens({
        {"<a href=x", "<a href=x"},
        {"<p class=\"a", "<p class=\"a"},
        {"<p class=\"a>x</p>", "<p class=\"a>x{/p}"},
        {"<b", "<b"},
        {"</b", "</b"},
        {"</", "</"},
        {"<foo", "<foo"},
        {"<!", "<!"},
        {"<!-", "<!-"},
        {"<!--x", "<!--x"},
        {"<!doctype", "<!doctype"},
        {"<?", "<?"},
        {"<?x", "<?x"},
        {"<a <b>", "{a}"},
        {"<a '<b>", "{a}"},
        {"<a x='<b>i</b>", "<a x='{b}i{/b}"},
        {"<a =", "<a ="},
        {"<a x=", "<a x="},
        {"<a x= ", "<a x= "},
        {"<a x=&am", "<a x=&am"},
        {"<b/", "<b/"},
    });
}

// The "<" has the character flag and no other, and no element, whatever the name was.
TEST(MarkupScanner, CutTagTokenIsACharacterAndNothingElse)
{
    for (const char* input : {"<b", "<b/", "</b ", "<foo x", "<b class=x", "<!x", "<!--", "<?"}) {
        ScannerRun run(input);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, '<') << input;
        EXPECT_EQ(run.token.flags, TOKEN_CHARACTER) << input;
        EXPECT_EQ(run.token.element, 0u) << input;
        EXPECT_EQ(run.token.marker, 0xFFFF) << input;
        EXPECT_EQ(run.context.currentAttribute, 0u) << input;
        EXPECT_EQ(currentPosition(run.context), 1u) << input;
    }
}

TEST(MarkupScanner, EndOfInput)
{
    ScannerRun run("");
    EXPECT_FALSE(run.next());
    EXPECT_EQ(run.result, -1);
    EXPECT_EQ(run.token.flags, 0);
    EXPECT_EQ(run.token.marker, 0xFFFF);
    EXPECT_EQ(run.context.statusFlags, STATUS_END_OF_INPUT);
    EXPECT_FALSE(run.next());
    EXPECT_EQ(run.result, -1);
}

// Values that mean the end of the input are tokens of nothing when the input goes on.
TEST(MarkupScanner, CharacterFFFFIsATokenWithoutFlags)
{
    ScannerRun utf8("a\xEF\xBF\xBF"
                    "b",
        CHARSET_UTF8);
    std::string text;
    while (utf8.next())
        text += shown(utf8);
    EXPECT_EQ(text, "a{}b");
    ScannerRun wide(utf16(u"a\xFFFF"
                          u"b"));
    wide.context.unicodeBomMode = 254;
    text.clear();
    while (wide.next())
        text += shown(wide);
    EXPECT_EQ(text, "a{}b");
}

TEST(MarkupScanner, Utf16)
{
    ScannerRun run(utf16(u"a<B CLASS='\x20AC'>\x20AC</b><!-- > --><p"));
    run.context.unicodeBomMode = 254;
    std::string text;
    while (run.next())
        text += shown(run);
    EXPECT_EQ(text, "a{b}\\8364;{/b}{}<p");
}

TEST(MarkupScanner, TitleAndTextareaAreScannedAsMarkup)
{
    EXPECT_EQ(scanned("<title>a<b>c</title>"), "{title}a{b}c{/title}");
    EXPECT_EQ(scanned("a<b>c", 0x9000, RAW_TEXT_TEXTAREA), "a{b}c");
    EXPECT_EQ(scanned("a<b>c", 0x9000, RAW_TEXT_PLAINTEXT), "a{b}c");
}

TEST(MarkupScanner, ReferencesStayInText) { EXPECT_EQ(scanned("&amp;&#65;"), "&amp;&#65;"); }

TEST(MarkupScanner, LineEndsInTextStay) { EXPECT_EQ(scanned("a\r\nb\rc\nd"), "a\r\nb\rc\nd"); }

TEST(MarkupScanner, EveryElementNameInEitherCase)
{
    std::ifstream file(std::string(HTMLFILTER_SOURCE_DIR) + "/tools/data/elements.tsv");
    std::uint32_t id = 0;
    std::string name;
    std::uint32_t rows = 0;
    while (file >> id >> name) {
        ++rows;
        std::string upper = name;
        for (char& letter : upper)
            letter = static_cast<char>(std::toupper(letter));
        ScannerRun run("<" + name + "></" + upper + ">");
        ASSERT_TRUE(run.next());
        EXPECT_EQ(run.token.element, id) << name;
        EXPECT_EQ(run.token.flags, TOKEN_START_TAG);
        ASSERT_TRUE(run.next());
        EXPECT_EQ(run.token.element, id) << name;
        EXPECT_EQ(run.token.flags, TOKEN_END_TAG);
    }
    EXPECT_EQ(rows, 134u);
}

TEST(MarkupScanner, TokenTextIsTheRawTag)
{
    struct TextRow {
        const char* input;
        std::u16string text;
    };
    const TextRow rows[] = {
        {"<a href=\"x\" B = 'y' c>", u"<a href=\"x\" B = 'y' c>"},
        {"</p attr=1>", u"</p attr=1>"},
        {"<a title=\"&amp;&nosuch;&\">", u"<a title=\"&amp;&nosuch;&\">"},
        {"<a title=&lt;x>", u"<a title=&lt;x>"},
        {"<a title=\"a\r\nb\">", u"<a title=\"ab\">"},
        {"<a title=a%20b>", u"<a title=a%20b>"},
        {"<?php x ?>", u"<?php x ?>"},
        {"<!DOCTYPE html>", u"<!DOCTYPE html>"},
        {"<br/>", u"<br/>"},
        {"<a \"x>", u"<a \"x>"},
    };
    for (const TextRow& row : rows) {
        ScannerRun run(row.input);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.text(), row.text) << row.input;
        EXPECT_NE(run.token.flags & TOKEN_CHARACTER, TOKEN_CHARACTER) << row.input;
    }
}

TEST(MarkupScanner, BufferIsClearedAsFarAsItsText)
{
    ScannerRun run("<b title=\"12345\">x");
    EXPECT_TRUE(run.next());
    run.context.tokenBuffer[100] = u'z'; // behind the text: not touched
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 'x');
    for (std::uint32_t index = 0; index < 100; ++index)
        EXPECT_EQ(run.context.tokenBuffer[index], 0) << index;
    EXPECT_EQ(run.context.tokenBuffer[100], u'z');
}

TEST(MarkupScanner, BufferIsClearedUpToTheLimitOnly)
{
    testing_support::TestContext test("x");
    std::u16string buffer(20, u'y');
    Token token = {};
    EXPECT_EQ(Scan(token, buffer.data(), 10, test.context), 'x');
    EXPECT_EQ(buffer, std::u16string(10, u'\0') + std::u16string(10, u'y'));
}

// Nothing is written beyond the limit and its two units, whatever the limit.
TEST(MarkupScanner, SmallLimitsHold)
{
    const std::string input
        = "<body class=\"abc&amp;def\" id='x'  title=y z>t<!DOCTYPE \"x\"><!-- c "
          "--><?x?></body  a=b>end<a href='x";
    for (std::uint32_t limit = 1; limit < 60; ++limit) {
        testing_support::TestContext test(input);
        std::u16string buffer(limit + 2 + 8, u'\0');
        std::fill(buffer.end() - 8, buffer.end(), u'\x7777');
        Token token = {};
        std::uint32_t tokens = 0;
        while (test.context.statusFlags == 0) {
            Scan(token, buffer.data(), limit, test.context);
            ++tokens;
            ASSERT_LT(tokens, 200u) << limit;
        }
        EXPECT_EQ(buffer.substr(limit + 2), std::u16string(8, u'\x7777')) << limit;
    }
}

TEST(MarkupScanner, NamesEndAtTheCutLimit)
{
    // The name begins at index 1 and has room up to the limit; its rest is read as attributes.
    for (const std::uint32_t length : {kCutLimit - 2, kCutLimit - 1, kCutLimit}) {
        ScannerRun run("<" + repeated("b", length) + " class=x>y");
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.token.flags, TOKEN_START_TAG) << length;
        EXPECT_EQ(run.token.element, 0u);
        EXPECT_EQ(run.context.tagAttributeCount, 1) << length;
        EXPECT_EQ(run.attribute(ATTRIBUTE_CLASS), "x");
        EXPECT_EQ(run.text(),
            u"<" + std::u16string(length, u'b')
                + (length == kCutLimit - 2 ? u" class=x>" : u"class=x>"));
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'y');
    }
    // "href" at the end of an overlong name is an attribute if the name breaks off in front of it.
    ScannerRun run("<" + repeated("b", kCutLimit - 1) + "href=x>");
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.attribute(ATTRIBUTE_HREF), "x");
}

TEST(MarkupScanner, WhiteSpaceBeyondTheCutLimitIsNotStored)
{
    for (const std::uint32_t count : {kCutLimit - 3, kCutLimit - 2, kCutLimit - 1}) {
        ScannerRun run("<b" + repeated(" ", count) + "/>y");
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.token.flags, TOKEN_START_TAG | TOKEN_SELF_CLOSING);
        const std::uint32_t stored = std::min(count, kCutLimit - 2);
        EXPECT_EQ(run.text(), u"<b" + std::u16string(stored, u' ') + u"/>") << count;
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'y');
    }
}

TEST(MarkupScanner, InstructionsWrapAt65536)
{
    // "<?" and ">" make three units.
    for (const std::uint32_t length : {53'391u, 53'392u, 53'393u, 65'534u, 65'535u}) {
        ScannerRun run("<?" + repeated("i", length - 3) + ">y");
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.token.flags, 0);
        EXPECT_EQ(run.text(), u"<?" + std::u16string(length - 3, u'i') + u">") << length;
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'y');
    }
    // At 65,536 the terminator lands on the first unit; beyond it the text begins anew.
    for (const std::uint32_t length : {65'536u, 65'537u, 65'540u}) {
        ScannerRun run("<?" + repeated("i", length - 3) + ">y");
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.token.flags, 0);
        const std::uint32_t behind = length - 65'536;
        EXPECT_EQ(run.text(), behind == 0 ? u"" : std::u16string(behind - 1, u'i') + u">")
            << length;
        EXPECT_EQ(run.context.tokenBuffer[65'535], behind == 0 ? u'>' : u'i');
        EXPECT_EQ(run.context.tokenBuffer[65'536], 0);
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, 'y');
    }
}

TEST(MarkupScanner, RawTextUpToItsEndTag)
{
    const std::vector<Row> rows = {
        {"a<b>c</b></style>d", "a<b>c</b>{/style}d"},
        {"</style >x", "{/style}x"},
        {"</STYLE a=b>x", "{/style}x"},
        {"a<!-- </style>", "a<!-- {/style}"},
        {"<!--", "<!--"},
        {"<", "<"},
        {"<<b>", "<<b>"},
        {"<1>", "<1>"},
        {"<foo>x</foo>", "<foo>x</foo>"},
        {"<?x </style> ?>", "<?x </style> ?>"},
        {"<b title=\"</style>\">", "<b title=\"</style>\">"},
        {"<b title='", "<b title='"},
        {"<b </style>", "<b </style>"},
        {"<b x='</style>y", "<b x='{/style}y"}, // the cut tag's "<" goes out, the rest is read anew
        {"</style", "</style"},
        {"<b x=\"1\r\n2\">", "<b x=\"12\">"}, // line ends of quoted values are lost here too
        {"</b>", "</b>"},
        {"<br/>", "<br/>"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(rawText(row.input), row.tokens) << row.input;
}

TEST(MarkupScanner, EndTagOfRawTextReturnsZeroInStrictMode)
{
    ScannerRun run("</style>");
    run.context.rawTextMode = RAW_TEXT_STRICT;
    run.context.rawTextElement = ELEMENT_STYLE;
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(run.token.element, ELEMENT_STYLE);
    EXPECT_EQ(run.token.flags, TOKEN_END_TAG);
    EXPECT_EQ(run.context.rawTextMode, RAW_TEXT_NONE);
}

TEST(MarkupScanner, RawTagIsDeliveredThroughPendingChars)
{
    ScannerRun run("<b>x");
    run.context.rawTextMode = RAW_TEXT_STRICT;
    run.context.rawTextElement = ELEMENT_STYLE;
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, '<');
    EXPECT_EQ(run.token.flags, TOKEN_CHARACTER);
    EXPECT_EQ(run.token.element, 0u);
    EXPECT_EQ(run.context.pendingChars->length, 2);
    const std::uint32_t position = currentPosition(run.context);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 'b');
    EXPECT_EQ(run.context.internals->pendingCharsTaken, 1);
    EXPECT_EQ(currentPosition(run.context), position);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, '>');
    EXPECT_EQ(run.context.pendingChars->length, 0);
    EXPECT_EQ(run.context.internals->pendingCharsTaken, 0);
    EXPECT_TRUE(run.next());
    EXPECT_EQ(run.result, 'x');
}

// A unit 0 in a raw tag does not keep what stands behind it from being delivered.
TEST(MarkupScanner, RawTagWithAUnitOfZero)
{
    EXPECT_EQ(rawText(std::string("<b \0x>y</style>", 15)), "<b \\0;x>y{/style}");
}

// The position of a tag of 65,536 units is that of none: its first unit, now the terminator, is all
// that is delivered. A longer one has its last units in place of its first.
TEST(MarkupScanner, RawTagsWrapAt65536)
{
    for (const std::uint32_t length : {65'535u, 65'536u, 65'537u, 65'539u}) {
        const std::string tag = "<b x" + repeated("x", length - 5) + ">";
        const std::string expected = length < 65'536 ? tag
            : length == 65'536                       ? "\\0;"
                                                     : tag.substr(65'536);
        EXPECT_TRUE(rawText(tag + "y</style>") == expected + "y{/style}") << length;
    }
}

// What is given back of a tag is no new line, whatever stood in it.
TEST(MarkupScanner, LineEndsOfGivenBackTagsOpenNoLine)
{
    for (const std::uint32_t lineStart : {0u, 1u}) {
        ScannerRun run(lineStart == 0 ? "<i\n\r\n>" : "\n<!<i\n\r\n>");
        run.context.rawTextMode = RAW_TEXT_LENIENT;
        run.context.rawTextElement = ELEMENT_STYLE;
        std::string text;
        while (run.next()) {
            text += shown(run);
            // The first line end stands in the text itself.
            EXPECT_EQ(run.context.rawTextAtLineStart, text == "\n" ? 1u : 0u) << text;
        }
        EXPECT_EQ(text, lineStart == 0 ? "<i\n\r\n>" : "\n<!<i\n\r\n>");
    }
    // The tag behind the first is on the same line.
    EXPECT_EQ(rawText("a<i\n><b>c", RAW_TEXT_LENIENT), "a<i\n><b>c");
}

TEST(MarkupScanner, PendingCharsComeFirstInEveryMode)
{
    for (const std::uint32_t mode : {0u, 1u, 2u, 3u, 4u}) {
        ScannerRun run("x");
        run.context.rawTextMode = mode;
        run.context.pendingChars->append(u"<b>");
        std::string text;
        while (run.next())
            text += shown(run);
        EXPECT_EQ(text, "<b>x") << mode;
    }
}

TEST(MarkupScanner, LenientRawTextEndsAtATagThatOpensALine)
{
    struct LenientRow {
        const char* input;
        std::uint32_t lineStart;
        const char* tokens;
    };
    const LenientRow rows[] = {
        {"a<b>c", 0, "a<b>c"},
        {"a\n<b>c<i>", 0, "a\n{b}c{i}"},
        {"a\r<b>c", 0, "a\r{b}c"},
        {"a\n \t<b>c", 0, "a\n \t{b}c"},
        {"a\n\x08<b>c", 0, "a\n\x08{b}c"}, // backspace is white space
        {"a\n\f<b>c", 0, "a\n\f<b>c"}, // form feed is none
        {"a\nb<b>c", 0, "a\nb<b>c"},
        {"<b>c", 1, "{b}c"},
        {"<b>c", 0, "<b>c"},
        {"\n</p>c", 0, "\n{/p}c"},
        {"\n<foo>c", 0, "\n{?}c"}, // any token that is no character will do
        {"\n<?x?>c", 0, "\n{}c"},
        {"\n<!x>c", 0, "\n<!x>c"},
        {"\n<!<b>c", 0, "\n<!<b>c"}, // a "<" that was text is something on the line
        {"\n<1<b>c", 0, "\n<1<b>c"},
        {"\n<b x='", 0, "\n<b x='"},
        {"x</style>c<!-- -->", 0, "x{/style}c{}"},
        {"\n</style>c", 0, "\n{/style}c"},
        {"\n<", 0, "\n<"},
    };
    for (const LenientRow& row : rows)
        EXPECT_EQ(rawText(row.input, RAW_TEXT_LENIENT, row.lineStart), row.tokens) << row.input;
}

TEST(MarkupScanner, LenientRawTextReturnsTheBracketAndClearsItsState)
{
    for (const char* input : {"<b>", "</style>"}) {
        ScannerRun run(input);
        run.context.rawTextMode = RAW_TEXT_LENIENT;
        run.context.rawTextElement = ELEMENT_STYLE;
        run.context.rawTextAtLineStart = 1;
        EXPECT_TRUE(run.next());
        EXPECT_EQ(run.result, '<') << input;
        EXPECT_EQ(run.context.rawTextMode, RAW_TEXT_NONE) << input;
        EXPECT_EQ(run.context.rawTextAtLineStart, 0u) << input;
    }
}

TEST(MarkupScanner, SkipToEndTagFindsTheFirstThatFits)
{
    const std::vector<Row> rows = {
        {"if (a<b) x('</p>');</script>y", "{/script}y"},
        {"a<b</script>y", "{/script}y"},
        {"<</script>y", "{/script}y"},
        {"</b</script>y", "{/script}y"},
        {"<!-- </script> -->", "{/script} -->"},
        {"'</SCRIPT >'", "{/script}'"},
        {"</scripts></script:x></script>y", "{/script}y"},
        {"</script/>y", "{/script}y"},
        {"<//script></script>y", "{/script}y"},
        {"no end", ""},
        {"</scrip", ""},
        {"</script", ""},
        {"", ""},
        {"<", ""},
        {"</", ""},
    };
    for (const Row& row : rows) {
        for (const std::uint16_t charSet : {CHARSET_DEFAULT, CHARSET_UTF8, CHARSET_ISO_2022_JP})
            EXPECT_EQ(skipped(row.input, charSet), row.tokens) << row.input << ' ' << charSet;
    }
}

TEST(MarkupScanner, SkipToEndTagNameLimit)
{
    EXPECT_EQ(skipped("</script\xE9>y"), "{/script}y");
    // A name of 255 characters is read whole, of a longer one the rest is content.
    EXPECT_EQ(skipped("</" + repeated("x", 255) + "</script>y"), "{/script}y");
    EXPECT_EQ(skipped("</" + repeated("x", 256) + "</script>y"), "{/script}y");
    EXPECT_EQ(skipped("</script" + repeated("x", 300) + "</script>y"), "{/script}y");
}

TEST(MarkupScanner, SkipToEndTagStopsAtTheEnd)
{
    ScannerRun run(repeated("</script ", 3).substr(0, 0) + "abc");
    skipToEndTag(ELEMENT_SCRIPT, run.context);
    EXPECT_EQ(run.context.statusFlags, STATUS_END_OF_INPUT);
    run.context.statusFlags = STATUS_HOST_STOP;
    skipToEndTag(ELEMENT_SCRIPT, run.context);
    EXPECT_EQ(run.context.statusFlags, STATUS_HOST_STOP);
}

// A multi-byte character that swallows a "<" hides it, here as in text.
TEST(MarkupScanner, SkipToEndTagReadsCharacters)
{
    EXPECT_EQ(skipped("\xE3</script></script>y", CHARSET_UTF8), "{/script}y");
    ScannerRun run("\xE3</script></script>y", CHARSET_UTF8);
    skipToEndTag(ELEMENT_SCRIPT, run.context);
    EXPECT_EQ(currentPosition(run.context), 10u);
}

// The size of the stream's buffer changes nothing.
TEST(MarkupScanner, RandomInputsUnderEveryBufferSize)
{
    const std::vector<std::string> parts = {"<a ", "<", ">", "\"", "'", "=", " ", "x", "<!--", "-",
        "-->", "<![if ", "[", "]", "&amp;", "&", "&#65;", "/", "</b", "?", "\n", "\r",
        "href=", "title=\"", "<p class='", "\xE9", "\xC3\xA9", "%41", "</style>", "\x1B$B",
        "\x1B(B", "~{", "~}", "\x0E", "\x0F", "<img src=x>", "\x92", "\x83\x41", "\xC0\xBE",
        std::string(1, '\0'), "<td align=center>cell text</td>"};
    const std::uint16_t charSets[]
        = {CHARSET_DEFAULT, CHARSET_UTF8, CHARSET_SHIFT_JIS, CHARSET_HZ, CHARSET_ISO_2022_JP,
            CHARSET_ISO_2022_KR, CHARSET_JIS, CHARSET_WINDOWS_1251, CHARSET_EUC_JP};
    std::mt19937 random(4711);
    for (std::uint32_t round = 0; round < 90; ++round) {
        const std::string input = randomParts(parts, 60, random);
        const std::uint16_t charSet = charSets[round % 9];
        const std::uint32_t mode = round % 5;
        std::string expected;
        for (const std::uint32_t bufferSize : {4'096u, 1u, 2u, 3u, 5u, 7u, 16u, 61u, 100u}) {
            ScannerRun run(input, charSet, bufferSize);
            run.context.rawTextMode = mode;
            run.context.rawTextElement = ELEMENT_STYLE;
            std::string tokens;
            while (run.next()) {
                tokens += shown(run) + std::to_string(currentPosition(run.context)) + ' ';
                for (const char16_t unit : run.text())
                    tokens += std::to_string(unit) + ' ';
                for (const std::uint16_t byte : run.context.recentBytes)
                    tokens += std::to_string(byte) + ' ';
                if ((run.token.flags & TOKEN_START_TAG) != 0)
                    tokens += run.attribute(ATTRIBUTE_TITLE) + run.attribute(ATTRIBUTE_HREF);
            }
            if (expected.empty())
                expected = tokens;
            EXPECT_EQ(tokens, expected) << bufferSize << ' ' << charSet;
        }
    }
}
