#include "host/host_sink.h"

#include "tests/host/fake_module.h"

#include <gtest/gtest.h>

namespace {

TEST(HostSink, DoesNothingByItself)
{
    const host::Module module(host_test::fakeModulePath());
    host::MemoryStream stream("routines");
    host::HostSink sink;
    EXPECT_EQ(host::convert(module, stream, {}, sink).kind, host::Outcome::Kind::Finished);
    EXPECT_FALSE(sink.emitBreak(BREAK_PARAGRAPH, 0));
}

/// Asks for a pause at each paragraph.
class PausingSink : public host::HostSink {
public:
    bool emitBreak(std::uint16_t kind, std::uint32_t) override { return kind == BREAK_PARAGRAPH; }
    void readReturned(std::uint16_t) override { ++reads; }

    int reads = 0;
};

TEST(HostSink, MayAskForAPause)
{
    const host::Module module(host_test::fakeModulePath());
    host::MemoryStream stream("paragraphs");
    PausingSink sink;
    EXPECT_EQ(host::convert(module, stream, {}, sink).kind, host::Outcome::Kind::Finished);
    EXPECT_EQ(sink.reads, 4);
}

} // namespace
