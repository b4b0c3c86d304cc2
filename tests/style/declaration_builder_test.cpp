#include "style/declaration_builder.h"

#include "tests/containers/allocation_failures.h"
#include "tests/style/value_tokens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

using testing_support::allKeywords;
using testing_support::Declarations;
using testing_support::DeclarationSheet;
using testing_support::declarationsIn;
using testing_support::declared;
using testing_support::expectedText;
using testing_support::propertyOf;
using testing_support::ValueTokens;
using testing_support::written;

namespace {

const std::vector<std::string> kShorthands
    = {"background", "border", "border-bottom", "border-color", "border-left", "border-right",
        "border-style", "border-top", "border-width", "font", "list-style", "margin", "padding"};

/// A value of each kind of token; what stands behind the first one counts for nothing.
const std::vector<std::string> kSamples = {"medium", "foo", "RED", "InHerit", "2em", "3EX", "4px",
    "1in", "50%", "7", "-4px", "-5%", "-2", "url(a.png)", "\"x\"", "#123", "rgb(1, 2, 3)", "1deg",
    "2s", "3hz", "4foo", "'y", ", red", "medium 4px", "7 / 8"};

/// Properties whose values are read alike, and what the samples give, "" for no declaration.
struct PropertyGroup {
    std::vector<std::string> properties;
    std::vector<std::string> values;
};

// clang-format off
const std::vector<PropertyGroup> kGroups = {
    {{"background-attachment", "background-repeat", "border-bottom-style", "border-collapse",
      "border-left-style", "border-right-style", "border-top-style", "caption-side", "direction",
      "empty-cells", "font-style", "font-variant", "font-weight", "list-style-position",
      "list-style-type", "table-layout", "text-align", "text-transform", "white-space",
      "word-wrap"},
     {"medium", "", "", "inherit", "", "", "",
      "", "", "", "", "", "", "", "", "", "", "",
      "", "", "", "", "", "medium", ""}},
    {{"background-color", "border-bottom-color", "border-left-color", "border-right-color",
      "border-top-color", "color"},
     {"", "", "color ff", "inherit", "", "", "",
      "", "", "", "", "", "", "", "", "color 332211", "color 30201", "",
      "", "", "", "", "", "", ""}},
    {{"background-image", "list-style-image"},
     {"medium", "", "", "inherit", "", "", "",
      "", "", "", "", "", "", "\"url(a.png)\"", "", "", "", "",
      "", "", "", "", "", "medium", ""}},
    {{"border-bottom-width", "border-left-width", "border-right-width", "border-top-width"},
     {"medium", "", "", "inherit", "2em", "3ex", "4px",
      "1?", "", "", "", "", "", "", "", "", "", "",
      "", "", "", "", "", "medium", ""}},
    {{"letter-spacing", "word-spacing"},
     {"medium", "", "", "inherit", "2em", "3ex", "4px",
      "1?", "", "", "-4px", "", "", "", "", "", "", "",
      "", "", "", "", "", "medium", ""}},
    {{"margin-bottom", "margin-left", "margin-right", "margin-top", "padding-bottom",
      "padding-left", "padding-right", "padding-top"},
     {"medium", "", "", "inherit", "2em", "3ex", "4px",
      "1?", "50%", "", "-4px", "-5%", "", "", "", "", "", "",
      "", "", "", "", "", "medium", ""}},
    {{"height", "max-width", "min-width", "vertical-align", "width"},
     {"medium", "", "", "inherit", "2em", "3ex", "4px",
      "1?", "50%", "7px", "", "", "", "", "", "", "", "",
      "", "", "", "", "", "medium", "7px"}},
    {{"text-indent"},
     {"medium", "", "", "inherit", "2em", "3ex", "4px",
      "1?", "50%", "7px", "-4px", "-5%", "-2px", "", "", "", "", "",
      "", "", "", "", "", "medium", "7px"}},
    {{"line-height"},
     {"medium", "", "", "inherit", "2em", "3ex", "4px",
      "1?", "50%", "number 7", "", "", "", "", "", "", "", "",
      "", "", "", "", "", "medium", "number 7"}},
    {{"font-size"},
     {"medium", "", "", "", "2em", "3ex", "4px",
      "1?", "50%", "", "", "", "", "", "", "", "", "",
      "", "", "", "", "", "medium", ""}},
    {{"font-family"},
     {"\"medium\"", "\"foo\"", "\"RED\"", "\"InHerit\"", "\"2em\"", "\"3EX\"", "\"4px\"",
      "\"1in\"", "\"50%\"", "\"7\"", "\"-\"", "\"-\"", "\"-\"", "\"url(a.png)\"", "\"x\"",
      "\"#123\"", "\"rgb(\"", "\"1deg\"",
      "\"2s\"", "\"3hz\"", "\"4foo\"", "\"'y\"", "\",\"", "\"medium\"", "\"7\""}},
    {{"text-decoration"},
     {"", "", "", "inherit", "", "", "",
      "", "", "", "", "", "", "", "", "", "", "",
      "", "", "", "", "", "", ""}},
    {{"text-overflow"},
     {"\"medium\"", "\"foo\"", "\"RED\"", "inherit", "\"2em\"", "\"3EX\"", "\"4px\"",
      "\"1in\"", "\"50%\"", "\"7\"", "\"-\"", "\"-\"", "\"-\"", "\"url(a.png)\"", "\"\"x\"\"",
      "\"#123\"", "\"rgb(\"", "\"1deg\"",
      "\"2s\"", "\"3hz\"", "\"4foo\"", "\"'y\"", "\",\"", "\"medium\"", "\"7\""}},
};
// clang-format on

/// What a text says without the keyword numbers of a text in quotes.
std::string expectedValue(const std::string& value)
{
    return value.empty() || value.front() == '"' ? value : expectedText(value);
}

std::string upperCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), ::toupper);
    return text;
}

