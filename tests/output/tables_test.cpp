#include "output/tables.h"

#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(Tables, TextOfCellsAndCaptionsIsDelivered)
{
    OutputContext document;
    document.build(u"<table><caption>c</caption><tr><td>a</td><th>b</th></tr></table>");
    Lines texts;
    for (const std::string& line : document.walkAll()) {
        if (line.find("SOEmitTextAt") == 0)
            texts.push_back(line);
    }
    EXPECT_EQ(texts, (Lines{textLine("c"), textLine("a"), textLine("b")}));
    EXPECT_EQ(document.context.walkState & WALK_CAPTION_MET, 0U);
}
