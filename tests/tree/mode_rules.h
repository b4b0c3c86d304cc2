#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"
#include "tree/tree_construction.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

class TreeContext;

using ModeHandler = int (*)(const Token* token, HtmlFilterContext& context);

/// A rule of a mode. tokens: separated by blanks; "<p>" and "</p>" are tags, "space" the five white
/// space characters, "zero" the character 0, "character" others, "null" the null token. "start",
/// "end" and "any" stand for all tokens of their kind, or all at all, that no rule above names.
/// outline: what the tree then is, pending text included; "%" is the token's element. stack: the
/// open elements from the bottom up, "%" as before. changes: those of framesetOk ("framesetOk=0"),
/// headElement ("head": it is the head of the tree now), originalInsertionMode ("original": it is
/// the mode that the token was met in), rawTextMode ("raw=1"), formElement ("form": it is the form
/// of the tree now; "noForm"), the entries of activeFormatting ("formatting+1", "formatting-2"),
/// pendingTableChars ("tableText=" and what it holds now, quoted; "%" is the character) and
/// tableTextAllSpace ("allSpace=0"), in this order; what is not named stays as it was.
struct ModeRule {
    std::string_view tokens;
    int answer;
    InsertionMode modeAfter;
    bool parseError;
    std::string_view outline;
    std::string_view stack;
    std::string_view changes;
    /// Not null: the rule is that of another mode, told by its handler, in the mode in force. Then
    /// nothing of the above but parseError counts, and that only when it is true.
    ModeHandler like = nullptr;
    std::uint8_t likeFlags = 0; ///< set on the token that goes to the other handler
};

/// A rule that does as another mode does. parseError: flagged whatever that mode does.
inline ModeRule ruleLike(
    std::string_view tokens, ModeHandler like, bool parseError = false, std::uint8_t likeFlags = 0)
{
    return {tokens, ANSWER_USED, InsertionMode::Initial, parseError, "", "", "", like, likeFlags};
}

/// A mode, the markup that leads to it, and all its rules in the order in which they count.
/// lenientRawText: 1 for lenient raw text that has just ended.
struct ModeRules {
    InsertionMode mode;
    ModeHandler handler;
    std::string_view prologue;
    std::vector<ModeRule> rules;
    std::uint32_t lenientRawText = 0;
};

/// Tries every token there is - all tags, all kinds of characters, the null token - on a mode, each
/// in a document of its own.
void checkModeRules(const ModeRules& mode);

/// The names of the open elements from the bottom up, separated by blanks.
std::string openElementsText(TreeContext& tree);

/// The tokens that checkModeRules tries.
std::vector<Token> everyToken();

/// Brings a token in the notation of ModeRule, which names one token only.
Token tokenOf(std::string_view text);

} // namespace testing_support
