#include "output/lists.h"

#include "output/host_calls.h"
#include "output/list_markers.h"
#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/text.h"
#include "output/tree_walk.h"

#include <algorithm>

namespace {

/// Bits of ListLevel::flags.
enum ListLevelFlag : std::uint16_t {
    LIST_KIND_UL = 1,
    LIST_KIND_OL = 2,
    LIST_KIND_MENU = 4,
    LIST_KIND_DIR = 8,
    LIST_KIND_DL = 0x10,
    LIST_KIND_MASK = 0x1F,
    LIST_FIRST_ITEM = 0x1000,
    LIST_COMPACT = 0x4000,
};

constexpr std::int32_t kLevelCount = kListLevelCount;
constexpr char16_t kBlank = 32;

/// The record of the current level; null outside lists and for a level that is counted only.
ListLevel* currentLevel(HtmlFilterContext& context)
{
    if (context.listDepth < 0 || context.listDepth >= kLevelCount)
        return nullptr;
    return &context.listLevels[context.listDepth];
}

std::uint16_t kindOf(const ListLevel& level) { return level.flags & LIST_KIND_MASK; }

void setKind(ListLevel& level, ListLevelFlag kind)
{
    level.flags = static_cast<std::uint16_t>((level.flags & ~LIST_KIND_MASK) | kind);
}

void clearFlag(ListLevel& level, ListLevelFlag flag)
{
    level.flags = static_cast<std::uint16_t>(level.flags & ~flag);
}

/// Nesting beyond what the word holds comes out as being outside lists.
void changeDepth(std::int32_t by, HtmlFilterContext& context)
{
    context.listDepth = static_cast<std::int16_t>(context.listDepth + by);
}

/// What levels have when their list says nothing: a disc, a circle, then squares.
void setLevelStyles(std::int32_t first, HtmlFilterContext& context)
{
    std::uint32_t style = MARKER_DISC;
    for (std::int32_t i = first; i < kLevelCount; ++i) {
        context.listLevels[i].style = style;
        style = std::min<std::uint32_t>(style + 1, MARKER_SQUARE);
    }
}

// QUIRK(Lists.StyleOfALevelStaysForTheNextListOfIt): only the outermost list and one in a dl begin
// anew, so an inner ul behind an inner ol counts on.
void setStylesBelow(HtmlFilterContext& context)
{
    const ListLevel* const outer = currentLevel(context);
    if (context.listDepth < 0)
        setLevelStyles(0, context);
    else if (outer != nullptr && kindOf(*outer) == LIST_KIND_DL)
        setLevelStyles(context.listDepth + 1, context);
}

/// The style that an element's own list-style-type gives; absent when it has none, unlisted for a
/// keyword that stands for no marker style.
std::uint32_t ownMarkerStyle(const HtmlTreeNode& node, std::uint32_t absent, std::uint32_t unlisted)
{
    const CssDeclarationList* declarations = declarationsOf(node);
    const HtmlValue* value
        = declarations == nullptr ? nullptr : declarations->findValue(PROPERTY_LIST_STYLE_TYPE);
    if (value == nullptr)
        return absent;
    const HtmlCssKeywordValue* keyword = HtmlCssKeywordValue::from(value);
    return keyword == nullptr ? unlisted : markerStyleOf(keyword->keyword, unlisted);
}

/// ol and ul.
void setCompact(const HtmlTreeNode& node, ListLevel& level)
{
    clearFlag(level, LIST_FIRST_ITEM);
    clearFlag(level, LIST_COMPACT);
    if (attributeOf(node, ATTRIBUTE_COMPACT) != nullptr)
        level.flags |= LIST_COMPACT;
}

/// The number in front of the first item's.
std::uint16_t numberBeforeFirst(const HtmlTreeNode& list)
{
    const HtmlNumberValue* start = HtmlNumberValue::from(attributeOf(list, ATTRIBUTE_START));
    const std::int32_t number = start == nullptr ? 0 : truncateToInt32(start->number);
    return static_cast<std::uint16_t>(std::max(number, 1) - 1);
}

void beginLevel(const HtmlTreeNode& node, ListLevel& level)
{
    level.item = 0;
    switch (elementOf(node)) {
    case ELEMENT_DIR:
        setKind(level, LIST_KIND_DIR);
        level.style = MARKER_DISC;
        return;
    case ELEMENT_MENU:
        setKind(level, LIST_KIND_MENU);
        level.style = MARKER_NONE;
        return;
    case ELEMENT_UL:
        setKind(level, LIST_KIND_UL);
        setCompact(node, level);
        level.style = ownMarkerStyle(node, level.style, MARKER_DISC);
        return;
    default:
        setKind(level, LIST_KIND_OL);
        setCompact(node, level);
        level.skip = 0;
        level.item = numberBeforeFirst(node);
        level.style = ownMarkerStyle(node, MARKER_DECIMAL, MARKER_DECIMAL);
        return;
    }
}

/// Whether the innermost ol or ul is an ol. Each open list has its level, so the levels tell
/// without a look at the tree. Not to be asked on a level that is counted only.
bool isOrdered(const HtmlFilterContext& context)
{
    for (std::int32_t i = context.listDepth; i >= 0; --i) {
        const std::uint16_t kind = kindOf(context.listLevels[i]);
        if (kind == LIST_KIND_OL || kind == LIST_KIND_UL)
            return kind == LIST_KIND_OL;
    }
    return false;
}

void countItem(const HtmlTreeNode& item, bool ordered, ListLevel& level)
{
    ++level.item;
    if (ordered) {
        level.item = static_cast<std::uint16_t>(level.item + level.skip);
        level.skip = 0;
        level.savedFlags = level.flags;
        const HtmlNumberValue* value = HtmlNumberValue::from(attributeOf(item, ATTRIBUTE_VALUE));
        const std::int32_t number = value == nullptr ? 0 : truncateToInt32(value->number);
        if (number != 0)
            level.item = static_cast<std::uint16_t>(number);
    }
    clearFlag(level, LIST_FIRST_ITEM);
}

/// Behind the marker the paragraph begins as if it were new: white space is trimmed, and an item
/// without text gives no line.
void beginItemText(HtmlFilterContext& context)
{
    context.lastChar = 0;
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
    context.paragraphFlags |= PARAGRAPH_MARKER;
}

void deliverItemMarker(const HtmlTreeNode& item, HtmlFilterContext& context)
{
    ListLevel* const level = currentLevel(context);
    if (level == nullptr) {
        context.paragraphFlags |= PARAGRAPH_HAS_CONTENT;
        SOEmitText(&kBullet, 1, CHARSET_ID_UTF16, context);
        beginItemText(context);
        return;
    }
    if (kindOf(*level) == LIST_KIND_DL)
        return;
    const bool ordered = isOrdered(context);
    const std::uint32_t unlisted = ordered ? MARKER_DECIMAL : MARKER_DISC;
    const std::uint32_t style = ownMarkerStyle(item, level->style, unlisted);
    countItem(item, ordered, *level);
    if (style != MARKER_NONE)
        deliverMarker(style, level->item, context);
    beginItemText(context);
}

void deliverTab(HtmlFilterContext& context)
{
    context.lastChar = kBlank;
    context.paragraphFlags |= PARAGRAPH_HAS_CONTENT;
    SOEmitSpecial(SPECIAL_TAB, context);
}

} // namespace

