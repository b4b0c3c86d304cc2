#include "output/borders.h"

#include "output/units.h"
#include "style/css_declaration_list.h"
#include "support/css_names.h"
#include "tree/html_value.h"

namespace {

struct SideProperties {
    ZVCSSProperty color;
    ZVCSSProperty style;
    ZVCSSProperty width;
};

constexpr SideProperties kTop{
    PROPERTY_BORDER_TOP_COLOR, PROPERTY_BORDER_TOP_STYLE, PROPERTY_BORDER_TOP_WIDTH};
constexpr SideProperties kLeft{
    PROPERTY_BORDER_LEFT_COLOR, PROPERTY_BORDER_LEFT_STYLE, PROPERTY_BORDER_LEFT_WIDTH};
constexpr SideProperties kBottom{
    PROPERTY_BORDER_BOTTOM_COLOR, PROPERTY_BORDER_BOTTOM_STYLE, PROPERTY_BORDER_BOTTOM_WIDTH};
constexpr SideProperties kRight{
    PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_BORDER_RIGHT_STYLE, PROPERTY_BORDER_RIGHT_WIDTH};

/// Reads one side; isGiven becomes true when anything was declared for it.
BorderSide readSide(
    const CssDeclarationList& declarations, const SideProperties& properties, bool& isGiven)
{
    BorderSide side = kNoBorder;
    if (declarations.contains(properties.color)) {
        isGiven = true;
        if (const auto* color = HtmlColorValue::from(declarations.findValue(properties.color)))
            side.color = color->color & kColorBits;
    }
    if (declarations.contains(properties.style)) {
        isGiven = true;
        side.style = borderStyleOf(declarations.findValue(properties.style));
    }
    if (declarations.contains(properties.width)) {
        isGiven = true;
        if (const auto* width = HtmlLengthValue::from(declarations.findValue(properties.width)))
            side.width = twips(pixelsOf(*width));
    }
    return side;
}

} // namespace

BorderSides borderSidesOf(const CssDeclarationList& declarations)
{
    BorderSides sides{};
    sides.top = readSide(declarations, kTop, sides.hasTop);
    sides.left = readSide(declarations, kLeft, sides.hasLeft);
    sides.bottom = readSide(declarations, kBottom, sides.hasBottom);
    sides.right = readSide(declarations, kRight, sides.hasRight);
    sides.isGiven = sides.hasTop || sides.hasLeft || sides.hasBottom || sides.hasRight;
    return sides;
}

std::uint32_t borderStyleOf(const HtmlValue* value)
{
    const auto* keyword = HtmlCssKeywordValue::from(value);
    switch (keyword != nullptr ? keyword->keyword : VALUE_NONE) {
    case VALUE_SOLID:
    case VALUE_INSET:
    case VALUE_OUTSET:
    case VALUE_RIDGE:
        return BORDER_STYLE_SOLID;
    case VALUE_DOUBLE:
        return BORDER_STYLE_DOUBLE;
    case VALUE_GROOVE:
        return BORDER_STYLE_GROOVE;
    case VALUE_DOTTED:
        return BORDER_STYLE_DOTTED;
    case VALUE_DASHED:
        return BORDER_STYLE_DASHED;
    default:
        return BORDER_STYLE_NONE;
    }
}
