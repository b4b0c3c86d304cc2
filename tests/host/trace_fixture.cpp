#include "tests/host/trace_fixture.h"

#include "host/cli/switches.h"
#include "host/global_options.h"
#include "host/trace_sink.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace host_test {

namespace {

    using testing_support::headerValue;
    using testing_support::linesOf;
    using testing_support::wordsOf;

    constexpr char kSuffix[] = ".trace";

    void readHeader(const std::string& line, TraceExpectation& expectation)
    {
        expectation.header.push_back(line);
        std::string value;
        if (headerValue(line, "args", value)) {
            for (const std::string& word : wordsOf(value))
                expectation.arguments.push_back(word);
        } else if (headerValue(line, "must", value)) {
            expectation.musts.push_back(value);
        } else if (headerValue(line, "only", value)) {
            expectation.onlyMusts = value == "must";
            if (!expectation.onlyMusts)
                expectation.unknown.push_back(line);
        } else if (headerValue(line, "stop", value)) {
            expectation.stopDiffers = value == "differs";
            if (!expectation.stopDiffers)
                expectation.unknown.push_back(line);
        } else if (line != "#" && !headerValue(line, "why", value)) {
            expectation.unknown.push_back(line);
        }
    }

    host::cli::Switches parseArguments(std::vector<std::string> arguments)
    {
        CLI::App app;
        host::cli::Switches switches;
        host::cli::addSwitches(app, switches);
        std::reverse(arguments.begin(), arguments.end());
        try {
            app.parse(arguments);
        } catch (const CLI::ParseError& error) {
            throw std::runtime_error("# args: " + std::string(error.what()));
        }
        return switches;
    }

} // namespace

std::vector<TraceFixture> findFixtures(const std::string& folder, const std::string& topic)
{
    return testing_support::findFixtures(folder, kSuffix, topic);
}

std::vector<std::string> fixtureFaults(const std::string& folder)
{
    return testing_support::fixtureFaults(folder, kSuffix, [](const std::string& text) {
        std::vector<std::string> faults;
        for (const std::string& line : parseExpectation(text).unknown)
            faults.push_back("unknown header line: " + line);
        return faults;
    });
}

TraceExpectation parseExpectation(const std::string& text)
{
    TraceExpectation expectation;
    for (const std::string& line : linesOf(text)) {
        if (line.starts_with('#'))
            readHeader(line, expectation);
        else
            expectation.lines.push_back(line);
    }
    return expectation;
}

std::vector<std::string> runFixture(const host::Module& module, const std::string& document,
    const TraceExpectation& expectation, std::uint32_t stopEvery)
{
    host::cli::Switches switches = parseArguments(expectation.arguments);
    if (stopEvery != kKeepStop)
        switches.conversion.stopEvery = stopEvery;
    const host::GlobalOptionScope options(switches.globalOptions);
    host::MemoryStream stream(document);
    host::StringWriter writer;
    host::TraceSink sink(writer);
    host::convert(module, stream, switches.conversion, sink);
    return linesOf(writer.text);
}

std::string firstBrokenMust(
    const std::vector<std::string>& musts, const std::vector<std::string>& lines)
{
    auto next = lines.begin();
    for (const std::string& must : musts) {
        next = std::find_if(
            next, lines.end(), [&must](const std::string& line) { return line.starts_with(must); });
        if (next == lines.end())
            return must;
        ++next;
    }
    return "";
}

std::string firstDifference(
    const std::vector<std::string>& expected, const std::vector<std::string>& actual)
{
    const std::size_t count = std::max(expected.size(), actual.size());
    for (std::size_t index = 0; index < count; ++index) {
        const std::string wanted = index < expected.size() ? expected[index] : "(no more lines)";
        const std::string got = index < actual.size() ? actual[index] : "(no more lines)";
        if (wanted != got)
            return "call line " + std::to_string(index + 1) + "\n  expected: " + wanted
                + "\n  actual:   " + got;
    }
    return "";
}

std::vector<std::string> withoutReads(const std::vector<std::string>& lines)
{
    std::vector<std::string> calls;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(calls),
        [](const std::string& line) { return !line.starts_with("== read"); });
    return calls;
}

std::string blessedText(const TraceExpectation& expectation, const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : expectation.header)
        text += line + "\n";
    if (expectation.onlyMusts)
        return text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

} // namespace host_test
