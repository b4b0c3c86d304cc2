#include "input/charset.h"

#include "containers/left_child_right_sib_tree.h"
#include "support/html_names.h"
#include "tests/common/test_context.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using testing_support::TestContext;

std::uint16_t codeOfText(const std::u16string& text)
{
    TestContext test("");
    test.makeTokenBuffer();
    return charSetFromMeta(text.c_str(), test.context);
}

TEST(CharSetMeta, FromTheTextOfATag)
{
    struct Row {
        const char* text;
        std::uint16_t code;
    };
    constexpr Row kRows[] = {
        {"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=koi8-r\">", 0x800B},
        {"<meta http-equiv=Content-Type content='text/html; charset=koi8-r'>", 0x800B},
        {"<meta charset=\"utf-8\">", 0x3027},
        {"<meta charset='utf-8'>", 0x3027},
        {"<meta charset = \"utf-8\" >", 0x3027},
        {"<meta charset=utf-8 />", 0x3027},
        {"<META CHARSET=\"UTF-8\">", 0x3027},
        {"text/html; charset=Shift_JIS", 0x2005},
        {"text/html;charset=Shift_JIS;x=y", 0x2005},
        {"charset utf-8", 0x3027},
        {"charset==;; =utf-8", 0x3027},
        {"charset=\"'\"utf-8", 0x3027},
        {"", 0},
        {";; ==", 0},
        {"<meta name=x content=y>", 0},
        {"charset", 0},
        {"charset=", 0},
        {"charset=\"\"", 0},
        {"charset=unknown", 0},
        {"charset=unknown charset=utf-8", 0}, // the first one decides
        {"xcharset=utf-8", 0},
        {"text/html,charset=utf-8", 0},
        {"\"charset=utf-8", 0}, // a quote is a part of the word in front of "="
        {"<meta\tcharset=utf-8", 0},
    };
    for (const Row& row : kRows) {
        const std::string text = row.text;
        EXPECT_EQ(row.code, codeOfText(std::u16string(text.begin(), text.end()))) << text;
    }
}

TEST(CharSetMeta, AttributesPlayNoPart)
{
    EXPECT_EQ(0, codeOfText(u"<meta charset=utf-8>")); // ">" belongs to the name
    EXPECT_EQ(0, codeOfText(u"<meta name=charset content=\"utf-8\">")); // "content" is the name
    EXPECT_EQ(0x800B, codeOfText(u"<meta title=\"the charset koi8-r is old\">"));
}

TEST(CharSetMeta, LongWordsAreCutAndSkipped)
{
    const std::u16string longWord(150, u'x');
    EXPECT_EQ(0x3027, codeOfText(longWord + u" charset=utf-8"));
    // A word that is "charset" in its first places only is another one.
    EXPECT_EQ(0, codeOfText(u"charset" + longWord + u"=utf-8"));
    EXPECT_EQ(0, codeOfText(u"charset=utf-8" + longWord));
}

