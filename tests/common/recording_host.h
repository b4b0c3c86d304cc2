#pragma once

#include "filter/html_filter_context.h"
#include "output/host_routines.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// What a host throws that gives up in the middle of a call.
struct HostGaveUp {
    std::uint32_t call; ///< the number of the call, from 1
};

/// A host that writes every call down as a line of text: the routine's name and its arguments,
/// without the user words. Numbers are unsigned decimal; text stands in double quotes, with U+0020
/// to U+007E as they are but for the quote and the backslash, all others as \uXXXX; that of
/// SOCommitChars is what was written into the buffer. Records are {@offset=value ...} of their
/// 32-bit words that are not 0, a missing one is null. Behind the arguments of the routines that
/// answer something stands " -> " and the answer.
///
/// Handles are given out in order: strings and references from 1, rows from 100001, cells from
/// 200001.
class RecordingHost {
public:
    /// Installs all routines that the filter calls, and the user words.
    explicit RecordingHost(HtmlFilterContext& context);
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;

    /// The calls so far. takeCalls empties them.
    std::vector<std::string> calls;
    std::vector<std::string> takeCalls()
    {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }

    std::uint32_t stopEvery = 0; ///< SOEmitBreak answers 1 at every n-th call of it; 0 never
    std::uint32_t throwAt = 0; ///< the n-th call of all, from 1, throws HostGaveUp; 0 none
    bool refuseBuffers = false; ///< SOReserveChars writes null
    std::uint32_t callCount = 0;
    std::uint32_t breakCount = 0;

private:
    static constexpr std::uint32_t kUserWord = 0x5EC0;

    void install(std::uint32_t routineId, void* routine, HtmlFilterContext& context)
    {
        context.soRoutines[routineId - 1] = routine;
    }
    template <class Routine>
    void set(std::uint32_t routineId, Routine routine, HtmlFilterContext& context)
    {
        install(routineId, reinterpret_cast<void*>(routine), context);
    }

    static RecordingHost& of(void* userData1) { return *static_cast<RecordingHost*>(userData1); }

    static std::string quoted(const char16_t* text, std::size_t count)
    {
        static constexpr std::string_view kDigits = "0123456789abcdef";
        std::string line = "\"";
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t unit = text[i];
            if (unit >= 0x20 && unit <= 0x7E && unit != '"' && unit != '\\') {
                line += static_cast<char>(unit);
                continue;
            }
            line += "\\u";
            for (std::uint32_t shift = 16; shift != 0; shift -= 4)
                line += kDigits[unit >> (shift - 4) & 0xF];
        }
        return line + '"';
    }

    static std::string recordText(const void* record, std::size_t size)
    {
        if (record == nullptr)
            return "null";
        std::string line = "{";
        for (std::size_t offset = 0; offset + 4 <= size; offset += 4) {
            std::uint32_t word = 0;
            std::memcpy(&word, static_cast<const char*>(record) + offset, sizeof word);
            if (word == 0)
                continue;
            if (line.size() > 1)
                line += ' ';
            line += '@' + std::to_string(offset) + '=' + std::to_string(word);
        }
        return line + '}';
    }

    template <class Number> static void addArgument(std::string& line, Number number)
    {
        line += ' ' + std::to_string(static_cast<std::uint32_t>(number));
    }
    static void addArgument(std::string& line, const std::string& text) { line += ' ' + text; }

    /// Writes a call down; throws when it is the one to give up at.
    template <class... Arguments> void note(std::string line, const Arguments&... arguments)
    {
        ++callCount;
        (addArgument(line, arguments), ...);
        calls.push_back(std::move(line));
        if (callCount == throwAt)
            throw HostGaveUp{callCount};
    }

    std::uint32_t answer(std::uint32_t handle)
    {
        calls.back() += " -> " + std::to_string(handle);
        return handle;
    }

    void installText(HtmlFilterContext& context);
    void installAttributes(HtmlFilterContext& context);
    void installBlocks(HtmlFilterContext& context);
    void installStretches(HtmlFilterContext& context);
    void installDocument(HtmlFilterContext& context);

    std::uint32_t nextString_ = 1;
    std::uint32_t nextReference_ = 1;
    std::uint32_t nextRow_ = 100'001;
    std::uint32_t nextCell_ = 200'001;
    std::vector<char16_t> reserved_;
};

inline RecordingHost::RecordingHost(HtmlFilterContext& context)
{
    context.userData1 = this;
    context.userData2 = reinterpret_cast<void*>(std::uintptr_t{kUserWord});
    installText(context);
    installAttributes(context);
    installBlocks(context);
    installStretches(context);
    installDocument(context);
}

