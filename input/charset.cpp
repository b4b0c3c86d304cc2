#include "input/charset.h"

#include "input/char_reader.h"
#include "input/charset_tables.h"
#include "support/process_heap.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::uint32_t kUnicodeId = 0x14B00000;
constexpr std::uint32_t kLittleEndianUtf16Id = 0x14B00001;
constexpr std::uint32_t kBigEndianUtf16Id = 0x14B00002;

constexpr std::uint16_t kByteInput = 0;
constexpr std::uint16_t kLittleEndian = 254;
constexpr std::uint16_t kBigEndian = 255;

constexpr std::uint16_t kUnicodeBit = 0x1000;
constexpr std::uint16_t kIgnoredInMetaBit = 0x4000;

/// A file of this id may be UTF-16 without a mark.
constexpr std::uint16_t kFileIdByFirstByte = 1181;

constexpr std::uint32_t kMaxNameLength = 31;

struct FileIdCharSet {
    std::uint16_t fileId;
    std::uint16_t code;
};

constexpr FileIdCharSet kFileIdCharSets[] = {
    {1109, CHARSET_WINDOWS_1250},
    {1110, CHARSET_SHIFT_JIS},
    {1111, CHARSET_EUC_JP},
    {1112, CHARSET_BIG5},
    {1113, CHARSET_CHINESE_EUC},
    {1114, CHARSET_GB2312},
    {1115, CHARSET_KOREAN},
    {1116, CHARSET_WINDOWS_1251},
    {1117, CHARSET_KOI8_R},
    {1153, CHARSET_JIS},
};

/// A stretch of codes whose identifiers go up in even steps.
struct CodeRange {
    std::uint16_t first;
    std::uint16_t last;
    std::uint32_t id; ///< of the first code
    std::uint32_t step;
};

/// Ascending by code. What the reader has changed into another form goes out as that form: the JIS
/// sets as Shift-JIS, the sets with escapes in their 7-bit state.
constexpr CodeRange kIdsOfCodes[] = {
    {0x2004, 0x2005, 0x13A40000, 0},
    {0x2006, 0x2006, 0x13B60000, 0},
    {0x2008, 0x2008, 0x13A80000, 0},
    {0x2009, 0x2009, 0x13B50000, 0},
    {0x201D, 0x201D, 0x10000100, 0},
    {0x201E, 0x201E, 0x15510000, 0},
    {0x2029, 0x2029, 0x10000100, 0},
    {0x202C, 0x202C, 0x10000100, 0},
    {0x4003, 0x4003, 0x13A40000, 0},
    {0x401B, 0x401B, 0x15510000, 0},
    {0x402B, 0x402B, 0x0F050000, 0},
    {0x8001, 0x8001, 0x14E20100, 0},
    {0x800A, 0x800A, 0x14E30100, 0},
    {0x800B, 0x800B, 0x436E0100, 0},
    {0x800C, 0x8014, 0x00080101, 1},
    {0x8015, 0x8015, 0x14E40100, 0},
    {0x8016, 0x801A, 0x14E50100, 0x10000},
    {0x801F, 0x801F, 0x80000100, 0},
    {0x8020, 0x8020, 0x80030100, 0},
    {0x8021, 0x8021, 0x80050100, 0},
    {0x8022, 0x8026, 0x80060100, 0x10000},
    {0x8028, 0x8028, 0x136A0100, 0},
    {0x802D, 0x802D, 0x44900100, 0},
    {0x802E, 0x802E, 0x14EA0100, 0},
};

bool endsName(char16_t unit)
{
    return unit == 0 || unit == ' ' || unit == '"' || unit == '\'' || unit == ';';
}

