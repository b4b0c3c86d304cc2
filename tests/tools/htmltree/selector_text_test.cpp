#include "tools/htmltree/selector_text.h"

#include "style/css_tokenizer.h"
#include "style/selector.h"
#include "style/selector_reader.h"

#include <gtest/gtest.h>

namespace {

/// The text of the selector that a text of a sheet is read as.
std::string again(const std::string& text)
{
    std::u16string units;
    for (const char byte : text + '{')
        units += static_cast<char16_t>(static_cast<unsigned char>(byte));
    CssTokenizer tokens;
    tokens.setInput(units.data(), static_cast<std::uint32_t>(units.size()));
    Selector selector(1);
    EXPECT_FALSE(readSelector(selector, tokens)) << text;
    return htmltree::selectorText(selector);
}

TEST(SelectorText, IsReadAsTheSameSelector)
{
    for (const char* text : {"p", "P", ".x", "#x", "p.x.y#z", "a b", "a > b", "a + b", "a ~ b",
             "a b > c + d ~ e", ":not(p)", "p:not(.x):not(#y)", ":not(*)", "[class]",
             "[class=\"x\"]", "[dir~=\"x\"]", "[id|=\"x\"]", "[lang^=\"x\"]", "[lang$=\"x\"]",
             "[lang*=\"x\"]", "a:link", "a:visited", ":active", ":hover", ":focus", ":first-child",
             ":last-child", ":first-of-type", ":last-of-type", ":only-child", ":only-of-type",
             ":root", ":empty", ":target", ":enabled", ":disabled", ":checked", "nosuchname"})
        EXPECT_EQ(again(text), text);
}

TEST(SelectorText, WhatTheSelectorDoesNotKeep)
{
    const struct {
        const char* written;
        const char* text;
    } rows[] = {
        {"* b", "* b"},
        {"*.x", ".x"},
        {"div *", "div"},
        {"a > + b", "a + b"},
        {"[title]", "[?]"},
        {"[href=x]", "[?=\"x\"]"},
        {"p:lang(en)", "p:lang()"},
        {"p:nth-child(2n+1)", "p:nth-child()"},
        {":nth-last-child(1)", ":nth-last-child()"},
        {":nth-of-type(1)", ":nth-of-type()"},
        {":nth-last-of-type(1)", ":nth-last-of-type()"},
        {"p:first-letter", "p::first-letter"},
        {"p:first-line", "p::first-line"},
        {"p:before", "p::before"},
        {"p::after", "p::after"},
        {"::selection", ""},
        {".\xE9", ".\\u00e9"},
    };
    for (const auto& row : rows) {
        const std::string text = again(row.written);
        if (*row.text != '\0')
            EXPECT_EQ(text, row.text) << row.written;
        else
            EXPECT_TRUE(text.ends_with("::selection")) << text;
    }
}

} // namespace
