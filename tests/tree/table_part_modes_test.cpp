#include "tree/insertion_modes.h"

#include "support/exception.h"
#include "support/html_names.h"
#include "tests/tree/mode_rules.h"
#include "tests/tree/open_stack.h"
#include "tree/element_sets.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::checkModeRules;
using testing_support::expectTrees;
using testing_support::ModeHandler;
using testing_support::openElementsText;
using testing_support::OpenStack;
using testing_support::ruleLike;
using testing_support::tokenOf;
using testing_support::TreeContext;

using enum InsertionMode;

/// The end tags of the two other kinds of bodies.
std::string otherBodies(const std::string& body)
{
    std::string tags;
    for (const char* other : {"tbody", "tfoot", "thead"}) {
        if (body != other)
            tags += "</" + std::string(other) + "> ";
    }
    return tags;
}

TEST(TablePartModes, InTableBody)
{
    for (const std::string body : {"tbody", "tfoot", "thead"}) {
        const std::string table = "html[head body[table[" + body + "]]]";
        const std::string row = "html[head body[table[" + body + "[tr]]]]";
        const std::string stack = "html body table " + body;
        const std::string prologue = "<table><" + body + ">";
        const std::string own = "</" + body + ">";
        const std::string others = otherBodies(body);
        checkModeRules({InTableBody, HandleInTableBodyInsertion, prologue,
            {
                {"<tr>", ANSWER_USED, InRow, false, row, stack + " tr", ""},
                {"<td> <th>", ANSWER_AGAIN, InRow, true, row, stack + " tr", ""},
                {own, ANSWER_USED, InTable, false, table, "html body table", ""},
                {others, ANSWER_IGNORED, InTableBody, true, table, stack, ""},
                {"<caption> <col> <colgroup> <tbody> <tfoot> <thead> </table>", ANSWER_AGAIN,
                    InTable, false, table, "html body table", ""},
                {"</body> </caption> </col> </colgroup> </html> </td> </th> </tr>", ANSWER_IGNORED,
                    InTableBody, true, table, stack, ""},
                ruleLike("any", HandleInTableInsertion),
            }});
    }
}

TEST(TablePartModes, InTableBodyWithMisplacedContentOpen)
{
    const char* const table = "html[head body[div table[tbody]]]";
    const char* const row = "html[head body[div table[tbody[tr]]]]";
    const char* const stack = "html body table tbody div";
    checkModeRules({InTableBody, HandleInTableBodyInsertion, "<table><tbody><div>",
        {
            {"<tr>", ANSWER_USED, InRow, false, row, "html body table tbody tr", ""},
            {"<td> <th>", ANSWER_AGAIN, InRow, true, row, "html body table tbody tr", ""},
            {"</tbody>", ANSWER_USED, InTable, false, table, "html body table", ""},
            {"</tfoot> </thead>", ANSWER_IGNORED, InTableBody, true, table, stack, ""},
            {"<caption> <col> <colgroup> <tbody> <tfoot> <thead> </table>", ANSWER_AGAIN, InTable,
                false, table, "html body table", ""},
            {"</body> </caption> </col> </colgroup> </html> </td> </th> </tr>", ANSWER_IGNORED,
                InTableBody, true, table, stack, ""},
            ruleLike("any", HandleInTableInsertion),
        }});
}

TEST(TablePartModes, NoTableBodyToEnd)
{
    for (const char* text : {"<caption>", "<tbody>", "</table>", "</tbody>"}) {
        OpenStack tree({ELEMENT_HTML, ELEMENT_TBODY, ELEMENT_TABLE, ELEMENT_B}, InTableBody);
        const Token token = tokenOf(text);
        EXPECT_EQ(HandleInTableBodyInsertion(&token, tree.context), ANSWER_IGNORED);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(openElementsText(tree), "html tbody table b");
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InTableBody));
    }
}

