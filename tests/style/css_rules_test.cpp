#include "style/css_rules.h"

#include "tests/style/css_rule_table.h"
#include "tests/style/css_tokens.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using testing_support::CssRuleTable;
using testing_support::nextCssToken;
using testing_support::OwnedCssToken;
using testing_support::setCssInput;

namespace {

// Sanitizers cost a factor of ten.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRandomTexts = 100'000;
#else
constexpr int kRandomTexts = 1'000'000;
#endif

using Pieces = std::vector<std::string>;

// Bytes and stretches that make rules collide, a list for each group of rules.
const Pieces kPunctuation = {"/", "*", "/*", "*/", "<", "!", "-", "--", ">", "<!--", "-->", "~",
    "=", "|", "^", "$", "\"", "'", "\\", "\n", "\r", "\f", " ", "a", "0", "(", "\x80", "\xA0"};
const Pieces kStrings = {"\"", "'", "\\", "\\\"", "\\'", "\\41", "6", "f", "g", " ", "\n", "\r",
    "\f", "\t", "x", "\x80", "\x9F", "\xA0", "\xFF", "\x01", "\\\r\n", "/*"};
const Pieces kUris = {"url(", "URL(", "u", "r", "l", "(", ")", ")", "\\", "\\", "\\)", "'", "\"",
    " ", "\n", "\r", "\\4", "1", "a", "g", "!", "~", "\x7F", "\x80", "\xA0", "\\72l(", "url"};
const Pieces kNumbers = {"0", "1", "9", ".", ".", "-", "+", "e", "m", "x", "p", "c", "t", "d", "g",
    "r", "a", "s", "h", "z", "k", "i", "n", "em", "EX", "px", "Grad", "deg", "khz", "%", "\\",
    "\\65", " ", "(", "_", "\xA0", "\x80", "/**/", "#"};
const Pieces kNames
    = {"a", "f", "g", "Z", "_", "-", "0", "\\", "\\", "1", "23456", "\\41", "\\0", " ", "\r", "\n",
        "\t", "\f", "(", "#", "@", ".", "\x80", "\x9F", "\xA0", "\xFF", "\x01", "\x7F", ":"};
const Pieces kKeywords = {"@import", "@page", "@media", "@charset", "@charset ", "@font-face",
    "!important", ":not(", ":lang(", ":nth-child(", ":nth-last-child(", ":nth-of-type(",
    ":nth-last-of-type(", ":link", ":visited", ":active", ":hover", ":focus", ":first-child",
    ":last-child", ":first-of-type", ":last-of-type", ":only-child", ":only-of-type", ":root",
    ":empty", ":target", ":enabled", ":disabled", ":checked", "::first-letter", ":first-line",
    "::before", ":after", "::selection", "1em", "2px", "3grad", "4khz", "url(x)"};
const Pieces kBehindKeywords = {"", "", "", " ", "(", "-", "x", "a", "6", "\\", "\n", "\r", ":",
    "@", "!", ")", "\x80", "\xA0", "/**/"};
const Pieces kImportant = {"!", "!", " ", "\n", "/*", "*/", "/**/", "*", "/", "important",
    "IMPORTAN", "\\69mportant", "i\\6d port", "t", "x", "\x80", "\\", "'"};

const Pieces kBehindCodes = {"", "", " ", "\t", "\n", "\r", "\f", "\r\n", "  ", "\n\r"};

class TextMaker {
public:
    explicit TextMaker(std::uint32_t seed)
        : random_(seed)
    {
    }

    std::string text()
    {
        switch (number(10)) {
        case 0:
            return joined(kPunctuation, 12);
        case 1:
            return joined(kStrings, 12);
        case 2:
            return joined(kUris, 12);
        case 3:
            return "url(" + joined(kUris, 8);
        case 4:
            return joined(kNumbers, 10);
        case 5:
            return joined(kNames, 12);
        case 6:
            return joined(kImportant, 8);
        case 7:
            return bytes();
        default:
            return spelled(pick(kKeywords)) + pick(kBehindKeywords) + joined(kNames, 2);
        }
    }

private:
    std::uint32_t number(std::uint32_t end) { return static_cast<std::uint32_t>(random_()) % end; }

    const std::string& pick(const Pieces& pieces)
    {
        return pieces[number(static_cast<std::uint32_t>(pieces.size()))];
    }

