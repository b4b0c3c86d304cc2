#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>

namespace {

const std::set<std::string> kDocumentedNames = {"ConvertBigUnicodeToASCII", "EFontSizeFromString",
    "EHorizAlignFromString", "EInputTypeFromString", "ELiTypeFromString", "ESpacerTypeFromString",
    "ETableFrameFromString", "ETableRulesFromString", "ETextDirectionFromString",
    "EVertAlignFromString", "HTMLWToF", "IODestroyHtml", "IOInitializeHtml", "IOParseHtml",
    "SODummy", "VwAllocProc", "VwDoSpecial", "VwFreeProc", "VwGetData", "VwGetInfo", "VwGetRtns",
    "VwGetSectionDataFunc", "VwLocalDown", "VwLocalUp", "VwSetData", "VwSetSectionDataFunc",
    "VwSetSoRtn", "VwSetUser", "VwStreamClose", "VwStreamOpen", "VwStreamRead",
    "VwStreamReadRecord", "VwStreamSection", "VwStreamSeek", "VwStreamTell"};

std::set<std::string> definedNames(const std::string& file)
{
    const std::string command = "nm -D --defined-only " + file;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::set<std::string> names;
    std::array<char, 512> line;
    while (pipe != nullptr && std::fgets(line.data(), line.size(), pipe.get()) != nullptr) {
        std::istringstream words(line.data());
        std::string address;
        std::string kind;
        std::string name;
        if (words >> address >> kind >> name)
            names.insert(name);
    }
    return names;
}

} // namespace

TEST(Exports, AreExactlyTheDocumentedNames)
{
    EXPECT_EQ(definedNames(HTMLFILTER_BINARY_DIR "/htmlfilter.so"), kDocumentedNames);
}
