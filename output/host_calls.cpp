#include "output/host_calls.h"

#include <string>

void SOEmitSpecial(std::uint16_t code, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOEmitSpecialRoutine>(SO_EMIT_SPECIAL, context);
    routine(code, context.userData1, context.userData2);
}

void SOSetFontHeight(std::uint32_t halfPoints, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetFontHeightRoutine>(SO_SET_FONT_HEIGHT, context);
    routine(halfPoints, context.userData1, context.userData2);
}

std::uint32_t SOEmitBreak(std::uint16_t kind, std::uint32_t handle, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOEmitBreakRoutine>(SO_EMIT_BREAK, context);
    return routine(kind, handle, context.userData1, context.userData2);
}

void SOAnnounceSection(
    std::uint32_t first, std::uint32_t second, std::uint32_t third, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOAnnounceSectionRoutine>(SO_ANNOUNCE_SECTION, context);
    routine(first, second, third, context.userData1, context.userData2);
}

void SOAbandonFilter(std::uint32_t code, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOAbandonFilterRoutine>(SO_ABANDON_FILTER, context);
    routine(code, context.userData1, context.userData2);
}

void SOSelectFont(std::uint32_t fontIndex, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSelectFontRoutine>(SO_SELECT_FONT, context);
    routine(fontIndex, context.userData1, context.userData2);
}

void SOSetLineSpacing(std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b,
    HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetLineSpacingRoutine>(SO_SET_LINE_SPACING, context);
    routine(kind, value, a, b, context.userData1, context.userData2);
}

void SODefineFont(
    std::uint32_t index, std::uint16_t family, const char* name, HtmlFilterContext& context)
{
    const auto routine = routineAs<SODefineFontRoutine>(SO_DEFINE_FONT, context);
    routine(index, family, name, context.userData1, context.userData2);
}

void SOFinishTable(HtmlFilterContext& context)
{
    const auto routine = routineAs<SOFinishTableRoutine>(SO_FINISH_TABLE, context);
    routine(context.userData1, context.userData2);
}

void SOPlaceGraphic(const GraphicRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOPlaceGraphicRoutine>(SO_PLACE_GRAPHIC, context);
    routine(&record, context.userData1, context.userData2);
}

void SOPlaceRule(const RuleRecord& record, std::uint32_t color, std::uint32_t mode,
    std::uint32_t width, std::uint32_t height, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOPlaceRuleRoutine>(SO_PLACE_RULE, context);
    routine(&record, color, mode, width, height, context.userData1, context.userData2);
}

void SOBeginTagged(
    std::uint32_t tag, std::uint32_t value, const void* record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOBeginTaggedRoutine>(SO_BEGIN_TAGGED, context);
    routine(tag, value, record, context.userData1, context.userData2);
}

void SOEndTagged(std::uint32_t tag, std::uint32_t value, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOEndTaggedRoutine>(SO_END_TAGGED, context);
    routine(tag, value, context.userData1, context.userData2);
}

std::uint32_t SOStoreString(
    const char16_t* text, std::uint32_t charSetId, std::uint16_t length, HtmlFilterContext& context)
{
    // A host that stores no strings writes nothing: then there is no string.
    std::uint32_t handle = SO_NO_STRING;
    const auto routine = routineAs<SOStoreStringRoutine>(SO_STORE_STRING, context);
    routine(text, charSetId, length, &handle, context.userData1, context.userData2);
    return handle;
}

void SOSetPageBorders(const PageBorderRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetPageBordersRoutine>(SO_SET_PAGE_BORDERS, context);
    routine(/*on=*/1, &record, context.userData1, context.userData2);
}

void SOSetParagraphBorder(
    std::uint32_t on, const ParagraphBorderRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetParagraphBorderRoutine>(SO_SET_PARAGRAPH_BORDER, context);
    routine(on, &record, context.userData1, context.userData2);
}

void SOSetParagraphShading(
    std::uint32_t on, const ParagraphShadingRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetParagraphShadingRoutine>(SO_SET_PARAGRAPH_SHADING, context);
    routine(on, &record, context.userData1, context.userData2);
}

void SOSetTextColor(std::uint32_t mode, std::uint32_t color, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetTextColorRoutine>(SO_SET_TEXT_COLOR, context);
    routine(mode, color, context.userData1, context.userData2);
}

