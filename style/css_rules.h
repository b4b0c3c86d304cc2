#pragma once

#include "style/css_keywords.h"

#include <cstdint>
#include <string_view>

// The rules of the style scanner. Of all rules the one with the longest match counts, and among
// equals the first; each function here gives that answer for the tokens that begin with certain
// bytes. None looks further ahead than its token reaches but for a few bytes, or for the blanks and
// comments behind a "!", in which no other token begins that looks ahead: so each byte is looked at
// a bounded number of times, whatever the text.
//
// `Bytes` is a pointer into a text that ends at a byte 0: const char*, or in tests a class that
// counts what is looked at.

namespace css_rules {

/// A match of a rule.
template <class Bytes> struct Match {
    std::int32_t kind;
    Bytes end;
};

/// Something with an end of its own that the text may cut off.
template <class Bytes> struct Closed {
    Bytes end;
    bool isComplete;
};

/// Behind all bytes of a class.
template <class Bytes> Bytes skipAll(Bytes at, ByteClass wanted)
{
    while (isIn(*at, wanted))
        ++at;
    return at;
}

/// Behind an escape, from its backslash on; the place itself when no escape stands there.
template <class Bytes> Bytes skipEscape(Bytes at)
{
    Bytes end = at + 1;
    if (isIn(*end, BYTE_HEX)) {
        for (int digits = 0; digits < 6 && isIn(*end, BYTE_HEX); ++digits)
            ++end;
        return skipOneSpace(end);
    }
    const char escaped = *end;
    const bool isNone = escaped == 0 || escaped == '\n' || escaped == '\r' || escaped == '\f';
    return isNone ? at : end + 1;
}

/// Behind the bytes and escapes that a name goes on with.
template <class Bytes> Bytes skipName(Bytes at)
{
    for (;;) {
        at = skipAll(at, BYTE_NAME);
        if (*at != '\\')
            return at;
        const Bytes end = skipEscape(at);
        if (end == at)
            return at;
        at = end;
    }
}

/// Behind an identifier; the place itself when none stands there.
template <class Bytes> Bytes skipIdent(Bytes at)
{
    const Bytes start = *at == '-' ? at + 1 : at;
    if (isIn(*start, BYTE_NAME_START))
        return skipName(start + 1);
    if (*start != '\\')
        return at;
    const Bytes end = skipEscape(start);
    return end == start ? at : skipName(end);
}

/// Behind a string, from its quote on. Cut off, it ends before the line end, or behind the last
/// byte of the text, even if that is a backslash.
template <class Bytes> Closed<Bytes> skipString(Bytes at)
{
    const char quote = *at;
    ++at;
    for (;;) {
        at = skipAll(at, BYTE_STRING);
        const char byte = *at;
        if (byte == quote)
            return {at + 1, true};
        if (byte == '\\') {
            const Bytes end = skipEscape(at);
            at = end != at ? end : skipOneSpace(at + 1);
        } else if (byte == '"' || byte == '\'') {
            ++at;
        } else {
            return {at, false};
        }
    }
}

/// Behind a comment, from its "/*" on. The slash of "/*" closes none.
template <class Bytes> Closed<Bytes> skipComment(Bytes at)
{
    at += 2;
    for (;;) {
        while (*at != '*' && *at != 0)
            ++at;
        if (*at == 0)
            return {at, false};
        ++at;
        if (*at == '/')
            return {at + 1, true};
    }
}

/// What is left when no rule fits.
template <class Bytes> Match<Bytes> matchCharacter(Bytes at)
{
    return {static_cast<std::uint8_t>(*at), at + 1};
}

/// The end of a url without quotes: a backslash in it is a byte like any other or begins an escape,
/// whichever reaches further. So "\\)" is a backslash and an escape, not the other way round.
template <class Bytes> Bytes skipBareUrl(Bytes at)
{
    for (;;) {
        at = skipAll(at, BYTE_URL);
        if (*at != '\\')
            return at;
        const Bytes end = at[1] == '\\' ? at : skipEscape(at);
        at = end == at ? at + 1 : end;
    }
}

/// Behind "url(": a URI, or a bad one with as much as looks like one.
template <class Bytes> Match<Bytes> matchUri(Bytes at)
{
    at = skipAll(at, BYTE_SPACE);
    Bytes content = at;
    bool closedByEscape = false;
    if (*at == '"' || *at == '\'') {
        const Closed<Bytes> string = skipString(at);
        if (!string.isComplete)
            return {CSS_BAD_URI, string.end};
        content = string.end;
    } else {
        content = skipBareUrl(at);
        // QUIRK(CssTokenizer.EscapedParenthesisClosesUri): taken for a plain byte, the backslash
        // leaves the ")" to close the URI. It counts where it is no shorter than the bad one.
        closedByEscape = content != at && *(content - 1) == ')';
    }
    const Bytes end = skipAll(content, BYTE_SPACE);
    if (*end == ')')
        return {CSS_URI, end + 1};
    return {closedByEscape && end == content ? CSS_URI : CSS_BAD_URI, end};
}

/// Whether a stretch of text is a word in any case; escapes do not count. The word: lower case.
template <class Bytes> bool isWord(Bytes begin, Bytes end, std::string_view word)
{
    if (end - begin != static_cast<std::ptrdiff_t>(word.size()))
        return false;
    for (const char byte : word) {
        if (lowerCase(*begin) != byte)
            return false;
        ++begin;
    }
    return true;
}

/// An identifier, a function or a URI; a "-" or a backslash may begin none of them.
template <class Bytes> Match<Bytes> matchName(Bytes at)
{
    const Bytes end = skipIdent(at);
    if (end == at)
        return matchCharacter(at);
    if (*end != '(')
        return {CSS_IDENT, end};
    if (isWord(at, end, "url"))
        return matchUri(end + 1);
    return {CSS_FUNCTION, end + 1};
}

/// Up to four bytes as a number, so that a unit can be switched over.
constexpr std::uint32_t packUnit(std::string_view unit)
{
    std::uint32_t packed = 0;
    for (const char byte : unit)
        packed = packed << 8 | static_cast<std::uint8_t>(byte);
    return packed;
}

/// The kind of a number with a unit.
template <class Bytes> CssTokenKind unitKind(Bytes unit, Bytes end)
{
    if (end - unit > 4)
        return CSS_DIMENSION;
    std::uint32_t packed = 0;
    for (; unit != end; ++unit)
        packed = packed << 8 | static_cast<std::uint8_t>(lowerCase(*unit));
    switch (packed) {
    case packUnit("em"):
        return CSS_EMS;
    case packUnit("ex"):
        return CSS_EXS;
    case packUnit("px"):
    case packUnit("cm"):
    case packUnit("mm"):
    case packUnit("in"):
    case packUnit("pt"):
    case packUnit("pc"):
        return CSS_LENGTH;
    case packUnit("deg"):
    case packUnit("rad"):
    case packUnit("grad"):
        return CSS_ANGLE;
    case packUnit("ms"):
    case packUnit("s"):
        return CSS_TIME;
    case packUnit("hz"):
    case packUnit("khz"):
        return CSS_FREQ;
    }
    return CSS_DIMENSION;
}

/// A number with what belongs to it. A digit stands here, or "." and a digit.
template <class Bytes> Match<Bytes> matchNumber(Bytes at)
{
    Bytes end = skipAll(at, BYTE_DIGIT);
    if (end[0] == '.' && isIn(end[1], BYTE_DIGIT))
        end = skipAll(end + 2, BYTE_DIGIT);
    if (*end == '%')
        return {CSS_PERCENTAGE, end + 1};
    const Bytes unitEnd = skipIdent(end);
    if (unitEnd == end)
        return {CSS_NUMBER, end};
    return {unitKind(end, unitEnd), unitEnd};
}

template <class Bytes> Match<Bytes> matchAt(Bytes at)
{
    const Bytes name = at + 1;
    const Bytes end = skipIdent(name);
    if (end == name)
        return matchCharacter(at);
    for (const AtKeyword& keyword : kAtKeywords) {
        if (skipKeyword(name, keyword.name) == end)
            return {keyword.kind, end};
    }
    // QUIRK(CssTokenizer.CharsetNeedsBlank): one blank belongs to the token, and no other byte does
    // in its place.
    if (*end == ' ' && isWord(name, end, "charset"))
        return {CSS_CHARSET_SYM, end + 1};
    // QUIRK(CssTokenizer.FontFaceHasNoEscapes): unlike its neighbors.
    if (isWord(name, end, "font-face"))
        return {CSS_FONT_FACE_SYM, end};
    return {CSS_ATKEYWORD, end};
}

template <class Bytes> Match<Bytes> matchImportant(Bytes at)
{
    Bytes word = at + 1;
    for (;;) {
        word = skipAll(word, BYTE_SPACE);
        if (word[0] != '/' || word[1] != '*')
            break;
        const Closed<Bytes> comment = skipComment(word);
        if (!comment.isComplete)
            return matchCharacter(at);
        word = comment.end;
    }
    const Bytes end = skipKeyword(word, "important");
    return end == word ? matchCharacter(at) : Match<Bytes>{CSS_IMPORTANT_SYM, end};
}

/// A keyword behind one or two colons. It is matched without regard to what follows it.
template <class Bytes> Match<Bytes> matchColon(Bytes at)
{
    const bool isDouble = at[1] == ':';
    const Bytes name = at + (isDouble ? 2 : 1);
    const char letter = readSpelled(name).byte;
    if (letter < 'a' || letter > 'z')
        return matchCharacter(at);
    const auto index = static_cast<std::size_t>(letter - 'a');
    const Colons wrong = isDouble ? Colons::One : Colons::Two;
    for (std::size_t i = kFirstPseudoKeyword[index]; i < kFirstPseudoKeyword[index + 1]; ++i) {
        const PseudoKeyword& keyword = kPseudoKeywords[i];
        const Bytes end = keyword.colons == wrong ? name : skipKeyword(name, keyword.name);
        if (end != name)
            return {keyword.kind, end};
    }
    return matchCharacter(at);
}

/// The kind that a byte makes together with a "=" behind it.
constexpr CssTokenKind operatorKind(char byte)
{
    switch (byte) {
    case '~':
        return CSS_INCLUDES;
    case '^':
        return CSS_PREFIXMATCH;
    case '$':
        return CSS_SUFFIXMATCH;
    }
    return CSS_SUBSTRINGMATCH;
}

template <class Bytes> Match<Bytes> matchBar(Bytes at)
{
    if (at[1] == '=')
        return {CSS_DASHMATCH, at + 2};
    if (at[1] == '|')
        return {CSS_COLUMN, at + 2};
    return matchCharacter(at);
}

template <class Bytes> Match<Bytes> matchHash(Bytes at)
{
    const Bytes end = skipName(at + 1);
    return end == at + 1 ? matchCharacter(at) : Match<Bytes>{CSS_HASH, end};
}

template <class Bytes> Match<Bytes> matchLess(Bytes at)
{
    if (at[1] == '!' && at[2] == '-' && at[3] == '-')
        return {CSS_CDO, at + 4};
    return matchCharacter(at);
}

template <class Bytes> Match<Bytes> matchMinus(Bytes at)
{
    if (at[1] == '-' && at[2] == '>')
        return {CSS_CDC, at + 3};
    return matchName(at);
}

/// The token that begins at a place where no comment does; kind 0 and no bytes at the end.
template <class Bytes> Match<Bytes> matchToken(Bytes at)
{
    switch (tokenStart(*at)) {
    case TokenStart::End:
        return {CSS_END, at};
    case TokenStart::Space:
        return {CSS_S, skipAll(at + 1, BYTE_SPACE)};
    case TokenStart::Name:
        return matchName(at);
    case TokenStart::Digit:
        return matchNumber(at);
    case TokenStart::Dot:
        return isIn(at[1], BYTE_DIGIT) ? matchNumber(at) : matchCharacter(at);
    case TokenStart::Quote: {
        const Closed<Bytes> string = skipString(at);
        return {string.isComplete ? CSS_STRING : CSS_BAD_STRING, string.end};
    }
    case TokenStart::Colon:
        return matchColon(at);
    case TokenStart::Minus:
        return matchMinus(at);
    case TokenStart::Hash:
        return matchHash(at);
    case TokenStart::At:
        return matchAt(at);
    case TokenStart::Exclamation:
        return matchImportant(at);
    case TokenStart::Operator:
        return at[1] == '=' ? Match<Bytes>{operatorKind(*at), at + 2} : matchCharacter(at);
    case TokenStart::Bar:
        return matchBar(at);
    case TokenStart::Less:
        return matchLess(at);
    case TokenStart::Slash:
    case TokenStart::Character:
        break;
    }
    return matchCharacter(at);
}

/// Behind the comments that begin at a place. One that is not closed goes to the end of the text.
template <class Bytes> Bytes skipComments(Bytes at)
{
    while (at[0] == '/' && at[1] == '*')
        at = skipComment(at).end;
    return at;
}

} // namespace css_rules
