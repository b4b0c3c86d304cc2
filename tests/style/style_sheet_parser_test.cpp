#include "style/style_sheet.h"

#include "support/exception.h"
#include "support/process_heap.h"
#include "tests/containers/allocation_failures.h"
#include "tests/style/sheet_document.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace testing_support;

const Declarations kRed = written("color color ff");
const Declarations kBlue = written("color color ff0000");
const Declarations kNothing;

/// What a sheet declares for some elements.
struct SheetRow {
    const char* text;
    Declarations a;
    Declarations b;
    Declarations p;
};

template <std::size_t N> void expectRows(const SheetRow (&rows)[N])
{
    for (const SheetRow& row : rows) {
        SheetDocument document(row.text);
        EXPECT_EQ(document.rulesFor("a"), row.a) << "a: " << row.text;
        EXPECT_EQ(document.rulesFor("b"), row.b) << "b: " << row.text;
        EXPECT_EQ(document.rulesFor("p"), row.p) << "p: " << row.text;
    }
}

TEST(StyleSheetParser, Rules)
{
    const SheetRow rows[] = {
        {"", kNothing, kNothing, kNothing},
        {"a{color:red}", kRed, kNothing, kNothing},
        {" a { color : red } ", kRed, kNothing, kNothing},
        {"a{color:red}b{color:blue}", kRed, kBlue, kNothing},
        {"a,b{color:red}", kRed, kRed, kNothing},
        {"a , b , p { color: red }", kRed, kRed, kRed},
        {"a{color:red}a{color:blue}", kBlue, kNothing, kNothing},
        {"a{color:red", kRed, kNothing, kNothing},
        {"a{color:red;}b{}", kRed, kNothing, kNothing},
        {"/* a */ a /* b */ { /* c */ color /* d */ : /* e */ red /* f */ }", kRed, kNothing,
            kNothing},
        {"a{color:red}/* b{color:red}", kRed, kNothing, kNothing},
        {"a{color:red} b", kRed, kNothing, kNothing},
        {"a{color:red} b,", kRed, kNothing, kNothing},
        {"a:hover{color:red}b:not(p){color:blue}", kNothing, kBlue, kNothing},
        {"[class]{color:red}#x{color:red}.x{color:red}:root{color:red}a{color:blue}", kBlue,
            kNothing, kNothing},
        {":first-child{color:red}", kRed, kNothing, kNothing},
        {":not(a){color:red}", kNothing, kRed, kRed},
        {"{color:red}a{color:blue}", kBlue, kNothing, kNothing},
        {"a{color:red}{color:blue}", kRed, kNothing, kNothing},
    };
    expectRows(rows);
}

TEST(StyleSheetParser, AllSelectorsOfARuleShareItsList)
{
    SheetDocument document("a, .x, #y { color: red }");
    HtmlTreeNode& node = document.add(ELEMENT_A);
    document.setText(node, ATTRIBUTE_CLASS, u"x");
    document.setText(node, ATTRIBUTE_ID, u"y");
    const auto& matched = document.sheet.findMatches(node, document.tree.root());
    ASSERT_EQ(matched.getCount(), 3);
    EXPECT_EQ(matched.get(0)->declarations, matched.get(1)->declarations);
    EXPECT_EQ(matched.get(0)->declarations, matched.get(2)->declarations);
    EXPECT_EQ(matched.get(0)->order, 1);
    EXPECT_EQ(matched.get(1)->order, 2);
    EXPECT_EQ(matched.get(2)->order, 3);
}

// The numbers of discarded selectors are gone, and the numbers go on in the next text.
TEST(StyleSheetParser, NumbersGoOn)
{
    SheetDocument document("a{color:red} b,i,;{color:red} p{} a{color:blue}");
    document.parse("a { color: lime }");
    HtmlTreeNode& node = document.add(ELEMENT_A);
    const auto& matched = document.sheet.findMatches(node, document.tree.root());
    ASSERT_EQ(matched.getCount(), 3);
    EXPECT_EQ(matched.get(0)->order, 1);
    EXPECT_EQ(matched.get(1)->order, 6);
    EXPECT_EQ(matched.get(2)->order, 7);
}

