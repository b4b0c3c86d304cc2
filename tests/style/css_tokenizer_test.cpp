#include "style/css_tokenizer.h"

#include "support/exception.h"
#include "support/process_heap.h"
#include "tests/style/css_tokens.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using testing_support::cssTokensOf;
using testing_support::nextCssToken;
using testing_support::OwnedCssToken;
using testing_support::setCssInput;

namespace {

using Tokens = std::vector<OwnedCssToken>;

struct RuleRow {
    int rule;
    std::string_view text; // one token
    CssTokenKind name;
    std::int32_t kind;
};

const RuleRow kRuleRows[] = {
    {1, " ", CSS_S, 1000},
    {1, " \t\r\n\f", CSS_S, 1000},
    {4, "<!--", CSS_CDO, 1001},
    {5, "-->", CSS_CDC, 1002},
    {6, "~=", CSS_INCLUDES, 1003},
    {7, "|=", CSS_DASHMATCH, 1004},
    {8, "^=", CSS_PREFIXMATCH, 1005},
    {9, "$=", CSS_SUFFIXMATCH, 1006},
    {10, "*=", CSS_SUBSTRINGMATCH, 1007},
    {11, "\"a'b\"", CSS_STRING, 1008},
    {11, "'a\"b'", CSS_STRING, 1008},
    {11, "\"\"", CSS_STRING, 1008},
    {11, "\"a\\\r\nb\\\nc\\\rd\\\fe\\\"f\\41\n\"", CSS_STRING, 1008},
    {11, "'\x80\x9F\xFF\x01'", CSS_STRING, 1008},
    {12, "\"abc", CSS_BAD_STRING, 1009},
    {12, "'abc\"", CSS_BAD_STRING, 1009},
    {12, "'abc\\'", CSS_BAD_STRING, 1009},
    {12, "\"", CSS_BAD_STRING, 1009},
    {12, "\"a\\", CSS_BAD_STRING, 1009},
    {12, "\"a\\\n", CSS_BAD_STRING, 1009},
    {12, "'\\\r\n", CSS_BAD_STRING, 1009},
    {13, "a", CSS_IDENT, 1010},
    {13, "-a", CSS_IDENT, 1010},
    {13, "_-0-Z", CSS_IDENT, 1010},
    {13, "-webkit-foo", CSS_IDENT, 1010},
    {13, "\xA0\xFF", CSS_IDENT, 1010},
    {13, "\\41 b\\g\\\t\\000041\r\nc", CSS_IDENT, 1010},
    {13, "-\\-", CSS_IDENT, 1010},
    {13, "\\\x80", CSS_IDENT, 1010},
    {14, "#0-a", CSS_HASH, 1011},
    {14, "#\\66 f", CSS_HASH, 1011},
    {14, "#-", CSS_HASH, 1011},
    {15, "@import", CSS_IMPORT_SYM, 1012},
    {15, "@IMPORT", CSS_IMPORT_SYM, 1012},
    {16, "@page", CSS_PAGE_SYM, 1013},
    {16, "@PaGe", CSS_PAGE_SYM, 1013},
    {17, "@media", CSS_MEDIA_SYM, 1014},
    {17, "@MEDIA", CSS_MEDIA_SYM, 1014},
    {18, "@charset ", CSS_CHARSET_SYM, 1015},
    {18, "@ChArSeT ", CSS_CHARSET_SYM, 1015},
    {19, "@font-face", CSS_FONT_FACE_SYM, 1016},
    {19, "@FONT-FACE", CSS_FONT_FACE_SYM, 1016},
    {20, "@x", CSS_ATKEYWORD, 1017},
    {20, "@-x", CSS_ATKEYWORD, 1017},
    {20, "@imports", CSS_ATKEYWORD, 1017},
    {20, "@impor", CSS_ATKEYWORD, 1017},
    {20, "@media-x", CSS_ATKEYWORD, 1017},
    {20, "@font-faces", CSS_ATKEYWORD, 1017},
    {20, "@font_face", CSS_ATKEYWORD, 1017},
    {20, "@charset", CSS_ATKEYWORD, 1017},
    {20, "@\\charset", CSS_ATKEYWORD, 1017},
    {21, "!important", CSS_IMPORTANT_SYM, 1018},
    {21, "! /**/\n/***/IMPORTANT", CSS_IMPORTANT_SYM, 1018},
    {21, "!/* ! *//* */important", CSS_IMPORTANT_SYM, 1018},
    {22, "1em", CSS_EMS, 1019},
    {22, "1.5eM", CSS_EMS, 1019},
    {23, "12ex", CSS_EXS, 1020},
    {23, "1EX", CSS_EXS, 1020},
    {24, "1px", CSS_LENGTH, 1021},
    {24, ".5PX", CSS_LENGTH, 1021},
    {25, "1cm", CSS_LENGTH, 1021},
    {25, "1CM", CSS_LENGTH, 1021},
    {26, "1mm", CSS_LENGTH, 1021},
    {26, "1mM", CSS_LENGTH, 1021},
    {27, "1in", CSS_LENGTH, 1021},
    {27, "1In", CSS_LENGTH, 1021},
    {28, "1pt", CSS_LENGTH, 1021},
    {28, "1PT", CSS_LENGTH, 1021},
    {29, "1pc", CSS_LENGTH, 1021},
    {29, "1Pc", CSS_LENGTH, 1021},
    {30, "1deg", CSS_ANGLE, 1022},
    {30, "1DEG", CSS_ANGLE, 1022},
    {31, "1rad", CSS_ANGLE, 1022},
    {31, "1raD", CSS_ANGLE, 1022},
    {32, "1grad", CSS_ANGLE, 1022},
    {32, "1GRAd", CSS_ANGLE, 1022},
    {33, "1ms", CSS_TIME, 1023},
    {33, "1MS", CSS_TIME, 1023},
    {34, "1s", CSS_TIME, 1023},
    {34, "1S", CSS_TIME, 1023},
    {35, "1hz", CSS_FREQ, 1024},
    {35, "1Hz", CSS_FREQ, 1024},
    {36, "1khz", CSS_FREQ, 1024},
    {36, "1KHZ", CSS_FREQ, 1024},
    {37, "1x", CSS_DIMENSION, 1025},
    {37, "1-x", CSS_DIMENSION, 1025},
    {37, "1gradx", CSS_DIMENSION, 1025},
    {37, "1kgrad", CSS_DIMENSION, 1025},
    {37, "1e\\m", CSS_DIMENSION, 1025},
    {37, "1\\65m", CSS_DIMENSION, 1025},
    {37, "1p\\78", CSS_DIMENSION, 1025},
    {37, "1\\s", CSS_DIMENSION, 1025},
    {37, "1.5\xA0", CSS_DIMENSION, 1025},
    {37, "1url", CSS_DIMENSION, 1025},
    {38, "50%", CSS_PERCENTAGE, 1026},
    {38, ".5%", CSS_PERCENTAGE, 1026},
    {39, "0", CSS_NUMBER, 1027},
    {39, "12.34", CSS_NUMBER, 1027},
    {39, ".5", CSS_NUMBER, 1027},
    {40, "url(\"a b\")", CSS_URI, 1028},
    {40, "URL( 'a)\\'' \n)", CSS_URI, 1028},
    {41, "url(a/b.png)", CSS_URI, 1028},
    {41, "url()", CSS_URI, 1028},
    {41, "uRl(\t)", CSS_URI, 1028},
    {41, "url( \\41 b\\(c\\ d\xA0 )", CSS_URI, 1028},
    {41, "url(!#$%&*+,-./09:;<=>?@AZ[]^_`az{|}~)", CSS_URI, 1028},
    {41, "url(\\\n)", CSS_URI, 1028},
    {41, "url(a\\)b)", CSS_URI, 1028},
    {41, "url(\\\\)x)", CSS_URI, 1028},
    {42, "url(", CSS_BAD_URI, 1029},
    {42, "url( ", CSS_BAD_URI, 1029},
    {42, "url(abc", CSS_BAD_URI, 1029},
    {42, "url('abc", CSS_BAD_URI, 1029},
    {42, "url('abc\\", CSS_BAD_URI, 1029},
    {42, "url('abc'", CSS_BAD_URI, 1029},
    {42, "url('abc' \n", CSS_BAD_URI, 1029},
    {42, "url(abc \n", CSS_BAD_URI, 1029},
    {42, "url(\\", CSS_BAD_URI, 1029},
    {43, "rgb(", CSS_FUNCTION, 1030},
    {43, "-x(", CSS_FUNCTION, 1030},
    {43, "u\\rl(", CSS_FUNCTION, 1030},
    {43, "\\75rl(", CSS_FUNCTION, 1030},
    {43, "-url(", CSS_FUNCTION, 1030},
    {43, "urls(", CSS_FUNCTION, 1030},
    {44, "||", CSS_COLUMN, 1031},
    {45, ":not(", CSS_NOT, 1032},
    {46, ":lang(", CSS_LANG, 1033},
    {47, ":nth-child(", CSS_NTH_CHILD, 1034},
    {48, ":nth-last-child(", CSS_NTH_LAST_CHILD, 1035},
    {49, ":nth-of-type(", CSS_NTH_OF_TYPE, 1036},
    {50, ":nth-last-of-type(", CSS_NTH_LAST_OF_TYPE, 1037},
    {51, ":link", CSS_LINK, 1038},
    {52, ":visited", CSS_VISITED, 1039},
    {53, ":active", CSS_ACTIVE, 1040},
    {54, ":hover", CSS_HOVER, 1041},
    {55, ":focus", CSS_FOCUS, 1042},
    {56, ":first-child", CSS_FIRST_CHILD, 1043},
    {57, ":last-child", CSS_LAST_CHILD, 1044},
    {58, ":first-of-type", CSS_FIRST_OF_TYPE, 1045},
    {59, ":last-of-type", CSS_LAST_OF_TYPE, 1046},
    {60, ":only-child", CSS_ONLY_CHILD, 1047},
    {61, ":only-of-type", CSS_ONLY_OF_TYPE, 1048},
    {62, ":root", CSS_ROOT, 1049},
    {63, ":empty", CSS_EMPTY, 1050},
    {64, ":target", CSS_TARGET, 1051},
    {65, ":enabled", CSS_ENABLED, 1052},
    {66, ":disabled", CSS_DISABLED, 1053},
    {67, ":checked", CSS_CHECKED, 1054},
    {68, ":first-letter", CSS_FIRST_LETTER, 1055},
    {68, "::first-letter", CSS_FIRST_LETTER, 1055},
    {69, ":first-line", CSS_FIRST_LINE, 1056},
    {69, "::first-line", CSS_FIRST_LINE, 1056},
    {70, ":before", CSS_BEFORE, 1057},
    {70, "::before", CSS_BEFORE, 1057},
    {71, ":after", CSS_AFTER, 1058},
    {71, "::after", CSS_AFTER, 1058},
    {72, "::selection", CSS_SELECTION, 1059},
};

TEST(CssTokenizer, EveryRule)
{
    for (const RuleRow& row : kRuleRows) {
        SCOPED_TRACE(testing::Message() << "rule " << row.rule << ": " << row.text);
        EXPECT_EQ(row.name, row.kind);
        EXPECT_EQ(cssTokensOf(row.text), (Tokens{{row.kind, std::string(row.text)}}));
        // Nothing of what follows is drawn in.
        const Tokens tokens = cssTokensOf(std::string(row.text) + "\x80");
        if (row.kind != CSS_BAD_STRING && row.kind != CSS_BAD_URI) {
            ASSERT_EQ(tokens.size(), 2U);
            EXPECT_EQ(tokens[0], (OwnedCssToken{row.kind, std::string(row.text)}));
            EXPECT_EQ(tokens[1], (OwnedCssToken{0x80, "\x80"}));
        }
    }
}

TEST(CssTokenizer, EveryRuleHasARow)
{
    // Comments make no token, and what makes one of every byte is below.
    std::vector<int> rules;
    for (const RuleRow& row : kRuleRows) {
        if (rules.empty() || rules.back() != row.rule)
            rules.push_back(row.rule);
    }
    std::vector<int> expected{1};
    for (int rule = 4; rule <= 72; ++rule)
        expected.push_back(rule);
    EXPECT_EQ(rules, expected);
}

TEST(CssTokenizer, EveryByteAlone)
{
    EXPECT_EQ(cssTokensOf(std::string_view("\0", 1)), Tokens{});
    for (int byte = 1; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        std::int32_t kind = byte;
        if (std::string_view(" \t\r\n\f").find(text) != std::string_view::npos)
            kind = CSS_S;
        else if (byte >= '0' && byte <= '9')
            kind = CSS_NUMBER;
        else if (byte == '"' || byte == '\'')
            kind = CSS_BAD_STRING;
        else if (std::isalpha(byte) != 0 || byte == '_' || byte >= 0xA0)
            kind = CSS_IDENT;
        EXPECT_EQ(cssTokensOf(text), (Tokens{{kind, text}})) << byte;
    }
}

TEST(CssTokenizer, EveryUnitByLowByte)
{
    CssTokenizer tokenizer;
    const char16_t text[] = u"\u0161\u4131\u0100x";
    tokenizer.setInput(text, 4);
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_IDENT, "a1"}));
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_END, ""}));
}

