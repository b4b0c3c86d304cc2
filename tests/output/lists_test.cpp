#include "output/lists.h"

#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(Lists, ItemsAreParagraphsOfTheirOwn)
{
    OutputContext document;
    document.build(u"<ul><li>a</li><li>b</li></ul>");
    const Lines lines = document.walkAll();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], textLine("a"));
    EXPECT_EQ(lines[1], kParagraphLine);
    EXPECT_EQ(lines[2], textLine("b"));
}

TEST(Lists, TermsAndDefinitionsEndTheirLines)
{
    OutputContext document;
    document.build(u"<dl><dt>a</dt><dd>b</dd></dl>");
    EXPECT_EQ(
        document.walkAll(), (Lines{textLine("a"), kParagraphLine, textLine("b"), kParagraphLine}));
}
