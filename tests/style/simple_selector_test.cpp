#include "style/simple_selector.h"

#include "support/html_strings.h"
#include "tests/style/selector_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

using namespace testing_support;

class SimpleSelectorTest : public testing::Test {
protected:
    /// Whether the first condition of a selector's text is met by a node.
    bool isMet(std::string_view text, const HtmlTreeNode& node)
    {
        const ReadSelector read(std::string(text) + '{');
        EXPECT_FALSE(read.isError) << text;
        return read.selector.sequences.first()->selectors.first()->matches(node);
    }

    SelectorTree document;
};

struct SpecificityRow {
    const char* text;
    std::uint32_t specificity;
};

TEST(SimpleSelector, Specificities)
{
    const SpecificityRow rows[] = {
        {":not(*)", 0},
        {"p", 1},
        {":not(p)", 1},
        {"nosuchname", 1},
        {"[class]", 256},
        {"[title]", 256},
        {":not([id=x])", 256},
        {".x", 256},
        {":not(.x)", 256},
        {":hover", 256},
        {":lang(en)", 256},
        {":not(:root)", 256},
        {"#x", 65'536},
        {":not(#x)", 65'536},
    };
    for (const SpecificityRow& row : rows) {
        const ReadSelector read(std::string(row.text) + '{');
        ASSERT_EQ(read.selector.sequences.getCount(), 1) << row.text;
        const auto& conditions = read.selector.sequences.first()->selectors;
        ASSERT_EQ(conditions.getCount(), 1) << row.text;
        EXPECT_EQ(conditions.first()->getSpecificity(), row.specificity) << row.text;
    }
    // What is only there for others to derive from counts as its kind says.
    EXPECT_EQ(SimpleSelector(SELECTOR_ELEMENT, nullptr, 0).getSpecificity(), 1U);
    EXPECT_EQ(SimpleSelector(SELECTOR_ATTRIBUTE, nullptr, 0).getSpecificity(), 256U);
    EXPECT_EQ(SimpleSelector(SELECTOR_PSEUDO_CLASS, nullptr, 0).getSpecificity(), 256U);
}

TEST(SimpleSelector, NegatedClassIdAndStarMatchNothing)
{
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    for (const char* text : {"p:not(.x)", ":not(.x)", ":not(#x)", ":not(*)", ":not([class])",
             ":not([class=x])", ":not(:root)", ":not(:hover)", ":not(:first-child)"}) {
        EXPECT_FALSE(selects(text, node, document.root())) << text;
        const ReadSelector read(std::string(text) + '{');
        EXPECT_FALSE(read.selector.canMatch()) << text;
    }
    EXPECT_TRUE(selects(":not(a)", node, document.root()));
}

TEST(SimpleSelector, OtherKindsMatchNothingOfTheirOwn)
{
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    for (const SimpleSelectorKind kind :
        {SELECTOR_ELEMENT, SELECTOR_ATTRIBUTE, SELECTOR_PSEUDO_CLASS})
        EXPECT_FALSE(SimpleSelector(kind, "p", 1).matches(node)) << kind;
    EXPECT_TRUE(SimpleSelector(SELECTOR_UNIVERSAL, nullptr, 0).matches(node));
    EXPECT_TRUE(SimpleSelector(SELECTOR_UNIVERSAL, nullptr, 0).matches(document.addText()));
}

TEST_F(SimpleSelectorTest, ClassesAreWordsOfTheAttribute)
{
    struct Row {
        std::u16string_view classes;
        bool hasX;
    };
    const Row rows[] = {
        {u"x", true}, {u"a x", true}, {u"x a", true}, {u"a x b", true}, {u" x ", true},
        {u"a\tx", true}, {u"a\nx", true}, {u"a\rx", true}, {u"a\fx", true}, {u"\t\n\r\f x", true},
        {u"x x", true}, {u"", false}, {u"  ", false}, {u"X", false}, {u"xx", false},
        {u"a-x", false}, {u"a,x", false}, {u"a\vx", false}, {u"a\u00A0x", false},
        {u"a\u2003x", false}, {u"\u0178", false}, // an x in its low byte
    };
    for (const Row& row : rows) {
        HtmlTreeNode& node = document.add(ELEMENT_P);
        document.set(node, ATTRIBUTE_CLASS, row.classes);
        EXPECT_EQ(isMet(".x", node), row.hasX) << &row - rows;
        EXPECT_EQ(isMet("[class~=x]", node), row.hasX) << &row - rows;
        // The other attribute does not count.
        EXPECT_FALSE(isMet("#x", node));
    }
}

TEST_F(SimpleSelectorTest, AnIdIsTheWholeAttribute)
{
    struct Row {
        std::u16string_view id;
        bool isX;
    };
    const Row rows[] = {{u"x", true}, {u"X", false}, {u"x ", false}, {u" x", false}, {u"", false},
        {u"xx", false}, {u"x y", false}};
    for (const Row& row : rows) {
        HtmlTreeNode& node = document.add(ELEMENT_P);
        document.set(node, ATTRIBUTE_ID, row.id);
        EXPECT_EQ(isMet("#x", node), row.isX) << &row - rows;
        EXPECT_FALSE(isMet(".x", node));
    }
}

TEST_F(SimpleSelectorTest, BytesOfTheSheetAreTheFirstCharacters)
{
    HtmlTreeNode& node = document.add(ELEMENT_P);
    document.set(node, ATTRIBUTE_CLASS, u"\u00E9t\u00E9");
    EXPECT_TRUE(isMet(".\xE9t\xE9", node));
    EXPECT_TRUE(isMet("[class=\"\xE9t\xE9\"]", node));
    EXPECT_TRUE(isMet("[class*='\xE9']", node));
    HtmlTreeNode& other = document.add(ELEMENT_P);
    document.set(other, ATTRIBUTE_CLASS, u"\u01E9t\u00E9");
    EXPECT_FALSE(isMet(".\xE9t\xE9", other));
}

TEST_F(SimpleSelectorTest, EscapesStayAsWritten)
{
    HtmlTreeNode& node = document.add(ELEMENT_P);
    document.set(node, ATTRIBUTE_CLASS, u"x \\78");
    document.set(node, ATTRIBUTE_ID, u"a\\.b");
    EXPECT_TRUE(isMet(".\\78", node));
    EXPECT_TRUE(isMet("#a\\.b", node));
    document.set(node, ATTRIBUTE_CLASS, u"x");
    document.set(node, ATTRIBUTE_ID, u"a.b");
    EXPECT_FALSE(isMet(".\\78", node));
    EXPECT_FALSE(isMet("#a\\.b", node));
}

TEST_F(SimpleSelectorTest, OnlyTextsOfAttributesAreCompared)
{
    HtmlTreeNode& node = document.add(ELEMENT_P);
    SelectorTree::set(node, ATTRIBUTE_CLASS, document.values.numberValue(7));
    SelectorTree::set(node, ATTRIBUTE_ID, document.values.numberValue(7));
    EXPECT_TRUE(isMet("[class]", node));
    for (const char* text : {".\\37", "#\\37", "#7", "[class='7']", "[class~='7']", "[class|='7']",
             "[class^='']", "[class$='']", "[class*='']"})
        EXPECT_FALSE(isMet(text, node)) << text;
}

TEST_F(SimpleSelectorTest, ATextHasNoAttributes)
{
    const HtmlTreeNode& text = document.addText();
    for (const char* each : {".x", "#x", "[class]", "[class*='']", ":link", ":root"})
        EXPECT_FALSE(isMet(each, text)) << each;
}

TEST_F(SimpleSelectorTest, ElementsByNumber)
{
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        const std::string name = zorvan::HTMLStrings::elementName(id);
        if (name.empty())
            continue;
        HtmlTreeNode& node = document.add(static_cast<ZVHTMLElement>(id));
        HtmlTreeNode& other = document.add(id == ELEMENT_P ? ELEMENT_A : ELEMENT_P);
        EXPECT_TRUE(isMet(name, node)) << name;
        EXPECT_FALSE(isMet(name, other)) << name;
        EXPECT_FALSE(isMet(":not(" + name + ")", node)) << name;
        EXPECT_TRUE(isMet(":not(" + name + ")", other)) << name;
        std::string upper = name;
        std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
            return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
        });
        EXPECT_TRUE(isMet(upper, node)) << upper;
    }
}

