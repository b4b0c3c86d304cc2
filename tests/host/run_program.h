#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace host_test {

/// A folder that goes away with the object.
class ScratchFolder {
public:
    ScratchFolder()
    {
        char name[] = "/tmp/htmlfilter_test_XXXXXX";
        path_ = ::mkdtemp(name);
    }
    ~ScratchFolder() { std::filesystem::remove_all(path_); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string at(const std::string& name) const { return path_ + "/" + name; }

    std::string write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(at(name), std::ios::binary) << bytes;
        return at(name);
    }

    std::string read(const std::string& name) const
    {
        std::ifstream file(at(name), std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::size_t fileCount() const
    {
        const std::filesystem::directory_iterator files(path_);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    std::string path_;
};

struct ProgramResult {
    int exitCode = -1; ///< -1 when a signal ended it
    std::string output;
    std::string error;
};

/// Runs a program with the words as its arguments. input: the file to be its standard input.
/// output: the file to be its standard output instead of one that is read for the result.
inline ProgramResult runProgram(const std::string& program, const std::vector<std::string>& words,
    const std::string& input = "/dev/null", const std::string& output = "")
{
    const ScratchFolder scratch;
    const std::string outputName = output.empty() ? scratch.write("out", "") : output;
    const std::string errorName = scratch.write("err", "");
    std::vector<char*> arguments;
    arguments.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(::open(input.c_str(), O_RDONLY), STDIN_FILENO);
        ::dup2(::open(outputName.c_str(), O_WRONLY), STDOUT_FILENO);
        ::dup2(::open(errorName.c_str(), O_WRONLY), STDERR_FILENO);
        ::execv(program.c_str(), arguments.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ProgramResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.output = output.empty() ? scratch.read("out") : "";
    result.error = scratch.read("err");
    return result;
}

inline std::string programPath() { return std::string(HTMLFILTER_BINARY_DIR) + "/htmlfilter"; }

/// Runs the program `htmlfilter` with the fake module.
inline ProgramResult runFilter(std::vector<std::string> words,
    const std::string& input = "/dev/null", const std::string& output = "")
{
    words.push_back("--module");
    words.push_back(std::string(HTMLFILTER_BINARY_DIR) + "/fake_module.so");
    return runProgram(programPath(), words, input, output);
}

} // namespace host_test
