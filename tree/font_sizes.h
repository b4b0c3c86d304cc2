#pragma once

#include "tree/attribute_rules.h"

// The font sizes 1 to 7 of attributes, and the steps between them.

/// size of basefont: a number, and the keyword or length of its size.
void KeepBaseFontSize(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// size of font: a size, or a number of steps with a sign, which is declared in relation to the
/// font size in force.
void KeepFontSize(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);
