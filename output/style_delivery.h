#pragma once

#include "filter/html_filter_context.h"
#include "tree/html_value.h"

#include <cstdint>

struct HTML_SOINFO;

// From declarations to host calls.

/// Resolves the lengths of a new element's declarations, notes in frame.undoList (when there is
/// one) what undoes them, and delivers them. declarations: null for none.
void applyStyle(CssDeclarationList* declarations, HTML_SOINFO& frame, std::uint32_t element,
    HtmlFilterContext& context);

/// Delivers a list and puts it into runningStyle. restoring: 1 when an undo list goes out.
void deliverStyle(CssDeclarationList& declarations, std::uint32_t element, std::uint32_t restoring,
    HtmlFilterContext& context);

/// A new, empty list for an element of the current tree, whose style sheet keeps it until close.
/// Throws std::bad_alloc.
CssDeclarationList& makeNodeDeclarations(HtmlFilterContext& context);

/// Pixels of a font-size value against a parent's size, unrounded; -1 for a value that gives none.
double fontSizePixels(const HtmlValue& value, std::uint32_t parentPx);

/// Makes a number whole, toward 0; what does not fit becomes -2,147,483,648.
inline std::int32_t wholeNumber(double value) { return truncateToInt32(value); }
