#pragma once

#include "style/cascade.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace htmltree {

/// Notes for each list that the cascade makes where its declarations come from.
class StyleOrigins : public CascadeObserver {
public:
    void onCascade(const HtmlTreeNode& node, const CascadeSources& sources) override;
    void onCascaded(const CssDeclarationList& result) override;

    /// A list as it stands now, one line for each declaration, in its order:
    /// `property: value [origin]`. Where the value has changed since the cascade, the old one and
    /// ` => ` stand in front of it. Null is an empty list.
    std::vector<std::string> linesOf(const CssDeclarationList* declarations) const;

private:
    /// A declaration as the cascade took it over.
    struct Origin {
        std::string source;
        std::string value;
        bool isImportant = false;
    };
    using Origins = std::unordered_map<ZVCSSProperty, Origin>;

    void addSource(const CssDeclarationList* declarations, const std::string& source);
    void addSwapped(const CssDeclarationList& builtIn);
    void add(ZVCSSProperty property, const CssDeclaration& declaration, const std::string& source);

    Origins current_; // of the element whose cascade is under way
    std::unordered_map<const CssDeclarationList*, Origins> lists_;
};

} // namespace htmltree