struct SequenceRow {
    std::string_view text;
    Tokens tokens;
};

void expectSequences(const std::vector<SequenceRow>& rows)
{
    for (const SequenceRow& row : rows)
        EXPECT_EQ(cssTokensOf(row.text), row.tokens) << row.text;
}

TEST(CssTokenizer, Comments)
{
    expectSequences({
        {"a/**/b", {{CSS_IDENT, "a"}, {CSS_IDENT, "b"}}},
        {" /* x */ ", {{CSS_S, " "}, {CSS_S, " "}}},
        {"/***//* * / **/1", {{CSS_NUMBER, "1"}}},
        {"1/**/px", {{CSS_NUMBER, "1"}, {CSS_IDENT, "px"}}},
        {"/* a */*/", {{'*', "*"}, {'/', "/"}}},
        {"a/* b", {{CSS_IDENT, "a"}}},
        {"a/* b *", {{CSS_IDENT, "a"}}},
        {"/ *", {{'/', "/"}, {CSS_S, " "}, {'*', "*"}}},
        {"\"/*\"/*\"*/", {{CSS_STRING, "\"/*\""}}},
    });
}

// The slash of the opening does not close.
TEST(CssTokenizer, SlashStarSlashIsUnterminated)
{
    expectSequences({{"/*/ a", {}}, {"/*/*/a", {{CSS_IDENT, "a"}}}});
}

