#include "support/abstract_string.h"

#include "support/text_search.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t kMaximumLength = std::numeric_limits<std::int32_t>::max();

/// The least storage that is worth a call of the allocator.
constexpr std::int64_t kMinimumCapacity = 15;

template <class Ch> std::int32_t boundedLength(const Ch* text)
{
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(zorvan::textLength(text), kMaximumLength));
}

template <class Ch> constexpr Ch lowerCase(Ch character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<Ch>(character + ('a' - 'A'))
                                                : character;
}

template <class Ch> bool isWhiteSpace(Ch character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

template <class Ch>
std::int32_t compareIgnoringCase(
    const Ch* a, std::int32_t aLength, const Ch* b, std::int32_t bLength)
{
    const std::int32_t common = std::min(aLength, bLength);
    for (std::int32_t i = 0; i < common; ++i) {
        const std::uint32_t left = zorvan::characterNumber(lowerCase(a[i]));
        const std::uint32_t right = zorvan::characterNumber(lowerCase(b[i]));
        if (left != right)
            return left < right ? -1 : 1;
    }
    if (aLength == bLength)
        return 0;
    return aLength < bLength ? -1 : 1;
}

} // namespace

namespace zorvan {

template <class Ch>
AbstractString<Ch>::AbstractString(const Ch* text, std::int32_t textLength)
    : data(text == nullptr ? emptyText() : text)
    , length(text == nullptr ? 0 : textLength)
{
    if (length < 0)
        length = boundedLength(data);
}

template <class Ch> AbstractString<Ch>::~AbstractString() = default;

template <class Ch> const Ch* AbstractString<Ch>::value() const { return data; }

template <class Ch> std::int32_t AbstractString<Ch>::compareStrings(const Ch* a, const Ch* b)
{
    return compareTerminated(a == nullptr ? emptyText() : a, b == nullptr ? emptyText() : b);
}

template <class Ch> std::int32_t AbstractString<Ch>::compareTo(const AbstractString& other) const
{
    return compareTexts(data, length, other.data, other.length);
}

template <class Ch>
std::int32_t AbstractString<Ch>::compareToIgnoreCase(const AbstractString& other) const
{
    return compareIgnoringCase(data, length, other.data, other.length);
}

template <class Ch> bool AbstractString<Ch>::equalsIgnoreCase(const Ch* text) const
{
    return compareIgnoringCase(data, length, text, boundedLength(text)) == 0;
}

template <class Ch> std::int32_t AbstractString<Ch>::indexOf(Ch character) const
{
    const Ch* end = data + length;
    const Ch* found = std::find(data, end, character);
    return found == end ? -1 : static_cast<std::int32_t>(found - data);
}

template <class Ch> std::int32_t AbstractString<Ch>::indexOf(const Ch* text) const
{
    return static_cast<std::int32_t>(findText(data, length, text, textLength(text)));
}

template <class Ch> bool AbstractString<Ch>::endsWith(const Ch* text) const
{
    const std::ptrdiff_t count = textLength(text);
    return count <= length && compareTexts(data + (length - count), count, text, count) == 0;
}

template <class Ch> std::uint32_t AbstractString<Ch>::hashCode() const
{
    std::uint32_t hash = 0;
    for (std::int32_t i = 0; i < length; ++i)
        hash = hash * 31 + characterNumber(data[i]);
    return hash;
}

template <class Ch>
AbstractMutableString<Ch>::AbstractMutableString(const AbstractMutableString& other)
    : AbstractString<Ch>()
{
    assign(other.data, other.length);
}

template <class Ch>
AbstractMutableString<Ch>::AbstractMutableString(AbstractMutableString&& other) noexcept
    : AbstractString<Ch>(other)
    , capacity_(other.capacity_)
{
    other.data = AbstractString<Ch>::emptyText();
    other.length = 0;
    other.capacity_ = 0;
}

template <class Ch>
AbstractMutableString<Ch>& AbstractMutableString<Ch>::operator=(const AbstractMutableString& other)
{
    if (this != &other)
        assign(other.data, other.length);
    return *this;
}

template <class Ch>
AbstractMutableString<Ch>& AbstractMutableString<Ch>::operator=(
    AbstractMutableString&& other) noexcept
{
    std::swap(this->data, other.data);
    std::swap(this->length, other.length);
    std::swap(capacity_, other.capacity_);
    return *this;
}

template <class Ch> AbstractMutableString<Ch>::~AbstractMutableString()
{
    if (capacity_ != 0)
        zorvan::releaseStorage(storage());
}

template <class Ch> const Ch* AbstractMutableString<Ch>::value() const { return this->data; }

template <class Ch> void AbstractMutableString<Ch>::releaseStorage()
{
    if (capacity_ != 0)
        zorvan::releaseStorage(storage());
    this->data = AbstractString<Ch>::emptyText();
    this->length = 0;
    capacity_ = 0;
}

template <class Ch> void AbstractMutableString<Ch>::reserve(std::int32_t characters)
{
    if (characters > capacity_)
        grow(characters - this->length);
}

template <class Ch>
void AbstractMutableString<Ch>::deleteSubstring(std::int32_t start, std::int32_t end)
{
    start = std::max(start, 0);
    end = std::min(end, this->length);
    if (start >= end)
        return;
    std::copy(storage() + end, storage() + this->length, storage() + start);
    setLength(this->length - (end - start));
}

template <class Ch> void AbstractMutableString<Ch>::insertCharAt(std::int32_t index, Ch character)
{
    index = std::clamp(index, 0, this->length);
    append(character);
    Ch* place = storage() + index;
    std::rotate(place, storage() + this->length - 1, storage() + this->length);
}

template <class Ch>
void AbstractMutableString<Ch>::replaceNot(const AbstractString<Ch>& allowed, Ch replacement)
{
    std::array<bool, 256> allowedLow{};
    for (std::int32_t i = 0; i < allowed.length; ++i) {
        const std::uint32_t number = characterNumber(allowed.data[i]);
        if (number < allowedLow.size())
            allowedLow[number] = true;
    }
    for (std::int32_t i = 0; i < this->length; ++i) {
        const std::uint32_t number = characterNumber(this->data[i]);
        const bool keep
            = number < allowedLow.size() ? allowedLow[number] : allowed.contains(this->data[i]);
        if (!keep)
            storage()[i] = replacement;
    }
}

template <class Ch> void AbstractMutableString<Ch>::toLowerCase()
{
    for (std::int32_t i = 0; i < this->length; ++i)
        storage()[i] = lowerCase(this->data[i]);
}

template <class Ch> void AbstractMutableString<Ch>::trim_leading()
{
    std::int32_t start = 0;
    while (start < this->length && isWhiteSpace(this->data[start]))
        ++start;
    deleteSubstring(0, start);
}

template <class Ch> void AbstractMutableString<Ch>::trim_trailing()
{
    std::int32_t end = this->length;
    while (end > 0 && isWhiteSpace(this->data[end - 1]))
        --end;
    setLength(end);
}

template <class Ch> void AbstractMutableString<Ch>::assign(const Ch* text, std::int32_t count)
{
    if (count > capacity_) {
        // A text that is part of this one always fits, so nothing of it is lost here.
        auto* characters
            = static_cast<Ch*>(allocateStorage((static_cast<std::size_t>(count) + 1) * sizeof(Ch)));
        takeStorage(characters, count);
    }
    if (count > 0)
        std::memmove(storage(), text, static_cast<std::size_t>(count) * sizeof(Ch));
    setLength(std::max(count, 0));
}

template <class Ch> void AbstractMutableString<Ch>::grow(std::int32_t more)
{
    std::int32_t newCapacity = 0;
    Ch* characters = newStorage(more, newCapacity);
    std::memcpy(characters, this->data, (static_cast<std::size_t>(this->length) + 1) * sizeof(Ch));
    takeStorage(characters, newCapacity);
}

template <class Ch>
void AbstractMutableString<Ch>::appendGrowing(const Ch* text, std::int32_t count)
{
    std::int32_t newCapacity = 0;
    Ch* characters = newStorage(count, newCapacity);
    const auto held = static_cast<std::size_t>(this->length);
    const auto added = static_cast<std::size_t>(count);
    std::memcpy(characters, this->data, held * sizeof(Ch));
    // The text may lie in the old storage, which is still there.
    std::memcpy(characters + held, text, added * sizeof(Ch));
    takeStorage(characters, newCapacity);
    setLength(this->length + count);
}

template <class Ch>
Ch* AbstractMutableString<Ch>::newStorage(std::int32_t more, std::int32_t& newCapacity) const
{
    const std::int64_t needed = std::int64_t{this->length} + more;
    if (needed > kMaximumLength)
        throw std::bad_alloc();
    const std::int64_t doubled = std::min(2 * std::int64_t{capacity_}, kMaximumLength);
    const std::int64_t wanted = std::max({needed, doubled, kMinimumCapacity});
    newCapacity = static_cast<std::int32_t>(wanted);
    return static_cast<Ch*>(allocateStorage((static_cast<std::size_t>(wanted) + 1) * sizeof(Ch)));
}

template <class Ch>
void AbstractMutableString<Ch>::takeStorage(Ch* characters, std::int32_t newCapacity)
{
    if (capacity_ != 0)
        zorvan::releaseStorage(storage());
    this->data = characters;
    capacity_ = newCapacity;
}

template class AbstractString<char>;
template class AbstractString<char16_t>;
template class AbstractMutableString<char>;
template class AbstractMutableString<char16_t>;

} // namespace zorvan