TEST(StyleSheetParser, LaterTextsAddToEarlierOnes)
{
    SheetDocument document("a { color: red } .x { color: red }");
    EXPECT_EQ(document.rulesFor("b"), kNothing);
    document.parse("a { color: blue } b { color: blue }");
    EXPECT_EQ(document.rulesFor("a"), kBlue);
    EXPECT_EQ(document.rulesFor("a", u"x"), kRed);
    EXPECT_EQ(document.rulesFor("b"), kBlue);
}

TEST(StyleSheetParser, NoTextDoesNothing)
{
    SheetDocument document("a { color: red }");
    document.sheet.parseStyleSheet(nullptr, 0);
    document.parse("");
    EXPECT_EQ(document.rulesFor("a"), kRed);
}

TEST(StyleSheetParser, ATextWithOnlyACommentAddsNoRules)
{
    SheetDocument document;
    for (const char* text : {"/* a { color: red } */", "<!-- -->", "<!--", "/*", " "}) {
        document.parse(text);
        EXPECT_FALSE(document.sheet.hasRules()) << text;
    }
    document.parse("a { color: red }");
    EXPECT_TRUE(document.sheet.hasRules());
    document.parse("/* b */");
    EXPECT_EQ(document.rulesFor("a"), kRed);
}

TEST(StyleSheetParser, UnitsAreCutToBytes)
{
    SheetDocument document;
    // The low bytes of these spell a rule.
    const std::u16string text = u"\u0161\u017B\u0163olor:red\u017D b{color:blue}";
    document.sheet.parseStyleSheet(text.data(), static_cast<std::uint32_t>(text.size()));
    EXPECT_EQ(document.rulesFor("a"), kRed);
    EXPECT_EQ(document.rulesFor("b"), kBlue);
    // A low byte of 0 ends the text.
    const std::u16string cut = u"p{color:red}\u0100b{color:red}";
    document.sheet.parseStyleSheet(cut.data(), static_cast<std::uint32_t>(cut.size()));
    EXPECT_EQ(document.rulesFor("p"), kRed);
    EXPECT_EQ(document.rulesFor("b"), kBlue);
}

TEST(StyleSheetParser, OneCommentMarkAtTheStart)
{
    const SheetRow rows[] = {
        {"<!-- p { color: red } -->", kNothing, kNothing, kRed},
        {" <!--p{color:red}", kNothing, kNothing, kRed},
        {"/* */<!--p{color:red}", kNothing, kNothing, kRed},
        // A second mark is junk up to the brace.
        {"<!-- <!-- a{color:red} p{color:red}", kNothing, kNothing, kRed},
        {"<!-- a{color:red} --> <!-- b{color:red} p{color:red} -->", kRed, kNothing, kRed},
        {"a{color:red} <!-- b{color:red} p{color:red}", kRed, kNothing, kRed},
        {"--> a{color:red} p{color:red}", kNothing, kNothing, kRed},
    };
    expectRows(rows);
}

TEST(StyleSheetParser, EachTextMayBeginWithACommentMark)
{
    SheetDocument document("<!-- a { color: red } -->");
    document.parse("<!-- p { color: red } -->");
    EXPECT_EQ(document.rulesFor("a"), kRed);
    EXPECT_EQ(document.rulesFor("p"), kRed);
}

