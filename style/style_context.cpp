#include "style/cascade.h"

#include "containers/failures.h"
#include "containers/linked_list.h"
#include "style/css_declaration_list.h"
#include "style/font_names.h"
#include "style/lengths.h"
#include "style/property_snapshot.h"
#include "support/process_heap.h"
#include "tree/html_tree.h"

#include <memory>
#include <string_view>
#include <utility>

namespace {

constexpr std::u16string_view kDefaultFont = u"Times New Roman";

std::unique_ptr<BuildFrame> makeFrame(const HtmlFilterContext& context)
{
    std::unique_ptr<BuildFrame> frame(zorvan::newObject<BuildFrame>());
    if (frame == nullptr)
        zorvan::throwOutOfStorage();
    if (!context.buildFrames.isEmpty())
        *frame = *context.buildFrames.head->value;
    return frame;
}

std::unique_ptr<CssDeclarationList> makeUndoList(const HtmlFilterContext& context)
{
    std::unique_ptr<CssDeclarationList> undo(
        zorvan::newObject<CssDeclarationList>(context.valueCache));
    if (undo == nullptr)
        zorvan::throwOutOfStorage();
    return undo;
}

HtmlValue*& backgroundInForce(std::uint32_t elementId, HtmlFilterContext& context)
{
    switch (backgroundGroupOf(elementId)) {
    case BackgroundGroup::Inline:
        return context.buildInlineBackground;
    case BackgroundGroup::Body:
        return context.buildBodyBackground;
    case BackgroundGroup::Table:
        return context.buildTableBackground;
    case BackgroundGroup::Block:
        break;
    }
    return context.buildBlockBackground;
}

bool addsUp(ZVCSSProperty property)
{
    switch (property) {
    case PROPERTY_MARGIN_BOTTOM:
    case PROPERTY_MARGIN_LEFT:
    case PROPERTY_MARGIN_RIGHT:
    case PROPERTY_MARGIN_TOP:
    case PROPERTY_TEXT_INDENT:
        return true;
    default:
        return false;
    }
}

/// Puts into undo what takes a declaration of an element back.
void addUndo(const CssDeclaration& declaration, CssDeclarationList& undo, std::uint32_t elementId,
    HtmlFilterContext& context)
{
    const ZVCSSProperty property = declaration.getProperty();
    const CssDeclaration* const* inForce = context.initialStyle->find(property);
    if (inForce == nullptr)
        return;
    if (addsUp(property)) {
        // QUIRK(StyleContext.MarginsAreUndoneByTheirNegative): what then stands in initialStyle is
        // the negated margin, not the one of the parent.
        if (const auto* length = HtmlLengthValue::from(declaration.getValue())) {
            undo.set(property, context.valueCache->lengthValue(-length->pixels(), UNITS_PIXELS),
                /*important=*/false, /*edgeMargin=*/false);
        }
        return;
    }
    if (property == PROPERTY_BACKGROUND_COLOR) {
        undo.set(property, backgroundInForce(elementId, context), /*important=*/false,
            /*edgeMargin=*/false);
        return;
    }
    if (isInherited(property)) {
        if (!(*inForce)->equals(declaration, /*compareImportant=*/false))
            undo.setCopy(**inForce);
        return;
    }
    CssDeclaration initial;
    if (getInitialDeclaration(property, initial, /*useInitialStyle=*/0, context))
        undo.setCopy(initial);
}

void buildUndo(CssDeclarationList& list, CssDeclarationList& undo, std::uint32_t elementId,
    std::uint32_t parentSize, HtmlFilterContext& context)
{
    for (const ZVCSSProperty property : PropertySnapshot(list)) {
        resolveLength(list, property, parentSize);
        addUndo(*list.get(property), undo, elementId, context);
    }
}

void putIntoForce(
    const CssDeclaration& declaration, std::uint32_t elementId, HtmlFilterContext& context)
{
    if (!context.initialStyle->contains(declaration.getProperty()))
        return;
    if (declaration.getProperty() == PROPERTY_BACKGROUND_COLOR)
        backgroundInForce(elementId, context) = declaration.getValue();
    else
        context.initialStyle->setCopy(declaration);
}

void setFontSize(const CssDeclarationList& list, BuildFrame& frame)
{
    const HtmlValue* value = list.findValue(PROPERTY_FONT_SIZE);
    if (value == nullptr)
        return;
    const std::uint32_t size = fontSizeInPixels(*value, frame.fontSize);
    if (size != kNoFontSize)
        frame.fontSize = size;
}

std::int32_t wholePixelsOf(
    const CssDeclarationList& list, ZVCSSProperty property, std::uint32_t fontSize)
{
    const auto* length = HtmlLengthValue::from(list.findValue(property));
    return length != nullptr ? wholePixels(*length, fontSize) : 0;
}

/// Adds without overflow: sums wrap.
void addTo(std::int32_t& sum, std::int32_t addend)
{
    sum = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(sum) + static_cast<std::uint32_t>(addend));
}

