#pragma once

#include "style/css_tokenizer.h"
#include "style/selector.h"

/// Reads a selector up to the comma or the block behind it, which stay with the tokenizer. Answers
/// true on an error, which is to void the rule.
bool readSelector(Selector& selector, CssTokenizer& tokens);
