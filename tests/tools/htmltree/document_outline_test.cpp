#include "tools/htmltree/document_outline.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using namespace htmltree;

/// A document whose reads fail from the second one on.
class BrokenStream : public host::DocumentStream {
public:
    BrokenStream()
        : DocumentStream(100'000)
    {
    }

    bool readAt(
        std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count) override
    {
        if (position != 0) {
            errno = EIO;
            return false;
        }
        std::fill_n(static_cast<char*>(buffer), size, 'x');
        count = size;
        return true;
    }
};

std::string outline(const std::string& document, const host::ConversionOptions& options = {})
{
    host::MemoryStream stream(document);
    return outlineOfDocument(stream, options, Declarations::LeftOut);
}

TEST(DocumentOutline, TreeOfTheWholeDocument)
{
    EXPECT_EQ(outline(""), "");
    EXPECT_EQ(
        outline("<title>t</title>a"), "html\n  head\n    title\n      \"t\"\n  body\n    \"a\"\n");
}

TEST(DocumentOutline, ReadsOnBehindTables)
{
    EXPECT_EQ(outline("<table></table><table></table>x"),
        "html\n  head\n  body\n    table\n    table\n    \"x\"\n");
}

TEST(DocumentOutline, ReadsByTheRequestedCharacterSet)
{
    // A character of two bytes is one unit in Shift-JIS, and two in the set that nobody asked for.
    host::ConversionOptions options;
    EXPECT_EQ(outline("\x82\xA0", options), "html\n  head\n  body\n    \"\\u201a\\u00a0\"\n");
    options.charSetId = 0x13A40000;
    EXPECT_EQ(outline("\x82\xA0", options), "html\n  head\n  body\n    \"\\u82a0\"\n");
}

TEST(DocumentOutline, StylesStandBelowTheirElements)
{
    host::MemoryStream stream("<style>b { color: red }</style><b>x</b>");
    const std::string styles = stylesOfDocument(stream, {});
    EXPECT_TRUE(styles.ends_with("  body\n    b\n      -> color: #ff0000 [rule b (1)]\n"
                                 "      -> font-weight: bold [built-in]\n      \"x\"\n"))
        << styles;
}

TEST(DocumentOutline, TellsAFailedRead)
{
    BrokenStream stream;
    EXPECT_THROW(outlineOfDocument(stream, {}, Declarations::Shown), host::ReadError);
    BrokenStream other;
    EXPECT_THROW(stylesOfDocument(other, {}), host::ReadError);
}

} // namespace
