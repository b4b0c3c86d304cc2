#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;
struct OpenTable;

/// Describes a table to the host. frame: the table's, which is still as its parent's; the table's
/// own style has been delivered.
void defineTable(const HtmlTreeNode& node, const HTML_SOINFO& frame, HtmlFilterContext& context);
