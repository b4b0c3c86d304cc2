#pragma once

#include <string>

class Selector;

namespace htmltree {

/// A selector as a sheet may write it: a sequence that asks for nothing is `*`, an attribute that
/// selectors never find is `?`, arguments are left out, and bytes of names outside U+0020 to U+007E
/// are \uXXXX.
std::string selectorText(const Selector& selector);

} // namespace htmltree
