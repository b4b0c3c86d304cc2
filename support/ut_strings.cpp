#include "support/ut_strings.h"

#include "support/text_search.h"

#include <cstddef>

namespace {

/// The lead bytes of one character set, as up to three ranges; one whose first byte is above its
/// last is empty.
struct LeadBytes {
    std::uint32_t charSetId;
    std::uint8_t first;
    std::uint8_t last;
    std::uint8_t secondFirst;
    std::uint8_t secondLast;
    std::uint8_t thirdFirst;
    std::uint8_t thirdLast;
};

constexpr std::uint8_t kNone = 0xFF;

constexpr LeadBytes kLeadBytes[] = {
    {0x0F050000, 0xA1, 0xFE, kNone, 0, kNone, 0}, // GB in 8 bits
    {0x0F0D0000, 0xA1, 0xFE, kNone, 0, kNone, 0}, // EUC-JP
    {0x13A40000, 0x81, 0x9F, 0xE0, 0xFC, kNone, 0}, // Shift-JIS
    {0x13A80000, 0x81, 0xFE, kNone, 0, kNone, 0}, // GB 2312 and its extensions
    {0x13B50000, 0xA1, 0xAC, 0xB0, 0xC8, 0xCA, 0xFD}, // Korean
    {0x13B60000, 0xA1, 0xC6, 0xC9, 0xF9, kNone, 0}, // Big5
};

} // namespace

char16_t* UTwsstrcpy(char16_t* destination, const char* source)
{
    std::size_t i = 0;
    for (; source[i] != 0; ++i)
        destination[i] = static_cast<std::uint8_t>(source[i]);
    destination[i] = 0;
    return destination;
}

char* UTswstrcpy(char* destination, const char16_t* source)
{
    std::size_t i = 0;
    for (; source[i] != 0; ++i)
        destination[i] = static_cast<char>(static_cast<std::uint8_t>(source[i] & 0xFF));
    destination[i] = 0;
    return destination;
}

char16_t* _UTwstrcpy(char16_t* destination, const char16_t* source)
{
    std::size_t i = 0;
    do {
        destination[i] = source[i];
    } while (source[i++] != 0);
    return destination;
}

int UTwsstrcmp(const char16_t* wide, const char* narrow)
{
    return zorvan::compareTerminated(wide, narrow);
}

int UTwsstrncmp(const char16_t* wide, const char* narrow, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t left = zorvan::characterNumber(wide[i]);
        const std::uint32_t right = zorvan::characterNumber(narrow[i]);
        if (left != right)
            return left < right ? -1 : 1;
        if (left == 0)
            return 0;
    }
    return 0;
}

const char16_t* UTwcsstr(const char16_t* text, const char16_t* part)
{
    const std::ptrdiff_t found
        = zorvan::findText(text, zorvan::textLength(text), part, zorvan::textLength(part));
    return found < 0 ? nullptr : text + found;
}

const char16_t* UTwstrchr(const char16_t* text, char16_t unit)
{
    for (; *text != unit; ++text) {
        if (*text == 0)
            return nullptr;
    }
    return text;
}

int UTIsLeadByte(std::uint32_t charSetId, std::uint8_t byte)
{
    for (const LeadBytes& row : kLeadBytes) {
        if (row.charSetId != charSetId)
            continue;
        return (byte >= row.first && byte <= row.last)
            || (byte >= row.secondFirst && byte <= row.secondLast)
            || (byte >= row.thirdFirst && byte <= row.thirdLast);
    }
    return 0;
}
