#include "style/style_sheet.h"

#include "tests/style/style_document.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

TEST(StyleSheet, MakesABuiltInListOnce)
{
    StyleDocument document;
    CssDeclarationList* const list = document.sheet.builtInDeclarations(ELEMENT_H1);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(document.sheet.builtInDeclarations(ELEMENT_H1), list);
    EXPECT_NE(document.sheet.builtInDeclarations(ELEMENT_H2), list);
    EXPECT_EQ(document.sheet.builtInDeclarations(ELEMENT_DIV), nullptr);
    EXPECT_EQ(document.sheet.builtInDeclarations(ELEMENT_NONE), nullptr);
}

// The counted allocations of the test program show whether a list is left behind.
TEST(StyleSheet, OwnsWhatItKeeps)
{
    StyleDocument document;
    for (int i = 0; i < 100; ++i) {
        auto* list = new CssDeclarationList(&document.values);
        list->set(PROPERTY_COLOR, document.color(1), false, false);
        document.sheet.keepNodeDeclarations(list);
        document.sheet.keepSavedDeclarations(new CssDeclarationList(&document.values));
    }
    EXPECT_EQ(document.sheet.values, &document.values);
    EXPECT_EQ(document.sheet.filter, &document.context);
}

TEST(StyleSheet, DropsNothingButTheNewestList)
{
    StyleDocument document;
    EXPECT_FALSE(document.sheet.dropNodeDeclarations(nullptr));
    auto* const first = new CssDeclarationList(&document.values);
    auto* const second = new CssDeclarationList(&document.values);
    document.sheet.keepNodeDeclarations(first);
    document.sheet.keepNodeDeclarations(second);
    EXPECT_FALSE(document.sheet.dropNodeDeclarations(first));
    EXPECT_TRUE(document.sheet.dropNodeDeclarations(second));
    EXPECT_TRUE(document.sheet.dropNodeDeclarations(first));
}

} // namespace
