#pragma once

#include "support/abstract_string.h"
#include "support/export.h"
#include "support/object.h"

#include <cstdint>

namespace zorvan {

/// A text of 8-bit characters, of no particular code page.
class ZV_EXPORT String : public AbstractMutableString<char>, public Object {
public:
    /// An empty text; allocates nothing.
    String() = default;
    String(const String& other);
    String(String&& other) noexcept;
    /// Null is an empty text.
    explicit String(const char* text);
    String& operator=(const String& other);
    String& operator=(String&& other) noexcept;
    String& operator=(const char* text);
    ~String() override;

    using AbstractMutableString<char>::append;
    void append(const char* text);
    void append(const String& other) { append(other.data, other.length); }

    void setValue(const char* text);
    void setValue(const String& source);
    /// The text of `source` from `start` to its end. The source may be this object.
    void setValue(const String& source, std::int32_t start);
    /// The same, at most `count` characters of it.
    void setValue(const String& source, std::int32_t start, std::int32_t count);

    /// Reads a decimal number at `start`: a sign, digits, a point with digits behind it; no
    /// exponent. Writes the position behind it when `end` is not null. Without a digit the number
    /// is 0 and the position `start`. A number beyond the range of double is infinite.
    double toDouble(std::int32_t start, std::int32_t* end) const;

    /// Of the content, as equals.
    std::uint32_t hashCode() const override;
    bool equals(const String& other) const;
    /// Whether the other is a String with the same text.
    bool equals(const Object& other) const override;
    /// This text itself.
    const String& toString() const override;
};

} // namespace zorvan
