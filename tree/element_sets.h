#pragma once

#include "support/html_names.h"

#include <array>
#include <cstdint>
#include <initializer_list>

// Sets of elements that more than one rule speaks of, by name.

/// A set of element ids, one bit for each.
class ElementSet {
public:
    constexpr ElementSet(std::initializer_list<std::uint32_t> members)
        : words_()
    {
        for (const std::uint32_t member : members)
            words_[member / kBits] |= std::uint64_t{1} << member % kBits;
    }

    /// False for every number that is no element.
    constexpr bool contains(std::uint32_t elementId) const
    {
        return elementId < kWords * kBits
            && (words_[elementId / kBits] >> elementId % kBits & 1) != 0;
    }

private:
    static constexpr std::uint32_t kBits = 64;
    static constexpr std::uint32_t kWords = 3;

    std::array<std::uint64_t, kWords> words_;
};

/// What ends the search for an open element.
constexpr auto kDefaultScopeStoppers
    = std::to_array<std::uint32_t>({ELEMENT_APPLET, ELEMENT_CAPTION, ELEMENT_HTML, ELEMENT_TABLE,
        ELEMENT_TD, ELEMENT_TH, ELEMENT_MARQUEE, ELEMENT_OBJECT, ELEMENT_TITLE});
constexpr auto kButtonScopeStoppers
    = std::to_array<std::uint32_t>({ELEMENT_APPLET, ELEMENT_CAPTION, ELEMENT_HTML, ELEMENT_TABLE,
        ELEMENT_TD, ELEMENT_TH, ELEMENT_MARQUEE, ELEMENT_OBJECT, ELEMENT_TITLE, ELEMENT_BUTTON});
constexpr auto kListItemScopeStoppers = std::to_array<std::uint32_t>(
    {ELEMENT_APPLET, ELEMENT_CAPTION, ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TD, ELEMENT_TH,
        ELEMENT_MARQUEE, ELEMENT_OBJECT, ELEMENT_TITLE, ELEMENT_OL, ELEMENT_UL});
constexpr auto kTableScopeStoppers = std::to_array<std::uint32_t>({ELEMENT_HTML, ELEMENT_TABLE});

/// Elements whose end tags may be left out where something else ends.
constexpr ElementSet kImpliedEndTagElements{ELEMENT_DD, ELEMENT_DT, ELEMENT_LI, ELEMENT_OPTGROUP,
    ELEMENT_OPTION, ELEMENT_P, ELEMENT_RP, ELEMENT_RT};

/// Elements in which misplaced content is put in front of the table.
constexpr ElementSet kFosterTargetElements{
    ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TFOOT, ELEMENT_THEAD, ELEMENT_TR};

/// Parts of tables: what these declare is the table's, not the paragraph's.
constexpr ElementSet kTableParts{ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TABLE, ELEMENT_TBODY,
    ELEMENT_TD, ELEMENT_TH, ELEMENT_TR};

/// Elements that an end tag without a rule of its own does not reach through.
constexpr ElementSet kSpecialElements{ELEMENT_ADDRESS, ELEMENT_APPLET, ELEMENT_AREA,
    ELEMENT_ARTICLE, ELEMENT_ASIDE, ELEMENT_BASE, ELEMENT_BASEFONT, ELEMENT_BGSOUND,
    ELEMENT_BLOCKQUOTE, ELEMENT_BODY, ELEMENT_BR, ELEMENT_BUTTON, ELEMENT_CAPTION, ELEMENT_CENTER,
    ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_COMMAND, ELEMENT_DD, ELEMENT_DETAILS, ELEMENT_DIR,
    ELEMENT_DIV, ELEMENT_DL, ELEMENT_DT, ELEMENT_EMBED, ELEMENT_FIELDSET, ELEMENT_FIGCAPTION,
    ELEMENT_FIGURE, ELEMENT_FOOTER, ELEMENT_FORM, ELEMENT_FRAME, ELEMENT_FRAMESET, ELEMENT_H1,
    ELEMENT_H2, ELEMENT_H3, ELEMENT_H4, ELEMENT_H5, ELEMENT_H6, ELEMENT_HEAD, ELEMENT_HEADER,
    ELEMENT_HGROUP, ELEMENT_HR, ELEMENT_HTML, ELEMENT_IFRAME, ELEMENT_IMG, ELEMENT_INPUT,
    ELEMENT_ISINDEX, ELEMENT_LI, ELEMENT_LINK, ELEMENT_LISTING, ELEMENT_MARQUEE, ELEMENT_MENU,
    ELEMENT_META, ELEMENT_NAV, ELEMENT_NOEMBED, ELEMENT_NOFRAMES, ELEMENT_NOSCRIPT, ELEMENT_OBJECT,
    ELEMENT_OL, ELEMENT_P, ELEMENT_PARAM, ELEMENT_PLAINTEXT, ELEMENT_PRE, ELEMENT_SCRIPT,
    ELEMENT_SECTION, ELEMENT_SELECT, ELEMENT_SOURCE, ELEMENT_STYLE, ELEMENT_SUMMARY, ELEMENT_TABLE,
    ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TEXTAREA, ELEMENT_TFOOT, ELEMENT_TH, ELEMENT_THEAD,
    ELEMENT_TITLE, ELEMENT_TR, ELEMENT_TRACK, ELEMENT_UL, ELEMENT_XMP};

constexpr bool IsImpliedEndTagElement(std::uint32_t elementId)
{
    return kImpliedEndTagElements.contains(elementId);
}

constexpr bool IsFosterTarget(std::uint32_t elementId)
{
    return kFosterTargetElements.contains(elementId);
}

constexpr bool IsSpecialElement(std::uint32_t elementId)
{
    return kSpecialElements.contains(elementId);
}
