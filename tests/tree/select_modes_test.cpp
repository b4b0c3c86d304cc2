#include "tree/insertion_modes.h"

#include "support/html_names.h"
#include "tests/containers/expect_failure.h"
#include "tests/tree/mode_rules.h"
#include "tests/tree/open_stack.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::checkModeRules;
using testing_support::expectFailure;
using testing_support::expectTrees;
using testing_support::openElementsText;
using testing_support::OpenStack;
using testing_support::ruleLike;
using testing_support::tokenOf;
using testing_support::TreeContext;

using enum InsertionMode;

TEST(SelectModes, InSelect)
{
    const char* const select = "html[head body[select]]";
    const char* const filled = "html[head body[select[%]]]";
    const char* const stack = "html body select";
    checkModeRules({InSelect, HandleInSelectInsertion, "<select>",
        {
            {"zero", ANSWER_IGNORED, InSelect, true, select, stack, ""},
            {"space character", ANSWER_USED, InSelect, false, filled, stack, ""},
            {"null", ANSWER_IGNORED, InSelect, true, select, stack, ""},
            {"<html>", ANSWER_USED, InSelect, true, select, stack, ""},
            {"<option> <optgroup>", ANSWER_USED, InSelect, false, filled, "html body select %", ""},
            {"</optgroup> </option>", ANSWER_IGNORED, InSelect, true, select, stack, ""},
            {"</select>", ANSWER_USED, InBody, false, select, "html body", ""},
            {"<select>", ANSWER_USED, InBody, true, select, "html body", ""},
            {"<input> <keygen> <textarea>", ANSWER_AGAIN, InBody, true, select, "html body", ""},
            {"<script>", ANSWER_USED, InSelect, false, select, stack, ""},
            {"any", ANSWER_IGNORED, InSelect, true, select, stack, ""},
        }});
}

TEST(SelectModes, InSelectWithAnOptionOpen)
{
    const char* const option = "html[head body[select[option]]]";
    const char* const stack = "html body select option";
    checkModeRules({InSelect, HandleInSelectInsertion, "<select><option>",
        {
            {"zero", ANSWER_IGNORED, InSelect, true, option, stack, ""},
            {"space character", ANSWER_USED, InSelect, false, "html[head body[select[option[%]]]]",
                stack, ""},
            {"<option> <optgroup>", ANSWER_USED, InSelect, false,
                "html[head body[select[option %]]]", "html body select %", ""},
            {"</optgroup> </option>", ANSWER_USED, InSelect, false, option, "html body select", ""},
            {"</select>", ANSWER_USED, InBody, false, option, "html body", ""},
            {"<select>", ANSWER_USED, InBody, true, option, "html body", ""},
            {"<input> <keygen> <textarea>", ANSWER_AGAIN, InBody, true, option, "html body", ""},
            {"<html>", ANSWER_USED, InSelect, true, option, stack, ""},
            {"<script>", ANSWER_USED, InSelect, false, option, stack, ""},
            {"any", ANSWER_IGNORED, InSelect, true, option, stack, ""},
        }});
}

TEST(SelectModes, InSelectWithAGroupOpen)
{
    const char* const group = "html[head body[select[optgroup]]]";
    const char* const stack = "html body select optgroup";
    checkModeRules({InSelect, HandleInSelectInsertion, "<select><optgroup>",
        {
            {"zero", ANSWER_IGNORED, InSelect, true, group, stack, ""},
            {"space character", ANSWER_USED, InSelect, false,
                "html[head body[select[optgroup[%]]]]", stack, ""},
            {"<option>", ANSWER_USED, InSelect, false, "html[head body[select[optgroup[%]]]]",
                "html body select optgroup %", ""},
            {"<optgroup>", ANSWER_USED, InSelect, false,
                "html[head body[select[optgroup optgroup]]]", stack, ""},
            {"</optgroup> </option>", ANSWER_IGNORED, InSelect, true, group, stack, ""},
            {"</select>", ANSWER_USED, InBody, false, group, "html body", ""},
            {"<select>", ANSWER_USED, InBody, true, group, "html body", ""},
            {"<input> <keygen> <textarea>", ANSWER_AGAIN, InBody, true, group, "html body", ""},
            {"<html>", ANSWER_USED, InSelect, true, group, stack, ""},
            {"<script>", ANSWER_USED, InSelect, false, group, stack, ""},
            {"any", ANSWER_IGNORED, InSelect, true, group, stack, ""},
        }});
}

