#include "support/wstring_tokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using zorvan::WStringTokenizer;

namespace {

struct Row {
    const char16_t* text;
    const char16_t* delimiters;
    bool returnDelimiters;
    std::vector<std::u16string> tokens;
};

const Row kRows[] = {
    {u"one two three", u" ", false, {u"one", u"two", u"three"}},
    {u"  one \t\n two  ", u" \t\n", false, {u"one", u"two"}},
    {u"", u" ", false, {}},
    {u"   ", u" ", false, {}},
    {u"one", u" ", false, {u"one"}},
    {u"one two", u"", false, {u"one two"}},
    {u"a,b;c", u",;", false, {u"a", u"b", u"c"}},
    {u"\u0161\u0120x", u"\u0120", false, {u"\u0161", u"x"}},
    {nullptr, u" ", false, {}},
    {u"a b", nullptr, false, {u"a b"}},
    {u"a,,b", u",", true, {u"a", u",", u",", u"b"}},
    {u",", u",", true, {u","}},
};

} // namespace

TEST(WStringTokenizer, Splits)
{
    for (const Row& row : kRows) {
        WStringTokenizer tokenizer(row.text, row.delimiters, row.returnDelimiters);
        std::vector<std::u16string> tokens;
        while (tokenizer.hasMoreTokens()) {
            EXPECT_TRUE(tokenizer.hasMoreTokens()) << "asking twice changes nothing";
            tokens.emplace_back(tokenizer.nextToken().value());
        }
        EXPECT_EQ(tokens, row.tokens);
        EXPECT_EQ(tokenizer.nextToken().length, 0);
        EXPECT_FALSE(tokenizer.hasMoreTokens());
    }
}

TEST(WStringTokenizer, NeedsNoQuestionBetweenTokens)
{
    WStringTokenizer tokenizer(u" a b ", u" ", /*returnDelimiters=*/false);
    EXPECT_TRUE(tokenizer.nextToken().equals(zorvan::WString(u"a")));
    EXPECT_TRUE(tokenizer.nextToken().equals(zorvan::WString(u"b")));
    EXPECT_EQ(tokenizer.nextToken().length, 0);
}
