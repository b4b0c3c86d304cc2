#include "support/html_strings.h"

#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

using testing_support::tableRows;
using zorvan::HTMLStrings;

namespace {

struct NumberedName {
    std::uint32_t number;
    const char* name;
};

// The numbers that the filter goes by, written out: the tables themselves could be renumbered.
constexpr NumberedName kElements[] = {{1, "a"}, {2, "abbr"}, {3, "acronym"}, {4, "address"},
    {5, "applet"}, {6, "area"}, {7, "article"}, {8, "aside"}, {9, "audio"}, {10, "b"}, {11, "base"},
    {12, "basefont"}, {13, "bdi"}, {14, "bdo"}, {15, "bgsound"}, {16, "big"}, {17, "blockquote"},
    {18, "body"}, {19, "br"}, {20, "button"}, {21, "canvas"}, {22, "caption"}, {23, "center"},
    {24, "cite"}, {25, "code"}, {26, "col"}, {27, "colgroup"}, {28, "command"}, {29, "datalist"},
    {30, "dd"}, {31, "del"}, {32, "details"}, {33, "dfn"}, {34, "dialog"}, {35, "dir"}, {36, "div"},
    {37, "dl"}, {38, "dt"}, {39, "em"}, {40, "embed"}, {41, "fieldset"}, {42, "figcaption"},
    {43, "figure"}, {44, "font"}, {45, "footer"}, {46, "form"}, {47, "frame"}, {48, "frameset"},
    {49, "h1"}, {50, "h2"}, {51, "h3"}, {52, "h4"}, {53, "h5"}, {54, "h6"}, {55, "head"},
    {56, "header"}, {57, "hgroup"}, {58, "hr"}, {59, "html"}, {60, "i"}, {61, "iframe"},
    {62, "image"}, {63, "img"}, {64, "input"}, {65, "ins"}, {66, "isindex"}, {67, "kbd"},
    {68, "keygen"}, {69, "label"}, {70, "legend"}, {71, "lh"}, {72, "li"}, {73, "link"},
    {74, "listing"}, {75, "map"}, {76, "mark"}, {77, "marquee"}, {78, "math"}, {79, "menu"},
    {80, "meta"}, {81, "meter"}, {82, "nav"}, {83, "nobr"}, {84, "noembed"}, {85, "noframes"},
    {86, "noscript"}, {87, "object"}, {88, "ol"}, {89, "optgroup"}, {90, "option"}, {91, "output"},
    {92, "p"}, {93, "param"}, {94, "plaintext"}, {95, "pre"}, {96, "progress"}, {97, "q"},
    {98, "rp"}, {99, "rt"}, {100, "ruby"}, {101, "s"}, {102, "samp"}, {103, "script"},
    {104, "section"}, {105, "select"}, {106, "small"}, {107, "source"}, {108, "spacer"},
    {109, "span"}, {110, "strike"}, {111, "strong"}, {112, "style"}, {113, "sub"}, {114, "summary"},
    {115, "sup"}, {117, "svg"}, {118, "table"}, {119, "tbody"}, {120, "td"}, {121, "textarea"},
    {122, "tfoot"}, {123, "th"}, {124, "thead"}, {125, "time"}, {126, "title"}, {127, "tr"},
    {128, "track"}, {129, "tt"}, {130, "u"}, {131, "ul"}, {132, "var"}, {133, "video"},
    {134, "wbr"}, {135, "xmp"}};

constexpr NumberedName kAttributes[] = {{1, "abbr"}, {6, "align"}, {7, "alink"}, {8, "alt"},
    {13, "axis"}, {14, "background"}, {15, "bgcolor"}, {16, "border"}, {17, "bordercolor"},
    {18, "cellpadding"}, {19, "cellspacing"}, {23, "charset"}, {25, "cite"}, {26, "class"},
    {29, "color"}, {30, "cols"}, {31, "colspan"}, {33, "compact"}, {34, "content"}, {39, "coords"},
    {42, "datetime"}, {46, "dir"}, {54, "face"}, {64, "frame"}, {65, "frameborder"},
    {66, "framespacing"}, {68, "height"}, {71, "href"}, {73, "hspace"}, {74, "http-equiv"},
    {76, "id"}, {83, "label"}, {85, "link"}, {87, "longdesc"}, {99, "name"}, {100, "noshade"},
    {102, "nowrap"}, {183, "prompt"}, {188, "rel"}, {192, "rows"}, {193, "rowspan"}, {194, "rules"},
    {196, "scheme"}, {204, "selected"}, {209, "size"}, {212, "span"}, {214, "src"}, {218, "start"},
    {220, "style"}, {221, "summary"}, {224, "target"}, {225, "text"}, {226, "title"}, {229, "type"},
    {235, "valign"}, {236, "value"}, {237, "version"}, {238, "vlink"}, {239, "vspace"},
    {240, "width"}};

} // namespace

