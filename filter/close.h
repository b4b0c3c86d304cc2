#pragma once

#include "filter/html_filter_context.h"

/// Frees all that open and the sections made. What is not there is skipped; the routines and the
/// user words stay, so the block can be opened again.
void closeDocument(HtmlFilterContext& context);
