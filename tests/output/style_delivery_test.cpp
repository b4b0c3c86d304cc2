#include "output/style_delivery.h"

#include "style/css_declaration.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

/// An element whose style is applied with an undo list.
struct Applied {
    explicit Applied(ZVHTMLElement id)
        : node(document.element(document.tree.root(), id))
        , element(id)
        , undoList(&document.values)
        , frame(emptyFrame())
    {
        frame.undoList = &undoList;
    }

    void declare(ZVCSSProperty property, HtmlValue* value)
    {
        document.declare(node, property, value);
    }

    Lines apply()
    {
        applyStyle(&document.declarations(node), frame, element, document.context);
        return document.host.takeCalls();
    }

    HtmlValue* undoValue(ZVCSSProperty property) { return undoList.findValue(property); }

    OutputContext document;
    HtmlTreeNode* node;
    ZVHTMLElement element;
    CssDeclarationList undoList;
    HTML_SOINFO frame;
};

constexpr ZVCSSProperty kMargins[]
    = {PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_RIGHT, PROPERTY_MARGIN_TOP};

} // namespace

TEST(StyleDelivery, NoDeclarationsDoNothing)
{
    Applied applied(ELEMENT_P);
    applyStyle(nullptr, applied.frame, ELEMENT_P, applied.document.context);
    EXPECT_EQ(applied.apply(), Lines{});
    EXPECT_TRUE(applied.undoList.isEmpty());
}