void addIndents(const CssDeclarationList& list, BuildFrame& frame)
{
    const std::int32_t left = wholePixelsOf(list, PROPERTY_MARGIN_LEFT, frame.fontSize);
    addTo(frame.firstLineIndent, left);
    addTo(frame.leftIndent, left);
    addTo(frame.rightIndent, wholePixelsOf(list, PROPERTY_MARGIN_RIGHT, frame.fontSize));
    addTo(frame.firstLineIndent, wholePixelsOf(list, PROPERTY_TEXT_INDENT, frame.fontSize));
}

/// Numbers the fonts of a document in the order of their first use.
void noteFont(const CssDeclarationList& list, HtmlFilterContext& context)
{
    const HtmlValue* value = list.findValue(PROPERTY_FONT_FAMILY);
    if (value == nullptr)
        return;
    if (const auto* family = HtmlWStringValue::from(value))
        findOrAddFont(family->text, family->length, context);
    else
        findOrAddFont(
            kDefaultFont.data(), static_cast<std::uint32_t>(kDefaultFont.size()), context);
}

/// Brings declarations into force; undo: what takes them back.
void enterDeclarations(CssDeclarationList& list, CssDeclarationList& undo, std::uint32_t elementId,
    BuildFrame& frame, HtmlFilterContext& context)
{
    buildUndo(list, undo, elementId, frame.fontSize, context);
    for (const ZVCSSProperty property : PropertySnapshot(list)) {
        resolveLength(list, property, frame.fontSize);
        putIntoForce(*list.get(property), elementId, context);
    }
    setFontSize(list, frame);
    addIndents(list, frame);
    noteFont(list, context);
}

} // namespace

BackgroundGroup backgroundGroupOf(std::uint32_t elementId)
{
    switch (elementId) {
    case ELEMENT_A:
    case ELEMENT_B:
    case ELEMENT_BIG:
    case ELEMENT_CODE:
    case ELEMENT_EM:
    case ELEMENT_FONT:
    case ELEMENT_I:
    case ELEMENT_SPAN:
    case ELEMENT_STRONG:
    case ELEMENT_SUB:
    case ELEMENT_SUP:
    case ELEMENT_U:
        return BackgroundGroup::Inline;
    case ELEMENT_BODY:
        return BackgroundGroup::Body;
    case ELEMENT_TABLE:
    case ELEMENT_TD:
    case ELEMENT_TH:
    case ELEMENT_TR:
        return BackgroundGroup::Table;
    default:
        return BackgroundGroup::Block;
    }
}

void resolveLength(CssDeclarationList& list, ZVCSSProperty property, std::uint32_t fontSize)
{
    const auto* length = HtmlLengthValue::from(list.findValue(property));
    if (length == nullptr)
        return;
    HtmlValue* const resolved
        = list.valueCache->lengthValue(lengthInPixels(*length, fontSize), UNITS_PIXELS);
    if (resolved != nullptr)
        list.replaceValue(property, resolved);
}

void enterStyle(HtmlTreeNode& node, HtmlFilterContext& context)
{
    std::unique_ptr<BuildFrame> frame = makeFrame(context);
    if (node.parent != nullptr && elementOf(*node.parent) == ELEMENT_TR) {
        frame->firstLineIndent = 0;
        frame->leftIndent = 0;
        frame->rightIndent = 0;
    }
    auto& element = static_cast<HtmlTagNodeData&>(*node.data);
    CssDeclarationList* const list = element.declarations;
    if (list != nullptr && !list->isEmpty()) {
        std::unique_ptr<CssDeclarationList> undo = makeUndoList(context);
        enterDeclarations(*list, *undo, element.elementId, *frame, context);
        element.undoDeclarations = undo.release();
    }
    context.buildFrames.push(frame.get());
    frame.release();
}

void leaveStyle(HtmlGenericNodeData& payload, HtmlFilterContext& context)
{
    if (payload.elementId == ELEMENT_NONE || context.buildFrames.isEmpty())
        return;
    delete context.buildFrames.pop();
    auto& element = static_cast<HtmlTagNodeData&>(payload);
    const std::unique_ptr<CssDeclarationList> undo(
        std::exchange(element.undoDeclarations, nullptr));
    if (undo == nullptr)
        return;
    undo->forEach([&](ZVCSSProperty, const CssDeclaration* declaration) {
        putIntoForce(*declaration, payload.elementId, context);
    });
}

void clearBuildFrames(HtmlFilterContext& context)
{
    while (!context.buildFrames.isEmpty())
        delete context.buildFrames.pop();
}
