#include "tests/host/run_program.h"

#include <gtest/gtest.h>

namespace {

using host_test::runFilter;
using host_test::ScratchFolder;

constexpr char kStart[] = "SOAnnounceSection 12 0 0\nSOAnnounceFeatures 1343640\n== section\n";

TEST(TraceCommand, WritesEveryCall)
{
    const ScratchFolder scratch;
    const auto result = runFilter({"trace", scratch.write("page", "a\"b")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
        std::string(kStart) + "SOEmitTextAt \"a\\u0022b\" 3 347078656 4660\nSOEmitBreak 2 0\n"
            + "== read -> 0\n");
}

TEST(TraceCommand, ShowsPauses)
{
    const ScratchFolder scratch;
    const auto result = runFilter({"trace", "--stop", "2", scratch.write("page", "paragraphs")});
    EXPECT_EQ(result.output,
        std::string(kStart) + "SOEmitTextAt \"p1\" 2 347078656 4660\nSOEmitBreak 1 0\n"
            + "SOEmitTextAt \"p2\" 2 347078656 4660\nSOEmitBreak 1 0\n== read -> 0\n"
            + "SOEmitTextAt \"p3\" 2 347078656 4660\nSOEmitBreak 1 0\nSOEmitBreak 2 0\n"
            + "== read -> 0\n");
}

TEST(TraceCommand, PassesOptionsOn)
{
    const ScratchFolder scratch;
    const auto result
        = runFilter({"trace", scratch.write("page", "options"), "--file-type", "1110", "--charset",
            "0x14E30100", "--flags", "0x80", "--option", "112=64", "--doc-option", "0x52B6A=5"});
    EXPECT_EQ(result.output,
        std::string(kStart) + "SOSetProperty 1110 350421248 128 64\nSOSetFontHeight 5\n"
            + "SOEmitBreak 2 0\n== read -> 0\n");
}

TEST(TraceCommand, ATraceOfADocumentThatWasGivenUpIsWhole)
{
    const struct {
        const char* document;
        const char* line;
    } rows[] = {
        {"exception", "== exception 137 \"ArrayList.get(): invalid parameter\"\n"},
        {"bailout", "== bailout 261\n"},
        {"abandon", "== abandon 30\n"},
    };
    for (const auto& row : rows) {
        const ScratchFolder scratch;
        const std::string page = scratch.write("page", row.document);
        const auto result = runFilter({"trace", page, "-o", scratch.at("out")});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(scratch.read("out"), std::string(kStart) + row.line);
        EXPECT_EQ(runFilter({"trace", "-"}, page).output, scratch.read("out"));
    }
}

} // namespace
