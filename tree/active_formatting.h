#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

/// An entry of the list of active formatting elements; owned by the list.
struct ActiveFormattingElement {
    HtmlTreeNode* node; ///< borrowed from the tree; null for a marker
    std::uint64_t key; ///< the entry's key: the node's id, or a marker's own number
};

/// Opens again the formatting elements that the stack has lost.
void ReconstructActiveFormatting(HtmlFilterContext& context);

/// Takes all entries off the list and frees them.
void ClearActiveFormatting(HtmlFilterContext& context);
