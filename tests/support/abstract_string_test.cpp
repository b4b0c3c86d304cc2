#include "support/abstract_string.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>
#include <utility>

using Narrow = zorvan::AbstractMutableString<char>;
using Wide = zorvan::AbstractMutableString<char16_t>;
using NarrowView = zorvan::AbstractString<char>;
using WideView = zorvan::AbstractString<char16_t>;

namespace {

Narrow narrow(const std::string& text)
{
    Narrow result;
    result.append(text.data(), static_cast<std::int32_t>(text.size()));
    return result;
}

Wide wide(const std::u16string& text)
{
    Wide result;
    result.append(text.data(), static_cast<std::int32_t>(text.size()));
    return result;
}

template <class Ch> std::basic_string<Ch> textOf(const zorvan::AbstractString<Ch>& text)
{
    // The terminator belongs to every text that is owned.
    EXPECT_EQ(text.data[text.length], 0);
    EXPECT_EQ(text.value(), text.data);
    return {text.data, static_cast<std::size_t>(text.length)};
}

} // namespace

TEST(AbstractString, WrapsText)
{
    const char* text = "abc";
    const NarrowView all(text);
    EXPECT_EQ(all.data, text);
    EXPECT_EQ(all.value(), text);
    EXPECT_EQ(all.length, 3);
    EXPECT_EQ(NarrowView(text, -1).length, 3);
    EXPECT_EQ(NarrowView(text, 2).length, 2);
    EXPECT_EQ(NarrowView(text, 0).length, 0);
    EXPECT_EQ(WideView(u"\u00E4\U0001F600").length, 3);
    EXPECT_EQ(NarrowView(nullptr).length, 0);
    EXPECT_STREQ(NarrowView(nullptr, 5).value(), "");
    EXPECT_STREQ(NarrowView().value(), "");
}

TEST(AbstractString, CompareStrings)
{
    EXPECT_EQ(NarrowView::compareStrings("abc", "abc"), 0);
    EXPECT_LT(NarrowView::compareStrings("ab", "abc"), 0);
    EXPECT_GT(NarrowView::compareStrings("b", "abc"), 0);
    EXPECT_GT(NarrowView::compareStrings("\xE4", "z"), 0) << "bytes are unsigned";
    EXPECT_EQ(NarrowView::compareStrings(nullptr, ""), 0);
    EXPECT_LT(NarrowView::compareStrings(nullptr, "a"), 0);
    EXPECT_EQ(WideView::compareStrings(u"abc", u"abc"), 0);
    EXPECT_LT(WideView::compareStrings(u"abc", u"abd"), 0);
    EXPECT_GT(WideView::compareStrings(u"\uFFFD", u"a"), 0);
}

TEST(AbstractString, CompareTo)
{
    EXPECT_EQ(WideView(u"abc").compareTo(WideView(u"abc")), 0);
    EXPECT_LT(WideView(u"ab").compareTo(WideView(u"abc")), 0);
    EXPECT_GT(WideView(u"b").compareTo(WideView(u"abc")), 0);
    const char16_t zeros[] = u"a\0b";
    EXPECT_GT(WideView(zeros, 3).compareTo(WideView(zeros, 1)), 0);
}

TEST(AbstractString, IgnoringCase)
{
    EXPECT_EQ(NarrowView("AbC").compareToIgnoreCase(NarrowView("aBc")), 0);
    EXPECT_LT(NarrowView("AbC").compareToIgnoreCase(NarrowView("abd")), 0);
    EXPECT_LT(NarrowView("AB").compareToIgnoreCase(NarrowView("abc")), 0);
    EXPECT_GT(NarrowView("abc").compareToIgnoreCase(NarrowView("AB")), 0);
    EXPECT_TRUE(NarrowView("Sans-Serif").equalsIgnoreCase("sans-serif"));
    EXPECT_FALSE(NarrowView("sans").equalsIgnoreCase("sans-serif"));
    EXPECT_TRUE(NarrowView("").equalsIgnoreCase(nullptr));
    EXPECT_FALSE(NarrowView("[").equalsIgnoreCase("{")) << "only letters fold";
    EXPECT_FALSE(NarrowView("\xC4").equalsIgnoreCase("\xE4")) << "only ASCII folds";
    EXPECT_TRUE(WideView(u"Tab").equalsIgnoreCase(u"tAB"));
    EXPECT_FALSE(WideView(u"\u212A").equalsIgnoreCase(u"k"));
}

TEST(AbstractString, UnexpandedEscapesAreUnequal)
{
    EXPECT_FALSE(NarrowView("s\\65rif").equalsIgnoreCase("serif"));
    EXPECT_FALSE(NarrowView("\\73 erif").equalsIgnoreCase("serif"));
}

