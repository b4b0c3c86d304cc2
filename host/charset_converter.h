#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace host {

/// Turns runs of text into UTF-8 by the character set identifier that comes with each. A unit above
/// 0xFF is one character by itself; what has no mapping becomes U+FFFD. Nothing is carried from one
/// run to the next, but for the first half of a surrogate pair: the filter cuts long runs without
/// looking where.
class CharsetConverter {
public:
    CharsetConverter();
    ~CharsetConverter();
    CharsetConverter(const CharsetConverter&) = delete;
    CharsetConverter& operator=(const CharsetConverter&) = delete;

    /// Appends a run to `out`. An identifier that the host does not know makes U+FFFD of all units
    /// above 0x7F. Throws std::runtime_error when ICU lacks the converter of a set.
    void append(std::string& out, std::u16string_view units, std::uint32_t charSetId);

    /// To be called when something other than a run follows: appends U+FFFD for half a surrogate
    /// pair that waits for its other half.
    void flush(std::string& out);

    /// Characters that became U+FFFD so far.
    std::uint64_t unmapped() const { return unmapped_; }

private:
    class Decoder;

    Decoder& decoderOf(std::uint32_t charSetId);

    std::map<std::uint32_t, std::unique_ptr<Decoder>> decoders_;
    Decoder* lastDecoder_ = nullptr; // of the run before, as runs of one set follow each other
    std::uint32_t lastId_ = 0;
    std::uint64_t unmapped_ = 0;
    char16_t pendingHigh_ = 0; // the unit that ended the run before; 0 for none
};

} // namespace host
