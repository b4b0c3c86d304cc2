#include "output/text.h"

#include "filter/filter_internals.h"
#include "input/charset.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/tree_walk.h"
#include "scanner/char_refs.h"
#include "support/unit_words.h"
#include "support/wstring.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

/// Runs below this go out in one call, with their surrogates dropped.
constexpr std::int32_t kLongRun = 65'535;
constexpr std::int32_t kPieceOfLongRun = 65'534;

constexpr std::uint32_t kFirstSurrogate = 0xD800;
constexpr std::uint32_t kLastSurrogate = 0xDFFF;
/// The bits in which all surrogates agree.
constexpr std::uint32_t kSurrogateBits = 0xF800;
constexpr std::uint32_t kLastPlaneUnit = 0xFFFF;
constexpr std::uint32_t kLastCodePoint = 0x10'FFFF;

constexpr char16_t kBackspace = 8;
constexpr char16_t kTab = 9;
constexpr char16_t kLineFeed = 10;
constexpr char16_t kVerticalTab = 11;
constexpr char16_t kCarriageReturn = 13;
constexpr char16_t kShiftOut = 14;
constexpr char16_t kShiftIn = 15;
constexpr char16_t kEscape = 27;
constexpr char16_t kBlank = 32;

/// Why a unit may be more than an ordinary character.
enum UnitClass : std::uint8_t {
    UNIT_ALWAYS = 1, ///< vertical tab and "&"
    UNIT_SPACE = 2, ///< white space that collapses, the blank apart
    UNIT_BLANK = 4,
    UNIT_LINE = 8, ///< what preformatted text treats on its own: tab and line ends
    UNIT_ESCAPE = 0x10,
    UNIT_SHIFT = 0x20,
    UNIT_TILDE = 0x40,
};

constexpr std::size_t kClassCount = 128;

constexpr std::array<std::uint8_t, kClassCount> makeUnitClasses()
{
    std::array<std::uint8_t, kClassCount> classes{};
    classes[kBackspace] = UNIT_SPACE;
    classes[kTab] = UNIT_SPACE | UNIT_LINE;
    classes[kLineFeed] = UNIT_SPACE | UNIT_LINE;
    classes[kCarriageReturn] = UNIT_SPACE | UNIT_LINE;
    classes[kVerticalTab] = UNIT_ALWAYS;
    classes[kShiftOut] = UNIT_SHIFT;
    classes[kShiftIn] = UNIT_SHIFT;
    classes[kEscape] = UNIT_ESCAPE;
    classes[kBlank] = UNIT_BLANK;
    classes[u'&'] = UNIT_ALWAYS;
    classes[u'~'] = UNIT_TILDE;
    return classes;
}

constexpr std::array<std::uint8_t, kClassCount> kUnitClasses = makeUnitClasses();

bool isSpace(char16_t unit)
{
    return unit < kClassCount && (kUnitClasses[unit] & (UNIT_SPACE | UNIT_BLANK)) != 0;
}

/// Whether the next four units are ordinary in every set but HZ, where "~" is none. False is no
/// statement. The unit in front of them is looked at too: only behind a blank is a blank special.
bool areOrdinary(const char16_t* units)
{
    using zorvan::kEveryUnit;
    using zorvan::markZeroUnits;
    const std::uint64_t word = zorvan::unitWordAt(units);
    const std::uint64_t previous = zorvan::unitWordAt(units - 1);
    const std::uint64_t blanks = kBlank * kEveryUnit;
    const std::uint64_t others = markZeroUnits(word & 0xFFE0 * kEveryUnit) // below the blank
        | markZeroUnits(word ^ u'&' * kEveryUnit)
        | markZeroUnits((word ^ blanks) | (previous ^ blanks));
    return others == 0;
}

constexpr std::ptrdiff_t kWord = zorvan::kUnitsOfWord;

bool isSurrogate(std::uint32_t unit) { return unit >= kFirstSurrogate && unit <= kLastSurrogate; }

/// A text on its way to the host.
class TextDelivery {
public:
    TextDelivery(const char16_t* text, std::uint32_t count, HtmlFilterContext& context)
        : run_(context.internals->textRun)
        , context_(context)
        , at_(text)
        , end_(text + count)
        , preformatted_(context.internals->openPreformatted != 0)
        , special_(specialClasses())
    {
    }

