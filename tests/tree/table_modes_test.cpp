#include "tree/table_modes.h"

#include "input/charset.h"
#include "support/html_names.h"
#include "tests/containers/expect_failure.h"
#include "tests/tree/mode_rules.h"
#include "tests/tree/open_stack.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing_support::checkModeRules;
using testing_support::expectFailure;
using testing_support::expectTrees;
using testing_support::ModeHandler;
using testing_support::openElementsText;
using testing_support::OpenStack;
using testing_support::ruleLike;
using testing_support::tokenOf;
using testing_support::TreeContext;
using testing_support::TreeRow;

using enum InsertionMode;
using namespace std::string_view_literals;

TEST(TableModes, InTable)
{
    const char* const table = "html[head body[table]]";
    const char* const filled = "html[head body[table[%]]]";
    const char* const stack = "html body table";
    checkModeRules({InTable, HandleInTableInsertion, "<table>",
        {
            {"space zero character", ANSWER_AGAIN, InTableText, false, table, stack,
                "original allSpace=1"},
            {"null", ANSWER_IGNORED, InTable, true, table, stack, ""},
            {"<caption>", ANSWER_USED, InCaption, false, filled, "html body table caption",
                "formatting+1"},
            {"<colgroup>", ANSWER_USED, InColumnGroup, false, filled, "html body table colgroup",
                ""},
            {"<col>", ANSWER_AGAIN, InColumnGroup, false, "html[head body[table[colgroup]]]",
                "html body table colgroup", ""},
            {"<tbody> <tfoot> <thead>", ANSWER_USED, InTableBody, false, filled,
                "html body table %", ""},
            {"<td> <th> <tr>", ANSWER_AGAIN, InTableBody, false, "html[head body[table[tbody]]]",
                "html body table tbody", ""},
            {"<table>", ANSWER_AGAIN, InBody, true, table, "html body", ""},
            {"</table>", ANSWER_USED, InBody, false, table, "html body", ""},
            {"</body> </caption> </col> </colgroup> </html> </tbody> </td> </tfoot> </th> </thead> "
             "</tr>",
                ANSWER_IGNORED, InTable, true, table, stack, ""},
            {"<style>", ANSWER_USED, Text, false, filled, "html body table %", "original raw=1"},
            {"<script>", ANSWER_USED, InTable, false, table, stack, ""},
            {"<form>", ANSWER_USED, InTable, true, filled, stack, "form"},
            ruleLike("any", HandleInBodyInsertion, /*parseError=*/true, TOKEN_FOSTER),
        }});
}

TEST(TableModes, InTableWithMisplacedContentOpen)
{
    const char* const table = "html[head body[div table]]";
    const char* const filled = "html[head body[div table[%]]]";
    const char* const stack = "html body table div";
    checkModeRules({InTable, HandleInTableInsertion, "<table><div>",
        {
            ruleLike(
                "space zero character", HandleInBodyInsertion, /*parseError=*/true, TOKEN_FOSTER),
            {"null", ANSWER_IGNORED, InTable, true, table, stack, ""},
            {"<caption>", ANSWER_USED, InCaption, false, filled, "html body table caption",
                "formatting+1"},
            {"<colgroup>", ANSWER_USED, InColumnGroup, false, filled, "html body table colgroup",
                ""},
            {"<col>", ANSWER_AGAIN, InColumnGroup, false, "html[head body[div table[colgroup]]]",
                "html body table colgroup", ""},
            {"<tbody> <tfoot> <thead>", ANSWER_USED, InTableBody, false, filled,
                "html body table %", ""},
            {"<td> <th> <tr>", ANSWER_AGAIN, InTableBody, false,
                "html[head body[div table[tbody]]]", "html body table tbody", ""},
            {"<table>", ANSWER_AGAIN, InBody, true, table, "html body", ""},
            {"</table>", ANSWER_USED, InBody, false, table, "html body", ""},
            {"</body> </caption> </col> </colgroup> </html> </tbody> </td> </tfoot> </th> </thead> "
             "</tr>",
                ANSWER_IGNORED, InTable, true, table, stack, ""},
            {"<style>", ANSWER_USED, Text, false, "html[head body[div[%] table]]",
                "html body table div %", "original raw=1"},
            {"<script>", ANSWER_USED, InTable, false, table, stack, ""},
            {"<form>", ANSWER_USED, InTable, true, "html[head body[div[%] table]]", stack, "form"},
            ruleLike("any", HandleInBodyInsertion, /*parseError=*/true, TOKEN_FOSTER),
        }});
}