TEST(CssTokenizer, NumbersAndPoints)
{
    expectSequences({
        {"1.", {{CSS_NUMBER, "1"}, {'.', "."}}},
        {".5em", {{CSS_EMS, ".5em"}}},
        {"1.2.3", {{CSS_NUMBER, "1.2"}, {CSS_NUMBER, ".3"}}},
        {"1..2", {{CSS_NUMBER, "1"}, {'.', "."}, {CSS_NUMBER, ".2"}}},
        {"..a", {{'.', "."}, {'.', "."}, {CSS_IDENT, "a"}}},
    });
}

TEST(CssTokenizer, SignsStandAlone)
{
    expectSequences({
        {"-5px", {{'-', "-"}, {CSS_LENGTH, "5px"}}},
        {"+5", {{'+', "+"}, {CSS_NUMBER, "5"}}},
        {"-.5", {{'-', "-"}, {CSS_NUMBER, ".5"}}},
        {"-webkit-foo", {{CSS_IDENT, "-webkit-foo"}}},
        {"--x", {{'-', "-"}, {CSS_IDENT, "-x"}}},
        {"--", {{'-', "-"}, {'-', "-"}}},
        {"1-", {{CSS_NUMBER, "1"}, {'-', "-"}}},
        {"1--x", {{CSS_NUMBER, "1"}, {'-', "-"}, {CSS_IDENT, "-x"}}},
    });
}