TEST(TablePartModes, EndTagOfAnotherBodyEndsTheInnermost)
{
    OpenStack tree({ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_THEAD, ELEMENT_TBODY}, InTableBody);
    const Token token = tokenOf("</thead>");
    EXPECT_EQ(HandleInTableBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(openElementsText(tree), "html table thead");
}

TEST(TablePartModes, InRow)
{
    for (const std::string body : {"tbody", "tfoot", "thead"}) {
        const std::string row = "html[head body[table[" + body + "[tr]]]]";
        const std::string cell = "html[head body[table[" + body + "[tr[%]]]]]";
        const std::string bodyStack = "html body table " + body;
        const std::string stack = bodyStack + " tr";
        const std::string prologue = "<table><" + body + "><tr>";
        const std::string own = "</" + body + ">";
        const std::string others = otherBodies(body);
        checkModeRules({InRow, HandleInRowInsertion, prologue,
            {
                {"<td> <th>", ANSWER_USED, InCell, false, cell, stack + " %", "formatting+1"},
                {"</tr>", ANSWER_USED, InTableBody, false, row, bodyStack, ""},
                {"<caption> <col> <colgroup> <tbody> <tfoot> <thead> <tr> </table>", ANSWER_AGAIN,
                    InTableBody, false, row, bodyStack, ""},
                {own, ANSWER_AGAIN, InTableBody, false, row, bodyStack, ""},
                {others, ANSWER_IGNORED, InRow, true, row, stack, ""},
                {"</body> </caption> </col> </colgroup> </html> </td> </th>", ANSWER_IGNORED, InRow,
                    true, row, stack, ""},
                ruleLike("any", HandleInTableInsertion),
            }});
    }
}

TEST(TablePartModes, InRowWithMisplacedContentOpen)
{
    const char* const row = "html[head body[div table[tbody[tr]]]]";
    const char* const stack = "html body table tbody tr div";
    checkModeRules({InRow, HandleInRowInsertion, "<table><tr><div>",
        {
            {"<td> <th>", ANSWER_USED, InCell, false, "html[head body[div table[tbody[tr[%]]]]]",
                "html body table tbody tr %", "formatting+1"},
            {"</tr>", ANSWER_USED, InTableBody, false, row, "html body table tbody", ""},
            {"<caption> <col> <colgroup> <tbody> <tfoot> <thead> <tr> </table> </tbody>",
                ANSWER_AGAIN, InTableBody, false, row, "html body table tbody", ""},
            {"</tfoot> </thead>", ANSWER_IGNORED, InRow, true, row, stack, ""},
            {"</body> </caption> </col> </colgroup> </html> </td> </th>", ANSWER_IGNORED, InRow,
                true, row, stack, ""},
            ruleLike("any", HandleInTableInsertion),
        }});
}

struct NothingToEndRow {
    const char* token;
    int answer;
};

TEST(TablePartModes, NoRowToEnd)
{
    // The last one has a body to end, but no row in it: it must not be looked at again.
    const NothingToEndRow rows[]
        = {{"</tr>", ANSWER_IGNORED}, {"<tr>", ANSWER_USED}, {"<caption>", ANSWER_USED},
            {"</table>", ANSWER_USED}, {"</tfoot>", ANSWER_IGNORED}, {"</tbody>", ANSWER_USED}};
    for (const NothingToEndRow& row : rows) {
        SCOPED_TRACE(row.token);
        OpenStack tree({ELEMENT_HTML, ELEMENT_TR, ELEMENT_TABLE, ELEMENT_TBODY}, InRow);
        const Token token = tokenOf(row.token);
        EXPECT_EQ(HandleInRowInsertion(&token, tree.context), row.answer);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(openElementsText(tree), "html tr table tbody");
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InRow));
    }
}

TEST(TablePartModes, InCell)
{
    for (const std::string cell : {"td", "th"}) {
        const std::string other = cell == "td" ? "</th>" : "</td>";
        const std::string own = "</" + cell + ">";
        const std::string table = "html[head body[table[tbody[tr[" + cell + "]]]]]";
        const std::string row = "html body table tbody tr";
        const std::string stack = row + " " + cell;
        const std::string prologue = "<table><" + cell + ">";
        checkModeRules({InCell, HandleInCellInsertion, prologue,
            {
                {own, ANSWER_USED, InRow, false, table, row, "formatting-1"},
                {other, ANSWER_IGNORED, InCell, true, table, stack, ""},
                {"<caption> <col> <colgroup> <tbody> <td> <tfoot> <th> <thead> <tr>", ANSWER_AGAIN,
                    InRow, false, table, row, "formatting-1"},
                {"</body> </caption> </col> </colgroup> </html>", ANSWER_IGNORED, InCell, true,
                    table, stack, ""},
                {"</table> </tbody> </tr>", ANSWER_AGAIN, InRow, false, table, row, "formatting-1"},
                {"</tfoot> </thead>", ANSWER_IGNORED, InCell, true, table, stack, ""},
                ruleLike("any", HandleInBodyInsertion),
            }});
    }
}

