#pragma once

#include "filter/html_filter_context.h"

struct HTML_SOINFO;

// What is placed in the text: images, rules and the values of text fields.

void enterImage(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void enterRule(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
void leaveRule(HtmlFilterContext& context);
void enterInput(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context);
