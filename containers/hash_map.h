#pragma once

#include "containers/arena.h"
#include "containers/array.h"
#include "containers/failures.h"
#include "containers/storage.h"
#include "support/object.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace zorvan {

/// A map with separate chains in two arrays: the primary slots, one of which a key's hash chooses,
/// and the overflow slots, through which the chains run by index. The order of iteration follows
/// from the keys and their history alone, and consumers rely on it. Both arrays come with the first
/// put, in one block. Keys are unsigned 32-bit or 64-bit numbers or enumerations; values are plain
/// data or pointers, and what they point at is never deleted here.
template <typename K, typename V>
class HashMap : public virtual Object, public virtual AbstractObject {
    static_assert(std::is_trivially_copyable_v<K> && std::is_trivially_copyable_v<V>);

    /// One place for a key. A slot that is free has the link kFree. The members stand so that a
    /// 32-bit key and its link share eight bytes.
    struct Slot {
        K key;
        std::uint32_t link; // the index of the next slot of the chain and, in kUsed, the state
        V value;

        bool isUsed() const { return (link & kUsed) != 0; }
        std::uint32_t next() const { return link & kEndOfChain; }
        void setNext(std::uint32_t index) { link = kUsed | index; }
    };

    struct Store;

public:
    /// A place in the order of iteration: primary slots in ascending order, behind each one its
    /// chain from head to end. Any put, remove, clear, copyExactly or swapEntries
    /// makes it void. It allocates nothing.
    class Cursor {
    public:
        bool isAtEnd() const { return slot == nullptr; }
        K key() const { return slot->key; }
        /// The value in its place, which may be changed without moving anything.
        V& value() const { return slot->value; }
        bool isLastOfChain() const { return slot->next() == kEndOfChain; }

        void advance()
        {
            // The slots behind the last key needn't be looked at.
            if (--remaining == 0) {
                slot = nullptr;
                return;
            }
            const std::uint32_t next = slot->next();
            if (next != kEndOfChain) {
                slot = map->overflow + next;
                return;
            }
            ++bucket;
            findUsedBucket();
        }

    private:
        friend class HashMap;

        explicit Cursor(const HashMap& walked)
            : map(&walked.store)
            , slot(nullptr)
            , bucket(0)
            , remaining(walked.store.count)
        {
            if (remaining != 0)
                findUsedBucket();
        }

        /// Goes to the next bucket in use, which must be there.
        void findUsedBucket()
        {
            while (!map->table[bucket].isUsed())
                ++bucket;
            slot = map->table + bucket;
        }

        const Store* map;
        Slot* slot; // null at the end
        std::uint32_t bucket;
        std::uint32_t remaining; // keys from this one on
    };

    /// bucketHint: the number of primary slots wished for, made a power of two from 16 to 65,536;
    /// overflowSlots: the number of overflow slots to begin with. arena: where the storage lies,
    /// which outlives the map and gets nothing back; null for the heap.
    HashMap(std::uint32_t bucketHint, std::uint32_t overflowSlots, Arena* arena = nullptr)
        : store(bucketsAtFirst(bucketHint), overflowSlots, arena)
    {
    }

    HashMap(const HashMap&) = delete;
    HashMap& operator=(const HashMap&) = delete;
    ~HashMap() override = default;

    std::uint32_t getCount() const { return store.count; }
    bool isEmpty() const { return store.count == 0; }

    bool contains(K key) const { return findSlot(key) != nullptr; }

    /// The value of a key in its place; null when the key is absent. Void after any put or remove.
    V* find(K key)
    {
        Slot* slot = findSlot(key);
        return slot != nullptr ? &slot->value : nullptr;
    }

    const V* find(K key) const
    {
        const Slot* slot = findSlot(key);
        return slot != nullptr ? &slot->value : nullptr;
    }

    /// The same, with the answer of isLastOfChain for a key that is there.
    V* find(K key, bool& isLast)
    {
        Slot* slot = findSlot(key);
        if (slot == nullptr)
            return nullptr;
        isLast = slot->next() == kEndOfChain;
        return &slot->value;
    }

    /// The value of a key, which must be there.
    V get(K key) const
    {
        const Slot* slot = findSlot(key);
        if (slot == nullptr)
            throwContainerFailure(FAILURE_NOT_FOUND, "item could not be found");
        return slot->value;
    }

