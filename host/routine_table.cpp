#include "host/routine_table.h"

#include <iterator>
#include <string_view>
#include <tuple>

namespace host {

namespace {

    // A larger buffer than any filter needs; a module that asks for more gets none.
    constexpr std::uint32_t kMostReservedChars = 1u << 20;

    HostSession& sessionOf(void* userData1)
    {
        HostSession& session = *static_cast<HostSession*>(userData1);
        ++session.calls;
        return session;
    }

    HostSink& sinkOf(void* userData1) { return sessionOf(userData1).sink; }

    std::u16string_view viewOf(const char16_t* text, std::uint16_t count)
    {
        return text == nullptr ? std::u16string_view() : std::u16string_view(text, count);
    }

    void emitSpecial(std::uint16_t code, void* userData1, void*)
    {
        sinkOf(userData1).emitSpecial(code);
    }

    void setFontHeight(std::uint32_t halfPoints, void* userData1, void*)
    {
        sinkOf(userData1).setFontHeight(halfPoints);
    }

    std::uint32_t emitBreak(std::uint16_t kind, std::uint32_t handle, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        if (kind == BREAK_DOCUMENT)
            session.documentEnded = true;
        ++session.breaks;
        const bool due = session.stopEvery != 0 && session.breaks % session.stopEvery == 0;
        const bool wanted = session.sink.emitBreak(kind, handle);
        return due || wanted ? 1 : 0;
    }

    void announceSection(
        std::uint32_t first, std::uint32_t second, std::uint32_t third, void* userData1, void*)
    {
        sinkOf(userData1).announceSection(first, second, third);
    }

    void abandonFilter(std::uint32_t code, void* userData1, void*)
    {
        sessionOf(userData1);
        throw AbandonError{code};
    }

    void selectFont(std::uint32_t fontIndex, void* userData1, void*)
    {
        sinkOf(userData1).selectFont(fontIndex);
    }

    void setLineSpacing(std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b,
        void* userData1, void*)
    {
        sinkOf(userData1).setLineSpacing(kind, value, a, b);
    }

    void defineFont(
        std::uint32_t index, std::uint16_t family, const char* name, void* userData1, void*)
    {
        sinkOf(userData1).defineFont(
            index, family, name == nullptr ? std::string_view() : std::string_view(name));
    }

    void finishTable(void* userData1, void*) { sinkOf(userData1).finishTable(); }

    void placeGraphic(const GraphicRecord* record, void* userData1, void*)
    {
        sinkOf(userData1).placeGraphic(record);
    }

    void placeRule(const RuleRecord* record, std::uint32_t color, std::uint32_t mode,
        std::uint32_t width, std::uint32_t height, void* userData1, void*)
    {
        sinkOf(userData1).placeRule(record, color, mode, width, height);
    }

    void beginTagged(
        std::uint32_t tag, std::uint32_t value, const void* record, void* userData1, void*)
    {
        sinkOf(userData1).beginTagged(tag, value, record);
    }

    void endTagged(std::uint32_t tag, std::uint32_t value, void* userData1, void*)
    {
        sinkOf(userData1).endTagged(tag, value);
    }

    std::uint32_t storeString(const char16_t* text, std::uint32_t charSetId, std::uint16_t length,
        std::uint32_t* handle, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        const std::uint32_t given = session.nextString++;
        if (handle != nullptr)
            *handle = given;
        session.sink.storeString(viewOf(text, length), charSetId, given);
        return given;
    }

    void setPageBorders(std::uint32_t on, const PageBorderRecord* record, void* userData1, void*)
    {
        sinkOf(userData1).setPageBorders(on, record);
    }

    void setParagraphBorder(
        std::uint32_t on, const ParagraphBorderRecord* record, void* userData1, void*)
    {
        sinkOf(userData1).setParagraphBorder(on, record);
    }

    void setParagraphShading(
        std::uint32_t on, const ParagraphShadingRecord* record, void* userData1, void*)
    {
        sinkOf(userData1).setParagraphShading(on, record);
    }