TEST(StyleSheetParser, AtRulesAreReadPast)
{
    const SheetRow rows[] = {
        {"@media print { p { color: red } } a { color: blue }", kBlue, kNothing, kNothing},
        {"@media print { p { color: red } a { color: red } } b { color: red }", kNothing, kRed,
            kNothing},
        {"@import url(x.css); a{color:red}", kRed, kNothing, kNothing},
        {"@import 'x.css';a{color:red}", kRed, kNothing, kNothing},
        {"@charset \"x\"; a{color:red}", kRed, kNothing, kNothing},
        {"@page { margin: 1in } a{color:red}", kRed, kNothing, kNothing},
        {"@page :first { margin: 1in } a{color:red}", kRed, kNothing, kNothing},
        {"@font-face { font-family: x; src: url(x) } a{color:red}", kRed, kNothing, kNothing},
        {"@nosuchrule a { b } p { color: red }", kNothing, kNothing, kRed},
        {"@nosuchrule; p{color:red}", kNothing, kNothing, kRed},
        {"@media x { ; } ; } a{color:red} b{color:red}", kRed, kRed, kNothing},
        // Once a block has begun, a semicolon ends nothing.
        {"@nosuchrule { a{color:red}; b{color:red}; } p{color:red}", kNothing, kNothing, kRed},
        // A brace too many in front leaves the depth behind, and no "}" ends the rule any more.
        {"@nosuchrule } a{color:red} b{color:red}", kNothing, kNothing, kNothing},
        {"@nosuchrule } ; b{color:red}", kNothing, kRed, kNothing},
        {"@nosuchrule } } { { { a } } b{color:red}", kNothing, kNothing, kNothing},
        {"@import", kNothing, kNothing, kNothing},
        {"a{color:red} @media { p { color: red }", kRed, kNothing, kNothing},
        // In front of a selector it does not void the rule.
        {"@import x; @import y; a{color:red}", kRed, kNothing, kNothing},
    };
    expectRows(rows);
}

TEST(StyleSheetParser, NothingMayStandBetweenASelectorAndItsBlock)
{
    const SheetRow rows[] = {
        {"a @media x; {color:red} p{color:red}", kNothing, kNothing, kRed},
        {"a; {color:red} p{color:red}", kNothing, kNothing, kRed},
    };
    expectRows(rows);
}

TEST(StyleSheetParser, EmptyRulesLeaveNothing)
{
    const SheetRow rows[] = {
        {"p { }", kNothing, kNothing, kNothing},
        {"p{}a{color:red}", kRed, kNothing, kNothing},
        {"p,a{}b{color:red}", kNothing, kRed, kNothing},
        {"p { nosuchproperty: red } a{color:red}", kRed, kNothing, kNothing},
        {"p { color: nosuchcolor }", kNothing, kNothing, kNothing},
    };
    expectRows(rows);
    EXPECT_FALSE(SheetDocument("p { }").sheet.hasRules());
}

TEST(StyleSheetParser, OneBadSelectorVoidsTheRule)
{
    const SheetRow rows[] = {
        {"p, { color: red } a{color:red}", kRed, kNothing, kNothing},
        {"p,,b { color: red } a{color:red}", kRed, kNothing, kNothing},
        {"p, a:foo { color: red } b{color:red}", kNothing, kRed, kNothing},
        {"a:foo, p { color: red } b{color:red}", kNothing, kRed, kNothing},
        {"p, * { color: red } b{color:red}", kNothing, kRed, kNothing},
        {"*, p { color: red } b{color:red}", kNothing, kRed, kNothing},
        {"a, :before { color: red } b{color:red}", kNothing, kRed, kNothing},
        {"a, b:before { color: red }", kRed, kNothing, kNothing},
        {"a, ::selection::after { color: red } b{color:red}", kNothing, kRed, kNothing},
        {"p a* { color: red } b{color:red}", kNothing, kRed, kNothing},
        // What comes in front of a selector is passed over.
        {"a, > p { color: red }", kRed, kNothing, kRed},
        {"a, } p { color: red }", kRed, kNothing, kRed},
        {"a, ; : @media 1 p { color: red }", kRed, kNothing, kRed},
        {"a { color: red } p", kRed, kNothing, kNothing},
    };
    expectRows(rows);
}

