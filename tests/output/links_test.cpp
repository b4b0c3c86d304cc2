#include "output/links.h"

#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(Links, IdIsABookmarkWithoutText)
{
    OutputContext document;
    document.context.sectionCharSetId = 77;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_SPAN);
    document.attribute(node, ATTRIBUTE_ID, u"x");
    for (int value = 1; value <= 2; ++value) {
        const std::string number = std::to_string(value);
        enterElement(*node, document.context);
        EXPECT_EQ(document.host.takeCalls(),
            (Lines{"SOStoreString \"x\" 77 1 -> " + number, "SOBeginReference -> " + number,
                "SOAddReferencePart 512 " + number + " 0", "SOEndReference",
                "SOBeginTagged 2147614728 " + number + " {@4=" + number + '}',
                "SOEndTagged 2147614728 " + number}));
    }
}

TEST(Links, EmptyIdHasNoString)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BR);
    document.attribute(node, ATTRIBUTE_ID, u"");
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOBeginReference -> 1", "SOAddReferencePart 512 4294967295 0", "SOEndReference",
            "SOBeginTagged 2147614728 1 {@4=4294967295}", "SOEndTagged 2147614728 1"}));
}

TEST(Links, BaseIsAField)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BASE);
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.callCount, 0U);
    document.attribute(node, ATTRIBUTE_HREF, u"http://a/");
    document.context.lastChar = u'q';
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOBeginTagged 2684420100 1 {@0=59}", "SOReserveChars 511",
            "SOCommitChars \"http://a/\" 9 347078656", "SOEndTagged 2684420100 1"}));
    EXPECT_EQ(document.context.lastChar, u'q');
}

TEST(Links, AnchorAndAreaKeepTheirStyle)
{
    for (const ZVHTMLElement id : {ELEMENT_A, ELEMENT_AREA}) {
        OutputContext document;
        HtmlTreeNode* node = document.element(document.tree.root(), id);
        document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        EXPECT_EQ(document.walkAll(), (Lines{"SOSetProperty 8 2 1 0", "SOSetProperty 8 2 0 0"}));
    }
}
