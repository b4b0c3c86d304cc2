#pragma once

#include <cstdint>

namespace zorvan {

/// Codes of the exceptions that the containers throw.
inline constexpr std::uint32_t FAILURE_FOREIGN_NODE = 15;
inline constexpr std::uint32_t FAILURE_NOT_FOUND = 25;
inline constexpr std::uint32_t FAILURE_INDEX = 137;

/// Throws zorvan::Exception with this code and text. Out of line, so that the checks around it stay
/// a compare and a jump in the callers.
[[noreturn]] void throwContainerFailure(std::uint32_t code, const char* message);

/// Throws std::bad_alloc: what a container does that would have to grow beyond 2^31 - 1 elements.
[[noreturn]] void throwOutOfStorage();

} // namespace zorvan
