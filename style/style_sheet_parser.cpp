#include "style/css_declaration_list.h"
#include "style/declaration_builder.h"
#include "style/make_object.h"
#include "style/selector_reader.h"
#include "style/style_sheet.h"

#include <memory>

// How a style sheet is read. Nothing is an error here: what the steps below have no use for is
// skipped in fixed ways, which documents rely on.

namespace {

/// Deletes what a list points at, and empties it.
template <typename T> void deleteAll(zorvan::ArrayList<T*>& list)
{
    for (T* item : list)
        delete item;
    list.clear();
}

/// Deletes the selectors that have found no rule.
class PendingSelectors {
public:
    PendingSelectors() = default;
    PendingSelectors(const PendingSelectors&) = delete;
    PendingSelectors& operator=(const PendingSelectors&) = delete;
    ~PendingSelectors() { deleteAll(list); }

    zorvan::ArrayList<Selector*> list;
};

bool beginsSelector(std::int32_t kind)
{
    switch (kind) {
    case '*':
    case '.':
    case '[':
    case CSS_IDENT:
    case CSS_HASH:
        return true;
    default:
        return kind >= CSS_NOT && kind <= CSS_SELECTION;
    }
}

bool beginsAtRule(std::int32_t kind)
{
    switch (kind) {
    case CSS_IMPORT_SYM:
    case CSS_PAGE_SYM:
    case CSS_MEDIA_SYM:
    case CSS_CHARSET_SYM:
    case CSS_FONT_FACE_SYM:
    case CSS_ATKEYWORD:
        return true;
    default:
        return false;
    }
}

} // namespace

void StyleSheet::parseStyleSheet(const char16_t* text, std::uint32_t length)
{
    if (length == 0)
        return;
    tokenizer_.setInput(text, length);
    // QUIRK(StyleSheetParser.OneCommentMarkAtTheStart): anywhere else it is junk.
    CssToken token;
    tokenizer_.nextSkippingSpace(token);
    if (token.kind != CSS_CDO)
        tokenizer_.pushBack(token);
    PendingSelectors pending;
    parseRules(pending.list);
}

void StyleSheet::parseStyleAttribute(
    const char16_t* text, std::uint32_t length, CssDeclarationList& list)
{
    // Without memory for its text an attribute declares nothing.
    if (tokenizer_.trySetInput(text, length))
        parseDeclarationBlock(list);
}

void StyleSheet::parseRules(Selectors& pending)
{
    CssToken token;
    for (tokenizer_.next(token); token.kind != CSS_END; tokenizer_.next(token)) {
        if (token.kind == CSS_S)
            continue;
        if (beginsSelector(token.kind)) {
            tokenizer_.pushBack(token);
            parseSelectorList(pending);
        } else if (token.kind == '{') {
            parseRuleBlock(pending);
        } else if (beginsAtRule(token.kind)) {
            readPastAtRule();
        } else {
            // QUIRK(StyleSheetParser.StrayBraceTakesTheNextRule): the token itself, even a "}",
            // ends nothing.
            readPastBlock();
        }
    }
}

/// Reads the selectors of a rule. An error anywhere voids all that are pending.
void StyleSheet::parseSelectorList(Selectors& pending)
{
    if (!readSelectors(pending))
        return;
    deleteAll(pending);
    readPastBlock();
}

/// Answers true on an error.
bool StyleSheet::readSelectors(Selectors& pending)
{
    auto selector = makeObject<Selector>(++selectorCount_);
    const auto keep = [&] {
        pending.add(selector.get());
        selector.release();
    };
    CssToken token;
    for (tokenizer_.next(token); token.kind != CSS_END; tokenizer_.next(token)) {
        if (beginsSelector(token.kind)) {
            tokenizer_.pushBack(token);
            if (readSelector(*selector, tokenizer_))
                return true;
        } else if (token.kind == ',' || token.kind == '{') {
            if (selector->sequences.getCount() == 0)
                return true;
            if (token.kind == '{') {
                tokenizer_.pushBack(token);
                break;
            }
            keep();
            selector = makeObject<Selector>(++selectorCount_);
        }
    }
    keep();
    return false;
}

