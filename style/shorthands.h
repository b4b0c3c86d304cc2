#pragma once

#include "filter/html_filter_context.h"
#include "style/css_declaration_list.h"
#include "style/css_token_list.h"
#include "support/css_names.h"

/// Declares the longhands of a shorthand, each with its importance, in a fixed order. A value with
/// an error declares nothing at all. property: background, border, one of its sides, border-color,
/// border-style, border-width, font, list-style, margin or padding; any other has no effect.
/// tokens: at least one; may be changed.
void applyShorthand(ZVCSSProperty property, CssDeclarationList& list, CssTokenList& tokens,
    bool important, HtmlFilterContext& context);
