#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"
#include "tree/tree_construction.h"

#include <string_view>
#include <vector>

namespace testing_support {

using ModeHandler = int (*)(const Token* token, HtmlFilterContext& context);

/// A rule of a mode. tokens: separated by blanks; "<p>" and "</p>" are tags, "space" the five white
/// space characters, "zero" the character 0, "character" others, "null" the null token. "start",
/// "end" and "any" stand for all tokens of their kind, or all at all, that no rule above names.
/// outline: what the tree then is, pending text included; "%" is the token's element.
struct ModeRule {
    std::string_view tokens;
    int answer;
    InsertionMode modeAfter;
    bool parseError;
    std::string_view outline;
};

/// A mode, the markup that leads to it, and all its rules in the order in which they count.
struct ModeRules {
    InsertionMode mode;
    ModeHandler handler;
    std::string_view prologue;
    std::vector<ModeRule> rules;
};

/// Tries every token there is - all tags, all kinds of characters, the null token - on a mode, each
/// in a document of its own.
void checkModeRules(const ModeRules& mode);

/// Brings a token in the notation of ModeRule, which names one token only.
Token tokenOf(std::string_view text);

} // namespace testing_support
