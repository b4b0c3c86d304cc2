#include "style/shorthands.h"

#include "tests/style/value_tokens.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using testing_support::allKeywords;
using testing_support::Declarations;
using testing_support::DeclarationSheet;
using testing_support::declarationsIn;
using testing_support::declared;
using testing_support::expectedText;
using testing_support::orderOf;
using testing_support::partsOf;
using testing_support::propertyOf;
using testing_support::ValueTokens;
using testing_support::written;

namespace {

struct Row {
    const char* declaration;
    const char* longhands; ///< in the order in which they are declared
};

/// "red 1px" with a longhand in front of each, of a text like "color red; width 1px".
std::string forEachSide(std::string_view longhands)
{
    std::string all;
    for (const char* side : {"top", "right", "bottom", "left"}) {
        for (const std::string& each : partsOf(longhands, ';'))
            all += std::string("border-") + side + "-" + each + "; ";
    }
    return all;
}

/// The order in which a list hands out the properties when they are declared in this one.
std::vector<ZVCSSProperty> orderWhenDeclared(std::string_view longhands)
{
    DeclarationSheet sheet;
    for (const std::string& each : partsOf(longhands, ';'))
        sheet.list.set(propertyOf(each.substr(0, each.find(' '))), sheet.values.numberValue(1),
            /*important=*/false, /*edgeMargin=*/false);
    return orderOf(sheet.list);
}

void check(const std::string& declaration, const std::string& longhands)
{
    SCOPED_TRACE(declaration);
    DeclarationSheet sheet;
    sheet.apply(declaration);
    EXPECT_EQ(declarationsIn(sheet.list), written(longhands));
    EXPECT_EQ(orderOf(sheet.list), orderWhenDeclared(longhands));
}

template <std::size_t Count> void check(const Row (&rows)[Count])
{
    for (const Row& row : rows)
        check(row.declaration, row.longhands);
}

/// The longhands of a background, those not given as they are without a value.
std::string background(const std::string& color = "transparent", const std::string& image = "none",
    const std::string& repeat = "repeat", const std::string& attachment = "scroll",
    const std::string& position = "0px")
{
    return "background-color " + color + "; background-image " + image + "; background-repeat "
        + repeat + "; background-attachment " + attachment + "; background-position " + position;
}

const std::set<std::string> kBorderStyles = {
    "dashed", "dotted", "double", "groove", "hidden", "inset", "none", "outset", "ridge", "solid"};
const std::set<std::string> kBorderWidths = {"medium", "thick", "thin"};

} // namespace

TEST(Shorthands, Backgrounds)
{
    const std::string inherited = background("inherit", "inherit", "inherit", "inherit", "inherit");
    const std::pair<const char*, std::string> rows[] = {
        {"background: red", background("color ff")},
        {"background: url(a.png) no-repeat center",
            background("transparent", "\"url(a.png)\"", "no-repeat")},
        {"background: #fff url(a.png) 10px 20px", background("color ffffff", "\"url(a.png)\"")},
        {"background: none", ""},
        {"background: transparent", ""},
        {"background: foo", ""},
        {"background: red blue", ""},
        {"background: #fff #000", ""},
        {"background: red #000", ""},
        {"background: #fff rgb(0, 0, 0)", ""},
        {"background: rgb(0, 0, 255) fixed", background("color ff0000", "none", "repeat", "fixed")},
        {"background: rgba(0, 0, 0, 0.5)", ""},
        {"background: foo(1)", ""},
        {"background: fixed scroll fixed repeat-x repeat-y",
            background("transparent", "none", "repeat-y", "fixed")},
        {"background: url(a) url(b)", background("transparent", "\"url(a)\"")},
        {"background: top left bottom right", background()},
        {"background: 1em 2ex 3px 50% -4px 0 0", background()},
        {"background: , / 'x' 1deg", background()},
        {"background: inherit", inherited},
        {"background: red InHerit foo", inherited},
        {"background: 0 inherit", inherited},
        {"background: none inherit", ""},
        {"background: red none", ""},
    };
    for (const auto& [declaration, longhands] : rows)
        check(declaration, longhands);
}

TEST(Shorthands, BackgroundsOfEveryKeyword)
{
    for (const std::string& name : allKeywords()) {
        std::string longhands;
        if (std::set<std::string>{"bottom", "center", "left", "right", "top"}.count(name) != 0)
            longhands = background();
        else if (name == "fixed" || name == "scroll")
            longhands = background("transparent", "none", "repeat", name);
        else if (name == "no-repeat" || name.substr(0, 6) == "repeat")
            longhands = background("transparent", "none", name);
        else if (name == "inherit")
            longhands = background(name, name, name, name, name);
        else if (std::isdigit(name.front()) != 0)
            longhands = background(); // a number, which is ignored
        check("background: " + name, longhands);
    }
}

