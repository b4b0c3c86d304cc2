#pragma once

#include "host/host_stream.h"
#include "host/session.h"

#include <memory>
#include <string>

namespace host::cli {

/// Opens a document: a file by name, or standard input for "-" and an empty name. Files are read in
/// place, what comes through a pipe is read whole first. Throws BadUse when there is no such file,
/// for a directory, and for more than kLongestDocument bytes.
std::unique_ptr<DocumentStream> openInput(const std::string& name);

/// Converts what openInput has opened under the name. Throws BadUse when it cannot be read to its
/// end, and what convert throws.
Outcome convertInput(const Module& module, DocumentStream& input, const std::string& name,
    const ConversionOptions& options, HostSink& sink);

} // namespace host::cli
