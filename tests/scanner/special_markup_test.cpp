#include "scanner/special_markup.h"

#include "input/char_reader.h"
#include "tests/scanner/scan_helpers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing_support::repeated;
using testing_support::scanned;
using testing_support::ScannerRun;
using testing_support::shown;
using testing_support::TestContext;
using testing_support::utf16;

struct Row {
    std::string input;
    std::string tokens;
};

void expectTokens(const std::vector<Row>& rows)
{
    for (const Row& row : rows)
        EXPECT_EQ(scanned(row.input), row.tokens) << row.input;
}

} // namespace

TEST(SpecialMarkup, CommentEndsAtTheFirstArrowOnly)
{
    expectTokens({
        {"a<!-- x -->b", "a{}b"},
        {"<!---->b", "{}b"},
        {"<!-->b", "{}b"},
        {"<!--->b", "{}b"},
        {"<!-- > -- > --!> -- -->b", "{}b"},
        {"<!-- a --->b", "{}b"},
        {"<!-- - -- ---->b", "{}b"},
        {"<!-- <b> --><i>", "{}{i}"},
        {"<!--x", "<!--x"},
        {"<!--x--", "<!--x--"},
        {"<!--x--!>y", "<!--x--!>y"},
        {"<!-- \"-->\" -->", "{}\" -->"},
        {"<!-x>y", "{}y"}, // one "-" makes a declaration
        {"<!- ->y", "{}y"},
    });
}

TEST(SpecialMarkup, Declarations)
{
    expectTokens({
        {"<!DOCTYPE html>x", "{}x"},
        {"<!>x", "{}x"},
        {"<!doctype html PUBLIC \"a>b\" 'c>d'>x", "{}x"},
        {"<!doctype html PUBLIC=\"a>b\">x", "{}x"},
        {"<!doctype html\t\">\">x", "{}x"},
        {"<!doctype x\">\">x", "{}\">x"}, // a quote within a word opens nothing
        {"<!doctype\">\">x", "{}\">x"},
        {"<!doctype \"a\"\">\">x", "{}\">x"}, // nor does one right behind another
        {"<!doctype \"a\" \">\">x", "{}x"},
        {"<!doctype \"a>x", "<!doctype \"a>x"},
        {"<![CDATA[ text ]]>x", "{}x"},
        {"<![CDATA[ a > b ]]>x", "{} b ]]>x"},
        {"<!ELEMENT [ > ]>x", "{} ]>x"},
        {"<!doctype", "<!doctype"},
    });
}

TEST(SpecialMarkup, ConditionalsWithoutAMaskAreCommentsAndDeclarations)
{
    expectTokens({
        {"<!--[if IE]>x<![endif]-->y", "{}y"}, {"<![if !IE]>y<![endif]>z", "{}y{}z"},
        {"<![endif]-->z", "{}z"}, {"<![if [ > ] ]>y", "{}y"}, // a ">" between brackets ends nothing
        {"<![if ] ] >y", "{}y"}, {"<![if [[ > ] > ]]>y", "{}y"}, {"<![if IE>y", "<![if IE>y"},
        {"<!x[if [ > ]] >y", "{}y"}, {"<!abc[if [ > ]] >y", "{}y"},
        {"<!abcde[if [ > ]] >y", "{} ]] >y"}, // too far away to be seen
        {"<![if \" > \" ]>y", "{}y"}, {"<![IF [ > ]]>y", "{} ]]>y"}, // the case counts
    });
}

TEST(SpecialMarkup, IsConditionalLooksAtEightUnits)
{
    struct ConditionRow {
        const char* input;
        std::uint32_t answer;
    };
    const ConditionRow rows[] = {
        {"!--[if IE]", 1},
        {"![if", 1},
        {"![endif]", 1},
        {"!1[endif]", 1},
        {"!12[endif]", 0},
        {"!1234[if", 1},
        {"!12345[if", 0},
        {"!--[endif]", 0},
        {"![i", 0},
        {"!", 0},
        {"", 0},
        {"![IF ]", 0},
    };
    for (const ConditionRow& row : rows) {
        TestContext test(row.input);
        EXPECT_EQ(isConditional(test.context), row.answer) << row.input;
        EXPECT_EQ(test.context.statusFlags, 0) << row.input;
        EXPECT_EQ(currentPosition(test.context), 0u) << row.input;
    }
}

TEST(SpecialMarkup, IsConditionalClearsOnlyWhatItSets)
{
    TestContext test("![if");
    for (const std::uint16_t status : {STATUS_END_OF_INPUT, STATUS_HOST_STOP}) {
        test.context.statusFlags = status;
        EXPECT_EQ(isConditional(test.context), 0u);
        EXPECT_EQ(test.context.statusFlags, status);
    }
}

TEST(SpecialMarkup, InstructionsEndAtTheFirstBracket)
{
    expectTokens({
        {"<?php echo \"a>b\" ?>c", "{}b\" ?>c"},
        {"<?xml version='1.0'?>c", "{}c"},
        {"<?>c", "{}c"},
        {"<?x", "<?x"},
    });
}