TEST(Shorthands, Borders)
{
    const std::string inherited = forEachSide("color inherit; style inherit; width inherit");
    const std::string nothing = forEachSide("color transparent; width medium");
    const std::pair<const char*, std::string> rows[] = {
        {"border: 1px solid red", forEachSide("color color ff; style solid; width 1px")},
        {"border: solid", forEachSide("color transparent; style solid; width medium")},
        {"border: none", forEachSide("color transparent; style none; width medium")},
        {"border: 1px solid foo", ""},
        {"border: 1px solid transparent", ""},
        {"border: 1px red", forEachSide("color color ff; width 1px")},
        {"border: 0", nothing},
        {"border: 50%", nothing},
        {"border: -1px", forEachSide("color transparent; width 1px")},
        {"border: 2em 3ex 4px", forEachSide("color transparent; width 2em")},
        {"border: thin 4px", forEachSide("color transparent; width thin")},
        {"border: 3ex thick", forEachSide("color transparent; width 3ex")},
        {"border: dashed dotted", forEachSide("color transparent; style dashed; width medium")},
        {"border: red blue", forEachSide("color color ff; width medium")},
        {"border: red foo", forEachSide("color color ff; width medium")},
        {"border: #f00", forEachSide("color color ff; width medium")},
        {"border: red #f00", ""},
        {"border: #f00 #0f0", ""},
        {"border: rgb(0, 0, 1) solid", forEachSide("color color 10000; style solid; width medium")},
        {"border: red rgb(0, 0, 1)", ""},
        // A function that is no color leaves room for one.
        {"border: rgba(0, 0, 0, 0.5) solid",
            forEachSide("color transparent; style solid; width medium")},
        {"border: rgba(0, 0, 0, 0.5) red", forEachSide("color color ff; width medium")},
        {"border: foo(1, red) solid", forEachSide("color color ff; style solid; width medium")},
        {"border: rgb(1, thin) red", forEachSide("color color ff; width medium")},
        {"border: rgb(1 thick thin) red", forEachSide("color color ff; width thin")},
        {"border: inherit", inherited},
        {"border: INHERIT 1px solid red foo", inherited},
        {"border: inherit #fff", ""},
        {"border: inherit rgb(1, 2, 3)", ""},
        {"border: solid inherit", ""},
        {"border: red inherit", forEachSide("color color ff; width medium")},
        {"border: url(x) 'y' , 1deg", nothing},
    };
    for (const auto& [declaration, longhands] : rows)
        check(declaration, longhands);
    EXPECT_EQ(declared("border: 1px solid red").size(), 12U);
}

TEST(Shorthands, BorderSides)
{
    for (const std::string side : {"top", "right", "bottom", "left"}) {
        const std::string longhand = "border-" + side;
        check(longhand + ": thin", longhand + "-color transparent; " + longhand + "-width thin");
        check(longhand + ": 2px dotted blue",
            longhand + "-color color ff0000; " + longhand + "-style dotted; " + longhand
                + "-width 2px");
        check(longhand + ": inherit",
            longhand + "-color inherit; " + longhand + "-style inherit; " + longhand
                + "-width inherit");
        check(longhand + ": foo", "");
    }
}

TEST(Shorthands, BordersOfEveryKeyword)
{
    for (const std::string& name : allKeywords()) {
        std::string longhands;
        if (kBorderStyles.count(name) != 0)
            longhands = forEachSide("color transparent; style " + name + "; width medium");
        else if (kBorderWidths.count(name) != 0)
            longhands = forEachSide("color transparent; width " + name);
        else if (name == "inherit")
            longhands = forEachSide("color inherit; style inherit; width inherit");
        else if (std::isdigit(name.front()) != 0)
            longhands = forEachSide("color transparent; width medium");
        check("border: " + name, longhands);
    }
}

