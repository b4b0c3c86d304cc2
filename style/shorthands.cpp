#include "style/shorthands.h"

#include "style/text_lookup.h"
#include "style/value_readers.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::int32_t kSides = 4;

/// The longhands of the sides: top, right, bottom, left.
using SideProperties = ZVCSSProperty[kSides];

constexpr SideProperties kBorderColors = {PROPERTY_BORDER_TOP_COLOR, PROPERTY_BORDER_RIGHT_COLOR,
    PROPERTY_BORDER_BOTTOM_COLOR, PROPERTY_BORDER_LEFT_COLOR};
constexpr SideProperties kBorderStyles = {PROPERTY_BORDER_TOP_STYLE, PROPERTY_BORDER_RIGHT_STYLE,
    PROPERTY_BORDER_BOTTOM_STYLE, PROPERTY_BORDER_LEFT_STYLE};
constexpr SideProperties kBorderWidths = {PROPERTY_BORDER_TOP_WIDTH, PROPERTY_BORDER_RIGHT_WIDTH,
    PROPERTY_BORDER_BOTTOM_WIDTH, PROPERTY_BORDER_LEFT_WIDTH};
constexpr SideProperties kMargins
    = {PROPERTY_MARGIN_TOP, PROPERTY_MARGIN_RIGHT, PROPERTY_MARGIN_BOTTOM, PROPERTY_MARGIN_LEFT};
constexpr SideProperties kPaddings = {
    PROPERTY_PADDING_TOP, PROPERTY_PADDING_RIGHT, PROPERTY_PADDING_BOTTOM, PROPERTY_PADDING_LEFT};

/// Where the longhands of one shorthand go, and what they are read from.
struct Expansion {
    CssDeclarationList& list;
    CssTokenList& tokens;
    const bool important;
    HtmlFilterContext& context;

    std::int32_t count() const { return tokens.getCount(); }
    const CssToken& at(std::int32_t index) const { return tokens.begin()[index]; }

    HtmlValue* keyword(ZVCSSValue id) const { return context.valueCache->keywordValue(id); }
    HtmlValue* zeroPixels() const { return context.valueCache->lengthValue(0, UNITS_PIXELS); }

    /// Declares a longhand; a null value is none.
    void set(ZVCSSProperty property, HtmlValue* value) const
    {
        list.set(property, value, important, /*edgeMargin=*/false);
    }

    void setSides(const SideProperties& properties, HtmlValue* value) const
    {
        for (const ZVCSSProperty property : properties)
            set(property, value);
    }

    bool startsWithInherit() const { return at(0).kind == CSS_IDENT && isInherit(at(0)); }
};

struct BackgroundSlots {
    HtmlValue* color = nullptr;
    HtmlValue* image = nullptr;
    HtmlValue* repeat = nullptr;
    HtmlValue* attachment = nullptr;
    HtmlValue* position = nullptr;
};

/// Reads the token at index, or from there on a color. False for an error.
bool readBackgroundColor(BackgroundSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    if (slots.color != nullptr)
        return false;
    slots.color = readColor(expansion.tokens, index, expansion.context);
    return slots.color != nullptr;
}

bool readBackgroundWord(BackgroundSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    switch (const ZVCSSValue keyword = keywordOf(expansion.at(index))) {
    case VALUE_BOTTOM:
    case VALUE_CENTER:
    case VALUE_LEFT:
    case VALUE_RIGHT:
    case VALUE_TOP:
        return true;
    case VALUE_FIXED:
    case VALUE_SCROLL:
        slots.attachment = expansion.keyword(keyword);
        return true;
    case VALUE_NO_REPEAT:
    case VALUE_REPEAT:
    case VALUE_REPEAT_X:
    case VALUE_REPEAT_Y:
        slots.repeat = expansion.keyword(keyword);
        return true;
    default:
        // QUIRK(Shorthands.Backgrounds): no other keyword is a color, so "none" and "transparent"
        // void the whole declaration.
        return readBackgroundColor(slots, index, expansion);
    }
}

bool readBackgroundPart(BackgroundSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    const CssToken& token = expansion.at(index);
    switch (token.kind) {
    case CSS_IDENT:
        return readBackgroundWord(slots, index, expansion);
    case CSS_HASH:
    case CSS_FUNCTION:
        return readBackgroundColor(slots, index, expansion);
    case CSS_EMS:
    case CSS_EXS:
    case CSS_LENGTH:
    case CSS_PERCENTAGE:
        // QUIRK(Shorthands.Backgrounds): every position is the origin.
        slots.position = expansion.zeroPixels();
        return true;
    case CSS_URI:
        if (slots.image == nullptr)
            slots.image = stringOf(token, expansion.context);
        return true;
    default:
        return true;
    }
}