TEST(TablePartModes, InCellWithFormattingOpen)
{
    const char* const table = "html[head body[table[tbody[tr[td[b]]]]]]";
    const char* const row = "html body table tbody tr";
    const char* const stack = "html body table tbody tr td b";
    checkModeRules({InCell, HandleInCellInsertion, "<table><td><b>",
        {
            {"</td>", ANSWER_USED, InRow, true, table, row, "formatting-2"},
            {"</th>", ANSWER_IGNORED, InCell, true, table, stack, ""},
            {"<caption> <col> <colgroup> <tbody> <td> <tfoot> <th> <thead> <tr> </table> </tbody> "
             "</tr>",
                ANSWER_AGAIN, InRow, true, table, row, "formatting-2"},
            {"</body> </caption> </col> </colgroup> </html> </tfoot> </thead>", ANSWER_IGNORED,
                InCell, true, table, stack, ""},
            ruleLike("any", HandleInBodyInsertion),
        }});
}

TEST(TablePartModes, EndOfACellImpliesEndTags)
{
    for (const char* prologue : {"<table><td><p>x", "<table><td><dl><dd><ul><li>x"}) {
        TreeContext tree(prologue);
        tree.build();
        tree.context.parseError = 0;
        const bool isParagraph = tree.find(ELEMENT_P) != nullptr;
        const Token token = tokenOf("</td>");
        EXPECT_EQ(HandleInCellInsertion(&token, tree.context), ANSWER_USED);
        EXPECT_EQ(tree.context.parseError, isParagraph ? 0U : 1U) << prologue;
        EXPECT_EQ(openElementsText(tree), "html body table tbody tr");
    }
}

TEST(TablePartModes, NoCellToEnd)
{
    // The last ones have what they name, but no cell in it: they must not be looked at again.
    const NothingToEndRow rows[]
        = {{"</td>", ANSWER_IGNORED}, {"</th>", ANSWER_IGNORED}, {"<tr>", ANSWER_IGNORED},
            {"<td>", ANSWER_IGNORED}, {"<caption>", ANSWER_IGNORED}, {"</tfoot>", ANSWER_IGNORED},
            {"</tr>", ANSWER_IGNORED}, {"</table>", ANSWER_USED}, {"</tbody>", ANSWER_USED}};
    for (const NothingToEndRow& row : rows) {
        SCOPED_TRACE(row.token);
        OpenStack tree({ELEMENT_HTML, ELEMENT_TD, ELEMENT_TABLE, ELEMENT_TBODY}, InCell);
        const Token token = tokenOf(row.token);
        EXPECT_EQ(HandleInCellInsertion(&token, tree.context), row.answer);
        EXPECT_EQ(tree.context.parseError, 1U);
        EXPECT_EQ(openElementsText(tree), "html td table tbody");
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InCell));
    }
}

TEST(TablePartModes, CloseCell)
{
    struct Row {
        std::vector<std::uint32_t> stack;
        int answer;
        const char* left;
    };
    const Row rows[] = {
        {{ELEMENT_HTML, ELEMENT_TR, ELEMENT_TD, ELEMENT_P}, ANSWER_USED, "html tr"},
        {{ELEMENT_HTML, ELEMENT_TR, ELEMENT_TH, ELEMENT_P}, ANSWER_USED, "html tr"},
        // A td goes first, wherever it stands.
        {{ELEMENT_HTML, ELEMENT_TD, ELEMENT_TH}, ANSWER_USED, "html"},
        {{ELEMENT_HTML, ELEMENT_TH, ELEMENT_TD}, ANSWER_USED, "html th"},
        {{ELEMENT_HTML, ELEMENT_TH, ELEMENT_TD, ELEMENT_TABLE, ELEMENT_TH}, ANSWER_USED,
            "html th td table"},
        {{ELEMENT_HTML, ELEMENT_TR}, ANSWER_IGNORED, "html tr"},
    };
    for (const Row& row : rows) {
        OpenStack tree(row.stack, InCell);
        EXPECT_EQ(CloseCell(tree.context), row.answer);
        EXPECT_EQ(openElementsText(tree), row.left);
        const InsertionMode mode = row.answer == ANSWER_USED ? InRow : InCell;
        EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(mode));
    }
}

