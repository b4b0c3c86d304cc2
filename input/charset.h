#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

/// Character set codes: the filter's own 16-bit numbers. Bit 12: characters are delivered as
/// Unicode; bits 13 and 14: more than one byte a character, or states.
enum CharSetCode : std::uint16_t {
    CHARSET_UTF16 = 0x1000,
    CHARSET_EUC_JP = 0x2004,
    CHARSET_SHIFT_JIS = 0x2005,
    CHARSET_BIG5 = 0x2006,
    CHARSET_CHINESE_EUC = 0x2007,
    CHARSET_GB2312 = 0x2008,
    CHARSET_KOREAN = 0x2009,
    CHARSET_ISO_2022_JP = 0x201D,
    CHARSET_HZ = 0x2029,
    CHARSET_ISO_2022_KR = 0x202C,
    CHARSET_UTF8 = 0x3027,
    CHARSET_JIS = 0x4003,
    CHARSET_GB_8BIT = 0x402B,
    CHARSET_WINDOWS_1250 = 0x8001,
    CHARSET_WINDOWS_1251 = 0x800A,
    CHARSET_KOI8_R = 0x800B,
    CHARSET_DEFAULT = 0x9000, ///< single bytes, 0x80 to 0x9F replaced
};

/// The code of a host character set identifier, 0 if unknown.
std::uint16_t charSetCodeFromId(std::uint32_t id);

/// The host identifier under which characters of a code go out; UTF-16 for any unknown code.
std::uint32_t charSetIdFromCode(std::uint16_t code);

/// The code of a name (zero-terminated; ends at a blank, quote or semicolon too), 0 if unknown.
std::uint16_t charSetCodeFromName(const char16_t* name, HtmlFilterContext& context);

/// The code that the text of a meta tag, or of its content value, declares; 0 if none. Works on a
/// copy in tokenBuffer.
std::uint16_t charSetFromMeta(const char16_t* text, HtmlFilterContext& context);

/// Sets metaCharSet from a meta element of the tree, when it declares a character set.
void metaElementCharSet(const HtmlTreeNode& meta, HtmlFilterContext& context);

/// The file id's character set: defaultCharSet at a section's start. A file of id 1181 is decided
/// by its first byte.
void chooseDefaultCharSet(HtmlFilterContext& context);

/// Settles currentCharSet at a section's start: request, then byte order mark, which is skipped.
void chooseSectionCharSet(HtmlFilterContext& context);

/// Applies a code that the prescan found in a meta tag to currentCharSet.
void applyPrescanCharSet(std::uint16_t code, HtmlFilterContext& context);
