#pragma once

#include "filter/html_filter_context.h"
#include "scanner/number_reader.h"

#include <cstdint>

/// A comment or declaration: "<" consumed, "!" next. Leaves a null token. limit: in units, cut to
/// 16 bits. Answers the unit that was peeked at last, 0xFFFF where the reading can't go on.
std::uint16_t scanDeclaration(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context);

/// A processing instruction: "<" consumed, "?" next.
void scanInstruction(
    char16_t* buffer, std::uint16_t& position, std::uint32_t limit, HtmlFilterContext& context);

/// 1 if "[if" or "[endif" stands within the next 8 units, else 0.
std::uint32_t isConditional(HtmlFilterContext& context);