inline void RecordingHost::installText(HtmlFilterContext& context)
{
    const SOEmitSpecialRoutine emitSpecial
        = [](std::uint16_t code, void* user, void*) { of(user).note("SOEmitSpecial", code); };
    const SOEmitBreakRoutine emitBreak
        = [](std::uint16_t kind, std::uint32_t handle, void* user, void*) -> std::uint32_t {
        RecordingHost& host = of(user);
        ++host.breakCount;
        host.note("SOEmitBreak", kind, handle);
        return host.stopEvery != 0 && host.breakCount % host.stopEvery == 0 ? 1 : 0;
    };
    const SOEmitTextRoutine emitText
        = [](const char16_t* text, std::uint16_t count, std::uint32_t charSetId, void* user,
              void*) { of(user).note("SOEmitText", quoted(text, count), count, charSetId); };
    const SOEmitTextAtRoutine emitTextAt
        = [](const char16_t* text, std::uint16_t count, std::uint32_t charSetId, std::uint32_t word,
              void* user, void*) {
              of(user).note("SOEmitTextAt", quoted(text, count), count, charSetId, word);
          };
    const SOReserveCharsRoutine reserveChars
        = [](char16_t** buffer, std::uint32_t capacity, void* user, void*) {
              RecordingHost& host = of(user);
              host.note("SOReserveChars", capacity);
              host.reserved_.assign(capacity, u'\0');
              *buffer = host.refuseBuffers ? nullptr : host.reserved_.data();
          };
    const SOCommitCharsRoutine commitChars
        = [](std::uint16_t count, std::uint32_t charSetId, void* user, void*) {
              RecordingHost& host = of(user);
              host.note("SOCommitChars", quoted(host.reserved_.data(), count), count, charSetId);
          };
    set(SO_EMIT_SPECIAL, emitSpecial, context);
    set(SO_EMIT_BREAK, emitBreak, context);
    set(SO_EMIT_TEXT, emitText, context);
    set(SO_EMIT_TEXT_AT, emitTextAt, context);
    set(SO_RESERVE_CHARS, reserveChars, context);
    set(SO_COMMIT_CHARS, commitChars, context);
}

inline void RecordingHost::installAttributes(HtmlFilterContext& context)
{
    const SOSetFontHeightRoutine setFontHeight = [](std::uint32_t halfPoints, void* user, void*) {
        of(user).note("SOSetFontHeight", halfPoints);
    };
    const SOSelectFontRoutine selectFont = [](std::uint32_t fontIndex, void* user, void*) {
        of(user).note("SOSelectFont", fontIndex);
    };
    const SOSetTextColorRoutine setTextColor
        = [](std::uint32_t mode, std::uint32_t color, void* user, void*) {
              of(user).note("SOSetTextColor", mode, color);
          };
    const SOSetBackColorRoutine setBackColor
        = [](std::uint32_t mode, std::uint32_t color, void* user, void*) {
              of(user).note("SOSetBackColor", mode, color);
          };
    const SOSetExtraPropertyRoutine setExtraProperty
        = [](std::uint32_t kind, std::uint32_t sub, std::uint32_t value, std::uint32_t value2,
              void* user, void*) { of(user).note("SOSetExtraProperty", kind, sub, value, value2); };
    const SOSetPropertyRoutine setProperty
        = [](std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value,
              void* user, void*) { of(user).note("SOSetProperty", kind, sub, flag, value); };
    set(SO_SET_FONT_HEIGHT, setFontHeight, context);
    set(SO_SELECT_FONT, selectFont, context);
    set(SO_SET_TEXT_COLOR, setTextColor, context);
    set(SO_SET_BACK_COLOR, setBackColor, context);
    set(SO_SET_EXTRA_PROPERTY, setExtraProperty, context);
    set(SO_SET_PROPERTY, setProperty, context);
}

inline void RecordingHost::installBlocks(HtmlFilterContext& context)
{
    const SOSetLineSpacingRoutine setLineSpacing
        = [](std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b, void* user,
              void*) { of(user).note("SOSetLineSpacing", kind, value, a, b); };
    const SOFinishTableRoutine finishTable
        = [](void* user, void*) { of(user).note("SOFinishTable"); };
    const SOSetPageBordersRoutine setPageBorders
        = [](std::uint32_t on, const PageBorderRecord* record, void* user, void*) {
              of(user).note("SOSetPageBorders", on, recordText(record, sizeof *record));
          };
    const SOSetParagraphBorderRoutine setParagraphBorder
        = [](std::uint32_t on, const ParagraphBorderRecord* record, void* user, void*) {
              of(user).note("SOSetParagraphBorder", on, recordText(record, sizeof *record));
          };
    const SOSetParagraphShadingRoutine setParagraphShading
        = [](std::uint32_t on, const ParagraphShadingRecord* record, void* user, void*) {
              of(user).note("SOSetParagraphShading", on, recordText(record, sizeof *record));
          };
    const SODefineTableRoutine defineTable = [](const TableRecord* record, void* user, void*) {
        of(user).note("SODefineTable", recordText(record, sizeof *record));
    };
    const SODefineTableRowRoutine defineTableRow
        = [](const TableRowRecord* record, void* user, void*) {
              of(user).note("SODefineTableRow", recordText(record, sizeof *record));
              return of(user).answer(of(user).nextRow_++);
          };
    const SODefineTableCellRoutine defineTableCell
        = [](const TableCellRecord* record, void* user, void*) {
              of(user).note("SODefineTableCell", recordText(record, sizeof *record));
              return of(user).answer(of(user).nextCell_++);
          };
    set(SO_SET_LINE_SPACING, setLineSpacing, context);
    set(SO_FINISH_TABLE, finishTable, context);
    set(SO_SET_PAGE_BORDERS, setPageBorders, context);
    set(SO_SET_PARAGRAPH_BORDER, setParagraphBorder, context);
    set(SO_SET_PARAGRAPH_SHADING, setParagraphShading, context);
    set(SO_DEFINE_TABLE, defineTable, context);
    set(SO_DEFINE_TABLE_ROW, defineTableRow, context);
    set(SO_DEFINE_TABLE_CELL, defineTableCell, context);
}

