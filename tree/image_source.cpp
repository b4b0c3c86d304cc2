#include "tree/image_source.h"

#include "input/char_reader.h"
#include "scanner/char_refs.h"
#include "scanner/character_set.h"
#include "scanner/markup_units.h"
#include "tree/element_attributes.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr CharacterSet kUnquotedEnds = "\n\r\t\b >";
constexpr CharacterSet kDroppedInQuotes = "\n\r";
constexpr CharacterSet kStretchEnds = "&%";

constexpr std::uint32_t kReferenceCapacity = 32;

/// Characters of a value that are looked at to tell what it is.
constexpr std::uint32_t kNarrowedLength = 2'047;

// QUIRK(ImageSource.SchemesAreComparedWithCase): "HTTP:" is left to what stands behind the last
// dot.
constexpr std::string_view kSchemes[] = {"cid:", "data:", "http:", "https:"};

constexpr std::string_view kSuffixes[] = {".jpeg", ".jpg", ".gif", ".png", ".apng", ".svg", ".bmp",
    ".tif", ".tiff", ".dib", ".ico", ".heif", ".webp"};

const TagAttribute* FindSource(const HtmlFilterContext& context)
{
    const TagAttribute* const end = context.tagAttributes + context.tagAttributeCount;
    const TagAttribute* const found
        = std::find_if(context.tagAttributes, end, [](const TagAttribute& pair) {
              return pair.attribute == ATTRIBUTE_SRC && pair.position != 0;
          });
    return found == end ? nullptr : found;
}

/// A source on its way from the stream to a buffer of kAttributeValueCapacity units. What does not
/// fit is read and not stored, since it is the range that an image is later read from.
struct SourceReading {
    char16_t* text;
    std::uint32_t length = 0;
    bool isEmpty = true;
    HtmlSrcRange range = {0, 0};
};

/// Adds a unit that has been read from `start` up to where the stream is now.
void AddUnit(SourceReading& source, std::int32_t character, std::uint32_t start,
    const HtmlFilterContext& context)
{
    if (source.isEmpty)
        source.range.start = start;
    source.isEmpty = false;
    // The range ends at the first byte of the last unit in UTF-16, and at the last one elsewhere.
    const std::uint32_t unitSize = context.unicodeBomMode != 0 ? 2 : 1;
    source.range.end = blockPosition(*context.stream) - unitSize;
    if (source.length < kAttributeValueCapacity - 1)
        source.text[source.length++] = static_cast<char16_t>(character);
}

/// Takes what is next as one unit, whatever it is.
void TakeUnit(SourceReading& source, HtmlFilterContext& context)
{
    const std::uint32_t start = currentPosition(context);
    AddUnit(source, readChar(context), start, context);
}

/// Takes the reference whose "&" is next.
void TakeReference(SourceReading& source, HtmlFilterContext& context)
{
    const std::uint32_t start = currentPosition(context);
    readChar(context);
    char16_t reference[kReferenceCapacity];
    AddUnit(source, scanCharRef(reference, kReferenceCapacity, context), start, context);
}

/// Takes units up to a delimiter, which stays unread. Characters count, not bytes: any byte can be
/// a part of one. What the end of the input cuts off is given back.
void TakeStretch(SourceReading& source, const CharacterSet& delimiters, HtmlFilterContext& context)
{
    const SourceReading before = source;
    for (;;) {
        const std::uint32_t start = currentPosition(context);
        const std::int32_t character = readChar(context);
        if (context.statusFlags != 0) {
            source = before;
            return;
        }
        if (delimiters.contains(character)) {
            unreadChars(1, context);
            return;
        }
        AddUnit(source, character, start, context);
    }
}

/// Reads the value that is next, terminated: the same text that the scanner reads for any other
/// attribute.
void ReadSource(SourceReading& source, HtmlFilterContext& context)
{
    const std::uint16_t first = peekChar(1, context);
    CharacterSet ends = kUnquotedEnds;
    CharacterSet dropped;
    if (first == '"' || first == '\'') {
        readChar(context);
        ends = CharacterSet();
        ends.add(first);
        dropped = kDroppedInQuotes;
    }
    const CharacterSet delimiters = ends | dropped | kStretchEnds;
    for (;;) {
        const std::uint16_t next = peekChar(1, context);
        if (context.statusFlags != 0 || ends.contains(next))
            break;
        if (dropped.contains(next))
            readChar(context);
        else if (next == '&')
            TakeReference(source, context);
        else if (next == '%')
            TakeUnit(source, context);
        else
            TakeStretch(source, delimiters, context);
    }
    source.text[source.length] = 0;
}

constexpr char FoldedByte(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte;
}

bool IsImageSuffix(std::string_view suffix)
{
    return std::any_of(std::begin(kSuffixes), std::end(kSuffixes), [&](std::string_view known) {
        return std::equal(suffix.begin(), suffix.end(), known.begin(), known.end(),
            [](char a, char b) { return FoldedByte(a) == b; });
    });
}

/// Whether a source can be that of an image.
bool IsImageSource(const char16_t* text)
{
    char narrowed[kNarrowedLength];
    std::uint32_t length = 0;
    // A low byte of 0 ends it, whatever the unit.
    while (length < kNarrowedLength && (text[length] & 0xFF) != 0) {
        narrowed[length] = static_cast<char>(text[length] & 0xFF);
        ++length;
    }
    const std::string_view source(narrowed, length);
    const bool hasScheme = std::any_of(std::begin(kSchemes), std::end(kSchemes),
        [&](std::string_view scheme) { return source.starts_with(scheme); });
    if (hasScheme)
        return true;
    const std::size_t dot = source.rfind('.');
    return dot != std::string_view::npos && IsImageSuffix(source.substr(dot));
}

/// Reads the source of the tag just scanned and leaves the stream as it was; false when there is
/// none to be read.
bool ReadTagSource(SourceReading& source, HtmlFilterContext& context)
{
    const TagAttribute* const pair = FindSource(context);
    // The scanner reads nothing once a bit is set, which is no empty value.
    if (pair == nullptr || context.statusFlags != 0)
        return false;
    source.text = AttributeBuffer(context);
    if (source.text == nullptr)
        return false;
    const std::uint32_t resume = currentPosition(context);
    seekTo(pair->position, context);
    ReadSource(source, context);
    // A set with escapes can frame the value differently this time and run into the end of the
    // input. That is no end of the document.
    context.statusFlags &= static_cast<std::uint16_t>(~STATUS_END_OF_INPUT);
    seekTo(resume, context);
    return true;
}

} // namespace

void KeepImageSource(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    SourceReading source{nullptr};
    if (!ReadTagSource(source, context) || !IsImageSource(source.text))
        return;
    HtmlValue* const value = context.valueCache->stringValue(source.text);
    if (value == nullptr)
        return;
    static_cast<HtmlImgNodeData&>(payload).setSrcRange(source.range.start, source.range.end);
    KeepValue(payload, rule, value, context);
}