TEST(CharSetMeta, TheSearchEndsAfter53392Units)
{
    constexpr std::size_t kSearched = 53'392;
    const std::u16string declaration = u"charset=utf-8";
    const std::u16string fits(kSearched - declaration.size(), u' ');
    EXPECT_EQ(0x3027, codeOfText(fits + declaration));
    EXPECT_EQ(0x3027, codeOfText(fits + declaration + u"x")); // nobody sees what follows
    EXPECT_EQ(0, codeOfText(fits + u" " + declaration));
    EXPECT_EQ(0, codeOfText(std::u16string(300'000, u'x') + u" charset=utf-8"));
}

TEST(CharSetMeta, WorksOnACopyInTheTokenBuffer)
{
    TestContext test("");
    test.makeTokenBuffer();
    EXPECT_EQ(0x3027, charSetFromMeta(u"charset=utf-8", test.context));
    EXPECT_EQ(u"charset=utf-8", std::u16string(test.context.tokenBuffer));
    EXPECT_EQ(0x3027, charSetFromMeta(test.context.tokenBuffer, test.context));
}

/// A meta element with the attributes given; null for none.
class MetaElement {
public:
    MetaElement(const char16_t* httpEquiv, const char16_t* content, const char16_t* charSet)
        : data(ELEMENT_META)
    {
        set(ATTRIBUTE_HTTP_EQUIV, httpEquiv);
        set(ATTRIBUTE_CONTENT, content);
        set(ATTRIBUTE_CHARSET, charSet);
        node = tree.createNode(&data, tree.root());
    }

    void set(ZVHTMLAttribute id, const char16_t* text)
    {
        if (text != nullptr)
            data.setAttribute(id, values.stringValue(text));
    }

    ValueCache values;
    HtmlTagNodeData data;
    HtmlTree tree;
    HtmlTreeNode* node;
};

std::uint16_t metaCharSetOf(const MetaElement& meta, std::uint32_t forced = 0)
{
    TestContext test("");
    test.makeTokenBuffer();
    test.context.metaCharSet = 7;
    test.context.forcedCharSetId = forced;
    test.context.requestedCharSetId = forced;
    metaElementCharSet(*meta.node, test.context);
    return test.context.metaCharSet;
}

TEST(CharSetMeta, OfAnElement)
{
    struct Row {
        const char16_t* httpEquiv;
        const char16_t* content;
        const char16_t* charSet;
        std::uint16_t code; // 7: left as it was
    };
    constexpr Row kRows[] = {
        {u"content-type", u"text/html; charset=koi8-r", nullptr, 0x800B},
        {u"Content-Type", u"text/html; charset=koi8-r", nullptr, 0x800B},
        {u"Content-Type", u"text/html; charset=koi8-r", u"utf-8", 0x800B},
        {nullptr, nullptr, u"utf-8", 0x3027},
        {nullptr, u"text/html; charset=koi8-r", u"utf-8", 0x3027},
        {nullptr, u"text/html; charset=koi8-r", nullptr, 7},
        {u"content-type", u"text/html", nullptr, 7},
        {u"content-type", u"text/html", u"utf-8", 7},
        {u"content-type", nullptr, u"utf-8", 7},
        {u"content-type2", u"charset=koi8-r", nullptr, 7},
        {u"content-typ", u"charset=koi8-r", nullptr, 7},
        {nullptr, nullptr, u"utf-8>", 7},
        {nullptr, nullptr, u"", 7},
        {nullptr, nullptr, nullptr, 7},
        {nullptr, nullptr, u"hz-gb-2312", 0x2029},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(row.code, metaCharSetOf(MetaElement(row.httpEquiv, row.content, row.charSet)));
}

TEST(CharSetMeta, OtherHttpEquivEndsTheMatter)
{
    EXPECT_EQ(7, metaCharSetOf(MetaElement(u"refresh", u"charset=koi8-r", u"utf-8")));
    EXPECT_EQ(7, metaCharSetOf(MetaElement(u"", u"charset=koi8-r", u"utf-8")));
}

TEST(CharSetMeta, OnlyStringsCount)
{
    MetaElement meta(nullptr, nullptr, u"utf-8");
    meta.data.setAttribute(ATTRIBUTE_HTTP_EQUIV, meta.values.numberValue(5));
    EXPECT_EQ(0x3027, metaCharSetOf(meta));
    meta.data.setAttribute(ATTRIBUTE_CHARSET, meta.values.numberValue(5));
    EXPECT_EQ(7, metaCharSetOf(meta));
}

TEST(CharSetMeta, AForcedSetOverrulesAnother)
{
    const MetaElement meta(nullptr, nullptr, u"utf-8");
    EXPECT_EQ(0x800B, metaCharSetOf(meta, 0x436E0100));
    EXPECT_EQ(0x3027, metaCharSetOf(meta, 0x14B00000)); // as what UTF-8 goes out
    const MetaElement none(nullptr, nullptr, u"unknown");
    EXPECT_EQ(7, metaCharSetOf(none, 0x436E0100));
}

TEST(CharSetMeta, ATextNodeDeclaresNothing)
{
    HtmlTextNodeData text(u"charset", 7);
    HtmlTree tree;
    TestContext test("");
    metaElementCharSet(*tree.createNode(&text, tree.root()), test.context);
    metaElementCharSet(*tree.root(), test.context);
    EXPECT_EQ(0, test.context.metaCharSet);
}

} // namespace
