#include "style/cascade.h"

#include "style/css_declaration_list.h"
#include "style/lengths.h"
#include "style/table_value.h"

#include <array>
#include <initializer_list>

namespace {

using Value = TableValue;

constexpr std::size_t kPropertyCount = PROPERTY_ZOOM + 1;

constexpr Value kAuto = Value::keywordOf(VALUE_AUTO);
constexpr Value kNone = Value::keywordOf(VALUE_NONE);
constexpr Value kNormal = Value::keywordOf(VALUE_NORMAL);
constexpr Value kMedium = Value::keywordOf(VALUE_MEDIUM);
constexpr Value kTransparent = Value::keywordOf(VALUE_TRANSPARENT);
constexpr Value kVisible = Value::keywordOf(VALUE_VISIBLE);
constexpr Value kTimes = Value::textOf(u"Times New Roman");
constexpr Value kZero = Value::pixels(0);

struct PropertyValue {
    ZVCSSProperty property;
    Value value;
};

// The initial values, but for those of border colors, which are the color in force.
constexpr PropertyValue kInitialValues[] = {
    {PROPERTY_BACKFACE_VISIBILITY, kVisible},
    {PROPERTY_VISIBILITY, kVisible},
    {PROPERTY_BACKGROUND_ATTACHMENT, Value::keywordOf(VALUE_SCROLL)},
    {PROPERTY_BACKGROUND_COLOR, kTransparent},
    {PROPERTY_BACKGROUND_IMAGE, kNone},
    {PROPERTY_BORDER_BOTTOM_STYLE, kNone},
    {PROPERTY_BORDER_LEFT_STYLE, kNone},
    {PROPERTY_BORDER_RIGHT_STYLE, kNone},
    {PROPERTY_BORDER_TOP_STYLE, kNone},
    {PROPERTY_CLEAR, kNone},
    {PROPERTY_COUNTER_INCREMENT, kNone},
    {PROPERTY_COUNTER_RESET, kNone},
    {PROPERTY_LIST_STYLE_IMAGE, kNone},
    {PROPERTY_MAX_HEIGHT, kNone},
    {PROPERTY_MAX_WIDTH, kNone},
    {PROPERTY_MIN_HEIGHT, kNone},
    {PROPERTY_MIN_WIDTH, kNone},
    {PROPERTY_TEXT_TRANSFORM, kNone},
    {PROPERTY_BACKGROUND_REPEAT, Value::keywordOf(VALUE_REPEAT)},
    {PROPERTY_BORDER_BOTTOM_WIDTH, kMedium},
    {PROPERTY_BORDER_LEFT_WIDTH, kMedium},
    {PROPERTY_BORDER_RIGHT_WIDTH, kMedium},
    {PROPERTY_BORDER_TOP_WIDTH, kMedium},
    {PROPERTY_FONT_SIZE, kMedium},
    {PROPERTY_BORDER_COLLAPSE, Value::keywordOf(VALUE_SEPARATE)},
    {PROPERTY_BORDER_SPACING, kZero},
    {PROPERTY_MARGIN_BOTTOM, kZero},
    {PROPERTY_MARGIN_LEFT, kZero},
    {PROPERTY_MARGIN_RIGHT, kZero},
    {PROPERTY_MARGIN_TOP, kZero},
    {PROPERTY_PADDING_BOTTOM, kZero},
    {PROPERTY_PADDING_LEFT, kZero},
    {PROPERTY_PADDING_RIGHT, kZero},
    {PROPERTY_PADDING_TOP, kZero},
    {PROPERTY_TEXT_INDENT, kZero},
    {PROPERTY_CAPTION_SIDE, Value::keywordOf(VALUE_TOP)},
    {PROPERTY_COLOR, Value::black()},
    {PROPERTY_CURSOR, kAuto},
    {PROPERTY_HEIGHT, kAuto},
    {PROPERTY_WIDTH, kAuto},
    {PROPERTY_DIRECTION, Value::keywordOf(VALUE_LTR)},
    {PROPERTY_FONT_FAMILY, kTimes},
    {PROPERTY_FONT_STYLE, kNormal},
    {PROPERTY_FONT_VARIANT, kNormal},
    {PROPERTY_FONT_WEIGHT, kNormal},
    {PROPERTY_LETTER_SPACING, kNormal},
    {PROPERTY_LINE_HEIGHT, kNormal},
    {PROPERTY_WHITE_SPACE, kNormal},
    {PROPERTY_WORD_SPACING, kNormal},
    {PROPERTY_WORD_WRAP, kNormal},
    {PROPERTY_LIST_STYLE_POSITION, Value::keywordOf(VALUE_OUTSIDE)},
    {PROPERTY_LIST_STYLE_TYPE, Value::keywordOf(VALUE_DISC)},
    {PROPERTY_TEXT_ALIGN, Value::keywordOf(VALUE_LEFT)},
    {PROPERTY_TEXT_DECORATION, kNone},
    {PROPERTY_VERTICAL_ALIGN, Value::keywordOf(VALUE_BASELINE)},
};

constexpr std::uint8_t kNoInitialValue = 0xFF;

constexpr auto kInitialValueOf = [] {
    std::array<std::uint8_t, kPropertyCount> places{};
    places.fill(kNoInitialValue);
    std::uint8_t place = 0;
    for (const PropertyValue& each : kInitialValues)
        places[each.property] = place++;
    return places;
}();

// What a document begins with. QUIRK(InitialValues.DefaultStyleCentersVertically): vertical-align
// begins as center, though its initial value is baseline.
constexpr PropertyValue kDefaultStyle[] = {
    {PROPERTY_BACKGROUND_COLOR, kTransparent},
    {PROPERTY_BORDER_BOTTOM_COLOR, Value::black()},
    {PROPERTY_BORDER_LEFT_COLOR, Value::black()},
    {PROPERTY_BORDER_RIGHT_COLOR, Value::black()},
    {PROPERTY_BORDER_TOP_COLOR, Value::black()},
    {PROPERTY_BORDER_BOTTOM_STYLE, kNone},
    {PROPERTY_BORDER_LEFT_STYLE, kNone},
    {PROPERTY_BORDER_RIGHT_STYLE, kNone},
    {PROPERTY_BORDER_TOP_STYLE, kNone},
    {PROPERTY_BORDER_BOTTOM_WIDTH, kZero},
    {PROPERTY_BORDER_LEFT_WIDTH, kZero},
    {PROPERTY_BORDER_RIGHT_WIDTH, kZero},
    {PROPERTY_BORDER_TOP_WIDTH, kZero},
    {PROPERTY_COLOR, Value::black()},
    {PROPERTY_DIRECTION, Value::keywordOf(VALUE_LTR)},
    {PROPERTY_FONT_FAMILY, kTimes},
    {PROPERTY_FONT_SIZE, Value::pixels(16)},
    {PROPERTY_FONT_STYLE, kNormal},
    {PROPERTY_FONT_VARIANT, kNormal},
    {PROPERTY_FONT_WEIGHT, kNormal},
    {PROPERTY_HEIGHT, kAuto},
    {PROPERTY_LETTER_SPACING, kNormal},
    {PROPERTY_LINE_HEIGHT, kNormal},
    {PROPERTY_MARGIN_BOTTOM, kZero},
    {PROPERTY_MARGIN_LEFT, kZero},
    {PROPERTY_MARGIN_RIGHT, kZero},
    {PROPERTY_MARGIN_TOP, kZero},
    {PROPERTY_PADDING_BOTTOM, kZero},
    {PROPERTY_PADDING_LEFT, kZero},
    {PROPERTY_PADDING_RIGHT, kZero},
    {PROPERTY_PADDING_TOP, kZero},
    {PROPERTY_TEXT_ALIGN, Value::keywordOf(VALUE_LEFT)},
    {PROPERTY_TEXT_DECORATION, kNone},
    {PROPERTY_TEXT_INDENT, kZero},
    {PROPERTY_TEXT_TRANSFORM, kNone},
    {PROPERTY_VERTICAL_ALIGN, Value::keywordOf(VALUE_CENTER)},
    {PROPERTY_WIDTH, kAuto},
};
static_assert(std::size(kDefaultStyle) == 37);

constexpr auto kInherited = [] {
    std::array<bool, kPropertyCount> inherited{};
    for (const ZVCSSProperty property :
        {PROPERTY_BACKGROUND_COLOR, PROPERTY_BORDER_SPACING, PROPERTY_CAPTION_SIDE, PROPERTY_COLOR,
            PROPERTY_CURSOR, PROPERTY_DIRECTION, PROPERTY_EMPTY_CELLS, PROPERTY_FONT,
            PROPERTY_FONT_FAMILY, PROPERTY_FONT_SIZE, PROPERTY_FONT_STYLE, PROPERTY_FONT_VARIANT,
            PROPERTY_FONT_WEIGHT, PROPERTY_LETTER_SPACING, PROPERTY_LINE_HEIGHT,
            PROPERTY_LIST_STYLE, PROPERTY_LIST_STYLE_IMAGE, PROPERTY_LIST_STYLE_POSITION,
            PROPERTY_LIST_STYLE_TYPE, PROPERTY_ORPHANS, PROPERTY_QUOTES, PROPERTY_TEXT_ALIGN,
            PROPERTY_TEXT_DECORATION, PROPERTY_TEXT_INDENT, PROPERTY_TEXT_TRANSFORM,
            PROPERTY_VISIBILITY, PROPERTY_WHITE_SPACE, PROPERTY_WORD_SPACING})
        inherited[property] = true;
    return inherited;
}();

bool isBorderColor(ZVCSSProperty property)
{
    return property == PROPERTY_BORDER_BOTTOM_COLOR || property == PROPERTY_BORDER_LEFT_COLOR
        || property == PROPERTY_BORDER_RIGHT_COLOR || property == PROPERTY_BORDER_TOP_COLOR;
}

} // namespace

