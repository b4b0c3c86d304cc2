#pragma once

#include "support/abstract_string.h"
#include "support/export.h"
#include "support/object.h"

#include <cstdint>

namespace zorvan {

class String;

/// A text of 16-bit units. Surrogates mean nothing here: a unit is a character. Narrow text is
/// taken as units of the same numbers, 0 to 255; no code page is applied.
class ZV_EXPORT WString : public AbstractMutableString<char16_t>, public Object {
public:
    /// An empty text; allocates nothing.
    WString() = default;
    WString(const WString& other);
    WString(WString&& other) noexcept;
    explicit WString(const String& text);
    /// Null is an empty text, here and below.
    explicit WString(const char* text);
    explicit WString(const char16_t* text);
    WString(const char16_t* text, std::int32_t count);
    WString& operator=(const WString& other);
    WString& operator=(WString&& other) noexcept;
    ~WString() override;

    using AbstractMutableString<char16_t>::append;
    void append(const WString& other) { append(other.data, other.length); }
    void append(const char* text);
    void append(const char16_t* text);

    void setValue(const WString& other);
    void setValue(const char* text);
    void setValue(const char16_t* text);
    void setValue(const char16_t* text, std::int32_t count);

    bool equals(const WString& other) const;
    bool equals(const String& other) const;
    /// Whether the other is a WString with the same text.
    bool equals(const Object& other) const override;
    /// Of the content, as equals.
    std::uint32_t hashCode() const override;

    using AbstractString<char16_t>::endsWith;
    using AbstractString<char16_t>::indexOf;
    /// An empty text begins and ends every other and is found at 0.
    bool startsWith(const String& text) const;
    bool endsWith(const String& text) const;
    /// The position of the first occurrence, -1 when there is none. Time is linear in both texts.
    std::int32_t indexOf(const String& text) const;

    /// The low bytes of the units, kept by this object: good until the next call or its end.
    const String& toString() const override;

    /// Compares bytes with units, zero-terminated both: 0 when equal, else the sign of the first
    /// difference.
    static std::int32_t swstrcmp(const char* a, const char16_t* b);

    /// The decimal text of the number.
    static WString valueOf(std::uint32_t number);

private:
    void appendBytes(const char* text, std::int32_t count);

    mutable String* narrow_ = nullptr; // owned, made by the first toString, freed with the object
};

} // namespace zorvan
