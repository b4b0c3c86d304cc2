#include "host/routine_table.h"

#include "tests/host/fake_module.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace {

// Every routine but SOAbandonFilter, which has no line of its own, in the order of the fake module.
const char* const kLines[] = {
    "SOAnnounceSection 12 0 0",
    "SOAnnounceFeatures 1343640",
    "== section",
    "SOEmitSpecial 6",
    "SOSetFontHeight 24",
    "SOSelectFont 4294967295",
    "SOSetLineSpacing 3 30 72 144",
    "SODefineFont 1 5 \"A\\u0022\\u00e9\"",
    "SOSetTextColor 0 16711680",
    "SOSetBackColor 1 0",
    "SOSetExtraProperty 62 1 15 0",
    "SOSetProperty 97 2 0 4294967176",
    "SOMarkSourceTag 9",
    "SOPlaceGraphic {@0=196 @192=197}",
    "SOPlaceRule {@0=2 @28=3} 1 511 12240 30",
    "SOSetPageBorders 1 {@0=15 @76=16}",
    "SOSetParagraphBorder 1 {@0=3 @100=4}",
    "SOSetParagraphShading 0 {}",
    "SOBeginTagged 2147680268 5 {@0=1 @4=4294967295 @8=7}",
    "SOEndTagged 2147680268 5",
    "SOBeginTagged 2685009920 6 null",
    "SOEndTagged 2685009920 6",
    "SODefineTable {@0=1 @180=2}",
    "SODefineTableRow {@0=8 @48=9} -> 100001",
    "SODefineTableCell {@0=224 @220=225} -> 200001",
    "SOEmitBreak 20 200001",
    "SODefineTableCell {@0=224 @220=225} -> 200002",
    "SOEmitBreak 20 200002",
    "SOEmitBreak 19 100001",
    "SOFinishTable",
    "SOEmitText \"a\\u0022\\u005c\\u000a\\u00e9\\uffff\" 6 350486784",
    "SOEmitTextAt \"x\" 1 347078656 4660",
    "SOReserveChars 511",
    "SOCommitChars \"hi\" 2 347078656",
    "SOStoreString \"s\" 347078656 1 -> 1",
    "SOBeginReference -> 1",
    "SOAddReferencePart 128 1 0",
    "SOEndReference",
    "SOAttachReference 1 0",
    "SOStoreString \"s\" 347078656 1 -> 2",
    "SOBeginReference -> 2",
    "SOAddReferencePart 128 2 0",
    "SOEndReference",
    "SOAttachReference 2 0",
    "SOEmitBreak 2 0",
    "== read -> 0",
};

TEST(RoutineTable, PassesEveryCallOn)
{
    const std::vector<std::string> lines = host_test::fakeTrace("routines");
    ASSERT_EQ(lines.size(), std::size(kLines));
    std::set<std::string> names;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        EXPECT_EQ(lines[index], kLines[index]);
        if (lines[index].starts_with("SO"))
            names.insert(lines[index].substr(0, lines[index].find(' ')));
    }
    EXPECT_EQ(names.size(), 33u);
}

TEST(RoutineTable, AbandonLeavesThroughTheFilter)
{
    EXPECT_EQ(host_test::fakeTrace("abandon").back(), "== abandon 30");
}

TEST(RoutineTable, AnswersEveryNthBreak)
{
    const struct {
        std::uint32_t stopEvery;
        std::ptrdiff_t reads;
    } rows[] = {{0, 1}, {1, 4}, {2, 2}, {3, 2}, {100, 1}};
    for (const auto& row : rows) {
        host::ConversionOptions options;
        options.stopEvery = row.stopEvery;
        const auto lines = host_test::fakeTrace("paragraphs", options);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "== read -> 0"), row.reads)
            << row.stopEvery;
        EXPECT_EQ(lines.at(lines.size() - 2), "SOEmitBreak 2 0");
    }
}

} // namespace
