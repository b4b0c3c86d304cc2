#pragma once

#include "bench/documents.h"

#include <cstdint>

namespace bench {

/// Peak memory, in bytes, that converting a document takes beyond the document itself; measured in
/// a process of its own. 0 when that can't be made.
std::uint64_t peakMemoryOfConversion(const Document& document);

} // namespace bench
