#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

// Cells of tables, td and th.

void enterCell(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveCell(HtmlTreeNode& node, HtmlFilterContext& context);
