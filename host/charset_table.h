#pragma once

#include <cstdint>
#include <span>

namespace host {

/// What the 16-bit units of a run are.
enum class UnitForm {
    Utf16, ///< UTF-16 units, whatever the byte order of the document was
    SingleByte, ///< one byte each
    JisRoman, ///< one byte each: ASCII with yen sign and overline, half-width katakana above 0xA0
    Bytes, ///< a byte, or first byte times 256 plus second
    LooseBytes, ///< as Bytes, but two bytes in a row may be one character all the same
    SevenBitPairs, ///< a byte, or both bytes of a pair with their high bits off
    Johab ///< as LooseBytes, in the Korean combination code
};

/// What the filter does with a character set.
enum class CharsetUse {
    Document, ///< it reads documents by it
    TextOnly ///< it only delivers text under it, as a state of another
};

/// A character set that the host can turn into Unicode.
struct CharsetRow {
    std::uint32_t id; ///< host character set identifier
    UnitForm form;
    CharsetUse use;
    const char* converter; ///< ICU's name of what maps the bytes; null for UTF-16
    const char* name; ///< for people
};

/// All character sets, ascending by identifier.
std::span<const CharsetRow> charsetTable();

/// True when the filter reads documents by the identifier.
bool readsDocumentsBy(std::uint32_t id);

/// The row of an identifier; null when the host does not know it.
const CharsetRow* findCharset(std::uint32_t id);

} // namespace host
