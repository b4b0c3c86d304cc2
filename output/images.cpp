#include "output/images.h"

#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"

namespace {

constexpr std::uint32_t kSingleSpacing = 1;

} // namespace

// STAND-IN: the graphic of an image; only its style is delivered.
void enterImage(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_IMG, context);
}

// STAND-IN: the rule itself; only its style is delivered.
void enterRule(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_HR, context);
}

void leaveRule(HtmlFilterContext& context)
{
    endParagraph(context);
    SOSetLineSpacing(kSingleSpacing, 0, 0, 0, context);
}

// STAND-IN: the value of a text field; only its style is delivered.
void enterInput(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_INPUT, context);
}
