#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"

// The repair of formatting elements that end where they do not match what is open.

/// A start tag a of the body: an a that is still open ends first. Answers an InsertionAnswer.
int HandleAnchorStartTag(const Token* token, HtmlFilterContext& context);

/// An end tag of a formatting element in the body. Answers an InsertionAnswer.
int HandleFormattingEndTag(const Token* token, HtmlFilterContext& context);
