#include "filter/prescan.h"

#include "filter/heap_block.h"
#include "filter/read_buffers.h"
#include "input/char_reader.h"
#include "input/charset.h"
#include "scanner/markup_scanner.h"
#include "support/html_names.h"

#include <cstring>

namespace {

/// Whether the value of a token ends the prescan: the end of the input, and a character that looks
/// like it.
bool isEndValue(std::int32_t character) { return character == 0xFFFF || character == kEndOfInput; }

/// What the character reader keeps between characters besides its position.
struct DecoderState {
    std::uint32_t iso2022State;
    std::uint16_t recentBytes[4];
};

DecoderState saveDecoders(const HtmlFilterContext& context)
{
    DecoderState state = {};
    state.iso2022State = context.iso2022State;
    std::memcpy(state.recentBytes, context.recentBytes, sizeof(state.recentBytes));
    return state;
}

void restoreDecoders(const DecoderState& state, HtmlFilterContext& context)
{
    context.iso2022State = state.iso2022State;
    std::memcpy(context.recentBytes, state.recentBytes, sizeof(state.recentBytes));
}

/// Looks at one token. Answers true when the prescan is over.
bool examineToken(const Token& token, const char16_t* text, HtmlFilterContext& context)
{
    if ((token.flags & (TOKEN_CHARACTER | TOKEN_SKIPPED)) != 0 || token.element == 0)
        return false;
    if (token.element == ELEMENT_META && (token.flags & TOKEN_START_TAG) != 0) {
        const std::uint16_t code = charSetFromMeta(text, context);
        if (code == 0)
            return false;
        applyPrescanCharSet(code, context);
        return true;
    }
    if (token.element == ELEMENT_BODY)
        return true;
    return token.element == ELEMENT_HEAD && (token.flags & TOKEN_END_TAG) != 0;
}

void scanForCharSet(char16_t* text, HtmlFilterContext& context)
{
    Token token = {};
    while (context.statusFlags == 0) {
        const std::int32_t character = Scan(token, text, kTokenLimit, context);
        if (context.statusFlags != 0 || isEndValue(character))
            return;
        if (examineToken(token, text, context))
            return;
    }
}

} // namespace

void prescanCharSet(HtmlFilterContext& context)
{
    const std::uint32_t start = currentPosition(context);
    const DecoderState decoders = saveDecoders(context);
    const std::uint32_t rawTextMode = context.rawTextMode;
    context.rawTextMode = RAW_TEXT_NONE;
    const HeapBlock text(kTokenBufferBytes);
    if (text.get() == nullptr)
        context.statusFlags |= STATUS_OUT_OF_MEMORY;
    else
        scanForCharSet(static_cast<char16_t*>(text.get()), context);
    context.statusFlags &= static_cast<std::uint16_t>(~STATUS_END_OF_INPUT);
    seekTo(start, context);
    restoreDecoders(decoders, context);
    context.rawTextMode = rawTextMode;
}
