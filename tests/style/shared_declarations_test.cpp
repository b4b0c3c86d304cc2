#include "style/shared_declarations.h"

#include "style/css_declaration_list.h"
#include "tests/containers/allocation_failures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace {

using namespace testing_support;

constexpr std::uint32_t kAny = SharedDeclarations::kAnyFontSize;

/// Selectors with lists of rules, to be matched in any combination.
class SharedDeclarationsTest : public testing::Test {
protected:
    SharedDeclarationsTest()
    {
        for (std::int32_t order = 1; order <= 40; ++order) {
            rules_.push_back(std::make_unique<CssDeclarationList>(&values_));
            selectors_.push_back(std::make_unique<Selector>(order));
            selectors_.back()->declarations = rules_.back().get();
        }
    }

    /// The selectors with these numbers, good until the next call.
    const zorvan::ArrayList<Selector*>& matched(const std::vector<std::int32_t>& orders)
    {
        matched_.clear();
        for (const std::int32_t order : orders)
            matched_.add(selectors_[static_cast<std::size_t>(order - 1)].get());
        return matched_;
    }

    CssDeclarationList& newList()
    {
        lists_.push_back(std::make_unique<CssDeclarationList>(&values_));
        return *lists_.back();
    }

    Selector& selector(std::int32_t order)
    {
        return *selectors_[static_cast<std::size_t>(order - 1)];
    }

    SharedDeclarations shared;

private:
    ValueCache values_;
    std::vector<std::unique_ptr<CssDeclarationList>> rules_;
    std::vector<std::unique_ptr<Selector>> selectors_;
    std::vector<std::unique_ptr<CssDeclarationList>> lists_;
    zorvan::ArrayList<Selector*> matched_;
};

TEST_F(SharedDeclarationsTest, FindsWhatWasAddedForTheSameElementAndRules)
{
    CssDeclarationList& list = newList();
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1, 2}), kAny), nullptr);
    EXPECT_TRUE(shared.add(ELEMENT_P, matched({1, 2}), kAny, &list));
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1, 2}), kAny), &list);
    EXPECT_EQ(shared.find(ELEMENT_A, matched({1, 2}), kAny), nullptr);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({2, 1}), kAny), nullptr);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1}), kAny), nullptr);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1, 2, 3}), kAny), nullptr);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({}), kAny), nullptr);
}

TEST_F(SharedDeclarationsTest, KeepsFontSizesApart)
{
    CssDeclarationList& ofTen = newList();
    CssDeclarationList& ofTwelve = newList();
    EXPECT_TRUE(shared.add(ELEMENT_P, matched({1}), 10, &ofTen));
    EXPECT_TRUE(shared.add(ELEMENT_P, matched({1}), 12, &ofTwelve));
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1}), 10), &ofTen);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1}), 12), &ofTwelve);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1}), 0), nullptr);
    CssDeclarationList& ofAll = newList();
    EXPECT_TRUE(shared.add(ELEMENT_P, matched({2}), kAny, &ofAll));
    EXPECT_EQ(shared.find(ELEMENT_P, matched({2}), 0), &ofAll);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({2}), 10), &ofAll);
}

TEST_F(SharedDeclarationsTest, KeepsManyApart)
{
    std::map<std::pair<std::uint32_t, std::vector<std::int32_t>>, CssDeclarationList*> model;
    for (std::uint32_t element = 1; element <= ELEMENT_XMP; element += 7) {
        for (std::int32_t first = 1; first <= 20; ++first) {
            for (std::int32_t second = first + 1; second <= 20; ++second) {
                CssDeclarationList& list = newList();
                EXPECT_TRUE(shared.add(element, matched({first, second}), kAny, &list));
                model[{element, {first, second}}] = &list;
            }
        }
    }
    for (const auto& [key, list] : model)
        EXPECT_EQ(shared.find(key.first, matched(key.second), kAny), list);
}

// Selectors of one number stand for lists whose keys are the same.
TEST_F(SharedDeclarationsTest, ListsOfOneKeyAreKeptApartAndHaveABound)
{
    std::vector<std::unique_ptr<Selector>> same;
    std::vector<std::unique_ptr<CssDeclarationList>> rules;
    ValueCache values;
    zorvan::ArrayList<Selector*> matched;
    for (std::int32_t i = 0; i <= SharedDeclarations::kMostPerKey; ++i) {
        rules.push_back(std::make_unique<CssDeclarationList>(&values));
        same.push_back(std::make_unique<Selector>(7));
        same.back()->declarations = rules.back().get();
        matched.clear();
        matched.add(same.back().get());
        EXPECT_EQ(shared.find(ELEMENT_P, matched, kAny), nullptr) << i;
        EXPECT_EQ(shared.add(ELEMENT_P, matched, kAny, rules.back().get()),
            i < SharedDeclarations::kMostPerKey)
            << i;
    }
    for (std::int32_t i = 0; i <= SharedDeclarations::kMostPerKey; ++i) {
        const auto place = static_cast<std::size_t>(i);
        matched.clear();
        matched.add(same[place].get());
        EXPECT_EQ(shared.find(ELEMENT_P, matched, kAny),
            i < SharedDeclarations::kMostPerKey ? rules[place].get() : nullptr)
            << i;
    }
}

// As many rules as wanted may mean as many elements as wanted; what is kept of that stays small.
TEST_F(SharedDeclarationsTest, RulesInAllHaveABound)
{
    constexpr std::int32_t kEach = SharedDeclarations::kMostRules / 4;
    zorvan::ArrayList<Selector*> many;
    for (std::int32_t i = 0; i < kEach; ++i)
        many.add(&selector(1));
    CssDeclarationList& list = newList();
    for (const std::uint32_t element : {ELEMENT_A, ELEMENT_B, ELEMENT_P})
        EXPECT_TRUE(shared.add(element, many, kAny, &list));
    many.add(&selector(1));
    EXPECT_FALSE(shared.add(ELEMENT_DIV, many, kAny, &list));
    EXPECT_EQ(shared.find(ELEMENT_DIV, many, kAny), nullptr);
    many.remove(kEach);
    EXPECT_TRUE(shared.add(ELEMENT_DIV, many, kAny, &list));
    EXPECT_EQ(shared.find(ELEMENT_DIV, many, kAny), &list);
    EXPECT_FALSE(shared.add(ELEMENT_DIV, matched({2}), kAny, &list));
}

TEST_F(SharedDeclarationsTest, FailedAdditionLeavesWhatIsThere)
{
    CssDeclarationList& first = newList();
    CssDeclarationList& second = newList();
    EXPECT_TRUE(shared.add(ELEMENT_P, matched({1}), kAny, &first));
    const std::uint32_t failures = failEachAllocation(
        [&] {
            EXPECT_TRUE(shared.add(ELEMENT_P, matched({1, 2, 3}), kAny, &second));
        },
        [&] {
            EXPECT_EQ(shared.find(ELEMENT_P, matched({1}), kAny), &first);
            EXPECT_EQ(shared.find(ELEMENT_P, matched({1, 2, 3}), kAny), nullptr);
        });
    EXPECT_GT(failures, 1U);
    EXPECT_EQ(shared.find(ELEMENT_P, matched({1, 2, 3}), kAny), &second);
}

} // namespace
