#include "tree/element_attributes.h"

#include "filter/filter_internals.h"
#include "support/html_names.h"
#include "support/html_strings.h"
#include "support/process_heap.h"
#include "tests/tree/tag_reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using testing_support::appliedTo;
using testing_support::borderText;
using testing_support::sidesText;
using testing_support::TagReading;
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

struct HandlerRow {
    std::string tag;
    std::string expected; ///< attributes | declarations
};

const std::string kTableMargins = "margin-left: length:0px; margin-right: length:0px";

/// All attributes of each element, and what they declare.
const HandlerRow kHandlers[] = {
    {"<a target=c name=b href=a>",
        "href=\"a\" name=\"b\" target=\"c\" | color: color:#0000ff; text-decoration: "
        "keyword:underline"},
    {"<a href=''>", "href=\"\" | color: color:#0000ff; text-decoration: keyword:underline"},
    {"<a name=x>", "name=\"x\""},
    {"<a href>", ""},
    {"<area alt=a coords=b href=c shape=d>", "alt=\"a\" coords=\"b\" href=\"c\""},
    {"<base href=a target=b>", "href=\"a\""},
    {"<basefont face='A, B' size=2 color=red>",
        "color=color:#ff0000 face=\"A, B\" size=number:2 | color: color:#ff0000; font-family: \"A, "
        "B\"; font-size: keyword:small"},
    {"<basefont face=''>", "face=\"\" | font-family: \"\""},
    {"<blockquote cite=a>", "cite=\"a\""},
    {"<q cite=a>", "cite=\"a\""},
    {"<body alink=red link=lime vlink=blue background=a.gif bgcolor=#fff text=navy>",
        "alink=color:#ff0000 background=\"a.gif\" bgcolor=color:#ffffff link=color:#00ff00 "
        "text=color:#000080 vlink=color:#0000ff | background-color: color:#ffffff; "
        "background-image: \"a.gif\"; color: color:#000080"},
    {"<body alink='' link=none vlink=x bgcolor=transparent text=inherit>", ""},
    {"<caption>", "align=enum:2048"},
    {"<caption align=bottom>", "align=enum:4096"},
    {"<caption align=LEFT>", "align=enum:8192"},
    {"<caption align=Right>", "align=enum:16384"},
    {"<caption align=top>", "align=enum:2048"},
    {"<caption align=x valign=bottom>", "align=enum:2048"},
    {"<caption align>", "align=enum:2048"},
    {"<caption align=''>", "align=enum:2048"},
    {"<caption id=a>", "align=enum:2048 id=\"a\""},
    {"<col align=right span=2 width='10%' valign=top>",
        "align=enum:4 span=number:2 valign=enum:4 width=length:-10px | text-align: keyword:right; "
        "vertical-align: keyword:top; width: percent:10"},
    {"<colgroup align=left span=3 width=7 valign=baseline>",
        "align=enum:3 span=number:3 valign=enum:1 width=length:7px | text-align: keyword:left; "
        "vertical-align: keyword:baseline; width: length:7px"},
    {"<del cite=a datetime=b>", "cite=\"a\" datetime=\"b\""},
    {"<ins cite=a datetime=b>", "cite=\"a\" datetime=\"b\""},
    {"<div align=justify>", "align=enum:2 | text-align: keyword:justify"},
    {"<fieldset align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<h1 align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<h2 align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<h3 align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<h4 align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<h5 align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<h6 align=center>", "align=enum:1 | text-align: keyword:center"},
    {"<legend align=right>", "align=enum:4 | text-align: keyword:right"},
    {"<p align=middle>", "align=enum:1 | text-align: keyword:center"},
    {"<p align=x>", ""},
    {"<dl compact=compact>", "compact=number:1"},
    {"<dl compact=''>", "compact=number:1"},
    {"<dl compact>", ""},
    {"<font color=red face=Arial size=5>",
        "color=color:#ff0000 face=\"Arial\" size=enum:1 | color: color:#ff0000; font-family: "
        "\"Arial\"; font-size: keyword:x-large"},
    {"<font color='' size='' face=''>", "face=\"\" | font-family: \"\""},
    {"<frame bordercolor=red frameborder=yes longdesc=a name=b src=c>",
        "bordercolor=color:#ff0000 frameborder=number:1 longdesc=\"a\" name=\"b\" src=\"c\""},
    {"<iframe bordercolor=red frameborder=1 longdesc=a name=b src=c>",
        "bordercolor=color:#ff0000 frameborder=number:1 longdesc=\"a\" name=\"b\" src=\"c\" | "
            + borderText("color:#ff0000", "length:1px")},
    {"<iframe frameborder=0>",
        "frameborder=number:0 | " + borderText("color:#000000", "length:0px")},
    {"<frameset border=1 bordercolor=red cols='1,*' rows='50%' framespacing=2>",
        "border=length:1px bordercolor=color:#ff0000 cols=\"1,*\" framespacing=length:2px "
        "rows=\"50%\""},
    {"<hr align=left color=red noshade=1 size=3 width=50>",
        "align=enum:3 color=color:#ff0000 noshade=number:1 size=length:3px width=length:50px | "
            + sidesText("style", "keyword:solid")
            + "; color: color:#ff0000; height: length:3px; text-align: keyword:left; width: "
              "length:50px"},
    {"<hr size='3%' width='50%'>",
        "size=length:-3px width=length:-50px | height: percent:3; width: percent:50"},
    {"<html version=a>", "version=\"a\""},
    {"<img alt=a border=1 height=2 hspace=3 longdesc=b name=c src=d.png vspace=4 width='5%'>",
        "alt=\"a\" border=length:1px height=length:2px hspace=length:3px longdesc=\"b\" name=\"c\" "
        "src=\"d.png\" vspace=length:4px width=length:-5px | "
            + borderText("color:#000000", "length:1px")
            + "; height: length:2px; margin-bottom: length:4px; margin-left: length:3px; "
              "margin-right: length:3px; margin-top: length:4px; width: percent:5"},
    {"<img align=left usemap=x>", ""},
    {"<input name=a type=button value=b>", "name=\"a\" type=enum:1 value=\"b\""},
    {"<input type=checkbox>", "type=enum:2"},
    {"<input type=file>", "type=enum:3"},
    {"<input type=hidden>", "type=enum:4"},
    {"<input type=image>", "type=enum:5"},
    {"<input type=password>", "type=enum:6"},
    {"<input type=radio>", "type=enum:7"},
    {"<input type=reset>", "type=enum:8"},
    {"<input type=submit>", "type=enum:9"},
    {"<input type=TEXT>", "type=enum:10"},
    {"<input type=email size=3 checked=1>", ""},
    {"<isindex prompt=a action=b>", "prompt=\"a\""},
    {"<li value=3 type=a>", "type=enum:3 value=number:3 | list-style-type: keyword:lower-alpha"},
    {"<link href=a name=b rel=c type=d>", "href=\"a\" name=\"b\" rel=\"c\""},
    {"<map name=a>", "name=\"a\""},
    {"<meta charset=a content=b http-equiv=c name=d scheme=e>",
        "charset=\"a\" content=\"b\" http-equiv=\"c\" name=\"d\" scheme=\"e\""},
    {"<ol compact=1 start=5 type=I>",
        "compact=number:1 start=number:5 type=enum:8 | list-style-type: keyword:upper-roman"},
    {"<ol start=-5>", ""},
    {"<optgroup label=a>", "label=\"a\""},
    {"<option selected=selected value=a>", "selected=number:1 value=\"a\""},
    {"<option selected>", ""},
    {"<select name=a size=3>", ""},
    {"<span align=left color=red>", ""},
    {"<spacer type=block align=right height=1 size=2 width=3>",
        "align=enum:4 height=length:1px size=length:2px type=enum:1 width=length:3px | height: "
        "length:2px; text-align: keyword:right; width: length:3px"},
    {"<spacer type=Horizontal size='20%'>", "size=length:-20px type=enum:2 | height: percent:20"},
    {"<spacer type=vertical height='20%'>", "height=length:-20px type=enum:3 | height: percent:20"},
    {"<spacer type=x>", ""},
    {"<style type=a media=b>", "type=\"a\""},
    {"<table>", "| " + kTableMargins},
    {"<table align=center bgcolor=red bordercolor=blue border=1 cellpadding=2 cellspacing=3 cols=4 "
     "frame=void height=5 rules=all summary=a width='90%'>",
        "align=enum:1 bgcolor=color:#ff0000 border=length:1px bordercolor=color:#0000ff "
        "cellpadding=length:2px cellspacing=length:3px cols=number:4 frame=enum:8 "
        "height=length:5px rules=enum:1 summary=\"a\" width=length:-90px | background-color: "
        "color:#ff0000; "
            + borderText("color:#0000ff", "length:1px") + "; height: length:5px; " + kTableMargins
            + "; width: percent:90"},
    {"<table border=0>",
        "border=length:0px | " + borderText("color:#000000", "length:0px") + "; " + kTableMargins},
    {"<table rules=cols>", "rules=enum:2 | " + kTableMargins},
    {"<table rules=Groups>", "rules=enum:3 | " + kTableMargins},
    {"<table rules=none>", "rules=enum:4 | " + kTableMargins},
    {"<table rules=rows>", "rules=enum:5 | " + kTableMargins},
    {"<table rules=x align=top>", "| " + kTableMargins},
    {"<tbody align=left bgcolor=red valign=middle>",
        "align=enum:3 bgcolor=color:#ff0000 valign=enum:3 | background-color: color:#ff0000; "
        "text-align: keyword:left; vertical-align: keyword:middle"},
    {"<tfoot align=left bgcolor=red valign=middle>",
        "align=enum:3 bgcolor=color:#ff0000 valign=enum:3 | background-color: color:#ff0000; "
        "text-align: keyword:left; vertical-align: keyword:middle"},
    {"<thead align=left valign=middle>",
        "align=enum:3 valign=enum:3 | text-align: keyword:left; vertical-align: keyword:middle"},
    {"<td abbr=a align=left axis=b bgcolor=red bordercolor=blue colspan=2 rowspan=3 height=4 "
     "nowrap=nowrap width='50%' valign=bottom>",
        "abbr=\"a\" align=enum:3 axis=\"b\" bgcolor=color:#ff0000 bordercolor=color:#0000ff "
        "colspan=number:2 height=length:4px nowrap=number:1 rowspan=number:3 valign=enum:2 "
        "width=length:-50px | background-color: color:#ff0000; "
            + sidesText("color", "color:#0000ff")
            + "; height: length:4px; text-align: keyword:left; vertical-align: keyword:bottom; "
              "white-space: keyword:nowrap; width: percent:50"},
    {"<th abbr=a align=left axis=b bgcolor=red bordercolor=blue colspan=2 rowspan=3 height=4 "
     "nowrap=nowrap width='50%' valign=bottom>",
        "abbr=\"a\" align=enum:3 axis=\"b\" bgcolor=color:#ff0000 bordercolor=color:#0000ff "
        "colspan=number:2 height=length:4px nowrap=number:1 rowspan=number:3 valign=enum:2 "
        "width=length:-50px | background-color: color:#ff0000; "
            + sidesText("color", "color:#0000ff")
            + "; height: length:4px; text-align: keyword:left; vertical-align: keyword:bottom; "
              "white-space: keyword:nowrap; width: percent:50"},
    {"<td width=50>", "width=length:50px | width: length:50px"},
    {"<td nowrap=''>", "nowrap=number:1 | white-space: keyword:nowrap"},
    {"<td nowrap>", ""},
    {"<td colspan=x rowspan=''>", ""},
    {"<textarea cols=1 rows=2 name=a>", "cols=number:1 name=\"a\" rows=number:2"},
    {"<tr align=right bgcolor=red bordercolor=blue height='4%' valign=top>",
        "align=enum:4 bgcolor=color:#ff0000 bordercolor=color:#0000ff height=length:-4px "
        "valign=enum:4 | background-color: color:#ff0000; "
            + sidesText("color", "color:#0000ff")
            + "; height: percent:4; text-align: keyword:right; vertical-align: keyword:top"},
    {"<ul compact=compact type=disc>",
        "compact=number:1 type=enum:2 | list-style-type: keyword:disc"},
};

