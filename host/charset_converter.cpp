#include "host/charset_converter.h"

#include "host/charset_table.h"
#include "host/johab.h"

#include <array>
#include <stdexcept>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <vector>

namespace host {

namespace {

    constexpr char16_t kReplacement = 0xFFFD;
    constexpr std::uint16_t kHighBits = 0x8080;

    // What a two-byte code may be besides a character.
    constexpr UChar32 kUntried = -1;
    constexpr UChar32 kUnmappedPair = -2; // bytes that belong together and stand for nothing
    constexpr UChar32 kNoPair = -3; // bytes that do not belong together

    struct CloseConverter {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };
    using ConverterHandle = std::unique_ptr<UConverter, CloseConverter>;

    /// Puts U+FFFD for what ICU can't map; the context is the count of such places.
    void countReplaced(const void* counter, UConverterToUnicodeArgs* arguments, const char*,
        std::int32_t, UConverterCallbackReason reason, UErrorCode* error)
    {
        if (reason > UCNV_IRREGULAR)
            return;
        *error = U_ZERO_ERROR;
        ++*static_cast<std::uint32_t*>(const_cast<void*>(counter));
        ucnv_cbToUWriteUChars(arguments, &kReplacement, 1, 0, error);
    }

    ConverterHandle openConverter(const char* name, std::uint32_t& replaced)
    {
        UErrorCode error = U_ZERO_ERROR;
        ConverterHandle converter(ucnv_open(name, &error));
        if (U_SUCCESS(error)) {
            ucnv_setToUCallBack(
                converter.get(), countReplaced, &replaced, nullptr, nullptr, &error);
        }
        if (U_FAILURE(error))
            throw std::runtime_error(std::string("ICU has no converter '") + name + "'");
        return converter;
    }

    bool isControl(unsigned byte) { return byte < 0x20 || byte == 0x7F; }

    /// True for both bytes of a code of the 7-bit sets.
    bool isSevenBitPair(char16_t unit)
    {
        const unsigned lead = unit >> 8;
        const unsigned trail = unit & 0xFFu;
        return lead >= 0x21 && lead <= 0x7E && trail >= 0x21 && trail <= 0x7E;
    }

    void appendCodePoint(std::string& out, UChar32 character)
    {
        char bytes[U8_MAX_LENGTH];
        std::size_t count = 0;
        U8_APPEND_UNSAFE(bytes, count, character);
        out.append(bytes, count);
    }

} // namespace

/// What turns the units of one character set into UTF-8.
class CharsetConverter::Decoder {
public:
    Decoder(const CharsetRow& row, std::uint64_t& unmapped);

    bool takesUtf16() const { return row_.form == UnitForm::Utf16; }
    void append(std::string& out, std::u16string_view units);

private:
    void fillTable();
    void appendUtf16(std::string& out, std::u16string_view units);
    void appendSingle(std::string& out, char16_t unit);
    void appendPair(std::string& out, std::uint16_t code);
    void appendLoose(std::string& out, std::u16string_view units);
    void appendSevenBit(std::string& out, char16_t unit);
    void appendJohab(std::string& out, std::u16string_view units);
    void appendUnmapped(std::string& out);
    UChar32 pairOf(std::uint16_t code);
    UChar32 convertPair(std::uint16_t code);

