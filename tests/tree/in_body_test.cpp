#include "tree/in_body.h"

#include "tests/common/tree_context.h"
#include "tests/tree/mode_rules.h"
#include "tests/tree/naive_body.h"
#include "tests/tree/open_stack.h"
#include "tree/active_formatting.h"
#include "tree/insertion_modes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing_support::checkModeRules;
using testing_support::Elements;
using testing_support::expectTrees;
using testing_support::kTellingElements;
using testing_support::NaiveBody;
using testing_support::openElementsOf;
using testing_support::openOnly;
using testing_support::tokenOf;
using testing_support::TreeContext;

using enum InsertionMode;

constexpr const char* kBlocks
    = "<address> <article> <aside> <blockquote> <center> <details> <dialog> <dir> <div> <dl> "
      "<fieldset> <figcaption> <figure> <footer> <header> <hgroup> <menu> <nav> <ol> <p> "
      "<section> <summary> <ul> <h1> <h2> <h3> <h4> <h5> <h6>";
constexpr const char* kBlockEndTags
    = "</address> </article> </aside> </blockquote> </button> </center> </details> </dialog> "
      "</dir> </div> </dl> </fieldset> </figcaption> </figure> </footer> </header> </hgroup> "
      "</listing> </menu> </nav> </ol> </pre> </section> </summary> </ul> </form>";
constexpr const char* kFormatting = "<a> <b> <big> <code> <em> <font> <i> <s> <small> <strike> "
                                    "<strong> <tt> <u> <nobr>";
constexpr const char* kItemEndTags = "</li> </dd> </dt> </h1> </h2> </h3> </h4> </h5> </h6> "
                                     "</applet> </marquee> </object>";
constexpr const char* kTableParts
    = "<caption> <col> <colgroup> <frame> <head> <tbody> <td> <tfoot> <th> <thead> <tr>";

