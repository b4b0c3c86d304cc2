#include "tests/host/run_program.h"

#include <gtest/gtest.h>

namespace {

using host_test::runFilter;
using host_test::ScratchFolder;

TEST(TextCommand, WritesText)
{
    const ScratchFolder scratch;
    const auto result = runFilter({"text", scratch.write("page", "paragraphs")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "p1\np2\np3\n");
    EXPECT_EQ(result.error, "");
}

TEST(TextCommand, PausesChangeNothing)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "paragraphs");
    EXPECT_EQ(runFilter({"text", page, "--stop", "1"}).output, "p1\np2\np3\n");
}

TEST(TextCommand, ReadsStandardInput)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "plain words");
    EXPECT_EQ(runFilter({"text"}, page).output, "plain words\n");
    EXPECT_EQ(runFilter({"text", "-"}, page).output, "plain words\n");
    EXPECT_EQ(runFilter({"text", "-"}).output, "");
    EXPECT_EQ(runFilter({"text", "-"}, "/tmp").exitCode, 2);
}

TEST(TextCommand, AFileMayBeNamedLikeASubcommand)
{
    const ScratchFolder scratch;
    const auto before = std::filesystem::current_path();
    scratch.write("info", "plain words");
    std::filesystem::current_path(scratch.at("."));
    EXPECT_EQ(runFilter({"text", "info"}).output, "plain words\n");
    std::filesystem::current_path(before);
}

TEST(TextCommand, AnyBytesAreADocument)
{
    const ScratchFolder scratch;
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all.push_back(static_cast<char>(byte));
    for (const std::string& bytes : {std::string(), all}) {
        const auto result = runFilter({"text", scratch.write("page", bytes)});
        EXPECT_EQ(result.exitCode, 0);
    }
}

TEST(TextCommand, WritesToAFile)
{
    const ScratchFolder scratch;
    const std::string page = scratch.write("page", "paragraphs");
    const auto result = runFilter({"text", page, "-o", scratch.at("out")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(scratch.read("out"), "p1\np2\np3\n");
    EXPECT_EQ(runFilter({"text", page, "-o", page}).exitCode, 0);
    EXPECT_EQ(scratch.read("page"), "p1\np2\np3\n");
    EXPECT_EQ(scratch.fileCount(), 2u);
}

TEST(TextCommand, TellsADocumentThatWasGivenUp)
{
    const struct {
        const char* document;
        const char* error;
    } rows[] = {
        {"exception",
            "htmlfilter: the filter failed with code 137: ArrayList.get(): invalid parameter\n"},
        {"bailout", "htmlfilter: the filter bailed out with code 261\n"},
        {"abandon", "htmlfilter: the filter gave the document up with code 30\n"},
    };
    for (const auto& row : rows) {
        const ScratchFolder scratch;
        const std::string page = scratch.write("page", row.document);
        const auto result = runFilter({"text", page, "-o", scratch.at("out")});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error, row.error);
        EXPECT_EQ(scratch.fileCount(), 1u);
    }
}

TEST(TextCommand, CountsWhatHasNoMapping)
{
    const ScratchFolder scratch;
    const auto result = runFilter({"text", scratch.write("page", "unmapped")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "\uFFFDx\n");
    EXPECT_EQ(
        result.error, "htmlfilter: characters without a Unicode form, written as U+FFFD: 1\n");
}

} // namespace
