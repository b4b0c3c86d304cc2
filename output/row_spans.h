#pragma once

#include "filter/html_filter_context.h"
#include "output/host_routines.h"

#include <cstddef>
#include <cstdint>

class HtmlTrNodeData;
struct HTML_SOINFO;

// Cells over several columns and rows. The host is told of every cell that such a cell covers as
// one of its own, merged with its neighbors. Which ones these are is kept in a vector of each row,
// one record per column, from which the row below makes its own.

/// What is still covered from a column of a row on.
struct SpanInfo {
    std::uint32_t continuing; ///< 1 in the row of the cell that began the span, 0 in later rows
    std::uint32_t first; ///< 1 on the first of its columns
    std::uint32_t rowsLeft; ///< rows still covered, this one included; 0 for a single row
    std::uint32_t columnsLeft; ///< columns still covered, this one included; 0 for a single column
    std::uint32_t cellFlags; ///< CELL_ flags of the cell
    std::uint32_t alignment; ///< alignment word of the cell
    std::uint32_t color; ///< background; counts only with CELL_SHADING
    BorderSide left;
    BorderSide right;
    BorderSide top;
    BorderSide bottom;
};
static_assert(sizeof(SpanInfo) == 108);
static_assert(offsetof(SpanInfo, first) == 4);
static_assert(offsetof(SpanInfo, rowsLeft) == 8);
static_assert(offsetof(SpanInfo, columnsLeft) == 12);
static_assert(offsetof(SpanInfo, cellFlags) == 16);
static_assert(offsetof(SpanInfo, alignment) == 20);
static_assert(offsetof(SpanInfo, color) == 24);
static_assert(offsetof(SpanInfo, left) == 28);
static_assert(offsetof(SpanInfo, right) == 48);
static_assert(offsetof(SpanInfo, top) == 68);
static_assert(offsetof(SpanInfo, bottom) == 88);

/// Columns and rows of a cell as its attributes give them. Below 2: a single one.
struct CellSpan {
    std::int32_t columns; ///< at most 1,000
    std::int32_t rows;
};
CellSpan spanOfCell(const HtmlTreeNode& cell);

/// Gives a row that is being entered its vector: what reaches into it from the row before.
/// previous: null for the first row. isLast: no row follows, so nothing reaches further.
void updateRowSpans(
    HtmlTrNodeData& row, const HtmlTrNodeData* previous, bool isLast, HtmlFilterContext& context);

/// The columns of a row into which cells of earlier rows reach.
std::uint32_t countPendingSpans(const HtmlTrNodeData& row);

/// Records a cell over several columns or rows. record: the cell's; span: at least one number of it
/// is 2 or more. Fails when the row has no vector, or one of other records.
void recordSpan(
    HtmlTrNodeData& row, std::uint32_t column, CellSpan span, const TableCellRecord& record);

/// Delivers the covered cells from the next column of a row on. frame: the row's. endOfRow: no cell
/// follows, so columns that nobody has filled are delivered as well.
void deliverPendingSpans(
    HtmlTrNodeData& row, HTML_SOINFO& frame, bool endOfRow, HtmlFilterContext& context);

/// Frees the vector of a row; one without is fine.
void freeRowSpans(HtmlTrNodeData& row, HtmlFilterContext& context);

/// The same for all rows in the groups of a table.
void freeSpansOfTable(const HtmlTreeNode& table, HtmlFilterContext& context);
