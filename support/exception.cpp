#include "support/exception.h"

#include <cstdint>
#include <cstring>

namespace zorvan {

Throwable::~Throwable() = default;

Exception::Exception(std::uint32_t code, const char* message, Throwable* cause,
    const char* sourceName, std::uint32_t line)
    : code_(code)
    , line_(line)
    , cause_(cause)
    , sourceName_(sourceName)
    , hasMessage_(message != nullptr)
    , message_{}
{
    if (hasMessage_)
        std::strncpy(message_, message, kMessageCapacity);
}

Exception::~Exception() = default;

} // namespace zorvan

UTBailOut::UTBailOut(std::uint32_t bailOutCode, std::uint32_t firstWord, std::uint32_t secondWord)
    : code(bailOutCode)
    , first(firstWord)
    , second(secondWord)
{
}

UTBailOut::~UTBailOut() = default;
