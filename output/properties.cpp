#include "output/properties.h"

#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/style_delivery.h"
#include "output/text.h"
#include "output/tree_walk.h"
#include "support/abstract_string.h"

#include <algorithm>

namespace {

/// Names of meta elements that have a field of their own, in the order of their look-up.
struct MetaField {
    const char16_t* name;
    std::uint32_t field;
};
constexpr MetaField kMetaFields[] = {
    {u"author", FIELD_AUTHOR},
    {u"description", FIELD_DESCRIPTION},
    {u"keywords", FIELD_KEYWORDS},
    {u"subject", FIELD_SUBJECT},
    {u"generator", FIELD_GENERATOR},
};

bool equalsIgnoringCase(const HtmlWStringValue& value, const char16_t* text)
{
    return zorvan::AbstractString<char16_t>(value.text, static_cast<std::int32_t>(value.length))
        .equalsIgnoreCase(text);
}

std::uint32_t fieldOfName(const HtmlWStringValue& name)
{
    for (const MetaField& row : kMetaFields) {
        if (equalsIgnoringCase(name, row.name))
            return row.field;
    }
    return FIELD_OTHER;
}

/// The state of the paragraph, which a property in its middle leaves as it was.
struct ParagraphState {
    explicit ParagraphState(const HtmlFilterContext& context)
        : lastChar(context.lastChar)
        , flags(context.paragraphFlags)
    {
    }

    void restore(HtmlFilterContext& context) const
    {
        context.lastChar = lastChar;
        context.paragraphFlags = flags;
    }

    std::uint16_t lastChar;
    std::uint16_t flags;
};

void clearOpenParagraph(HtmlFilterContext& context)
{
    context.paragraphFlags &= static_cast<std::uint16_t>(~PARAGRAPH_OPEN);
}

/// Opens a field's stretch and answers its value.
std::uint32_t beginField(std::uint32_t field, HtmlFilterContext& context)
{
    const std::uint32_t value = ++context.fieldCounter;
    SOBeginTagged(TAG_FIELD, value, &field, context);
    return value;
}

} // namespace

void enterTitle(HtmlTreeNode& node, HTML_SOINFO& frame, HtmlFilterContext& context)
{
    applyStyle(declarationsOf(node), frame, ELEMENT_TITLE, context);
    context.walkState |= WALK_IN_TITLE;
    clearOpenParagraph(context);
    context.savedLastChar = context.lastChar;
    context.lastChar = 0;
    frame.handle = context.fieldCounter + 1;
    beginField(FIELD_TITLE, context);
}

void leaveTitle(const HTML_SOINFO& frame, HtmlFilterContext& context)
{
    if ((context.walkState & WALK_IN_TITLE) == 0)
        return;
    context.walkState &= ~std::uint32_t{WALK_IN_TITLE};
    clearOpenParagraph(context);
    context.lastChar = context.savedLastChar;
    SOEndTagged(TAG_FIELD, frame.handle, context);
}

void enterMeta(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlWStringValue* name = stringAttribute(node, ATTRIBUTE_NAME);
    const HtmlWStringValue* content = stringAttribute(node, ATTRIBUTE_CONTENT);
    if (name == nullptr || content == nullptr)
        return;
    const ParagraphState paragraph(context);
    const std::uint32_t field = fieldOfName(*name);
    const std::uint32_t value = beginField(field, context);
    if (field == FIELD_OTHER) {
        SOBeginTagged(TAG_FIELD_NAME, value, &field, context);
        deliverText(name->text, context);
        SOEndTagged(TAG_FIELD_NAME, value, context);
    }
    deliverText(content->text, context);
    paragraph.restore(context);
    SOEndTagged(TAG_FIELD, value, context);
}

void enterLink(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlWStringValue* relation = stringAttribute(node, ATTRIBUTE_REL);
    const HtmlWStringValue* target = stringAttribute(node, ATTRIBUTE_HREF);
    if (relation == nullptr || target == nullptr || !equalsIgnoringCase(*relation, u"made"))
        return;
    deliverRawProperty(FIELD_AUTHOR, target->text, target->length, context);
}

void deliverVersion(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    const HtmlWStringValue* version = stringAttribute(node, ATTRIBUTE_VERSION);
    if (version == nullptr)
        return;
    const ParagraphState paragraph(context);
    const std::uint32_t value = beginField(FIELD_VERSION, context);
    deliverText(version->text, context);
    paragraph.restore(context);
    SOEndTagged(TAG_FIELD, value, context);
}

void deliverRawProperty(
    std::uint32_t field, const char16_t* value, std::uint32_t length, HtmlFilterContext& context)
{
    const std::uint32_t stretch = beginField(field, context);
    const std::uint32_t count = std::min<std::uint32_t>(length, RESERVED_CHARS_CAPACITY);
    char16_t* buffer = nullptr;
    if (count != 0) {
        buffer = SOReserveChars(RESERVED_CHARS_CAPACITY, context);
        if (buffer == nullptr)
            SOAbandonFilter(ABANDON_NO_TREE_OR_BUFFER, context);
    }
    if (buffer != nullptr) {
        std::copy_n(value, count, buffer);
        SOCommitChars(static_cast<std::uint16_t>(count), context.sectionCharSetId, context);
    }
    SOEndTagged(TAG_FIELD, stretch, context);
}