TEST(InBody, Rules)
{
    const char* const body = "html[head body]";
    const char* const inside = "html[head body[%]]";
    checkModeRules({InBody, HandleInBodyInsertion, "<body>",
        {
            {"zero", ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"space", ANSWER_USED, InBody, false, inside, "html body", ""},
            {"character", ANSWER_USED, InBody, false, inside, "html body", "framesetOk=0"},
            {"null", ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"<html>", ANSWER_USED, InBody, true, body, "html body", ""},
            {"<base> <basefont> <bgsound> <command> <link> <meta>", ANSWER_USED, InBody, false,
                inside, "html body", ""},
            {"<noframes> <style>", ANSWER_USED, Text, false, inside, "html body %",
                "original raw=1"},
            {"<script>", ANSWER_USED, InBody, false, body, "html body", ""},
            {"<title>", ANSWER_USED, Text, false, inside, "html body %", "original"},
            {"<body>", ANSWER_USED, InBody, true, body, "html body", ""},
            {"<frameset>", ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {kBlocks, ANSWER_USED, InBody, false, inside, "html body %", ""},
            {"<pre> <listing>", ANSWER_USED, InBody, false, inside, "html body %", "framesetOk=0"},
            {"<form>", ANSWER_USED, InBody, false, inside, "html body %", "form"},
            {"<li> <dd> <dt>", ANSWER_USED, InBody, false, inside, "html body %", "framesetOk=0"},
            {"<plaintext>", ANSWER_USED, InBody, false, inside, "html body %", "raw=4"},
            {"<button>", ANSWER_USED, InBody, false, inside, "html body %", "framesetOk=0"},
            {kFormatting, ANSWER_USED, InBody, false, inside, "html body %", "formatting+1"},
            {"<applet> <marquee> <object>", ANSWER_USED, InBody, false, inside, "html body %",
                "framesetOk=0 formatting+1"},
            {"<table>", ANSWER_USED, InTable, false, inside, "html body %", "framesetOk=0"},
            {"<area> <br> <embed> <img> <keygen> <wbr> <input>", ANSWER_USED, InBody, false, inside,
                "html body", "framesetOk=0"},
            {"<param> <source> <track>", ANSWER_USED, InBody, false, inside, "html body", ""},
            {"<hr>", ANSWER_USED, InBody, false, inside, "html body", "framesetOk=0"},
            {"<image>", ANSWER_USED, InBody, true, "html[head body[img]]", "html body",
                "framesetOk=0"},
            {"<isindex>", ANSWER_USED, InBody, true,
                R"-(html[head body[form[hr label[input "(input field)"] hr]]])-", "html body",
                "framesetOk=0"},
            {"<textarea>", ANSWER_USED, Text, false, inside, "html body %",
                "framesetOk=0 original raw=3"},
            {"<xmp>", ANSWER_USED, Text, false, inside, "html body %",
                "framesetOk=0 original raw=1"},
            {"<iframe>", ANSWER_USED, InBody, false, inside, "html body %", "framesetOk=0"},
            {"<noembed>", ANSWER_USED, Text, false, inside, "html body %", "original raw=1"},
            {"<select>", ANSWER_USED, InSelect, false, inside, "html body %", "framesetOk=0"},
            {"<optgroup> <option>", ANSWER_USED, InBody, false, inside, "html body %", ""},
            {"<rp> <rt>", ANSWER_USED, InBody, true, inside, "html body %", ""},
            {"<math> <svg>", ANSWER_USED, InBody, false, inside, "html body %", ""},
            {kTableParts, ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"start", ANSWER_USED, InBody, false, inside, "html body %", ""},

            {"</body>", ANSWER_USED, AfterBody, false, body, "html body", ""},
            {"</html>", ANSWER_AGAIN, AfterBody, false, body, "html body", ""},
            {kBlockEndTags, ANSWER_IGNORED, InBody, true, body, "html body", ""},
            {"</p>", ANSWER_AGAIN, InBody, true, inside, "html body %", ""},
            {kItemEndTags, ANSWER_USED, InBody, true, body, "html body", ""},
            {"</br>", ANSWER_USED, InBody, true, inside, "html body", "framesetOk=0"},
            {"end", ANSWER_IGNORED, InBody, true, body, "html body", ""},
        }});
}

TEST(InBody, RulesInAParagraph)
{
    const char* const stack = "html body p";
    const char* const same = "html[head body[p]]";
    const char* const inside = "html[head body[p[%]]]";
    const char* const behind = "html[head body[p %]]";
    checkModeRules({InBody, HandleInBodyInsertion, "<body><p>",
        {
            {"zero", ANSWER_IGNORED, InBody, true, same, stack, ""},
            {"space", ANSWER_USED, InBody, false, inside, stack, ""},
            {"character", ANSWER_USED, InBody, false, inside, stack, "framesetOk=0"},
            {"null", ANSWER_IGNORED, InBody, true, same, stack, ""},
            {"<html>", ANSWER_USED, InBody, true, same, stack, ""},
            {"<base> <basefont> <bgsound> <command> <link> <meta>", ANSWER_USED, InBody, false,
                inside, stack, ""},
            {"<noframes> <style>", ANSWER_USED, Text, false, inside, "html body p %",
                "original raw=1"},
            {"<script>", ANSWER_USED, InBody, false, same, stack, ""},
            {"<title>", ANSWER_USED, Text, false, inside, "html body p %", "original"},
            {"<body>", ANSWER_USED, InBody, true, same, stack, "framesetOk=0"},
            {"<frameset>", ANSWER_IGNORED, InBody, true, same, stack, ""},
            {kBlocks, ANSWER_USED, InBody, false, behind, "html body %", ""},
            {"<pre> <listing>", ANSWER_USED, InBody, false, behind, "html body %", "framesetOk=0"},
            {"<form>", ANSWER_USED, InBody, false, behind, "html body %", "form"},
            {"<li> <dd> <dt>", ANSWER_USED, InBody, false, behind, "html body %", "framesetOk=0"},
            {"<plaintext>", ANSWER_USED, InBody, false, behind, "html body %", "raw=4"},
            {"<button>", ANSWER_USED, InBody, false, inside, "html body p %", "framesetOk=0"},
            {kFormatting, ANSWER_USED, InBody, false, inside, "html body p %", "formatting+1"},
            {"<applet> <marquee> <object>", ANSWER_USED, InBody, false, inside, "html body p %",
                "framesetOk=0 formatting+1"},
            {"<table>", ANSWER_USED, InTable, false, behind, "html body %", "framesetOk=0"},
            {"<area> <br> <embed> <img> <keygen> <wbr> <input>", ANSWER_USED, InBody, false, inside,
                stack, "framesetOk=0"},
            {"<param> <source> <track>", ANSWER_USED, InBody, false, inside, stack, ""},
            {"<hr>", ANSWER_USED, InBody, false, behind, "html body", "framesetOk=0"},
            {"<image>", ANSWER_USED, InBody, true, "html[head body[p[img]]]", stack,
                "framesetOk=0"},
            {"<isindex>", ANSWER_USED, InBody, true,
                R"-(html[head body[p form[hr label[input "(input field)"] hr]]])-", "html body",
                "framesetOk=0"},
            {"<textarea>", ANSWER_USED, Text, false, inside, "html body p %",
                "framesetOk=0 original raw=3"},
            {"<xmp>", ANSWER_USED, Text, false, behind, "html body %",
                "framesetOk=0 original raw=1"},
            {"<iframe>", ANSWER_USED, InBody, false, inside, "html body p %", "framesetOk=0"},
            {"<noembed>", ANSWER_USED, Text, false, inside, "html body p %", "original raw=1"},
            {"<select>", ANSWER_USED, InSelect, false, inside, "html body p %", "framesetOk=0"},
            {"<optgroup> <option>", ANSWER_USED, InBody, false, inside, "html body p %", ""},
            {"<rp> <rt>", ANSWER_USED, InBody, true, inside, "html body p %", ""},
            {"<math> <svg>", ANSWER_USED, InBody, false, inside, "html body p %", ""},
            {kTableParts, ANSWER_IGNORED, InBody, true, same, stack, ""},
            {"start", ANSWER_USED, InBody, false, inside, "html body p %", ""},

            {"</body>", ANSWER_USED, AfterBody, false, same, stack, ""},
            {"</html>", ANSWER_AGAIN, AfterBody, false, same, stack, ""},
            {kBlockEndTags, ANSWER_IGNORED, InBody, true, same, stack, ""},
            {"</p>", ANSWER_USED, InBody, false, same, "html body", ""},
            {kItemEndTags, ANSWER_USED, InBody, true, same, stack, ""},
            {"</br>", ANSWER_USED, InBody, true, inside, stack, "framesetOk=0"},
            {"end", ANSWER_IGNORED, InBody, true, same, stack, ""},
        }});
}

// A formatting element that the stack has lost tells whether a rule opens it again.
TEST(InBody, RulesWithLostFormatting)
{
    const char* const same = "html[head body[p[b]]]";
    const char* const plain = "html[head body[p[b] %]]";
    const char* const formatted = "html[head body[p[b] b[%]]]";
    checkModeRules({InBody, HandleInBodyInsertion, "<body><p><b></p>",
        {
            {"zero", ANSWER_IGNORED, InBody, true, same, "html body", ""},
            {"space", ANSWER_USED, InBody, false, formatted, "html body b", ""},
            {"character", ANSWER_USED, InBody, false, formatted, "html body b", "framesetOk=0"},
            {"null", ANSWER_IGNORED, InBody, true, same, "html body", ""},
            {"<html>", ANSWER_USED, InBody, true, same, "html body", ""},
            {"<base> <basefont> <bgsound> <command> <link> <meta>", ANSWER_USED, InBody, false,
                plain, "html body", ""},
            {"<noframes> <style>", ANSWER_USED, Text, false, plain, "html body %",
                "original raw=1"},
            {"<script>", ANSWER_USED, InBody, false, same, "html body", ""},
            {"<title>", ANSWER_USED, Text, false, plain, "html body %", "original"},
            {"<body>", ANSWER_USED, InBody, true, same, "html body", ""},
            {"<frameset>", ANSWER_IGNORED, InBody, true, same, "html body", ""},
            {kBlocks, ANSWER_USED, InBody, false, plain, "html body %", ""},
            {"<pre> <listing>", ANSWER_USED, InBody, false, plain, "html body %", "framesetOk=0"},
            {"<form>", ANSWER_USED, InBody, false, plain, "html body %", "form"},
            {"<li> <dd> <dt>", ANSWER_USED, InBody, false, plain, "html body %", "framesetOk=0"},
            {"<plaintext>", ANSWER_USED, InBody, false, plain, "html body %", "raw=4"},
            {"<button>", ANSWER_USED, InBody, false, formatted, "html body b %", "framesetOk=0"},
            {kFormatting, ANSWER_USED, InBody, false, formatted, "html body b %", "formatting+1"},
            {"<applet> <marquee> <object>", ANSWER_USED, InBody, false, formatted, "html body b %",
                "framesetOk=0 formatting+1"},
            {"<table>", ANSWER_USED, InTable, false, plain, "html body %", "framesetOk=0"},
            {"<area> <br> <embed> <img> <keygen> <wbr> <input>", ANSWER_USED, InBody, false,
                formatted, "html body b", "framesetOk=0"},
            {"<param> <source> <track>", ANSWER_USED, InBody, false, plain, "html body", ""},
            {"<hr>", ANSWER_USED, InBody, false, plain, "html body", "framesetOk=0"},
            {"<image>", ANSWER_USED, InBody, true, "html[head body[p[b] b[img]]]", "html body b",
                "framesetOk=0"},
            {"<isindex>", ANSWER_USED, InBody, true,
                R"-(html[head body[p[b] form[hr b[label[input "(input field)"] hr]]]])-",
                "html body b", "framesetOk=0"},
            {"<textarea>", ANSWER_USED, Text, false, plain, "html body %",
                "framesetOk=0 original raw=3"},
            {"<xmp>", ANSWER_USED, Text, false, formatted, "html body b %",
                "framesetOk=0 original raw=1"},
            {"<iframe>", ANSWER_USED, InBody, false, plain, "html body %", "framesetOk=0"},
            {"<noembed>", ANSWER_USED, Text, false, plain, "html body %", "original raw=1"},
            {"<select>", ANSWER_USED, InSelect, false, formatted, "html body b %", "framesetOk=0"},
            {"<optgroup> <option>", ANSWER_USED, InBody, false, formatted, "html body b %", ""},
            {"<rp> <rt>", ANSWER_USED, InBody, true, plain, "html body %", ""},
            {"<math> <svg>", ANSWER_USED, InBody, false, formatted, "html body b %", ""},
            {kTableParts, ANSWER_IGNORED, InBody, true, same, "html body", ""},
            {"start", ANSWER_USED, InBody, false, formatted, "html body b %", ""},

            {"</body>", ANSWER_USED, AfterBody, false, same, "html body", ""},
            {"</html>", ANSWER_AGAIN, AfterBody, false, same, "html body", ""},
            {kBlockEndTags, ANSWER_IGNORED, InBody, true, same, "html body", ""},
            {"</p>", ANSWER_AGAIN, InBody, true, plain, "html body %", ""},
            {kItemEndTags, ANSWER_USED, InBody, true, same, "html body", ""},
            {"</b>", ANSWER_USED, InBody, true, same, "html body", "formatting-1"},
            {"</br>", ANSWER_USED, InBody, true, formatted, "html body b", "framesetOk=0"},
            {"end", ANSWER_IGNORED, InBody, true, same, "html body", ""},
        }});
}

struct FramesetRow {
    const char* markup;
    std::uint32_t framesetOk;
};

TEST(InBody, HeadingsPushEachOtherAside)
{
    for (int open = 1; open <= 6; ++open) {
        for (int next = 1; next <= 6; ++next) {
            const std::string first = "h" + std::to_string(open);
            const std::string second = "h" + std::to_string(next);
            TreeContext tree("<html><head></head><body><" + first + ">a<" + second + ">b");
            tree.build();
            EXPECT_EQ(tree.shortOutline(),
                "html[head body[" + first + R"(["a"] )" + second + R"(["b"]]])");
            EXPECT_EQ(tree.context.parseError, 1U);
        }
    }
}

TEST(InBody, OnlyTheCurrentElementIsAHeadingToPush)
{
    TreeContext tree("<html><head></head><body><h1><span><h2>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), "html[head body[h1[span[h2]]]]");
    EXPECT_EQ(tree.context.parseError, 0U);
    // A paragraph in between is closed first.
    expectTrees({{"<body><h1><p><h2>", "html[head body[h1[p] h2]]"},
        {"<body><h1><div><h2>", "html[head body[h1[div[h2]]]]"}});
}

TEST(InBody, OneLineFeedBehindPreformattedTextIsDropped)
{
    for (const std::string name : {"pre", "listing", "textarea"}) {
        for (const auto& [content, text] : {std::pair{"\na", R"(["a"])"},
                 {"\n\na", R"(["\u000aa"])"}, {"\r\na", R"(["\u000d\u000aa"])"},
                 {"a\n", R"(["a\u000a"])"}, {"\n", ""}, {"", ""}, {" \n", R"([" \u000a"])"}}) {
            TreeContext tree("<body><" + name + ">" + content);
            tree.build();
            EXPECT_EQ(tree.shortOutline(), "html[head body[" + name + text + "]]")
                << name << content;
        }
    }
    expectTrees({{"<body><xmp>\na", R"(html[head body[xmp["\u000aa"]]])"},
        {"<body><div>\na", R"(html[head body[div["\u000aa"]]])"}});
}

TEST(InBody, PreformattedTextIsMarked)
{
    for (const char* markup : {"<body><pre>", "<body><listing>", "<body><pre></div>"}) {
        TreeContext tree(markup);
        EXPECT_EQ(tree.context.preListingOpen, 0U);
        tree.build();
        EXPECT_EQ(tree.context.preListingOpen, 1U) << markup;
    }
}

TEST(InBody, OneFormAtATime)
{
    TreeContext tree("<body><form id=a><form id=b><form id=c>x");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    form id=\"a\"\n      \"x\"\n");
    EXPECT_EQ(tree.context.formElement, tree.find(ELEMENT_FORM));
    const Token token = tokenOf("<form>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_IGNORED);
    expectTrees({{"<body><form></form><form>", "html[head body[form form]]"},
        {"<p><form><p><form>", "html[head body[p form[p]]]"}});
}

TEST(InBody, ItemsEndTheItemBefore)
{
    expectTrees({
        {"<body><li>a<li>b", R"(html[head body[li["a"] li["b"]]])"},
        {"<body><li><div><li>", "html[head body[li[div] li]]"},
        {"<body><li><address><p><li>", "html[head body[li[address[p]] li]]"},
        {"<body><li><center><li>", "html[head body[li[center[li]]]]"},
        {"<body><li><table><li>", "html[head body[li[li table]]]"},
        {"<body><ul><li>a<ul><li>b<li>c</ul><li>d",
            R"(html[head body[ul[li["a" ul[li["b"] li["c"]]] li["d"]]]])"},
        {"<body><lh>a<li>b<lh>c<li>d", R"(html[head body[lh["a"] li["b" lh["c"] li["d"]]]])"},
        {"<body><dd>x<dt>y", R"(html[head body[dd["x"] dt["y"]]])"},
        {"<body><dt>x<dd>y<dd>z", R"(html[head body[dt["x"] dd["y"] dd["z"]]])"},
        {"<body><dd><li><dd>", "html[head body[dd[li[dd]]]]"},
        {"<p>a<li>b", R"(html[head body[p["a"] li["b"]]])"},
    });
}

TEST(InBody, ItemsAgainstTheWalk)
{
    TreeContext tree;
    for (const std::uint32_t item : Elements{ELEMENT_LI, ELEMENT_DD, ELEMENT_DT}) {
        for (const std::uint32_t open : Elements{ELEMENT_LI, ELEMENT_LH, ELEMENT_DD, ELEMENT_DT}) {
            for (std::uint32_t between = 1; between <= 135; ++between) {
                for (const std::uint32_t top : kTellingElements) {
                    const Elements elements
                        = {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_DIV, open, between, top};
                    NaiveBody naive(elements);
                    naive.startItem(item);
                    openOnly(elements, tree);
                    tree.context.framesetOk = 1;
                    const Token token = SyntheticStartTag(item);
                    ASSERT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
                    ASSERT_EQ(openElementsOf(tree), naive.stack)
                        << item << ' ' << open << ' ' << between << ' ' << top;
                    ASSERT_EQ(tree.context.parseError, naive.parseError ? 1U : 0U);
                    ASSERT_EQ(tree.context.framesetOk, 0U);
                }
            }
        }
    }
}

TEST(InBody, ItemsInDeepNestingTakeLinearTime)
{
    constexpr int kDepth = 20'000;
    std::string markup = "<body><li>";
    for (int i = 0; i < kDepth; ++i)
        markup += "<span>";
    for (int i = 0; i < kDepth; ++i)
        markup += "<ul><li><dd>";
    TreeContext tree(markup);
    tree.build();
    EXPECT_EQ(tree.stack().getCount(), 3 + 4 * kDepth);
}

TEST(InBody, PlaintextGoesOnAsMarkup)
{
    TreeContext tree("<p>a<plaintext>b<i>c</i></plaintext>d");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[p["a"] plaintext["b" i["c"]] "d"]])");
    EXPECT_EQ(tree.context.insertionMode, static_cast<std::uint32_t>(InBody));
    EXPECT_EQ(tree.context.framesetOk, 0U);
}

