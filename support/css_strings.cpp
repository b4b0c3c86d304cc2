#include "support/css_strings.h"

#include "support/name_table.h"

namespace zorvan {

ZVCSSProperty CSSStrings::propertyFromString(const char* lowerCaseName)
{
    return static_cast<ZVCSSProperty>(findName(kPropertyNames, lowerCaseName));
}

ZVCSSValue CSSStrings::valueFromString(const char* lowerCaseKeyword)
{
    return static_cast<ZVCSSValue>(findName(kValueNames, lowerCaseKeyword));
}

ZVCSSProperty CSSStrings::propertyFromText(const char* lowerCaseName, std::uint32_t length)
{
    return static_cast<ZVCSSProperty>(findName(kPropertyNames, lowerCaseName, length));
}

ZVCSSValue CSSStrings::valueFromText(const char* lowerCaseKeyword, std::uint32_t length)
{
    return static_cast<ZVCSSValue>(findName(kValueNames, lowerCaseKeyword, length));
}

const char* CSSStrings::propertyName(std::uint32_t id) { return nameOf(kPropertyNames, id); }

const char* CSSStrings::valueName(std::uint32_t id) { return nameOf(kValueNames, id); }

} // namespace zorvan
