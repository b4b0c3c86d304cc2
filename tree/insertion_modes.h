#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"

#include <cstdint>

// One function per insertion mode. Each answers an InsertionAnswer.

int HandleInitialInsertion(const Token* token, HtmlFilterContext& context);
int HandleBeforeHtmlInsertion(const Token* token, HtmlFilterContext& context);
int HandleBeforeHeadInsertion(const Token* token, HtmlFilterContext& context);
int HandleInHeadInsertion(const Token* token, HtmlFilterContext& context);
int HandleInHeadNoscriptInsertion(const Token* token, HtmlFilterContext& context);
int HandleAfterHeadInsertion(const Token* token, HtmlFilterContext& context);
int HandleInBodyInsertion(const Token* token, HtmlFilterContext& context);
int HandleTextInsertion(const Token* token, HtmlFilterContext& context);
int HandleInTableInsertion(const Token* token, HtmlFilterContext& context);
int HandleInTableTextInsertion(const Token* token, HtmlFilterContext& context);
int HandleInCaptionInsertion(const Token* token, HtmlFilterContext& context);
int HandleInColumnGroupInsertion(const Token* token, HtmlFilterContext& context);
int HandleInTableBodyInsertion(const Token* token, HtmlFilterContext& context);
int HandleInRowInsertion(const Token* token, HtmlFilterContext& context);
int HandleInCellInsertion(const Token* token, HtmlFilterContext& context);
int HandleInSelectInsertion(const Token* token, HtmlFilterContext& context);
int HandleInSelectInTableInsertion(const Token* token, HtmlFilterContext& context);
int HandleAfterBodyInsertion(const Token* token, HtmlFilterContext& context);
int HandleInFramesetInsertion(const Token* token, HtmlFilterContext& context);
int HandleAfterFramesetInsertion(const Token* token, HtmlFilterContext& context);
int HandleAfterAfterBodyInsertion(const Token* token, HtmlFilterContext& context);
int HandleAfterAfterFramesetInsertion(const Token* token, HtmlFilterContext& context);

/// Takes down the nearest open element with the token's id, unless a special one stands above it.
int HandleAnyOtherEndTag(const Token* token, HtmlFilterContext& context);

/// Closes a cell that is open in table scope, as its end tag does; answers as InCell.
int CloseCell(HtmlFilterContext& context);

/// Gives a payload of the token's element the attributes of the tag just scanned, which is that of
/// an html or a body, as far as it lacks them. The values are shared; declarations are not taken
/// over. target: null or of another element changes nothing.
void MergeAttributes(HtmlGenericNodeData* target, const Token& token, HtmlFilterContext& context);

/// Inserts an element whose content is text up to its end tag; the mode then is the one in force
/// now again. Answers ANSWER_USED.
int InsertTextElement(const Token* token, HtmlFilterContext& context);

/// The same for an element in whose content markup is text.
int InsertRawTextElement(const Token* token, HtmlFilterContext& context);

/// Whether an input is not to be seen by its tag, which is the one just scanned or synthetic.
bool IsHiddenInput(const Token& token, HtmlFilterContext& context);

/// Flags a parse error and answers ANSWER_IGNORED.
int IgnoreWithParseError(HtmlFilterContext& context);

/// What a token is to the rules.
enum class TokenKind { Null, Space, Character, StartTag, EndTag };

/// Classifies a token. White space: 9, 10, 12, 13 and 32.
TokenKind ClassifyToken(const Token& token);

/// Tokens that the builder makes itself. A bare one has no flags.
Token BareToken(std::uint32_t elementId);
Token SyntheticStartTag(std::uint32_t elementId);
Token SyntheticEndTag(std::uint32_t elementId);

/// A parse error stops nothing; the output reports the first one.
inline void FlagParseError(HtmlFilterContext& context) { context.parseError = 1; }