void checkGroup(const PropertyGroup& group)
{
    ASSERT_EQ(group.values.size(), kSamples.size());
    for (const std::string& property : group.properties) {
        for (std::size_t i = 0; i < kSamples.size(); ++i) {
            SCOPED_TRACE(property + ": " + kSamples[i]);
            Declarations expected;
            if (!group.values[i].empty())
                expected[propertyOf(property)] = expectedValue(group.values[i]);
            EXPECT_EQ(declared(property + ":" + kSamples[i]), expected);
            EXPECT_EQ(declared(upperCase(property) + ":" + kSamples[i]), expected);
        }
    }
}

} // namespace

TEST(DeclarationBuilder, EveryLonghandWithEveryKindOfValue)
{
    for (const PropertyGroup& group : kGroups)
        checkGroup(group);
}

TEST(DeclarationBuilder, AllOtherNamesAreReadOver)
{
    std::set<std::string> used(kShorthands.begin(), kShorthands.end());
    EXPECT_EQ(used.size(), 13U);
    for (const PropertyGroup& group : kGroups)
        used.insert(group.properties.begin(), group.properties.end());
    EXPECT_EQ(used.size(), 66U);
    std::size_t others = 0;
    for (std::uint32_t id = 1; *zorvan::CSSStrings::propertyName(id) != 0; ++id) {
        const std::string name = zorvan::CSSStrings::propertyName(id);
        if (used.count(name) != 0) {
            EXPECT_TRUE(id >= PROPERTY_BACKGROUND && id <= PROPERTY_WORD_WRAP) << name;
            continue;
        }
        ++others;
        for (const std::string& sample : kSamples)
            EXPECT_EQ(declared(name + ":" + sample), Declarations()) << name << ": " << sample;
    }
    EXPECT_EQ(others, 199U - 66U);
    for (const char* name : {"", "foo", "-moz-opacity", "colo\\72", "colour", "azimuth",
             "border-bottom-left-radius-and-much-longer-than-any-name"})
        EXPECT_EQ(declared(std::string(name) + ":red"), Declarations()) << name;
}

TEST(DeclarationBuilder, NoTokensNoEffect)
{
    for (const PropertyGroup& group : kGroups) {
        for (const std::string& property : group.properties)
            EXPECT_EQ(declared(property + ":"), Declarations()) << property;
    }
    for (const std::string& property : kShorthands)
        EXPECT_EQ(declared(property + ": /* nothing */ "), Declarations()) << property;
}

TEST(DeclarationBuilder, BadValueLeavesTheEarlierOne)
{
    for (const PropertyGroup& group : kGroups) {
        for (const std::string& property : group.properties) {
            DeclarationSheet sheet;
            sheet.list.set(propertyOf(property), sheet.values.numberValue(77),
                /*important=*/false, /*edgeMargin=*/false);
            const Declarations before = declarationsIn(sheet.list);
            for (std::size_t i = 0; i < kSamples.size(); ++i) {
                if (!group.values[i].empty())
                    continue;
                sheet.apply(property, kSamples[i]);
                EXPECT_EQ(declarationsIn(sheet.list), before) << property << ": " << kSamples[i];
            }
        }
    }
}

