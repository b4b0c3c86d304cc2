#pragma once

#include "containers/storage.h"
#include "filter/html_filter_context.h"

#include <cstdint>

// Markup that the input cuts off is read to the end of the input and turned into text, for each "<"
// anew. To keep that from taking the square of the input's length, the scanner remembers from where
// it has run into the end.
//
// Why this answers as the reading itself would: with a limit that no 16-bit position reaches, what
// the scanner does in the attributes of a tag, in a comment, a declaration or an instruction
// depends on nothing but the bytes that follow, the place in the markup (MarkupKind, MarkupPlace,
// the quote that is open and whether it belongs to an href), the depth of brackets and the state of
// the decoder. Two pieces of markup that meet in all of these go on alike for ever. So a place from
// which the scanner once ran into the end is noted, and whoever comes to it again is told the end
// of the input there and then. Names of tags, declarations and references are not watched: no "<"
// stands in them, so that they are never read over by more than one piece of markup each.
//
// What the marks cost: they are taken at every kMarkDistance-th byte only. A piece of markup whose
// reading has met an earlier one's is found out within that many bytes, and at one byte there are
// no more readings that have not met than there are places. So all pieces together read a fixed
// multiple of the input's length.

/// What goes on behind a quoted value.
enum class MarkupKind : std::uint8_t {
    Tag, ///< or an instruction or comment, which have no quotes
    Declaration,
    ConditionalDeclaration,
};

/// What the scanner is about to read.
enum class MarkupPlace : std::uint8_t {
    Unwatched,
    BehindTagName, ///< white space between a tag's name and its attributes
    AttributeStart,
    AttributeName,
    NamelessAttribute, ///< a name that begins with the unit 0 and so counts as empty
    BehindName, ///< white space that "=" may follow
    BehindNoName,
    BehindEquals,
    Value, ///< a value, at its next unit: a quote, reference or stretch
    ValueStretch, ///< within a stretch of ordinary characters of a value
    BehindValue,
    Swallowed, ///< what stands behind a stray character, up to the ">"
    ToTagEnd, ///< behind the attributes, or in an instruction
    Comment,
    Declaration,
    DeclarationSpace, ///< behind white space or "=", where a quote opens a value
};

/// What a decoder keeps between characters; all 0 for the sets that keep nothing.
struct DecoderState {
    std::uint32_t iso2022State;
    std::uint16_t recentBytes[4];

    bool operator==(const DecoderState&) const = default;
};

/// A place from which the scanner runs into the end of the input.
struct CutMark {
    std::uint32_t position; ///< of the stream
    std::uint32_t place; ///< MarkupPlace, MarkupKind, quote and href; 0 for a free slot
    std::uint32_t depth; ///< holds for this depth of brackets and all above it
    DecoderState before;
    DecoderState after; ///< as the reading to the end leaves it
};

/// A mark of the markup that is being read, of which it isn't known yet whether it is cut off.
struct PendingMark {
    CutMark mark;
    /// By how much the depth could have been less at each ">" up to the next mark without ending
    /// the declaration.
    std::uint32_t slack;
};

/// The marks of a context, and the markup that is being read. The scanner keeps `place` up to date
/// wherever isKnownCut is asked; the rest belongs to cut_markup.cpp.
struct CutMarkup {
    MarkupPlace place = MarkupPlace::Unwatched;
    MarkupKind kind = MarkupKind::Tag;
    std::uint8_t quote = 0; ///< 0 none, 1 double, 2 single
    bool watching = false; ///< whether marks are taken and looked for
    std::uint32_t depth = 0; ///< open brackets of a conditional declaration

    bool cutBefore = false; ///< whether any markup was cut off so far
    const StreamBlock* stream
        = nullptr; ///< borrowed; this and the next two are what marks hold for
    std::uint16_t charSet = 0;
    std::uint16_t byteOrder = 0;
    zorvan::StoragePointer<CutMark> table; ///< open addressing, tableSize slots
    std::uint32_t tableSize = 0; ///< 0 or a power of two
    std::uint32_t tableUsed = 0;
    zorvan::StoragePointer<PendingMark> pending;
    std::uint32_t pendingSize = 0;
    std::uint32_t pendingUsed = 0;
    std::uint32_t endSlack = 0; ///< as PendingMark::slack, from where the reading ended
};

/// Begins a piece of markup. limit: of its buffer, in units.
void beginMarkup(std::uint32_t limit, HtmlFilterContext& context);

/// Ends it, before the stream is moved back when it was cut off.
void endMarkup(bool cutOff, HtmlFilterContext& context);

/// Bytes between the positions at which marks are taken. Odd, so that characters of two bytes meet
/// one wherever they begin.
constexpr std::uint32_t kMarkDistance = 31;

/// isKnownCut at a position of marks, while they are taken.
bool checkCutMark(HtmlFilterContext& context);

/// Notes a ">" that the depth of brackets, above 0, keeps from ending a declaration.
void noteBracketedEnd(HtmlFilterContext& context);
