#include "bench/hard_shapes.h"

#include <algorithm>
#include <string_view>

namespace bench {

namespace {

    constexpr std::size_t kSkeletonNodes = 3; // html, head and body
    constexpr std::size_t kColumns = 1'000;

    std::string repeated(std::string_view pattern, std::size_t count)
    {
        std::string bytes;
        bytes.reserve(pattern.size() * count);
        for (std::size_t made = 0; made < count; ++made)
            bytes += pattern;
        return bytes;
    }

    /// A table of that many cells, kColumns in a row.
    std::string tableOfCells(std::size_t count)
    {
        std::string bytes = "<table>";
        for (std::size_t made = 0; made < count; made += kColumns)
            bytes += "<tr>" + repeated("<td>x", std::min(kColumns, count - made));
        return bytes;
    }

    std::size_t nodesOfTable(std::size_t count)
    {
        const std::size_t rows = (count + kColumns - 1) / kColumns;
        return kSkeletonNodes + 2 + rows + 2 * count;
    }

    /// The n-th paragraph takes over the n - 1 elements that the paragraphs before it left open.
    std::size_t nodesOfBoldParagraphs(std::size_t count)
    {
        return kSkeletonNodes + count + count * (count + 1) / 2;
    }

    template <std::size_t PerRepeat> std::size_t nodesEach(std::size_t count)
    {
        return kSkeletonNodes + PerRepeat * count;
    }

} // namespace

const std::vector<HardShape>& hardShapes()
{
    static const std::vector<HardShape> shapes = {
        {"open_divs", [](std::size_t count) { return repeated("<div>", count); }, nodesEach<1>,
            100'000, 5'000},
        {"nested_tables", [](std::size_t count) { return repeated("<table><tr><td>", count); },
            nodesEach<4>, 10'000, 5'000},
        {"nested_captions", [](std::size_t count) { return repeated("<table><caption>", count); },
            nodesEach<2>, 10'000, 5'000},
        {"table_cells", tableOfCells, nodesOfTable, 1'000'000, 5'000},
        {"bold_paragraphs", [](std::size_t count) { return repeated("<p><b>", count); },
            nodesOfBoldParagraphs, 2'000, 200},
        {"open_bolds", [](std::size_t count) { return repeated("<b>", count); }, nodesEach<1>,
            10'000, 5'000},
        {"open_objects", [](std::size_t count) { return repeated("<object>", count); },
            nodesEach<1>, 100'000, 5'000},
        {"misnested_inline", [](std::size_t count) { return repeated("<b><i></b></i>", count); },
            nodesEach<2>, 100'000, 5'000},
        {"misnested_block", [](std::size_t count) { return repeated("<b><p></b></p>", count); },
            nodesEach<3>, 100'000, 5'000},
    };
    return shapes;
}

} // namespace bench
