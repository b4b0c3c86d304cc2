#include "host/host_sink.h"

namespace host {

HostSink::~HostSink() = default;

void HostSink::emitSpecial(std::uint16_t) { }
void HostSink::setFontHeight(std::uint32_t) { }
bool HostSink::emitBreak(std::uint16_t, std::uint32_t) { return false; }

void HostSink::announceSection(std::uint32_t, std::uint32_t, std::uint32_t) { }
void HostSink::selectFont(std::uint32_t) { }
void HostSink::setLineSpacing(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) { }
void HostSink::defineFont(std::uint32_t, std::uint16_t, std::string_view) { }
void HostSink::finishTable() { }
void HostSink::placeGraphic(const GraphicRecord*) { }
void HostSink::placeRule(
    const RuleRecord*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)
{
}
void HostSink::beginTagged(std::uint32_t, std::uint32_t, const void*) { }
void HostSink::endTagged(std::uint32_t, std::uint32_t) { }
void HostSink::storeString(std::u16string_view, std::uint32_t, std::uint32_t) { }
void HostSink::setPageBorders(std::uint32_t, const PageBorderRecord*) { }
void HostSink::setParagraphBorder(std::uint32_t, const ParagraphBorderRecord*) { }
void HostSink::setParagraphShading(std::uint32_t, const ParagraphShadingRecord*) { }
void HostSink::setTextColor(std::uint32_t, std::uint32_t) { }
void HostSink::setBackColor(std::uint32_t, std::uint32_t) { }
void HostSink::beginReference(std::uint32_t) { }
void HostSink::setExtraProperty(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) { }
void HostSink::attachReference(std::uint32_t, std::uint32_t) { }
void HostSink::defineTable(const TableRecord*) { }
void HostSink::defineTableCell(const TableCellRecord*, std::uint32_t) { }
void HostSink::defineTableRow(const TableRowRecord*, std::uint32_t) { }
void HostSink::emitText(std::u16string_view, std::uint32_t) { }
void HostSink::reserveChars(std::uint32_t) { }
void HostSink::commitChars(std::u16string_view, std::uint32_t) { }
void HostSink::markSourceTag(std::uint32_t) { }
void HostSink::setProperty(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) { }
void HostSink::announceFeatures(std::uint32_t) { }
void HostSink::addReferencePart(std::uint32_t, std::uint32_t, std::uint32_t) { }
void HostSink::endReference() { }
void HostSink::emitTextAt(std::u16string_view, std::uint32_t, std::uint32_t) { }
void HostSink::sectionStarted() { }
void HostSink::readReturned(std::uint16_t) { }
void HostSink::conversionEnded(const Outcome&) { }

} // namespace host
