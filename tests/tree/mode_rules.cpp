#include "tests/tree/mode_rules.h"

#include "support/html_names.h"
#include "support/html_strings.h"
#include "tests/common/tree_context.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

namespace testing_support {

namespace {

    constexpr std::uint32_t kLastElement = 135;
    constexpr std::uint32_t kNamelessElement = 116;

    /// A token and its names, the most telling first.
    struct NamedToken {
        Token token;
        std::vector<std::string> names;
    };

    Token characterToken(std::uint32_t character)
    {
        Token token = {};
        token.flags = TOKEN_CHARACTER;
        token.character = character;
        return token;
    }

    Token tagToken(std::uint32_t elementId, std::uint8_t flag)
    {
        Token token = {};
        token.element = elementId;
        token.flags = flag;
        return token;
    }

    std::vector<NamedToken> allTokens()
    {
        std::vector<NamedToken> tokens;
        for (const std::uint32_t space : {9U, 10U, 12U, 13U, 32U})
            tokens.push_back({characterToken(space), {"space", "any"}});
        tokens.push_back({characterToken(0), {"zero", "character", "any"}});
        for (const std::uint32_t character : {8U, 11U, 33U, 65U, 0xA0U, 0x10000U, 0x10020U})
            tokens.push_back({characterToken(character), {"character", "any"}});
        tokens.push_back({Token{}, {"null", "any"}});
        for (std::uint32_t id = 1; id <= kLastElement; ++id) {
            if (id == kNamelessElement)
                continue;
            const std::string name = zorvan::HTMLStrings::elementName(id);
            tokens.push_back({tagToken(id, TOKEN_START_TAG), {"<" + name + ">", "start", "any"}});
            tokens.push_back({tagToken(id, TOKEN_END_TAG), {"</" + name + ">", "end", "any"}});
        }
        return tokens;
    }

    const ModeRule* findRule(const ModeRules& mode, const NamedToken& named)
    {
        for (const ModeRule& rule : mode.rules) {
            std::istringstream words{std::string(rule.tokens)};
            for (std::string word; words >> word;) {
                for (const std::string& name : named.names) {
                    if (word == name)
                        return &rule;
                }
            }
        }
        return nullptr;
    }

    std::string filledIn(std::string_view outline, const std::string& element)
    {
        std::string filled;
        for (const char character : outline) {
            if (character == '%')
                filled += element;
            else
                filled += character;
        }
        return filled;
    }

    std::string describe(const Token& token)
    {
        if ((token.flags & TOKEN_CHARACTER) != 0)
            return "character " + std::to_string(token.character);
        const std::string name = zorvan::HTMLStrings::elementName(token.element);
        if (token.flags == 0)
            return "null";
        return (token.flags == TOKEN_START_TAG ? "<" : "</") + name + ">";
    }

    /// What pending text looks like when a character has been collected.
    std::string collected(const Token& token)
    {
        if ((token.flags & TOKEN_CHARACTER) == 0 || token.character == 0)
            return {};
        if (token.character >= 0x10000)
            return "\"&#" + std::to_string(token.character) + ";\"";
        const auto unit = static_cast<char16_t>(token.character);
        return quotedText({&unit, 1});
    }

    /// Neither of the two values that framesetOk has, so that every setting shows.
    constexpr std::uint32_t kUntouched = 2;

    std::string collectedTableText(const HtmlFilterContext& context)
    {
        const zorvan::WString& text = *context.pendingTableChars;
        return quotedText({text.data, static_cast<std::size_t>(text.length)});
    }

    /// What a rule may change beside tree and stack.
    struct Watched {
        explicit Watched(const HtmlFilterContext& context)
            : headElement(context.headElement)
            , originalInsertionMode(context.originalInsertionMode)
            , rawTextMode(context.rawTextMode)
            , formElement(context.formElement)
            , formatting(context.activeFormatting->getCount())
            , tableText(collectedTableText(context))
            , tableTextAllSpace(context.tableTextAllSpace)
        {
        }

        const HtmlTreeNode* headElement;
        std::uint32_t originalInsertionMode;
        std::uint32_t rawTextMode;
        const HtmlTreeNode* formElement;
        std::int32_t formatting;
        std::string tableText;
        std::uint32_t tableTextAllSpace;
    };

    std::string changesOfTheBody(const Watched& before, TreeContext& tree)
    {
        const HtmlFilterContext& context = tree.context;
        std::string changes;
        if (context.formElement != before.formElement) {
            const bool isForm = context.formElement == tree.find(ELEMENT_FORM);
            changes += context.formElement == nullptr ? " noForm" : isForm ? " form" : " otherForm";
        }
        const std::int32_t entered = context.activeFormatting->getCount() - before.formatting;
        if (entered != 0)
            changes += " formatting"
                + (entered > 0 ? "+" + std::to_string(entered) : std::to_string(entered));
        if (collectedTableText(context) != before.tableText)
            changes += " tableText=" + collectedTableText(context);
        if (context.tableTextAllSpace != before.tableTextAllSpace)
            changes += " allSpace=" + std::to_string(context.tableTextAllSpace);
        return changes;
    }