TEST(TableModes, FormInTheTableOfAForm)
{
    TreeContext tree("<form><table><form>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[form[table]]]");
    EXPECT_EQ(tree.context.formElement, tree.find(ELEMENT_FORM));
    EXPECT_EQ(tree.context.parseError, 1U);
    tree.context.parseError = 0;
    const Token token = tokenOf("<form>");
    EXPECT_EQ(HandleInTableInsertion(&token, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.parseError, 1U);
}

TEST(TableModes, NoTableToEnd)
{
    for (const char* text : {"<table>", "</table>"}) {
        OpenStack tree({ELEMENT_HTML, ELEMENT_BODY, ELEMENT_DIV}, InTable);
        const Token token = tokenOf(text);
        const bool isStart = text[1] != '/';
        EXPECT_EQ(
            HandleInTableInsertion(&token, tree.context), isStart ? ANSWER_USED : ANSWER_IGNORED);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(openElementsText(tree), "html body div");
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InTable));
    }
}

TEST(TableModes, TextOfTables)
{
    // Nothing is collected yet, which a character 0 leaves so.
    const char* const table = "html[head body[table]]";
    const char* const stack = "html body table";
    checkModeRules({InTableText, HandleInTableTextInsertion, "<table>\0"sv,
        {
            {"zero", ANSWER_IGNORED, InTableText, true, table, stack, ""},
            {"space", ANSWER_USED, InTableText, false, table, stack, "tableText=\"%\""},
            {"character", ANSWER_USED, InTableText, false, table, stack,
                "tableText=\"%\" allSpace=0"},
            {"any", ANSWER_AGAIN, InTable, false, table, stack, ""},
        }});
    const char* const body = "html[head body[table[tbody]]]";
    checkModeRules({InTableText, HandleInTableTextInsertion, "<table><tbody> "sv,
        {
            {"zero", ANSWER_IGNORED, InTableText, true, body, "html body table tbody", ""},
            {"space", ANSWER_USED, InTableText, false, body, "html body table tbody",
                "tableText=\" %\""},
            {"character", ANSWER_USED, InTableText, false, body, "html body table tbody",
                "tableText=\" %\" allSpace=0"},
            {"any", ANSWER_AGAIN, InTableBody, false, "html[head body[table[tbody[\" \"]]]]",
                "html body table tbody", ""},
        }});
    const char* const row = "html[head body[table[tbody[tr]]]]";
    checkModeRules({InTableText, HandleInTableTextInsertion, "<table><tr>x"sv,
        {
            {"zero", ANSWER_IGNORED, InTableText, true, row, "html body table tbody tr", ""},
            {"space character", ANSWER_USED, InTableText, false, row, "html body table tbody tr",
                "tableText=\"x%\""},
            {"any", ANSWER_AGAIN, InRow, false, "html[head body[\"x\" table[tbody[tr]]]]",
                "html body table tbody tr", "framesetOk=0"},
        }});
}

TEST(TableModes, InCaption)
{
    const char* const caption = "html[head body[table[caption]]]";
    const char* const stack = "html body table caption";
    checkModeRules({InCaption, HandleInCaptionInsertion, "<table><caption>",
        {
            {"</caption>", ANSWER_USED, InTable, false, caption, "html body table", "formatting-1"},
            {"<caption> <col> <colgroup> <tbody> <td> <tfoot> <th> <thead> <tr> </table>",
                ANSWER_AGAIN, InTable, true, caption, "html body table", "formatting-1"},
            {"</body> </col> </colgroup> </html> </tbody> </td> </tfoot> </th> </thead> </tr>",
                ANSWER_IGNORED, InCaption, true, caption, stack, ""},
            ruleLike("any", HandleInBodyInsertion),
        }});
}

struct EndRow {
    const char* prologue;
    std::uint32_t parseError;
    const char* outline;
};