void setBackground(const BackgroundSlots& slots, const Expansion& expansion)
{
    expansion.set(PROPERTY_BACKGROUND_COLOR, slots.color);
    expansion.set(PROPERTY_BACKGROUND_IMAGE, slots.image);
    expansion.set(PROPERTY_BACKGROUND_REPEAT, slots.repeat);
    expansion.set(PROPERTY_BACKGROUND_ATTACHMENT, slots.attachment);
    expansion.set(PROPERTY_BACKGROUND_POSITION, slots.position);
}

void expandBackground(const Expansion& expansion)
{
    BackgroundSlots slots;
    for (std::int32_t index = 0; index < expansion.count(); ++index) {
        if (isInherit(expansion.at(index))) {
            HtmlValue* const inherit = expansion.keyword(VALUE_INHERIT);
            setBackground({inherit, inherit, inherit, inherit, inherit}, expansion);
            return;
        }
        if (!readBackgroundPart(slots, index, expansion))
            return;
    }
    if (slots.color == nullptr)
        slots.color = expansion.keyword(VALUE_TRANSPARENT);
    if (slots.image == nullptr)
        slots.image = expansion.keyword(VALUE_NONE);
    if (slots.repeat == nullptr)
        slots.repeat = expansion.keyword(VALUE_REPEAT);
    if (slots.attachment == nullptr)
        slots.attachment = expansion.keyword(VALUE_SCROLL);
    if (slots.position == nullptr)
        slots.position = expansion.zeroPixels();
    setBackground(slots, expansion);
}

struct BorderSlots {
    HtmlValue* color = nullptr;
    HtmlValue* style = nullptr;
    HtmlValue* width = nullptr;
};

/// Reads a word of a border. False when it is no color where only a color is left to be.
bool readBorderWord(BorderSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    switch (const ZVCSSValue keyword = keywordOf(expansion.at(index))) {
    case VALUE_DASHED:
    case VALUE_DOTTED:
    case VALUE_DOUBLE:
    case VALUE_GROOVE:
    case VALUE_HIDDEN:
    case VALUE_INSET:
    case VALUE_NONE:
    case VALUE_OUTSET:
    case VALUE_RIDGE:
    case VALUE_SOLID:
        if (slots.style == nullptr)
            slots.style = expansion.keyword(keyword);
        return true;
    case VALUE_MEDIUM:
    case VALUE_THICK:
    case VALUE_THIN:
        if (slots.width == nullptr)
            slots.width = expansion.keyword(keyword);
        return true;
    default:
        if (slots.color != nullptr)
            return true;
        slots.color = readColor(expansion.tokens, index, expansion.context);
        return slots.color != nullptr;
    }
}

bool readBorderPart(BorderSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    switch (expansion.at(index).kind) {
    case CSS_IDENT:
        return readBorderWord(slots, index, expansion);
    case CSS_HASH:
    case CSS_FUNCTION:
        if (slots.color != nullptr)
            return false;
        // QUIRK(Shorthands.Borders): a function that is no color is none of the errors.
        slots.color = readColor(expansion.tokens, index, expansion.context);
        return true;
    case CSS_EMS:
    case CSS_EXS:
    case CSS_LENGTH:
        if (slots.width == nullptr)
            slots.width = readMeasure(expansion.at(index), expansion.context);
        return true;
    default:
        return true;
    }
}

/// Expands a border for the sides from first up to but not including end.
void expandBorder(std::int32_t first, std::int32_t end, const Expansion& expansion)
{
    BorderSlots slots;
    if (expansion.startsWithInherit())
        slots.color = slots.style = slots.width = expansion.keyword(VALUE_INHERIT);
    for (std::int32_t index = 0; index < expansion.count(); ++index) {
        if (!readBorderPart(slots, index, expansion))
            return;
    }
    if (slots.color == nullptr)
        slots.color = expansion.keyword(VALUE_TRANSPARENT);
    if (slots.width == nullptr)
        slots.width = expansion.keyword(VALUE_MEDIUM);
    for (std::int32_t side = first; side < end; ++side) {
        expansion.set(kBorderColors[side], slots.color);
        // QUIRK(Shorthands.Borders): without a style the one that holds stays.
        expansion.set(kBorderStyles[side], slots.style);
        expansion.set(kBorderWidths[side], slots.width);
    }
}

/// The values of a box in the order they are written in.
struct BoxSlots {
    HtmlValue* values[kSides] = {};
    std::int32_t count = 0;

    void add(HtmlValue* value) { values[count++] = value; }
};

void setBox(const BoxSlots& slots, const SideProperties& properties, const Expansion& expansion)
{
    // Which value each side gets when there are one to four.
    constexpr std::int32_t kValueOfSide[kSides][kSides]
        = {{0, 0, 0, 0}, {0, 1, 0, 1}, {0, 1, 2, 1}, {0, 1, 2, 3}};
    for (std::int32_t side = 0; side < kSides; ++side)
        expansion.set(properties[side], slots.values[kValueOfSide[slots.count - 1][side]]);
}

