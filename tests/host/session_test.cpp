#include "host/session.h"

#include "host/global_options.h"
#include "tests/host/fake_module.h"

#include <gtest/gtest.h>

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
