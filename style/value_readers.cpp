#include "style/value_readers.h"

#include "containers/storage.h"
#include "style/color_text.h"
#include "style/css_colors.h"
#include "style/text_lookup.h"
#include "support/length.h"
#include "support/text_numbers.h"

#include <algorithm>
#include <limits>

namespace {

bool isNumeric(std::int32_t kind) { return kind >= CSS_EMS && kind <= CSS_NUMBER; }

void putSignInFront(CssToken& token)
{
    if (!token.isNegative) {
        token.isNegative = true;
        return;
    }
    // A number behind two signs is none, so nothing but the signs is left of it.
    token.text = "-";
    token.length = 1;
}

std::int32_t readableLength(const CssToken& token)
{
    constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(token.length, kMost));
}

/// Leaves out alone when the text is no length.
bool parseLength(const CssToken& token, zorvan::Length& out)
{
    float number = 0;
    ZVLinearUnits units = UNITS_NONE;
    if (!zorvan::lengthFromText(token.text, readableLength(token), &number, &units))
        return false;
    out.setValue(token.isNegative ? -number : number, units);
    return true;
}

/// 0 pixels when the text is no length.
zorvan::Length lengthOf(const CssToken& token)
{
    zorvan::Length length;
    parseLength(token, length);
    return length;
}

HtmlValue* lengthValueOf(const CssToken& token, HtmlFilterContext& context)
{
    const zorvan::Length length = lengthOf(token);
    return context.valueCache->lengthValue(length.value, length.units);
}

bool isNamedFontSize(ZVCSSValue keyword)
{
    switch (keyword) {
    case VALUE_LARGE:
    case VALUE_LARGER:
    case VALUE_MEDIUM:
    case VALUE_SMALL:
    case VALUE_SMALLER:
    case VALUE_X_LARGE:
    case VALUE_X_SMALL:
    case VALUE_XX_LARGE:
    case VALUE_XX_SMALL:
        return true;
    default:
        return false;
    }
}

/// The font that stands for a generic family; null for any other name.
const char16_t* fontOfFamily(const char* name, std::uint32_t length)
{
    if (equalsName(name, length, "serif"))
        return u"Times New Roman";
    if (equalsName(name, length, "sans-serif"))
        return u"Arial";
    if (equalsName(name, length, "monospace"))
        return u"Courier New";
    if (equalsName(name, length, "cursive"))
        return u"Comic Sans MS";
    if (equalsName(name, length, "fantasy"))
        return u"Impact";
    return nullptr;
}

bool isQuoted(const CssToken& token)
{
    if (token.length < 2)
        return false;
    const char first = token.text[0];
    return (first == '"' || first == '\'') && token.text[token.length - 1] == first;
}

HtmlValue* stringOfText(const char* text, std::uint32_t length, HtmlFilterContext& context)
{
    constexpr std::uint32_t kShort = 128;
    char16_t shortText[kShort];
    zorvan::StoragePointer<char16_t> longText;
    char16_t* units = shortText;
    if (length > kShort) {
        longText = zorvan::allocateElements<char16_t>(length);
        units = longText.get();
    }
    std::transform(text, text + length, units,
        [](char character) { return static_cast<char16_t>(static_cast<std::uint8_t>(character)); });
    return context.valueCache->stringValue(units, length);
}

} // namespace

void joinSigns(CssTokenList& tokens)
{
    CssToken* const first = tokens.begin();
    CssToken* kept = first;
    for (const CssToken& token : tokens) {
        CssToken joined = token;
        if (isNumeric(token.kind)) {
            for (; kept != first && kept[-1].kind == '-'; --kept)
                putSignInFront(joined);
        }
        *kept++ = joined;
    }
    const auto count = static_cast<std::int32_t>(kept - first);
    while (tokens.getCount() > count)
        tokens.remove(tokens.getCount() - 1);
}

