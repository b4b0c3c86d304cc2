#include "style/selector_index.h"

#include "support/html_strings.h"
#include "tests/containers/allocation_failures.h"
#include "tests/style/plain_selector.h"
#include "tests/style/selector_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kRandomSheets = 300;
#else
constexpr int kRandomSheets = 3'000;
#endif

/// Selectors in an index, numbered by their place.
class Indexed {
public:
    explicit Indexed(const std::vector<std::string>& texts)
    {
        for (const std::string& text : texts)
            add(text);
    }

    void add(const std::string& text)
    {
        const auto order = static_cast<std::int32_t>(selectors_.size());
        selectors_.push_back(std::make_unique<ReadSelector>(text + '{', order));
        Selector& selector = selectors_.back()->selector;
        if (selector.sequences.getCount() != 0)
            index.add(&selector);
    }

    /// The numbers of the selectors that the index finds.
    std::vector<std::int32_t> find(const HtmlTreeNode& node, const HtmlTreeNode* root)
    {
        std::vector<std::int32_t> found;
        for (const Selector* selector : index.findMatches(node, root))
            found.push_back(selector->order);
        return found;
    }

    /// The same, all of them tried.
    std::vector<std::int32_t> findByTrying(const HtmlTreeNode& node, const HtmlTreeNode* root) const
    {
        std::vector<const Selector*> matching;
        for (const auto& each : selectors_) {
            const Selector& selector = each->selector;
            if (selector.sequences.getCount() != 0 && plainMatches(selector, &node, root))
                matching.push_back(&selector);
        }
        std::sort(matching.begin(), matching.end(),
            [](const Selector* a, const Selector* b) { return a->compareTo(*b) < 0; });
        std::vector<std::int32_t> found;
        for (const Selector* selector : matching)
            found.push_back(selector->order);
        return found;
    }

    SelectorIndex index;

private:
    std::vector<std::unique_ptr<ReadSelector>> selectors_;
};

using Found = std::vector<std::int32_t>;

/// Two names that have one hash as classes, found by trying.
std::pair<std::string, std::string> wordsOfOneNumber()
{
    std::vector<std::pair<std::uint32_t, std::string>> names;
    std::mt19937 random(1);
    for (std::uint32_t i = 0; i < 300'000; ++i) {
        std::string name;
        for (int letters = 0; letters < 8; ++letters)
            name += static_cast<char>('a' + random() % 26);
        std::uint32_t key = 0x811C9DC5;
        for (const char letter : name)
            key = (key ^ static_cast<std::uint8_t>(letter)) * 0x01000193U;
        names.emplace_back(key, std::move(name));
    }
    std::sort(names.begin(), names.end());
    for (std::size_t i = 1; i < names.size(); ++i) {
        if (names[i].first == names[i - 1].first)
            return {names[i - 1].second, names[i].second};
    }
    return {};
}

TEST(SelectorIndex, IsEmptyUntilItHasASelectorThatCanMatch)
{
    Indexed indexed({});
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    EXPECT_TRUE(indexed.index.isEmpty());
    EXPECT_EQ(indexed.find(node, document.root()), Found());
    for (const char* text : {"p:hover", "p:before", "p:not(.x)", "[title]", "nosuchname"})
        indexed.add(text);
    EXPECT_TRUE(indexed.index.isEmpty());
    EXPECT_EQ(indexed.find(node, document.root()), Found());
    indexed.add("p");
    EXPECT_FALSE(indexed.index.isEmpty());
    EXPECT_EQ(indexed.find(node, document.root()), Found{5});
}

TEST(SelectorIndex, FindsUnderEachKindOfName)
{
    SelectorTree document;
    HtmlTreeNode& html = document.add(ELEMENT_HTML);
    HtmlTreeNode& node = document.add(ELEMENT_P, &html);
    document.set(node, ATTRIBUTE_CLASS, u"a b");
    document.set(node, ATTRIBUTE_ID, u"c");
    Indexed indexed({"p", ".a", ".b", "#c", ":first-child", "* *", "[id]", "p.a#c", ":not(a)", ".c",
        "#a", "a", "p:not(a)", "p.a.b", ".a.x", "div .a", "html .a", "p a", "#c.b"});
    EXPECT_EQ(indexed.find(node, document.root()), indexed.findByTrying(node, document.root()));
    EXPECT_EQ(
        indexed.find(node, document.root()), (Found{5, 0, 8, 12, 1, 2, 4, 6, 16, 13, 3, 18, 7}));
    HtmlTreeNode& plain = document.add(ELEMENT_A, &html);
    EXPECT_EQ(indexed.find(plain, document.root()), (Found{5, 11}));
}

