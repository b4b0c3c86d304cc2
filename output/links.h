#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

struct HTML_SOINFO;

/// A bookmark without text, for the id of any element.
void deliverIdBookmark(const HtmlTreeNode& node, HtmlFilterContext& context);

/// a: a hyperlink, a bookmark or both around its content.
void enterAnchor(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveAnchor(const HTML_SOINFO& frame, HtmlFilterContext& context);

/// area of an image map.
void enterArea(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);

/// base: the address that the document's links start from.
void enterBase(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