    /// Stores a value, in the place of the one that the key has. A failed allocation leaves the map
    /// as it was.
    void put(K key, V value)
    {
        store.ensureMade();
        const std::uint32_t bucket = store.bucketOf(key);
        Slot* const found = store.findIn(bucket, key);
        const std::uint32_t newCount = store.count + (found == nullptr ? 1 : 0);
        if (store.isFull(newCount)) {
            putGrown(bucket, key, value, found != nullptr);
            return;
        }
        if (found != nullptr)
            found->value = value;
        else
            store.addTo(bucket, key, value);
    }

    /// The same for a key that is not there.
    void putNew(K key, V value)
    {
        store.ensureMade();
        const std::uint32_t bucket = store.bucketOf(key);
        if (store.isFull(store.count + 1))
            putGrown(bucket, key, value, /*isPresent=*/false);
        else
            store.addTo(bucket, key, value);
    }

    /// Takes a key out, which must be there, and returns its value. The last slot of the chain
    /// moves into the place of the one that goes.
    V remove(K key)
    {
        V value;
        if (!tryRemove(key, value))
            throwContainerFailure(FAILURE_NOT_FOUND, "item could not be found");
        return value;
    }

    /// As remove, but answers false when the key is absent, and then leaves value alone.
    bool tryRemove(K key, V& value)
    {
        Slot* slot = findSlot(key);
        if (slot == nullptr)
            return false;
        value = slot->value;
        store.takeOut(slot);
        return true;
    }

    /// Whether a key, which must be there, is the last of its chain: taking it out and putting it
    /// in again then leaves the order of iteration as it is.
    bool isLastOfChain(K key) const
    {
        const Slot* slot = findSlot(key);
        return slot != nullptr && slot->next() == kEndOfChain;
    }

    /// Empties the map; both arrays stay as large as they are.
    void clear() { store.clear(); }

    /// The number of primary slots at which so many keys make the map grow no more.
    std::uint32_t bucketsFor(std::uint32_t keys) const { return store.bucketsFor(keys); }

    /// Empties the map and makes it one that can't be told from a new one of these numbers, the
    /// first of which must be a power of two from 16 on, but that its storage stays if it is large
    /// enough.
    void startAnew(std::uint32_t buckets, std::uint32_t overflowSlots)
    {
        store.startAnew(buckets, overflowSlots);
    }

    /// Lets the first put take storage for so many keys at once, so that growing takes none.
    /// Nothing else changes. No effect behind the first put.
    void reserveStorage(std::uint32_t keys)
    {
        if (store.table == nullptr)
            store.reserve(keys);
    }

    Cursor first() const { return Cursor(*this); }

    /// Calls visit(key, value) for each key in the order of iteration; value is a reference.
    template <typename Visit> void forEach(Visit visit) const
    {
        for (Cursor cursor = first(); !cursor.isAtEnd(); cursor.advance())
            visit(cursor.key(), cursor.value());
    }

    /// Copies keys in the order of iteration, at most n of them. Returns the number copied.
    std::int32_t keys(K* array, std::int32_t n) const
    {
        std::int32_t copied = 0;
        for (Cursor cursor = first(); copied < n && !cursor.isAtEnd(); cursor.advance())
            array[copied++] = cursor.key();
        return copied;
    }

    /// Copies values in the order of iteration, at most as many as the array holds. Returns the
    /// number copied.
    std::int32_t values(Array<V>& array) const
    {
        std::int32_t copied = 0;
        Cursor cursor = first();
        for (; copied < array.getLength() && !cursor.isAtEnd(); cursor.advance())
            array.elements()[copied++] = cursor.value();
        return copied;
    }

    /// Becomes an exact copy of source: capacities, chains, overflow slots and free hint, so that
    /// both maps go on alike. Values are copied as they are. A failed allocation leaves the map as
    /// it was.
    void copyExactly(const HashMap& source)
    {
        if (&source == this)
            return;
        Store copy(source.store.capacity, source.store.overflowCapacity, store.arena);
        copy.loadFactor = source.store.loadFactor;
        if (source.store.table != nullptr)
            copy.copyArrays(source.store);
        store.swap(copy);
    }

    /// Exchanges all that both maps hold. A cursor of either map must not be used any more.
    void swapEntries(HashMap& other) { store.swap(other.store); }

