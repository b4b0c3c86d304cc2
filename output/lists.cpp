#include "output/lists.h"

#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"

// STAND-IN: levels and the breaks around a list; only its style is delivered.
void enterList(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, elementOf(node), context);
}

// STAND-IN: the end of a level of ol, ul or dl.
bool leaveList(HtmlTreeNode&, HtmlFilterContext&) { return false; }

// STAND-IN: the end of a level of dir or menu.
bool leaveMenuList(HtmlTreeNode&, HtmlFilterContext&) { return false; }

void enterListItem(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    applyStyle(declarationsOf(node), frame, ELEMENT_LI, context);
    // STAND-IN: the item's marker.
}

// STAND-IN: the level of a definition list; only its style is delivered.
void enterDefinitionList(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_DL, context);
}

void enterTerm(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    applyStyle(declarationsOf(node), frame, ELEMENT_DT, context);
    // STAND-IN: the term's place in its list.
}

// STAND-IN: the tab in front of a definition and its place in the list.
void enterDefinition(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_DD, context);
}
