#include "tree/table_modes.h"

#include "support/html_names.h"
#include "support/wstring.h"
#include "tree/active_formatting.h"
#include "tree/character_rules.h"
#include "tree/element_sets.h"
#include "tree/insertion_modes.h"
#include "tree/tree_construction.h"

#include <algorithm>

namespace {

constexpr ElementSet kTableContext{ELEMENT_TABLE, ELEMENT_HTML};
constexpr ElementSet kTableBodyContext{ELEMENT_TBODY, ELEMENT_TFOOT, ELEMENT_THEAD, ELEMENT_HTML};
constexpr ElementSet kRowContext{ELEMENT_TR, ELEMENT_HTML};

void ClearStackTo(const ElementSet& holders, HtmlFilterContext& context)
{
    while (!holders.contains(CurrentElementId(context)))
        PopElement(context);
}

/// What a table can't hold goes by the rules of the body, and the element that the token itself
/// makes in front of the table. QUIRK(TableModes.FosteringHangsOnTheToken): what those rules make
/// on the way, without a token of the input, stays in the table.
int InsertMisplaced(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    Token fostered = *token;
    fostered.flags = static_cast<std::uint8_t>(fostered.flags | TOKEN_FOSTER);
    return HandleInBodyInsertion(&fostered, context);
}

/// QUIRK(TableModes.TextThatIsCutOffByTheEndIsDropped): what is collected counts for nothing until
/// some other token comes.
int BeginTableText(HtmlFilterContext& context)
{
    context.tableTextAllSpace = 1;
    context.pendingTableChars->clear();
    context.originalInsertionMode = context.insertionMode;
    SetInsertionMode(InsertionMode::InTableText, context);
    return ANSWER_AGAIN;
}

/// Brings collected text to its place: white space stays where it stood, all other text goes by the
/// rules of the body. QUIRK(TableModes.MisplacedTextIsNoParseError): it is not complained of.
void DeliverTableText(HtmlFilterContext& context)
{
    const zorvan::WString& text = *context.pendingTableChars;
    if (context.tableTextAllSpace == 1) {
        context.pendingText->append(text);
        return;
    }
    const char16_t* next = text.data;
    const char16_t* const end = next + text.length;
    while (next != end) {
        // Units 0 come from characters that lost their upper half when they were collected.
        const char16_t* const zero = std::find(next, end, u'\0');
        if (zero != next)
            InsertFosteredRun(next, static_cast<std::uint32_t>(zero - next), context);
        if (zero == end)
            return;
        FlagParseError(context);
        next = zero + 1;
    }
}

int StartTablePart(const Token* token, InsertionMode mode, HtmlFilterContext& context)
{
    ClearStackToTableContext(context);
    InsertElement(token, context);
    SetInsertionMode(mode, context);
    return ANSWER_USED;
}

int StartCaption(const Token* token, HtmlFilterContext& context)
{
    ClearStackToTableContext(context);
    InsertFormattingMarker(*context.activeFormatting);
    InsertElement(token, context);
    SetInsertionMode(InsertionMode::InCaption, context);
    return ANSWER_USED;
}

/// Makes the part of the table that a column, a row or a cell needs around it.
int StartImpliedPart(std::uint32_t elementId, HtmlFilterContext& context)
{
    const Token startTag = SyntheticStartTag(elementId);
    HandleInTableInsertion(&startTag, context);
    return ANSWER_AGAIN;
}

/// QUIRK(TableModes.TableInATableFollowsIt): a table ends the one that it stands in.
int EndTableThenRetry(HtmlFilterContext& context)
{
    FlagParseError(context);
    const Token endTag = SyntheticEndTag(ELEMENT_TABLE);
    return AgainUnlessIgnored(HandleInTableInsertion(&endTag, context));
}

int EndTable(HtmlFilterContext& context)
{
    if (!HasElementInTableScope(ELEMENT_TABLE, context))
        return IgnoreWithParseError(context);
    PopElementsUntil(ELEMENT_TABLE, context);
    ResetInsertionMode(context);
    return ANSWER_USED;
}

/// A form stands empty in the table and is the open form all the same.
int InsertTableForm(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    if (context.formElement != nullptr)
        return ANSWER_IGNORED;
    context.formElement = InsertElement(token, context);
    PopElement(context);
    return ANSWER_USED;
}

int InsertHiddenInput(const Token* token, HtmlFilterContext& context)
{
    FlagParseError(context);
    InsertElement(token, context);
    PopElement(context);
    return ANSWER_USED;
}

int HandleInTableStartTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_CAPTION:
        return StartCaption(token, context);

    case ELEMENT_COLGROUP:
        return StartTablePart(token, InsertionMode::InColumnGroup, context);

    case ELEMENT_COL:
        return StartImpliedPart(ELEMENT_COLGROUP, context);

    case ELEMENT_TBODY:
    case ELEMENT_TFOOT:
    case ELEMENT_THEAD:
        return StartTablePart(token, InsertionMode::InTableBody, context);

    case ELEMENT_TD:
    case ELEMENT_TH:
    case ELEMENT_TR:
        return StartImpliedPart(ELEMENT_TBODY, context);

    case ELEMENT_TABLE:
        return EndTableThenRetry(context);

    case ELEMENT_STYLE:
    case ELEMENT_SCRIPT:
        return HandleInHeadInsertion(token, context);

    case ELEMENT_INPUT:
        if (IsHiddenInput(*token, context))
            return InsertHiddenInput(token, context);
        break;