TEST(AbstractString, ContainsAndIndexOf)
{
    const NarrowView text("a,b,c");
    EXPECT_TRUE(text.contains(','));
    EXPECT_FALSE(text.contains(';'));
    EXPECT_FALSE(text.contains('\0'));
    EXPECT_EQ(text.indexOf(','), 1);
    EXPECT_EQ(text.indexOf('x'), -1);
    EXPECT_EQ(text.indexOf("b,c"), 2);
    EXPECT_EQ(text.indexOf("c,"), -1);
    EXPECT_EQ(text.indexOf(""), 0);
    EXPECT_EQ(text.indexOf("a,b,c,d"), -1);
    EXPECT_EQ(NarrowView("abcabd", 5).indexOf("abd"), -1) << "the length bounds the text";
    EXPECT_EQ(NarrowView().indexOf("a"), -1);
}

TEST(AbstractString, EndsWith)
{
    EXPECT_TRUE(WideView(u"picture.png").endsWith(u".png"));
    EXPECT_TRUE(WideView(u"picture.png").endsWith(u""));
    EXPECT_FALSE(WideView(u"picture.png").endsWith(u".PNG"));
    EXPECT_FALSE(WideView(u"png").endsWith(u".png"));
}

TEST(AbstractString, HashCodeIsOfTheContent)
{
    EXPECT_EQ(WideView(u"abc").hashCode(), WideView(u"abcd", 3).hashCode());
    EXPECT_NE(WideView(u"abc").hashCode(), WideView(u"acb").hashCode());
    EXPECT_EQ(NarrowView("abc").hashCode(), WideView(u"abc").hashCode());
}

TEST(AbstractMutableString, EmptyTextAllocatesNothing)
{
    zorvan::clearAllocationFailure();
    const Wide text;
    EXPECT_EQ(text.length, 0);
    EXPECT_EQ(text.capacity(), 0);
    EXPECT_EQ(text.data[0], 0);
    Wide other(text);
    other = text;
    other.clear();
    other.trim_leading();
    other.trim_trailing();
    other.toLowerCase();
    other.deleteSubstring(0, 1);
    other.append(u"", 0);
    other.releaseStorage();
    EXPECT_EQ(zorvan::allocationsSeen(), 0u);
}

TEST(AbstractMutableString, AppendsCharacters)
{
    Wide text;
    std::u16string expected;
    for (char16_t unit = 1; unit < 5000; ++unit) {
        text.append(unit);
        expected += unit;
    }
    EXPECT_EQ(textOf(text), expected);
}

TEST(AbstractMutableString, AppendsTexts)
{
    Narrow text;
    std::string expected;
    for (int i = 0; i < 200; ++i) {
        const std::string part(static_cast<std::size_t>(i), static_cast<char>('a' + i % 26));
        text.append(part.data(), i);
        expected += part;
    }
    text.append("never", 0);
    text.append("never", -1);
    EXPECT_EQ(textOf(text), expected);
}

TEST(AbstractMutableString, AppendsPartsOfItself)
{
    Narrow text = narrow("abc");
    for (int i = 0; i < 10; ++i)
        text.append(text.data, text.length);
    std::string expected = "abc";
    for (int i = 0; i < 10; ++i)
        expected += expected;
    EXPECT_EQ(textOf(text), expected);
}

TEST(AbstractMutableString, GrowsByDoubling)
{
    zorvan::clearAllocationFailure();
    Wide text;
    for (int i = 0; i < 1'000'000; ++i)
        text.append(u'x');
    EXPECT_EQ(text.length, 1'000'000);
    EXPECT_LE(zorvan::allocationsSeen(), 20u);
}

TEST(AbstractMutableString, ClearKeepsTheStorage)
{
    Wide text = wide(u"some text");
    const char16_t* data = text.data;
    const std::int32_t capacity = text.capacity();
    text.clear();
    EXPECT_EQ(textOf(text), u"");
    EXPECT_EQ(text.data, data);
    EXPECT_EQ(text.capacity(), capacity);
    text.releaseStorage();
    EXPECT_EQ(textOf(text), u"");
    EXPECT_EQ(text.capacity(), 0);
    text.append(u'x');
    EXPECT_EQ(textOf(text), u"x");
}

TEST(AbstractMutableString, ReservesRoom)
{
    Wide text = wide(u"ab");
    text.reserve(1000);
    EXPECT_GE(text.capacity(), 1000);
    EXPECT_EQ(textOf(text), u"ab");
    zorvan::clearAllocationFailure();
    for (int i = 0; i < 998; ++i)
        text.append(u'x');
    text.reserve(10);
    text.reserve(-1);
    EXPECT_EQ(zorvan::allocationsSeen(), 0u);
}

TEST(AbstractMutableString, CopiesAndMoves)
{
    Narrow text = narrow("text");
    Narrow copy(text);
    copy.append('s');
    EXPECT_EQ(textOf(text), "text");
    EXPECT_EQ(textOf(copy), "texts");
    copy = text;
    EXPECT_EQ(textOf(copy), "text");
    const Narrow& self = copy;
    copy = self;
    EXPECT_EQ(textOf(copy), "text");

    Narrow moved(std::move(text));
    EXPECT_EQ(textOf(moved), "text");
    Narrow target = narrow("a longer text than that");
    target = std::move(moved);
    EXPECT_EQ(textOf(target), "text");
    target = Narrow();
    EXPECT_EQ(textOf(target), "");
}

