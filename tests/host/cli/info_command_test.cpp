#include "host/charset_table.h"

#include "tests/host/run_program.h"

#include <gtest/gtest.h>

namespace {

TEST(InfoCommand, TellsWhatTheModuleAnswers)
{
    const auto result = host_test::runFilter({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.starts_with(
        "Module: " HTMLFILTER_BINARY_DIR "/fake_module.so\n\nVwGetInfo:\n"));
    for (const char* line : {
             "\n  1   not answered  bytes of a saved position\n",
             "\n  6   2             number of file types, told by code 7\n",
             "\n  8   Jul 15 2024   build date\n",
             "\n  12  0x12345678    byte order probe\n",
             "\n  1101  Internet HTML\n  1110  HTML - Japanese ShiftJIS\n\n",
         })
        EXPECT_NE(result.output.find(line), std::string::npos) << line;
}

TEST(InfoCommand, ListsAllCharacterSets)
{
    const auto result = host_test::runFilter({"info"});
    for (const host::CharsetRow& row : host::charsetTable())
        EXPECT_NE(result.output.find(std::string("  ") + row.name + "\n"), std::string::npos);
}

TEST(InfoCommand, TellsStatesApartFromWhatDocumentsAreReadBy)
{
    const auto result = host_test::runFilter({"info"});
    const auto byCharset = result.output.find("\nCharacter sets (--charset):\n");
    const auto states = result.output.find("\nText is turned into UTF-8 under all of these, and");
    ASSERT_NE(byCharset, std::string::npos);
    ASSERT_NE(states, std::string::npos);
    for (const host::CharsetRow& row : host::charsetTable()) {
        const auto line = result.output.find(std::string("  ") + row.name + "\n");
        EXPECT_GT(line, byCharset);
        EXPECT_EQ(line < states, host::readsDocumentsBy(row.id)) << row.name;
    }
}

TEST(InfoCommand, ChecksItsSwitches)
{
    EXPECT_EQ(host_test::runFilter({"info", "--file-type", "1109"}).exitCode, 2);
    EXPECT_EQ(host_test::runFilter({"info", "--charset", "1"}).exitCode, 2);
    EXPECT_EQ(host_test::runFilter({"info", "--charset", "0x14B00000"}).exitCode, 0);
}

} // namespace
