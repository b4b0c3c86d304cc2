#include "host/johab.h"

#include <array>

namespace host {

namespace {

    constexpr std::uint32_t kFirstSyllableLead = 0x84;
    constexpr std::uint32_t kLastSyllableLead = 0xD3;

    constexpr char16_t kFirstSyllable = 0xAC00;
    constexpr int kMedialCount = 21;
    constexpr int kFinalCount = 28;

    // Letters that stand alone, by the number of the initial, medial and final that they are.
    constexpr char16_t kInitialLetters[] = u"\u3131\u3132\u3134\u3137\u3138\u3139\u3141\u3142\u3143"
                                           u"\u3145\u3146\u3147\u3148\u3149\u314A\u314B\u314C\u314D"
                                           u"\u314E";
    constexpr char16_t kFirstMedialLetter = 0x314F;
    constexpr char16_t kFinalLetters[] = u"\u3131\u3132\u3133\u3134\u3135\u3136\u3137\u3139\u313A"
                                         u"\u313B\u313C\u313D\u313E\u313F\u3140\u3141\u3142\u3144"
                                         u"\u3145\u3146\u3147\u3148\u314A\u314B\u314C\u314D\u314E";

    constexpr int kFill = -1;
    constexpr int kNone = -2;

    /// The number of the initial in the upper five bits of a code.
    int initialOf(unsigned bits)
    {
        if (bits == 1)
            return kFill;
        return bits >= 2 && bits <= 20 ? static_cast<int>(bits) - 2 : kNone;
    }

    /// The number of the medial in the middle five bits; each block of eight places holds six.
    int medialOf(unsigned bits)
    {
        if (bits == 2)
            return kFill;
        if (bits < 3 || bits > 29 || bits % 8 < 2)
            return kNone;
        return static_cast<int>(bits / 8 * 6 + bits % 8) - 3;
    }

    /// The number of the final in the lower five bits, 1 for the first; place 18 is empty.
    int finalOf(unsigned bits)
    {
        if (bits == 1)
            return kFill;
        if (bits < 2 || bits > 29 || bits == 18)
            return kNone;
        return static_cast<int>(bits) - (bits < 18 ? 1 : 2);
    }

    char16_t decodeHangul(std::uint16_t code)
    {
        const int initial = initialOf((code >> 10) & 31u);
        const int medial = medialOf((code >> 5) & 31u);
        const int final = finalOf(code & 31u);
        if (initial == kNone || medial == kNone || final == kNone)
            return 0;
        if (initial >= 0 && medial >= 0) {
            const int index
                = (initial * kMedialCount + medial) * kFinalCount + (final == kFill ? 0 : final);
            return static_cast<char16_t>(kFirstSyllable + index);
        }
        if (initial >= 0 && medial == kFill && final == kFill)
            return kInitialLetters[initial];
        if (initial == kFill && medial >= 0 && final == kFill)
            return static_cast<char16_t>(kFirstMedialLetter + medial);
        if (initial == kFill && medial == kFill && final >= 1)
            return kFinalLetters[final - 1];
        return 0;
    }

    constexpr std::uint32_t kFirstSymbolLead = 0xD9;
    constexpr std::uint32_t kLastSymbolLead = 0xDE;
    constexpr std::uint32_t kFirstHanjaLead = 0xE0;
    constexpr std::uint32_t kLastHanjaLead = 0xF9;
    constexpr std::uint32_t kRowLength = 94;

    /// Signs and hanja: each lead byte holds two rows of the KS C 5601 table.
    std::uint16_t decodeSign(std::uint16_t code)
    {
        const std::uint32_t lead = code >> 8;
        const std::uint32_t trail = code & 0xFFu;
        const bool symbol = lead >= kFirstSymbolLead && lead <= kLastSymbolLead;
        const bool hanja = lead >= kFirstHanjaLead && lead <= kLastHanjaLead;
        const bool lower = trail >= 0x31 && trail <= 0x7E;
        const bool upper = trail >= 0x91 && trail <= 0xFE;
        if ((!symbol && !hanja) || (!lower && !upper))
            return 0;
        constexpr std::uint32_t kFirstHanjaRow = 41;
        std::uint32_t row = symbol ? 2 * (lead - kFirstSymbolLead)
                                   : 2 * (lead - kFirstHanjaLead) + kFirstHanjaRow;
        std::uint32_t column = lower ? trail - 0x31 : trail - 0x43;
        row += column / kRowLength;
        column %= kRowLength;
        return static_cast<std::uint16_t>(((row + 0xA1) << 8) | (column + 0xA1));
    }

} // namespace

bool isJohabLead(std::uint32_t byte)
{
    return (byte >= kFirstSyllableLead && byte <= kLastSyllableLead)
        || (byte >= kFirstSymbolLead - 1 && byte <= kLastSymbolLead)
        || (byte >= kFirstHanjaLead && byte <= kLastHanjaLead);
}

bool isJohabTrail(std::uint32_t byte)
{
    return (byte >= 0x31 && byte <= 0x7E) || (byte >= 0x81 && byte <= 0xFE);
}

JohabCode decodeJohab(std::uint16_t code)
{
    const std::uint32_t lead = code >> 8;
    if (lead >= kFirstSyllableLead && lead <= kLastSyllableLead)
        return {decodeHangul(code), 0};
    return {0, decodeSign(code)};
}

} // namespace host
