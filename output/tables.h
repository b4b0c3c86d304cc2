#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

// Tables: rows, cells, spans and captions.

/// Answers false when the table can't be entered now: then it is entered again in the next slice.
bool enterTable(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveTable(HtmlTreeNode& node, HtmlFilterContext& context);
/// After the frame of a table is gone: ends the slice when it was the outermost one.
void finishTable(HtmlFilterContext& context);

void enterRow(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveRow(HtmlTreeNode& node, HtmlFilterContext& context);
void enterCell(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveCell(HtmlTreeNode& node, HtmlFilterContext& context);

/// Answers true when the caption's content has been delivered already.
bool enterCaption(HtmlFilterContext& context);
void leaveCaption(HtmlFilterContext& context);
