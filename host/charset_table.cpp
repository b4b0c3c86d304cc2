#include "host/charset_table.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

    constexpr auto kSingle = UnitForm::SingleByte;
    constexpr auto kBytes = UnitForm::Bytes;
    constexpr auto kLoose = UnitForm::LooseBytes;
    constexpr auto kPairs = UnitForm::SevenBitPairs;

    constexpr auto kDocument = CharsetUse::Document;
    constexpr auto kText = CharsetUse::TextOnly;

    // Names of ICU converters are canonical where an alias could move between ICU's releases. The
    // Mac identifiers without a name of their own are read as the Roman set, whose ASCII half all
    // share.
    constexpr auto kCharsets = std::to_array<CharsetRow>({
        {0x00080101, kSingle, kDocument, "ISO-8859-1", "ISO-8859-1 (Western)"},
        {0x00080102, kSingle, kDocument, "ISO-8859-2", "ISO-8859-2 (Central European)"},
        {0x00080103, kSingle, kDocument, "ISO-8859-3", "ISO-8859-3 (South European)"},
        {0x00080104, kSingle, kDocument, "ISO-8859-4", "ISO-8859-4 (Baltic)"},
        {0x00080105, kSingle, kDocument, "ISO-8859-5", "ISO-8859-5 (Cyrillic)"},
        {0x00080106, kSingle, kDocument, "ISO-8859-6", "ISO-8859-6 (Arabic)"},
        {0x00080107, kSingle, kDocument, "ISO-8859-7", "ISO-8859-7 (Greek)"},
        {0x00080108, kSingle, kDocument, "ISO-8859-8", "ISO-8859-8 (Hebrew)"},
        {0x00080109, kSingle, kDocument, "ISO-8859-9", "ISO-8859-9 (Turkish)"},
        {0x000A0102, UnitForm::JisRoman, kDocument, "Shift_JIS", "JIS X 0201, JIS-Roman state"},
        {0x000A0103, kSingle, kDocument, "US-ASCII", "US-ASCII"},
        {0x000B000B, UnitForm::Utf16, kDocument, nullptr, "UTF-8, delivered as UTF-16"},
        {0x000B000D, kPairs, kDocument, "euc-jp-2007", "ISO-2022-JP"},
        {0x000B000E, kPairs, kDocument, "windows-949-2000", "ISO-2022-KR"},
        {0x000B000F, kBytes, kDocument, "windows-936-2000", "HZ (Simplified Chinese)"},
        {0x0F050000, kBytes, kDocument, "windows-936-2000", "GB 2312, GB state of HZ"},
        {0x0F060000, kPairs, kText, "windows-949-2000", "KS C 5601, shifted-out state"},
        {0x0F0C0000, kPairs, kDocument, "euc-jp-2007", "JIS X 0208 state"},
        {0x0F0D0000, kBytes, kDocument, "euc-jp-2007", "EUC-JP"},
        {0x10000100, kSingle, kText, "US-ASCII", "ASCII, state of the 7-bit sets"},
        {0x136A0100, kSingle, kDocument, "windows-874-2000", "Windows-874 (Thai)"},
        {0x13A40000, kBytes, kDocument, "ibm-943_P15A-2003", "Shift-JIS (Japanese)"},
        {0x13A80000, kBytes, kDocument, "windows-936-2000", "GB 2312 (Simplified Chinese)"},
        {0x13B50000, kLoose, kDocument, "windows-949-2000", "Windows-949 (Korean)"},
        {0x13B60000, kLoose, kDocument, "windows-950-2000", "Big5 (Traditional Chinese)"},
        {0x14B00000, UnitForm::Utf16, kDocument, nullptr, "UTF-16"},
        {0x14B00001, UnitForm::Utf16, kDocument, nullptr, "UTF-16, little-endian"},
        {0x14B00002, UnitForm::Utf16, kDocument, nullptr, "UTF-16, big-endian"},
        {0x14E20100, kSingle, kDocument, "ibm-5346_P100-1998", "Windows-1250 (Central European)"},
        {0x14E30100, kSingle, kDocument, "ibm-5347_P100-1998", "Windows-1251 (Cyrillic)"},
        {0x14E40100, kSingle, kDocument, "ibm-5348_P100-1997", "Windows-1252 (Western)"},
        {0x14E50100, kSingle, kDocument, "ibm-5349_P100-1998", "Windows-1253 (Greek)"},
        {0x14E60100, kSingle, kDocument, "ibm-5350_P100-1998", "Windows-1254 (Turkish)"},
        {0x14E70100, kSingle, kDocument, "ibm-9447_P100-2002", "Windows-1255 (Hebrew)"},
        {0x14E80100, kSingle, kDocument, "ibm-9448_X100-2005", "Windows-1256 (Arabic)"},
        {0x14E90100, kSingle, kDocument, "ibm-9449_P100-2002", "Windows-1257 (Baltic)"},
        {0x14EA0100, kSingle, kDocument, "ibm-5354_P100-1998", "Windows-1258 (Vietnamese)"},
        {0x15510000, UnitForm::Johab, kDocument, "windows-949-2000", "Johab (Korean)"},
        {0x436E0100, kSingle, kDocument, "KOI8-R", "KOI8-R (Russian)"},
        {0x44900100, kSingle, kDocument, "KOI8-U", "KOI8-U (Ukrainian)"},
        {0x80000100, kSingle, kDocument, "macos-0_2-10.2", "Mac Roman"},
        {0x80030100, kSingle, kDocument, "macos-35-10.2", "Mac Turkish"},
        {0x80050100, kSingle, kDocument, "macos-0_2-10.2", "Mac set 5, read as Mac Roman"},
        {0x80060100, kSingle, kDocument, "macos-6_2-10.4", "Mac Greek"},
        {0x80070100, kSingle, kDocument, "macos-29-10.2", "Mac Central European"},
        {0x80080100, kSingle, kDocument, "macos-7_3-10.2", "Mac Cyrillic"},
        {0x80090100, kSingle, kDocument, "macos-0_2-10.2", "Mac set 9, read as Mac Roman"},
        {0x800A0100, kSingle, kDocument, "macos-0_2-10.2", "Mac set 10, read as Mac Roman"},
    });

    constexpr bool ascending()
    {
        for (std::size_t index = 1; index < kCharsets.size(); ++index) {
            if (kCharsets[index - 1].id >= kCharsets[index].id)
                return false;
        }
        return true;
    }
    static_assert(ascending(), "findCharset searches by halves");

} // namespace

std::span<const CharsetRow> charsetTable() { return kCharsets; }

bool readsDocumentsBy(std::uint32_t id)
{
    const CharsetRow* row = findCharset(id);
    return row != nullptr && row->use == CharsetUse::Document;
}

const CharsetRow* findCharset(std::uint32_t id)
{
    const auto row = std::lower_bound(kCharsets.begin(), kCharsets.end(), id,
        [](const CharsetRow& each, std::uint32_t wanted) { return each.id < wanted; });
    return row != kCharsets.end() && row->id == id ? &*row : nullptr;
}

} // namespace host