TEST(SelectModes, InSelectWithAnOptionOfAGroupOpen)
{
    const char* const group = "html[head body[select[optgroup[option]]]]";
    const char* const stack = "html body select optgroup option";
    checkModeRules({InSelect, HandleInSelectInsertion, "<select><optgroup><option>",
        {
            {"zero", ANSWER_IGNORED, InSelect, true, group, stack, ""},
            {"space character", ANSWER_USED, InSelect, false,
                "html[head body[select[optgroup[option[%]]]]]", stack, ""},
            {"<option> <optgroup>", ANSWER_USED, InSelect, false,
                "html[head body[select[optgroup[option %]]]]", "html body select optgroup %", ""},
            {"</optgroup> </option>", ANSWER_USED, InSelect, false, group,
                "html body select optgroup", ""},
            {"</select>", ANSWER_USED, InBody, false, group, "html body", ""},
            {"<select>", ANSWER_USED, InBody, true, group, "html body", ""},
            {"<input> <keygen> <textarea>", ANSWER_AGAIN, InBody, true, group, "html body", ""},
            {"<html>", ANSWER_USED, InSelect, true, group, stack, ""},
            {"<script>", ANSWER_USED, InSelect, false, group, stack, ""},
            {"any", ANSWER_IGNORED, InSelect, true, group, stack, ""},
        }});
}

TEST(SelectModes, EndGroupEndsAnOptionOnly)
{
    expectTrees({
        {"<select><optgroup><option>a</optgroup><option>b</select>",
            "html[head body[select[optgroup[option[\"a\"] option[\"b\"]]]]]"},
        {"<select><optgroup></optgroup><option>b</select>",
            "html[head body[select[optgroup[option[\"b\"]]]]]"},
        {"<select><optgroup><option>a</option></optgroup>b</select>c",
            "html[head body[select[optgroup[option[\"a\"] \"b\"]] \"c\"]]"},
    });
}

TEST(SelectModes, StartGroupEndsOneElement)
{
    expectTrees({
        {"<select><optgroup><optgroup>", "html[head body[select[optgroup optgroup]]]"},
        {"<select><optgroup></optgroup><optgroup>", "html[head body[select[optgroup optgroup]]]"},
        {"<select><option>a<optgroup><option>b",
            "html[head body[select[option[\"a\"] optgroup[option[\"b\"]]]]]"},
        // The option goes, and with it out of the way the group stays.
        {"<select><optgroup><option>a<optgroup><option>b",
            "html[head body[select[optgroup[option[\"a\"] optgroup[option[\"b\"]]]]]]"},
        // An end tag takes the option down first.
        {"<select><optgroup><option>a</option><optgroup>",
            "html[head body[select[optgroup[option[\"a\"]] optgroup]]]"},
        {"<select><optgroup><option>a</optgroup><optgroup>",
            "html[head body[select[optgroup[option[\"a\"]] optgroup]]]"},
    });
}

TEST(SelectModes, TextAndControls)
{
    expectTrees({
        {"<select>a<b>c</b><option>d<p>e", "html[head body[select[\"ac\" option[\"de\"]]]]"},
        {"<select><option>a<input>b", "html[head body[select[option[\"a\"]] input \"b\"]]"},
        {"<select><option>a<keygen>b", "html[head body[select[option[\"a\"]] keygen \"b\"]]"},
        {"<select><option>a<textarea>b", "html[head body[select[option[\"a\"]] textarea[\"b\"]]]"},
        {"<select><option>a<select><option>b",
            "html[head body[select[option[\"a\"]] option[\"b\"]]]"},
        {"<select><option>a<script>b</script>c", "html[head body[select[option[\"ac\"]]]]"},
        {"<p><b></p><select>x</select>y", "html[head body[p[b] b[select[\"x\"] \"y\"]]]"},
        // A table in a select is lost.
        {"<select><table><tr><td>x</select>y", "html[head body[select[\"x\"] \"y\"]]"},
    });
}

TEST(SelectModes, LargeCharactersAreReferences)
{
    TreeContext tree("<select><option>\xF0\x90\x80\x80", CHARSET_UTF8);
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[select[option[\"&#65536;\"]]]]");
}

TEST(SelectModes, ResetWithoutASelect)
{
    struct Row {
        const char* token;
        int answer;
        InsertionMode modeAfter;
    };
    // An end tag finds the mode anew; a control is ignored.
    const Row rows[] = {{"</select>", ANSWER_IGNORED, InCaption},
        {"<select>", ANSWER_USED, InCaption}, {"<input>", ANSWER_IGNORED, InSelect},
        {"<keygen>", ANSWER_IGNORED, InSelect}, {"<textarea>", ANSWER_IGNORED, InSelect}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.token);
        OpenStack tree({ELEMENT_HTML, ELEMENT_CAPTION, ELEMENT_OPTION}, InSelect);
        const Token token = tokenOf(row.token);
        EXPECT_EQ(HandleInSelectInsertion(&token, tree.context), row.answer);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(openElementsText(tree), "html caption option");
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(row.modeAfter));
    }
    OpenStack bottom({ELEMENT_HTML}, InSelect);
    const Token token = tokenOf("</select>");
    expectFailure(
        137, "Index is too small.", [&] { HandleInSelectInsertion(&token, bottom.context); });
}

