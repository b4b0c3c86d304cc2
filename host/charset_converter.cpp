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

    struct CloseConverter {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };
    using ConverterHandle = std::unique_ptr<UConverter, CloseConverter>;

    /// Puts U+FFFD for what ICU can't map; the context is the count of such places.
    void countUnmapped(const void* counter, UConverterToUnicodeArgs* arguments, const char*,
        std::int32_t, UConverterCallbackReason reason, UErrorCode* error)
    {
        if (reason > UCNV_IRREGULAR)
            return;
        *error = U_ZERO_ERROR;
        ++*static_cast<std::uint64_t*>(const_cast<void*>(counter));
        ucnv_cbToUWriteUChars(arguments, &kReplacement, 1, 0, error);
    }

    ConverterHandle openConverter(const char* name, std::uint64_t& unmapped)
    {
        UErrorCode error = U_ZERO_ERROR;
        ConverterHandle converter(ucnv_open(name, &error));
        if (U_SUCCESS(error)) {
            ucnv_setToUCallBack(
                converter.get(), countUnmapped, &unmapped, nullptr, nullptr, &error);
        }
        if (U_FAILURE(error))
            throw std::runtime_error(std::string("ICU has no converter '") + name + "'");
        return converter;
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

    void append(std::string& out, std::u16string_view units);

private:
    void fillTable();
    void appendUtf16(std::string& out, std::u16string_view units);
    void appendSingle(std::string& out, std::u16string_view units);
    void appendBytes(std::string& out, std::u16string_view units, std::uint16_t setBits);
    void appendJohab(std::string& out, std::u16string_view units);
    void appendUnmapped(std::string& out);
    void convertBytes(std::string& out);

    const CharsetRow row_;
    std::uint64_t& unmapped_;
    ConverterHandle converter_; // null for UTF-16
    std::array<char16_t, 256> table_ = {}; // of single bytes; kReplacement for what has no mapping
    std::string bytes_; // of the run at hand
    std::vector<char16_t> converted_;
};

CharsetConverter::Decoder::Decoder(const CharsetRow& row, std::uint64_t& unmapped)
    : row_(row)
    , unmapped_(unmapped)
{
    if (row_.converter != nullptr)
        converter_ = openConverter(row_.converter, unmapped_);
    if (row_.form == UnitForm::SingleByte || row_.form == UnitForm::JisRoman)
        fillTable();
}

void CharsetConverter::Decoder::fillTable()
{
    const std::uint64_t before = unmapped_;
    for (unsigned byte = 0; byte < table_.size(); ++byte) {
        const char source = static_cast<char>(byte);
        char16_t target[4];
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t length = ucnv_toUChars(converter_.get(), target, 4, &source, 1, &error);
        table_[byte] = U_SUCCESS(error) && length == 1 ? target[0] : kReplacement;
    }
    unmapped_ = before;
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
        return appendSingle(out, units);

    case UnitForm::Bytes:
        return appendBytes(out, units, 0);

    case UnitForm::SevenBitPairs:
        return appendBytes(out, units, kHighBits);

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

void CharsetConverter::Decoder::appendSingle(std::string& out, std::u16string_view units)
{
    for (const char16_t unit : units) {
        const char16_t mapped = unit < table_.size() ? table_[unit] : kReplacement;
        if (mapped < 0x80)
            out.push_back(static_cast<char>(mapped));
        else if (mapped == kReplacement)
            appendUnmapped(out);
        else
            appendCodePoint(out, mapped);
    }
}

// The bytes of the document are put together again, so that a pair which the filter took for two
// single bytes, as its own ranges of first bytes are narrow, is one character here.
void CharsetConverter::Decoder::appendBytes(
    std::string& out, std::u16string_view units, std::uint16_t setBits)
{
    for (const char16_t unit : units) {
        if (unit <= 0xFF && (setBits == 0 || unit <= 0x7F)) {
            bytes_.push_back(static_cast<char>(unit));
            continue;
        }
        if (unit <= 0xFF) {
            convertBytes(out);
            appendUnmapped(out);
            continue;
        }
        bytes_.push_back(static_cast<char>((unit | setBits) >> 8));
        bytes_.push_back(static_cast<char>((unit | setBits) & 0xFF));
    }
    convertBytes(out);
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
            bytes_.push_back(static_cast<char>(code));
            continue;
        }
        const JohabCode decoded
            = code <= 0xFF ? JohabCode{} : decodeJohab(static_cast<std::uint16_t>(code));
        if (decoded.wansung != 0) {
            bytes_.push_back(static_cast<char>(decoded.wansung >> 8));
            bytes_.push_back(static_cast<char>(decoded.wansung & 0xFF));
            continue;
        }
        convertBytes(out);
        if (decoded.unit != 0)
            appendCodePoint(out, decoded.unit);
        else
            appendUnmapped(out);
    }
    convertBytes(out);
}

void CharsetConverter::Decoder::convertBytes(std::string& out)
{
    if (bytes_.empty())
        return;
    // No byte of these sets gives more than two units.
    converted_.resize(2 * bytes_.size());
    const char* source = bytes_.data();
    char16_t* target = converted_.data();
    UErrorCode error = U_ZERO_ERROR;
    ucnv_reset(converter_.get());
    ucnv_toUnicode(converter_.get(), &target, target + converted_.size(), &source,
        bytes_.data() + bytes_.size(), nullptr, /*flush=*/1, &error);
    const auto count = static_cast<std::size_t>(target - converted_.data());
    bytes_.clear();
    appendUtf16(out, std::u16string_view(converted_.data(), count));
}

CharsetConverter::CharsetConverter() = default;
CharsetConverter::~CharsetConverter() = default;

CharsetConverter::Decoder& CharsetConverter::decoderOf(std::uint32_t charSetId)
{
    if (lastDecoder_ != nullptr && charSetId == lastId_)
        return *lastDecoder_;
    std::unique_ptr<Decoder>& decoder = decoders_[charSetId];
    if (decoder == nullptr) {
        constexpr CharsetRow kUnknown = {0, UnitForm::SingleByte, "US-ASCII", "unknown"};
        const CharsetRow* row = findCharset(charSetId);
        decoder = std::make_unique<Decoder>(row == nullptr ? kUnknown : *row, unmapped_);
    }
    lastDecoder_ = decoder.get();
    lastId_ = charSetId;
    return *lastDecoder_;
}

void CharsetConverter::append(std::string& out, std::u16string_view units, std::uint32_t charSetId)
{
    if (!units.empty())
        decoderOf(charSetId).append(out, units);
}

} // namespace host
