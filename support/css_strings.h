#pragma once

#include "support/css_names.h"
#include "support/export.h"

#include <cstdint>

namespace zorvan {

/// Names and numbers of the properties and keywords of CSS. Names are looked up in lower case.
class ZV_EXPORT CSSStrings {
public:
    /// The number of a zero-terminated name; 0 for an unknown one and for null.
    static ZVCSSProperty propertyFromString(const char* lowerCaseName);
    static ZVCSSValue valueFromString(const char* lowerCaseKeyword);

    /// The same for a name of `length` bytes that needs no terminator.
    static ZVCSSProperty propertyFromText(const char* lowerCaseName, std::uint32_t length);
    static ZVCSSValue valueFromText(const char* lowerCaseKeyword, std::uint32_t length);

    /// The name of a number; empty for a number without one. Never null.
    static const char* propertyName(std::uint32_t id);
    static const char* valueName(std::uint32_t id);
};

} // namespace zorvan
