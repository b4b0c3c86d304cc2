#pragma once

#include "scanner/markup_scanner.h"
#include "tests/common/tree_context.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace testing_support {

/// A tree of elements one in the other, all of them open: for stacks that no document leads to.
class OpenStack : public TreeContext {
public:
    OpenStack(const std::vector<std::uint32_t>& elements, InsertionMode mode)
    {
        open(elements, mode);
    }

    /// The same once more, beside what is there, with nothing left over from before.
    void reopen(const std::vector<std::uint32_t>& elements, InsertionMode mode)
    {
        context.pendingText->clear();
        context.pendingTextFoster = 0;
        while (stack().getCount() != 0)
            PopElement(context);
        ClearActiveFormatting(context);
        context.formElement = nullptr;
        context.rawTextMode = RAW_TEXT_NONE;
        context.statusFlags = 0;
        open(elements, mode);
    }

private:
    void open(const std::vector<std::uint32_t>& elements, InsertionMode mode)
    {
        for (const std::uint32_t element : elements) {
            const Token token = BareToken(element);
            InsertElement(&token, context);
        }
        SetInsertionMode(mode, context);
        context.originalInsertionMode = static_cast<std::uint32_t>(InsertionMode::InTable);
    }
};

struct TreeRow {
    std::string markup;
    std::string outline;
};

/// Builds each document and compares its tree.
inline void expectTrees(const std::vector<TreeRow>& rows)
{
    for (const TreeRow& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        EXPECT_EQ(tree.shortOutline(), row.outline) << row.markup;
    }
}

} // namespace testing_support
