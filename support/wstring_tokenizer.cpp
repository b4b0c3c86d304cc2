#include "support/wstring_tokenizer.h"

namespace {

const char16_t* orEmpty(const char16_t* text) { return text == nullptr ? u"" : text; }

} // namespace

namespace zorvan {

WStringTokenizer::WStringTokenizer(
    const char16_t* text, const char16_t* delimiters, bool returnDelimiters)
    : position_(orEmpty(text))
    , delimiters_(orEmpty(delimiters))
    , returnDelimiters_(returnDelimiters)
{
}

bool WStringTokenizer::hasMoreTokens()
{
    while (!returnDelimiters_ && isDelimiter(*position_))
        ++position_;
    return *position_ != 0;
}

const WString& WStringTokenizer::nextToken()
{
    token_.clear();
    if (!hasMoreTokens())
        return token_;
    const char16_t* end = position_;
    while (*end != 0 && !isDelimiter(*end))
        ++end;
    if (end == position_)
        ++end;
    token_.append(position_, static_cast<std::int32_t>(end - position_));
    position_ = end;
    return token_;
}

bool WStringTokenizer::isDelimiter(char16_t unit) const
{
    const char16_t* delimiter = delimiters_;
    while (*delimiter != 0 && *delimiter != unit)
        ++delimiter;
    return *delimiter != 0;
}

} // namespace zorvan
