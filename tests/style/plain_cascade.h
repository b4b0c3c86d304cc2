#pragma once

#include "style/selector.h"
#include "tests/style/sheet_document.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// Style in the plainest form: each element has a list of its own, into which all that speaks for
/// it is merged step by step; each change of a list takes a declaration out and puts another one
/// in. What the sheet, the cascade and the entering and leaving of elements must come to, the order
/// of all lists included.
class PlainStyle {
public:
    /// document: whose tree, values, styles in force and fonts this works on, in place of its
    /// sheet.
    explicit PlainStyle(StyleDocument& document)
        : document_(document)
    {
    }
    PlainStyle(const PlainStyle&) = delete;
    PlainStyle& operator=(const PlainStyle&) = delete;

    void parseStyleSheet(std::string_view text);

    /// Cascades a new element and enters it.
    void enter(HtmlTreeNode& node);
    void leave(HtmlTreeNode& node);

    const std::vector<BuildFrame>& frames() const { return frames_; }
    const std::vector<std::string>& fonts() const { return fonts_; }

private:
    using Lists = std::vector<std::unique_ptr<CssDeclarationList>>;
    using Selectors = std::vector<std::unique_ptr<Selector>>;

    CssDeclarationList& makeList();

    void readRules();
    void readSelectorList(Selectors& pending);
    bool readSelectors(Selectors& pending);
    void readRuleBlock(Selectors& pending);
    void readBlock(CssDeclarationList& list);
    void readDeclaration(const CssToken& name, CssDeclarationList& list);
    void readBadDeclaration();
    void readAtRule();
    void readJunk();

    CssDeclarationList* cascade(HtmlTreeNode& node);
    void readStyleAttribute(const HtmlTagNodeData& element, CssDeclarationList& list);
    CssDeclarationList* builtInOf(std::uint32_t elementId);
    CssDeclarationList* builtInFor(std::uint32_t elementId, const CssDeclarationList& result);
    void resolveInherit(CssDeclarationList& list);

    void enterStyle(HtmlTreeNode& node);
    void buildUndo(CssDeclarationList& list, CssDeclarationList& undo, std::uint32_t elementId,
        const BuildFrame& parent);
    void addUndo(
        const CssDeclaration& declaration, CssDeclarationList& undo, std::uint32_t elementId);
    void putIntoForce(const CssDeclaration& declaration, std::uint32_t elementId);
    void resolveLength(CssDeclarationList& list, ZVCSSProperty property, std::uint32_t fontSize);
    void noteFont(const HtmlValue* value);
    HtmlValue*& background(std::uint32_t elementId);

    StyleDocument& document_;
    CssTokenizer tokens_;
    std::int32_t selectorCount_ = 0;
    Selectors selectors_; // ascending
    Lists lists_;
    std::map<std::uint32_t, CssDeclarationList*> builtIn_;
    std::vector<BuildFrame> frames_; // the newest last
    std::vector<std::string> fonts_;
};

} // namespace testing_support
