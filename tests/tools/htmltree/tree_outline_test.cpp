#include "tools/htmltree/tree_outline.h"

#include "style/css_declaration_list.h"
#include "tests/common/tree_context.h"

#include <gtest/gtest.h>

namespace {

using namespace htmltree;
using testing_support::TreeContext;

TEST(TreeOutline, IndentedAndShort)
{
    TreeContext tree("<p>a<b>b</b></p>c<i></i>");
    EXPECT_EQ(tree.outline(), "");
    EXPECT_EQ(tree.shortOutline(), "");
    tree.build();
    EXPECT_EQ(tree.outline(),
        "html\n"
        "  head\n"
        "  body\n"
        "    p\n"
        "      \"a\"\n"
        "      b\n"
        "        \"b\"\n"
        "    \"c\"\n"
        "    i\n");
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[\"a\" b[\"b\"]] \"c\" i]]");
}

TEST(TreeOutline, Quoting)
{
    EXPECT_EQ(quotedText(u"a\"\\\n\u20AC~"), "\"a\\u0022\\u005c\\u000a\\u20ac~\"");
}

TEST(TreeOutline, Values)
{
    ValueCache values;
    EXPECT_EQ(valueText(nullptr), "null");
    EXPECT_EQ(valueText(values.stringValue(u"a")), "\"a\"");
    EXPECT_EQ(valueText(values.enumValue(2)), "enum:2");
    EXPECT_EQ(valueText(values.colorValue(0x0000FF)), "color:#ff0000");
    EXPECT_EQ(valueText(values.colorValue(0x563412)), "color:#123456");
    EXPECT_EQ(valueText(values.colorValue(0xFFFFFFFF)), "color:4294967295");
    EXPECT_EQ(valueText(values.keywordValue(VALUE_LTR)), "keyword:ltr");
    EXPECT_EQ(valueText(values.keywordValue(static_cast<ZVCSSValue>(60'000))), "keyword:#60000");
    EXPECT_EQ(valueText(values.numberValue(-3)), "number:-3");
    EXPECT_EQ(valueText(values.numberValue(100'000'000)), "number:100000000");
    EXPECT_EQ(valueText(values.percentValue(12.5f)), "percent:12.5");
}

TEST(TreeOutline, LengthsStandAsTheyAreStored)
{
    const struct {
        ZVLinearUnits units;
        const char* text;
    } rows[] = {
        {UNITS_NONE, "length:0.1units#0"},
        {UNITS_EM, "length:0.1em"},
        {UNITS_EX, "length:0.1ex"},
        {UNITS_INCHES, "length:0.1in"},
        {UNITS_CENTIMETERS, "length:0.1cm"},
        {UNITS_MILLIMETERS, "length:0.1mm"},
        {UNITS_PICAS, "length:0.1pc"},
        {UNITS_PERCENT, "length:0.1%"},
        {UNITS_PIXELS, "length:0.1px"},
        {UNITS_POINTS, "length:0.1pt"},
    };
    ValueCache values;
    for (const auto& row : rows)
        EXPECT_EQ(valueText(values.lengthValue(0.1f, row.units)), row.text);
}

TEST(TreeOutline, DeclarationsInTheOrderOfTheList)
{
    EXPECT_EQ(declarationsText(nullptr), "");
    ValueCache values;
    CssDeclarationList list(&values);
    EXPECT_EQ(declarationsText(&list), "");
    list.set(PROPERTY_COLOR, values.colorValue(0xFF), /*important=*/true, /*edgeMargin=*/false);
    list.set(PROPERTY_FONT_SIZE, values.lengthValue(12, UNITS_POINTS), false, false);
    EXPECT_EQ(declarationsText(&list), "font-size: 12pt; color: #ff0000 !important");
    list.remove(PROPERTY_COLOR);
    list.remove(PROPERTY_FONT_SIZE);
    auto* several = new CssDeclaration();
    several->addValue(values.percentValue(50));
    several->addValue(values.enumValue(2));
    several->addValue(values.keywordValue(VALUE_AUTO));
    several->addValue(values.stringValue(u"a\u2028"));
    list.add(several);
    EXPECT_EQ(declarationsText(&list), "property#0: 50%, \"a\\u2028\", auto, enum:2");
}

TEST(TreeOutline, DeclarationsBehindTheAttributes)
{
    TreeContext tree("<b id=a>x");
    tree.build();
    EXPECT_EQ(nodeText(*tree.find(ELEMENT_B)), "b id=\"a\"");
    const std::string outline = outlineOf(*tree.tree.root(), Declarations::Shown);
    EXPECT_NE(outline.find("    b id=\"a\" -> font-weight: bold\n      \"x\"\n"), std::string::npos)
        << outline;
}

TEST(TreeOutline, NotesStandBelowElements)
{
    TreeContext tree("<b id=a>x");
    tree.build();
    const Notes notes = [](const HtmlTreeNode& node) {
        return elementOf(node) == ELEMENT_B ? std::vector<std::string>{"one", "two"}
                                            : std::vector<std::string>();
    };
    EXPECT_EQ(outlineOf(*tree.tree.root(), notes),
        "html\n  head\n  body\n    b id=\"a\"\n      -> one\n      -> two\n      \"x\"\n");
}

TEST(TreeOutline, DeepLevelsAreNumbers)
{
    HtmlTree tree;
    HtmlTagNodeData payload(ELEMENT_DIV);
    HtmlTreeNode* node = tree.root();
    for (int level = 0; level < 100'000; ++level)
        node = tree.createNode(&payload, node);
    const std::string outline = outlineOf(*tree.root());
    EXPECT_NE(
        outline.find('\n' + std::string(400, ' ') + "div\n[level 201] div\n[level 202] div\n"),
        std::string::npos);
    EXPECT_TRUE(outline.ends_with("\n[level 99999] div\n"));
    EXPECT_LT(outline.size(), 2'100'000u);
}

} // namespace
