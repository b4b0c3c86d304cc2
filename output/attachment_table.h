#pragma once

/**
 * The attachments that a filter hands over with a stretch of HTML, so that its links and images can
 * mean them. Plain C, so that hosts in C and C++ can include it. Everything belongs to the caller;
 * the filter writes nothing but the used words.
 */

#include <stdint.h>

#ifdef __cplusplus
#include <cstddef>
extern "C" {
#else
#include <stddef.h>
#endif

/** One attachment. The names are 8-bit texts, compared byte by unit; null: none. */
typedef struct AttachmentRecord {
    const char* contentId;
    const char* fileName;
    const char* thirdName;
    uint32_t payload; /**< the caller's word for it, told in the record of an image */
    uint32_t used; /**< 1: something in the HTML means it */
} AttachmentRecord;

/** The table: last minus first records, recordSize bytes from one to the next. */
typedef struct AttachmentTable {
    uint32_t recordSize; /**< bytes, that of AttachmentRecord or more */
    uint32_t first;
    uint32_t last;
    uint32_t reserved12;
    void* records; /**< the first one; each begins with an AttachmentRecord */
} AttachmentTable;

#ifdef __cplusplus
} /* extern "C" */

static_assert(sizeof(AttachmentRecord) == 32 && offsetof(AttachmentRecord, payload) == 24);
static_assert(sizeof(AttachmentTable) == 24 && offsetof(AttachmentTable, records) == 16);
#endif
