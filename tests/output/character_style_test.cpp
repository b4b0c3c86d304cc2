#include "output/character_style.h"

#include "output/style_delivery.h"
#include "style/css_declaration.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

/// The calls of one declaration on an element, under a frame of 20 pixels.
Lines deliverOn(OutputContext& document, ZVHTMLElement element, const CssDeclaration& declaration)
{
    HTML_SOINFO frame = emptyFrame();
    frame.fontSizePx = 20;
    EXPECT_TRUE(deliverCharacterDeclaration(declaration, frame, element, document.context));
    return document.host.takeCalls();
}

Lines deliverOn(
    OutputContext& document, ZVHTMLElement element, ZVCSSProperty property, HtmlValue* value)
{
    return deliverOn(document, element, CssDeclaration(property, value, false, false));
}

std::string character(int attribute, int flag)
{
    return "SOSetProperty 8 " + std::to_string(attribute) + ' ' + std::to_string(flag) + " 0";
}

struct KeywordRow {
    ZVCSSProperty property;
    ZVCSSValue keyword;
    Lines lines;
};

const KeywordRow kKeywordRows[] = {
    {PROPERTY_FONT_STYLE, VALUE_ITALIC, {character(3, 1)}},
    {PROPERTY_FONT_STYLE, VALUE_OBLIQUE, {character(3, 1)}},
    {PROPERTY_FONT_STYLE, VALUE_NORMAL, {character(3, 0)}},
    {PROPERTY_FONT_STYLE, VALUE_BOLD, {}},
    {PROPERTY_FONT_VARIANT, VALUE_SMALL_CAPS, {character(6, 1)}},
    {PROPERTY_FONT_VARIANT, VALUE_NORMAL, {character(6, 0)}},
    {PROPERTY_FONT_VARIANT, VALUE_ITALIC, {}},
    {PROPERTY_FONT_WEIGHT, VALUE_BOLD, {character(2, 1)}},
    {PROPERTY_FONT_WEIGHT, VALUE_600, {character(2, 1)}},
    {PROPERTY_FONT_WEIGHT, VALUE_700, {character(2, 1)}},
    {PROPERTY_FONT_WEIGHT, VALUE_800, {character(2, 1)}},
    {PROPERTY_FONT_WEIGHT, VALUE_900, {character(2, 1)}},
    {PROPERTY_FONT_WEIGHT, VALUE_NORMAL, {character(2, 0)}},
    {PROPERTY_FONT_WEIGHT, VALUE_100, {character(2, 0)}},
    {PROPERTY_FONT_WEIGHT, VALUE_200, {character(2, 0)}},
    {PROPERTY_FONT_WEIGHT, VALUE_300, {character(2, 0)}},
    {PROPERTY_FONT_WEIGHT, VALUE_400, {character(2, 0)}},
    {PROPERTY_FONT_WEIGHT, VALUE_500, {character(2, 0)}},
    {PROPERTY_FONT_WEIGHT, VALUE_BOLDER, {}},
    {PROPERTY_FONT_WEIGHT, VALUE_LIGHTER, {}},
    {PROPERTY_LETTER_SPACING, VALUE_NORMAL, {"SOSetExtraProperty 62 1 0 0"}},
    {PROPERTY_LETTER_SPACING, VALUE_BOLD, {}},
    {PROPERTY_TEXT_DECORATION, VALUE_BLINK,
        {character(12, 0), character(4, 0), character(21, 0), character(21, 1)}},
    {PROPERTY_TEXT_DECORATION, VALUE_LINE_THROUGH,
        {character(12, 0), character(4, 0), character(21, 0), character(12, 1)}},
    {PROPERTY_TEXT_DECORATION, VALUE_UNDERLINE,
        {character(12, 0), character(4, 0), character(21, 0), character(4, 1)}},
    {PROPERTY_TEXT_DECORATION, VALUE_OVERLINE,
        {character(12, 0), character(4, 0), character(21, 0)}},
    {PROPERTY_TEXT_DECORATION, VALUE_NONE, {character(12, 0), character(4, 0), character(21, 0)}},
    {PROPERTY_TEXT_TRANSFORM, VALUE_CAPITALIZE,
        {character(17, 0), character(16, 0), character(9, 0), character(17, 1)}},
    {PROPERTY_TEXT_TRANSFORM, VALUE_LOWERCASE,
        {character(17, 0), character(16, 0), character(9, 0), character(16, 1)}},
    {PROPERTY_TEXT_TRANSFORM, VALUE_UPPERCASE,
        {character(17, 0), character(16, 0), character(9, 0), character(9, 1)}},
    {PROPERTY_TEXT_TRANSFORM, VALUE_NONE, {character(17, 0), character(16, 0), character(9, 0)}},
    {PROPERTY_VERTICAL_ALIGN, VALUE_SUB, {character(10, 1)}},
    {PROPERTY_VERTICAL_ALIGN, VALUE_SUPER, {character(11, 1)}},
    {PROPERTY_VERTICAL_ALIGN, VALUE_BASELINE, {character(10, 0), character(11, 0)}},
    {PROPERTY_VERTICAL_ALIGN, VALUE_TOP, {}},
    {PROPERTY_BACKGROUND_COLOR, VALUE_TRANSPARENT, {"SOSetBackColor 1 0"}},
    {PROPERTY_BACKGROUND_COLOR, VALUE_INHERIT, {}},
    {PROPERTY_COLOR, VALUE_INHERIT, {}},
    {PROPERTY_FONT_SIZE, VALUE_XX_SMALL, {"SOSetFontHeight 13"}},
    {PROPERTY_FONT_SIZE, VALUE_X_SMALL, {"SOSetFontHeight 15"}},
    {PROPERTY_FONT_SIZE, VALUE_SMALL, {"SOSetFontHeight 19"}},
    {PROPERTY_FONT_SIZE, VALUE_MEDIUM, {"SOSetFontHeight 24"}},
    {PROPERTY_FONT_SIZE, VALUE_LARGE, {"SOSetFontHeight 27"}},
    {PROPERTY_FONT_SIZE, VALUE_X_LARGE, {"SOSetFontHeight 36"}},
    {PROPERTY_FONT_SIZE, VALUE_XX_LARGE, {"SOSetFontHeight 48"}},
    {PROPERTY_FONT_SIZE, VALUE_LARGER, {"SOSetFontHeight 36"}},
    {PROPERTY_FONT_SIZE, VALUE_SMALLER, {"SOSetFontHeight 25"}},
    {PROPERTY_FONT_SIZE, VALUE_INHERIT, {}},
};

} // namespace

