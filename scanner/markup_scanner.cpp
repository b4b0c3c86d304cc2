#include "scanner/markup_scanner.h"

#include "scanner/markup_units.h"
#include "scanner/name_copy.h"
#include "scanner/special_markup.h"

namespace {

constexpr std::uint32_t kLongestSkippedName = 255;

constexpr CharacterSet kSkippedNameCharacters = kNameCharacters | kNameExtras;

bool isLetter(std::uint16_t unit)
{
    return (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z');
}

bool isInputEnd(std::int32_t character) { return character == kEndOfInput || character == 0xFFFF; }

/// The name of a tag, in the buffer too. Answers its ZVHTMLElement, 0 for an unknown one.
std::uint32_t scanTagName(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    const CharacterSet& extras, HtmlFilterContext& context)
{
    NameCopy name;
    for (const char16_t* unit = copyName(buffer, position, limit, extras, context); *unit != 0;
         ++unit)
        name.add(*unit);
    return name.element();
}

/// White space behind a tag's name, and attributes if there are any.
void scanTagInside(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    standAt(MarkupPlace::BehindTagName, context);
    copySpace(buffer, position, limit, context);
    const std::uint16_t next = peekChar(1, context);
    if (next != '>' && next != '/')
        scanAttributes(buffer, position, limit, context);
}

void scanToTagEnd(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    standAt(MarkupPlace::ToTagEnd, context);
    copyUntil(buffer, position, limit, ">", /*keepDelimiter=*/true, context);
}

void scanStartTag(Token& token, char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    HtmlFilterContext& context)
{
    token.element = scanTagName(buffer, position, limit, kStartTagExtras, context);
    scanTagInside(buffer, position, limit, context);
    standAt(MarkupPlace::ToTagEnd, context);
    copySpace(buffer, position, limit, context);
    // QUIRK(MarkupScanner.SelfClosingWithoutAttributesOnly): attributes are read up to the ">", a
    // "/" among them is the name of one.
    if (peekChar(1, context) == '/')
        token.flags |= TOKEN_SELF_CLOSING;
    scanToTagEnd(buffer, position, limit, context);
    token.flags |= TOKEN_START_TAG;
}

void scanEndTag(Token& token, char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    HtmlFilterContext& context)
{
    appendUnit(readChar(context), buffer, position, limit); // the "/"
    token.element = scanTagName(buffer, position, limit, kNameExtras, context);
    scanTagInside(buffer, position, limit, context);
    scanToTagEnd(buffer, position, limit, context);
    token.flags |= TOKEN_END_TAG;
}

/// The markup behind a "<" that stands in the buffer. Answers false when it can't be read to its
/// end.
bool scanMarkupKind(Token& token, char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    HtmlFilterContext& context)
{
    std::uint16_t next = peekChar(1, context);
    if (next == '!')
        next = scanDeclaration(buffer, position, limit, context);
    else if (next == '/')
        scanEndTag(token, buffer, position, limit, context);
    else if (next == '?')
        scanInstruction(buffer, position, limit, context);
    else if (isLetter(next))
        scanStartTag(token, buffer, position, limit, context);
    else
        token.flags |= TOKEN_CHARACTER;
    return context.statusFlags == 0 && next != kPeekedEnd;
}

char16_t takePendingChar(HtmlFilterContext& context)
{
    zorvan::WString& pending = *context.pendingChars;
    std::int32_t& taken = context.internals->pendingCharsTaken;
    const char16_t unit = pending.data[taken++];
    if (taken >= pending.length) {
        pending.clear();
        taken = 0;
    }
    return unit;
}

std::int32_t asCharacter(Token& token, std::int32_t character)
{
    token = kNullToken;
    token.flags = TOKEN_CHARACTER;
    return character;
}

/// A "<" that is only text in raw text, in front of "!" or the end of the input.
bool isLoneBracket(HtmlFilterContext& context)
{
    const std::uint16_t next = peekChar(1, context);
    if (next != '!' && next != kPeekedEnd)
        return false;
    context.statusFlags = 0;
    return true;
}

bool closesRawText(const Token& token, const HtmlFilterContext& context)
{
    if ((token.flags & TOKEN_END_TAG) != 0 && token.element == context.rawTextElement)
        return true;
    // Any markup that is no text counts here, an instruction or an unknown tag as well.
    return context.rawTextMode == RAW_TEXT_LENIENT && (token.flags & TOKEN_CHARACTER) == 0
        && context.rawTextAtLineStart == 1;
}

/// Makes text of markup in raw text: all of it, or the "<" alone when it has been given back.
/// length: of its text, in units.
std::int32_t markupAsText(
    Token& token, const char16_t* buffer, std::uint16_t length, HtmlFilterContext& context)
{
    // The buffer of markup that was given back needn't begin with its "<" any more.
    if ((token.flags & TOKEN_CHARACTER) != 0)
        return asCharacter(token, '<');
    context.pendingChars->append(buffer + 1, length - 1);
    return asCharacter(token, buffer[0]);
}

/// The "<" of raw text, which has been read, and what it begins.
std::int32_t scanRawMarkup(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context)
{
    if (isLoneBracket(context))
        return asCharacter(token, '<');
    const std::uint16_t length = scanMarkup(token, buffer, limit, context);
    if (!closesRawText(token, context))
        return markupAsText(token, buffer, length, context);
    const bool lenient = context.rawTextMode == RAW_TEXT_LENIENT;
    context.rawTextMode = RAW_TEXT_NONE;
    return lenient ? '<' : 0;
}

void noteLineStart(std::int32_t character, HtmlFilterContext& context)
{
    if (character == '\r' || character == '\n')
        context.rawTextAtLineStart = 1;
    else if (!kMarkupSpace.contains(character))
        context.rawTextAtLineStart = 0;
}

std::int32_t scanRawText(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context)
{
    const bool lenient = context.rawTextMode == RAW_TEXT_LENIENT;
    const std::int32_t character = readChar(context);
    if (isInputEnd(character))
        return character;
    if (character != '<') {
        if (lenient)
            noteLineStart(character, context);
        return asCharacter(token, character);
    }
    const std::int32_t answer = scanRawMarkup(token, buffer, limit, context);
    if (lenient)
        context.rawTextAtLineStart = 0;
    return answer;
}

/// What follows a "<" in skipped content, up to a "<" that may begin an end tag itself. Answers
/// whether it is an end tag of element.
bool isEndTagOf(std::uint32_t element, HtmlFilterContext& context)
{
    std::int32_t character = readChar(context);
    const bool endTag = character == '/';
    NameCopy name;
    std::uint32_t length = 0;
    while (endTag && context.statusFlags == 0) {
        character = readChar(context);
        if (length == kLongestSkippedName || !kSkippedNameCharacters.contains(character))
            break;
        name.add(static_cast<char16_t>(character));
        ++length;
    }
    if (character == '<')
        unreadChars(1, context);
    return endTag && name.element() == element;
}

} // namespace

std::int32_t scanSlow(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context)
{
    clearTokenText(buffer, limit);
    token = kNullToken;
    if (context.pendingChars->length != 0)
        return asCharacter(token, takePendingChar(context));
    if (context.rawTextMode == RAW_TEXT_STRICT || context.rawTextMode == RAW_TEXT_LENIENT)
        return scanRawText(token, buffer, limit, context);
    return scanOrdinary(token, buffer, limit, context);
}

std::uint16_t scanMarkup(
    Token& token, char16_t* buffer, std::uint32_t limit, HtmlFilterContext& context)
{
    const std::uint32_t start = currentPosition(context);
    std::uint16_t position = 0;
    appendUnit('<', buffer, position, limit);
    context.tagAttributeCount = 0;
    token.element = 0;
    beginMarkup(limit, context);
    const bool whole = scanMarkupKind(token, buffer, position, limit, context);
    endMarkup(/*cutOff=*/!whole, context);
    if (!whole) {
        context.statusFlags = 0;
        seekTo(start, context);
        token.element = 0;
        token.flags = TOKEN_CHARACTER;
    }
    return position;
}

void skipToEndTag(std::uint32_t element, HtmlFilterContext& context)
{
    while (context.statusFlags == 0) {
        const std::uint32_t plain = countTextBytes(context);
        if (plain != 0) {
            skipBufferedBytes(plain, context);
            continue;
        }
        const std::uint32_t place = currentPosition(context);
        const std::uint16_t next = peekChar(1, context);
        readChar(context);
        if (next == '<' && isEndTagOf(element, context)) {
            seekTo(place, context);
            return;
        }
    }
}
