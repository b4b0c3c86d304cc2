#pragma once

#include "filter/filter_internals.h"
#include "filter/html_filter_context.h"
#include "style/css_declaration_list.h"
#include "style/css_token_list.h"
#include "style/css_tokenizer.h"
#include "style/declaration_builder.h"
#include "support/css_strings.h"
#include "tests/style/style_document.h"
#include "tree/html_value.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// The tokens of a value, without white space.
class ValueTokens {
public:
    explicit ValueTokens(std::string_view text)
    {
        std::u16string units;
        for (const char each : text)
            units += static_cast<char16_t>(static_cast<std::uint8_t>(each));
        tokenizer_.setInput(units.data(), static_cast<std::uint32_t>(units.size()));
        CssToken token;
        for (tokenizer_.nextSkippingSpace(token); token.kind != CSS_END;
             tokenizer_.nextSkippingSpace(token))
            list.add(token);
    }
    ValueTokens(const ValueTokens&) = delete;
    ValueTokens& operator=(const ValueTokens&) = delete;

    const CssToken& at(std::int32_t index) const { return list.begin()[index]; }

    /// The texts of the tokens, joined by blanks; an "n" stands in front of those that are
    /// negative.
    std::string texts() const
    {
        std::string joined;
        for (const CssToken& token : list) {
            joined += joined.empty() ? "" : " ";
            joined += (token.isNegative ? "n" : "") + std::string(token.text, token.length);
        }
        return joined;
    }

    CssTokenList list;

private:
    CssTokenizer tokenizer_;
};

/// A list of declarations with the context that it takes to fill it.
class DeclarationSheet {
public:
    DeclarationSheet()
        : list(&values)
    {
        std::memset(&context, 0, sizeof context);
        context.valueCache = &values;
    }
    DeclarationSheet(const DeclarationSheet&) = delete;
    DeclarationSheet& operator=(const DeclarationSheet&) = delete;

    void apply(std::string_view name, std::string_view value, bool important = false)
    {
        CssToken token;
        token.kind = CSS_IDENT;
        token.text = name.data();
        token.length = static_cast<std::uint32_t>(name.size());
        ValueTokens tokens(value);
        applyDeclaration(list, token, tokens.list, important, context);
    }

    /// The same of a declaration as it stands in a style.
    void apply(std::string_view declaration)
    {
        const std::size_t colon = declaration.find(':');
        apply(declaration.substr(0, colon), declaration.substr(colon + 1));
    }

    /// The only value of a property as textOf has it, "none" when it is not declared.
    std::string valueOf(const std::string& name) const
    {
        const ZVCSSProperty property = propertyOf(name);
        return list.contains(property) ? textOf(list.get(property)->getValue()) : "none";
    }

    HtmlFilterContext context;
    ValueCache values;
    CssDeclarationList list;
};

/// What a list holds that has got this declaration and nothing else.
inline Declarations declared(std::string_view declaration)
{
    DeclarationSheet sheet;
    sheet.apply(declaration);
    return declarationsIn(sheet.list);
}

/// All keywords of CSS.
inline std::vector<std::string> allKeywords()
{
    std::vector<std::string> keywords;
    for (std::uint32_t id = 1; *zorvan::CSSStrings::valueName(id) != 0; ++id)
        keywords.emplace_back(zorvan::CSSStrings::valueName(id));
    return keywords;
}

} // namespace testing_support