TEST(TableModes, EndOfACaption)
{
    const EndRow rows[] = {
        {"<table><caption><p>x", 0, "html[head body[table[caption[p[\"x\"]]]]]"},
        {"<table><caption><p><span>x", 1, "html[head body[table[caption[p[span[\"x\"]]]]]]"},
        {"<table><caption><b>x", 1, "html[head body[table[caption[b[\"x\"]]]]]"},
        // The table inside is another scope, which its own end tag ends.
        {"<table><caption><table></table>x", 0, "html[head body[table[caption[table \"x\"]]]]"},
    };
    for (const EndRow& row : rows) {
        SCOPED_TRACE(row.prologue);
        TreeContext tree(row.prologue);
        tree.build();
        ASSERT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InCaption));
        tree.context.parseError = 0;
        const Token token = tokenOf("</caption>");
        EXPECT_EQ(HandleInCaptionInsertion(&token, tree.context), ANSWER_USED);
        EXPECT_EQ(tree.context.parseError, row.parseError);
        EXPECT_EQ(tree.shortOutline(), row.outline);
        EXPECT_EQ(tree.stack().last(), tree.find(ELEMENT_TABLE));
        EXPECT_EQ(tree.context.activeFormatting->getCount(), 0);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InTable));
    }
}

TEST(TableModes, NoCaptionToEnd)
{
    for (const char* text : {"</caption>", "<tr>", "</table>"}) {
        // A caption out of reach is none.
        OpenStack tree({ELEMENT_HTML, ELEMENT_CAPTION, ELEMENT_TABLE, ELEMENT_B}, InCaption);
        const Token token = tokenOf(text);
        const bool isEnd = text == "</caption>"sv;
        EXPECT_EQ(
            HandleInCaptionInsertion(&token, tree.context), isEnd ? ANSWER_IGNORED : ANSWER_USED);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(openElementsText(tree), "html caption table b");
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InCaption));
    }
}

TEST(TableModes, InColumnGroup)
{
    const char* const group = "html[head body[table[colgroup]]]";
    const char* const filled = "html[head body[table[colgroup[%]]]]";
    const char* const stack = "html body table colgroup";
    checkModeRules({InColumnGroup, HandleInColumnGroupInsertion, "<table><colgroup>",
        {
            {"space", ANSWER_USED, InColumnGroup, false, filled, stack, ""},
            {"null", ANSWER_IGNORED, InColumnGroup, true, group, stack, ""},
            {"<html>", ANSWER_USED, InColumnGroup, true, group, stack, ""},
            {"<col>", ANSWER_USED, InColumnGroup, false, filled, stack, ""},
            {"</colgroup>", ANSWER_USED, InTable, false, group, "html body table", ""},
            {"</col>", ANSWER_IGNORED, InColumnGroup, true, group, stack, ""},
            {"any", ANSWER_AGAIN, InTable, false, group, "html body table", ""},
        }});
}

TEST(TableModes, NoColumnGroupToEnd)
{
    for (const char* text : {"</colgroup>", "<tr>", "character"}) {
        OpenStack tree({ELEMENT_HTML}, InColumnGroup);
        const Token token = tokenOf(text);
        EXPECT_EQ(HandleInColumnGroupInsertion(&token, tree.context),
            text == "</colgroup>"sv ? ANSWER_IGNORED : ANSWER_USED);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InColumnGroup));
    }
}

struct IgnoredRow {
    ModeHandler handler;
    InsertionMode mode;
    std::vector<std::uint32_t> elements;
};

TEST(TableModes, EndTagsThatAreIgnoredEndNothing)
{
    // Not even an element of their name that stands on top, as no document has it.
    const IgnoredRow rows[] = {
        {HandleInTableInsertion, InTable,
            {ELEMENT_CAPTION, ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TBODY, ELEMENT_TD,
                ELEMENT_TFOOT, ELEMENT_TH, ELEMENT_THEAD, ELEMENT_TR}},
        {HandleInCaptionInsertion, InCaption,
            {ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TFOOT, ELEMENT_TH,
                ELEMENT_THEAD, ELEMENT_TR}},
        {HandleInTableBodyInsertion, InTableBody,
            {ELEMENT_CAPTION, ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TD, ELEMENT_TH, ELEMENT_TR}},
        {HandleInRowInsertion, InRow,
            {ELEMENT_CAPTION, ELEMENT_COL, ELEMENT_COLGROUP, ELEMENT_TD, ELEMENT_TH}},
        {HandleInCellInsertion, InCell, {ELEMENT_CAPTION, ELEMENT_COL, ELEMENT_COLGROUP}},
    };
    for (const IgnoredRow& row : rows) {
        for (const std::uint32_t element : row.elements) {
            OpenStack tree({ELEMENT_HTML, ELEMENT_TABLE, element}, row.mode);
            SCOPED_TRACE(openElementsText(tree));
            const Token token = SyntheticEndTag(element);
            EXPECT_EQ(row.handler(&token, tree.context), ANSWER_IGNORED);
            EXPECT_EQ(tree.stack().getCount(), 3);
            EXPECT_EQ(tree.context.parseError, 1U);
            EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(row.mode));
        }
    }
}

