#include "output/links.h"

#include "output/attachments.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/properties.h"
#include "output/style_delivery.h"
#include "output/tree_walk.h"

namespace {

/// The frames that a link can name, each by the letter behind the underscore.
struct TargetFrame {
    char16_t letter;
    std::uint32_t kind; ///< a LINK_FRAME_
};
constexpr TargetFrame kTargetFrames[] = {
    {u'b', LINK_FRAME_BLANK},
    {u'p', LINK_FRAME_PARENT},
    {u's', LINK_FRAME_SELF},
    {u't', LINK_FRAME_TOP},
};

// QUIRK(Links.SecondUnitOfTheTargetDecides): nothing else of the value is looked at, so "use" is
// the frame of the link itself, and "_Top" no frame at all.
std::uint32_t targetFrameFlags(const HtmlTreeNode& node)
{
    const HtmlWStringValue* target = stringAttribute(node, ATTRIBUTE_TARGET);
    if (target == nullptr || target->length < 2)
        return 0;
    for (const TargetFrame& row : kTargetFrames) {
        if (target->text[1] == row.letter)
            return LINK_TARGET_FRAME | row.kind;
    }
    return 0;
}

/// What a link points to. An address that begins with "#" and one that means an attachment go out
/// as names in this document, the former without the "#".
HyperlinkRecord makeHyperlink(
    const HtmlTreeNode& node, const HtmlWStringValue& address, HtmlFilterContext& context)
{
    const bool isAttachment = useLinkedAttachment(address, context) != nullptr;
    const bool isLocal = address.text[0] == u'#';
    const std::uint32_t handle = storeString(address.text + (isLocal ? 1 : 0), context);
    // The host is given the title, and nothing refers to it.
    if (const HtmlWStringValue* title = stringAttribute(node, ATTRIBUTE_TITLE))
        storeString(title->text, context);
    HyperlinkRecord record{targetFrameFlags(node), SO_NO_REFERENCE, SO_NO_STRING};
    if (isAttachment || isLocal) {
        record.targetString = handle;
        record.referenceId = makeReference(REFERENCE_PART_BOOKMARK, handle, context);
    } else if (handle != SO_NO_STRING) {
        record.referenceId = makeReference(REFERENCE_PART_TARGET, handle, context);
    }
    if (record.targetString != SO_NO_STRING)
        record.flags |= LINK_TARGET_STRING;
    return record;
}

void beginHyperlink(const HtmlTreeNode& node, const HtmlWStringValue& address, HTML_SOINFO& frame,
    HtmlFilterContext& context)
{
    const HyperlinkRecord record = makeHyperlink(node, address, context);
    context.walkState |= WALK_IN_LINK;
    frame.handle = ++context.linkCounter;
    SOBeginTagged(TAG_HYPERLINK, frame.handle, &record, context);
}

/// Opens the stretch of a new bookmark and answers its value.
std::uint32_t beginBookmark(const HtmlWStringValue& name, HtmlFilterContext& context)
{
    const std::uint16_t value = ++context.bookmarkCounter;
    const BookmarkRecord record{0, storeString(name.text, context)};
    makeReference(REFERENCE_PART_BOOKMARK, record.nameString, context);
    SOBeginTagged(TAG_BOOKMARK, value, &record, context);
    return value;
}

} // namespace

std::uint32_t makeReference(std::uint32_t part, std::uint32_t string, HtmlFilterContext& context)
{
    const std::uint32_t reference = SOBeginReference(context);
    SOAddReferencePart(part, string, 0, context);
    SOEndReference(context);
    return reference;
}

void deliverIdBookmark(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlWStringValue* id = stringAttribute(node, ATTRIBUTE_ID);
    if (id == nullptr)
        return;
    const std::uint32_t value = beginBookmark(*id, context);
    SOEndTagged(TAG_BOOKMARK, value, context);
}

void enterAnchor(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_A, context);
    if (const HtmlWStringValue* address = stringAttribute(node, ATTRIBUTE_HREF))
        beginHyperlink(node, *address, frame, context);
    const HtmlWStringValue* name = stringAttribute(node, ATTRIBUTE_NAME);
    if (name == nullptr || (context.walkState & WALK_IN_BOOKMARK) != 0)
        return;
    context.walkState |= WALK_IN_BOOKMARK;
    frame.bookmark = beginBookmark(*name, context);
}

// QUIRK(Links.NestedAnchorEndsWhatItFinds): what is open is told by two bits, not by the frame: an
// anchor inside another one ends the stretches of the outer one, by the values that its frame got
// from the frame around it, and a link that has been opened over another leaves that one open.
void leaveAnchor(const HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if ((context.walkState & WALK_IN_BOOKMARK) != 0) {
        context.walkState &= ~std::uint32_t{WALK_IN_BOOKMARK};
        SOEndTagged(TAG_BOOKMARK, frame.bookmark, context);
    }
    if ((context.walkState & WALK_IN_LINK) != 0) {
        context.walkState &= ~std::uint32_t{WALK_IN_LINK};
        SOEndTagged(TAG_HYPERLINK, frame.handle, context);
    }
}

void enterBase(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_BASE, context);
    const HtmlWStringValue* address = stringAttribute(node, ATTRIBUTE_HREF);
    if (address != nullptr)
        deliverRawProperty(FIELD_BASE, address->text, address->length, context);
}
