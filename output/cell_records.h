#pragma once

#include "filter/html_filter_context.h"
#include "output/host_routines.h"

struct HTML_SOINFO;

/// A cell and what its record is made from.
struct CellPlace {
    const HtmlTreeNode* cell;
    const HtmlTreeNode* row; ///< null when the cell is in none
    const HtmlTreeNode*
        column; ///< the col of the column in front of which the cell was met; or null
    const HTML_SOINFO* rowFrame; ///< null without a row
};

/// Describes a cell; its merge word and flag are left at 0.
TableCellRecord cellRecord(const CellPlace& place, const HtmlFilterContext& context);
