#pragma once

#include "containers/array_list.h"
#include "support/css_names.h"
#include "support/length.h"
#include "support/wstring.h"
#include "tree/value_index.h"

#include <cstdint>
#include <memory>

/// Kinds of values; the numbers are stored and tested everywhere.
enum HtmlValueKind : std::uint32_t {
    KIND_NONE = 0,
    KIND_PERCENT = 1,
    KIND_NUMBER = 2,
    KIND_STRING = 3,
    KIND_COLOR = 4,
    KIND_KEYWORD = 5,
    KIND_ENUM = 6,
    KIND_LENGTH = 7,
};

/// The number without its fraction; -2,147,483,648 for everything that does not fit, a number that
/// is none included.
inline std::int32_t truncateToInt32(double number)
{
    // The bounds are those of the result, so the comparison is exact.
    if (!(number > -2147483649.0 && number < 2147483648.0))
        return INT32_MIN;
    return static_cast<std::int32_t>(number);
}

/// A value of an attribute or of a CSS property. All values belong to the ValueCache that made
/// them; nobody else deletes one. Values are compared by pointer, which is why all kinds but
/// strings are made once only.
class HtmlValue {
public:
    explicit HtmlValue(HtmlValueKind valueKind)
        : kind(valueKind)
    {
    }

    HtmlValue(const HtmlValue&) = delete;
    HtmlValue& operator=(const HtmlValue&) = delete;
    virtual ~HtmlValue();

    const HtmlValueKind kind;
};

/// A value of one kind, and the way to it from any value.
template <typename Value, HtmlValueKind Kind> class HtmlValueOfKind : public HtmlValue {
public:
    HtmlValueOfKind()
        : HtmlValue(Kind)
    {
    }

    /// The value as this class; null for null and for values of other kinds.
    static const Value* from(const HtmlValue* value)
    {
        return value != nullptr && value->kind == Kind ? static_cast<const Value*>(value) : nullptr;
    }
};

/// The number in front of a percent sign.
class HtmlPercentValue : public HtmlValueOfKind<HtmlPercentValue, KIND_PERCENT> {
public:
    explicit HtmlPercentValue(float percent)
        : number(percent)
    {
    }

    const float number;
};

/// An integer, kept as the nearest float.
class HtmlNumberValue : public HtmlValueOfKind<HtmlNumberValue, KIND_NUMBER> {
public:
    explicit HtmlNumberValue(std::int32_t integer)
        : number(static_cast<float>(integer))
    {
    }

    const float number;
};

/// A text of 16-bit units.
class HtmlWStringValue : public HtmlValueOfKind<HtmlWStringValue, KIND_STRING> {
public:
    /// Adopts a heap block with the text and its terminator.
    HtmlWStringValue(char16_t* block, std::uint32_t unitCount)
        : length(unitCount)
        , text(block)
    {
    }

    ~HtmlWStringValue() override;

    const std::uint32_t length; // units, the terminator left out
    char16_t* const text; // owned, zero-terminated, a block of the process heap
};

/// A color, 0x00BBGGRR.
class HtmlColorValue : public HtmlValueOfKind<HtmlColorValue, KIND_COLOR> {
public:
    explicit HtmlColorValue(std::uint32_t colorNumber)
        : color(colorNumber)
    {
    }

    const std::uint32_t color;
};

/// A keyword of CSS.
class HtmlCssKeywordValue : public HtmlValueOfKind<HtmlCssKeywordValue, KIND_KEYWORD> {
public:
    explicit HtmlCssKeywordValue(ZVCSSValue id)
        : keyword(id)
    {
    }

    const ZVCSSValue keyword;
};

/// A position in one of the lists of tree/enum_from_string.h.
class HtmlEnumValue : public HtmlValueOfKind<HtmlEnumValue, KIND_ENUM> {
public:
    explicit HtmlEnumValue(std::uint32_t position)
        : enumerator(position)
    {
    }

    const std::uint32_t enumerator;
};

/// A number with its unit.
class HtmlLengthValue : public HtmlValueOfKind<HtmlLengthValue, KIND_LENGTH> {
public:
    HtmlLengthValue(float number, ZVLinearUnits units)
        : length(number, units)
    {
    }

    /// In pixels at 96 dots per inch, unrounded; 0 for em, ex and percent.
    float pixels() const { return length.getValueAsUnits(UNITS_PIXELS, kDotsPerInch); }

    static constexpr std::int32_t kDotsPerInch = 96;

    const zorvan::Length length;
    /// What it is in pixels, once somebody has asked the cache for it; null for em and ex.
    mutable HtmlLengthValue* inPixels = nullptr;
};

/// Puts values in order: by kind, then by number, whatever the unit of a length. Strings are all
/// alike. Negative when a comes first, 0 when neither does.
int compareValues(const HtmlValue& a, const HtmlValue& b);

/// Makes the values of a document and owns them. Equal values of all kinds but strings are one
/// object. Where there is no memory for an object the answer is null, and stays null for an
/// interned value; where there is none for the indexes, std::bad_alloc is thrown.
class ValueCache {
public:
    ValueCache() = default;
    ValueCache(const ValueCache&) = delete;
    ValueCache& operator=(const ValueCache&) = delete;

    /// Deletes all values: attribute and declaration lists must be gone or not be read any more.
    ~ValueCache();

    HtmlColorValue* colorValue(std::uint32_t color);
    HtmlCssKeywordValue* keywordValue(ZVCSSValue id);
    HtmlEnumValue* enumValue(std::uint32_t value);

    /// Lengths are told apart by the bits of the number. Those in other units than em, ex, pixels
    /// and points are new objects each time.
    HtmlLengthValue* lengthValue(float value, ZVLinearUnits units);

    HtmlNumberValue* numberValue(std::int32_t value);
    HtmlPercentValue* percentValue(float value);

    /// A new object with a copy of the text at each call. Null is an empty text.
    HtmlWStringValue* stringValue(const char16_t* text);
    /// The same, of a text of that many units; it ends at the first unit 0.
    HtmlWStringValue* stringValue(const char16_t* text, std::uint32_t length);
    /// The same, of a string that the call takes over and deletes.
    HtmlWStringValue* stringValue(std::unique_ptr<zorvan::WString> text);

private:
    ValueIndex<HtmlLengthValue>* lengthsIn(ZVLinearUnits units);

    zorvan::ArrayList<HtmlValue*> values; // of all that no index holds
    ValueIndex<HtmlCssKeywordValue> keywords;
    ValueIndex<HtmlNumberValue> numbers;
    ValueIndex<HtmlEnumValue> enumerators;
    ValueIndex<HtmlColorValue> colors;
    ValueIndex<HtmlPercentValue> percents;
    ValueIndex<HtmlLengthValue> ems;
    ValueIndex<HtmlLengthValue> exes;
    ValueIndex<HtmlLengthValue> pixels;
    ValueIndex<HtmlLengthValue> points;
};