    void setTextColor(std::uint32_t mode, std::uint32_t color, void* userData1, void*)
    {
        sinkOf(userData1).setTextColor(mode, color);
    }

    void setBackColor(std::uint32_t mode, std::uint32_t color, void* userData1, void*)
    {
        sinkOf(userData1).setBackColor(mode, color);
    }

    void beginReference(std::uint32_t* referenceId, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        const std::uint32_t given = session.nextReference++;
        if (referenceId != nullptr)
            *referenceId = given;
        session.sink.beginReference(given);
    }

    void setExtraProperty(std::uint32_t kind, std::uint32_t sub, std::uint32_t value,
        std::uint32_t value2, void* userData1, void*)
    {
        sinkOf(userData1).setExtraProperty(kind, sub, value, value2);
    }

    void attachReference(std::uint32_t referenceId, std::uint32_t zero, void* userData1, void*)
    {
        sinkOf(userData1).attachReference(referenceId, zero);
    }

    void defineTable(const TableRecord* record, void* userData1, void*)
    {
        sinkOf(userData1).defineTable(record);
    }

    std::uint32_t defineTableCell(const TableCellRecord* record, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        const std::uint32_t given = session.nextCell++;
        session.sink.defineTableCell(record, given);
        return given;
    }

    std::uint32_t defineTableRow(const TableRowRecord* record, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        const std::uint32_t given = session.nextRow++;
        session.sink.defineTableRow(record, given);
        return given;
    }

    void emitText(
        const char16_t* text, std::uint16_t count, std::uint32_t charSetId, void* userData1, void*)
    {
        sinkOf(userData1).emitText(viewOf(text, count), charSetId);
    }

    void reserveChars(char16_t** buffer, std::uint32_t capacity, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        const bool granted = capacity <= kMostReservedChars;
        session.reserved.assign(granted ? capacity : 0, u'\0');
        if (buffer != nullptr)
            *buffer = granted ? session.reserved.data() : nullptr;
        session.sink.reserveChars(capacity);
    }

    void commitChars(std::uint16_t count, std::uint32_t charSetId, void* userData1, void*)
    {
        HostSession& session = sessionOf(userData1);
        const std::u16string_view written = session.reserved;
        session.sink.commitChars(written.substr(0, count), charSetId);
    }

    void markSourceTag(std::uint32_t id, void* userData1, void*)
    {
        sinkOf(userData1).markSourceTag(id);
    }

    void setProperty(std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value,
        void* userData1, void*)
    {
        sinkOf(userData1).setProperty(kind, sub, flag, value);
    }

    void announceFeatures(std::uint32_t features, void* userData1, void*)
    {
        sinkOf(userData1).announceFeatures(features);
    }

    void addReferencePart(
        std::uint32_t code, std::uint32_t a, std::uint32_t b, void* userData1, void*)
    {
        sinkOf(userData1).addReferencePart(code, a, b);
    }

    void endReference(void* userData1, void*) { sinkOf(userData1).endReference(); }

    void emitTextAt(const char16_t* text, std::uint16_t count, std::uint32_t charSetId,
        std::uint32_t word, void* userData1, void*)
    {
        sinkOf(userData1).emitTextAt(viewOf(text, count), charSetId, word);
    }

    struct RoutineRow {
        std::int16_t id;
        void* routine;
    };

    /// A routine that keeps in the session what it throws: only so can the host tell its own
    /// failures from those of a module that throws on its own, or that swallows them.
    template <auto Routine> struct Keeping;
    template <typename Answer, typename... Arguments, Answer (*Routine)(Arguments...)>
    struct Keeping<Routine> {
        static Answer call(Arguments... arguments)
        {
            try {
                return Routine(arguments...);
            } catch (...) {
                constexpr std::size_t kUserData1 = sizeof...(Arguments) - 2;
                auto& session
                    = *static_cast<HostSession*>(std::get<kUserData1>(std::tie(arguments...)));
                if (session.failure == nullptr)
                    session.failure = std::current_exception();
                throw;
            }
        }
    };

