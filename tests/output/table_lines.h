#pragma once

#include "output/host_routines.h"
#include "tests/output/output_fixture.h"

#include <cstdlib>
#include <map>

namespace testing_support {

/// A record by the offsets of its words that are not 0.
using Words = std::map<std::uint32_t, std::uint32_t>;

/// The words of a record in a line.
inline Words wordsOf(const std::string& line)
{
    Words words;
    for (std::size_t at = line.find('@'); at != std::string::npos; at = line.find('@', at + 1)) {
        const std::size_t equals = line.find('=', at);
        words[static_cast<std::uint32_t>(std::atoll(line.c_str() + at + 1))]
            = static_cast<std::uint32_t>(std::atoll(line.c_str() + equals + 1));
    }
    return words;
}

/// The lines of one routine.
inline Lines callsOf(const std::string& routine, const Lines& lines)
{
    Lines found;
    for (const std::string& line : lines) {
        if (line.rfind(routine + ' ', 0) == 0 || line == routine)
            found.push_back(line);
    }
    return found;
}

/// The records of all calls of a routine.
inline std::vector<Words> recordsOf(const std::string& routine, const Lines& lines)
{
    std::vector<Words> records;
    for (const std::string& line : callsOf(routine, lines))
        records.push_back(wordsOf(line));
    return records;
}

/// The word of each record at an offset.
inline std::vector<std::uint32_t> column(const std::vector<Words>& records, std::uint32_t offset)
{
    std::vector<std::uint32_t> words;
    for (const Words& record : records) {
        const auto found = record.find(offset);
        words.push_back(found != record.end() ? found->second : 0);
    }
    return words;
}

// Offsets of words that many tests look at.
constexpr std::uint32_t kPresent = 0; ///< of tables and rows
constexpr std::uint32_t kColumnCount = 48;
constexpr std::uint32_t kCellPresent = 4;
constexpr std::uint32_t kCellMerge = 52;
constexpr std::uint32_t kCellAlignment = 92;

/// What is drawn at a side of a cell, from the offset of the side.
inline BorderSide sideAt(std::uint32_t offset, const Words& record)
{
    const auto word = [&](std::uint32_t at) { return column({record}, offset + at)[0]; };
    return {word(0), word(4), word(8), {word(12), word(16)}};
}

inline const std::string kTableBreak = "SOEmitBreak 9 0";
inline const std::string kFinishTable = "SOFinishTable";
/// Four sides without a line, as the end of a record of a cell.
inline const std::string kNoSides = "@100=15 @108=1 @120=15 @128=1 @140=15 @148=1 @160=15 @168=1}";
/// A cell without attributes in a table without any: a td and a th.
inline const std::string kPlainCell
    = "SODefineTableCell {@0=224 @4=1084 @8=16 @20=15 @24=15 @28=15 @32=15 @44=1 @92=196609 "
    + kNoSides;
inline const std::string kPlainHeading
    = "SODefineTableCell {@0=224 @4=1084 @8=16 @20=15 @24=15 @28=15 @32=15 @44=1 @92=196611 "
    + kNoSides;
/// A table that stands in nothing.
inline const std::string kPlainTable = "SODefineTable {@0=32776 @4=96 @20=15 @28=16777215}";
/// The three indents of a row.
inline const Lines kRowIndents
    = {"SOSetProperty 97 2 0 0", "SOSetProperty 97 1 0 0", "SOSetProperty 97 0 0 0"};

inline std::string rowLine(std::uint32_t columns, std::uint32_t handle)
{
    return "SODefineTableRow {@0=512 @8=4294967295 @24=1 @44=1 @48=" + std::to_string(columns)
        + "} -> " + std::to_string(handle);
}

/// Lines one behind the other.
inline Lines joined(std::initializer_list<Lines> parts)
{
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace testing_support
