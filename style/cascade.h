#pragma once

#include "containers/array_list.h"
#include "filter/html_filter_context.h"
#include "support/css_names.h"

#include <cstdint>

class CssDeclaration;
class Selector;
class StyleSheet;

/// State of style at an open element of the tree under construction. Lengths in pixels.
struct BuildFrame {
    std::uint32_t fontSize; ///< the base for em and ex of the children
    std::int32_t firstLineIndent;
    std::int32_t leftIndent;
    std::int32_t rightIndent;
};

/// Which of the four running backgrounds an element's background-color belongs to.
enum class BackgroundGroup { Inline, Body, Table, Block };
BackgroundGroup backgroundGroupOf(std::uint32_t elementId);

/// Where the declarations of an element come from, by rank; null for none.
struct CascadeSources {
    const CssDeclarationList* styleAttribute;
    const zorvan::ArrayList<Selector*>& rules; ///< selectors, the last of them first in rank
    const CssDeclarationList* presentational;
    const CssDeclarationList* builtIn;
};

/// Is told of every cascade: before its sources are merged, and of the list that they give unless
/// there is none.
class CascadeObserver {
public:
    virtual ~CascadeObserver() = default;
    virtual void onCascade(const HtmlTreeNode& node, const CascadeSources& sources) = 0;
    virtual void onCascaded(const CssDeclarationList& result) = 0;
};

/// The declarations of a new element from all sources, in their order of rank; null when there are
/// none. The sheet keeps the list. root: of the tree.
CssDeclarationList* cascade(StyleSheet& sheet, HtmlTreeNode& node, HtmlTreeNode* root);

/// Replaces inherit by what initialStyle holds, and lets direction set an absent text-align.
void resolveInherit(CssDeclarationList& list, HtmlFilterContext& context);

/// Brings a new element's declarations into force for what follows in the tree; leaveStyle undoes
/// it.
void enterStyle(HtmlTreeNode& node, HtmlFilterContext& context);

/// Undoes enterStyle. Nothing happens for a text node or when no frame is open.
void leaveStyle(HtmlGenericNodeData& payload, HtmlFilterContext& context);

/// Pops and frees all build frames.
void clearBuildFrames(HtmlFilterContext& context);

/// Whether a child takes a property's value from its parent.
bool isInherited(ZVCSSProperty property);

/// Fills out with the initial value of a property; false when it has none here. Border colors are
/// the color of initialStyle when useInitialStyle is 1, else of runningStyle.
bool getInitialDeclaration(ZVCSSProperty property, CssDeclaration& out,
    std::uint32_t useInitialStyle, HtmlFilterContext& context);

/// Pixels of a font-size keyword; all ones for larger, smaller and any other.
std::uint32_t namedFontSize(std::uint32_t value);

/// Replaces a Length of the list by the same in pixels, em and ex against fontSize (pixels).
void resolveLength(CssDeclarationList& list, ZVCSSProperty property, std::uint32_t fontSize);

/// Fills a list with the values in force at the start of a document, when it is empty.
void fillDefaultStyle(CssDeclarationList& list, ValueCache& values);