struct ClearRow {
    void (*clear)(HtmlFilterContext& context);
    std::vector<std::uint32_t> stack;
    const char* left;
};

TEST(TableModes, ClearStack)
{
    const std::vector<std::uint32_t> row = {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE,
        ELEMENT_TBODY, ELEMENT_TR, ELEMENT_TD, ELEMENT_P};
    const ClearRow rows[] = {
        {ClearStackToTableContext, row, "html body table"},
        {ClearStackToTableBodyContext, row, "html body table tbody"},
        {ClearStackToRowContext, row, "html body table tbody tr"},
        {ClearStackToTableBodyContext, {ELEMENT_HTML, ELEMENT_TFOOT, ELEMENT_B}, "html tfoot"},
        {ClearStackToTableBodyContext, {ELEMENT_HTML, ELEMENT_THEAD, ELEMENT_B}, "html thead"},
        {ClearStackToTableContext, {ELEMENT_HTML, ELEMENT_TABLE}, "html table"},
        {ClearStackToTableBodyContext, {ELEMENT_HTML, ELEMENT_TBODY}, "html tbody"},
        {ClearStackToRowContext, {ELEMENT_HTML, ELEMENT_TR}, "html tr"},
        // html ends all three.
        {ClearStackToTableContext, {ELEMENT_HTML, ELEMENT_TBODY}, "html"},
        {ClearStackToTableBodyContext, {ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TR}, "html"},
        {ClearStackToRowContext, {ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TBODY}, "html"},
        {ClearStackToTableContext, {ELEMENT_TABLE, ELEMENT_HTML, ELEMENT_B}, "table html"},
    };
    for (const ClearRow& entry : rows) {
        OpenStack tree(entry.stack, InTable);
        entry.clear(tree.context);
        EXPECT_EQ(openElementsText(tree), entry.left);
        EXPECT_EQ(tree.context.currentNode, tree.stack().last());
    }
}

TEST(TableModes, ClearStackPutsPendingTextWhereItBelongs)
{
    const Token character = tokenOf("character");
    OpenStack deep({ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_B}, InTable);
    AppendPendingChar(&character, deep.context);
    ClearStackToTableContext(deep.context);
    EXPECT_EQ(deep.shortOutline(), "html[table[b[\"\\u0008\"]]]");
    // Where nothing is popped, the text waits.
    OpenStack ready({ELEMENT_HTML, ELEMENT_TABLE}, InTable);
    AppendPendingChar(&character, ready.context);
    ClearStackToTableContext(ready.context);
    EXPECT_EQ(ready.context.pendingText->length, 1);
    FlushPendingText(ready.context);
}

TEST(TableModes, ScopeEndsAtTheTable)
{
    OpenStack tree(
        {ELEMENT_HTML, ELEMENT_TR, ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_P}, InTable);
    for (const std::uint32_t element : {ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_P})
        EXPECT_TRUE(HasElementInTableScope(element, tree.context)) << element;
    for (const std::uint32_t element : {ELEMENT_HTML, ELEMENT_TR, ELEMENT_TH})
        EXPECT_FALSE(HasElementInTableScope(element, tree.context)) << element;
    OpenStack bottom({ELEMENT_HTML}, InTable);
    expectFailure(
        137, "Index is too small.", [&] { HasElementInTableScope(ELEMENT_TABLE, bottom.context); });
}

TEST(TableModes, AgainUnlessIgnored)
{
    EXPECT_EQ(AgainUnlessIgnored(ANSWER_USED), ANSWER_AGAIN);
    EXPECT_EQ(AgainUnlessIgnored(ANSWER_IGNORED), ANSWER_USED);
    EXPECT_EQ(AgainUnlessIgnored(ANSWER_AGAIN), ANSWER_AGAIN);
}

