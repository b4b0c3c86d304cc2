#pragma once

#include "support/export.h"
#include "support/process_heap.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace zorvan {

/// Text of characters of type Ch, char or char16_t, that can be read. Positions and lengths are in
/// characters. Ignoring case means the 26 letters of ASCII; nothing else is folded.
template <class Ch> class ZV_EXPORT AbstractString {
public:
    /// An empty text.
    AbstractString()
        : data(emptyText())
        , length(0)
    {
    }

    /// Wraps a text, which must outlive the object. textLength: in characters, -1 up to the
    /// terminator. Null is an empty text.
    explicit AbstractString(const Ch* text, std::int32_t textLength = -1);

    AbstractString(const AbstractString&) = default;
    AbstractString& operator=(const AbstractString&) = default;
    virtual ~AbstractString();

    /// The characters; never null.
    virtual const Ch* value() const;

    /// Compares zero-terminated texts by unsigned characters: 0 when equal, else the sign of the
    /// first difference. Null is an empty text.
    static std::int32_t compareStrings(const Ch* a, const Ch* b);

    std::int32_t compareTo(const AbstractString& other) const;
    std::int32_t compareToIgnoreCase(const AbstractString& other) const;
    bool equalsIgnoreCase(const Ch* text) const;

    bool contains(Ch character) const { return indexOf(character) >= 0; }

    /// The position of the first occurrence, -1 when there is none. An empty text is found at 0.
    std::int32_t indexOf(Ch character) const;
    std::int32_t indexOf(const Ch* text) const;

    bool endsWith(const Ch* text) const;

    /// A number of the content, the same in every run.
    std::uint32_t hashCode() const;

    /// The characters, never null. Those of a string are followed by a terminator; wrapped ones are
    /// when they were before.
    const Ch* data;

    /// The number of characters, the terminator left out.
    std::int32_t length;

protected:
    /// What an empty text points at. A literal, as a static member of a template would be one
    /// object for the whole process, which keeps the library loaded for ever.
    static const Ch* emptyText()
    {
        if constexpr (std::is_same_v<Ch, char>)
            return "";
        else
            return u"";
    }
};

/// Text that owns its characters and can be changed. Storage grows by doubling and is kept until it
/// is given back; when there is none, or the text would pass 2^31 - 1 characters, std::bad_alloc is
/// thrown and the text is as it was.
template <class Ch> class ZV_EXPORT AbstractMutableString : public AbstractString<Ch> {
public:
    /// An empty text; allocates nothing.
    AbstractMutableString() = default;
    AbstractMutableString(const AbstractMutableString& other);
    AbstractMutableString(AbstractMutableString&& other) noexcept;
    AbstractMutableString& operator=(const AbstractMutableString& other);
    AbstractMutableString& operator=(AbstractMutableString&& other) noexcept;
    ~AbstractMutableString() override;

    const Ch* value() const override;

    /// Empties the text and keeps the storage.
    void clear() { setLength(0); }

    /// Empties the text and gives the storage back.
    void releaseStorage();

    /// The number of characters for which there is storage.
    std::int32_t capacity() const { return capacity_; }

    /// Makes room for a text of that many characters.
    void reserve(std::int32_t characters);

    void append(Ch character)
    {
        if (this->length == capacity_)
            grow(1);
        Ch* place = storage() + this->length;
        place[0] = character;
        place[1] = 0;
        ++this->length;
    }

    /// Appends `count` characters; below 1 nothing. The text may be part of this one.
    void append(const Ch* text, std::int32_t count)
    {
        if (count <= 0)
            return;
        if (count > capacity_ - this->length) {
            appendGrowing(text, count);
            return;
        }
        std::memcpy(storage() + this->length, text, static_cast<std::size_t>(count) * sizeof(Ch));
        setLength(this->length + count);
    }

    /// Removes the characters from `start` up to but not including `end`; what lies outside the
    /// text counts for nothing.
    void deleteSubstring(std::int32_t start, std::int32_t end);

    /// Puts a character in front of the one at `index`; from the length on, at the end.
    void insertCharAt(std::int32_t index, Ch character);

    /// Replaces every character that is not among those of `allowed`.
    void replaceNot(const AbstractString<Ch>& allowed, Ch replacement);

    /// Folds the letters of ASCII to lower case.
    void toLowerCase();

    /// Remove blanks, TAB, LF, VT, FF and CR at one end.
    void trim_leading();
    void trim_trailing();

protected:
    /// Takes over the text, which may be part of this one.
    void assign(const Ch* text, std::int32_t count);

    /// Makes room for `more` characters behind the text.
    void grow(std::int32_t more);

    /// Ends the text at `newLength`, which has to lie within the capacity.
    void setLength(std::int32_t newLength)
    {
        this->length = newLength;
        // Without storage the text is the shared terminator, which nobody writes to.
        if (capacity_ != 0)
            storage()[newLength] = 0;
    }

    /// The characters for writing; only with a capacity above 0.
    Ch* storage() { return const_cast<Ch*>(this->data); }

private:
    void appendGrowing(const Ch* text, std::int32_t count);
    Ch* newStorage(std::int32_t more, std::int32_t& newCapacity) const;
    void takeStorage(Ch* characters, std::int32_t newCapacity);

    std::int32_t capacity_ = 0;
};

extern template class AbstractString<char>;
extern template class AbstractString<char16_t>;
extern template class AbstractMutableString<char>;
extern template class AbstractMutableString<char16_t>;

} // namespace zorvan
