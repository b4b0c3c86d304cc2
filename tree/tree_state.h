#pragma once

#include "tree/open_elements.h"

#include <cstdint>

class StyleSheet;

/// What belongs to one tree of a document while it is built and walked. Owned by treeStates, freed
/// at close.
struct TreeState {
    std::uint32_t index = 0; ///< its own index, equal to that of the tree in treeList
    std::uint32_t parsed = 0; ///< 1 when the tree is complete
    StyleSheet* styleContext = nullptr; ///< owned, freed at close
    OpenElements openElements;
};