TEST(TablePartModes, EndTagsFromFurtherOut)
{
    expectTrees({
        {"<table><td>x</table>y", "html[head body[table[tbody[tr[td[\"x\"]]]] \"y\"]]"},
        {"<table><td>x</tbody><td>y",
            "html[head body[table[tbody[tr[td[\"x\"]]] tbody[tr[td[\"y\"]]]]]]"},
        {"<table><td>x</tr><td>y", "html[head body[table[tbody[tr[td[\"x\"]] tr[td[\"y\"]]]]]]"},
        {"<table><td>x</th>y", "html[head body[table[tbody[tr[td[\"xy\"]]]]]]"},
        {"<table><td>x</thead>y", "html[head body[table[tbody[tr[td[\"xy\"]]]]]]"},
        {"<table><td>x</caption></col></html></body>y",
            "html[head body[table[tbody[tr[td[\"xy\"]]]]]]"},
        {"<table><thead><tr><td>x</thead><td>y",
            "html[head body[table[thead[tr[td[\"x\"]]] tbody[tr[td[\"y\"]]]]]]"},
        {"<table><tfoot><tr><td>x</tfoot><td>y",
            "html[head body[table[tfoot[tr[td[\"x\"]]] tbody[tr[td[\"y\"]]]]]]"},
        // The tags of the outer table do not reach out of the inner one.
        {"<table><td><table></td></tr>x</table>y",
            "html[head body[table[tbody[tr[td[\"x\" table \"y\"]]]]]]"},
        {"<table><thead><tr><td><table><tr></thead><td>x",
            "html[head body[table[thead[tr[td[table[tbody[tr[td[\"x\"]]]]]]]]]]"},
    });
}

TEST(TablePartModes, CellsRowsAndBodiesFollowEachOther)
{
    expectTrees({
        {"<table><tr><td>a<td>b<th>c<tr><td>d",
            "html[head body[table[tbody[tr[td[\"a\"] td[\"b\"] th[\"c\"]] tr[td[\"d\"]]]]]]"},
        {"<table><td>a<caption>b", "html[head body[table[tbody[tr[td[\"a\"]]] caption[\"b\"]]]]"},
        {"<table><td>a<col><td>b",
            "html[head body[table[tbody[tr[td[\"a\"]]] colgroup[col] tbody[tr[td[\"b\"]]]]]]"},
        {"<table><tr><tr><tbody><thead>", "html[head body[table[tbody[tr tr] tbody thead]]]"},
        {"<table><tr><colgroup><caption>", "html[head body[table[tbody[tr] colgroup caption]]]"},
    });
}

TEST(TablePartModes, CellShutsFormattingIn)
{
    expectTrees({
        {"<table><td><b>x</td><td>y", "html[head body[table[tbody[tr[td[b[\"x\"]] td[\"y\"]]]]]]"},
        {"<b><table><td>x<i></table>y", "html[head body[b[table[tbody[tr[td[\"x\" i]]]] \"y\"]]]"},
        {"<p><b></p><table><td>x</table>y",
            "html[head body[p[b] table[tbody[tr[td[\"x\"]]]] b[\"y\"]]]"},
    });
}

