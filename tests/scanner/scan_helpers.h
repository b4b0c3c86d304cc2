#pragma once

#include "scanner/markup_scanner.h"
#include "support/html_strings.h"
#include "tests/common/test_context.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// A scanner over bytes, with a token buffer of the size and the limit that the read driver uses.
class ScannerRun {
public:
    explicit ScannerRun(
        std::string_view input, std::uint16_t charSet = 0x9000, std::uint32_t bufferSize = 2'048)
        : test(input, charSet, bufferSize)
        , context(test.context)
    {
        test.makeTokenBuffer();
    }

    /// Scans the next token. False at the end of the input.
    bool next()
    {
        result = Scan(token, context.tokenBuffer, kTokenLimit, context);
        return context.statusFlags == 0;
    }

    /// Scans so that nothing is known of markup that was cut off before.
    bool nextAnew()
    {
        context.internals->cutMarkup.cutBefore = false;
        return next();
    }

    std::u16string text() const { return context.tokenBuffer; }

    /// The value of an attribute of the token, or "none".
    std::string attribute(std::uint32_t id)
    {
        char16_t value[256];
        if (readAttributeValue(id, value, 256, context) == 0)
            return "none";
        std::string narrow;
        for (const char16_t* unit = value; *unit != 0; ++unit)
            narrow += static_cast<char>(*unit);
        return narrow;
    }

    TestContext test;
    HtmlFilterContext& context;
    Token token = {};
    std::int32_t result = 0;
};

/// A token as text: a character as itself, "{b}", "{/b}", "{br/}" for tags, "{?}" for those of
/// unknown name, "{}" for a token of nothing.
inline std::string shown(const ScannerRun& run)
{
    if (run.token.flags == TOKEN_CHARACTER) {
        if (run.result > 0 && run.result < 0x80)
            return std::string(1, static_cast<char>(run.result));
        return "\\" + std::to_string(run.result) + ";";
    }
    if (run.token.flags == 0)
        return "{}";
    const char* name = zorvan::HTMLStrings::elementName(run.token.element);
    std::string text = "{";
    if ((run.token.flags & TOKEN_END_TAG) != 0)
        text += '/';
    text += run.token.element == 0 ? "?" : name;
    if ((run.token.flags & TOKEN_SELF_CLOSING) != 0)
        text += '/';
    return text + '}';
}

/// All tokens of a stretch as text.
inline std::string scanned(std::string_view input, std::uint16_t charSet = 0x9000,
    std::uint32_t rawTextMode = 0, std::uint32_t rawTextElement = 0)
{
    ScannerRun run(input, charSet);
    run.context.rawTextMode = rawTextMode;
    run.context.rawTextElement = rawTextElement;
    std::string text;
    while (run.next())
        text += shown(run);
    return text;
}

/// The bytes of a text in UTF-16, little-endian.
inline std::string utf16(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

inline std::string repeated(std::string_view part, std::size_t times)
{
    std::string text;
    text.reserve(part.size() * times);
    for (std::size_t index = 0; index < times; ++index)
        text += part;
    return text;
}

/// A random sequence of parts.
inline std::string randomParts(
    const std::vector<std::string>& parts, std::size_t count, std::mt19937& random)
{
    std::string text;
    for (std::size_t index = 0; index < count; ++index)
        text += parts[random() % parts.size()];
    return text;
}

} // namespace testing_support
