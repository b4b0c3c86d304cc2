#pragma once

#include "host/byte_writer.h"
#include "host/charset_converter.h"
#include "host/host_sink.h"

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// Writes the text of a document as UTF-8.
///
/// A paragraph is a line, an empty one an empty line; lines without text at the end are left out. A
/// table row is a line too, its cells joined by tabs; a cell that spans several columns or rows
/// stands once, where it begins, and nothing stands for what it covers. The paragraphs within a
/// cell, and the rows of a table within a cell, are joined by blanks. Line breaks in text, and tabs
/// within a row, become blanks, so that lines and columns are what they seem. Document properties
/// are no text.
class TextSink : public HostSink {
public:
    enum class Properties {
        LeaveOut, ///< text is handed on while it comes
        WriteFirst ///< properties stand in front as `name: value`, so all text is kept until the
                   ///< end
    };

    /// writer: borrowed.
    TextSink(ByteWriter& writer, Properties properties);

    /// Characters that could not be turned into Unicode so far.
    std::uint64_t unmapped() const { return converter_.unmapped(); }

    void emitSpecial(std::uint16_t code) override;
    bool emitBreak(std::uint16_t kind, std::uint32_t handle) override;
    void beginTagged(std::uint32_t tag, std::uint32_t value, const void* record) override;
    void endTagged(std::uint32_t tag, std::uint32_t value) override;
    void defineTableCell(const TableCellRecord* record, std::uint32_t handle) override;
    void defineTableRow(const TableRowRecord* record, std::uint32_t handle) override;
    void emitText(std::u16string_view text, std::uint32_t charSetId) override;
    void commitChars(std::u16string_view text, std::uint32_t charSetId) override;
    void emitTextAt(std::u16string_view text, std::uint32_t charSetId, std::uint32_t word) override;
    void conversionEnded(const Outcome& outcome) override;

private:
    /// A document property that is being told.
    struct Property {
        std::uint32_t field = 0; ///< a FIELD_ code
        std::string name = {}; ///< as told by the stretch within; empty for none
        std::string value = {};
        bool inName = false; ///< within that stretch
    };

    void settle();
    void addText(std::u16string_view text, std::uint32_t charSetId);
    void add(std::string_view bytes);
    void addToLine(std::string_view bytes);
    void endParagraph();
    void endRow();
    void endLine();
    void finishProperty();
    void flush();

    ByteWriter& writer_;
    Properties properties_;
    CharsetConverter converter_;
    std::string run_; // the run at hand
    std::string out_;
    std::string propertyLines_;
    std::vector<Property> openProperties_;
    std::size_t linesDue_ = 0; // line ends that go out in front of the next text
    bool textInLine_ = false;
    bool anyText_ = false;
    std::uint32_t rowDepth_ = 0; // rows whose break has not come; 1 is a row of an outermost table
    bool anyCell_ = false; // of the outermost row
    bool cellHasText_ = false; // the cell at hand of the outermost row
    bool blankDue_ = false; // what comes next in that cell goes behind a blank
    bool gapOpen_ = false; // the first half of a marker's gap was the last thing told
};

/// The name of a document property; null for a code without a name of its own.
const char* propertyName(std::uint32_t field);

} // namespace host
