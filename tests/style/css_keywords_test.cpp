#include "style/css_keywords.h"

#include "tests/style/css_tokens.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using testing_support::cssTokensOf;
using testing_support::OwnedCssToken;

namespace {

using Tokens = std::vector<OwnedCssToken>;

struct KeywordRow {
    std::string_view text;
    std::int32_t kind;
};

const KeywordRow kKeywordRows[] = {
    {"@import", 1012},
    {"@page", 1013},
    {"@media", 1014},
    {"!important", 1018},
    {":not(", 1032},
    {":lang(", 1033},
    {":nth-child(", 1034},
    {":nth-last-child(", 1035},
    {":nth-of-type(", 1036},
    {":nth-last-of-type(", 1037},
    {":link", 1038},
    {":visited", 1039},
    {":active", 1040},
    {":hover", 1041},
    {":focus", 1042},
    {":first-child", 1043},
    {":last-child", 1044},
    {":first-of-type", 1045},
    {":last-of-type", 1046},
    {":only-child", 1047},
    {":only-of-type", 1048},
    {":root", 1049},
    {":empty", 1050},
    {":target", 1051},
    {":enabled", 1052},
    {":disabled", 1053},
    {":checked", 1054},
    {":first-letter", 1055},
    {"::first-letter", 1055},
    {":first-line", 1056},
    {"::first-line", 1056},
    {":before", 1057},
    {"::before", 1057},
    {":after", 1058},
    {"::after", 1058},
    {"::selection", 1059},
};

constexpr std::string_view kSpaces[] = {"", " ", "\t", "\n", "\r", "\f", "\r\n"};

bool isLetter(char byte) { return std::isalpha(static_cast<unsigned char>(byte)) != 0; }

std::string hexCode(char byte, bool inCapitals)
{
    const std::string_view digits = inCapitals ? "0123456789ABCDEF" : "0123456789abcdef";
    return {
        digits[static_cast<std::size_t>(byte / 16)], digits[static_cast<std::size_t>(byte % 16)]};
}

char upperCase(char byte) { return static_cast<char>(std::toupper(byte)); }

/// All ways to write a letter: 2 plain, 1 or 2 behind a backslash, the rest by codes.
std::vector<std::string> spellings(char lower)
{
    const char upper = upperCase(lower);
    std::vector<std::string> all{{lower}, {upper}};
    if (lower > 'f')
        all.insert(all.end(), {std::string{'\\', lower}, std::string{'\\', upper}});
    for (const char letter : {lower, upper}) {
        for (const bool inCapitals : {false, true}) {
            for (std::size_t zeros = 0; zeros <= 4; ++zeros) {
                for (const std::string_view space : kSpaces) {
                    all.push_back('\\' + std::string(zeros, '0') + hexCode(letter, inCapitals)
                        + std::string(space));
                }
            }
        }
    }
    return all;
}

/// What a letter can't be written as.
std::vector<std::string> misspellings(char lower)
{
    std::vector<std::string> all;
    if (lower <= 'f')
        all.insert(all.end(), {std::string{'\\', lower}, std::string{'\\', upperCase(lower)}});
    all.push_back("\\00000" + hexCode(lower, false));
    all.push_back("\\000000" + hexCode(lower, false));
    all.push_back('\\' + hexCode(lower, false) + "  ");
    all.push_back('\\' + hexCode(lower, false) + "\n\r");
    all.push_back('\\' + hexCode(static_cast<char>(lower - 0x60), false));
    all.push_back("\\\\" + std::string(1, lower));
    all.push_back("\\" + hexCode(lower, false).substr(0, 1));
    return all;
}

TEST(CssKeywords, EverySpellingOfEveryLetter)
{
    for (const KeywordRow& row : kKeywordRows) {
        for (std::size_t i = 0; i < row.text.size(); ++i) {
            if (!isLetter(row.text[i]))
                continue;
            for (const std::string& spelling : spellings(row.text[i])) {
                std::string text(row.text);
                text.replace(i, 1, spelling);
                ASSERT_EQ(cssTokensOf(text), (Tokens{{row.kind, text}})) << row.text;
            }
        }
    }
}

TEST(CssKeywords, AllLettersEscapedAtOnce)
{
    std::vector<std::vector<std::string>> ways(256);
    for (char letter = 'a'; letter <= 'z'; ++letter)
        ways[static_cast<std::size_t>(letter)] = spellings(letter);
    for (const KeywordRow& row : kKeywordRows) {
        // Each way of writing is used for every letter in turn.
        for (std::size_t way = 0; way < 144; ++way) {
            std::string text;
            for (const char byte : row.text) {
                const std::vector<std::string>& all = ways[static_cast<std::uint8_t>(byte)];
                text += all.empty() ? std::string{byte} : all[way % all.size()];
            }
            ASSERT_EQ(cssTokensOf(text), (Tokens{{row.kind, text}})) << row.text;
        }
    }
}

TEST(CssKeywords, MisspelledLetters)
{
    for (const KeywordRow& row : kKeywordRows) {
        for (std::size_t i = 0; i < row.text.size(); ++i) {
            if (!isLetter(row.text[i]))
                continue;
            for (const std::string& spelling : misspellings(row.text[i])) {
                std::string text(row.text);
                text.replace(i, 1, spelling);
                // Only the blank behind the last letter may be left over.
                const Tokens tokens = cssTokensOf(text);
                const bool isLast = i + 1 == row.text.size();
                const bool hasSpace = spelling.ends_with("  ") || spelling.ends_with("\n\r");
                EXPECT_EQ(tokens[0].kind == row.kind, isLast && hasSpace) << text;
            }
        }
    }
}

// Hyphens and parentheses are no letters.
TEST(CssKeywords, OnlyLettersCanBeEscaped)
{
    for (const KeywordRow& row : kKeywordRows) {
        for (std::size_t i = 1; i < row.text.size(); ++i) {
            if (isLetter(row.text[i]))
                continue;
            for (const std::string& spelling : {std::string{'\\', row.text[i]},
                     '\\' + hexCode(row.text[i], false), '\\' + hexCode(row.text[i], true) + ' '}) {
                std::string text(row.text);
                text.replace(i, 1, spelling);
                EXPECT_NE(cssTokensOf(text)[0].kind, row.kind) << text;
            }
        }
    }
}

// As a name this is one unknown letter, as a keyword it is two known ones.
TEST(CssKeywords, CodeEndsBehindTwoDigits)
{
    EXPECT_EQ(cssTokensOf("@m\\65dia"), (Tokens{{CSS_MEDIA_SYM, "@m\\65dia"}}));
    EXPECT_EQ(cssTokensOf("@p\\61ge"), (Tokens{{CSS_PAGE_SYM, "@p\\61ge"}}));
    EXPECT_EQ(cssTokensOf(":check\\65d"), (Tokens{{CSS_CHECKED, ":check\\65d"}}));
    EXPECT_EQ(cssTokensOf("::\\62\\65\\66ore"), (Tokens{{CSS_BEFORE, "::\\62\\65\\66ore"}}));
    // The name reaches further.
    EXPECT_EQ(cssTokensOf("@m\\65diab"), (Tokens{{CSS_ATKEYWORD, "@m\\65diab"}}));
    // A keyword without regard to what follows splits the code.
    EXPECT_EQ(cssTokensOf(":link\\65"), (Tokens{{CSS_LINK, ":link"}, {CSS_IDENT, "\\65"}}));
    EXPECT_EQ(
        cssTokensOf(":activ\\65 65"), (Tokens{{CSS_ACTIVE, ":activ\\65 "}, {CSS_NUMBER, "65"}}));
    EXPECT_EQ(
        cssTokensOf(":activ\\6565"), (Tokens{{CSS_ACTIVE, ":activ\\65"}, {CSS_NUMBER, "65"}}));
}

TEST(CssKeywords, OneExampleOfEachForm)
{
    EXPECT_EQ(cssTokensOf("@\\69mport"), (Tokens{{CSS_IMPORT_SYM, "@\\69mport"}}));
    EXPECT_EQ(cssTokensOf(":N\\6fT("), (Tokens{{CSS_NOT, ":N\\6fT("}}));
    EXPECT_EQ(cssTokensOf("! \\IM\\70 ortant"), (Tokens{{CSS_IMPORTANT_SYM, "! \\IM\\70 ortant"}}));
}

TEST(CssKeywords, OneAndTwoColons)
{
    const auto isKeyword = [](std::string text) { return cssTokensOf(text)[0].kind >= CSS_NOT; };
    for (const css_rules::PseudoKeyword& row : css_rules::kPseudoKeywords) {
        const std::string name(row.name);
        const bool isElement = name == "first-letter" || name == "first-line" || name == "before"
            || name == "after" || name == "selection";
        EXPECT_EQ(isKeyword(':' + name), name != "selection") << name;
        EXPECT_EQ(isKeyword("::" + name), isElement) << name;
    }
}

} // namespace
