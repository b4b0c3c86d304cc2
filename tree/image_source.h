#pragma once

#include "tree/attribute_rules.h"

/// src of an image. Kept, together with its place in the stream, when it can be that of an image:
/// by its scheme, or by what stands behind its last dot.
void KeepImageSource(
    HtmlTagNodeData& payload, const AttributeRule& rule, HtmlFilterContext& context);
