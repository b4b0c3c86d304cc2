#pragma once

#include "filter/html_filter_context.h"

/// Looks for a character set declaration in front of the body, before any tree is built, and
/// applies it to currentCharSet. The stream and the decoders are left as they were. Markup is
/// scanned without regard to raw text, so a meta tag in a script counts.
void prescanCharSet(HtmlFilterContext& context);
