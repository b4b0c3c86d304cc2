#pragma once

#include "filter/html_filter_context.h"
#include "input/char_reader.h"
#include "scanner/tag_scanner.h"
#include "scanner/text_run.h"
#include "scanner/token.h"
#include "support/wstring.h"

#include <cstdint>

// The markup scanner: from characters to tokens. Text comes character by character; the tree
// builder can take plain stretches of it at once, through scanTextRun.

/// Scan for everything that its inline part leaves over: raw text, given back characters and a
/// buffer that isn't empty.
std::int32_t scanSlow(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context);

/// Markup behind its "<", which has been consumed. buffer: zeroed as far as it held text. Answers
/// the units of the token's text. Markup that the input cuts off is a token with exactly the
/// character flag, with the stream right behind the "<".
std::uint16_t scanMarkup(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context);

/// A token before anything is known of it.
constexpr Token kNullToken = {0, 0, 0, 0xFFFF, 0, 0};

/// The next token outside raw text, with an empty buffer and no characters given back.
inline std::int32_t scanOrdinary(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context)
{
    token = kNullToken;
    const std::int32_t character = readChar(context);
    if (character == '<')
        scanMarkup(token, buffer, limit, context);
    else if (character != kEndOfInput && character != 0xFFFF)
        token.flags = TOKEN_CHARACTER;
    return character;
}

/// The next token, its field `character` apart, which is the caller's. buffer: zero-terminated room
/// for the text of a tag, limit plus 2 units, zeroed at first. Answers the character of a character
/// token, the "<" of markup, 0 for the end tag of raw text, or 0xFFFF or -1 at the end of the
/// input, with STATUS_END_OF_INPUT set. A character of these two values that is no end of the input
/// is a token without flags.
inline std::int32_t Scan(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context)
{
    const bool rawText
        = context.rawTextMode == RAW_TEXT_STRICT || context.rawTextMode == RAW_TEXT_LENIENT;
    if (rawText || buffer[0] != 0 || context.pendingChars->length != 0)
        return scanSlow(token, buffer, limit, context);
    return scanOrdinary(token, buffer, limit, context);
}

/// Skips to the "<" of the next end tag of element, or to the end of the input.
void skipToEndTag(std::uint32_t element, HtmlFilterContext& context);
