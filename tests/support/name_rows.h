#pragma once

#include <string>
#include <utility>
#include <vector>

namespace testing_support {

/// The rows of a table of tools/data, two columns each. Fails the test when there are none.
std::vector<std::pair<std::string, std::string>> tableRows(const std::string& file);

/// The rows "    NAME = number," of an enumeration in a header of the project.
std::vector<std::pair<std::string, unsigned>> enumerators(
    const std::string& header, const std::string& enumeration);

/// A name as enumerators have it: capitals, other characters than letters and digits as "_".
std::string enumeratorName(const std::string& prefix, const std::string& name);

} // namespace testing_support
