#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zorvan {

/// A character as the number by which texts of both widths compare.
inline std::uint32_t characterNumber(char character)
{
    return static_cast<std::uint8_t>(character);
}
inline std::uint32_t characterNumber(char16_t character) { return character; }

/// The number of characters in front of the terminator; 0 for null.
template <class Ch> std::ptrdiff_t textLength(const Ch* text)
{
    if (text == nullptr)
        return 0;
    std::ptrdiff_t length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

/// Compares the texts by character number, the shorter of two that agree coming first.
template <class A, class B>
std::int32_t compareTexts(const A* a, std::ptrdiff_t aLength, const B* b, std::ptrdiff_t bLength)
{
    const std::ptrdiff_t common = std::min(aLength, bLength);
    for (std::ptrdiff_t i = 0; i < common; ++i) {
        const std::uint32_t left = characterNumber(a[i]);
        const std::uint32_t right = characterNumber(b[i]);
        if (left != right)
            return left < right ? -1 : 1;
    }
    if (aLength == bLength)
        return 0;
    return aLength < bLength ? -1 : 1;
}

/// Compares zero-terminated texts in one pass.
template <class A, class B> std::int32_t compareTerminated(const A* a, const B* b)
{
    while (*a != 0 && characterNumber(*a) == characterNumber(*b)) {
        ++a;
        ++b;
    }
    const std::uint32_t left = characterNumber(*a);
    const std::uint32_t right = characterNumber(*b);
    if (left == right)
        return 0;
    return left < right ? -1 : 1;
}

/// Where the last part of a pattern, in one of the two orders of characters, begins, and its
/// period.
struct MaximalSuffix {
    std::ptrdiff_t before; // the index in front of it, from -1
    std::ptrdiff_t period;
};

template <class Ch>
MaximalSuffix maximalSuffix(const Ch* pattern, std::ptrdiff_t length, bool descending)
{
    MaximalSuffix suffix{-1, 1};
    std::ptrdiff_t candidate = 0;
    std::ptrdiff_t matched = 1;
    while (candidate + matched < length) {
        const std::uint32_t a = characterNumber(pattern[candidate + matched]);
        const std::uint32_t b = characterNumber(pattern[suffix.before + matched]);
        if (a == b) {
            if (matched == suffix.period) {
                candidate += suffix.period;
                matched = 1;
            } else {
                ++matched;
            }
        } else if ((a < b) != descending) {
            candidate += matched;
            matched = 1;
            suffix.period = candidate - suffix.before;
        } else {
            suffix.before = candidate++;
            matched = 1;
            suffix.period = 1;
        }
    }
    return suffix;
}

/// The two-way search: the pattern is cut where its longer maximal suffix begins; the right part is
/// compared forward, then the left one backward, and a mismatch says how far to go on. Time is
/// linear in both texts, whatever they hold, and no memory is needed.
template <class Text, class Pattern> class TwoWaySearch {
public:
    TwoWaySearch(const Pattern* pattern, std::ptrdiff_t length)
        : pattern_(pattern)
        , length_(length)
    {
        const MaximalSuffix up = maximalSuffix(pattern, length, /*descending=*/false);
        const MaximalSuffix down = maximalSuffix(pattern, length, /*descending=*/true);
        const MaximalSuffix longer = up.before > down.before ? up : down;
        cut_ = longer.before;
        period_ = longer.period;
        periodic_ = std::equal(pattern, pattern + cut_ + 1, pattern + period_);
        if (!periodic_)
            period_ = std::max(cut_ + 1, length - cut_ - 1) + 1;
    }

    std::ptrdiff_t find(const Text* text, std::ptrdiff_t textLength) const
    {
        std::ptrdiff_t known = -1; // the end of what a periodic pattern has matched already
        std::ptrdiff_t start = 0;
        while (start <= textLength - length_) {
            const std::ptrdiff_t right = matchRight(text + start, std::max(cut_, known) + 1);
            if (right < length_) {
                start += right - cut_;
                known = -1;
                continue;
            }
            if (matchesLeft(text + start, known))
                return start;
            start += period_;
            known = periodic_ ? length_ - period_ - 1 : -1;
        }
        return -1;
    }

private:
    bool same(Text character, std::ptrdiff_t index) const
    {
        return characterNumber(character) == characterNumber(pattern_[index]);
    }

    std::ptrdiff_t matchRight(const Text* text, std::ptrdiff_t index) const
    {
        while (index < length_ && same(text[index], index))
            ++index;
        return index;
    }

    bool matchesLeft(const Text* text, std::ptrdiff_t known) const
    {
        std::ptrdiff_t index = cut_;
        while (index > known && same(text[index], index))
            --index;
        return index <= known;
    }

    const Pattern* pattern_;
    std::ptrdiff_t length_;
    std::ptrdiff_t cut_;
    std::ptrdiff_t period_;
    bool periodic_;
};

/// The position of the first occurrence of the pattern, -1 when there is none; 0 for an empty one.
template <class Text, class Pattern>
std::ptrdiff_t findText(const Text* text, std::ptrdiff_t textLength, const Pattern* pattern,
    std::ptrdiff_t patternLength)
{
    if (patternLength == 0)
        return 0;
    if (patternLength > textLength)
        return -1;
    return TwoWaySearch<Text, Pattern>(pattern, patternLength).find(text, textLength);
}

} // namespace zorvan