bool isInherited(ZVCSSProperty property)
{
    return property < kPropertyCount && kInherited[property];
}

bool getInitialDeclaration(ZVCSSProperty property, CssDeclaration& out,
    std::uint32_t useInitialStyle, HtmlFilterContext& context)
{
    if (isBorderColor(property)) {
        const CssDeclarationList& style
            = useInitialStyle == 1 ? *context.initialStyle : *context.runningStyle;
        HtmlValue* const color = style.get(PROPERTY_COLOR)->getValue();
        out = CssDeclaration(property, color, /*important=*/false, /*edgeMargin=*/false);
        return true;
    }
    if (property >= kPropertyCount || kInitialValueOf[property] == kNoInitialValue)
        return false;
    const Value& initial = kInitialValues[kInitialValueOf[property]].value;
    HtmlValue* const value = makeValue(initial, *context.valueCache);
    if (property == PROPERTY_TEXT_DECORATION) {
        out = CssDeclaration(property, nullptr, /*important=*/false, /*edgeMargin=*/false);
        out.addValue(value);
        return true;
    }
    out = CssDeclaration(property, value, /*important=*/false, /*edgeMargin=*/false);
    return true;
}

std::uint32_t namedFontSize(std::uint32_t value)
{
    switch (value) {
    case VALUE_XX_SMALL:
        return 9;
    case VALUE_X_SMALL:
        return 10;
    case VALUE_SMALL:
        return 13;
    case VALUE_MEDIUM:
        return 16;
    case VALUE_LARGE:
        return 18;
    case VALUE_X_LARGE:
        return 24;
    case VALUE_XX_LARGE:
        return 32;
    default:
        return kNoFontSize;
    }
}

void fillDefaultStyle(CssDeclarationList& list, ValueCache& values)
{
    if (!list.isEmpty())
        return;
    for (const PropertyValue& each : kDefaultStyle) {
        list.set(each.property, makeValue(each.value, values), /*important=*/false,
            /*edgeMargin=*/false);
    }
}
