#include "output/host_calls.h"

#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

#include <functional>

using namespace testing_support;

namespace {

std::uintptr_t answerNothing() { return 0; }

struct CallRow {
    const char* line;
    std::function<void(HtmlFilterContext&)> call;
};

const GraphicRecord kGraphic{
    196, 0, 1, {}, 30, 40, {}, {}, {}, {}, 0, {}, 0, 0xFFFFFFFF, 0xFFFFFFFF, {}, 0xFFFFFFFF};
const RuleRecord kRule{2, 33, -1, {}};
const PageBorderRecord kPageBorders{{15, 1, 0, {}}, {}, {}, {30, 0, 2, {}}};
const ParagraphBorderRecord kParagraphBorder{0, {15, 0, 0, {}}, {}, {}, {}, {}};
const ParagraphShadingRecord kShading{13, {}, 0xFFFFFF, 0};
const TableRecord kTable{4, 0x60, 0, 3, 0, 0, 0, 0, 0, {}, {}, {}, {}, {}, 2, 0, 900};
const TableRowRecord kRow{0x200, 0, 0xFFFFFFFF, {}, 0, 1, {}, 1, 2};
const TableCellRecord kCell = [] {
    TableCellRecord record{};
    record.size = 224;
    record.alignment = 0x30001;
    return record;
}();
const std::uint32_t kFieldCode = FIELD_TITLE;
const BookmarkRecord kBookmark{0, 9};

// All routines that the filter calls, with an argument of its own in each place.
const CallRow kCallRows[] = {
    {"SOEmitSpecial 6", [](auto& c) { SOEmitSpecial(6, c); }},
    {"SOSetFontHeight 24", [](auto& c) { SOSetFontHeight(24, c); }},
    {"SOEmitBreak 20 7", [](auto& c) { SOEmitBreak(20, 7, c); }},
    {"SOAnnounceSection 12 1 2", [](auto& c) { SOAnnounceSection(12, 1, 2, c); }},
    {"SOAbandonFilter 30", [](auto& c) { SOAbandonFilter(30, c); }},
    {"SOSelectFont 3", [](auto& c) { SOSelectFont(3, c); }},
    {"SOSetLineSpacing 3 15 72 144", [](auto& c) { SOSetLineSpacing(3, 15, 72, 144, c); }},
    {"SODefineFont 1 5 \"Comic \\u00e9\"", [](auto& c) { SODefineFont(1, 5, "Comic \xE9", c); }},
    {"SOFinishTable", [](auto& c) { SOFinishTable(c); }},
    {"SOPlaceGraphic {@0=196 @8=1 @52=30 @56=40 @164=4294967295 @168=4294967295 "
     "@192=4294967295}",
        [](auto& c) { SOPlaceGraphic(kGraphic, c); }},
    {"SOPlaceRule {@0=2 @4=33 @8=4294967295} 1 255 12240 15",
        [](auto& c) { SOPlaceRule(kRule, 1, 255, 12'240, 15, c); }},
    {"SOBeginTagged 2684420100 5 {@0=6}",
        [](auto& c) { SOBeginTagged(TAG_FIELD, 5, &kFieldCode, c); }},
    {"SOBeginTagged 2147614728 5 {@4=9}",
        [](auto& c) { SOBeginTagged(TAG_BOOKMARK, 5, &kBookmark, c); }},
    {"SOBeginTagged 2685009920 5 null",
        [](auto& c) { SOBeginTagged(TAG_NOFRAMES, 5, nullptr, c); }},
    {"SOEndTagged 2684420100 5", [](auto& c) { SOEndTagged(TAG_FIELD, 5, c); }},
    {"SOStoreString \"a\\u0022b\" 77 3 -> 1", [](auto& c) { SOStoreString(u"a\"b", 77, 3, c); }},
    {"SOSetPageBorders 1 {@0=15 @4=1 @60=30 @68=2}",
        [](auto& c) { SOSetPageBorders(kPageBorders, c); }},
    {"SOSetParagraphBorder 0 {@4=15}",
        [](auto& c) { SOSetParagraphBorder(0, kParagraphBorder, c); }},
    {"SOSetParagraphShading 1 {@0=13 @12=16777215}",
        [](auto& c) { SOSetParagraphShading(1, kShading, c); }},
    {"SOSetTextColor 2 255", [](auto& c) { SOSetTextColor(2, 255, c); }},
    {"SOSetBackColor 1 0", [](auto& c) { SOSetBackColor(1, 0, c); }},
    {"SOBeginReference -> 1", [](auto& c) { SOBeginReference(c); }},
    {"SOSetExtraProperty 249 4 1 2", [](auto& c) { SOSetExtraProperty(249, 4, 1, 2, c); }},
    {"SOAttachReference 8 0", [](auto& c) { SOAttachReference(8, c); }},
    {"SODefineTable {@0=4 @4=96 @12=3 @172=2 @180=900}", [](auto& c) { SODefineTable(kTable, c); }},
    {"SODefineTableCell {@0=224 @92=196609} -> 200001",
        [](auto& c) { EXPECT_EQ(SODefineTableCell(kCell, c), 200'001U); }},
    {"SODefineTableRow {@0=512 @8=4294967295 @24=1 @44=1 @48=2} -> 100001",
        [](auto& c) { EXPECT_EQ(SODefineTableRow(kRow, c), 100'001U); }},
    {"SOEmitText \"ab\" 2 77", [](auto& c) { SOEmitText(u"ab", 2, 77, c); }},
    {"SOReserveChars 511", [](auto& c) { EXPECT_NE(SOReserveChars(511, c), nullptr); }},
    {"SOMarkSourceTag 4", [](auto& c) { SOMarkSourceTag(4, c); }},
    {"SOSetProperty 8 2 1 3", [](auto& c) { SOSetProperty(8, 2, 1, 3, c); }},
    {"SOAnnounceFeatures 1343640", [](auto& c) { SOAnnounceFeatures(ANNOUNCED_FEATURES, c); }},
    {"SOAddReferencePart 128 1 2", [](auto& c) { SOAddReferencePart(128, 1, 2, c); }},
    {"SOEndReference", [](auto& c) { SOEndReference(c); }},
    {"SOEmitTextAt \"ab\" 2 77 4660", [](auto& c) { SOEmitTextAt(u"ab", 2, 77, c); }},
};

} // namespace

TEST(HostCalls, EachReachesItsRoutineWithItsArguments)
{
    for (const CallRow& row : kCallRows) {
        OutputContext document;
        row.call(document.context);
        EXPECT_EQ(document.host.calls, Lines{row.line});
    }
}

TEST(HostCalls, CommittedCharactersAreThoseOfTheReservedBuffer)
{
    OutputContext document;
    char16_t* buffer = SOReserveChars(RESERVED_CHARS_CAPACITY, document.context);
    buffer[0] = u'o';
    buffer[1] = u'k';
    SOCommitChars(2, 77, document.context);
    EXPECT_EQ(document.host.calls.back(), "SOCommitChars \"ok\" 2 77");
}

TEST(HostCalls, HostWithoutRoutinesHearsNothing)
{
    OutputContext document;
    for (void*& routine : document.context.soRoutines)
        routine = reinterpret_cast<void*>(&answerNothing);
    for (const CallRow& row : kCallRows) {
        const std::string_view line = row.line;
        if (line.find("->") == std::string_view::npos && line.find("Reserve") == line.npos)
            row.call(document.context);
    }
    EXPECT_EQ(SOEmitBreak(BREAK_PARAGRAPH, 0, document.context), 0U);
    EXPECT_EQ(storeString(u"x", document.context), SO_NO_STRING);
    EXPECT_EQ(SOBeginReference(document.context), SO_NO_STRING);
    EXPECT_EQ(SODefineTableRow(kRow, document.context), 0U);
    EXPECT_EQ(SODefineTableCell(kCell, document.context), 0U);
    EXPECT_EQ(SOReserveChars(511, document.context), nullptr);
    EXPECT_EQ(document.host.callCount, 0U);
}

TEST(HostCalls, EveryCallLetsTheHostGiveUp)
{
    for (const CallRow& row : kCallRows) {
        OutputContext document;
        document.host.throwAt = 1;
        EXPECT_THROW(row.call(document.context), HostGaveUp) << row.line;
    }
}

TEST(HostCalls, EmptyStringHasNoHandle)
{
    OutputContext document;
    document.context.sectionCharSetId = 77;
    EXPECT_EQ(storeString(u"", document.context), SO_NO_STRING);
    EXPECT_EQ(document.host.callCount, 0U);
    EXPECT_EQ(storeString(u"abc", document.context), 1U);
    EXPECT_EQ(document.host.takeCalls(), Lines{"SOStoreString \"abc\" 77 3 -> 1"});
}
