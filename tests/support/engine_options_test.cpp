#include "support/engine_options.h"

#include "support/bail_out.h"
#include "support/exception.h"
#include "tests/support/test_module.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

extern "C" int engineOptionsFromC(void (*thrower)(void*), void* argument);

namespace {

constexpr std::uint32_t OPTION_BACKGROUND = 0x45E29;
constexpr std::uint32_t OPTION_TABLES = 0x52B6A;

void throwException(void* message)
{
    throw zorvan::Exception(137, static_cast<const char*>(message), nullptr, nullptr, 0);
}
void throwSilent(void*) { throw zorvan::Exception(25, nullptr, nullptr, nullptr, 0); }
void throwBailOut(void*) { UTBailOutEx(0x105, 0, 0); }
void throwNoMemory(void*) { throw std::bad_alloc(); }
void throwStandard(void* message) { throw std::runtime_error(static_cast<const char*>(message)); }
void throwNumber(void*) { throw 5; }

} // namespace

TEST(EngineOptions, GlobalOptionsAreReadAsSet)
{
    std::uint32_t value = 0;
    EXPECT_NE(UTGetGlobalOption(OPTION_BACKGROUND, &value, sizeof value), 0);
    for (const std::uint32_t set : {1u, 0u, 0xFFFFFFFFu}) {
        EXPECT_EQ(UTSetGlobalOption(OPTION_BACKGROUND, &set, sizeof set), 0);
        EXPECT_EQ(UTGetGlobalOption(OPTION_BACKGROUND, &value, sizeof value), 0);
        EXPECT_EQ(value, set);
    }
    EXPECT_NE(UTGetGlobalOption(OPTION_BACKGROUND + 1, &value, sizeof value), 0);
    EXPECT_EQ(UTSetGlobalOption(OPTION_BACKGROUND, nullptr, 0), 0);
    EXPECT_NE(UTGetGlobalOption(OPTION_BACKGROUND, &value, sizeof value), 0);
    EXPECT_EQ(value, 0xFFFFFFFF) << "a failed query leaves the value";
}

TEST(EngineOptions, SizesHaveToAgree)
{
    const std::uint16_t set = 0x1234;
    ASSERT_EQ(UTSetGlobalOption(OPTION_BACKGROUND, &set, sizeof set), 0);
    std::uint32_t value = 0xAAAAAAAA;
    EXPECT_NE(UTGetGlobalOption(OPTION_BACKGROUND, &value, sizeof value), 0);
    EXPECT_NE(UTGetGlobalOption(OPTION_BACKGROUND, &value, 1), 0);
    EXPECT_EQ(value, 0xAAAAAAAA);
    EXPECT_NE(UTGetGlobalOption(OPTION_BACKGROUND, nullptr, sizeof set), 0);
    EXPECT_NE(UTSetGlobalOption(OPTION_BACKGROUND, nullptr, 4), 0);
    std::uint16_t half = 0;
    EXPECT_EQ(UTGetGlobalOption(OPTION_BACKGROUND, &half, sizeof half), 0);
    EXPECT_EQ(half, set);
    EXPECT_EQ(UTSetGlobalOption(OPTION_BACKGROUND, nullptr, 0), 0);
}

