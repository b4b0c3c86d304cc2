#include "tests/common/tree_outline.h"

#include "tests/common/tree_context.h"

#include <gtest/gtest.h>

namespace {

using testing_support::quotedText;
using testing_support::TreeContext;
using testing_support::valueText;

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
    EXPECT_EQ(valueText(values.colorValue(255)), "color:255");
    EXPECT_EQ(valueText(values.keywordValue(VALUE_LTR)), "keyword:91");
    EXPECT_EQ(valueText(values.numberValue(-3)), "number:-3.000000");
    EXPECT_EQ(valueText(values.percentValue(50)), "percent:50.000000");
    EXPECT_EQ(valueText(values.lengthValue(2, UNITS_PIXELS)), "pixels:2.000000");
}

} // namespace
