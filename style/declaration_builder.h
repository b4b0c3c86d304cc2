#pragma once

#include "filter/html_filter_context.h"
#include "style/css_declaration_list.h"
#include "style/css_token_list.h"

/// Declares in an owning list what a property and the tokens of its value say. Properties without
/// a use and values that can't be read change nothing; a shorthand becomes its longhands. tokens
/// may be changed, as signs are joined to their numbers.
void applyDeclaration(CssDeclarationList& list, const CssToken& name, CssTokenList& tokens,
    bool important, HtmlFilterContext& context);
