#include "tree/element_attributes.h"

#include "filter/filter_internals.h"
#include "scanner/markup_scanner.h"
#include "style/css_declaration_list.h"
#include "support/css_names.h"
#include "support/html_names.h"
#include "tree/enum_from_string.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <initializer_list>

namespace {

/// The buffer for attribute values, made when the document first needs it; null without memory.
char16_t* AttributeBuffer(HtmlFilterContext& context)
{
    auto& buffer = context.internals->attributeBuffer;
    if (buffer == nullptr) {
        buffer.reset(static_cast<char16_t*>(
            HeapAlloc(GetProcessHeap(), 0, kAttributeValueCapacity * sizeof(char16_t))));
        if (buffer == nullptr)
            context.statusFlags |= STATUS_OUT_OF_MEMORY;
    }
    return buffer.get();
}

/// The value of an attribute of the tag just scanned, good until the next one is read; null for an
/// attribute without a value and when something has failed.
const char16_t* ReadAttribute(ZVHTMLAttribute id, HtmlFilterContext& context)
{
    if (context.tagAttributeCount == 0)
        return nullptr;
    char16_t* const buffer = AttributeBuffer(context);
    if (buffer == nullptr
        || GetRawAttributeValue(id, buffer, kAttributeValueCapacity, context, nullptr) == 0)
        return nullptr;
    return buffer;
}

/// Keeps attributes that are texts, empty ones included, in the order given.
void StoreStrings(HtmlTagNodeData& payload, std::initializer_list<ZVHTMLAttribute> ids,
    HtmlFilterContext& context)
{
    for (const ZVHTMLAttribute id : ids) {
        const char16_t* const text = ReadAttribute(id, context);
        if (text == nullptr)
            continue;
        if (HtmlValue* const value = context.valueCache->stringValue(text))
            payload.setAttribute(id, value);
    }
}

/// Adds a declaration, for which a payload without a list has no use.
void Declare(HtmlTagNodeData& payload, ZVCSSProperty property, HtmlValue* value)
{
    if (payload.declarations != nullptr)
        payload.declarations->set(property, value, /*important=*/false, /*edgeMargin=*/false);
}

void ApplyDirection(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(ATTRIBUTE_DIR, context);
    const std::uint32_t direction = ETextDirectionFromString(text);
    if (direction == TEXT_DIRECTION_NONE)
        return;
    HtmlValue* const value = context.valueCache->enumValue(direction);
    if (value == nullptr)
        return;
    payload.setAttribute(ATTRIBUTE_DIR, value);
    const ZVCSSValue keyword = direction == TEXT_DIRECTION_RTL ? VALUE_RTL : VALUE_LTR;
    Declare(payload, PROPERTY_DIRECTION, context.valueCache->keywordValue(keyword));
}

/// The attributes that every element keeps.
void ApplyCommonAttributes(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    StoreStrings(payload, {ATTRIBUTE_ID, ATTRIBUTE_STYLE, ATTRIBUTE_CLASS}, context);
    ApplyDirection(payload, context);
    StoreStrings(payload, {ATTRIBUTE_TITLE}, context);
}

/// The attributes that an element of its kind keeps.
void ApplyOwnAttributes(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    switch (payload.elementId) {
    case ELEMENT_BASE:
        StoreStrings(payload, {ATTRIBUTE_HREF}, context);
        return;

    case ELEMENT_HTML:
        StoreStrings(payload, {ATTRIBUTE_VERSION}, context);
        return;

    case ELEMENT_LINK:
        StoreStrings(payload, {ATTRIBUTE_HREF, ATTRIBUTE_NAME, ATTRIBUTE_REL}, context);
        return;

    case ELEMENT_META:
        StoreStrings(payload,
            {ATTRIBUTE_CHARSET, ATTRIBUTE_CONTENT, ATTRIBUTE_HTTP_EQUIV, ATTRIBUTE_NAME,
                ATTRIBUTE_SCHEME},
            context);
        return;

    default:
        // STAND-IN: other elements keep the common attributes only.
        return;
    }
}

} // namespace

void ApplyElementAttributes(HtmlGenericNodeData* payload, HtmlFilterContext& context)
{
    auto& element = static_cast<HtmlTagNodeData&>(*payload);
    // Most tags have none. An element's own rules may declare something all the same.
    if (context.tagAttributeCount != 0)
        ApplyCommonAttributes(element, context);
    ApplyOwnAttributes(element, context);
}

int GetRawAttributeValue(std::uint32_t attributeId, char16_t* buffer, std::uint32_t limit,
    HtmlFilterContext& context, void* /*reserved*/)
{
    // The scanner reads nothing once a bit is set, which is no empty value.
    if (context.statusFlags != 0) {
        if (limit != 0)
            buffer[0] = 0;
        return 0;
    }
    return readAttributeValue(attributeId, buffer, limit, context) != 0 ? 1 : 0;
}