TEST(ElementSelector, UnknownNameIsThatOfATextNode)
{
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    HtmlTreeNode& text = document.addText();
    ElementSelector unknown("nosuchname", 10);
    EXPECT_EQ(unknown.elementId, 0);
    EXPECT_FALSE(unknown.canMatch());
    EXPECT_TRUE(unknown.matches(text));
    EXPECT_FALSE(unknown.matches(node));
    unknown.negated = true;
    EXPECT_TRUE(unknown.canMatch());
    EXPECT_FALSE(unknown.matches(text));
    EXPECT_TRUE(unknown.matches(node));

    HtmlTreeNode& behind = document.add(ELEMENT_B);
    EXPECT_TRUE(selects("nosuchname + b", behind, document.root()));
    EXPECT_TRUE(selects("* + b", behind, document.root()));
    EXPECT_FALSE(selects("p + b", behind, document.root()));
}

TEST(ElementSelector, WithoutAPayloadItsNegationHolds)
{
    SelectorTree document;
    ElementSelector element("p", 1);
    EXPECT_FALSE(element.matches(*document.root()));
    element.negated = true;
    EXPECT_TRUE(element.matches(*document.root()));
}

struct OperatorRow {
    const char* text;
    std::u16string_view value;
    bool isMet;
};

TEST(AttributeSelector, Operators)
{
    const OperatorRow rows[] = {
        {"[lang]", u"", true},
        {"[lang]", u"en", true},
        {"[lang=en]", u"en", true},
        {"[lang=en]", u"EN", false},
        {"[lang=en]", u"en-GB", false},
        {"[lang=en]", u"", false},
        {"[lang='']", u"", true},
        {"[lang='']", u"en", false},
        {"[lang~=en]", u"de en fr", true},
        {"[lang~=en]", u"de en-GB", false},
        {"[lang~='']", u"de  en", false},
        {"[lang~='']", u"", false},
        {"[lang~='de en']", u"de en", false},
        {"[lang|=en]", u"en", true},
        {"[lang|=en]", u"en-GB", true},
        {"[lang|=en]", u"en-", true},
        {"[lang|=en]", u"eng", false},
        {"[lang|=en]", u"de-en", false},
        {"[lang|=en]", u"e", false},
        {"[lang|='']", u"", true},
        {"[lang|='']", u"-x", true},
        {"[lang|='']", u"x", false},
        {"[lang^=en]", u"en", true},
        {"[lang^=en]", u"eng", true},
        {"[lang^=en]", u"deen", false},
        {"[lang^=en]", u"e", false},
        {"[lang^='']", u"", true},
        {"[lang^='']", u"x", true},
        {"[lang$=en]", u"en", true},
        {"[lang$=en]", u"deen", true},
        {"[lang$=en]", u"ens", false},
        {"[lang$=en]", u"n", false},
        {"[lang$='']", u"", true},
        {"[lang$='']", u"x", true},
        {"[lang*=en]", u"en", true},
        {"[lang*=en]", u"deens", true},
        {"[lang*=en]", u"e n", false},
        {"[lang*=aab]", u"aaab", true},
        {"[lang*='']", u"", true},
        {"[lang*='']", u"x", true},
    };
    for (const OperatorRow& row : rows) {
        SelectorTree document;
        HtmlTreeNode& node = document.add(ELEMENT_P);
        EXPECT_FALSE(selects(row.text, node, document.root())) << row.text;
        document.set(node, ATTRIBUTE_LANG, row.value);
        EXPECT_EQ(selects(row.text, node, document.root()), row.isMet)
            << row.text << ' ' << &row - rows;
        EXPECT_FALSE(selects(":not(" + std::string(row.text) + ")", node, document.root()))
            << row.text;
    }
}

