#pragma once

#include "support/exception.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace testing_support {

/// Expects that `call` throws zorvan::Exception with this code and text and nothing else in it.
template <typename Call>
void expectFailure(std::uint32_t code, const std::string& message, Call call)
{
    try {
        call();
    } catch (const zorvan::Exception& failure) {
        EXPECT_EQ(failure.code(), code);
        ASSERT_NE(failure.message(), nullptr);
        EXPECT_EQ(failure.message(), message);
        EXPECT_EQ(failure.cause(), nullptr);
        EXPECT_EQ(failure.sourceName(), nullptr);
        EXPECT_EQ(failure.line(), 0U);
        return;
    }
    ADD_FAILURE() << "no exception: " << message;
}

} // namespace testing_support
