#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

struct HTML_SOINFO;

/// A reference with one part; answers its id. part: a REFERENCE_PART_ code; string: the handle that
/// goes with it, also SO_NO_STRING.
std::uint32_t makeReference(std::uint32_t part, std::uint32_t string, HtmlFilterContext& context);

/// A bookmark without text, for the id of any element.
void deliverIdBookmark(const HtmlTreeNode& node, HtmlFilterContext& context);

/// a: a hyperlink, a bookmark or both around its content.
void enterAnchor(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveAnchor(const HTML_SOINFO& frame, HtmlFilterContext& context);

/// base: the address that the document's links start from.
void enterBase(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
