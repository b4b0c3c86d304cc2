#pragma once

#include "support/html_strings.h"

#include <cstdint>
#include <string_view>

/// A name on its way to a number: the low bytes of its units, folded to lower case. It ends at the
/// first unit 0, and so does what is looked up at a low byte of 0.
class NameCopy {
public:
    void add(char16_t unit)
    {
        if (read_++ == 0)
            empty_ = unit == 0;
        const auto byte = static_cast<char>(unit & 0xFF);
        if (byte == '\0')
            ended_ = true;
        if (ended_)
            return;
        if (length_ < kCapacity)
            text_[length_] = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte;
        ++length_;
    }

    /// Whether nothing was added, or a unit 0 first.
    bool isEmpty() const { return empty_; }

    /// How much of a word of lower case the name is so far: its letters, one more than those once
    /// no letter can follow, 0 if the name is or will be another.
    std::uint32_t partOf(std::string_view word) const
    {
        if (length_ > kCapacity || !word.starts_with(std::string_view(text_, length_)))
            return 0;
        if (!ended_)
            return length_;
        return length_ == word.size() ? length_ + 1 : 0;
    }

    /// The ZVHTMLElement of the name, 0 for an unknown one.
    std::uint32_t element() const
    {
        if (length_ > kCapacity)
            return 0;
        return zorvan::HTMLStrings::elementFromText(text_, length_);
    }

    /// The ZVHTMLAttribute of the name, 0 for an unknown one.
    std::uint32_t attribute() const
    {
        if (length_ > kCapacity)
            return 0;
        return zorvan::HTMLStrings::attributeFromText(text_, length_);
    }

private:
    // More than any known name has.
    static constexpr std::uint32_t kCapacity = 32;

    std::uint32_t read_ = 0;
    std::uint32_t length_ = 0;
    bool empty_ = true;
    bool ended_ = false;
    char text_[kCapacity];
};
