#include "filter/prescan.h"

#include "filter/entry_points.h"
#include "input/char_reader.h"
#include "input/charset.h"
#include "input/stream_block.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tests/common/document_run.h"

#include <gtest/gtest.h>

namespace {

using testing_support::DocumentRun;

struct PrescanRow {
    const char* content;
    std::uint16_t charSet;
};

constexpr PrescanRow kRows[] = {
    {"<meta charset=\"koi8-r\">", 0x800B},
    {"<META CONTENT='text/html; charset=koi8-r'>", 0x800B},
    {"text <b>and</b> <meta charset=\"koi8-r\">", 0x800B},
    {"<meta name=x><meta charset=\"koi8-r\">", 0x800B},
    {"<meta charset=\"koi8-r\"><meta charset=\"utf-8\">", 0x800B},
    // A ">" is no delimiter of the word.
    {"<meta charset=koi8-r>", 0x9000},
    {"<meta charset=koi8-r >", 0x800B},
    {"<meta charset=\"nonsense\"><meta charset=\"koi8-r\">", 0x800B},
    {"</meta charset=\"koi8-r\">", 0x9000},
    {"<body><meta charset=\"koi8-r\">", 0x9000},
    {"</body><meta charset=\"koi8-r\">", 0x9000},
    {"</head><meta charset=\"koi8-r\">", 0x9000},
    {"<head><meta charset=\"koi8-r\">", 0x800B},
    // Raw text plays no part here.
    {"<head><script>x='<meta charset=\"koi8-r\">'</script>", 0x800B},
    {"<title><meta charset=\"koi8-r\"></title>", 0x800B},
    {"<!-- <meta charset=\"koi8-r\"> -->", 0x9000},
    {"<foo charset=\"koi8-r\">", 0x9000},
    {"<meta charset=\"x-sjis\">", 0x2005},
    {"no markup at all", 0x9000},
    {"", 0x9000},
};

} // namespace

TEST(Prescan, FindsTheDeclaration)
{
    for (const PrescanRow& row : kRows) {
        DocumentRun run(row.content);
        run.open();
        run.section();
        run.read();
        EXPECT_EQ(run.context->currentCharSet, row.charSet) << row.content;
    }
}

TEST(Prescan, ChangesTheReaderAlone)
{
    DocumentRun meta("<meta charset=\"koi8-r\"><p>x");
    meta.open();
    meta.section();
    EXPECT_EQ(meta.context->sectionCharSet, 0x9000);
    HtmlFilterContext& context = *meta.context;
    std::vector<char16_t> buffer(kTokenLimit + 2);
    context.tokenBuffer = buffer.data();
    prescanCharSet(context);
    context.tokenBuffer = nullptr;
    EXPECT_EQ(context.currentCharSet, 0x800B);
    EXPECT_EQ(context.sectionCharSet, 0x9000);
    EXPECT_EQ(context.sectionCharSetId, 0x14B00000u);
    EXPECT_EQ(context.statusFlags, 0);
}

TEST(Prescan, LeavesStreamAndDecodersAsTheyWere)
{
    DocumentRun run("\x1B$B<meta name=x>\x0E text");
    run.open();
    run.section();
    HtmlFilterContext& context = *run.context;
    context.currentCharSet = 0x202C;
    context.iso2022State = 0x0F060000;
    context.recentBytes[0] = 1;
    context.recentBytes[3] = 4;
    std::vector<char16_t> buffer(kTokenLimit + 2);
    context.tokenBuffer = buffer.data();
    prescanCharSet(context);
    context.tokenBuffer = nullptr;
    EXPECT_EQ(context.iso2022State, 0x0F060000u);
    EXPECT_EQ(context.recentBytes[0], 1);
    EXPECT_EQ(context.recentBytes[3], 4);
    EXPECT_EQ(blockPosition(*context.stream), 0u);
}

