#include "host/cli/switches.h"

#include "host/cli/errors.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

namespace {

using host::cli::Switches;

Switches parsed(const std::string& line)
{
    CLI::App app;
    Switches switches;
    host::cli::addSwitches(app, switches);
    app.parse(line);
    return switches;
}

TEST(Switches, HaveDefaults)
{
    const Switches switches = parsed("");
    EXPECT_EQ(switches.conversion.fileType, 1101);
    EXPECT_EQ(switches.conversion.charSetId, 0u);
    EXPECT_EQ(switches.conversion.openFlags, 0u);
    EXPECT_EQ(switches.conversion.stopEvery, 0u);
    EXPECT_TRUE(switches.conversion.documentOptions.empty());
    EXPECT_TRUE(switches.globalOptions.empty());
    EXPECT_EQ(switches.modulePath, "");
}

TEST(Switches, TakeNumbersOfBothKinds)
{
    const Switches switches = parsed("--file-type 0x456 --charset 0x14E30100 --flags 256 --stop=3 "
                                     "--module a/b.so");
    EXPECT_EQ(switches.conversion.fileType, 1110);
    EXPECT_EQ(switches.conversion.charSetId, 0x14E30100u);
    EXPECT_EQ(switches.conversion.openFlags, 256u);
    EXPECT_EQ(switches.conversion.stopEvery, 3u);
    EXPECT_EQ(switches.modulePath, "a/b.so");
}

TEST(Switches, OptionsMayBeRepeated)
{
    const Switches switches
        = parsed("--option 112=64 --doc-option 0x52B6A=1 --option 0x45E29=0xFFFFFFFF");
    ASSERT_EQ(switches.globalOptions.size(), 2u);
    EXPECT_EQ(switches.globalOptions[0].id, 112u);
    EXPECT_EQ(switches.globalOptions[0].value, 64u);
    EXPECT_EQ(switches.globalOptions[1].id, 0x45E29u);
    EXPECT_EQ(switches.globalOptions[1].value, 0xFFFFFFFFu);
    ASSERT_EQ(switches.conversion.documentOptions.size(), 1u);
    EXPECT_EQ(switches.conversion.documentOptions[0].id, 0x52B6Au);
}

TEST(Switches, RefuseBadValues)
{
    for (const char* line : {"--file-type x", "--file-type 65536", "--file-type", "--charset -1",
             "--charset 0x100000000", "--flags ''", "--stop 1.5", "--option 112", "--option 112=x",
             "--doc-option =1", "--module", "--module ''", "--what", "stray",
             "--option 112=1 113=2", "--stop 1 --stop 2"})
        EXPECT_THROW(parsed(line), CLI::ParseError) << line;
}

TEST(Switches, KnowWhatModuleAndHostKnow)
{
    const host::Module module(HTMLFILTER_BINARY_DIR "/fake_module.so");
    EXPECT_NO_THROW(host::cli::checkSwitches(parsed("--file-type 1110"), module));
    EXPECT_NO_THROW(host::cli::checkSwitches(parsed("--charset 0x80109"), module));
    EXPECT_THROW(host::cli::checkSwitches(parsed("--file-type 1109"), module), host::cli::BadUse);
    EXPECT_THROW(host::cli::checkSwitches(parsed("--charset 1"), module), host::cli::BadUse);
    for (const char* state : {"--charset 0x0F060000", "--charset 0x10000100"})
        EXPECT_THROW(host::cli::checkSwitches(parsed(state), module), host::cli::BadUse);
}

} // namespace