TEST(HtmlStrings, NumbersOfTheElements)
{
    for (const NumberedName& row : kElements)
        EXPECT_EQ(HTMLStrings::elementFromString(row.name), row.number) << row.name;
}

TEST(HtmlStrings, NumbersOfTheAttributesInUse)
{
    for (const NumberedName& row : kAttributes)
        EXPECT_EQ(HTMLStrings::attributeFromString(row.name), row.number) << row.name;
}

TEST(HtmlStrings, EveryElementBothWays)
{
    std::set<std::uint32_t> named;
    for (const auto& [number, name] : tableRows("elements.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        named.insert(id);
        EXPECT_EQ(HTMLStrings::elementFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(HTMLStrings::elementFromText((name + "x").c_str(), length), id) << name;
        EXPECT_EQ(HTMLStrings::elementName(id), name);
    }
    EXPECT_EQ(named.size(), 134u);
    for (std::uint32_t id = 0; id < 300; ++id) {
        if (!named.contains(id)) {
            EXPECT_STREQ(HTMLStrings::elementName(id), "") << id;
        }
    }
}

TEST(HtmlStrings, EveryAttributeBothWays)
{
    std::set<std::uint32_t> named;
    for (const auto& [number, name] : tableRows("attributes.tsv")) {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        named.insert(id);
        EXPECT_EQ(HTMLStrings::attributeFromString(name.c_str()), id) << name;
        const auto length = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(HTMLStrings::attributeFromText((name + "x").c_str(), length), id) << name;
        EXPECT_EQ(HTMLStrings::attributeName(id), name);
    }
    EXPECT_EQ(named.size(), 243u);
    EXPECT_STREQ(HTMLStrings::attributeName(0), "");
    EXPECT_STREQ(HTMLStrings::attributeName(0xFFFFFFFF), "");
}

TEST(HtmlStrings, NearMissesAreUnknown)
{
    for (const char* table : {"elements.tsv", "attributes.tsv"}) {
        std::set<std::string> names;
        for (const auto& [number, name] : tableRows(table))
            names.insert(name);
        for (const std::string& name : names) {
            for (const std::string& other :
                {name + "x", name.substr(1), name.substr(0, name.size() - 1), "x" + name}) {
                const bool element = std::string(table) == "elements.tsv";
                const std::uint32_t id = element
                    ? std::uint32_t{HTMLStrings::elementFromString(other.c_str())}
                    : std::uint32_t{HTMLStrings::attributeFromString(other.c_str())};
                EXPECT_EQ(id != 0, names.contains(other)) << other;
            }
        }
    }
}

TEST(HtmlStrings, UnknownNames)
{
    const std::string longName(100'000, 'a');
    for (const char* name : {"", "P", "TABLE", "td ", "nosuchelement", longName.c_str()}) {
        EXPECT_EQ(HTMLStrings::elementFromString(name), ELEMENT_NONE);
        EXPECT_EQ(HTMLStrings::attributeFromString(name), ATTRIBUTE_NONE);
    }
    EXPECT_EQ(HTMLStrings::elementFromString(nullptr), ELEMENT_NONE);
    EXPECT_EQ(HTMLStrings::attributeFromString(nullptr), ATTRIBUTE_NONE);
    // A zero inside counts as a character like any other.
    EXPECT_EQ(HTMLStrings::elementFromText("p\0", 2), ELEMENT_NONE);
    EXPECT_EQ(HTMLStrings::elementFromText(nullptr, 0), ELEMENT_NONE);
}