TEST(ElementAttributes, Handlers)
{
    for (const HandlerRow& row : kHandlers) {
        TagReading reading(row.tag + "x");
        reading.context.linkColor = 0xFF0000;
        reading.context.initialStyle->set(PROPERTY_FONT_SIZE,
            reading.tree.values.keywordValue(VALUE_MEDIUM), /*important=*/false,
            /*edgeMargin=*/false);
        reading.apply();
        EXPECT_EQ(reading.text(), row.expected) << row.tag;
    }
}

/// The attributes that elements keep beside the common ones.
struct KnownAttributes {
    std::vector<std::string_view> elements;
    std::vector<std::string_view> attributes;
};

const KnownAttributes kKnownAttributes[] = {
    {{"a"}, {"href", "name", "target"}},
    {{"area"}, {"alt", "coords", "href"}},
    {{"base"}, {"href"}},
    {{"basefont"}, {"face", "size", "color"}},
    {{"blockquote", "q"}, {"cite"}},
    {{"body"}, {"alink", "link", "vlink", "background", "bgcolor", "text"}},
    {{"caption"}, {"align"}},
    {{"col", "colgroup"}, {"align", "span", "width", "valign"}},
    {{"del", "ins"}, {"cite", "datetime"}},
    {{"div", "fieldset", "h1", "h2", "h3", "h4", "h5", "h6", "legend", "p"}, {"align"}},
    {{"dl"}, {"compact"}},
    {{"font"}, {"color", "face", "size"}},
    {{"frame", "iframe"}, {"bordercolor", "frameborder", "longdesc", "name", "src"}},
    {{"frameset"}, {"border", "bordercolor", "cols", "rows", "framespacing"}},
    {{"hr"}, {"align", "color", "noshade", "size", "width"}},
    {{"html"}, {"version"}},
    {{"img"}, {"alt", "border", "height", "hspace", "longdesc", "name", "src", "vspace", "width"}},
    {{"input"}, {"name", "type", "value"}},
    {{"isindex"}, {"prompt"}},
    {{"li"}, {"value", "type"}},
    {{"link"}, {"href", "name", "rel"}},
    {{"map"}, {"name"}},
    {{"meta"}, {"charset", "content", "http-equiv", "name", "scheme"}},
    {{"ol"}, {"compact", "start", "type"}},
    {{"optgroup"}, {"label"}},
    {{"option"}, {"selected", "value"}},
    {{"spacer"}, {"type", "align", "height", "size", "width"}},
    {{"style"}, {"type"}},
    {{"table"},
        {"align", "bgcolor", "bordercolor", "border", "cellpadding", "cellspacing", "cols", "frame",
            "height", "rules", "summary", "width"}},
    {{"tbody", "tfoot"}, {"align", "bgcolor", "valign"}},
    {{"td", "th"},
        {"abbr", "axis", "align", "bgcolor", "bordercolor", "colspan", "rowspan", "height",
            "nowrap", "width", "valign"}},
    {{"textarea"}, {"cols", "rows", "name"}},
    {{"thead"}, {"align", "valign"}},
    {{"tr"}, {"align", "bgcolor", "bordercolor", "height", "valign"}},
    {{"ul"}, {"compact", "type"}},
};

