#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

struct HTML_SOINFO;

// Properties of the document: stretches of TAG_FIELD, whose record tells the property and whose
// text is its value.

/// title: its text is delivered between entry and exit.
void enterTitle(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveTitle(const HTML_SOINFO& frame, HtmlFilterContext& context);

/// meta with a name and a content.
void enterMeta(const HtmlTreeNode& node, HtmlFilterContext& context);

/// link that tells the author.
void enterLink(const HtmlTreeNode& node, HtmlFilterContext& context);

/// The version attribute of html.
void deliverVersion(const HtmlTreeNode& node, HtmlFilterContext& context);

/// A property whose value goes out as it stands, cut to RESERVED_CHARS_CAPACITY units, through a
/// buffer of the host. field: a FIELD_ code. value: zero-terminated.
void deliverRawProperty(
    std::uint32_t field, const char16_t* value, std::uint32_t length, HtmlFilterContext& context);
