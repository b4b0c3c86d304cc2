// A module that plays a filter for the tests of the host. The first word of the document tells what
// it does; FAKE_FAULT builds one that answers wrongly.

#include "filter/entry_table.h"
#include "output/host_routines.h"
#include "support/bail_out.h"
#include "support/engine_options.h"
#include "support/exception.h"

#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <unwind.h>

#define FAULT_NONE 0
#define FAULT_NO_ENTRY 1
#define FAULT_TABLE_GAP 2
#define FAULT_BYTE_ORDER 3
#define FAULT_NO_FILE_TYPES 4
#define FAULT_UNTOLD_FILE_TYPES 5
#define FAULT_ENTRY_THROWS 6
#define FAULT_INFO_THROWS 7
#define FAULT_DATE_THROWS 8
#define FAULT_ALLOC_THROWS 9
#ifndef FAKE_FAULT
#define FAKE_FAULT FAULT_NONE
#endif

struct StreamBlock {
    HostStream* hostStream;
};

struct HtmlFilterContext {
    void* routines[SO_ROUTINE_COUNT];
    void* user1;
    void* user2;
    std::string document;
    OpenRecord* record;
    std::uint16_t fileType;
    std::uint32_t tableMode;
    int reads;
};

namespace {

std::uintptr_t dummy() { return 0; }

/// Classes that only the module has: their code goes with it.
struct OwnThing {
    virtual ~OwnThing();
    std::string text = std::string(64, 't');
};
OwnThing::~OwnThing() { text.clear(); }

struct OwnError : std::runtime_error {
    using std::runtime_error::runtime_error;
    ~OwnError() override;
    const char* what() const noexcept override { return "own\nerror"; }
};
OwnError::~OwnError() = default;

void dropForeign(_Unwind_Reason_Code, _Unwind_Exception* exception) { delete exception; }

/// Throws as another language would.
void throwForeign()
{
    auto* exception = new _Unwind_Exception{};
    exception->exception_class = 0x46414B4546414B45;
    exception->exception_cleanup = dropForeign;
    _Unwind_RaiseException(exception);
}

/// Throws by the last word of what the document says.
void throwAny(const std::string& what)
{
    if (what.ends_with("thing"))
        throw OwnThing();
    if (what.ends_with("error"))
        throw OwnError("");
    if (what.ends_with("int"))
        throw 7;
    if (what.ends_with("foreign"))
        throwForeign();
}

template <typename Type> Type routine(HtmlFilterContext* context, int id)
{
    return reinterpret_cast<Type>(context->routines[id - 1]);
}

template <typename Type, typename... Arguments>
auto call(HtmlFilterContext* context, int id, Arguments... arguments)
{
    return routine<Type>(context, id)(arguments..., context->user1, context->user2);
}

std::string readAll(HostStream* stream)
{
    std::string bytes;
    char piece[7];
    for (;;) {
        std::uint32_t count = 0;
        if (stream->operations->read(stream, piece, sizeof piece, &count) != 0 || count == 0)
            return bytes;
        bytes.append(piece, count);
    }
}

void emitText(HtmlFilterContext* context, const std::string& bytes)
{
    std::u16string units;
    for (const char byte : bytes)
        units.push_back(static_cast<unsigned char>(byte));
    call<SOEmitTextAtRoutine>(context, SO_EMIT_TEXT_AT, units.data(),
        static_cast<std::uint16_t>(units.size()), std::uint32_t{CHARSET_ID_UTF16},
        EMIT_TEXT_AT_WORD);
}

std::uint32_t emitBreak(HtmlFilterContext* context, std::uint16_t kind, std::uint32_t handle)
{
    return call<SOEmitBreakRoutine>(context, SO_EMIT_BREAK, kind, handle);
}

/// Fills a record so that each word tells its place.
template <typename Record> Record numbered(std::uint32_t first)
{
    std::uint32_t words[sizeof(Record) / 4] = {};
    words[0] = first;
    words[sizeof(Record) / 4 - 1] = first + 1;
    Record record;
    std::memcpy(&record, words, sizeof record);
    return record;
}

void callAttributes(HtmlFilterContext* context)
{
    call<SOEmitSpecialRoutine>(context, SO_EMIT_SPECIAL, std::uint16_t{6});
    call<SOSetFontHeightRoutine>(context, SO_SET_FONT_HEIGHT, 24u);
    call<SOSelectFontRoutine>(context, SO_SELECT_FONT, 4294967295u);
    call<SOSetLineSpacingRoutine>(context, SO_SET_LINE_SPACING, 3u, 30u, 72u, 144u);
    call<SODefineFontRoutine>(context, SO_DEFINE_FONT, 1u, std::uint16_t{5}, "A\"\xE9");
    call<SOSetTextColorRoutine>(context, SO_SET_TEXT_COLOR, 0u, 0xFF0000u);
    call<SOSetBackColorRoutine>(context, SO_SET_BACK_COLOR, 1u, 0u);
    call<SOSetExtraPropertyRoutine>(context, SO_SET_EXTRA_PROPERTY, 62u, 1u, 15u, 0u);
    call<SOSetPropertyRoutine>(context, SO_SET_PROPERTY, 97u, 2u, 0u, 0xFFFFFF88u);
    call<SOMarkSourceTagRoutine>(context, SO_MARK_SOURCE_TAG, 9u);
}

void callRecords(HtmlFilterContext* context)
{
    const auto graphic = numbered<GraphicRecord>(196);
    call<SOPlaceGraphicRoutine>(context, SO_PLACE_GRAPHIC, &graphic);
    const auto rule = numbered<RuleRecord>(2);
    call<SOPlaceRuleRoutine>(context, SO_PLACE_RULE, &rule, 1u, 511u, 12240u, 30u);
    const auto page = numbered<PageBorderRecord>(15);
    call<SOSetPageBordersRoutine>(context, SO_SET_PAGE_BORDERS, 1u, &page);
    const auto border = numbered<ParagraphBorderRecord>(3);
    call<SOSetParagraphBorderRoutine>(context, SO_SET_PARAGRAPH_BORDER, 1u, &border);
    const ParagraphShadingRecord clear = {};
    call<SOSetParagraphShadingRoutine>(context, SO_SET_PARAGRAPH_SHADING, 0u, &clear);
    const HyperlinkRecord link = {1, SO_NO_STRING, 7};
    call<SOBeginTaggedRoutine>(
        context, SO_BEGIN_TAGGED, TAG_HYPERLINK, 5u, static_cast<const void*>(&link));
    call<SOEndTaggedRoutine>(context, SO_END_TAGGED, TAG_HYPERLINK, 5u);
    call<SOBeginTaggedRoutine>(
        context, SO_BEGIN_TAGGED, TAG_NOFRAMES, 6u, static_cast<const void*>(nullptr));
    call<SOEndTaggedRoutine>(context, SO_END_TAGGED, TAG_NOFRAMES, 6u);
}

void callTable(HtmlFilterContext* context)
{
    const auto table = numbered<TableRecord>(1);
    call<SODefineTableRoutine>(context, SO_DEFINE_TABLE, &table);
    const auto row = numbered<TableRowRecord>(8);
    const std::uint32_t rowHandle
        = call<SODefineTableRowRoutine>(context, SO_DEFINE_TABLE_ROW, &row);
    const auto cell = numbered<TableCellRecord>(224);
    for (int index = 0; index < 2; ++index) {
        const std::uint32_t handle
            = call<SODefineTableCellRoutine>(context, SO_DEFINE_TABLE_CELL, &cell);
        emitBreak(context, BREAK_CELL, handle);
    }
    emitBreak(context, BREAK_ROW, rowHandle);
    call<SOFinishTableRoutine>(context, SO_FINISH_TABLE);
}

void callText(HtmlFilterContext* context)
{
    const char16_t text[] = u"a\"\\\n\u00E9\uFFFF";
    call<SOEmitTextRoutine>(context, SO_EMIT_TEXT, text, std::uint16_t{6}, 0x14E40100u);
    emitText(context, "x");
    char16_t* buffer = nullptr;
    call<SOReserveCharsRoutine>(context, SO_RESERVE_CHARS, &buffer, RESERVED_CHARS_CAPACITY);
    buffer[0] = u'h';
    buffer[1] = u'i';
    call<SOCommitCharsRoutine>(context, SO_COMMIT_CHARS, std::uint16_t{2}, 0x14B00000u);
    for (int index = 0; index < 2; ++index) {
        std::uint32_t handle = 0;
        call<SOStoreStringRoutine>(
            context, SO_STORE_STRING, u"s", 0x14B00000u, std::uint16_t{1}, &handle);
        std::uint32_t reference = 0;
        call<SOBeginReferenceRoutine>(context, SO_BEGIN_REFERENCE, &reference);
        call<SOAddReferencePartRoutine>(
            context, SO_ADD_REFERENCE_PART, std::uint32_t{REFERENCE_PART_TARGET}, handle, 0u);
        call<SOEndReferenceRoutine>(context, SO_END_REFERENCE);
        call<SOAttachReferenceRoutine>(context, SO_ATTACH_REFERENCE, reference, 0u);
    }
}

/// Three paragraphs, with a pause behind each when the host asks for one.
void callParagraphs(HtmlFilterContext* context)
{
    while (context->reads <= 3) {
        emitText(context, "p" + std::to_string(context->reads));
        if (emitBreak(context, BREAK_PARAGRAPH, 0) == 1)
            return;
        ++context->reads;
    }
    emitBreak(context, BREAK_DOCUMENT, 0);
}

void callOptions(HtmlFilterContext* context)
{
    std::uint32_t buffer = 0;
    UTGetGlobalOption(GLOBAL_OPTION_STREAM_BUFFER, &buffer, sizeof buffer);
    call<SOSetPropertyRoutine>(context, SO_SET_PROPERTY, std::uint32_t{context->fileType},
        context->record->requestedCharSetId, context->record->flags, buffer);
    call<SOSetFontHeightRoutine>(context, SO_SET_FONT_HEIGHT, context->tableMode);
}

void callRange(StreamBlock* stream, HtmlFilterContext* context, bool close)
{
    HostStream* whole = stream->hostStream;
    const StreamRange range = {whole, 6, 9};
    HostStream* part = nullptr;
    if (whole->operations->open(&part, 8, &range, 1) != 0)
        return;
    emitText(context, readAll(part));
    if (close)
        part->operations->close(part);
}

void callMuch(HtmlFilterContext* context)
{
    for (int index = 0; index < 20000; ++index) {
        emitText(context, std::string(100, 'm'));
        emitBreak(context, BREAK_PARAGRAPH, 0);
    }
}

void play(const std::string& word, StreamBlock* stream, HtmlFilterContext* context)
{
    if (word == "routines") {
        callAttributes(context);
        callRecords(context);
        callTable(context);
        callText(context);
    } else if (word == "options") {
        callOptions(context);
    } else if (word == "range") {
        callRange(stream, context, true);
    } else if (word == "leaverange") {
        callRange(stream, context, false);
    } else if (word == "much") {
        callMuch(context);
    } else if (word == "exception") {
        throw zorvan::Exception(137, "ArrayList.get(): invalid parameter", nullptr, nullptr, 0);
    } else if (word == "bailout") {
        UTBailOutEx(0x105, 0, 0);
    } else if (word == "nomemory") {
        throw std::bad_alloc();
    } else if (word == "abandon") {
        call<SOAbandonFilterRoutine>(context, SO_ABANDON_FILTER, 30u);
    } else if (word == "unmapped") {
        const char16_t text[] = u"\xD800x";
        call<SOEmitTextRoutine>(context, SO_EMIT_TEXT, text, std::uint16_t{2}, 0x14B00000u);
    } else {
        emitText(context, context->document);
    }
}

/// A read that is refused its memory: it comes back without a call.
void runShort()
{
    void* pages
        = mmap(nullptr, std::size_t{1} << 62, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages != MAP_FAILED)
        munmap(pages, std::size_t{1} << 62);
}

int liveDocuments = 0;

} // namespace

