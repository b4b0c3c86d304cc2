#include "support/xmp_properties.h"

#include <gtest/gtest.h>

#include <array>

namespace {

int calls = 0;

void countCall() { ++calls; }

} // namespace

TEST(XmpProperties, DeliversNothingAndLeavesItsArgumentsAlone)
{
    calls = 0;
    std::array<void*, 150> routines{};
    routines.fill(reinterpret_cast<void*>(&countCall));
    int word = 7;
    XMPSPutDocPropsImp(&word, routines.data(), &word, &word);
    XMPSPutDocPropsImp(nullptr, routines.data(), nullptr, nullptr);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(word, 7);
}