TEST(DeclarationBuilder, LaterOneWinsWhateverTheImportance)
{
    DeclarationSheet sheet;
    sheet.apply("width", "1px", /*important=*/true);
    EXPECT_EQ(declarationsIn(sheet.list), Declarations({{PROPERTY_WIDTH, "1px!"}}));
    sheet.apply("width", "2px");
    EXPECT_EQ(declarationsIn(sheet.list), written("width 2px"));
}

TEST(DeclarationBuilder, TextDecorationsOfEveryKeyword)
{
    const std::set<std::string> decorations
        = {"blink", "inherit", "line-through", "none", "overline", "underline"};
    for (const std::string& name : allKeywords()) {
        Declarations expected;
        if (decorations.count(name) != 0)
            expected[PROPERTY_TEXT_DECORATION] = expectedText(name);
        EXPECT_EQ(declared("text-decoration:" + upperCase(name)), expected) << name;
    }
}

TEST(DeclarationBuilder, TextDecorationsAreSorted)
{
    EXPECT_EQ(declared("text-decoration: underline none overline inherit line-through blink none"),
        Declarations({{PROPERTY_TEXT_DECORATION,
            "keyword 20 keyword 65 keyword 81 keyword 104 keyword 104 keyword 113 keyword 168"}}));
    DeclarationSheet sheet;
    sheet.apply("text-decoration", "underline blink", /*important=*/true);
    EXPECT_EQ(declarationsIn(sheet.list),
        Declarations({{PROPERTY_TEXT_DECORATION, "keyword 20 keyword 168!"}}));
    sheet.apply("text-decoration", "blink, underline");
    sheet.apply("text-decoration", "blink 1px");
    EXPECT_EQ(sheet.list.get(PROPERTY_TEXT_DECORATION)->getValueCount(), 2);
    sheet.apply("text-decoration", "none");
    EXPECT_EQ(
        declarationsIn(sheet.list), Declarations({{PROPERTY_TEXT_DECORATION, "keyword 104"}}));
}

TEST(DeclarationBuilder, ManyTextDecorations)
{
    constexpr std::int32_t kCount = 200'000;
    std::string value;
    for (const char* word : {"underline ", "blink "}) {
        for (std::int32_t i = 0; i < kCount; ++i)
            value += word;
    }
    DeclarationSheet sheet;
    sheet.apply("text-decoration", value);
    const CssDeclaration& declaration = *sheet.list.get(PROPERTY_TEXT_DECORATION);
    ASSERT_EQ(declaration.getValueCount(), 2 * kCount);
    EXPECT_EQ(declaration.getValueAt(kCount - 1), sheet.values.keywordValue(VALUE_BLINK));
    EXPECT_EQ(declaration.getValueAt(kCount), sheet.values.keywordValue(VALUE_UNDERLINE));
}

TEST(DeclarationBuilder, TextDecorationsWithoutMemory)
{
    DeclarationSheet sheet;
    sheet.apply("text-decoration", "none");
    const Declarations before = declarationsIn(sheet.list);
    ValueTokens tokens("underline overline");
    CssToken name;
    name.text = "text-decoration";
    name.length = 15;
    testing_support::failEachAllocation(
        [&] {
            applyDeclaration(sheet.list, name, tokens.list, /*important=*/false, sheet.context);
            if (declarationsIn(sheet.list) == before)
                throw std::bad_alloc();
        },
        [&] { EXPECT_EQ(declarationsIn(sheet.list), before); });
}

TEST(DeclarationBuilder, TextOverflowOfEveryKeyword)
{
    const std::set<std::string> known = {"clip", "ellipsis", "inherit"};
    for (const std::string& name : allKeywords()) {
        EXPECT_EQ(declared("text-overflow:" + name)[PROPERTY_TEXT_OVERFLOW],
            known.count(name) != 0 ? expectedText(name) : '"' + name + '"');
    }
}

TEST(DeclarationBuilder, LongValues)
{
    constexpr std::size_t kCount = 1'000'000;
    for (const PropertyGroup& group : kGroups) {
        DeclarationSheet sheet;
        sheet.apply(group.properties.front(), std::string(kCount, '-') + "1px");
        const std::string value = sheet.valueOf(group.properties.front());
        const bool isText = group.values.front().substr(0, 1) == "\"";
        EXPECT_TRUE(value == (isText ? "\"-\"" : "0px") || value == "none") << value;
    }
}

