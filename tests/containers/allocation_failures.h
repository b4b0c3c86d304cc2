#pragma once

#include "support/process_heap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

namespace testing_support {

/// Calls `attempt` over and over, with the first allocation failing, then the second, and so on,
/// until it passes. `check` runs behind each failure. Answers the number of failures.
template <typename Attempt, typename Check>
std::uint32_t failEachAllocation(Attempt attempt, Check check)
{
    constexpr std::uint32_t kMostAllocations = 100;
    for (std::uint32_t n = 1; n < kMostAllocations; ++n) {
        zorvan::failNthAllocation(n);
        bool failed = false;
        try {
            attempt();
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        zorvan::clearAllocationFailure();
        if (!failed)
            return n - 1;
        check();
    }
    ADD_FAILURE() << "never passes";
    return kMostAllocations;
}

} // namespace testing_support