    const CharsetRow row_;
    std::uint64_t& unmapped_;
    std::uint32_t replaced_ = 0; // places that ICU could not map, of the call at hand
    ConverterHandle converter_; // null for UTF-16
    std::array<char16_t, 256> table_ = {}; // of single bytes; kReplacement for what has no mapping
    std::vector<UChar32> pairs_; // of two-byte codes, as far as they have come; empty at first
};

CharsetConverter::Decoder::Decoder(const CharsetRow& row, std::uint64_t& unmapped)
    : row_(row)
    , unmapped_(unmapped)
{
    if (row_.converter == nullptr)
        return;
    converter_ = openConverter(row_.converter, replaced_);
    fillTable();
}

void CharsetConverter::Decoder::fillTable()
{
    for (unsigned byte = 0; byte < table_.size(); ++byte) {
        const char source = static_cast<char>(byte);
        char16_t target[4];
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t length = ucnv_toUChars(converter_.get(), target, 4, &source, 1, &error);
        table_[byte] = U_SUCCESS(error) && length == 1 ? target[0] : kReplacement;
        // Some converters of ICU permute three of them, as terminals of old did.
        if (isControl(byte))
            table_[byte] = static_cast<char16_t>(byte);
    }
    if (row_.form == UnitForm::JisRoman) {
        for (unsigned byte = 0; byte < 0x80; ++byte)
            table_[byte] = static_cast<char16_t>(byte);
        table_[0x5C] = u'\u00A5';
        table_[0x7E] = u'\u203E';
    }
}

void CharsetConverter::Decoder::append(std::string& out, std::u16string_view units)
{
    switch (row_.form) {
    case UnitForm::Utf16:
        return appendUtf16(out, units);

    case UnitForm::SingleByte:
    case UnitForm::JisRoman:
        for (const char16_t unit : units)
            appendSingle(out, unit);
        return;

    case UnitForm::Bytes:
        for (const char16_t unit : units) {
            if (unit <= 0xFF)
                appendSingle(out, unit);
            else
                appendPair(out, unit);
        }
        return;

    case UnitForm::LooseBytes:
        return appendLoose(out, units);

    case UnitForm::SevenBitPairs:
        for (const char16_t unit : units)
            appendSevenBit(out, unit);
        return;

    case UnitForm::Johab:
        return appendJohab(out, units);
    }
}

void CharsetConverter::Decoder::appendUnmapped(std::string& out)
{
    ++unmapped_;
    appendCodePoint(out, kReplacement);
}

void CharsetConverter::Decoder::appendUtf16(std::string& out, std::u16string_view units)
{
    for (std::size_t index = 0; index < units.size();) {
        UChar32 character = 0;
        U16_NEXT(units.data(), index, units.size(), character);
        if (character < 0x80)
            out.push_back(static_cast<char>(character));
        else if (U_IS_SURROGATE(character))
            appendUnmapped(out);
        else
            appendCodePoint(out, character);
    }
}

void CharsetConverter::Decoder::appendSingle(std::string& out, char16_t unit)
{
    const char16_t mapped = unit < table_.size() ? table_[unit] : kReplacement;
    if (mapped < 0x80)
        out.push_back(static_cast<char>(mapped));
    else if (mapped == kReplacement)
        appendUnmapped(out);
    else
        appendCodePoint(out, mapped);
}

// Asking ICU for each character by itself costs ten times the rest of the work, so each is asked
// for once.
UChar32 CharsetConverter::Decoder::pairOf(std::uint16_t code)
{
    if (pairs_.empty())
        pairs_.assign(0x10000, kUntried);
    UChar32& known = pairs_[code];
    if (known == kUntried)
        known = convertPair(code);
    return known;
}

UChar32 CharsetConverter::Decoder::convertPair(std::uint16_t code)
{
    const char source[] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
    char16_t target[8];
    UErrorCode error = U_ZERO_ERROR;
    replaced_ = 0;
    const std::int32_t length
        = ucnv_toUChars(converter_.get(), target, 8, source, sizeof source, &error);
    if (U_FAILURE(error) || length == 0)
        return kNoPair;
    std::int32_t end = 0;
    UChar32 character = 0;
    U16_NEXT(target, end, length, character);
    if (end != length)
        return kNoPair;
    return replaced_ != 0 || U_IS_SURROGATE(character) ? kUnmappedPair : character;
}

// A two-byte unit is one character whatever its bytes are: nothing of it joins its neighbors.
void CharsetConverter::Decoder::appendPair(std::string& out, std::uint16_t code)
{
    const UChar32 character = pairOf(code);
    if (character < 0)
        appendUnmapped(out);
    else
        appendCodePoint(out, character);
}

// The filter's ranges of first bytes are narrower than those of these sets: what it took for two
// single bytes may be one character.
void CharsetConverter::Decoder::appendLoose(std::string& out, std::u16string_view units)
{
    for (std::size_t index = 0; index < units.size(); ++index) {
        const char16_t unit = units[index];
        if (unit > 0xFF) {
            appendPair(out, unit);
            continue;
        }
        const bool mayLead = unit > 0x7F && index + 1 < units.size() && units[index + 1] <= 0xFF;
        const auto code = static_cast<std::uint16_t>(mayLead ? unit << 8 | units[index + 1] : 0);
        if (mayLead && pairOf(code) != kNoPair) {
            appendPair(out, code);
            ++index;
            continue;
        }
        appendSingle(out, unit);
    }
}

void CharsetConverter::Decoder::appendSevenBit(std::string& out, char16_t unit)
{
    if (unit <= 0x7F)
        appendSingle(out, unit);
    else if (isSevenBitPair(unit))
        appendPair(out, unit | kHighBits);
    else
        appendUnmapped(out);
}

// ICU knows the signs of this set in another arrangement only; the syllables are computed.
void CharsetConverter::Decoder::appendJohab(std::string& out, std::u16string_view units)
{
    for (std::size_t index = 0; index < units.size(); ++index) {
        std::uint32_t code = units[index];
        const bool paired = code <= 0xFF && isJohabLead(code) && index + 1 < units.size()
            && isJohabTrail(units[index + 1]);
        if (paired)
            code = code << 8 | units[++index];
        if (code <= 0x7F) {
            appendSingle(out, static_cast<char16_t>(code));
            continue;
        }
        const JohabCode decoded
            = code <= 0xFF ? JohabCode{} : decodeJohab(static_cast<std::uint16_t>(code));
        if (decoded.wansung != 0)
            appendPair(out, decoded.wansung);
        else if (decoded.unit != 0)
            appendCodePoint(out, decoded.unit);
        else
            appendUnmapped(out);
    }
}

CharsetConverter::CharsetConverter() = default;
CharsetConverter::~CharsetConverter() = default;

CharsetConverter::Decoder& CharsetConverter::decoderOf(std::uint32_t charSetId)
{
    if (lastDecoder_ != nullptr && charSetId == lastId_)
        return *lastDecoder_;
    std::unique_ptr<Decoder>& decoder = decoders_[charSetId];
    if (decoder == nullptr) {
        constexpr CharsetRow kUnknown
            = {0, UnitForm::SingleByte, CharsetUse::TextOnly, "US-ASCII", "unknown"};
        const CharsetRow* row = findCharset(charSetId);
        decoder = std::make_unique<Decoder>(row == nullptr ? kUnknown : *row, unmapped_);
    }
    lastDecoder_ = decoder.get();
    lastId_ = charSetId;
    return *lastDecoder_;
}

void CharsetConverter::append(std::string& out, std::u16string_view units, std::uint32_t charSetId)
{
    if (units.empty())
        return;
    Decoder& decoder = decoderOf(charSetId);
    if (pendingHigh_ != 0 && decoder.takesUtf16() && U16_IS_TRAIL(units.front())) {
        appendCodePoint(out, U16_GET_SUPPLEMENTARY(pendingHigh_, units.front()));
        pendingHigh_ = 0;
        units.remove_prefix(1);
    }
    flush(out);
    if (decoder.takesUtf16() && !units.empty() && U16_IS_LEAD(units.back())) {
        pendingHigh_ = units.back();
        units.remove_suffix(1);
    }
    decoder.append(out, units);
}

void CharsetConverter::flush(std::string& out)
{
    if (pendingHigh_ == 0)
        return;
    pendingHigh_ = 0;
    ++unmapped_;
    appendCodePoint(out, kReplacement);
}

} // namespace host
