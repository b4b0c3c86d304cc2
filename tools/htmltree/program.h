#pragma once

#include "host/cli/switches.h"
#include "tools/htmltree/tree_outline.h"

#include <string>

namespace htmltree {

/// What the command line says.
struct Arguments {
    std::string input = {}; ///< a file; "-" and empty stand for standard input
    Declarations declarations = Declarations::Shown;
    bool styles = false; ///< declarations stand below their element, with where they come from
    host::cli::Switches switches = {};
};

/// Adds the arguments; parsing them fills `arguments`, which must live as long as `app`.
void addArguments(CLI::App& app, Arguments& arguments);

/// The outlines of the document. Throws what outlineOfDocument throws, and BadUse for switches that
/// no document is read by.
std::string outlineBy(const Arguments& arguments, host::DocumentStream& stream);

/// The program `htmltree`: reads the command line, prints the outlines, tells in one line on
/// standard error what prevents it. Answers an ExitCode.
int runProgram(int argc, const char* const* argv);

} // namespace htmltree
