#pragma once

#include <stdexcept>

namespace host::cli {

/// What the program answers to its caller.
enum ExitCode {
    EXIT_CODE_DONE = 0, ///< also when the reader of the output has gone away
    EXIT_CODE_UNFINISHED = 1, ///< the filter gave the document up
    EXIT_CODE_BAD_USE = 2 ///< nothing was converted, or the output could not be written
};

/// What the caller has to put right; the text is one line.
class BadUse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The reader of the output has gone away.
struct ClosedPipe { };

} // namespace host::cli
