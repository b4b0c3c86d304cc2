#include "tree/html_value.h"

#include "support/process_heap.h"

#include <bit>
#include <cstring>
#include <string>
#include <utility>

namespace {

template <typename Number> int compareNumbers(Number a, Number b)
{
    return a < b ? -1 : (b < a ? 1 : 0);
}

/// The one value for a key: the one that is known, or a new one.
template <typename Value, typename... Arguments>
Value* intern(ValueIndex<Value>& index, std::uint32_t key, Arguments... arguments)
{
    bool isNew = false;
    Value*& place = index.findOrAdd(key, isNew);
    // A null that stands for a failed object is an answer like any other.
    if (isNew)
        place = zorvan::newObject<Value>(arguments...);
    return place;
}

template <typename Value> void deleteValues(const ValueIndex<Value>& index)
{
    index.forEach([](const Value* value) { delete value; });
}

/// A block of the heap, freed unless it finds an owner.
struct HeapBlockDeleter {
    void operator()(char16_t* block) const { HeapFree(GetProcessHeap(), 0, block); }
};

using TextBlock = std::unique_ptr<char16_t, HeapBlockDeleter>;

TextBlock copyOfText(const char16_t* text, std::uint32_t length)
{
    const std::size_t bytes = std::size_t{length} * sizeof(char16_t);
    TextBlock block(
        static_cast<char16_t*>(HeapAlloc(GetProcessHeap(), 0, bytes + sizeof(char16_t))));
    if (block == nullptr)
        return block;
    if (length != 0)
        std::memcpy(block.get(), text, bytes);
    block.get()[length] = 0;
    return block;
}

} // namespace

HtmlValue::~HtmlValue() = default;

HtmlWStringValue::~HtmlWStringValue() { HeapFree(GetProcessHeap(), 0, text); }

int compareValues(const HtmlValue& a, const HtmlValue& b)
{
    if (a.kind != b.kind)
        return compareNumbers<std::uint32_t>(a.kind, b.kind);
    switch (a.kind) {
    case KIND_PERCENT:
        return compareNumbers(static_cast<const HtmlPercentValue&>(a).number,
            static_cast<const HtmlPercentValue&>(b).number);
    case KIND_NUMBER:
        return compareNumbers(static_cast<const HtmlNumberValue&>(a).number,
            static_cast<const HtmlNumberValue&>(b).number);
    case KIND_COLOR:
        return compareNumbers(static_cast<const HtmlColorValue&>(a).color,
            static_cast<const HtmlColorValue&>(b).color);
    case KIND_KEYWORD:
        return compareNumbers<std::uint32_t>(static_cast<const HtmlCssKeywordValue&>(a).keyword,
            static_cast<const HtmlCssKeywordValue&>(b).keyword);
    case KIND_ENUM:
        return compareNumbers(static_cast<const HtmlEnumValue&>(a).enumerator,
            static_cast<const HtmlEnumValue&>(b).enumerator);
    case KIND_LENGTH:
        return compareNumbers(static_cast<const HtmlLengthValue&>(a).length.value,
            static_cast<const HtmlLengthValue&>(b).length.value);
    case KIND_NONE:
    case KIND_STRING:
        break;
    }
    return 0;
}

ValueCache::~ValueCache()
{
    for (const HtmlValue* value : values)
        delete value;
    deleteValues(keywords);
    deleteValues(numbers);
    deleteValues(enumerators);
    deleteValues(colors);
    deleteValues(percents);
    deleteValues(ems);
    deleteValues(exes);
    deleteValues(pixels);
    deleteValues(points);
}

HtmlColorValue* ValueCache::colorValue(std::uint32_t color) { return intern(colors, color, color); }

HtmlCssKeywordValue* ValueCache::keywordValue(ZVCSSValue id) { return intern(keywords, id, id); }

HtmlEnumValue* ValueCache::enumValue(std::uint32_t value)
{
    return intern(enumerators, value, value);
}

HtmlLengthValue* ValueCache::lengthValue(float value, ZVLinearUnits units)
{
    if (ValueIndex<HtmlLengthValue>* index = lengthsIn(units))
        return intern(*index, std::bit_cast<std::uint32_t>(value), value, units);
    std::unique_ptr<HtmlLengthValue> made(zorvan::newObject<HtmlLengthValue>(value, units));
    values.add(made.get());
    return made.release();
}

HtmlNumberValue* ValueCache::numberValue(std::int32_t value)
{
    return intern(numbers, static_cast<std::uint32_t>(value), value);
}

HtmlPercentValue* ValueCache::percentValue(float value)
{
    return intern(percents, std::bit_cast<std::uint32_t>(value), value);
}

HtmlWStringValue* ValueCache::stringValue(const char16_t* text)
{
    if (text == nullptr)
        return stringValue(u"", 0);
    const std::size_t length = std::char_traits<char16_t>::length(text);
    return stringValue(text, static_cast<std::uint32_t>(length));
}

HtmlWStringValue* ValueCache::stringValue(const char16_t* text, std::uint32_t length)
{
    const char16_t* const end = std::char_traits<char16_t>::find(text, length, u'\0');
    const auto stored = end != nullptr ? static_cast<std::uint32_t>(end - text) : length;
    TextBlock block = copyOfText(text, stored);
    if (block == nullptr)
        return nullptr;
    std::unique_ptr<HtmlWStringValue> made(
        zorvan::newObject<HtmlWStringValue>(block.get(), stored));
    if (made == nullptr)
        return nullptr;
    block.release();
    values.add(made.get());
    return made.release();
}

HtmlWStringValue* ValueCache::stringValue(std::unique_ptr<zorvan::WString> text)
{
    return stringValue(text->data, static_cast<std::uint32_t>(text->length));
}

ValueIndex<HtmlLengthValue>* ValueCache::lengthsIn(ZVLinearUnits units)
{
    switch (units) {
    case UNITS_EM:
        return &ems;
    case UNITS_EX:
        return &exes;
    case UNITS_PIXELS:
        return &pixels;
    case UNITS_POINTS:
        return &points;
    default:
        return nullptr;
    }
}
