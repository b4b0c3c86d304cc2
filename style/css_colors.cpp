#include "style/css_colors.h"

#include "style/text_lookup.h"
#include "style/value_readers.h"

#include <algorithm>

namespace {

constexpr std::int32_t kComponents = 3;
constexpr double kFullComponent = 255;
constexpr std::int32_t kFullCircle = 360; // degrees
constexpr double kThird = 1.0 / 3.0;

/// The kind of the token at index; that of the end behind the last one.
std::int32_t kindAt(const CssTokenList& tokens, std::int32_t index)
{
    return index < tokens.getCount() ? tokens.begin()[index].kind : CSS_END;
}

void skipToClosing(const CssTokenList& tokens, std::int32_t& index)
{
    while (index < tokens.getCount() && kindAt(tokens, index) != ')')
        ++index;
}

/// A component of a color in red, green and blue, 0 to 255.
double channelOf(const CssToken& token, bool isNegative)
{
    if (isNegative)
        return 0;
    const double number = numberOf(token);
    const double channel = token.kind == CSS_PERCENTAGE ? number / 100 * kFullComponent : number;
    return std::clamp(channel, 0.0, kFullComponent);
}

/// A share of 100.
double shareOf(const CssToken& token, bool isNegative)
{
    return isNegative ? 0 : std::clamp(numberOf(token), 0.0, 100.0);
}

double hueOf(const CssToken& token, bool isNegative)
{
    const double number = numberOf(token);
    return isNegative ? -number : number;
}

/// Reads the components behind the name at index, and the ")".
bool readComponents(const CssTokenList& tokens, std::int32_t& index, bool isHsl, double* out)
{
    std::int32_t wanted = CSS_NUMBER;
    for (std::int32_t component = 0; component < kComponents; ++component) {
        ++index;
        if (component > 0) {
            if (kindAt(tokens, index) != ',')
                return false;
            ++index;
        }
        const bool isNegative = kindAt(tokens, index) == '-';
        if (isNegative)
            ++index;
        const std::int32_t kind = kindAt(tokens, index);
        if (component == 0 && !isHsl && kind == CSS_PERCENTAGE)
            wanted = CSS_PERCENTAGE;
        if (kind != wanted)
            return false;
        const CssToken& number = tokens.begin()[index];
        if (!isHsl) {
            out[component] = channelOf(number, isNegative);
        } else if (component == 0) {
            out[component] = hueOf(number, isNegative);
            wanted = CSS_PERCENTAGE;
        } else {
            out[component] = shareOf(number, isNegative);
        }
    }
    ++index;
    return kindAt(tokens, index) == ')';
}

/// A channel, 0 to 1, for a place x on the circle, whose length is 1.
double channelAt(double m1, double m2, double x)
{
    if (x < 0)
        x += 1;
    else if (x > 1)
        x -= 1;
    if (x < 1.0 / 6.0)
        return m1 + (m2 - m1) * x * 6;
    if (x < 0.5)
        return m2;
    if (x < 2.0 / 3.0)
        return m1 + (m2 - m1) * (2.0 / 3.0 - x) * 6;
    return m1;
}

/// Turns hue, saturation and lightness into red, green and blue, in place.
void channelsOfHsl(double* components)
{
    const std::int32_t degrees = truncateToInt32(components[0]);
    const double h = ((kFullCircle + degrees % kFullCircle) % kFullCircle) / 360.0;
    const double s = components[1] / 100;
    const double l = components[2] / 100;
    const double m2 = l < 0.5 ? l * (1 + s) : l + s - l * s;
    const double m1 = 2 * l - m2;
    components[0] = channelAt(m1, m2, h + kThird) * kFullComponent;
    components[1] = channelAt(m1, m2, h) * kFullComponent;
    components[2] = channelAt(m1, m2, h - kThird) * kFullComponent;
}

std::uint32_t byteOf(double channel) { return static_cast<std::uint32_t>(channel) & 0xFF; }

} // namespace

HtmlValue* parseColorFunction(
    const CssTokenList& tokens, std::int32_t& index, bool& failed, HtmlFilterContext& context)
{
    const CssToken& name = tokens.begin()[index];
    if (equalsName(name.text, name.length, "rgba(")
        || equalsName(name.text, name.length, "hsla(")) {
        skipToClosing(tokens, index);
        return nullptr;
    }
    const bool isHsl = equalsName(name.text, name.length, "hsl(");
    double components[kComponents];
    if ((!isHsl && !equalsName(name.text, name.length, "rgb("))
        || !readComponents(tokens, index, isHsl, components)) {
        failed = true;
        return nullptr;
    }
    if (isHsl)
        channelsOfHsl(components);
    const std::uint32_t color
        = byteOf(components[0]) | byteOf(components[1]) << 8 | byteOf(components[2]) << 16;
    return context.valueCache->colorValue(color);
}