TEST(StyleSheetParser, StarsAlone)
{
    const SheetRow rows[] = {
        {"* { color: red }", kNothing, kNothing, kNothing},
        {"*{color:red} p{color:red}", kNothing, kNothing, kRed},
        {"* * { color: red }", kRed, kRed, kRed},
        {"* > { color: red }", kRed, kRed, kRed},
        {"* + * { color: red }", kRed, kRed, kRed},
        {"a * { color: red }", kRed, kNothing, kNothing},
        {"a *{color:red}", kRed, kNothing, kNothing},
    };
    expectRows(rows);
    SheetDocument document("div * { color: red }");
    EXPECT_EQ(document.rulesFor("div"), kRed);
}

TEST(StyleSheetParser, StrayBraceTakesTheNextRule)
{
    const SheetRow rows[] = {
        {"} p { color: red } a{color:red}", kRed, kNothing, kNothing},
        {"b{color:red} } p{color:red} a{color:red}", kRed, kRed, kNothing},
        {"}} a{color:red} b{color:red}", kRed, kRed, kNothing},
        {"}}} a{color:red} b{color:red}", kNothing, kRed, kNothing},
    };
    expectRows(rows);
}

TEST(StyleSheetParser, JunkTakesTheRestOfItsBlock)
{
    for (const char* junk : {"-->", "<!--", "}", ";", ":", "||", "1", "1px", "'x'", "url(x)", "x(",
             "&", "!", "!important", "#", "(", ")", "]", ",", ">", "+", "~", "=", "~=", "\"x"}) {
        const std::string text = "b{color:red}" + std::string(junk) + " p{color:red}a{color:red}";
        SheetDocument document(text);
        EXPECT_EQ(document.rulesFor("b"), kRed) << text;
        EXPECT_EQ(document.rulesFor("p"), kNothing) << text;
        EXPECT_EQ(document.rulesFor("a"), std::string_view(junk) == "\"x" ? kNothing : kRed)
            << text;
    }
}

