#include "tools/htmltree/program.h"

#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using host_test::ProgramResult;
using host_test::ScratchFolder;

ProgramResult runTree(const std::vector<std::string>& words, const std::string& input = "/dev/null",
    const std::string& output = "")
{
    return host_test::runProgram(
        std::string(HTMLFILTER_BINARY_DIR) + "/htmltree", words, input, output);
}

TEST(Program, PrintsTheTreeOfAFileAndOfStandardInput)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "<b>x</b>");
    const std::string tree = "html\n  head\n  body\n    b\n      \"x\"\n";
    for (const auto& result : {runTree({page, "--no-declarations"}),
             runTree({"--no-declarations", "-"}, page), runTree({"--no-declarations"}, page)}) {
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.output, tree);
        EXPECT_EQ(result.error, "");
    }
    EXPECT_NE(runTree({page}).output.find("    b -> font-weight: bold"), std::string::npos);
    EXPECT_NE(
        runTree({"--styles", page}).output.find("    b\n      -> font-weight: bold [built-in]\n"),
        std::string::npos);
}

TEST(Program, HelpTellsEverySwitch)
{
    const ProgramResult result = runTree({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* part : {"FILE", "--no-declarations", "--styles", "--charset", "--file-type",
             "--flags", "--option", "--doc-option", "Exit codes"})
        EXPECT_NE(result.output.find(part), std::string::npos) << part;
    EXPECT_EQ(result.output.find("--module"), std::string::npos);
}

TEST(Program, BadUseIsOneLine)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "x");
    const std::vector<std::vector<std::string>> rows = {
        {"/nowhere/page.html"},
        {"/tmp"},
        {page, "--what"},
        {page, page},
        {page, "--styles", "--no-declarations"},
        {page, "--charset", "1"},
        {page, "--charset", "x"},
        {page, "--file-type", "1"},
        {page, "--stop", "1"},
        {""},
    };
    for (const auto& words : rows) {
        const ProgramResult result = runTree(words);
        EXPECT_EQ(result.exitCode, 2) << words.back();
        EXPECT_EQ(result.output, "") << words.back();
        EXPECT_TRUE(result.error.starts_with("htmltree: ")) << result.error;
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_EQ(runTree({page}, "/dev/null", "/dev/full").exitCode, 2);
}

} // namespace
