#include "input/charset.h"

#include "containers/left_child_right_sib_tree.h"
#include "support/html_names.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

/// Units of a tag in which a declaration is looked for.
constexpr std::uint32_t kSearchedUnits = 53'392;
constexpr std::uint32_t kKeptWordLength = 100;

constexpr std::u16string_view kWordDelimiters = u"; =";
constexpr std::u16string_view kNameDelimiters = u"; =\"'";

bool isOneOf(char16_t unit, std::u16string_view units)
{
    return units.find(unit) != std::u16string_view::npos;
}

char16_t lowerCase(char16_t unit)
{
    return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

/// key: in lower case.
bool equalsIgnoringCase(const char16_t* text, std::u16string_view key)
{
    for (const char16_t unit : key) {
        if (lowerCase(*text++) != unit)
            return false;
    }
    return *text == 0;
}

/// A word of the text of a tag, zero-terminated, cut when longer.
struct Word {
    char16_t text[kKeptWordLength + 1];

    bool isEmpty() const { return text[0] == 0; }
};

/// Reads words one after the other.
class WordReader {
public:
    explicit WordReader(const char16_t* text)
        : text_(text)
    {
    }

    /// The next word, empty at the end of the text.
    Word next(std::u16string_view delimiters)
    {
        while (!atEnd() && isOneOf(text_[position_], delimiters))
            ++position_;
        Word word;
        std::uint32_t length = 0;
        for (; !atEnd() && !isOneOf(text_[position_], delimiters); ++position_) {
            if (length < kKeptWordLength)
                word.text[length++] = text_[position_];
        }
        word.text[length] = 0;
        return word;
    }

private:
    bool atEnd() const { return position_ >= kSearchedUnits || text_[position_] == 0; }

    const char16_t* text_;
    std::uint32_t position_ = 0;
};

/// What can be searched of the text, in tokenBuffer.
const char16_t* copyToTokenBuffer(const char16_t* text, HtmlFilterContext& context)
{
    std::uint32_t length = 0;
    while (length < kSearchedUnits && text[length] != 0)
        ++length;
    std::memmove(context.tokenBuffer, text, length * sizeof(char16_t));
    context.tokenBuffer[length] = 0;
    return context.tokenBuffer;
}

/// The text of a string attribute, null when the element has none.
const char16_t* stringAttribute(const HtmlTagNodeData& element, ZVHTMLAttribute id)
{
    const HtmlWStringValue* value = HtmlWStringValue::from(element.findAttribute(id));
    return value != nullptr ? value->text : nullptr;
}

/// The code that a meta element declares, 0 if none.
std::uint16_t declaredCharSet(const HtmlTagNodeData& element, HtmlFilterContext& context)
{
    const char16_t* httpEquiv = stringAttribute(element, ATTRIBUTE_HTTP_EQUIV);
    if (httpEquiv != nullptr) {
        // QUIRK(CharSetMeta.OtherHttpEquivEndsTheMatter): a charset attribute beside it is not
        // seen.
        const char16_t* content = stringAttribute(element, ATTRIBUTE_CONTENT);
        if (content == nullptr || !equalsIgnoringCase(httpEquiv, u"content-type"))
            return 0;
        return charSetFromMeta(content, context);
    }
    const char16_t* charSet = stringAttribute(element, ATTRIBUTE_CHARSET);
    return charSet != nullptr ? charSetCodeFromName(charSet, context) : 0;
}

} // namespace

std::uint16_t charSetFromMeta(const char16_t* text, HtmlFilterContext& context)
{
    // QUIRK(CharSetMeta.AttributesPlayNoPart): any word "charset" of the tag counts, and ">"
    // belongs to the name in front of it.
    WordReader words(copyToTokenBuffer(text, context));
    for (Word word = words.next(kWordDelimiters); !word.isEmpty();
         word = words.next(kWordDelimiters)) {
        if (!equalsIgnoringCase(word.text, u"charset"))
            continue;
        const Word name = words.next(kNameDelimiters);
        return name.isEmpty() ? 0 : charSetCodeFromName(name.text, context);
    }
    return 0;
}

void metaElementCharSet(const HtmlTreeNode& meta, HtmlFilterContext& context)
{
    const auto* element = dynamic_cast<const HtmlTagNodeData*>(meta.data);
    if (element == nullptr)
        return;
    const std::uint16_t code = declaredCharSet(*element, context);
    if (code == 0)
        return;
    const std::uint32_t forced = context.forcedCharSetId;
    const bool overruled = forced != 0 && charSetIdFromCode(code) != forced;
    context.metaCharSet = overruled ? charSetCodeFromId(context.requestedCharSetId) : code;
}