template <typename Text> bool isAmong(const std::vector<Text>& texts, std::string_view text)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool isKnown(std::string_view element, std::string_view attribute)
{
    if (isAmong<std::string_view>({"id", "style", "class", "dir", "title"}, attribute))
        return true;
    return std::any_of(std::begin(kKnownAttributes), std::end(kKnownAttributes),
        [&](const KnownAttributes& known) {
            return isAmong(known.elements, element) && isAmong(known.attributes, attribute);
        });
}

/// A value that has a meaning for an attribute, whatever the element.
std::string meaningOf(std::string_view element, std::string_view attribute)
{
    if (attribute == "dir")
        return "ltr";
    if (attribute == "align")
        return "left";
    if (attribute == "valign")
        return "top";
    if (attribute == "frame")
        return "box";
    if (attribute == "rules")
        return "all";
    if (attribute == "src")
        return "http:";
    if (attribute != "type")
        return "1";
    if (element == "input")
        return "text";
    if (element == "spacer")
        return "block";
    return element == "ul" ? "disc" : "1";
}

/// One tag of an element for each attribute there is.
std::string tagsOf(const std::string& element)
{
    std::string tags;
    for (std::uint32_t id = 1; id <= ATTRIBUTE_XMLNS; ++id) {
        const std::string attribute = zorvan::HTMLStrings::attributeName(id);
        tags += '<' + element + ' ' + attribute + '=' + meaningOf(element, attribute) + '>';
    }
    return tags;
}

