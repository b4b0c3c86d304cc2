#pragma once

#include "containers/arena.h"
#include "containers/array_list.h"
#include "containers/hash_map.h"
#include "filter/html_filter_context.h"
#include "style/css_token_list.h"
#include "style/css_tokenizer.h"
#include "style/selector_index.h"
#include "style/shared_declarations.h"
#include "support/html_names.h"

#include <cstdint>
#include <memory>

/// The style context of one tree: its rules, and every declaration list that was made for it.
class StyleSheet {
public:
    StyleSheet(ValueCache* values, HtmlFilterContext* filter);
    ~StyleSheet();
    StyleSheet(const StyleSheet&) = delete;
    StyleSheet& operator=(const StyleSheet&) = delete;

    /// Adds the rules of a sheet's text. Nothing happens for length 0.
    void parseStyleSheet(const char16_t* text, std::uint32_t length);

    /// Adds to a list what the text of a style attribute declares.
    void parseStyleAttribute(const char16_t* text, std::uint32_t length, CssDeclarationList& list);

    /// Whether any rule can mean an element.
    bool hasRules() const { return !index_.isEmpty(); }

    /// Tells of an element in the making, whose kind the rules may ask for from now on. Once one
    /// has been told, all have to be, but for clones.
    void noteElement(std::uint32_t elementId) { index_.noteElement(elementId); }

    /// The selectors that mean an element, in ascending order, good until the next call.
    const zorvan::ArrayList<Selector*>& findMatches(
        const HtmlTreeNode& node, const HtmlTreeNode* root)
    {
        return index_.findMatches(node, root);
    }

    /// Where the declarations of lists lie that are kept until close.
    zorvan::Arena& arena() { return arena_; }

    /// Keeps a list until close. Owns it from the call on, also when the call fails.
    void keepNodeDeclarations(CssDeclarationList* list);
    void keepSavedDeclarations(CssDeclarationList* list);

    /// Deletes a list if it is the one that keepNodeDeclarations got last; answers whether.
    bool dropNodeDeclarations(const CssDeclarationList* list);

    /// The built-in declarations of an element, made on first use; null when it has none.
    CssDeclarationList* builtInDeclarations(std::uint32_t elementId);

    /// The lists that elements with the same rules share.
    SharedDeclarations& sharedDeclarations() { return sharedDeclarations_; }

    ValueCache* values; ///< borrowed from the context
    HtmlFilterContext* filter; ///< borrowed

private:
    using Selectors = zorvan::ArrayList<Selector*>;

    void parseRules(Selectors& pending);
    void parseSelectorList(Selectors& pending);
    void parseRuleBlock(Selectors& pending);
    void parseDeclarationBlock(CssDeclarationList& list);
    bool readSelectors(Selectors& pending);
    void readDeclaration(const CssToken& name, CssDeclarationList& list);
    void readValue(bool& important);
    void readPastBadDeclaration();
    void readPastAtRule();
    void readPastBlock();

    zorvan::Arena arena_;
    CssTokenizer tokenizer_;
    CssTokenList valueTokens_; // of the declaration that is read
    Selectors selectors_; // owned
    SelectorIndex index_;
    SharedDeclarations sharedDeclarations_;
    std::int32_t selectorCount_ = 0; // selectors made, discarded ones included
    zorvan::ArrayList<CssDeclarationList*> ruleDeclarations_;
    zorvan::ArrayList<CssDeclarationList*> nodeDeclarations_;
    zorvan::ArrayList<CssDeclarationList*> savedDeclarations_;
    zorvan::HashMap<ZVHTMLElement, CssDeclarationList*> defaultDeclarations_;
};