TEST(AttributeSelector, FourAttributesCount)
{
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_A);
    for (std::uint32_t id = 1; *zorvan::HTMLStrings::attributeName(id) != 0; ++id)
        document.set(node, static_cast<ZVHTMLAttribute>(id), u"x");
    std::uint32_t others = 0;
    for (std::uint32_t id = 1; *zorvan::HTMLStrings::attributeName(id) != 0; ++id) {
        const std::string name = zorvan::HTMLStrings::attributeName(id);
        const bool counts = id == 26 || id == 46 || id == 76 || id == 84;
        others += counts ? 0 : 1;
        for (const char* rest : {"", "=x", "~=x", "|=x", "^=x", "$=x", "*=x"})
            EXPECT_EQ(selects('[' + name + rest + ']', node, document.root()), counts)
                << name << rest;
    }
    EXPECT_GT(others, 80U);
    EXPECT_FALSE(selects("[nosuchname]", node, document.root()));
}

TEST(AttributeSelector, NamesAreNumbersInAnyCase)
{
    struct Row {
        const char* text;
        ZVHTMLAttribute id;
    };
    const Row rows[]
        = {{"[class]", ATTRIBUTE_CLASS}, {"[CLASS]", ATTRIBUTE_CLASS}, {"[Dir]", ATTRIBUTE_DIR},
            {"[iD]", ATTRIBUTE_ID}, {"[LANG]", ATTRIBUTE_LANG}, {"[classe]", ATTRIBUTE_NONE},
            {"[clas]", ATTRIBUTE_NONE}, {"[href]", ATTRIBUTE_NONE}, {"[\\63lass]", ATTRIBUTE_NONE}};
    for (const Row& row : rows) {
        const ReadSelector read(std::string(row.text) + '{');
        const auto* attribute = static_cast<const AttributeSelector*>(
            read.selector.sequences.first()->selectors.first());
        EXPECT_EQ(attribute->attributeId, row.id) << row.text;
        EXPECT_EQ(attribute->canMatch(), row.id != 0) << row.text;
    }
    static_assert(ATTRIBUTE_CLASS == 26 && ATTRIBUTE_DIR == 46 && ATTRIBUTE_ID == 76
        && ATTRIBUTE_LANG == 84 && ATTRIBUTE_HREF == 71 && ATTRIBUTE_STYLE == 220);
    static_assert(ELEMENT_A == 1 && ELEMENT_HTML == 59);
}