char16_t lowerCase(char16_t unit)
{
    return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

/// The text of a row in lower-case units, owned.
class RowText {
public:
    explicit RowText(const char* name)
        : units_(static_cast<char16_t*>(
            HeapAlloc(GetProcessHeap(), 0, (std::strlen(name) + 1) * sizeof(char16_t))))
    {
        if (units_ == nullptr)
            return;
        char16_t* unit = units_;
        for (; *name != '\0'; ++name)
            *unit++ = lowerCase(static_cast<unsigned char>(*name));
        *unit = 0;
    }
    RowText(const RowText&) = delete;
    RowText& operator=(const RowText&) = delete;
    ~RowText() { HeapFree(GetProcessHeap(), 0, units_); }

    /// Null when there was no memory.
    const char16_t* units() const { return units_; }

private:
    char16_t* units_;
};

/// Both zero-terminated; above 0 when `a` is the greater.
std::int32_t compareUnits(const char16_t* a, const char16_t* b)
{
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return static_cast<std::int32_t>(*a) - static_cast<std::int32_t>(*b);
}

void setInputCharSet(std::uint16_t code, HtmlFilterContext& context)
{
    context.currentCharSet = code;
    context.defaultCharSet = code;
}

/// Applies the identifier that the host or an embedding filter asks for.
void applyRequest(HtmlFilterContext& context)
{
    const std::uint32_t id = context.requestedCharSetId;
    setInputCharSet(charSetCodeFromId(id), context);
    if (id != kLittleEndianUtf16Id && id != kBigEndianUtf16Id)
        return;
    context.unicodeBomMode = id == kLittleEndianUtf16Id ? kLittleEndian : kBigEndian;
    context.requestedCharSetId = kUnicodeId;
}

bool isUtf16MarkByte(std::uint16_t byte) { return byte == 0xFE || byte == 0xFF; }

/// Looks for a mark and skips it. It beats every request.
void applyByteOrderMark(HtmlFilterContext& context)
{
    const std::uint16_t first = peekByte(1, context);
    const std::uint16_t second = peekByte(2, context);
    if (first == 0xEF && second == 0xBB && peekByte(3, context) == 0xBF) {
        seekBlock(*context.stream, /*offset=*/3, /*origin=*/1);
        setInputCharSet(CHARSET_UTF8, context);
        context.unicodeBomMode = kByteInput;
        context.bomSeen = 0xBF;
        return;
    }
    // QUIRK(CharSet.LooseUtf16Marks): also two equal bytes are a mark, and the second alone tells
    // the byte order.
    if (isUtf16MarkByte(first) && isUtf16MarkByte(second)) {
        seekBlock(*context.stream, /*offset=*/2, /*origin=*/1);
        setInputCharSet(CHARSET_UTF16, context);
        context.unicodeBomMode = second;
        context.bomSeen = second;
    }
}

} // namespace

std::uint16_t charSetCodeFromId(std::uint32_t id)
{
    const CharSetIdentifier* end = std::end(kCharSetIdentifiers);
    const CharSetIdentifier* row = std::lower_bound(std::begin(kCharSetIdentifiers), end, id,
        [](const CharSetIdentifier& entry, std::uint32_t key) { return entry.id < key; });
    return row != end && row->id == id ? row->code : 0;
}

std::uint32_t charSetIdFromCode(std::uint16_t code)
{
    if ((code & kUnicodeBit) != 0)
        return kUnicodeId;
    for (const CodeRange& range : kIdsOfCodes) {
        if (code >= range.first && code <= range.last)
            return range.id + (code - std::uint32_t{range.first}) * range.step;
    }
    return kUnicodeId;
}

std::uint16_t charSetCodeFromName(const char16_t* name, HtmlFilterContext& context)
{
    char16_t key[kMaxNameLength + 1];
    std::uint32_t length = 0;
    for (; length < kMaxNameLength && !endsName(name[length]); ++length)
        key[length] = lowerCase(name[length]);
    key[length] = 0;

    // QUIRK(CharSet.NamesBehindTheMisplacedRowAreNotFound): one row stands out of order, and what
    // the search passes it for is not found.
    std::int32_t low = 0;
    std::int32_t high = kCharSetNameCount - 1;
    while (low <= high) {
        const std::int32_t middle = (low + high) / 2;
        const CharSetName& row = kCharSetNames[middle];
        const RowText text(row.name);
        if (text.units() == nullptr) {
            context.statusFlags |= STATUS_OUT_OF_MEMORY;
            return row.code;
        }
        const std::int32_t order = compareUnits(key, text.units());
        if (order == 0)
            return row.code;
        if (order > 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return 0;
}

void chooseDefaultCharSet(HtmlFilterContext& context)
{
    if (context.fileId == kFileIdByFirstByte) {
        // QUIRK(CharSet.FirstByteDecidesAFileOf1181): any other first byte leaves the set as it
        // was.
        if (peekByte(1, context) == 0) {
            context.unicodeBomMode = kBigEndian;
            context.defaultCharSet = CHARSET_UTF16;
        }
        return;
    }
    context.defaultCharSet = CHARSET_DEFAULT;
    for (const FileIdCharSet& row : kFileIdCharSets) {
        if (row.fileId == context.fileId)
            context.defaultCharSet = row.code;
    }
}

void chooseSectionCharSet(HtmlFilterContext& context)
{
    context.bomSeen = 0;
    if (context.requestedCharSetId == 0)
        context.currentCharSet = context.defaultCharSet;
    else
        applyRequest(context);
    applyByteOrderMark(context);
}

void applyPrescanCharSet(std::uint16_t code, HtmlFilterContext& context)
{
    const bool markDecides
        = context.bomSeen != 0 && context.defaultCharSet == context.currentCharSet;
    if (markDecides || (code & kIgnoredInMetaBit) != 0)
        return;
    const std::uint32_t forced = context.forcedCharSetId;
    const bool overruled = forced != 0 && charSetIdFromCode(code) != forced;
    context.currentCharSet = overruled ? charSetCodeFromId(context.requestedCharSetId) : code;
}
