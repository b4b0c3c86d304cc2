#pragma once

#include <string>

namespace host::cli {

/// The text as one line that does nothing to a terminal: each control character is a "?", and a
/// line break a blank.
std::string asOneLine(const std::string& text);

/// Tells the user something on standard error, in one line.
void tellUser(const std::string& text);

} // namespace host::cli
