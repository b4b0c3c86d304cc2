#include "tree/character_rules.h"

#include "input/charset.h"
#include "scanner/markup_scanner.h"
#include "support/exception.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tests/common/tree_context.h"
#include "tree/active_formatting.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

using testing_support::TreeContext;

TEST(CharacterRules, WhiteSpace)
{
    for (std::uint32_t character = 0; character < 0x200; ++character) {
        const bool expected = character == 9 || character == 10 || character == 12
            || character == 13 || character == 32;
        EXPECT_EQ(IsSpaceCharacter(character), expected) << character;
    }
    EXPECT_FALSE(IsSpaceCharacter(0x3000));
    EXPECT_FALSE(IsSpaceCharacter(0x10020));
}

struct CharacterRow {
    std::uint32_t character;
    int answer;
    std::uint32_t framesetOk;
    std::uint32_t parseError;
    std::int32_t pending;
};

TEST(CharacterRules, OneCharacterOfTheBody)
{
    const CharacterRow rows[] = {
        {0, ANSWER_IGNORED, 1, 1, 0},
        {9, ANSWER_USED, 1, 0, 1},
        {32, ANSWER_USED, 1, 0, 1},
        {'a', ANSWER_USED, 0, 0, 1},
        {11, ANSWER_USED, 0, 0, 1},
        {0x10000, ANSWER_USED, 0, 0, 8},
    };
    for (const CharacterRow& row : rows) {
        SCOPED_TRACE(row.character);
        TreeContext tree;
        Token token = {};
        token.flags = TOKEN_CHARACTER;
        token.character = row.character;
        EXPECT_EQ(InsertBodyCharacter(&token, tree.context), row.answer);
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk);
        EXPECT_EQ(tree.context.parseError, row.parseError);
        EXPECT_EQ(tree.context.pendingText->length, row.pending);
    }
}

int handleInMode(const Token& token, HtmlFilterContext& context)
{
    switch (static_cast<InsertionMode>(context.insertionMode)) {
    case InsertionMode::Text:
        return HandleTextInsertion(&token, context);
    case InsertionMode::InTable:
        return HandleInTableInsertion(&token, context);
    case InsertionMode::InTableText:
        return HandleInTableTextInsertion(&token, context);
    case InsertionMode::InCaption:
        return HandleInCaptionInsertion(&token, context);
    case InsertionMode::InTableBody:
        return HandleInTableBodyInsertion(&token, context);
    case InsertionMode::InRow:
        return HandleInRowInsertion(&token, context);
    case InsertionMode::InCell:
        return HandleInCellInsertion(&token, context);
    case InsertionMode::InSelect:
        return HandleInSelectInsertion(&token, context);
    case InsertionMode::InSelectInTable:
        return HandleInSelectInTableInsertion(&token, context);
    default:
        return HandleInBodyInsertion(&token, context);
    }
}

/// Reads to the end by the long road alone: one token for each character.
void buildOneByOne(HtmlFilterContext& context)
{
    while (context.statusFlags == 0) {
        Token token = {};
        token.character
            = static_cast<std::uint32_t>(Scan(token, context.tokenBuffer, kTokenLimit, context));
        if (context.statusFlags != 0)
            break;
        while (handleInMode(token, context) == ANSWER_AGAIN) { }
    }
    FlushPendingText(context);
    context.statusFlags = 0;
}

/// Ends a stretch of table text, which would else be lost.
void deliverTableText(HtmlFilterContext& context)
{
    if (context.insertionMode != static_cast<std::uint32_t>(InsertionMode::InTableText))
        return;
    const Token null = {};
    HandleInTableTextInsertion(&null, context);
    FlushPendingText(context);
}

std::string textOfAllBytes()
{
    std::string text = " \t\r\n\f";
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '<')
            text += static_cast<char>(byte);
    }
    return text + std::string(3'000, 'x') + " end &amp; &#65; & ";
}

struct RoadRow {
    const char* prologue;
    std::uint32_t rawTextMode;
    std::uint32_t lenient;
};

