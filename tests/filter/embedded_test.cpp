#include "filter/entry_points.h"

#include <gtest/gtest.h>

TEST(Embedded, OperationsTouchNothingYet)
{
    IOInitializeHtml(nullptr, nullptr);
    EXPECT_EQ(IOParseHtml(nullptr, nullptr), 0xFFFFu);
    IODestroyHtml(nullptr, nullptr);
}
