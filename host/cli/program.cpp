#include "host/cli/program.h"

#include "host/cli/command.h"
#include "host/cli/errors.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <new>
#include <vector>

namespace host::cli {

bool Command::chosen() const { return app_->parsed(); }

namespace {

    /// Tells what is wrong in one line, whatever the text of the error looks like.
    int tellBadUse(std::string message)
    {
        for (char& byte : message) {
            if (byte == '\n' || byte == '\r')
                byte = ' ';
        }
        std::fprintf(stderr, "htmlfilter: %s\n", message.c_str());
        return EXIT_CODE_BAD_USE;
    }

    int runChosen(const std::vector<std::unique_ptr<Command>>& commands, const Switches& switches)
    {
        for (const auto& command : commands) {
            if (!command->chosen())
                continue;
            try {
                return command->run(switches);
            } catch (const ClosedPipe&) {
                return EXIT_CODE_DONE;
            } catch (const std::bad_alloc&) {
                return tellBadUse("out of memory");
            } catch (const std::exception& error) {
                return tellBadUse(error.what());
            }
        }
        return tellBadUse("no subcommand; 'htmlfilter --help' tells them");
    }

    /// The shared switches stand in the help of a subcommand too.
    void shareHelp(CLI::App& program)
    {
        for (CLI::App* subcommand : program.get_subcommands([](CLI::App*) { return true; })) {
            subcommand->footer([&program] {
                const auto shared = program.get_options(
                    [](const CLI::Option* option) { return option->get_group() == kSwitchGroup; });
                return CLI::Formatter().make_group(
                    kSwitchGroup, /*is_positional=*/false, {shared.begin(), shared.end()});
            });
        }
    }

} // namespace

int runProgram(int argc, const char* const* argv)
{
    // Writing to a closed pipe is an error to be looked at, not the end of the process.
    std::signal(SIGPIPE, SIG_IGN);
    CLI::App program("Converts HTML documents through the filter module.", "htmlfilter");
    Switches switches;
    program.set_version_flag(
        "--version", "htmlfilter " HTMLFILTER_VERSION, "Tells the version of the program");
    program.get_help_ptr()->description("Tells the switches; behind a subcommand, its own too");
    addSwitches(program, switches);
    program.fallthrough();
    program.require_subcommand(1);
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(makeTextCommand(program));
    commands.push_back(makeTraceCommand(program));
    commands.push_back(makeInfoCommand(program));
    shareHelp(program);
    program.footer("Exit codes: 0 done, 1 the filter gave the document up, 2 bad use.");
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return program.exit(request);
    } catch (const CLI::ParseError& error) {
        return tellBadUse(std::string(error.what()) + "; 'htmlfilter --help' tells more");
    }
    return runChosen(commands, switches);
}

} // namespace host::cli