    case ELEMENT_FORM:
        return InsertTableForm(token, context);
    }
    return InsertMisplaced(token, context);
}

int HandleInTableEndTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_TABLE:
        return EndTable(context);

    case ELEMENT_BODY:
    case ELEMENT_CAPTION:
    case ELEMENT_COL:
    case ELEMENT_COLGROUP:
    case ELEMENT_HTML:
    case ELEMENT_TBODY:
    case ELEMENT_TD:
    case ELEMENT_TFOOT:
    case ELEMENT_TH:
    case ELEMENT_THEAD:
    case ELEMENT_TR:
        return IgnoreWithParseError(context);
    }
    return InsertMisplaced(token, context);
}

int EndCaption(HtmlFilterContext& context)
{
    if (!HasElementInTableScope(ELEMENT_CAPTION, context))
        return IgnoreWithParseError(context);
    GenerateImpliedEndTags(ELEMENT_NONE, context);
    if (CurrentElementId(context) != ELEMENT_CAPTION)
        FlagParseError(context);
    PopElementsUntil(ELEMENT_CAPTION, context);
    ClearFormattingToMarker(*context.activeFormatting);
    SetInsertionMode(InsertionMode::InTable, context);
    return ANSWER_USED;
}

int EndCaptionThenRetry(HtmlFilterContext& context)
{
    FlagParseError(context);
    const Token endTag = SyntheticEndTag(ELEMENT_CAPTION);
    return AgainUnlessIgnored(HandleInCaptionInsertion(&endTag, context));
}

int EndColumnGroup(HtmlFilterContext& context)
{
    if (CurrentElementId(context) == ELEMENT_HTML)
        return IgnoreWithParseError(context);
    PopElement(context);
    SetInsertionMode(InsertionMode::InTable, context);
    return ANSWER_USED;
}

/// Whatever a column group can't hold ends it.
int EndColumnGroupThenRetry(HtmlFilterContext& context)
{
    const Token endTag = SyntheticEndTag(ELEMENT_COLGROUP);
    return AgainUnlessIgnored(HandleInColumnGroupInsertion(&endTag, context));
}

} // namespace

bool HasElementInTableScope(std::uint32_t elementId, HtmlFilterContext& context)
{
    return HasElementInListedScope(
        elementId, kTableScopeStoppers.data(), kTableScopeStoppers.size(), context);
}

void ClearStackToTableContext(HtmlFilterContext& context) { ClearStackTo(kTableContext, context); }

void ClearStackToTableBodyContext(HtmlFilterContext& context)
{
    ClearStackTo(kTableBodyContext, context);
}

void ClearStackToRowContext(HtmlFilterContext& context) { ClearStackTo(kRowContext, context); }

int AgainUnlessIgnored(int answerOfEndTag)
{
    return answerOfEndTag == ANSWER_IGNORED ? ANSWER_USED : ANSWER_AGAIN;
}

int HandleInTableInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
    case TokenKind::Character:
        if (IsFosterTarget(CurrentElementId(context)))
            return BeginTableText(context);
        return InsertMisplaced(token, context);

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        return HandleInTableStartTag(token, context);

    case TokenKind::EndTag:
        break;
    }
    return HandleInTableEndTag(token, context);
}

int HandleInTableTextInsertion(const Token* token, HtmlFilterContext& context)
{
    if ((token->flags & TOKEN_CHARACTER) != 0)
        return CollectTableCharacter(token, context);
    DeliverTableText(context);
    context.insertionMode = context.originalInsertionMode;
    return ANSWER_AGAIN;
}

int HandleInCaptionInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::StartTag:
        switch (token->element) {
        case ELEMENT_CAPTION:
        case ELEMENT_COL:
        case ELEMENT_COLGROUP:
        case ELEMENT_TBODY:
        case ELEMENT_TD:
        case ELEMENT_TFOOT:
        case ELEMENT_TH:
        case ELEMENT_THEAD:
        case ELEMENT_TR:
            return EndCaptionThenRetry(context);
        }
        break;

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_CAPTION:
            return EndCaption(context);

        case ELEMENT_TABLE:
            return EndCaptionThenRetry(context);

        case ELEMENT_BODY:
        case ELEMENT_COL:
        case ELEMENT_COLGROUP:
        case ELEMENT_HTML:
        case ELEMENT_TBODY:
        case ELEMENT_TD:
        case ELEMENT_TFOOT:
        case ELEMENT_TH:
        case ELEMENT_THEAD:
        case ELEMENT_TR:
            return IgnoreWithParseError(context);
        }
        break;

    default:
        break;
    }
    return HandleInBodyInsertion(token, context);
}

int HandleInColumnGroupInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::Space:
        AppendPendingChar(token, context);
        return ANSWER_USED;

    case TokenKind::Null:
        return IgnoreWithParseError(context);

    case TokenKind::StartTag:
        if (token->element == ELEMENT_HTML)
            return HandleInBodyInsertion(token, context);
        if (token->element != ELEMENT_COL)
            break;
        InsertElement(token, context);
        PopElement(context);
        return ANSWER_USED;

    case TokenKind::EndTag:
        if (token->element == ELEMENT_COLGROUP)
            return EndColumnGroup(context);
        if (token->element == ELEMENT_COL)
            return IgnoreWithParseError(context);
        break;

    case TokenKind::Character:
        break;
    }
    return EndColumnGroupThenRetry(context);
}