TEST(CssTokenizer, DimensionsByLongestMatch)
{
    expectSequences({
        {"1e3", {{CSS_DIMENSION, "1e3"}}},
        {"1px2", {{CSS_DIMENSION, "1px2"}}},
        {"1px(", {{CSS_LENGTH, "1px"}, {'(', "("}}},
        {"1px%", {{CSS_LENGTH, "1px"}, {'%', "%"}}},
    });
}

TEST(CssTokenizer, Uris)
{
    expectSequences({
        {"url(x y)", {{CSS_BAD_URI, "url(x "}, {CSS_IDENT, "y"}, {')', ")"}}},
        {"url(", {{CSS_BAD_URI, "url("}}},
        {"url( 'x' )", {{CSS_URI, "url( 'x' )"}}},
        {"url('x' y)", {{CSS_BAD_URI, "url('x' "}, {CSS_IDENT, "y"}, {')', ")"}}},
        {"url('x\n)", {{CSS_BAD_URI, "url('x"}, {CSS_S, "\n"}, {')', ")"}}},
        {"url(a'b')", {{CSS_BAD_URI, "url(a"}, {CSS_STRING, "'b'"}, {')', ")"}}},
        {"url(a(b)", {{CSS_BAD_URI, "url(a"}, {'(', "("}, {CSS_IDENT, "b"}, {')', ")"}}},
        {"url(\x80)", {{CSS_BAD_URI, "url("}, {0x80, "\x80"}, {')', ")"}}},
        {"url(/*)*/", {{CSS_URI, "url(/*)"}, {'*', "*"}, {'/', "/"}}},
        {"url (x)", {{CSS_IDENT, "url"}, {CSS_S, " "}, {'(', "("}, {CSS_IDENT, "x"}, {')', ")"}}},
    });
}

