#pragma once

#include "support/export.h"
#include "support/html_names.h"

#include <cstdint>

namespace zorvan {

/// Names and numbers of the elements and attributes of HTML. Names are looked up in lower case.
class ZV_EXPORT HTMLStrings {
public:
    /// The number of a zero-terminated name; 0 for an unknown one and for null.
    static ZVHTMLElement elementFromString(const char* lowerCaseName);
    static ZVHTMLAttribute attributeFromString(const char* lowerCaseName);

    /// The same for a name of `length` bytes that needs no terminator.
    static ZVHTMLElement elementFromText(const char* lowerCaseName, std::uint32_t length);
    static ZVHTMLAttribute attributeFromText(const char* lowerCaseName, std::uint32_t length);

    /// The name of a number; empty for a number without one. Never null.
    static const char* elementName(std::uint32_t id);
    static const char* attributeName(std::uint32_t id);
};

} // namespace zorvan