TEST(SelectorIndex, MatchesComeInAscendingOrder)
{
    Indexed indexed({"#x", "p.x", "p", ".x", "html p", "p", "#x"});
    SelectorTree document;
    HtmlTreeNode& html = document.add(ELEMENT_HTML);
    HtmlTreeNode& node = document.add(ELEMENT_P, &html);
    document.set(node, ATTRIBUTE_CLASS, u"x");
    document.set(node, ATTRIBUTE_ID, u"x");
    EXPECT_EQ(indexed.find(node, document.root()), (Found{2, 5, 4, 3, 1, 0, 6}));
}

TEST(SelectorIndex, ASelectorIsFoundOnce)
{
    Indexed indexed({".x", ".x.y", ".y.x"});
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    document.set(node, ATTRIBUTE_CLASS, u"x y x  x\ty y");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(indexed.find(node, document.root()), (Found{0, 1, 2}));
}

TEST(SelectorIndex, IdsAndClassesOfOneNameAreApart)
{
    Indexed indexed({".x", "#x", "#\xE9", ".\xE9"});
    SelectorTree document;
    HtmlTreeNode& classed = document.add(ELEMENT_P);
    document.set(classed, ATTRIBUTE_CLASS, u"x \u00E9");
    HtmlTreeNode& named = document.add(ELEMENT_P);
    document.set(named, ATTRIBUTE_ID, u"x");
    HtmlTreeNode& accented = document.add(ELEMENT_P);
    document.set(accented, ATTRIBUTE_ID, u"\u00E9");
    EXPECT_EQ(indexed.find(classed, document.root()), (Found{0, 3}));
    EXPECT_EQ(indexed.find(named, document.root()), Found{1});
    EXPECT_EQ(indexed.find(accented, document.root()), Found{2});
}

TEST(SelectorIndex, AttributesThatAreNoTextHaveNoNames)
{
    Indexed indexed({".x", "#x", "[class]", "p"});
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    SelectorTree::set(node, ATTRIBUTE_CLASS, document.values.numberValue(1));
    SelectorTree::set(node, ATTRIBUTE_ID, document.values.numberValue(1));
    EXPECT_EQ(indexed.find(node, document.root()), (Found{3, 2}));
}

TEST(SelectorIndex, EveryElementHasItsPlace)
{
    std::vector<std::string> names;
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id)
        names.emplace_back(zorvan::HTMLStrings::elementName(id));
    Indexed indexed(names);
    for (std::uint32_t id = 1; id <= ELEMENT_XMP; ++id) {
        if (names[id - 1].empty())
            continue;
        SelectorTree document;
        HtmlTreeNode& node = document.add(static_cast<ZVHTMLElement>(id));
        EXPECT_EQ(indexed.find(node, document.root()), Found{static_cast<std::int32_t>(id - 1)});
    }
}

// Names that have one number lead to each other's selectors; those are tried, not taken.
TEST(SelectorIndex, NamesThatShareANumberStayApart)
{
    const std::pair<std::string, std::string> same = wordsOfOneNumber();
    ASSERT_NE(same.first, same.second);
    Indexed indexed({'.' + same.first, '.' + same.second});
    SelectorTree document;
    HtmlTreeNode& first = document.add(ELEMENT_P);
    document.set(first, ATTRIBUTE_CLASS, std::u16string(same.first.begin(), same.first.end()));
    HtmlTreeNode& second = document.add(ELEMENT_P);
    document.set(second, ATTRIBUTE_CLASS, std::u16string(same.second.begin(), same.second.end()));
    EXPECT_EQ(indexed.find(first, document.root()), Found{0});
    EXPECT_EQ(indexed.find(second, document.root()), Found{1});
}

