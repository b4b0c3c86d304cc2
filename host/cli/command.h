#pragma once

#include "host/cli/switches.h"

#include <memory>

namespace host::cli {

/// A subcommand with its own switches.
class Command {
public:
    virtual ~Command() = default;
    /// True when the command line asked for this one.
    bool chosen() const;
    /// Does the work and answers an ExitCode. Throws BadUse, ModuleError, ClosedPipe.
    virtual int run(const Switches& switches) = 0;

protected:
    CLI::App* app_ = nullptr; // of the subcommand; belongs to the program's
};

std::unique_ptr<Command> makeTextCommand(CLI::App& program);
std::unique_ptr<Command> makeTraceCommand(CLI::App& program);
std::unique_ptr<Command> makeInfoCommand(CLI::App& program);

} // namespace host::cli