void expectSameRoads(
    const RoadRow& row, std::uint16_t charSet, const std::string& text, std::uint32_t bufferSize)
{
    TreeContext byRuns(row.prologue, CHARSET_DEFAULT, bufferSize);
    TreeContext byTokens(row.prologue, CHARSET_DEFAULT, bufferSize);
    for (TreeContext* tree : {&byRuns, &byTokens}) {
        tree->context.lenientRawText = row.lenient;
        tree->build();
        ASSERT_EQ(tree->context.rawTextMode, row.rawTextMode);
        tree->context.currentCharSet = charSet;
        if (charSet == CHARSET_UTF16)
            tree->context.unicodeBomMode = 254;
        tree->context.framesetOk = 1;
        tree->context.parseError = 0;
        tree->stream.bytes.insert(tree->stream.bytes.end(), text.begin(), text.end());
    }
    byRuns.build();
    buildOneByOne(byTokens.context);
    EXPECT_EQ(byRuns.context.insertionMode, byTokens.context.insertionMode);
    EXPECT_EQ(byRuns.context.tableTextAllSpace, byTokens.context.tableTextAllSpace);
    EXPECT_EQ(byRuns.context.pendingTextFoster, byTokens.context.pendingTextFoster);
    deliverTableText(byRuns.context);
    deliverTableText(byTokens.context);
    EXPECT_EQ(byRuns.shortOutline(), byTokens.shortOutline());
    EXPECT_EQ(byRuns.context.pendingTextFoster, byTokens.context.pendingTextFoster);
    EXPECT_EQ(byRuns.context.framesetOk, byTokens.context.framesetOk);
    EXPECT_EQ(byRuns.context.parseError, byTokens.context.parseError);
    EXPECT_EQ(byRuns.context.rawTextAtLineStart, byTokens.context.rawTextAtLineStart);
}

const std::string kTexts[] = {"a\x1B$B$\"$\"\x1B(Bb \x1B(Jc\x1B", "\x1B$)Ca \x0E!!0!\x0F b\x0E!",
    "a~{<:Ky~}b~~c ~\nd~", textOfAllBytes(), "  \n ", "a", std::string("\0b\0", 3),
    "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 \xC3\xA9", "\n <b", "x<!y",
    // In UTF-8 a character that becomes the unit 0, and one that is a token without flags.
    "a\xF8\x84\x90\x80\x80 b", " \xF8\x84\x90\x80\x80 ", "a\xEF\xBF\xBF b", " \xEF\xBF\xBF \n"};

