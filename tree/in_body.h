#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"
#include "support/html_names.h"

// The rules of the body that stand in files of their own. All answer an InsertionAnswer.

/// An end tag of the body.
int HandleBodyEndTag(const Token* token, HtmlFilterContext& context);

/// A body in a document that has one.
int MergeSecondBody(const Token* token, HtmlFilterContext& context);

/// A frameset in a document that has a body, whose place it may take.
int ReplaceBodyByFrameset(const Token* token, HtmlFilterContext& context);

/// The tag isindex just scanned: a form around a prompt and a text that stands for the field.
int InsertIsindex(HtmlFilterContext& context);

/// Act as if a tag without attributes had been met in the body.
int ActAsBodyStartTag(ZVHTMLElement element, HtmlFilterContext& context);
int ActAsBodyEndTag(ZVHTMLElement element, HtmlFilterContext& context);
