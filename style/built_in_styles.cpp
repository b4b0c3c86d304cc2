#include "style/built_in_styles.h"

#include "containers/failures.h"
#include "style/css_declaration_list.h"
#include "support/html_names.h"
#include "support/process_heap.h"

#include <algorithm>
#include <array>

namespace {

using Value = TableValue;

constexpr Value kTimes = Value::textOf(u"Times New Roman");
constexpr Value kCourier = Value::textOf(u"Courier New");
constexpr Value kArial = Value::textOf(u"Arial");
constexpr Value kBold = Value::keywordOf(VALUE_BOLD);
constexpr Value kItalic = Value::keywordOf(VALUE_ITALIC);
constexpr Value kNormal = Value::keywordOf(VALUE_NORMAL);
constexpr Value kSmall = Value::keywordOf(VALUE_SMALL);

constexpr BuiltInDeclaration kAddress[] = {
    {PROPERTY_FONT_STYLE, kItalic},
    {PROPERTY_MARGIN_LEFT, Value::pixels(-36)},
    {PROPERTY_FONT_FAMILY, kTimes},
};
constexpr BuiltInDeclaration kStrong[] = {{PROPERTY_FONT_WEIGHT, kBold}};
constexpr BuiltInDeclaration kBig[] = {{PROPERTY_FONT_SIZE, Value::keywordOf(VALUE_LARGE)}};
constexpr BuiltInDeclaration kBlockquote[] = {
    {PROPERTY_MARGIN_LEFT, Value::pixels(40)},
    {PROPERTY_MARGIN_RIGHT, Value::pixels(40)},
};
constexpr BuiltInDeclaration kCaption[] = {
    {PROPERTY_FONT_SIZE, kSmall},
    {PROPERTY_FONT_WEIGHT, kBold},
    {PROPERTY_FONT_FAMILY, kArial},
};
constexpr BuiltInDeclaration kCenter[] = {{PROPERTY_TEXT_ALIGN, Value::keywordOf(VALUE_CENTER)}};
constexpr BuiltInDeclaration kCite[] = {
    {PROPERTY_FONT_SIZE, kSmall},
    {PROPERTY_FONT_FAMILY, kTimes},
    {PROPERTY_FONT_STYLE, kItalic},
};
constexpr BuiltInDeclaration kCode[] = {
    {PROPERTY_FONT_SIZE, Value::keywordOf(VALUE_X_SMALL)},
    {PROPERTY_FONT_FAMILY, kCourier},
};
constexpr BuiltInDeclaration kList[] = {{PROPERTY_MARGIN_LEFT, Value::pixels(36)}};
constexpr BuiltInDeclaration kStrike[]
    = {{PROPERTY_TEXT_DECORATION, Value::keywordOf(VALUE_LINE_THROUGH)}};
constexpr BuiltInDeclaration kEmphasis[] = {{PROPERTY_FONT_STYLE, kItalic}};
constexpr BuiltInDeclaration kUnderline[]
    = {{PROPERTY_TEXT_DECORATION, Value::keywordOf(VALUE_UNDERLINE)}};
constexpr BuiltInDeclaration kPreformatted[] = {
    {PROPERTY_FONT_SIZE, kSmall},
    {PROPERTY_FONT_WEIGHT, kNormal},
    {PROPERTY_TEXT_DECORATION, Value::keywordOf(VALUE_NONE)},
    {PROPERTY_VERTICAL_ALIGN, Value::keywordOf(VALUE_BASELINE)},
    {PROPERTY_FONT_STYLE, kNormal},
    {PROPERTY_FONT_FAMILY, kCourier},
};
constexpr BuiltInDeclaration kHtml[] = {
    {PROPERTY_FONT_SIZE, Value::keywordOf(VALUE_MEDIUM)},
    {PROPERTY_FONT_FAMILY, kTimes},
    {PROPERTY_TEXT_ALIGN, Value::keywordOf(VALUE_LEFT)},
    {PROPERTY_MARGIN_TOP, Value::pixels(8)},
    {PROPERTY_MARGIN_RIGHT, Value::pixels(8)},
    {PROPERTY_MARGIN_BOTTOM, Value::pixels(8)},
    {PROPERTY_MARGIN_LEFT, Value::pixels(8)},
};
constexpr BuiltInDeclaration kParagraph[] = {
    {PROPERTY_MARGIN_TOP, Value::pixels(16), /*edgeMargin=*/true},
    {PROPERTY_MARGIN_BOTTOM, Value::pixels(16), /*edgeMargin=*/true},
};
constexpr BuiltInDeclaration kSmallText[]
    = {{PROPERTY_FONT_SIZE, Value::keywordOf(VALUE_XX_SMALL)}};
constexpr BuiltInDeclaration kSubscript[]
    = {{PROPERTY_VERTICAL_ALIGN, Value::keywordOf(VALUE_SUB)}};
constexpr BuiltInDeclaration kSuperscript[]
    = {{PROPERTY_VERTICAL_ALIGN, Value::keywordOf(VALUE_SUPER)}};

using Heading = std::array<BuiltInDeclaration, 4>;

constexpr Heading heading(float margin, Value fontSize)
{
    return {{
        {PROPERTY_MARGIN_TOP, Value::ems(margin)},
        {PROPERTY_MARGIN_BOTTOM, Value::ems(margin)},
        {PROPERTY_FONT_SIZE, fontSize},
        {PROPERTY_FONT_WEIGHT, kBold},
    }};
}

constexpr Heading kHeadings[] = {
    heading(0.67F, Value::ems(2)),
    heading(0.83F, Value::keywordOf(VALUE_LARGE)),
    heading(1, Value::keywordOf(VALUE_MEDIUM)),
    heading(1.33F, kSmall),
    heading(1.67F, Value::keywordOf(VALUE_X_SMALL)),
    heading(2.33F, Value::keywordOf(VALUE_XX_SMALL)),
};

struct BuiltInStyle {
    ZVHTMLElement element;
    std::span<const BuiltInDeclaration> declarations;
};

constexpr BuiltInStyle kBuiltInStyles[] = {
    {ELEMENT_ADDRESS, kAddress},
    {ELEMENT_B, kStrong},
    {ELEMENT_BIG, kBig},
    {ELEMENT_BLOCKQUOTE, kBlockquote},
    {ELEMENT_CAPTION, kCaption},
    {ELEMENT_CENTER, kCenter},
    {ELEMENT_CITE, kCite},
    {ELEMENT_CODE, kCode},
    {ELEMENT_DD, kList},
    {ELEMENT_DEL, kStrike},
    {ELEMENT_DFN, kCite},
    {ELEMENT_EM, kEmphasis},
    {ELEMENT_H1, kHeadings[0]},
    {ELEMENT_H2, kHeadings[1]},
    {ELEMENT_H3, kHeadings[2]},
    {ELEMENT_H4, kHeadings[3]},
    {ELEMENT_H5, kHeadings[4]},
    {ELEMENT_H6, kHeadings[5]},
    {ELEMENT_HTML, kHtml},
    {ELEMENT_I, kEmphasis},
    {ELEMENT_INS, kUnderline},
    {ELEMENT_KBD, kCode},
    {ELEMENT_LISTING, kPreformatted},
    {ELEMENT_MENU, kList},
    {ELEMENT_OL, kList},
    {ELEMENT_P, kParagraph},
    {ELEMENT_PLAINTEXT, kPreformatted},
    {ELEMENT_PRE, kPreformatted},
    {ELEMENT_S, kStrike},
    {ELEMENT_SAMP, kCode},
    {ELEMENT_SMALL, kSmallText},
    {ELEMENT_STRIKE, kStrike},
    {ELEMENT_STRONG, kStrong},
    {ELEMENT_SUB, kSubscript},
    {ELEMENT_SUP, kSuperscript},
    {ELEMENT_UNNAMED_116, kSuperscript},
    {ELEMENT_TH, kStrong},
    {ELEMENT_TT, kCode},
    {ELEMENT_U, kUnderline},
    {ELEMENT_UL, kList},
    {ELEMENT_VAR, kEmphasis},
    {ELEMENT_XMP, kPreformatted},
};

constexpr std::size_t kElementCount = ELEMENT_XMP + 1;
constexpr std::uint8_t kNoStyle = 0xFF;

/// For each element its place in kBuiltInStyles, which is asked for once per element of a document.
constexpr auto kStyleOfElement = [] {
    std::array<std::uint8_t, kElementCount> places{};
    places.fill(kNoStyle);
    std::uint8_t place = 0;
    for (const BuiltInStyle& style : kBuiltInStyles)
        places[style.element] = place++;
    return places;
}();

constexpr auto kIsRelative = [] {
    std::array<bool, kElementCount> relative{};
    for (const BuiltInStyle& style : kBuiltInStyles) {
        relative[style.element] = std::ranges::any_of(style.declarations,
            [](const BuiltInDeclaration& each) { return each.value.kind == TableValue::Kind::Em; });
    }
    return relative;
}();

} // namespace

std::span<const BuiltInDeclaration> builtInStyleOf(std::uint32_t elementId)
{
    if (elementId >= kElementCount || kStyleOfElement[elementId] == kNoStyle)
        return {};
    return kBuiltInStyles[kStyleOfElement[elementId]].declarations;
}

bool hasRelativeBuiltInStyle(std::uint32_t elementId)
{
    return elementId < kElementCount && kIsRelative[elementId];
}

std::unique_ptr<CssDeclarationList> makeBuiltInDeclarations(
    std::uint32_t elementId, ValueCache& values)
{
    const std::span<const BuiltInDeclaration> style = builtInStyleOf(elementId);
    if (style.empty())
        return nullptr;
    std::unique_ptr<CssDeclarationList> list(zorvan::newObject<CssDeclarationList>(&values));
    if (list == nullptr)
        zorvan::throwOutOfStorage();
    for (const BuiltInDeclaration& each : style) {
        HtmlValue* const value = makeValue(each.value, values);
        // All elements of this name share the list, so it is whole or not there.
        if (value == nullptr)
            zorvan::throwOutOfStorage();
        list->set(each.property, value, /*important=*/false, each.edgeMargin);
    }
    return list;
}
