#include "tree/insertion_modes.h"

#include "tests/common/tree_context.h"
#include "tests/tree/mode_rules.h"

#include <gtest/gtest.h>

namespace {

using testing_support::ModeHandler;
using testing_support::tokenOf;
using testing_support::TreeContext;

TEST(TableModes, TakeTheRulesOfTheBody)
{
    const ModeHandler handlers[] = {HandleInTableInsertion, HandleInTableTextInsertion,
        HandleInCaptionInsertion, HandleInColumnGroupInsertion, HandleInTableBodyInsertion,
        HandleInRowInsertion, HandleInCellInsertion};
    for (const ModeHandler handler : handlers) {
        TreeContext tree("<body>");
        tree.build();
        for (const char* text : {"<b>", "character", "</b>", "space"}) {
            const Token token = tokenOf(text);
            EXPECT_EQ(handler(&token, tree.context), ANSWER_USED);
        }
        const Token null = {};
        EXPECT_EQ(handler(&null, tree.context), ANSWER_IGNORED);
        FlushPendingText(tree.context);
        EXPECT_EQ(tree.shortOutline(), "html[head body[b[\"\\u0008\"] \"\\u0009\"]]");
    }
}

} // namespace
