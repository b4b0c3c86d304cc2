#include "tests/style/plain_cascade.h"

#include "style/built_in_styles.h"
#include "style/declaration_builder.h"
#include "style/lengths.h"
#include "style/selector_reader.h"
#include "tests/style/css_tokens.h"
#include "tests/style/plain_selector.h"

#include <algorithm>

namespace testing_support {

namespace {

    /// Takes out what a property has, and puts a copy of a declaration in.
    void putCopy(CssDeclarationList& list, const CssDeclaration& declaration)
    {
        list.remove(declaration.getProperty());
        list.add(new CssDeclaration(declaration));
    }

    void mergeInto(CssDeclarationList& result, const CssDeclarationList& source)
    {
        for (const ZVCSSProperty property : orderOf(source)) {
            const CssDeclaration& declaration = *source.get(property);
            if (!result.contains(property)
                || (!result.get(property)->important && declaration.important))
                putCopy(result, declaration);
        }
    }

    bool isKeyword(const CssDeclarationList& list, ZVCSSProperty property, ZVCSSValue keyword)
    {
        const auto* value = HtmlCssKeywordValue::from(list.findValue(property));
        return value != nullptr && value->keyword == keyword;
    }

    bool beginsSelector(std::int32_t kind)
    {
        return kind == '*' || kind == '.' || kind == '[' || kind == CSS_IDENT || kind == CSS_HASH
            || (kind >= CSS_NOT && kind <= CSS_SELECTION);
    }

