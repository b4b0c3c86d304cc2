#pragma once

#include "support/export.h"

#include <cstdint>

// A dynamic store keeps blocks of bytes under a variable and a record number. It lives in an area
// of 16 bytes of its user's, aligned to 8. An area of zeros is a store that was never prepared:
// every operation on it fails in order. All operations answer 0 for success; none throws.

/// Prepares the store. Without memory it fails and leaves the area zeroed. What an older store in
/// the same area held is not freed: FUTDeinitDynamicStore is for that.
ZV_EXPORT int FUTInitDynamicStore(void* store);

/// Makes a variable and stores its handle, never 0, in `*variable`. Fails behind 65,535 of them.
ZV_EXPORT int FUTCreateDynamicVar(void* store, std::uint16_t* variable);

/// Stores a copy of `size` bytes as the record of that number, in place of an older one. When it
/// fails the older one stands. data may be null when size is 0.
ZV_EXPORT int FUTSaveDynamicVar(void* store, std::uint16_t variable, std::uint32_t record,
    const void* data, std::uint32_t size);

/// Yields a copy of the record in `*block`, a HeapAlloc block that the caller frees, and its size
/// in
/// `*size`, where size may be null. Fails, with a null block, when there is no such record or no
/// memory.
ZV_EXPORT int FUTRestoreDynamicVar(
    void* store, std::uint16_t variable, std::uint32_t record, void** block, std::uint32_t* size);

/// Frees everything and zeroes the area. Nothing happens to an area of zeros.
ZV_EXPORT int FUTDeinitDynamicStore(void* store);
