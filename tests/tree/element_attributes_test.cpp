#include "tree/element_attributes.h"

#include "filter/filter_internals.h"
#include "support/html_names.h"
#include "support/process_heap.h"
#include "tests/common/tree_context.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using testing_support::TreeContext;

struct AttributeRow {
    const char* name;
    const char* tag;
    const char* line; ///< of the element in the outline
};

const AttributeRow kRows[] = {
    {"none", "<p>", "p"},
    {"id", "<p id=a>", "p id=\"a\""},
    {"style", "<p style='x: y'>", "p style=\"x: y\""},
    {"class", "<p class='a b'>", "p class=\"a b\""},
    {"left to right", "<p dir=ltr>", "p dir=enum:1"},
    {"right to left", "<p dir=RTL>", "p dir=enum:2"},
    {"no direction", "<p dir=up>", "p"},
    {"empty direction", "<p dir=''>", "p"},
    {"title", "<p title=t>", "p title=\"t\""},
    {"all five", "<p title=e dir=ltr class=c style=b id=a>",
        "p class=\"c\" dir=enum:1 id=\"a\" style=\"b\" title=\"e\""},
    {"on every element", "<sub id=a>", "sub id=\"a\""},
    {"empty texts", "<p id='' class=\"\">", "p class=\"\" id=\"\""},
    {"without a value", "<p id class title>", "p"},
    {"without and with a value", "<p id id=b id=c>", "p id=\"b\""},
    {"the first of two", "<p id=a id=b>", "p id=\"a\""},
    {"references", "<p title='a&amp;b &#65;'>", "p title=\"a&b A\""},
    {"line breaks", "<p title='a\nb\r\nc'>", "p title=\"abc\""},
    {"what is not kept", "<p onclick=x lang=en accesskey=a>", "p"},
    {"sixteen and one more",
        "<p lang=1 lang=2 lang=3 lang=4 lang=5 lang=6 lang=7 lang=8 lang=9 lang=10 lang=11 lang=12 "
        "lang=13 lang=14 lang=15 id=a class=b>",
        "p id=\"a\""},
    {"meta", "<meta charset=a content=b http-equiv=c name=d scheme=e href=f>",
        "meta charset=\"a\" content=\"b\" http-equiv=\"c\" name=\"d\" scheme=\"e\""},
    {"meta's own and common ones", "<meta title=t content=b>", "meta content=\"b\" title=\"t\""},
    {"base", "<base href=a name=b target=c>", "base href=\"a\""},
    {"link", "<link rel=a name=b href=c content=d>", "link href=\"c\" name=\"b\" rel=\"a\""},
    {"a quoted href keeps its references", "<link href='a&amp;b'>", "link href=\"a&amp;b\""},
    {"an unquoted href does not", "<link href=a&amp;b>", "link href=\"a&b\""},
};

TEST(ElementAttributes, Rows)
{
    for (const AttributeRow& row : kRows) {
        SCOPED_TRACE(row.name);
        TreeContext tree("<body>" + std::string(row.tag));
        tree.build();
        EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    " + std::string(row.line) + "\n");
    }
}

TEST(ElementAttributes, SmallBuffersChangeNothing)
{
    for (const AttributeRow& row : kRows) {
        SCOPED_TRACE(row.name);
        TreeContext tree("<body>" + std::string(row.tag) + "x", 0x9000, /*bufferSize=*/3);
        tree.build();
        EXPECT_NE(tree.outline().find("    " + std::string(row.line) + "\n"), std::string::npos);
        // Reading a value leaves the place where the text goes on.
        EXPECT_NE(tree.outline().find("\"x\""), std::string::npos);
    }
}

TEST(ElementAttributes, Html)
{
    TreeContext tree("<html version=v href=h>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html version=\"v\"\n");
}

TEST(ElementAttributes, DirectionIsDeclared)
{
    struct Row {
        const char* markup;
        std::int32_t direction;
        std::int32_t alignment;
    };
    const Row rows[]
        = {{"<b dir=ltr>", VALUE_LTR, VALUE_LEFT}, {"<b dir=Rtl>", VALUE_RTL, VALUE_RIGHT}};
    for (const Row& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        const CssDeclarationList& list = *tree.payloadOf(*tree.find(ELEMENT_B)).declarations;
        std::int32_t number = 0;
        EXPECT_EQ(list.getIntValue(PROPERTY_DIRECTION, &number), 5U);
        EXPECT_EQ(number, row.direction);
        EXPECT_EQ(list.getIntValue(PROPERTY_TEXT_ALIGN, &number), 5U);
        EXPECT_EQ(number, row.alignment);
    }
}