TEST(CharacterStyle, KeywordsOfEachProperty)
{
    OutputContext document;
    for (const KeywordRow& row : kKeywordRows) {
        EXPECT_EQ(deliverOn(document, ELEMENT_SPAN, row.property, document.keyword(row.keyword)),
            row.lines)
            << row.property << ' ' << row.keyword;
    }
}

TEST(CharacterStyle, DecorationsOfAListGoOutInItsOrder)
{
    OutputContext document;
    CssDeclaration declaration(PROPERTY_TEXT_DECORATION, nullptr, false, false);
    declaration.addValue(document.keyword(VALUE_UNDERLINE));
    declaration.addValue(document.keyword(VALUE_BLINK));
    declaration.addValue(document.keyword(VALUE_LINE_THROUGH));
    EXPECT_EQ(deliverOn(document, ELEMENT_SPAN, declaration),
        (Lines{character(12, 0), character(4, 0), character(21, 0), character(21, 1),
            character(12, 1), character(4, 1)}));
}

TEST(CharacterStyle, ColorsHave24Bits)
{
    OutputContext document;
    EXPECT_EQ(deliverOn(document, ELEMENT_P, PROPERTY_COLOR, document.color(0xAB00FF80)),
        Lines{"SOSetTextColor 0 65408"});
    EXPECT_EQ(deliverOn(document, ELEMENT_A, PROPERTY_BACKGROUND_COLOR, document.color(0xABFFFFFF)),
        Lines{"SOSetBackColor 0 16777215"});
    EXPECT_EQ(deliverOn(document, ELEMENT_P, PROPERTY_COLOR, document.pixels(1)), Lines{});
}