TEST(Prescan, AMarkBeatsADeclaration)
{
    DocumentRun run("\xEF\xBB\xBF<meta charset=\"iso-8859-1\"><p>x");
    run.open();
    run.section();
    run.read();
    EXPECT_EQ(run.context->currentCharSet, 0x3027);
}

TEST(Prescan, ACodeWithBitFourteenIsIgnored)
{
    DocumentRun run("<p>x");
    run.open();
    run.section();
    run.context->bomSeen = 0;
    // No name leads to such a code, so the rule is asked directly.
    applyPrescanCharSet(0x4003, *run.context);
    EXPECT_EQ(run.context->currentCharSet, 0x9000);
}

TEST(Prescan, AForcedSetWins)
{
    DocumentRun run("<meta charset=\"koi8-r\"><p>x");
    run.open();
    run.context->forcedCharSetId = 0x14E30100;
    run.section();
    run.read();
    EXPECT_EQ(run.context->currentCharSet, 0x800A);
}

TEST(Prescan, RunsOnTheFirstReadOnly)
{
    DocumentRun run("<meta charset=\"koi8-r\"><p>x");
    run.run();
    run.context->currentCharSet = 0x9000;
    run.section();
    run.read();
    EXPECT_EQ(run.context->currentCharSet, 0x9000);
}

TEST(Prescan, WithoutMemoryTheReadEndsAndIsNotTriedAgain)
{
    DocumentRun run("<meta charset=\"koi8-r\"><p>x");
    run.open();
    run.section();
    run.host->takeCalls();
    zorvan::failNthAllocation(3); // behind the scratch block and the token buffer
    EXPECT_EQ(run.read(), 0);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(run.context->readCount, 1);
    EXPECT_TRUE(run.host->calls.empty());
    EXPECT_EQ(run.context->statusFlags, STATUS_OUT_OF_MEMORY);
    run.readToEnd();
    EXPECT_EQ(run.context->currentCharSet, 0x9000);
}

TEST(Prescan, RunsWithoutRawTextWhateverAParseHasLeft)
{
    DocumentRun run("<meta charset=\"koi8-r\"><style>abc");
    run.run();
    HtmlFilterContext& context = *run.context;
    EXPECT_EQ(context.rawTextMode, RAW_TEXT_STRICT);
    context.currentCharSet = 0x9000;
    context.statusFlags = 0;
    seekTo(0, context);
    std::vector<char16_t> buffer(kTokenLimit + 2);
    context.tokenBuffer = buffer.data();
    prescanCharSet(context);
    context.tokenBuffer = nullptr;
    EXPECT_EQ(context.currentCharSet, 0x800B);
    EXPECT_EQ(context.rawTextMode, RAW_TEXT_STRICT);
    EXPECT_EQ(context.pendingChars->length, 0);
}

TEST(Prescan, AUnitThatLooksLikeTheEndEndsIt)
{
    struct Row {
        std::uint32_t requested;
        const char* content;
    };
    for (const Row& row : {Row{0xB000B, "\xEF\xBF\xBF<meta charset=\"koi8-r\">"},
             Row{0xB000D, "\x1B$B\xFF\xFF\x1B(B<meta charset=\"koi8-r\">"}}) {
        DocumentRun run(row.content);
        run.record.requestedCharSetId = row.requested;
        run.open();
        run.section();
        const std::uint16_t before = run.context->currentCharSet;
        run.read();
        EXPECT_EQ(run.context->currentCharSet, before) << row.requested;
    }
}

TEST(Prescan, ADeclarationInWideTextChangesTheSetAndNotTheByteOrder)
{
    std::string content = "\xFF\xFE";
    for (const char character : std::string("<meta charset=\"koi8-r\"><p>x"))
        content += {character, '\0'};
    DocumentRun run(content);
    run.open();
    run.section();
    run.read();
    EXPECT_EQ(run.context->unicodeBomMode, 254);
    EXPECT_EQ(run.context->currentCharSet, 0x1000) << "a mark beats a declaration";
}
