#include "output/paragraphs.h"

#include "containers/array_list.h"
#include "output/borders.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/properties.h"
#include "output/style_delivery.h"
#include "output/text.h"
#include "output/tree_walk.h"
#include "output/units.h"
#include "style/css_declaration.h"
#include "style/lengths.h"
#include "support/wstring.h"
#include "support/zv_string.h"

namespace {

constexpr std::uint32_t kLineUnits = 240;
constexpr std::uint32_t kTabDistance = 540;
constexpr std::uint32_t kWhite = 0xFF'FFFF;

constexpr std::uint32_t kSpacingSub = 1;

constexpr std::uint32_t kLineSpacingSingle = 1;
constexpr std::uint32_t kLineSpacingFixed = 2;
constexpr std::uint32_t kLineSpacingRelative = 4;

constexpr std::uint16_t kFamilyOther = 1;
constexpr std::uint16_t kFamilyCursive = 5;
constexpr std::uint16_t kFamilyFantasy = 6;

/// Elements whose side margins indent paragraphs. Headings are none.
constexpr ElementSet kIndentingElements{ELEMENT_BLOCKQUOTE, ELEMENT_DD, ELEMENT_DIV, ELEMENT_DT,
    ELEMENT_LI, ELEMENT_MENU, ELEMENT_OL, ELEMENT_P, ELEMENT_UL, ELEMENT_LH};

constexpr ElementSet kBorderedElements{ELEMENT_DIV, ELEMENT_H1, ELEMENT_H2, ELEMENT_H3, ELEMENT_H4,
    ELEMENT_H5, ELEMENT_H6, ELEMENT_OL, ELEMENT_P, ELEMENT_UL};

/// Adds without overflow: sums wrap.
void addTo(std::int32_t& sum, std::int32_t addend)
{
    sum = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(sum) + static_cast<std::uint32_t>(addend));
}

void setIndent(std::uint32_t which, std::int32_t pixels, HtmlFilterContext& context)
{
    SOSetProperty(PROPERTY_KIND_INDENT, which, 0, twips(pixels), context);
}

// --- Frames

std::int32_t wholePixelsOf(
    const CssDeclarationList& declarations, ZVCSSProperty property, std::uint32_t fontSize)
{
    const auto* length = HtmlLengthValue::from(declarations.findValue(property));
    return length != nullptr ? wholePixels(*length, fontSize) : 0;
}

std::uint32_t fontSizeOf(const CssDeclarationList& declarations, std::uint32_t parentSize)
{
    const HtmlValue* value = declarations.findValue(PROPERTY_FONT_SIZE);
    const std::uint32_t size
        = value != nullptr ? fontSizeInPixels(*value, parentSize) : kNoFontSize;
    return size != kNoFontSize ? size : parentSize;
}

std::uint32_t frameAlignment(ZVCSSValue keyword)
{
    if (keyword == VALUE_LEFT)
        return ALIGNMENT_LEFT;
    return keyword == VALUE_RIGHT ? ALIGNMENT_RIGHT : ALIGNMENT_CENTER;
}

// --- Declarations

void deliverDirection(const HtmlValue* value, HtmlFilterContext& context)
{
    const auto* keyword = HtmlCssKeywordValue::from(value);
    if (keyword == nullptr)
        return;
    if (keyword->keyword == VALUE_LTR)
        SOSetProperty(PROPERTY_KIND_DIRECTION, 0, 0, 0, context);
    else if (keyword->keyword == VALUE_RTL)
        SOSetProperty(PROPERTY_KIND_DIRECTION, 1, 0, 0, context);
}

void deliverLeftMargin(const HtmlValue* value, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    const auto* length = HtmlLengthValue::from(value);
    if (length == nullptr)
        return;
    const std::int32_t pixels = wholePixels(*length, frame.fontSizePx);
    addTo(frame.leftIndentPx, pixels);
    addTo(frame.firstIndentPx, pixels);
    setIndent(INDENT_LEFT, frame.leftIndentPx, context);
    setIndent(INDENT_FIRST_LINE, frame.firstIndentPx, context);
}