TEST(InBody, ButtonEndsTheButtonBefore)
{
    TreeContext tree("<body><button id=a>x<button id=b>y");
    tree.build();
    EXPECT_EQ(tree.outline(),
        "html\n  head\n  body\n    button id=\"a\"\n      \"x\"\n    button id=\"b\"\n      "
        "\"y\"\n");
    EXPECT_EQ(tree.context.parseError, 1U);
    tree.context.framesetOk = 1;
    const Token token = tokenOf("<button>");
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_AGAIN);
    EXPECT_EQ(tree.context.framesetOk, 1U);
    EXPECT_EQ(tree.context.currentNode, tree.find(ELEMENT_BODY));
    expectTrees({{"<body><button><div><button>", "html[head body[button[div] button]]"},
        {"<body><button><object><button>", "html[head body[button[object[button]]]]"}});
}

TEST(InBody, FormattingElementsAreListed)
{
    const char* const names[] = {"a", "b", "big", "code", "em", "font", "i", "s", "small", "strike",
        "strong", "tt", "u", "nobr"};
    for (const std::string name : names) {
        TreeContext tree("<p><" + name + "></p>x");
        tree.build();
        EXPECT_EQ(tree.shortOutline(), "html[head body[p[" + name + "] " + name + R"(["x"]]])");
        EXPECT_EQ(tree.context.activeFormatting->getCount(), 1);
    }
    TreeContext tree("<p><span></p>x");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[p[span] "x"]])");
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 0);
}

