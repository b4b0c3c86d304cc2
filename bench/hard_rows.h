#pragma once

#include <cstdint>

namespace bench {

/// Prints a row for each of hardShapes(): the processor time of its conversion, for each byte and
/// each node, and its peak memory. Each is measured in processes of its own, which are ended when
/// they take longer than `secondsAllowed`; the row says so then. Answers 0.
int printHardRows(std::uint32_t secondsAllowed);

} // namespace bench
