#include "style/selector.h"

#include "tests/style/plain_selector.h"
#include "tests/style/selector_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace testing_support;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kRandomTrees = 20'000;
#else
constexpr int kRandomTrees = 200'000;
#endif

/// A small document: html with a text and two div, each of which holds a, text, b, p.
class SelectorTest : public testing::Test {
protected:
    SelectorTest()
        : html(document.add(ELEMENT_HTML))
        , text(document.addText(&html))
        , first(document.add(ELEMENT_DIV, &html))
        , firstA(document.add(ELEMENT_A, &first))
        , firstText(document.addText(&first))
        , firstB(document.add(ELEMENT_B, &first))
        , firstP(document.add(ELEMENT_P, &first))
        , second(document.add(ELEMENT_DIV, &html))
        , secondA(document.add(ELEMENT_A, &second))
        , inner(document.add(ELEMENT_I, &secondA))
    {
        document.set(first, ATTRIBUTE_CLASS, u"x");
    }

    bool selects(std::string_view selector, const HtmlTreeNode& node)
    {
        return testing_support::selects(selector, node, document.root());
    }

    SelectorTree document;
    HtmlTreeNode& html;
    HtmlTreeNode& text;
    HtmlTreeNode& first;
    HtmlTreeNode& firstA;
    HtmlTreeNode& firstText;
    HtmlTreeNode& firstB;
    HtmlTreeNode& firstP;
    HtmlTreeNode& second;
    HtmlTreeNode& secondA;
    HtmlTreeNode& inner;
};

