#include "support/wstring.h"

#include "support/zv_string.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

using zorvan::String;
using zorvan::WString;

namespace {

std::u16string textOf(const WString& text)
{
    EXPECT_EQ(text.data[text.length], 0);
    return {text.value(), static_cast<std::size_t>(text.length)};
}

} // namespace

TEST(WString, Construction)
{
    EXPECT_EQ(textOf(WString()), u"");
    EXPECT_EQ(textOf(WString("abc")), u"abc");
    EXPECT_EQ(textOf(WString(u"\u0161\xD83D")), u"\u0161\xD83D");
    EXPECT_EQ(textOf(WString(u"abcd", 2)), u"ab");
    EXPECT_EQ(textOf(WString(String("xyz"))), u"xyz");
    EXPECT_EQ(textOf(WString(String())), u"");
    const WString text(u"copy");
    EXPECT_EQ(textOf(WString(text)), u"copy");
    const char16_t* none = nullptr;
    EXPECT_EQ(textOf(WString(none)), u"");
}

TEST(WString, BytesAbove127AreUnitsOfTheSameNumbers)
{
    String bytes;
    std::u16string expected;
    for (int byte = 1; byte < 256; ++byte) {
        bytes.append(static_cast<char>(byte));
        expected += static_cast<char16_t>(byte);
    }
    EXPECT_EQ(textOf(WString(bytes)), expected);
    EXPECT_EQ(textOf(WString(bytes.value())), expected);
    WString text;
    text.append(bytes.value());
    EXPECT_EQ(textOf(text), expected);
    text.setValue(bytes.value());
    EXPECT_EQ(textOf(text), expected);
    EXPECT_TRUE(text.equals(bytes));
    EXPECT_EQ(WString::swstrcmp(bytes.value(), text.value()), 0);
}

TEST(WString, Assignment)
{
    const WString source(u"source");
    WString text;
    text = source;
    EXPECT_EQ(textOf(text), u"source");
    const WString& self = text;
    text = self;
    EXPECT_EQ(textOf(text), u"source");
    WString moved(std::move(text));
    EXPECT_EQ(textOf(moved), u"source");
    text = std::move(moved);
    EXPECT_EQ(textOf(text), u"source");
}

TEST(WString, Append)
{
    WString text;
    text.append(u'a');
    text.append("bc");
    text.append(u"de");
    text.append(u"fgh", 1);
    text.append(WString(u"gh"));
    text.append(text);
    EXPECT_EQ(textOf(text), u"abcdefghabcdefgh");
    text.append(text.value() + 15);
    EXPECT_EQ(textOf(text), u"abcdefghabcdefghh");
}

TEST(WString, SetValue)
{
    WString text(u"before");
    text.setValue("narrow text, longer than before");
    EXPECT_EQ(textOf(text), u"narrow text, longer than before");
    text.setValue(u"wide");
    EXPECT_EQ(textOf(text), u"wide");
    text.setValue(WString(u"other"));
    EXPECT_EQ(textOf(text), u"other");
    text.setValue(u"counted", 5);
    EXPECT_EQ(textOf(text), u"count");
    text.setValue(text.value() + 1);
    EXPECT_EQ(textOf(text), u"ount");
    text.setValue(text);
    EXPECT_EQ(textOf(text), u"ount");
    text.setValue("");
    EXPECT_EQ(textOf(text), u"");
}

TEST(WString, Equals)
{
    const WString text(u"text");
    EXPECT_TRUE(text.equals(WString(u"text")));
    EXPECT_FALSE(text.equals(WString(u"Text")));
    EXPECT_FALSE(text.equals(WString(u"tex")));
    EXPECT_TRUE(text.equals(String("text")));
    EXPECT_FALSE(text.equals(String("texts")));
    EXPECT_FALSE(WString(u"\u0174ext").equals(String("text"))) << "all 16 bits count";
    EXPECT_TRUE(WString().equals(String()));
    const zorvan::Object& object = text;
    EXPECT_TRUE(object.equals(WString(u"text")));
    EXPECT_FALSE(object.equals(String("text")));
    EXPECT_FALSE(object.equals(zorvan::Object()));
    EXPECT_EQ(object.hashCode(), WString("text").hashCode());
}

TEST(WString, StartsEndsAndContains)
{
    struct Row {
        const char16_t* text;
        const char* part;
        bool starts;
        bool ends;
        std::int32_t index;
    };
    constexpr Row rows[] = {
        {u"abcabc", "abc", true, true, 0},
        {u"abcabd", "abd", false, true, 3},
        {u"abc", "abcd", false, false, -1},
        {u"abc", "", true, true, 0},
        {u"", "", true, true, 0},
        {u"", "a", false, false, -1},
        {u"xaby", "ab", false, false, 1},
        {u"\u0161b", "ab", false, false, -1},
        {u"caf\u00E9", "\xE9", false, true, 3},
        {u"ABC", "abc", false, false, -1},
    };
    for (const Row& row : rows) {
        const WString text(row.text);
        const String part(row.part);
        EXPECT_EQ(text.startsWith(part), row.starts) << row.part;
        EXPECT_EQ(text.endsWith(part), row.ends) << row.part;
        EXPECT_EQ(text.indexOf(part), row.index) << row.part;
    }
    EXPECT_TRUE(WString(u"a.png").endsWith(u".png"));
    EXPECT_EQ(WString(u"a.png").indexOf(u'.'), 1);
}

TEST(WString, ToStringIsKeptByTheObject)
{
    WString text(u"text");
    const String& narrow = text.toString();
    EXPECT_STREQ(narrow.value(), "text");
    text.append(u'\u00E9');
    EXPECT_EQ(&text.toString(), &narrow);
    EXPECT_STREQ(narrow.value(), "text\xE9");
    const zorvan::Object& object = text;
    EXPECT_EQ(&object.toString(), &narrow);

    const WString copy(text);
    EXPECT_NE(&copy.toString(), &narrow);
    EXPECT_STREQ(copy.toString().value(), "text\xE9");
    WString moved(std::move(text));
    EXPECT_STREQ(moved.toString().value(), "text\xE9");
    text = WString(u"\u0141");
    EXPECT_STREQ(text.toString().value(), "A") << "the low byte of the unit";
}

TEST(WString, ToStringWithoutMemoryThrows)
{
    const WString text(u"a text that needs storage");
    for (std::uint32_t n = 1; n <= 2; ++n) {
        zorvan::failNthAllocation(n);
        EXPECT_THROW(text.toString(), std::bad_alloc) << n;
    }
    zorvan::clearAllocationFailure();
    EXPECT_STREQ(text.toString().value(), "a text that needs storage");
}

TEST(WString, Swstrcmp)
{
    EXPECT_EQ(WString::swstrcmp("abc", u"abc"), 0);
    EXPECT_EQ(WString::swstrcmp("", u""), 0);
    EXPECT_LT(WString::swstrcmp("ab", u"abc"), 0);
    EXPECT_GT(WString::swstrcmp("abc", u"ab"), 0);
    EXPECT_LT(WString::swstrcmp("a", u"\u0161"), 0);
    EXPECT_LT(WString::swstrcmp("\xE9", u"\u0161"), 0);
    EXPECT_GT(WString::swstrcmp("\xE9", u"z"), 0) << "bytes are unsigned";
}

TEST(WString, ValueOf)
{
    struct Row {
        std::uint32_t number;
        const char16_t* text;
    };
    constexpr Row rows[] = {
        {0, u"0"},
        {9, u"9"},
        {10, u"10"},
        {65536, u"65536"},
        {4294967295u, u"4294967295"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(textOf(WString::valueOf(row.number)), row.text);
}
