#pragma once

#include "tree/attribute_rules.h"

// Attributes that draw borders. Each of the four sides has a color, a width and a style, which is
// solid.

/// bordercolor of tables: the color of all sides.
void KeepBorderColor(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// border of a table: width and style of all sides, and the color black unless one is given.
void KeepTableBorder(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// frame of a table: the sides that it names.
void KeepTableFrame(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// border of an image: all sides, in black.
void KeepImageBorder(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// frameborder: 1 or 0; all sides of an iframe have that width.
void KeepFrameBorder(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// noshade: the style of all sides, and a number, whatever the text.
void KeepNoShade(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);