TEST(TableModes, FosteringHangsOnTheToken)
{
    expectTrees({
        // Made by the token itself.
        {"<table><br>", "html[head body[br table]]"},
        {"<table><tbody><br>", "html[head body[br table[tbody]]]"},
        {"<table><tr><br>", "html[head body[br table[tbody[tr]]]]"},
        {"<table><div><p>", "html[head body[div[p] table]]"},
        {"<table><image>", "html[head body[img table]]"},
        // Made by rules that act as if there were another tag.
        {"<table></br>", "html[head body[table[br]]]"},
        {"<table></p>", "html[head body[table[p]]]"},
        {"<table><tr></p>", "html[head body[table[tbody[tr[p]]]]]"},
        // Opened again.
        {"<p><b></p><table><br>", "html[head body[p[b] table[b[br]]]]"},
        // Content finds its place by what is current.
        {"<table><div>x<i>y</div>", "html[head body[div[\"x\" i[\"y\"]] table]]"},
        {"<table><div></div><div></div>", "html[head body[div div table]]"},
        {"<table><td><table><div>", "html[head body[table[tbody[tr[td[div table]]]]]]"},
        // In a caption or a cell everything has its place.
        {"<table><caption><div>", "html[head body[table[caption[div]]]]"},
        {"<table><td><div>", "html[head body[table[tbody[tr[td[div]]]]]]"},
    });
}

TEST(TableModes, TextInFrontOfATable)
{
    expectTrees({
        {"<table>x<tr><td>y", "html[head body[\"x\" table[tbody[tr[td[\"y\"]]]]]]"},
        {"<table> <tr>", "html[head body[table[\" \" tbody[tr]]]]"},
        {"<table><tr> <td>", "html[head body[table[tbody[tr[\" \" td]]]]]"},
        {"<table><tr> x <td>", "html[head body[\" x \" table[tbody[tr[td]]]]]"},
        {"<table>\t\n\f\r <tr>",
            "html[head body[table[\"\\u0009\\u000a\\u000c\\u000d \" tbody[tr]]]]"},
        {"<table><b>x</b></table>", "html[head body[b[\"x\"] table]]"},
        // A comment ends the stretch.
        {"<table> <!-- -->x</table>", "html[head body[\" x\" table]]"},
        {"<table>x<!-- --> </table>", "html[head body[\"x \" table]]"},
        {"<table> <!-- --> </table>", "html[head body[table[\"  \"]]]"},
        {"<table> <b></b>x<!-- --> </table>", "html[head body[b \"x \" table[\" \"]]]"},
        {"<table><tbody> </tbody>x</table>", "html[head body[\"x\" table[tbody[\" \"]]]]"},
        {"<table>x<style>y</style>z</table>", "html[head body[\"x\" \"z\" table[style[\"y\"]]]]"},
    });
}

TEST(TableModes, MisplacedTextIsNoParseError)
{
    TreeContext tree("<table>x</table>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"x\" table]]");
    EXPECT_EQ(tree.context.parseError, 0U);
    // In front of the table, in an element that stands there, it is one.
    TreeContext inside("<table><b>x");
    inside.build();
    EXPECT_EQ(inside.context.parseError, 1U);
}

TEST(TableModes, MisplacedTextReopensFormatting)
{
    expectTrees({
        {"<p><b></p><table>x</table>y", "html[head body[p[b] table[b[\"x\"]] b[\"y\"]]]"},
        // White space alone does not.
        {"<p><b></p><table> </table>", "html[head body[p[b] table[\" \"]]]"},
    });
}

TEST(TableModes, MisplacedTextForbidsAFrameset)
{
    const Token token = tokenOf("null");
    for (const char* markup : {"<table>x", "<table> x ", "<table> "}) {
        TreeContext tree(markup);
        tree.build();
        tree.context.framesetOk = 1;
        EXPECT_EQ(HandleInTableTextInsertion(&token, tree.context), ANSWER_AGAIN);
        EXPECT_EQ(tree.context.framesetOk, markup == "<table> "sv ? 1U : 0U) << markup;
        FlushPendingText(tree.context);
    }
}

