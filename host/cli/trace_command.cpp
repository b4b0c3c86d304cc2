#include "host/cli/command.h"
#include "host/cli/errors.h"
#include "host/cli/input_source.h"
#include "host/cli/module_path.h"
#include "host/cli/output_file.h"
#include "host/global_options.h"
#include "host/trace_sink.h"

#include <CLI/CLI.hpp>

namespace host::cli {

namespace {

    class TraceCommand : public Command {
    public:
        explicit TraceCommand(CLI::App& program)
        {
            app_ = program.add_subcommand("trace",
                "Every call to the host as a line of plain text, for diff.\n"
                "  htmlfilter trace --stop 1 page.html");
            app_->add_option("FILE", input_,
                    "HTML document; standard input for '-' and when left out:\n"
                    "  htmlfilter trace - <page.html")
                ->check(notEmpty())
                ->type_name("");
            app_->add_option("-o,--output", output_,
                    "File to write instead of standard output:\n  -o page.trace")
                ->check(notEmpty())
                ->type_name("OUT");
        }

        int run(const Switches& switches) override
        {
            const Module module(findModule(switches.modulePath));
            checkSwitches(switches, module);
            const auto input = openInput(input_);
            OutputFile output(output_);
            const GlobalOptionScope options(switches.globalOptions);
            TraceSink sink(output);
            const Outcome outcome = convertInput(module, *input, input_, switches.conversion, sink);
            // The trace of a document that was given up is whole: its last line tells how it ended.
            output.commit();
            return outcome.kind == Outcome::Kind::Finished ? EXIT_CODE_DONE : EXIT_CODE_UNFINISHED;
        }

    private:
        std::string input_;
        std::string output_;
    };

} // namespace

std::unique_ptr<Command> makeTraceCommand(CLI::App& program)
{
    return std::make_unique<TraceCommand>(program);
}

} // namespace host::cli