TEST(SelectorIndex, AWordThatSharesItsNumberDoesNotHideTheOneThatIsMeant)
{
    // Both words of the element lead to the same place.
    const auto [first, second] = wordsOfOneNumber();
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    const std::string both = first + ' ' + second;
    document.set(node, ATTRIBUTE_CLASS, std::u16string(both.begin(), both.end()));
    Indexed indexed({'.' + second, '.' + first, "p." + second});
    EXPECT_EQ(indexed.find(node, document.root()), (Found{0, 1, 2}));
}

TEST(SelectorIndex, AsksForNothingThatTheTreeNeverHad)
{
    SelectorTree document;
    HtmlTreeNode& html = document.add(ELEMENT_HTML);
    document.addText(&html);
    document.add(ELEMENT_B, &html);
    HtmlTreeNode& node = document.add(ELEMENT_P, &html);
    // Whatever stands on the root passes, and an unknown name is that of a text.
    Indexed indexed({"b ~ p", "html p", "i > html > p", "nosuchname ~ p", "i > html p",
        ":not(i) + p", "i ~ b + p", "b + p", "b ~ .x p"});
    const Found all = {0, 1, 3, 5, 7, 2, 4};
    EXPECT_EQ(indexed.find(node, document.root()), all);
    indexed.index.noteElement(ELEMENT_HTML);
    indexed.index.noteElement(ELEMENT_P);
    // What has not been told is not there.
    EXPECT_EQ(indexed.find(node, document.root()), (Found{1, 3, 5, 2, 4}));
    indexed.index.noteElement(ELEMENT_B);
    EXPECT_EQ(indexed.find(node, document.root()), all);
}

TEST(SelectorIndex, FindsWhatTryingAllFinds)
{
    static const ZVHTMLElement kElements[] = {ELEMENT_A, ELEMENT_B, ELEMENT_P, ELEMENT_DIV};
    static const std::u16string_view kNames[] = {u"x", u"y", u"x y", u"z z x", u""};
    SelectorWriter random(9);
    std::size_t found = 0;
    for (int sheet = 0; sheet < kRandomSheets; ++sheet) {
        std::vector<std::string> texts;
        for (std::uint32_t count = 1 + random.below(60); count > 0; --count)
            texts.push_back(random.selector(3));
        Indexed indexed(texts);
        SelectorTree document;
        HtmlTreeNode* parent = &document.add(ELEMENT_HTML);
        const bool tellsElements = sheet % 2 == 0;
        if (tellsElements)
            indexed.index.noteElement(ELEMENT_HTML);
        for (int i = 0; i < 12; ++i) {
            HtmlTreeNode& node = document.add(kElements[random.below(4)], parent);
            if (tellsElements)
                indexed.index.noteElement(elementOf(node));
            if (random.below(2) == 0)
                document.set(node, ATTRIBUTE_CLASS, kNames[random.below(5)]);
            if (random.below(3) == 0)
                document.set(node, ATTRIBUTE_ID, kNames[random.below(5)]);
            const Found expected = indexed.findByTrying(node, document.root());
            ASSERT_EQ(indexed.find(node, document.root()), expected) << "sheet " << sheet;
            found += expected.size();
            if (random.below(2) == 0)
                parent = &node;
        }
    }
    EXPECT_GT(found, static_cast<std::size_t>(kRandomSheets) * 12);
}

TEST(SelectorIndex, EachAllocationMayFail)
{
    SelectorTree document;
    HtmlTreeNode& node = document.add(ELEMENT_P);
    document.set(node, ATTRIBUTE_CLASS, u"x y");
    std::vector<std::unique_ptr<ReadSelector>> selectors;
    for (const char* text : {"p{", ".x{", ".y{", ":first-child{", "#z{", "a{"})
        selectors.push_back(
            std::make_unique<ReadSelector>(text, static_cast<std::int32_t>(selectors.size())));
    const std::uint32_t failures = failEachAllocation(
        [&] {
            SelectorIndex index;
            for (const auto& each : selectors) {
                each->selector.visit = 0;
                index.add(&each->selector);
            }
            EXPECT_EQ(index.findMatches(node, document.root()).getCount(), 4);
        },
        [] {});
    EXPECT_GT(failures, 8U);
}

} // namespace
