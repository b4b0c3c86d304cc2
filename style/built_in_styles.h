#pragma once

#include "style/table_value.h"
#include "support/css_names.h"

#include <cstdint>
#include <memory>
#include <span>

class CssDeclarationList;
class ValueCache;

/// A declaration that an element has without any style sheet.
struct BuiltInDeclaration {
    ZVCSSProperty property;
    TableValue value;
    bool edgeMargin = false; ///< the margin of a paragraph, which falls away at the edge of a cell
};

/// The built-in declarations of an element; empty when it has none, as for ids that are no element.
std::span<const BuiltInDeclaration> builtInStyleOf(std::uint32_t elementId);

/// Whether a length among them hangs on the font size around the element.
bool hasRelativeBuiltInStyle(std::uint32_t elementId);

/// A list of them; null when there are none. Throws std::bad_alloc.
std::unique_ptr<CssDeclarationList> makeBuiltInDeclarations(
    std::uint32_t elementId, ValueCache& values);