void deliverRightMargin(const HtmlValue* value, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    const auto* length = HtmlLengthValue::from(value);
    if (length == nullptr)
        return;
    addTo(frame.rightIndentPx, wholePixels(*length, frame.fontSizePx));
    setIndent(INDENT_RIGHT, frame.rightIndentPx, context);
}

void deliverTextIndent(const HtmlValue* value, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    const auto* length = HtmlLengthValue::from(value);
    if (length == nullptr)
        return;
    addTo(frame.firstIndentPx, wholePixels(*length, frame.fontSizePx));
    setIndent(INDENT_FIRST_LINE, frame.firstIndentPx, context);
}

void deliverAlignment(const HtmlValue* value, HtmlFilterContext& context)
{
    const auto* keyword = HtmlCssKeywordValue::from(value);
    if (keyword == nullptr)
        return;
    const std::uint32_t alignment = keyword->keyword == VALUE_JUSTIFY
        ? std::uint32_t{ALIGNMENT_JUSTIFIED}
        : frameAlignment(keyword->keyword);
    SOSetProperty(PROPERTY_KIND_ALIGNMENT, alignment, 0, 0, context);
}

bool shadesParagraphs(std::uint32_t element)
{
    return !kInlineElements.contains(element) && !kTableParts.contains(element)
        && element != ELEMENT_BODY;
}

void deliverShading(const HtmlValue* value, HtmlFilterContext& context)
{
    ParagraphShadingRecord record{};
    if (const auto* color = HtmlColorValue::from(value)) {
        record.fill = FILL_SOLID;
        record.color = color->color & kColorBits;
        SOSetParagraphShading(1, record, context);
        return;
    }
    const auto* keyword = HtmlCssKeywordValue::from(value);
    if (keyword != nullptr && keyword->keyword == VALUE_TRANSPARENT)
        SOSetParagraphShading(0, record, context);
}

void setLineSpacing(std::uint32_t kind, std::int32_t value, HtmlFilterContext& context)
{
    SOSetLineSpacing(kind, static_cast<std::uint32_t>(value), 0, 0, context);
}

void deliverLineHeight(const HtmlLengthValue& length, HtmlFilterContext& context)
{
    if (isRelative(length)) {
        setLineSpacing(
            kLineSpacingRelative, wholeNumber(length.length.value * kLineUnits), context);
        return;
    }
    // QUIRK(Paragraphs.LineHeightOfANumberAndOfALengthLookAlike): twips and 240ths of a line share
    // a kind, so the host can't tell them apart.
    const std::uint32_t height = twips(wholeNumber(length.pixels()));
    SOSetLineSpacing(kLineSpacingFixed, height, 0, 0, context);
}

void deliverLineHeight(const HtmlValue* value, HtmlFilterContext& context)
{
    if (const auto* keyword = HtmlCssKeywordValue::from(value)) {
        if (keyword->keyword == VALUE_NORMAL)
            setLineSpacing(kLineSpacingSingle, 0, context);
    } else if (const auto* number = HtmlNumberValue::from(value)) {
        const std::int32_t height = wholeNumber(number->number * kLineUnits);
        if (height != 0)
            setLineSpacing(kLineSpacingFixed, height, context);
    } else if (const auto* percent = HtmlPercentValue::from(value)) {
        if (percent->number > 0)
            setLineSpacing(
                kLineSpacingFixed, wholeNumber(percent->number / 100.0F * kLineUnits), context);
    } else if (const auto* length = HtmlLengthValue::from(value)) {
        deliverLineHeight(*length, context);
    }
}

// --- Margins between blocks

bool isNonZero(const CssDeclarationList& declarations, ZVCSSProperty property)
{
    std::int32_t number = 0;
    declarations.getIntValue(property, &number);
    return number != 0;
}

/// The space that a margin still needs behind the margin of the block before, in pixels.
std::int32_t collapseMargin(std::int32_t margin, HtmlFilterContext& context)
{
    const std::uint32_t last = context.lastBlockMargin;
    if (last != 0 && static_cast<std::int32_t>(last) >= margin)
        return 0;
    context.lastBlockMargin = static_cast<std::uint32_t>(margin);
    return static_cast<std::int32_t>(context.lastBlockMargin - last); // wraps
}

