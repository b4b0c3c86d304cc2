#include "tree/insertion_modes.h"

// STAND-IN: no mode here is entered yet, and each does with its tokens what the body does.

int HandleInTableInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInTableTextInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInCaptionInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInColumnGroupInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInTableBodyInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInRowInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInCellInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}
