#include "style/font_names.h"

#include "tests/style/style_document.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

using namespace testing_support;

std::int32_t addFont(const std::u16string& name, StyleDocument& document)
{
    return findOrAddFont(name.data(), static_cast<std::uint32_t>(name.size()), document.context);
}

std::int32_t lookUpFont(const std::u16string& name, StyleDocument& document)
{
    return findFont(name.data(), static_cast<std::uint32_t>(name.size()), document.context);
}

TEST(FontNames, AreNumberedInTheOrderOfFirstUse)
{
    StyleDocument document;
    EXPECT_EQ(lookUpFont(u"Arial", document), kNoFont);
    EXPECT_EQ(addFont(u"Arial", document), 0);
    EXPECT_EQ(addFont(u"Courier New", document), 1);
    EXPECT_EQ(addFont(u"Arial", document), 0);
    EXPECT_EQ(lookUpFont(u"Courier New", document), 1);
    EXPECT_EQ(document.fonts(), (std::vector<std::string>{"Arial", "Courier New"}));
}

TEST(FontNames, EndAtTheFirstComma)
{
    StyleDocument document;
    EXPECT_EQ(addFont(u"Arial,Helvetica,sans", document), 0);
    EXPECT_EQ(addFont(u"Arial", document), 0);
    EXPECT_EQ(lookUpFont(u"Arial,x", document), 0);
    EXPECT_EQ(lookUpFont(u"Helvetica", document), kNoFont);
    EXPECT_EQ(addFont(u",Arial", document), 1);
    EXPECT_EQ(addFont(u"", document), 1);
    EXPECT_EQ(document.fonts(), (std::vector<std::string>{"Arial", ""}));
}

TEST(FontNames, CompareExactly)
{
    StyleDocument document;
    const std::u16string names[] = {u"Arial", u"arial", u"Arial ", u" Arial", u"Aria", u"Arial1",
        u"Arial11", u"A", u"\u0141rial", u"\U0001F600"};
    std::int32_t expected = 0;
    for (const std::u16string& name : names)
        EXPECT_EQ(addFont(name, document), expected++);
    expected = 0;
    for (const std::u16string& name : names)
        EXPECT_EQ(lookUpFont(name, document), expected++);
    EXPECT_EQ(lookUpFont(u"Arial111", document), kNoFont);
    EXPECT_EQ(lookUpFont(u"Ar", document), kNoFont);
    EXPECT_EQ(lookUpFont(u"", document), kNoFont);
}

TEST(FontNames, AValueNamesItsFirstFont)
{
    StyleDocument document;
    addFont(u"Arial", document);
    const auto* value = document.values.stringValue(u"Arial, Helvetica");
    EXPECT_EQ(findFont(*value, document.context), 0);
}

TEST(FontNames, NamesThatWerePutStraightIntoTheListAreFound)
{
    StyleDocument document;
    addFont(u"one", document);
    document.fontNames.add(new zorvan::WString(u"two"));
    document.fontNames.add(new zorvan::WString(u"one"));
    document.fontNames.add(new zorvan::WString(u"three"));
    EXPECT_EQ(lookUpFont(u"two", document), 1);
    EXPECT_EQ(lookUpFont(u"one", document), 0);
    EXPECT_EQ(lookUpFont(u"three", document), 3);
    EXPECT_EQ(addFont(u"four", document), 4);
}

TEST(FontNames, AgreeWithASimpleModel)
{
    StyleDocument document;
    std::map<std::u16string, std::int32_t> model;
    std::mt19937 random(7);
    for (int i = 0; i < 20'000; ++i) {
        std::u16string name;
        for (const std::size_t length = random() % 9; name.size() < length;)
            name += static_cast<char16_t>(u'a' + random() % 3 * (random() % 5 == 0 ? 0x1000 : 1));
        const auto known = model.find(name);
        ASSERT_EQ(lookUpFont(name, document), known == model.end() ? kNoFont : known->second);
        const auto next = static_cast<std::int32_t>(model.size());
        if (random() % 2 == 0) {
            ASSERT_EQ(addFont(name, document), known == model.end() ? next : known->second);
            model.emplace(name, next);
        }
    }
    EXPECT_EQ(document.fontNames.getCount(), static_cast<std::int32_t>(model.size()));
}

// Names that make the longest ways in the tree: each one is the beginning of the next.
TEST(FontNames, LongChainsOfBeginnings)
{
    StyleDocument document;
    std::u16string name;
    for (std::int32_t i = 0; i < 500; ++i) {
        ASSERT_EQ(addFont(name, document), i);
        name += u'\u0001';
    }
    name.clear();
    for (std::int32_t i = 0; i < 500; ++i) {
        ASSERT_EQ(lookUpFont(name, document), i);
        ASSERT_EQ(lookUpFont(name + u'z', document), kNoFont);
        name += u'\u0001';
    }
}

// A look-up that compares the names each time takes minutes here.
TEST(FontNames, AreComparedOnceForEachValue)
{
    StyleDocument document;
    std::u16string text(1'000'000, u'a');
    const auto& longName = *HtmlWStringValue::from(document.text(text.c_str()));
    text.back() = u'b';
    const auto& other = *HtmlWStringValue::from(document.text(text.c_str()));
    EXPECT_EQ(findFont(longName, document.context), kNoFont);
    for (int i = 0; i < 1'000'000; ++i) {
        ASSERT_EQ(findOrAddFont(longName, document.context), 0);
        ASSERT_EQ(findFont(longName, document.context), 0);
    }
    EXPECT_EQ(findOrAddFont(other, document.context), 1);
    EXPECT_EQ(findFont(longName, document.context), 0);
    EXPECT_EQ(document.context.fontNames->getCount(), 2);
}

} // namespace