inline void RecordingHost::installStretches(HtmlFilterContext& context)
{
    const SOPlaceGraphicRoutine placeGraphic = [](const GraphicRecord* record, void* user, void*) {
        of(user).note("SOPlaceGraphic", recordText(record, sizeof *record));
    };
    const SOPlaceRuleRoutine placeRule
        = [](const RuleRecord* record, std::uint32_t color, std::uint32_t mode, std::uint32_t width,
              std::uint32_t height, void* user, void*) {
              of(user).note(
                  "SOPlaceRule", recordText(record, sizeof *record), color, mode, width, height);
          };
    const SOBeginTaggedRoutine beginTagged
        = [](std::uint32_t tag, std::uint32_t value, const void* record, void* user, void*) {
              of(user).note("SOBeginTagged", tag, value, recordText(record, tag & 0xFFFF));
          };
    const SOEndTaggedRoutine endTagged = [](std::uint32_t tag, std::uint32_t value, void* user,
                                             void*) { of(user).note("SOEndTagged", tag, value); };
    const SOStoreStringRoutine storeString
        = [](const char16_t* text, std::uint32_t charSetId, std::uint16_t length,
              std::uint32_t* handle, void* user, void*) -> std::uint32_t {
        of(user).note("SOStoreString", quoted(text, length), charSetId, length);
        *handle = of(user).answer(of(user).nextString_++);
        return 0;
    };
    const SOBeginReferenceRoutine beginReference
        = [](std::uint32_t* referenceId, void* user, void*) {
              of(user).note("SOBeginReference");
              *referenceId = of(user).answer(of(user).nextReference_++);
          };
    const SOAddReferencePartRoutine addReferencePart
        = [](std::uint32_t code, std::uint32_t a, std::uint32_t b, void* user, void*) {
              of(user).note("SOAddReferencePart", code, a, b);
          };
    const SOEndReferenceRoutine endReference
        = [](void* user, void*) { of(user).note("SOEndReference"); };
    set(SO_PLACE_GRAPHIC, placeGraphic, context);
    set(SO_PLACE_RULE, placeRule, context);
    set(SO_BEGIN_TAGGED, beginTagged, context);
    set(SO_END_TAGGED, endTagged, context);
    set(SO_STORE_STRING, storeString, context);
    set(SO_BEGIN_REFERENCE, beginReference, context);
    set(SO_ADD_REFERENCE_PART, addReferencePart, context);
    set(SO_END_REFERENCE, endReference, context);
}

inline void RecordingHost::installDocument(HtmlFilterContext& context)
{
    const SOAnnounceSectionRoutine announceSection
        = [](std::uint32_t first, std::uint32_t second, std::uint32_t third, void* user, void*) {
              of(user).note("SOAnnounceSection", first, second, third);
          };
    const SOAbandonFilterRoutine abandonFilter
        = [](std::uint32_t code, void* user, void*) { of(user).note("SOAbandonFilter", code); };
    const SODefineFontRoutine defineFont
        = [](std::uint32_t index, std::uint16_t family, const char* name, void* user, void*) {
              const auto* bytes = reinterpret_cast<const unsigned char*>(name);
              const std::u16string text(bytes, bytes + std::strlen(name));
              of(user).note("SODefineFont", index, family, quoted(text.data(), text.size()));
          };
    const SOAttachReferenceRoutine attachReference
        = [](std::uint32_t referenceId, std::uint32_t zero, void* user, void*) {
              of(user).note("SOAttachReference", referenceId, zero);
          };
    const SOMarkSourceTagRoutine markSourceTag
        = [](std::uint32_t id, void* user, void*) { of(user).note("SOMarkSourceTag", id); };
    const SOAnnounceFeaturesRoutine announceFeatures
        = [](std::uint32_t features, void* user, void*) {
              of(user).note("SOAnnounceFeatures", features);
          };
    set(SO_ANNOUNCE_SECTION, announceSection, context);
    set(SO_ABANDON_FILTER, abandonFilter, context);
    set(SO_DEFINE_FONT, defineFont, context);
    set(SO_ATTACH_REFERENCE, attachReference, context);
    set(SO_MARK_SOURCE_TAG, markSourceTag, context);
    set(SO_ANNOUNCE_FEATURES, announceFeatures, context);
}

} // namespace testing_support
