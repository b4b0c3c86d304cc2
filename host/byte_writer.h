#pragma once

#include <string>
#include <string_view>

namespace host {

/// Where a sink puts its bytes.
class ByteWriter {
public:
    virtual ~ByteWriter() = default;
    /// Writes all of the bytes, or throws what the writer throws; a sink lets that pass.
    virtual void write(std::string_view bytes) = 0;
};

/// Keeps the bytes.
class StringWriter : public ByteWriter {
public:
    void write(std::string_view bytes) override { text.append(bytes); }

    std::string text;
};

} // namespace host