// What follows an escaped parenthesis decides: as far as the bad URI does not reach further, the
// backslash is a byte of the url and the parenthesis its end.
TEST(CssTokenizer, EscapedParenthesisClosesUri)
{
    expectSequences({
        {"url(a\\)", {{CSS_URI, "url(a\\)"}}},
        {"url(a\\)(", {{CSS_URI, "url(a\\)"}, {'(', "("}}},
        {"url(a\\) ", {{CSS_BAD_URI, "url(a\\) "}}},
        {"url(a\\)b", {{CSS_BAD_URI, "url(a\\)b"}}},
        {"url(a\\) )", {{CSS_URI, "url(a\\) )"}}},
        {"url(a\\)b\\)'", {{CSS_URI, "url(a\\)b\\)"}, {CSS_BAD_STRING, "'"}}},
        {"url(\\\\)x", {{CSS_BAD_URI, "url(\\\\)x"}}},
        {"url('\\)'", {{CSS_BAD_URI, "url('\\)'"}}},
        {"url(\\41 )", {{CSS_URI, "url(\\41 )"}}},
        {"url(\\41  b)", {{CSS_BAD_URI, "url(\\41  "}, {CSS_IDENT, "b"}, {')', ")"}}},
        {"url(\\1234567 b)", {{CSS_BAD_URI, "url(\\1234567 "}, {CSS_IDENT, "b"}, {')', ")"}}},
    });
}

TEST(CssTokenizer, CharsetNeedsBlank)
{
    expectSequences({
        {"@charset", {{CSS_ATKEYWORD, "@charset"}}},
        {"@charset\"x\"", {{CSS_ATKEYWORD, "@charset"}, {CSS_STRING, "\"x\""}}},
        {"@charset\t\"x\"", {{CSS_ATKEYWORD, "@charset"}, {CSS_S, "\t"}, {CSS_STRING, "\"x\""}}},
        {"@CHARSET \"x\"", {{CSS_CHARSET_SYM, "@CHARSET "}, {CSS_STRING, "\"x\""}}},
        {"@charset  x", {{CSS_CHARSET_SYM, "@charset "}, {CSS_S, " "}, {CSS_IDENT, "x"}}},
        {"@charsets ", {{CSS_ATKEYWORD, "@charsets"}, {CSS_S, " "}}},
        {"@charse\\74 x", {{CSS_ATKEYWORD, "@charse\\74 x"}}},
    });
}

