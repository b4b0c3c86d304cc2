#include "output/link_texts.h"

#include "output/character_style.h"
#include "output/host_calls.h"
#include "output/links.h"
#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/text.h"
#include "output/tree_walk.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kColorBits = 0xFF'FFFF;
constexpr std::uint32_t kColorMode = 0;
constexpr std::uint32_t kShownUnits = 255;

void beginLinkLook(HtmlFilterContext& context)
{
    if (areColorsOverridden(context))
        context.linkColor = 0;
    SOSetTextColor(kColorMode, context.linkColor & kColorBits, context);
    SOSetProperty(PROPERTY_KIND_CHARACTER, CHARACTER_UNDERLINE, 1, 0, context);
}

void endLinkLook(HtmlFilterContext& context)
{
    if (areColorsOverridden(context))
        context.textColor = 0;
    SOSetTextColor(context.textColorMode, context.textColor & kColorBits, context);
    SOSetProperty(PROPERTY_KIND_CHARACTER, CHARACTER_UNDERLINE, 0, 0, context);
}

/// A paragraph that is a link. text: zero-terminated; references in it are resolved once more, as
/// in all text.
void deliverLinkText(
    const HyperlinkRecord& record, const char16_t* text, HtmlFilterContext& context)
{
    const std::uint16_t value = ++context.linkCounter;
    SOBeginTagged(TAG_HYPERLINK, value, &record, context);
    beginLinkLook(context);
    if (isParagraphOpen(context))
        endParagraph(context);
    deliverText(text, context);
    endParagraph(context);
    endLinkLook(context);
    SOEndTagged(TAG_HYPERLINK, value, context);
}

/// Stores an address and answers the reference to it; an empty one has none.
std::uint32_t referToAddress(const HtmlWStringValue& address, HtmlFilterContext& context)
{
    const std::uint32_t handle = storeString(address.text, context);
    if (handle == SO_NO_STRING)
        return SO_NO_REFERENCE;
    return makeReference(REFERENCE_PART_TARGET, handle, context);
}

bool isLinkOpen(const HtmlFilterContext& context)
{
    return (context.walkState & WALK_IN_LINK) != 0;
}

} // namespace

void enterArea(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_AREA, context);
    const HtmlWStringValue* address = stringAttribute(node, ATTRIBUTE_HREF);
    if ((context.walkState & WALK_IN_MAP) == 0 || isLinkOpen(context) || address == nullptr)
        return;
    const HyperlinkRecord record{0, referToAddress(*address, context), SO_NO_STRING};
    deliverLinkText(record, address->text, context);
}

void enterFrame(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_FRAME, context);
    if (isLinkOpen(context))
        return;
    // QUIRK(LinkTexts.FrameNameIsATargetWithoutItsFlag): the name of the frame stands in the
    // record, and no flag tells that it is valid.
    HyperlinkRecord record{0, SO_NO_REFERENCE, SO_NO_STRING};
    if (const HtmlWStringValue* name = stringAttribute(node, ATTRIBUTE_NAME))
        record.targetString = storeString(name->text, context);
    // A page may have a frame without a source; it is told all the same, as a link without text.
    char16_t shown[kShownUnits + 1] = {};
    if (const HtmlWStringValue* source = stringAttribute(node, ATTRIBUTE_SRC)) {
        record.referenceId = referToAddress(*source, context);
        std::copy_n(source->text, std::min(source->length, kShownUnits), shown);
    }
    deliverLinkText(record, shown, context);
}
