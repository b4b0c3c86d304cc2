#include "tests/host/trace_fixture.h"

#include "tests/host/fake_module.h"
#include "tests/host/run_program.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

namespace testing_support {

void PrintTo(const Fixture& fixture, std::ostream* out) { *out << fixture.name; }

} // namespace testing_support

namespace {

using namespace host_test;

constexpr char kFixtureFolder[] = HTMLFILTER_SOURCE_DIR "/tests/traces";
constexpr char kModule[] = HTMLFILTER_BINARY_DIR "/htmlfilter.so";

/// Every fixture, through the real module.
class TraceFixtures : public testing::TestWithParam<TraceFixture> {
protected:
    static void SetUpTestSuite() { module = std::make_unique<host::Module>(kModule); }
    static void TearDownTestSuite() { module.reset(); }

    void SetUp() override
    {
        document_ = readFile(GetParam().input);
        expectation_ = parseExpectation(readFile(GetParam().expectation));
    }

    void TearDown() override
    {
        document_ = {};
        expectation_ = {};
    }

    static std::unique_ptr<host::Module> module;
    std::string document_;
    TraceExpectation expectation_;
};

std::unique_ptr<host::Module> TraceFixtures::module;

TEST_P(TraceFixtures, GivesTheCalls)
{
    const auto lines = runFixture(*module, document_, expectation_);
    EXPECT_EQ(firstBrokenMust(expectation_.musts, lines), "");
    if (!expectation_.lines.empty()) {
        EXPECT_EQ(firstDifference(expectation_.lines, lines), "");
    }
    EXPECT_FALSE(expectation_.lines.empty() && expectation_.musts.empty());
}

TEST_P(TraceFixtures, PausesChangeNothing)
{
    if (expectation_.stopDiffers)
        return;
    const auto whole = runFixture(*module, document_, expectation_, 0);
    const auto paused = runFixture(*module, document_, expectation_, 1);
    EXPECT_EQ(firstDifference(withoutReads(whole), withoutReads(paused)), "");
}

std::string testName(const testing::TestParamInfo<TraceFixture>& info)
{
    std::string name = info.param.name;
    for (char& byte : name) {
        if (std::isalnum(static_cast<unsigned char>(byte)) == 0)
            byte = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    Traces, TraceFixtures, testing::ValuesIn(findFixtures(kFixtureFolder)), testName);

TEST(TraceFixture, EveryFileIsPartOfACase)
{
    EXPECT_EQ(fixtureFaults(kFixtureFolder), std::vector<std::string>());
}

TEST(TraceFixture, FindsFaults)
{
    const ScratchFolder scratch;
    const std::string folder = scratch.at("traces");
    EXPECT_EQ(fixtureFaults(folder), (std::vector<std::string>{folder + ": no case at all"}));
    std::filesystem::create_directory(folder);
    EXPECT_EQ(fixtureFaults(folder), (std::vector<std::string>{folder + ": no case at all"}));
    for (const char* suffix : {"html", "htm", "bin"}) {
        scratch.write(std::string("traces/") + suffix + "." + suffix, "x");
        scratch.write(std::string("traces/") + suffix + ".trace",
            "# why:  a reason\n# why:       and more of it\n#\n# args: --stop 1\n# must: A\n"
            "# stop: differs\n# only: must\nSOFinishTable\n");
    }
    EXPECT_EQ(fixtureFaults(folder), std::vector<std::string>());
    scratch.write("traces/a.trace", "");
    scratch.write("traces/b.html", "");
    scratch.write("traces/c.txt", "");
    scratch.write("traces/html.trace",
        "# mist: A\n# must A\n#must: A\n# only: some\n# stop: same\n# Must: A\n");
    EXPECT_EQ(fixtureFaults(folder),
        (std::vector<std::string>{folder + "/a.trace: a .trace without a document",
            folder + "/b.html: a document without a .trace",
            folder + "/c.txt: neither a document nor a .trace",
            folder + "/html.trace: unknown header line: # Must: A",
            folder + "/html.trace: unknown header line: # mist: A",
            folder + "/html.trace: unknown header line: # must A",
            folder + "/html.trace: unknown header line: # only: some",
            folder + "/html.trace: unknown header line: # stop: same",
            folder + "/html.trace: unknown header line: #must: A"}));
}

TEST(TraceFixture, ReadsHeaderLines)
{
    const auto expectation = parseExpectation("# why: a reason\n"
                                              "# args: --file-type 1110  --stop 1\n"
                                              "# must: SOEmitTextAt \"x\"\n"
                                              "SOEmitBreak 1 0\n"
                                              "# must: SOEmitBreak 2\n"
                                              "#\n"
                                              "== read -> 0\n");
    EXPECT_EQ(expectation.header.size(), 5u);
    EXPECT_EQ(
        expectation.arguments, (std::vector<std::string>{"--file-type", "1110", "--stop", "1"}));
    EXPECT_EQ(expectation.musts, (std::vector<std::string>{"SOEmitTextAt \"x\"", "SOEmitBreak 2"}));
    EXPECT_EQ(expectation.lines, (std::vector<std::string>{"SOEmitBreak 1 0", "== read -> 0"}));
    EXPECT_FALSE(expectation.onlyMusts);
    EXPECT_FALSE(expectation.stopDiffers);
    EXPECT_TRUE(parseExpectation("# only: must\n").onlyMusts);
    EXPECT_TRUE(parseExpectation("# stop: differs\n").stopDiffers);
}

TEST(TraceFixture, MustsOccurInOrder)
{
    const std::vector<std::string> lines = {"A 1", "B 2", "A 3"};
    const struct {
        std::vector<std::string> musts;
        const char* broken;
    } rows[] = {
        {{}, ""},
        {{"A", "B", "A"}, ""},
        {{"A 3"}, ""},
        {{"A", "A", "A"}, "A"},
        {{"B", "A 1"}, "A 1"},
        {{"A", "C"}, "C"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(firstBrokenMust(row.musts, lines), row.broken);
}

TEST(TraceFixture, TellsTheFirstDifference)
{
    EXPECT_EQ(firstDifference({"a", "b"}, {"a", "b"}), "");
    EXPECT_EQ(firstDifference({"a", "b"}, {"a", "c"}), "call line 2\n  expected: b\n  actual:   c");
    EXPECT_EQ(firstDifference({"a"}, {"a", "c"}),
        "call line 2\n  expected: (no more lines)\n  actual:   c");
    EXPECT_EQ(firstDifference({"a", "b"}, {"a"}),
        "call line 2\n  expected: b\n  actual:   (no more lines)");
}

TEST(TraceFixture, RunsUnderItsSwitches)
{
    const host::Module module(fakeModulePath());
    const auto options = parseExpectation(
        "# args: --file-type 1110 --charset 0x14E30100 --flags 256 --option 112=64 "
        "--doc-option 0x52B6A=7\n");
    EXPECT_EQ(runFixture(module, "options", options).at(3), "SOSetProperty 1110 350421248 256 64");
    const auto stopped = parseExpectation("# args: --stop 1\n");
    const auto paused = runFixture(module, "paragraphs", stopped);
    const auto whole = runFixture(module, "paragraphs", stopped, 0);
    EXPECT_GT(paused.size(), whole.size());
    EXPECT_EQ(withoutReads(paused), withoutReads(whole));
    EXPECT_THROW(
        runFixture(module, "", parseExpectation("# args: --what 1\n")), std::runtime_error);
}

TEST(TraceFixture, FindsCasesByTopic)
{
    char folder[] = "/tmp/trace_fixture_test_XXXXXX";
    ASSERT_NE(::mkdtemp(folder), nullptr);
    const std::filesystem::path root = folder;
    std::filesystem::create_directories(root / "table");
    std::filesystem::create_directories(root / "text");
    for (const char* name : {"table/b.html", "table/b.trace", "table/a.bin", "table/a.trace",
             "table/untold.html", "text/c.htm", "text/c.trace", "text/d.txt", "text/d.trace"})
        std::ofstream(root / name) << "x";
    std::vector<std::string> names;
    for (const TraceFixture& fixture : findFixtures(folder))
        names.push_back(fixture.name);
    EXPECT_EQ(names, (std::vector<std::string>{"table/a", "table/b", "text/c"}));
    EXPECT_EQ(findFixtures(folder, "table/").size(), 2u);
    EXPECT_EQ(findFixtures(folder, "text/c").at(0).input, (root / "text/c.htm").string());
    EXPECT_TRUE(findFixtures("/nowhere").empty());
    std::filesystem::remove_all(root);
}

TEST(TraceFixture, BlessingKeepsTheHeader)
{
    const auto expectation = parseExpectation("# why: w\nold\n# must: n\n");
    EXPECT_EQ(blessedText(expectation, {"new", "n"}), "# why: w\n# must: n\nnew\nn\n");
    EXPECT_EQ(blessedText(parseExpectation("# only: must\n"), {"new"}), "# only: must\n");
}

TEST(TraceBless, WritesCallsAndRefusesBrokenMusts)
{
    const ScratchFolder scratch;
    std::filesystem::create_directories(scratch.at("x"));
    scratch.write("x/a.html", "q");
    scratch.write("x/a.trace", "# why: w\n# must: SOEmitTextAt \"q\"\nold\n");
    const std::string broken = "# must: SOEmitTextAt \"z\"\nold\n";
    scratch.write("x/b.html", "q");
    scratch.write("x/b.trace", broken);
    const std::string program = std::string(HTMLFILTER_BINARY_DIR) + "/trace_bless";
    const auto bless = [&](const std::string& topic) {
        return ::host_test::runProgram(program, {topic, scratch.at("."), fakeModulePath()});
    };
    EXPECT_EQ(bless("x/").exitCode, 1);
    EXPECT_EQ(scratch.read("x/a.trace"),
        "# why: w\n# must: SOEmitTextAt \"q\"\nSOAnnounceSection 12 0 0\n"
        "SOAnnounceFeatures 1343640\n== section\nSOEmitTextAt \"q\" 1 347078656 4660\n"
        "SOEmitBreak 2 0\n== read -> 0\n");
    EXPECT_EQ(scratch.read("x/b.trace"), broken);
    EXPECT_EQ(bless("x/a").exitCode, 0);
    EXPECT_EQ(bless("none").exitCode, 2);
}

} // namespace