void deliverTopMargin(
    const CssDeclarationList* declarations, std::uint32_t fontSize, HtmlFilterContext& context)
{
    if (declarations == nullptr || !declarations->contains(PROPERTY_MARGIN_TOP))
        return;
    const auto* margin = HtmlLengthValue::from(declarations->findValue(PROPERTY_MARGIN_TOP));
    const std::int32_t space
        = margin != nullptr ? collapseMargin(wholePixels(*margin, fontSize), context) : 0;
    if (isNonZero(*declarations, PROPERTY_BORDER_TOP_WIDTH)
        || isNonZero(*declarations, PROPERTY_PADDING_TOP))
        context.lastBlockMargin = 0;
    if (margin != nullptr)
        SOSetProperty(PROPERTY_KIND_SPACE_BEFORE, kSpacingSub, twips(space), 0, context);
}

void deliverBottomMargin(
    const CssDeclarationList* declarations, std::uint32_t fontSize, HtmlFilterContext& context)
{
    if (declarations == nullptr || !declarations->contains(PROPERTY_MARGIN_BOTTOM))
        return;
    if (isNonZero(*declarations, PROPERTY_BORDER_BOTTOM_WIDTH)
        || isNonZero(*declarations, PROPERTY_PADDING_BOTTOM))
        context.lastBlockMargin = 0;
    const auto* margin = HtmlLengthValue::from(declarations->findValue(PROPERTY_MARGIN_BOTTOM));
    if (margin == nullptr)
        return;
    const std::int32_t space = collapseMargin(wholePixels(*margin, fontSize), context);
    SOSetProperty(PROPERTY_KIND_SPACE_AFTER, kSpacingSub, twips(space), 0, context);
}

/// Ends the paragraph of a block, and with it the space around it.
void endBlock(HtmlFilterContext& context)
{
    if (isParagraphOpen(context))
        endParagraph(context);
    SOSetProperty(PROPERTY_KIND_SPACE_BEFORE, kSpacingSub, 0, 0, context);
    SOSetProperty(PROPERTY_KIND_SPACE_AFTER, kSpacingSub, 0, 0, context);
}

void endFilledParagraph(HtmlFilterContext& context)
{
    if (isParagraphOpen(context) && context.lastChar != 0)
        endParagraph(context);
}

std::uint32_t newestFontSize(const HtmlFilterContext& context)
{
    const HTML_SOINFO* newest = newestFrame(context);
    return newest != nullptr ? newest->fontSizePx : emptyFrame().fontSizePx;
}

/// Whether only white space stands between a node and the edge of its parent. next: the link that
/// leads there.
bool isAtEdge(const HtmlTreeNode& node, HtmlTreeNode* HtmlTreeNode::*next)
{
    const HtmlTreeNode* sibling = node.*next;
    while (sibling != nullptr && isSpaceText(*sibling))
        sibling = sibling->*next;
    return sibling == nullptr;
}

/// Whether the margin of a p on one side counts. At the edge of a cell only a margin of the
/// document's own does, at the edge of the body none.
bool hasBlockMargin(const HtmlTreeNode& node, ZVCSSProperty margin,
    HtmlTreeNode* HtmlTreeNode::*next, const HtmlFilterContext& context)
{
    const CssDeclarationList* declarations = declarationsOf(node);
    CssDeclaration* const* declared
        = declarations != nullptr ? declarations->find(margin) : nullptr;
    if (declared == nullptr)
        return false;
    if (context.tableDepth != 0 && isAtEdge(node, next))
        return !(*declared)->edgeMargin;
    return node.*next != nullptr || node.parent == nullptr
        || elementOf(*node.parent) != ELEMENT_BODY;
}

// --- html and body

void setPageMargins(const CssDeclarationList* declarations, HtmlFilterContext& context)
{
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
    if (declarations != nullptr) {
        declarations->getIntValue(PROPERTY_MARGIN_LEFT, &left);
        declarations->getIntValue(PROPERTY_MARGIN_RIGHT, &right);
        declarations->getIntValue(PROPERTY_MARGIN_TOP, &top);
        declarations->getIntValue(PROPERTY_MARGIN_BOTTOM, &bottom);
    }
    SOSetProperty(PROPERTY_KIND_SIDE_MARGINS, twips(left), twips(right), 0, context);
    SOSetProperty(PROPERTY_KIND_TOP_BOTTOM_MARGINS, twips(top), twips(bottom), 0, context);
}

