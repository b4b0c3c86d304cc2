#include "host/global_options.h"

#include "support/engine_options.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t kFirst = 0x45E29;
constexpr std::uint32_t kSecond = 0x52B68;

TEST(GlobalOptions, StandForTheScope)
{
    std::uint32_t value = 0;
    {
        const host::GlobalOptionScope scope({{kFirst, 3}, {kSecond, 0xFFFFFFFF}, {kFirst, 4}});
        EXPECT_EQ(UTGetGlobalOption(kFirst, &value, sizeof value), 0);
        EXPECT_EQ(value, 4u);
        EXPECT_EQ(UTGetGlobalOption(kSecond, &value, sizeof value), 0);
        EXPECT_EQ(value, 0xFFFFFFFFu);
    }
    EXPECT_NE(UTGetGlobalOption(kFirst, &value, sizeof value), 0);
    EXPECT_NE(UTGetGlobalOption(kSecond, &value, sizeof value), 0);
}

} // namespace
