#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// A shape of document in which an obvious way to build, style or walk the tree costs the square of
/// its size, or the depth of it in calls.
struct HardShape {
    const char* name;
    std::string (*generate)(std::size_t count);
    std::size_t (*nodes)(std::size_t count); ///< of its tree, the root left out
    std::size_t benchCount; ///< how large it is measured
    std::size_t testCount; ///< how large a test converts it
};

const std::vector<HardShape>& hardShapes();

} // namespace bench
