#include "host/cli/output_file.h"

#include "host/cli/errors.h"
#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>

namespace {

using host::cli::BadUse;
using host::cli::OutputFile;
using host_test::ScratchFolder;

TEST(OutputFile, TakesItsNameWhenComplete)
{
    const ScratchFolder scratch;
    scratch.write("out", "old");
    {
        OutputFile output(scratch.at("out"));
        output.write("new ");
        EXPECT_EQ(scratch.read("out"), "old");
        output.write("text");
        output.commit();
    }
    EXPECT_EQ(scratch.read("out"), "new text");
    EXPECT_EQ(scratch.fileCount(), 1u);
}

TEST(OutputFile, LeavesNoHalfFile)
{
    const ScratchFolder scratch;
    {
        OutputFile output(scratch.at("out"));
        output.write("half");
    }
    EXPECT_EQ(scratch.fileCount(), 0u);
}

TEST(OutputFile, KeepsModeAndLinks)
{
    const ScratchFolder scratch;
    scratch.write("target", "old");
    ASSERT_EQ(::chmod(scratch.at("target").c_str(), 0640), 0);
    ASSERT_EQ(::symlink("target", scratch.at("link").c_str()), 0);
    OutputFile output(scratch.at("link"));
    output.write("new");
    output.commit();
    EXPECT_EQ(scratch.read("target"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.at("link")));
    struct stat status = {};
    ASSERT_EQ(::stat(scratch.at("target").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);
    EXPECT_EQ(scratch.fileCount(), 2u);
}

TEST(OutputFile, WritesThroughALinkToNothing)
{
    const ScratchFolder scratch;
    std::filesystem::create_directory(scratch.at("folder"));
    ASSERT_EQ(::symlink("folder/second", scratch.at("first").c_str()), 0);
    ASSERT_EQ(::symlink("../target", scratch.at("folder/second").c_str()), 0);
    {
        OutputFile unfinished(scratch.at("first"));
        unfinished.write("half");
    }
    EXPECT_FALSE(std::filesystem::exists(scratch.at("target")));
    OutputFile output(scratch.at("first"));
    output.write("new");
    output.commit();
    EXPECT_EQ(scratch.read("target"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.at("first")));
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.at("folder/second")));
}

TEST(OutputFile, RefusesLinksThatLeadNowhere)
{
    const ScratchFolder scratch;
    ASSERT_EQ(::symlink("self", scratch.at("self").c_str()), 0);
    ASSERT_EQ(::symlink("missing/target", scratch.at("link").c_str()), 0);
    EXPECT_THROW(OutputFile(scratch.at("link")), BadUse);
    EXPECT_THROW(OutputFile(scratch.at("self")), BadUse);
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.at("self")));
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.at("link")));
}

TEST(OutputFile, WritesDevicesAsTheyStand)
{
    OutputFile output("/dev/null");
    output.write("x");
    output.commit();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(OutputFile, RefusesWhatCannotBeWritten)
{
    EXPECT_THROW(OutputFile("/nowhere/out"), BadUse);
    EXPECT_THROW(OutputFile("/tmp"), BadUse);
    EXPECT_THROW(OutputFile("/dev/full").write("x"), BadUse);
}

TEST(OutputFile, TellsAClosedPipe)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    const ScratchFolder scratch;
    const std::string pipe = scratch.at("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    OutputFile output(pipe);
    output.write("x");
    ::close(reader);
    EXPECT_THROW(output.write("x"), host::cli::ClosedPipe);
    std::signal(SIGPIPE, before);
}

} // namespace
