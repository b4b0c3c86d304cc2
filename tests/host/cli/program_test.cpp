#include "host/cli/program.h"

#include "host/cli/errors.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

int run(std::vector<const char*> words)
{
    words.insert(words.begin(), "htmlfilter");
    return host::cli::runProgram(static_cast<int>(words.size()), words.data());
}

TEST(Program, AnswersHelpAndVersion)
{
    for (const char* word : {"--help", "-h", "--version"})
        EXPECT_EQ(run({word}), host::cli::EXIT_CODE_DONE);
    for (const char* word : {"text", "trace", "info"})
        EXPECT_EQ(run({word, "--help"}), host::cli::EXIT_CODE_DONE);
}

TEST(Program, AnswersBadUse)
{
    EXPECT_EQ(run({}), host::cli::EXIT_CODE_BAD_USE);
    EXPECT_EQ(run({"what"}), host::cli::EXIT_CODE_BAD_USE);
    EXPECT_EQ(run({"text", "--what"}), host::cli::EXIT_CODE_BAD_USE);
    EXPECT_EQ(run({"text", "a", "b"}), host::cli::EXIT_CODE_BAD_USE);
    EXPECT_EQ(run({"info", "stray"}), host::cli::EXIT_CODE_BAD_USE);
}

} // namespace
