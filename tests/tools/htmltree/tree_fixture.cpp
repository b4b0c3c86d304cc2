#include "tests/tools/htmltree/tree_fixture.h"

#include "host/host_stream.h"
#include "tools/htmltree/program.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <stdexcept>

namespace htmltree_test {

namespace {

    constexpr char kSuffix[] = ".tree";

    void readHeader(const std::string& line, TreeExpectation& expectation)
    {
        expectation.header += line + "\n";
        std::string value;
        if (testing_support::headerValue(line, "args", value)) {
            for (const std::string& word : testing_support::wordsOf(value))
                expectation.arguments.push_back(word);
        } else if (line != "#" && !testing_support::headerValue(line, "why", value)) {
            expectation.unknown.push_back(line);
        }
    }

} // namespace

TreeExpectation parseExpectation(const std::string& text)
{
    TreeExpectation expectation;
    for (const std::string& line : testing_support::linesOf(text)) {
        if (line.starts_with('#'))
            readHeader(line, expectation);
        else
            expectation.outline += line + "\n";
    }
    return expectation;
}

std::vector<testing_support::Fixture> findTrees(const std::string& folder, const std::string& topic)
{
    return testing_support::findFixtures(folder, kSuffix, topic);
}

std::vector<std::string> treeFaults(const std::string& folder)
{
    return testing_support::fixtureFaults(folder, kSuffix, [](const std::string& text) {
        std::vector<std::string> faults;
        for (const std::string& line : parseExpectation(text).unknown)
            faults.push_back("unknown header line: " + line);
        return faults;
    });
}

std::string outlineUnder(const TreeExpectation& expectation, const std::string& document)
{
    CLI::App app;
    htmltree::Arguments arguments;
    htmltree::addArguments(app, arguments);
    std::vector<std::string> words(expectation.arguments.rbegin(), expectation.arguments.rend());
    try {
        app.parse(words);
    } catch (const CLI::ParseError& error) {
        throw std::runtime_error("# args: " + std::string(error.what()));
    }
    host::MemoryStream stream(document);
    return htmltree::outlineBy(arguments, stream);
}

} // namespace htmltree_test
