#pragma once

#include "support/css_names.h"

#include <cstdint>

class HtmlValue;
class ValueCache;

/// A value as the tables of built-in style write it down.
struct TableValue {
    enum class Kind : std::uint8_t { Keyword, Color, Pixels, Em, Text };

    Kind kind;
    ZVCSSValue keyword = VALUE_UNKNOWN;
    float number = 0;
    const char16_t* text = nullptr;

    static constexpr TableValue keywordOf(ZVCSSValue id) { return {Kind::Keyword, id}; }
    static constexpr TableValue black() { return {Kind::Color}; }
    static constexpr TableValue pixels(float number)
    {
        return {Kind::Pixels, VALUE_UNKNOWN, number};
    }
    static constexpr TableValue ems(float number) { return {Kind::Em, VALUE_UNKNOWN, number}; }
    static constexpr TableValue textOf(const char16_t* text)
    {
        return {Kind::Text, VALUE_UNKNOWN, 0, text};
    }
};

/// The value in a document's cache; null when there is no memory.
HtmlValue* makeValue(const TableValue& value, ValueCache& values);