std::uint16_t familyOf(const zorvan::String& name)
{
    if (name.equalsIgnoreCase("cursive"))
        return kFamilyCursive;
    return name.equalsIgnoreCase("fantasy") ? kFamilyFantasy : kFamilyOther;
}

void defineFonts(HtmlFilterContext& context)
{
    for (std::int32_t i = 0; i < context.fontNames->getCount(); ++i) {
        const zorvan::String& name = context.fontNames->get(i)->toString();
        SODefineFont(static_cast<std::uint32_t>(i), familyOf(name), name.value(), context);
    }
}

const HtmlTreeNode* firstChildOf(const HtmlTreeNode* parent, ZVHTMLElement element)
{
    const HtmlTreeNode* child = parent != nullptr ? parent->firstChild : nullptr;
    while (child != nullptr && elementOf(*child) != element)
        child = child->nextSibling;
    return child;
}

CssDeclarationList& ensureDeclarations(HtmlTreeNode& node, HtmlFilterContext& context)
{
    auto& tag = static_cast<HtmlTagNodeData&>(*node.data);
    if (tag.declarations == nullptr)
        tag.declarations = &makeNodeDeclarations(context);
    return *tag.declarations;
}

/// A basefont of the head speaks for the body.
void mergeBaseFont(HtmlTreeNode& body, HtmlFilterContext& context)
{
    const HtmlTreeNode* baseFont
        = firstChildOf(firstChildOf(body.parent, ELEMENT_HEAD), ELEMENT_BASEFONT);
    const CssDeclarationList* declarations
        = baseFont != nullptr ? declarationsOf(*baseFont) : nullptr;
    if (declarations != nullptr && !declarations->isEmpty())
        ensureDeclarations(body, context).merge(*declarations, /*copy=*/true);
}

void takeTextColor(const CssDeclarationList& declarations, HtmlFilterContext& context)
{
    const auto* color = HtmlColorValue::from(declarations.findValue(PROPERTY_COLOR));
    if (color == nullptr)
        return;
    if (color->color != context.textColor || context.textColorMode != 0) {
        context.textColor = color->color;
        context.textColorMode = 0;
    }
}

void setPageColor(const CssDeclarationList& declarations, HtmlFilterContext& context)
{
    const auto* color = HtmlColorValue::from(declarations.findValue(PROPERTY_BACKGROUND_COLOR));
    if (color == nullptr)
        return;
    context.pageColor = color->color & kColorBits;
    if (context.backgroundOption != 0) {
        context.pageColor = kWhite;
        context.backgroundSeen = 1;
    }
    SOSetProperty(PROPERTY_KIND_PAGE_COLOR, context.pageColor, 0, 0, context);
}

void setPageBorders(const CssDeclarationList& declarations, HtmlFilterContext& context)
{
    const BorderSides sides = borderSidesOf(declarations);
    if (!sides.isGiven)
        return;
    const PageBorderRecord record{sides.top, sides.left, sides.bottom, sides.right};
    SOSetPageBorders(record, context);
}

} // namespace

void buildFrame(HTML_SOINFO& frame, const HTML_SOINFO& parent, CssDeclarationList* declarations,
    HtmlFilterContext&)
{
    frame.fontSizePx = parent.fontSizePx;
    if (declarations == nullptr || declarations->isEmpty())
        return;
    frame.fontSizePx = fontSizeOf(*declarations, parent.fontSizePx);
    const std::int32_t left = wholePixelsOf(*declarations, PROPERTY_MARGIN_LEFT, frame.fontSizePx);
    addTo(frame.firstIndentPx, left);
    addTo(frame.leftIndentPx, left);
    addTo(
        frame.rightIndentPx, wholePixelsOf(*declarations, PROPERTY_MARGIN_RIGHT, frame.fontSizePx));
    addTo(
        frame.firstIndentPx, wholePixelsOf(*declarations, PROPERTY_TEXT_INDENT, frame.fontSizePx));
    if (const auto* keyword
        = HtmlCssKeywordValue::from(declarations->findValue(PROPERTY_TEXT_ALIGN)))
        frame.alignment = frameAlignment(keyword->keyword);
}

