#pragma once

#include "containers/array_list.h"
#include "style/selector.h"
#include "support/html_names.h"
#include "tree/value_index.h"

#include <cstdint>

/// The lists of elements of which the same rules, and nothing else, say how they look: such
/// elements share one, if need be only those in parents of one font size, within bounds that keep
/// the search and the storage small whatever the document. The lists are borrowed.
class SharedDeclarations {
public:
    SharedDeclarations() = default;
    SharedDeclarations(const SharedDeclarations&) = delete;
    SharedDeclarations& operator=(const SharedDeclarations&) = delete;
    ~SharedDeclarations();

    /// For a list that is the same whatever the font size.
    static constexpr std::uint32_t kAnyFontSize = 0xFFFFFFFF;

    /// The list of an element that these selectors mean, in a parent of this font size (pixels);
    /// null when there is none yet.
    CssDeclarationList* find(std::uint32_t elementId, const zorvan::ArrayList<Selector*>& matched,
        std::uint32_t fontSize) const;

    /// Adds the list of an element, which has none yet; false when there is no room for it. Throws
    /// std::bad_alloc.
    bool add(std::uint32_t elementId, const zorvan::ArrayList<Selector*>& matched,
        std::uint32_t fontSize, CssDeclarationList* list);

    /// The lists with one key, and the rules of all lists, that there is room for.
    static constexpr std::int32_t kMostPerKey = 8;
    static constexpr std::int32_t kMostRules = 1 << 20;

private:
    struct Entry {
        std::uint32_t elementId = 0;
        std::uint32_t fontSize = kAnyFontSize;
        zorvan::ArrayList<const CssDeclarationList*> rules; // as the selectors stand
        CssDeclarationList* list = nullptr;
        Entry* next = nullptr; // with the same key; owned
    };

    static std::uint32_t keyOf(
        std::uint32_t elementId, const zorvan::ArrayList<Selector*>& matched);
    static std::int32_t lengthOf(const Entry* first);
    static bool isFor(const Entry& entry, std::uint32_t elementId,
        const zorvan::ArrayList<Selector*>& matched, std::uint32_t fontSize);

    ValueIndex<Entry> entries_; // owned
    std::int32_t ruleCount_ = 0; // of all entries
};
