#include "host/module.h"

#include "support/exception.h"
#include "tests/host/fake_module.h"

#include <gtest/gtest.h>

namespace {

using host::Module;
using host::ModuleError;
using host_test::fakeModulePath;

std::string loadFailure(const std::string& path)
{
    try {
        const Module module(path);
    } catch (const ModuleError& error) {
        return error.what();
    }
    return "";
}

TEST(Module, TellsItsFileTypes)
{
    const Module module(fakeModulePath());
    EXPECT_EQ(module.fileTypes(), (std::vector<std::uint16_t>{1101, 1110}));
    EXPECT_TRUE(module.acceptsFileType(1110));
    EXPECT_FALSE(module.acceptsFileType(1109));
    EXPECT_EQ(module.path(), fakeModulePath());
}

TEST(Module, FillsAllEntryPoints)
{
    const Module module(fakeModulePath());
    const host::EntryPoints& entry = module.entry();
    EXPECT_NE(entry.streamOpen, nullptr);
    EXPECT_NE(entry.streamSection, nullptr);
    EXPECT_NE(entry.streamRead, nullptr);
    EXPECT_NE(entry.streamTell, nullptr);
    EXPECT_NE(entry.streamSeek, nullptr);
    EXPECT_NE(entry.getInfo, nullptr);
    EXPECT_NE(entry.getData, nullptr);
    EXPECT_NE(entry.setData, nullptr);
    EXPECT_NE(entry.localUp, nullptr);
    EXPECT_NE(entry.localDown, nullptr);
    EXPECT_NE(entry.allocProc, nullptr);
    EXPECT_NE(entry.freeProc, nullptr);
    EXPECT_NE(entry.setUser, nullptr);
    EXPECT_NE(entry.setSoRtn, nullptr);
    EXPECT_NE(entry.streamClose, nullptr);
}

TEST(Module, RefusesWhatAnswersWrongly)
{
    const struct {
        const char* fault;
        const char* reason;
    } rows[] = {
        {"_no_entry", "is no filter: it has no VwGetRtns"},
        {"_table_gap", "answers wrongly: its entry table has gaps"},
        {"_byte_order", "answers wrongly: its byte order is not this machine's"},
        {"_no_file_types", "answers wrongly: it has no file types"},
        {"_untold_file_types", "answers wrongly: it does not tell its file types"},
        {"_entry_throws", "answers wrongly: it threw something unknown"},
        {"_info_throws", "answers wrongly: it threw own\nerror"},
    };
    for (const auto& row : rows) {
        const std::string path = fakeModulePath(row.fault);
        EXPECT_EQ(loadFailure(path), "module '" + path + "' " + row.reason);
    }
}

TEST(Module, TellsThatAnAnswerWasThrown)
{
    const Module module(fakeModulePath("_date_throws"));
    char date[12] = {};
    EXPECT_THROW(module.info(date, INFO_BUILD_DATE), ModuleError);
    std::uint16_t count = 0;
    EXPECT_TRUE(module.info(&count, INFO_FILE_TYPE_COUNT));
    EXPECT_FALSE(module.info(&count, 99));
}

TEST(Module, DescribesWhatIsThrown)
{
    const auto described = [](const auto& thrown) {
        try {
            throw thrown;
        } catch (...) {
            return host::describeThrown();
        }
    };
    EXPECT_EQ(
        described(zorvan::Exception(137, "text", nullptr, nullptr, 0)), "exception 137: text");
    EXPECT_EQ(described(zorvan::Exception(13, nullptr, nullptr, nullptr, 0)), "exception 13");
    EXPECT_EQ(described(UTBailOut(261, 0, 0)), "bail-out 261");
    EXPECT_EQ(described(std::runtime_error("no room")), "no room");
    EXPECT_EQ(described(7), "something unknown");
}

TEST(Module, RefusesWhatIsNoModule)
{
    for (const char* path : {"/nowhere/htmlfilter.so", "/tmp", "/dev/null", "libc.so.6"}) {
        const std::string failure = loadFailure(path);
        EXPECT_TRUE(failure.starts_with("cannot load module '" + std::string(path) + "': "))
            << failure;
    }
}

} // namespace
