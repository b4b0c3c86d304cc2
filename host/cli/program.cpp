#include "host/cli/program.h"

#include "host/cli/command.h"
#include "host/cli/descriptors.h"
#include "host/cli/errors.h"
#include "host/cli/message.h"
#include "host/cli/output_file.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <new>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace host::cli {

bool Command::chosen() const { return app_->parsed(); }

namespace {

    int tellBadUse(const std::string& message)
    {
        tellUser(message);
        return EXIT_CODE_BAD_USE;
    }

    /// Does the work of the program; tells what prevents it.
    template <typename Work> int tellingFailures(Work work)
    {
        try {
            return work();
        } catch (const ClosedPipe&) {
            return EXIT_CODE_DONE;
        } catch (const std::bad_alloc&) {
            return tellBadUse("out of memory");
        } catch (const std::exception& error) {
            return tellBadUse(error.what());
        }
    }

    int runChosen(const std::vector<std::unique_ptr<Command>>& commands, const Switches& switches)
    {
        for (const auto& command : commands) {
            if (command->chosen())
                return tellingFailures([&] { return command->run(switches); });
        }
        return tellBadUse("no subcommand; 'htmlfilter --help' tells them");
    }

    /// Writes the help or the version that the command line asks for.
    int answer(const CLI::App& program, const CLI::Success& request)
    {
        return tellingFailures([&] {
            std::ostringstream text;
            program.exit(request, text, text);
            OutputFile("").write(text.str());
            return EXIT_CODE_DONE;
        });
    }

    /// The first long switch that ends in its "=": the parser would take the next word, which may
    /// be the document, for its value. Null when there is none.
    const char* firstWithoutValue(int argc, const char* const* argv)
    {
        for (int index = 1; index < argc; ++index) {
            const std::string_view word = argv[index];
            if (word == "--")
                break;
            if (word.starts_with("--") && word.find('=') == word.size() - 1)
                return argv[index];
        }
        return nullptr;
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
    holdStandardStreams();
    if (const char* word = firstWithoutValue(argc, argv); word != nullptr)
        return tellBadUse(
            "'" + std::string(word) + "' has no value; 'htmlfilter --help' tells more");
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
        return answer(program, request);
    } catch (const CLI::ParseError& error) {
        return tellBadUse(std::string(error.what()) + "; 'htmlfilter --help' tells more");
    }
    return runChosen(commands, switches);
}

} // namespace host::cli
