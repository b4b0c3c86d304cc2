#include "tests/host/trace_fixture.h"

#include "host/cli/switches.h"
#include "host/global_options.h"
#include "host/trace_sink.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace host_test {

namespace {

    const char* const kDocumentSuffixes[] = {".html", ".htm", ".bin"};

    /// What stands behind a key of a header line; false when the line has another key.
    bool headerValue(const std::string& line, const std::string& key, std::string& value)
    {
        const std::string start = "# " + key + ":";
        if (!line.starts_with(start))
            return false;
        const std::size_t text = line.find_first_not_of(' ', start.size());
        value = text == std::string::npos ? "" : line.substr(text);
        return true;
    }

    void readHeader(const std::string& line, TraceExpectation& expectation)
    {
        expectation.header.push_back(line);
        std::string value;
        if (headerValue(line, "args", value)) {
            std::istringstream words(value);
            for (std::string word; words >> word;)
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

    bool isDocument(const std::filesystem::path& path)
    {
        return std::find(std::begin(kDocumentSuffixes), std::end(kDocumentSuffixes),
                   path.extension().string())
            != std::end(kDocumentSuffixes);
    }

    bool hasDocument(std::filesystem::path expectation)
    {
        return std::any_of(std::begin(kDocumentSuffixes), std::end(kDocumentSuffixes),
            [&expectation](const char* suffix) {
                return std::filesystem::exists(expectation.replace_extension(suffix));
            });
    }

    /// What is wrong with one file.
    void findFaults(const std::filesystem::path& path, std::vector<std::string>& faults)
    {
        if (isDocument(path)) {
            auto expectation = path;
            if (!std::filesystem::exists(expectation.replace_extension(".trace")))
                faults.push_back(path.string() + ": a document without a .trace");
            return;
        }
        if (path.extension() != ".trace") {
            faults.push_back(path.string() + ": neither a document nor a .trace");
            return;
        }
        if (!hasDocument(path))
            faults.push_back(path.string() + ": a .trace without a document");
        for (const std::string& line : parseExpectation(readFile(path.string())).unknown)
            faults.push_back(path.string() + ": unknown header line: " + line);
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
    std::vector<TraceFixture> fixtures;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        if (!isDocument(entry.path()))
            continue;
        auto trace = entry.path();
        trace.replace_extension(".trace");
        auto name = std::filesystem::relative(entry.path(), folder);
        name.replace_extension();
        if (name.string().starts_with(topic) && std::filesystem::exists(trace))
            fixtures.push_back({name.string(), entry.path().string(), trace.string()});
    }
    std::sort(fixtures.begin(), fixtures.end(),
        [](const TraceFixture& a, const TraceFixture& b) { return a.name < b.name; });
    return fixtures;
}

std::vector<std::string> fixtureFaults(const std::string& folder)
{
    std::vector<std::string> faults;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        if (entry.is_regular_file())
            findFaults(entry.path(), faults);
    }
    if (findFixtures(folder).empty())
        faults.push_back(folder + ": no case at all");
    std::sort(faults.begin(), faults.end());
    return faults;
}

TraceExpectation parseExpectation(const std::string& text)
{
    TraceExpectation expectation;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('#'))
            readHeader(line, expectation);
        else
            expectation.lines.push_back(line);
    }
    return expectation;
}

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
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
    std::vector<std::string> lines;
    std::istringstream text(writer.text);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
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
