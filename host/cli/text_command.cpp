#include "host/cli/command.h"
#include "host/cli/errors.h"
#include "host/cli/input_source.h"
#include "host/cli/message.h"
#include "host/cli/module_path.h"
#include "host/cli/output_file.h"
#include "host/global_options.h"
#include "host/text_sink.h"

#include <CLI/CLI.hpp>

namespace host::cli {

namespace {

    std::string describe(const Outcome& outcome)
    {
        const std::string code = " with code " + std::to_string(outcome.code);
        switch (outcome.kind) {
        case Outcome::Kind::Exception:
            return "the filter failed" + code + ": " + outcome.message;

        case Outcome::Kind::BailOut:
            return "the filter bailed out" + code;

        case Outcome::Kind::Abandoned:
            return "the filter gave the document up" + code;

        case Outcome::Kind::Finished:
            break;
        }
        return {};
    }

    class TextCommand : public Command {
    public:
        explicit TextCommand(CLI::App& program)
        {
            app_ = program.add_subcommand("text",
                "The document's text as UTF-8: paragraphs as lines,\n"
                "cells of a row joined by tabs.\n  htmlfilter text page.html -o page.txt");
            app_->add_option("FILE", input_,
                    "HTML document; standard input for '-' and when left out:\n"
                    "  htmlfilter text - <page.html")
                ->check(notEmpty())
                ->type_name("");
            app_->add_option("-o,--output", output_,
                    "File to write instead of standard output:\n  -o page.txt")
                ->check(notEmpty())
                ->type_name("OUT");
            app_->add_flag("--properties", properties_,
                "Writes the document properties first, as 'name: value':\n"
                "  htmlfilter text --properties page.html");
        }

        int run(const Switches& switches) override
        {
            const Module module(findModule(switches.modulePath));
            checkSwitches(switches, module);
            const auto input = openInput(input_);
            OutputFile output(output_);
            const GlobalOptionScope options(switches.globalOptions);
            TextSink sink(output,
                properties_ ? TextSink::Properties::WriteFirst : TextSink::Properties::LeaveOut);
            const Outcome outcome = convertInput(module, *input, input_, switches.conversion, sink);
            if (outcome.kind != Outcome::Kind::Finished) {
                tellUser(describe(outcome));
                return EXIT_CODE_UNFINISHED;
            }
            output.commit();
            if (sink.unmapped() != 0) {
                tellUser("characters without a Unicode form, written as U+FFFD: "
                    + std::to_string(sink.unmapped()));
            }
            return EXIT_CODE_DONE;
        }

    private:
        std::string input_;
        std::string output_;
        bool properties_ = false;
    };

} // namespace

std::unique_ptr<Command> makeTextCommand(CLI::App& program)
{
    return std::make_unique<TextCommand>(program);
}

} // namespace host::cli
