#include "output/links.h"

#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/properties.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"

void deliverIdBookmark(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlWStringValue* id = stringAttribute(node, ATTRIBUTE_ID);
    if (id == nullptr)
        return;
    const std::uint16_t value = ++context.bookmarkCounter;
    const std::uint32_t name = storeString(id->text, context);
    SOBeginReference(context);
    SOAddReferencePart(REFERENCE_PART_BOOKMARK, name, 0, context);
    SOEndReference(context);
    const BookmarkRecord record{0, name};
    SOBeginTagged(TAG_BOOKMARK, value, &record, context);
    SOEndTagged(TAG_BOOKMARK, value, context);
}

// STAND-IN: the stretches of hyperlinks and bookmarks; only the style of an anchor is delivered.
void enterAnchor(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_A, context);
}

// STAND-IN: the ends of the stretches of an anchor.
void leaveAnchor(const HTML_SOINFO&, HtmlFilterContext&) { }

// STAND-IN: the link text of an area; only its style is delivered.
void enterArea(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_AREA, context);
}

void enterBase(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_BASE, context);
    const HtmlWStringValue* address = stringAttribute(node, ATTRIBUTE_HREF);
    if (address != nullptr)
        deliverRawProperty(FIELD_BASE, address->text, address->length, context);
}
