#include "support/wstring.h"

#include "support/text_search.h"
#include "support/zv_string.h"

#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace {

template <class Ch> std::int32_t ownedLength(const Ch* text)
{
    const std::ptrdiff_t length = zorvan::textLength(text);
    if (length > std::numeric_limits<std::int32_t>::max())
        throw std::bad_alloc();
    return static_cast<std::int32_t>(length);
}

} // namespace

namespace zorvan {

WString::WString(const WString& other)
    : AbstractObject(other)
    , AbstractMutableString<char16_t>(other)
    , Object(other)
{
}

WString::WString(WString&& other) noexcept
    : AbstractMutableString<char16_t>(std::move(other))
    , narrow_(std::exchange(other.narrow_, nullptr))
{
}

WString::WString(const String& text) { appendBytes(text.data, text.length); }

WString::WString(const char* text) { append(text); }

WString::WString(const char16_t* text) { append(text); }

WString::WString(const char16_t* text, std::int32_t count) { append(text, count); }

WString& WString::operator=(const WString& other)
{
    AbstractMutableString<char16_t>::operator=(other);
    return *this;
}

WString& WString::operator=(WString&& other) noexcept
{
    std::swap(narrow_, other.narrow_);
    AbstractMutableString<char16_t>::operator=(std::move(other));
    return *this;
}

WString::~WString() { delete narrow_; }

void WString::append(const char* text) { appendBytes(text, ownedLength(text)); }

void WString::append(const char16_t* text) { append(text, ownedLength(text)); }

void WString::appendBytes(const char* text, std::int32_t count)
{
    if (count > capacity() - length)
        grow(count);
    for (std::int32_t i = 0; i < count; ++i)
        storage()[length + i] = static_cast<std::uint8_t>(text[i]);
    setLength(length + count);
}

void WString::setValue(const WString& other) { assign(other.data, other.length); }

void WString::setValue(const char* text)
{
    const std::int32_t count = ownedLength(text);
    reserve(count);
    clear();
    appendBytes(text, count);
}

void WString::setValue(const char16_t* text) { assign(text, ownedLength(text)); }

void WString::setValue(const char16_t* text, std::int32_t count) { assign(text, count); }

bool WString::equals(const WString& other) const
{
    return length == other.length
        && std::memcmp(data, other.data, static_cast<std::size_t>(length) * sizeof(char16_t)) == 0;
}

bool WString::equals(const String& other) const
{
    return length == other.length && compareTexts(data, length, other.data, other.length) == 0;
}

bool WString::equals(const Object& other) const
{
    const auto* text = dynamic_cast<const WString*>(&other);
    return text != nullptr && equals(*text);
}

std::uint32_t WString::hashCode() const { return AbstractString<char16_t>::hashCode(); }

bool WString::startsWith(const String& text) const
{
    return text.length <= length && compareTexts(data, text.length, text.data, text.length) == 0;
}

bool WString::endsWith(const String& text) const
{
    const std::int32_t start = length - text.length;
    return start >= 0 && compareTexts(data + start, text.length, text.data, text.length) == 0;
}

std::int32_t WString::indexOf(const String& text) const
{
    return static_cast<std::int32_t>(findText(data, length, text.data, text.length));
}

const String& WString::toString() const
{
    if (narrow_ == nullptr) {
        narrow_ = newObject<String>();
        if (narrow_ == nullptr)
            throw std::bad_alloc();
    }
    narrow_->clear();
    narrow_->reserve(length);
    for (std::int32_t i = 0; i < length; ++i)
        narrow_->append(static_cast<char>(static_cast<std::uint8_t>(data[i] & 0xFF)));
    return *narrow_;
}

std::int32_t WString::swstrcmp(const char* a, const char16_t* b) { return compareTerminated(a, b); }

WString WString::valueOf(std::uint32_t number)
{
    char digits[std::numeric_limits<std::uint32_t>::digits10 + 1];
    char* const end = digits + sizeof digits;
    char* first = end;
    do {
        *--first = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    WString text;
    text.appendBytes(first, static_cast<std::int32_t>(end - first));
    return text;
}

} // namespace zorvan
