#include "output/list_markers.h"

#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

using namespace testing_support;

namespace {

const Lines kGap(2, "SOEmitSpecial 6");

std::u16string numberIn(std::uint32_t style, std::uint16_t number)
{
    return markerNumber(number, style).data();
}

Lines markerLines(std::uint32_t style, std::uint16_t number)
{
    OutputContext document;
    document.context.lastBlockMargin = 7;
    deliverMarker(style, number, document.context);
    EXPECT_EQ(document.context.paragraphFlags & PARAGRAPH_HAS_CONTENT, PARAGRAPH_HAS_CONTENT);
    return document.host.takeCalls();
}

} // namespace

TEST(ListMarkers, StyleOfEachKeyword)
{
    struct Row {
        ZVCSSValue keyword;
        std::uint32_t style;
    };
    const Row rows[] = {
        {VALUE_NONE, MARKER_NONE},
        {VALUE_DISC, MARKER_DISC},
        {VALUE_CIRCLE, MARKER_CIRCLE},
        {VALUE_SQUARE, MARKER_SQUARE},
        {VALUE_DECIMAL, MARKER_DECIMAL},
        {VALUE_DECIMAL_LEADING_ZERO, MARKER_DECIMAL},
        {VALUE_GEORGIAN, MARKER_DECIMAL},
        {VALUE_LOWER_GREEK, MARKER_DECIMAL},
        {VALUE_UPPER_ALPHA, MARKER_UPPER_ALPHA},
        {VALUE_UPPER_LATIN, MARKER_UPPER_ALPHA},
        {VALUE_LOWER_ALPHA, MARKER_LOWER_ALPHA},
        {VALUE_LOWER_LATIN, MARKER_LOWER_ALPHA},
        {VALUE_UPPER_ROMAN, MARKER_UPPER_ROMAN},
        {VALUE_LOWER_ROMAN, MARKER_LOWER_ROMAN},
    };
    constexpr std::uint32_t kKeywords = 256;
    for (std::uint32_t keyword = 0; keyword < kKeywords; ++keyword) {
        const Row* row = std::find_if(std::begin(rows), std::end(rows),
            [keyword](const Row& candidate) { return candidate.keyword == keyword; });
        const bool isListed = row != std::end(rows);
        EXPECT_EQ(markerStyleOf(keyword, 77), isListed ? row->style : 77) << keyword;
    }
}

TEST(ListMarkers, Numbers)
{
    struct Row {
        std::uint32_t style;
        std::uint16_t number;
        const char16_t* text;
    };
    const Row rows[] = {
        {MARKER_DECIMAL, 0, u"0"},
        {MARKER_DECIMAL, 1, u"1"},
        {MARKER_DECIMAL, 10, u"10"},
        {MARKER_DECIMAL, 65'535, u"65535"},
        {99, 12, u"12"},
        {MARKER_UPPER_ALPHA, 0, u""},
        {MARKER_UPPER_ALPHA, 1, u"A"},
        {MARKER_UPPER_ALPHA, 26, u"Z"},
        {MARKER_UPPER_ALPHA, 28, u"AB"},
        {MARKER_UPPER_ALPHA, 65'535, u"CRXO"},
        {MARKER_LOWER_ALPHA, 0, u""},
        {MARKER_LOWER_ALPHA, 26, u"z"},
        {MARKER_LOWER_ALPHA, 27, u"aa"},
        {MARKER_LOWER_ALPHA, 52, u"az"},
        {MARKER_LOWER_ALPHA, 53, u"ba"},
        {MARKER_LOWER_ALPHA, 702, u"zz"},
        {MARKER_LOWER_ALPHA, 703, u"aaa"},
        {MARKER_UPPER_ROMAN, 0, u""},
        {MARKER_UPPER_ROMAN, 1, u"I"},
        {MARKER_UPPER_ROMAN, 10, u"X"},
        {MARKER_UPPER_ROMAN, 444, u"CDXLIV"},
        {MARKER_UPPER_ROMAN, 1'990, u"MCMXC"},
        {MARKER_UPPER_ROMAN, 2'006, u"MMVI"},
        {MARKER_UPPER_ROMAN, 3'888, u"MMMDCCCLXXXVIII"},
        {MARKER_UPPER_ROMAN, 3'999, u"MMMCMXCIX"},
        {MARKER_UPPER_ROMAN, 4'000, u"MMMCMXCIX"},
        {MARKER_UPPER_ROMAN, 65'535, u"MMMCMXCIX"},
        {MARKER_LOWER_ROMAN, 0, u""},
        {MARKER_LOWER_ROMAN, 1'666, u"mdclxvi"},
        {MARKER_LOWER_ROMAN, 3'999, u"mmmcmxcix"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(numberIn(row.style, row.number), row.text) << row.style << ' ' << row.number;
}

TEST(ListMarkers, EveryRomanDigit)
{
    const char16_t* const digits[]
        = {u"", u"i", u"ii", u"iii", u"iv", u"v", u"vi", u"vii", u"viii", u"ix"};
    for (std::uint16_t i = 0; i < std::size(digits); ++i)
        EXPECT_EQ(numberIn(MARKER_LOWER_ROMAN, i), digits[i]);
}

TEST(ListMarkers, GlyphsAreFollowedByTheGap)
{
    struct Row {
        std::uint32_t style;
        const char* glyph;
    };
    const Row rows[] = {
        {MARKER_DISC, "\\u2022"},
        {MARKER_CIRCLE, "\\u25cb"},
        {MARKER_SQUARE, "\\u25aa"},
    };
    for (const Row& row : rows) {
        Lines expected{"SOEmitText \"" + std::string(row.glyph) + "\" 1 347078656"};
        expected.insert(expected.end(), kGap.begin(), kGap.end());
        EXPECT_EQ(markerLines(row.style, 3), expected);
    }
}

TEST(ListMarkers, NumbersEndWithAFullStop)
{
    const std::string stop = "SOEmitText \".\" 1 347078656";
    EXPECT_EQ(markerLines(MARKER_LOWER_ROMAN, 4), (Lines{textLine("iv"), stop, kGap[0], kGap[1]}));
    // A number without digits leaves the full stop alone.
    EXPECT_EQ(markerLines(MARKER_LOWER_ROMAN, 0), (Lines{stop, kGap[0], kGap[1]}));
}
