#pragma once

#include <cstdint>
#include <cstring>

namespace zorvan {

/// A name with its length; the row's index is the name's number. A length of 0 is a number without
/// a name. Rows hold their text, so that a table needs no relocation when the library is loaded.
struct NameRow {
    std::uint8_t length;
    char text[31];
};

/// Names with a perfect hash over them: every name has a slot of its own. The hash picks a bucket
/// and a first slot, the bucket's shift moves that to a slot which no other name has. Generated.
struct NameTable {
    std::uint32_t seed;
    const NameRow* rows;
    std::uint32_t rowCount;
    const std::uint8_t* slots; // the numbers of the names, 0 for none
    std::uint32_t slotMask;
    const std::uint16_t* shifts;
    std::uint32_t shiftMask;
};

/// The hash that the generator has built the tables with.
inline std::uint32_t nameHash(const char* text, std::uint32_t length, std::uint32_t seed)
{
    std::uint32_t hash = seed;
    for (std::uint32_t i = 0; i < length; ++i)
        hash = (hash ^ static_cast<std::uint8_t>(text[i])) * 0x01000193;
    return hash;
}

/// The number of a name of `length` bytes, 0 when the table does not have it.
inline std::uint32_t findName(const NameTable& table, const char* text, std::uint32_t length)
{
    if (length == 0 || length >= sizeof(NameRow::text))
        return 0;
    const std::uint32_t hash = nameHash(text, length, table.seed);
    const std::uint32_t shift = table.shifts[hash & table.shiftMask];
    const std::uint32_t number = table.slots[((hash >> 16) + shift) & table.slotMask];
    const NameRow& row = table.rows[number];
    const bool found = row.length == length && std::memcmp(row.text, text, length) == 0;
    return found ? number : 0;
}

/// The number of a zero-terminated name; null is no name.
inline std::uint32_t findName(const NameTable& table, const char* text)
{
    if (text == nullptr)
        return 0;
    std::uint32_t length = 0;
    while (length < sizeof(NameRow::text) && text[length] != 0)
        ++length;
    return findName(table, text, length);
}

/// The name of a number, empty for none.
inline const char* nameOf(const NameTable& table, std::uint32_t number)
{
    return table.rows[number < table.rowCount ? number : 0].text;
}

/// The four tables; private to the library.
extern const NameTable kElementNames;
extern const NameTable kAttributeNames;
extern const NameTable kPropertyNames;
extern const NameTable kValueNames;

} // namespace zorvan
