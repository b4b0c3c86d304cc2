#include "scanner/special_markup.h"

#include "input/char_reader.h"
#include "scanner/cut_markup.h"
#include "scanner/markup_units.h"
#include "scanner/tag_scanner.h"

#include <string_view>

namespace {

/// How far a condition is looked for.
constexpr std::uint16_t kConditionReach = 8;

constexpr CharacterSet kDeclarationExtras = "!:-_";

bool isQuote(std::uint16_t unit) { return unit == '"' || unit == '\''; }

/// Whether the comment ends with the "-" that is next.
bool endsComment(HtmlFilterContext& context)
{
    return peekChar(2, context) == '-' && peekChar(3, context) == '>';
}

// QUIRK(SpecialMarkup.CommentEndsAtTheFirstArrowOnly): "--!>" and a lone ">" end nothing, and
// "<!-->" is a comment as a whole.
void scanComment(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    appendUnit(readChar(context) & 0xFF, buffer, position, limit); // the "!"
    while (context.statusFlags == 0) {
        standAt(MarkupPlace::Comment, context);
        copyUntil(buffer, position, limit, "-", /*keepDelimiter=*/false, context);
        if (endsComment(context))
            break;
        appendUnit(readChar(context), buffer, position, limit);
    }
    standAt(MarkupPlace::ToTagEnd, context);
    copyUntil(buffer, position, limit, ">", /*keepDelimiter=*/true, context);
}

/// Whether a quote opens a value behind what is stored so far.
// QUIRK(SpecialMarkup.QuotesOfOverlongDeclarations): once the buffer is full, the last unit that
// had room in it decides for all quotes that follow.
bool quoteOpensValue(const char16_t* buffer, std::uint16_t position)
{
    return position != 0 && kBehindThemQuotesOpen.contains(buffer[position - 1]);
}

/// Everything of a declaration behind its name. Answers the unit that was peeked at last.
std::uint16_t scanDeclarationBody(char16_t* buffer, std::uint16_t& position, std::uint32_t limit,
    bool conditional, HtmlFilterContext& context)
{
    for (;;) {
        standAt(quoteOpensValue(buffer, position) ? MarkupPlace::DeclarationSpace
                                                  : MarkupPlace::Declaration,
            context);
        if (isKnownCut(context))
            return kPeekedEnd;
        const std::uint16_t next = peekChar(1, context);
        if (context.statusFlags != 0 || next == kPeekedEnd)
            return next;
        if (isQuote(next))
            noteQuote(context);
        if (isQuote(next) && quoteOpensValue(buffer, position)) {
            scanQuoted(buffer, position, limit, /*keepRaw=*/true, /*decodePercent=*/false, context);
            continue;
        }
        appendUnit(readChar(context), buffer, position, limit);
        // The brackets of a conditional declaration keep a ">" between them from ending it.
        if (conditional ? countBracket(next, context) : next == '>')
            return next;
    }
}

} // namespace

std::uint16_t scanDeclaration(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    const std::uint32_t end = cutLimit(limit);
    const bool conditional = isConditional(context) != 0;
    // STAND-IN: the option conditionalMask counts as 0, so that no condition is evaluated and a
    // conditional comment is a comment like any other.
    if (peekChar(2, context) == '-' && peekChar(3, context) == '-') {
        scanComment(buffer, position, end, context);
        return '>';
    }
    copyName(buffer, position, end, kDeclarationExtras, context);
    beginDeclaration(conditional, buffer, position, end, context);
    const std::uint16_t last = scanDeclarationBody(buffer, position, end, conditional, context);
    const bool cutOff = context.statusFlags != 0 || last == kPeekedEnd;
    if (!endDeclaration(cutOff, context))
        return last;
    return scanDeclarationBody(buffer, position, end, conditional, context);
}

void scanInstruction(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context)
{
    standAt(MarkupPlace::ToTagEnd, context);
    copyUntil(buffer, position, limit, ">", /*keepDelimiter=*/true, context);
    // STAND-IN: the markers of XMP packets have no effect; an instruction is read over.
}

std::uint32_t isConditional(HtmlFilterContext& context)
{
    const std::uint16_t statusBefore = context.statusFlags;
    char16_t units[kConditionReach];
    std::uint16_t count = 0;
    while (count < kConditionReach) {
        const std::uint16_t unit = peekChar(static_cast<std::uint16_t>(count + 1), context);
        if (unit == kPeekedEnd || context.statusFlags != 0)
            break;
        units[count++] = unit;
    }
    // The end of the input was only looked at; who reads that far meets it again.
    context.statusFlags = statusBefore;
    const std::u16string_view text(units, count);
    const bool found = text.find(u"[if") != std::u16string_view::npos
        || text.find(u"[endif") != std::u16string_view::npos;
    return found ? 1 : 0;
}
