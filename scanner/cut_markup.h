#pragma once

#include "containers/storage.h"
#include "filter/html_filter_context.h"

#include <cstdint>

class NameCopy;

// Markup that the input cuts off is read to the end of the input and turned into text, for each "<"
// anew. To keep that from taking the square of the input's length, the scanner remembers from where
// it has run into the end.
//
// A reading asks at the head of each of its loops whether it is known to be cut off. Marks are
// taken and looked for at the first such question in each stretch of the stream
// (CutMarkup::markShift). Whether it is the first one hangs on the question before alone, so two
// readings that have once asked at one place, in one state, go on alike for ever and ask for marks
// at the same places.
//
// The state of a reading at a question, which is what the spot of a mark holds, is
// - the position of the stream and, in the sets with escapes, the mode of the decoder and which
//   bytes of an escape it has just read;
// - MarkupPlace, MarkupKind and the quote that is open;
// - whether that quote, or the name or "=" that is read, belongs to an href, whose references are
//   taken in another way; within a name, how much of "href" it is so far;
// - of a declaration, what is stored of it (MarkupRoom).
// The depth of brackets is no part of the spot: a mark holds from some depth on. What else a
// reading keeps has no say in where it ends, or is not watched: names of tags and declarations and
// references in values, in which no "<" stands, and the white space behind an "=" in sets that read
// pairs, whose peeked bytes needn't be what is then read.
//
// A declaration that will be full before the input ends shares its state with no other, as long as
// it isn't. Marks hold for it where no quote is met on the way. Elsewhere it is moved over what
// others have read outside of quotes, up to where it gets full; from there on marks hold again.
//
// What the marks cost: a reading that has met an earlier one is found out at the next mark. Until
// then it reads a stretch and what lies between two questions there, which is a character, a
// reference or a swallowed run of "~" and line end, and no piece of markup begins within these. So
// all pieces together read a multiple of the input that hangs on the number of states that are met
// at one place, and on no length but that of a stretch. A declaration that gets full within a quote
// reads that quote too, which is bounded by its buffer.

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
    BehindEquals, ///< white space in front of a value, which a quote opens
    Value, ///< a value, at its next unit: a quote, reference or stretch
    ValueStretch, ///< within a stretch of ordinary characters of a value
    BehindValue,
    Swallowed, ///< what stands behind a stray character, up to the ">"
    ToTagEnd, ///< behind the attributes, or in an instruction
    Comment,
    Declaration,
    DeclarationSpace, ///< where a quote opens a value
};

/// What a declaration has stored, which tells the unit that decides about a quote.
enum class MarkupRoom : std::uint8_t {
    Whatever, ///< no declaration, or one that the input ends before its buffer is full
    FullClosed, ///< the last unit stored keeps all quotes closed
    FullOpen, ///< it lets them open values
    Limited, ///< will be full at a place that other readings don't share
};

/// A place of the stream and the state in which it is reached, apart from the depth of brackets.
struct MarkupSpot {
    std::uint32_t position; ///< of the stream
    std::uint32_t key; ///< 0 for none

    bool operator==(const MarkupSpot&) const = default;
};

/// What a stretch of a conditional declaration does to the depth of its brackets.
struct BracketEffect {
    std::int32_t rise; ///< how far it goes up, if it never falls to 0
    std::int32_t floor; ///< the depth behind it from a depth of 0
    std::int32_t need; ///< the least depth with which none of its ">" ends the declaration
};

/// A spot from which the scanner runs into the end of the input.
struct CutMark {
    MarkupSpot spot;
    std::uint32_t depth; ///< the least depth of brackets with which it does
    std::uint16_t decoderAfter; ///< as the reading to the end leaves it
    bool meetsQuotes; ///< outside of quotes on the way there, so that it hangs on the room
};

/// A stretch of a declaration between two questions outside its quotes. A reading that has room for
/// its units and brackets enough can go over it at once.
struct DeclarationStep {
    MarkupSpot spot;
    MarkupSpot next;
    BracketEffect effect;
    std::uint32_t units; ///< stored of it
};

/// A spot of the markup that is being read, of which it isn't known yet whether it is cut off.
struct PendingMark {
    MarkupSpot spot;
    BracketEffect effect; ///< up to the next one
    std::uint16_t stored; ///< units, if the room is limited
    bool limited; ///< by its room; becomes a step to the next one, else a mark
    bool stepped; ///< the way to the next one is known
    bool meetsQuotes; ///< outside of quotes, on that way
};

