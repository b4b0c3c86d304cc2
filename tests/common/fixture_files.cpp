#include "tests/common/fixture_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace testing_support {

namespace {

    const char* const kDocumentSuffixes[] = {".html", ".htm", ".bin"};

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
    void findFaults(const std::filesystem::path& path, const std::string& suffix,
        const ExpectationCheck& check, std::vector<std::string>& faults)
    {
        if (isDocument(path)) {
            auto expectation = path;
            if (!std::filesystem::exists(expectation.replace_extension(suffix)))
                faults.push_back(path.string() + ": a document without a " + suffix);
            return;
        }
        if (path.extension() != suffix) {
            faults.push_back(path.string() + ": neither a document nor a " + suffix);
            return;
        }
        if (!hasDocument(path))
            faults.push_back(path.string() + ": a " + suffix + " without a document");
        for (const std::string& fault : check(readFile(path.string())))
            faults.push_back(path.string() + ": " + fault);
    }

} // namespace

std::vector<Fixture> findFixtures(
    const std::string& folder, const std::string& suffix, const std::string& topic)
{
    std::vector<Fixture> fixtures;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        if (!isDocument(entry.path()))
            continue;
        auto expectation = entry.path();
        expectation.replace_extension(suffix);
        auto name = std::filesystem::relative(entry.path(), folder);
        name.replace_extension();
        if (name.string().starts_with(topic) && std::filesystem::exists(expectation))
            fixtures.push_back({name.string(), entry.path().string(), expectation.string()});
    }
    std::sort(fixtures.begin(), fixtures.end(),
        [](const Fixture& a, const Fixture& b) { return a.name < b.name; });
    return fixtures;
}

std::vector<std::string> fixtureFaults(
    const std::string& folder, const std::string& suffix, const ExpectationCheck& check)
{
    std::vector<std::string> faults;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        if (entry.is_regular_file())
            findFaults(entry.path(), suffix, check, faults);
    }
    if (findFixtures(folder, suffix, "").empty())
        faults.push_back(folder + ": no case at all");
    std::sort(faults.begin(), faults.end());
    return faults;
}

bool headerValue(const std::string& line, const std::string& key, std::string& value)
{
    const std::string start = "# " + key + ":";
    if (!line.starts_with(start))
        return false;
    const std::size_t text = line.find_first_not_of(' ', start.size());
    value = text == std::string::npos ? "" : line.substr(text);
    return true;
}

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
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

} // namespace testing_support