TEST(StyleSheetParser, Declarations)
{
    SheetDocument document;
    struct Row {
        const char* text;
        const char* declarations;
    };
    const Row rows[] = {
        {"", ""},
        {"color:red", "color color ff"},
        {" color : red ", "color color ff"},
        {"color:red;font-size:12px", "color color ff; font-size 12px"},
        {"color:red; font-size: 12px ;", "color color ff; font-size 12px"},
        {"COLOR:RED", "color color ff"},
        {"color:red; color:blue", "color color ff0000"},
        {"color:red !important; color:blue", "color color ff0000"},
        {"color:red; color:nosuchcolor", "color color ff"},
        {"color:red; color:", "color color ff"},
        {"color:red; color", "color color ff"},
        {"color:red; nosuchproperty: 1; width: 2px", "color color ff; width 2px"},
        {"color:/* ; */red", "color color ff"},
        {"color:red}font-size:12px", "color color ff"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(document.attribute(row.text), written(row.declarations)) << row.text;
}

TEST(StyleSheetParser, AStyleAttributeEndsAtItsEnd)
{
    SheetDocument document;
    EXPECT_EQ(document.attribute("color: red"), kRed);
    EXPECT_EQ(document.attribute("color: red; { width: 2px }"), kRed);
    // Nothing of one text is left for the next.
    EXPECT_EQ(document.attribute("width: 2px; color: url("), written("width 2px"));
    EXPECT_EQ(document.attribute("color: red"), kRed);
}

TEST(StyleSheetParser, LoneSemicolonEndsTheBlock)
{
    SheetDocument document(
        "p { color: red;; font-size: 12px } a { color: red } b { ; color: red } i { color: red }");
    EXPECT_EQ(document.rulesFor("p"), kRed);
    // What follows is a failed selector up to the brace.
    EXPECT_EQ(document.rulesFor("a"), kRed);
    EXPECT_EQ(document.rulesFor("b"), kNothing);
    EXPECT_EQ(document.rulesFor("i"), kRed);
    EXPECT_EQ(document.attribute("color: red;; width: 2px"), kRed);
    EXPECT_EQ(document.attribute("; color: red"), kNothing);
    EXPECT_EQ(document.attribute("color: red; ; width: 2px"), kRed);
}

TEST(StyleSheetParser, NameWithoutColonCostsOneToken)
{
    SheetDocument document;
    struct Row {
        const char* text;
        const char* declarations;
    };
    const Row rows[] = {
        {"color red; width: 2px", ""}, // "red" is gone, and the semicolon stands alone
        {"color red width: 2px", "width 2px"},
        {"color; width: 2px", "width 2px"},
        {"color ; width: 2px", "width 2px"},
        {"color width: 2px; height: 3px", "height 3px"}, // ":" is bad, up to the ";"
        {"color", ""},
        {"color }", ""},
        {"color ( width: 2px", "width 2px"},
        {"color { width: 2px", "width 2px"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(document.attribute(row.text), written(row.declarations)) << row.text;
    // A brace stays, and ends the block.
    const SheetRow sheets[] = {{"a{color}b{color:red}", kNothing, kRed, kNothing},
        {"a{width:2px;color}b{color:red}", written("width 2px"), kRed, kNothing}};
    expectRows(sheets);
}

TEST(StyleSheetParser, ImportantCountsInFrontOfASemicolonOnly)
{
    SheetDocument document;
    struct Row {
        const char* text;
        const char* declarations;
    };
    const Row rows[] = {
        {"color: red !important;", "color color ff!"},
        {"color: red!important;", "color color ff!"},
        {"color: red ! /* */ important ;", "color color ff!"},
        {"color: red !IMPORTANT; width: 2px", "color color ff!; width 2px"},
        {"color: red !important", "color color ff"},
        {"color: red !important }", "color color ff"},
        {"color: red !important x;", "color color ff"},
        {"color: red !important !important;", "color color ff!"},
        {"color: !important red;", "color color ff"},
        {"color: !important;", ""},
        {"margin: 1px !important;",
            "margin-top 1px!; margin-right 1px!; margin-bottom 1px!; margin-left 1px!"},
        // Inside brackets as well.
        {"color: red (!important; );", "color color ff!"},
        {"color: red (!important);", "color color ff"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(document.attribute(row.text), written(row.declarations)) << row.text;
    const SheetRow sheets[] = {{"p { color: red !important } a { color: red !important; }",
        written("color color ff!"), kNothing, kRed}};
    expectRows(sheets);
}

TEST(StyleSheetParser, BadDeclarationTakesAToken)
{
    SheetDocument document;
    struct Row {
        const char* text;
        const char* declarations;
    };
    const Row rows[] = {
        {"*zoom: 1; color: red", "color color ff"},
        {"*zoom: 1;color: red", ""}, // the name is gone, and ":" is bad to the end
        {"*zoom: 1;color: red; width: 2px", "width 2px"},
        {"*zoom: 1;;color: red", "color color ff"}, // the second semicolon is what goes
        {"*zoom: 1; ;color: red", ""},
        {"*zoom: 1;*x: 1; color: red", "color color ff"}, // a declaration of "x"
        {"*zoom: 1;/**/color: red", ""},
        {"1; color: red", "color color ff"},
        {"*zoom", ""},
        {"*zoom:1;", ""},
        {"*zoom:1;color", ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(document.attribute(row.text), written(row.declarations)) << row.text;
    // A brace does not end the block of a bad declaration.
    const SheetRow sheets[] = {
        {"a { *zoom: 1; color: red }", kRed, kNothing, kNothing},
        {"a { *zoom: 1;color: red }", kNothing, kNothing, kNothing},
        {"a { *zoom: 1 } b { color: red } p{color:blue}", kRed, kNothing, kBlue},
        {"a { *zoom: 1;} b { color: red } p{color:blue}", kRed, kNothing, kBlue},
        {"a { *zoom: 1 } b { color: red; width: 2px } p{color:blue}",
            written("color color ff; width 2px"), kNothing, kBlue},
    };
    expectRows(sheets);
}

TEST(StyleSheetParser, BracketsKeepWhatWouldEndTheValue)
{
    SheetDocument document;
    struct Row {
        const char* text;
        const char* declarations;
    };
    const Row rows[] = {
        {"color: red (;); width: 2px", "color color ff; width 2px"},
        {"color: red [;]; width: 2px", "color color ff; width 2px"},
        {"color: red {;}; width: 2px", "color color ff; width 2px"},
        {"color: red x(;); width: 2px", "color color ff; width 2px"},
        {"color: red url(x y ; ) ; width: 2px", "color color ff; width 2px"},
        {"color: red url(x y ; width: 1px ) ; height: 2px", "color color ff; height 2px"},
        {"color: red ({[;]}); width: 2px", "color color ff; width 2px"},
        // Any closer closes what is open.
        {"color: red (;]; width: 2px", "color color ff; width 2px"},
        {"color: red (;}; width: 2px", "color color ff; width 2px"},
        {"color: red [;); width: 2px", "color color ff; width 2px"},
        {"color: red {;); width: 2px", "color color ff; width 2px"},
        // What is not closed takes the rest.
        {"color: red (; width: 2px", "color color ff"},
        {"color: red ((;); width: 2px", "color color ff"},
        // One closer too many closes nothing.
        {"color: red ); width: 2px", "color color ff; width 2px"},
        {"color: red ]; width: 2px", "color color ff; width 2px"},
        {"color: red )(; ); width: 2px", "color color ff; width 2px"},
        {"color: rgb(0,0,255); width: 2px", "color color ff0000; width 2px"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(document.attribute(row.text), written(row.declarations)) << row.text;
    const SheetRow sheets[] = {
        {"a { color: red ( } ; b { color: red } p{color:red}", kRed, kNothing, kRed},
        {"a { color: red { } ; width: 2px } p{color:red}", written("color color ff; width 2px"),
            kNothing, kRed},
    };
    expectRows(sheets);
}

TEST(StyleSheetParser, ManyBracketsAreCounted)
{
    SheetDocument document;
    for (const std::size_t count : {31U, 32U, 33U, 64U, 65U, 1'000U}) {
        const std::string text = "color: red " + std::string(count, '(') + ';'
            + std::string(count, ')') + "; width: 2px";
        EXPECT_EQ(document.attribute(text), written("color color ff; width 2px")) << count;
        const std::string open = "color: red " + std::string(count, '(') + ';'
            + std::string(count - 1, ')') + "; width: 2px";
        EXPECT_EQ(document.attribute(open), kRed) << count;
    }
}

TEST(StyleSheetParser, ManyRules)
{
    std::string text;
    for (int i = 0; i < 20'000; ++i)
        text += ".c" + std::to_string(i) + ", b.d" + std::to_string(i)
            + " { color: red; width: " + std::to_string(i) + "px }\n";
    SheetDocument document(text);
    EXPECT_EQ(document.rulesFor("p", u"c0"), written("color color ff; width 0px"));
    EXPECT_EQ(document.rulesFor("p", u"c19999"), written("color color ff; width 19999px"));
    EXPECT_EQ(document.rulesFor("b", u"d19999 c5"), written("color color ff; width 19999px"));
    EXPECT_EQ(document.rulesFor("p", u"c20000"), kNothing);
}

TEST(StyleSheetParser, LongSelectors)
{
    for (const int parts : {1'000, 100'000}) {
        std::string text = "p";
        for (int i = 0; i < parts; ++i)
            text += i % 2 == 0 ? " .x" : "> a";
        SheetDocument document(text + ",b{color:red}");
        EXPECT_EQ(document.rulesFor("b"), kRed);
        EXPECT_EQ(document.rulesFor("a"), kNothing);
        std::string conditions = "a";
        for (int i = 0; i < parts; ++i)
            conditions += ".x:not(b)";
        document.parse(conditions + "{width:2px}");
        EXPECT_EQ(document.rulesFor("a", u"x"), written("width 2px"));
    }
}

TEST(StyleSheetParser, LongDeclarations)
{
    SheetDocument document;
    const std::string words = [] {
        std::string many;
        while (many.size() < 1'000'000)
            many += "red ,(x) ";
        return many;
    }();
    EXPECT_EQ(document.attribute("color: " + words + "; width: 2px"),
        written("color color ff; width 2px"));
    EXPECT_EQ(document.attribute(words), kNothing);
    const std::string name(1'000'000, 'x');
    EXPECT_EQ(document.attribute(name + ": red; width: 2px"), written("width 2px"));
    EXPECT_EQ(document.attribute("color: " + name + "; width: 2px"), written("width 2px"));
}

TEST(StyleSheetParser, DeepBrackets)
{
    for (const char* bracket : {"(", "[", "{", "x(", "url(x y "}) {
        std::string text;
        for (int i = 0; i < 100'000; ++i)
            text += bracket;
        SheetDocument document;
        EXPECT_EQ(document.attribute("color: red " + text), kRed);
        document.parse("a { color: red " + text + "} b { color: red }");
        EXPECT_EQ(document.rulesFor("a"), kRed) << bracket;
        document.parse(text + "} p { color: red }");
        document.parse("@media " + text + "} p { color: red }");
    }
}

TEST(StyleSheetParser, ManyTexts)
{
    SheetDocument document;
    for (int i = 0; i < 5'000; ++i)
        document.parse(
            "a { width: " + std::to_string(i) + "px } .c" + std::to_string(i) + " { color: red }");
    EXPECT_EQ(document.rulesFor("a"), written("width 4999px"));
    EXPECT_EQ(document.rulesFor("b", u"c77"), kRed);
}

// Each failed allocation leaves by an exception, or, in the scanner, by the engine's own road, and
// close finds nothing freed twice and nothing lost.
TEST(StyleSheetParser, EachAllocationMayFail)
{
    const std::string text = "a, .x, #y > b:not(i) { color: red; margin: 1px 2px }"
                             "p { font-family: Arial; text-decoration: underline overline }"
                             "b, i, [id=x] { width: 2px } p, :foo { color: red }";
    std::uint32_t n = 1;
    for (bool hasFailed = true; hasFailed; ++n) {
        ASSERT_LT(n, 1'000U);
        SheetDocument document;
        const std::u16string units = unitsOf(text);
        hasFailed = false;
        zorvan::failNthAllocation(n);
        try {
            document.sheet.parseStyleSheet(units.data(), static_cast<std::uint32_t>(units.size()));
            const bool wasReached = zorvan::allocationsSeen() >= n;
            hasFailed = wasReached; // a value that is left out is no failure that leaves
        } catch (const std::bad_alloc&) {
            hasFailed = true;
        } catch (const UTBailOut& failure) {
            hasFailed = true;
            EXPECT_EQ(failure.code, 18U);
        }
        zorvan::clearAllocationFailure();
    }
    EXPECT_GT(n, 60U);
}

TEST(StyleSheetParser, AttributeWithoutMemoryDeclaresNothing)
{
    SheetDocument document;
    CssDeclarationList list(&document.values);
    const std::u16string text = u"color:red";
    zorvan::failNthAllocation(1);
    document.sheet.parseStyleAttribute(text.data(), static_cast<std::uint32_t>(text.size()), list);
    EXPECT_GE(zorvan::allocationsSeen(), 1U);
    zorvan::clearAllocationFailure();
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(document.attribute("color:red"), kRed);
}

} // namespace
