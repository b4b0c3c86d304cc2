#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace testing_support {

/// The character reader once more, as plainly as it can be said: no buffer, one byte after the
/// other. Positions are those of the bytes, which are all there from the start.
class NaiveReader {
public:
    NaiveReader(std::string_view content, std::uint16_t set, std::uint16_t byteOrder = 0)
        : bytes(content)
        , charSet(set)
        , bomMode(byteOrder)
    {
    }

    std::int32_t read();

    std::string bytes;
    std::uint16_t charSet;
    std::uint16_t bomMode;
    std::size_t at = 0;
    bool ended = false;
    std::uint32_t state = 0;
    std::array<std::uint16_t, 4> recent = {};

private:
    std::int32_t take()
    {
        return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at++]) : 0xFFFF;
    }
    std::int32_t look(std::size_t n) const
    {
        return at + n <= bytes.size() ? static_cast<std::uint8_t>(bytes[at + n - 1]) : 0xFFFF;
    }
    void note(std::int32_t value)
    {
        recent = {recent[1], recent[2], recent[3], static_cast<std::uint16_t>(value & 0xFF)};
    }
    std::int32_t one(std::int32_t value)
    {
        note(value);
        return value;
    }
    std::int32_t two(std::int32_t value)
    {
        note(value >> 8);
        note(value);
        return static_cast<std::int16_t>(value & 0xFFFF);
    }
    std::int32_t end()
    {
        ended = true;
        return -1;
    }
    std::int32_t endOfPair()
    {
        ended = true;
        return one(-1);
    }
    std::int32_t pair(std::int32_t first) { return two(first * 256 + (take() & 0xFF)); }

    std::int32_t jis(std::int32_t a, std::int32_t b)
    {
        std::int32_t lead = 0;
        if (a >= 0x21 && a <= 0x60)
            lead = (a + 1) / 2 + 0x70;
        else if (a >= 0x61 && a <= 0x7E)
            lead = (a + 1) / 2 + 0xB0;
        std::int32_t trail = 0;
        if (a % 2 == 0)
            trail = b + 0x7E;
        else if (b > 0x5F)
            trail = b + 0x20;
        else
            trail = b + 0x1F;
        return two(lead * 256 + (trail & 0xFF));
    }

    std::int32_t iso2022Jp(std::int32_t byte)
    {
        if (byte == 0x1B) {
            if (look(1) == '(' && look(2) == 'B')
                state = 0x10000100;
            if (look(1) == '(' && look(2) == 'J')
                state = 0xA0102;
            return one(byte);
        }
        if (recent[2] == 0x1B && recent[3] == '$' && (byte == '@' || byte == 'B')) {
            state = 0xF0C0000;
            return one(byte);
        }
        if (state != 0xF0C0000)
            return one(byte);
        const std::int32_t second = take();
        if (second == 0xFFFF) {
            ended = true;
            return one(byte);
        }
        return two(byte * 256 + second);
    }

    std::int32_t iso2022Kr(std::int32_t byte)
    {
        if (recent == std::array<std::uint16_t, 4>{0x1B, '$', ')', 'C'})
            state = 0x10000100;
        else if (recent[0] == 0x1B && recent[1] == '$')
            return one(byte);
        if (state != 0xF060000)
            return one(byte);
        const std::int32_t second = take();
        return second == 0xFFFF ? endOfPair() : two(byte * 256 + second);
    }

    std::int32_t hz(std::int32_t byte)
    {
        while (byte == '~' && look(1) == '\n') {
            take();
            byte = take();
        }
        if (byte == 0xFFFF)
            return end();
        if (byte == 0x0E || byte == 0x0F)
            return one(byte);
        if (byte == '~' && look(1) == '}') {
            state = 0x10000100;
            return one(byte);
        }
        if (byte == '{' && recent[3] == '~') {
            state = 0xF050000;
            return one(byte);
        }
        if (state != 0xF050000)
            return one(byte);
        const std::int32_t second = take();
        return second == 0xFFFF ? endOfPair() : two((byte * 256 + second + 0x8080) & 0xFFFF);
    }

    std::int32_t utf8(std::int32_t byte)
    {
        struct Row {
            std::int32_t first;
            std::int32_t last;
            std::int32_t followers;
            std::int32_t mask;
        };
        static constexpr Row kRows[] = {{0x00, 0x7F, 0, 0x7F}, {0x80, 0xBF, 0, 0x00},
            {0xC0, 0xDF, 1, 0x1F}, {0xE0, 0xEF, 2, 0x0F}, {0xF0, 0xF7, 3, 0x07},
            {0xF8, 0xFB, 4, 0x03}, {0xFC, 0xFD, 5, 0x01}, {0xFE, 0xFF, 0, 0x00}};
        for (const Row& row : kRows) {
            if (byte < row.first || byte > row.last)
                continue;
            std::int64_t value = byte & row.mask;
            for (std::int32_t i = 0; i < row.followers; ++i)
                value = value * 64 + (take() & 63);
            return one(static_cast<std::int32_t>(value));
        }
        return -2;
    }

    std::int32_t windows1252WithHoles(std::int32_t byte)
    {
        static constexpr std::int32_t kTable[32] = {0, 0, 0x201A, 0x0192, 0x201D, 0x2026, 0x2020,
            0x2021, 0x2038, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0, 0, 0, 0x2018, 0x2019, 0x201C,
            0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0, 0x0178};
        return byte >= 0x80 && byte <= 0x9F ? kTable[byte - 0x80] : byte;
    }

    bool isLead(std::int32_t byte) const
    {
        const auto in = [byte](std::int32_t first, std::int32_t last) {
            return byte >= first && byte <= last;
        };
        switch (charSet) {
        case 0x2004:
        case 0x402B:
            return in(0xA1, 0xFE);
        case 0x2005:
            return in(0x81, 0x9F) || in(0xE0, 0xFC);
        case 0x2006:
            return in(0xA1, 0xC6) || in(0xC9, 0xF9);
        case 0x2008:
            return in(0x81, 0xFE);
        case 0x2009:
            return in(0xA1, 0xAC) || in(0xB0, 0xC8) || in(0xCA, 0xFD);
        default:
            return false;
        }
    }
};

inline std::int32_t NaiveReader::read()
{
    if (ended)
        return -1;
    std::int32_t byte = take();
    if (byte == 0xFFFF)
        return end();
    if (bomMode != 0) {
        const std::int32_t second = take();
        return two((bomMode == 254 ? second * 256 + byte : byte * 256 + second) & 0xFFFF);
    }
    if (byte == 0x0E || byte == 0x0F) {
        if (charSet == 0x202C)
            state = byte == 0x0E ? 0xF060000 : 0x10000100;
        return one(byte);
    }
    switch (charSet) {
    case 0x9000:
        return one(windows1252WithHoles(byte));
    case 0x4003:
        return jis(byte, take());
    case 0x201D:
        return iso2022Jp(byte);
    case 0x202C:
        return iso2022Kr(byte);
    case 0x2029:
        return hz(byte);
    case 0x3027:
        return utf8(byte);
    default:
        break;
    }
    if (!isLead(byte))
        return one(byte);
    if (charSet == 0x2004) {
        const std::int32_t second = take();
        return jis(byte - 0x80, second - 0x80);
    }
    return pair(byte);
}

} // namespace testing_support
