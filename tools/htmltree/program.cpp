#include "tools/htmltree/program.h"

#include "filter/entry_points.h"
#include "host/cli/descriptors.h"
#include "host/cli/errors.h"
#include "host/cli/input_source.h"
#include "host/cli/message.h"
#include "host/cli/output_file.h"
#include "host/global_options.h"
#include "tools/htmltree/document_outline.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iterator>
#include <new>
#include <sstream>

namespace htmltree {

namespace {

    using namespace host::cli;

    void tell(const std::string& text)
    {
        std::fprintf(stderr, "htmltree: %s\n", asOneLine(text).c_str());
    }

    void checkFileType(std::uint16_t fileType)
    {
        std::uint16_t fileTypes[16] = {};
        VwGetInfo(fileTypes, INFO_FILE_TYPES);
        if (std::find(std::begin(fileTypes), std::end(fileTypes), fileType) == std::end(fileTypes))
            throw BadUse("--file-type: there is no file type " + std::to_string(fileType)
                + "; 'htmlfilter info' lists them");
    }

    void printTrees(const Arguments& arguments)
    {
        const auto input = openInput(arguments.input);
        OutputFile("").write(outlineBy(arguments, *input));
    }

    /// Does the work of the program; tells what prevents it.
    template <typename Work> int tellingFailures(Work work)
    {
        try {
            work();
            return EXIT_CODE_DONE;
        } catch (const ClosedPipe&) {
            return EXIT_CODE_DONE;
        } catch (const UnfinishedDocument& failure) {
            tell(failure.what());
            return EXIT_CODE_UNFINISHED;
        } catch (const std::bad_alloc&) {
            tell("out of memory");
        } catch (const std::exception& error) {
            tell(error.what());
        }
        return EXIT_CODE_BAD_USE;
    }

} // namespace

void addArguments(CLI::App& app, Arguments& arguments)
{
    app.add_option("FILE", arguments.input,
           "HTML document; standard input for '-' and when left out:\n  htmltree - <page.html")
        ->check(notEmpty())
        ->type_name("");
    auto* const noDeclarations = app.add_flag_callback(
        "--no-declarations", [&arguments] { arguments.declarations = Declarations::LeftOut; },
        "Leaves out what stands behind ' -> ', the style:\n"
        "  htmltree --no-declarations page.html");
    app.add_flag("--styles", arguments.styles,
           "Puts each declaration on a line of its own and tells where it comes from: the\n"
           "style attribute, a rule with its selector and specificity, a presentational\n"
           "attribute, or what is built in:\n"
           "  htmltree --styles page.html")
        ->excludes(noDeclarations);
    addReadingSwitches(app, arguments.switches);
}

std::string outlineBy(const Arguments& arguments, host::DocumentStream& stream)
{
    checkFileType(arguments.switches.conversion.fileType);
    checkCharset(arguments.switches);
    const host::GlobalOptionScope options(arguments.switches.globalOptions);
    if (arguments.styles)
        return stylesOfDocument(stream, arguments.switches.conversion);
    return outlineOfDocument(stream, arguments.switches.conversion, arguments.declarations);
}

int runProgram(int argc, const char* const* argv)
{
    // Writing to a closed pipe is an error to be looked at, not the end of the process.
    std::signal(SIGPIPE, SIG_IGN);
    holdStandardStreams();
    CLI::App app("Prints the tree that the filter makes of an HTML document, and the style of\n"
                 "its elements, as an outline: two blanks for each level, from level 201 on a\n"
                 "number instead.",
        "htmltree");
    Arguments arguments;
    addArguments(app, arguments);
    app.footer("Exit codes: 0 done, 1 the filter gave the document up, 2 bad use.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return tellingFailures([&] {
            std::ostringstream text;
            app.exit(request, text, text);
            OutputFile("").write(text.str());
        });
    } catch (const CLI::ParseError& error) {
        tell(std::string(error.what()) + "; 'htmltree --help' tells more");
        return EXIT_CODE_BAD_USE;
    }
    return tellingFailures([&] { printTrees(arguments); });
}

} // namespace htmltree
