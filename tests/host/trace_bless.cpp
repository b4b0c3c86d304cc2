// trace_bless [TOPIC]: writes the calls of today's module into the .trace files of a topic. Header
// lines stay; a file in which a `# must:` no longer holds is left as it is, and the answer is 1.

#include "tests/host/trace_fixture.h"

#include <cstdio>
#include <exception>
#include <fstream>

namespace {

using namespace host_test;

enum class Blessing { Same, Written, Refused };

Blessing bless(const host::Module& module, const TraceFixture& fixture)
{
    const std::string before = readFile(fixture.expectation);
    const TraceExpectation expectation = parseExpectation(before);
    const auto lines = runFixture(module, readFile(fixture.input), expectation);
    const std::string broken = firstBrokenMust(expectation.musts, lines);
    if (!broken.empty()) {
        std::fprintf(stderr, "%s: refused, this must no longer holds: %s\n", fixture.name.c_str(),
            broken.c_str());
        return Blessing::Refused;
    }
    const std::string after = blessedText(expectation, lines);
    if (after == before)
        return Blessing::Same;
    std::ofstream file(fixture.expectation, std::ios::binary);
    file << after;
    file.close();
    if (!file) {
        std::fprintf(stderr, "%s: cannot be written\n", fixture.expectation.c_str());
        return Blessing::Refused;
    }
    std::printf("%s: written\n", fixture.name.c_str());
    return Blessing::Written;
}

int blessTopic(const std::string& topic, const std::string& folder, const std::string& modulePath)
{
    const host::Module module(modulePath);
    const auto fixtures = findFixtures(folder, topic);
    if (fixtures.empty()) {
        std::fprintf(
            stderr, "no fixture below %s begins with '%s'\n", folder.c_str(), topic.c_str());
        return 2;
    }
    int written = 0;
    int refused = 0;
    for (const TraceFixture& fixture : fixtures) {
        const Blessing blessing = bless(module, fixture);
        written += blessing == Blessing::Written ? 1 : 0;
        refused += blessing == Blessing::Refused ? 1 : 0;
    }
    std::printf("%zu fixtures, %d written, %d refused\n", fixtures.size(), written, refused);
    return refused == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string topic = argc > 1 ? argv[1] : "";
    const std::string folder = argc > 2 ? argv[2] : HTMLFILTER_SOURCE_DIR "/tests/traces";
    const std::string module = argc > 3 ? argv[3] : HTMLFILTER_BINARY_DIR "/htmlfilter.so";
    try {
        return blessTopic(topic, folder, module);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "trace_bless: %s\n", error.what());
        return 2;
    }
}
