#pragma once

#include <cstddef>

namespace testing_support {

/// The number of blocks that operator new has given out in this process and not taken back.
std::size_t liveAllocations();

} // namespace testing_support
