#include "host/text_sink.h"

#include "host/session.h"

#include <gtest/gtest.h>

namespace {

using host::StringWriter;
using host::TextSink;
using Properties = TextSink::Properties;

/// What a test tells the sink, in the words of a document.
class Teller {
public:
    explicit Teller(Properties properties = Properties::LeaveOut)
        : sink(writer, properties)
    {
    }

    Teller& text(std::u16string_view units)
    {
        sink.emitTextAt(units, CHARSET_ID_UTF16, EMIT_TEXT_AT_WORD);
        return *this;
    }
    Teller& paragraph(std::u16string_view units = u"")
    {
        if (!units.empty())
            text(units);
        sink.emitBreak(BREAK_PARAGRAPH, 0);
        return *this;
    }
    Teller& special(std::uint16_t code)
    {
        sink.emitSpecial(code);
        return *this;
    }
    Teller& row()
    {
        sink.defineTableRow(nullptr, 1);
        return *this;
    }
    Teller& cell(std::u16string_view units)
    {
        sink.defineTableCell(nullptr, 2);
        if (!units.empty())
            text(units);
        return endCell();
    }
    Teller& mergedCell(std::uint32_t merge, std::u16string_view units = u"")
    {
        TableCellRecord record = {};
        record.size = sizeof record;
        record.present = CELL_MERGE;
        record.merge = merge;
        sink.defineTableCell(&record, 2);
        if (!units.empty())
            text(units);
        return endCell();
    }
    Teller& openCell()
    {
        sink.defineTableCell(nullptr, 2);
        return *this;
    }
    Teller& endCell()
    {
        sink.emitBreak(BREAK_CELL, 2);
        return *this;
    }
    Teller& endRow()
    {
        sink.emitBreak(BREAK_ROW, 1);
        return *this;
    }
    Teller& property(std::uint32_t field, std::u16string_view value)
    {
        sink.beginTagged(TAG_FIELD, 1, &field);
        sink.emitText(value, CHARSET_ID_UTF16);
        sink.endTagged(TAG_FIELD, 1);
        return *this;
    }
    std::string end()
    {
        sink.emitBreak(BREAK_DOCUMENT, 0);
        sink.conversionEnded({});
        return writer.text;
    }