TEST_F(SelectorTest, Combinators)
{
    struct Row {
        const char* selector;
        const HtmlTreeNode& node;
        bool isMeant;
    };
    const Row rows[] = {
        {"div b", firstB, true},
        {"html b", firstB, true},
        {"html div b", firstB, true},
        {"p b", firstB, false},
        {"b b", firstB, false},
        {"div > b", firstB, true},
        {"div>b", firstB, true},
        {"html > b", firstB, false},
        {"html > div > b", firstB, true},
        {"html > div b", firstB, true},
        {"html div > b", firstB, true},
        {"b + p", firstP, true},
        {"b+p", firstP, true},
        {"a + p", firstP, false},
        {"a + b", firstB, false}, // a text stands between them
        {"a ~ b", firstB, true},
        {"a ~ p", firstP, true},
        {"a~p", firstP, true},
        {"p ~ b", firstB, false},
        {"p ~ p", firstP, false},
        {"a ~ b + p", firstP, true},
        {"a + b ~ p", firstP, false},
        {"div + div", second, true},
        {"div ~ div > a > i", inner, true},
        {".x ~ div i", inner, true},
        {"div + .x i", inner, false},
        {"html i", inner, true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(selects(row.selector, row.node), row.isMeant) << row.selector;
}

// A text between two elements comes between a parent and its child nowhere.
TEST_F(SelectorTest, ATextBetweenDoesNotPartADescendantFromItsAncestor)
{
    EXPECT_TRUE(selects("div b", firstB));
    EXPECT_TRUE(selects("div > b", firstB));
}

TEST_F(SelectorTest, TextsAreSiblings)
{
    EXPECT_FALSE(selects("a + b", firstB));
    EXPECT_TRUE(selects("* + b", firstB));
    EXPECT_TRUE(selects("* ~ a", secondA) == false);
    EXPECT_TRUE(selects("* + div", first));
}

// On the way, a choice that has led nowhere is made anew.
TEST_F(SelectorTest, EarlierChoicesAreTakenBack)
{
    EXPECT_TRUE(selects("html > div i", inner));
    EXPECT_TRUE(selects("html div > a i", inner));
    HtmlTreeNode& deeper = document.add(ELEMENT_DIV, &inner);
    HtmlTreeNode& deepest = document.add(ELEMENT_B, &deeper);
    // The nearest div is the child of no html.
    EXPECT_TRUE(selects("html > div b", deepest));
    EXPECT_FALSE(selects("html > div > b", deepest));
    HtmlTreeNode& row = document.add(ELEMENT_UL, &html);
    for (const ZVHTMLElement element : {ELEMENT_A, ELEMENT_B, ELEMENT_I, ELEMENT_B, ELEMENT_P})
        document.add(element, &row);
    EXPECT_TRUE(selects("a + b ~ p", *row.lastChild));
    EXPECT_TRUE(selects("a ~ b + p", *row.lastChild));
    EXPECT_TRUE(selects("ul > a ~ b ~ b + p", *row.lastChild));
    EXPECT_FALSE(selects("div > a ~ b ~ b + p", *row.lastChild));
}

TEST_F(SelectorTest, WhateverStandsOnTheRootMatchesAsTheOnlyOneLeft)
{
    // The sequence on the root is let through, but it goes no further from there.
    EXPECT_TRUE(selects("p > html", html));
    EXPECT_FALSE(selects("div > p > html", html));
    EXPECT_FALSE(selects("div p > html", html));
    EXPECT_FALSE(selects("div + p > html", html));
    EXPECT_FALSE(selects("div ~ p > html", html));
    EXPECT_TRUE(selects("p > html > div", first));
    EXPECT_TRUE(selects("p > * > div", first));
    EXPECT_TRUE(selects("p > html i", inner));
    EXPECT_FALSE(selects("p html", html));
    EXPECT_FALSE(selects("* html", html));
    EXPECT_FALSE(selects("p > div", first));
    // What never matches is not asked either.
    EXPECT_TRUE(selects(":hover > html", html));
    EXPECT_TRUE(selects("[title] > html", html));
}

TEST(Selector, WhateverStandsOnTheRootMatches)
{
    SelectorTree document;
    HtmlTreeNode& html = document.add(ELEMENT_HTML);
    EXPECT_TRUE(selects("p > html", html, document.root()));
    EXPECT_FALSE(selects("p html", html, document.root()));
}

TEST(Selector, TheRootIsMeantByNothing)
{
    SelectorTree document;
    for (const char* text : {"* > *", "* *", ":not(p)", "nosuchname"})
        EXPECT_FALSE(selects(text, *document.root(), document.root())) << text;
}

TEST_F(SelectorTest, EmptySequencesMatchEverything)
{
    for (const HtmlTreeNode* node : {&html, &first, &firstB, &inner}) {
        for (const char* selector : {"* *", "* + *", "* > ", "* ~ "})
            EXPECT_TRUE(selects(selector, *node)) << selector;
    }
    EXPECT_TRUE(selects("* b", firstB));
    EXPECT_FALSE(selects("* html", html));
    // The text in front stands for the star.
    EXPECT_TRUE(selects("* + b", firstB));
    EXPECT_FALSE(selects("* + a", firstA));
}

TEST_F(SelectorTest, PseudoElementsMatchNothing)
{
    for (const char* selector : {"p:first-line", "p::first-line", "p:first-letter", "p:before",
             "p::after", "p::selection", "div p:before"}) {
        EXPECT_FALSE(selects(selector, firstP)) << selector;
        EXPECT_FALSE(ReadSelector(std::string(selector) + '{').selector.canMatch()) << selector;
    }
    EXPECT_TRUE(selects("p", firstP));
}

TEST(Selector, CanMatchUnlessItsLastSequenceNeverDoes)
{
    struct Row {
        const char* text;
        bool canMatch;
    };
    const Row rows[] = {{"p", true}, {"* *", true}, {"p:hover", false}, {"p:not(.x)", false},
        {"[title]", false}, {"p:lang(en)", false}, {"p:nth-child(2n+1)", false},
        {"nosuchname", false}, {":not(nosuchname)", true}, {"a:hover > html", true},
        {"nosuchname + p", true}, {".x#y[id]:first-child:not(p)", true}};
    for (const Row& row : rows) {
        const ReadSelector read(std::string(row.text) + '{');
        ASSERT_FALSE(read.isError) << row.text;
        EXPECT_EQ(read.selector.canMatch(), row.canMatch) << row.text;
    }
    EXPECT_FALSE(Selector(1).canMatch());
}

TEST(Selector, Specificities)
{
    struct Row {
        const char* text;
        std::uint32_t specificity;
    };
    const Row rows[] = {
        {"* *", 0},
        {"p", 1},
        {"div p", 2},
        {"p.x", 257},
        {"#a", 65'536},
        {"p:first-child", 257},
        {"p::first-line", 2},
        {"p:not(.x)", 257},
        {"p:not(#x)", 65'537},
        {"p:not(a)", 2},
        {"p:not(*)", 1},
        {"p:lang(en)", 257},
        {"[title]", 256},
        {"[class~=x]", 256},
        {"html > body div.a.b#c ~ p[id]:link", 66'308 + 256},
    };
    for (const Row& row : rows) {
        const ReadSelector read(std::string(row.text) + '{');
        ASSERT_FALSE(read.isError) << row.text;
        EXPECT_EQ(read.selector.getSpecificity(), row.specificity) << row.text;
        EXPECT_EQ(read.selector.specificity, row.specificity);
    }
}

// The fields are plain sums: what is many carries over.
TEST(Selector, ManyClassesWeighAsMuchAsAnId)
{
    std::string classes;
    for (int i = 0; i < 256; ++i)
        classes += ".x";
    const ReadSelector many(classes + '{');
    const ReadSelector id("#x{");
    EXPECT_EQ(many.selector.getSpecificity(), id.selector.getSpecificity());
    const ReadSelector more(classes + ".x{", 1);
    const ReadSelector later("#x{", 2);
    EXPECT_EQ(more.selector.compareTo(later.selector), 1);
}

TEST(Selector, SpecificityWrapsAt32Bits)
{
    std::string ids;
    for (int i = 0; i < 65'537; ++i)
        ids += "#x";
    const ReadSelector read(ids + " p{");
    EXPECT_EQ(read.selector.getSpecificity(), 65'537U);
    // All ones is what stands for a specificity that is not known yet; then it is summed up again.
    Selector& selector = const_cast<Selector&>(read.selector);
    selector.specificity = 0xFFFFFFFF;
    EXPECT_EQ(selector.getSpecificity(), 65'537U);
}

TEST(Selector, ComparesBySpecificityAndThenByOrder)
{
    struct Row {
        const char* text;
        std::int32_t order;
        const char* otherText;
        std::int32_t otherOrder;
        std::int32_t result;
    };
    const Row rows[] = {
        {"p", 1, "p", 2, -1},
        {"p", 2, "p", 1, 1},
        {"p", 1, "a", 2, -1},
        {"p", 5, ".x", 2, -1},
        {".x", 2, "p", 5, 1},
        {"#a", 1, ".x p", 2, 1},
        {"p", 3, "p", 3, 0},
        {"p", -1, "p", 1, -1},
    };
    for (const Row& row : rows) {
        const ReadSelector one(std::string(row.text) + '{', row.order);
        const ReadSelector other(std::string(row.otherText) + '{', row.otherOrder);
        EXPECT_EQ(one.selector.compareTo(other.selector), row.result) << &row - rows;
    }
    // The same number alone makes two selectors equal.
    const ReadSelector one("p{", 3);
    const ReadSelector other(".x{", 3);
    EXPECT_EQ(one.selector.compareTo(other.selector), -1);
}

/// An element's name that counts how often it is asked for.
class CountingElement : public ElementSelector {
public:
    CountingElement(const std::string& text, std::uint64_t& asked)
        : ElementSelector(text.data(), static_cast<std::uint32_t>(text.size()))
        , asked_(asked)
    {
    }

    bool matches(const HtmlTreeNode& node) const override
    {
        ++asked_;
        return ElementSelector::matches(node);
    }

private:
    std::uint64_t& asked_;
};

/// A selector of names and combinators, in turn, that counts its questions.
class CountingSelector {
public:
    /// parts: "x", " ", "a", ">", "a".
    explicit CountingSelector(const std::vector<std::string>& parts)
    {
        Combinator combinator = COMBINATOR_NONE;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (i % 2 == 1) {
                combinator = static_cast<Combinator>(1 + std::string(" >+~").find(parts[i]));
                continue;
            }
            auto sequence = std::make_unique<SimpleSelectorSequence>();
            sequence->combinator = combinator;
            sequence->add(std::make_unique<CountingElement>(parts[i], asked));
            selector.add(std::move(sequence));
        }
    }

    Selector selector{1};
    std::uint64_t asked = 0;
};

std::vector<std::string> repeated(const std::string& combinators, int count)
{
    std::vector<std::string> parts{"x"};
    for (int i = 0; i < count; ++i) {
        parts.push_back(
            std::string(1, combinators[static_cast<std::size_t>(i) % combinators.size()]));
        parts.push_back("a");
    }
    return parts;
}

TEST(Selector, StepsAreBounded)
{
    // Fifty a inside each other, each the last of fifty: 2,500 nodes around the innermost.
    constexpr std::uint64_t kAround = 50 * 50;
    SelectorTree document;
    HtmlTreeNode* node = &document.add(ELEMENT_HTML);
    for (int depth = 0; depth < 50; ++depth) {
        HtmlTreeNode* const parent = node;
        for (int i = 0; i < 50; ++i)
            node = &document.add(ELEMENT_A, parent);
    }
    for (const char* combinators : {" ", "~", "+", ">", " ~", "~ ", " +", " >", "~+", "~>", ">~",
             " ~>", "~ >", ">  ~", " ~+", "+~ ", ">+ ~", "  ~~", " > ~ +"}) {
        for (const int count : {8, 20, 200}) {
            CountingSelector counting(repeated(combinators, count));
            EXPECT_FALSE(counting.selector.matches(*node, document.root()));
            EXPECT_LE(counting.asked, (kAround + 1) * static_cast<std::uint64_t>(count + 1))
                << combinators << count;
            EXPECT_GT(counting.asked, 0U);
        }
    }
    // What the ancestors alone cost.
    CountingSelector nested(repeated(" ", 8));
    EXPECT_FALSE(nested.selector.matches(*node, document.root()));
    EXPECT_LE(nested.asked, 51U);
    CountingSelector siblings(repeated("~", 8));
    EXPECT_FALSE(siblings.selector.matches(*node, document.root()));
    EXPECT_LE(siblings.asked, 50U);
}

// A row of many siblings at the end of many levels: going up is not begun again for each of them.
TEST(Selector, StepsAddUpAndDoNotMultiply)
{
    constexpr int kLevels = 500;
    constexpr int kSiblings = 500;
    SelectorTree document;
    HtmlTreeNode* parent = nullptr;
    for (int i = 0; i < kLevels; ++i)
        parent = &document.add(ELEMENT_A, parent);
    HtmlTreeNode* node = nullptr;
    for (int i = 0; i < kSiblings; ++i)
        node = &document.add(ELEMENT_A, parent);
    for (const char* combinators : {" ~", "~ ", " ~ ", " >~", " +~", "~ ~"}) {
        for (const int count : {2, 3, 5}) {
            CountingSelector counting(repeated(combinators, count));
            EXPECT_FALSE(counting.selector.matches(*node, document.root()));
            EXPECT_LE(counting.asked,
                static_cast<std::uint64_t>(kLevels + kSiblings) * static_cast<unsigned>(count + 1))
                << combinators << count;
        }
    }
}

/// A random tree of at most twelve levels, with texts, classes and ids.
std::vector<HtmlTreeNode*> growTree(SelectorTree& document, SelectorWriter& random)
{
    static const ZVHTMLElement kElements[] = {ELEMENT_A, ELEMENT_B, ELEMENT_P, ELEMENT_DIV};
    static const std::u16string_view kNames[] = {u"x", u"y", u"x y", u" z\tx", u""};
    constexpr std::size_t kMostLevels = 12;
    std::vector<HtmlTreeNode*> open;
    std::vector<HtmlTreeNode*> elements;
    elements.push_back(&document.add(ELEMENT_HTML));
    open.push_back(elements.back());
    for (std::uint32_t nodes = 2 + random.below(16); nodes > 0; --nodes) {
        while (open.size() > 1 && (open.size() == kMostLevels || random.below(4) == 0))
            open.pop_back();
        if (random.below(5) == 0) {
            document.addText(open.back());
            continue;
        }
        HtmlTreeNode& node = document.add(kElements[random.below(4)], open.back());
        if (random.below(2) == 0)
            document.set(node, ATTRIBUTE_CLASS, kNames[random.below(5)]);
        if (random.below(8) == 0)
            document.set(node, ATTRIBUTE_ID, kNames[random.below(5)]);
        elements.push_back(&node);
        if (random.below(3) != 0)
            open.push_back(&node);
    }
    return elements;
}

TEST(Selector, MatchesAsAPlainSearchDoes)
{
    SelectorWriter random(5);
    std::vector<std::unique_ptr<ReadSelector>> selectors;
    while (selectors.size() < 4'000) {
        auto read = std::make_unique<ReadSelector>(random.selector(7) + '{');
        if (!read->isError && read->selector.sequences.getCount() != 0)
            selectors.push_back(std::move(read));
    }
    std::uint64_t meant = 0;
    std::uint64_t asked = 0;
    for (int i = 0; i < kRandomTrees; ++i) {
        SelectorTree document;
        const std::vector<HtmlTreeNode*> elements = growTree(document, random);
        for (int each = 0; each < 3; ++each) {
            const Selector& selector
                = selectors[random.below(static_cast<std::uint32_t>(selectors.size()))]->selector;
            for (const HtmlTreeNode* node : elements) {
                const bool expected = plainMatches(selector, node, document.root());
                ASSERT_EQ(selector.matches(*node, document.root()), expected)
                    << selectorText(selector) << " tree " << i;
                ASSERT_TRUE(!expected || selector.canMatch()) << selectorText(selector);
                meant += expected ? 1 : 0;
                ++asked;
            }
        }
    }
    // Both answers occur often, or else there would be nothing compared.
    EXPECT_GT(meant, asked / 20);
    EXPECT_LT(meant, asked / 2);
}

TEST(Selector, LongSelectorsNeedNoStack)
{
    SelectorTree document;
    HtmlTreeNode* node = nullptr;
    for (int i = 0; i < 1'000; ++i)
        node = &document.add(ELEMENT_A, node);
    for (const char* combinator : {" ", ">", "+", "~"}) {
        std::string text = "a";
        for (int i = 0; i < 100'000; ++i)
            text += combinator + std::string("a");
        const ReadSelector read(text + '{');
        ASSERT_FALSE(read.isError);
        ASSERT_EQ(read.selector.sequences.getCount(), 100'001);
        EXPECT_FALSE(read.selector.matches(*node, document.root()));
        EXPECT_EQ(read.selector.getSpecificity(), 100'001U);
    }
}

} // namespace
