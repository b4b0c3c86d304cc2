#pragma once

#include "filter/html_filter_context.h"
#include "tree/element_sets.h"

#include <cstdint>

namespace zorvan {
class WString;
}

/// Elements that stand in the flow of text: white space between them and text counts.
constexpr ElementSet kInlineElements{ELEMENT_A, ELEMENT_ABBR, ELEMENT_ACRONYM, ELEMENT_B,
    ELEMENT_BDO, ELEMENT_BIG, ELEMENT_BR, ELEMENT_BUTTON, ELEMENT_CITE, ELEMENT_CODE, ELEMENT_DFN,
    ELEMENT_EM, ELEMENT_FONT, ELEMENT_I, ELEMENT_IMG, ELEMENT_INPUT, ELEMENT_KBD, ELEMENT_LABEL,
    ELEMENT_MAP, ELEMENT_OBJECT, ELEMENT_Q, ELEMENT_SAMP, ELEMENT_SCRIPT, ELEMENT_SELECT,
    ELEMENT_SMALL, ELEMENT_SPAN, ELEMENT_STRIKE, ELEMENT_STRONG, ELEMENT_SUB, ELEMENT_SUP,
    ELEMENT_TEXTAREA, ELEMENT_TT, ELEMENT_U, ELEMENT_VAR, ELEMENT_UNNAMED_116};

/// Whether a node is a text of white space only; false for an element.
bool isSpaceText(const HtmlTreeNode& node);

/// Delivers a text node: trims it by what stands around it, then as deliverText.
void deliverTextNode(const HtmlTreeNode& node, HtmlFilterContext& context);

/// Delivers a zero-terminated text: resolves references, collapses white space, hands the runs to
/// the host.
void deliverText(const char16_t* text, HtmlFilterContext& context);

/// Hands a run to the host and empties it. Surrogates are dropped from runs below 65,535 units.
void flushRun(zorvan::WString& run, HtmlFilterContext& context);

/// Delivers one character that the filter itself adds.
void deliverChar(char16_t unit, HtmlFilterContext& context);
