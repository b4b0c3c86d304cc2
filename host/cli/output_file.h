#pragma once

#include "host/byte_writer.h"

#include <string>

namespace host::cli {

/// Where a command writes: standard output, or a file that takes its name only when it is complete.
/// Throws ClosedPipe when the reader has gone away and BadUse for any other failure.
class OutputFile : public ByteWriter {
public:
    /// name: a file, or standard output for "-" and an empty name. A device or a pipe is written as
    /// it stands; a regular file keeps its old content until commit. Links are followed, also one
    /// to a file that is not there yet.
    explicit OutputFile(const std::string& name);
    ~OutputFile() override;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view bytes) override;
    /// Gives the file its name. Without it nothing is left behind.
    void commit();

private:
    void openBeside();
    [[noreturn]] void fail() const;

    std::string shown_; // for messages
    std::string place_; // the name that the file gets; empty when it is written as it stands
    std::string temporary_; // the name of the unfinished file; empty while it has none
    int file_ = -1;
    bool owned_ = false;
};

} // namespace host::cli