    StringWriter writer;
    TextSink sink;
};

TEST(TextSink, ParagraphsAreLines)
{
    EXPECT_EQ(Teller().paragraph(u"a").paragraph(u"b").end(), "a\nb\n");
    EXPECT_EQ(Teller().paragraph(u"a").text(u"b").end(), "a\nb\n");
    EXPECT_EQ(Teller().text(u"a").text(u"b").paragraph().end(), "ab\n");
}

TEST(TextSink, EmptyParagraphsAreEmptyLinesButAtTheEnd)
{
    EXPECT_EQ(Teller().paragraph(u"a").paragraph().paragraph(u"b").end(), "a\n\nb\n");
    EXPECT_EQ(Teller().paragraph(u"a").paragraph().paragraph().end(), "a\n");
    EXPECT_EQ(Teller().paragraph().paragraph().end(), "");
    EXPECT_EQ(Teller().end(), "");
}

TEST(TextSink, TableBreaksAreNoLines)
{
    Teller teller;
    teller.paragraph(u"a");
    teller.sink.emitBreak(BREAK_TABLE, 0);
    teller.row().cell(u"c").endRow();
    teller.sink.finishTable();
    teller.sink.emitBreak(BREAK_TABLE, 0);
    EXPECT_EQ(teller.paragraph(u"b").end(), "a\nc\nb\n");
}

TEST(TextSink, RowsAreLinesOfCells)
{
    EXPECT_EQ(Teller().row().cell(u"a").cell(u"").cell(u"c").endRow().end(), "a\t\tc\n");
    EXPECT_EQ(Teller().row().cell(u"a").endRow().row().cell(u"b").endRow().end(), "a\nb\n");
    EXPECT_EQ(Teller().text(u"x").row().cell(u"a").endRow().text(u"y").end(), "x\na\ny\n");
    EXPECT_EQ(Teller().row().cell(u"").endRow().row().cell(u"b").endRow().end(), "\nb\n");
}

TEST(TextSink, CoveredCellsAddNothing)
{
    for (std::uint32_t merge = 0; merge < 16; ++merge) {
        const bool covered = (merge & (MERGE_LEFT | MERGE_ABOVE)) != 0;
        Teller behind;
        behind.row().cell(u"a").mergedCell(merge).cell(u"b").endRow();
        EXPECT_EQ(behind.end(), covered ? "a\tb\n" : "a\t\tb\n") << merge;
        Teller first;
        first.row().mergedCell(merge).cell(u"a").mergedCell(merge).endRow();
        EXPECT_EQ(first.end(), covered ? "a\n" : "\ta\t\n") << merge;
    }
    // Without the flag the word says nothing.
    TableCellRecord record = {};
    record.merge = MERGE_LEFT;
    Teller unflagged;
    unflagged.row().cell(u"a").sink.defineTableCell(&record, 2);
    EXPECT_EQ(unflagged.endCell().endRow().end(), "a\t\n");
}

TEST(TextSink, SpanningCellsStandOnce)
{
    // Three columns: a over the first two and two rows, b behind it, c below b.
    Teller teller;
    teller.row().mergedCell(MERGE_RIGHT | MERGE_BELOW, u"a");
    teller.mergedCell(MERGE_LEFT | MERGE_BELOW).cell(u"b").endRow();
    teller.row().mergedCell(MERGE_RIGHT | MERGE_ABOVE);
    teller.mergedCell(MERGE_LEFT | MERGE_ABOVE).cell(u"c").endRow();
    EXPECT_EQ(teller.end(), "a\tb\nc\n");
    Teller nested;
    nested.row().openCell().row().mergedCell(MERGE_RIGHT, u"a").mergedCell(MERGE_LEFT).cell(u"b");
    EXPECT_EQ(nested.endRow().endCell().endRow().end(), "a b\n");
}

TEST(TextSink, ParagraphsWithinACellAreJoinedByBlanks)
{
    Teller teller;
    teller.row().openCell().paragraph(u"a").paragraph().paragraph(u"b").endCell();
    EXPECT_EQ(teller.openCell().paragraph().text(u"c").endCell().endRow().end(), "a b\tc\n");
}

TEST(TextSink, TablesWithinACellAreWordsOfIt)
{
    Teller teller;
    teller.row().openCell().text(u"a");
    teller.row().cell(u"b").cell(u"c").endRow().row().cell(u"d").endRow();
    EXPECT_EQ(teller.text(u"e").endCell().cell(u"f").endRow().end(), "a b c d e\tf\n");
}

TEST(TextSink, DeepTablesStayLinear)
{
    Teller teller;
    const int depth = 200'000;
    for (int level = 0; level < depth; ++level)
        teller.row().openCell().text(u"x");
    for (int level = 0; level < depth; ++level)
        teller.endCell().endRow();
    EXPECT_EQ(teller.end().size(), 2u * depth);
}

TEST(TextSink, TabsAndGaps)
{
    Teller teller;
    teller.text(u"1.").special(SPECIAL_MARKER_GAP).special(SPECIAL_MARKER_GAP).paragraph(u"a");
    teller.special(SPECIAL_TAB).paragraph(u"b");
    teller.special(SPECIAL_MARKER_GAP).special(SPECIAL_MARKER_GAP);
    teller.special(SPECIAL_MARKER_GAP).special(SPECIAL_MARKER_GAP).paragraph(u"c");
    teller.row().openCell().text(u"d").special(SPECIAL_TAB).text(u"e\tf").endCell().endRow();
    teller.special(9);
    EXPECT_EQ(teller.end(), "1. a\n\tb\n  c\nd e f\n");
}

TEST(TextSink, LineBreaksInTextAreBlanks)
{
    EXPECT_EQ(Teller().paragraph(u"a\nb\rc\td").end(), "a b c\td\n");
}

TEST(TextSink, PropertiesAreNoText)
{
    Teller teller;
    teller.property(FIELD_TITLE, u"T").paragraph(u"a").property(FIELD_AUTHOR, u"A");
    EXPECT_EQ(teller.end(), "a\n");
}

TEST(TextSink, PropertiesMayStandFirst)
{
    const struct {
        std::uint32_t field;
        const char* line;
    } rows[] = {
        {FIELD_DESCRIPTION, "description: v\n"},
        {FIELD_KEYWORDS, "keywords: v\n"},
        {FIELD_AUTHOR, "author: v\n"},
        {FIELD_SUBJECT, "subject: v\n"},
        {FIELD_TITLE, "title: v\n"},
        {FIELD_GENERATOR, "generator: v\n"},
        {FIELD_VERSION, "version: v\n"},
        {FIELD_BASE, "base: v\n"},
        {FIELD_OTHER, "other: v\n"},
        {77, "other: v\n"},
    };
    std::string all;
    Teller teller(Properties::WriteFirst);
    teller.paragraph(u"text");
    for (const auto& row : rows) {
        teller.property(row.field, u"v");
        all += row.line;
    }
    EXPECT_EQ(teller.end(), all + "text\n");
}

TEST(TextSink, OtherPropertiesBringTheirName)
{
    Teller teller(Properties::WriteFirst);
    const std::uint32_t field = FIELD_OTHER;
    teller.sink.beginTagged(TAG_FIELD, 1, &field);
    teller.sink.beginTagged(TAG_FIELD_NAME, 1, &field);
    teller.text(u"robots");
    teller.sink.endTagged(TAG_FIELD_NAME, 1);
    teller.text(u"no\u00E9");
    teller.sink.endTagged(TAG_FIELD, 1);
    EXPECT_EQ(teller.end(), "robots: no\u00E9\n");
}

TEST(TextSink, ReservedTextCountsLikewise)
{
    Teller teller(Properties::WriteFirst);
    const std::uint32_t field = FIELD_BASE;
    teller.sink.beginTagged(TAG_FIELD, 1, &field);
    teller.sink.reserveChars(RESERVED_CHARS_CAPACITY);
    teller.sink.commitChars(u"http://x/", CHARSET_ID_UTF16);
    teller.sink.endTagged(TAG_FIELD, 1);
    teller.sink.commitChars(u"y", CHARSET_ID_UTF16);
    EXPECT_EQ(teller.end(), "base: http://x/\ny\n");
}

TEST(TextSink, BreaksWithinAPropertyAreBlanks)
{
    Teller teller(Properties::WriteFirst);
    const std::uint32_t field = FIELD_TITLE;
    teller.sink.beginTagged(TAG_FIELD, 1, &field);
    teller.paragraph(u"a").text(u"b");
    teller.sink.endTagged(TAG_FIELD, 1);
    EXPECT_EQ(teller.paragraph(u"c").end(), "title: a b\nc\n");
}

TEST(TextSink, OtherStretchesAreText)
{
    Teller teller;
    const HyperlinkRecord link = {};
    teller.sink.beginTagged(TAG_HYPERLINK, 1, &link);
    teller.text(u"l");
    teller.sink.endTagged(TAG_HYPERLINK, 1);
    teller.sink.beginTagged(TAG_FIELD_NAME, 1, nullptr);
    teller.text(u"m");
    teller.sink.endTagged(TAG_FIELD_NAME, 1);
    teller.sink.endTagged(TAG_FIELD, 1);
    EXPECT_EQ(teller.end(), "lm\n");
}

TEST(TextSink, JoinsAPairThatTheFilterCut)
{
    Teller teller(Properties::WriteFirst);
    std::u16string cut(65'534, u'x');
    cut.back() = u'\xD83D';
    teller.sink.emitText(cut, CHARSET_ID_UTF16);
    teller.sink.emitText(u"\xDE00z", CHARSET_ID_UTF16);
    const std::string text = teller.end();
    EXPECT_EQ(text.substr(65'533), "😀z\n");
    EXPECT_EQ(teller.sink.unmapped(), 0u);
}

TEST(TextSink, HalfAPairEndsWithItsRun)
{
    const struct {
        void (*between)(Teller&);
        const char* text;
    } rows[] = {
        {[](Teller& teller) { teller.paragraph(); }, "\uFFFD\n\uFFFD\n"},
        {[](Teller& teller) { teller.special(SPECIAL_TAB); }, "\uFFFD\t\uFFFD\n"},
        {[](Teller& teller) { teller.row(); }, "\uFFFD\n\uFFFD\n"},
        {[](Teller& teller) { teller.sink.beginTagged(TAG_HYPERLINK, 1, nullptr); },
            "\uFFFD\uFFFD\n"},
        {[](Teller& teller) { teller.sink.endTagged(TAG_HYPERLINK, 1); }, "\uFFFD\uFFFD\n"},
        {[](Teller& teller) { teller.property(FIELD_TITLE, u"\xDE00"); }, "\uFFFD\uFFFD\n"},
    };
    for (const auto& row : rows) {
        Teller teller;
        teller.text(u"\xD83D");
        row.between(teller);
        EXPECT_EQ(teller.text(u"\xDE00").end(), row.text);
    }
    EXPECT_EQ(Teller().text(u"a\xD83D").end(), "a\uFFFD\n");
}

TEST(TextSink, CountsWhatHasNoMapping)
{
    Teller teller;
    teller.text(u"a\xD800");
    EXPECT_EQ(teller.end(), "a\uFFFD\n");
    EXPECT_EQ(teller.sink.unmapped(), 1u);
}

TEST(TextSink, HandsOnBeforeTheEnd)
{
    const std::u16string text(65'534, u'x');
    Teller streaming;
    streaming.text(text).text(text);
    EXPECT_GE(streaming.writer.text.size(), text.size());
    Teller keeping(Properties::WriteFirst);
    keeping.text(text).text(text);
    EXPECT_EQ(keeping.writer.text, "");
}

} // namespace
