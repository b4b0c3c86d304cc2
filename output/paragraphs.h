#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

class CssDeclaration;
struct HTML_SOINFO;

// Blocks: indents, spacing, alignment, direction, shading, borders and page margins.

/// Sets a new frame's font size, indents and alignment from its element's declarations (null:
/// none); parent is the newest frame, or the frame itself when none is open.
void buildFrame(HTML_SOINFO& frame, const HTML_SOINFO& parent, CssDeclarationList* declarations,
    HtmlFilterContext& context);

/// Delivers one declaration that concerns a block: direction, margins, indent, alignment,
/// background of blocks, line height. frame: the copy of the newest frame that the delivery works
/// on. Answers false for a property that is none of these.
bool deliverBlockDeclaration(const CssDeclaration& declaration, HTML_SOINFO& frame,
    std::uint32_t element, HtmlFilterContext& context);

/// Sends the borders of a block's paragraphs, when its declarations give any: on 1 entering, 0
/// leaving.
void deliverParagraphBorder(CssDeclarationList& declarations, std::uint32_t element,
    std::uint32_t on, HtmlFilterContext& context);

/// Entry and exit of the elements whose paragraphs this file knows. Entries include applyStyle;
/// exits run in front of the undo step.
void enterHtml(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void enterBody(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void enterHeading(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void enterParagraph(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveHeading(HtmlTreeNode& node, HtmlFilterContext& context);
void leaveParagraph(HtmlTreeNode& node, HtmlFilterContext& context);
