#pragma once

#include "filter/html_filter_context.h"

/// Starts a section without announcing it: resets the position, chooses the character set, makes an
/// empty tree. What lives until close stays. Throws std::bad_alloc when open had no memory for it.
void initSection(StreamBlock* stream, HtmlFilterContext& context);

/// Makes a new, empty tree with its state and makes it current.
void createTree(HtmlFilterContext& context);

/// Whether everything that a section needs was made at open.
bool isOpenComplete(const HtmlFilterContext& context);
