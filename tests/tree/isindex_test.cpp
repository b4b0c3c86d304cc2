#include "tree/in_body.h"

#include "style/css_declaration_list.h"
#include "tests/common/tree_context.h"
#include "tests/tree/mode_rules.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

namespace {

using testing_support::TreeContext;

TEST(Isindex, WithoutAPrompt)
{
    TreeContext tree("<body>a<isindex>b");
    tree.build();
    EXPECT_EQ(tree.shortOutline(),
        R"-(html[head body["a" form[hr label[input "(input field)"] hr] "b"]])-");
    EXPECT_EQ(tree.context.parseError, 1U);
}

TEST(Isindex, TextNodesStayOpen)
{
    // The field hangs under the prompt's text.
    TreeContext tree("<body><isindex prompt='Say: '>b");
    tree.build();
    EXPECT_EQ(tree.shortOutline(),
        R"-(html[head body[form[hr label["Say: "[input "(input field)"]] hr] "b"]])-");
}

TEST(Isindex, LeavesNothingOpen)
{
    for (const char* markup : {"<body><isindex>", "<body><isindex prompt=a>"}) {
        TreeContext tree(markup);
        tree.build();
        EXPECT_EQ(tree.stack().getCount(), 2) << markup;
        EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_BODY)) << markup;
        EXPECT_EQ(tree.context.formElement, nullptr) << markup;
        EXPECT_EQ(tree.context.pendingText->length, 0) << markup;
    }
}

TEST(Isindex, EmptyPromptIsAnEmptyText)
{
    TreeContext tree("<body><isindex prompt=''>");
    tree.build();
    EXPECT_EQ(
        tree.shortOutline(), R"-(html[head body[form[hr label[""[input "(input field)"]] hr]]])-");
}

TEST(Isindex, PromptWithoutAValueIsNone)
{
    TreeContext tree("<body><isindex prompt>");
    tree.build();
    EXPECT_EQ(
        tree.shortOutline(), R"-(html[head body[form[hr label[input "(input field)"] hr]]])-");
}

TEST(Isindex, ElementsHaveNoAttributes)
{
    TreeContext tree("<body><isindex prompt=x id=a class=b dir=rtl type=hidden>");
    tree.build();
    EXPECT_EQ(tree.outline(),
        "html\n"
        "  head\n"
        "  body\n"
        "    form\n"
        "      hr\n"
        "      label\n"
        "        \"x\"\n"
        "          input\n"
        "          \"(input field)\"\n"
        "      hr\n");
    EXPECT_EQ(tree.context.framesetOk, 0U);
    for (const std::uint32_t element : {ELEMENT_FORM, ELEMENT_HR, ELEMENT_LABEL, ELEMENT_INPUT}) {
        const auto* list = TreeContext::payloadOf(*tree.find(element)).declarations;
        EXPECT_TRUE(list == nullptr || !list->contains(PROPERTY_DIRECTION)) << element;
    }
}

TEST(Isindex, InAFormIsIgnored)
{
    TreeContext tree("<body><form>");
    tree.build();
    const HtmlTreeNode* const form = tree.context.formElement;
    ASSERT_NE(form, nullptr);
    tree.context.framesetOk = 1;
    const Token token = testing_support::tokenOf("<isindex>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_IGNORED);
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.formElement, form);
    EXPECT_EQ(tree.context.framesetOk, 1U);
    EXPECT_EQ(tree.shortOutline(), "html[head body[form]]");
}

TEST(Isindex, ClosesAParagraph)
{
    TreeContext tree("<p>a<isindex prompt=b>c");
    tree.build();
    EXPECT_EQ(tree.shortOutline(),
        R"-(html[head body[p["a"] form[hr label["b"[input "(input field)"]] hr] "c"]])-");
}

TEST(Isindex, OneBehindTheOther)
{
    TreeContext tree("<body><isindex prompt=a><isindex prompt=b>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(),
        R"-(html[head body[form[hr label["a"[input "(input field)"]] hr] )-"
        R"-(form[hr label["b"[input "(input field)"]] hr]]])-");
}

} // namespace
