#include "host/cli/module_path.h"

#include "tests/host/run_program.h"

#include <gtest/gtest.h>

namespace {

using host_test::ScratchFolder;

TEST(ModulePath, TakesWhatIsNamed)
{
    EXPECT_EQ(host::cli::findModule("some/where.so"), "some/where.so");
}

/// Puts a copy of the program into bin/ of a folder and the fake module where it is told.
std::string firstLineOfInfo(const ScratchFolder& scratch, const std::string& modulePlace)
{
    namespace fs = std::filesystem;
    fs::create_directories(scratch.at("bin"));
    fs::copy_file(host_test::programPath(), scratch.at("bin/htmlfilter"));
    if (!modulePlace.empty()) {
        fs::create_directories(fs::path(scratch.at(modulePlace)).parent_path());
        fs::create_symlink(HTMLFILTER_BINARY_DIR "/fake_module.so", scratch.at(modulePlace));
    }
    for (const auto& entry : fs::directory_iterator(HTMLFILTER_BINARY_DIR)) {
        if (entry.path().filename().string().starts_with("libzvsupport"))
            fs::create_symlink(entry.path(), scratch.at("bin/" + entry.path().filename().string()));
    }
    const auto result = host_test::runProgram(scratch.at("bin/htmlfilter"), {"info"});
    const std::string& text = result.exitCode == 0 ? result.output : result.error;
    return text.substr(0, text.find('\n'));
}

TEST(ModulePath, LooksBesideTheProgram)
{
    const ScratchFolder scratch;
    EXPECT_EQ(firstLineOfInfo(scratch, "bin/htmlfilter.so"),
        "Module: " + scratch.at("bin/htmlfilter.so"));
}

TEST(ModulePath, LooksWhereItIsInstalled)
{
    const ScratchFolder scratch;
    EXPECT_EQ(firstLineOfInfo(scratch, "lib/htmlfilter/htmlfilter.so"),
        "Module: " + scratch.at("lib/htmlfilter/htmlfilter.so"));
}

TEST(ModulePath, TellsWhereItLooked)
{
    const ScratchFolder scratch;
    EXPECT_EQ(firstLineOfInfo(scratch, ""),
        "htmlfilter: no filter module: neither '" + scratch.at("bin/htmlfilter.so") + "' nor '"
            + scratch.at("lib/htmlfilter/htmlfilter.so") + "' is there; name it by --module PATH");
}

} // namespace
