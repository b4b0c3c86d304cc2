#include "host/cli/input_source.h"

#include "host/cli/errors.h"
#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <thread>

namespace {

using host::cli::BadUse;
using host::cli::openInput;

std::string contentOf(host::DocumentStream& stream)
{
    std::string bytes(static_cast<std::size_t>(stream.size()) + 1, '\0');
    std::uint32_t count = 0;
    EXPECT_TRUE(stream.readAt(0, bytes.data(), static_cast<std::uint32_t>(bytes.size()), count));
    bytes.resize(count);
    return bytes;
}

std::string failureOf(const std::string& name)
{
    try {
        openInput(name);
    } catch (const BadUse& error) {
        return error.what();
    }
    return "";
}

TEST(InputSource, ReadsAnyBytesOrNone)
{
    const host_test::ScratchFolder scratch;
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all.push_back(static_cast<char>(byte));
    for (const std::string& bytes : {std::string(), all})
        EXPECT_EQ(contentOf(*openInput(scratch.write("file", bytes))), bytes);
}

TEST(InputSource, ReadsPipes)
{
    const host_test::ScratchFolder scratch;
    const std::string pipe = scratch.at("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string bytes(300'000, 'x');
    std::thread writer([&] { std::ofstream(pipe) << bytes; });
    const auto stream = openInput(pipe);
    writer.join();
    EXPECT_EQ(contentOf(*stream), bytes);
}

TEST(InputSource, ReadsSystemFilesWithoutASize)
{
    EXPECT_NE(contentOf(*openInput("/proc/version")), "");
}

TEST(InputSource, RefusesWhatIsNoFile)
{
    EXPECT_EQ(
        failureOf("/nowhere/a.html"), "cannot read '/nowhere/a.html': No such file or directory");
    EXPECT_EQ(failureOf("/tmp"), "cannot read '/tmp': it is a directory");
}

TEST(InputSource, TellsAFailedRead)
{
    const host::Module module(HTMLFILTER_BINARY_DIR "/fake_module.so");
    for (const std::string name : {"page", "-"}) {
        host::FileStream broken(::open("/tmp", O_RDONLY | O_DIRECTORY), 10);
        host::HostSink sink;
        try {
            host::cli::convertInput(module, broken, name, {}, sink);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const BadUse& error) {
            EXPECT_EQ(error.what(),
                "cannot read " + std::string(name == "-" ? "standard input" : "'page'")
                    + ": Is a directory");
        }
    }
    // Its first bytes are mapped nowhere, so that reading them fails.
    EXPECT_EQ(failureOf("/proc/self/mem"), "cannot read '/proc/self/mem': Input/output error");
}

TEST(InputSource, RefusesWhatPositionsCannotAddress)
{
    const host_test::ScratchFolder scratch;
    const std::string name = scratch.write("big", "");
    ASSERT_EQ(::truncate(name.c_str(), 4'294'967'294), 0);
    EXPECT_EQ(openInput(name)->size(), 4'294'967'294u);
    ASSERT_EQ(::truncate(name.c_str(), 4'294'967'295), 0);
    EXPECT_EQ(failureOf(name),
        "'" + name + "' has more than 4294967294 bytes, which 32-bit positions cannot address");
}

} // namespace
