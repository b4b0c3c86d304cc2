#include "tree/border_attributes.h"

#include "tests/tree/tag_reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using testing_support::appliedTo;
using testing_support::borderText;
using testing_support::sidesText;

const std::string kTableMargins = "margin-left: length:0px; margin-right: length:0px";

/// Sides by name, in the order of the alphabet, each with three declarations.
std::string someSides(
    const std::vector<std::string>& sides, const std::string& color, const std::string& width)
{
    std::string text;
    for (const std::string& side : sides) {
        const std::string name = "border-" + side;
        text += name + "-color: color:" + color + "; " + name + "-style: keyword:solid; " + name
            + "-width: length:" + width + "; ";
    }
    return text;
}

TEST(BorderAttributes, TableBorders)
{
    struct Row {
        const char* attributes;
        std::string expected;
    };
    const Row rows[] = {
        {"border=2", "border=length:2px | " + borderText("color:#000000", "length:2px")},
        {"border=0", "border=length:0px | " + borderText("color:#000000", "length:0px")},
        {"border=3 bordercolor=red",
            "border=length:3px bordercolor=color:#ff0000 | "
                + borderText("color:#ff0000", "length:3px")},
        {"bordercolor=red border=3",
            "border=length:3px bordercolor=color:#ff0000 | "
                + borderText("color:#ff0000", "length:3px")},
        {"bordercolor=red", "bordercolor=color:#ff0000 | " + sidesText("color", "color:#ff0000")},
        {"border=3 bordercolor=nocolor",
            "border=length:3px | " + borderText("color:#000000", "length:3px")},
        {"border=x bordercolor=#00f",
            "bordercolor=color:#0000ff | " + sidesText("color", "color:#0000ff")},
        {"border='5%'", "border=length:-5px | " + borderText("color:#000000", "length:-5px")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(appliedTo(std::string("<table ") + row.attributes + ">"),
            row.expected + "; " + kTableMargins)
            << row.attributes;
    for (const char* const nothing : {"border", "border=''", "border=x", "bordercolor=''"})
        EXPECT_EQ(appliedTo(std::string("<table ") + nothing + ">"), "| " + kTableMargins)
            << nothing;
}

struct FrameRow {
    const char* frame;
    std::uint32_t enumerator;
    std::vector<std::string> sides;
};

const FrameRow kFrames[] = {
    {"above", 1, {"top"}},
    {"below", 2, {"bottom"}},
    {"border", 3, {"bottom", "left", "right", "top"}},
    {"box", 4, {"bottom", "left", "right", "top"}},
    {"hsides", 5, {"bottom", "top"}},
    {"lhs", 6, {"left"}},
    {"rhs", 7, {"right"}},
    {"void", 8, {}},
    {"vsides", 9, {"left", "right"}},
};

TEST(BorderAttributes, FrameSides)
{
    for (const FrameRow& row : kFrames) {
        const std::string kept = "frame=enum:" + std::to_string(row.enumerator);
        EXPECT_EQ(appliedTo(std::string("<table frame=") + row.frame + ">"),
            kept + " | " + someSides(row.sides, "#000000", "1px") + kTableMargins)
            << row.frame;
        EXPECT_EQ(appliedTo(std::string("<table border=x frame=") + row.frame + ">"),
            kept + " | " + someSides(row.sides, "#000000", "1px") + kTableMargins)
            << row.frame;
    }
}

TEST(BorderAttributes, FrameSidesAreAsWideAsTheBorder)
{
    for (const FrameRow& row : kFrames) {
        for (const char* const order : {"border=4 frame=", "frame="}) {
            const std::string behind = order[0] == 'b' ? "" : " border=4";
            EXPECT_EQ(appliedTo(std::string("<table ") + order + row.frame + behind + ">"),
                "border=length:4px frame=enum:" + std::to_string(row.enumerator) + " | "
                    + borderText("color:#000000", "length:4px") + "; " + kTableMargins)
                << row.frame;
        }
    }
    EXPECT_EQ(appliedTo("<table border=0 frame=above>"),
        "border=length:0px frame=enum:1 | " + borderText("color:#000000", "length:0px") + "; "
            + kTableMargins);
}

TEST(BorderAttributes, FrameIsBlackWhateverTheBorderColor)
{
    for (const FrameRow& row : kFrames) {
        std::string expected
            = "bordercolor=color:#ff0000 frame=enum:" + std::to_string(row.enumerator) + " | ";
        for (const std::string side : {"bottom", "left", "right", "top"}) {
            const bool isFramed
                = std::find(row.sides.begin(), row.sides.end(), side) != row.sides.end();
            if (isFramed)
                expected += someSides({side}, "#000000", "1px");
            else
                expected += "border-" + side + "-color: color:#ff0000; ";
        }
        EXPECT_EQ(appliedTo(std::string("<table bordercolor=red frame=") + row.frame + ">"),
            expected + kTableMargins)
            << row.frame;
    }
}

TEST(BorderAttributes, FramesThatAreNone)
{
    for (const char* const frame : {"''", "all", "'box '", "1"})
        EXPECT_EQ(appliedTo(std::string("<table frame=") + frame + ">"), "| " + kTableMargins)
            << frame;
    EXPECT_EQ(appliedTo("<table frame=BOX>").substr(0, 13), "frame=enum:4 ");
}

struct OrderRow {
    const char* tag;
    ZVCSSProperty first; ///< declared first, so that it stands in front in the chain of both
    ZVCSSProperty second;
};

// Properties that share a chain of the list, in lists of 16 and of 32 buckets. An attribute's name
// comes in front of another one here in the table of handlers only.
const OrderRow kOrder[] = {
    // align, then bgcolor.
    {"<td bgcolor=red align=left>", PROPERTY_TEXT_ALIGN, PROPERTY_BACKGROUND_COLOR},
    {"<th bgcolor=red align=left>", PROPERTY_TEXT_ALIGN, PROPERTY_BACKGROUND_COLOR},
    {"<tr bgcolor=red align=left>", PROPERTY_TEXT_ALIGN, PROPERTY_BACKGROUND_COLOR},
    {"<tbody bgcolor=red align=left>", PROPERTY_TEXT_ALIGN, PROPERTY_BACKGROUND_COLOR},
    {"<tfoot bgcolor=red align=left>", PROPERTY_TEXT_ALIGN, PROPERTY_BACKGROUND_COLOR},
    {"<td valign=top width=5 height=6 bordercolor=red bgcolor=red align=left nowrap=1>",
        PROPERTY_TEXT_ALIGN, PROPERTY_BACKGROUND_COLOR},
    {"<tr dir=rtl valign=top height=6 bordercolor=red bgcolor=red align=left>", PROPERTY_TEXT_ALIGN,
        PROPERTY_BACKGROUND_COLOR},
    // bordercolor, then width and height.
    {"<td width=5 bordercolor=red>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<th width=5 bordercolor=red>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<table width=5 bordercolor=red>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<td height=6 bordercolor=red>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    {"<th height=6 bordercolor=red>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    {"<tr height=6 bordercolor=red>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    {"<table height=6 bordercolor=red>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    {"<td width=5 height=6 align=left valign=top bgcolor=red bordercolor=red>",
        PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<td width=5 height=6 align=left valign=top bgcolor=red bordercolor=red>",
        PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    // The borders and frame of a table, then its width and height.
    {"<table width=5 border=1>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<table height=6 border=1>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    {"<table width=5 frame=lhs>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<table height=6 frame=rhs>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    // What a frame declares once more has its place before them all the same.
    {"<table width=5 bordercolor=red frame=lhs>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    // The margins of a table, which every table has, then its borders.
    {"<table border=1>", PROPERTY_MARGIN_LEFT, PROPERTY_BORDER_TOP_STYLE},
    {"<table border=1>", PROPERTY_MARGIN_RIGHT, PROPERTY_BORDER_TOP_WIDTH},
    {"<table frame=above>", PROPERTY_MARGIN_LEFT, PROPERTY_BORDER_TOP_STYLE},
    {"<table frame=above>", PROPERTY_MARGIN_RIGHT, PROPERTY_BORDER_TOP_WIDTH},
    // The border of an image, then its height, hspace, vspace and width.
    {"<img width=5 border=1>", PROPERTY_BORDER_LEFT_COLOR, PROPERTY_WIDTH},
    {"<img height=5 border=1>", PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_HEIGHT},
    {"<img hspace=5 border=1>", PROPERTY_BORDER_TOP_STYLE, PROPERTY_MARGIN_LEFT},
    {"<img hspace=5 border=1>", PROPERTY_BORDER_TOP_WIDTH, PROPERTY_MARGIN_RIGHT},
    {"<img vspace=5 border=1>", PROPERTY_BORDER_BOTTOM_STYLE, PROPERTY_MARGIN_TOP},
};

/// Those of the two properties that the list has, in the list's order.
std::vector<ZVCSSProperty> orderOf(const CssDeclarationList& list, const OrderRow& row)
{
    std::vector<ZVCSSProperty> order;
    list.forEach([&](ZVCSSProperty property, const CssDeclaration*) {
        if (property == row.first || property == row.second)
            order.push_back(property);
    });
    return order;
}

TEST(BorderAttributes, DeclarationsComeInTheOrderOfTheHandlers)
{
    for (const OrderRow& row : kOrder) {
        SCOPED_TRACE(row.tag);
        testing_support::TagReading reading(std::string(row.tag) + "x");
        reading.apply();
        EXPECT_EQ(orderOf(reading.list, row), (std::vector<ZVCSSProperty>{row.first, row.second}));
        // Declared the other way round they would stand the other way round.
        HtmlValue* const value = reading.tree.values.numberValue(1);
        CssDeclarationList reversed(&reading.tree.values);
        reversed.set(row.second, value, /*important=*/false, /*edgeMargin=*/false);
        reversed.set(row.first, value, /*important=*/false, /*edgeMargin=*/false);
        for (const auto filler : {PROPERTY_ZOOM, PROPERTY_Z_INDEX, PROPERTY_WORD_SPACING,
                 PROPERTY_CLEAR, PROPERTY_CLIP, PROPERTY_CURSOR, PROPERTY_DISPLAY}) {
            if (reversed.getCapacity() < reading.list.getCapacity())
                reversed.set(filler, value, /*important=*/false, /*edgeMargin=*/false);
        }
        ASSERT_EQ(reversed.getCapacity(), reading.list.getCapacity());
        EXPECT_EQ(orderOf(reversed, row), (std::vector<ZVCSSProperty>{row.second, row.first}));
    }
}

TEST(BorderAttributes, OtherElements)
{
    struct Row {
        const char* tag;
        std::string expected;
    };
    const std::string red = "bordercolor=color:#ff0000 | " + sidesText("color", "color:#ff0000");
    const Row rows[] = {
        {"<td bordercolor=red>", red},
        {"<th bordercolor=red>", red},
        {"<tr bordercolor=red>", red},
        {"<td bordercolor=''>", ""},
        {"<td border=1>", ""},
        {"<img border=2>", "border=length:2px | " + borderText("color:#000000", "length:2px")},
        {"<img border=0>", "border=length:0px | " + borderText("color:#000000", "length:0px")},
        {"<img border=2 bordercolor=red>",
            "border=length:2px | " + borderText("color:#000000", "length:2px")},
        {"<img border=x>", ""},
        {"<img border>", ""},
        {"<iframe frameborder=1>",
            "frameborder=number:1 | " + borderText("color:#000000", "length:1px")},
        {"<iframe frameborder=YES>",
            "frameborder=number:1 | " + borderText("color:#000000", "length:1px")},
        {"<iframe frameborder=0>",
            "frameborder=number:0 | " + borderText("color:#000000", "length:0px")},
        {"<iframe frameborder=no>",
            "frameborder=number:0 | " + borderText("color:#000000", "length:0px")},
        {"<iframe frameborder='2'>",
            "frameborder=number:0 | " + borderText("color:#000000", "length:0px")},
        {"<iframe frameborder=''>",
            "frameborder=number:0 | " + borderText("color:#000000", "length:0px")},
        {"<iframe frameborder=1 bordercolor=red>",
            "bordercolor=color:#ff0000 frameborder=number:1 | "
                + borderText("color:#ff0000", "length:1px")},
        {"<iframe bordercolor=red>", "bordercolor=color:#ff0000"},
        {"<iframe frameborder>", ""},
        {"<frame frameborder=1 bordercolor=red>", "bordercolor=color:#ff0000 frameborder=number:1"},
        {"<frame frameborder=Yes>", "frameborder=number:1"},
        {"<frame frameborder=no>", "frameborder=number:0"},
        {"<frameset border=2 bordercolor=red>", "border=length:2px bordercolor=color:#ff0000"},
        {"<hr noshade=1>", "noshade=number:1 | " + sidesText("style", "keyword:solid")},
        {"<hr noshade=noshade>", "noshade=number:0 | " + sidesText("style", "keyword:solid")},
        {"<hr noshade=''>", "noshade=number:0 | " + sidesText("style", "keyword:solid")},
        {"<hr noshade='7%'>", "noshade=number:-7 | " + sidesText("style", "keyword:solid")},
        {"<hr noshade>", ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(appliedTo(row.tag), row.expected) << row.tag;
}

} // namespace
