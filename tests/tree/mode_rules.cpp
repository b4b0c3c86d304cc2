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

    std::string stackText(TreeContext& tree)
    {
        std::string text;
        for (std::int32_t i = 0; i < tree.stack().getCount(); ++i) {
            if (i != 0)
                text += ' ';
            text += zorvan::HTMLStrings::elementName(elementOf(*tree.stack().getAt(i)));
        }
        return text;
    }

    /// What a rule may change beside tree and stack.
    struct Watched {
        explicit Watched(const HtmlFilterContext& context)
            : headElement(context.headElement)
            , originalInsertionMode(context.originalInsertionMode)
            , rawTextMode(context.rawTextMode)
        {
        }

        const HtmlTreeNode* headElement;
        std::uint32_t originalInsertionMode;
        std::uint32_t rawTextMode;
    };

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
        return changes.empty() ? changes : changes.substr(1);
    }

    void checkToken(const ModeRules& mode, const NamedToken& named, const ModeRule& rule)
    {
        SCOPED_TRACE(describe(named.token));
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
        const int answer = mode.handler(&named.token, context);
        FlushPendingText(context);
        EXPECT_EQ(answer, rule.answer);
        EXPECT_EQ(context.insertionMode, static_cast<std::uint32_t>(rule.modeAfter));
        EXPECT_EQ(context.parseError, rule.parseError ? 1U : 0U);
        const std::string element = (named.token.flags & TOKEN_CHARACTER) != 0
            ? collected(named.token)
            : zorvan::HTMLStrings::elementName(named.token.element);
        EXPECT_EQ(tree.shortOutline(), filledIn(rule.outline, element));
        EXPECT_EQ(stackText(tree), filledIn(rule.stack, element));
        EXPECT_EQ(changesSince(before, mode.mode, tree), rule.changes);
        const bool isEmpty = tree.stack().getCount() == 0;
        EXPECT_EQ(context.currentNode, isEmpty ? nullptr : tree.stack().last());
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
