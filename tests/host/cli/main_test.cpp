#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace {

using host_test::runFilter;
using host_test::runProgram;
using host_test::ScratchFolder;

std::ptrdiff_t lineCount(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}

TEST(Main, HelpTellsEverySwitchWithAnExample)
{
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"--help"}, {"text", "--help"}, {"trace", "--help"}, {"info", "--help"}}) {
        const auto result = runProgram(host_test::programPath(), words);
        EXPECT_EQ(result.exitCode, 0);
        for (const char* example : {"--file-type 1110", "--charset 0x14E30100", "--flags 0x100",
                 "--option 112=64", "--doc-option", "0x52B6A=1", "--stop 1", "--module build"})
            EXPECT_NE(result.output.find(example), std::string::npos) << example;
    }
    const auto text = runProgram(host_test::programPath(), {"text", "--help"});
    EXPECT_NE(text.output.find("--properties"), std::string::npos);
    EXPECT_NE(text.output.find("-o page.txt"), std::string::npos);
}

TEST(Main, TellsItsVersion)
{
    const auto result = runProgram(host_test::programPath(), {"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.starts_with("htmlfilter ")) << result.output;
    EXPECT_EQ(lineCount(result.output), 1);
}

TEST(Main, BadUseIsOneLine)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "x");
    const std::string big = scratch.write("big", "");
    ASSERT_EQ(::truncate(big.c_str(), 4'294'967'295), 0);
    const std::string modules = std::string(HTMLFILTER_BINARY_DIR) + "/fake_module_";
    const std::vector<std::vector<std::string>> rows = {
        {},
        {"what"},
        {"text", "/nowhere/page.html"},
        {"text", "/tmp"},
        {"text", big},
        {"text", page, "--file-type", "1109"},
        {"text", page, "--file-type", "x"},
        {"text", page, "--charset", "1"},
        {"text", page, "--charset", "0x0F060000"},
        {"text", page, "--charset", "0x10000100"},
        {"text", "/proc/self/mem"},
        {"trace", "/proc/self/mem"},
        {"text", "/proc/self/mem", "-o", scratch.at("out")},
        {"trace", "/proc/self/mem", "-o", scratch.at("out")},
        {"text", "bad\033[31m\nname"},
        {"text", ""},
        {"trace", ""},
        {"text", page, "-o", ""},
        {"trace", page, "-o", ""},
        {"text", page, "--output="},
        {"text", "--output=", page},
        {"text", page, "--module", ""},
        {"info", "--module", ""},
        {"text", "--module=", page},
        {"info", "--file-type", "1109"},
        {"text", scratch.write("int", "throw int")},
        {"text", scratch.write("thing", "throw thing")},
        {"trace", scratch.write("error", "throw error")},
        {"text", scratch.write("foreign", "closethrow foreign"), "-o", scratch.at("out")},
        {"text", page, "--stop", "-1"},
        {"text", page, "--option", "112"},
        {"text", page, "--doc-option", "a=b"},
        {"text", page, "--what"},
        {"text", page, page},
        {"text", page, "-o", "/nowhere/out"},
        {"text", page, "-o", "/tmp"},
        {"text", page, "-o", "/dev/full"},
        {"trace", "/nowhere/page.html"},
        {"trace", page, "-o", "/nowhere/out"},
    };
    for (const auto& words : rows) {
        const auto result = runFilter(words);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(words);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(lineCount(result.error), 1) << result.error;
        EXPECT_TRUE(result.error.starts_with("htmlfilter: ")) << result.error;
        EXPECT_EQ(result.error.find('\033'), std::string::npos);
    }
    for (const char* fault : {"no_entry", "table_gap", "byte_order", "no_file_types",
             "untold_file_types", "entry_throws", "info_throws", "missing"}) {
        for (const char* command : {"text", "trace", "info"}) {
            const auto result = runProgram(
                host_test::programPath(), {command, "--module", modules + fault + ".so"});
            EXPECT_EQ(result.exitCode, 2) << fault;
            EXPECT_EQ(lineCount(result.error), 1) << result.error;
            EXPECT_EQ(result.output, "");
        }
    }
    for (const auto& [fault, command] : {std::pair("date_throws", "info"),
             std::pair("alloc_throws", "text"), std::pair("alloc_throws", "trace")}) {
        const auto result
            = runProgram(host_test::programPath(), {command, "--module", modules + fault + ".so"});
        EXPECT_EQ(result.exitCode, 2) << fault;
        EXPECT_EQ(lineCount(result.error), 1) << result.error;
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(scratch.read("page"), "x");
    EXPECT_EQ(scratch.fileCount(), 6u);
}

TEST(Main, AnswersThatCannotBeWrittenAreBadUse)
{
    for (const std::vector<std::string>& words :
        std::vector<std::vector<std::string>>{{"--help"}, {"--version"}, {"text", "--help"}}) {
        const auto result = runProgram(host_test::programPath(), words, "/dev/null", "/dev/full");
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(
            result.error, "htmlfilter: cannot write standard output: No space left on device\n");
    }
}

TEST(Main, AShortageOfMemoryIsNoFaultOfTheModule)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "short");
    const auto text = runFilter({"text", page, "-o", scratch.at("out")});
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_EQ(text.error, "htmlfilter: the filter failed with code 13: out of memory\n");
    EXPECT_EQ(scratch.fileCount(), 1u);
    const auto trace = runFilter({"trace", page});
    EXPECT_EQ(trace.exitCode, 1);
    EXPECT_TRUE(trace.output.starts_with("SOAnnounceSection 12 0 0\n"));
    EXPECT_TRUE(trace.output.ends_with("== read -> 0\n== exception 13 \"out of memory\"\n"));
}

TEST(Main, AModuleThatNeverEndsIsBadUse)
{
    const ScratchFolder scratch;
    const auto result = runFilter({"text", scratch.write("page", "silent")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(lineCount(result.error), 1);
}

TEST(Main, AClosedPipeEndsItQuietly)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "much");
    const std::string errors = scratch.write("errors", "");
    for (const std::string command : {"text", "trace"}) {
        const std::string line = "{ '" + host_test::programPath() + "' " + command + " --module '"
            + HTMLFILTER_BINARY_DIR + "/fake_module.so' '" + page + "' 2>'" + errors
            + "'; echo $? >'" + scratch.at("code") + "'; } | head -c 1 >/dev/null";
        EXPECT_EQ(std::system(line.c_str()), 0);
        EXPECT_EQ(scratch.read("code"), "0\n");
        EXPECT_EQ(scratch.read("errors"), "");
    }
}

TEST(Main, SwitchesMayStandInFront)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "options");
    const auto front = runFilter({"--file-type", "1110", "trace", page});
    const auto behind = runFilter({"trace", page, "--file-type", "1110"});
    EXPECT_EQ(front.exitCode, 0);
    EXPECT_EQ(front.output, behind.output);
    EXPECT_NE(front.output.find("SOSetProperty 1110"), std::string::npos);
}

} // namespace