TEST(CssTokenizer, FontFaceHasNoEscapes)
{
    expectSequences({
        {"@\\66 ont-face", {{CSS_ATKEYWORD, "@\\66 ont-face"}}},
        {"@fo\\nt-face", {{CSS_ATKEYWORD, "@fo\\nt-face"}}},
        {"@\\69mport", {{CSS_IMPORT_SYM, "@\\69mport"}}},
        {"@font-face{", {{CSS_FONT_FACE_SYM, "@font-face"}, {'{', "{"}}},
    });
}

TEST(CssTokenizer, AtWithoutName)
{
    expectSequences({
        {"@", {{'@', "@"}}},
        {"@@x", {{'@', "@"}, {CSS_ATKEYWORD, "@x"}}},
        {"@1", {{'@', "@"}, {CSS_NUMBER, "1"}}},
        {"@--x", {{'@', "@"}, {'-', "-"}, {CSS_IDENT, "-x"}}},
        {"# x", {{'#', "#"}, {CSS_S, " "}, {CSS_IDENT, "x"}}},
    });
}

TEST(CssTokenizer, Important)
{
    expectSequences({
        {"! /* c */ important", {{CSS_IMPORTANT_SYM, "! /* c */ important"}}},
        {"!ie", {{'!', "!"}, {CSS_IDENT, "ie"}}},
        {"!important-x", {{CSS_IMPORTANT_SYM, "!important"}, {CSS_IDENT, "-x"}}},
        {"! importan", {{'!', "!"}, {CSS_S, " "}, {CSS_IDENT, "importan"}}},
        {"!/**/ x", {{'!', "!"}, {CSS_S, " "}, {CSS_IDENT, "x"}}},
        {"!/* important", {{'!', "!"}}},
        {"!/*/important", {{'!', "!"}}},
        {"!!important", {{'!', "!"}, {CSS_IMPORTANT_SYM, "!important"}}},
        {"!/important", {{'!', "!"}, {'/', "/"}, {CSS_IDENT, "important"}}},
    });
}

TEST(CssTokenizer, Colons)
{
    expectSequences({
        {":selection", {{':', ":"}, {CSS_IDENT, "selection"}}},
        {"::x", {{':', ":"}, {':', ":"}, {CSS_IDENT, "x"}}},
        {"::hover", {{':', ":"}, {CSS_HOVER, ":hover"}}},
        {":::before", {{':', ":"}, {CSS_BEFORE, "::before"}}},
        {":hover-x", {{CSS_HOVER, ":hover"}, {CSS_IDENT, "-x"}}},
        {":links", {{CSS_LINK, ":link"}, {CSS_IDENT, "s"}}},
        {":not (", {{':', ":"}, {CSS_IDENT, "not"}, {CSS_S, " "}, {'(', "("}}},
        {":nth-child (", {{':', ":"}, {CSS_IDENT, "nth-child"}, {CSS_S, " "}, {'(', "("}}},
        {":nth-childs(", {{':', ":"}, {CSS_FUNCTION, "nth-childs("}}},
        {": link", {{':', ":"}, {CSS_S, " "}, {CSS_IDENT, "link"}}},
        {":lin", {{':', ":"}, {CSS_IDENT, "lin"}}},
        {"a:red", {{CSS_IDENT, "a"}, {':', ":"}, {CSS_IDENT, "red"}}},
    });
}