    std::string changesSince(const Watched& before, InsertionMode mode, TreeContext& tree)
    {
        const HtmlFilterContext& context = tree.context;
        std::string changes;
        if (context.framesetOk != kUntouched)
            changes += " framesetOk=" + std::to_string(context.framesetOk);
        if (context.headElement != before.headElement)
            changes += context.headElement == tree.find(ELEMENT_HEAD) ? " head" : " otherHead";
        if (context.originalInsertionMode != before.originalInsertionMode) {
            const bool isMode = context.originalInsertionMode == static_cast<std::uint32_t>(mode);
            changes += isMode ? " original" : " otherOriginal";
        }
        if (context.rawTextMode != before.rawTextMode)
            changes += " raw=" + std::to_string(context.rawTextMode);
        changes += changesOfTheBody(before, tree);
        return changes.empty() ? changes : changes.substr(1);
    }

    /// What has become of a token.
    struct Outcome {
        int answer;
        std::uint32_t modeAfter;
        std::uint32_t parseError;
        std::string outline;
        std::string stack;
        std::string changes;
    };

    Outcome outcomeOf(const ModeRules& mode, ModeHandler handler, const Token& token)
    {
        TreeContext tree(mode.prologue);
        HtmlFilterContext& context = tree.context;
        tree.build();
        SetInsertionMode(mode.mode, context);
        context.parseError = 0;
        context.tagAttributeCount = 0;
        context.framesetOk = kUntouched;
        if (mode.lenientRawText == 1) {
            context.lenientRawText = 1;
            context.rawTextMode = RAW_TEXT_NONE;
        }
        const Watched before(context);
        const int answer = handler(&token, context);
        FlushPendingText(context);
        const bool isEmpty = tree.stack().getCount() == 0;
        EXPECT_EQ(context.currentNode, isEmpty ? nullptr : tree.stack().last());
        return {answer, context.insertionMode, context.parseError, tree.shortOutline(),
            openElementsText(tree), changesSince(before, mode.mode, tree)};
    }

    /// A text without the quotes around it.
    std::string unquoted(const std::string& text)
    {
        return text.starts_with('"') ? text.substr(1, text.size() - 2) : text;
    }

    Outcome outcomeTold(const ModeRule& rule, const Token& token)
    {
        const std::string element = (token.flags & TOKEN_CHARACTER) != 0
            ? collected(token)
            : zorvan::HTMLStrings::elementName(token.element);
        return {rule.answer, static_cast<std::uint32_t>(rule.modeAfter), rule.parseError ? 1U : 0U,
            filledIn(rule.outline, element), filledIn(rule.stack, element),
            filledIn(rule.changes, unquoted(element))};
    }

    void checkToken(const ModeRules& mode, const NamedToken& named, const ModeRule& rule)
    {
        SCOPED_TRACE(describe(named.token));
        const Outcome outcome = outcomeOf(mode, mode.handler, named.token);
        Outcome expected;
        if (rule.like == nullptr) {
            expected = outcomeTold(rule, named.token);
        } else {
            Token token = named.token;
            token.flags = static_cast<std::uint8_t>(token.flags | rule.likeFlags);
            expected = outcomeOf(mode, rule.like, token);
            if (rule.parseError)
                expected.parseError = 1;
        }
        EXPECT_EQ(outcome.answer, expected.answer);
        EXPECT_EQ(outcome.modeAfter, expected.modeAfter);
        EXPECT_EQ(outcome.parseError, expected.parseError);
        EXPECT_EQ(outcome.outline, expected.outline);
        EXPECT_EQ(outcome.stack, expected.stack);
        EXPECT_EQ(outcome.changes, expected.changes);
    }

} // namespace

void checkModeRules(const ModeRules& mode)
{
    SCOPED_TRACE("after " + std::string(mode.prologue));
    {
        TreeContext tree(mode.prologue);
        tree.build();
        // BeforeHtml alone can't be stopped at.
        if (mode.mode != InsertionMode::BeforeHtml) {
            ASSERT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(mode.mode));
        }
    }
    std::set<const ModeRule*> tried;
    for (const NamedToken& named : allTokens()) {
        const ModeRule* const rule = findRule(mode, named);
        ASSERT_NE(rule, nullptr) << "no rule for " << describe(named.token);
        checkToken(mode, named, *rule);
        tried.insert(rule);
    }
    EXPECT_EQ(tried.size(), mode.rules.size()) << "a rule was not tried";
}

std::string openElementsText(TreeContext& tree)
{
    std::string text;
    const OpenElements& stack = tree.stack();
    const HtmlTreeNode* node = stack.getCount() == 0 ? nullptr : stack.last();
    for (; node != nullptr; node = stack.below(*node)) {
        const std::string name = zorvan::HTMLStrings::elementName(elementOf(*node));
        text.insert(0, text.empty() ? name : name + ' ');
    }
    return text;
}

std::vector<Token> everyToken()
{
    std::vector<Token> tokens;
    for (const NamedToken& named : allTokens())
        tokens.push_back(named.token);
    return tokens;
}

Token tokenOf(std::string_view text)
{
    for (const NamedToken& named : allTokens()) {
        if (named.names.front() == text)
            return named.token;
    }
    ADD_FAILURE() << "no token " << text;
    return {};
}

} // namespace testing_support
