#pragma once

#include "support/export.h"

/* For hosts in C and C++: the options of the engine and of a single document, and a call that
 * catches what a filter throws. All functions may be called on any thread. */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sets an option of the engine to a copy of `size` bytes. A null value with a size of 0 drops the
 * option. Answers 0 for success; other answers: no memory, or a null value of some size. */
ZV_EXPORT int UTSetGlobalOption(uint32_t id, const void* value, uint32_t size);

/** Sets an option of the one document that is opened with `handle`, any word but null. The options
 * of a handle begin with the first one set and end with UTFreeOptions. Otherwise as
 * UTSetGlobalOption. */
ZV_EXPORT int UTSetOption(void* handle, uint32_t id, const void* value, uint32_t size);

/** Reads an option of the engine. Answers 0 and fills `value` when the option is set and has
 * exactly `size` bytes; otherwise answers other than 0 and leaves `value` as it was. */
ZV_EXPORT int UTGetGlobalOption(uint32_t id, void* value, uint32_t size);

/** Reads an option of a document, otherwise as UTGetGlobalOption, which it never falls back to. */
ZV_EXPORT int UTGetOption(void* handle, uint32_t id, void* value, uint32_t size);

/** Drops all options of the handle. */
ZV_EXPORT void UTFreeOptions(void* handle);

/** What became of a guarded call: the kinds of UTFailure. */
enum {
    UT_FAILURE_NONE = 0, /**< the call returned */
    UT_FAILURE_EXCEPTION = 1, /**< a fault inside the filter: its code and text */
    UT_FAILURE_BAIL_OUT = 2, /**< the filter gave itself up: its code */
    UT_FAILURE_NO_MEMORY = 3, /**< no memory: code 13 */
    UT_FAILURE_OTHER = 4 /**< any other C++ exception: code 0, and its text if it has one */
};

/** The outcome of a guarded call. */
typedef struct UTFailure {
    uint32_t kind; /**< one of the kinds above */
    uint32_t code; /**< the code that goes with the kind, 0 for none */
    char message[256]; /**< zero-terminated, cut when longer, empty for none */
} UTFailure;

/** Makes the call and catches what is thrown out of it. Answers the kind, 0 when the call returned.
 * failure: filled in either case; may be null. */
ZV_EXPORT int UTGuardedCall(void (*call)(void*), void* argument, UTFailure* failure);

#ifdef __cplusplus
}

static_assert(sizeof(UTFailure) == 264, "hosts make the record themselves");
static_assert(offsetof(UTFailure, kind) == 0 && offsetof(UTFailure, code) == 4
        && offsetof(UTFailure, message) == 8,
    "hosts read the record by its offsets");
#endif
