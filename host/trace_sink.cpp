#include "host/trace_sink.h"

#include "host/session.h"

#include <charconv>
#include <cstring>

namespace host {

namespace {

    constexpr std::size_t kFlushSize = 64 * 1024;
    // Room for the last line, which may have to tell that there is no memory.
    constexpr std::size_t kFirstCapacity = 4 * 1024;
    constexpr std::uint32_t kTagRecordSizeMask = 0xFFFF;

    void appendNumber(std::string& out, std::uint64_t value)
    {
        char digits[20];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        out.append(digits, end);
    }

    /// The word at a place of a record; what lies behind the end of the record counts as 0.
    std::uint32_t wordAt(const unsigned char* bytes, std::size_t size, std::size_t offset)
    {
        std::uint32_t word = 0;
        for (std::size_t index = 0; index < 4 && offset + index < size; ++index)
            word |= static_cast<std::uint32_t>(bytes[offset + index]) << (8 * index);
        return word;
    }

} // namespace

TraceSink::TraceSink(ByteWriter& writer)
    : writer_(writer)
{
    pending_.reserve(kFirstCapacity);
}

TraceSink& TraceSink::begin(std::string_view name)
{
    pending_.append(name);
    return *this;
}

TraceSink& TraceSink::number(std::uint32_t value)
{
    pending_.push_back(' ');
    appendNumber(pending_, value);
    return *this;
}

void TraceSink::quotedUnit(char16_t unit)
{
    if (unit >= u' ' && unit <= u'~' && unit != u'"' && unit != u'\\') {
        pending_.push_back(static_cast<char>(unit));
        return;
    }
    constexpr char kDigits[] = "0123456789abcdef";
    pending_.append("\\u");
    for (int shift = 12; shift >= 0; shift -= 4)
        pending_.push_back(kDigits[(unit >> shift) & 0xF]);
}

TraceSink& TraceSink::text(std::u16string_view units)
{
    pending_.append(" \"");
    for (const char16_t unit : units)
        quotedUnit(unit);
    pending_.push_back('"');
    return *this;
}

TraceSink& TraceSink::narrowText(std::string_view bytes)
{
    pending_.append(" \"");
    for (const char byte : bytes)
        quotedUnit(static_cast<unsigned char>(byte));
    pending_.push_back('"');
    return *this;
}

TraceSink& TraceSink::record(const void* bytes, std::size_t size)
{
    if (bytes == nullptr) {
        pending_.append(" null");
        return *this;
    }
    pending_.append(" {");
    bool first = true;
    for (std::size_t offset = 0; offset < size; offset += 4) {
        const std::uint32_t word = wordAt(static_cast<const unsigned char*>(bytes), size, offset);
        if (word == 0)
            continue;
        pending_.append(first ? "@" : " @");
        first = false;
        appendNumber(pending_, offset);
        pending_.push_back('=');
        appendNumber(pending_, word);
    }
    pending_.push_back('}');
    return *this;
}

void TraceSink::answer(std::uint32_t value)
{
    pending_.append(" -> ");
    appendNumber(pending_, value);
    end();
}

void TraceSink::end()
{
    pending_.push_back('\n');
    wholeLines_ = pending_.size();
    if (pending_.size() >= kFlushSize)
        flush();
}

void TraceSink::flush()
{
    writer_.write(pending_);
    pending_.clear();
    wholeLines_ = 0;
}

void TraceSink::emitSpecial(std::uint16_t code) { begin("SOEmitSpecial").number(code).end(); }

void TraceSink::setFontHeight(std::uint32_t halfPoints)
{
    begin("SOSetFontHeight").number(halfPoints).end();
}

bool TraceSink::emitBreak(std::uint16_t kind, std::uint32_t handle)
{
    begin("SOEmitBreak").number(kind).number(handle).end();
    return false;
}

void TraceSink::announceSection(std::uint32_t first, std::uint32_t second, std::uint32_t third)
{
    begin("SOAnnounceSection").number(first).number(second).number(third).end();
}

void TraceSink::selectFont(std::uint32_t fontIndex)
{
    begin("SOSelectFont").number(fontIndex).end();
}

void TraceSink::setLineSpacing(
    std::uint32_t kind, std::uint32_t value, std::uint32_t a, std::uint32_t b)
{
    begin("SOSetLineSpacing").number(kind).number(value).number(a).number(b).end();
}

void TraceSink::defineFont(std::uint32_t index, std::uint16_t family, std::string_view name)
{
    begin("SODefineFont").number(index).number(family).narrowText(name).end();
}

void TraceSink::finishTable() { begin("SOFinishTable").end(); }

void TraceSink::placeGraphic(const GraphicRecord* graphic)
{
    begin("SOPlaceGraphic").record(graphic, sizeof *graphic).end();
}

void TraceSink::placeRule(const RuleRecord* rule, std::uint32_t color, std::uint32_t mode,
    std::uint32_t width, std::uint32_t height)
{
    begin("SOPlaceRule").record(rule, sizeof *rule);
    number(color).number(mode).number(width).number(height).end();
}

void TraceSink::beginTagged(std::uint32_t tag, std::uint32_t value, const void* tagRecord)
{
    begin("SOBeginTagged").number(tag).number(value);
    record(tagRecord, tag & kTagRecordSizeMask).end();
}

void TraceSink::endTagged(std::uint32_t tag, std::uint32_t value)
{
    begin("SOEndTagged").number(tag).number(value).end();
}

void TraceSink::storeString(
    std::u16string_view units, std::uint32_t charSetId, std::uint32_t handle)
{
    begin("SOStoreString").text(units).number(charSetId);
    number(static_cast<std::uint32_t>(units.size())).answer(handle);
}

void TraceSink::setPageBorders(std::uint32_t on, const PageBorderRecord* borders)
{
    begin("SOSetPageBorders").number(on).record(borders, sizeof *borders).end();
}

void TraceSink::setParagraphBorder(std::uint32_t on, const ParagraphBorderRecord* border)
{
    begin("SOSetParagraphBorder").number(on).record(border, sizeof *border).end();
}

void TraceSink::setParagraphShading(std::uint32_t on, const ParagraphShadingRecord* shading)
{
    begin("SOSetParagraphShading").number(on).record(shading, sizeof *shading).end();
}

void TraceSink::setTextColor(std::uint32_t mode, std::uint32_t color)
{
    begin("SOSetTextColor").number(mode).number(color).end();
}

void TraceSink::setBackColor(std::uint32_t mode, std::uint32_t color)
{
    begin("SOSetBackColor").number(mode).number(color).end();
}

void TraceSink::beginReference(std::uint32_t referenceId)
{
    begin("SOBeginReference").answer(referenceId);
}

void TraceSink::setExtraProperty(
    std::uint32_t kind, std::uint32_t sub, std::uint32_t value, std::uint32_t value2)
{
    begin("SOSetExtraProperty").number(kind).number(sub).number(value).number(value2).end();
}

void TraceSink::attachReference(std::uint32_t referenceId, std::uint32_t zero)
{
    begin("SOAttachReference").number(referenceId).number(zero).end();
}

void TraceSink::defineTable(const TableRecord* table)
{
    begin("SODefineTable").record(table, sizeof *table).end();
}

void TraceSink::defineTableCell(const TableCellRecord* cell, std::uint32_t handle)
{
    begin("SODefineTableCell").record(cell, sizeof *cell).answer(handle);
}

void TraceSink::defineTableRow(const TableRowRecord* row, std::uint32_t handle)
{
    begin("SODefineTableRow").record(row, sizeof *row).answer(handle);
}

void TraceSink::emitText(std::u16string_view units, std::uint32_t charSetId)
{
    begin("SOEmitText").text(units).number(static_cast<std::uint32_t>(units.size()));
    number(charSetId).end();
}

void TraceSink::reserveChars(std::uint32_t capacity)
{
    begin("SOReserveChars").number(capacity).end();
}

void TraceSink::commitChars(std::u16string_view units, std::uint32_t charSetId)
{
    begin("SOCommitChars").text(units).number(static_cast<std::uint32_t>(units.size()));
    number(charSetId).end();
}

void TraceSink::markSourceTag(std::uint32_t id) { begin("SOMarkSourceTag").number(id).end(); }

void TraceSink::setProperty(
    std::uint32_t kind, std::uint32_t sub, std::uint32_t flag, std::uint32_t value)
{
    begin("SOSetProperty").number(kind).number(sub).number(flag).number(value).end();
}

void TraceSink::announceFeatures(std::uint32_t features)
{
    begin("SOAnnounceFeatures").number(features).end();
}

void TraceSink::addReferencePart(std::uint32_t code, std::uint32_t a, std::uint32_t b)
{
    begin("SOAddReferencePart").number(code).number(a).number(b).end();
}

void TraceSink::endReference() { begin("SOEndReference").end(); }

void TraceSink::emitTextAt(std::u16string_view units, std::uint32_t charSetId, std::uint32_t word)
{
    begin("SOEmitTextAt").text(units).number(static_cast<std::uint32_t>(units.size()));
    number(charSetId).number(word).end();
}

void TraceSink::sectionStarted() { begin("== section").end(); }

void TraceSink::readReturned(std::uint16_t result) { begin("== read ->").number(result).end(); }

void TraceSink::conversionEnded(const Outcome& outcome)
{
    // A line may have broken off for want of memory; what was written before makes room.
    pending_.resize(wholeLines_);
    if (outcome.kind != Outcome::Kind::Finished)
        flush();
    switch (outcome.kind) {
    case Outcome::Kind::Finished:
        break;

    case Outcome::Kind::Exception:
        begin("== exception").number(outcome.code).narrowText(outcome.message).end();
        break;

    case Outcome::Kind::BailOut:
        begin("== bailout").number(outcome.code).end();
        break;

    case Outcome::Kind::Abandoned:
        begin("== abandon").number(outcome.code).end();
        break;
    }
    flush();
}

} // namespace host
