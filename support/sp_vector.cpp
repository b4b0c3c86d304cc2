#include "support/sp_vector.h"

#include "support/process_heap.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

struct SPVector {
    unsigned char* records = nullptr; // owned, freed by SPVectorDestroy
    std::size_t capacity = 0; // bytes
    std::uint32_t recordSize = 0; // bytes, 0 while there is no record
    std::uint32_t count = 0;
};

namespace {

constexpr std::uint32_t kMaximumCount = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kFirstRecords = 4;

/// Storage with room for one record more; the old one is left for the caller to release.
unsigned char* growRecords(SPVector& vector, std::uint32_t size)
{
    const std::size_t used = std::size_t{vector.count} * size;
    const std::size_t wanted = std::max({used + size, 2 * vector.capacity, kFirstRecords * size});
    auto* records = static_cast<unsigned char*>(zorvan::allocateStorage(wanted));
    if (used != 0)
        std::memcpy(records, vector.records, used);
    vector.capacity = wanted;
    return records;
}

} // namespace

SPVector* SPVectorCreate() { return zorvan::newObject<SPVector>(); }

int SPVectorAddElement(SPVector* vector, const void* record, std::uint32_t size)
{
    if (vector == nullptr || record == nullptr || size == 0)
        return 1;
    if (vector->count != 0 && vector->recordSize != size)
        return 1;
    if (vector->count == kMaximumCount)
        throw std::bad_alloc();
    const std::size_t used = std::size_t{vector->count} * size;
    unsigned char* old = nullptr;
    if (size > vector->capacity - used) {
        old = vector->records;
        vector->records = growRecords(*vector, size);
    }
    // The record may be one of this vector's own, so the old storage goes last.
    std::memmove(vector->records + used, record, size);
    zorvan::releaseStorage(old);
    vector->recordSize = size;
    ++vector->count;
    return 0;
}

void* SPVectorElementAt(SPVector* vector, std::uint32_t index)
{
    if (vector == nullptr || index >= vector->count)
        return nullptr;
    return vector->records + std::size_t{index} * vector->recordSize;
}

std::uint32_t SPVectorSize(const SPVector* vector) { return vector == nullptr ? 0 : vector->count; }

void SPVectorRemoveAllElements(SPVector* vector)
{
    if (vector != nullptr)
        vector->count = 0;
}

void SPVectorDestroy(SPVector* vector)
{
    if (vector == nullptr)
        return;
    zorvan::releaseStorage(vector->records);
    delete vector;
}