TEST(InBody, NobrEndsTheNobrBefore)
{
    TreeContext tree("<html><head></head><body><nobr>a<nobr>b");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[nobr["a"] nobr["b"]]])");
    EXPECT_EQ(tree.context.parseError, 1U);
    EXPECT_EQ(tree.context.activeFormatting->getCount(), 1);
    expectTrees({
        // What the end of the first one closes is opened again.
        {"<body><nobr><i>a<nobr>b", R"(html[head body[nobr[i["a"]] i[nobr["b"]]]])"},
        {"<body><nobr><object>a<nobr>b", R"(html[head body[nobr[object["a" nobr["b"]]]]])"},
        // One that was lost is opened again first, and ended.
        {"<p><nobr>a</p><nobr>b", R"(html[head body[p[nobr["a"]] nobr nobr["b"]]])"},
    });
}

TEST(InBody, EmbeddedContentKeepsFormattingOut)
{
    for (const std::string name : {"applet", "marquee", "object"}) {
        TreeContext tree("<p><b></p><" + name + "><p><i></p>x</" + name + ">y");
        tree.build();
        EXPECT_EQ(tree.shortOutline(), "html[head body[p[b] b[" + name + R"([p[i] i["x"]] "y"]]])");
        EXPECT_EQ(tree.context.framesetOk, 0U);
    }
}