TEST(ElementAttributes, EveryAttributeOfEveryElement)
{
    for (std::uint32_t elementId = 1; elementId <= 135; ++elementId) {
        const std::string element = zorvan::HTMLStrings::elementName(elementId);
        if (element.empty())
            continue;
        TreeContext tree(tagsOf(element));
        for (std::uint32_t id = 1; id <= ATTRIBUTE_XMLNS; ++id) {
            Token token;
            Scan(token, tree.context.tokenBuffer, kTokenLimit, tree.context);
            ASSERT_EQ(token.element, elementId);
            ASSERT_EQ(tree.context.tagAttributeCount, 1U);
            HtmlImgNodeData payload;
            payload.elementId = static_cast<ZVHTMLElement>(elementId);
            ApplyElementAttributes(&payload, tree.context);

            const std::string attribute = zorvan::HTMLStrings::attributeName(id);
            const bool isKept = payload.findAttribute(static_cast<ZVHTMLAttribute>(id)) != nullptr;
            EXPECT_EQ(isKept, isKnown(element, attribute)) << element << ' ' << attribute;
            // A caption has an alignment whatever its tag says.
            const bool impliesOne = element == "caption" && attribute != "align";
            EXPECT_EQ(payload.attributes.getCount(), (isKept ? 1 : 0) + (impliesOne ? 1 : 0))
                << element << ' ' << attribute;
            EXPECT_EQ(tree.context.statusFlags, 0U);
        }
    }
}

