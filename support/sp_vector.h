#pragma once

#include "support/export.h"

#include <cstdint>

/// A growable vector of records of one size, copied by value. Made and destroyed by the functions
/// below.
struct SPVector;

/// A new, empty vector, or null when there is no memory.
[[nodiscard]] ZV_EXPORT SPVector* SPVectorCreate();

/// Appends a copy of the record. size: bytes of a record, the same for all of one vector. Answers 0
/// for success; other answers: null handle or record, size 0 or not that of the records before.
/// Throws std::bad_alloc when there is no memory.
ZV_EXPORT int SPVectorAddElement(SPVector* vector, const void* record, std::uint32_t size);

/// The stored record, aligned to 16 for sizes that are multiples of 16 and to what the size allows
/// otherwise; null for an index beyond the end. Good until the next record is added.
ZV_EXPORT void* SPVectorElementAt(SPVector* vector, std::uint32_t index);

/// The number of records; 0 for null.
ZV_EXPORT std::uint32_t SPVectorSize(const SPVector* vector);

/// Removes all records; the next one may have another size. Storage is kept for them.
ZV_EXPORT void SPVectorRemoveAllElements(SPVector* vector);

/// Frees the vector; null is fine.
ZV_EXPORT void SPVectorDestroy(SPVector* vector);
