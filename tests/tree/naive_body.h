#pragma once

#include "tests/common/tree_context.h"
#include "tree/element_sets.h"
#include "tree/insertion_modes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace testing_support {

using Elements = std::vector<std::uint32_t>;

/// The rules of the body for end tags and list items as walks down a stack of element ids, told a
/// second time for comparison. Rules that need more than the ids are left out: those of body, html,
/// form, br and the formatting elements.
class NaiveBody {
public:
    explicit NaiveBody(Elements openElements)
        : stack(std::move(openElements))
    {
    }

    int endTag(std::uint32_t id)
    {
        if (contains(kBlocks, id))
            return end(inScope(id, kDefault), id, ELEMENT_NONE, ANSWER_IGNORED);
        if (id == ELEMENT_P) {
            Elements stoppers = kDefault;
            stoppers.push_back(ELEMENT_BUTTON);
            const bool isOpen = inScope(id, stoppers);
            end(isOpen, id, id, ANSWER_AGAIN);
            if (!isOpen)
                stack.push_back(id);
            return isOpen ? ANSWER_USED : ANSWER_AGAIN;
        }
        if (id == ELEMENT_LI) {
            Elements stoppers = kDefault;
            stoppers.insert(stoppers.end(), {ELEMENT_OL, ELEMENT_UL});
            return end(inScope(id, stoppers), id, id, ANSWER_USED);
        }
        if (id == ELEMENT_DD || id == ELEMENT_DT)
            return end(inScope(id, kDefault), id, id, ANSWER_USED);
        if (id >= ELEMENT_H1 && id <= ELEMENT_H6)
            return end(inScope(id, kDefault), id, ELEMENT_NONE, ANSWER_USED);
        if (contains({ELEMENT_APPLET, ELEMENT_MARQUEE, ELEMENT_OBJECT}, id))
            return end(inScope(id, kDefault), id, ELEMENT_NONE, ANSWER_USED);
        return anyOtherEndTag(id);
    }

    int anyOtherEndTag(std::uint32_t id)
    {
        for (std::size_t i = stack.size(); i-- > 0;) {
            if (stack[i] == id) {
                implyEndTags(id);
                parseError |= stack.back() != id;
                stack.resize(i);
                return ANSWER_USED;
            }
            if (IsSpecialElement(stack[i])) {
                parseError = true;
                return ANSWER_IGNORED;
            }
        }
        return ANSWER_USED;
    }

    void startItem(std::uint32_t id)
    {
        const Elements names = id == ELEMENT_LI ? Elements{ELEMENT_LI, ELEMENT_LH}
                                                : Elements{ELEMENT_DD, ELEMENT_DT};
        for (std::size_t i = stack.size(); i-- > 0 && stack.size() > 1;) {
            const std::uint32_t open = stack[i];
            if (contains(names, open)) {
                endTag(open);
                break;
            }
            if (IsSpecialElement(open)
                && !contains({ELEMENT_ADDRESS, ELEMENT_DIV, ELEMENT_P}, open))
                break;
        }
        Elements stoppers = kDefault;
        stoppers.push_back(ELEMENT_BUTTON);
        if (inScope(ELEMENT_P, stoppers))
            endTag(ELEMENT_P);
        stack.push_back(id);
    }

    Elements stack;
    bool parseError = false;

private:
    static bool contains(const Elements& elements, std::uint32_t id)
    {
        return std::find(elements.begin(), elements.end(), id) != elements.end();
    }

    bool inScope(std::uint32_t id, const Elements& stoppers) const
    {
        for (std::size_t i = stack.size(); i-- > 0;) {
            if (stack[i] == id)
                return true;
            if (contains(stoppers, stack[i]))
                return false;
        }
        return false;
    }

    void implyEndTags(std::uint32_t except)
    {
        const Elements implied = {ELEMENT_DD, ELEMENT_DT, ELEMENT_LI, ELEMENT_OPTGROUP,
            ELEMENT_OPTION, ELEMENT_P, ELEMENT_RP, ELEMENT_RT};
        while (stack.back() != except && contains(implied, stack.back()))
            stack.pop_back();
    }

    int end(bool isOpen, std::uint32_t id, std::uint32_t except, int otherwise)
    {
        if (!isOpen) {
            parseError = true;
            return otherwise;
        }
        implyEndTags(except);
        parseError |= stack.back() != id;
        while (stack.back() != id)
            stack.pop_back();
        stack.pop_back();
        return ANSWER_USED;
    }

    const Elements kDefault = {ELEMENT_APPLET, ELEMENT_CAPTION, ELEMENT_HTML, ELEMENT_TABLE,
        ELEMENT_TD, ELEMENT_TH, ELEMENT_MARQUEE, ELEMENT_OBJECT, ELEMENT_TITLE};
    const Elements kBlocks = {ELEMENT_ADDRESS, ELEMENT_ARTICLE, ELEMENT_ASIDE, ELEMENT_BLOCKQUOTE,
        ELEMENT_BUTTON, ELEMENT_CENTER, ELEMENT_DETAILS, ELEMENT_DIALOG, ELEMENT_DIR, ELEMENT_DIV,
        ELEMENT_DL, ELEMENT_FIELDSET, ELEMENT_FIGCAPTION, ELEMENT_FIGURE, ELEMENT_FOOTER,
        ELEMENT_HEADER, ELEMENT_HGROUP, ELEMENT_LISTING, ELEMENT_MENU, ELEMENT_NAV, ELEMENT_OL,
        ELEMENT_PRE, ELEMENT_SECTION, ELEMENT_SUMMARY, ELEMENT_UL};
};

/// The stack of a tree as element ids, bottom first.
inline Elements openElementsOf(TreeContext& tree)
{
    Elements elements;
    for (const HtmlTreeNode* node : tree.openNodes())
        elements.push_back(elementOf(*node));
    return elements;
}

/// Makes these the open elements of a tree, whatever was open before.
inline void openOnly(const Elements& elements, TreeContext& tree)
{
    while (tree.stack().getCount() > 0)
        PopElement(tree.context);
    tree.context.parseError = 0;
    SetInsertionMode(InsertionMode::InBody, tree.context);
    for (const std::uint32_t element : elements) {
        const Token token = BareToken(element);
        InsertElement(&token, tree.context);
    }
}

/// Elements that some rule of the body treats as no other.
constexpr auto kTellingElements = std::to_array<std::uint32_t>({ELEMENT_ADDRESS, ELEMENT_APPLET,
    ELEMENT_B, ELEMENT_BUTTON, ELEMENT_CAPTION, ELEMENT_DD, ELEMENT_DIALOG, ELEMENT_DIV, ELEMENT_DT,
    ELEMENT_H2, ELEMENT_HTML, ELEMENT_LH, ELEMENT_LI, ELEMENT_MARQUEE, ELEMENT_OBJECT, ELEMENT_OL,
    ELEMENT_OPTGROUP, ELEMENT_OPTION, ELEMENT_P, ELEMENT_RP, ELEMENT_RT, ELEMENT_SPAN,
    ELEMENT_TABLE, ELEMENT_TD, ELEMENT_TH, ELEMENT_TITLE, ELEMENT_UL, ELEMENT_WBR});

} // namespace testing_support