/// Sets all sides to "inherit" when that is what the value begins with.
bool inheritBox(const SideProperties& properties, const Expansion& expansion)
{
    if (!expansion.startsWithInherit())
        return false;
    expansion.setSides(properties, expansion.keyword(VALUE_INHERIT));
    return true;
}

void expandBorderColor(const Expansion& expansion)
{
    if (inheritBox(kBorderColors, expansion))
        return;
    BoxSlots slots;
    for (std::int32_t index = 0; index < expansion.count(); ++index) {
        if (slots.count == kSides)
            return;
        slots.add(readColor(expansion.tokens, index, expansion.context));
    }
    setBox(slots, kBorderColors, expansion);
}

using ValueReader = HtmlValue* (*)(const CssToken& token, HtmlFilterContext& context);

void expandBox(ValueReader read, const SideProperties& properties, const Expansion& expansion)
{
    if (inheritBox(properties, expansion) || expansion.count() > kSides)
        return;
    BoxSlots slots;
    for (const CssToken& token : expansion.tokens)
        slots.add(read(token, expansion.context));
    setBox(slots, properties, expansion);
}

bool canBeMargin(const CssToken& token)
{
    return isMeasure(token.kind) || token.kind == CSS_NUMBER;
}

HtmlValue* readMargin(const CssToken& token, HtmlFilterContext& context)
{
    if (token.kind != CSS_NUMBER)
        return readMeasure(token, context);
    // QUIRK(Shorthands.Margins): of numbers without a unit only "0", written so, is a length.
    const bool isZero = token.length == 1 && token.text[0] == '0' && !token.isNegative;
    return isZero ? context.valueCache->lengthValue(0, UNITS_PIXELS) : nullptr;
}

void expandMargin(const SideProperties& properties, const Expansion& expansion)
{
    joinSigns(expansion.tokens);
    const bool isReadable
        = std::all_of(expansion.tokens.begin(), expansion.tokens.end(), canBeMargin);
    if (isReadable || expansion.startsWithInherit())
        expandBox(readMargin, properties, expansion);
}

struct FontSlots {
    HtmlValue* style = nullptr;
    HtmlValue* variant = nullptr;
    HtmlValue* weight = nullptr;
    HtmlValue* size = nullptr;
    HtmlValue* lineHeight = nullptr;
    HtmlValue* family = nullptr;
};

void setFont(const FontSlots& slots, const Expansion& expansion)
{
    expansion.set(PROPERTY_FONT_STYLE, slots.style);
    expansion.set(PROPERTY_FONT_VARIANT, slots.variant);
    expansion.set(PROPERTY_FONT_WEIGHT, slots.weight);
    expansion.set(PROPERTY_FONT_SIZE, slots.size);
    expansion.set(PROPERTY_LINE_HEIGHT, slots.lineHeight);
    expansion.set(PROPERTY_FONT_FAMILY, slots.family);
}

/// The slot that a keyword in front of the size fills; null for one that stands elsewhere.
HtmlValue** fontSlotOf(ZVCSSValue keyword, FontSlots& slots)
{
    switch (keyword) {
    case VALUE_100:
    case VALUE_200:
    case VALUE_300:
    case VALUE_400:
    case VALUE_500:
    case VALUE_600:
    case VALUE_700:
    case VALUE_800:
    case VALUE_900:
    case VALUE_BOLD:
    case VALUE_BOLDER:
    case VALUE_LIGHTER:
    case VALUE_NORMAL:
        return &slots.weight;
    case VALUE_ITALIC:
    case VALUE_OBLIQUE:
        return &slots.style;
    case VALUE_SMALL_CAPS:
        return &slots.variant;
    default:
        return nullptr;
    }
}

/// Reads what stands in front of the size and fills what is not there with "normal".
void readFontStart(FontSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    for (; index < expansion.count(); ++index) {
        const ZVCSSValue keyword = keywordOf(expansion.at(index));
        HtmlValue** const slot = fontSlotOf(keyword, slots);
        if (slot == nullptr)
            break;
        *slot = expansion.keyword(keyword);
    }
    for (HtmlValue** slot : {&slots.style, &slots.variant, &slots.weight}) {
        if (*slot == nullptr)
            *slot = expansion.keyword(VALUE_NORMAL);
    }
}

