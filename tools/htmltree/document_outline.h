#pragma once

#include "host/host_stream.h"
#include "host/session.h"
#include "tools/htmltree/tree_outline.h"

#include <stdexcept>
#include <string>

namespace htmltree {

/// The filter did not come to the end of a document. The text says how it ended.
class UnfinishedDocument : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a document through the entry points of the filter, for a host that takes nothing, and
/// answers the outlines of the trees of all its sections, in their order. options: the file type,
/// the character set, the flags and the document's options count. Throws UnfinishedDocument, and
/// host::ReadError when the document can't be read.
std::string outlineOfDocument(host::DocumentStream& stream, const host::ConversionOptions& options,
    Declarations declarations);

/// The same with the declarations of each element on lines of their own, and where each comes from.
std::string stylesOfDocument(host::DocumentStream& stream, const host::ConversionOptions& options);

} // namespace htmltree