    bool isAtRule(std::int32_t kind)
    {
        return kind == CSS_IMPORT_SYM || kind == CSS_PAGE_SYM || kind == CSS_MEDIA_SYM
            || kind == CSS_CHARSET_SYM || kind == CSS_FONT_FACE_SYM || kind == CSS_ATKEYWORD;
    }

} // namespace

CssDeclarationList& PlainStyle::makeList()
{
    lists_.push_back(std::make_unique<CssDeclarationList>(&document_.values));
    return *lists_.back();
}

void PlainStyle::parseStyleSheet(std::string_view text)
{
    if (text.empty())
        return;
    setCssInput(tokens_, text);
    CssToken token;
    tokens_.nextSkippingSpace(token);
    if (token.kind != CSS_CDO)
        tokens_.pushBack(token);
    readRules();
    std::sort(selectors_.begin(), selectors_.end(),
        [](const auto& a, const auto& b) { return a->compareTo(*b) < 0; });
}

void PlainStyle::readRules()
{
    Selectors pending;
    CssToken token;
    while (true) {
        tokens_.next(token);
        if (token.kind == CSS_END)
            return;
        if (token.kind == CSS_S)
            continue;
        if (beginsSelector(token.kind)) {
            tokens_.pushBack(token);
            readSelectorList(pending);
        } else if (token.kind == '{') {
            readRuleBlock(pending);
        } else if (isAtRule(token.kind)) {
            readAtRule();
        } else {
            readJunk();
        }
    }
}

void PlainStyle::readSelectorList(Selectors& pending)
{
    if (readSelectors(pending)) {
        pending.clear();
        readJunk();
    }
}

bool PlainStyle::readSelectors(Selectors& pending)
{
    auto selector = std::make_unique<Selector>(++selectorCount_);
    CssToken token;
    while (true) {
        tokens_.next(token);
        if (token.kind == CSS_END)
            break;
        if (beginsSelector(token.kind)) {
            tokens_.pushBack(token);
            if (readSelector(*selector, tokens_))
                return true;
        } else if (token.kind == ',') {
            if (selector->sequences.getCount() == 0)
                return true;
            pending.push_back(std::move(selector));
            selector = std::make_unique<Selector>(++selectorCount_);
        } else if (token.kind == '{') {
            if (selector->sequences.getCount() == 0)
                return true;
            tokens_.pushBack(token);
            break;
        }
    }
    pending.push_back(std::move(selector));
    return false;
}

void PlainStyle::readRuleBlock(Selectors& pending)
{
    CssDeclarationList& list = makeList();
    readBlock(list);
    if (!list.isEmpty()) {
        for (auto& selector : pending) {
            selector->declarations = &list;
            selectors_.push_back(std::move(selector));
        }
    }
    pending.clear();
}

void PlainStyle::readBlock(CssDeclarationList& list)
{
    CssToken token;
    while (true) {
        tokens_.next(token);
        if (token.kind == CSS_END || token.kind == ';' || token.kind == '}')
            return;
        if (token.kind == CSS_S)
            continue;
        if (token.kind == CSS_IDENT)
            readDeclaration(token, list);
        else
            readBadDeclaration();
    }
}

void PlainStyle::readDeclaration(const CssToken& name, CssDeclarationList& list)
{
    CssTokenList value;
    bool important = false;
    std::vector<char> closers;
    CssToken token;
    tokens_.nextSkippingSpace(token);
    if (token.kind == '}')
        tokens_.pushBack(token);
    if (token.kind == ':') {
        tokens_.nextSkippingSpace(token);
        while (token.kind != CSS_END) {
            if (token.kind == ';' && closers.empty())
                break;
            if (token.kind == '}' && closers.empty()) {
                tokens_.pushBack(token);
                break;
            }
            if (token.kind == CSS_IMPORTANT_SYM) {
                tokens_.nextSkippingSpace(token);
                important = important || token.kind == ';';
                continue;
            }
            if (token.kind == '(' || token.kind == CSS_BAD_URI || token.kind == CSS_FUNCTION)
                closers.push_back(')');
            else if (token.kind == '[')
                closers.push_back(']');
            else if (token.kind == '{')
                closers.push_back('}');
            else if ((token.kind == ')' || token.kind == ']' || token.kind == '}')
                && !closers.empty())
                closers.pop_back();
            value.add(token);
            tokens_.nextSkippingSpace(token);
        }
    }
    applyDeclaration(list, name, value, important, document_.context);
}

void PlainStyle::readBadDeclaration()
{
    CssToken token;
    do
        tokens_.next(token);
    while (token.kind != ';' && token.kind != '}' && token.kind != CSS_END);
    if (token.kind == ';')
        tokens_.next(token);
}

void PlainStyle::readAtRule()
{
    char terminator = ';';
    int depth = 0;
    CssToken token;
    for (tokens_.next(token); token.kind != CSS_END; tokens_.next(token)) {
        if (token.kind == ';' && terminator == ';')
            return;
        if (token.kind == '{') {
            ++depth;
            terminator = '}';
        }
        if (token.kind == '}') {
            --depth;
            if (depth == 0)
                return;
        }
    }
}

void PlainStyle::readJunk()
{
    CssToken token;
    do
        tokens_.next(token);
    while (token.kind != '}' && token.kind != CSS_END);
}

void PlainStyle::enter(HtmlTreeNode& node)
{
    if (CssDeclarationList* const list = cascade(node)) {
        resolveInherit(*list);
        StyleDocument::tag(node).declarations = list;
    }
    enterStyle(node);
}

CssDeclarationList* PlainStyle::cascade(HtmlTreeNode& node)
{
    HtmlTagNodeData& element = StyleDocument::tag(node);
    CssDeclarationList fromStyle(&document_.values);
    readStyleAttribute(element, fromStyle);
    std::vector<const CssDeclarationList*> matched;
    for (const auto& selector : selectors_) {
        if (plainMatches(*selector, &node, document_.tree.root()))
            matched.push_back(selector->declarations);
    }
    CssDeclarationList& result = makeList();
    mergeInto(result, fromStyle);
    for (auto list = matched.rbegin(); list != matched.rend(); ++list)
        mergeInto(result, **list);
    if (element.declarations != nullptr && !element.declarations->isEmpty()) {
        mergeInto(result, *element.declarations);
        element.declarations = nullptr;
    }
    if (const CssDeclarationList* const builtIn = builtInFor(element.elementId, result))
        mergeInto(result, *builtIn);
    return result.isEmpty() ? nullptr : &result;
}

void PlainStyle::readStyleAttribute(const HtmlTagNodeData& element, CssDeclarationList& list)
{
    const auto* text = HtmlWStringValue::from(element.findAttribute(ATTRIBUTE_STYLE));
    if (text == nullptr || text->length == 0)
        return;
    tokens_.setInput(text->text, text->length);
    readBlock(list);
}

CssDeclarationList* PlainStyle::builtInOf(std::uint32_t elementId)
{
    const auto known = builtIn_.find(elementId);
    if (known != builtIn_.end())
        return known->second;
    auto made = makeBuiltInDeclarations(elementId, document_.values);
    if (made == nullptr)
        return nullptr;
    lists_.push_back(std::move(made));
    return builtIn_[elementId] = lists_.back().get();
}

CssDeclarationList* PlainStyle::builtInFor(
    std::uint32_t elementId, const CssDeclarationList& result)
{
    CssDeclarationList* const builtIn = builtInOf(elementId);
    const bool indents = elementId == ELEMENT_ADDRESS || elementId == ELEMENT_DD
        || elementId == ELEMENT_MENU || elementId == ELEMENT_OL || elementId == ELEMENT_UL;
    if (!indents || !isKeyword(result, PROPERTY_DIRECTION, VALUE_RTL))
        return builtIn;
    CssDeclarationList& swapped = makeList();
    mergeInto(swapped, *builtIn);
    HtmlValue* const margin = swapped.findValue(PROPERTY_MARGIN_LEFT);
    swapped.remove(PROPERTY_MARGIN_LEFT);
    putCopy(swapped,
        CssDeclaration(PROPERTY_MARGIN_RIGHT, margin, /*important=*/false, /*edgeMargin=*/false));
    return &swapped;
}

void PlainStyle::resolveInherit(CssDeclarationList& list)
{
    for (const ZVCSSProperty property : orderOf(list)) {
        if (isKeyword(list, property, VALUE_INHERIT) && document_.initialStyle.contains(property))
            putCopy(list, *document_.initialStyle.get(property));
    }
    if (!list.contains(PROPERTY_DIRECTION) || list.contains(PROPERTY_TEXT_ALIGN))
        return;
    for (const auto& [direction, alignment] :
        {std::pair(VALUE_LTR, VALUE_LEFT), std::pair(VALUE_RTL, VALUE_RIGHT)}) {
        if (isKeyword(list, PROPERTY_DIRECTION, direction))
            putCopy(list,
                CssDeclaration(PROPERTY_TEXT_ALIGN, document_.keyword(alignment),
                    /*important=*/false, /*edgeMargin=*/false));
    }
}

void PlainStyle::enterStyle(HtmlTreeNode& node)
{
    HtmlTagNodeData& element = StyleDocument::tag(node);
    BuildFrame parent{};
    if (!frames_.empty())
        parent = frames_.back();
    BuildFrame frame = parent;
    if (node.parent != nullptr && elementOf(*node.parent) == ELEMENT_TR)
        frame.firstLineIndent = frame.leftIndent = frame.rightIndent = 0;
    CssDeclarationList* const list = element.declarations;
    if (list != nullptr && !list->isEmpty()) {
        auto undo = std::make_unique<CssDeclarationList>(&document_.values);
        buildUndo(*list, *undo, element.elementId, parent);
        element.undoDeclarations = undo.release();
        for (const ZVCSSProperty property : orderOf(*list)) {
            resolveLength(*list, property, parent.fontSize);
            putIntoForce(*list->get(property), element.elementId);
        }
        if (const HtmlValue* const size = list->findValue(PROPERTY_FONT_SIZE)) {
            const std::uint32_t pixels = fontSizeInPixels(*size, parent.fontSize);
            frame.fontSize = pixels == kNoFontSize ? parent.fontSize : pixels;
        }
        const auto pixelsOf = [&](ZVCSSProperty property) {
            const auto* length = HtmlLengthValue::from(list->findValue(property));
            return length == nullptr ? 0 : wholePixels(*length, frame.fontSize);
        };
        frame.firstLineIndent += pixelsOf(PROPERTY_MARGIN_LEFT) + pixelsOf(PROPERTY_TEXT_INDENT);
        frame.leftIndent += pixelsOf(PROPERTY_MARGIN_LEFT);
        frame.rightIndent += pixelsOf(PROPERTY_MARGIN_RIGHT);
        if (list->contains(PROPERTY_FONT_FAMILY))
            noteFont(list->findValue(PROPERTY_FONT_FAMILY));
    }
    frames_.push_back(frame);
}

void PlainStyle::buildUndo(CssDeclarationList& list, CssDeclarationList& undo,
    std::uint32_t elementId, const BuildFrame& parent)
{
    for (const ZVCSSProperty property : orderOf(list)) {
        resolveLength(list, property, parent.fontSize);
        if (document_.initialStyle.contains(property))
            addUndo(*list.get(property), undo, elementId);
    }
}

void PlainStyle::addUndo(
    const CssDeclaration& declaration, CssDeclarationList& undo, std::uint32_t elementId)
{
    const ZVCSSProperty property = declaration.getProperty();
    const CssDeclaration& inForce = *document_.initialStyle.get(property);
    switch (property) {
    case PROPERTY_MARGIN_BOTTOM:
    case PROPERTY_MARGIN_LEFT:
    case PROPERTY_MARGIN_RIGHT:
    case PROPERTY_MARGIN_TOP:
    case PROPERTY_TEXT_INDENT:
        if (const auto* length = HtmlLengthValue::from(declaration.getValue()))
            putCopy(undo,
                CssDeclaration(property, document_.length(-length->pixels()), /*important=*/false,
                    /*edgeMargin=*/false));
        return;
    case PROPERTY_BACKGROUND_COLOR:
        putCopy(undo,
            CssDeclaration(
                property, background(elementId), /*important=*/false, /*edgeMargin=*/false));
        return;
    default:
        break;
    }
    CssDeclaration initial;
    if (isInherited(property)) {
        if (!inForce.equals(declaration, /*compareImportant=*/false))
            putCopy(undo, inForce);
    } else if (getInitialDeclaration(property, initial, /*useInitialStyle=*/0, document_.context)) {
        putCopy(undo, initial);
    }
}

void PlainStyle::putIntoForce(const CssDeclaration& declaration, std::uint32_t elementId)
{
    if (!document_.initialStyle.contains(declaration.getProperty()))
        return;
    if (declaration.getProperty() == PROPERTY_BACKGROUND_COLOR)
        background(elementId) = declaration.getValue();
    else
        putCopy(document_.initialStyle, declaration);
}

void PlainStyle::resolveLength(
    CssDeclarationList& list, ZVCSSProperty property, std::uint32_t fontSize)
{
    const CssDeclaration& declaration = *list.get(property);
    const auto* length = HtmlLengthValue::from(declaration.getValue());
    if (length == nullptr)
        return;
    putCopy(list,
        CssDeclaration(property, document_.length(lengthInPixels(*length, fontSize)),
            declaration.important, declaration.edgeMargin));
}

void PlainStyle::noteFont(const HtmlValue* value)
{
    std::string name = "Times New Roman";
    if (const auto* text = HtmlWStringValue::from(value))
        name.assign(text->text, text->text + text->length);
    name.resize(std::min(name.size(), name.find(',')));
    if (std::find(fonts_.begin(), fonts_.end(), name) == fonts_.end())
        fonts_.push_back(name);
}

HtmlValue*& PlainStyle::background(std::uint32_t elementId)
{
    HtmlFilterContext& context = document_.context;
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

void PlainStyle::leave(HtmlTreeNode& node)
{
    if (elementOf(node) == ELEMENT_NONE || frames_.empty())
        return;
    frames_.pop_back();
    HtmlTagNodeData& element = StyleDocument::tag(node);
    if (element.undoDeclarations == nullptr)
        return;
    const std::unique_ptr<CssDeclarationList> undo(element.undoDeclarations);
    element.undoDeclarations = nullptr;
    for (const ZVCSSProperty property : orderOf(*undo))
        putIntoForce(*undo->get(property), element.elementId);
}

} // namespace testing_support
