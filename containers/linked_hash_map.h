#pragma once

#include "containers/array_list.h"
#include "containers/hash_map.h"
#include "containers/pair.h"

#include <cstdint>
#include <memory>

namespace zorvan {

/// A list of pairs in the order of insertion, whose positions a hash map knows by key. The pairs
/// belong to the map, what their values point at does not. Every operation that fails leaves the
/// map as it was.
template <typename K, typename V> class LinkedHashMap {
public:
    using Entry = Pair<K, V>;

    /// The two numbers are those of the hash map: primary slots wished for, overflow slots.
    LinkedHashMap(std::uint32_t bucketHint, std::uint32_t overflowSlots)
        : positions(bucketHint, overflowSlots)
        , entries(kFirstLength)
    {
    }

    LinkedHashMap(const LinkedHashMap&) = delete;
    LinkedHashMap& operator=(const LinkedHashMap&) = delete;
    virtual ~LinkedHashMap() { clear(); }

    std::int32_t getCount() const { return entries.getCount(); }

    bool contains(K key) const { return positions.contains(key); }

    /// The value of a key, which must be there.
    V get(K key) const { return entries.get(positions.get(key))->value; }

    /// The value of a key in its place; null when the key is absent.
    V* find(K key)
    {
        const std::int32_t* position = positions.find(key);
        return position != nullptr ? &entries.get(*position)->value : nullptr;
    }

    /// The position of a key; -1 when it is absent.
    std::int32_t indexOf(K key) const
    {
        const std::int32_t* position = positions.find(key);
        return position != nullptr ? *position : -1;
    }

    /// The pair at a position of the list, which must be there.
    Entry* getAt(std::int32_t position) const { return entries.get(position); }

    /// The pair at the end of the list, which must not be empty.
    Entry* last() const { return entries.last(); }

    /// Stores a value: a new key at the end of the list, a known one where it stands.
    void put(K key, V value)
    {
        if (const std::int32_t* position = positions.find(key)) {
            entries.get(*position)->value = value;
            return;
        }
        insertNew(key, value, entries.getCount());
    }

    /// Puts a new key in so that it stands at position; getCount() is the end of the list.
    void insertAt(K key, V value, std::int32_t position)
    {
        entries.checkInsert(position);
        insertNew(key, value, position);
        // Only for a key that stands elsewhere in the list, too, does this tell anything new.
        *positions.find(key) = position;
    }

    /// Takes a key out, which must be there, and returns its value.
    V remove(K key)
    {
        const std::int32_t position = positions.remove(key);
        const std::unique_ptr<Entry> entry(entries.remove(position));
        renumberFrom(position);
        return entry->value;
    }

    void clear()
    {
        while (entries.getCount() > 0)
            delete entries.remove(entries.getCount() - 1);
        positions.clear();
    }

    /// The pairs in the order of the list.
    const ArrayList<Entry*>& list() const { return entries; }

private:
    static constexpr std::int32_t kFirstLength = 5;

    void insertNew(K key, V value, std::int32_t position)
    {
        auto entry = std::make_unique<Entry>(key, value);
        entries.ensureCapacity(entries.getCount() + 1);
        positions.put(key, position);
        entries.insert(position, entry.release());
        renumberFrom(position + 1);
    }

    void renumberFrom(std::int32_t position)
    {
        for (std::int32_t i = position; i < entries.getCount(); ++i) {
            const K key = entries.get(i)->key;
            if (std::int32_t* known = positions.find(key))
                *known = i;
            else
                positions.put(key, i);
        }
    }

    HashMap<K, std::int32_t> positions;
    ArrayList<Entry*> entries;
};

} // namespace zorvan