void expectSameRoads(const RoadRow& row, std::uint16_t charSet)
{
    for (const std::string& text : kTexts) {
        SCOPED_TRACE(std::string(row.prologue) + " in " + std::to_string(charSet) + " with "
            + std::to_string(text.size()) + " bytes");
        for (const std::uint32_t bufferSize : {1U, 3U, 7U, 2'048U})
            expectSameRoads(row, charSet, text, bufferSize);
    }
}

TEST(CharacterRules, BothRoadsGiveTheSame)
{
    const RoadRow rows[] = {{"<body>", RAW_TEXT_NONE, 0}, {"<title>", RAW_TEXT_NONE, 0},
        {"<body><xmp>", RAW_TEXT_STRICT, 0}, {"<body><xmp>", RAW_TEXT_LENIENT, 1},
        {"<body><textarea>x", RAW_TEXT_TEXTAREA, 0}};
    const std::uint16_t charSets[]
        = {CHARSET_DEFAULT, CHARSET_UTF8, CHARSET_UTF16, CHARSET_WINDOWS_1251, CHARSET_SHIFT_JIS,
            CHARSET_HZ, CHARSET_ISO_2022_JP, CHARSET_ISO_2022_KR};
    for (const RoadRow& row : rows) {
        for (const std::uint16_t charSet : charSets)
            expectSameRoads(row, charSet);
    }
}

TEST(CharacterRules, BothRoadsGiveTheSameInEveryMode)
{
    for (const char* prologue :
        {"<p><b><i></p>", "<table>", "<table><thead>", "<p><b></p><table><tr>", "<table><div>",
            "<table><thead><div>", "<table><tr><div><p><b></p>", "<table><caption>", "<table><td>",
            "<select>", "<table><td><select>"}) {
        for (const std::uint16_t charSet :
            {CHARSET_UTF8, CHARSET_EUC_JP, CHARSET_GB2312, CHARSET_BIG5, CHARSET_KOREAN})
            expectSameRoads({prologue, RAW_TEXT_NONE, 0}, charSet);
    }
}

/// All units of the text nodes, the text that waits included.
std::size_t countTextUnits(TreeContext& tree)
{
    std::size_t count = static_cast<std::size_t>(tree.context.pendingText->length);
    for (HtmlTreeNode* node = tree.tree.root(); node != nullptr;
         node = nextInDocumentOrder(node, tree.tree.root())) {
        if (node->data != nullptr && node->data->elementId == ELEMENT_NONE)
            count += std::u16string_view(static_cast<HtmlTextNodeData&>(*node->data).text).size();
    }
    return count;
}

/// Builds to the end, however often that fails. Answers how often it did.
std::uint32_t buildInSlices(TreeContext& tree)
{
    std::uint32_t failures = 0;
    while ((tree.context.statusFlags & STATUS_END_OF_INPUT) == 0) {
        try {
            InsertNode(tree.context);
        } catch (const std::bad_alloc&) {
            ++failures;
        } catch (const zorvan::Exception&) {
            ++failures;
        }
        tree.context.statusFlags &= STATUS_END_OF_INPUT;
    }
    tree.context.statusFlags = 0;
    return failures;
}

TEST(CharacterRules, AFailureCostsOneCharacterAtMost)
{
    struct Row {
        const char* prologue;
        const char* behind;
    };
    // Each way in which text is stored, with and without formatting elements to open again. What is
    // collected in a table goes with the second tag when the first one is lost.
    const Row rows[] = {{"<body>", ""}, {"<p><b><i class=c></p>", ""},
        {"<table><td><p><b></p>", ""}, {"<table><tr><div><p><b class=c></p>", ""},
        {"<table>", "</table></table>"}, {"<select>", ""}};
    constexpr std::size_t kUnits = 5'000;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.prologue);
        bool isReached = true;
        std::uint32_t failures = 0;
        for (std::uint32_t n = 1; isReached; ++n) {
            TreeContext tree(row.prologue);
            tree.build();
            auto& bytes = tree.stream.bytes;
            bytes.insert(bytes.end(), kUnits, 'x');
            bytes.insert(bytes.end(), row.behind, row.behind + std::string_view(row.behind).size());
            zorvan::failNthAllocation(n);
            const std::uint32_t failuresHere = buildInSlices(tree);
            isReached = zorvan::allocationsSeen() >= n;
            zorvan::clearAllocationFailure();
            EXPECT_GE(countTextUnits(tree), kUnits - failuresHere) << n;
            failures += failuresHere;
        }
        // At the least the text that waits has grown in more than one step.
        EXPECT_GE(failures, 3U);
    }
}

TEST(CharacterRules, FormattingIsReopenedByAToken)
{
    for (const char* prologue : {"<p><b></p>", "<table><tr><div><p><b></p>"}) {
        TreeContext tree(prologue);
        tree.build();
        tree.stream.bytes.insert(tree.stream.bytes.end(), {'<', 'q', '>', 'a', 'b'});
        Token token = {};
        Scan(token, tree.context.tokenBuffer, kTokenLimit, tree.context);
        tree.context.pendingText->reserve(16);
        AppendTextRuns(tree.context);
        EXPECT_EQ(tree.context.pendingText->length, 0) << prologue;
        ReconstructActiveFormatting(tree.context);
        AppendTextRuns(tree.context);
        EXPECT_EQ(tree.context.pendingText->length, 2) << prologue;
        FlushPendingText(tree.context);
    }
}

TEST(CharacterRules, RunsTakeNoMoreThanThereIsRoomFor)
{
    TreeContext tree("<div>");
    tree.build();
    const std::string text(200, 'x');
    tree.stream.bytes.insert(tree.stream.bytes.end(), text.begin(), text.end());
    Token token = {};
    Scan(token, tree.context.tokenBuffer, kTokenLimit, tree.context);
    zorvan::WString& pending = *tree.context.pendingText;
    AppendTextRuns(tree.context);
    EXPECT_EQ(pending.length, pending.capacity());
    token.character = 'x';
    AppendPendingChar(&token, tree.context);
    const std::int32_t grown = pending.capacity();
    ASSERT_LT(grown, 200);
    EXPECT_LT(pending.length, grown);
    AppendTextRuns(tree.context);
    EXPECT_EQ(pending.length, grown);
    EXPECT_EQ(pending.capacity(), grown);
    pending.clear();
}

struct RunRow {
    const char* prologue;
    std::vector<InsertionMode> modes; ///< those in which a run is taken
    bool isTableText;
};

TEST(CharacterRules, RunsAreTakenInTheModesOfPlainTextOnly)
{
    using enum InsertionMode;
    // Where the current element is part of a table, its text has a mode of its own.
    const RunRow rows[] = {
        {"<div>",
            {InBody, Text, InTable, InCaption, InTableBody, InRow, InCell, InSelect,
                InSelectInTable},
            false},
        {"<table>", {InBody, Text, InCaption, InCell, InSelect, InSelectInTable}, false},
        {"<div>", {InTableText}, true},
    };
    for (const RunRow& row : rows) {
        for (std::uint32_t mode = 1; mode <= 22; ++mode) {
            TreeContext tree(row.prologue);
            tree.build();
            tree.stream.bytes.insert(tree.stream.bytes.end(), {'a', 'b', '<', 'c'});
            tree.context.insertionMode = mode;
            // The buffer has to be filled before there is a run.
            Token token = {};
            Scan(token, tree.context.tokenBuffer, kTokenLimit, tree.context);
            EXPECT_EQ(token.flags, TOKEN_CHARACTER);
            tree.context.parseError = 0;
            tree.context.pendingText->reserve(16);
            tree.context.pendingTableChars->reserve(16);
            AppendTextRuns(tree.context);
            const bool isTaken
                = std::find(row.modes.begin(), row.modes.end(), static_cast<InsertionMode>(mode))
                != row.modes.end();
            const zorvan::WString& text
                = row.isTableText ? *tree.context.pendingTableChars : *tree.context.pendingText;
            EXPECT_EQ(text.length, isTaken ? 1 : 0) << row.prologue << " " << mode;
            // In front of a table text is misplaced.
            const bool isInTable = mode == static_cast<std::uint32_t>(InTable)
                || mode == static_cast<std::uint32_t>(InTableBody)
                || mode == static_cast<std::uint32_t>(InRow);
            const bool isMisplaced = isInTable && row.prologue == std::string_view("<div>");
            EXPECT_EQ(tree.context.parseError, isMisplaced ? 1U : 0U);
            EXPECT_EQ(tree.context.pendingTextFoster, isMisplaced ? 1U : 0U);
            tree.context.pendingText->clear();
        }
    }
}

TEST(CharacterRules, OneCharacterOfATable)
{
    struct Row {
        std::uint32_t character;
        int answer;
        std::uint32_t allSpace;
        std::uint32_t parseError;
        std::int32_t collected;
    };
    const Row rows[] = {
        {0, ANSWER_IGNORED, 1, 1, 0},
        {9, ANSWER_USED, 1, 0, 1},
        {32, ANSWER_USED, 1, 0, 1},
        {'a', ANSWER_USED, 0, 0, 1},
        {11, ANSWER_USED, 0, 0, 1},
        {0x10000, ANSWER_USED, 0, 0, 8},
        {0x110020, ANSWER_USED, 0, 0, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.character);
        TreeContext tree;
        tree.context.tableTextAllSpace = 1;
        Token token = {};
        token.flags = TOKEN_CHARACTER;
        token.character = row.character;
        EXPECT_EQ(CollectTableCharacter(&token, tree.context), row.answer);
        EXPECT_EQ(tree.context.tableTextAllSpace, row.allSpace);
        EXPECT_EQ(tree.context.parseError, row.parseError);
        EXPECT_EQ(tree.context.pendingTableChars->length, row.collected);
        EXPECT_EQ(tree.context.pendingText->length, 0);
        EXPECT_EQ(tree.context.framesetOk, 1U);
    }
}

TEST(CharacterRules, FosteredRun)
{
    struct Row {
        std::u16string text;
        std::uint32_t framesetOk;
    };
    for (const Row& row : {Row{u" \t\n", 1}, Row{u" a ", 0}}) {
        TreeContext tree("<p><b></p>");
        tree.build();
        tree.context.framesetOk = 1;
        tree.context.parseError = 0;
        InsertFosteredRun(
            row.text.data(), static_cast<std::uint32_t>(row.text.size()), tree.context);
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk);
        EXPECT_EQ(tree.context.pendingTextFoster, 1U);
        EXPECT_EQ(tree.context.parseError, 0U);
        EXPECT_EQ(tree.context.pendingText->length, 3);
        EXPECT_EQ(elementOf(*tree.context.currentNode), ELEMENT_B);
        FlushPendingText(tree.context);
    }
}

} // namespace