    void deliver()
    {
        // A host that gave up in the middle of a text has left its run.
        run_.clear();
        while (at_ != end_) {
            takeOrdinary();
            if (at_ != end_)
                takeSpecial();
        }
        if (!isDropped())
            flushRun(run_, context_);
    }

private:
    std::uint32_t specialClasses() const
    {
        std::uint32_t classes = UNIT_ALWAYS;
        classes |= preformatted_ ? UNIT_LINE : UNIT_SPACE | UNIT_BLANK;
        if (context_.sectionCharSet == CHARSET_ISO_2022_JP)
            classes |= UNIT_ESCAPE;
        if (context_.sectionCharSet == CHARSET_ISO_2022_KR)
            classes |= UNIT_ESCAPE | UNIT_SHIFT;
        if (context_.metaCharSet == CHARSET_HZ)
            classes |= UNIT_TILDE;
        return classes;
    }

    /// The unit that a blank would follow.
    char16_t previousUnit() const
    {
        if (run_.length != 0)
            return run_.data[run_.length - 1];
        return context_.lastChar;
    }

    /// Whether a unit needs a look of its own. A blank behind anything but a blank is as good as a
    /// letter.
    bool isSpecial(char16_t unit, char16_t previous) const
    {
        return unit < kClassCount && (kUnitClasses[unit] & special_) != 0
            && (unit != kBlank || previous == kBlank);
    }

    /// Appends units up to the next one that needs a look of its own.
    void takeOrdinary()
    {
        if (isSpecial(*at_, previousUnit()))
            return;
        const char16_t* const start = at_++;
        const bool inWords = (special_ & UNIT_TILDE) == 0;
        for (;;) {
            while (inWords && end_ - at_ >= kWord && areOrdinary(at_))
                at_ += kWord;
            const char16_t* const stop = at_ + std::min(kWord, end_ - at_);
            while (at_ != stop && !isSpecial(*at_, at_[-1]))
                ++at_;
            if (at_ != stop || at_ == end_)
                break;
        }
        run_.append(start, static_cast<std::int32_t>(at_ - start));
    }

    void takeSpecial()
    {
        switch (*at_) {
        case kVerticalTab:
            ++at_;
            breakLine();
            return;
        case u'&':
            takeReference();
            return;
        case kEscape:
            takeEscape();
            return;
        case kShiftOut:
        case kShiftIn:
            switchState(*at_ == kShiftOut ? CHARSET_ID_KOREAN_STATE : CHARSET_ID_ASCII_STATE, 1);
            return;
        case u'~':
            takeTilde();
            return;
        default:
            takeSpace();
            return;
        }
    }

    void takeSpace()
    {
        const char16_t unit = *at_++;
        if (!preformatted_) {
            if (previousUnit() != kBlank)
                run_.append(kBlank);
            return;
        }
        if (unit == kTab) {
            flushRun(run_, context_);
            context_.lastChar = kBlank;
            SOEmitSpecial(SPECIAL_TAB, context_);
            return;
        }
        if (unit == kCarriageReturn && at_ != end_ && *at_ == kLineFeed)
            ++at_;
        breakLine();
    }

    void breakLine()
    {
        flushRun(run_, context_);
        context_.lastChar = 0;
        emitParagraphBreak(context_);
    }

    void takeReference()
    {
        std::uint32_t value = 0;
        const std::uint32_t taken = textCharRef(at_, value, context_);
        if (taken == 0 || value == 0) {
            run_.append(*at_++);
            return;
        }
        at_ += taken;
        flushRun(run_, context_);
        deliverReference(value);
    }

    void deliverReference(std::uint32_t value)
    {
        constexpr std::uint32_t kFirstAstral = 0x1'0000;
        constexpr std::uint32_t kTrailBase = 0xDC00;
        constexpr std::uint32_t kTrailBits = 10;
        constexpr std::uint32_t kTrailMask = 0x3FF;

        char16_t units[2] = {u'*', 0};
        std::uint16_t count = 1;
        if (value > kLastPlaneUnit && value <= kLastCodePoint) {
            const std::uint32_t offset = value - kFirstAstral;
            units[0] = static_cast<char16_t>(kFirstSurrogate + (offset >> kTrailBits));
            units[1] = static_cast<char16_t>(kTrailBase + (offset & kTrailMask));
            count = 2;
        } else if (value <= kLastPlaneUnit && !isSurrogate(value)) {
            units[0] = static_cast<char16_t>(value);
        }
        context_.paragraphFlags |= PARAGRAPH_HAS_CONTENT;
        // The low half of a large value: lastChar is as wide as a unit.
        context_.lastChar = static_cast<std::uint16_t>(value);
        SOEmitTextAt(units, count, CHARSET_ID_UTF16, context_);
    }

