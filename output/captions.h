#pragma once

#include "filter/html_filter_context.h"
#include "output/tree_walk.h"

// Captions, which go out in front of their table's record. The walk over one runs inside the walk
// that has met the table, and captions may stand in tables in captions: so the walks are a stack
// of records that one loop works through.

/// Begins the caption of a table whose entry is half done; the table's frame waits for its end.
/// Answers the caption, over whose subtree the walk goes next, or null when it has no content: then
/// the table has been entered completely.
HtmlTreeNode* beginCaption(
    FramePointer tableFrame, HtmlTreeNode& table, HtmlFilterContext& context);

/// The caption that the walk is in; null outside.
HtmlTreeNode* captionInWalk(const HtmlFilterContext& context);

/// Ends that caption, done or not, and completes the entry of its table, which is the answer.
HtmlTreeNode* endCaption(HtmlFilterContext& context);

/// Gives up the captions that the walk is in, which an exception has ended.
void abandonCaptions(HtmlFilterContext& context);

/// When the walk itself comes to a caption. Answers true when its content has gone out already.
bool enterCaption(HtmlFilterContext& context);
void leaveCaption(HtmlFilterContext& context);
