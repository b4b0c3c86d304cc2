#pragma once

#include "tests/common/fixture_files.h"

#include <string>
#include <vector>

namespace htmltree_test {

/// The expectation of a case of tests/trees. Header lines begin with "#": `# args:` gives switches
/// of htmltree, `# why:` is for the reader; a header line of any other form is a fault. All other
/// lines are the outline, word for word.
struct TreeExpectation {
    std::string header; ///< its lines as they stand
    std::string outline;
    std::vector<std::string> arguments;
    std::vector<std::string> unknown; ///< header lines that say nothing known
};

TreeExpectation parseExpectation(const std::string& text);

/// The cases below a folder, see testing_support::findFixtures.
std::vector<testing_support::Fixture> findTrees(
    const std::string& folder, const std::string& topic = "");

/// What is wrong with the files below a folder, see testing_support::fixtureFaults.
std::vector<std::string> treeFaults(const std::string& folder);

/// What htmltree prints of a document under the switches of its expectation. Throws
/// std::runtime_error for switches that don't parse, and what outlineBy throws.
std::string outlineUnder(const TreeExpectation& expectation, const std::string& document);

} // namespace htmltree_test