TEST(InBody, TableAlwaysEndsAParagraph)
{
    TreeContext tree("<p>a<table>");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[p["a"] table]])");
}

TEST(InBody, VoidElementsAreClosedAtOnce)
{
    const FramesetRow rows[] = {{"<area>", 0}, {"<br>", 0}, {"<embed>", 0}, {"<img>", 0},
        {"<keygen>", 0}, {"<wbr>", 0}, {"<input>", 0}, {"<param>", 1}, {"<source>", 1},
        {"<track>", 1}, {"<hr>", 0}, {"<image>", 0}, {"<meta>", 1}};
    for (const FramesetRow& row : rows) {
        TreeContext tree("<p>" + std::string(row.markup));
        tree.build();
        EXPECT_EQ(tree.stack().getCount(), row.markup == std::string("<hr>") ? 2 : 3) << row.markup;
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.markup;
    }
}

TEST(InBody, SpacerIsNoVoidElement)
{
    expectTrees({{"<body><spacer>a", R"(html[head body[spacer["a"]]])"}});
}

TEST(InBody, HiddenInputsKeepFramesetOk)
{
    const FramesetRow rows[] = {{"<input type=hidden>", 1}, {"<input type=HIDDEN>", 1},
        {"<input type='hidden'>", 1}, {"<input>", 0}, {"<input type>", 0}, {"<input type=''>", 0},
        {"<input type=hidde>", 0}, {"<input type=hiddenn>", 0}, {"<input type=text>", 0},
        {"<input type=hidden type=text>", 1}, {"<input type=' hidden'>", 0}};
    for (const FramesetRow& row : rows) {
        TreeContext tree("<p>" + std::string(row.markup));
        tree.build();
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.markup;
    }
}

