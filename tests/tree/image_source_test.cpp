#include "tree/image_source.h"

#include "input/char_reader.h"
#include "input/charset.h"
#include "support/process_heap.h"
#include "tests/tree/tag_reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>

namespace {

using testing_support::appliedTo;
using testing_support::TagReading;

struct Source {
    std::u16string text;
    std::uint32_t start;
    std::uint32_t end;

    bool operator==(const Source&) const = default;
};

/// The source that a tag's payload has got.
std::optional<Source> sourceOf(const TagReading& reading)
{
    const auto& image = static_cast<const HtmlImgNodeData&>(*reading.payload);
    const auto* text = HtmlWStringValue::from(image.findAttribute(ATTRIBUTE_SRC));
    EXPECT_EQ(text == nullptr, image.srcRange == nullptr);
    if (text == nullptr || image.srcRange == nullptr)
        return std::nullopt;
    return Source{text->text, image.srcRange->start, image.srcRange->end};
}

std::optional<Source> sourceIn(
    const std::string& tag, std::uint16_t charSet = 0x9000, std::uint32_t bufferSize = 2'048)
{
    TagReading reading(tag + "x", charSet, bufferSize);
    const std::uint32_t position = currentPosition(reading.context);
    reading.apply();
    EXPECT_EQ(currentPosition(reading.context), position);
    EXPECT_EQ(reading.context.statusFlags, 0U);
    EXPECT_EQ(readChar(reading.context), 'x');
    return sourceOf(reading);
}

struct FilterRow {
    const char* source;
    bool passes;
};

const FilterRow kFilter[] = {
    // Schemes, with case.
    {"cid:1", true},
    {"data:,x", true},
    {"http://x", true},
    {"https://x", true},
    {"http:", true},
    {"CID:1", false},
    {"Data:,x", false},
    {"HTTP://x", false},
    {"HTTPS://x", false},
    {"HTTP://x/a.png", true},
    {"ftp://x", false},
    {"file:///a.gif", true},
    {" http://x", false},
    {"http", false},
    // Suffixes, without case.
    {"pic.jpeg", true},
    {"pic.jpg", true},
    {"pic.gif", true},
    {"pic.png", true},
    {"pic.apng", true},
    {"pic.svg", true},
    {"pic.bmp", true},
    {"pic.tif", true},
    {"pic.tiff", true},
    {"pic.dib", true},
    {"pic.ico", true},
    {"pic.heif", true},
    {"pic.webp", true},
    {"PIC.JPEG", true},
    {"pic.Png", true},
    {".png", true},
    {"a.b.png", true},
    {"a/b.c/d.png", true},
    {"pic.php", false},
    {"a.png?x=1", false},
    {"a.png#x", false},
    {"a.png ", false},
    {"pic.png.", false},
    {"pic.pngx", false},
    {"pic.jpe", false},
    {"pic.heic", false},
    {"pic.", false},
    {".", false},
    {"png", false},
    {"a.png/b", false},
    {"a name without a dot", false},
    {"", false},
};

TEST(ImageSource, Filter)
{
    for (const FilterRow& row : kFilter) {
        const auto source = sourceIn(std::string("<img src=\"") + row.source + "\">");
        EXPECT_EQ(source.has_value(), row.passes) << row.source;
        if (source) {
            EXPECT_EQ(
                source->text, std::u16string(row.source, row.source + std::strlen(row.source)));
        }
    }
}

TEST(ImageSource, SchemesAreComparedWithCase)
{
    EXPECT_FALSE(sourceIn("<img src=\"HTTP://x\">"));
    EXPECT_TRUE(sourceIn("<img src=pic.png>"));
}

TEST(ImageSource, RefusedSourceLeavesTheOtherAttributes)
{
    EXPECT_EQ(appliedTo("<img alt=a src=pic.php vspace=3 width=5>"),
        "alt=\"a\" vspace=length:3px width=length:5px | margin-bottom: length:3px; margin-top: "
        "length:3px; width: length:5px");
}

struct ValueRow {
    const char* tag;
    const char16_t* text; ///< null for none
    std::uint32_t start;
    std::uint32_t end;
};

const ValueRow kValues[] = {
    {"<img src=a.png>", u"a.png", 9, 13},
    {"<img src=\"a.png\">", u"a.png", 10, 14},
    {"<img src='a.png'>", u"a.png", 10, 14},
    {"<img  src = 'a.png' alt=b>", u"a.png", 13, 17},
    // Each quote ends at its like.
    {"<img src=\"it's.png\">", u"it's.png", 10, 17},
    {"<img src='a\">b.png'>", u"a\">b.png", 10, 17},
    {"<img src=a\"b'.png>", u"a\"b'.png", 9, 16},
    // What ends a value without quotes.
    {"<img src=a.png b=c>", u"a.png", 9, 13},
    {"<img src=a.png\tb=c>", u"a.png", 9, 13},
    {"<img src=a.png\nb=c>", u"a.png", 9, 13},
    {"<img src=a.png\rb=c>", u"a.png", 9, 13},
    {"<img src=a.png\bb=c>", u"a.png", 9, 13},
    {"<img src=a/b.png/>", nullptr, 0, 0},
    {"<img src=http://a/>", u"http://a/", 9, 17},
    // Line ends in quotes are dropped and no part of the place.
    {"<img src=\"a\r\n.p\nng\">", u"a.png", 10, 17},
    {"<img src=\"\na.png\r\n\">", u"a.png", 11, 15},
    {"<img src=\"\n\">", nullptr, 0, 0},
    {"<img src=\"a\tb .png\">", u"a\tb .png", 10, 17},
    // A percent sign stands for itself.
    {"<img src=a%20b.png>", u"a%20b.png", 9, 17},
    {"<img src=\"a%20b.png\">", u"a%20b.png", 10, 18},
    {"<img src=\"a%\">", nullptr, 0, 0},
    // References, which are a unit as a whole.
    {"<img src=\"a&amp;b.png\">", u"a&b.png", 10, 20},
    {"<img src=a&amp;b.png>", u"a&b.png", 9, 19},
    {"<img src=\"&#97;.pn&#103;\">", u"a.png", 10, 23},
    {"<img src=&#97;.pn&#x67>", u"a.png", 9, 21},
    {"<img src=\"a&b.png\">", u"a&b.png", 10, 16},
    {"<img src=\"a&unknown;.png\">", u"a&unknown;.png", 10, 23},
    {"<img src=\"http:&quot;\">", u"http:\"", 10, 20},
    {"<img src=http:&gt;>", u"http:>", 9, 17},
    {"<img src=\"http:&#10;\">", u"http:\n", 10, 19},
    // No value.
    {"<img src>", nullptr, 0, 0},
    {"<img src=>", nullptr, 0, 0},
    {"<img src=''>", nullptr, 0, 0},
    {"<img alt=a.png>", nullptr, 0, 0},
    // The first of two.
    {"<img src=a.png src=b.png>", u"a.png", 9, 13},
    {"<img src src=b.png>", u"b.png", 13, 17},
    {"<img src=a.php src=b.png>", nullptr, 0, 0},
};

TEST(ImageSource, Values)
{
    for (const ValueRow& row : kValues) {
        for (const std::uint32_t bufferSize : {2'048U, 3U}) {
            const auto source = sourceIn(row.tag, 0x9000, bufferSize);
            if (row.text == nullptr) {
                EXPECT_FALSE(source) << row.tag;
                continue;
            }
            ASSERT_TRUE(source) << row.tag;
            EXPECT_EQ(source->text, row.text) << row.tag;
            EXPECT_EQ(source->start, row.start) << row.tag;
            EXPECT_EQ(source->end, row.end) << row.tag;
        }
    }
}

TEST(ImageSource, LongValuesAreCutAndTheirPlaceIsNot)
{
    constexpr std::uint32_t kStored = 53'391;
    for (const std::uint32_t length : {kStored - 1, kStored, kStored + 1, 200'000U}) {
        std::string value = "data:image/png;base64,";
        value.resize(length, 'A');
        const auto source = sourceIn("<img src='" + value + "' alt=b>");
        ASSERT_TRUE(source) << length;
        EXPECT_EQ(source->text.size(), std::min(length, kStored));
        EXPECT_EQ(source->start, 10U);
        EXPECT_EQ(source->end, 10 + length - 1);
    }
}

TEST(ImageSource, SuffixIsLookedForInTheFirst2047Characters)
{
    const std::string suffix = ".png";
    for (const std::size_t length : {2'046U, 2'047U, 2'048U}) {
        const std::string value = std::string(length - suffix.size(), 'a') + suffix;
        const auto source = sourceIn("<img src='" + value + "'>");
        EXPECT_EQ(source.has_value(), length <= 2'047) << length;
        if (source) {
            EXPECT_EQ(source->text.size(), length);
        }
    }
    // What is cut off is not looked at.
    std::string value(2'047, 'a');
    value.replace(value.size() - suffix.size(), suffix.size(), suffix);
    const auto source = sourceIn("<img src='" + value + "?x=1'>");
    ASSERT_TRUE(source);
    EXPECT_EQ(source->text.size(), value.size() + 4);
}

TEST(ImageSource, LowBytesAreLookedAt)
{
    // U+012E has the low byte of a dot, U+0100 that of no character.
    auto source = sourceIn("<img src='a&#x12E;png'>");
    ASSERT_TRUE(source);
    EXPECT_EQ(source->text, u"a\u012Epng");
    source = sourceIn("<img src='a.png&#x100;b'>");
    ASSERT_TRUE(source);
    EXPECT_EQ(source->text, u"a.png\u0100b");
    EXPECT_FALSE(sourceIn("<img src='&#x100;a.png'>"));
}

TEST(ImageSource, EndsAtAUnit0)
{
    TagReading reading(std::string_view("<img src='a.png\0b'>x", 20));
    reading.apply();
    const auto source = sourceOf(reading);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->text, u"a.png");
    EXPECT_EQ(source->end, 16U);
}

TEST(ImageSource, Utf8)
{
    const auto source = sourceIn("<img src='\xC3\xA9.png\xE2\x82\xAC.gif'>", 0x3027);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->text, u"\u00E9.png\u20AC.gif");
    EXPECT_EQ(source->start, 10U);
    EXPECT_EQ(source->end, 22U);
    // The last byte of the last character.
    const auto last = sourceIn("<img src=http:\xC3\xA9>", 0x3027);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->end, 15U);
}

TEST(ImageSource, Utf16)
{
    for (const bool isQuoted : {false, true}) {
        const std::string quote = isQuoted ? "'" : "";
        std::string bytes;
        for (const char character : "<img src=" + quote + "a&#98;.png" + quote + " alt=c>x") {
            bytes += character;
            bytes += '\0';
        }
        TagReading reading(bytes, 0x9000, 2'048, /*unicodeBomMode=*/254);
        const std::uint32_t position = currentPosition(reading.context);
        reading.apply();
        EXPECT_EQ(currentPosition(reading.context), position);
        const auto source = sourceOf(reading);
        ASSERT_TRUE(source);
        EXPECT_EQ(source->text, u"ab.png");
        EXPECT_EQ(source->start, isQuoted ? 20U : 18U);
        EXPECT_EQ(source->end, isQuoted ? 38U : 36U);
    }
}

/// The text of longdesc, which the scanner reads.
std::u16string descriptionOf(const TagReading& reading)
{
    const auto* text = HtmlWStringValue::from(reading.payload->findAttribute(ATTRIBUTE_LONGDESC));
    return text == nullptr ? u"" : text->text;
}

struct PairRow {
    const char* name;
    std::uint16_t charSet;
    std::string value; ///< without quotes
    std::u16string text;
};

// Pairs with the lead bytes of both quotes, "&", ">", "%", blank and the ends of lines, as far as
// the set has them.
const PairRow kPairs[] = {
    {"ISO-2022-JP", CHARSET_ISO_2022_JP, "http:\x1B$B\"A&B>C'D%E F\nG\rH\x1B(B/",
        u"http:\u001B$B\u2241\u2642\u3E43\u2744\u2545\u2046\u0A47\u0D48\u001B(B/"},
    {"ISO-2022-JP, each behind a sign", CHARSET_ISO_2022_JP,
        "http:%\x1B$B\"A\x1B(B&lt;\x1B$B&amp>B\x1B(J%/",
        u"http:%\u001B$B\u2241\u001B(B<\u001B$B\u2661\u6D70\u3E42\u001B(J%/"},
    {"HZ", CHARSET_HZ, "http:~{\"A&B>C'D%E F\nG\rH~}/",
        u"http:~{\uA2C1\uA6C2\uBEC3\uA7C4\uA5C5\uA0C6\u8AC7\u8DC8~}/"},
    {"HZ, each behind a sign", CHARSET_HZ, "http:%~{\"A~}&lt;~{&amp>B~}%/",
        u"http:%~{\uA2C1~}<~{\uA6E1\uEDF0\uBEC2~}%/"},
    {"HZ, a line that goes on", CHARSET_HZ, "http:a~\nb~\n%~\n&amp;/", u"http:ab%&/"},
    {"ISO-2022-KR", CHARSET_ISO_2022_KR, "http:\x1B$)C\x0E\"A&B>C'D%E F\nG\rH\x0F/",
        u"http:\u001B$)C\u000E\u2241\u2642\u3E43\u2744\u2545\u2046\u0A47\u0D48\u000F/"},
    // Overlong forms are read again from their last byte on, which is the character 0.
    {"UTF-8, an overlong &", CHARSET_UTF8, "http:a\xC0\xA6lt;b", u"http:a"},
    {"UTF-8, an overlong LF", CHARSET_UTF8,
        "http:a\xC0\x8A"
        "b",
        u"http:a"},
    {"Shift-JIS", CHARSET_SHIFT_JIS, "http:\x81>\x82\"\x83&/", u"http:\u813E\u8222\u8326/"},
};

TEST(ImageSource, DelimitersAreCharactersAndNotBytes)
{
    for (const PairRow& row : kPairs) {
        for (const std::string quote : {"", "'", "\""}) {
            for (const std::uint32_t bufferSize : {2'048U, 3U}) {
                SCOPED_TRACE(row.name + std::string(" in ") + quote);
                const std::string value = quote + row.value + quote;
                const std::string front = "<img longdesc=" + value + " src=";
                TagReading reading(front + value + " alt=b>x", row.charSet, bufferSize);
                reading.apply();
                EXPECT_EQ(readChar(reading.context), 'x');
                EXPECT_EQ(descriptionOf(reading), row.text);
                const auto source = sourceOf(reading);
                ASSERT_TRUE(source);
                EXPECT_EQ(source->text, row.text);
                const std::size_t start = front.size() + quote.size();
                EXPECT_EQ(source->start, start);
                EXPECT_EQ(source->end, start + row.value.size() - 1);
            }
        }
    }
}

/// Little-endian UTF-16.
std::string bytesOf(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

TEST(ImageSource, UnitsOfOnesAreNotTheEnd)
{
    for (const std::u16string quote : {u"", u"'", u"\""}) {
        const std::u16string value = quote + u"http:\uFFFFa\uFFFF" + quote;
        const std::u16string front = u"<img longdesc=" + value + u" src=";
        TagReading reading(bytesOf(front + value + u">x"), CHARSET_UTF16, 2'048,
            /*unicodeBomMode=*/254);
        reading.apply();
        EXPECT_EQ(readChar(reading.context), 'x');
        EXPECT_EQ(descriptionOf(reading), u"http:\uFFFFa\uFFFF");
        const auto source = sourceOf(reading);
        ASSERT_TRUE(source);
        EXPECT_EQ(source->text, u"http:\uFFFFa\uFFFF");
        EXPECT_EQ(source->start, 2 * (front.size() + quote.size()));
        EXPECT_EQ(source->end, source->start + 2 * 7);
    }
    // In UTF-8 too.
    const auto source = sourceIn("<img src='http:\xEF\xBF\xBF&lt;\xEF\xBF\xBF'>", CHARSET_UTF8);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->text, u"http:\uFFFF<\uFFFF");
}

TEST(ImageSource, NothingIsReadWithAStatus)
{
    for (const StatusFlag status : {STATUS_OUT_OF_MEMORY, STATUS_END_OF_INPUT, STATUS_HOST_STOP}) {
        TagReading reading("<img src=a.png>x");
        reading.context.statusFlags = status;
        reading.apply();
        EXPECT_EQ(reading.text(), "");
        EXPECT_EQ(reading.context.statusFlags, status);
        EXPECT_FALSE(sourceOf(reading));
    }
}

TEST(ImageSource, EveryAllocationMayFail)
{
    constexpr std::uint32_t kMost = 20;
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < kMost; ++n) {
        TagReading reading("<img src=a.png>x");
        zorvan::failNthAllocation(n);
        try {
            reading.apply();
        } catch (const std::bad_alloc&) {
        }
        const bool wasReached = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        if (!wasReached)
            break;
        ++failures;
        EXPECT_EQ(reading.payload->findAttribute(ATTRIBUTE_SRC), nullptr) << n;
        EXPECT_EQ(readChar(reading.context), 'x') << n;
    }
    EXPECT_GE(failures, 3U);
    EXPECT_LT(failures, kMost - 1);
}

TEST(ImageSource, CutOffByAnotherFraming)
{
    // Read again in pairs, the value has no end: the reading runs into the end of the input, which
    // is no end of the document.
    TagReading reading("<img src='http:a' alt=b>x", 0x202C);
    const std::uint32_t position = currentPosition(reading.context);
    reading.context.iso2022State = 0xF06'0000;
    reading.apply();
    EXPECT_EQ(reading.context.statusFlags, 0U);
    EXPECT_EQ(currentPosition(reading.context), position);
    EXPECT_FALSE(sourceOf(reading));
}

TEST(ImageSource, WhatIsCutOffIsGivenBack)
{
    // Framed in pairs from the escape on, the value has no end.
    const std::string value = "='http:a%\x1B$Bab' alt=b>x";
    TagReading source("<img src" + value);
    TagReading description("<img longdesc" + value);
    for (TagReading* reading : {&source, &description}) {
        reading->context.currentCharSet = CHARSET_ISO_2022_JP;
        reading->apply();
        EXPECT_EQ(reading->context.statusFlags, 0U);
    }
    EXPECT_EQ(descriptionOf(description), u"http:a%");
    EXPECT_EQ(sourceOf(source), (Source{u"http:a%", 10, 16}));
}

} // namespace
