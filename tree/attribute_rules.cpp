#include "tree/attribute_rules.h"

#include "filter/filter_internals.h"
#include "style/css_declaration_list.h"
#include "style/style_sheet.h"
#include "support/process_heap.h"
#include "tree/attribute_numbers.h"
#include "tree/element_attributes.h"
#include "tree/enum_from_string.h"
#include "tree/html_tree.h"
#include "tree/html_value.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

#include <optional>

namespace {

/// The number of an attribute of the tag just scanned; nothing when it has none.
std::optional<std::int32_t> ReadNumber(ZVHTMLAttribute id, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(id, context);
    if (text == nullptr)
        return std::nullopt;
    return ParseAttributeNumber(text, /*flags=*/0, context);
}

HtmlValue* PixelValue(std::int32_t pixels, HtmlFilterContext& context)
{
    return context.valueCache->lengthValue(static_cast<float>(pixels), UNITS_PIXELS);
}

ZVCSSValue TextAlignOf(std::uint32_t alignment)
{
    switch (alignment) {
    case HORIZ_ALIGN_CENTER:
        return VALUE_CENTER;
    case HORIZ_ALIGN_JUSTIFY:
        return VALUE_JUSTIFY;
    case HORIZ_ALIGN_LEFT:
        return VALUE_LEFT;
    case HORIZ_ALIGN_RIGHT:
        return VALUE_RIGHT;
    }
    return VALUE_UNKNOWN;
}

ZVCSSValue VerticalAlignOf(std::uint32_t alignment)
{
    switch (alignment) {
    case VERT_ALIGN_BASELINE:
        return VALUE_BASELINE;
    case VERT_ALIGN_BOTTOM:
        return VALUE_BOTTOM;
    case VERT_ALIGN_MIDDLE:
        return VALUE_MIDDLE;
    case VERT_ALIGN_TOP:
        return VALUE_TOP;
    }
    return VALUE_UNKNOWN;
}

constexpr AttributeRule kWidthRule = {ATTRIBUTE_WIDTH, KeepMeasure, PROPERTY_WIDTH};
constexpr AttributeRule kHeightRule = {ATTRIBUTE_HEIGHT, KeepMeasure, PROPERTY_HEIGHT};

} // namespace

void ApplyRules(HtmlTagNodeData& payload, std::span<const AttributeRule> rules,
    const AttributeSet& present, HtmlFilterContext& context)
{
    for (const AttributeRule& rule : rules) {
        if (present.contains(rule.id))
            rule.apply(payload, rule, context);
    }
}

const char16_t* ReadAttribute(ZVHTMLAttribute id, HtmlFilterContext& context)
{
    char16_t* const buffer = AttributeBuffer(context);
    if (buffer == nullptr
        || GetRawAttributeValue(id, buffer, kAttributeValueCapacity, context, nullptr) == 0)
        return nullptr;
    return buffer;
}

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

CssDeclarationList* OwnDeclarations(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    if (payload.declarations != nullptr)
        return payload.declarations;
    // A new element is on top of the stack by now; a temporary payload never is.
    if (context.currentNode == nullptr || context.currentNode->data != &payload)
        return nullptr;
    const TreeState* const state = CurrentTreeState(context);
    if (state == nullptr || state->styleContext == nullptr)
        return nullptr;
    return EnsureDeclarations(payload, *state->styleContext, context);
}

CssDeclarationList* EnsureDeclarations(
    HtmlTagNodeData& payload, StyleSheet& sheet, HtmlFilterContext& context)
{
    if (payload.declarations != nullptr)
        return payload.declarations;
    CssDeclarationList* const list = zorvan::newObject<CssDeclarationList>(context.valueCache);
    if (list == nullptr) {
        context.statusFlags |= STATUS_OUT_OF_MEMORY;
        return nullptr;
    }
    sheet.keepNodeDeclarations(list);
    payload.declarations = list;
    return list;
}

void Declare(
    HtmlTagNodeData& payload, ZVCSSProperty property, HtmlValue* value, HtmlFilterContext& context)
{
    if (value == nullptr)
        return;
    if (CssDeclarationList* const list = OwnDeclarations(payload, context))
        list->set(property, value, /*important=*/false, /*edgeMargin=*/false);
}

void KeepValue(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlValue* value,
    HtmlFilterContext& context)
{
    if (value == nullptr)
        return;
    payload.setAttribute(rule.id, value);
    for (const ZVCSSProperty property : {rule.property, rule.secondProperty}) {
        if (property != PROPERTY_NONE)
            Declare(payload, property, value, context);
    }
}

void KeepEnum(HtmlTagNodeData& payload, const AttributeRule& rule, std::uint32_t enumerator,
    ZVCSSValue keyword, HtmlFilterContext& context)
{
    if (enumerator == 0)
        return;
    HtmlValue* const value = context.valueCache->enumValue(enumerator);
    if (value == nullptr)
        return;
    payload.setAttribute(rule.id, value);
    if (rule.property != PROPERTY_NONE)
        Declare(payload, rule.property, context.valueCache->keywordValue(keyword), context);
}

void KeepText(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    if (const char16_t* const text = ReadAttribute(rule.id, context))
        KeepValue(payload, rule, context.valueCache->stringValue(text), context);
}

void KeepNumber(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    if (const auto number = ReadNumber(rule.id, context))
        KeepValue(payload, rule, context.valueCache->numberValue(*number), context);
}

void KeepMark(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    if (ReadAttribute(rule.id, context) != nullptr)
        KeepValue(payload, rule, context.valueCache->numberValue(1), context);
}

void KeepLength(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    if (const auto number = ReadNumber(rule.id, context))
        KeepValue(payload, rule, PixelValue(*number, context), context);
}

void KeepMeasure(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const auto number = ReadNumber(rule.id, context);
    if (!number)
        return;
    HtmlValue* const pixels = PixelValue(*number, context);
    if (pixels == nullptr)
        return;
    // QUIRK(AttributeRules.PercentagesAreKeptAsNegativePixels): the output tells them by the sign.
    payload.setAttribute(rule.id, pixels);
    Declare(payload, rule.property,
        *number >= 0 ? pixels : context.valueCache->percentValue(-static_cast<float>(*number)),
        context);
}

void KeepColor(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    std::uint32_t color = 0;
    if (text != nullptr && ParseColorAttribute(text, /*flags=*/0, color, context) != 0)
        KeepValue(payload, rule, context.valueCache->colorValue(color), context);
}

void KeepHorizAlign(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const std::uint32_t alignment = EHorizAlignFromString(ReadAttribute(rule.id, context));
    KeepEnum(payload, rule, alignment, TextAlignOf(alignment), context);
}

void KeepVertAlign(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const std::uint32_t alignment = EVertAlignFromString(ReadAttribute(rule.id, context));
    KeepEnum(payload, rule, alignment, VerticalAlignOf(alignment), context);
}

void SetWidthAttribute(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    KeepMeasure(payload, kWidthRule, context);
}

void SetHeightAttribute(HtmlTagNodeData& payload, HtmlFilterContext& context)
{
    KeepMeasure(payload, kHeightRule, context);
}

void KeepWidth(HtmlTagNodeData& payload, const AttributeRule& /*rule*/, HtmlFilterContext& context)
{
    SetWidthAttribute(payload, context);
}

void KeepHeight(HtmlTagNodeData& payload, const AttributeRule& /*rule*/, HtmlFilterContext& context)
{
    SetHeightAttribute(payload, context);
}