TEST(Shorthands, BorderBoxes)
{
    const Row rows[] = {
        {"border-width: thin thick",
            "border-top-width thin; border-right-width thick; border-bottom-width thin; "
            "border-left-width thick"},
        {"border-width: 1px",
            "border-top-width 1px; border-right-width 1px; "
            "border-bottom-width 1px; border-left-width 1px"},
        {"border-width: 1em 2ex 3%",
            "border-top-width 1em; border-right-width 2ex; "
            "border-bottom-width 3%; border-left-width 2ex"},
        {"border-width: 0 1px", "border-right-width 1px; border-left-width 1px"},
        {"border-width: -1px", "border-right-width 1px; border-left-width 1px"},
        {"border-width: 1px 2px 3px 4px 5px", ""},
        {"border-width: Inherit 1px",
            "border-top-width inherit; border-right-width inherit; border-bottom-width inherit; "
            "border-left-width inherit"},
        {"border-width: 1px inherit",
            "border-top-width 1px; border-right-width inherit; "
            "border-bottom-width 1px; border-left-width inherit"},
        {"border-style: solid dashed dotted double none", ""},
        {"border-style: solid dashed dotted double",
            "border-top-style solid; border-right-style dashed; border-bottom-style dotted; "
            "border-left-style double"},
        {"border-style: foo solid", "border-right-style solid; border-left-style solid"},
        {"border-style: solid, dashed", "border-top-style solid; border-bottom-style dashed"},
        {"border-style: inherit",
            "border-top-style inherit; border-right-style inherit; "
            "border-bottom-style inherit; border-left-style inherit"},
        {"border-style: inherit 1 2 3 4 5",
            "border-top-style inherit; border-right-style inherit; border-bottom-style inherit; "
            "border-left-style inherit"},
        {"border-color: red",
            "border-top-color color ff; border-right-color color ff; "
            "border-bottom-color color ff; border-left-color color ff"},
        {"border-color: red #00f",
            "border-top-color color ff; border-right-color color ff0000; "
            "border-bottom-color color ff; border-left-color color ff0000"},
        {"border-color: rgb(1, 0, 0) rgb(2, 0, 0) rgb(3, 0, 0)",
            "border-top-color color 1; border-right-color color 2; border-bottom-color color 3; "
            "border-left-color color 2"},
        {"border-color: rgb(1, 0, 0) rgb(2, 0, 0) rgb(3, 0, 0) rgb(4, 0, 0)",
            "border-top-color color 1; border-right-color color 2; border-bottom-color color 3; "
            "border-left-color color 4"},
        {"border-color: red red red red red", ""},
        {"border-color: rgb(1, 0, 0) red red red red", ""},
        {"border-color: rgba(0, 0, 0, 0.5) red",
            "border-right-color color ff; border-left-color color ff"},
        // What is behind the token that spoils a function is read as slots.
        {"border-color: foo(1) red", "border-left-color color ff"},
        {"border-color: rgb(1 red, lime", "border-bottom-color color ff00"},
        {"border-color: transparent red",
            "border-right-color color ff; "
            "border-left-color color ff"},
        {"border-color: 1px 'x' red", "border-bottom-color color ff"},
        {"border-color: inherit",
            "border-top-color inherit; border-right-color inherit; "
            "border-bottom-color inherit; border-left-color inherit"},
        {"border-color: red inherit", "border-top-color color ff; border-bottom-color color ff"},
    };
    check(rows);
}

TEST(Shorthands, BorderBoxesOfEveryKeyword)
{
    for (const std::string& name : allKeywords()) {
        for (const char* part : {"style", "width"}) {
            // The names of weights are numbers, which are no widths.
            const bool isValue
                = std::string_view(part) == "style" || std::isdigit(name.front()) == 0;
            const std::string longhand = std::string(part) + " " + name;
            check(std::string("border-") + part + ":" + name,
                isValue ? forEachSide(longhand) : std::string());
        }
        check("border-color:" + name, name == "inherit" ? forEachSide("color inherit") : "");
    }
}

TEST(Shorthands, Margins)
{
    struct BoxRow {
        const char* value;
        std::vector<const char*> sides; ///< top, right, bottom, left; none for no declaration
    };
    const BoxRow rows[] = {
        {"0", {"0px", "0px", "0px", "0px"}},
        {"5", {"", "", "", ""}},
        {"-0", {"", "", "", ""}},
        {"00", {"", "", "", ""}},
        {"0.0", {"", "", "", ""}},
        {"1px 2px 3px 4px 5px", {"", "", "", ""}},
        {"1px 2px 3px 4px", {"1px", "2px", "3px", "4px"}},
        {"-1px -2em -3ex -4%", {"-1px", "-2em", "-3ex", "-4%"}},
        {"-1px", {"-1px", "-1px", "-1px", "-1px"}},
        {"- -1em", {"0px", "0px", "0px", "0px"}},
        {"auto", {"auto", "auto", "auto", "auto"}},
        {"0 auto", {"0px", "auto", "0px", "auto"}},
        {"1px 2", {"1px", "", "1px", ""}},
        {"1px 2px 3px", {"1px", "2px", "3px", "2px"}},
        {"foo 1px", {"", "1px", "", "1px"}},
        {"1px,", {"", "", "", ""}},
        {"1px - auto", {"", "", "", ""}},
        {"1px #123", {"", "", "", ""}},
        {"1px 1deg", {"", "", "", ""}},
        {"1px 'x'", {"", "", "", ""}},
        {"INHERIT", {"inherit", "inherit", "inherit", "inherit"}},
        {"inherit 1 2 3 4 # 5", {"inherit", "inherit", "inherit", "inherit"}},
        {"1px inherit", {"1px", "inherit", "1px", "inherit"}},
    };
    for (const char* box : {"margin", "padding"}) {
        for (const BoxRow& row : rows) {
            std::string longhands;
            const char* const sides[] = {"-top ", "-right ", "-bottom ", "-left "};
            for (std::size_t side = 0; side < 4; ++side) {
                if (*row.sides[side] != 0)
                    longhands += std::string(box) + sides[side] + row.sides[side] + "; ";
            }
            check(std::string(box) + ":" + row.value, longhands);
        }
    }
}

