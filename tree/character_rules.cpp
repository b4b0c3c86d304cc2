#include "tree/character_rules.h"

#include "scanner/text_run.h"
#include "support/wstring.h"
#include "tree/active_formatting.h"
#include "tree/insertion_modes.h"
#include "tree/tree_construction.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kRunCapacity = 1'024;

/// What a mode does with characters, told for runs.
enum class RunRule { OneByOne, Body, Text };

RunRule RunRuleOf(std::uint32_t insertionMode)
{
    switch (static_cast<InsertionMode>(insertionMode)) {
    case InsertionMode::InBody:
        return RunRule::Body;

    case InsertionMode::Text:
        return RunRule::Text;

    default:
        return RunRule::OneByOne;
    }
}

/// InsertBodyCharacter for a run of characters without a 0.
void InsertBodyRun(const char16_t* run, std::uint32_t count, HtmlFilterContext& context)
{
    // Opening again what was lost leaves nothing to open for the second character.
    ReconstructActiveFormatting(context);
    context.pendingText->append(run, static_cast<std::int32_t>(count));
    if (context.framesetOk != 0 && !std::all_of(run, run + count, IsSpaceCharacter))
        context.framesetOk = 0;
}

} // namespace

int InsertBodyCharacter(const Token* token, HtmlFilterContext& context)
{
    if (token->character == 0) {
        FlagParseError(context);
        return ANSWER_IGNORED;
    }
    ReconstructActiveFormatting(context);
    AppendPendingChar(token, context);
    if (!IsSpaceCharacter(token->character))
        context.framesetOk = 0;
    return ANSWER_USED;
}

void AppendTextRuns(HtmlFilterContext& context)
{
    const RunRule rule = RunRuleOf(context.insertionMode);
    if (rule == RunRule::OneByOne)
        return;
    std::array<char16_t, kRunCapacity> run;
    while (const std::uint32_t count = scanTextRun(run.data(), kRunCapacity, context)) {
        if (rule == RunRule::Body)
            InsertBodyRun(run.data(), count, context);
        else
            context.pendingText->append(run.data(), static_cast<std::int32_t>(count));
    }
}
