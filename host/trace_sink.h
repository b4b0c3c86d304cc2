#pragma once

#include "host/byte_writer.h"
#include "host/host_sink.h"

#include <cstddef>
#include <string>

namespace host {

/// Writes every call as one line of plain text (docs/trace-format.md), and how the conversion
/// ended.
class TraceSink : public HostSink {
public:
    /// writer: borrowed; gets the lines in pieces, the last of them when the conversion has ended.
    explicit TraceSink(ByteWriter& writer);

    void emitSpecial(std::uint16_t code) override;
    void setFontHeight(std::uint32_t halfPoints) override;
    bool emitBreak(std::uint16_t kind, std::uint32_t handle) override;
    void announceSection(std::uint32_t first, std::uint32_t second, std::uint32_t third) override;
    void selectFont(std::uint32_t fontIndex) override;
    void setLineSpacing(
        std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b) override;
    void defineFont(std::uint32_t index, std::uint16_t family, std::string_view name) override;
    void finishTable() override;
    void placeGraphic(const GraphicRecord* record) override;
    void placeRule(const RuleRecord* record, std::uint32_t color, std::uint32_t mode,
        std::uint32_t width, std::uint32_t height) override;
    void beginTagged(std::uint32_t tag, std::uint32_t value, const void* record) override;
    void endTagged(std::uint32_t tag, std::uint32_t value) override;
    void storeString(
        std::u16string_view text, std::uint32_t charSetId, std::uint32_t handle) override;
    void setPageBorders(std::uint32_t on, const PageBorderRecord* record) override;
    void setParagraphBorder(std::uint32_t on, const ParagraphBorderRecord* record) override;
    void setParagraphShading(std::uint32_t on, const ParagraphShadingRecord* record) override;
    void setTextColor(std::uint32_t mode, std::uint32_t color) override;
    void setBackColor(std::uint32_t mode, std::uint32_t color) override;
    void beginReference(std::uint32_t referenceId) override;
    void setExtraProperty(
        std::uint32_t kind, std::uint32_t sub, std::uint32_t value, std::uint32_t value2) override;
    void attachReference(std::uint32_t referenceId, std::uint32_t zero) override;
    void defineTable(const TableRecord* record) override;
    void defineTableCell(const TableCellRecord* record, std::uint32_t handle) override;
    void defineTableRow(const TableRowRecord* record, std::uint32_t handle) override;
    void emitText(std::u16string_view text, std::uint32_t charSetId) override;
    void reserveChars(std::uint32_t capacity) override;
    void commitChars(std::u16string_view text, std::uint32_t charSetId) override;
    void markSourceTag(std::uint32_t id) override;
    void setProperty(
        std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value) override;
    void announceFeatures(std::uint32_t features) override;
    void addReferencePart(std::uint32_t code, std::uint32_t a, std::uint32_t b) override;
    void endReference() override;
    void emitTextAt(std::u16string_view text, std::uint32_t charSetId, std::uint32_t word) override;
    void sectionStarted() override;
    void readReturned(std::uint16_t result) override;
    void conversionEnded(const Outcome& outcome) override;

private:
    TraceSink& begin(std::string_view name);
    TraceSink& number(std::uint32_t value);
    TraceSink& text(std::u16string_view units);
    TraceSink& narrowText(std::string_view bytes);
    TraceSink& record(const void* bytes, std::size_t size);
    void quotedUnit(char16_t unit);
    void answer(std::uint32_t value);
    void end();
    void flush();

    ByteWriter& writer_;
    std::string pending_;
    std::size_t wholeLines_ = 0; // bytes of pending_ that are whole lines
};

} // namespace host