TEST(CharacterStyle, BackgroundOfCharactersIsThatOfTwelveElements)
{
    const std::vector<std::uint32_t> group
        = {ELEMENT_A, ELEMENT_B, ELEMENT_BIG, ELEMENT_CODE, ELEMENT_EM, ELEMENT_FONT, ELEMENT_I,
            ELEMENT_SPAN, ELEMENT_STRONG, ELEMENT_SUB, ELEMENT_SUP, ELEMENT_U};
    OutputContext document;
    const CssDeclaration declaration(PROPERTY_BACKGROUND_COLOR, document.color(0xFF), false, false);
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        HTML_SOINFO frame = emptyFrame();
        const bool isMember = std::find(group.begin(), group.end(), id) != group.end();
        EXPECT_EQ(deliverCharacterDeclaration(declaration, frame, id, document.context), isMember);
        EXPECT_EQ(document.host.takeCalls(), isMember ? Lines{"SOSetBackColor 0 255"} : Lines{})
            << id;
    }
}

TEST(CharacterStyle, VerticalAlignOfTablesAndBodyIsNoCharacterAttribute)
{
    const std::vector<std::uint32_t> excluded = {ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TD,
        ELEMENT_TH, ELEMENT_TR, ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_BODY};
    OutputContext document;
    for (const ZVCSSValue keyword : {VALUE_SUB, VALUE_SUPER, VALUE_BASELINE}) {
        for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
            const Lines lines = deliverOn(document, static_cast<ZVHTMLElement>(id),
                PROPERTY_VERTICAL_ALIGN, document.keyword(keyword));
            const bool isExcluded
                = std::find(excluded.begin(), excluded.end(), id) != excluded.end();
            EXPECT_EQ(lines.empty(), isExcluded) << id;
        }
    }
}

TEST(CharacterStyle, FontsAreTheirPlaceInTheTable)
{
    OutputContext document;
    document.addFont(u"Times New Roman");
    document.addFont(u"Arial");
    const auto select = [&](const char16_t* name) {
        return deliverOn(
            document, ELEMENT_SPAN, PROPERTY_FONT_FAMILY, document.values.stringValue(name));
    };
    EXPECT_EQ(select(u"Times New Roman"), Lines{"SOSelectFont 0"});
    EXPECT_EQ(select(u"Arial"), Lines{"SOSelectFont 1"});
    EXPECT_EQ(select(u"Arial, Helvetica"), Lines{"SOSelectFont 1"});
    EXPECT_EQ(select(u"arial"), Lines{});
    EXPECT_EQ(select(u"Courier"), Lines{});
    EXPECT_EQ(deliverOn(document, ELEMENT_SPAN, PROPERTY_FONT_FAMILY, document.keyword(VALUE_AUTO)),
        Lines{});
}

struct SizeRow {
    HtmlValue* (*value)(OutputContext& document);
    double pixels; ///< against a parent of 20 pixels
    Lines lines;
    std::int32_t framePixels;
};

