#include "input/charset.h"
#include "output/captions.h"
#include "output/cells.h"
#include "output/character_style.h"
#include "output/element_dispatch.h"
#include "output/host_calls.h"
#include "output/images.h"
#include "output/line_break.h"
#include "output/link_texts.h"
#include "output/links.h"
#include "output/lists.h"
#include "output/node_values.h"
#include "output/paragraphs.h"
#include "output/properties.h"
#include "output/rows.h"
#include "output/style_delivery.h"
#include "output/tables.h"
#include "output/text.h"
#include "output/tree_walk.h"

#include <utility>

namespace {

constexpr char16_t kOpeningQuote = 0x201C;
constexpr std::uint32_t kPreformattedTabs = 1'170;

/// What becomes of an element once its row has run.
enum class Entry {
    Visit, ///< its children come next
    SkipChildren,
};

using EntryAction = Entry (*)(HtmlTreeNode&, HTML_SOINFO&, HtmlFilterContext&);

/// An action of another file as one of the table.
template <void (*Action)(HtmlTreeNode&, HTML_SOINFO&, HtmlFilterContext&)>
Entry visit(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    Action(node, frame, context);
    return Entry::Visit;
}

Entry apply(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, elementOf(node), context);
    return Entry::Visit;
}

template <std::uint32_t Bit>
Entry applyThenSet(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    apply(node, frame, context);
    context.walkState |= Bit;
    return Entry::Visit;
}

/// ins and del.
template <std::uint32_t Attribute>
Entry applyThenSwitchOn(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    apply(node, frame, context);
    SOSetProperty(PROPERTY_KIND_CHARACTER, Attribute, 1, 0, context);
    return Entry::Visit;
}

Entry enterBlock(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    return apply(node, frame, context);
}

/// Ends an open paragraph and sets it off by an empty one.
void leaveBlankLine(HtmlFilterContext& context)
{
    if (!isParagraphOpen(context))
        return;
    if (context.lastChar != 0)
        endParagraph(context);
    endParagraph(context);
}

Entry enterBlockquote(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    leaveBlankLine(context);
    apply(node, frame, context);
    ++context.blockquoteDepth;
    return Entry::Visit;
}

Entry enterPreformatted(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    leaveBlankLine(context);
    apply(node, frame, context);
    SOSetProperty(PROPERTY_KIND_TAB_DISTANCE, kPreformattedTabs, 0, 0, context);
    return Entry::Visit;
}

Entry enterBaseFontRow(HtmlTreeNode& node, HTML_SOINFO&, HtmlFilterContext& context)
{
    enterBaseFont(node, context);
    return Entry::Visit;
}

Entry enterCaptionRow(HtmlTreeNode&, HTML_SOINFO&, HtmlFilterContext& context)
{
    return enterCaption(context) ? Entry::SkipChildren : Entry::Visit;
}

Entry enterForm(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (isParagraphOpen(context))
        endParagraph(context);
    apply(node, frame, context);
    SOSetExtraProperty(EXTRA_PROPERTY_NOTICE, NOTICE_FORM, 0, 0, context);
    return Entry::Visit;
}

Entry enterHead(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    apply(node, frame, context);
    context.walkState |= WALK_IN_HEAD;
    const HtmlTreeNode* child = node.firstChild;
    for (; child != nullptr && context.metaCharSet == 0; child = child->nextSibling) {
        if (elementOf(*child) == ELEMENT_META)
            metaElementCharSet(*child, context);
    }
    if (context.metaCharSet != 0) {
        context.sectionCharSet = context.metaCharSet;
        context.sectionCharSetId = charSetIdFromCode(context.metaCharSet);
    }
    return Entry::Visit;
}

Entry enterLinkRow(HtmlTreeNode& node, HTML_SOINFO&, HtmlFilterContext& context)
{
    enterLink(node, context);
    return Entry::Visit;
}

Entry enterMetaRow(HtmlTreeNode& node, HTML_SOINFO&, HtmlFilterContext& context)
{
    enterMeta(node, context);
    return Entry::Visit;
}

Entry enterNoframes(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    apply(node, frame, context);
    frame.handle = ++context.fieldCounter;
    SOBeginTagged(TAG_NOFRAMES, frame.handle, nullptr, context);
    return Entry::Visit;
}

Entry enterOption(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if ((context.walkState & WALK_IN_SELECT) != 0 && isParagraphOpen(context))
        endParagraph(context);
    return apply(node, frame, context);
}

Entry enterQuotation(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    apply(node, frame, context);
    deliverChar(kOpeningQuote, context);
    return Entry::Visit;
}

Entry enterSpan(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    apply(node, frame, context);
    noteSymbolSpan(node, context);
    return Entry::Visit;
}

Entry enterStyleElement(HtmlTreeNode&, HTML_SOINFO&, HtmlFilterContext& context)
{
    context.walkState |= WALK_IN_STYLE;
    return Entry::SkipChildren;
}