    /// The number of primary slots and of overflow slots, and the overflow slot last taken, all
    /// ones for none; the arrays themselves may not have been made yet.
    std::uint32_t getCapacity() const { return store.capacity; }
    std::uint32_t getOverflowCapacity() const { return store.overflowCapacity; }
    std::uint32_t getFreeHint() const { return store.freeHint; }

protected:
    /// Sets the share of primary slots at which the map grows; 0.5 unless this is called.
    void setLoadFactor(float share) { store.loadFactor = share; }

private:
    static constexpr std::uint32_t kUsed = 0x80000000;
    static constexpr std::uint32_t kEndOfChain = 0x7FFFFFFF;
    static constexpr std::uint32_t kFree = kEndOfChain;
    static constexpr std::uint32_t kNoHint = 0xFFFFFFFF;
    static constexpr std::uint32_t kFewestBuckets = 16;
    static constexpr std::uint32_t kMostBucketsAtFirst = 65536;
    static constexpr std::uint32_t kMostMoved = 32; // keys that are moved by way of the stack
    static constexpr float kLoadFactor = 0.5F;

    /// The two arrays with all that belongs to them.
    struct Store {
        Store(std::uint32_t buckets, std::uint32_t overflowSlots, Arena* storage)
            : table(nullptr)
            , overflow(nullptr)
            , capacity(buckets)
            , overflowCapacity(overflowSlots)
            , mask(buckets - 1)
            , count(0)
            , loadFactor(kLoadFactor)
            , freeHint(kNoHint)
            , tableRoom(buckets)
            , overflowRoom(overflowSlots)
            , arena(storage)
        {
        }

        Store(const Store&) = delete;
        Store& operator=(const Store&) = delete;

        ~Store() { releaseBlock(); }

        void swap(Store& other)
        {
            std::swap(table, other.table);
            std::swap(overflow, other.overflow);
            std::swap(capacity, other.capacity);
            std::swap(overflowCapacity, other.overflowCapacity);
            std::swap(mask, other.mask);
            std::swap(count, other.count);
            std::swap(loadFactor, other.loadFactor);
            std::swap(freeHint, other.freeHint);
            std::swap(tableRoom, other.tableRoom);
            std::swap(overflowRoom, other.overflowRoom);
            std::swap(arena, other.arena);
        }

        std::uint32_t bucketOf(K key) const
        {
            const auto k = static_cast<std::uint32_t>(key);
            // Products that wrap at 32 bits are meant.
            const std::uint32_t a = (k * 1021U) >> 10;
            const std::uint32_t b = k * 31U;
            return (((a | b) >> 10) ^ k) & mask;
        }

        /// Whether a map of so many keys grows. Single precision decides, which rounds counts
        /// beyond 2^24. The capacity is a power of two, so the product is as exact as the quotient.
        bool isFull(std::uint32_t keys) const
        {
            return static_cast<float>(keys) >= static_cast<float>(capacity) * loadFactor;
        }

        void ensureMade()
        {
            if (table == nullptr)
                makeArrays();
        }

        void makeArrays()
        {
            table = allocateBlock(overflowRoom);
            overflow = table + tableRoom;
            freeSlots(table, 0, capacity);
            freeSlots(overflow, 0, overflowCapacity);
        }

        Slot* allocateBlock(std::uint32_t overflowSlots) const
        {
            const std::int64_t slots = std::int64_t{tableRoom} + overflowSlots;
            if (arena == nullptr)
                return allocateElements<Slot>(slots).release();
            if (slots > kMaximumElements)
                throwOutOfStorage();
            return static_cast<Slot*>(
                arena->allocate(static_cast<std::size_t>(slots) * sizeof(Slot), alignof(Slot)));
        }

        void releaseBlock()
        {
            if (arena == nullptr)
                releaseStorage(table);
        }

        std::uint32_t bucketsFor(std::uint32_t keys) const
        {
            std::uint32_t buckets = kFewestBuckets;
            while (static_cast<float>(keys) >= static_cast<float>(buckets) * loadFactor
                && buckets < kMostBucketsAtFirst)
                buckets *= 2;
            return buckets;
        }

        void reserve(std::uint32_t keys) { tableRoom = std::max(tableRoom, bucketsFor(keys)); }