TEST(CharacterStyle, FontSizes)
{
    const SizeRow rows[] = {
        {[](auto& d) -> HtmlValue* { return d.values.percentValue(150); }, 30,
            {"SOSetFontHeight 45"}, 30},
        {[](auto& d) -> HtmlValue* { return d.values.percentValue(33); }, 6.6,
            {"SOSetFontHeight 9"}, 6},
        {[](auto& d) -> HtmlValue* { return d.values.percentValue(0); }, 0, {}, 0},
        {[](auto& d) { return d.em(1); }, 20, {"SOSetFontHeight 30"}, 20},
        {[](auto& d) { return d.em(1.5F); }, 30, {"SOSetFontHeight 45"}, 30},
        {[](auto& d) { return d.em(0.67F); }, 13, {"SOSetFontHeight 19"}, 13},
        {[](auto& d) -> HtmlValue* { return d.values.lengthValue(1.55F, UNITS_EX); }, 15,
            {"SOSetFontHeight 22"}, 15},
        {[](auto& d) { return d.pixels(17.5F); }, 17.5F, {"SOSetFontHeight 26"}, 17},
        {[](auto& d) -> HtmlValue* { return d.values.lengthValue(12, UNITS_POINTS); }, 16,
            {"SOSetFontHeight 24"}, 16},
        {[](auto& d) -> HtmlValue* { return d.values.lengthValue(1, UNITS_INCHES); }, 96,
            {"SOSetFontHeight 144"}, 96},
        {[](auto& d) { return d.pixels(-4); }, -4, {}, -4},
        {[](auto& d) { return d.keyword(VALUE_MEDIUM); }, 16, {"SOSetFontHeight 24"}, 16},
        {[](auto& d) { return d.keyword(VALUE_LARGER); }, 24, {"SOSetFontHeight 36"}, 24},
        {[](auto& d) { return d.keyword(VALUE_SMALLER); }, 20 / 1.2, {"SOSetFontHeight 25"}, 16},
        {[](auto& d) { return d.keyword(VALUE_BOLD); }, -1, {}, -1},
        {[](auto& d) { return d.color(3); }, -1, {}, 20},
    };
    for (const SizeRow& row : rows) {
        OutputContext document;
        HTML_SOINFO frame = emptyFrame();
        frame.fontSizePx = 20;
        HtmlValue* value = row.value(document);
        EXPECT_NEAR(fontSizePixels(*value, 20), row.pixels, 1e-6) << &row - rows;
        deliverCharacterDeclaration(CssDeclaration(PROPERTY_FONT_SIZE, value, false, false), frame,
            ELEMENT_SPAN, document.context);
        EXPECT_EQ(document.host.calls, row.lines) << &row - rows;
        EXPECT_EQ(static_cast<std::int32_t>(frame.fontSizePx), row.framePixels) << &row - rows;
    }
}

struct SpacingRow {
    float number;
    ZVLinearUnits units;
    Lines lines;
};

TEST(CharacterStyle, LetterSpacing)
{
    const SpacingRow rows[] = {
        {2, UNITS_PIXELS, {"SOSetExtraProperty 62 1 30 0"}},
        // Multiplied first, made whole then.
        {1.5F, UNITS_PIXELS, {"SOSetExtraProperty 62 1 22 0"}},
        {-1.5F, UNITS_PIXELS, {"SOSetExtraProperty 62 2 22 0"}},
        {0, UNITS_PIXELS, {}},
        {3, UNITS_POINTS, {"SOSetExtraProperty 62 1 60 0"}},
        {0.5F, UNITS_EM, {"SOSetExtraProperty 62 1 150 0"}},
        {-0.5F, UNITS_EM, {"SOSetExtraProperty 62 2 150 0"}},
        {0.5F, UNITS_EX, {"SOSetExtraProperty 62 1 75 0"}},
    };
    OutputContext document;
    for (const SpacingRow& row : rows) {
        EXPECT_EQ(deliverOn(document, ELEMENT_SPAN, PROPERTY_LETTER_SPACING,
                      document.values.lengthValue(row.number, row.units)),
            row.lines);
    }
}