TEST(ElementAttributes, ListTypes)
{
    struct Row {
        const char* type;
        std::uint32_t item; ///< 0: not kept
        std::uint32_t ordered;
        std::uint32_t unordered;
    };
    const Row rows[] = {
        {"1", 5, 5, 0},
        {"A", 7, 7, 0},
        {"a", 3, 3, 0},
        {"I", 8, 8, 0},
        {"i", 4, 4, 0},
        {"circle", 1, 0, 1},
        {"disc", 2, 0, 2},
        {"loweralpha", 3, 0, 3},
        {"lowerroman", 4, 0, 4},
        {"numeral", 5, 0, 5},
        {"square", 6, 0, 6},
        {"upperalpha", 7, 0, 7},
        {"upperroman", 8, 0, 8},
        {"CIRCLE", 1, 0, 1},
        {"Square", 6, 0, 6},
        {"11", 0, 0, 0},
        {"b", 0, 0, 0},
        {"", 0, 0, 0},
        {"decimal", 0, 0, 0},
        {"lower-alpha", 0, 0, 0},
    };
    const char* const styles[] = {"", "circle", "disc", "lower-alpha", "lower-roman", "decimal",
        "square", "upper-alpha", "upper-roman"};
    const auto expected = [&](std::uint32_t type) {
        return type == 0
            ? std::string()
            : "type=enum:" + std::to_string(type) + " | list-style-type: keyword:" + styles[type];
    };
    for (const Row& row : rows) {
        const std::string attribute = std::string(" type='") + row.type + "'>";
        EXPECT_EQ(appliedTo("<li" + attribute), expected(row.item)) << row.type;
        EXPECT_EQ(appliedTo("<ol" + attribute), expected(row.ordered)) << row.type;
        EXPECT_EQ(appliedTo("<ul" + attribute), expected(row.unordered)) << row.type;
    }
}

TEST(ElementAttributes, TableHeadHasNoColor)
{
    EXPECT_EQ(appliedTo("<thead bgcolor=red>"), "");
    EXPECT_EQ(appliedTo("<tbody bgcolor=red>"),
        "bgcolor=color:#ff0000 | background-color: color:#ff0000");
}

TEST(ElementAttributes, NoWrapDeclaresKeyword106)
{
    TagReading reading("<td nowrap=1>x");
    reading.apply();
    std::int32_t keyword = 0;
    EXPECT_EQ(reading.list.getIntValue(PROPERTY_WHITE_SPACE, &keyword), 5U);
    EXPECT_EQ(keyword, 106);
}

TEST(ElementAttributes, AnchorLooksLikeALinkUnlessItsListSaysOtherwise)
{
    struct Row {
        ZVCSSProperty given;
        const char* expected;
    };
    const Row rows[] = {
        {PROPERTY_TEXT_DECORATION,
            "href=\"a\" | color: color:#332211; text-decoration: keyword:none"},
        {PROPERTY_COLOR, "href=\"a\" | color: keyword:none; text-decoration: keyword:underline"},
    };
    for (const Row& row : rows) {
        TagReading reading("<a href=a>x");
        reading.context.linkColor = 0x112233;
        reading.list.set(row.given, reading.tree.values.keywordValue(VALUE_NONE),
            /*important=*/false, /*edgeMargin=*/false);
        reading.apply();
        EXPECT_EQ(reading.text(), row.expected);
    }
}