TEST(InBody, SyntheticInputHasNoTypeOfATagBeforeIt)
{
    TreeContext tree("<p><input type=hidden>");
    tree.build();
    ASSERT_EQ(tree.context.tagAttributeCount, 1U);
    ASSERT_EQ(tree.context.framesetOk, 1U);
    const Token token = SyntheticStartTag(ELEMENT_INPUT);
    HandleInBodyInsertion(&token, tree.context);
    EXPECT_EQ(tree.context.framesetOk, 0U);
}

TEST(InBody, FramesetOkFallsWithWhatIsSeen)
{
    const FramesetRow rows[] = {{"<textarea>", 0}, {"<xmp>", 0}, {"<noembed>", 1}, {"<style>", 1},
        {"<title>", 1}, {"<div>", 1}, {"<h1>", 1}, {"<form>", 1}, {"<plaintext>", 1}, {"<b>", 1},
        {"<nobr>", 1}, {"<option>", 1}, {"<svg>", 1}, {"<span>", 1}, {"<td>", 1}, {"<ul>", 1},
        {"<pre>", 0}, {"<listing>", 0}, {"<li>", 0}, {"<dd>", 0}, {"<dt>", 0}, {"<button>", 0},
        {"<applet>", 0}, {"<marquee>", 0}, {"<object>", 0}, {"<table>", 0}, {"<iframe>", 0},
        {"<select>", 0}, {"<isindex>", 0}, {" \t\n", 1}, {"x", 0}, {"&nbsp;", 0}};
    for (const FramesetRow& row : rows) {
        TreeContext tree("<p>" + std::string(row.markup));
        tree.build();
        EXPECT_EQ(tree.context.framesetOk, row.framesetOk) << row.markup;
    }
}

