#include "output/line_break.h"

#include "containers/array_list.h"
#include "filter/filter_internals.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"
#include "output/units.h"

namespace {

constexpr std::uint32_t kSpacingSub = 1;

/// The innermost open element of a kind; null when the walk that is running has none.
HtmlTreeNode* innermost(const zorvan::ArrayList<HtmlTreeNode*>& open)
{
    return open.getCount() == 0 ? nullptr : open.last();
}

std::int32_t bottomMarginPixels(const CssDeclarationList& declarations)
{
    const HtmlLengthValue* margin
        = HtmlLengthValue::from(declarations.findValue(PROPERTY_MARGIN_BOTTOM));
    return margin == nullptr ? 0 : pixelsOf(*margin);
}

/// Ends the paragraph without its spacing, which its last line gives instead.
void breakParagraph(HtmlFilterContext& context)
{
    const HtmlTreeNode* paragraph = innermost(context.internals->openParagraphs);
    std::int32_t margin = 0;
    if (paragraph != nullptr && declarationsOf(*paragraph) != nullptr) {
        margin = bottomMarginPixels(*declarationsOf(*paragraph));
        SOSetProperty(PROPERTY_KIND_SPACE_AFTER, kSpacingSub, 0, 0, context);
    }
    endParagraph(context);
    SOSetProperty(PROPERTY_KIND_SPACE_BEFORE, kSpacingSub, 0, 0, context);
    SOSetProperty(PROPERTY_KIND_SPACE_AFTER, kSpacingSub, twips(margin), 0, context);
    if (innermost(context.internals->openListItems) == nullptr)
        return;
    const HTML_SOINFO* frame = newestFrame(context);
    const std::int32_t leftIndent = frame == nullptr ? 0 : frame->leftIndentPx;
    SOSetProperty(PROPERTY_KIND_INDENT, INDENT_FIRST_LINE, 0, twips(leftIndent), context);
}

} // namespace

void enterLineBreak(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_BR, context);
    if (isParagraphOpen(context))
        breakParagraph(context);
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_HAS_CONTENT);
    context.paragraphFlags |= PARAGRAPH_BREAK_OWED;
    context.lastChar = 0;
}
