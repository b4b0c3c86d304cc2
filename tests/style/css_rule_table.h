#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace testing_support {

/// What a scanner that knows nothing but the patterns of the tokens answers: of all patterns the
/// longest match, and the first among equals. It shares no code with the scanner under test.
class CssRuleTable {
public:
    struct Match {
        std::int32_t kind; ///< 0 for what is dropped
        std::size_t length; ///< never 0 for a text that is not empty
    };

    /// Reads the patterns; the states of the automaton are made as texts ask for them.
    CssRuleTable();

    /// The match at the beginning of a text without bytes 0.
    Match match(std::string_view text);

private:
    using ByteSet = std::bitset<256>;

    struct State {
        ByteSet bytes; // leads to next
        std::int32_t next = -1;
        std::vector<std::int32_t> jumps; // taken without a byte
        std::int32_t rule = -1; // accepted here
    };

    struct Piece {
        std::int32_t first;
        std::int32_t last;
    };

    struct Group {
        std::array<std::int32_t, 256> next; // kUnknown, kDead or a group
        std::vector<std::int32_t> states;
        std::int32_t rule;
    };

    std::int32_t addState();
    Piece parseChoice(std::string_view& pattern);
    Piece parseSequence(std::string_view& pattern);
    Piece parseRepeated(std::string_view& pattern);
    Piece parseAtom(std::string_view& pattern);
    Piece parseName(std::string_view name);
    Piece bytePiece(const ByteSet& bytes);
    Piece emptyPiece();
    std::int32_t groupOf(std::vector<std::int32_t> states);
    std::int32_t nextGroup(std::int32_t group, std::uint8_t byte);

    std::vector<State> states_;
    std::vector<Group> groups_;
    std::map<std::vector<std::int32_t>, std::int32_t> known_;
    std::int32_t start_ = 0;
};

} // namespace testing_support
