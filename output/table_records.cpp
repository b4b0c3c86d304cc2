#include "output/table_records.h"

#include "output/borders.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/tree_walk.h"
#include "output/units.h"
#include "tree/enum_from_string.h"

namespace {

void setBackground(std::uint32_t color, TableRecord& record)
{
    record.present |= TABLE_BACKGROUND;
    record.fill = FILL_TABLE;
    record.backColor = color & kColorBits;
}

void setAlignment(std::uint32_t alignment, TableRecord& record)
{
    record.present |= TABLE_ALIGNMENT;
    record.alignment = alignment;
}

void setIndent(
    const CssDeclarationList& declarations, const HTML_SOINFO& frame, TableRecord& record)
{
    auto pixels = static_cast<std::uint32_t>(frame.leftIndentPx);
    if (const auto* margin = HtmlLengthValue::from(declarations.findValue(PROPERTY_MARGIN_LEFT)))
        pixels += static_cast<std::uint32_t>(pixelsOf(*margin)); // wraps
    record.present |= TABLE_LEFT_INDENT;
    record.leftIndent = pixels * kTwipsPerPixel;
}

void setWidth(const CssDeclarationList& declarations, TableRecord& record)
{
    const HtmlValue* value = declarations.findValue(PROPERTY_WIDTH);
    if (const auto* length = HtmlLengthValue::from(value)) {
        record.present |= TABLE_WIDTH;
        record.width = twips(pixelsOf(*length));
    } else if (const auto* percent = HtmlPercentValue::from(value)) {
        record.present |= TABLE_WIDTH;
        record.options |= TABLE_PERCENT_WIDTH;
        record.width = static_cast<std::uint32_t>(truncateToInt32(percent->number));
    }
}

void setBorders(const CssDeclarationList& declarations, TableRecord& record)
{
    const BorderSides sides = borderSidesOf(declarations);
    if (sides.hasLeft) {
        record.present |= TABLE_BORDER_LEFT;
        record.left = sides.left;
    }
    if (sides.hasRight) {
        record.present |= TABLE_BORDER_RIGHT;
        record.right = sides.right;
    }
    if (sides.hasTop) {
        record.present |= TABLE_BORDER_TOP;
        record.top = sides.top;
    }
    if (sides.hasBottom) {
        record.present |= TABLE_BORDER_BOTTOM;
        record.bottom = sides.bottom;
    }
}

void setCellSpacing(const HtmlTreeNode& node, TableRecord& record)
{
    const auto* spacing = HtmlLengthValue::from(attributeOf(node, ATTRIBUTE_CELLSPACING));
    const std::int32_t pixels = spacing != nullptr ? pixelsOf(*spacing) : 0;
    if (pixels <= 0)
        return;
    record.present |= TABLE_CELL_SPACING;
    record.cellSpacing = static_cast<std::uint32_t>(pixels);
}

bool runsRightToLeft(const HtmlTreeNode& node)
{
    const auto* direction = HtmlEnumValue::from(attributeOf(node, ATTRIBUTE_DIR));
    return direction != nullptr && direction->enumerator == TEXT_DIRECTION_RTL;
}

} // namespace

void defineTable(const HtmlTreeNode& node, const HTML_SOINFO& frame, HtmlFilterContext& context)
{
    TableRecord record{};
    record.options = TABLE_FIXED_OPTIONS;
    if (runsRightToLeft(node))
        record.options |= TABLE_RIGHT_TO_LEFT;
    const OpenTable& table = *innermostTable(context);
    const CssDeclarationList& declarations = *declarationsOf(node);
    setIndent(declarations, frame, record);
    setWidth(declarations, record);
    setBorders(declarations, record);
    setCellSpacing(node, record);
    if (table.alignment != 0)
        setAlignment(table.alignment, record);
    else if (frame.alignment != 0)
        setAlignment(frame.alignment, record);
    const HtmlColorValue* background = table.background;
    setBackground(background != nullptr ? background->color : frame.backColor, record);
    // What shades the paragraphs around the table does not shade a table with a color of its own.
    if (background != nullptr)
        SOSetParagraphShading(0, ParagraphShadingRecord{}, context);
    SODefineTable(record, context);
}
