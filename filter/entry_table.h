#pragma once

/**
 * The binary interface between host and filter: the entry table, the open record and the operations
 * of the host's stream. Plain C.
 *
 * One document, all on one thread: VwGetRtns; VwAllocProc; VwLocalUp; VwSetUser; VwSetSoRtn once
 * for each output routine (output/host_routines.h); VwStreamOpen; VwStreamSection; VwStreamRead
 * until SOEmitBreak has been called with BREAK_DOCUMENT; VwStreamClose; VwLocalDown; VwFreeProc.
 * Entry points and routines may leave by a C++ exception (support/exception.h); a host in C enters
 * through UTGuardedCall (support/engine_options.h).
 */

#include <stdint.h>

#ifdef __cplusplus
#include <cstddef>
extern "C" {
#else
#include <stddef.h>
#endif

/** The filter's block of an open document; its first 352 bytes are the saved position. */
struct HtmlFilterContext;
/** The filter's buffered reader over a HostStream, made by VwLocalUp. */
struct StreamBlock;
struct HostStream;
struct StreamRange;

/** Sizes of the context that VwGetInfo tells. */
enum { FILTER_SAVE_BLOCK_SIZE = 352, FILTER_SLOT_COUNT = 36 };

/** Operations of a host stream. Each answers 0 for success. */
typedef struct StreamOperations {
    /** Closes a substream that open made. */
    int32_t (*close)(struct HostStream* stream);
    /** Reads up to size bytes and writes their count; a count of 0 is the end of the stream. */
    int32_t (*read)(struct HostStream* stream, void* buffer, uint32_t size, uint32_t* count);
    void* reserved2;
    /** Moves to a position. origin: 0 from the start, 2 from the end. */
    int32_t (*seek)(struct HostStream* stream, uint32_t origin, uint32_t position);
    int32_t (*tell)(struct HostStream* stream, uint32_t* position);
    /** Asked with 24 and 0: answers 0 when seek64 and tell64 may be used. Null: answers other. */
    int32_t (*query)(struct HostStream* stream, uint32_t what, uint32_t zero);
    /** Makes a stream of a range of another. kind is 8, flag 1. Null: always fails. */
    int32_t (*open)(
        struct HostStream** stream, uint32_t kind, const struct StreamRange* range, uint32_t flag);
    /** As seek, tell, with positions of 64 bits. Null when there are none. */
    int32_t (*seek64)(struct HostStream* stream, uint32_t origin, int64_t position);
    int32_t (*tell64)(struct HostStream* stream, int64_t* position);
} StreamOperations;

/** A host stream: its first word points to its operations, the rest is the host's. */
typedef struct HostStream {
    const StreamOperations* operations;
} HostStream;

/** The range that StreamOperations.open makes a stream of. */
typedef struct StreamRange {
    struct HostStream* stream;
    uint64_t first; /**< position of the first byte */
    uint64_t end; /**< position behind the last byte */
} StreamRange;

/** What the host wants of a document, given to VwStreamOpen. */
typedef struct OpenRecord {
    uint32_t flags; /**< OPEN_FLAG_ bits */
    uint32_t textCharSetId; /**< out: character set in which text is delivered, 0x14B00000 */
    uint32_t requestedCharSetId; /**< host character set identifier to read by, 0 for none */
    uint32_t reserved12;
    void* optionOwner; /**< null, or a record whose word at offset 24 is an option handle */
    char typeName[32]; /**< out: name of the file type */
} OpenRecord;

/** Bits of OpenRecord.flags; properties win when both are set. */
enum { OPEN_FLAG_PACKETS_AS_OBJECTS = 0x80, OPEN_FLAG_PACKETS_AS_PROPERTIES = 0x100 };

/** Option of a document (UTSetOption): bit 0 delivers tables as plain paragraphs. */
#define OPTION_TABLE_MODE 0x52B6Au
/** Global options (UTSetGlobalOption): stream buffer in units of 1,024 bytes; a fixed color scheme;
 * versions that conditional comments are judged by. */
#define GLOBAL_OPTION_STREAM_BUFFER 112u
#define GLOBAL_OPTION_BACKGROUND 0x45E29u
#define GLOBAL_OPTION_CONDITIONAL_MASK 0x52B68u

/** Slots of the entry table, in its order. Slots that are not named are null. */
enum {
    SLOT_STREAM_OPEN = 0,
    SLOT_STREAM_SECTION = 1,
    SLOT_STREAM_READ = 2,
    SLOT_STREAM_TELL = 3,
    SLOT_STREAM_SEEK = 4,
    SLOT_GET_INFO = 5,
    SLOT_GET_DATA = 6,
    SLOT_SET_DATA = 7,
    SLOT_LOCAL_UP = 8,
    SLOT_LOCAL_DOWN = 9,
    SLOT_ALLOC_PROC = 10,
    SLOT_FREE_PROC = 11,
    SLOT_SET_USER = 12,
    SLOT_SET_SO_RTN = 13,
    SLOT_STREAM_CLOSE = 14,
    SLOT_DUMMY = 17,
    SLOT_DO_SPECIAL = 18 /**< table generation 19 or more */
};

/** The table that VwGetRtns fills. */
typedef struct FilterEntryTable {
    void* slots[FILTER_SLOT_COUNT];
} FilterEntryTable;

/** The table generation of this header. */
#define FILTER_TABLE_GENERATION 30u

/** Codes of VwGetInfo. */
enum {
    INFO_SAVE_BLOCK_SIZE = 1, /**< u16 */
    INFO_CONTEXT_SIZE = 2, /**< u16, in front of the routines */
    INFO_FILE_TYPE_COUNT = 6, /**< u16 */
    INFO_FILE_TYPES = 7, /**< 16 u16 */
    INFO_BUILD_DATE = 8, /**< 12 bytes, "Jul 15 2024" */
    INFO_BUILD_TIME = 9, /**< 9 bytes, "07:45:31" */
    INFO_BYTE_ORDER = 12 /**< u32, INFO_BYTE_ORDER_PROBE */
};
#define INFO_BYTE_ORDER_PROBE 0x12345678u

/** Answer of VwStreamRead in embedded use when the fragment is finished. */
#define READ_FINISHED 0xFFFFu

/* The exported entry points, as types. */
typedef void (*VwGetRtnsEntry)(void** table, uint16_t version);
typedef uint16_t (*VwGetInfoEntry)(void* result, uint16_t code);
typedef struct HtmlFilterContext* (*VwAllocProcEntry)(void);
typedef void (*VwFreeProcEntry)(struct HtmlFilterContext* context);
typedef void (*VwLocalUpEntry)(
    struct HostStream* hostStream, struct StreamBlock** stream, struct HtmlFilterContext* context);
typedef void (*VwLocalDownEntry)(struct StreamBlock* stream, struct HostStream** hostStream);
typedef void (*VwSetUserEntry)(void* userData1, void* userData2, struct HtmlFilterContext* context);
typedef void (*VwSetSoRtnEntry)(
    int16_t routineId, void* routine, struct HtmlFilterContext* context);
typedef uint16_t (*VwGetDataEntry)(void* destination, struct HtmlFilterContext* context);
typedef uint16_t (*VwSetDataEntry)(const void* source, struct HtmlFilterContext* context);
typedef uint16_t (*VwDoSpecialEntry)(void* unused, void** interfaceRecord);
typedef uint16_t (*VwStreamOpenEntry)(struct StreamBlock* stream, uint16_t fileId, void* reserved,
    OpenRecord* openRecord, struct HtmlFilterContext* context);
typedef uint16_t (*VwStreamSectionEntry)(
    struct StreamBlock* stream, struct HtmlFilterContext* context);
typedef uint16_t (*VwStreamReadEntry)(
    struct StreamBlock* stream, struct HtmlFilterContext* context);
typedef uint16_t (*VwStreamTellEntry)(
    struct StreamBlock* stream, struct HtmlFilterContext* context);
typedef uint16_t (*VwStreamSeekEntry)(
    struct StreamBlock* stream, struct HtmlFilterContext* context);
typedef uint16_t (*VwStreamCloseEntry)(
    struct StreamBlock* stream, struct HtmlFilterContext* context);
typedef uintptr_t (*SODummyEntry)(void);

#ifdef __cplusplus
} /* extern "C" */

static_assert(sizeof(void*) == 8);
static_assert(offsetof(OpenRecord, textCharSetId) == 4);
static_assert(offsetof(OpenRecord, requestedCharSetId) == 8);
static_assert(offsetof(OpenRecord, optionOwner) == 16);
static_assert(offsetof(OpenRecord, typeName) == 24);
static_assert(offsetof(StreamOperations, read) == 1 * sizeof(void*));
static_assert(offsetof(StreamOperations, seek) == 3 * sizeof(void*));
static_assert(offsetof(StreamOperations, tell) == 4 * sizeof(void*));
static_assert(offsetof(StreamOperations, query) == 5 * sizeof(void*));
static_assert(offsetof(StreamOperations, open) == 6 * sizeof(void*));
static_assert(offsetof(StreamOperations, seek64) == 7 * sizeof(void*));
static_assert(offsetof(StreamOperations, tell64) == 8 * sizeof(void*));
static_assert(sizeof(StreamRange) == 24);
#endif
