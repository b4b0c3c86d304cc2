#pragma once

#include <string>

namespace host::cli {

/// The module to load: the one that the user names, or else htmlfilter.so beside the program, or
/// else in ../lib/htmlfilter as seen from the program. Throws BadUse when there is none in either
/// place.
std::string findModule(const std::string& named);

} // namespace host::cli
