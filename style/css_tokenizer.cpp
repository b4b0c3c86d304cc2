#include "style/css_tokenizer.h"

#include "style/css_rules.h"
#include "support/bail_out.h"

namespace {

// What UTBailOutEx is told of a scanner that has no memory for its text.
constexpr std::uint32_t kScannerFault = 18;

// Most texts are style attributes, which share one buffer of this size.
constexpr std::uint32_t kSmallestBuffer = 256;

} // namespace

void CssTokenizer::setInput(const char16_t* text, std::uint32_t length)
{
    if (!trySetInput(text, length))
        UTBailOutEx(kScannerFault, 0, 0);
}

bool CssTokenizer::trySetInput(const char16_t* text, std::uint32_t length)
{
    hasPushedBack_ = false;
    if (buffer_ == nullptr || length >= capacity_) {
        position_ = "";
        capacity_ = 0;
        buffer_.reset();
        const std::int64_t wanted
            = length < kSmallestBuffer ? std::int64_t{kSmallestBuffer} : std::int64_t{length} + 1;
        buffer_ = zorvan::tryAllocateElements<char>(wanted);
        if (buffer_ == nullptr)
            return false;
        capacity_ = static_cast<std::uint32_t>(wanted);
    }
    char* const bytes = buffer_.get();
    for (std::uint32_t i = 0; i < length; ++i)
        bytes[i] = static_cast<char>(text[i] & 0xFF);
    bytes[length] = 0;
    position_ = bytes;
    return true;
}

void CssTokenizer::next(CssToken& out)
{
    if (hasPushedBack_) {
        hasPushedBack_ = false;
        out = pushedBack_;
        return;
    }
    scan(out);
}

void CssTokenizer::nextSkippingSpace(CssToken& out)
{
    do
        next(out);
    while (out.kind == CSS_S);
}

void CssTokenizer::pushBack(const CssToken& token)
{
    pushedBack_ = token;
    hasPushedBack_ = true;
}

void CssTokenizer::scan(CssToken& out)
{
    const char* const begin = css_rules::skipComments(position_);
    const css_rules::Match<const char*> match = css_rules::matchToken(begin);
    position_ = match.end;
    out.kind = match.kind;
    out.text = begin;
    out.length = static_cast<std::uint32_t>(match.end - begin);
    out.isNegative = false;
}
