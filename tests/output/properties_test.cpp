#include "output/properties.h"

#include "output/tree_walk.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

constexpr const char* kField = "SOBeginTagged 2684420100 ";

std::string beginField(int value, int field)
{
    return kField + std::to_string(value) + " {@0=" + std::to_string(field) + '}';
}

std::string endField(int value) { return "SOEndTagged 2684420100 " + std::to_string(value); }

HtmlTreeNode* makeMeta(OutputContext& document, const char16_t* name, const char16_t* content)
{
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_META);
    if (name != nullptr)
        document.attribute(node, ATTRIBUTE_NAME, name);
    if (content != nullptr)
        document.attribute(node, ATTRIBUTE_CONTENT, content);
    return node;
}

} // namespace

TEST(Properties, TitleIsAFieldAndNoParagraph)
{
    OutputContext document;
    document.build(u"<title>t</title>");
    document.context.lastChar = u'q';
    document.context.paragraphFlags = PARAGRAPH_MARKER;
    EXPECT_EQ(document.walkAll(), (Lines{beginField(1, 6), textLine("t"), endField(1)}));
    EXPECT_EQ(document.context.lastChar, u'q');
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_MARKER);
    EXPECT_EQ(document.context.walkState & WALK_IN_TITLE, 0U);
}

TEST(Properties, TitleClosesAnOpenParagraphSilently)
{
    OutputContext document;
    document.build(u"<title></title>");
    document.context.paragraphFlags = PARAGRAPH_OPEN;
    EXPECT_EQ(document.walkAll(), (Lines{beginField(1, 6), endField(1)}));
    EXPECT_EQ(document.context.paragraphFlags, 0);
}

TEST(Properties, TwoTitlesGiveTwoStretches)
{
    OutputContext document;
    document.build(u"<title>a</title><title>b</title>");
    EXPECT_EQ(document.walkAll(),
        (Lines{beginField(1, 6), textLine("a"), endField(1), beginField(2, 6), textLine("b"),
            endField(2)}));
}

TEST(Properties, NamesOfMeta)
{
    struct Row {
        const char16_t* name;
        int field;
    };
    const Row rows[] = {{u"author", 4}, {u"AUTHOR", 4}, {u"description", 1}, {u"Keywords", 2},
        {u"subject", 5}, {u"generator", 29}};
    for (const Row& row : rows) {
        OutputContext document;
        enterMeta(*makeMeta(document, row.name, u"x"), document.context);
        EXPECT_EQ(document.host.takeCalls(),
            (Lines{beginField(1, row.field), textLine("x"), endField(1)}));
    }
}

TEST(Properties, OtherMetaTellsItsName)
{
    OutputContext document;
    enterMeta(*makeMeta(document, u"foo", u"bar"), document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{beginField(1, 500), "SOBeginTagged 538705920 1 {}", textLine("foo"),
            "SOEndTagged 538705920 1", textLine("bar"), endField(1)}));
}

TEST(Properties, MetaWithoutNameOrContentDeliversNothing)
{
    OutputContext document;
    enterMeta(*makeMeta(document, u"author", nullptr), document.context);
    enterMeta(*makeMeta(document, nullptr, u"x"), document.context);
    EXPECT_EQ(document.host.callCount, 0U);
    EXPECT_EQ(document.context.fieldCounter, 0U);
}

TEST(Properties, BlankContentLeavesTheStretchEmpty)
{
    OutputContext document;
    enterMeta(*makeMeta(document, u"author", u"  "), document.context);
    EXPECT_EQ(document.host.takeCalls(), (Lines{beginField(1, 4), endField(1)}));
}

TEST(Properties, MetaLeavesTheParagraphAsItWas)
{
    OutputContext document;
    document.context.lastChar = u'q';
    document.context.paragraphFlags = PARAGRAPH_BREAK_OWED;
    enterMeta(*makeMeta(document, u"author", u"x"), document.context);
    EXPECT_EQ(document.context.lastChar, u'q');
    EXPECT_EQ(document.context.paragraphFlags, PARAGRAPH_BREAK_OWED);
}

TEST(Properties, LinkToTheAuthor)
{
    struct Row {
        const char16_t* relation;
        const char16_t* address;
        Lines lines;
    };
    const Row rows[] = {
        {u"made", u"a@b",
            {beginField(1, 4), "SOReserveChars 511", "SOCommitChars \"a@b\" 3 347078656",
                endField(1)}},
        {u"MADE", u"a&amp;",
            {beginField(1, 4), "SOReserveChars 511", "SOCommitChars \"a&amp;\" 6 347078656",
                endField(1)}},
        {u"made", u"", {beginField(1, 4), endField(1)}},
        {u"stylesheet", u"x", {}},
        {u"made", nullptr, {}},
        {nullptr, u"x", {}},
    };
    for (const Row& row : rows) {
        OutputContext document;
        HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_LINK);
        if (row.relation != nullptr)
            document.attribute(node, ATTRIBUTE_REL, row.relation);
        if (row.address != nullptr)
            document.attribute(node, ATTRIBUTE_HREF, row.address);
        document.context.lastChar = u'q';
        enterLink(*node, document.context);
        EXPECT_EQ(document.host.takeCalls(), row.lines);
        EXPECT_EQ(document.context.lastChar, u'q');
    }
}

TEST(Properties, RawValuesAreCutToTheBuffer)
{
    for (const std::size_t count : {510U, 511U, 512U, 600U}) {
        OutputContext document;
        const std::u16string value(count, u'x');
        deliverRawProperty(
            FIELD_BASE, value.c_str(), static_cast<std::uint32_t>(count), document.context);
        const std::size_t kept = std::min<std::size_t>(count, 511);
        EXPECT_EQ(document.host.calls.at(2),
            "SOCommitChars \"" + std::string(kept, 'x') + "\" " + std::to_string(kept)
                + " 347078656");
    }
}

TEST(Properties, RefusedBufferStillClosesTheStretch)
{
    OutputContext document;
    document.host.refuseBuffers = true;
    deliverRawProperty(FIELD_BASE, u"x", 1, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{beginField(1, 59), "SOReserveChars 511", "SOAbandonFilter 30", endField(1)}));
    EXPECT_EQ(document.context.statusFlags, 0);
}

TEST(Properties, VersionOfTheDocument)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_HTML);
    deliverVersion(*node, document.context);
    EXPECT_EQ(document.host.callCount, 0U);
    document.attribute(node, ATTRIBUTE_VERSION, u"4.0");
    document.context.lastChar = u'q';
    deliverVersion(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(), (Lines{beginField(1, 57), textLine("4.0"), endField(1)}));
    EXPECT_EQ(document.context.lastChar, u'q');
    EXPECT_EQ(document.context.paragraphFlags, 0);
}