    /// The unit at a distance; 0 behind the end.
    char16_t ahead(std::ptrdiff_t distance) const
    {
        return end_ - at_ > distance ? at_[distance] : u'\0';
    }

    /// The state that the escape sequence here switches to and its length; 0 for none.
    std::uint32_t escapedState(std::uint32_t& length) const
    {
        length = 3;
        if (context_.sectionCharSet == CHARSET_ISO_2022_KR) {
            length = 4;
            const bool isKorean = ahead(1) == u'$' && ahead(2) == u')' && ahead(3) == u'C';
            return isKorean ? CHARSET_ID_ASCII_STATE : 0;
        }
        if (ahead(1) == u'$' && (ahead(2) == u'@' || ahead(2) == u'B'))
            return CHARSET_ID_JIS_X_0208_STATE;
        if (ahead(1) == u'(' && ahead(2) == u'B')
            return CHARSET_ID_ASCII_STATE;
        if (ahead(1) == u'(' && ahead(2) == u'J')
            return CHARSET_ID_JIS_ROMAN_STATE;
        return 0;
    }

    void takeEscape()
    {
        std::uint32_t length = 0;
        const std::uint32_t state = escapedState(length);
        // QUIRK(Text.EscapeOfTheStateInForceStays): a sequence that changes nothing is text.
        if (state == 0 || state == context_.sectionCharSetId) {
            run_.append(*at_++);
            return;
        }
        switchState(state, length);
    }

    void takeTilde()
    {
        const char16_t next = ahead(1);
        const std::uint32_t state = next == u'{' ? CHARSET_ID_GB_STATE : CHARSET_ID_ASCII_STATE;
        if ((next == u'{' || next == u'}') && state != context_.sectionCharSetId) {
            switchState(state, 2);
            return;
        }
        run_.append(u'~');
        const bool isDouble = next == u'~' && context_.sectionCharSetId == CHARSET_ID_ASCII_STATE;
        at_ += isDouble ? 2 : 1;
    }

    void switchState(std::uint32_t state, std::uint32_t length)
    {
        at_ += length;
        flushRun(run_, context_);
        context_.sectionCharSetId = state;
    }

    /// White space alone does not begin a paragraph.
    bool isDropped() const
    {
        return !preformatted_ && context_.lastChar == 0
            && std::all_of(run_.data, run_.data + run_.length, isSpace);
    }

    zorvan::WString& run_;
    HtmlFilterContext& context_;
    const char16_t* at_;
    const char16_t* end_;
    const bool preformatted_;
    const std::uint32_t special_;
};

void deliverUnits(const char16_t* text, std::uint32_t count, HtmlFilterContext& context)
{
    if (count == 0)
        return;
    context.lastBlockMargin = 0;
    TextDelivery(text, count, context).deliver();
}

const HtmlTextNodeData* textOf(const HtmlTreeNode& node)
{
    if (node.data == nullptr || node.data->elementId != ELEMENT_NONE)
        return nullptr;
    return static_cast<const HtmlTextNodeData*>(node.data);
}

bool isInline(const HtmlTreeNode& node) { return kInlineElements.contains(elementOf(node)); }

/// Whether an inline element lets the text in front of it keep its last white space.
bool keepsSpaceBefore(const HtmlTreeNode& inlineElement)
{
    return inlineElement.firstChild == nullptr || !isSpaceText(*inlineElement.firstChild);
}

bool isLeadingSpaceTrimmed(const HtmlTreeNode& node, const HtmlFilterContext& context)
{
    if (node.prevSibling != nullptr)
        return context.lastChar == 0;
    const bool parentIsInline = node.parent != nullptr && isInline(*node.parent);
    return !parentIsInline || context.lastChar == 0;
}

/// What follows the text at the end of its inline elements. An element climbed over is the last of
/// its parent's children, so no two texts climb over the same one.
bool isTrimmedAtEndOfParent(const HtmlTreeNode& node)
{
    const HtmlTreeNode* reached = node.parent;
    while (reached != nullptr && isInline(*reached) && reached->nextSibling == nullptr)
        reached = reached->parent;
    if (reached == nullptr || !isInline(*reached))
        return true;
    const HtmlTreeNode& next = *reached->nextSibling;
    if (textOf(next) != nullptr)
        return isSpaceText(next);
    return !isInline(next) || !keepsSpaceBefore(next);
}