/// What a pseudo-class says of the nodes of a small document.
struct PseudoClassRow {
    const char* text;
    std::int32_t kind;
    const char* meant; ///< the names of the nodes below
};

TEST(PseudoClassSelector, EachOfThem)
{
    SelectorTree document;
    HtmlTreeNode& html = document.add(ELEMENT_HTML);
    HtmlTreeNode& first = document.add(ELEMENT_P, &html);
    HtmlTreeNode& link = document.add(ELEMENT_A, &html);
    document.set(link, ATTRIBUTE_HREF, u"");
    HtmlTreeNode& anchor = document.add(ELEMENT_A, &html);
    HtmlTreeNode& second = document.add(ELEMENT_P, &html);
    document.set(second, ATTRIBUTE_HREF, u"x");
    const std::pair<char, HtmlTreeNode*> nodes[]
        = {{'h', &html}, {'1', &first}, {'l', &link}, {'a', &anchor}, {'2', &second}};
    const PseudoClassRow rows[] = {
        {":lang(en)", 1033, ""},
        {":nth-child(1)", 1034, ""},
        {":nth-last-child(1)", 1035, ""},
        {":nth-of-type(1)", 1036, ""},
        {":nth-last-of-type(1)", 1037, ""},
        {":link", 1038, "l"},
        {":visited", 1039, ""},
        {":active", 1040, ""},
        {":hover", 1041, ""},
        {":focus", 1042, ""},
        {":first-child", 1043, "h1"},
        {":last-child", 1044, ""},
        {":first-of-type", 1045, "h1l"},
        {":last-of-type", 1046, ""},
        {":only-child", 1047, ""},
        {":only-of-type", 1048, ""},
        {":root", 1049, "h"},
        {":empty", 1050, ""},
        {":target", 1051, ""},
        {":enabled", 1052, ""},
        {":disabled", 1053, ""},
        {":checked", 1054, ""},
    };
    for (const PseudoClassRow& row : rows) {
        const ReadSelector read(std::string(row.text) + '{');
        ASSERT_EQ(selectorText(read.selector), "{u :" + std::to_string(row.kind) + '}');
        std::string meant;
        for (const auto& [name, node] : nodes) {
            if (read.selector.matches(*node, document.root()))
                meant += name;
            EXPECT_FALSE(selects(":not(" + std::string(row.text) + ")", *node, document.root()));
        }
        EXPECT_EQ(meant, row.meant) << row.text;
        EXPECT_EQ(read.selector.canMatch(), *row.meant != 0) << row.text;
    }
    EXPECT_EQ(std::size(rows), static_cast<std::size_t>(CSS_CHECKED - CSS_LANG + 1));
}

TEST(PseudoClassSelector, TextInFrontIsASibling)
{
    SelectorTree document;
    HtmlTreeNode& body = document.add(ELEMENT_BODY);
    document.addText(&body);
    HtmlTreeNode& node = document.add(ELEMENT_P, &body);
    EXPECT_FALSE(selects("p:first-child", node, document.root()));
    EXPECT_TRUE(selects("p:first-of-type", node, document.root()));
}

TEST(PseudoClassSelector, TextsAreOfOneType)
{
    SelectorTree document;
    HtmlTreeNode& body = document.add(ELEMENT_BODY);
    document.addText(&body);
    document.add(ELEMENT_P, &body);
    document.addText(&body);
    HtmlTreeNode& node = document.add(ELEMENT_B, &body);
    // Of the texts in front only the later one touches.
    EXPECT_FALSE(selects("*:first-of-type + b", node, document.root()));
    EXPECT_TRUE(selects("*:first-of-type ~ b", node, document.root()));
}

TEST(PseudoClassSelector, LinkAsksForTheElementAndItsAttribute)
{
    SelectorTree document;
    HtmlTreeNode& number = document.add(ELEMENT_A);
    SelectorTree::set(number, ATTRIBUTE_HREF, document.values.numberValue(1));
    EXPECT_TRUE(selects("a:link", number, document.root()));
    HtmlTreeNode& area = document.add(ELEMENT_AREA);
    document.set(area, ATTRIBUTE_HREF, u"x");
    EXPECT_FALSE(selects(":link", area, document.root()));
    for (const char* text : {"a:visited", "a:hover"})
        EXPECT_FALSE(selects(text, number, document.root())) << text;
}

} // namespace