        void startAnew(std::uint32_t buckets, std::uint32_t overflowSlots)
        {
            capacity = buckets;
            mask = buckets - 1;
            overflowCapacity = overflowSlots;
            count = 0;
            freeHint = kNoHint;
            if (capacity > tableRoom || overflowCapacity > overflowRoom) {
                releaseBlock();
                table = nullptr;
                tableRoom = std::max(tableRoom, capacity);
                overflowRoom = std::max(overflowRoom, overflowCapacity);
            }
            if (table == nullptr)
                return;
            freeSlots(table, 0, capacity);
            freeSlots(overflow, 0, overflowCapacity);
        }

        /// Whether growPut may be called.
        bool hasRoomFor(std::uint32_t overflowSlots) const
        {
            return capacity <= tableRoom / 2 && overflowSlots <= overflowRoom && count <= kMostMoved
                && loadFactor == kLoadFactor;
        }

        /// As a put that makes the map grow to so many overflow slots, without new storage.
        void growPut(
            std::uint32_t bucket, K key, V value, bool isPresent, std::uint32_t overflowSlots)
        {
            Slot moved[kMostMoved + 1];
            std::uint32_t movedCount = 0;
            for (std::uint32_t i = 0; i < capacity; ++i) {
                const Slot* slot = table[i].isUsed() ? table + i : nullptr;
                while (slot != nullptr) {
                    moved[movedCount++] = *slot;
                    slot = slot->next() != kEndOfChain ? overflow + slot->next() : nullptr;
                }
                if (i == bucket && !isPresent)
                    moved[movedCount++] = Slot{key, kFree, value};
            }
            startAnew(capacity * 2, overflowSlots);
            for (std::uint32_t i = 0; i < movedCount; ++i)
                addTo(bucketOf(moved[i].key), moved[i].key, moved[i].value);
            if (isPresent)
                findIn(bucketOf(key), key)->value = value;
        }

        void copyArrays(const Store& source)
        {
            makeArrays();
            copySlots(table, source.table, capacity);
            copySlots(overflow, source.overflow, overflowCapacity);
            count = source.count;
            freeHint = source.freeHint;
        }

        void clear()
        {
            const bool isOverflowUsed = freeHint != kNoHint;
            freeHint = kNoHint;
            if (isOverflowUsed)
                freeSlots(overflow, 0, overflowCapacity);
            if (count != 0)
                freeSlots(table, 0, capacity);
            count = 0;
        }

        /// The slot of a key in a bucket; null when the key is absent. The arrays must be there.
        Slot* findIn(std::uint32_t bucket, K key) const
        {
            Slot* slot = table + bucket;
            if (!slot->isUsed())
                return nullptr;
            while (slot->key != key) {
                const std::uint32_t next = slot->next();
                if (next == kEndOfChain)
                    return nullptr;
                slot = overflow + next;
            }
            return slot;
        }

        /// Adds a key that is not in the store to its bucket, without a look at the load.
        void addTo(std::uint32_t bucket, K key, V value)
        {
            if (!table[bucket].isUsed()) {
                table[bucket] = Slot{key, kUsed | kEndOfChain, value};
                ++count;
                return;
            }
            std::uint32_t last = kEndOfChain;
            std::uint32_t next = table[bucket].next();
            while (next != kEndOfChain) {
                last = next;
                next = overflow[next].next();
            }
            const std::uint32_t index = takeOverflowSlot();
            overflow[index] = Slot{key, kUsed | kEndOfChain, value};
            (last == kEndOfChain ? table[bucket] : overflow[last]).setNext(index);
            ++count;
        }

        /// The overflow slot that the next chain link takes; overflowCapacity when all are in use.
        std::uint32_t findOverflowSlot() const
        {
            if (freeHint != kNoHint && freeHint < overflowCapacity) {
                for (std::uint32_t i = freeHint; i < overflowCapacity; ++i) {
                    if (!overflow[i].isUsed())
                        return i;
                }
            }
            for (std::uint32_t i = 0; i < overflowCapacity; ++i) {
                if (!overflow[i].isUsed())
                    return i;
            }
            return overflowCapacity;
        }

        std::uint32_t takeOverflowSlot()
        {
            const std::uint32_t index = findOverflowSlot();
            if (index == overflowCapacity)
                growOverflow();
            freeHint = index;
            return index;
        }

        std::uint32_t doubledOverflow() const
        {
            if (overflowCapacity > kEndOfChain / 2)
                throwOutOfStorage();
            return std::max(overflowCapacity * 2, 1U);
        }

