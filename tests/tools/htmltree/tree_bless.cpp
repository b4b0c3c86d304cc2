// tree_bless [TOPIC]: writes the trees of today's filter into the .tree files of a topic. Header
// lines stay.

#include "tests/tools/htmltree/tree_fixture.h"

#include <cstdio>
#include <exception>
#include <fstream>

namespace {

using namespace htmltree_test;

/// Answers whether the file had to be written.
bool bless(const testing_support::Fixture& fixture)
{
    const std::string before = testing_support::readFile(fixture.expectation);
    const TreeExpectation expectation = parseExpectation(before);
    const std::string after
        = expectation.header + outlineUnder(expectation, testing_support::readFile(fixture.input));
    if (after == before)
        return false;
    std::ofstream file(fixture.expectation, std::ios::binary);
    file << after;
    file.close();
    if (!file)
        throw std::runtime_error(fixture.expectation + ": cannot be written");
    std::printf("%s: written\n", fixture.name.c_str());
    return true;
}

int blessTopic(const std::string& topic, const std::string& folder)
{
    const auto fixtures = findTrees(folder, topic);
    if (fixtures.empty()) {
        std::fprintf(
            stderr, "no fixture below %s begins with '%s'\n", folder.c_str(), topic.c_str());
        return 2;
    }
    int written = 0;
    for (const testing_support::Fixture& fixture : fixtures)
        written += bless(fixture) ? 1 : 0;
    std::printf("%zu fixtures, %d written\n", fixtures.size(), written);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string topic = argc > 1 ? argv[1] : "";
    const std::string folder = argc > 2 ? argv[2] : HTMLFILTER_SOURCE_DIR "/tests/trees";
    try {
        return blessTopic(topic, folder);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tree_bless: %s\n", error.what());
        return 2;
    }
}
