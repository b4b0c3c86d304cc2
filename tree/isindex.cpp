#include "tree/in_body.h"

#include "support/wstring.h"
#include "tree/element_attributes.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"
#include "tree/insertion_modes.h"
#include "tree/tree_construction.h"

#include <string_view>

namespace {

constexpr std::u16string_view kFieldText = u"(input field)";

/// Makes a text node that stays open.
void PushText(std::u16string_view text, HtmlFilterContext& context)
{
    context.pendingText->setValue(text.data(), static_cast<std::int32_t>(text.size()));
    CreateAppendPushText(context);
}

} // namespace

int InsertIsindex(HtmlFilterContext& context)
{
    FlagParseError(context);
    if (context.formElement != nullptr)
        return ANSWER_IGNORED;
    // Only the prompt is of use, and none of the elements below may have the tag's attributes.
    HtmlTagNodeData isindex(ELEMENT_ISINDEX);
    ApplyElementAttributes(&isindex, context);

    ActAsBodyStartTag(ELEMENT_FORM, context);
    ActAsBodyStartTag(ELEMENT_HR, context);
    ActAsBodyStartTag(ELEMENT_LABEL, context);
    // QUIRK(Isindex.TextNodesStayOpen): until the label ends, so that the field hangs under the
    // prompt's text.
    if (const auto* prompt = HtmlWStringValue::from(isindex.findAttribute(ATTRIBUTE_PROMPT)))
        PushText({prompt->text, prompt->length}, context);
    ActAsBodyStartTag(ELEMENT_INPUT, context);
    PushText(kFieldText, context);
    ActAsBodyEndTag(ELEMENT_LABEL, context);
    ActAsBodyStartTag(ELEMENT_HR, context);
    ActAsBodyEndTag(ELEMENT_FORM, context);
    return ANSWER_USED;
}
