#pragma once

#include "containers/storage.h"
#include "filter/html_filter_context.h"
#include "tree/html_tree.h"
#include "tree/kind_sequence.h"

#include <cstdint>

/// The list of active formatting elements: elements that are open or were cut off, and markers
/// behind which the ones before are out of reach. It does not own the nodes. Each payload knows its
/// entry (HtmlTagNodeData::formattingEntry); what the tree builder asks needs no walk, however long
/// the list. Where there is no memory for an entry, std::bad_alloc is thrown and the list is as it
/// was.
class ActiveFormattingList {
public:
    /// Entries, markers included.
    std::int32_t getCount() const { return entries_.getCount(); }

    /// Markers.
    std::uint32_t getMarkerCount() const { return markerCount_; }

    bool contains(const HtmlTreeNode& node) const { return numberOf(node) != 0; }

    /// The node at the end; null when there is none or a marker stands there.
    HtmlTreeNode* last() const { return nodeAt(entries_.last()); }

    /// The nodes next to one that is in the list; null for a marker and at the ends.
    HtmlTreeNode* before(const HtmlTreeNode& node) const
    {
        return nodeAt(entries_.below(numberOf(node)));
    }
    HtmlTreeNode* behind(const HtmlTreeNode& node) const
    {
        return nodeAt(entries_.above(numberOf(node)));
    }

    /// The last node of an element behind the last marker; null none.
    HtmlTreeNode* find(std::uint32_t elementId) const;

    /// Of the nodes behind the last marker that are the same as one in element and attributes, the
    /// third from the end; null when there are fewer.
    HtmlTreeNode* findThirdAlike(const HtmlTreeNode& node) const;

    /// Adds a marker, or a node that is not in the list, at the end.
    void addMarker();
    void add(HtmlTreeNode* node);

    /// Adds a node right behind another one that is in the list.
    void addBehind(const HtmlTreeNode& reference, HtmlTreeNode* node);

    /// Puts a node of the same element in the place of another one that is in the list.
    void replace(const HtmlTreeNode& old, HtmlTreeNode* node);

    /// Takes a node out that is in the list.
    void remove(const HtmlTreeNode& node);

    /// Takes off the end, which must be there; true when that was a marker.
    bool removeLast();

    /// Takes all entries off. The nodes are not looked at, so that they may be gone.
    void clear();

private:
    struct Entry {
        HtmlTreeNode* node; ///< null for a marker
        std::uint64_t likeness; ///< see likenessOf
        std::uint32_t nextAlike; ///< the chain of the bucket that likeness leads to; 0 ends it
        std::uint32_t previousAlike;
        std::uint32_t markersBefore; ///< only what goes with them changes that
    };

    static constexpr std::uint32_t kElementLimit = 136;
    using Entries = KindSequence<Entry, kElementLimit>;
    using Number = Entries::Number;

    HtmlTreeNode* nodeAt(Number number) const
    {
        return number == 0 ? nullptr : entries_.itemAt(number).node;
    }

    Number numberOf(const HtmlTreeNode& node) const;
    void enter(Number number);
    void leave(Number number);
    void takeOut(Number number);
    void makeRoomForOneAlike();
    void linkAlike(Number number);
    void unlinkAlike(Number number);
    Number& bucketOf(std::uint64_t likeness) const;

    Entries entries_;
    std::uint32_t markerCount_ = 0;
    /// The entries with attributes by what they are like, bucketCount_ chains; null until the first
    zorvan::StoragePointer<Number> buckets_;
    std::uint32_t bucketCount_ = 0; ///< a power of two
    std::uint32_t alikeCount_ = 0; ///< entries in the chains
};
