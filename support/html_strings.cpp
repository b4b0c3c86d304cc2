#include "support/html_strings.h"

#include "support/name_table.h"

namespace zorvan {

ZVHTMLElement HTMLStrings::elementFromString(const char* lowerCaseName)
{
    return static_cast<ZVHTMLElement>(findName(kElementNames, lowerCaseName));
}

ZVHTMLAttribute HTMLStrings::attributeFromString(const char* lowerCaseName)
{
    return static_cast<ZVHTMLAttribute>(findName(kAttributeNames, lowerCaseName));
}

ZVHTMLElement HTMLStrings::elementFromText(const char* lowerCaseName, std::uint32_t length)
{
    return static_cast<ZVHTMLElement>(findName(kElementNames, lowerCaseName, length));
}

ZVHTMLAttribute HTMLStrings::attributeFromText(const char* lowerCaseName, std::uint32_t length)
{
    return static_cast<ZVHTMLAttribute>(findName(kAttributeNames, lowerCaseName, length));
}

const char* HTMLStrings::elementName(std::uint32_t id) { return nameOf(kElementNames, id); }

const char* HTMLStrings::attributeName(std::uint32_t id) { return nameOf(kAttributeNames, id); }

} // namespace zorvan