TEST(InBody, ImageAndImgAreTheSameNode)
{
    TreeContext tree("<image id=a><img id=b>");
    tree.build();
    EXPECT_EQ(tree.outline(), "html\n  head\n  body\n    img id=\"a\"\n    img id=\"b\"\n");
    EXPECT_NE(dynamic_cast<HtmlImgNodeData*>(tree.find(ELEMENT_IMG)->data), nullptr);
}

TEST(InBody, ImageKeepsItsFlags)
{
    TreeContext tree("<table>");
    tree.build();
    Token token = tokenOf("<image>");
    token.flags |= TOKEN_FOSTER;
    EXPECT_EQ(HandleInBodyInsertion(&token, tree.context), ANSWER_USED);
    EXPECT_EQ(tree.shortOutline(), "html[head body[img table]]");
}

TEST(InBody, XmpEndsAParagraphAndNoembedDoesNot)
{
    expectTrees({{"<p>a<xmp><b></xmp>c", R"(html[head body[p["a"] xmp["<b>"] "c"]])"},
        {"<p>a<noembed><b></noembed>c", R"(html[head body[p["a" noembed["<b>"] "c"]]])"}});
}

TEST(InBody, IframeContentIsMarkup)
{
    expectTrees({{"<body><iframe><b>x</b></iframe>", R"(html[head body[iframe[b["x"]]]])"},
        {"<p><iframe></p>a</iframe>", R"(html[head body[p[iframe] "a"]])"}});
}

