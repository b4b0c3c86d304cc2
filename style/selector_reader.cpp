#include "style/selector_reader.h"

#include "style/make_object.h"

#include <memory>

namespace {

constexpr std::uint32_t kQuotes = 2;
constexpr std::uint32_t kNoLength = 0;

using SimpleSelectorPointer = std::unique_ptr<SimpleSelector>;

bool endsSelector(std::int32_t kind) { return kind == CSS_END || kind == ',' || kind == '{'; }

bool isPseudoClass(std::int32_t kind) { return kind >= CSS_LANG && kind <= CSS_CHECKED; }

bool isPseudoElement(std::int32_t kind)
{
    return kind >= CSS_FIRST_LETTER && kind <= CSS_SELECTION;
}

bool isCombinator(std::int32_t kind)
{
    return kind == CSS_S || kind == '+' || kind == '>' || kind == '~';
}

SimpleSelectorPointer makeElement(const CssToken& name)
{
    return makeObject<ElementSelector>(name.text, name.length);
}

/// The id behind the "#".
SimpleSelectorPointer makeId(const CssToken& hash)
{
    return makeObject<SimpleSelector>(SELECTOR_ID, hash.text + 1, hash.length - 1);
}

/// A class, from what stands behind the "."; null for anything but a name.
SimpleSelectorPointer makeClass(const CssToken& name)
{
    if (name.kind != CSS_IDENT)
        return nullptr;
    return makeObject<SimpleSelector>(SELECTOR_CLASS, name.text, name.length);
}

/// A pseudo-class with the arguments that it has; null when they don't end. Nothing that takes
/// arguments ever matches, so they aren't kept.
SimpleSelectorPointer readPseudoClass(std::int32_t kind, CssTokenizer& tokens)
{
    if (kind >= CSS_LANG && kind <= CSS_NTH_LAST_OF_TYPE) {
        CssToken argument;
        do {
            tokens.nextSkippingSpace(argument);
            if (argument.kind == CSS_END)
                return nullptr;
        } while (argument.kind != ')');
    }
    return makeObject<PseudoClassSelector>(kind);
}

/// 0 for what is no operator.
std::int32_t operatorOf(std::int32_t kind)
{
    switch (kind) {
    case ']':
        return OPERATOR_PRESENT;
    case '=':
        return OPERATOR_EQUALS;
    case CSS_INCLUDES:
        return OPERATOR_INCLUDES;
    case CSS_DASHMATCH:
        return OPERATOR_DASH_MATCH;
    case CSS_PREFIXMATCH:
        return OPERATOR_PREFIX;
    case CSS_SUFFIXMATCH:
        return OPERATOR_SUFFIX;
    case CSS_SUBSTRINGMATCH:
        return OPERATOR_SUBSTRING;
    default:
        return 0;
    }
}

/// An attribute selector, behind its "["; null when it is none, with what was read of it gone.
SimpleSelectorPointer readAttribute(CssTokenizer& tokens)
{
    CssToken name;
    tokens.nextSkippingSpace(name);
    if (name.kind != CSS_IDENT)
        return nullptr;
    CssToken token;
    tokens.nextSkippingSpace(token);
    const std::int32_t number = operatorOf(token.kind);
    if (number == 0)
        return nullptr;
    const auto comparison = static_cast<AttributeOperator>(number);
    if (comparison == OPERATOR_PRESENT)
        return makeObject<AttributeSelector>(name, comparison, nullptr, kNoLength);

    CssToken value;
    tokens.nextSkippingSpace(value);
    if (value.kind != CSS_STRING && value.kind != CSS_IDENT)
        return nullptr;
    if (value.kind == CSS_STRING) {
        ++value.text;
        value.length -= kQuotes;
    }
    tokens.nextSkippingSpace(token);
    if (token.kind != ']')
        return nullptr;
    return makeObject<AttributeSelector>(name, comparison, value.text, value.length);
}

/// The argument of a negation, which a token begins; null when it is none.
SimpleSelectorPointer readArgument(const CssToken& first, CssTokenizer& tokens)
{
    if (isPseudoClass(first.kind))
        return readPseudoClass(first.kind, tokens);
    switch (first.kind) {
    case CSS_IDENT:
        return makeElement(first);
    case '*':
        return makeObject<SimpleSelector>(SELECTOR_UNIVERSAL, nullptr, kNoLength);
    case CSS_HASH:
        return makeId(first);
    case '[':
        return readAttribute(tokens);
    case '.': {
        CssToken name;
        tokens.nextSkippingSpace(name);
        return makeClass(name);
    }
    default:
        return nullptr;
    }
}

/// A negation, behind its ":not("; null when it is none.
SimpleSelectorPointer readNegation(CssTokenizer& tokens)
{
    CssToken token;
    tokens.nextSkippingSpace(token);
    SimpleSelectorPointer argument = readArgument(token, tokens);
    // Behind an argument that gave nothing a token is read all the same.
    tokens.nextSkippingSpace(token);
    if (argument == nullptr || token.kind != ')')
        return nullptr;
    argument->negated = true;
    return argument;
}

/// The combinator that comes next; of several the last one counts.
Combinator readCombinator(CssTokenizer& tokens)
{
    Combinator combinator = COMBINATOR_NONE;
    CssToken token;
    while (true) {
        tokens.next(token);
        switch (token.kind) {
        case '>':
            combinator = COMBINATOR_CHILD;
            continue;
        case '+':
            combinator = COMBINATOR_ADJACENT_SIBLING;
            continue;
        case '~':
            combinator = COMBINATOR_GENERAL_SIBLING;
            continue;
        case CSS_S:
            if (combinator == COMBINATOR_NONE)
                combinator = COMBINATOR_DESCENDANT;
            continue;
        }
        tokens.pushBack(token);
        if (endsSelector(token.kind) && combinator == COMBINATOR_DESCENDANT)
            return COMBINATOR_NONE;
        return combinator;
    }
}

/// What reading a token has done.
enum class Progress { GoesOn, Ends, Fails };

/// Reads a selector, sequence by sequence.
class Reader {
public:
    Reader(Selector& selector, CssTokenizer& tokens)
        : selector_(selector)
        , tokens_(tokens)
        , current_(makeObject<SimpleSelectorSequence>())
    {
    }