TEST(EngineOptions, LargeValues)
{
    const std::string text(10'000, 'x');
    ASSERT_EQ(UTSetGlobalOption(5, text.data(), 10'000), 0);
    std::string value(10'000, ' ');
    EXPECT_EQ(UTGetGlobalOption(5, value.data(), 10'000), 0);
    EXPECT_EQ(value, text);
    EXPECT_EQ(UTSetGlobalOption(5, nullptr, 0), 0);
}

TEST(EngineOptions, HandlesAreApart)
{
    int first = 0;
    int second = 0;
    const std::uint32_t one = 1;
    const std::uint32_t two = 2;
    const std::uint32_t global = 3;
    std::uint32_t value = 0;
    EXPECT_EQ(UTSetGlobalOption(OPTION_TABLES, &global, sizeof global), 0);
    EXPECT_NE(UTGetOption(&first, OPTION_TABLES, &value, sizeof value), 0) << "no falling back";
    EXPECT_EQ(UTSetOption(&first, OPTION_TABLES, &one, sizeof one), 0);
    EXPECT_EQ(UTSetOption(&first, OPTION_TABLES + 1, &two, sizeof two), 0);
    EXPECT_EQ(UTSetOption(&second, OPTION_TABLES, &two, sizeof two), 0);
    EXPECT_EQ(UTGetOption(&first, OPTION_TABLES, &value, sizeof value), 0);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(UTGetOption(&second, OPTION_TABLES, &value, sizeof value), 0);
    EXPECT_EQ(value, 2u);

    UTFreeOptions(&first);
    EXPECT_NE(UTGetOption(&first, OPTION_TABLES, &value, sizeof value), 0);
    EXPECT_NE(UTGetOption(&first, OPTION_TABLES + 1, &value, sizeof value), 0);
    EXPECT_EQ(UTGetOption(&second, OPTION_TABLES, &value, sizeof value), 0);
    UTFreeOptions(&second);
    UTFreeOptions(&second);

    EXPECT_NE(UTSetOption(nullptr, OPTION_TABLES, &one, sizeof one), 0);
    EXPECT_NE(UTGetOption(nullptr, OPTION_TABLES, &value, sizeof value), 0);
    UTFreeOptions(nullptr);
    EXPECT_EQ(UTGetGlobalOption(OPTION_TABLES, &value, sizeof value), 0);
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(UTSetGlobalOption(OPTION_TABLES, nullptr, 0), 0);
}

TEST(EngineOptions, HostAndModuleSeeOneStore)
{
    const TestModule module;
    auto* const read
        = module.function<int(std::uint32_t, void*, std::uint32_t)>("readGlobalOption");
    ASSERT_NE(read, nullptr);
    const std::uint32_t set = 21;
    std::uint32_t value = 0;
    ASSERT_EQ(UTSetGlobalOption(112, &set, sizeof set), 0);
    EXPECT_EQ(read(112, &value, sizeof value), 0);
    EXPECT_EQ(value, 21u);
    ASSERT_EQ(UTSetGlobalOption(112, nullptr, 0), 0);
    EXPECT_NE(read(112, &value, sizeof value), 0);
}

TEST(EngineOptions, OptionOfADocumentReachesTheModule)
{
    const TestModule module;
    auto* const read
        = module.function<int(void*, std::uint32_t, void*, std::uint32_t)>("readOption");
    ASSERT_NE(read, nullptr);
    int document = 0;
    int other = 0;
    const std::uint32_t set = 1;
    std::uint32_t value = 0;
    ASSERT_EQ(UTSetOption(&document, OPTION_TABLES, &set, sizeof set), 0);
    EXPECT_EQ(read(&document, OPTION_TABLES, &value, sizeof value), 0);
    EXPECT_EQ(value, 1u);
    EXPECT_NE(read(&other, OPTION_TABLES, &value, sizeof value), 0);
    EXPECT_NE(read(nullptr, OPTION_TABLES, &value, sizeof value), 0);
    UTFreeOptions(&document);
    EXPECT_NE(read(&document, OPTION_TABLES, &value, sizeof value), 0);
}

TEST(EngineOptions, ManyThreadsAtOnce)
{
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (std::uint32_t thread = 0; thread < 4; ++thread) {
            threads.emplace_back([thread, &wrong] {
                int handle = 0;
                for (std::uint32_t i = 0; i < 500; ++i) {
                    const std::uint32_t set = thread * 1000 + i;
                    std::uint32_t value = 0;
                    wrong += UTSetOption(&handle, OPTION_TABLES, &set, sizeof set) != 0;
                    wrong += UTGetOption(&handle, OPTION_TABLES, &value, sizeof value) != 0;
                    wrong += value != set;
                    UTFreeOptions(&handle);
                }
            });
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(EngineOptions, GuardedCallTellsWhatWasThrown)
{
    struct Row {
        void (*call)(void*);
        std::uint32_t kind;
        std::uint32_t code;
        const char* message; // null where any text will do
    };
    char text[] = "InsertNode(), invalid insertion mode!";
    const Row rows[] = {
        {[](void*) {}, UT_FAILURE_NONE, 0, ""},
        {&throwException, UT_FAILURE_EXCEPTION, 137, text},
        {&throwSilent, UT_FAILURE_EXCEPTION, 25, ""},
        {&throwBailOut, UT_FAILURE_BAIL_OUT, 0x105, nullptr},
        {&throwNoMemory, UT_FAILURE_NO_MEMORY, 13, nullptr},
        {&throwStandard, UT_FAILURE_OTHER, 0, text},
        {&throwNumber, UT_FAILURE_OTHER, 0, ""},
    };
    for (const Row& row : rows) {
        UTFailure failure;
        std::memset(&failure, 0xFF, sizeof failure);
        EXPECT_EQ(UTGuardedCall(row.call, text, &failure), static_cast<int>(row.kind));
        EXPECT_EQ(failure.kind, row.kind);
        EXPECT_EQ(failure.code, row.code);
        if (row.message != nullptr) {
            EXPECT_STREQ(failure.message, row.message);
        }
        EXPECT_EQ(UTGuardedCall(row.call, text, nullptr), static_cast<int>(row.kind));
    }
}

TEST(EngineOptions, GuardedCallHandsItsArgumentOnAndCutsLongTexts)
{
    int calls = 0;
    EXPECT_EQ(UTGuardedCall([](void* count) { ++*static_cast<int*>(count); }, &calls, nullptr), 0);
    EXPECT_EQ(calls, 1);
    std::string text(1000, 'm');
    UTFailure failure;
    UTGuardedCall(&throwStandard, text.data(), &failure);
    EXPECT_EQ(failure.message, text.substr(0, sizeof failure.message - 1));
}

TEST(EngineOptions, CanBeUsedFromC)
{
    char text[] = "text";
    EXPECT_EQ(engineOptionsFromC(&throwException, text), 0);
}
