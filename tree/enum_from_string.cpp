#include "tree/enum_from_string.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace {

// The position of a name is the number that goes out, so a name never moves.
constexpr auto kFontSizeNames
    = std::to_array<std::string_view>({"", "five", "fivelarger", "fivesmaller", "four",
        "fourlarger", "foursmaller", "one", "onelarger", "onesmaller", "seven", "six", "sixlarger",
        "sixsmaller", "three", "threelarger", "threesmaller", "two", "twolarger", "twosmaller"});
constexpr auto kHorizAlignNames
    = std::to_array<std::string_view>({"", "center", "justify", "left", "right"});
constexpr auto kInputTypeNames = std::to_array<std::string_view>({"", "button", "checkbox", "file",
    "hidden", "image", "password", "radio", "reset", "submit", "text"});
constexpr auto kLiTypeNames = std::to_array<std::string_view>({"", "circle", "disc", "loweralpha",
    "lowerroman", "numeral", "square", "upperalpha", "upperroman"});
constexpr auto kSpacerTypeNames
    = std::to_array<std::string_view>({"", "block", "horizontal", "vertical"});
constexpr auto kTableFrameNames = std::to_array<std::string_view>(
    {"", "above", "below", "border", "box", "hsides", "lhs", "rhs", "void", "vsides"});
constexpr auto kTableRulesNames
    = std::to_array<std::string_view>({"", "all", "cols", "groups", "none", "rows"});
constexpr auto kTextDirectionNames = std::to_array<std::string_view>({"", "ltr", "rtl"});
constexpr auto kVertAlignNames
    = std::to_array<std::string_view>({"", "baseline", "bottom", "middle", "top"});

template <std::size_t Count>
constexpr bool isAscending(const std::array<std::string_view, Count>& names)
{
    for (std::size_t i = 1; i < Count; ++i) {
        if (names[i - 1] >= names[i])
            return false;
    }
    return true;
}

static_assert(isAscending(kFontSizeNames) && isAscending(kHorizAlignNames)
        && isAscending(kInputTypeNames) && isAscending(kLiTypeNames)
        && isAscending(kSpacerTypeNames) && isAscending(kTableFrameNames)
        && isAscending(kTableRulesNames) && isAscending(kTextDirectionNames)
        && isAscending(kVertAlignNames),
    "the mappers search by halves");

static_assert(kFontSizeNames[FONT_SIZE_TWO_SMALLER] == "twosmaller"
    && kHorizAlignNames[HORIZ_ALIGN_RIGHT] == "right" && kInputTypeNames[INPUT_TYPE_TEXT] == "text"
    && kLiTypeNames[LI_TYPE_UPPER_ROMAN] == "upperroman"
    && kSpacerTypeNames[SPACER_TYPE_VERTICAL] == "vertical"
    && kTableFrameNames[TABLE_FRAME_VSIDES] == "vsides"
    && kTableRulesNames[TABLE_RULES_ROWS] == "rows"
    && kTextDirectionNames[TEXT_DIRECTION_RTL] == "rtl"
    && kVertAlignNames[VERT_ALIGN_TOP] == "top");

char16_t foldedUnit(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

/// Compares a text, folded to lower case, with a name: 0 when equal, else the sign of the first
/// difference.
int compareFolded(const char16_t* text, std::string_view name)
{
    for (const char letter : name) {
        const char16_t unit = foldedUnit(*text++);
        const auto other = static_cast<unsigned char>(letter);
        if (unit != other)
            return unit < other ? -1 : 1;
    }
    return *text == 0 ? 0 : 1;
}

template <std::size_t Count>
std::uint32_t positionOf(const char16_t* text, const std::array<std::string_view, Count>& names)
{
    if (text == nullptr)
        return 0;
    std::size_t low = 0;
    std::size_t high = Count;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const int order = compareFolded(text, names[middle]);
        if (order == 0)
            return static_cast<std::uint32_t>(middle);
        if (order < 0)
            high = middle;
        else
            low = middle + 1;
    }
    return 0;
}

} // namespace

std::uint32_t EFontSizeFromString(const char16_t* text) { return positionOf(text, kFontSizeNames); }

std::uint32_t EHorizAlignFromString(const char16_t* text)
{
    if (text == nullptr)
        return HORIZ_ALIGN_NONE;
    // Older names, which documents still use.
    if (compareFolded(text, "middle") == 0)
        return HORIZ_ALIGN_CENTER;
    if (compareFolded(text, "bleedright") == 0)
        return HORIZ_ALIGN_RIGHT;
    if (compareFolded(text, "indent") == 0)
        return HORIZ_ALIGN_JUSTIFY;
    return positionOf(text, kHorizAlignNames);
}

std::uint32_t EInputTypeFromString(const char16_t* text)
{
    return positionOf(text, kInputTypeNames);
}

std::uint32_t ELiTypeFromString(const char16_t* text) { return positionOf(text, kLiTypeNames); }

std::uint32_t ESpacerTypeFromString(const char16_t* text)
{
    return positionOf(text, kSpacerTypeNames);
}

std::uint32_t ETableFrameFromString(const char16_t* text)
{
    return positionOf(text, kTableFrameNames);
}

std::uint32_t ETableRulesFromString(const char16_t* text)
{
    return positionOf(text, kTableRulesNames);
}

std::uint32_t ETextDirectionFromString(const char16_t* text)
{
    return positionOf(text, kTextDirectionNames);
}

std::uint32_t EVertAlignFromString(const char16_t* text)
{
    return positionOf(text, kVertAlignNames);
}