bool isTrailingSpaceTrimmed(const HtmlTreeNode& node)
{
    if (node.nextSibling == nullptr)
        return isTrimmedAtEndOfParent(node);
    const HtmlTreeNode& next = *node.nextSibling;
    const std::uint32_t element = elementOf(next);
    if (element == ELEMENT_TITLE || element == ELEMENT_NOBR)
        return false;
    return !isInline(next) || !keepsSpaceBefore(next);
}

void deliverLongRun(const zorvan::WString& run, HtmlFilterContext& context)
{
    for (std::int32_t start = 0; start < run.length; start += kPieceOfLongRun) {
        const std::int32_t count = std::min(run.length - start, kPieceOfLongRun);
        SOEmitText(
            run.data + start, static_cast<std::uint16_t>(count), context.sectionCharSetId, context);
    }
}

const char16_t* findSurrogate(const char16_t* units, const char16_t* end)
{
    using zorvan::kEveryUnit;
    for (; end - units >= kWord; units += kWord) {
        const std::uint64_t high = zorvan::unitWordAt(units) & kSurrogateBits * kEveryUnit;
        if (zorvan::markZeroUnits(high ^ kFirstSurrogate * kEveryUnit) != 0)
            break;
    }
    return std::find_if(units, end, isSurrogate);
}

/// Drops the surrogates of a run in place; answers the units that stay.
std::int32_t dropSurrogates(const zorvan::WString& run)
{
    const char16_t* const end = run.data + run.length;
    const char16_t* const found = findSurrogate(run.data, end);
    if (found == end)
        return run.length;
    // The run owns its units; it is emptied as soon as they have gone out.
    auto* const units = const_cast<char16_t*>(run.data);
    const char16_t* const keptEnd
        = std::remove_if(units + (found - run.data), units + run.length, isSurrogate);
    return static_cast<std::int32_t>(keptEnd - run.data);
}

} // namespace

bool isSpaceText(const HtmlTreeNode& node)
{
    const HtmlTextNodeData* text = textOf(node);
    return text != nullptr && std::all_of(text->text, text->text + text->length, isSpace);
}

void deliverTextNode(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlTextNodeData* payload = textOf(node);
    if (payload == nullptr || payload->length == 0)
        return;
    const char16_t* text = payload->text;
    const char16_t* end = text + payload->length;
    if (context.internals->openPreformatted == 0) {
        if (isSpace(*text) && isLeadingSpaceTrimmed(node, context))
            text = std::find_if_not(text, end, isSpace);
        if (text != end && isSpace(end[-1]) && isTrailingSpaceTrimmed(node)) {
            while (end != text && isSpace(end[-1]))
                --end;
        }
    }
    deliverUnits(text, static_cast<std::uint32_t>(end - text), context);
}

void deliverText(const char16_t* text, HtmlFilterContext& context)
{
    deliverUnits(
        text, static_cast<std::uint32_t>(std::char_traits<char16_t>::length(text)), context);
}

void flushRun(zorvan::WString& run, HtmlFilterContext& context)
{
    if (run.length == 0)
        return;
    context.paragraphFlags |= PARAGRAPH_HAS_CONTENT;
    context.lastChar = run.data[run.length - 1];
    if (run.length < kLongRun) {
        // QUIRK(Text.SurrogatesOfARunAreLost): a pair in running text does not reach the host, and
        // a run of nothing else goes out with no characters.
        const std::int32_t count = dropSurrogates(run);
        SOEmitTextAt(
            run.data, static_cast<std::uint16_t>(count), context.sectionCharSetId, context);
    } else {
        deliverLongRun(run, context);
    }
    run.clear();
}

void deliverChar(char16_t unit, HtmlFilterContext& context)
{
    // The C1 range goes out under a set that has characters there.
    const std::uint32_t charSetId
        = unit >= 128 && unit <= 159 ? CHARSET_ID_WINDOWS_1252 : CHARSET_ID_UTF16;
    context.paragraphFlags |= PARAGRAPH_HAS_CONTENT;
    context.lastChar = unit;
    SOEmitText(&unit, 1, charSetId, context);
}
