#include "support/text_search.h"

#include <gtest/gtest.h>

#include <string>

using zorvan::compareTerminated;
using zorvan::compareTexts;
using zorvan::findText;
using zorvan::textLength;

namespace {

std::ptrdiff_t find(const std::string& text, const std::string& pattern)
{
    return findText(text.data(), std::ssize(text), pattern.data(), std::ssize(pattern));
}

std::ptrdiff_t model(const std::string& text, const std::string& pattern)
{
    const std::size_t found = text.find(pattern);
    return found == std::string::npos ? -1 : static_cast<std::ptrdiff_t>(found);
}

/// The text of the letters a and b that the bits of a number spell.
std::string bitText(unsigned bits, unsigned length)
{
    std::string text;
    for (unsigned i = 0; i < length; ++i)
        text += (bits >> i & 1) != 0 ? 'b' : 'a';
    return text;
}

} // namespace

TEST(TextSearch, FindsWhatTheModelFinds)
{
    for (unsigned textBits = 0; textBits < 1u << 11; ++textBits) {
        const std::string text = bitText(textBits, 11);
        for (unsigned length = 0; length <= 6; ++length) {
            for (unsigned bits = 0; bits < 1u << length; ++bits) {
                const std::string pattern = bitText(bits, length);
                ASSERT_EQ(find(text, pattern), model(text, pattern)) << text << ' ' << pattern;
            }
        }
    }
}

TEST(TextSearch, FindsLongerPatterns)
{
    std::uint32_t state = 1;
    const auto next = [&state] { return state = state * 1664525 + 1013904223; };
    for (int round = 0; round < 20'000; ++round) {
        const unsigned letters = 2 + (next() >> 16) % 2;
        std::string text;
        while (text.size() < 60)
            text += static_cast<char>('a' + (next() >> 16) % letters);
        const std::size_t start = (next() >> 16) % 40;
        std::string pattern = text.substr(start, 1 + (next() >> 16) % 20);
        if ((next() >> 16) % 2 == 0)
            pattern[(next() >> 16) % pattern.size()] = 'b';
        ASSERT_EQ(find(text, pattern), model(text, pattern)) << text << ' ' << pattern;
        ASSERT_EQ(find(text, pattern + pattern), model(text, pattern + pattern));
    }
}

TEST(TextSearch, IsLinearForTextsMadeToBeSlow)
{
    // Compared one place after the other these take a hundred thousand million steps.
    const std::string text(1'000'000, 'a');
    const std::string half(200'000, 'a');
    EXPECT_EQ(find(text, half + "b"), -1);
    EXPECT_EQ(find(text, "b" + half), -1);
    EXPECT_EQ(find(text, half + "b" + half), -1);
    EXPECT_EQ(find(text + "b", half + "b"), 800'000);
    std::string pairs;
    for (int i = 0; i < 200'000; ++i)
        pairs += "ab";
    EXPECT_EQ(find(pairs + pairs, pairs + "b"), -1);
    EXPECT_EQ(find(pairs + pairs + "b", pairs + "b"), 400'000);
}

TEST(TextSearch, ComparesWidthsByNumber)
{
    EXPECT_EQ(findText(u"x\u00E9y", 3, "\xE9", 1), 1);
    EXPECT_EQ(findText(u"x\u01E9y", 3, "\xE9", 1), -1);
    EXPECT_EQ(findText(u"abc", 3, "", 0), 0);
    EXPECT_EQ(findText(u"", 0, "a", 1), -1);
    EXPECT_EQ(compareTexts(u"\u00E9", 1, "\xE9", 1), 0);
    EXPECT_EQ(compareTexts("a", 1, u"b", 1), -1);
    EXPECT_EQ(compareTexts("ab", 2, u"a", 1), 1);
    EXPECT_EQ(compareTexts("a", 1, u"ab", 2), -1);
    EXPECT_EQ(compareTerminated("ab", u"ab"), 0);
    EXPECT_EQ(compareTerminated("ab", u"a"), 1);
    EXPECT_EQ(compareTerminated("\xE9", "z"), 1);
}

TEST(TextSearch, TextLength)
{
    const char* none = nullptr;
    EXPECT_EQ(textLength(none), 0);
    EXPECT_EQ(textLength(""), 0);
    EXPECT_EQ(textLength(u"abc"), 3);
}
