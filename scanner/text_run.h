#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

/// The units of ordinary text that come next, as many as stand in the stream's buffer and fit the
/// capacity: the same that so many calls of Scan would answer, with the same effects. White space
/// (TAB, LF, FF, CR, blank) is among them; "<", a unit 0 and a unit 0xFFFF never are. 0 when there
/// are none to be had this way, which says nothing of what comes next: Scan tells. Always 0 in
/// lenient raw text, in UTF-16, JIS and sets with escapes. What of the destination lies behind the
/// units may have been written to.
std::uint32_t scanTextRun(
    char16_t* destination, std::uint32_t capacity, HtmlFilterContext& context);

/// The buffered bytes from the next one on that are each a unit of ordinary text.
std::uint32_t countTextBytes(const HtmlFilterContext& context);
