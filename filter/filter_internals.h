#pragma once

#include "containers/array_list.h"
#include "filter/html_filter_context.h"
#include "scanner/cut_markup.h"
#include "scanner/token.h"
#include "support/process_heap.h"
#include "support/wstring.h"

#include <array>
#include <cstdint>
#include <memory>

class CascadeObserver;
class FrameSpares;
class HtmlWStringValue;
class StyleSpares;
struct TableWalk;

/// A fork of the search tree over the names in fontNames, which style/font_names.h makes and reads:
/// the first bit in which the names on its two sides differ.
struct FontFork {
    std::uint32_t unit; ///< index of the unit that the bit belongs to
    std::uint32_t bit; ///< the bit, as a mask
    std::int32_t font; ///< a font below this fork, whichever
    std::int32_t sides[2]; ///< by the bit: the next fork, or the complement of a font's index
};

/// A value of font-family that has been looked up, and the font that it names.
struct KnownFamily {
    const HtmlWStringValue* family = nullptr; ///< borrowed from the value cache
    std::int32_t font = 0;
};

/// The search tree as a whole.
struct FontTree {
    zorvan::ArrayList<FontFork> forks;
    std::int32_t top = 0; ///< as FontFork::sides; counts for nothing while fontCount is 0
    std::int32_t fontCount = 0; ///< names of fontNames that are in the tree
    std::array<KnownFamily, 64> known; ///< by where the value lies; a newer one takes the place
};

/// Gives a block of HeapAlloc back.
struct HeapBlockDeleter {
    void operator()(void* block) const { HeapFree(GetProcessHeap(), 0, block); }
};

/// What is the filter's alone and no part of the contract with the host: counters and places that
/// answer at once what would else be looked for. Made at open, freed at close. Whatever derives
/// from the walk's place is made again when a position is restored.
struct HtmlFilterInternals {
    /// unicodeBomMode was set by a mark or by the first byte of the input, not by a request.
    bool byteOrderFromInput = false;
    /// Units of pendingChars that the scanner has already delivered.
    std::int32_t pendingCharsTaken = 0;
    /// A token that is to be processed again, which a failure has kept from it: the next one that
    /// the tree builder takes.
    Token retryToken = {};
    bool hasRetryToken = false;
    /// Open frames of the walk by kind of element: what "is a pre open" asks.
    std::uint32_t openPreformatted = 0; ///< pre, listing and xmp frames
    std::uint32_t openTables = 0; ///< table frames
    /// The open p and li elements of the walk, innermost last; null marks where a walk inside the
    /// walk begins.
    zorvan::ArrayList<HtmlTreeNode*> openParagraphs;
    zorvan::ArrayList<HtmlTreeNode*> openListItems;
    /// The characters of a text node on their way to the host. Kept for its storage only.
    zorvan::WString textRun;
    /// Where the scanner has run into the end of the input, so that it needn't do so again.
    CutMarkup cutMarkup;
    /// Where attribute values are read into, kAttributeValueCapacity units; made when the document
    /// first needs it.
    std::unique_ptr<char16_t, HeapBlockDeleter> attributeBuffer;
    /// Where a font's name is found without a walk through fontNames.
    FontTree fontTree;
    /// What style keeps for the next element; made and deleted where it is known.
    std::unique_ptr<StyleSpares, void (*)(StyleSpares*)> styleSpares{nullptr, nullptr};
    /// The same of the walk.
    std::unique_ptr<FrameSpares, void (*)(FrameSpares*)> frameSpares{nullptr, nullptr};
    /// Told of every cascade; borrowed from a developer's program, null in the filter itself.
    CascadeObserver* cascadeObserver = nullptr;
    /// The tables that the walk is in.
    std::unique_ptr<TableWalk, void (*)(TableWalk*)> tableWalk{nullptr, nullptr};
};
