#pragma once

#include "host/host_sink.h"
#include "host/host_stream.h"
#include "host/module.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host {

/// An option of the engine or of a document, of one 32-bit word.
struct OptionValue {
    std::uint32_t id;
    std::uint32_t value;
};

/// The file type of documents of no special make.
constexpr std::uint16_t kPlainFileType = 1101;

/// How a document is to be read.
struct ConversionOptions {
    std::uint16_t fileType = kPlainFileType;
    std::uint32_t charSetId = 0; ///< requested host character set identifier; 0 leaves the choice
    std::uint32_t openFlags = 0; ///< OPEN_FLAG_ bits
    std::vector<OptionValue> documentOptions = {};
    std::uint32_t stopEvery = 0; ///< SOEmitBreak answers 1 at every so many calls; 0 for never
};

/// How a conversion ended.
struct Outcome {
    enum class Kind {
        Finished, ///< at the break that ends the document
        Exception, ///< a fault inside the filter, or no memory (code 13)
        BailOut, ///< the filter gave itself up
        Abandoned ///< the filter called SOAbandonFilter
    };
    Kind kind = Kind::Finished;
    std::uint32_t code = 0;
    std::string message = {}; ///< of an exception; empty for none
};

/// Converts one document: opens it, reads until the filter says that it has ended, and closes it,
/// on each way out. Options of the engine have to be set before (GlobalOptionScope). What the
/// filter throws becomes the outcome; what the sink throws comes out of here, behind the closing.
/// Throws ReadError when the document could not be read, and ModuleError when the module goes on
/// without ever saying anything or throws what no filter does; the sink is not told the end then.
Outcome convert(
    const Module& module, DocumentStream& stream, const ConversionOptions& options, HostSink& sink);

} // namespace host
