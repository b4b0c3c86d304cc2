#pragma once

#include <cstdint>

/// Kinds of tokens. A kind below these is the value of a single character, 0 the end of the input.
enum CssTokenKind : std::int32_t {
    CSS_END = 0,
    CSS_S = 1000, ///< white space
    CSS_CDO,
    CSS_CDC,
    CSS_INCLUDES, ///< ~=
    CSS_DASHMATCH, ///< |=
    CSS_PREFIXMATCH, ///< ^=
    CSS_SUFFIXMATCH, ///< $=
    CSS_SUBSTRINGMATCH, ///< *=
    CSS_STRING,
    CSS_BAD_STRING,
    CSS_IDENT,
    CSS_HASH,
    CSS_IMPORT_SYM,
    CSS_PAGE_SYM,
    CSS_MEDIA_SYM,
    CSS_CHARSET_SYM,
    CSS_FONT_FACE_SYM,
    CSS_ATKEYWORD,
    CSS_IMPORTANT_SYM,
    CSS_EMS,
    CSS_EXS,
    CSS_LENGTH,
    CSS_ANGLE,
    CSS_TIME,
    CSS_FREQ,
    CSS_DIMENSION,
    CSS_PERCENTAGE,
    CSS_NUMBER,
    CSS_URI,
    CSS_BAD_URI,
    CSS_FUNCTION,
    CSS_COLUMN, ///< ||
    CSS_NOT,
    CSS_LANG,
    CSS_NTH_CHILD,
    CSS_NTH_LAST_CHILD,
    CSS_NTH_OF_TYPE,
    CSS_NTH_LAST_OF_TYPE,
    CSS_LINK,
    CSS_VISITED,
    CSS_ACTIVE,
    CSS_HOVER,
    CSS_FOCUS,
    CSS_FIRST_CHILD,
    CSS_LAST_CHILD,
    CSS_FIRST_OF_TYPE,
    CSS_LAST_OF_TYPE,
    CSS_ONLY_CHILD,
    CSS_ONLY_OF_TYPE,
    CSS_ROOT,
    CSS_EMPTY,
    CSS_TARGET,
    CSS_ENABLED,
    CSS_DISABLED,
    CSS_CHECKED,
    CSS_FIRST_LETTER,
    CSS_FIRST_LINE,
    CSS_BEFORE,
    CSS_AFTER,
    CSS_SELECTION,
};
static_assert(CSS_SELECTION == 1059);

/// A token: its kind and its text as it stands in the input, quotes, escapes, "url(" and ")"
/// included. The text lies in the buffer of the tokenizer that made the token, or in a constant,
/// and is good until that gets its next input; it is not zero-terminated.
struct CssToken {
    std::int32_t kind = CSS_END;
    const char* text = "uninitialized";
    std::uint32_t length = 13; ///< bytes of the text
    /// A "-" token was joined to this one: its text counts as beginning with "-".
    bool isNegative = false;
};
