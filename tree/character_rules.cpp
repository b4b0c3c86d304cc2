#include "tree/character_rules.h"

#include "scanner/text_run.h"
#include "support/wstring.h"
#include "tree/active_formatting.h"
#include "tree/element_sets.h"
#include "tree/html_tree.h"
#include "tree/insertion_modes.h"
#include "tree/open_elements.h"
#include "tree/tree_construction.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kRunCapacity = 1'024;

/// What a mode does with characters, told for runs.
enum class RunRule { OneByOne, Body, Misplaced, TableText, PendingText };

/// Whether the next character of the body opens formatting elements again first. That can fail, and
/// a host that reads on then must not miss more than the one character of a token.
bool HasFormattingToReopen(const HtmlFilterContext& context)
{
    if (context.activeFormatting == nullptr)
        return false;
    const HtmlTreeNode* const last = context.activeFormatting->last();
    return last != nullptr && !context.openElements->contains(*last);
}

RunRule RunRuleOf(const HtmlFilterContext& context)
{
    switch (static_cast<InsertionMode>(context.insertionMode)) {
    case InsertionMode::InBody:
    case InsertionMode::InCaption:
    case InsertionMode::InCell:
        return HasFormattingToReopen(context) ? RunRule::OneByOne : RunRule::Body;

    case InsertionMode::InTable:
    case InsertionMode::InTableBody:
    case InsertionMode::InRow:
        // The first character of table text changes the mode.
        if (context.currentNode == nullptr || IsFosterTarget(elementOf(*context.currentNode)))
            return RunRule::OneByOne;
        return HasFormattingToReopen(context) ? RunRule::OneByOne : RunRule::Misplaced;

    case InsertionMode::InTableText:
        return RunRule::TableText;

    case InsertionMode::Text:
    case InsertionMode::InSelect:
    case InsertionMode::InSelectInTable:
        return RunRule::PendingText;

    default:
        return RunRule::OneByOne;
    }
}

bool IsAllSpace(const char16_t* run, std::uint32_t count)
{
    return std::all_of(run, run + count, IsSpaceCharacter);
}

/// InsertBodyCharacter for a run of characters without a 0.
void InsertBodyRun(const char16_t* run, std::uint32_t count, HtmlFilterContext& context)
{
    // Opening again what was lost leaves nothing to open for the second character.
    ReconstructActiveFormatting(context);
    context.pendingText->append(run, static_cast<std::int32_t>(count));
    if (context.framesetOk != 0 && !IsAllSpace(run, count))
        context.framesetOk = 0;
}

void CollectTableRun(const char16_t* run, std::uint32_t count, HtmlFilterContext& context)
{
    context.pendingTableChars->append(run, static_cast<std::int32_t>(count));
    if (context.tableTextAllSpace != 0 && !IsAllSpace(run, count))
        context.tableTextAllSpace = 0;
}

/// The characters that the text they go to takes without new storage. A run is out of the stream
/// before it is stored, so storage that may be refused is left to a token, which makes the text
/// twice as long as it was.
std::uint32_t RoomForRun(RunRule rule, const HtmlFilterContext& context)
{
    const zorvan::WString& text
        = rule == RunRule::TableText ? *context.pendingTableChars : *context.pendingText;
    const auto room = static_cast<std::uint32_t>(text.capacity() - text.length);
    return std::min(room, kRunCapacity);
}

void InsertRun(RunRule rule, const char16_t* run, std::uint32_t count, HtmlFilterContext& context)
{
    switch (rule) {
    case RunRule::Body:
        InsertBodyRun(run, count, context);
        return;

    case RunRule::Misplaced:
        FlagParseError(context);
        InsertFosteredRun(run, count, context);
        return;

    case RunRule::TableText:
        CollectTableRun(run, count, context);
        return;

    case RunRule::PendingText:
    case RunRule::OneByOne:
        break;
    }
    context.pendingText->append(run, static_cast<std::int32_t>(count));
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

int CollectTableCharacter(const Token* token, HtmlFilterContext& context)
{
    if (token->character == 0)
        return IgnoreWithParseError(context);
    AppendCharacter(token->character, *context.pendingTableChars);
    if (!IsSpaceCharacter(token->character))
        context.tableTextAllSpace = 0;
    return ANSWER_USED;
}

void InsertFosteredRun(const char16_t* run, std::uint32_t count, HtmlFilterContext& context)
{
    InsertBodyRun(run, count, context);
    context.pendingTextFoster = 1;
}

void AppendTextRuns(HtmlFilterContext& context)
{
    const RunRule rule = RunRuleOf(context);
    if (rule == RunRule::OneByOne)
        return;
    std::array<char16_t, kRunCapacity> run;
    while (const std::uint32_t count = scanTextRun(run.data(), RoomForRun(rule, context), context))
        InsertRun(rule, run.data(), count, context);
}
