#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

// Lists: levels, items and their markers.

/// dir, menu, ol, ul.
void enterList(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
/// ol, ul, dl. Answers whether a paragraph is to be ended once the list's style is undone.
bool leaveList(HtmlTreeNode& node, HtmlFilterContext& context);
/// dir, menu; answers as leaveList.
bool leaveMenuList(HtmlTreeNode& node, HtmlFilterContext& context);
void enterListItem(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);

void enterDefinitionList(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void enterTerm(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void enterDefinition(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
