#include "tree/attribute_rules.h"

#include "filter/filter_internals.h"
#include "support/process_heap.h"
#include "tests/tree/tag_reading.h"
#include "tree/enum_from_string.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>

namespace {

using testing_support::TagReading;
using testing_support::TreeContext;

/// What one rule makes of a tag.
std::string ruled(const std::string& tag, const AttributeRule& rule)
{
    TagReading reading(tag + "x");
    ApplyRules(*reading.payload, {&rule, 1}, AttributeSet(reading.context), reading.context);
    return reading.text();
}

TEST(AttributeRules, SetOfATag)
{
    TagReading reading("<p align=left width height='' title=x xmlns=y unknown=z>x");
    const AttributeSet present(reading.context);
    EXPECT_FALSE(present.isEmpty());
    for (std::uint32_t id = 0; id < 256; ++id) {
        const bool isThere = id == ATTRIBUTE_ALIGN || id == ATTRIBUTE_HEIGHT
            || id == ATTRIBUTE_TITLE || id == ATTRIBUTE_XMLNS;
        EXPECT_EQ(present.contains(static_cast<ZVHTMLAttribute>(id)), isThere) << id;
    }
    EXPECT_TRUE(AttributeSet(TagReading("<p>x").context).isEmpty());
    EXPECT_TRUE(AttributeSet(TagReading("<p width height unknown=z>x").context).isEmpty());
}

TEST(AttributeRules, EveryAttributeFitsTheSet)
{
    TagReading reading("<p>x");
    HtmlFilterContext& context = reading.context;
    for (std::uint32_t id = 1; id <= ATTRIBUTE_XMLNS; ++id) {
        context.tagAttributes[0] = {id, 1};
        context.tagAttributeCount = 1;
        const AttributeSet present(context);
        for (std::uint32_t other = 0; other < 256; ++other)
            EXPECT_EQ(present.contains(static_cast<ZVHTMLAttribute>(other)), id == other);
    }
}

TEST(AttributeRules, ApplyRulesInTheirOrder)
{
    TagReading reading("<p title=a align=left id=b>x");
    const AttributeRule rules[] = {
        {ATTRIBUTE_ALIGN, KeepText, PROPERTY_FONT_FAMILY},
        {ATTRIBUTE_CLASS, KeepText, PROPERTY_FONT_FAMILY},
        {ATTRIBUTE_ID, KeepText, PROPERTY_FONT_FAMILY, PROPERTY_BACKGROUND_IMAGE},
    };
    ApplyRules(*reading.payload, rules, AttributeSet(reading.context), reading.context);
    EXPECT_EQ(
        reading.text(), "align=\"left\" id=\"b\" | background-image: \"b\"; font-family: \"b\"");
}

struct RuleRow {
    const char* tag;
    AttributeRule rule;
    const char* expected;
};

const RuleRow kRows[] = {
    {"<p title=a>", {ATTRIBUTE_TITLE, KeepText}, "title=\"a\""},
    {"<p title=''>", {ATTRIBUTE_TITLE, KeepText}, "title=\"\""},
    {"<p title>", {ATTRIBUTE_TITLE, KeepText}, ""},
    {"<p title=a>", {ATTRIBUTE_TITLE, KeepText, PROPERTY_FONT_FAMILY},
        "title=\"a\" | font-family: \"a\""},
    {"<p cols=5>", {ATTRIBUTE_COLS, KeepNumber}, "cols=number:5"},
    {"<p cols='5%'>", {ATTRIBUTE_COLS, KeepNumber}, "cols=number:-5"},
    {"<p cols=x>", {ATTRIBUTE_COLS, KeepNumber}, ""},
    {"<p cols=''>", {ATTRIBUTE_COLS, KeepNumber}, ""},
    {"<p compact=0>", {ATTRIBUTE_COMPACT, KeepMark}, "compact=number:1"},
    {"<p compact=''>", {ATTRIBUTE_COMPACT, KeepMark}, "compact=number:1"},
    {"<p compact>", {ATTRIBUTE_COMPACT, KeepMark}, ""},
    {"<p hspace=5>", {ATTRIBUTE_HSPACE, KeepLength, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT},
        "hspace=length:5px | margin-left: length:5px; margin-right: length:5px"},
    {"<p hspace='5%'>", {ATTRIBUTE_HSPACE, KeepLength, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT},
        "hspace=length:-5px | margin-left: length:-5px; margin-right: length:-5px"},
    {"<p hspace=x>", {ATTRIBUTE_HSPACE, KeepLength, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT},
        ""},
    {"<p color=red>", {ATTRIBUTE_COLOR, KeepColor, PROPERTY_COLOR},
        "color=color:#ff0000 | color: color:#ff0000"},
    {"<p color=red>", {ATTRIBUTE_COLOR, KeepColor}, "color=color:#ff0000"},
    {"<p color=''>", {ATTRIBUTE_COLOR, KeepColor, PROPERTY_COLOR}, ""},
    {"<p color=inherit>", {ATTRIBUTE_COLOR, KeepColor, PROPERTY_COLOR}, ""},
    {"<p type=file>", {ATTRIBUTE_TYPE, KeepEnumerator<EInputTypeFromString>}, "type=enum:3"},
    {"<p type=x>", {ATTRIBUTE_TYPE, KeepEnumerator<EInputTypeFromString>}, ""},
    {"<p type=''>", {ATTRIBUTE_TYPE, KeepEnumerator<EInputTypeFromString>}, ""},
};

TEST(AttributeRules, Handlers)
{
    for (const RuleRow& row : kRows)
        EXPECT_EQ(ruled(row.tag, row.rule), row.expected) << row.tag;
}

struct AlignRow {
    const char* text;
    std::uint32_t enumerator; ///< 0: none
    const char* keyword;
};

const AlignRow kHorizAligns[] = {
    {"center", 1, "center"},
    {"justify", 2, "justify"},
    {"left", 3, "left"},
    {"right", 4, "right"},
    {"LEFT", 3, "left"},
    {"middle", 1, "center"},
    {"Bleedright", 4, "right"},
    {"indent", 2, "justify"},
    {"top", 0, ""},
    {"", 0, ""},
    {" left", 0, ""},
};

const AlignRow kVertAligns[] = {
    {"baseline", 1, "baseline"},
    {"bottom", 2, "bottom"},
    {"middle", 3, "middle"},
    {"top", 4, "top"},
    {"TOP", 4, "top"},
    {"center", 0, ""},
    {"", 0, ""},
};

TEST(AttributeRules, Alignments)
{
    for (const AlignRow& row : kHorizAligns) {
        const std::string tag = std::string("<p align='") + row.text + "'>";
        const std::string kept = "align=enum:" + std::to_string(row.enumerator);
        EXPECT_EQ(ruled(tag, {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN}),
            row.enumerator == 0 ? "" : kept + " | text-align: keyword:" + row.keyword)
            << row.text;
        EXPECT_EQ(ruled(tag, {ATTRIBUTE_ALIGN, KeepHorizAlign}), row.enumerator == 0 ? "" : kept)
            << row.text;
    }
    for (const AlignRow& row : kVertAligns) {
        const std::string tag = std::string("<p valign='") + row.text + "'>";
        EXPECT_EQ(ruled(tag, {ATTRIBUTE_VALIGN, KeepVertAlign, PROPERTY_VERTICAL_ALIGN}),
            row.enumerator == 0 ? ""
                                : "valign=enum:" + std::to_string(row.enumerator)
                    + " | vertical-align: keyword:" + row.keyword)
            << row.text;
    }
}

struct MeasureRow {
    const char* text;
    const char* attribute;
    const char* declaration;
};

const MeasureRow kMeasures[] = {
    {"50", "50px", "length:50px"},
    {"50%", "-50px", "percent:50"},
    {"0", "0px", "length:0px"},
    {"0%", "0px", "length:0px"},
    {"12.5%", "-12px", "percent:12"},
    {"1,000", "1000px", "length:1000px"},
    {"auto", "10px", "length:10px"},
    {"50 %", "50px", "length:50px"},
    // Numbers beyond 31 bits are negative, so they are percentages.
    {"4294967295", "-1px", "percent:1"},
    {"4294967295%", "1px", "length:1px"},
    {"2147483648", "-2147483648px", "percent:2147483648"},
    {"2147483647", "2147483648px", "length:2147483648px"},
};

TEST(AttributeRules, PercentagesAreKeptAsNegativePixels)
{
    for (const MeasureRow& row : kMeasures) {
        const std::string value = std::string("='") + row.text + "'>";
        const std::string kept = std::string("=length:") + row.attribute;
        const std::string declared = std::string(": ") + row.declaration;
        EXPECT_EQ(ruled("<p size" + value, {ATTRIBUTE_SIZE, KeepMeasure, PROPERTY_HEIGHT}),
            "size" + kept + " | height" + declared)
            << row.text;
        EXPECT_EQ(ruled("<p width" + value, {ATTRIBUTE_WIDTH, KeepWidth}),
            "width" + kept + " | width" + declared)
            << row.text;
        EXPECT_EQ(ruled("<p height" + value, {ATTRIBUTE_HEIGHT, KeepHeight}),
            "height" + kept + " | height" + declared)
            << row.text;
    }
    for (const char* const nothing : {"''", "x", "-5", "+5", "' 5'", "*"}) {
        EXPECT_EQ(ruled(std::string("<p width=") + nothing + ">", {ATTRIBUTE_WIDTH, KeepWidth}), "")
            << nothing;
        EXPECT_EQ(
            ruled(std::string("<p height=") + nothing + ">", {ATTRIBUTE_HEIGHT, KeepHeight}), "")
            << nothing;
    }
}

TEST(AttributeRules, SetWidthAndHeightReadTheirAttribute)
{
    TagReading reading("<p width=5 height='6%'>x");
    SetHeightAttribute(*reading.payload, reading.context);
    EXPECT_EQ(reading.text(), "height=length:-6px | height: percent:6");
    SetWidthAttribute(*reading.payload, reading.context);
    EXPECT_EQ(reading.text(),
        "height=length:-6px width=length:5px | height: percent:6; width: length:5px");
    TagReading without("<p>x");
    SetWidthAttribute(*without.payload, without.context);
    SetHeightAttribute(*without.payload, without.context);
    EXPECT_EQ(without.text(), "");
}

TEST(AttributeRules, LaterDeclarationsReplaceEarlierOnes)
{
    TagReading reading("<p>x");
    ValueCache& values = reading.tree.values;
    Declare(*reading.payload, PROPERTY_COLOR, values.colorValue(1), reading.context);
    Declare(*reading.payload, PROPERTY_COLOR, nullptr, reading.context);
    EXPECT_EQ(reading.list.findValue(PROPERTY_COLOR), values.colorValue(1));
    Declare(*reading.payload, PROPERTY_COLOR, values.colorValue(2), reading.context);
    EXPECT_EQ(reading.list.findValue(PROPERTY_COLOR), values.colorValue(2));
    EXPECT_FALSE(reading.list.get(PROPERTY_COLOR)->important);
    EXPECT_FALSE(reading.list.get(PROPERTY_COLOR)->edgeMargin);
}

TEST(AttributeRules, NullValuesAreNotKept)
{
    TagReading reading("<p>x");
    KeepValue(
        *reading.payload, {ATTRIBUTE_TITLE, KeepText, PROPERTY_COLOR}, nullptr, reading.context);
    KeepEnum(*reading.payload, {ATTRIBUTE_ALIGN, KeepHorizAlign, PROPERTY_TEXT_ALIGN}, 0,
        VALUE_LEFT, reading.context);
    EXPECT_EQ(reading.text(), "");
}

TEST(AttributeRules, ListOfTheNewElementIsMadeWhenItIsNeeded)
{
    TreeContext tree("<html dir=rtl>");
    tree.build();
    HtmlFilterContext& context = tree.context;
    const Token token = {ELEMENT_SUB, TOKEN_START_TAG | TOKEN_SYNTHETIC, 0, 0xFFFF, 0, 0};
    HtmlTreeNode* const node = InsertElement(&token, context);
    HtmlTagNodeData& payload = tree.payloadOf(*node);
    payload.declarations = nullptr;
    CssDeclarationList* const list = OwnDeclarations(payload, context);
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->isEmpty());
    EXPECT_EQ(payload.declarations, list);
    EXPECT_EQ(OwnDeclarations(payload, context), list);
    EXPECT_EQ(EnsureDeclarations(payload, tree.sheet, context), list);
}

