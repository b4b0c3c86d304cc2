#pragma once

#include "bench/documents.h"

#include <cstdint>

namespace bench {

/// Parses a document with libxml2's HTML parser, for scale; answers 1 when it made a tree.
std::uint64_t parseWithReference(const Document& document);

} // namespace bench
