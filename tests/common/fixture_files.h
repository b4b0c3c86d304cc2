#pragma once

#include <functional>
#include <string>
#include <vector>

namespace testing_support {

/// A document and, in a file of the same name beside it, what must come of it.
struct Fixture {
    std::string name; ///< topic/case
    std::string input; ///< path of the document
    std::string expectation; ///< path of the other file
};

/// The cases below a folder, sorted by name: documents (.html, .htm, .bin) with an expectation
/// beside them. suffix: that of expectations. topic: the beginning of the names wanted; empty for
/// all.
std::vector<Fixture> findFixtures(
    const std::string& folder, const std::string& suffix, const std::string& topic);

/// Answers what is wrong with the text of an expectation, one text each.
using ExpectationCheck = std::function<std::vector<std::string>(const std::string& text)>;

/// What is wrong with the files below a folder, one text each: documents and expectations that have
/// no partner, files that are neither, what the check finds, and a folder without a case.
std::vector<std::string> fixtureFaults(
    const std::string& folder, const std::string& suffix, const ExpectationCheck& check);

/// What stands behind `# key:` in a header line; false when the line has another key.
bool headerValue(const std::string& line, const std::string& key, std::string& value);

/// The words of a text, which blanks part.
std::vector<std::string> wordsOf(const std::string& text);

/// The lines of a text, without their ends.
std::vector<std::string> linesOf(const std::string& text);

/// All of a file. Throws std::runtime_error when it can't be read.
std::string readFile(const std::string& path);

} // namespace testing_support
