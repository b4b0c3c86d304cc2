#pragma once

#include "output/host_routines.h"

#include <cstdint>

class CssDeclarationList;
class HtmlValue;

/// The four sides of a border as declarations give them.
struct BorderSides {
    BorderSide top;
    BorderSide left;
    BorderSide bottom;
    BorderSide right;
    bool isGiven; ///< anything was declared for any side
};

/// Reads the border-* declarations of a list. What is not given is 15 twips wide, black and has no
/// line.
BorderSides borderSidesOf(const CssDeclarationList& declarations);

/// The code of a border's style for the value of a border-*-style; null is as none.
std::uint32_t borderStyleOf(const HtmlValue* value);
