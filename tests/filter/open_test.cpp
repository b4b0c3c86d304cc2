#include "filter/entry_points.h"

#include "containers/array_list.h"
#include "containers/linked_hash_map.h"
#include "filter/filter_internals.h"
#include "style/css_declaration_list.h"
#include "support/engine_options.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tests/common/document_run.h"
#include "tree/html_value.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using testing_support::DocumentRun;

/// An option owner as hosts have it: the handle is the word at offset 24.
struct OptionOwner {
    void* words[3] = {nullptr, nullptr, nullptr};
    void* handle = nullptr;
};

} // namespace

TEST(Open, MakesWhatLivesUntilClose)
{
    DocumentRun run("x");
    run.open();
    const HtmlFilterContext& context = *run.context;
    EXPECT_NE(context.internals, nullptr);
    EXPECT_NE(context.treeStates, nullptr);
    EXPECT_NE(context.valueCache, nullptr);
    ASSERT_NE(context.treeList, nullptr);
    EXPECT_EQ(context.treeList->getCount(), 0);
    EXPECT_EQ(context.openInitMinusOne, 0xFFFFFFFFu);
    for (const zorvan::WString* text :
        {context.pendingText, context.pendingTableChars, context.pendingChars}) {
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(text->length, 0);
    }
    ASSERT_NE(context.fontNames, nullptr);
    EXPECT_EQ(context.fontNames->getCount(), 0);
    EXPECT_NE(context.activeFormatting, nullptr);
    EXPECT_EQ(context.stream, run.block);
    EXPECT_EQ(context.fileId, 1101);
    EXPECT_NE(context.dynamicVar, 0);
    EXPECT_EQ(context.flattenTables, 0u);
    EXPECT_EQ(context.statusFlags, 0);
}

TEST(Open, FillsBothStyleListsAndTheBackgrounds)
{
    DocumentRun run("x");
    run.open();
    const HtmlFilterContext& context = *run.context;
    for (const CssDeclarationList* list : {context.initialStyle, context.runningStyle}) {
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->getCount(), 37u);
    }
    HtmlValue* const transparent = context.valueCache->keywordValue(VALUE_TRANSPARENT);
    for (const HtmlValue* background : {context.buildBodyBackground, context.buildBlockBackground,
             context.buildInlineBackground, context.buildTableBackground, context.bodyBackground,
             context.blockBackground, context.inlineBackground, context.tableBackground})
        EXPECT_EQ(background, transparent);
}

TEST(Open, AnswersThroughTheRecord)
{
    DocumentRun run("x");
    std::memset(run.record.typeName, 0x5A, sizeof run.record.typeName);
    run.record.requestedCharSetId = 0x14E30100;
    run.open(1117);
    EXPECT_EQ(run.record.textCharSetId, 0x14B00000u);
    EXPECT_STREQ(run.record.typeName, "Internet HTML");
    EXPECT_EQ(run.record.typeName[14], 0x5A) << "only the name and its terminator are written";
    EXPECT_EQ(run.context->requestedCharSetId, 0x14E30100u);
}

TEST(Open, PropertiesWinOverObjects)
{
    struct Row {
        std::uint32_t flags;
        std::uint32_t properties;
        std::uint32_t objects;
    };
    for (const Row& row : {Row{0, 0, 0}, Row{0x80, 0, 1}, Row{0x100, 1, 0}, Row{0x180, 1, 0},
             Row{0xFFFFFE7F, 0, 0}}) {
        DocumentRun run("x");
        run.record.flags = row.flags;
        run.open();
        EXPECT_EQ(run.context->xmpToProperties, row.properties) << row.flags;
        EXPECT_EQ(run.context->xmpToSubdocument, row.objects) << row.flags;
    }
}

TEST(Open, LeavesInstalledRoutinesInPlace)
{
    DocumentRun run("x");
    int routine = 0;
    VwSetSoRtn(77, &routine, run.context);
    std::memset(static_cast<void*>(run.context), 0xFF, kDocumentStateEnd);
    run.open();
    EXPECT_EQ(run.context->soRoutines[76], &routine);
    EXPECT_EQ(run.context->userData1, run.host.get());
    EXPECT_EQ(run.context->forcedCharSetId, 0u);
    EXPECT_EQ(run.context->recentBytes[3], 0);
}

TEST(Open, ReadsTheBackgroundOption)
{
    const std::uint32_t value = 7;
    UTSetGlobalOption(GLOBAL_OPTION_BACKGROUND, &value, sizeof value);
    {
        DocumentRun run("x");
        run.open();
        EXPECT_EQ(run.context->backgroundOption, 7u);
    }
    UTSetGlobalOption(GLOBAL_OPTION_BACKGROUND, nullptr, 0);
    DocumentRun run("x");
    run.open();
    EXPECT_EQ(run.context->backgroundOption, 0u);
}

TEST(Open, TheOptionOfTheDocumentFlattensTables)
{
    struct Row {
        std::uint32_t value;
        std::uint32_t flatten;
    };
    for (const Row& row : {Row{0, 0}, Row{1, 1}, Row{2, 0}, Row{3, 1}}) {
        OptionOwner owner;
        owner.handle = &owner;
        UTSetOption(owner.handle, OPTION_TABLE_MODE, &row.value, sizeof row.value);
        DocumentRun run("x");
        run.record.optionOwner = &owner;
        run.open();
        EXPECT_EQ(run.context->flattenTables, row.flatten) << row.value;
        UTFreeOptions(owner.handle);
    }
}

TEST(Open, AnOwnerWithoutTheOptionOrNoOwnerLeavesTables)
{
    OptionOwner owner;
    owner.handle = &owner;
    DocumentRun run("x");
    run.record.optionOwner = &owner;
    run.open();
    EXPECT_EQ(run.context->flattenTables, 0u);
    DocumentRun plain("x");
    plain.open();
    EXPECT_EQ(plain.context->flattenTables, 0u);
}

// Every allocation of open and of the section's start fails once: what was made is given back, and
// the failure is told at the latest when the section needs the object.
TEST(Open, AnyFailedAllocationEndsInOrder)
{
    const char* content = "<h1>x</h1><div>a<b>b</b>c<i>d</i><u>e</u><center>f</center>g</div>";
    DocumentRun plain(content);
    plain.run();
    const std::vector<std::string> expected = plain.host->calls;
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < 500; ++n) {
        DocumentRun run(content);
        zorvan::failNthAllocation(n);
        bool threw = false;
        try {
            run.open();
            run.section();
        } catch (const std::bad_alloc&) {
            threw = true;
        }
        const bool reached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (!reached)
            break;
        failures += threw ? 1 : 0;
        if (threw)
            continue;
        // What goes on goes on whole: nothing of the defaults is missing.
        EXPECT_EQ(run.context->initialStyle->getCount(), 37u) << n;
        EXPECT_EQ(run.context->runningStyle->getCount(), 37u) << n;
        run.readToEnd();
        EXPECT_EQ(run.host->calls, expected) << n;
    }
    EXPECT_GT(failures, 10u);
}
