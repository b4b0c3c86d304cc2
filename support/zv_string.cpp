#include "support/zv_string.h"

#include "support/text_numbers.h"
#include "support/text_search.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace {

std::int32_t ownedLength(const char* text)
{
    const std::ptrdiff_t length = zorvan::textLength(text);
    if (length > std::numeric_limits<std::int32_t>::max())
        throw std::bad_alloc();
    return static_cast<std::int32_t>(length);
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
    std::int32_t read = 0;
    const double number = numberFromText(data + first, length - first, &read);
    if (end != nullptr)
        *end = first + read;
    return number;
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
