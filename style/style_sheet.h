#pragma once

#include "containers/array_list.h"
#include "containers/hash_map.h"
#include "filter/html_filter_context.h"
#include "support/html_names.h"

#include <cstdint>

/// The style context of one tree: owns every declaration list that was made for it.
class StyleSheet {
public:
    StyleSheet(ValueCache* values, HtmlFilterContext* filter);
    ~StyleSheet();
    StyleSheet(const StyleSheet&) = delete;
    StyleSheet& operator=(const StyleSheet&) = delete;

    /// Adds the rules of a sheet's text. Nothing happens for length 0.
    void parseStyleSheet(const char16_t* text, std::uint32_t length);

    /// Keeps a list until close. Owns it from the call on, also when the call fails.
    void keepNodeDeclarations(CssDeclarationList* list);
    void keepSavedDeclarations(CssDeclarationList* list);

    /// Deletes a list if it is the one that keepNodeDeclarations got last; answers whether.
    bool dropNodeDeclarations(const CssDeclarationList* list);

    /// The built-in declarations of an element, made on first use; null when it has none.
    CssDeclarationList* builtInDeclarations(std::uint32_t elementId);

    ValueCache* values; ///< borrowed from the context
    HtmlFilterContext* filter; ///< borrowed

private:
    zorvan::ArrayList<CssDeclarationList*> nodeDeclarations_;
    zorvan::ArrayList<CssDeclarationList*> savedDeclarations_;
    zorvan::HashMap<ZVHTMLElement, CssDeclarationList*> defaultDeclarations_;
};