TEST(InBody, SelectGoesOnByTheModeItIsMetIn)
{
    for (std::uint32_t mode = 1; mode <= 22; ++mode) {
        TreeContext tree("<body>");
        tree.build();
        const auto metIn = static_cast<InsertionMode>(mode);
        SetInsertionMode(metIn, tree.context);
        const Token token = tokenOf("<select>");
        HandleInBodyInsertion(&token, tree.context);
        const bool isInTable = metIn == InTable || metIn == InCaption || metIn == InTableBody
            || metIn == InRow || metIn == InCell;
        EXPECT_EQ(tree.context.insertionMode,
            static_cast<std::uint32_t>(isInTable ? InSelectInTable : InSelect))
            << mode;
    }
}

TEST(InBody, OptionsOutsideASelect)
{
    expectTrees({{"<body><option>a<option>b", R"(html[head body[option["a"] option["b"]]])"},
        {"<body><option>a<optgroup>b", R"(html[head body[option["a"] optgroup["b"]]])"},
        {"<body><optgroup><optgroup>", "html[head body[optgroup[optgroup]]]"},
        {"<body><option><b><option>", "html[head body[option[b[option]]]]"}});
}

TEST(InBody, RubyPartsEndEachOther)
{
    expectTrees(
        {{"<body><ruby>a<rt>b<rp>c<rt>d", R"(html[head body[ruby["a" rt["b"] rp["c"] rt["d"]]]])"},
            {"<body><ruby><p>a<rt>b", R"(html[head body[ruby[p["a"] rt["b"]]]])"},
            {"<body><rt>a<rt>b", R"(html[head body[rt["a" rt["b"]]]])"},
            {"<body><ruby><rt><object><rt>", "html[head body[ruby[rt[object[rt]]]]]"},
            {"<body><ruby><rt><b><rt>", "html[head body[ruby[rt[b[rt]]]]]"}});
}

TEST(InBody, RubyPartsKnowTheirRuby)
{
    TreeContext tree("<html><head></head><body><ruby><rt>");
    tree.build();
    EXPECT_EQ(tree.context.parseError, 0U);
}

TEST(InBody, SelfClosingCountsForForeignElementsOnly)
{
    expectTrees({{"<body><svg/>a", R"(html[head body[svg "a"]])"},
        {"<body><math/>a", R"(html[head body[math "a"]])"},
        {"<body><svg>a", R"(html[head body[svg["a"]]])"},
        {"<body><div/>a", R"(html[head body[div["a"]]])"},
        {"<body><span/>a", R"(html[head body[span["a"]]])"}});
}

TEST(InBody, NoscriptContentIsBodyContent)
{
    expectTrees({{"<body><noscript><b>x</b></noscript>", R"(html[head body[noscript[b["x"]]]])"}});
}

TEST(InBody, ScriptIsSkipped)
{
    TreeContext tree("<p>a<script>b<p>c</script>d");
    tree.build();
    EXPECT_EQ(tree.shortOutline(), R"(html[head body[p["ad"]]])");
    EXPECT_EQ(tree.context.parseError, 1U);
}

TEST(InBody, StyleFeedsTheStyleSheet)
{
    // Its text goes to the parser, as that of one in the head does.
    expectTrees({{"<p>a<style>b{}</style>c", R"(html[head body[p["a" style["b{}"] "c"]]])"}});
}

TEST(InBody, TagsThatActAsOthersHaveNoFosterBit)
{
    // The paragraph of the end tag stays in the table.
    expectTrees({{"<body><table></p>", "html[head body[table[p]]]"}});
}

} // namespace
