#include "tree/character_rules.h"

#include "input/charset.h"
#include "scanner/markup_scanner.h"
#include "tests/common/tree_context.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <string>

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

/// Reads to the end by the long road alone: one token for each character.
void buildOneByOne(HtmlFilterContext& context)
{
    while (context.statusFlags == 0) {
        Token token = {};
        token.character
            = static_cast<std::uint32_t>(Scan(token, context.tokenBuffer, kTokenLimit, context));
        if (context.statusFlags != 0)
            break;
        if (context.insertionMode == static_cast<std::uint32_t>(InsertionMode::Text))
            HandleTextInsertion(&token, context);
        else
            HandleInBodyInsertion(&token, context);
    }
    FlushPendingText(context);
    context.statusFlags = 0;
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
    EXPECT_EQ(byRuns.shortOutline(), byTokens.shortOutline());
    EXPECT_EQ(byRuns.context.framesetOk, byTokens.context.framesetOk);
    EXPECT_EQ(byRuns.context.parseError, byTokens.context.parseError);
    EXPECT_EQ(byRuns.context.rawTextAtLineStart, byTokens.context.rawTextAtLineStart);
}

TEST(CharacterRules, BothRoadsGiveTheSame)
{
    const RoadRow rows[] = {{"<body>", RAW_TEXT_NONE, 0}, {"<title>", RAW_TEXT_NONE, 0},
        {"<body><xmp>", RAW_TEXT_STRICT, 0}, {"<body><xmp>", RAW_TEXT_LENIENT, 1},
        {"<body><textarea>x", RAW_TEXT_TEXTAREA, 0}};
    const std::uint16_t charSets[]
        = {CHARSET_DEFAULT, CHARSET_UTF8, CHARSET_UTF16, CHARSET_WINDOWS_1251, CHARSET_SHIFT_JIS,
            CHARSET_HZ, CHARSET_ISO_2022_JP, CHARSET_ISO_2022_KR};
    const std::string texts[] = {"a\x1B$B$\"$\"\x1B(Bb \x1B(Jc\x1B", "\x1B$)Ca \x0E!!0!\x0F b\x0E!",
        "a~{<:Ky~}b~~c ~\nd~", textOfAllBytes(), "  \n ", "a", std::string("\0b\0", 3),
        "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 \xC3\xA9", "\n <b", "x<!y"};
    for (const RoadRow& row : rows) {
        for (const std::uint16_t charSet : charSets) {
            for (const std::string& text : texts) {
                SCOPED_TRACE(std::string(row.prologue) + " in " + std::to_string(charSet) + " with "
                    + std::to_string(text.size()) + " bytes");
                for (const std::uint32_t bufferSize : {1U, 3U, 7U, 2'048U})
                    expectSameRoads(row, charSet, text, bufferSize);
            }
        }
    }
}

TEST(CharacterRules, RunsAreTakenInTheModesOfPlainTextOnly)
{
    for (std::uint32_t mode = 1; mode <= 22; ++mode) {
        TreeContext tree("<body>");
        tree.build();
        tree.stream.bytes.insert(tree.stream.bytes.end(), {'a', 'b', '<', 'c'});
        tree.context.insertionMode = mode;
        // The buffer has to be filled before there is a run.
        Token token = {};
        Scan(token, tree.context.tokenBuffer, kTokenLimit, tree.context);
        EXPECT_EQ(token.flags, TOKEN_CHARACTER);
        AppendTextRuns(tree.context);
        const bool isPlain = mode == static_cast<std::uint32_t>(InsertionMode::InBody)
            || mode == static_cast<std::uint32_t>(InsertionMode::Text);
        EXPECT_EQ(tree.context.pendingText->length, isPlain ? 1 : 0) << mode;
        tree.context.pendingText->clear();
    }
}

} // namespace
