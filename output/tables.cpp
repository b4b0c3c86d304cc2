#include "output/tables.h"

#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"

// STAND-IN: the table's record, caption and breaks; only its style is delivered.
bool enterTable(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_TABLE, context);
    return true;
}

// STAND-IN: the end of a table.
void leaveTable(HtmlTreeNode&, HtmlFilterContext&) { }

// STAND-IN: the break behind an outermost table.
void finishTable(HtmlFilterContext&) { }

// STAND-IN: the row's record and spans; only its style is delivered.
void enterRow(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_TR, context);
}

// STAND-IN: the break at the end of a row.
void leaveRow(HtmlTreeNode&, HtmlFilterContext&) { }

// STAND-IN: the cell's record; only its style is delivered.
void enterCell(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, elementOf(node), context);
}

// STAND-IN: the break at the end of a cell.
void leaveCell(HtmlTreeNode&, HtmlFilterContext&) { }

// STAND-IN: a caption is delivered in front of its table's record; until then the walk delivers its
// text where it stands.
bool enterCaption(HtmlFilterContext& context)
{
    if (context.flattenTables == 0)
        context.walkState |= WALK_CAPTION_MET;
    return false;
}

void leaveCaption(HtmlFilterContext& context)
{
    if (context.flattenTables == 0)
        context.walkState &= ~std::uint32_t{WALK_CAPTION_MET};
}
