#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"

#include <cstdint>

// What becomes of the characters of content. Text is most of a document, so there are two roads to
// the same place: one character token at a time, which every mode knows, and whole runs straight
// from the scanner, in modes in which a character leads to no other mode: in the text of an element
// and in a select a character only joins the pending text, in the body and what goes by its rules
// formatting is opened again first and framesetOk may fall, and table text is collected.

/// White space of content.
constexpr bool IsSpaceCharacter(std::uint32_t character)
{
    return character == 9 || character == 10 || character == 12 || character == 13
        || character == 32;
}

/// A character of the body. Answers an InsertionAnswer.
int InsertBodyCharacter(const Token* token, HtmlFilterContext& context);

/// A character of table text, which waits in pendingTableChars until the stretch is over. Answers
/// an InsertionAnswer.
int CollectTableCharacter(const Token* token, HtmlFilterContext& context);

/// What InsertBodyCharacter does for each of a run of characters with TOKEN_FOSTER. count: at least
/// 1; none of the characters is 0.
void InsertFosteredRun(const char16_t* run, std::uint32_t count, HtmlFilterContext& context);

/// Takes the plain characters that come next from the scanner, in the modes that may; what is left
/// is a token's matter. Nothing happens in other modes and when a token is next, nor where a
/// character has work to do that can fail: so nothing of a run is ever lost.
void AppendTextRuns(HtmlFilterContext& context);