HtmlValue* readKeyword(const CssToken& token, HtmlFilterContext& context)
{
    const ZVCSSValue keyword = keywordOf(token);
    return keyword != VALUE_UNKNOWN ? context.valueCache->keywordValue(keyword) : nullptr;
}

bool isMeasure(std::int32_t kind)
{
    switch (kind) {
    case CSS_IDENT:
    case CSS_EMS:
    case CSS_EXS:
    case CSS_LENGTH:
    case CSS_PERCENTAGE:
        return true;
    default:
        return false;
    }
}

HtmlValue* readMeasure(const CssToken& token, HtmlFilterContext& context)
{
    switch (token.kind) {
    case CSS_IDENT:
        return readKeyword(token, context);
    case CSS_EMS:
    case CSS_EXS:
    case CSS_LENGTH:
        return lengthValueOf(token, context);
    case CSS_PERCENTAGE:
        return context.valueCache->percentValue(lengthOf(token).value);
    default:
        return nullptr;
    }
}

HtmlValue* readWidth(const CssToken& token, HtmlFilterContext& context)
{
    return token.kind == CSS_PERCENTAGE ? nullptr : readMeasure(token, context);
}

HtmlValue* readSize(const CssToken& token, HtmlFilterContext& context)
{
    return token.kind == CSS_NUMBER ? lengthValueOf(token, context) : readMeasure(token, context);
}

HtmlValue* readLineHeight(const CssToken& token, HtmlFilterContext& context)
{
    // QUIRK(ValueReaders.LineHeightNumbers): the fraction is lost, 1.5 is 1.
    if (token.kind == CSS_NUMBER)
        return context.valueCache->numberValue(truncateToInt32(numberOf(token)));
    return readMeasure(token, context);
}

HtmlValue* readFontSize(const CssToken& token, HtmlFilterContext& context)
{
    // QUIRK(ValueReaders.FontSizes): only names of sizes count, not even "inherit" does.
    if (const ZVCSSValue keyword = keywordOf(token); keyword != VALUE_UNKNOWN)
        return isNamedFontSize(keyword) ? context.valueCache->keywordValue(keyword) : nullptr;
    switch (token.kind) {
    case CSS_EMS:
    case CSS_EXS:
    case CSS_LENGTH: {
        zorvan::Length length;
        if (!parseLength(token, length))
            return nullptr;
        return context.valueCache->lengthValue(length.value, length.units);
    }
    case CSS_PERCENTAGE:
        return context.valueCache->percentValue(lengthOf(token).value);
    default:
        return nullptr;
    }
}

HtmlValue* readFontFamily(const CssToken& token, HtmlFilterContext& context)
{
    const bool quoted = isQuoted(token);
    const char* const name = quoted ? token.text + 1 : token.text;
    const std::uint32_t length = quoted ? token.length - 2 : token.length;
    if (const char16_t* const font = fontOfFamily(name, length))
        return context.valueCache->stringValue(font);
    return stringOfText(name, length, context);
}

HtmlValue* readColor(CssTokenList& tokens, std::int32_t& index, HtmlFilterContext& context)
{
    const CssToken& token = tokens.begin()[index];
    switch (token.kind) {
    case CSS_IDENT:
    case CSS_HASH: {
        std::uint32_t color = 0;
        if (!parseColor(token.text, token.length, /*lenient=*/false, color))
            return nullptr;
        return context.valueCache->colorValue(color);
    }
    case CSS_FUNCTION: {
        bool failed = false;
        return parseColorFunction(tokens, index, failed, context);
    }
    default:
        return nullptr;
    }
}

HtmlValue* stringOf(const CssToken& token, HtmlFilterContext& context)
{
    return stringOfText(token.text, token.length, context);
}

double numberOf(const CssToken& token)
{
    std::int32_t end = 0;
    const double number = zorvan::numberFromText(token.text, readableLength(token), &end);
    return token.isNegative && end != 0 ? -number : number;
}
