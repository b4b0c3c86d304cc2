#pragma once

#include "filter/html_filter_context.h"
#include "support/css_names.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class CssDeclaration;
class CssDeclarationList;
class HtmlValue;

/// Trees as text, for a developer's eyes and for tests. docs/tree-format.md tells the form.
namespace htmltree {

/// A text in quotes: U+0020 to U+007E stand as they are but for quote and backslash, all others as
/// \uXXXX.
std::string quotedText(std::u16string_view text);

/// A value of an attribute: a text in quotes, any other as its kind, a colon and what it is. Null
/// is "null".
std::string valueText(const HtmlValue* value);

/// The values of a declaration, parted by ", ", and ` !important`.
std::string valuesText(const CssDeclaration& declaration);

/// The name of a property.
std::string propertyText(ZVCSSProperty property);

/// `property: value; property: value` in the order of the list; empty for null and an empty list.
std::string declarationsText(const CssDeclarationList* declarations);

/// A node on a line of its own: a text in quotes, or an element with its attributes.
std::string nodeText(const HtmlTreeNode& node);

/// Whether the declarations of an element stand behind it.
enum class Declarations { LeftOut, Shown };

/// The deepest level that is shown by its indent. Deeper ones are told as a number, or else a
/// document of nothing but open tags would be the square of its length.
constexpr std::size_t kDeepestIndent = 200;

/// What is below a node, one line for each node, indented by two blanks for each level; behind
/// kDeepestIndent levels by "[level N] " and nothing else.
std::string outlineOf(const HtmlTreeNode& top, Declarations declarations = Declarations::LeftOut);

/// The same with notes below each element, each on a line of its own behind "-> ", a level deeper.
using Notes = std::function<std::vector<std::string>(const HtmlTreeNode& element)>;
std::string outlineOf(const HtmlTreeNode& top, const Notes& notes);

/// What is below a node, on one line: children stand in brackets, attributes are left out.
std::string shortOutlineOf(const HtmlTreeNode& top);

} // namespace htmltree