/// Marks by their spot. Open addressing; a slot without a key is free.
template <typename Mark> struct MarkTable {
    zorvan::StoragePointer<Mark> slots;
    std::uint32_t size = 0; ///< 0 or a power of two
    std::uint32_t used = 0;
};

/// Bytes between the questions at which anything is done, as a power of two.
constexpr std::uint32_t kStretchShift = 6;

/// Bytes from one step to the next, as a power of two, while there is memory for it.
constexpr std::uint32_t kFirstStepShift = 8;

/// The marks of a context, and the markup that is being read. The scanner keeps `place`, `kind`,
/// `quote` and `depth` up to date wherever isKnownCut is asked; the rest belongs to cut_markup.cpp.
/// Memory is bounded by four bytes for each of the input, beyond a few thousand; a mark for which
/// there is none is left out.
struct CutMarkup {
    MarkupPlace place = MarkupPlace::Unwatched;
    MarkupKind kind = MarkupKind::Tag;
    std::uint8_t quote = 0; ///< 0 none, 1 double, 2 single
    bool watching = false; ///< whether marks are taken and looked for
    std::uint32_t depth = 0; ///< open brackets of a conditional declaration
    std::uint32_t lastStretch = 0; ///< that of the last question, as the next two
    std::uint32_t lastMark = 0; ///< of the stretches between marks
    std::uint32_t lastStep = 0; ///< of those between steps
    bool limitedInQuote = false; ///< whether the last question was one where nothing is done
    bool foundOut = false; ///< whether a mark has told that it is cut off
    std::uint32_t endDepth = 0; ///< the least depth with which the reading ends where it did
    bool endMeetsQuotes = false; ///< as CutMark::meetsQuotes

    char16_t* text = nullptr; ///< borrowed: the buffer of the declaration, null outside of one
    std::uint16_t* stored = nullptr; ///< borrowed: the units in it
    std::uint32_t textLimit = 0; ///< where it is full
    bool stepped = false; ///< whether parts of it have been gone over
    std::uint16_t unclearedFrom = 0; ///< where units begin that no clearing would reach
    std::uint16_t storedBefore = 0; ///< this and the next two: where its reading began
    std::uint32_t startPosition = 0;
    std::uint32_t decoderBefore = 0;

    bool cutBefore = false; ///< whether any markup was cut off so far
    const StreamBlock* stream
        = nullptr; ///< borrowed; this and the next two are what marks hold for
    std::uint16_t charSet = 0;
    std::uint16_t byteOrder = 0;
    std::uint32_t reach = 0; ///< the furthest position at which markup was found cut off
    std::uint32_t inputEnd
        = 0; ///< where the input was met to end, but for bytes peeked at; 0 never
    std::uint32_t markShift = kStretchShift; ///< bytes from one mark to the next, as a power of two
    std::uint32_t stepShift = kFirstStepShift; ///< the same of steps
    MarkTable<CutMark> marks;
    MarkTable<DeclarationStep> steps;
    zorvan::StoragePointer<PendingMark> pending;
    std::uint32_t pendingSize = 0;
    std::uint32_t pendingUsed = 0;
};

/// Begins a piece of markup. limit: of its buffer, in units.
void beginMarkup(std::uint32_t limit, HtmlFilterContext& context);

/// Ends it, before the stream is moved back when it was cut off.
void endMarkup(bool cutOff, HtmlFilterContext& context);

/// Begins the body of a declaration, whose quotes hang on what is stored of it. Buffer and position
/// are used until endDeclaration. limit: where the buffer is full.
void beginDeclaration(bool conditional, char16_t* buffer, std::uint16_t& position,
    std::uint32_t limit, HtmlFilterContext& context);

/// Ends it. Answers true, with all as it was at its beginning and no marks watched any more, when
/// it is whole and parts of it were gone over: it is then to be read again, for its text.
bool endDeclaration(bool cutOff, HtmlFilterContext& context);

/// isKnownCut for the first question of a stretch. name: the name that is being read, else null.
/// Within a declaration whose room is limited it may move on, to where DeclarationSpace or
/// Declaration is the place.
bool checkCutMark(const NameCopy* name, HtmlFilterContext& context);

/// Notes a quote that is met in a declaration, outside its quotes.
void noteQuote(HtmlFilterContext& context);

/// Counts a bracket or ">" that has been read in a conditional declaration, outside its quotes.
/// Answers whether it ends the declaration.
bool countBracket(std::uint16_t unit, HtmlFilterContext& context);
