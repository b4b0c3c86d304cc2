#include "output/style_delivery.h"

#include "output/character_style.h"
#include "output/node_values.h"
#include "output/paragraphs.h"
#include "output/tree_walk.h"
#include "style/cascade.h"
#include "style/css_declaration.h"
#include "style/css_declaration_list.h"
#include "style/lengths.h"
#include "style/property_snapshot.h"
#include "support/css_names.h"
#include "tree/element_sets.h"

namespace {

constexpr ElementSet kTableParts{ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TABLE, ELEMENT_TBODY,
    ELEMENT_TD, ELEMENT_TH, ELEMENT_TR};

/// Whether leaving an element gives a property back. What tables and images do with these of theirs
/// stays inside the element.
bool isUndone(ZVCSSProperty property, std::uint32_t element)
{
    switch (property) {
    case PROPERTY_BACKGROUND_COLOR:
    case PROPERTY_TEXT_ALIGN:
    case PROPERTY_VERTICAL_ALIGN:
        return !kTableParts.contains(element);
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
    case PROPERTY_MARGIN_BOTTOM:
    case PROPERTY_MARGIN_LEFT:
    case PROPERTY_MARGIN_RIGHT:
    case PROPERTY_MARGIN_TOP:
        return element != ELEMENT_IMG;
    default:
        return true;
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

/// Puts into the undo list what gives a property back that runningStyle has.
void noteUndo(const CssDeclaration& declaration, CssDeclarationList& undoList,
    std::uint32_t element, HtmlFilterContext& context)
{
    const ZVCSSProperty property = declaration.getProperty();
    const HtmlLengthValue* length = HtmlLengthValue::from(declaration.getValue());
    if (length != nullptr && isAdded(property)) {
        const zorvan::Length& added = length->length;
        undoList.set(property, context.valueCache->lengthValue(-added.value, added.units),
            /*important=*/false, /*edgeMargin=*/false);
        return;
    }
    if (property == PROPERTY_BACKGROUND_COLOR) {
        undoList.set(property, backgroundOf(element, context), /*important=*/false,
            /*edgeMargin=*/false);
        return;
    }
    if (isInherited(property)) {
        const CssDeclaration* running = context.runningStyle->get(property);
        if (!running->equals(declaration, /*compareImportant=*/false))
            undoList.setCopy(*running);
        return;
    }
    CssDeclaration initial;
    if (getInitialDeclaration(property, initial, /*useInitialStyle=*/0, context))
        undoList.setCopy(initial);
}

void resolveAndNoteUndo(CssDeclarationList& declarations, HTML_SOINFO& frame, std::uint32_t element,
    HtmlFilterContext& context)
{
    const HTML_SOINFO* newest = newestFrame(context);
    const std::uint32_t fontSize = newest != nullptr ? newest->fontSizePx : frame.fontSizePx;
    const PropertySnapshot properties(declarations);
    for (const ZVCSSProperty property : properties) {
        const HtmlLengthValue* length = HtmlLengthValue::from(declarations.findValue(property));
        if (length != nullptr && isRelative(*length))
            resolveLength(declarations, property, fontSize);
        if (context.runningStyle->contains(property) && isUndone(property, element))
            noteUndo(*declarations.get(property), *frame.undoList, element, context);
    }
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
    for (auto cursor = declarations.first(); !cursor.isAtEnd(); cursor.advance()) {
        const CssDeclaration& declaration = *cursor.value();
        if (context.runningStyle->contains(cursor.key())) {
            if (cursor.key() == PROPERTY_BACKGROUND_COLOR)
                backgroundOf(element, context) = declaration.getValue();
            else
                context.runningStyle->setCopy(declaration);
        }
        if (!deliverCharacterDeclaration(declaration, frame, element, context))
            deliverBlockDeclaration(declaration, frame, element, context);
    }
    deliverParagraphBorder(declarations, element, restoring != 1 ? 1 : 0, context);
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
