#pragma once

#include "containers/left_child_right_sib_tree.h"
#include "filter/html_filter_context.h"
#include "tree/html_node_data.h"

// A document: a tree of payloads, whose nodes and payloads live in the tree's arena until close.
// The root has no payload; text nodes have the element id 0.

/// The element id of a node: 0 for a text node and for a root.
inline std::uint32_t elementOf(const HtmlTreeNode& node)
{
    return node.data == nullptr ? std::uint32_t{0} : node.data->elementId;
}
