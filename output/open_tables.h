#pragma once

#include "containers/array_list.h"
#include "filter/html_filter_context.h"
#include "output/host_routines.h"

#include <cstdint>

class HtmlColorValue;
struct HTML_SOINFO;

/// A table that the walk is in, with what its rows and cells ask of it.
struct OpenTable {
    HtmlTreeNode* node;
    HtmlTreeNode* caption; ///< the first one; null when there is none
    std::int32_t firstColumn; ///< index in TableWalk::columns
    std::int32_t cellPadding; ///< pixels; counts only with hasCellPadding
    std::uint32_t alignment; ///< an ALIGNMENT_; 0 without one
    const HtmlColorValue* background; ///< null when there is none
    bool hasCellPadding;
    bool drawsAllSides; ///< its border goes around every cell
    bool drawsColumns; ///< its rules run between columns
    bool drawsRows;
    BorderSide left; ///< what it draws on a side of a cell
    BorderSide right;
    BorderSide top;
    BorderSide bottom;
};

/// A col of an open table.
struct TableColumn {
    HtmlTreeNode* node;
    std::uint64_t end; ///< the column behind its last one
};

/// A caption whose content is being delivered. The walk over it runs inside the one that has met
/// the table, whose entry is not complete yet.
struct CaptionWalk {
    HtmlTreeNode* table;
    HtmlTreeNode* caption;
    HTML_SOINFO* tableFrame; ///< owned; not on deferredList yet
    std::int32_t frameCount; ///< of deferredList when the walk began, the caption's frame included
    std::int32_t paragraphCount; ///< of openParagraphs and openListItems when the walk began
    std::int32_t listItemCount;
};

/// What the walk knows of the tables that it is in. A document has one, which goes at close; all of
/// it but spanOwners derives from the walk's place.
struct TableWalk {
    TableWalk() = default;
    TableWalk(const TableWalk&) = delete;
    TableWalk& operator=(const TableWalk&) = delete;
    ~TableWalk();

    zorvan::ArrayList<OpenTable> tables; ///< innermost last
    zorvan::ArrayList<TableColumn> columns; ///< of all open tables, those of the innermost last
    zorvan::ArrayList<CaptionWalk> captions; ///< innermost last
    std::uint32_t spanOwners = 0; ///< rows of the document that have a vector of spans
};

/// That of a document, made at the first call. Throws std::bad_alloc.
TableWalk& tableWalkOf(HtmlFilterContext& context);

/// The innermost open table; null when none is known. Good until the next table is met or left.
OpenTable* innermostTable(const HtmlFilterContext& context);

/// Notes a table that is being entered. Throws std::bad_alloc.
OpenTable& noteTable(HtmlTreeNode& node, HtmlFilterContext& context);

/// Forgets a table if it is the innermost one.
void forgetTable(const HtmlTreeNode& node, HtmlFilterContext& context);

/// Notes the tables that walkNode lies in anew.
void reindexOpenTables(HtmlFilterContext& context);

/// Forgets all tables, and frees what captions on their way hold.
void forgetAllTables(HtmlFilterContext& context);

/// The col of the innermost table for a column; null when there is none.
const HtmlTreeNode* columnNodeAt(std::uint32_t column, const HtmlFilterContext& context);

/// The columns that a col stands for, at least 1. Sets isGiven when it has the attribute.
std::int32_t spanOfColumn(const HtmlTreeNode& column, bool& isGiven);