/// Goes on with a token as the tree builder does. Answers false when it is still looked at again
/// after as many times.
bool isSettled(Token token, HtmlFilterContext& context)
{
    constexpr ModeHandler kHandlers[] = {nullptr, HandleInitialInsertion, HandleBeforeHtmlInsertion,
        HandleBeforeHeadInsertion, HandleInHeadInsertion, HandleInHeadNoscriptInsertion,
        HandleAfterHeadInsertion, HandleInBodyInsertion, HandleTextInsertion,
        HandleInTableInsertion, HandleInTableTextInsertion, HandleInCaptionInsertion,
        HandleInColumnGroupInsertion, HandleInTableBodyInsertion, HandleInRowInsertion,
        HandleInCellInsertion, HandleInSelectInsertion, HandleInSelectInTableInsertion,
        HandleAfterBodyInsertion, HandleInFramesetInsertion, HandleAfterFramesetInsertion,
        HandleAfterAfterBodyInsertion, HandleAfterAfterFramesetInsertion};
    constexpr int kLimit = 100;
    try {
        for (int i = 0; i < kLimit; ++i) {
            if (kHandlers[context.insertionMode](&token, context) != ANSWER_AGAIN)
                return true;
        }
    } catch (const zorvan::Exception& failure) {
        // A stack of one entry can't be searched.
        EXPECT_EQ(failure.code(), 137U);
        return true;
    }
    return false;
}

TEST(TablePartModes, NoTokenIsLookedAtForEver)
{
    const std::vector<std::uint32_t> stacks[] = {
        {ELEMENT_HTML},
        {ELEMENT_TABLE},
        {ELEMENT_SELECT},
        {ELEMENT_HTML, ELEMENT_BODY},
        {ELEMENT_HTML, ELEMENT_FRAMESET},
        {ELEMENT_HTML, ELEMENT_SPAN},
        {ELEMENT_HTML, ELEMENT_SELECT},
        {ELEMENT_HTML, ELEMENT_TABLE},
        {ELEMENT_HTML, ELEMENT_CAPTION},
        {ELEMENT_HTML, ELEMENT_COLGROUP},
        {ELEMENT_HTML, ELEMENT_TBODY},
        {ELEMENT_HTML, ELEMENT_TR},
        {ELEMENT_HTML, ELEMENT_TD},
        {ELEMENT_TD, ELEMENT_SPAN},
        {ELEMENT_TABLE, ELEMENT_SPAN, ELEMENT_SPAN},
        {ELEMENT_SPAN, ELEMENT_SELECT, ELEMENT_OPTION},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_SELECT, ELEMENT_SELECT},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE, ELEMENT_SELECT, ELEMENT_TABLE},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE, ELEMENT_TBODY},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TR},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE, ELEMENT_TR, ELEMENT_TD, ELEMENT_TH},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TD, ELEMENT_TABLE, ELEMENT_COLGROUP, ELEMENT_CAPTION},
        {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_TABLE, ELEMENT_CAPTION, ELEMENT_BUTTON, ELEMENT_P},
    };
    constexpr auto kFirst = static_cast<std::uint32_t>(InTable);
    constexpr auto kLast = static_cast<std::uint32_t>(InSelectInTable);
    const std::vector<Token> tokens = testing_support::everyToken();
    for (const auto& stack : stacks) {
        for (std::uint32_t mode = kFirst; mode <= kLast; ++mode) {
            OpenStack tree({}, InTable);
            for (const Token& token : tokens) {
                tree.reopen(stack, static_cast<InsertionMode>(mode));
                const std::string before = openElementsText(tree);
                EXPECT_TRUE(isSettled(token, tree.context))
                    << before << ", mode " << mode << ", " << int(token.flags) << " of "
                    << token.element << ", character " << token.character;
            }
        }
    }
}

TEST(TablePartModes, ManyCells)
{
    constexpr std::uint32_t kRows = 1'000;
    constexpr std::uint32_t kCells = 50;
    std::string row = "<tr>";
    for (std::uint32_t i = 0; i < kCells; ++i)
        row += "<td>x";
    std::string markup = "<table>";
    for (std::uint32_t i = 0; i < kRows; ++i)
        markup += row;
    TreeContext tree(markup);
    tree.build();
    EXPECT_EQ(tree.tree.nodeCount, 5 + kRows * (1 + 2 * kCells));
    EXPECT_EQ(tree.find(ELEMENT_TBODY)->childCount, kRows);
    EXPECT_EQ(openElementsText(tree), "html body table tbody tr td");
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 1);
}

} // namespace
