#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// A generated document: bytes, and the file type under which the filter reads it.
struct Document {
    std::string bytes;
    std::uint16_t fileType = 1101;
};

/// A kind of generated document.
struct DocumentKind {
    const char* name;
    Document (*generate)(std::size_t size);
};

/// All kinds, each of which repeats one pattern up to about the size asked for.
const std::vector<DocumentKind>& documentKinds();

} // namespace bench
