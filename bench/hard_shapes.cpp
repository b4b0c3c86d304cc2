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

    constexpr std::size_t kSheetNodes = kSkeletonNodes + 2; // and a style element with its text
    constexpr std::size_t kLevelsPerPart = 4;

    std::string withSheet(const std::string& sheet, const std::string& body)
    {
        return "<style>" + sheet + "</style>" + body;
    }

    /// One rule for each element.
    std::string manyRules(std::size_t count)
    {
        std::string sheet;
        std::string body;
        for (std::size_t made = 0; made < count; ++made) {
            const std::string name = 'c' + std::to_string(made);
            sheet += '.' + name + "{color:red}";
            body += "<p class=" + name + '>';
        }
        return withSheet(sheet, body);
    }

    /// A selector of so many parts, of which the first is nowhere around the elements.
    std::string longSelector(std::size_t count)
    {
        return withSheet("head " + repeated("div ", count) + "{color:red}",
            repeated("<div>", count * kLevelsPerPart));
    }

    std::string backtracking(std::size_t count)
    {
        return withSheet("head " + repeated("span ", 8) + "{color:red}", repeated("<span>", count));
    }

    std::string longDeclaration(std::size_t count)
    {
        return withSheet("p{color:" + repeated("red ", count) + '}', "<p>");
    }

    std::string nestedBrackets(std::size_t count)
    {
        return withSheet("p{color:" + repeated("[", count) + '}', "<p>");
    }

    std::string manySheets(std::size_t count)
    {
        return repeated("<style>p{color:red}</style>", count) + "<p>";
    }

    std::size_t nodesOfManySheets(std::size_t count) { return kSkeletonNodes + 2 * count + 1; }

    // A selector whose first part is never found asks all siblings or all ancestors, unless it asks
    // for an element that there is none of.
    constexpr std::string_view kElsewhere = "<p><i></i></p>";

    std::string siblings(std::size_t count)
    {
        return withSheet("i ~ p{color:red}", std::string(kElsewhere) + repeated("<p>", count));
    }

    std::string ancestors(std::size_t count)
    {
        return withSheet("i div{color:red}", std::string(kElsewhere) + repeated("<div>", count));
    }

    std::string missingSibling(std::size_t count)
    {
        return withSheet("i ~ p{color:red}", repeated("<p>", count));
    }

    std::string missingAncestor(std::size_t count)
    {
        return withSheet("i div{color:red}", repeated("<div>", count));
    }

    template <std::size_t PerRepeat, std::size_t Others = 0>
    std::size_t nodesWithSheet(std::size_t count)
    {
        return kSheetNodes + Others + PerRepeat * count;
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
        {"many_rules", manyRules, nodesWithSheet<1>, 100'000, 2'000},
        {"long_selector", longSelector, nodesWithSheet<kLevelsPerPart>, 1'000, 100},
        {"backtracking", backtracking, nodesWithSheet<1>, 2'000, 50},
        {"long_declaration", longDeclaration, nodesWithSheet<0, 1>, 250'000, 5'000},
        {"nested_brackets", nestedBrackets, nodesWithSheet<0, 1>, 100'000, 5'000},
        {"many_sheets", manySheets, nodesOfManySheets, 50'000, 2'000},
        {"siblings_of_i", siblings, nodesWithSheet<1, 2>, 20'000, 1'000},
        {"divs_below_i", ancestors, nodesWithSheet<1, 2>, 20'000, 1'000},
        {"no_i_in_front", missingSibling, nodesWithSheet<1>, 20'000, 1'000},
        {"no_i_above", missingAncestor, nodesWithSheet<1>, 20'000, 1'000},
    };
    return shapes;
}

} // namespace bench