extern "C" {

__attribute__((visibility("default"))) int fakeLiveDocuments() { return liveDocuments; }

static std::uint16_t fakeStreamOpen(
    StreamBlock*, std::uint16_t fileType, void*, OpenRecord* record, HtmlFilterContext* context)
{
    ++liveDocuments;
    context->fileType = fileType;
    context->record = new OpenRecord(*record);
    if (record->optionOwner != nullptr) {
        void* handle = nullptr;
        std::memcpy(&handle, static_cast<char*>(record->optionOwner) + 24, sizeof handle);
        UTGetOption(handle, OPTION_TABLE_MODE, &context->tableMode, sizeof context->tableMode);
    }
    return 0;
}

static std::uint16_t fakeStreamSection(StreamBlock* stream, HtmlFilterContext* context)
{
    context->document = readAll(stream->hostStream);
    call<SOAnnounceSectionRoutine>(context, SO_ANNOUNCE_SECTION, ANNOUNCED_SECTION, 0u, 0u);
    call<SOAnnounceFeaturesRoutine>(context, SO_ANNOUNCE_FEATURES, ANNOUNCED_FEATURES);
    return 0;
}

static std::uint16_t fakeStreamRead(StreamBlock* stream, HtmlFilterContext* context)
{
    ++context->reads;
    const std::string word = context->document.substr(0, context->document.find(' '));
    if (word == "silent")
        return 0;
    if (word == "short") {
        runShort();
        return 0;
    }
    if (word == "throw")
        throwAny(context->document);
    if (word == "swallow") {
        try {
            emitText(context, "x");
        } catch (...) {
        }
    }
    if (word == "paragraphs") {
        callParagraphs(context);
        return 0;
    }
    play(word, stream, context);
    emitBreak(context, BREAK_DOCUMENT, 0);
    return 0;
}

static std::uint16_t fakeStreamClose(StreamBlock*, HtmlFilterContext* context)
{
    --liveDocuments;
    delete context->record;
    if (context->document.starts_with("closethrow"))
        throwAny(context->document);
    if (context->document.starts_with("badclose"))
        throw zorvan::Exception(25, "close", nullptr, nullptr, 0);
    return 0;
}

static std::uint16_t fakeStreamTell(StreamBlock*, HtmlFilterContext*) { return 0; }

static std::uint16_t fakeGetData(void*, HtmlFilterContext*) { return 0; }

static std::uint16_t fakeSetData(const void*, HtmlFilterContext*) { return 0; }

static std::uint16_t fakeGetInfo(void* result, std::uint16_t code)
{
    const std::uint16_t fileTypes[] = {1101, 1110};
    std::uint16_t count = 2;
    std::uint32_t probe = INFO_BYTE_ORDER_PROBE;
    if (FAKE_FAULT == FAULT_BYTE_ORDER)
        probe = 0x78563412;
    if (FAKE_FAULT == FAULT_NO_FILE_TYPES)
        count = 0;
    if (FAKE_FAULT == FAULT_INFO_THROWS
        || (FAKE_FAULT == FAULT_DATE_THROWS && code == INFO_BUILD_DATE))
        throwAny("error");
    switch (code) {
    case INFO_FILE_TYPE_COUNT:
        std::memcpy(result, &count, sizeof count);
        return 1;

    case INFO_FILE_TYPES:
        if (FAKE_FAULT == FAULT_UNTOLD_FILE_TYPES)
            return 0;
        std::memcpy(result, fileTypes, sizeof fileTypes);
        return 1;

    case INFO_BUILD_DATE:
        std::memcpy(result, "Jul 15 2024", 12);
        return 1;

    case INFO_BYTE_ORDER:
        std::memcpy(result, &probe, sizeof probe);
        return 1;
    }
    return 0;
}

static HtmlFilterContext* fakeAllocProc()
{
    if (FAKE_FAULT == FAULT_ALLOC_THROWS)
        throwAny("thing");
    ++liveDocuments;
    return new HtmlFilterContext{};
}

static void fakeFreeProc(HtmlFilterContext* context)
{
    --liveDocuments;
    delete context;
}

static void fakeLocalUp(HostStream* hostStream, StreamBlock** stream, HtmlFilterContext* context)
{
    ++liveDocuments;
    *stream = new StreamBlock{hostStream};
    for (void*& each : context->routines)
        each = reinterpret_cast<void*>(dummy);
}

static void fakeLocalDown(StreamBlock* stream, HostStream** hostStream)
{
    --liveDocuments;
    *hostStream = stream->hostStream;
    delete stream;
}

static void fakeSetUser(void* user1, void* user2, HtmlFilterContext* context)
{
    context->user1 = user1;
    context->user2 = user2;
}

static void fakeSetSoRtn(std::int16_t id, void* entry, HtmlFilterContext* context)
{
    context->routines[id - 1] = entry;
}

#if FAKE_FAULT == FAULT_NO_ENTRY
#define VwGetRtns VwGetSomethingElse
#endif
__attribute__((visibility("default"))) void VwGetRtns(void** table, std::uint16_t version)
{
    if (FAKE_FAULT == FAULT_ENTRY_THROWS)
        throwAny("thing");
    if (version != FILTER_TABLE_GENERATION)
        return;
    table[SLOT_STREAM_OPEN] = reinterpret_cast<void*>(fakeStreamOpen);
    table[SLOT_STREAM_SECTION] = reinterpret_cast<void*>(fakeStreamSection);
    table[SLOT_STREAM_READ] = reinterpret_cast<void*>(fakeStreamRead);
    table[SLOT_STREAM_TELL] = reinterpret_cast<void*>(fakeStreamTell);
    table[SLOT_STREAM_SEEK] = reinterpret_cast<void*>(fakeStreamTell);
    table[SLOT_GET_INFO] = reinterpret_cast<void*>(fakeGetInfo);
    table[SLOT_GET_DATA] = reinterpret_cast<void*>(fakeGetData);
    table[SLOT_SET_DATA] = reinterpret_cast<void*>(fakeSetData);
    table[SLOT_LOCAL_UP] = reinterpret_cast<void*>(fakeLocalUp);
    table[SLOT_LOCAL_DOWN] = reinterpret_cast<void*>(fakeLocalDown);
    table[SLOT_ALLOC_PROC] = reinterpret_cast<void*>(fakeAllocProc);
    table[SLOT_FREE_PROC] = reinterpret_cast<void*>(fakeFreeProc);
    table[SLOT_SET_USER] = reinterpret_cast<void*>(fakeSetUser);
    table[SLOT_SET_SO_RTN] = reinterpret_cast<void*>(fakeSetSoRtn);
    if (FAKE_FAULT != FAULT_TABLE_GAP)
        table[SLOT_STREAM_CLOSE] = reinterpret_cast<void*>(fakeStreamClose);
}

} // extern "C"