/// A table has no row in what follows: its frame may have to wait, or be dropped.
void enterTableElement(FramePointer frame, HtmlTreeNode& node, HtmlFilterContext& context)
{
    switch (enterTable(node, *frame, context)) {
    case TableEntry::Postponed:
        context.walkResume = 1;
        return;
    case TableEntry::CaptionFirst:
        beginCaption(std::move(frame), node, context);
        return;
    case TableEntry::Entered:
        completeTable(std::move(frame), node, context);
        return;
    }
}

// Whatever has no row is only given its style.
constexpr auto kEntryRows = std::to_array<ElementRow<EntryAction>>({
    {ELEMENT_A, visit<enterAnchor>},
    {ELEMENT_ADDRESS, enterBlock},
    {ELEMENT_APPLET, applyThenSet<WALK_IN_APPLET>},
    {ELEMENT_AREA, visit<enterArea>},
    {ELEMENT_BASE, visit<enterBase>},
    {ELEMENT_BASEFONT, enterBaseFontRow},
    {ELEMENT_BLOCKQUOTE, enterBlockquote},
    {ELEMENT_BODY, visit<enterBody>},
    {ELEMENT_BR, visit<enterLineBreak>},
    {ELEMENT_CAPTION, enterCaptionRow},
    {ELEMENT_CENTER, enterBlock},
    {ELEMENT_DD, visit<enterDefinition>},
    {ELEMENT_DEL, applyThenSwitchOn<CHARACTER_DELETED>},
    {ELEMENT_DIR, visit<enterList>},
    {ELEMENT_DIV, enterBlock},
    {ELEMENT_DL, visit<enterDefinitionList>},
    {ELEMENT_DT, visit<enterTerm>},
    {ELEMENT_FOOTER, enterBlock},
    {ELEMENT_FORM, enterForm},
    {ELEMENT_FRAME, visit<enterFrame>},
    {ELEMENT_H1, visit<enterHeading>},
    {ELEMENT_H2, visit<enterHeading>},
    {ELEMENT_H3, visit<enterHeading>},
    {ELEMENT_H4, visit<enterHeading>},
    {ELEMENT_H5, visit<enterHeading>},
    {ELEMENT_H6, visit<enterHeading>},
    {ELEMENT_HEAD, enterHead},
    {ELEMENT_HEADER, enterBlock},
    {ELEMENT_HR, visit<enterRule>},
    {ELEMENT_HTML, visit<enterHtml>},
    {ELEMENT_IMG, visit<enterImage>},
    {ELEMENT_INPUT, visit<enterInput>},
    {ELEMENT_INS, applyThenSwitchOn<CHARACTER_INSERTED>},
    {ELEMENT_LI, visit<enterListItem>},
    {ELEMENT_LINK, enterLinkRow},
    {ELEMENT_LISTING, enterPreformatted},
    {ELEMENT_MAP, applyThenSet<WALK_IN_MAP>},
    {ELEMENT_MENU, visit<enterList>},
    {ELEMENT_META, enterMetaRow},
    {ELEMENT_NOFRAMES, enterNoframes},
    {ELEMENT_OL, visit<enterList>},
    {ELEMENT_OPTION, enterOption},
    {ELEMENT_P, visit<enterParagraph>},
    {ELEMENT_PLAINTEXT, enterPreformatted},
    {ELEMENT_PRE, enterPreformatted},
    {ELEMENT_Q, enterQuotation},
    {ELEMENT_SELECT, applyThenSet<WALK_IN_SELECT>},
    {ELEMENT_SPAN, enterSpan},
    {ELEMENT_STYLE, enterStyleElement},
    {ELEMENT_TD, visit<enterCell>},
    {ELEMENT_TH, visit<enterCell>},
    {ELEMENT_TITLE, visit<enterTitle>},
    {ELEMENT_TR, visit<enterRow>},
    {ELEMENT_UL, visit<enterList>},
    {ELEMENT_XMP, enterPreformatted},
});
static_assert(ascendByElement(kEntryRows));

constexpr auto kEntryActions = actionsByElement<EntryAction>(kEntryRows, apply);

} // namespace

std::uint32_t enterElement(HtmlTreeNode& node, HtmlFilterContext& context)
{
    const std::uint32_t element = elementOf(node);
    if (element == ELEMENT_NONE)
        return 0;
    deliverIdBookmark(node, context);
    FramePointer frame = makeElementFrame(node, context);
    if (frame == nullptr)
        return 0;
    if (element == ELEMENT_TABLE) {
        enterTableElement(std::move(frame), node, context);
        return 0;
    }
    const Entry entry = kEntryActions[element](node, *frame, context);
    pushFrame(std::move(frame), node, context);
    return entry == Entry::SkipChildren ? 1 : 0;
}
