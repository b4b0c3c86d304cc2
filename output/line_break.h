#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

/// br: applies its style and, when the paragraph is open, ends it so that the line that follows
/// looks like a line of the same paragraph.
void enterLineBreak(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
