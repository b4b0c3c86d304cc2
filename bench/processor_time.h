#pragma once

namespace bench {

/// Processor time of the process itself, in seconds, whatever else the machine has to do.
double processorSeconds();

} // namespace bench
