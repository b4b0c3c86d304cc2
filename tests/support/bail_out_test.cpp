#include "support/bail_out.h"

#include "support/exception.h"
#include "tests/support/test_module.h"

#include <gtest/gtest.h>

#include <exception>

TEST(BailOut, ThrowsTheThreeWords)
{
    try {
        UTBailOutEx(18, 1, 2);
        FAIL() << "came back";
    } catch (const UTBailOut& bailOut) {
        EXPECT_EQ(bailOut.code, 18u);
        EXPECT_EQ(bailOut.first, 1u);
        EXPECT_EQ(bailOut.second, 2u);
    }
}

TEST(BailOut, IsNoExceptionOfAnotherKind)
{
    bool caught = false;
    try {
        try {
            UTBailOutEx(18, 0, 0);
        } catch (const zorvan::Throwable&) {
            FAIL() << "caught as a throwable";
        } catch (const std::exception&) {
            FAIL() << "caught as a standard exception";
        }
    } catch (const UTBailOut&) {
        caught = true;
    }
    EXPECT_TRUE(caught);
}

TEST(BailOut, IsCaughtByTypeAcrossALocallyBoundModule)
{
    const TestModule module;
    auto* const thrower = module.function<void()>("throwBailOut");
    ASSERT_NE(thrower, nullptr);
    try {
        thrower();
        FAIL() << "nothing was thrown";
    } catch (const UTBailOut& bailOut) {
        EXPECT_EQ(bailOut.code, 0x105u);
        EXPECT_EQ(bailOut.first, 1u);
        EXPECT_EQ(bailOut.second, 2u);
    }
}
