#include "output/style_delivery.h"

#include "containers/failures.h"
#include "containers/indexed_list.h"
#include "output/borders.h"
#include "output/character_style.h"
#include "output/node_values.h"
#include "output/paragraphs.h"
#include "output/tree_walk.h"
#include "style/cascade.h"
#include "style/css_declaration.h"
#include "style/css_declaration_list.h"
#include "style/lengths.h"
#include "style/property_snapshot.h"
#include "style/style_sheet.h"
#include "style/style_spares.h"
#include "support/css_names.h"
#include "support/process_heap.h"
#include "tree/element_sets.h"
#include "tree/tree_state.h"

namespace {

/// Whether leaving an element gives a property back. What tables and images do with these of theirs
/// stays inside the element.
bool isUndone(ZVCSSProperty property, std::uint32_t element)
{
    switch (property) {
    case PROPERTY_BACKGROUND_COLOR:
    case PROPERTY_TEXT_ALIGN:
    case PROPERTY_VERTICAL_ALIGN:
        return !kTableParts.contains(element);
    case PROPERTY_MARGIN_BOTTOM:
    case PROPERTY_MARGIN_LEFT:
    case PROPERTY_MARGIN_RIGHT:
    case PROPERTY_MARGIN_TOP:
        return element != ELEMENT_IMG;
    default:
        return element != ELEMENT_IMG || !isBorderSide(property);
    }
}

bool isAdded(ZVCSSProperty property)
{
    return property == PROPERTY_MARGIN_BOTTOM || property == PROPERTY_MARGIN_LEFT
        || property == PROPERTY_MARGIN_RIGHT || property == PROPERTY_MARGIN_TOP
        || property == PROPERTY_TEXT_INDENT;
}

/// The background in force for elements like this one.
HtmlValue*& backgroundOf(std::uint32_t element, HtmlFilterContext& context)
{
    switch (backgroundGroupOf(element)) {
    case BackgroundGroup::Inline:
        return context.inlineBackground;
    case BackgroundGroup::Body:
        return context.bodyBackground;
    case BackgroundGroup::Table:
        return context.tableBackground;
    case BackgroundGroup::Block:
        break;
    }
    return context.blockBackground;
}

void setUndo(ZVCSSProperty property, HtmlValue* value, CssDeclarationList& undoList,
    HtmlFilterContext& context)
{
    if (value == nullptr)
        return;
    const CssDeclaration declaration(property, value, /*important=*/false, /*edgeMargin=*/false);
    ::setUndo(declaration, undoList, context);
}

/// Puts into the undo list what gives a property back. running: the declaration in force.
void noteUndo(const CssDeclaration& declaration, const CssDeclaration& running,
    CssDeclarationList& undoList, std::uint32_t element, HtmlFilterContext& context)
{
    const ZVCSSProperty property = declaration.getProperty();
    const HtmlLengthValue* length = HtmlLengthValue::from(declaration.getValue());
    if (length != nullptr && isAdded(property)) {
        const zorvan::Length& added = length->length;
        setUndo(property, context.valueCache->lengthValue(-added.value, added.units), undoList,
            context);
        return;
    }
    if (property == PROPERTY_BACKGROUND_COLOR) {
        setUndo(property, backgroundOf(element, context), undoList, context);
        return;
    }
    if (isInherited(property)) {
        if (!running.equals(declaration, /*compareImportant=*/false))
            ::setUndo(running, undoList, context);
        return;
    }
    CssDeclaration initial;
    if (getInitialDeclaration(property, initial, /*useInitialStyle=*/0, context))
        ::setUndo(initial, undoList, context);
}

void noteUndoOf(const CssDeclaration& declaration, CssDeclarationList& undoList,
    std::uint32_t element, HtmlFilterContext& context)
{
    if (!isUndone(declaration.getProperty(), element))
        return;
    CssDeclaration* const* running = context.runningStyle->find(declaration.getProperty());
    if (running != nullptr)
        noteUndo(declaration, **running, undoList, element, context);
}

bool isRelativeLength(const CssDeclaration& declaration)
{
    const HtmlLengthValue* length = HtmlLengthValue::from(declaration.getValue());
    return length != nullptr && isRelative(*length);
}

bool holdsRelativeLength(const CssDeclarationList& declarations)
{
    for (auto cursor = declarations.first(); !cursor.isAtEnd(); cursor.advance()) {
        if (isRelativeLength(*cursor.value()))
            return true;
    }
    return false;
}

void resolveAndNoteUndo(CssDeclarationList& declarations, HTML_SOINFO& frame, std::uint32_t element,
    HtmlFilterContext& context)
{
    // Nearly always the tree builder has resolved all lengths, and the list stays as it is.
    if (!holdsRelativeLength(declarations)) {
        for (auto cursor = declarations.first(); !cursor.isAtEnd(); cursor.advance())
            noteUndoOf(*cursor.value(), *frame.undoList, element, context);
        return;
    }
    const HTML_SOINFO* newest = newestFrame(context);
    const std::uint32_t fontSize = newest != nullptr ? newest->fontSizePx : frame.fontSizePx;
    for (const ZVCSSProperty property : PropertySnapshot(declarations)) {
        if (isRelativeLength(*declarations.get(property)))
            resolveLength(declarations, property, fontSize);
        noteUndoOf(*declarations.get(property), *frame.undoList, element, context);
    }
}

/// Puts a declaration into runningStyle, when it is there.
void putIntoForce(
    const CssDeclaration& declaration, std::uint32_t element, HtmlFilterContext& context)
{
    if (declaration.getProperty() != PROPERTY_BACKGROUND_COLOR)
        context.runningStyle->replaceByCopy(declaration);
    else if (context.runningStyle->contains(PROPERTY_BACKGROUND_COLOR))
        backgroundOf(element, context) = declaration.getValue();
}

} // namespace

