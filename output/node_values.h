#pragma once

#include "style/css_declaration_list.h"
#include "support/html_names.h"
#include "tree/html_node_data.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"

// What the output reads of a node.

/// The payload of an element; null for a text node and for a root.
inline const HtmlTagNodeData* tagOf(const HtmlTreeNode& node)
{
    return elementOf(node) == ELEMENT_NONE ? nullptr
                                           : static_cast<const HtmlTagNodeData*>(node.data);
}

/// The declarations of an element; null when it has none, and for a text node and a root.
inline CssDeclarationList* declarationsOf(const HtmlTreeNode& node)
{
    return node.data == nullptr ? nullptr : node.data->getDeclarations();
}

/// The value of an attribute; null when the element has none.
inline const HtmlValue* attributeOf(const HtmlTreeNode& node, ZVHTMLAttribute id)
{
    const HtmlTagNodeData* tag = tagOf(node);
    return tag == nullptr ? nullptr : tag->findAttribute(id);
}

/// The value of an attribute whose value is a string; null when there is none.
inline const HtmlWStringValue* stringAttribute(const HtmlTreeNode& node, ZVHTMLAttribute id)
{
    return HtmlWStringValue::from(attributeOf(node, id));
}
