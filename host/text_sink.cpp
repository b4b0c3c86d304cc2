#include "host/text_sink.h"

#include "host/session.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace host {

namespace {

    constexpr std::size_t kFlushSize = 64 * 1024;

    struct FieldName {
        std::uint32_t field;
        const char* name;
    };

    constexpr auto kFieldNames = std::to_array<FieldName>({
        {FIELD_DESCRIPTION, "description"},
        {FIELD_KEYWORDS, "keywords"},
        {FIELD_AUTHOR, "author"},
        {FIELD_SUBJECT, "subject"},
        {FIELD_TITLE, "title"},
        {FIELD_GENERATOR, "generator"},
        {FIELD_VERSION, "version"},
        {FIELD_BASE, "base"},
    });

    bool isLineBreak(char byte) { return byte == '\n' || byte == '\r'; }

    /// A tab is right in a line of text, and wrong where tabs part the cells.
    bool isLineBreakOrTab(char byte) { return isLineBreak(byte) || byte == '\t'; }

    /// Whether a cell is part of the one to its left or above it. The cell that a span begins with
    /// is merged to the right and below only.
    bool isCovered(const TableCellRecord* cell)
    {
        return cell != nullptr && (cell->present & CELL_MERGE) != 0
            && (cell->merge & (MERGE_LEFT | MERGE_ABOVE)) != 0;
    }

} // namespace

const char* propertyName(std::uint32_t field)
{
    const auto row = std::find_if(kFieldNames.begin(), kFieldNames.end(),
        [field](const FieldName& each) { return each.field == field; });
    return row == kFieldNames.end() ? nullptr : row->name;
}

TextSink::TextSink(ByteWriter& writer, Properties properties)
    : writer_(writer)
    , properties_(properties)
{
}

void TextSink::emitSpecial(std::uint16_t code)
{
    settle();
    if (code == SPECIAL_TAB) {
        // A tab within a row would look like one more column.
        add(rowDepth_ == 0 ? "\t" : " ");
        return;
    }
    if (code != SPECIAL_MARKER_GAP)
        return;
    const bool secondHalf = gapOpen_;
    if (!secondHalf)
        add(" ");
    gapOpen_ = !secondHalf;
}

bool TextSink::emitBreak(std::uint16_t kind, std::uint32_t)
{
    settle();
    gapOpen_ = false;
    if (!openProperties_.empty()) {
        add(" ");
        return false;
    }
    switch (kind) {
    case BREAK_PARAGRAPH:
        endParagraph();
        break;

    case BREAK_CELL:
        blankDue_ = true;
        break;

    case BREAK_ROW:
        endRow();
        break;
    }
    return false;
}

void TextSink::beginTagged(std::uint32_t tag, std::uint32_t, const void* record)
{
    settle();
    gapOpen_ = false;
    if (tag == TAG_FIELD) {
        Property property;
        if (record != nullptr)
            std::memcpy(&property.field, record, sizeof property.field);
        openProperties_.push_back(property);
    } else if (tag == TAG_FIELD_NAME && !openProperties_.empty()) {
        openProperties_.back().inName = true;
    }
}

void TextSink::endTagged(std::uint32_t tag, std::uint32_t)
{
    settle();
    gapOpen_ = false;
    if (openProperties_.empty())
        return;
    if (tag == TAG_FIELD_NAME)
        openProperties_.back().inName = false;
    else if (tag == TAG_FIELD)
        finishProperty();
}

void TextSink::finishProperty()
{
    const Property property = std::move(openProperties_.back());
    openProperties_.pop_back();
    if (properties_ == Properties::LeaveOut)
        return;
    const char* known = propertyName(property.field);
    if (!property.name.empty())
        propertyLines_.append(property.name);
    else
        propertyLines_.append(known == nullptr ? "other" : known);
    propertyLines_.append(": ").append(property.value).append("\n");
}

void TextSink::defineTableRow(const TableRowRecord*, std::uint32_t)
{
    settle();
    gapOpen_ = false;
    ++rowDepth_;
    if (rowDepth_ > 1) {
        blankDue_ = true;
        return;
    }
    // Text of the line that the row interrupts must not run into its first cell.
    if (textInLine_)
        endLine();
    anyCell_ = false;
    cellHasText_ = false;
    blankDue_ = false;
}

// Only the cells of an outermost table are columns; those of a table within a cell are words of it.
// What a span covers comes as empty cells, which are none to a reader.
void TextSink::defineTableCell(const TableCellRecord* record, std::uint32_t)
{
    settle();
    gapOpen_ = false;
    if (rowDepth_ != 1 || isCovered(record)) {
        blankDue_ = rowDepth_ != 0;
        return;
    }
    if (anyCell_)
        addToLine("\t");
    anyCell_ = true;
    cellHasText_ = false;
    blankDue_ = false;
}

void TextSink::emitText(std::u16string_view text, std::uint32_t charSetId)
{
    addText(text, charSetId);
}

void TextSink::commitChars(std::u16string_view text, std::uint32_t charSetId)
{
    addText(text, charSetId);
}

void TextSink::emitTextAt(std::u16string_view text, std::uint32_t charSetId, std::uint32_t)
{
    addText(text, charSetId);
}

// Ends the run of text: half a character that it left waits no longer.
void TextSink::settle()
{
    run_.clear();
    converter_.flush(run_);
    add(run_);
}

void TextSink::addText(std::u16string_view text, std::uint32_t charSetId)
{
    gapOpen_ = false;
    run_.clear();
    converter_.append(run_, text, charSetId);
    std::replace_if(run_.begin(), run_.end(), rowDepth_ == 0 ? isLineBreak : isLineBreakOrTab, ' ');
    add(run_);
}

void TextSink::add(std::string_view bytes)
{
    if (!openProperties_.empty()) {
        Property& property = openProperties_.back();
        (property.inName ? property.name : property.value).append(bytes);
        return;
    }
    if (bytes.empty())
        return;
    if (rowDepth_ == 0) {
        addToLine(bytes);
        return;
    }
    if (blankDue_ && cellHasText_)
        addToLine(" ");
    blankDue_ = false;
    cellHasText_ = true;
    addToLine(bytes);
}

void TextSink::addToLine(std::string_view bytes)
{
    out_.append(linesDue_, '\n');
    linesDue_ = 0;
    out_.append(bytes);
    textInLine_ = true;
    anyText_ = true;
    if (out_.size() >= kFlushSize && properties_ == Properties::LeaveOut)
        flush();
}

void TextSink::endLine()
{
    ++linesDue_;
    textInLine_ = false;
}

void TextSink::endParagraph()
{
    if (rowDepth_ == 0)
        endLine();
    else
        blankDue_ = true;
}

void TextSink::endRow()
{
    if (rowDepth_ == 0)
        return;
    --rowDepth_;
    if (rowDepth_ == 0)
        endLine();
    else
        blankDue_ = true;
}

void TextSink::flush()
{
    writer_.write(out_);
    out_.clear();
}

void TextSink::conversionEnded(const Outcome&)
{
    settle();
    if (!propertyLines_.empty())
        writer_.write(propertyLines_);
    if (anyText_)
        out_.push_back('\n');
    flush();
}

} // namespace host
