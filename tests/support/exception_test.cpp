#include "support/exception.h"

#include "tests/support/test_module.h"

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <string>
#include <type_traits>

using zorvan::Exception;
using zorvan::Throwable;

static_assert(std::is_copy_constructible_v<Exception> && std::is_copy_assignable_v<Exception>);
static_assert(!std::is_base_of_v<std::exception, Exception>);
static_assert(!std::is_base_of_v<std::exception, UTBailOut>);
static_assert(!std::is_base_of_v<Throwable, UTBailOut>);

TEST(Exception, KeepsItsFiveValues)
{
    Exception cause(25, "item could not be found", nullptr, nullptr, 0);
    const Exception exception(137, "text", &cause, "source.cpp", 42);
    EXPECT_EQ(exception.code(), 137u);
    EXPECT_STREQ(exception.message(), "text");
    EXPECT_EQ(exception.cause(), &cause);
    EXPECT_STREQ(exception.sourceName(), "source.cpp");
    EXPECT_EQ(exception.line(), 42u);
}

TEST(Exception, NullsStayNull)
{
    const Exception exception(13, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(exception.message(), nullptr);
    EXPECT_EQ(exception.cause(), nullptr);
    EXPECT_EQ(exception.sourceName(), nullptr);
    EXPECT_EQ(exception.line(), 0u);
}

TEST(Exception, CopyHasItsOwnText)
{
    auto text = std::make_unique<std::string>("a text that goes away");
    auto original = std::make_unique<Exception>(15, text->c_str(), nullptr, nullptr, 0);
    const Exception copy(*original);
    text.reset();
    original.reset();
    EXPECT_STREQ(copy.message(), "a text that goes away");
    EXPECT_EQ(copy.code(), 15u);
}

TEST(Exception, LongMessageIsCut)
{
    const std::string text(1000, 'm');
    const Exception exception(15, text.c_str(), nullptr, nullptr, 0);
    EXPECT_EQ(exception.message(), text.substr(0, Exception::kMessageCapacity));
}

TEST(Exception, IsCaughtAsThrowable)
{
    try {
        throw Exception(13, "text", nullptr, nullptr, 0);
    } catch (const Throwable& throwable) {
        EXPECT_EQ(dynamic_cast<const Exception&>(throwable).code(), 13u);
    }
}

TEST(Exception, IsCaughtByTypeAcrossALocallyBoundModule)
{
    const TestModule module;
    auto* const thrower = module.function<void()>("throwException");
    ASSERT_NE(thrower, nullptr);
    try {
        thrower();
        FAIL() << "nothing was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 137u);
        EXPECT_STREQ(exception.message(), "ArrayList.get(): invalid parameter");
    }
}

TEST(Exception, OutlivesTheModuleThatThrewIt)
{
    std::unique_ptr<Exception> kept;
    {
        const TestModule module;
        auto* const thrower = module.function<void()>("throwException");
        ASSERT_NE(thrower, nullptr);
        try {
            thrower();
        } catch (const Exception& exception) {
            kept = std::make_unique<Exception>(exception);
        }
    }
    ASSERT_NE(kept, nullptr);
    EXPECT_STREQ(kept->message(), "ArrayList.get(): invalid parameter");
}
