#pragma once

#include "support/html_names.h"

#include <array>
#include <cstddef>
#include <cstdint>

// The tables of enterElement and leaveElement: rows of an element and what is done for it, from
// which an array over all element ids is made when the filter is compiled.

constexpr std::size_t kElementCount = ELEMENT_XMP + 1;

template <class Action> struct ElementRow {
    ZVHTMLElement element;
    Action action;
};

/// The actions by element id; what no row names gets the action for everything else.
template <class Action, std::size_t Count>
constexpr std::array<Action, kElementCount> actionsByElement(
    const std::array<ElementRow<Action>, Count>& rows, Action everythingElse)
{
    std::array<Action, kElementCount> actions{};
    actions.fill(everythingElse);
    for (const ElementRow<Action>& row : rows)
        actions[row.element] = row.action;
    return actions;
}

/// Whether the rows ascend by element, so that none stands twice.
template <class Action, std::size_t Count>
constexpr bool ascendByElement(const std::array<ElementRow<Action>, Count>& rows)
{
    for (std::size_t i = 1; i < Count; ++i) {
        if (rows[i - 1].element >= rows[i].element)
            return false;
    }
    return true;
}
