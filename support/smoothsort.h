#pragma once

#include "support/export.h"

#include <cstdint>

namespace zorvan {

class Comparable;

/// Sorts the pointers in place, ascending by compareTo; equal ones come out in no particular order.
/// A count of 0 does nothing, and items may be null then. Time is n log n at worst, n when they are
/// nearly in order already. Needs no memory.
ZV_EXPORT void Smoothsort(const Comparable** items, std::int32_t count);

} // namespace zorvan