TEST(CssTokenizer, StringsCutByLineEnds)
{
    expectSequences({
        {"\"a\nb\"",
            {{CSS_BAD_STRING, "\"a"}, {CSS_S, "\n"}, {CSS_IDENT, "b"}, {CSS_BAD_STRING, "\""}}},
        {"'a\r'", {{CSS_BAD_STRING, "'a"}, {CSS_S, "\r"}, {CSS_BAD_STRING, "'"}}},
        {"'a\f", {{CSS_BAD_STRING, "'a"}, {CSS_S, "\f"}}},
        {"'\\\n\n'", {{CSS_BAD_STRING, "'\\\n"}, {CSS_S, "\n"}, {CSS_BAD_STRING, "'"}}},
        {"'\\41\n\n", {{CSS_BAD_STRING, "'\\41\n"}, {CSS_S, "\n"}}},
    });
}

TEST(CssTokenizer, Backslashes)
{
    expectSequences({
        {"\\", {{'\\', "\\"}}},
        {"\\\n", {{'\\', "\\"}, {CSS_S, "\n"}}},
        {"a\\\r\n", {{CSS_IDENT, "a"}, {'\\', "\\"}, {CSS_S, "\r\n"}}},
        {"-\\\f", {{'-', "-"}, {'\\', "\\"}, {CSS_S, "\f"}}},
        {"\\ a", {{CSS_IDENT, "\\ a"}}},
        {"\\41  a", {{CSS_IDENT, "\\41 "}, {CSS_S, " "}, {CSS_IDENT, "a"}}},
        {"\\41\r\n\na", {{CSS_IDENT, "\\41\r\n"}, {CSS_S, "\n"}, {CSS_IDENT, "a"}}},
        {"\\1234567 a", {{CSS_IDENT, "\\1234567"}, {CSS_S, " "}, {CSS_IDENT, "a"}}},
    });
}

TEST(CssTokenizer, CommentMarksOfMarkup)
{
    expectSequences({
        {"<!-", {{'<', "<"}, {'!', "!"}, {'-', "-"}}},
        {"<!", {{'<', "<"}, {'!', "!"}}},
        {"<!important", {{'<', "<"}, {CSS_IMPORTANT_SYM, "!important"}}},
        {"<!-->", {{CSS_CDO, "<!--"}, {'>', ">"}}},
        {"a-->", {{CSS_IDENT, "a--"}, {'>', ">"}}},
        {"1-->", {{CSS_NUMBER, "1"}, {CSS_CDC, "-->"}}},
        {"--->", {{'-', "-"}, {CSS_CDC, "-->"}}},
    });
}

TEST(CssTokenizer, BytesBelowA0AreCharacters)
{
    expectSequences({
        {"\x80", {{0x80, "\x80"}}},
        {"a\x9F"
         "b",
            {{CSS_IDENT, "a"}, {0x9F, "\x9F"}, {CSS_IDENT, "b"}}},
        {"\xA0x", {{CSS_IDENT, "\xA0x"}}},
        {"\xC3\x84", {{CSS_IDENT, "\xC3"}, {0x84, "\x84"}}},
    });
}

TEST(CssTokenizer, OperatorsOfTwoBytes)
{
    expectSequences({
        {"|||=", {{CSS_COLUMN, "||"}, {CSS_DASHMATCH, "|="}}},
        {"| |", {{'|', "|"}, {CSS_S, " "}, {'|', "|"}}},
        {"~~=", {{'~', "~"}, {CSS_INCLUDES, "~="}}},
        {"* =", {{'*', "*"}, {CSS_S, " "}, {'=', "="}}},
        {"^$", {{'^', "^"}, {'$', "$"}}},
    });
}

TEST(CssTokenizer, UnitZeroEndsTheText)
{
    expectSequences({
        {std::string_view("a\0b", 3), {{CSS_IDENT, "a"}}},
        {std::string_view("'a\0'", 4), {{CSS_BAD_STRING, "'a"}}},
        {std::string_view("a\\\0b", 4), {{CSS_IDENT, "a"}, {'\\', "\\"}}},
        {std::string_view("/*\0*/a", 6), {}},
    });
}

TEST(CssTokenizer, DefaultToken)
{
    const CssToken token;
    EXPECT_EQ(token.kind, CSS_END);
    EXPECT_EQ(std::string_view(token.text, token.length), "uninitialized");
    EXPECT_FALSE(token.isNegative);
}