TEST(DeclarationBuilder, NameInAnyCase)
{
    EXPECT_EQ(declared("COLOR: RED"), written("color color ff"));
}

TEST(DeclarationBuilder, ColorDigits)
{
    EXPECT_EQ(declared("color: #abc"), written("color color ccbbaa"));
    EXPECT_EQ(declared("color: #aabbccdd"), written("color color ccbbaa"));
    EXPECT_EQ(declared("color: abc"), Declarations());
}

TEST(DeclarationBuilder, ColorFunctions)
{
    EXPECT_EQ(declared("color: rgb(255, 0, 0)"), written("color color ff"));
    EXPECT_EQ(declared("color: rgb(100%, 0%, 0%)"), written("color color ff"));
    EXPECT_EQ(declared("color: rgb(100%, 0, 0)"), Declarations());
    EXPECT_EQ(declared("color: rgb(300, 0, -5)"), written("color color ff"));
    EXPECT_EQ(declared("color: rgba(1, 2, 3, 0.5)"), Declarations());
    EXPECT_EQ(declared("color: hsl(120, 100%, 50%)"), written("color color ff00"));
    EXPECT_EQ(declared("color: hsl(-120, 100%, 50%)"), written("color color ff0000"));
}

TEST(DeclarationBuilder, TransparentIsNoColor)
{
    DeclarationSheet sheet;
    sheet.apply("background-color: red");
    sheet.apply("background-color: transparent");
    EXPECT_EQ(declarationsIn(sheet.list), written("background-color color ff"));
}

TEST(DeclarationBuilder, NegativeLengths)
{
    EXPECT_EQ(declared("margin-left: -10px"), written("margin-left -10px"));
    EXPECT_EQ(declared("width: -10px"), Declarations());
    EXPECT_EQ(declared("text-indent: - -5"), written("text-indent 0px"));
    EXPECT_EQ(declared("vertical-align: -2px"), Declarations());
}

TEST(DeclarationBuilder, BareNumbersOfSizes)
{
    EXPECT_EQ(declared("width: 100"), written("width 100px"));
    EXPECT_EQ(declared("height: 50%"), written("height 50%"));
}

TEST(DeclarationBuilder, BareNumbersThatAreNoMeasure)
{
    EXPECT_EQ(declared("margin-left: 0"), Declarations());
    EXPECT_EQ(declared("padding-top: 0"), Declarations());
    EXPECT_EQ(declared("border-top-width: 0"), Declarations());
}

TEST(DeclarationBuilder, LineHeightLosesItsFraction)
{
    EXPECT_EQ(declared("line-height: 1.5"), written("line-height number 1"));
}

TEST(DeclarationBuilder, FontSizesThatAreNone)
{
    EXPECT_EQ(declared("font-size: inherit"), Declarations());
    EXPECT_EQ(declared("font-size: 12"), Declarations());
}

TEST(DeclarationBuilder, FontFamilies)
{
    EXPECT_EQ(declared("font-family: \"Courier New\", monospace"),
        written("font-family \"Courier New\""));
    EXPECT_EQ(declared("font-family: monospace"), written("font-family \"Courier New\""));
    EXPECT_EQ(declared("font-family: 'x"), written("font-family \"'x\""));
    EXPECT_EQ(declared("font-family: Arial, Helvetica"), written("font-family \"Arial\""));
}

TEST(DeclarationBuilder, TextDecorations)
{
    EXPECT_EQ(declared("text-decoration: underline overline"),
        Declarations({{PROPERTY_TEXT_DECORATION, "keyword 113 keyword 168"}}));
    EXPECT_EQ(declared("text-decoration: underline foo"), Declarations());
}

TEST(DeclarationBuilder, FontWeights)
{
    EXPECT_EQ(declared("font-weight: 450"), Declarations());
    EXPECT_EQ(declared("font-weight: 700"), written("font-weight 700"));
}

TEST(DeclarationBuilder, Importance)
{
    DeclarationSheet sheet;
    sheet.apply("text-align", "center", /*important=*/true);
    EXPECT_EQ(declarationsIn(sheet.list),
        Declarations({{PROPERTY_TEXT_ALIGN, expectedText("center") + "!"}}));
}

TEST(DeclarationBuilder, BackgroundPositionOfItsOwnIsDropped)
{
    EXPECT_EQ(declared("background-position: 10px 20px"), Declarations());
}
