#include "style/font_names.h"

#include "containers/array_list.h"
#include "containers/failures.h"
#include "filter/filter_internals.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tree/html_value.h"

#include <bit>
#include <memory>
#include <string>

namespace {

/// The text of a font's name. Behind its end it goes on with zeros, which no name holds.
struct FontName {
    const char16_t* units;
    std::uint32_t length;

    std::uint32_t at(std::uint32_t index) const { return index < length ? units[index] : 0; }
    std::uint32_t sideAt(const FontFork& fork) const { return (at(fork.unit) & fork.bit) != 0; }
};

FontName firstName(const char16_t* text, std::uint32_t length)
{
    const char16_t* comma = std::char_traits<char16_t>::find(text, length, u',');
    return {text, comma != nullptr ? static_cast<std::uint32_t>(comma - text) : length};
}

FontName nameOf(std::int32_t font, const HtmlFilterContext& context)
{
    const zorvan::WString& name = *context.fontNames->get(font);
    return {name.data, static_cast<std::uint32_t>(name.length)};
}

/// The index of the first unit in which two names differ; past both ends when they are equal.
std::uint32_t firstDifference(const FontName& a, const FontName& b)
{
    std::uint32_t unit = 0;
    while (unit < a.length && unit < b.length && a.units[unit] == b.units[unit])
        ++unit;
    return unit == a.length && unit == b.length ? unit + 1 : unit;
}

/// The font that shares the longest beginning with a name. The tree must not be empty.
std::int32_t nearestFont(const FontName& name, const FontTree& tree)
{
    std::int32_t place = tree.top;
    while (place >= 0) {
        const FontFork& fork = tree.forks.begin()[place];
        // All below this fork share more units than the name has, so any of them is as near. This
        // bounds the way by the length of the name, however many fonts a document has.
        if (fork.unit > name.length)
            return fork.font;
        place = fork.sides[name.sideAt(fork)];
    }
    return ~place;
}

/// Enters a font of fontNames under a name that the tree doesn't hold. nearest: as nearestFont
/// says.
void addToTree(std::int32_t font, const FontName& name, const FontName& nearest, FontTree& tree)
{
    const std::uint32_t unit = firstDifference(name, nearest);
    const std::uint32_t bit = std::bit_floor(name.at(unit) ^ nearest.at(unit));
    FontFork added{unit, bit, font, {~font, ~font}};

    FontFork* above = nullptr;
    std::int32_t place = tree.top;
    while (place >= 0) {
        FontFork& fork = tree.forks.begin()[place];
        if (fork.unit > unit || (fork.unit == unit && fork.bit < bit))
            break;
        above = &fork;
        place = fork.sides[name.sideAt(fork)];
    }
    const std::uint32_t side = name.sideAt(added);
    added.sides[1 - side] = place;
    const std::ptrdiff_t aboveIndex = above != nullptr ? above - tree.forks.begin() : -1;
    tree.forks.add(added);
    const std::int32_t addedIndex = tree.forks.getCount() - 1;
    if (aboveIndex < 0)
        tree.top = addedIndex;
    else {
        FontFork& fork = tree.forks.begin()[aboveIndex];
        fork.sides[name.sideAt(fork)] = addedIndex;
    }
}

/// Takes in what fontNames has got since the last look.
void updateTree(FontTree& tree, const HtmlFilterContext& context)
{
    while (tree.fontCount < context.fontNames->getCount()) {
        const std::int32_t font = tree.fontCount;
        const FontName name = nameOf(font, context);
        if (font == 0) {
            tree.top = ~font;
        } else {
            const FontName nearest = nameOf(nearestFont(name, tree), context);
            if (firstDifference(name, nearest) <= name.length)
                addToTree(font, name, nearest, tree);
        }
        ++tree.fontCount;
    }
}

std::int32_t lookUp(const FontName& name, HtmlFilterContext& context)
{
    FontTree& tree = context.internals->fontTree;
    updateTree(tree, context);
    if (tree.fontCount == 0)
        return kNoFont;
    const std::int32_t font = nearestFont(name, tree);
    const FontName found = nameOf(font, context);
    const bool isSame = found.length == name.length
        && std::char_traits<char16_t>::compare(found.units, name.units, name.length) == 0;
    return isSame ? font : kNoFont;
}

/// Where the answer for a value is kept. A rule gives one value to all elements that it means, and
/// its name may be as long as the sheet.
KnownFamily& knownFamily(const HtmlWStringValue& family, HtmlFilterContext& context)
{
    auto& known = context.internals->fontTree.known;
    constexpr std::uintptr_t kAlignment = 16;
    return known[reinterpret_cast<std::uintptr_t>(&family) / kAlignment % known.size()];
}

} // namespace

std::int32_t findFont(const HtmlWStringValue& family, HtmlFilterContext& context)
{
    KnownFamily& known = knownFamily(family, context);
    if (known.family == &family)
        return known.font;
    const std::int32_t font = findFont(family.text, family.length, context);
    if (font != kNoFont)
        known = {&family, font};
    return font;
}

std::int32_t findOrAddFont(const HtmlWStringValue& family, HtmlFilterContext& context)
{
    const std::int32_t found = findFont(family, context);
    return found != kNoFont ? found : findOrAddFont(family.text, family.length, context);
}

std::int32_t findFont(const char16_t* text, std::uint32_t length, HtmlFilterContext& context)
{
    return lookUp(firstName(text, length), context);
}

std::int32_t findOrAddFont(const char16_t* text, std::uint32_t length, HtmlFilterContext& context)
{
    const FontName name = firstName(text, length);
    const std::int32_t known = lookUp(name, context);
    if (known != kNoFont)
        return known;
    std::unique_ptr<zorvan::WString> added(
        zorvan::newObject<zorvan::WString>(name.units, static_cast<std::int32_t>(name.length)));
    if (added == nullptr)
        zorvan::throwOutOfStorage();
    context.fontNames->add(added.get());
    added.release();
    return context.fontNames->getCount() - 1;
}
