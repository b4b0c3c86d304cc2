#include "support/zv_string.h"

#include "support/text_search.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

namespace {

std::int32_t ownedLength(const char* text)
{
    const std::ptrdiff_t length = zorvan::textLength(text);
    if (length > std::numeric_limits<std::int32_t>::max())
        throw std::bad_alloc();
    return static_cast<std::int32_t>(length);
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

const char* skipDigits(const char* position, const char* end)
{
    return std::find_if_not(position, end, isDigit);
}

/// The number beyond the range of double that the text is: infinite, or so small that it is 0.
double unreachableNumber(const char* digits, const char* point)
{
    const bool large = std::any_of(digits, point, [](char digit) { return digit != '0'; });
    return large ? std::numeric_limits<double>::infinity() : 0;
}

} // namespace

namespace zorvan {

String::String(const String& other)
    : AbstractObject(other)
    , AbstractMutableString<char>(other)
    , Object(other)
{
}

String::String(String&& other) noexcept
    : AbstractMutableString<char>(std::move(other))
{
}

String::String(const char* text) { append(text); }

String& String::operator=(const String& other) = default;

String& String::operator=(String&& other) noexcept
{
    AbstractMutableString<char>::operator=(std::move(other));
    return *this;
}

String& String::operator=(const char* text)
{
    setValue(text);
    return *this;
}

String::~String() = default;

void String::append(const char* text) { append(text, ownedLength(text)); }

void String::setValue(const char* text) { assign(text, ownedLength(text)); }

void String::setValue(const String& source) { assign(source.data, source.length); }

void String::setValue(const String& source, std::int32_t start)
{
    setValue(source, start, source.length);
}

void String::setValue(const String& source, std::int32_t start, std::int32_t count)
{
    start = std::clamp(start, 0, source.length);
    assign(source.data + start, std::clamp(count, 0, source.length - start));
}

double String::toDouble(std::int32_t start, std::int32_t* end) const
{
    const std::int32_t first = std::clamp(start, 0, length);
    const char* const limit = data + length;
    const char* position = data + first;
    const bool negative = position != limit && *position == '-';
    if (position != limit && (*position == '-' || *position == '+'))
        ++position;

    const char* const digits = position;
    const char* const point = skipDigits(digits, limit);
    position = point;
    if (limit - point > 1 && point[0] == '.' && isDigit(point[1]))
        position = skipDigits(point + 1, limit);
    const bool readable = position != digits;
    if (end != nullptr)
        *end = readable ? static_cast<std::int32_t>(position - data) : first;
    if (!readable)
        return 0;

    double number = 0;
    const auto result = std::from_chars(digits, position, number, std::chars_format::fixed);
    if (result.ec == std::errc::result_out_of_range)
        number = unreachableNumber(digits, point);
    return negative ? -number : number;
}

std::uint32_t String::hashCode() const { return AbstractString<char>::hashCode(); }

bool String::equals(const String& other) const
{
    return length == other.length && compareTo(other) == 0;
}

bool String::equals(const Object& other) const
{
    const auto* text = dynamic_cast<const String*>(&other);
    return text != nullptr && equals(*text);
}

const String& String::toString() const { return *this; }

} // namespace zorvan
