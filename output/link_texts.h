#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

// Elements that show no text of their own and become a paragraph with a link, whose text is the
// address, underlined and in the color of links.

/// area of an image map, unless a hyperlink is open.
void enterArea(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);

/// frame of a frameset, unless a hyperlink is open.
void enterFrame(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