    std::string joined(const Pieces& pieces, std::uint32_t most)
    {
        std::string text;
        for (std::uint32_t count = number(most) + 1; count > 0; --count)
            text += pick(pieces);
        return text;
    }

    std::string bytes()
    {
        std::string text;
        for (std::uint32_t count = number(12) + 1; count > 0; --count)
            text += static_cast<char>(number(255) + 1);
        return text;
    }

    // A keyword with most letters as they are, some escaped in ways that may or may not count.
    std::string spelled(const std::string& keyword)
    {
        std::string text;
        const std::uint32_t rarity = number(2) == 0 ? 2 : 10;
        for (const char byte : keyword) {
            if (number(rarity) != 0) {
                text += byte;
                continue;
            }
            const bool isKept = byte == ' ' || number(2) == 0;
            const char other = isKept ? byte : static_cast<char>(byte ^ 0x20);
            switch (number(4)) {
            case 0:
                text += other;
                break;
            case 1:
                text += {'\\', other};
                break;
            default:
                text += code(other);
            }
        }
        return text;
    }

    std::string code(char byte)
    {
        const std::string digits = number(2) == 0 ? "0123456789abcdef" : "0123456789ABCDEF";
        const auto value = static_cast<std::uint8_t>(byte);
        return '\\' + std::string(number(4) == 0 ? number(7) : 0, '0') + digits[value / 16]
            + digits[value % 16] + pick(kBehindCodes);
    }

    std::minstd_rand random_;
};

/// A text with the bytes that don't print told by number.
std::string visible(std::string_view text)
{
    std::string told;
    for (const char byte : text) {
        if (byte > ' ' && byte < 0x7F)
            told += byte;
        else
            told += '<' + std::to_string(static_cast<std::uint8_t>(byte)) + '>';
    }
    return told;
}

/// The first token behind a place that is not dropped; kind 0 at the end.
OwnedCssToken nextByTable(CssRuleTable& table, std::string_view text, std::size_t& position)
{
    while (position < text.size()) {
        const CssRuleTable::Match match = table.match(text.substr(position));
        const std::size_t start = position;
        position += match.length;
        if (match.kind != 0)
            return {match.kind, std::string(text.substr(start, match.length))};
    }
    return {CSS_END, ""};
}

/// Whether scanner and table cut a text alike; marks the kinds of 1000 and up that occur in it.
bool agreesWithTable(CssRuleTable& table, CssTokenizer& tokenizer, std::string_view text,
    std::array<bool, CSS_SELECTION + 1>& seen)
{
    setCssInput(tokenizer, text);
    std::size_t position = 0;
    for (;;) {
        const OwnedCssToken expected = nextByTable(table, text, position);
        const OwnedCssToken token = nextCssToken(tokenizer);
        EXPECT_EQ(token, expected) << visible(text);
        if (token != expected)
            return false;
        if (token.kind == CSS_END)
            return true;
        seen[static_cast<std::size_t>(token.kind)] = true;
    }
}

TEST(CssRules, AgreeWithTheirPatterns)
{
    CssRuleTable table;
    CssTokenizer tokenizer;
    TextMaker maker(20'240'517);
    std::array<bool, CSS_SELECTION + 1> seen{};
    int failures = 0;
    for (int i = 0; i < kRandomTexts && failures < 10; ++i) {
        if (!agreesWithTable(table, tokenizer, maker.text(), seen))
            ++failures;
    }
    // The texts are of no use if they leave a rule out.
    for (std::size_t kind = CSS_S; kind <= CSS_SELECTION; ++kind)
        EXPECT_TRUE(seen[kind]) << kind;
}

// All texts of up to four bytes over an alphabet of what the rules begin and end with.
TEST(CssRules, AgreeWithTheirPatternsOnAllShortTexts)
{
    constexpr std::string_view alphabet = "/*!-<>|=:@#.0a'\\ \n\r(\x80\xA0";
    CssRuleTable table;
    CssTokenizer tokenizer;
    std::array<bool, CSS_SELECTION + 1> seen{};
    const std::size_t count = alphabet.size();
    for (std::size_t number = 0; number < count * count * count * count; ++number) {
        std::string text;
        for (std::size_t rest = number; text.size() < 4; rest /= count)
            text += alphabet[rest % count];
        if (!agreesWithTable(table, tokenizer, text, seen))
            break;
    }
}

/// A pointer into a text that counts how often a byte is looked at.
class CountedBytes {
public:
    CountedBytes(const char* at, std::uint64_t* count)
        : at_(at)
        , count_(count)
    {
    }