/// Reads the size and a line height behind it, if something is left to be read. False for an error.
bool readFontSizes(FontSlots& slots, std::int32_t& index, const Expansion& expansion)
{
    if (index == expansion.count())
        return true;
    slots.size = readMeasure(expansion.at(index), expansion.context);
    if (slots.size == nullptr)
        return false;
    ++index;
    if (index + 1 >= expansion.count() || expansion.at(index).kind != '/')
        return true;
    const CssToken& lineHeight = expansion.at(index + 1);
    if (!isMeasure(lineHeight.kind) && lineHeight.kind != CSS_NUMBER)
        return false;
    slots.lineHeight = readLineHeight(lineHeight, expansion.context);
    index += 2;
    return true;
}

void expandFont(const Expansion& expansion)
{
    FontSlots slots;
    if (expansion.count() == 1) {
        if (!expansion.startsWithInherit())
            return;
        HtmlValue* const inherit = expansion.keyword(VALUE_INHERIT);
        setFont({inherit, inherit, inherit, inherit, /*lineHeight=*/nullptr, inherit}, expansion);
        return;
    }
    std::int32_t index = 0;
    readFontStart(slots, index, expansion);
    if (!readFontSizes(slots, index, expansion))
        return;
    if (index < expansion.count())
        slots.family = readFontFamily(expansion.at(index), expansion.context);
    setFont(slots, expansion);
}

struct ListStyleSlots {
    HtmlValue* type = nullptr;
    HtmlValue* position = nullptr;
    HtmlValue* image = nullptr;
};

void readListStyleWord(ListStyleSlots& slots, const CssToken& token, const Expansion& expansion)
{
    switch (const ZVCSSValue keyword = keywordOf(token)) {
    case VALUE_ARMENIAN:
    case VALUE_CIRCLE:
    case VALUE_DECIMAL:
    case VALUE_DECIMAL_LEADING_ZERO:
    case VALUE_DISC:
    case VALUE_GEORGIAN:
    case VALUE_LOWER_ALPHA:
    case VALUE_LOWER_GREEK:
    case VALUE_LOWER_LATIN:
    case VALUE_LOWER_ROMAN:
    case VALUE_NONE:
    case VALUE_SQUARE:
    case VALUE_UPPER_ALPHA:
    case VALUE_UPPER_LATIN:
    case VALUE_UPPER_ROMAN:
        slots.type = expansion.keyword(keyword);
        return;
    case VALUE_INSIDE:
    case VALUE_OUTSIDE:
        slots.position = expansion.keyword(keyword);
        return;
    default:
        return;
    }
}

void setListStyle(const ListStyleSlots& slots, const Expansion& expansion)
{
    expansion.set(PROPERTY_LIST_STYLE_TYPE, slots.type);
    expansion.set(PROPERTY_LIST_STYLE_POSITION, slots.position);
    expansion.set(PROPERTY_LIST_STYLE_IMAGE, slots.image);
}

void expandListStyle(const Expansion& expansion)
{
    if (isInherit(expansion.at(0))) {
        HtmlValue* const inherit = expansion.keyword(VALUE_INHERIT);
        setListStyle({inherit, inherit, inherit}, expansion);
        return;
    }
    ListStyleSlots slots;
    const CssToken* image = nullptr;
    for (const CssToken& token : expansion.tokens) {
        if (token.kind == CSS_URI)
            image = &token;
        else if (token.kind == CSS_IDENT)
            readListStyleWord(slots, token, expansion);
    }
    if (slots.type == nullptr)
        slots.type = expansion.keyword(VALUE_DISC);
    if (image != nullptr)
        slots.image = stringOf(*image, expansion.context);
    setListStyle(slots, expansion);
}

} // namespace

void applyShorthand(ZVCSSProperty property, CssDeclarationList& list, CssTokenList& tokens,
    bool important, HtmlFilterContext& context)
{
    const Expansion expansion{list, tokens, important, context};
    switch (property) {
    case PROPERTY_BACKGROUND:
        return expandBackground(expansion);
    case PROPERTY_BORDER:
        return expandBorder(0, kSides, expansion);
    case PROPERTY_BORDER_TOP:
        return expandBorder(0, 1, expansion);
    case PROPERTY_BORDER_RIGHT:
        return expandBorder(1, 2, expansion);
    case PROPERTY_BORDER_BOTTOM:
        return expandBorder(2, 3, expansion);
    case PROPERTY_BORDER_LEFT:
        return expandBorder(3, kSides, expansion);
    case PROPERTY_BORDER_COLOR:
        return expandBorderColor(expansion);
    case PROPERTY_BORDER_STYLE:
        return expandBox(readKeyword, kBorderStyles, expansion);
    case PROPERTY_BORDER_WIDTH:
        return expandBox(readMeasure, kBorderWidths, expansion);
    case PROPERTY_FONT:
        return expandFont(expansion);
    case PROPERTY_LIST_STYLE:
        return expandListStyle(expansion);
    case PROPERTY_MARGIN:
        return expandMargin(kMargins, expansion);
    case PROPERTY_PADDING:
        return expandMargin(kPaddings, expansion);
    default:
        return;
    }
}