    /// A routine under its id; the type is that of the interface, so that a wrong signature shows.
    template <typename Type, auto Routine> RoutineRow row(std::int16_t id)
    {
        const Type routine = Keeping<Routine>::call;
        return {id, reinterpret_cast<void*>(routine)};
    }

} // namespace

void installRoutines(const Module& module, HostSession& session, HtmlFilterContext* context)
{
    const RoutineRow rows[] = {
        row<SOEmitSpecialRoutine, emitSpecial>(SO_EMIT_SPECIAL),
        row<SOSetFontHeightRoutine, setFontHeight>(SO_SET_FONT_HEIGHT),
        row<SOEmitBreakRoutine, emitBreak>(SO_EMIT_BREAK),
        row<SOAnnounceSectionRoutine, announceSection>(SO_ANNOUNCE_SECTION),
        row<SOAbandonFilterRoutine, abandonFilter>(SO_ABANDON_FILTER),
        row<SOSelectFontRoutine, selectFont>(SO_SELECT_FONT),
        row<SOSetLineSpacingRoutine, setLineSpacing>(SO_SET_LINE_SPACING),
        row<SODefineFontRoutine, defineFont>(SO_DEFINE_FONT),
        row<SOFinishTableRoutine, finishTable>(SO_FINISH_TABLE),
        row<SOPlaceGraphicRoutine, placeGraphic>(SO_PLACE_GRAPHIC),
        row<SOPlaceRuleRoutine, placeRule>(SO_PLACE_RULE),
        row<SOBeginTaggedRoutine, beginTagged>(SO_BEGIN_TAGGED),
        row<SOEndTaggedRoutine, endTagged>(SO_END_TAGGED),
        row<SOStoreStringRoutine, storeString>(SO_STORE_STRING),
        row<SOSetPageBordersRoutine, setPageBorders>(SO_SET_PAGE_BORDERS),
        row<SOSetParagraphBorderRoutine, setParagraphBorder>(SO_SET_PARAGRAPH_BORDER),
        row<SOSetParagraphShadingRoutine, setParagraphShading>(SO_SET_PARAGRAPH_SHADING),
        row<SOSetTextColorRoutine, setTextColor>(SO_SET_TEXT_COLOR),
        row<SOSetBackColorRoutine, setBackColor>(SO_SET_BACK_COLOR),
        row<SOBeginReferenceRoutine, beginReference>(SO_BEGIN_REFERENCE),
        row<SOSetExtraPropertyRoutine, setExtraProperty>(SO_SET_EXTRA_PROPERTY),
        row<SOAttachReferenceRoutine, attachReference>(SO_ATTACH_REFERENCE),
        row<SODefineTableRoutine, defineTable>(SO_DEFINE_TABLE),
        row<SODefineTableCellRoutine, defineTableCell>(SO_DEFINE_TABLE_CELL),
        row<SODefineTableRowRoutine, defineTableRow>(SO_DEFINE_TABLE_ROW),
        row<SOEmitTextRoutine, emitText>(SO_EMIT_TEXT),
        row<SOReserveCharsRoutine, reserveChars>(SO_RESERVE_CHARS),
        row<SOCommitCharsRoutine, commitChars>(SO_COMMIT_CHARS),
        row<SOMarkSourceTagRoutine, markSourceTag>(SO_MARK_SOURCE_TAG),
        row<SOSetPropertyRoutine, setProperty>(SO_SET_PROPERTY),
        row<SOAnnounceFeaturesRoutine, announceFeatures>(SO_ANNOUNCE_FEATURES),
        row<SOAddReferencePartRoutine, addReferencePart>(SO_ADD_REFERENCE_PART),
        row<SOEndReferenceRoutine, endReference>(SO_END_REFERENCE),
        row<SOEmitTextAtRoutine, emitTextAt>(SO_EMIT_TEXT_AT),
    };
    static_assert(std::size(rows) == 34);
    module.entry().setUser(&session, nullptr, context);
    for (const RoutineRow& each : rows)
        module.entry().setSoRtn(each.id, each.routine, context);
}

} // namespace host
