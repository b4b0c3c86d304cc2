#pragma once

#include "bench/documents.h"

#include <cstdint>

namespace bench {

/// Reads all characters of a document; answers their number.
std::uint64_t readCharacters(const Document& document);

/// Scans all tokens of a document; answers their number.
std::uint64_t scanTokens(const Document& document);

/// Builds the tree of a document; answers its number of nodes.
std::uint64_t buildTree(const Document& document);

/// The whole conversion into a host that does nothing. stopAtEveryBreak: the host takes control
/// back at each break. Answers the number of reads.
std::uint64_t convert(const Document& document, bool stopAtEveryBreak);

/// The same without pauses; answers the number of nodes of the tree.
std::uint64_t convertCountingNodes(const Document& document);

} // namespace bench