TEST(SelectModes, InSelectInTable)
{
    const char* const table = "html[head body[table[tbody[tr[td[select]]]]]]";
    const char* const cell = "html body table tbody tr td";
    const char* const stack = "html body table tbody tr td select";
    checkModeRules({InSelectInTable, HandleInSelectInTableInsertion, "<table><td><select>",
        {
            {"<caption> <table> <tbody> <td> <tfoot> <th> <thead> <tr>", ANSWER_AGAIN, InCell, true,
                table, cell, ""},
            {"</table> </tbody> </td> </tr>", ANSWER_AGAIN, InCell, true, table, cell, ""},
            {"</caption> </tfoot> </th> </thead>", ANSWER_IGNORED, InSelectInTable, true, table,
                stack, ""},
            ruleLike("any", HandleInSelectInsertion),
        }});
}

TEST(SelectModes, InSelectInFrontOfATable)
{
    const char* const table = "html[head body[select[option] table[thead]]]";
    const char* const stack = "html body table thead select option";
    checkModeRules(
        {InSelectInTable, HandleInSelectInTableInsertion, "<table><thead><select><option>",
            {
                {"<caption> <table> <tbody> <td> <tfoot> <th> <thead> <tr>", ANSWER_AGAIN,
                    InTableBody, true, table, "html body table thead", ""},
                {"</table> </thead>", ANSWER_AGAIN, InTableBody, true, table,
                    "html body table thead", ""},
                {"</caption> </tbody> </td> </tfoot> </th> </tr>", ANSWER_IGNORED, InSelectInTable,
                    true, table, stack, ""},
                ruleLike("any", HandleInSelectInsertion),
            }});
}

TEST(SelectModes, InSelectInACaption)
{
    const char* const table = "html[head body[table[caption[select]]]]";
    const char* const stack = "html body table caption select";
    checkModeRules({InSelectInTable, HandleInSelectInTableInsertion, "<table><caption><select>",
        {
            {"<caption> <table> <tbody> <td> <tfoot> <th> <thead> <tr> </caption> </table>",
                ANSWER_AGAIN, InCaption, true, table, "html body table caption", ""},
            {"</tbody> </td> </tfoot> </th> </thead> </tr>", ANSWER_IGNORED, InSelectInTable, true,
                table, stack, ""},
            ruleLike("any", HandleInSelectInsertion),
        }});
}

TEST(SelectModes, SelectsInTables)
{
    expectTrees({
        {"<table><tr><td><select><option>a<tr><td>b",
            "html[head body[table[tbody[tr[td[select[option[\"a\"]]]] tr[td[\"b\"]]]]]]"},
        {"<table><td><select>a</td>b", "html[head body[table[tbody[tr[td[select[\"a\"]]]]]]]"},
        {"<table><td><select>a</th>b</select>c",
            "html[head body[table[tbody[tr[td[select[\"ab\"] \"c\"]]]]]]"},
        {"<table><td><select>a</table>b",
            "html[head body[table[tbody[tr[td[select[\"a\"]]]]] \"b\"]]"},
        {"<table><select>a<tr><td>b", "html[head body[select[\"a\"] table[tbody[tr[td[\"b\"]]]]]]"},
        {"<table><td><select><table><td>x",
            "html[head body[table[tbody[tr[td[select table[tbody[tr[td[\"x\"]]]]]]]]]]"},
    });
}

TEST(SelectModes, EndOfASelectGoesBackToTheCell)
{
    TreeContext tree("<table><td><select></select>");
    tree.build();
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InCell));
    TreeContext row("<table><tr><select></select>");
    row.build();
    EXPECT_EQ(row.context.insertionMode, static_cast<std::uint32_t>(InRow));
}

TEST(SelectModes, SelectInTableWithoutASelect)
{
    struct Row {
        std::vector<std::uint32_t> stack;
        const char* token;
        int answer;
        InsertionMode modeAfter;
    };
    const Row rows[] = {
        // The mode is found anew, and the token has its effect there.
        {{ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TD}, "<td>", ANSWER_AGAIN, InCell},
        {{ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TD}, "</td>", ANSWER_AGAIN, InCell},
        {{ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TD}, "</tr>", ANSWER_IGNORED, InSelectInTable},
        // Nothing on the stack tells a mode: looked at again, the token would come back for ever.
        {{ELEMENT_HTML, ELEMENT_SPAN}, "<td>", ANSWER_USED, InSelectInTable},
        {{ELEMENT_HTML, ELEMENT_SPAN}, "<table>", ANSWER_USED, InSelectInTable},
        {{ELEMENT_TD, ELEMENT_SPAN}, "</td>", ANSWER_USED, InSelectInTable},
        // A select goes, though no mode is found: the token finds no select the next time.
        {{ELEMENT_HTML, ELEMENT_SPAN, ELEMENT_SELECT}, "<td>", ANSWER_AGAIN, InSelectInTable},
    };
    for (const Row& row : rows) {
        OpenStack tree(row.stack, InSelectInTable);
        SCOPED_TRACE(openElementsText(tree) + row.token);
        const Token token = tokenOf(row.token);
        EXPECT_EQ(HandleInSelectInTableInsertion(&token, tree.context), row.answer);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(row.modeAfter));
    }
}

} // namespace