TEST(TableModes, MisplacedTextIsMarkedForFostering)
{
    TreeContext tree("<table>x");
    tree.build();
    ASSERT_EQ(tree.context.pendingTextFoster, 0U);
    const Token token = tokenOf("null");
    HandleInTableTextInsertion(&token, tree.context);
    EXPECT_EQ(tree.context.pendingTextFoster, 1U);
    FlushPendingText(tree.context);
    TreeContext space("<table> ");
    space.build();
    HandleInTableTextInsertion(&token, space.context);
    EXPECT_EQ(space.context.pendingTextFoster, 0U);
    FlushPendingText(space.context);
}

TEST(TableModes, TextThatIsCutOffByTheEndIsDropped)
{
    expectTrees({
        {"<table>x", "html[head body[table]]"},
        {"<table> ", "html[head body[table]]"},
        {"<table><tr>x<td>y</td>z", "html[head body[\"x\" table[tbody[tr[td[\"y\"]]]]]]"},
        // What is pending already is not table text any more.
        {"<table>x<!-- -->", "html[head body[\"x\" table]]"},
        {"<table><b>x", "html[head body[b[\"x\"] table]]"},
    });
}

TEST(TableModes, LargeCharactersInATableAreReferences)
{
    // U+10000, U+10FFFE and, with its upper half lost, U+10FFFF.
    TreeContext edges(
        "<table>\xF0\x90\x80\x80\xF4\x8F\xBF\xBE\xF4\x8F\xBF\xBF</table>", CHARSET_UTF8);
    edges.build();
    EXPECT_EQ(edges.shortOutline(), "html[head body[\"&#65536;&#1114110;\\uffff\" table]]");
    TreeContext tree("<table>a\xF0\x9F\x98\x80<tr><td>\xF0\x9F\x98\x80", CHARSET_UTF8);
    tree.build();
    EXPECT_EQ(
        tree.shortOutline(), "html[head body[\"a&#128512;\" table[tbody[tr[td[\"&#128512;\"]]]]]]");
}

TEST(TableModes, CharactersThatBecomeZeroAreLostInATable)
{
    TreeContext tree("<table>");
    tree.build();
    for (const std::uint32_t character : {0x61U, 0x110000U, 0x62U, 0x120000U}) {
        Token token = {};
        token.flags = TOKEN_CHARACTER;
        token.character = character;
        while (tree.context.insertionMode == static_cast<std::uint32_t>(InTable))
            HandleInTableInsertion(&token, tree.context);
        HandleInTableTextInsertion(&token, tree.context);
    }
    EXPECT_EQ(tree.context.pendingTableChars->length, 4);
    EXPECT_EQ(tree.context.parseError, 0U);
    const Token token = tokenOf("</table>");
    EXPECT_EQ(HandleInTableTextInsertion(&token, tree.context), ANSWER_AGAIN);
    FlushPendingText(tree.context);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"ab\" table]]");
}

TEST(TableModes, LoneCharacterThatBecomesZeroOpensNoFormatting)
{
    TreeContext tree("<p><b></p><table> ");
    tree.build();
    Token token = {};
    token.flags = TOKEN_CHARACTER;
    token.character = 0x110000;
    tree.context.pendingTableChars->clear();
    HandleInTableTextInsertion(&token, tree.context);
    const Token endTag = tokenOf("</table>");
    HandleInTableTextInsertion(&endTag, tree.context);
    EXPECT_EQ(tree.context.pendingTextFoster, 0U);
    EXPECT_EQ(tree.shortOutline(), "html[head body[p[b] table]]");
}

TEST(TableModes, HiddenInputsStayInTheTable)
{
    expectTrees({
        {"<table><input type=hidden></table>", "html[head body[table[input]]]"},
        {"<table><input type=HiDDeN></table>", "html[head body[table[input]]]"},
        {"<table><tr><input type=hidden></table>", "html[head body[table[tbody[tr[input]]]]]"},
        {"<table><div><input type=hidden></table>", "html[head body[div[input] table]]"},
        {"<table><input type=text></table>", "html[head body[input table]]"},
        {"<table><input></table>", "html[head body[input table]]"},
        {"<table><input type=hidde></table>", "html[head body[input table]]"},
        {"<table><input type=hiddenx></table>", "html[head body[input table]]"},
    });
    for (const char* markup : {"<table><input type=hidden>", "<table><input type=text>"}) {
        TreeContext tree(markup);
        tree.build();
        EXPECT_EQ(tree.context.parseError, 1U) << markup;
        EXPECT_EQ(openElementsText(tree), "html body table");
    }
}

