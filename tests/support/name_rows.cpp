#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>

namespace testing_support {

std::vector<std::pair<std::string, std::string>> tableRows(const std::string& file)
{
    std::vector<std::pair<std::string, std::string>> rows;
    std::ifstream input(std::string(HTMLFILTER_SOURCE_DIR) + "/tools/data/" + file);
    for (std::string line; std::getline(input, line);) {
        const std::size_t tab = line.find('\t');
        EXPECT_NE(tab, std::string::npos) << file << ": " << line;
        rows.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    EXPECT_FALSE(rows.empty()) << file;
    return rows;
}

std::vector<std::pair<std::string, unsigned>> enumerators(
    const std::string& header, const std::string& enumeration)
{
    std::vector<std::pair<std::string, unsigned>> rows;
    std::ifstream input(std::string(HTMLFILTER_SOURCE_DIR) + "/" + header);
    std::string line;
    while (std::getline(input, line) && line != "enum " + enumeration + " : std::uint32_t {") { }
    while (std::getline(input, line) && line != "};") {
        const std::size_t equals = line.find(" = ");
        EXPECT_NE(equals, std::string::npos) << line;
        rows.emplace_back(line.substr(4, equals - 4), std::stoul(line.substr(equals + 3)));
    }
    EXPECT_FALSE(rows.empty()) << header;
    return rows;
}

std::string enumeratorName(const std::string& prefix, const std::string& name)
{
    std::string result = prefix;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        result += std::isalnum(byte) != 0 ? static_cast<char>(std::toupper(byte)) : '_';
    }
    return result;
}

} // namespace testing_support
