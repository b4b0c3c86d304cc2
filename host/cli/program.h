#pragma once

namespace host::cli {

/// The program `htmlfilter`: reads the command line, runs one subcommand, tells bad use in one line
/// on standard error. Answers an ExitCode.
int runProgram(int argc, const char* const* argv);

} // namespace host::cli
