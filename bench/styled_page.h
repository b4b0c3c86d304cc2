#pragma once

#include "bench/documents.h"

#include <cstddef>

namespace bench {

/// A generated page in the manner of mails and of what office programs save: a sheet of so many
/// rules by classes, elements and ids, and so many elements with one or two classes each. Without
/// its sheet it is the same but for the style element.
struct StyledPage {
    std::size_t rules = 5'000;
    std::size_t elements = 20'000;
    bool hasSheet = true;
};

/// Two pages of the same numbers have the same bytes.
Document styledPage(const StyledPage& page);

/// Prints the processor time of such a page, that of the same page without its sheet, and how many
/// times the one is the other. Answers 0.
int printSheetCost();

} // namespace bench
