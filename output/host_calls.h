#pragma once

#include "filter/html_filter_context.h"
#include "output/host_routines.h"

#include <cstdint>

// One thin wrapper per output routine: adds the two user words. Arguments and units:
// output/host_routines.h. A host that gives up may unwind through any of these, so the filter's
// state is set first and the call comes last.

void SOEmitSpecial(std::uint16_t code, HtmlFilterContext& context);
void SOSetFontHeight(std::uint32_t halfPoints, HtmlFilterContext& context);
/// Answers 1 when the host wants control back; other answers mean nothing.
std::uint32_t SOEmitBreak(std::uint16_t kind, std::uint32_t handle, HtmlFilterContext& context);
void SOAnnounceSection(
    std::uint32_t first, std::uint32_t second, std::uint32_t third, HtmlFilterContext& context);
void SOAbandonFilter(std::uint32_t code, HtmlFilterContext& context);
void SOSelectFont(std::uint32_t fontIndex, HtmlFilterContext& context);
void SOSetLineSpacing(std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b,
    HtmlFilterContext& context);
void SODefineFont(
    std::uint32_t index, std::uint16_t family, const char* name, HtmlFilterContext& context);
void SOFinishTable(HtmlFilterContext& context);
void SOPlaceGraphic(const GraphicRecord& record, HtmlFilterContext& context);
void SOPlaceRule(const RuleRecord& record, std::uint32_t color, std::uint32_t mode,
    std::uint32_t width, std::uint32_t height, HtmlFilterContext& context);
void SOBeginTagged(
    std::uint32_t tag, std::uint32_t value, const void* record, HtmlFilterContext& context);
void SOEndTagged(std::uint32_t tag, std::uint32_t value, HtmlFilterContext& context);
/// Answers the handle that the host wrote.
std::uint32_t SOStoreString(const char16_t* text, std::uint32_t charSetId, std::uint16_t length,
    HtmlFilterContext& context);
void SOSetPageBorders(const PageBorderRecord& record, HtmlFilterContext& context);
void SOSetParagraphBorder(
    std::uint32_t on, const ParagraphBorderRecord& record, HtmlFilterContext& context);
void SOSetParagraphShading(
    std::uint32_t on, const ParagraphShadingRecord& record, HtmlFilterContext& context);
void SOSetTextColor(std::uint32_t mode, std::uint32_t color, HtmlFilterContext& context);
void SOSetBackColor(std::uint32_t mode, std::uint32_t color, HtmlFilterContext& context);
/// Answers the id that the host wrote.
std::uint32_t SOBeginReference(HtmlFilterContext& context);
void SOSetExtraProperty(std::uint32_t kind, std::uint32_t sub, std::uint32_t value,
    std::uint32_t value2, HtmlFilterContext& context);
void SOAttachReference(std::uint32_t referenceId, HtmlFilterContext& context);
void SODefineTable(const TableRecord& record, HtmlFilterContext& context);
/// Answers the cell's handle.
std::uint32_t SODefineTableCell(const TableCellRecord& record, HtmlFilterContext& context);
/// Answers the row's handle.
std::uint32_t SODefineTableRow(const TableRowRecord& record, HtmlFilterContext& context);
void SOEmitText(
    const char16_t* text, std::uint16_t count, std::uint32_t charSetId, HtmlFilterContext& context);
/// Answers the buffer, or null when the host refuses one.
char16_t* SOReserveChars(std::uint32_t capacity, HtmlFilterContext& context);
void SOCommitChars(std::uint16_t count, std::uint32_t charSetId, HtmlFilterContext& context);
void SOMarkSourceTag(std::uint32_t id, HtmlFilterContext& context);
void SOSetProperty(std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value,
    HtmlFilterContext& context);
void SOAnnounceFeatures(std::uint32_t features, HtmlFilterContext& context);
void SOAddReferencePart(
    std::uint32_t code, std::uint32_t a, std::uint32_t b, HtmlFilterContext& context);
void SOEndReference(HtmlFilterContext& context);
void SOEmitTextAt(
    const char16_t* text, std::uint16_t count, std::uint32_t charSetId, HtmlFilterContext& context);

/// Hands a string to the host under sectionCharSetId. Answers its handle, or SO_NO_STRING for an
/// empty one, which is not handed over.
std::uint32_t storeString(const char16_t* text, HtmlFilterContext& context);
