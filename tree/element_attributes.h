#pragma once

#include "filter/html_filter_context.h"

#include <cstdint>

/// Units of the buffer that attribute values are read into.
constexpr std::uint32_t kAttributeValueCapacity = 53'392;

/// Turns the attributes of the tag just scanned into attributes and declarations of a payload.
void ApplyElementAttributes(HtmlGenericNodeData* payload, HtmlFilterContext& context);

/// The text of an attribute of the tag just scanned: 1, or 0 and an empty text, for an attribute
/// without a value and while statusFlags is not 0.
int GetRawAttributeValue(std::uint32_t attributeId, char16_t* buffer, std::uint32_t limit,
    HtmlFilterContext& context, void* reserved);
