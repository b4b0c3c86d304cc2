#include "host/trace_sink.h"

#include "host/session.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

namespace {

using host::Outcome;
using host::StringWriter;
using host::TraceSink;

std::string traced(const std::function<void(TraceSink&)>& call)
{
    StringWriter writer;
    TraceSink sink(writer);
    call(sink);
    sink.conversionEnded({});
    return writer.text;
}

TEST(TraceSink, QuotesEveryUnit)
{
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string text(1, static_cast<char16_t>(unit));
        const std::string line
            = traced([&text](TraceSink& sink) { sink.emitText(text, CHARSET_ID_UTF16); });
        char quoted[8] = {};
        if (unit >= 0x20 && unit <= 0x7E && unit != '"' && unit != '\\')
            quoted[0] = static_cast<char>(unit);
        else
            std::snprintf(quoted, sizeof quoted, "\\u%04x", unit);
        ASSERT_EQ(line, "SOEmitText \"" + std::string(quoted) + "\" 1 347078656\n");
    }
}

TEST(TraceSink, WritesTextCalls)
{
    EXPECT_EQ(traced([](TraceSink& sink) { sink.emitTextAt(u"", 1, EMIT_TEXT_AT_WORD); }),
        "SOEmitTextAt \"\" 0 1 4660\n");
    EXPECT_EQ(traced([](TraceSink& sink) { sink.commitChars(u"a b", 0x14E40100); }),
        "SOCommitChars \"a b\" 3 350486784\n");
    EXPECT_EQ(traced([](TraceSink& sink) { sink.storeString(u"\xD83D\xDE00", 5, 9); }),
        "SOStoreString \"\\ud83d\\ude00\" 5 2 -> 9\n");
    EXPECT_EQ(
        traced([](TraceSink& sink) { sink.defineFont(0, 1, ""); }), "SODefineFont 0 1 \"\"\n");
}

TEST(TraceSink, WritesRecords)
{
    RuleRecord rule = {};
    rule.anchor = 128;
    rule.offset = -1;
    EXPECT_EQ(traced([&rule](TraceSink& sink) { sink.placeRule(&rule, 1, 2, 3, 4); }),
        "SOPlaceRule {@4=128 @8=4294967295} 1 2 3 4\n");
    EXPECT_EQ(traced([](TraceSink& sink) { sink.placeRule(nullptr, 1, 2, 3, 4); }),
        "SOPlaceRule null 1 2 3 4\n");
    const TableRecord table = {};
    EXPECT_EQ(
        traced([&table](TraceSink& sink) { sink.defineTable(&table); }), "SODefineTable {}\n");
    EXPECT_EQ(traced([](TraceSink& sink) { sink.defineTable(nullptr); }), "SODefineTable null\n");
    EXPECT_EQ(traced([](TraceSink& sink) { sink.defineTableRow(nullptr, 100'001); }),
        "SODefineTableRow null -> 100001\n");
}

TEST(TraceSink, TagsTellTheSizeOfTheirRecord)
{
    const std::uint32_t words[] = {500, 2, 3};
    const struct {
        std::uint32_t tag;
        const void* record;
        const char* line;
    } rows[] = {
        {TAG_HYPERLINK, words, "SOBeginTagged 2147680268 7 {@0=500 @4=2 @8=3}\n"},
        {TAG_BOOKMARK, words, "SOBeginTagged 2147614728 7 {@0=500 @4=2}\n"},
        {TAG_FIELD, words, "SOBeginTagged 2684420100 7 {@0=500}\n"},
        {TAG_FIELD_NAME, words, "SOBeginTagged 538705920 7 {}\n"},
        {TAG_NOFRAMES, nullptr, "SOBeginTagged 2685009920 7 null\n"},
        {0x80000002, words, "SOBeginTagged 2147483650 7 {@0=500}\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(traced([&row](TraceSink& sink) { sink.beginTagged(row.tag, 7, row.record); }),
            row.line);
    }
}

TEST(TraceSink, WritesTheMarksBetweenCalls)
{
    EXPECT_EQ(traced([](TraceSink& sink) { sink.sectionStarted(); }), "== section\n");
    EXPECT_EQ(traced([](TraceSink& sink) { sink.readReturned(0xFFFF); }), "== read -> 65535\n");
}

TEST(TraceSink, TellsHowTheConversionEnded)
{
    const struct {
        Outcome outcome;
        const char* line;
    } rows[] = {
        {{}, ""},
        {{Outcome::Kind::Exception, 137, "a \"b\""}, "== exception 137 \"a \\u0022b\\u0022\"\n"},
        {{Outcome::Kind::Exception, 15, ""}, "== exception 15 \"\"\n"},
        {{Outcome::Kind::BailOut, 261, ""}, "== bailout 261\n"},
        {{Outcome::Kind::Abandoned, 13, ""}, "== abandon 13\n"},
    };
    for (const auto& row : rows) {
        StringWriter writer;
        TraceSink sink(writer);
        sink.conversionEnded(row.outcome);
        EXPECT_EQ(writer.text, row.line);
    }
}

TEST(TraceSink, HandsOnBeforeTheEnd)
{
    StringWriter writer;
    TraceSink sink(writer);
    const std::u16string text(65'534, u'x');
    sink.emitText(text, 1);
    EXPECT_EQ(writer.text.size(), text.size() + std::string("SOEmitText \"\" 65534 1\n").size());
}

} // namespace