TEST(StyleDelivery, InheritedPropertiesComeBackWhenTheyDiffer)
{
    Applied applied(ELEMENT_B);
    OutputContext& document = applied.document;
    HtmlValue* const running = document.runningStyle.findValue(PROPERTY_FONT_WEIGHT);
    ASSERT_NE(running, document.keyword(VALUE_BOLD));
    applied.declare(PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    applied.declare(PROPERTY_FONT_STYLE, document.runningStyle.findValue(PROPERTY_FONT_STYLE));
    applied.apply();
    EXPECT_EQ(applied.undoValue(PROPERTY_FONT_WEIGHT), running);
    EXPECT_FALSE(applied.undoList.contains(PROPERTY_FONT_STYLE));
    EXPECT_EQ(document.runningStyle.findValue(PROPERTY_FONT_WEIGHT), document.keyword(VALUE_BOLD));

    deliverStyle(applied.undoList, ELEMENT_B, 1, document.context);
    EXPECT_EQ(document.runningStyle.findValue(PROPERTY_FONT_WEIGHT), running);
    EXPECT_EQ(document.host.takeCalls(), Lines{"SOSetProperty 8 2 0 0"});
}

TEST(StyleDelivery, ImportanceIsNoDifference)
{
    Applied applied(ELEMENT_B);
    HtmlValue* const running = applied.document.runningStyle.findValue(PROPERTY_FONT_WEIGHT);
    applied.document.declarations(applied.node).set(PROPERTY_FONT_WEIGHT, running, true, false);
    applied.apply();
    EXPECT_TRUE(applied.undoList.isEmpty());
}

TEST(StyleDelivery, AddedLengthsComeBackNegated)
{
    for (const ZVCSSProperty property : {PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_LEFT,
             PROPERTY_MARGIN_RIGHT, PROPERTY_MARGIN_TOP, PROPERTY_TEXT_INDENT}) {
        Applied applied(ELEMENT_P);
        applied.declare(property, applied.document.pixels(7));
        applied.apply();
        const bool running = applied.document.runningStyle.contains(property);
        EXPECT_EQ(applied.undoValue(property), running ? applied.document.pixels(-7) : nullptr)
            << property;
    }
}

TEST(StyleDelivery, MarginThatIsNoLengthIsUndoneAsAnyOther)
{
    for (const ZVCSSProperty property : kMargins) {
        Applied applied(ELEMENT_P);
        if (!applied.document.runningStyle.contains(property))
            applied.document.runningStyle.set(property, applied.document.pixels(0), false, false);
        applied.declare(property, applied.document.keyword(VALUE_AUTO));
        applied.apply();
        EXPECT_EQ(applied.undoValue(property), applied.document.pixels(0)) << property;
    }
}

TEST(StyleDelivery, BackgroundsOfTheFourGroups)
{
    struct Row {
        ZVHTMLElement element;
        HtmlValue* HtmlFilterContext::*group;
        bool isUndone;
    };
    const Row rows[] = {
        {ELEMENT_SPAN, &HtmlFilterContext::inlineBackground, true},
        {ELEMENT_BODY, &HtmlFilterContext::bodyBackground, true},
        {ELEMENT_TABLE, &HtmlFilterContext::tableBackground, false},
        {ELEMENT_TD, &HtmlFilterContext::tableBackground, false},
        {ELEMENT_TH, &HtmlFilterContext::tableBackground, false},
        {ELEMENT_TR, &HtmlFilterContext::tableBackground, false},
        {ELEMENT_COL, &HtmlFilterContext::blockBackground, false},
        {ELEMENT_TBODY, &HtmlFilterContext::blockBackground, false},
        {ELEMENT_P, &HtmlFilterContext::blockBackground, true},
    };
    for (const Row& row : rows) {
        Applied applied(row.element);
        OutputContext& document = applied.document;
        if (!document.runningStyle.contains(PROPERTY_BACKGROUND_COLOR))
            document.runningStyle.set(
                PROPERTY_BACKGROUND_COLOR, document.keyword(VALUE_TRANSPARENT), false, false);
        document.context.*row.group = document.color(1);
        applied.declare(PROPERTY_BACKGROUND_COLOR, document.color(2));
        HtmlValue* const running = document.runningStyle.findValue(PROPERTY_BACKGROUND_COLOR);
        applied.apply();
        EXPECT_EQ(document.context.*row.group, document.color(2)) << row.element;
        EXPECT_EQ(applied.undoValue(PROPERTY_BACKGROUND_COLOR),
            row.isUndone ? document.color(1) : nullptr)
            << row.element;
        // The running list is not for backgrounds.
        EXPECT_EQ(document.runningStyle.findValue(PROPERTY_BACKGROUND_COLOR), running);
    }
}

TEST(StyleDelivery, TablesKeepTheirAlignment)
{
    for (const ZVHTMLElement id : {ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TABLE, ELEMENT_TBODY,
             ELEMENT_TD, ELEMENT_TH, ELEMENT_TR, ELEMENT_DIV}) {
        Applied applied(id);
        OutputContext& document = applied.document;
        document.runningStyle.set(
            PROPERTY_VERTICAL_ALIGN, document.keyword(VALUE_BASELINE), false, false);
        applied.declare(PROPERTY_TEXT_ALIGN, document.keyword(VALUE_RIGHT));
        applied.declare(PROPERTY_VERTICAL_ALIGN, document.keyword(VALUE_TOP));
        applied.apply();
        EXPECT_EQ(applied.undoList.contains(PROPERTY_TEXT_ALIGN), id == ELEMENT_DIV) << id;
        EXPECT_EQ(applied.undoList.contains(PROPERTY_VERTICAL_ALIGN), id == ELEMENT_DIV) << id;
        EXPECT_EQ(
            document.runningStyle.findValue(PROPERTY_TEXT_ALIGN), document.keyword(VALUE_RIGHT));
    }
}

TEST(StyleDelivery, ImagesGiveBackNeitherBordersNorMargins)
{
    const ZVCSSProperty properties[] = {PROPERTY_BORDER_BOTTOM_COLOR, PROPERTY_BORDER_BOTTOM_STYLE,
        PROPERTY_BORDER_BOTTOM_WIDTH, PROPERTY_BORDER_LEFT_COLOR, PROPERTY_BORDER_LEFT_STYLE,
        PROPERTY_BORDER_LEFT_WIDTH, PROPERTY_BORDER_RIGHT_COLOR, PROPERTY_BORDER_RIGHT_STYLE,
        PROPERTY_BORDER_RIGHT_WIDTH, PROPERTY_BORDER_TOP_COLOR, PROPERTY_BORDER_TOP_STYLE,
        PROPERTY_BORDER_TOP_WIDTH, PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_LEFT,
        PROPERTY_MARGIN_RIGHT, PROPERTY_MARGIN_TOP};
    for (const ZVHTMLElement id : {ELEMENT_IMG, ELEMENT_P}) {
        for (const ZVCSSProperty property : properties) {
            Applied applied(id);
            OutputContext& document = applied.document;
            document.runningStyle.set(property, document.pixels(1), false, false);
            applied.declare(property, document.pixels(2));
            applied.apply();
            EXPECT_EQ(applied.undoList.contains(property), id == ELEMENT_P) << property;
        }
    }
}

TEST(StyleDelivery, PropertiesOutsideTheRunningStyleAreNotUndone)
{
    Applied applied(ELEMENT_P);
    OutputContext& document = applied.document;
    document.runningStyle.remove(PROPERTY_FONT_WEIGHT);
    applied.declare(PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    EXPECT_EQ(applied.apply(), Lines{"SOSetProperty 8 2 1 0"});
    EXPECT_TRUE(applied.undoList.isEmpty());
    EXPECT_FALSE(document.runningStyle.contains(PROPERTY_FONT_WEIGHT));
}

TEST(StyleDelivery, RelativeLengthsAreResolvedAgainstTheParent)
{
    Applied applied(ELEMENT_P);
    OutputContext& document = applied.document;
    applied.declare(PROPERTY_MARGIN_TOP, document.em(0.67F));
    applied.declare(PROPERTY_FONT_SIZE, document.em(2));
    applied.apply();
    EXPECT_EQ(
        document.declarations(applied.node).findValue(PROPERTY_MARGIN_TOP), document.pixels(11));
    EXPECT_EQ(
        document.declarations(applied.node).findValue(PROPERTY_FONT_SIZE), document.pixels(32));

    // Under an open frame its size counts, whatever the new frame says.
    Applied inner(ELEMENT_P);
    HtmlTreeNode* outer = inner.document.element(inner.document.tree.root(), ELEMENT_DIV);
    FramePointer outerFrame = makeFrame(inner.document.context);
    outerFrame->fontSizePx = 40;
    HTML_SOINFO* const pushed = outerFrame.get();
    pushFrame(std::move(outerFrame), *outer, inner.document.context);
    pushed->fontSizePx = 40;
    inner.declare(PROPERTY_MARGIN_TOP, inner.document.em(1));
    inner.apply();
    EXPECT_EQ(inner.document.declarations(inner.node).findValue(PROPERTY_MARGIN_TOP),
        inner.document.pixels(40));
}

TEST(StyleDelivery, LineBreaksDeliverNothing)
{
    Applied applied(ELEMENT_BR);
    OutputContext& document = applied.document;
    applied.declare(PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    applied.declare(PROPERTY_MARGIN_TOP, document.em(1));
    EXPECT_EQ(applied.apply(), Lines{});
    EXPECT_NE(document.runningStyle.findValue(PROPERTY_FONT_WEIGHT), document.keyword(VALUE_BOLD));
    // Its lengths are resolved all the same.
    EXPECT_EQ(
        document.declarations(applied.node).findValue(PROPERTY_MARGIN_TOP), document.pixels(16));
}

TEST(StyleDelivery, FontSizeCountsForWhatFollowsIt)
{
    OutputContext document;
    CssDeclarationList list(&document.values);
    list.set(PROPERTY_FONT_SIZE, document.pixels(40), false, false);
    list.set(PROPERTY_LETTER_SPACING, document.em(0.5F), false, false);
    const bool sizeIsFirst = list.first().key() == PROPERTY_FONT_SIZE;
    deliverStyle(list, ELEMENT_SPAN, 0, document.context);
    const std::string spacing
        = "SOSetExtraProperty 62 1 " + std::to_string(sizeIsFirst ? 300 : 120) + " 0";
    EXPECT_NE(std::find(document.host.calls.begin(), document.host.calls.end(), spacing),
        document.host.calls.end());
}
