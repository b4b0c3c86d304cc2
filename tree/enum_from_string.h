#pragma once

#include "support/export.h"

#include <cstdint>

// Texts of attributes as enumerators. The enumerators are the positions of the names in sorted
// lists and go out to hosts as numbers; 0 is none of them.

enum EFontSize : std::uint32_t {
    FONT_SIZE_NONE = 0,
    FONT_SIZE_FIVE = 1,
    FONT_SIZE_FIVE_LARGER = 2,
    FONT_SIZE_FIVE_SMALLER = 3,
    FONT_SIZE_FOUR = 4,
    FONT_SIZE_FOUR_LARGER = 5,
    FONT_SIZE_FOUR_SMALLER = 6,
    FONT_SIZE_ONE = 7,
    FONT_SIZE_ONE_LARGER = 8,
    FONT_SIZE_ONE_SMALLER = 9,
    FONT_SIZE_SEVEN = 10,
    FONT_SIZE_SIX = 11,
    FONT_SIZE_SIX_LARGER = 12,
    FONT_SIZE_SIX_SMALLER = 13,
    FONT_SIZE_THREE = 14,
    FONT_SIZE_THREE_LARGER = 15,
    FONT_SIZE_THREE_SMALLER = 16,
    FONT_SIZE_TWO = 17,
    FONT_SIZE_TWO_LARGER = 18,
    FONT_SIZE_TWO_SMALLER = 19,
};

enum EHorizAlign : std::uint32_t {
    HORIZ_ALIGN_NONE = 0,
    HORIZ_ALIGN_CENTER = 1,
    HORIZ_ALIGN_JUSTIFY = 2,
    HORIZ_ALIGN_LEFT = 3,
    HORIZ_ALIGN_RIGHT = 4,
};

enum EInputType : std::uint32_t {
    INPUT_TYPE_NONE = 0,
    INPUT_TYPE_BUTTON = 1,
    INPUT_TYPE_CHECKBOX = 2,
    INPUT_TYPE_FILE = 3,
    INPUT_TYPE_HIDDEN = 4,
    INPUT_TYPE_IMAGE = 5,
    INPUT_TYPE_PASSWORD = 6,
    INPUT_TYPE_RADIO = 7,
    INPUT_TYPE_RESET = 8,
    INPUT_TYPE_SUBMIT = 9,
    INPUT_TYPE_TEXT = 10,
};

enum ELiType : std::uint32_t {
    LI_TYPE_NONE = 0,
    LI_TYPE_CIRCLE = 1,
    LI_TYPE_DISC = 2,
    LI_TYPE_LOWER_ALPHA = 3,
    LI_TYPE_LOWER_ROMAN = 4,
    LI_TYPE_NUMERAL = 5,
    LI_TYPE_SQUARE = 6,
    LI_TYPE_UPPER_ALPHA = 7,
    LI_TYPE_UPPER_ROMAN = 8,
};

enum ESpacerType : std::uint32_t {
    SPACER_TYPE_NONE = 0,
    SPACER_TYPE_BLOCK = 1,
    SPACER_TYPE_HORIZONTAL = 2,
    SPACER_TYPE_VERTICAL = 3,
};

enum ETableFrame : std::uint32_t {
    TABLE_FRAME_NONE = 0,
    TABLE_FRAME_ABOVE = 1,
    TABLE_FRAME_BELOW = 2,
    TABLE_FRAME_BORDER = 3,
    TABLE_FRAME_BOX = 4,
    TABLE_FRAME_HSIDES = 5,
    TABLE_FRAME_LHS = 6,
    TABLE_FRAME_RHS = 7,
    TABLE_FRAME_VOID = 8,
    TABLE_FRAME_VSIDES = 9,
};

enum ETableRules : std::uint32_t {
    TABLE_RULES_UNKNOWN = 0,
    TABLE_RULES_ALL = 1,
    TABLE_RULES_COLS = 2,
    TABLE_RULES_GROUPS = 3,
    TABLE_RULES_NONE = 4,
    TABLE_RULES_ROWS = 5,
};

enum ETextDirection : std::uint32_t {
    TEXT_DIRECTION_NONE = 0,
    TEXT_DIRECTION_LTR = 1,
    TEXT_DIRECTION_RTL = 2,
};

enum EVertAlign : std::uint32_t {
    VERT_ALIGN_NONE = 0,
    VERT_ALIGN_BASELINE = 1,
    VERT_ALIGN_BOTTOM = 2,
    VERT_ALIGN_MIDDLE = 3,
    VERT_ALIGN_TOP = 4,
};

extern "C" {

/// Each answers the enumerator of a zero-terminated text in any case (the 26 letters of ASCII are
/// folded); 0 for a text that is no name, an empty one and null.
ZV_EXPORT std::uint32_t EFontSizeFromString(const char16_t* text);
/// Knows "middle", "bleedright" and "indent", too, as center, right and justify.
ZV_EXPORT std::uint32_t EHorizAlignFromString(const char16_t* text);
ZV_EXPORT std::uint32_t EInputTypeFromString(const char16_t* text);
ZV_EXPORT std::uint32_t ELiTypeFromString(const char16_t* text);
ZV_EXPORT std::uint32_t ESpacerTypeFromString(const char16_t* text);
ZV_EXPORT std::uint32_t ETableFrameFromString(const char16_t* text);
ZV_EXPORT std::uint32_t ETableRulesFromString(const char16_t* text);
ZV_EXPORT std::uint32_t ETextDirectionFromString(const char16_t* text);
ZV_EXPORT std::uint32_t EVertAlignFromString(const char16_t* text);
}