TEST(TableModes, HiddenInputIsUsed)
{
    TreeContext tree("<table><input type=hidden>");
    tree.build();
    // The attributes are those of the tag just scanned.
    const Token token = tokenOf("<input>");
    EXPECT_EQ(HandleInTableInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.shortOutline(), "html[head body[table[input input]]]");
}

TEST(TableModes, HiddenInputOpensNoFormatting)
{
    expectTrees({
        {"<p><b></p><table><input type=hidden>", "html[head body[p[b] table[input]]]"},
        {"<p><b></p><table><input type=text>", "html[head body[p[b] table[b[input]]]]"},
    });
}

TEST(TableModes, FormStandsEmptyInItsTable)
{
    TreeContext tree("<table><form><tr><td><form>x</form>y");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[table[form tbody[tr[td[\"xy\"]]]]]]");
    EXPECT_EQ(tree.context.formElement, nullptr);
    TreeContext open("<table><form><tr>");
    open.build();
    EXPECT_EQ(open.context.formElement, open.find(ELEMENT_FORM));
    EXPECT_EQ(openElementsText(open), "html body table tbody tr");
}

TEST(TableModes, TableInATableFollowsIt)
{
    expectTrees({
        {"<table><table>", "html[head body[table table]]"},
        {"<table><tr><table><td>", "html[head body[table[tbody[tr]] table[tbody[tr[td]]]]]"},
        {"<table><div><table>", "html[head body[div table table]]"},
        {"<table><td><table></table><table>", "html[head body[table[tbody[tr[td[table table]]]]]]"},
        {"<table><caption><table>", "html[head body[table[caption[table]]]]"},
    });
}

TEST(TableModes, ImpliedParts)
{
    expectTrees({
        {"<table id=a><td id=b>", "html[head body[table[tbody[tr[td]]]]]"},
        {"<table><col><col><td>", "html[head body[table[colgroup[col col] tbody[tr[td]]]]]"},
        {"<table><colgroup> <col> <tr>",
            "html[head body[table[colgroup[\" \" col \" \"] tbody[tr]]]]"},
        {"<table><colgroup>x<col>", "html[head body[\"x\" table[colgroup colgroup[col]]]]"},
        {"<table><caption>x<tr>", "html[head body[table[caption[\"x\"] tbody[tr]]]]"},
        {"<table><th>a<thead><td>b<tfoot><tr>",
            "html[head body[table[tbody[tr[th[\"a\"]]] thead[tr[td[\"b\"]]] tfoot[tr]]]]"},
    });
    TreeContext tree("<table id=a><td id=b>");
    tree.build();
    EXPECT_EQ(tree.outline(),
        "html\n  head\n  body\n    table id=\"a\"\n      tbody\n        tr\n"
        "          td id=\"b\"\n");
}

TEST(TableModes, CaptionShutsFormattingIn)
{
    expectTrees({
        {"<b><table><caption><i>x</table>y", "html[head body[b[table[caption[i[\"x\"]]] \"y\"]]]"},
        {"<table><caption><i>x</caption><td>y",
            "html[head body[table[caption[i[\"x\"]] tbody[tr[td[\"y\"]]]]]]"},
    });
}

TEST(TableModes, StyleInATable)
{
    TreeContext tree("<table><style>p{color:red}</style><tr>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[table[style[\"p{color:red}\"] tbody[tr]]]]");
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InRow));
}

TEST(TableModes, LongStretchOfText)
{
    const std::string text(300'000, 'x');
    TreeContext tree("<table><tr>" + text + "</table>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[\"" + text + "\" table[tbody[tr]]]]");
}

TEST(TableModes, ManyTablesInTables)
{
    constexpr std::int32_t kDepth = 10'000;
    std::string markup;
    for (std::int32_t i = 0; i < kDepth; ++i)
        markup += "<table>x<td>";
    TreeContext tree(markup);
    tree.build();
    // Of each table itself, body, row and cell, and the text in front.
    EXPECT_EQ(tree.tree.nodeCount, 3U + 5U * kDepth);
    EXPECT_EQ(tree.stack().getCount(), 2 + 4 * kDepth);
}

} // namespace