TEST(AbstractMutableString, DeleteSubstring)
{
    struct Row {
        std::int32_t start;
        std::int32_t end;
        const char* expected;
    };
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    constexpr Row rows[] = {
        {0, 0, "abcdef"},
        {0, 1, "bcdef"},
        {5, 6, "abcde"},
        {1, 4, "aef"},
        {0, 6, ""},
        {4, 2, "abcdef"},
        {-3, 2, "cdef"},
        {4, 99, "abcd"},
        {6, 7, "abcdef"},
        {kLeast, kMost, ""},
        {kMost, kLeast, "abcdef"},
    };
    for (const Row& row : rows) {
        Narrow text = narrow("abcdef");
        text.deleteSubstring(row.start, row.end);
        EXPECT_EQ(textOf(text), row.expected) << row.start << ' ' << row.end;
        Wide units = wide(u"abcdef");
        units.deleteSubstring(row.start, row.end);
        EXPECT_EQ(units.length, text.length);
    }
}

TEST(AbstractMutableString, StripsTheQuotesOfAFontName)
{
    Narrow text = narrow("\"Courier New\"");
    text.deleteSubstring(text.length - 1, text.length);
    text.deleteSubstring(0, 1);
    EXPECT_EQ(textOf(text), "Courier New");
}

TEST(AbstractMutableString, InsertCharAt)
{
    Narrow text;
    text.insertCharAt(0, 'b');
    text.insertCharAt(0, 'a');
    text.insertCharAt(2, 'd');
    text.insertCharAt(2, 'c');
    EXPECT_EQ(textOf(text), "abcd");
    text.insertCharAt(99, '>');
    text.insertCharAt(-99, '<');
    EXPECT_EQ(textOf(text), "<abcd>");
    for (int i = 0; i < 100; ++i)
        text.insertCharAt(1, '-');
    EXPECT_EQ(textOf(text), "<" + std::string(100, '-') + "abcd>");
}

TEST(AbstractMutableString, ReplaceNot)
{
    Narrow text = narrow("#a1zG-\xE4");
    text.replaceNot(NarrowView("0123456789abcdefABCDEF"), '0');
    EXPECT_EQ(textOf(text), "0a10000");
    text.replaceNot(NarrowView(""), 'x');
    EXPECT_EQ(textOf(text), "xxxxxxx");
    Wide units = wide(u"a\u0161\u0162b");
    units.replaceNot(WideView(u"a\u0161"), u'?');
    EXPECT_EQ(textOf(units), u"a\u0161??");
}

TEST(AbstractMutableString, ToLowerCase)
{
    Narrow text = narrow("@AZ[az\xC4");
    text.toLowerCase();
    EXPECT_EQ(textOf(text), "@az[az\xC4");
    Wide units = wide(u"@AZ[az\u00C4\u0130");
    units.toLowerCase();
    EXPECT_EQ(textOf(units), u"@az[az\u00C4\u0130");
}

TEST(AbstractMutableString, Trims)
{
    const std::u16string space = u" \t\n\v\f\r";
    Wide text = wide(space + u"a b" + space);
    text.trim_leading();
    EXPECT_EQ(textOf(text), u"a b" + space);
    text.trim_trailing();
    EXPECT_EQ(textOf(text), u"a b");
    text = wide(space);
    text.trim_leading();
    EXPECT_EQ(textOf(text), u"");
    text = wide(space);
    text.trim_trailing();
    EXPECT_EQ(textOf(text), u"");
    text = wide(u"\u00A0x\u00A0");
    text.trim_leading();
    text.trim_trailing();
    EXPECT_EQ(textOf(text), u"\u00A0x\u00A0") << "a no-break space is no white space";
}

TEST(AbstractMutableString, FailedGrowthThrowsAndLeavesTheText)
{
    Wide text = wide(u"text");
    while (text.length < text.capacity())
        text.append(u'.');
    const std::u16string before = textOf(text);
    const std::u16string more(100, u'x');
    zorvan::failNthAllocation(1);
    EXPECT_THROW(text.append(u'x'), std::bad_alloc);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(text.append(more.data(), 100), std::bad_alloc);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(text.reserve(1000), std::bad_alloc);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(text.insertCharAt(0, u'x'), std::bad_alloc);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(Wide{text}, std::bad_alloc);
    Wide longer = wide(more);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(text = longer, std::bad_alloc);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(textOf(text), before);
}

TEST(AbstractMutableString, GrowthBeyondTheLargestLengthIsAFailedAllocation)
{
    Narrow text = narrow("0123456789");
    // The count is refused before a byte is read or allocated.
    zorvan::clearAllocationFailure();
    EXPECT_THROW(
        text.append(text.data, std::numeric_limits<std::int32_t>::max() - 9), std::bad_alloc);
    EXPECT_EQ(zorvan::allocationsSeen(), 0u);
    EXPECT_EQ(textOf(text), "0123456789");
}