TEST(AttributeRules, TemporaryPayloadsHaveNoList)
{
    TreeContext tree("<html><body>");
    HtmlTagNodeData payload(ELEMENT_BODY);
    EXPECT_EQ(OwnDeclarations(payload, tree.context), nullptr);
    tree.build();
    EXPECT_EQ(OwnDeclarations(payload, tree.context), nullptr);
    Declare(payload, PROPERTY_COLOR, tree.values.colorValue(1), tree.context);
    EXPECT_EQ(payload.declarations, nullptr);
}

TEST(AttributeRules, TreesWithoutASheetHaveNoLists)
{
    TreeContext tree("<html dir=rtl>");
    tree.treeState.styleContext = nullptr;
    tree.build();
    HtmlTreeNode* const html = tree.find(ELEMENT_HTML);
    tree.context.currentNode = html;
    EXPECT_EQ(OwnDeclarations(tree.payloadOf(*html), tree.context), nullptr);
    tree.treeStates.set(0, nullptr);
    EXPECT_EQ(OwnDeclarations(tree.payloadOf(*html), tree.context), nullptr);
    tree.context.currentNode = nullptr;
}

TEST(AttributeRules, NoMemoryForAList)
{
    TreeContext tree;
    HtmlTagNodeData payload(ELEMENT_P);
    zorvan::failNthAllocation(1);
    EXPECT_EQ(EnsureDeclarations(payload, tree.sheet, tree.context), nullptr);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(payload.declarations, nullptr);
    EXPECT_EQ(tree.context.statusFlags, STATUS_OUT_OF_MEMORY);
}

TEST(AttributeRules, EveryAllocationMayFail)
{
    constexpr std::uint32_t kMost = 100;
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < kMost; ++n) {
        TagReading reading("<td align=left bgcolor=red width='5%' nowrap=1 abbr=a>x");
        zorvan::failNthAllocation(n);
        try {
            reading.apply();
        } catch (const std::bad_alloc&) {
        }
        const bool wasReached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (!wasReached)
            break;
        ++failures;
    }
    EXPECT_GT(failures, 10U);
    EXPECT_LT(failures, kMost - 1);
}

} // namespace
