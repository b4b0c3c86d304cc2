#pragma once

#include "output/host_routines.h"

#include <cstdint>
#include <string_view>

namespace host {

struct Outcome;

/// What a conversion is told to, call by call. A sink overrides what it wants to know; the rest
/// does nothing. Handles are given by the session. Texts, names and records are good for the call
/// only; a record is null when the filter passed null. What a sink throws passes through the filter
/// and ends the conversion.
class HostSink {
public:
    virtual ~HostSink();

    virtual void emitSpecial(std::uint16_t code);
    virtual void setFontHeight(std::uint32_t halfPoints);
    /// True asks the filter to stop at the next place where it may.
    virtual bool emitBreak(std::uint16_t kind, std::uint32_t handle);
    virtual void announceSection(std::uint32_t first, std::uint32_t second, std::uint32_t third);
    virtual void selectFont(std::uint32_t fontIndex);
    virtual void setLineSpacing(
        std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b);
    /// name: bytes; empty for none.
    virtual void defineFont(std::uint32_t index, std::uint16_t family, std::string_view name);
    virtual void finishTable();
    virtual void placeGraphic(const GraphicRecord* record);
    virtual void placeRule(const RuleRecord* record, std::uint32_t color, std::uint32_t mode,
        std::uint32_t width, std::uint32_t height);
    /// record: as many bytes as the low 16 bits of the tag say.
    virtual void beginTagged(std::uint32_t tag, std::uint32_t value, const void* record);
    virtual void endTagged(std::uint32_t tag, std::uint32_t value);
    virtual void storeString(
        std::u16string_view text, std::uint32_t charSetId, std::uint32_t handle);
    virtual void setPageBorders(std::uint32_t on, const PageBorderRecord* record);
    virtual void setParagraphBorder(std::uint32_t on, const ParagraphBorderRecord* record);
    virtual void setParagraphShading(std::uint32_t on, const ParagraphShadingRecord* record);
    virtual void setTextColor(std::uint32_t mode, std::uint32_t color);
    virtual void setBackColor(std::uint32_t mode, std::uint32_t color);
    virtual void beginReference(std::uint32_t referenceId);
    virtual void setExtraProperty(
        std::uint32_t kind, std::uint32_t sub, std::uint32_t value, std::uint32_t value2);
    virtual void attachReference(std::uint32_t referenceId, std::uint32_t zero);
    virtual void defineTable(const TableRecord* record);
    virtual void defineTableCell(const TableCellRecord* record, std::uint32_t handle);
    virtual void defineTableRow(const TableRowRecord* record, std::uint32_t handle);
    virtual void emitText(std::u16string_view text, std::uint32_t charSetId);
    virtual void reserveChars(std::uint32_t capacity);
    /// text: what was written into the buffer of the last reserveChars.
    virtual void commitChars(std::u16string_view text, std::uint32_t charSetId);
    virtual void markSourceTag(std::uint32_t id);
    virtual void setProperty(
        std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value);
    virtual void announceFeatures(std::uint32_t features);
    virtual void addReferencePart(std::uint32_t code, std::uint32_t a, std::uint32_t b);
    virtual void endReference();
    virtual void emitTextAt(std::u16string_view text, std::uint32_t charSetId, std::uint32_t word);

    /// The section call has returned.
    virtual void sectionStarted();
    /// A read has returned.
    virtual void readReturned(std::uint16_t result);
    /// The document is closed; nothing follows.
    virtual void conversionEnded(const Outcome& outcome);
};

} // namespace host