TEST(CharacterStyle, OverriddenColors)
{
    OutputContext document;
    document.context.backgroundOption = 1;
    EXPECT_FALSE(areColorsOverridden(document.context));
    EXPECT_EQ(deliverOn(document, ELEMENT_B, PROPERTY_COLOR, document.color(9)),
        Lines{"SOSetTextColor 0 9"});
    document.context.backgroundSeen = 1;
    EXPECT_TRUE(areColorsOverridden(document.context));
    EXPECT_EQ(deliverOn(document, ELEMENT_B, PROPERTY_COLOR, document.color(9)),
        Lines{"SOSetTextColor 0 0"});
    EXPECT_EQ(deliverOn(document, ELEMENT_B, PROPERTY_BACKGROUND_COLOR, document.color(9)),
        Lines{"SOSetBackColor 1 16777215"});
    EXPECT_EQ(deliverOn(document, ELEMENT_B, PROPERTY_BACKGROUND_COLOR,
                  document.keyword(VALUE_TRANSPARENT)),
        Lines{"SOSetBackColor 1 16777215"});
}

TEST(CharacterStyle, OtherPropertiesAreLeftToOthers)
{
    OutputContext document;
    for (const ZVCSSProperty property :
        {PROPERTY_WORD_SPACING, PROPERTY_WHITE_SPACE, PROPERTY_TEXT_OVERFLOW, PROPERTY_WORD_WRAP,
            PROPERTY_MARGIN_LEFT, PROPERTY_TEXT_ALIGN}) {
        HTML_SOINFO frame = emptyFrame();
        const CssDeclaration declaration(property, document.keyword(VALUE_NORMAL), false, false);
        EXPECT_FALSE(
            deliverCharacterDeclaration(declaration, frame, ELEMENT_SPAN, document.context));
    }
    EXPECT_EQ(document.host.callCount, 0U);
}

TEST(CharacterStyle, BaseFontHeights)
{
    struct Row {
        std::int32_t size;
        std::uint16_t height;
    };
    const Row rows[]
        = {{0, 9}, {1, 16}, {2, 20}, {3, 24}, {4, 32}, {5, 40}, {6, 48}, {7, 64}, {8, 9}, {-2, 9}};
    for (const Row& row : rows) {
        OutputContext document;
        document.context.baseFontHeight = 9;
        HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BASEFONT);
        document.attribute(node, ATTRIBUTE_SIZE, document.values.numberValue(row.size));
        enterBaseFont(*node, document.context);
        EXPECT_EQ(document.context.baseFontHeight, row.height) << row.size;
    }
}

TEST(CharacterStyle, BaseFontColor)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BASEFONT);
    document.context.textColor = 5;
    document.context.textColorMode = 3;
    enterBaseFont(*node, document.context);
    EXPECT_EQ(document.context.textColorMode, 3U);
    document.declare(node, PROPERTY_COLOR, document.color(5));
    enterBaseFont(*node, document.context);
    EXPECT_EQ(document.context.textColorMode, 0U);
    document.declare(node, PROPERTY_COLOR, document.color(6));
    enterBaseFont(*node, document.context);
    EXPECT_EQ(document.context.textColor, 6U);
    EXPECT_EQ(document.host.callCount, 0U);
}

TEST(CharacterStyle, SymbolSpans)
{
    struct Row {
        const char16_t* style;
        std::uint16_t unicodeBomMode;
        std::uint32_t charSetId;
    };
    const Row rows[] = {
        {u"mso-char-type:symbol", 0, 0x20000100},
        {u"x:y;mso-char-type: a;b:symbol", 0, 0x20000100},
        {u"symbol;mso-char-type:x", 0, 0},
        {u"mso-char-type", 0, 0},
        {u"MSO-CHAR-TYPE:symbol", 0, 0},
        {u"", 0, 0},
        {u"mso-char-type:symbol", 254, 0},
        {nullptr, 0, 0},
    };
    for (const Row& row : rows) {
        OutputContext document;
        HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_SPAN);
        if (row.style != nullptr)
            document.attribute(node, ATTRIBUTE_STYLE, row.style);
        document.context.unicodeBomMode = row.unicodeBomMode;
        noteSymbolSpan(*node, document.context);
        EXPECT_EQ(document.context.symbolCharSetId, row.charSetId) << &row - rows;
    }
}
