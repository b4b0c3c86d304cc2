#pragma once

#include "filter/filter_internals.h"
#include "filter/html_filter_context.h"
#include "input/stream_block.h"
#include "scanner/cut_markup.h"
#include "support/unit_words.h"

#include <cstdint>
#include <cstring>

// What the routines that read markup have in common.

/// A peeked unit that is the end of the input, or counts as such.
constexpr std::uint16_t kPeekedEnd = 0xFFFF;

/// The limit of the routines that take it in 16 bits; 250,000 is 53,392 there.
constexpr std::uint32_t cutLimit(std::uint32_t limit) { return limit & 0xFFFF; }

/// Stores the low 16 bits of a character while the limit allows.
// QUIRK(TagScanner.PositionWrapsAt65536): a limit beyond 16 bits never stops this; later text of an
// overlong tag overwrites the start of its buffer.
inline void appendUnit(
    std::int32_t character, char16_t* buffer, std::uint16_t& position, std::uint32_t limit)
{
    if (position < limit)
        buffer[position++] = static_cast<char16_t>(character);
}

/// Empties the token buffer up to its first unit 0, as every scan of a token does first.
inline void clearTokenText(char16_t* buffer, std::uint32_t limit)
{
    std::uint32_t index = 0;
    for (; index + zorvan::kUnitsOfWord <= limit; index += zorvan::kUnitsOfWord) {
        if (zorvan::markZeroUnits(zorvan::unitWordAt(buffer + index)) != 0)
            break;
        std::memset(buffer + index, 0, zorvan::kUnitsOfWord * sizeof(char16_t));
    }
    for (; index < limit && buffer[index] != 0; ++index)
        buffer[index] = 0;
}

/// Tells the watch over cut markup what is read from here on.
inline void standAt(MarkupPlace place, HtmlFilterContext& context)
{
    context.internals->cutMarkup.place = place;
}

/// Whether the scanner once ran into the end of the input from the very state in which it is now.
/// The status then tells the end. name: the name that is being read, else null. The reading of a
/// declaration may be moved on, so what is next and what was last is looked at afterwards only.
inline bool isKnownCut(HtmlFilterContext& context, const NameCopy* name = nullptr)
{
    const CutMarkup& cut = context.internals->cutMarkup;
    return cut.watching && blockPosition(*context.stream) >> kStretchShift != cut.lastStretch
        && checkCutMark(name, context);
}
