#pragma once

#include "support/export.h"

#include <cstdint>

namespace zorvan {

/// The base of Exception.
class ZV_EXPORT Throwable {
public:
    Throwable() = default;
    Throwable(const Throwable&) = default;
    Throwable& operator=(const Throwable&) = default;
    virtual ~Throwable();
};

/// A fault that the filter can't mend: of a container, or a node that could not be made. It is
/// thrown by value and leaves through the filter's entry points; a host catches it by its type.
class ZV_EXPORT Exception : public Throwable {
public:
    /// The longest message that is kept, in bytes, the terminator left out.
    enum : std::uint32_t { kMessageCapacity = 255 };

    /// message: null for none; its text is copied into the object, so that it can be read after the
    /// filter has been unloaded. cause and sourceName are kept as pointers, null for none, and are
    /// not owned. line: 0 for none. Allocates nothing.
    Exception(std::uint32_t code, const char* message, Throwable* cause, const char* sourceName,
        std::uint32_t line);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    std::uint32_t code() const { return code_; }
    /// Null when the exception was made without a message.
    const char* message() const { return hasMessage_ ? message_ : nullptr; }
    Throwable* cause() const { return cause_; }
    const char* sourceName() const { return sourceName_; }
    std::uint32_t line() const { return line_; }

private:
    std::uint32_t code_;
    std::uint32_t line_;
    Throwable* cause_;
    const char* sourceName_;
    bool hasMessage_;
    char message_[kMessageCapacity + 1];
};

} // namespace zorvan

/// Gives the filter up: thrown by UTBailOutEx, kin to no other exception, so that only a host that
/// means it catches it.
class ZV_EXPORT UTBailOut {
public:
    UTBailOut(std::uint32_t bailOutCode, std::uint32_t firstWord, std::uint32_t secondWord);
    UTBailOut(const UTBailOut&) = default;
    UTBailOut& operator=(const UTBailOut&) = default;
    virtual ~UTBailOut();

    std::uint32_t code;
    std::uint32_t first;
    std::uint32_t second;
};
