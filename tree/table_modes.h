#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"

#include <cstdint>

// What the modes of tables share. Markup is only sorted into the tree here; rows and columns are
// counted when the table is delivered.

/// Whether an element is open in the innermost table, the table itself included. Fails as
/// HasElementInListedScope does.
bool HasElementInTableScope(std::uint32_t elementId, HtmlFilterContext& context);

/// Each pops, pending text first, until the current element may hold what comes next: a table; a
/// tbody, tfoot or thead; a tr. html stops all three.
void ClearStackToTableContext(HtmlFilterContext& context);
void ClearStackToTableBodyContext(HtmlFilterContext& context);
void ClearStackToRowContext(HtmlFilterContext& context);

/// The answer of a rule that has acted as if an end tag stood in front of the token: the token is
/// looked at again, but counts as used when there was nothing to end, else it would come back for
/// ever.
int AgainUnlessIgnored(int answerOfEndTag);
