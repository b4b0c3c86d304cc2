#include "support/filter_access.h"

#include <gtest/gtest.h>

TEST(FilterAccess, AnswersTheFirstWordOfTheHostArea)
{
    int context = 0;
    void* hostArea[155] = {&context};
    void* routines[4] = {};
    EXPECT_EQ(FASwitchFilterContext(hostArea, routines), &context);
    EXPECT_EQ(FASwitchFilterContext(hostArea, nullptr), &context);
    hostArea[0] = nullptr;
    EXPECT_EQ(FASwitchFilterContext(hostArea, routines), nullptr);
    EXPECT_EQ(FASwitchFilterContext(nullptr, routines), nullptr);
}
