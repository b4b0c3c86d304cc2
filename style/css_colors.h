#pragma once

#include "filter/html_filter_context.h"
#include "style/css_token_list.h"
#include "tree/html_value.h"

#include <cstdint>

/// Reads a color written as a function, whose name stands at index. Leaves index at the ")". Null
/// for one that can't be read: then failed is set, and index is at the token where that was seen.
/// Colors with an opacity are null too, but no failure. index may end up behind the last token.
HtmlValue* parseColorFunction(
    const CssTokenList& tokens, std::int32_t& index, bool& failed, HtmlFilterContext& context);