void SOSetBackColor(std::uint32_t mode, std::uint32_t color, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetBackColorRoutine>(SO_SET_BACK_COLOR, context);
    routine(mode, color, context.userData1, context.userData2);
}

std::uint32_t SOBeginReference(HtmlFilterContext& context)
{
    std::uint32_t referenceId = SO_NO_STRING;
    const auto routine = routineAs<SOBeginReferenceRoutine>(SO_BEGIN_REFERENCE, context);
    routine(&referenceId, context.userData1, context.userData2);
    return referenceId;
}

void SOSetExtraProperty(std::uint32_t kind, std::uint32_t sub, std::uint32_t value,
    std::uint32_t value2, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetExtraPropertyRoutine>(SO_SET_EXTRA_PROPERTY, context);
    routine(kind, sub, value, value2, context.userData1, context.userData2);
}

void SOAttachReference(std::uint32_t referenceId, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOAttachReferenceRoutine>(SO_ATTACH_REFERENCE, context);
    routine(referenceId, /*zero=*/0, context.userData1, context.userData2);
}

void SODefineTable(const TableRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SODefineTableRoutine>(SO_DEFINE_TABLE, context);
    routine(&record, context.userData1, context.userData2);
}

std::uint32_t SODefineTableCell(const TableCellRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SODefineTableCellRoutine>(SO_DEFINE_TABLE_CELL, context);
    return routine(&record, context.userData1, context.userData2);
}

std::uint32_t SODefineTableRow(const TableRowRecord& record, HtmlFilterContext& context)
{
    const auto routine = routineAs<SODefineTableRowRoutine>(SO_DEFINE_TABLE_ROW, context);
    return routine(&record, context.userData1, context.userData2);
}

void SOEmitText(
    const char16_t* text, std::uint16_t count, std::uint32_t charSetId, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOEmitTextRoutine>(SO_EMIT_TEXT, context);
    routine(text, count, charSetId, context.userData1, context.userData2);
}

char16_t* SOReserveChars(std::uint32_t capacity, HtmlFilterContext& context)
{
    char16_t* buffer = nullptr;
    const auto routine = routineAs<SOReserveCharsRoutine>(SO_RESERVE_CHARS, context);
    routine(&buffer, capacity, context.userData1, context.userData2);
    return buffer;
}

void SOCommitChars(std::uint16_t count, std::uint32_t charSetId, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOCommitCharsRoutine>(SO_COMMIT_CHARS, context);
    routine(count, charSetId, context.userData1, context.userData2);
}

void SOMarkSourceTag(std::uint32_t id, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOMarkSourceTagRoutine>(SO_MARK_SOURCE_TAG, context);
    routine(id, context.userData1, context.userData2);
}

void SOSetProperty(std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value,
    HtmlFilterContext& context)
{
    const auto routine = routineAs<SOSetPropertyRoutine>(SO_SET_PROPERTY, context);
    routine(kind, sub, flag, value, context.userData1, context.userData2);
}

void SOAnnounceFeatures(std::uint32_t features, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOAnnounceFeaturesRoutine>(SO_ANNOUNCE_FEATURES, context);
    routine(features, context.userData1, context.userData2);
}

void SOAddReferencePart(
    std::uint32_t code, std::uint32_t a, std::uint32_t b, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOAddReferencePartRoutine>(SO_ADD_REFERENCE_PART, context);
    routine(code, a, b, context.userData1, context.userData2);
}

void SOEndReference(HtmlFilterContext& context)
{
    const auto routine = routineAs<SOEndReferenceRoutine>(SO_END_REFERENCE, context);
    routine(context.userData1, context.userData2);
}

void SOEmitTextAt(
    const char16_t* text, std::uint16_t count, std::uint32_t charSetId, HtmlFilterContext& context)
{
    const auto routine = routineAs<SOEmitTextAtRoutine>(SO_EMIT_TEXT_AT, context);
    routine(text, count, charSetId, EMIT_TEXT_AT_WORD, context.userData1, context.userData2);
}

std::uint32_t storeString(const char16_t* text, HtmlFilterContext& context)
{
    // What is stored are attribute values, whose longest text is shorter than 65,536 units.
    const auto length = static_cast<std::uint16_t>(std::char_traits<char16_t>::length(text));
    if (length == 0)
        return SO_NO_STRING;
    return SOStoreString(text, context.sectionCharSetId, length, context);
}
