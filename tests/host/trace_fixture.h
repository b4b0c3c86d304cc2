#pragma once

#include "host/module.h"
#include "tests/common/fixture_files.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host_test {

/// One case of tests/traces: an input and what the host is told of it.
using TraceFixture = testing_support::Fixture;
using testing_support::readFile;

/// The expectation of a case. Header lines begin with "#"; of these `# args:` gives switches of the
/// program, `# must:` the beginning of a line that has to occur, in the order of the file, `# only:
/// must` says that the calls are not written down, and `# stop: differs` that pauses change the
/// calls; `# why:` is for the reader. A header line of any other form is a fault. All other lines
/// are the trace, word for word; when there are none, only the musts count.
struct TraceExpectation {
    std::vector<std::string> header;
    std::vector<std::string> lines;
    std::vector<std::string> arguments;
    std::vector<std::string> musts;
    std::vector<std::string> unknown; ///< header lines that say nothing known
    bool onlyMusts = false;
    bool stopDiffers = false;
};

/// The cases below a folder, sorted by name: documents (.html, .htm, .bin) with a .trace file
/// beside them. topic: the beginning of the names wanted; empty for all.
std::vector<TraceFixture> findFixtures(const std::string& folder, const std::string& topic = "");

/// What is wrong with the files below a folder, one text each: documents and expectations that have
/// no partner, files that are neither, header lines of unknown form, and a folder without a case.
std::vector<std::string> fixtureFaults(const std::string& folder);

TraceExpectation parseExpectation(const std::string& text);

/// The trace of a document under the switches of its expectation. stopEvery: replaces what `--stop`
/// says, unless it is kKeepStop. Throws std::runtime_error for switches that don't parse.
constexpr std::uint32_t kKeepStop = 0xFFFFFFFF;
std::vector<std::string> runFixture(const host::Module& module, const std::string& document,
    const TraceExpectation& expectation, std::uint32_t stopEvery = kKeepStop);

/// The first must that no line begins with behind the line of the must before it; empty when all
/// hold.
std::string firstBrokenMust(
    const std::vector<std::string>& musts, const std::vector<std::string>& lines);

/// The first line in which two traces differ, told with its number; empty when they are the same.
std::string firstDifference(
    const std::vector<std::string>& expected, const std::vector<std::string>& actual);

/// A trace without the lines that tell the reads apart.
std::vector<std::string> withoutReads(const std::vector<std::string>& lines);

/// The expectation's text with the call lines replaced.
std::string blessedText(const TraceExpectation& expectation, const std::vector<std::string>& lines);

} // namespace host_test
