#pragma once

#include "filter/html_filter_context.h"
#include "tree/active_formatting_list.h"

#include <cstdint>

// What is done to the list of active formatting elements.

/// Adds a marker at the end: what stands before it is out of reach until it goes.
void InsertFormattingMarker(ActiveFormattingList& list);

/// Adds an element at the end; of three before it that are the same in name and attributes the
/// first goes. node: null adds a marker.
void PushFormattingElement(ActiveFormattingList& list, HtmlTreeNode* node);

/// Takes entries off the end, the last marker the last of them; all when there is none.
void ClearFormattingToMarker(ActiveFormattingList& list);

/// The last element with this id behind the last marker; null when there is none.
HtmlTreeNode* FindFormattingElement(const ActiveFormattingList& list, std::uint32_t elementId);

/// Takes a node out; nothing happens when it is not in the list.
void RemoveFormattingNode(ActiveFormattingList& list, const HtmlTreeNode& node);

/// Puts a node of the same element in the place of another one; nothing happens when that one is
/// not in the list.
void ReplaceFormattingNode(
    ActiveFormattingList& list, const HtmlTreeNode& oldNode, HtmlTreeNode* newNode);

/// Adds a node right behind another one; nothing happens when that one is not in the list.
void InsertFormattingAfter(
    ActiveFormattingList& list, const HtmlTreeNode& bookmark, HtmlTreeNode* newNode);

/// Opens again the formatting elements that the stack has lost.
void ReconstructActiveFormatting(HtmlFilterContext& context);

/// Takes all entries off the list. The nodes are not looked at, so that they may be gone.
void ClearActiveFormatting(HtmlFilterContext& context);