TEST(SpecialMarkup, DeclarationsStopStoringAtTheCutLimit)
{
    // "<!" and ">" make three units, "<!--" and "-->" seven.
    for (const std::uint32_t length : {53'391u, 53'392u, 53'393u, 65'536u, 70'000u}) {
        for (const bool comment : {false, true}) {
            const std::string input = comment ? "<!--" + repeated("c", length - 7) + "-->y"
                                              : "<! " + repeated("c", length - 4) + ">y";
            ScannerRun run(input);
            EXPECT_TRUE(run.next());
            EXPECT_EQ(run.token.flags, 0);
            const std::u16string whole(input.begin(), input.end() - 1);
            EXPECT_EQ(run.text(), whole.substr(0, 53'392)) << length;
            EXPECT_EQ(run.context.tokenBuffer[53'392], 0);
            EXPECT_TRUE(run.next());
            EXPECT_EQ(run.result, 'y');
        }
    }
}

// What a quote is hangs on the last unit stored: once the buffer is full, that stays the same one.
TEST(SpecialMarkup, QuotesOfOverlongDeclarations)
{
    EXPECT_EQ(scanned("<!DOCTYPE " + repeated("x", 60'000) + " \">\" >y"), "{}\" >y");
    EXPECT_EQ(scanned("<!DOCTYPE " + repeated(" ", 60'000) + "x\">\" >y"), "{}y");
    // "<!DOCTYPE " has ten units, and there is room for 53,392.
    const std::string full = "<!DOCTYPE " + repeated("x", 53'381);
    EXPECT_EQ(scanned(full + " \">\">y"), "{}y");
    EXPECT_EQ(scanned(full + "= \">\">y"), "{}y");
    EXPECT_EQ(scanned(full + "x \">\">y"), "{}\">y");
    EXPECT_EQ(scanned(full + "=z\">\">y"), "{}y");
    EXPECT_EQ(scanned(full + "=\">\"\">\">y"), "{}y"); // another quote right behind one
    // The quote itself is the last unit that has room.
    EXPECT_EQ(scanned("<!DOCTYPE " + repeated("x", 53'380) + " \">\" \">y"), "{}y");
    // Within a quote: what is stored of it decides about the next one.
    EXPECT_EQ(scanned("<!DOCTYPE \"" + repeated(" ", 60'000) + "\"\">\">y"), "{}y");
    EXPECT_EQ(scanned("<!DOCTYPE \"" + repeated("x", 60'000) + "\" \">\">y"), "{}\">y");
}

// A lead byte takes the byte behind it with it, whatever that is.
TEST(SpecialMarkup, LeadBytesSwallowDelimiters)
{
    struct SetRow {
        std::uint16_t charSet;
        char lead;
    };
    const SetRow sets[] = {{CHARSET_SHIFT_JIS, '\x81'}, {CHARSET_BIG5, '\xA1'},
        {CHARSET_GB2312, '\x81'}, {CHARSET_KOREAN, '\xB0'}, {CHARSET_GB_8BIT, '\xA1'},
        {CHARSET_EUC_JP, '\xA1'}, {CHARSET_UTF8, '\xC3'}};
    // "@" is the lead byte. The second tokens are those of a set in which it is a character.
    const struct {
        const char* input;
        const char* swallowed;
        const char* single;
    } rows[] = {
        {"<!--@-->x-->y", "{}y", "{}x-->y"},
        {"<!--@--->y", "{}y", "{}y"},
        {"<!--@>-->y", "{}y", "{}y"},
        {"<!--@<-->y", "{}y", "{}y"},
        {"<!a @>b>y", "{}y", "{}b>y"},
        {"<!a @\">\">y", "{}\">y", "{}\">y"}, // no quote opens behind the lead byte either way
        {"<!a \"@\">x\">y", "{}y", "{}x\">y"},
        {"<!a @=\">x\">y", "{}x\">y", "{}y"},
        {"<!a @<>y", "{}y", "{}y"},
        {"<!a '@'>'>y", "{}y", "{}'>y"},
        {"<?a @>b>y", "{}y", "{}b>y"},
        {"<![if @]>y]>z", "{}z", "{}y]>z"},
    };
    for (const SetRow& set : sets) {
        for (const auto& row : rows) {
            std::string input = row.input;
            input[input.find('@')] = set.lead;
            EXPECT_EQ(scanned(input, set.charSet), row.swallowed) << set.charSet << row.input;
        }
    }
    for (const auto& row : rows) {
        std::string input = row.input;
        input[input.find('@')] = '\x81';
        EXPECT_EQ(scanned(input, CHARSET_WINDOWS_1250), row.single) << row.input;
    }
}

// In UTF-16 a unit 0xFFFF counts as the end where units are peeked at.
TEST(SpecialMarkup, UnitFFFFEndsADeclaration)
{
    struct WideRow {
        std::u16string input;
        std::string tokens;
    };
    const WideRow rows[] = {
        {u"<!a \xFFFF>x", "<!a {}>x"},
        {u"<!a '\xFFFF'>x", "<!a '{}'>x"},
        {u"<!--\xFFFF-->x", "{}x"},
        {u"<?\xFFFF>x", "{}x"},
        {u"<p \xFFFF>x", "{p}x"},
    };
    for (const WideRow& row : rows) {
        ScannerRun run(utf16(row.input));
        run.context.unicodeBomMode = 254;
        std::string text;
        while (run.next())
            text += shown(run);
        EXPECT_EQ(text, row.tokens);
    }
}
