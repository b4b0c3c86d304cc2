#pragma once

#include "filter/html_filter_context.h"
#include "support/css_names.h"
#include "support/html_names.h"

#include <cstdint>
#include <span>

class HtmlTagNodeData;
class StyleSheet;

// What becomes of one attribute: what most elements do with theirs. What only a few do stands in
// border_attributes.h, font_sizes.h, image_source.h and with the table of all elements.

/// The known attributes that a tag has a value for.
class AttributeSet {
public:
    /// Those of the tag just scanned.
    explicit AttributeSet(const HtmlFilterContext& context)
    {
        for (std::uint32_t index = 0; index < context.tagAttributeCount; ++index) {
            const TagAttribute& pair = context.tagAttributes[index];
            if (pair.position != 0)
                words_[pair.attribute / 64] |= std::uint64_t{1} << (pair.attribute % 64);
        }
    }

    bool isEmpty() const { return (words_[0] | words_[1] | words_[2] | words_[3]) == 0; }

    bool contains(ZVHTMLAttribute id) const { return (words_[id / 64] >> (id % 64) & 1) != 0; }

private:
    std::uint64_t words_[4] = {};
};

/// What to do with an attribute that the tag has.
struct AttributeRule {
    using Handler
        = void (*)(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

    ZVHTMLAttribute id;
    Handler apply;
    ZVCSSProperty property = PROPERTY_NONE; ///< what the value is declared for; 0: for nothing
    ZVCSSProperty secondProperty = PROPERTY_NONE; ///< as property
};

/// Applies the rules of those attributes that the tag has, in the order of the rules.
void ApplyRules(HtmlTagNodeData& payload, std::span<const AttributeRule> rules,
    const AttributeSet& present, HtmlFilterContext& context);

/// The value of an attribute of the tag just scanned, good until the next one is read; null for an
/// attribute without a value and when something has failed.
const char16_t* ReadAttribute(ZVHTMLAttribute id, HtmlFilterContext& context);

/// The buffer for attribute values, kAttributeValueCapacity units, made when the document first
/// needs it; null, with STATUS_OUT_OF_MEMORY set, without memory.
char16_t* AttributeBuffer(HtmlFilterContext& context);

/// The list that a payload declares into, made when it has none yet; null for a payload that keeps
/// no declarations: one that isn't the element being made, and any in a tree without a style sheet.
CssDeclarationList* OwnDeclarations(HtmlTagNodeData& payload, HtmlFilterContext& context);

/// Gives an element a list, unless it has one; the sheet keeps it. Null, with STATUS_OUT_OF_MEMORY
/// set, without memory.
CssDeclarationList* EnsureDeclarations(
    HtmlTagNodeData& payload, StyleSheet& sheet, HtmlFilterContext& context);

/// Adds a declaration, for which a payload without a list has no use. A null value is none.
void Declare(
    HtmlTagNodeData& payload, ZVCSSProperty property, HtmlValue* value, HtmlFilterContext& context);

/// Keeps an attribute and declares its value for the rule's properties. A null value is none.
void KeepValue(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlValue* value,
    HtmlFilterContext& context);

/// Keeps an enumerator and declares a keyword for the rule's property. 0 is no enumerator.
void KeepEnum(HtmlTagNodeData& payload, const AttributeRule& rule, std::uint32_t enumerator,
    ZVCSSValue keyword, HtmlFilterContext& context);

// The handlers. Where a text has no meaning, nothing is kept.

/// A text, which may be empty.
void KeepText(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

void KeepNumber(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// The number 1, whatever the text.
void KeepMark(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// A number of pixels.
void KeepLength(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// A number of pixels, or a percentage, which is kept as a negative number of pixels.
void KeepMeasure(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

void KeepColor(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// The enumerators of alignments; keywords are declared.
void KeepHorizAlign(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);
void KeepVertAlign(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// As KeepMeasure, for width or height in the attribute and in the property.
void SetWidthAttribute(HtmlTagNodeData& payload, HtmlFilterContext& context);
void SetHeightAttribute(HtmlTagNodeData& payload, HtmlFilterContext& context);
void KeepWidth(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);
void KeepHeight(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);

/// What a mapper of tree/enum_from_string.h answers for the text, without a declaration.
template <std::uint32_t (*Mapper)(const char16_t*)>
void KeepEnumerator(HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context)
{
    KeepEnum(payload, rule, Mapper(ReadAttribute(rule.id, context)), VALUE_UNKNOWN, context);
}