TEST(ElementAttributes, LinkColorIsSetWhileTheTreeIsBuilt)
{
    TreeContext tree("<body><a href=a></a>");
    tree.context.linkColor = 0x010203;
    tree.build();
    EXPECT_EQ(tree.payloadOf(*tree.find(ELEMENT_A)).declarations->findValue(PROPERTY_COLOR),
        tree.values.colorValue(0x010203));
    EXPECT_EQ(tree.context.linkColor, 0x010203U);

    TreeContext colored("<body link=#102030><a href=a></a>");
    colored.build();
    EXPECT_EQ(colored.payloadOf(*colored.find(ELEMENT_A)).declarations->findValue(PROPERTY_COLOR),
        colored.values.colorValue(0x302010));
    EXPECT_EQ(colored.context.linkColor, 0x302010U);
    // A payload without a list, as that of a second body, sets it too.
    TagReading second("<body link=red text=red>x");
    second.payload->declarations = nullptr;
    second.apply();
    EXPECT_EQ(second.context.linkColor, 0x0000FFU);
    EXPECT_EQ(second.payload->declarations, nullptr);
}

TEST(ElementAttributes, BodyTakesTheBaseFontOfTheHead)
{
    struct Row {
        const char* markup;
        const char* expected;
    };
    const Row rows[] = {
        {"<head><basefont color=red size=2><body>", "font-size: small; color: #ff0000"},
        {"<head><basefont color=red face=A dir=ltr><body text=blue>",
            "font-family: \"A\"; color: #0000ff; direction: ltr; text-align: left"},
        {"<head><meta><basefont color=red><basefont color=blue><body>", "color: #ff0000"},
        {"<head><basefont><basefont color=blue><body>", ""},
        {"<head><basefont color=red></head><body>", "color: #ff0000"},
        {"<head></head><basefont color=red><body>", "color: #ff0000"},
        {"<head><basefont size=3><body bgcolor=red>",
            "background-color: #ff0000; font-size: medium"},
        // Real tags only.
        {"<head><basefont color=red></head><p>", ""},
        // Of the head only.
        {"<body><basefont color=red>", ""},
    };
    for (const Row& row : rows) {
        TreeContext tree(row.markup);
        tree.build();
        const HtmlTreeNode* const body = tree.find(ELEMENT_BODY);
        ASSERT_NE(body, nullptr) << row.markup;
        std::vector<std::string> declared;
        const auto split = [](std::string text) {
            std::vector<std::string> parts;
            for (std::size_t end = 0; !text.empty(); text.erase(0, end + 2)) {
                end = text.find("; ");
                parts.push_back(text.substr(0, end));
                if (end == std::string::npos)
                    break;
            }
            std::sort(parts.begin(), parts.end());
            return parts;
        };
        EXPECT_EQ(split(testing_support::declarationsText(tree.payloadOf(*body).declarations)),
            split(row.expected))
            << row.markup;
    }
}

TEST(ElementAttributes, SyntheticTagsImplyNothing)
{
    TreeContext tree("<p>");
    tree.build();
    const Token table = {ELEMENT_TABLE, TOKEN_START_TAG | TOKEN_SYNTHETIC, 0, 0xFFFF, 0, 0};
    HtmlTreeNode* const node = InsertElement(&table, tree.context);
    EXPECT_TRUE(tree.payloadOf(*node).declarations->isEmpty());
    const Token caption = {ELEMENT_CAPTION, TOKEN_START_TAG | TOKEN_SYNTHETIC, 0, 0xFFFF, 0, 0};
    EXPECT_FALSE(tree.payloadOf(*InsertElement(&caption, tree.context)).hasAttributes());
}

TEST(ElementAttributes, BuiltInListsAreLeftAlone)
{
    TreeContext tree("<body><b></b><b dir=rtl></b><b></b><hr><hr width=5>");
    tree.build();
    const HtmlTreeNode* const first = tree.find(ELEMENT_B);
    const HtmlTreeNode* const second = first->nextSibling;
    const HtmlTreeNode* const third = second->nextSibling;
    EXPECT_EQ(tree.payloadOf(*first).declarations, tree.payloadOf(*third).declarations);
    EXPECT_EQ(tree.payloadOf(*first).declarations->getCount(), 1U);
    EXPECT_EQ(tree.payloadOf(*second).declarations->getCount(), 3U);
    const HtmlTreeNode* const rule = third->nextSibling;
    ASSERT_NE(tree.payloadOf(*rule).declarations, nullptr);
    EXPECT_TRUE(tree.payloadOf(*rule).declarations->isEmpty());
    EXPECT_EQ(tree.payloadOf(*rule->nextSibling).declarations->getCount(), 1U);
}

} // namespace
