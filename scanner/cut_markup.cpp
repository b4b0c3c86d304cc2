#include "scanner/cut_markup.h"

#include "filter/filter_internals.h"
#include "input/char_reader.h"
#include "input/decoders.h"
#include "scanner/character_set.h"
#include "scanner/markup_units.h"
#include "scanner/name_copy.h"
#include "support/html_names.h"

#include <algorithm>
#include <limits>

namespace {

/// Positions of the scanner are below this; a limit from here on is never reached.
constexpr std::uint32_t kUnreachedLimit = 0x10000;

/// The largest distance between marks, as a power of two.
constexpr std::uint32_t kLastShift = 16;

constexpr std::uint32_t kFirstTableSize = 64;
constexpr std::uint32_t kFirstPendingSize = 64;

/// Bytes that tables may have however small the input is.
constexpr std::uint64_t kFreeTableBytes = 16'384;

/// More bytes than any peek looks ahead: the end may lie as far behind CutMarkup::inputEnd.
constexpr std::uint32_t kPeekedBytes = 32;

/// Bits of a key.
constexpr std::uint32_t kHrefBits = 3;
constexpr std::uint32_t kRoomBits = 2;
constexpr std::uint32_t kQuoteBits = 2;
constexpr std::uint32_t kKindBits = 2;
constexpr std::uint32_t kPlaceBits = 4;
constexpr std::uint32_t kBitsBelowPlace = kHrefBits + kRoomBits + kQuoteBits + kKindBits;

constexpr std::int32_t kMostBrackets = std::numeric_limits<std::int32_t>::max();

bool keepsDecoderState(const HtmlFilterContext& context)
{
    return context.unicodeBomMode == 0 && context.currentCharSet != CHARSET_JIS
        && !readsBytesAsCharacters(context);
}

/// The modes of the sets with escapes. All others that there are read like the first.
constexpr std::uint32_t kModes[]
    = {0, ISO2022_ASCII, ISO2022_JIS_ROMAN, ISO2022_JIS_X0208, ISO2022_HZ_GB, ISO2022_KOREAN};

/// The bytes of escape sequences. All others that were read lately are like the first.
constexpr std::uint8_t kEscapeBytes[] = {0, 0x1B, '$', ')', 'C', '~'};

constexpr std::uint32_t kModeBits = 3;
constexpr std::uint32_t kByteBits = 3;
constexpr std::uint32_t kRecentBytes = 4;
constexpr std::uint32_t kDecoderBits = kModeBits + kRecentBytes * kByteBits;

/// The index of a value, 0 for one that is not listed.
template <typename Value, std::size_t kCount>
std::uint32_t indexOf(std::uint32_t value, const Value (&values)[kCount])
{
    const Value* const found = std::find(values, values + kCount, value);
    return found == values + kCount ? 0 : static_cast<std::uint32_t>(found - values);
}

/// What the decoder keeps between characters, as far as it matters; 0 in the sets that keep
/// nothing.
std::uint32_t decoderState(const HtmlFilterContext& context)
{
    if (!keepsDecoderState(context))
        return 0;
    std::uint32_t state = indexOf(context.iso2022State, kModes);
    for (const std::uint16_t byte : context.recentBytes)
        state = state << kByteBits | indexOf(byte, kEscapeBytes);
    return state;
}

void restoreDecoderState(std::uint32_t state, HtmlFilterContext& context)
{
    if (!keepsDecoderState(context))
        return;
    constexpr std::uint32_t kByteMask = (1u << kByteBits) - 1;
    for (std::uint32_t place = kRecentBytes; place > 0; --place) {
        context.recentBytes[place - 1] = kEscapeBytes[state & kByteMask];
        state >>= kByteBits;
    }
    context.iso2022State = kModes[state];
}

/// The least depth in front of a stretch that leaves at least `behind` behind it.
std::int64_t depthBefore(const BracketEffect& effect, std::int64_t behind)
{
    const std::int64_t climb = effect.floor >= behind ? 0 : behind - effect.rise;
    return std::max<std::int64_t>(effect.need, climb);
}

MarkupRoom roomOf(const CutMarkup& cut, std::uint32_t position)
{
    if (cut.stored == nullptr)
        return MarkupRoom::Whatever;
    const std::uint32_t stored = *cut.stored;
    if (stored >= cut.textLimit) {
        const bool open = stored != 0 && kBehindThemQuotesOpen.contains(cut.text[stored - 1]);
        return open ? MarkupRoom::FullOpen : MarkupRoom::FullClosed;
    }
    // No unit is stored of less than a byte.
    const bool endsBefore = position <= cut.inputEnd
        && cut.inputEnd - position + kPeekedBytes < cut.textLimit - stored;
    return endsBefore ? MarkupRoom::Whatever : MarkupRoom::Limited;
}

/// How much the reading has to do with an href, from 0 on.
std::uint32_t hrefState(const NameCopy* name, const HtmlFilterContext& context)
{
    const CutMarkup& cut = context.internals->cutMarkup;
    if (name != nullptr)
        return name->partOf("href");
    const bool asks = cut.quote != 0 || cut.place == MarkupPlace::BehindName
        || cut.place == MarkupPlace::BehindEquals;
    return asks && context.currentAttribute == ATTRIBUTE_HREF ? 1 : 0;
}

MarkupPlace placeOf(const MarkupSpot& spot)
{
    return static_cast<MarkupPlace>(spot.key >> kBitsBelowPlace & ((1u << kPlaceBits) - 1));
}

std::uint32_t decoderOf(const MarkupSpot& spot)
{
    static_assert(kBitsBelowPlace + kPlaceBits + kDecoderBits <= 32);
    return spot.key >> (kBitsBelowPlace + kPlaceBits);
}

MarkupSpot spotHere(MarkupRoom room, const NameCopy* name, const HtmlFilterContext& context)
{
    const CutMarkup& cut = context.internals->cutMarkup;
    std::uint32_t key = decoderState(context);
    key = key << kPlaceBits | static_cast<std::uint32_t>(cut.place);
    key = key << kKindBits | static_cast<std::uint32_t>(cut.kind);
    key = key << kQuoteBits | cut.quote;
    key = key << kRoomBits | static_cast<std::uint32_t>(room);
    key = key << kHrefBits | hrefState(name, context);
    return {blockPosition(*context.stream), key};
}

/// The slot of the mark with this spot, or the free one where it goes. The table is never full.
template <typename Mark> Mark& findSlot(const MarkupSpot& spot, MarkTable<Mark>& table)
{
    std::uint32_t index = (spot.position * 0x9E3779B1u) ^ (spot.key * 0x85EBCA6Bu);
    index ^= index >> 15;
    for (;; ++index) {
        Mark& slot = table.slots.get()[index & (table.size - 1)];
        if (slot.spot.key == 0 || slot.spot == spot)
            return slot;
    }
}

template <typename Mark> const Mark* findMark(const MarkupSpot& spot, MarkTable<Mark>& table)
{
    if (table.used == 0)
        return nullptr;
    const Mark& slot = findSlot(spot, table);
    return slot.spot.key == 0 ? nullptr : &slot;
}

template <typename Mark> void clearTable(MarkTable<Mark>& table)
{
    if (table.used != 0)
        std::fill_n(table.slots.get(), table.size, Mark{});
    table.used = 0;
}

enum class Room { Enough, NoMemory, OverBudget };

/// Makes room for one more mark. budget: bytes that the table may have, while it grows too.
template <typename Mark> Room growTable(MarkTable<Mark>& table, std::uint64_t budget)
{
    if (table.used < table.size / 4 * 3)
        return Room::Enough;
    const std::uint64_t size = table.size == 0 ? kFirstTableSize : std::uint64_t{table.size} * 2;
    if ((size + table.size) * sizeof(Mark) > std::max(budget, kFreeTableBytes))
        return Room::OverBudget;
    MarkTable<Mark> larger;
    larger.slots = zorvan::tryAllocateElements<Mark>(static_cast<std::int64_t>(size));
    if (larger.slots == nullptr)
        return Room::NoMemory;
    larger.size = static_cast<std::uint32_t>(size);
    larger.used = table.used;
    std::fill_n(larger.slots.get(), larger.size, Mark{});
    for (std::uint32_t index = 0; index < table.size; ++index) {
        const Mark& mark = table.slots.get()[index];
        if (mark.spot.key != 0)
            findSlot(mark.spot, larger) = mark;
    }
    table = std::move(larger);
    return Room::Enough;
}

/// Answers false when nothing can be added any more at this distance of marks.
template <typename Mark>
bool addMark(const Mark& mark, MarkTable<Mark>& table, std::uint64_t budget)
{
    const Room room = growTable(table, budget);
    if (room == Room::Enough) {
        Mark& slot = findSlot(mark.spot, table);
        table.used += slot.spot.key == 0 ? 1u : 0u;
        slot = mark;
    }
    return room != Room::OverBudget;
}

template <typename Mark> void spread(MarkTable<Mark>& table, std::uint32_t& shift)
{
    clearTable(table);
    shift = std::min(shift + 1, kLastShift);
}

void addPending(const MarkupSpot& spot, bool limited, CutMarkup& cut)
{
    if (cut.pendingUsed == cut.pendingSize) {
        const std::uint32_t size = cut.pendingSize == 0 ? kFirstPendingSize : cut.pendingSize * 2;
        auto larger = zorvan::tryAllocateElements<PendingMark>(size);
        // The stretch of a mark that is left out belongs to the one before.
        if (larger == nullptr)
            return;
        std::copy_n(cut.pending.get(), cut.pendingUsed, larger.get());
        cut.pending = std::move(larger);
        cut.pendingSize = size;
    }
    PendingMark mark = {};
    mark.spot = spot;
    mark.stored = limited ? *cut.stored : std::uint16_t{0};
    mark.limited = limited;
    cut.pending.get()[cut.pendingUsed++] = mark;
}

/// Turns the spots of a piece that was cut off into what lasts, from the last one back.
void keepPending(std::uint32_t decoderAfter, CutMarkup& cut)
{
    std::int64_t depth = cut.endDepth;
    bool quotes = cut.endMeetsQuotes;
    const PendingMark* next = nullptr;
    bool roomForMarks = true;
    bool roomForSteps = true;
    for (std::uint32_t index = cut.pendingUsed; index > 0; --index) {
        const PendingMark& last = cut.pending.get()[index - 1];
        depth = depthBefore(last.effect, depth);
        // What was gone over on the way may have had quotes, or brackets, which were not counted.
        quotes = quotes || last.meetsQuotes || last.stepped;
        if (!last.limited || !quotes) {
            const CutMark mark = {last.spot, static_cast<std::uint32_t>(depth),
                static_cast<std::uint16_t>(decoderAfter), quotes};
            roomForMarks = roomForMarks && addMark(mark, cut.marks, std::uint64_t{cut.reach} * 2);
        } else if (next != nullptr && next->limited && !last.stepped) {
            const std::uint32_t units = std::uint32_t{next->stored} - last.stored;
            const DeclarationStep step = {last.spot, next->spot, last.effect, units};
            roomForSteps = roomForSteps && addMark(step, cut.steps, cut.reach);
        }
        next = &last;
    }
    // Where many states are met at each place, marks are taken further apart. Those that went by
    // are taken again, by one reading of each state.
    if (!roomForMarks)
        spread(cut.marks, cut.markShift);
    if (!roomForSteps)
        spread(cut.steps, cut.stepShift);
}

/// Frees what only a long piece needs.
void dropPending(CutMarkup& cut)
{
    cut.pendingUsed = 0;
    if (cut.pendingSize > kFirstPendingSize) {
        cut.pending.reset();
        cut.pendingSize = 0;
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
    cut.reach = 0;
    cut.inputEnd = 0;
    cut.markShift = kStretchShift;
    cut.stepShift = kFirstStepShift;
    clearTable(cut.marks);
    clearTable(cut.steps);
    cut.cutBefore = false;
    return false;
}

/// Notes that the next questions follow one at this position.
void standAfter(std::uint32_t position, CutMarkup& cut)
{
    cut.lastStretch = position >> kStretchShift;
    cut.lastMark = position >> cut.markShift;
    cut.lastStep = position >> cut.stepShift;
}

/// Empties what was stored behind a stretch that has been gone over: the clearing of a buffer ends
/// in front of it.
void clearStored(CutMarkup& cut)
{
    if (!cut.stepped)
        return;
    std::fill(cut.text + cut.unclearedFrom, cut.text + *cut.stored, u'\0');
    // Text that the end of the input cuts off stands behind the position.
    clearTokenText(cut.text + *cut.stored, cut.textLimit - *cut.stored);
}

/// Moves the reading of a declaration on to a spot. stored: the units that it will then have.
void moveTo(const MarkupSpot& spot, std::uint32_t stored, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    clearStored(cut);
    cut.stepped = true;
    *cut.stored = static_cast<std::uint16_t>(stored);
    cut.unclearedFrom = static_cast<std::uint16_t>(stored - 1);
    // What the units were doesn't matter, but for what the last one makes of a quote.
    cut.text[cut.unclearedFrom] = placeOf(spot) == MarkupPlace::DeclarationSpace ? u' ' : u'-';
    restoreDecoderState(decoderOf(spot), context);
    seekTo(spot.position, context);
    standAfter(spot.position, cut);
}

/// Whether a mark tells that the reading is cut off. The status then tells the end.
bool isMarked(const MarkupSpot& here, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    const CutMark* known = findMark(here, cut.marks);
    if (known == nullptr || cut.depth < known->depth)
        return false;
    cut.foundOut = true;
    cut.endDepth = known->depth;
    cut.endMeetsQuotes = known->meetsQuotes;
    context.statusFlags |= STATUS_END_OF_INPUT;
    restoreDecoderState(known->decoderAfter, context);
    return true;
}

/// At a question of a declaration whose way on is known, but which will be full elsewhere than
/// those that have read it: moves it on to the last spot of that way at which it isn't full yet.
void followSteps(const MarkupSpot& here, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    MarkupSpot spot = here;
    std::uint32_t stored = *cut.stored;
    std::int64_t depth = cut.depth;
    for (;;) {
        const DeclarationStep* step = findMark(spot, cut.steps);
        if (step == nullptr || stored + step->units >= cut.textLimit || depth < step->effect.need)
            break;
        depth = std::max<std::int64_t>(depth + step->effect.rise, step->effect.floor);
        stored += step->units;
        spot = step->next;
    }
    if (spot == here)
        return;
    cut.depth = static_cast<std::uint32_t>(depth);
    if (cut.pendingUsed != 0)
        cut.pending.get()[cut.pendingUsed - 1].stepped = true;
    moveTo(spot, stored, context);
    addPending(spot, /*limited=*/true, cut);
}

} // namespace

void beginMarkup(std::uint32_t limit, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    cut.place = MarkupPlace::Unwatched;
    cut.kind = MarkupKind::Tag;
    cut.quote = 0;
    cut.depth = 0;
    cut.endDepth = 0;
    cut.foundOut = false;
    cut.endMeetsQuotes = false;
    // A failure may have ended the last piece in the midst of it.
    cut.text = nullptr;
    cut.stored = nullptr;
    cut.stepped = false;
    cut.limitedInQuote = false;
    cut.pendingUsed = 0;
    cut.watching = marksHold(cut, context) && cut.cutBefore && limit >= kUnreachedLimit;
    standAfter(blockPosition(*context.stream), cut);
}

void endMarkup(bool cutOff, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    if (cutOff) {
        cut.cutBefore = true;
        const std::uint32_t position = blockPosition(*context.stream);
        cut.reach = std::max(cut.reach, position);
        // A unit that only counts as the end isn't one to all that reads over it.
        if (context.statusFlags == STATUS_END_OF_INPUT && !cut.foundOut)
            cut.inputEnd = std::max(cut.inputEnd, position);
        keepPending(decoderState(context), cut);
    }
    dropPending(cut);
    cut.watching = false;
}

void beginDeclaration(bool conditional, char16_t* buffer, std::uint16_t& position,
    std::uint32_t limit, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    cut.kind = conditional ? MarkupKind::ConditionalDeclaration : MarkupKind::Declaration;
    cut.depth = 0;
    cut.text = buffer;
    cut.stored = &position;
    cut.textLimit = limit;
    cut.stepped = false;
    cut.storedBefore = position;
    cut.startPosition = blockPosition(*context.stream);
    cut.decoderBefore = decoderState(context);
}

bool endDeclaration(bool cutOff, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    const bool again = cut.stepped && !cutOff;
    clearStored(cut);
    if (again) {
        *cut.stored = cut.storedBefore;
        restoreDecoderState(cut.decoderBefore, context);
        seekTo(cut.startPosition, context);
        cut.watching = false;
        cut.pendingUsed = 0;
        cut.depth = 0;
    }
    cut.text = nullptr;
    cut.stored = nullptr;
    cut.stepped = false;
    return again;
}

bool checkCutMark(const NameCopy* name, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    if (cut.place == MarkupPlace::Unwatched || context.statusFlags != 0)
        return false;
    const std::uint32_t position = blockPosition(*context.stream);
    const MarkupRoom room = roomOf(cut, position);
    if (room == MarkupRoom::Limited && cut.quote != 0) {
        // Only outside of quotes a reading can be moved, so this counts as no question.
        cut.limitedInQuote = true;
        return false;
    }
    const bool limited = room == MarkupRoom::Limited;
    const bool due = limited ? position >> cut.stepShift != cut.lastStep
                             : position >> cut.markShift != cut.lastMark && !cut.limitedInQuote;
    cut.limitedInQuote = false;
    standAfter(position, cut);
    if (!due)
        return false;
    const MarkupSpot here = spotHere(room, name, context);
    if (isMarked(here, context))
        return true;
    addPending(here, limited, cut);
    if (limited)
        followSteps(here, context);
    return false;
}

void noteQuote(HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    if (cut.pendingUsed != 0)
        cut.pending.get()[cut.pendingUsed - 1].meetsQuotes = true;
}

bool countBracket(std::uint16_t unit, HtmlFilterContext& context)
{
    CutMarkup& cut = context.internals->cutMarkup;
    BracketEffect none = {0, 0, 0};
    BracketEffect& effect
        = cut.pendingUsed == 0 ? none : cut.pending.get()[cut.pendingUsed - 1].effect;
    if (unit == '[') {
        ++cut.depth;
        ++effect.rise;
        ++effect.floor;
    } else if (unit == ']') {
        cut.depth -= cut.depth > 0 ? 1u : 0u;
        --effect.rise;
        effect.floor -= effect.floor > 0 ? 1 : 0;
    } else if (unit == '>' && effect.floor == 0) {
        effect.need = std::max(effect.need, 1 - effect.rise);
    }
    // Deeper than the marks can count.
    if (effect.rise >= kMostBrackets - 1 || effect.rise <= 1 - kMostBrackets) {
        cut.watching = false;
        cut.pendingUsed = 0;
    }
    return unit == '>' && cut.depth == 0;
}