void enterList(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (isParagraphOpen(context)) {
        if (context.lastChar != 0)
            endParagraph(context);
        if (context.listDepth < 0)
            endParagraph(context);
    }
    applyStyle(declarationsOf(node), frame, elementOf(node), context);
    setStylesBelow(context);
    changeDepth(1, context);
    if (ListLevel* const level = currentLevel(context))
        beginLevel(node, *level);
    context.paragraphFlags |= PARAGRAPH_MARKER;
}

bool leaveList(HtmlTreeNode& node, HtmlFilterContext& context)
{
    ListLevel* const level = currentLevel(context);
    if (elementOf(node) == ELEMENT_OL && level != nullptr)
        level->lastItem = level->item;
    if (context.lastChar != 0)
        endParagraph(context);
    const bool isOutermost = context.listDepth == 0;
    if (context.listDepth >= 0)
        changeDepth(-1, context);
    // QUIRK(Lists.DefinitionListKeepsCompactOfTheListBefore): a dl leaves the flag as it finds it.
    return isOutermost && (context.listLevels[0].flags & LIST_COMPACT) == 0;
}

bool leaveMenuList(HtmlTreeNode&, HtmlFilterContext& context)
{
    const bool isOpen = isParagraphOpen(context);
    const bool hadText = context.lastChar != 0;
    if (isOpen)
        endParagraph(context);
    if (context.listDepth >= 0)
        changeDepth(-1, context);
    return isOpen && hadText;
}

void enterListItem(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    applyStyle(declarationsOf(node), frame, ELEMENT_LI, context);
    if (context.listDepth >= 0)
        deliverItemMarker(node, context);
}

void enterDefinitionList(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (isParagraphOpen(context)) {
        endParagraph(context);
        // QUIRK(Lists.DefinitionListIsSetOffOnlyInAnOutermostList): not outside lists.
        if (context.listDepth == 0 && attributeOf(node, ATTRIBUTE_COMPACT) == nullptr)
            endParagraph(context);
    }
    applyStyle(declarationsOf(node), frame, ELEMENT_DL, context);
    changeDepth(1, context);
    if (ListLevel* const level = currentLevel(context))
        setKind(*level, LIST_KIND_DL);
}

void enterTerm(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (context.lastChar != 0)
        endParagraph(context);
    applyStyle(declarationsOf(node), frame, ELEMENT_DT, context);
    if (context.listDepth > 0)
        context.pendingTab = 1;
    if (ListLevel* const level = currentLevel(context))
        ++level->item;
    else if (context.listDepth >= 0)
        deliverChar(kBullet, context);
}

void enterDefinition(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if (context.pendingTab != 0) {
        context.pendingTab = 0;
        deliverTab(context);
    }
    if (ListLevel* const level = currentLevel(context))
        ++level->item;
    else if (context.listDepth >= 0)
        deliverTab(context);
    applyStyle(declarationsOf(node), frame, ELEMENT_DD, context);
}
