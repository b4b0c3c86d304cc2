#include "output/images.h"

#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(Images, WhatIsPlacedKeepsItsStyle)
{
    for (const ZVHTMLElement id : {ELEMENT_IMG, ELEMENT_INPUT}) {
        OutputContext document;
        HtmlTreeNode* node = document.element(document.tree.root(), id);
        document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        EXPECT_EQ(document.walkAll(), (Lines{"SOSetProperty 8 2 1 0", "SOSetProperty 8 2 0 0"}));
    }
}

TEST(Images, RuleEndsItsParagraph)
{
    OutputContext document;
    document.build(u"<hr></hr>");
    EXPECT_EQ(document.walkAll(), (Lines{kParagraphLine, "SOSetLineSpacing 1 0 0 0"}));
}
