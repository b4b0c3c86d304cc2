#include "support/dynamic_store.h"

#include "support/process_heap.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

namespace {

/// A stored block; its bytes follow it.
struct Record {
    Record* next; // the next one of its bucket
    std::uint32_t number;
    std::uint32_t size;
    std::uint16_t variable;
};

/// Records in buckets by variable and number. All of it lies in heap blocks, so that a lack of
/// memory is a result.
struct Store {
    Record** buckets;
    std::uint32_t bucketCount; // a power of 2
    std::uint32_t recordCount;
    std::uint16_t variableCount;
};

/// What the user's area of 16 bytes holds.
struct StoreArea {
    Store* store;
    void* reserved;
};
static_assert(sizeof(StoreArea) == 16);

constexpr std::uint32_t kFirstBuckets = 16;
constexpr std::uint32_t kMostBuckets = 1u << 30;

void* zeroedBlock(std::size_t size) { return HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size); }

void freeBlock(void* block) { HeapFree(GetProcessHeap(), 0, block); }

Store* storeOf(const void* area)
{
    return area == nullptr ? nullptr : static_cast<const StoreArea*>(area)->store;
}

bool hasVariable(const Store* store, std::uint16_t variable)
{
    return store != nullptr && variable != 0 && variable <= store->variableCount;
}

std::uint32_t bucketIndex(std::uint16_t variable, std::uint32_t number, std::uint32_t bucketCount)
{
    const std::uint32_t hash = (number + variable * 0x9E3779B9u) * 0x85EBCA6Bu;
    return (hash ^ (hash >> 16)) & (bucketCount - 1);
}

/// The place of the pointer to the record, or of the null pointer that ends its bucket.
Record** findRecord(const Store& store, std::uint16_t variable, std::uint32_t number)
{
    Record** place = &store.buckets[bucketIndex(variable, number, store.bucketCount)];
    while (*place != nullptr && ((*place)->variable != variable || (*place)->number != number))
        place = &(*place)->next;
    return place;
}

/// Doubles the buckets. Without memory for that they stay, and their chains grow.
void growBuckets(Store& store)
{
    const std::uint32_t newCount = store.bucketCount * 2;
    auto** buckets = static_cast<Record**>(zeroedBlock(std::size_t{newCount} * sizeof(Record*)));
    if (buckets == nullptr)
        return;
    for (std::uint32_t i = 0; i < store.bucketCount; ++i) {
        while (Record* record = store.buckets[i]) {
            store.buckets[i] = record->next;
            Record** head = &buckets[bucketIndex(record->variable, record->number, newCount)];
            record->next = *head;
            *head = record;
        }
    }
    freeBlock(store.buckets);
    store.buckets = buckets;
    store.bucketCount = newCount;
}

Record* newRecord(
    std::uint16_t variable, std::uint32_t number, const void* data, std::uint32_t size)
{
    void* block = HeapAlloc(GetProcessHeap(), 0, sizeof(Record) + size);
    if (block == nullptr)
        return nullptr;
    auto* record = new (block) Record{nullptr, number, size, variable};
    if (size != 0)
        std::memcpy(record + 1, data, size);
    return record;
}

} // namespace

int FUTInitDynamicStore(void* store)
{
    if (store == nullptr)
        return 1;
    auto* area = new (store) StoreArea{};
    void* block = zeroedBlock(sizeof(Store));
    void* buckets = zeroedBlock(kFirstBuckets * sizeof(Record*));
    if (block == nullptr || buckets == nullptr) {
        freeBlock(block);
        freeBlock(buckets);
        return 1;
    }
    area->store = new (block) Store{static_cast<Record**>(buckets), kFirstBuckets, 0, 0};
    return 0;
}

int FUTCreateDynamicVar(void* store, std::uint16_t* variable)
{
    Store* implementation = storeOf(store);
    if (implementation == nullptr || variable == nullptr)
        return 1;
    if (implementation->variableCount == std::numeric_limits<std::uint16_t>::max())
        return 1;
    *variable = ++implementation->variableCount;
    return 0;
}

int FUTSaveDynamicVar(
    void* store, std::uint16_t variable, std::uint32_t record, const void* data, std::uint32_t size)
{
    Store* implementation = storeOf(store);
    if (!hasVariable(implementation, variable) || (data == nullptr && size != 0))
        return 1;
    Record* fresh = newRecord(variable, record, data, size);
    if (fresh == nullptr)
        return 1;
    Record** place = findRecord(*implementation, variable, record);
    Record* old = *place;
    *place = fresh;
    if (old != nullptr) {
        fresh->next = old->next;
        freeBlock(old);
        return 0;
    }
    if (++implementation->recordCount > implementation->bucketCount
        && implementation->bucketCount < kMostBuckets)
        growBuckets(*implementation);
    return 0;
}

int FUTRestoreDynamicVar(
    void* store, std::uint16_t variable, std::uint32_t record, void** block, std::uint32_t* size)
{
    if (block == nullptr)
        return 1;
    *block = nullptr;
    if (size != nullptr)
        *size = 0;
    const Store* implementation = storeOf(store);
    if (!hasVariable(implementation, variable))
        return 1;
    const Record* found = *findRecord(*implementation, variable, record);
    if (found == nullptr)
        return 1;
    void* copy = HeapAlloc(GetProcessHeap(), 0, found->size);
    if (copy == nullptr)
        return 1;
    std::memcpy(copy, found + 1, found->size);
    *block = copy;
    if (size != nullptr)
        *size = found->size;
    return 0;
}

int FUTDeinitDynamicStore(void* store)
{
    Store* implementation = storeOf(store);
    if (implementation == nullptr)
        return 0;
    for (std::uint32_t i = 0; i < implementation->bucketCount; ++i) {
        while (Record* record = implementation->buckets[i]) {
            implementation->buckets[i] = record->next;
            freeBlock(record);
        }
    }
    freeBlock(implementation->buckets);
    freeBlock(implementation);
    *static_cast<StoreArea*>(store) = StoreArea{};
    return 0;
}