        void growOverflow()
        {
            const std::uint32_t newCapacity = doubledOverflow();
            if (newCapacity > overflowRoom)
                moveToBlockFor(newCapacity);
            freeSlots(overflow, overflowCapacity, newCapacity);
            overflowCapacity = newCapacity;
        }

        void moveToBlockFor(std::uint32_t overflowSlots)
        {
            Slot* const block = allocateBlock(overflowSlots);
            copySlots(block, table, capacity);
            copySlots(block + tableRoom, overflow, overflowCapacity);
            releaseBlock();
            table = block;
            overflow = block + tableRoom;
            overflowRoom = overflowSlots;
        }

        void takeOut(Slot* slot)
        {
            Slot* before = nullptr;
            Slot* last = slot;
            while (last->next() != kEndOfChain) {
                before = last;
                last = overflow + last->next();
            }
            if (before == nullptr) {
                cutFromChain(slot);
            } else {
                slot->key = last->key;
                slot->value = last->value;
                before->setNext(kEndOfChain);
            }
            last->link = kFree;
            --count;
        }

        /// Ends the chain in front of its last slot; nothing to do for a primary slot.
        void cutFromChain(const Slot* last)
        {
            Slot* slot = table + bucketOf(last->key);
            if (slot == last)
                return;
            while (overflow + slot->next() != last)
                slot = overflow + slot->next();
            slot->setNext(kEndOfChain);
        }

        static void freeSlots(Slot* slots, std::uint32_t from, std::uint32_t to)
        {
            for (std::uint32_t i = from; i < to; ++i)
                slots[i].link = kFree;
        }

        static void copySlots(Slot* to, const Slot* from, std::uint32_t slots)
        {
            if (slots != 0)
                std::memcpy(static_cast<void*>(to), from, slots * sizeof(Slot));
        }

        Slot* table; // owned, null until the first put; freed by the destructor
        Slot* overflow; // in the same block
        std::uint32_t capacity;
        std::uint32_t overflowCapacity;
        std::uint32_t mask;
        std::uint32_t count;
        float loadFactor;
        std::uint32_t freeHint; // overflow index last handed out, or kNoHint
        std::uint32_t tableRoom; // slots that the block has for table, at least capacity
        std::uint32_t overflowRoom; // the same for overflow
        Arena* arena; // borrowed; null when the block is of the heap
    };

    static std::uint32_t bucketsAtFirst(std::uint32_t hint)
    {
        return std::bit_ceil(std::clamp(hint, kFewestBuckets, kMostBucketsAtFirst));
    }

    Slot* findSlot(K key) const
    {
        return store.count != 0 ? store.findIn(store.bucketOf(key), key) : nullptr;
    }

    /// A put that makes the map grow. Everything is entered into a larger store in the order of
    /// iteration, as it would be had the key been put first; only then that store takes the place
    /// of the old one, so that no failure shows.
    void putGrown(std::uint32_t bucket, K key, V value, bool isPresent)
    {
        std::uint32_t overflowSlots = store.overflowCapacity;
        const bool needsOverflow = !isPresent && store.table[bucket].isUsed();
        if (needsOverflow && store.findOverflowSlot() == overflowSlots)
            overflowSlots = store.doubledOverflow();
        if (store.hasRoomFor(overflowSlots)) {
            store.growPut(bucket, key, value, isPresent, overflowSlots);
            return;
        }

        HashMap grown(kFewestBuckets, overflowSlots, store.arena);
        grown.store.startAnew(doubledBuckets(), overflowSlots);
        grown.store.loadFactor = store.loadFactor;
        for (std::uint32_t i = 0; i < store.capacity; ++i) {
            grown.putChain(store, i);
            if (i == bucket && !isPresent)
                grown.put(key, value);
        }
        if (isPresent)
            *grown.find(key) = value;
        store.swap(grown.store);
    }

    std::uint32_t doubledBuckets() const
    {
        if (store.capacity > kEndOfChain / 2)
            throwOutOfStorage();
        return store.capacity * 2;
    }

    void putChain(const Store& source, std::uint32_t bucket)
    {
        const Slot* slot = source.table + bucket;
        if (!slot->isUsed())
            return;
        put(slot->key, slot->value);
        while (slot->next() != kEndOfChain) {
            slot = source.overflow + slot->next();
            put(slot->key, slot->value);
        }
    }

    Store store;
};

} // namespace zorvan