TEST(ElementAttributes, PayloadWithoutAListDeclaresNothing)
{
    TreeContext tree("<p dir=rtl>");
    tree.build();
    HtmlGenericNodeData* const payload = CreateNodeData(ELEMENT_P, tree.context);
    ApplyElementAttributes(payload, tree.context);
    const auto& tag = static_cast<const HtmlTagNodeData&>(*payload);
    EXPECT_TRUE(tag.hasAttributes());
    EXPECT_EQ(tag.declarations, nullptr);
    payload->~HtmlGenericNodeData();
}

TEST(ElementAttributes, BufferIsMadeForTheFirstAttribute)
{
    TreeContext tree("<p>");
    tree.build();
    EXPECT_EQ(tree.internals.attributeBuffer, nullptr);
    TreeContext meta("<meta>");
    meta.build();
    EXPECT_EQ(meta.internals.attributeBuffer, nullptr);
    TreeContext other("<p align=left>");
    other.build();
    EXPECT_NE(other.internals.attributeBuffer, nullptr);
}

TEST(ElementAttributes, LongValuesAreCut)
{
    const std::string value(60'000, 'v');
    TreeContext tree("<p id='" + value + "' class=c>x");
    tree.build();
    HtmlValue* found = nullptr;
    ASSERT_TRUE(tree.payloadOf(*tree.find(ELEMENT_P)).getAttribute(ATTRIBUTE_ID, found));
    EXPECT_EQ(HtmlWStringValue::from(found)->length, kAttributeValueCapacity - 1);
    ASSERT_TRUE(tree.payloadOf(*tree.find(ELEMENT_P)).getAttribute(ATTRIBUTE_CLASS, found));
    EXPECT_EQ(HtmlWStringValue::from(found)->length, 1U);
    EXPECT_EQ(tree.find(ELEMENT_P)->childCount, 1U);
}

TEST(ElementAttributes, RawValueIsBoundedByItsLimit)
{
    TreeContext tree("<p type=abcdef href>");
    tree.build();
    std::array<char16_t, 8> buffer;
    EXPECT_EQ(GetRawAttributeValue(ATTRIBUTE_TYPE, buffer.data(), 8, tree.context, nullptr), 1);
    EXPECT_EQ(std::u16string(buffer.data()), u"abcdef");
    EXPECT_EQ(GetRawAttributeValue(ATTRIBUTE_TYPE, buffer.data(), 4, tree.context, nullptr), 1);
    EXPECT_EQ(std::u16string(buffer.data()), u"abc");
    EXPECT_EQ(GetRawAttributeValue(ATTRIBUTE_HREF, buffer.data(), 8, tree.context, nullptr), 0);
    EXPECT_EQ(std::u16string(buffer.data()), u"");
    EXPECT_EQ(GetRawAttributeValue(ATTRIBUTE_ID, buffer.data(), 8, tree.context, nullptr), 0);
    EXPECT_EQ(std::u16string(buffer.data()), u"");
}

TEST(ElementAttributes, NothingIsReadWithAStatus)
{
    TreeContext tree("<p id=abc>");
    tree.build();
    std::array<char16_t, 8> buffer;
    for (const StatusFlag status : {STATUS_OUT_OF_MEMORY, STATUS_END_OF_INPUT, STATUS_HOST_STOP}) {
        buffer.fill(u'x');
        tree.context.statusFlags = status;
        EXPECT_EQ(GetRawAttributeValue(ATTRIBUTE_ID, buffer.data(), 8, tree.context, nullptr), 0);
        EXPECT_EQ(buffer[0], u'\0');
        EXPECT_EQ(GetRawAttributeValue(ATTRIBUTE_ID, nullptr, 0, tree.context, nullptr), 0);
    }
    tree.payloadOf(*tree.find(ELEMENT_P)).clearAttributes();
    ApplyElementAttributes(tree.find(ELEMENT_P)->data, tree.context);
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    p\n");
    tree.context.statusFlags = 0;
    ApplyElementAttributes(tree.find(ELEMENT_P)->data, tree.context);
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    p id=\"abc\"\n");
}

TEST(ElementAttributes, NoMemoryForTheBuffer)
{
    TreeContext tree("<p>");
    tree.build();
    tree.context.tagAttributes[0] = {ATTRIBUTE_ID, 1};
    tree.context.tagAttributeCount = 1;
    zorvan::failNthAllocation(1);
    ApplyElementAttributes(tree.find(ELEMENT_P)->data, tree.context);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(tree.context.statusFlags, STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    p\n");
}

} // namespace
