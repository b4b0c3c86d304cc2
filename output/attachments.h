#pragma once

#include "filter/html_filter_context.h"
#include "output/attachment_table.h"

class HtmlWStringValue;

/// The attachment that a link's address means: its content identifier is the address, or its file
/// name ends in it. Marks it as used. The first of several wins; null when there is none, and
/// always without a table of attachments.
const AttachmentRecord* useLinkedAttachment(
    const HtmlWStringValue& address, HtmlFilterContext& context);
