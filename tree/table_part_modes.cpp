#include "tree/insertion_modes.h"

#include "support/html_names.h"
#include "tree/active_formatting.h"
#include "tree/table_modes.h"
#include "tree/tree_construction.h"

// Bodies of tables, rows and cells. None of them stops the search for an open table, so an end tag
// from further out ends cell, row and body in turn, each by one end tag that is acted upon and one
// more look at the token.

namespace {

bool HasTableBodyInTableScope(HtmlFilterContext& context)
{
    return HasElementInTableScope(ELEMENT_TBODY, context)
        || HasElementInTableScope(ELEMENT_THEAD, context)
        || HasElementInTableScope(ELEMENT_TFOOT, context);
}

int StartRowThenRetry(HtmlFilterContext& context)
{
    FlagParseError(context);
    const Token startTag = SyntheticStartTag(ELEMENT_TR);
    HandleInTableBodyInsertion(&startTag, context);
    return ANSWER_AGAIN;
}

int EndTableBody(const Token* token, HtmlFilterContext& context)
{
    if (!HasElementInTableScope(token->element, context))
        return IgnoreWithParseError(context);
    // QUIRK(TablePartModes.EndTagOfAnotherBodyEndsTheInnermost): what is taken down is the part
    // that is open, whichever of the three the tag names.
    ClearStackToTableBodyContext(context);
    PopElement(context);
    SetInsertionMode(InsertionMode::InTable, context);
    return ANSWER_USED;
}

int EndTableBodyThenRetry(HtmlFilterContext& context)
{
    if (!HasTableBodyInTableScope(context))
        return IgnoreWithParseError(context);
    ClearStackToTableBodyContext(context);
    const Token endTag = SyntheticEndTag(CurrentElementId(context));
    HandleInTableBodyInsertion(&endTag, context);
    return ANSWER_AGAIN;
}

int StartCell(const Token* token, HtmlFilterContext& context)
{
    ClearStackToRowContext(context);
    InsertElement(token, context);
    SetInsertionMode(InsertionMode::InCell, context);
    InsertFormattingMarker(*context.activeFormatting);
    return ANSWER_USED;
}

int EndRow(HtmlFilterContext& context)
{
    if (!HasElementInTableScope(ELEMENT_TR, context))
        return IgnoreWithParseError(context);
    ClearStackToRowContext(context);
    PopElement(context);
    SetInsertionMode(InsertionMode::InTableBody, context);
    return ANSWER_USED;
}

int EndRowThenRetry(HtmlFilterContext& context)
{
    const Token endTag = SyntheticEndTag(ELEMENT_TR);
    return AgainUnlessIgnored(HandleInRowInsertion(&endTag, context));
}

int EndCell(const Token* token, HtmlFilterContext& context)
{
    if (!HasElementInTableScope(token->element, context))
        return IgnoreWithParseError(context);
    GenerateImpliedEndTags(ELEMENT_NONE, context);
    if (CurrentElementId(context) != token->element)
        FlagParseError(context);
    PopElementsUntil(token->element, context);
    ClearFormattingToMarker(*context.activeFormatting);
    SetInsertionMode(InsertionMode::InRow, context);
    return ANSWER_USED;
}

/// For start tags, which need a cell to end.
int CloseOpenCellThenRetry(HtmlFilterContext& context)
{
    if (!HasElementInTableScope(ELEMENT_TD, context)
        && !HasElementInTableScope(ELEMENT_TH, context))
        return IgnoreWithParseError(context);
    CloseCell(context);
    return ANSWER_AGAIN;
}

/// For end tags, which need what they name.
int CloseCellForEndTag(const Token* token, HtmlFilterContext& context)
{
    if (!HasElementInTableScope(token->element, context))
        return IgnoreWithParseError(context);
    return AgainUnlessIgnored(CloseCell(context));
}

int HandleInCellEndTag(const Token* token, HtmlFilterContext& context)
{
    switch (token->element) {
    case ELEMENT_TD:
    case ELEMENT_TH:
        return EndCell(token, context);

    case ELEMENT_BODY:
    case ELEMENT_CAPTION:
    case ELEMENT_COL:
    case ELEMENT_COLGROUP:
    case ELEMENT_HTML:
        return IgnoreWithParseError(context);

    case ELEMENT_TABLE:
    case ELEMENT_TBODY:
    case ELEMENT_TFOOT:
    case ELEMENT_THEAD:
    case ELEMENT_TR:
        return CloseCellForEndTag(token, context);
    }
    return HandleInBodyInsertion(token, context);
}

} // namespace

int HandleInTableBodyInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::StartTag:
        switch (token->element) {
        case ELEMENT_TR:
            ClearStackToTableBodyContext(context);
            InsertElement(token, context);
            SetInsertionMode(InsertionMode::InRow, context);
            return ANSWER_USED;

        case ELEMENT_TD:
        case ELEMENT_TH:
            return StartRowThenRetry(context);

        case ELEMENT_CAPTION:
        case ELEMENT_COL:
        case ELEMENT_COLGROUP:
        case ELEMENT_TBODY:
        case ELEMENT_TFOOT:
        case ELEMENT_THEAD:
            return EndTableBodyThenRetry(context);
        }
        break;

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_TBODY:
        case ELEMENT_TFOOT:
        case ELEMENT_THEAD:
            return EndTableBody(token, context);

        case ELEMENT_TABLE:
            return EndTableBodyThenRetry(context);

        case ELEMENT_BODY:
        case ELEMENT_CAPTION:
        case ELEMENT_COL:
        case ELEMENT_COLGROUP:
        case ELEMENT_HTML:
        case ELEMENT_TD:
        case ELEMENT_TH:
        case ELEMENT_TR:
            return IgnoreWithParseError(context);
        }
        break;

    default:
        break;
    }
    return HandleInTableInsertion(token, context);
}

int HandleInRowInsertion(const Token* token, HtmlFilterContext& context)
{
    switch (ClassifyToken(*token)) {
    case TokenKind::StartTag:
        switch (token->element) {
        case ELEMENT_TD:
        case ELEMENT_TH:
            return StartCell(token, context);

        case ELEMENT_CAPTION:
        case ELEMENT_COL:
        case ELEMENT_COLGROUP:
        case ELEMENT_TBODY:
        case ELEMENT_TFOOT:
        case ELEMENT_THEAD:
        case ELEMENT_TR:
            return EndRowThenRetry(context);
        }
        break;

    case TokenKind::EndTag:
        switch (token->element) {
        case ELEMENT_TR:
            return EndRow(context);

        case ELEMENT_TABLE:
            return EndRowThenRetry(context);

        case ELEMENT_TBODY:
        case ELEMENT_TFOOT:
        case ELEMENT_THEAD:
            if (!HasElementInTableScope(token->element, context))
                return IgnoreWithParseError(context);
            return EndRowThenRetry(context);

        case ELEMENT_BODY:
        case ELEMENT_CAPTION:
        case ELEMENT_COL:
        case ELEMENT_COLGROUP:
        case ELEMENT_HTML:
        case ELEMENT_TD:
        case ELEMENT_TH:
            return IgnoreWithParseError(context);
        }
        break;

    default:
        break;
    }
    return HandleInTableInsertion(token, context);
}

int CloseCell(HtmlFilterContext& context)
{
    const bool isData = HasElementInTableScope(ELEMENT_TD, context);
    const Token endTag = SyntheticEndTag(isData ? ELEMENT_TD : ELEMENT_TH);
    return HandleInCellInsertion(&endTag, context);
}

int HandleInCellInsertion(const Token* token, HtmlFilterContext& context)
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
            return CloseOpenCellThenRetry(context);
        }
        break;

    case TokenKind::EndTag:
        return HandleInCellEndTag(token, context);

    default:
        break;
    }
    return HandleInBodyInsertion(token, context);
}