    bool read()
    {
        Progress progress = Progress::GoesOn;
        CssToken token;
        while (progress == Progress::GoesOn) {
            tokens_.next(token);
            progress = take(token);
        }
        if (current_->selectors.getCount() != 0)
            selector_.add(std::move(current_));
        return progress == Progress::Fails;
    }

private:
    Progress take(const CssToken& token)
    {
        if (isCombinator(token.kind))
            return beginSequence(token);
        if (isPseudoClass(token.kind))
            return add(readPseudoClass(token.kind, tokens_));
        if (isPseudoElement(token.kind))
            return takePseudoElement(token.kind);
        switch (token.kind) {
        case '*':
            // QUIRK(SelectorReader.StarIsDropped): it leaves no trace, so "*" alone is no selector
            // and "div *" means the div.
            return current_->selectors.getCount() != 0 ? Progress::Fails : Progress::GoesOn;
        case ',':
        case '{':
            tokens_.pushBack(token);
            return Progress::Ends;
        case '.': {
            CssToken name;
            tokens_.next(name);
            return add(makeClass(name));
        }
        case '[':
            return add(readAttribute(tokens_));
        case CSS_IDENT:
            current_->universal = false;
            return add(makeElement(token));
        case CSS_HASH:
            return add(makeId(token));
        case CSS_NOT:
            return add(readNegation(tokens_));
        default:
            return Progress::Fails;
        }
    }

    /// Null adds nothing and is no error.
    Progress add(SimpleSelectorPointer selector)
    {
        if (selector != nullptr)
            current_->add(std::move(selector));
        return Progress::GoesOn;
    }

    Progress beginSequence(const CssToken& token)
    {
        tokens_.pushBack(token);
        const Combinator combinator = readCombinator(tokens_);
        // White space at the end joins nothing, not even an empty sequence.
        if (combinator == COMBINATOR_NONE)
            return Progress::GoesOn;
        auto next = makeObject<SimpleSelectorSequence>();
        next->combinator = combinator;
        // QUIRK(SelectorReader.EmptySequencesCount): what stands in front of a combinator is a
        // sequence even when nothing does, and matches everything.
        selector_.add(std::move(current_));
        current_ = std::move(next);
        return Progress::GoesOn;
    }

    Progress takePseudoElement(std::int32_t kind)
    {
        if (selector_.pseudoElement != 0)
            return Progress::Fails;
        selector_.pseudoElement = kind;
        return Progress::GoesOn;
    }

    Selector& selector_;
    CssTokenizer& tokens_;
    std::unique_ptr<SimpleSelectorSequence> current_; ///< not in the selector yet
};

} // namespace

bool readSelector(Selector& selector, CssTokenizer& tokens)
{
    return Reader(selector, tokens).read();
}
