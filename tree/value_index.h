#pragma once

#include "containers/array_list.h"
#include "containers/storage.h"

#include <algorithm>
#include <cstdint>

/// The values of one kind by key. Documents choose the keys, so no choice may make it slow: a key's
/// bits lead to its value one by one, and a search ends within 26 steps. Usually one or two do. The
/// storage comes with the first key. The values are not owned.
template <typename Value> class ValueIndex {
public:
    ValueIndex() = default;
    ValueIndex(const ValueIndex&) = delete;
    ValueIndex& operator=(const ValueIndex&) = delete;
    ~ValueIndex() = default;

    /// The place of a key's value, void after the next call. added: whether the key is new; its
    /// place holds null then. Throws std::bad_alloc, and then has the keys that it had.
    Value*& findOrAdd(std::uint32_t key, bool& added)
    {
        if (roots == nullptr)
            makeRoots();
        std::uint32_t path = key * kSpread;
        std::uint32_t parent = kNone;
        std::uint32_t branch = path >> (32 - kRootBits);
        path <<= kRootBits;
        for (std::uint32_t index = roots.get()[branch]; index != kNone;) {
            Entry& entry = entries.begin()[index];
            if (entry.key == key) {
                added = false;
                return entry.value;
            }
            parent = index;
            branch = path >> 31;
            path <<= 1;
            index = entry.children[branch];
        }
        added = true;
        return addAt(parent, branch, key);
    }

    /// The value of a key; null when there is none.
    Value* find(std::uint32_t key) const
    {
        if (roots == nullptr)
            return nullptr;
        std::uint32_t path = key * kSpread;
        std::uint32_t index = roots.get()[path >> (32 - kRootBits)];
        path <<= kRootBits;
        while (index != kNone) {
            const Entry& entry = entries.begin()[index];
            if (entry.key == key)
                return entry.value;
            index = entry.children[path >> 31];
            path <<= 1;
        }
        return nullptr;
    }

    /// Calls visit(value) for each key in the order of their adding; null values included.
    template <typename Visit> void forEach(Visit visit) const
    {
        for (const Entry& entry : entries)
            visit(entry.value);
    }

private:
    static constexpr std::uint32_t kRootBits = 7;
    static constexpr std::uint32_t kRoots = 1U << kRootBits;
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    // An odd factor loses nothing: different keys stay different in the bits that are left.
    static constexpr std::uint32_t kSpread = 0x9E3779B1;

    /// A key and, by the next bit of the path, the entries of the keys that came later.
    struct Entry {
        Value* value;
        std::uint32_t key;
        std::uint32_t children[2];
    };

    void makeRoots()
    {
        roots = zorvan::allocateElements<std::uint32_t>(kRoots);
        std::fill(roots.get(), roots.get() + kRoots, kNone);
    }

    /// Adds a key behind a branch of its parent, or of the roots when it has none.
    Value*& addAt(std::uint32_t parent, std::uint32_t branch, std::uint32_t key)
    {
        const auto index = static_cast<std::uint32_t>(entries.getCount());
        entries.add(Entry{nullptr, key, {kNone, kNone}});
        Entry* const all = entries.begin();
        (parent == kNone ? roots.get() : all[parent].children)[branch] = index;
        return all[index].value;
    }

    zorvan::StoragePointer<std::uint32_t> roots; // null until the first key
    zorvan::ArrayList<Entry> entries;
};
