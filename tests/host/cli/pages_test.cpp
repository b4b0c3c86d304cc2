// Pages in many character sets, and one with spans: what the program prints is the page's text as
// UTF-8.

#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

const std::filesystem::path kFolder = HTMLFILTER_SOURCE_DIR "/tests/pages";

std::vector<std::filesystem::path> pages()
{
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
        if (entry.path().extension() == ".html")
            found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(Pages, ComeOutAsTheirText)
{
    const std::vector<std::filesystem::path> all = pages();
    EXPECT_GE(all.size(), 24u);
    for (const std::filesystem::path& page : all) {
        std::filesystem::path text = page;
        text.replace_extension(".txt");
        const host_test::ProgramResult result = host_test::runProgram(
            HTMLFILTER_BINARY_DIR "/htmlfilter", {"text", "--properties", page.string()});
        EXPECT_EQ(result.exitCode, 0) << page;
        EXPECT_EQ(result.output, contentOf(text)) << page;
        EXPECT_EQ(result.error, "") << page;
    }
}