bool deliverBlockDeclaration(const CssDeclaration& declaration, HTML_SOINFO& frame,
    std::uint32_t element, HtmlFilterContext& context)
{
    const HtmlValue* value = declaration.getValue();
    switch (declaration.getProperty()) {
    case PROPERTY_DIRECTION:
        deliverDirection(value, context);
        return true;

    case PROPERTY_MARGIN_LEFT:
        if (kIndentingElements.contains(element))
            deliverLeftMargin(value, frame, context);
        return true;

    case PROPERTY_MARGIN_RIGHT:
        if (kIndentingElements.contains(element))
            deliverRightMargin(value, frame, context);
        return true;

    case PROPERTY_TEXT_INDENT:
        deliverTextIndent(value, frame, context);
        return true;

    case PROPERTY_TEXT_ALIGN:
        if (!kTableParts.contains(element))
            deliverAlignment(value, context);
        return true;

    case PROPERTY_BACKGROUND_COLOR:
        if (!shadesParagraphs(element))
            return false;
        deliverShading(value, context);
        return true;

    case PROPERTY_LINE_HEIGHT:
        deliverLineHeight(value, context);
        return true;

    default:
        return false;
    }
}

void deliverParagraphBorder(CssDeclarationList& declarations, std::uint32_t element,
    std::uint32_t on, HtmlFilterContext& context)
{
    if (!kBorderedElements.contains(element))
        return;
    const BorderSides sides = borderSidesOf(declarations);
    if (!sides.isGiven)
        return;
    ParagraphBorderRecord record{};
    record.top = sides.top;
    record.left = sides.left;
    record.bottom = sides.bottom;
    record.right = sides.right;
    SOSetParagraphBorder(on, record, context);
}

void enterHtml(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    context.walkState |= WALK_IN_HTML;
    SOSetProperty(PROPERTY_KIND_TAB_DISTANCE, kTabDistance, 0, 0, context);
    setPageMargins(declarationsOf(node), context);
    defineFonts(context);
    if (context.parseError != 0)
        SOSetExtraProperty(EXTRA_PROPERTY_NOTICE, NOTICE_PARSE_ERROR, 0, 0, context);
    applyStyle(declarationsOf(node), frame, ELEMENT_HTML, context);
    deliverVersion(node, context);
}

void enterBody(HtmlTreeNode& node, HTML_SOINFO&, HtmlFilterContext& context)
{
    mergeBaseFont(node, context);
    CssDeclarationList* declarations = declarationsOf(node);
    if (declarations != nullptr)
        deliverStyle(*declarations, ELEMENT_BODY, /*restoring=*/0, context);
    if (const auto* color = HtmlColorValue::from(attributeOf(node, ATTRIBUTE_LINK)))
        context.linkColor = color->color;
    context.walkState = (context.walkState & ~std::uint32_t{WALK_IN_HEAD}) | WALK_IN_BODY;
    if (declarations == nullptr)
        return;
    takeTextColor(*declarations, context);
    setPageColor(*declarations, context);
    setPageBorders(*declarations, context);
}

void enterHeading(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    endFilledParagraph(context);
    deliverTopMargin(declarationsOf(node), newestFontSize(context), context);
    applyStyle(declarationsOf(node), frame, elementOf(node), context);
}

void leaveHeading(HtmlTreeNode& node, HtmlFilterContext& context)
{
    deliverBottomMargin(declarationsOf(node), newestFontSize(context), context);
    endBlock(context);
}

void enterParagraph(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    endFilledParagraph(context);
    if (hasBlockMargin(node, PROPERTY_MARGIN_TOP, &HtmlTreeNode::prevSibling, context))
        deliverTopMargin(declarationsOf(node), newestFontSize(context), context);
    applyStyle(declarationsOf(node), frame, ELEMENT_P, context);
}

void leaveParagraph(HtmlTreeNode& node, HtmlFilterContext& context)
{
    if (hasBlockMargin(node, PROPERTY_MARGIN_BOTTOM, &HtmlTreeNode::nextSibling, context))
        deliverBottomMargin(declarationsOf(node), newestFontSize(context), context);
    endBlock(context);
}
