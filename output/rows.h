#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

// Rows of tables.

void enterRow(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveRow(HtmlTreeNode& node, HtmlFilterContext& context);
