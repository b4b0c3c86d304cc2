#include "tests/tools/htmltree/tree_fixture.h"

#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <stdexcept>

namespace testing_support {

void PrintTo(const Fixture& fixture, std::ostream* out) { *out << fixture.name; }

} // namespace testing_support

namespace {

using namespace htmltree_test;
using host_test::ScratchFolder;
using testing_support::Fixture;
using testing_support::readFile;

constexpr char kFixtureFolder[] = HTMLFILTER_SOURCE_DIR "/tests/trees";

class TreeFixtures : public testing::TestWithParam<Fixture> { };

TEST_P(TreeFixtures, GivesTheTree)
{
    const TreeExpectation expectation = parseExpectation(readFile(GetParam().expectation));
    EXPECT_EQ(expectation.outline, outlineUnder(expectation, readFile(GetParam().input)));
}

std::string testName(const testing::TestParamInfo<Fixture>& info)
{
    std::string name = info.param.name;
    for (char& byte : name) {
        if (std::isalnum(static_cast<unsigned char>(byte)) == 0)
            byte = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    Trees, TreeFixtures, testing::ValuesIn(findTrees(kFixtureFolder)), testName);

TEST(TreeFixture, EveryFileIsPartOfACase)
{
    EXPECT_EQ(treeFaults(kFixtureFolder), std::vector<std::string>());
}

TEST(TreeFixture, FindsFaults)
{
    const ScratchFolder scratch;
    std::filesystem::create_directory(scratch.at("trees"));
    const std::string folder = scratch.at("trees");
    EXPECT_EQ(treeFaults(folder), (std::vector<std::string>{folder + ": no case at all"}));
    scratch.write("trees/a.html", "x");
    scratch.write("trees/a.tree", "# why: a reason\n#\n# args: --no-declarations\nhtml\n");
    EXPECT_EQ(treeFaults(folder), std::vector<std::string>());
    scratch.write("trees/b.html", "x");
    scratch.write("trees/c.tree", "# must: body\n");
    EXPECT_EQ(treeFaults(folder),
        (std::vector<std::string>{folder + "/b.html: a document without a .tree",
            folder + "/c.tree: a .tree without a document",
            folder + "/c.tree: unknown header line: # must: body"}));
}

TEST(TreeFixture, RunsUnderItsSwitches)
{
    const auto outlineOf = [](const std::string& header, const std::string& document) {
        return outlineUnder(parseExpectation(header), document);
    };
    EXPECT_EQ(outlineOf("# args: --charset 0x13A40000 --no-declarations\n", "\x82\xA0"),
        "html\n  head\n  body\n    \"\\u82a0\"\n");
    EXPECT_NE(outlineOf("", "<b>x").find("b -> font-weight: bold"), std::string::npos);
    EXPECT_THROW(outlineOf("# args: --what\n", "x"), std::runtime_error);
    EXPECT_THROW(outlineOf("# args: --charset 1\n", "x"), std::runtime_error);
    EXPECT_THROW(outlineOf("# args: --file-type 1\n", "x"), std::runtime_error);
}

TEST(TreeBless, WritesTreesAndKeepsTheHeader)
{
    const ScratchFolder scratch;
    std::filesystem::create_directories(scratch.at("x"));
    scratch.write("x/a.html", "q");
    scratch.write("x/a.tree", "# why: w\n# args: --no-declarations\nold\n");
    const std::string program = std::string(HTMLFILTER_BINARY_DIR) + "/tree_bless";
    const auto bless = [&](const std::string& topic) {
        return host_test::runProgram(program, {topic, scratch.at(".")});
    };
    EXPECT_EQ(bless("x/").output, "x/a: written\n1 fixtures, 1 written\n");
    EXPECT_EQ(scratch.read("x/a.tree"),
        "# why: w\n# args: --no-declarations\nhtml\n  head\n  body\n    \"q\"\n");
    EXPECT_EQ(bless("x/").output, "1 fixtures, 0 written\n");
    EXPECT_EQ(bless("none").exitCode, 2);
    scratch.write("x/a.tree", "# args: --what\n");
    EXPECT_EQ(bless("x/").exitCode, 2);
    EXPECT_EQ(scratch.read("x/a.tree"), "# args: --what\n");
}

} // namespace