void applyStyle(CssDeclarationList* declarations, HTML_SOINFO& frame, std::uint32_t element,
    HtmlFilterContext& context)
{
    if (declarations == nullptr)
        return;
    if (frame.undoList != nullptr)
        resolveAndNoteUndo(*declarations, frame, element, context);
    deliverStyle(*declarations, element, /*restoring=*/0, context);
}

void deliverStyle(CssDeclarationList& declarations, std::uint32_t element, std::uint32_t restoring,
    HtmlFilterContext& context)
{
    if (element == ELEMENT_BR || declarations.isEmpty())
        return;
    const HTML_SOINFO* newest = newestFrame(context);
    HTML_SOINFO frame = newest != nullptr ? *newest : emptyFrame();
    bool hasBorder = false;
    for (auto cursor = declarations.first(); !cursor.isAtEnd(); cursor.advance()) {
        const CssDeclaration& declaration = *cursor.value();
        hasBorder = hasBorder || isBorderSide(cursor.key());
        putIntoForce(declaration, element, context);
        if (!deliverCharacterDeclaration(declaration, frame, element, context))
            deliverBlockDeclaration(declaration, frame, element, context);
    }
    if (hasBorder)
        deliverParagraphBorder(declarations, element, restoring != 1 ? 1 : 0, context);
}

CssDeclarationList& makeNodeDeclarations(HtmlFilterContext& context)
{
    auto* const list = zorvan::newObject<CssDeclarationList>(context.valueCache);
    if (list == nullptr)
        zorvan::throwOutOfStorage();
    context.treeStates->get(context.currentTreeIndex)->styleContext->keepNodeDeclarations(list);
    return *list;
}

double fontSizePixels(const HtmlValue& value, std::uint32_t parentPx)
{
    constexpr double kNoSize = -1;
    constexpr double kStep = 1.2;

    if (const HtmlCssKeywordValue* keyword = HtmlCssKeywordValue::from(&value)) {
        if (keyword->keyword == VALUE_LARGER)
            return parentPx * kStep;
        if (keyword->keyword == VALUE_SMALLER)
            return parentPx / kStep;
        const std::uint32_t named = namedFontSize(keyword->keyword);
        return named == kNoFontSize ? kNoSize : named;
    }
    // Percentages are computed in single precision.
    if (const HtmlPercentValue* percent = HtmlPercentValue::from(&value))
        return percent->number / 100.0F * static_cast<float>(parentPx);
    if (const HtmlLengthValue* length = HtmlLengthValue::from(&value))
        return lengthInPixels(*length, parentPx);
    return kNoSize;
}
