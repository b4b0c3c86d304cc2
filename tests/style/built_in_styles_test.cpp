#include "style/built_in_styles.h"

#include "support/html_strings.h"
#include "support/process_heap.h"
#include "tests/style/style_document.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <set>

namespace {

using namespace testing_support;

struct Row {
    const char* elements; // "116" stands for the element without a name
    const char* declarations;
};

const Row kRows[] = {
    {"address", "font-style italic; margin-left -36px; font-family \"Times New Roman\""},
    {"b strong th", "font-weight bold"},
    {"big", "font-size large"},
    {"blockquote", "margin-left 40px; margin-right 40px"},
    {"caption", "font-size small; font-weight bold; font-family \"Arial\""},
    {"center", "text-align center"},
    {"cite dfn", "font-size small; font-family \"Times New Roman\"; font-style italic"},
    {"code kbd samp tt", "font-size x-small; font-family \"Courier New\""},
    {"dd menu ol ul", "margin-left 36px"},
    {"del s strike", "text-decoration line-through"},
    {"em i var", "font-style italic"},
    {"h1", "margin-top 0.67em; margin-bottom 0.67em; font-size 2em; font-weight bold"},
    {"h2", "margin-top 0.83em; margin-bottom 0.83em; font-size large; font-weight bold"},
    {"h3", "margin-top 1em; margin-bottom 1em; font-size medium; font-weight bold"},
    {"h4", "margin-top 1.33em; margin-bottom 1.33em; font-size small; font-weight bold"},
    {"h5", "margin-top 1.67em; margin-bottom 1.67em; font-size x-small; font-weight bold"},
    {"h6", "margin-top 2.33em; margin-bottom 2.33em; font-size xx-small; font-weight bold"},
    {"html",
        "font-size medium; font-family \"Times New Roman\"; text-align left; margin-top 8px; "
        "margin-right 8px; margin-bottom 8px; margin-left 8px"},
    {"ins u", "text-decoration underline"},
    {"listing plaintext pre xmp",
        "font-size small; font-weight normal; text-decoration none; vertical-align baseline; "
        "font-style normal; font-family \"Courier New\""},
    {"p", "margin-top 16px^; margin-bottom 16px^"},
    {"small", "font-size xx-small"},
    {"sub", "vertical-align sub"},
    {"sup 116", "vertical-align super"},
};

std::uint32_t elementOfName(const std::string& name)
{
    return name == "116" ? 116U : zorvan::HTMLStrings::elementFromString(name.c_str());
}

TEST(BuiltInStyles, EveryRow)
{
    ValueCache values;
    for (const Row& row : kRows) {
        for (const std::string& name : partsOf(row.elements, ' ')) {
            SCOPED_TRACE(name);
            const auto list = makeBuiltInDeclarations(elementOfName(name), values);
            ASSERT_NE(list, nullptr);
            EXPECT_EQ(declarationsIn(*list), written(row.declarations));
            EXPECT_TRUE(list->isOwning());
        }
    }
}

TEST(BuiltInStyles, AllOtherElementsHaveNone)
{
    std::set<std::uint32_t> named;
    for (const Row& row : kRows) {
        for (const std::string& name : partsOf(row.elements, ' '))
            named.insert(elementOfName(name));
    }
    EXPECT_EQ(named.size(), 42U);
    ValueCache values;
    for (std::uint32_t element = 0; element < 200; ++element) {
        if (named.count(element) != 0)
            continue;
        EXPECT_EQ(makeBuiltInDeclarations(element, values), nullptr) << element;
        EXPECT_TRUE(builtInStyleOf(element).empty()) << element;
    }
}

TEST(BuiltInStyles, OnlyHeadingsHangOnTheFontSize)
{
    for (std::uint32_t element = 0; element < 200; ++element) {
        EXPECT_EQ(hasRelativeBuiltInStyle(element), element >= ELEMENT_H1 && element <= ELEMENT_H6)
            << element;
    }
}

// The host hears the font first, then its height, then the alignment.
TEST(BuiltInStyles, OrderOfHtml)
{
    ValueCache values;
    const auto list = makeBuiltInDeclarations(ELEMENT_HTML, values);
    const std::vector<ZVCSSProperty> expected{PROPERTY_FONT_FAMILY, PROPERTY_FONT_SIZE,
        PROPERTY_MARGIN_RIGHT, PROPERTY_MARGIN_LEFT, PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_TOP,
        PROPERTY_TEXT_ALIGN};
    EXPECT_EQ(orderOf(*list), expected);
}

} // namespace

TEST(BuiltInStyles, AreWholeOrNotThere)
{
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < 200; ++n) {
        ValueCache values;
        std::unique_ptr<CssDeclarationList> list;
        zorvan::failNthAllocation(n);
        try {
            list = makeBuiltInDeclarations(ELEMENT_PRE, values);
        } catch (const std::bad_alloc&) {
            ++failures;
        }
        const bool reached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (list != nullptr) {
            EXPECT_EQ(list->getCount(), builtInStyleOf(ELEMENT_PRE).size()) << n;
        }
        if (!reached)
            break;
    }
    EXPECT_GT(failures, 10u);
}
