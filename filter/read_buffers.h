#pragma once

#include "filter/html_filter_context.h"

/// Bytes of the token buffer, and of the two scratch blocks of its size: the limit, and room behind
/// it for a terminator.
constexpr std::size_t kTokenBufferBytes = (kTokenLimit + 2) * sizeof(char16_t);
static_assert(kTokenBufferBytes == 500'004);