TEST(Shorthands, Fonts)
{
    const Row rows[] = {
        {"font: bold italic", "font-style italic; font-variant normal; font-weight bold"},
        {"font: bold", ""},
        {"font: 12px", ""},
        {"font: caption", ""},
        {"font: menu", ""},
        {"font: 'inherit'", ""},
        {"font: inherit",
            "font-style inherit; font-variant inherit; font-weight inherit; "
            "font-size inherit; font-family inherit"},
        {"font: italic bold 12px/30px Georgia, serif",
            "font-style italic; font-variant normal; font-weight bold; font-size 12px; "
            "line-height 30px; font-family \"Georgia\""},
        {"font: 12px Arial",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 12px; font-family \"Arial\""},
        {"font: 12px/1.5 Arial",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 12px; line-height number 1; font-family \"Arial\""},
        {"font: small-caps 900 oblique 2em 'Courier New'",
            "font-style oblique; font-variant small-caps; font-weight 900; font-size 2em; "
            "font-family \"Courier New\""},
        {"font: bold 100 italic oblique 1em x",
            "font-style oblique; font-variant normal; font-weight 100; font-size 1em; "
            "font-family \"x\""},
        {"font: bold normal 1em monospace",
            "font-style normal; font-variant normal; font-weight normal; font-size 1em; "
            "font-family \"Courier New\""},
        {"font: bold 12px",
            "font-style normal; font-variant normal; font-weight bold; "
            "font-size 12px"},
        {"font: 50%/120% x",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 50%; line-height 120%; font-family \"x\""},
        {"font: 1ex/normal x",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 1ex; line-height normal; font-family \"x\""},
        {"font: 1em/2ex",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 1em; line-height 2ex"},
        // A word that is no line height is none, and no error.
        {"font: 1em/foo x",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 1em; font-family \"x\""},
        {"font: 1em/'x' y", ""},
        {"font: 1em/-1px y", ""},
        {"font: 1em// y", ""},
        {"font: 1em/1deg y", ""},
        // Without a line height behind it the mark is a name.
        {"font: 1em /",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size 1em; font-family \"/\""},
        // Any keyword is a size.
        {"font: caption Arial",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size caption; font-family \"Arial\""},
        {"font: inherit Arial",
            "font-style normal; font-variant normal; font-weight normal; "
            "font-size inherit; font-family \"Arial\""},
        {"font: Arial 12px", ""},
        {"font: 12 Arial", ""},
        {"font: -12px Arial", ""},
        {"font: bold 'x'", ""},
        {"font: bold 450 x", ""},
    };
    check(rows);
}

TEST(Shorthands, FontsKeepTheLineHeight)
{
    DeclarationSheet sheet;
    sheet.apply("line-height: 20px");
    sheet.apply("font: 12px Arial");
    EXPECT_EQ(sheet.valueOf("line-height"), "20px");
    sheet.apply("font: inherit");
    EXPECT_EQ(sheet.valueOf("line-height"), "20px");
}

TEST(Shorthands, FontsOfEveryKeyword)
{
    const std::set<std::string> weights = {"100", "200", "300", "400", "500", "600", "700", "800",
        "900", "bold", "bolder", "lighter", "normal"};
    for (const std::string& name : allKeywords()) {
        const bool isStyle = name == "italic" || name == "oblique";
        const bool isVariant = name == "small-caps";
        const bool isWeight = weights.count(name) != 0;
        const bool isStart = isStyle || isVariant || isWeight;
        check("font: " + name + " 12px x",
            "font-style " + (isStyle ? name : "normal") + "; font-variant "
                + (isVariant ? name : "normal") + "; font-weight " + (isWeight ? name : "normal")
                + "; font-size " + (isStart ? "12px" : name) + "; font-family "
                + (isStart ? "\"x\"" : "\"12px\""));
    }
}

TEST(Shorthands, ListStyles)
{
    const Row rows[] = {
        {"list-style: square inside", "list-style-type square; list-style-position inside"},
        {"list-style: none", "list-style-type none"},
        {"list-style: url(x.gif)", "list-style-type disc; list-style-image \"url(x.gif)\""},
        {"list-style: url(a) outside url(b) circle inside lower-roman",
            "list-style-type lower-roman; list-style-position inside; "
            "list-style-image \"url(b)\""},
        {"list-style: foo 'x' 12px , #123 bold", "list-style-type disc"},
        {"list-style: inherit",
            "list-style-type inherit; list-style-position inherit; "
            "list-style-image inherit"},
        {"list-style: INHERIT square",
            "list-style-type inherit; list-style-position inherit; "
            "list-style-image inherit"},
        {"list-style: square inherit", "list-style-type square"},
    };
    check(rows);
}

TEST(Shorthands, ListStylesOfEveryKeyword)
{
    const std::set<std::string> types = {"armenian", "circle", "decimal", "decimal-leading-zero",
        "disc", "georgian", "lower-alpha", "lower-greek", "lower-latin", "lower-roman", "none",
        "square", "upper-alpha", "upper-latin", "upper-roman"};
    for (const std::string& name : allKeywords()) {
        std::string longhands
            = "list-style-type " + (types.count(name) != 0 ? name : std::string("disc"));
        if (name == "inside" || name == "outside")
            longhands += "; list-style-position " + name;
        if (name == "inherit")
            longhands = "list-style-type inherit; list-style-position inherit; "
                        "list-style-image inherit";
        check("list-style: " + name, longhands);
    }
}

TEST(Shorthands, ImportanceGoesToEveryLonghand)
{
    for (const char* declaration : {"background: red", "border: 1px solid red", "border-left: thin",
             "border-color: red", "border-style: solid", "border-width: 1px", "font: 1em/2 x",
             "list-style: square inside url(x)", "margin: 1px", "padding: 0"}) {
        const std::string_view text(declaration);
        const std::size_t colon = text.find(':');
        DeclarationSheet sheet;
        sheet.apply(text.substr(0, colon), text.substr(colon + 1), /*important=*/true);
        EXPECT_FALSE(sheet.list.isEmpty()) << declaration;
        for (const auto& [property, value] : declarationsIn(sheet.list))
            EXPECT_EQ(value.back(), '!') << declaration << " " << property;
    }
}

TEST(Shorthands, ErrorsLeaveWhatIsThere)
{
    for (const char* declaration : {"background: red blue", "border: foo", "border-top: red #123",
             "border-color: red red red red red", "border-style: foo", "border-width: 1",
             "font: 12px", "font: x y", "margin: 1px #1", "padding: 5"}) {
        DeclarationSheet sheet;
        sheet.apply("background: red fixed");
        sheet.apply("border: 1px solid red");
        sheet.apply("font: bold 12px/2 x");
        sheet.apply("margin: 1px");
        sheet.apply("padding: 2px");
        const Declarations before = declarationsIn(sheet.list);
        const std::vector<ZVCSSProperty> order = orderOf(sheet.list);
        sheet.apply(declaration);
        EXPECT_EQ(declarationsIn(sheet.list), before) << declaration;
        EXPECT_EQ(orderOf(sheet.list), order) << declaration;
    }
}

TEST(Shorthands, OtherPropertiesHaveNoEffect)
{
    DeclarationSheet sheet;
    ValueTokens tokens("red");
    applyShorthand(PROPERTY_COLOR, sheet.list, tokens.list, /*important=*/false, sheet.context);
    EXPECT_TRUE(sheet.list.isEmpty());
    EXPECT_EQ(declared("outline: 1px solid red"), Declarations());
}

TEST(Shorthands, LongValues)
{
    constexpr std::int32_t kCount = 200'000;
    for (const char* name : {"background", "border", "border-color", "border-style", "border-width",
             "font", "list-style", "margin", "padding"}) {
        for (const char* part : {"solid ", "rgba(", "rgb(1,", "url(a)", "-1px ", "fixed ", "- "}) {
            std::string value;
            for (std::int32_t i = 0; i < kCount; ++i)
                value += part;
            DeclarationSheet sheet;
            sheet.apply(name, value);
            EXPECT_LE(sheet.list.getCount(), 12) << name << ": " << part;
        }
    }
}
