#include "host/session.h"

#include "host/global_options.h"
#include "tests/host/fake_module.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace {

using host::ConversionOptions;
using host::Outcome;
using host_test::fakeLiveDocuments;
using host_test::fakeModulePath;
using host_test::fakeTrace;

TEST(Session, TellsHowItEnded)
{
    const struct {
        const char* document;
        Outcome::Kind kind;
        std::uint32_t code;
        const char* message;
        const char* lastLine;
    } rows[] = {
        {"", Outcome::Kind::Finished, 0, "", "== read -> 0"},
        {"plain", Outcome::Kind::Finished, 0, "", "== read -> 0"},
        {"exception", Outcome::Kind::Exception, 137, "ArrayList.get(): invalid parameter",
            "== exception 137 \"ArrayList.get(): invalid parameter\""},
        {"bailout", Outcome::Kind::BailOut, 0x105, "", "== bailout 261"},
        {"abandon", Outcome::Kind::Abandoned, 30, "", "== abandon 30"},
        {"nomemory", Outcome::Kind::Exception, 13, "out of memory",
            "== exception 13 \"out of memory\""},
        {"short", Outcome::Kind::Exception, 13, "out of memory",
            "== exception 13 \"out of memory\""},
        {"badclose", Outcome::Kind::Exception, 25, "close", "== exception 25 \"close\""},
    };
    const host::Module module(fakeModulePath());
    for (const auto& row : rows) {
        host::MemoryStream stream(row.document);
        host::StringWriter writer;
        host::TraceSink sink(writer);
        const Outcome outcome = host::convert(module, stream, {}, sink);
        EXPECT_EQ(outcome.kind, row.kind) << row.document;
        EXPECT_EQ(outcome.code, row.code) << row.document;
        EXPECT_EQ(outcome.message, row.message) << row.document;
        EXPECT_EQ(host_test::splitLines(writer.text).back(), row.lastLine);
        EXPECT_EQ(fakeLiveDocuments(), 0) << row.document;
    }
}

/// Fails at the first text.
class FailingSink : public host::HostSink {
public:
    void emitTextAt(std::u16string_view, std::uint32_t, std::uint32_t) override
    {
        throw std::runtime_error("no room");
    }
    void conversionEnded(const Outcome&) override { ended = true; }

    bool ended = false;
};

TEST(Session, ClosesBehindAFailingSink)
{
    const host::Module module(fakeModulePath());
    for (const char* document : {"plain", "leaverange 789"}) {
        host::MemoryStream stream(document);
        FailingSink sink;
        EXPECT_THROW(host::convert(module, stream, {}, sink), std::runtime_error);
        EXPECT_EQ(fakeLiveDocuments(), 0);
        EXPECT_FALSE(sink.ended);
    }
}

TEST(Session, TellsWhatAModuleThrew)
{
    const struct {
        const char* document;
        const char* thrown;
    } rows[] = {
        {"throw thing", "something unknown"},
        {"throw error", "own\nerror"},
        {"throw int", "something unknown"},
        {"throw foreign", "something unknown"},
        {"closethrow int", "something unknown"},
        {"closethrow thing", "something unknown"},
    };
    for (const auto& row : rows) {
        std::string told;
        {
            const host::Module module(fakeModulePath());
            host::MemoryStream stream(row.document);
            host::HostSink sink;
            try {
                host::convert(module, stream, {}, sink);
            } catch (const host::ModuleError& error) {
                told = error.what();
            }
            EXPECT_EQ(fakeLiveDocuments(), 0) << row.document;
        }
        EXPECT_EQ(told,
            "module '" + fakeModulePath() + "' answers wrongly: it threw "
                + std::string(row.thrown));
    }
}

TEST(Session, AModuleCannotSwallowAFailureOfTheSink)
{
    const host::Module module(fakeModulePath());
    host::MemoryStream stream("swallow");
    FailingSink sink;
    EXPECT_THROW(host::convert(module, stream, {}, sink), std::runtime_error);
    EXPECT_FALSE(sink.ended);
}

/// Fails when it is told of the section.
class FailingAtSection : public host::HostSink {
public:
    void sectionStarted() override { throw std::runtime_error("no room"); }
};

TEST(Session, ASinkMayFailBetweenTheCalls)
{
    const host::Module module(fakeModulePath());
    host::MemoryStream stream("plain");
    FailingAtSection sink;
    try {
        host::convert(module, stream, {}, sink);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "no room");
    }
    EXPECT_EQ(fakeLiveDocuments(), 0);
}

/// Gives its first bytes, then fails.
class BrokenStream : public host::DocumentStream {
public:
    BrokenStream()
        : DocumentStream(100)
    {
    }
    bool readAt(
        std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count) override
    {
        count = position == 0 ? std::min(size, 7u) : 0;
        std::memset(buffer, 'x', count);
        errno = EIO;
        return position == 0;
    }
};

TEST(Session, TellsAFailedRead)
{
    const host::Module module(fakeModulePath());
    BrokenStream stream;
    host::StringWriter writer;
    host::TraceSink sink(writer);
    try {
        host::convert(module, stream, {}, sink);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const host::ReadError& error) {
        EXPECT_STREQ(error.what(), "Input/output error");
    }
    EXPECT_EQ(writer.text, "");
    EXPECT_EQ(fakeLiveDocuments(), 0);
}

TEST(Session, GivesUpOnAModuleThatNeverEnds)
{
    const host::Module module(fakeModulePath());
    host::MemoryStream stream("silent");
    host::HostSink sink;
    EXPECT_THROW(host::convert(module, stream, {}, sink), host::ModuleError);
    EXPECT_EQ(fakeLiveDocuments(), 0);
}

TEST(Session, PassesOptionsOn)
{
    ConversionOptions options;
    options.fileType = 1110;
    options.charSetId = 0x14E30100;
    options.openFlags = 0x100;
    options.documentOptions = {{OPTION_TABLE_MODE, 7}};
    const host::GlobalOptionScope global({{GLOBAL_OPTION_STREAM_BUFFER, 64}});
    const auto lines = fakeTrace("options", options);
    EXPECT_EQ(lines.at(3), "SOSetProperty 1110 350421248 256 64");
    EXPECT_EQ(lines.at(4), "SOSetFontHeight 7");
}

TEST(Session, DocumentOptionsEndWithTheDocument)
{
    ConversionOptions options;
    options.documentOptions = {{OPTION_TABLE_MODE, 1}};
    EXPECT_EQ(fakeTrace("options", options).at(4), "SOSetFontHeight 1");
    EXPECT_EQ(fakeTrace("options").at(4), "SOSetFontHeight 0");
}

TEST(Session, OffersRangesOfTheStream)
{
    EXPECT_EQ(fakeTrace("range 6789").at(3), "SOEmitTextAt \"678\" 3 347078656 4660");
}

TEST(Session, FreesARangeThatTheFilterLeft)
{
    EXPECT_EQ(fakeTrace("leaverange").at(3), "SOEmitTextAt \"ang\" 3 347078656 4660");
}

} // namespace
