#include "style/cascade.h"

#include "containers/failures.h"
#include "style/css_declaration_list.h"
#include "style/font_names.h"
#include "style/lengths.h"
#include "style/make_object.h"
#include "style/property_snapshot.h"
#include "style/style_spares.h"
#include "tree/html_tree.h"

#include <memory>
#include <string_view>
#include <utility>

namespace {

constexpr std::u16string_view kDefaultFont = u"Times New Roman";

/// An undo list in the making.
struct Undo {
    CssDeclarationList& list;
    StyleSpares& spares;

    // Each property of an element is undone once.
    void add(const CssDeclaration& declaration) { spares.addCopy(declaration, list); }

    void add(ZVCSSProperty property, HtmlValue* value)
    {
        if (value != nullptr)
            add(CssDeclaration(property, value, /*important=*/false, /*edgeMargin=*/false));
    }
};

std::unique_ptr<CssDeclarationList> makeUndoList(StyleSpares& spares, HtmlFilterContext& context)
{
    std::unique_ptr<CssDeclarationList> undo = spares.takeList(context.valueCache);
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
void addUndo(const CssDeclaration& declaration, Undo& undo, std::uint32_t elementId,
    HtmlFilterContext& context)
{
    const ZVCSSProperty property = declaration.getProperty();
    const CssDeclaration* const* inForce = context.initialStyle->find(property);
    if (inForce == nullptr)
        return;
    if (addsUp(property)) {
        // QUIRK(StyleContext.MarginsAreUndoneByTheirNegative): what then stands in initialStyle is
        // the negated margin, not the one of the parent.
        if (const auto* length = HtmlLengthValue::from(declaration.getValue()))
            undo.add(property, context.valueCache->lengthValue(-length->pixels(), UNITS_PIXELS));
        return;
    }
    if (property == PROPERTY_BACKGROUND_COLOR) {
        undo.add(property, backgroundInForce(elementId, context));
        return;
    }
    if (isInherited(property)) {
        if (!(*inForce)->equals(declaration, /*compareImportant=*/false))
            undo.add(**inForce);
        return;
    }
    CssDeclaration initial;
    if (getInitialDeclaration(property, initial, /*useInitialStyle=*/0, context))
        undo.add(initial);
}

/// The declarations of an element in their order, for visits with lengths resolved.
class ElementDeclarations {
public:
    using Visits = CssDeclarationList::Visits;
    using Order = zorvan::ArrayList<const CssDeclaration*>;

    explicit ElementDeclarations(CssDeclarationList& list)
        : list_(list)
    {
        if (list.visits != nullptr)
            return;
        for (auto cursor = list.first(); !cursor.isAtEnd(); cursor.advance()) {
            note(cursor);
            declarations_[count_++] = cursor.value();
        }
        // Becoming owning would put other declarations in the place of these.
        if (!isResolved_ && !list.isOwning())
            keepsOrder_ = false;
        if (list.lengths == CssDeclarationList::Lengths::ResolveOnce && !keepsOrder_)
            visits_ = makeObject<Visits>(count_);
    }

    /// Resolves each length against a font size and calls visit(declaration). order: which of both
    /// visits this is.
    template <typename Visit>
    void forEachResolved(std::uint32_t fontSize, Order Visits::*order, Visit visit)
    {
        if (list_.visits != nullptr) {
            for (const CssDeclaration* declaration : (*list_.visits).*order)
                visit(*declaration);
            return;
        }
        if (keepsOrder_) {
            for (std::int32_t i = 0; i < count_; ++i) {
                if (!isResolved_)
                    resolveLength(list_, declarations_[i]->getProperty(), fontSize);
                visit(*declarations_[i]);
            }
            return;
        }
        for (const ZVCSSProperty property : PropertySnapshot(list_)) {
            resolveLength(list_, property, fontSize);
            const CssDeclaration& declaration = *list_.get(property);
            if (visits_ != nullptr)
                ((*visits_).*order).add(&declaration);
            visit(declaration);
        }
    }

    /// Whether both visits go the same way.
    bool keepOrder() const { return list_.visits == nullptr && keepsOrder_; }

    /// Lets further elements that share the list find it as this one has.
    void finish()
    {
        if (list_.lengths != CssDeclarationList::Lengths::ResolveOnce)
            return;
        list_.lengths = CssDeclarationList::Lengths::Resolved;
        list_.visits = std::move(visits_);
    }

private:
    // Each property stands in a list once.
    static constexpr std::int32_t kCapacity = PROPERTY_ZOOM + 1;

    /// Notes whether resolveLength leaves a declaration as it is and where it is.
    void note(const CssDeclarationList::Cursor& place)
    {
        const CssDeclaration& declaration = *place.value();
        const auto* length = HtmlLengthValue::from(declaration.getValue());
        if (length == nullptr)
            return;
        if (!place.isLastOfChain())
            keepsOrder_ = false;
        if (!keepsOrder_ || length->length.units != UNITS_PIXELS
            || declaration.getValueCount() != 1)
            isResolved_ = false;
    }

    CssDeclarationList& list_;
    const CssDeclaration* declarations_[kCapacity]; // in use when the order stays
    std::int32_t count_ = 0;
    bool isResolved_ = true; // all lengths are in pixels, and putting them again moves nothing
    bool keepsOrder_ = true; // no length moves when it is resolved
    std::unique_ptr<Visits> visits_; // in the making, of the list of several elements
};

void putIntoForce(
    const CssDeclaration& declaration, std::uint32_t elementId, HtmlFilterContext& context)
{
    if (declaration.getProperty() != PROPERTY_BACKGROUND_COLOR)
        context.initialStyle->replaceByCopy(declaration);
    else if (context.initialStyle->contains(PROPERTY_BACKGROUND_COLOR))
        backgroundInForce(elementId, context) = declaration.getValue();
}

/// The values of an element that tell its frame and font; null for none.
struct FrameValues {
    const HtmlValue* fontSize = nullptr;
    const HtmlValue* leftMargin = nullptr;
    const HtmlValue* rightMargin = nullptr;
    const HtmlValue* textIndent = nullptr;
    const HtmlValue* fontFamily = nullptr;
};

void noteFrameValue(const CssDeclaration& declaration, FrameValues& values)
{
    switch (declaration.getProperty()) {
    case PROPERTY_FONT_FAMILY:
        values.fontFamily = declaration.getValue();
        break;
    case PROPERTY_FONT_SIZE:
        values.fontSize = declaration.getValue();
        break;
    case PROPERTY_MARGIN_LEFT:
        values.leftMargin = declaration.getValue();
        break;
    case PROPERTY_MARGIN_RIGHT:
        values.rightMargin = declaration.getValue();
        break;
    case PROPERTY_TEXT_INDENT:
        values.textIndent = declaration.getValue();
        break;
    default:
        break;
    }
}

void setFontSize(const HtmlValue* value, BuildFrame& frame)
{
    if (value == nullptr)
        return;
    const std::uint32_t size = fontSizeInPixels(*value, frame.fontSize);
    if (size != kNoFontSize)
        frame.fontSize = size;
}

std::int32_t wholePixelsOf(const HtmlValue* value, std::uint32_t fontSize)
{
    const auto* length = HtmlLengthValue::from(value);
    return length != nullptr ? wholePixels(*length, fontSize) : 0;
}

/// Adds without overflow: sums wrap.
void addTo(std::int32_t& sum, std::int32_t addend)
{
    sum = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(sum) + static_cast<std::uint32_t>(addend));
}

void addIndents(const FrameValues& values, BuildFrame& frame)
{
    const std::int32_t left = wholePixelsOf(values.leftMargin, frame.fontSize);
    addTo(frame.firstLineIndent, left);
    addTo(frame.leftIndent, left);
    addTo(frame.rightIndent, wholePixelsOf(values.rightMargin, frame.fontSize));
    addTo(frame.firstLineIndent, wholePixelsOf(values.textIndent, frame.fontSize));
}

/// Numbers the fonts of a document in the order of their first use.
void noteFont(const HtmlValue* value, HtmlFilterContext& context)
{
    if (value == nullptr)
        return;
    if (const auto* family = HtmlWStringValue::from(value))
        findOrAddFont(*family, context);
    else
        findOrAddFont(
            kDefaultFont.data(), static_cast<std::uint32_t>(kDefaultFont.size()), context);
}

/// Brings declarations into force; undo: what takes them back.
void enterDeclarations(CssDeclarationList& list, Undo& undo, std::uint32_t elementId,
    BuildFrame& frame, HtmlFilterContext& context)
{
    ElementDeclarations declarations(list);
    using Visits = CssDeclarationList::Visits;
    FrameValues values;
    const auto note = [&](const CssDeclaration& each) { addUndo(each, undo, elementId, context); };
    const auto enter = [&](const CssDeclaration& each) {
        putIntoForce(each, elementId, context);
        noteFrameValue(each, values);
    };
    if (declarations.keepOrder()) {
        // What undoes a declaration hangs on no other, so both can be done on one way.
        declarations.forEachResolved(frame.fontSize, &Visits::entered, [&](const auto& each) {
            note(each);
            enter(each);
        });
    } else {
        declarations.forEachResolved(frame.fontSize, &Visits::undone, note);
        declarations.forEachResolved(frame.fontSize, &Visits::entered, enter);
    }
    declarations.finish();
    setFontSize(values.fontSize, frame);
    addIndents(values, frame);
    noteFont(values.fontFamily, context);
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
    HtmlLengthValue* resolved = length->inPixels;
    if (resolved == nullptr) {
        resolved = list.valueCache->lengthValue(lengthInPixels(*length, fontSize), UNITS_PIXELS);
        if (!isRelative(*length))
            length->inPixels = resolved;
    }
    if (resolved != nullptr)
        list.replaceValue(property, resolved);
}

void enterStyle(HtmlTreeNode& node, HtmlFilterContext& context)
{
    StyleSpares& spares = styleSparesOf(context);
    spares.reserveFrame();
    BuildFrame frame{};
    if (!context.buildFrames.isEmpty())
        frame = *context.buildFrames.head->value;
    if (node.parent != nullptr && elementOf(*node.parent) == ELEMENT_TR) {
        frame.firstLineIndent = 0;
        frame.leftIndent = 0;
        frame.rightIndent = 0;
    }
    auto& element = static_cast<HtmlTagNodeData&>(*node.data);
    CssDeclarationList* const list = element.declarations;
    if (list != nullptr && !list->isEmpty()) {
        std::unique_ptr<CssDeclarationList> made = makeUndoList(spares, context);
        made->reserveStorage(list->getCount());
        Undo undo{*made, spares};
        enterDeclarations(*list, undo, element.elementId, frame, context);
        element.undoDeclarations = made.release();
    }
    spares.pushFrame(frame, context.buildFrames);
}

void leaveStyle(HtmlGenericNodeData& payload, HtmlFilterContext& context)
{
    if (payload.elementId == ELEMENT_NONE || context.buildFrames.isEmpty())
        return;
    StyleSpares& spares = styleSparesOf(context);
    spares.popFrame(context.buildFrames);
    auto& element = static_cast<HtmlTagNodeData&>(payload);
    std::unique_ptr<CssDeclarationList> undo(std::exchange(element.undoDeclarations, nullptr));
    if (undo == nullptr)
        return;
    for (auto cursor = undo->first(); !cursor.isAtEnd(); cursor.advance())
        putIntoForce(*cursor.value(), payload.elementId, context);
    spares.giveBack(std::move(undo));
}

void clearBuildFrames(HtmlFilterContext& context)
{
    while (!context.buildFrames.isEmpty())
        delete context.buildFrames.pop();
}
