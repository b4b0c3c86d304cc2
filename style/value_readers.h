#pragma once

#include "filter/html_filter_context.h"
#include "style/css_token_list.h"
#include "tree/html_value.h"

#include <cstdint>

// Reads single values of declarations. The values come from the cache of the context; null is no
// value, and no declaration is made of it.

/// Joins every "-" token to the number right behind it, dimensions, angles and the like included.
/// A number that got more than one can't be read any more.
void joinSigns(CssTokenList& tokens);

/// A keyword by the text alone, whatever the kind of the token: 700 is one.
HtmlValue* readKeyword(const CssToken& token, HtmlFilterContext& context);

/// Whether readMeasure looks at tokens of this kind.
bool isMeasure(std::int32_t kind);

/// A keyword, a length with a unit or a percentage.
HtmlValue* readMeasure(const CssToken& token, HtmlFilterContext& context);

/// As readMeasure, but for percentages, which are none.
HtmlValue* readWidth(const CssToken& token, HtmlFilterContext& context);

/// As readMeasure; a bare number is pixels.
HtmlValue* readSize(const CssToken& token, HtmlFilterContext& context);

/// As readMeasure; a bare number is a number value without its fraction.
HtmlValue* readLineHeight(const CssToken& token, HtmlFilterContext& context);

/// One of the named sizes, a length or a percentage.
HtmlValue* readFontSize(const CssToken& token, HtmlFilterContext& context);

/// The font's name without its quotes; a generic family is the font that stands for it.
HtmlValue* readFontFamily(const CssToken& token, HtmlFilterContext& context);

/// A color by name, by digits or by a function, which begins at index and is read to its ")", where
/// index is left. After a function that can't be read index is at the token where that was seen.
HtmlValue* readColor(CssTokenList& tokens, std::int32_t& index, HtmlFilterContext& context);

/// The text as a string: each byte one unit.
HtmlValue* stringOf(const CssToken& token, HtmlFilterContext& context);

/// The number at the beginning of the text; 0 when there is none.
double numberOf(const CssToken& token);