    char operator*() const { return (*this)[0]; }
    char operator[](std::ptrdiff_t index) const
    {
        ++*count_;
        return at_[index];
    }
    CountedBytes& operator++() { return *this += 1; }
    CountedBytes& operator+=(std::ptrdiff_t step)
    {
        at_ += step;
        return *this;
    }
    CountedBytes operator+(std::ptrdiff_t step) const { return {at_ + step, count_}; }
    CountedBytes operator-(std::ptrdiff_t step) const { return {at_ - step, count_}; }
    std::ptrdiff_t operator-(const CountedBytes& other) const { return at_ - other.at_; }
    bool operator==(const CountedBytes& other) const { return at_ == other.at_; }

private:
    const char* at_;
    std::uint64_t* count_;
};

/// How often the bytes of a text are looked at until its last token is out.
std::uint64_t looksAt(const std::string& text)
{
    std::uint64_t count = 0;
    CountedBytes at(text.c_str(), &count);
    for (;;) {
        const auto match = css_rules::matchToken(css_rules::skipComments(at));
        if (match.kind == CSS_END)
            return count;
        at = match.end;
    }
}

std::string repeated(std::string_view piece, std::size_t length)
{
    std::string text;
    while (text.size() < length)
        text += piece;
    return text;
}

// What a scanner that backs up to its last match reads over and over.
const std::string_view kRepeatedPieces[]
    = {"!", "!/**/", "/**/!", "! ", "!/*", "!/*/", "!/**", "!/", "!i", "!importan", "!\\69",
        "!\\000069\r\n", "!\n/***/\n", "/*", "/*/", "*/", "/**", "url(", "url( ", "url('",
        "url(\"\\", "url(\\)", "url(\\) ", "url(a\\)b ", "url( \\\\", "url('' ", "URL(\n", "\"",
        "\"\\", "'\\\n", "\"\\41", "\"\n", "'\"", "\\", "\\4", "\\41 ", "\\\n", "-", "--", "-\\",
        "-->", "<!--", "<!-", "@", "@\\", "@-", "@charset", "@charset ", "@\\69", "@import",
        "@font-face", "@\\0000", ":", "::", ":n", ":nth-last-of-typ", ":nth-last-of-type",
        "::first-lette", ":\\6e", ":\\00006e\r\n", ":f\\69\\72", "#", "#\\", "1", "1.", ".1", ".",
        "1e", "1\\", "1-", "1.5gra", "a(", "a", "\x80", "\xA0", " ", "\r", "|", "||=", "$=", "~"};

TEST(CssRules, WorkGrowsWithTheText)
{
    constexpr std::size_t kLength = 1 << 16;
    for (const std::string_view piece : kRepeatedPieces) {
        const std::string text = repeated(piece, kLength);
        const std::uint64_t looks = looksAt(text);
        // A colon is tried against the few keywords of one letter, whose spellings are bounded.
        EXPECT_LE(looks, 32 * text.size()) << visible(piece);
        const std::string twice = repeated(piece, 2 * kLength);
        EXPECT_LE(looksAt(twice), 2 * looks + 1000) << visible(piece);
    }
}

TEST(CssRules, WorkGrowsWithTheTextForMixedPieces)
{
    constexpr std::size_t kLength = 1 << 10;
    for (const std::string_view first : kRepeatedPieces) {
        for (const std::string_view second : kRepeatedPieces) {
            const std::string text = repeated(first, kLength) + repeated(second, kLength)
                + repeated(std::string(first) + std::string(second), kLength);
            EXPECT_LE(looksAt(text), 32 * text.size()) << visible(first) << ' ' << visible(second);
        }
    }
}

TEST(CssRules, OrdinaryTextIsLookedAtLessThanThreeTimes)
{
    const std::string sheet = repeated(
        "body, td.note { font-family: Arial, \"Times New Roman\"; color: #336699 }\n"
        "/* links */\na:hover { text-decoration: underline; margin: 0 12px 1.5em 10% }\n",
        1 << 16);
    EXPECT_LE(looksAt(sheet), 3 * sheet.size());
}

} // namespace