TEST(CssTokenizer, WithoutInputThereIsTheEnd)
{
    CssTokenizer tokenizer;
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_END, ""}));
    tokenizer.setInput(nullptr, 0);
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_END, ""}));
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_END, ""}));
}

TEST(CssTokenizer, PushedBackTokenComesOnce)
{
    CssTokenizer tokenizer;
    setCssInput(tokenizer, "a b c");
    CssToken first;
    tokenizer.next(first);
    first.isNegative = true;
    tokenizer.pushBack(first);
    CssToken again;
    tokenizer.next(again);
    EXPECT_EQ(again.text, first.text);
    EXPECT_EQ(again.length, 1U);
    EXPECT_EQ(again.kind, CSS_IDENT);
    EXPECT_TRUE(again.isNegative);
    tokenizer.next(again);
    EXPECT_EQ(again.kind, CSS_S);
    EXPECT_FALSE(again.isNegative);
}

TEST(CssTokenizer, SecondPushBackTakesThePlaceOfTheFirst)
{
    CssTokenizer tokenizer;
    setCssInput(tokenizer, "a1 b");
    CssToken a;
    CssToken space;
    tokenizer.next(a);
    tokenizer.next(space);
    tokenizer.pushBack(space);
    tokenizer.pushBack(a);
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_IDENT, "a1"}));
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_IDENT, "b"}));
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_END, ""}));
}

TEST(CssTokenizer, SkippingSpace)
{
    CssTokenizer tokenizer;
    setCssInput(tokenizer, " /**/ \n a b ");
    CssToken token;
    tokenizer.nextSkippingSpace(token);
    EXPECT_EQ(std::string_view(token.text, token.length), "a");
    CssToken space;
    tokenizer.next(space);
    EXPECT_EQ(space.kind, CSS_S);
    tokenizer.pushBack(space);
    tokenizer.nextSkippingSpace(token);
    EXPECT_EQ(std::string_view(token.text, token.length), "b");
    tokenizer.nextSkippingSpace(token);
    EXPECT_EQ(token.kind, CSS_END);
}

TEST(CssTokenizer, NewInputForgetsThePushedBackToken)
{
    CssTokenizer tokenizer;
    setCssInput(tokenizer, "a");
    CssToken token;
    tokenizer.next(token);
    tokenizer.pushBack(token);
    setCssInput(tokenizer, "1");
    EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{CSS_NUMBER, "1"}));
}

TEST(CssTokenizer, InputsOfAllLengthsInTurn)
{
    CssTokenizer tokenizer;
    for (const std::size_t length : {0U, 1U, 254U, 255U, 256U, 257U, 10U, 5000U, 4999U, 5001U}) {
        const std::string name(length, 'a');
        setCssInput(tokenizer, name);
        const std::int32_t kind = length == 0 ? CSS_END : CSS_IDENT;
        EXPECT_EQ(nextCssToken(tokenizer), (OwnedCssToken{kind, name})) << length;
        EXPECT_EQ(nextCssToken(tokenizer).kind, CSS_END);
    }
}

TEST(CssTokenizer, WithoutMemoryTheFilterGivesUp)
{
    const std::u16string text(1000, u'a');
    CssTokenizer tokenizer;
    setCssInput(tokenizer, "b c");
    CssToken token;
    tokenizer.next(token);
    tokenizer.pushBack(token);
    zorvan::failNthAllocation(1);
    try {
        tokenizer.setInput(text.data(), 1000);
        FAIL() << "the allocation was not needed";
    } catch (const UTBailOut& bailOut) {
        EXPECT_EQ(bailOut.code, 18U);
        EXPECT_EQ(bailOut.first, 0U);
        EXPECT_EQ(bailOut.second, 0U);
    }
    EXPECT_EQ(nextCssToken(tokenizer).kind, CSS_END);
    tokenizer.setInput(text.data(), 1000);
    EXPECT_EQ(nextCssToken(tokenizer).text.size(), 1000U);
}

} // namespace
