#include "tree/insertion_modes.h"

// STAND-IN: no mode here is entered yet, and each does with its tokens what the body does.

int HandleInSelectInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInBodyInsertion(token, context);
}

int HandleInSelectInTableInsertion(const Token* token, HtmlFilterContext& context)
{
    return HandleInSelectInsertion(token, context);
}
