#pragma once

#include "output/host_routines.h"
#include "support/css_names.h"

#include <cstdint>

class CssDeclarationList;
class HtmlValue;

/// A side of which nothing was given: no line.
constexpr BorderSide kNoBorder{15, 0, BORDER_STYLE_NONE, {0, 0}};

/// The four sides of a border as declarations give them.
struct BorderSides {
    BorderSide top;
    BorderSide left;
    BorderSide bottom;
    BorderSide right;
    bool isGiven; ///< anything was declared for any side
    bool hasTop; ///< anything was declared for this one
    bool hasLeft;
    bool hasBottom;
    bool hasRight;
};

/// Whether a property is one that borderSidesOf reads.
constexpr bool isBorderSide(ZVCSSProperty property)
{
    switch (property) {
    case PROPERTY_BORDER_BOTTOM_COLOR:
    case PROPERTY_BORDER_BOTTOM_STYLE:
    case PROPERTY_BORDER_BOTTOM_WIDTH:
    case PROPERTY_BORDER_LEFT_COLOR:
    case PROPERTY_BORDER_LEFT_STYLE:
    case PROPERTY_BORDER_LEFT_WIDTH:
    case PROPERTY_BORDER_RIGHT_COLOR:
    case PROPERTY_BORDER_RIGHT_STYLE:
    case PROPERTY_BORDER_RIGHT_WIDTH:
    case PROPERTY_BORDER_TOP_COLOR:
    case PROPERTY_BORDER_TOP_STYLE:
    case PROPERTY_BORDER_TOP_WIDTH:
        return true;
    default:
        return false;
    }
}

/// Reads the border-* declarations of a list. What is not given is 15 twips wide, black and has no
/// line.
BorderSides borderSidesOf(const CssDeclarationList& declarations);

/// The code of a border's style for the value of a border-*-style; null is as none.
std::uint32_t borderStyleOf(const HtmlValue* value);
