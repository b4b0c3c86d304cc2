#pragma once

#include "filter/html_filter_context.h"
#include "output/tree_walk.h"

// Tables as a whole.

/// What becomes of a table that is met.
enum class TableEntry {
    Postponed, ///< it can't be entered now and is met again in the next slice
    CaptionFirst, ///< its caption goes out before completeTable is called
    Entered,
};

/// The first half of a table's entry.
TableEntry enterTable(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);

/// The second half: describes the table to the host and opens its frame.
void completeTable(FramePointer frame, HtmlTreeNode& node, HtmlFilterContext& context);

void leaveTable(HtmlTreeNode& node, HtmlFilterContext& context);

/// After the frame of a table is gone: ends the slice when it was the outermost one.
void finishTable(HtmlFilterContext& context);
