#include "host/cli/descriptors.h"

#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>

namespace {

using host_test::ScratchFolder;

TEST(Descriptors, CopiesAreNoStandardStreams)
{
    const ScratchFolder scratch;
    const int file = ::open(scratch.write("file", "x").c_str(), O_RDONLY);
    const int copy = host::cli::copyDescriptor(file);
    EXPECT_GT(copy, STDERR_FILENO);
    EXPECT_NE(::fcntl(copy, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(host::cli::copyDescriptor(-1), -1);
    ::close(copy);
    ::close(file);
}

TEST(Descriptors, StreamsThatAreOpenStayAsTheyAre)
{
    std::array<struct stat, 3> before = {};
    std::array<struct stat, 3> after = {};
    for (int file = 0; file < 3; ++file)
        ::fstat(file, &before.at(static_cast<std::size_t>(file)));
    host::cli::holdStandardStreams();
    for (std::size_t file = 0; file < 3; ++file) {
        ::fstat(static_cast<int>(file), &after.at(file));
        EXPECT_EQ(after.at(file).st_ino, before.at(file).st_ino);
    }
}

TEST(Descriptors, WaitsForAPipe)
{
    int pipe[2] = {};
    ASSERT_EQ(::pipe(pipe), 0);
    host::cli::awaitWritable(pipe[1]);
    std::thread writer([&pipe] { EXPECT_EQ(::write(pipe[1], "x", 1), 1); });
    host::cli::awaitReadable(pipe[0]);
    char byte = 0;
    EXPECT_EQ(::fcntl(pipe[0], F_SETFL, O_NONBLOCK), 0);
    EXPECT_EQ(::read(pipe[0], &byte, 1), 1);
    writer.join();
    ::close(pipe[0]);
    ::close(pipe[1]);
}

/// Runs the program through the shell with the words, which may redirect; answers its exit code.
std::string runInShell(const ScratchFolder& scratch, const std::string& words)
{
    const std::string line = "'" + host_test::programPath() + "' --module '" HTMLFILTER_BINARY_DIR
        + std::string("/fake_module.so' ") + words + "; echo $? >'" + scratch.at("code") + "'";
    EXPECT_EQ(std::system(("{ " + line + "; } 2>/dev/null").c_str()), 0);
    return scratch.read("code");
}

TEST(Descriptors, AClosedStreamIsNoOtherFile)
{
    const struct {
        const char* words; ///< the document is opened for writing too
        const char* code;
    } rows[] = {
        {"text - <>DOC >&-", "2\n"},
        {"trace - <>DOC >&-", "2\n"},
        {"info <>DOC >&-", "2\n"},
        {"--help <>DOC >&-", "2\n"},
        {"text - <>DOC 2>&-", "0\n"},
        {"text - <>DOC >&- 2>&-", "2\n"},
        {"text DOC >&- 2>&-", "2\n"},
        {"text DOC <&- 2>&-", "0\n"},
        {"text DOC <&- >&- 2>&-", "2\n"},
        {"text - <&- >/dev/null", "2\n"},
        {"text <&- >&- 2>&-", "2\n"},
        {"text DOC -o OUT <&- >&- 2>&-", "0\n"},
    };
    for (const auto& row : rows) {
        const ScratchFolder scratch;
        // Its words make the program tell something on standard error too.
        scratch.write("doc", "unmapped words");
        std::string words = row.words;
        for (const auto& [name, place] : {std::pair("DOC", "doc"), std::pair("OUT", "out")}) {
            if (const auto at = words.find(name); at != std::string::npos)
                words.replace(at, 3, scratch.at(place));
        }
        EXPECT_EQ(runInShell(scratch, words), row.code) << row.words;
        EXPECT_EQ(scratch.read("doc"), "unmapped words") << row.words;
        if (std::string(row.words).find("OUT") != std::string::npos) {
            EXPECT_EQ(scratch.read("out"), "\uFFFDx\n");
        }
    }
}

TEST(Descriptors, StreamsThatDoNotBlockAreWaitedFor)
{
    const ScratchFolder scratch;
    const std::string in = scratch.at("in");
    const std::string out = scratch.at("out");
    ASSERT_EQ(::mkfifo(in.c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(out.c_str(), 0600), 0);
    // Held open for both, so that no side waits for the other to open.
    const int source = ::open(in.c_str(), O_RDWR | O_NONBLOCK);
    const int sink = ::open(out.c_str(), O_RDWR | O_NONBLOCK);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(::open(in.c_str(), O_RDONLY | O_NONBLOCK), STDIN_FILENO);
        ::dup2(sink, STDOUT_FILENO);
        ::close(source);
        const std::string program = host_test::programPath();
        ::execl(program.c_str(), program.c_str(), "text", "-", "--module",
            HTMLFILTER_BINARY_DIR "/fake_module.so", nullptr);
        ::_exit(127);
    }
    // The program waits for its document, then for room in the pipe, which holds 64 KiB.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(::write(source, "much", 4), 4);
    ::close(source);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const std::size_t wanted = 20'000 * 101;
    std::size_t count = 0;
    int status = 0;
    bool ended = false;
    // What the program leaves in the pipe is read also when it has ended meanwhile.
    while (count < wanted) {
        char piece[4096];
        const ssize_t got = ::read(sink, piece, sizeof piece);
        if (got > 0)
            count += static_cast<std::size_t>(got);
        else if (ended)
            break;
        else
            ended = ::waitpid(child, &status, WNOHANG) != 0;
    }
    EXPECT_EQ(count, wanted);
    ::close(sink);
    if (count == wanted) {
        if (!ended)
            ::waitpid(child, &status, 0);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
}

} // namespace