/// Reads the block of a rule, whose selectors are pending.
void StyleSheet::parseRuleBlock(Selectors& pending)
{
    auto list = makeObject<CssDeclarationList>(values, arena_);
    parseDeclarationBlock(*list);
    if (list->isEmpty()) {
        deleteAll(pending);
        return;
    }
    ruleDeclarations_.add(list.get());
    CssDeclarationList* const declarations = list.release();
    // With room for all of them, and the one more that adding sees to, none has two owners when
    // memory runs out.
    selectors_.ensureCapacity(selectors_.getCount() + pending.getCount() + 1);
    const std::int32_t first = selectors_.getCount();
    for (Selector* selector : pending) {
        selector->declarations = declarations;
        selectors_.add(selector);
    }
    pending.clear();
    for (std::int32_t i = first; i < selectors_.getCount(); ++i)
        index_.add(selectors_.get(i));
}

/// Reads declarations up to the "}" or the end of the text.
void StyleSheet::parseDeclarationBlock(CssDeclarationList& list)
{
    CssToken token;
    while (true) {
        tokenizer_.next(token);
        switch (token.kind) {
        case CSS_END:
        case ';': // QUIRK(StyleSheetParser.LoneSemicolonEndsTheBlock): the rest is outside of it.
        case '}':
            return;
        case CSS_S:
            break;
        case CSS_IDENT:
            readDeclaration(token, list);
            break;
        default:
            readPastBadDeclaration();
            break;
        }
    }
}

void StyleSheet::readDeclaration(const CssToken& name, CssDeclarationList& list)
{
    bool important = false;
    valueTokens_.clear();
    readValue(important);
    applyDeclaration(list, name, valueTokens_, important, *filter);
}

/// Reads what stands behind the name of a property into valueTokens_.
void StyleSheet::readValue(bool& important)
{
    CssToken token;
    tokenizer_.nextSkippingSpace(token);
    if (token.kind != ':') {
        // QUIRK(StyleSheetParser.NameWithoutColonCostsOneToken): the token is lost unless it ends
        // the block.
        if (token.kind == '}')
            tokenizer_.pushBack(token);
        return;
    }
    // Which closer closes which opener makes no difference, so their number is all there is to
    // know.
    std::uint32_t openBrackets = 0;
    for (tokenizer_.nextSkippingSpace(token); token.kind != CSS_END;
         tokenizer_.nextSkippingSpace(token)) {
        switch (token.kind) {
        case ';':
            if (openBrackets == 0)
                return;
            break;
        case '(':
        case CSS_BAD_URI:
        case CSS_FUNCTION:
        case '[':
        case '{':
            ++openBrackets;
            break;
        case '}':
            if (openBrackets == 0) {
                tokenizer_.pushBack(token);
                return;
            }
            --openBrackets;
            break;
        case ')':
        case ']':
            if (openBrackets != 0)
                --openBrackets;
            break;
        case CSS_IMPORTANT_SYM:
            // QUIRK(StyleSheetParser.ImportantCountsInFrontOfASemicolonOnly): in front of a "}" or
            // the end it is ignored.
            tokenizer_.nextSkippingSpace(token);
            if (token.kind == ';')
                important = true;
            tokenizer_.pushBack(token);
            continue;
        }
        valueTokens_.add(token);
    }
}

/// Reads past what is no declaration.
void StyleSheet::readPastBadDeclaration()
{
    CssToken token;
    do {
        tokenizer_.next(token);
    } while (token.kind != ';' && token.kind != '}' && token.kind != CSS_END);
    // QUIRK(StyleSheetParser.BadDeclarationTakesAToken): the token behind the ";" goes as well, and
    // a "}" does not end the block.
    if (token.kind == ';')
        tokenizer_.next(token);
}

/// Reads past an at-rule whose keyword has been read.
void StyleSheet::readPastAtRule()
{
    bool hasBlock = false;
    std::int32_t depth = 0;
    CssToken token;
    for (tokenizer_.next(token); token.kind != CSS_END; tokenizer_.next(token)) {
        if (token.kind == ';' && !hasBlock)
            return;
        if (token.kind == '{') {
            ++depth;
            hasBlock = true;
        } else if (token.kind == '}' && --depth == 0) {
            return;
        }
    }
}

/// Reads up to and with the next "}".
void StyleSheet::readPastBlock()
{
    CssToken token;
    do {
        tokenizer_.next(token);
    } while (token.kind != '}' && token.kind != CSS_END);
}
