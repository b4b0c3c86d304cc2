#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

class CssDeclaration;
struct HTML_SOINFO;

/// Delivers one declaration that concerns characters: color, background of inline elements, font,
/// spacing, decoration, case and vertical alignment. frame: the copy of the newest frame that the
/// delivery works on, whose font size a font-size changes. Answers false for a property that is
/// none of these on this element.
bool deliverCharacterDeclaration(const CssDeclaration& declaration, HTML_SOINFO& frame,
    std::uint32_t element, HtmlFilterContext& context);

/// Whether the host wants colors of its own and the document has set a background: then colors of
/// text and background go out as fixed ones.
bool areColorsOverridden(const HtmlFilterContext& context);

/// basefont: takes over the document's text color and font height.
void enterBaseFont(HtmlTreeNode& node, HtmlFilterContext& context);

/// Looks for the mark that an office program puts on text in a symbol font.
void noteSymbolSpan(const HtmlTreeNode& node, HtmlFilterContext& context);
