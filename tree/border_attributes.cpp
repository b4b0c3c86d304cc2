#include "tree/border_attributes.h"

#include "tree/attribute_numbers.h"
#include "tree/enum_from_string.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

namespace {

/// The properties of one side.
struct BorderSide {
    ZVCSSProperty color;
    ZVCSSProperty width;
    ZVCSSProperty style;
};

// In the order in which sides are declared.
constexpr BorderSide kSides[] = {
    {PROPERTY_BORDER_TOP_COLOR, PROPERTY_BORDER_TOP_WIDTH, PROPERTY_BORDER_TOP_STYLE},
    {PROPERTY_BORDER_BOTTOM_COLOR, PROPERTY_BORDER_BOTTOM_WIDTH, PROPERTY_BORDER_BOTTOM_STYLE},
    {PROPERTY_BORDER_LEFT_COLOR, PROPERTY_BORDER_LEFT_WIDTH, PROPERTY_BORDER_LEFT_STYLE},
    {PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_BORDER_RIGHT_WIDTH, PROPERTY_BORDER_RIGHT_STYLE},
};

// A side as a bit, by its place in kSides.
constexpr std::uint32_t SIDE_TOP = 1;
constexpr std::uint32_t SIDE_BOTTOM = 2;
constexpr std::uint32_t SIDE_LEFT = 4;
constexpr std::uint32_t SIDE_RIGHT = 8;
constexpr std::uint32_t SIDES_ALL = 15;

void DeclareSides(HtmlTagNodeData& payload, ZVCSSProperty BorderSide::*property, HtmlValue* value,
    HtmlFilterContext& context)
{
    for (const BorderSide& side : kSides)
        Declare(payload, side.*property, value, context);
}

HtmlValue* Solid(HtmlFilterContext& context)
{
    return context.valueCache->keywordValue(VALUE_SOLID);
}

HtmlValue* Black(HtmlFilterContext& context) { return context.valueCache->colorValue(0); }

HtmlValue* Pixels(std::int32_t number, HtmlFilterContext& context)
{
    return context.valueCache->lengthValue(static_cast<float>(number), UNITS_PIXELS);
}

/// All that the four sides have.
void DeclareBorders(
    HtmlTagNodeData& payload, HtmlValue* color, HtmlValue* width, HtmlFilterContext& context)
{
    DeclareSides(payload, &BorderSide::color, color, context);
    DeclareSides(payload, &BorderSide::width, width, context);
    DeclareSides(payload, &BorderSide::style, Solid(context), context);
}

std::uint32_t SidesOfFrame(std::uint32_t frame)
{
    switch (frame) {
    case TABLE_FRAME_ABOVE:
        return SIDE_TOP;
    case TABLE_FRAME_BELOW:
        return SIDE_BOTTOM;
    case TABLE_FRAME_HSIDES:
        return SIDE_TOP | SIDE_BOTTOM;
    case TABLE_FRAME_VSIDES:
        return SIDE_LEFT | SIDE_RIGHT;
    case TABLE_FRAME_LHS:
        return SIDE_LEFT;
    case TABLE_FRAME_RHS:
        return SIDE_RIGHT;
    case TABLE_FRAME_BORDER:
    case TABLE_FRAME_BOX:
        return SIDES_ALL;
    }
    return 0;
}

} // namespace

void KeepBorderColor(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    KeepColor(payload, rule, context);
    DeclareSides(payload, &BorderSide::color, payload.findAttribute(rule.id), context);
}

void KeepTableBorder(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    KeepLength(payload, rule, context);
    HtmlValue* const width = payload.findAttribute(rule.id);
    if (width == nullptr)
        return;
    DeclareSides(payload, &BorderSide::width, width, context);
    DeclareSides(payload, &BorderSide::style, Solid(context), context);
    if (payload.findAttribute(ATTRIBUTE_BORDERCOLOR) == nullptr)
        DeclareSides(payload, &BorderSide::color, Black(context), context);
}

void KeepTableFrame(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const std::uint32_t frame = ETableFrameFromString(ReadAttribute(rule.id, context));
    KeepEnum(payload, rule, frame, VALUE_UNKNOWN, context);
    const std::uint32_t sides = SidesOfFrame(frame);
    if (sides == 0)
        return;
    HtmlValue* width = payload.findAttribute(ATTRIBUTE_BORDER);
    if (width == nullptr)
        width = Pixels(1, context);
    std::uint32_t bit = SIDE_TOP;
    for (const BorderSide& side : kSides) {
        if ((sides & bit) != 0) {
            Declare(payload, side.width, width, context);
            Declare(payload, side.style, Solid(context), context);
            // QUIRK(BorderAttributes.FrameIsBlackWhateverTheBorderColor): the sides of a frame lose
            // the color that was given for all of them.
            Declare(payload, side.color, Black(context), context);
        }
        bit <<= 1;
    }
}

void KeepImageBorder(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    KeepLength(payload, rule, context);
    if (HtmlValue* const width = payload.findAttribute(rule.id))
        DeclareBorders(payload, Black(context), width, context);
}

void KeepFrameBorder(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    if (text == nullptr)
        return;
    const bool isDrawn
        = AttributeEquals(text, "yes", context) == 0 || AttributeEquals(text, "1", context) == 0;
    const std::int32_t number = isDrawn ? 1 : 0;
    KeepValue(payload, rule, context.valueCache->numberValue(number), context);
    if (payload.elementId != ELEMENT_IFRAME)
        return;
    HtmlValue* color = payload.findAttribute(ATTRIBUTE_BORDERCOLOR);
    if (color == nullptr)
        color = Black(context);
    DeclareBorders(payload, color, Pixels(number, context), context);
}

void KeepNoShade(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    const char16_t* const text = ReadAttribute(rule.id, context);
    if (text == nullptr)
        return;
    const std::int32_t number = ParseAttributeNumber(text, /*flags=*/0, context).value_or(0);
    KeepValue(payload, rule, context.valueCache->numberValue(number), context);
    DeclareSides(payload, &BorderSide::style, Solid(context), context);
}
