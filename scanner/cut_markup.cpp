#include "scanner/cut_markup.h"

#include "filter/filter_internals.h"
#include "input/char_reader.h"
#include "support/html_names.h"

#include <algorithm>
#include <cstring>

namespace {

/// Positions of the scanner are below this; a limit from here on is never reached.
constexpr std::uint32_t kUnreachedLimit = 0x10000;

constexpr std::uint32_t kFirstTableSize = 64;
constexpr std::uint32_t kFirstPendingSize = 64;
constexpr std::uint32_t kUnlimited = 0xFFFFFFFF;

bool keepsDecoderState(const HtmlFilterContext& context)
{
    return context.unicodeBomMode == 0 && context.currentCharSet != CHARSET_JIS
        && !readsBytesAsCharacters(context);
}

DecoderState decoderState(const HtmlFilterContext& context)
{
    DecoderState state = {};
    if (!keepsDecoderState(context))
        return state;
    state.iso2022State = context.iso2022State;
    std::memcpy(state.recentBytes, context.recentBytes, sizeof state.recentBytes);
    return state;
}

void restoreDecoderState(const DecoderState& state, HtmlFilterContext& context)
{
    if (!keepsDecoderState(context))
        return;
    context.iso2022State = state.iso2022State;
    std::memcpy(context.recentBytes, state.recentBytes, sizeof state.recentBytes);
}

std::uint32_t placeCode(const CutMarkup& cut, const HtmlFilterContext& context)
{
    const bool inHref = cut.quote != 0 && context.currentAttribute == ATTRIBUTE_HREF;
    return static_cast<std::uint32_t>(cut.place) << 5 | static_cast<std::uint32_t>(cut.kind) << 3
        | std::uint32_t{cut.quote} << 1 | (inHref ? 1u : 0u);
}

/// The slot of the mark for the same position, place and decoder, or the free one where it goes.
CutMark& findSlot(const CutMark& wanted, CutMarkup& cut)
{
    std::uint32_t index = (wanted.position * 0x9E3779B1u) ^ (wanted.place * 0x85EBCA6Bu);
    index ^= index >> 15;
    for (;; ++index) {
        CutMark& slot = cut.table.get()[index & (cut.tableSize - 1)];
        const bool same = slot.position == wanted.position && slot.place == wanted.place
            && slot.before == wanted.before;
        if (slot.place == 0 || same)
            return slot;
    }
}

/// Puts a mark into a table that has room for it.
void placeMark(const CutMark& mark, CutMarkup& cut)
{
    CutMark& slot = findSlot(mark, cut);
    if (slot.place != 0) {
        slot.depth = std::min(slot.depth, mark.depth);
        return;
    }
    slot = mark;
    ++cut.tableUsed;
}

void growTable(CutMarkup& cut)
{
    const std::uint32_t oldSize = cut.tableSize;
    const std::uint32_t size = oldSize == 0 ? kFirstTableSize : oldSize * 2;
    auto larger = zorvan::allocateElements<CutMark>(size);
    std::fill_n(larger.get(), size, CutMark{});
    const zorvan::StoragePointer<CutMark> old = std::move(cut.table);
    cut.table = std::move(larger);
    cut.tableSize = size;
    cut.tableUsed = 0;
    for (std::uint32_t index = 0; index < oldSize; ++index) {
        if (old.get()[index].place != 0)
            placeMark(old.get()[index], cut);
    }
}

void addMark(const CutMark& mark, CutMarkup& cut)
{
    if (cut.tableUsed >= cut.tableSize / 2)
        growTable(cut);
    placeMark(mark, cut);
}

void addPending(const CutMark& mark, CutMarkup& cut)
{
    if (cut.pendingUsed == cut.pendingSize) {
        const std::uint32_t size = cut.pendingSize == 0 ? kFirstPendingSize : cut.pendingSize * 2;
        auto larger = zorvan::allocateElements<PendingMark>(size);
        std::copy_n(cut.pending.get(), cut.pendingUsed, larger.get());
        cut.pending = std::move(larger);
        cut.pendingSize = size;
    }
    cut.pending.get()[cut.pendingUsed++] = {mark, kUnlimited};
}

/// Turns the marks of a piece that was cut off into lasting ones, from the last one back: each
/// holds for all depths that keep the declaration open at every ">" behind it.
void keepPending(const DecoderState& after, CutMarkup& cut)
{
    std::uint32_t slack = cut.endSlack;
    while (cut.pendingUsed > 0) {
        PendingMark& last = cut.pending.get()[--cut.pendingUsed];
        slack = std::min(slack, last.slack);
        last.mark.depth -= std::min(slack, last.mark.depth);
        last.mark.after = after;
        addMark(last.mark, cut);
    }
}

/// Whether the marks are about what is being read. Drops them when they aren't.
bool marksHold(CutMarkup& cut, const HtmlFilterContext& context)
{
    if (cut.stream == context.stream && cut.charSet == context.currentCharSet
        && cut.byteOrder == context.unicodeBomMode)
        return true;
    cut.stream = context.stream;
    cut.charSet = context.currentCharSet;
    cut.byteOrder = context.unicodeBomMode;
    if (cut.tableUsed != 0)
        std::fill_n(cut.table.get(), cut.tableSize, CutMark{});
    cut.tableUsed = 0;
    cut.cutBefore = false;
    return false;
}

} // namespace

void beginMarkup(std::uint32_t limit, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    cut.place = MarkupPlace::Unwatched;
    cut.kind = MarkupKind::Tag;
    cut.quote = 0;
    cut.depth = 0;
    cut.pendingUsed = 0;
    cut.endSlack = kUnlimited;
    cut.watching = marksHold(cut, context) && cut.cutBefore && limit >= kUnreachedLimit;
}

void endMarkup(bool cutOff, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    if (cutOff) {
        cut.cutBefore = true;
        keepPending(decoderState(context), cut);
    }
    cut.pendingUsed = 0;
    cut.watching = false;
}

bool checkCutMark(HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    const std::uint32_t position = blockPosition(*context.stream);
    if (cut.place == MarkupPlace::Unwatched || context.statusFlags != 0)
        return false;
    CutMark here = {position, placeCode(cut, context), cut.depth, decoderState(context), {}};
    if (cut.tableSize != 0) {
        const CutMark& known = findSlot(here, cut);
        if (known.place != 0 && cut.depth >= known.depth) {
            cut.endSlack = cut.depth - known.depth;
            context.statusFlags |= STATUS_END_OF_INPUT;
            restoreDecoderState(known.after, context);
            return true;
        }
    }
    addPending(here, cut);
    return false;
}

void noteBracketedEnd(HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    if (cut.pendingUsed == 0)
        return;
    std::uint32_t& slack = cut.pending.get()[cut.pendingUsed - 1].slack;
    slack = std::min(slack, cut.depth - 1);
}
