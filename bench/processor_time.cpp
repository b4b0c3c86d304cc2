#include "bench/processor_time.h"

#include <ctime>

namespace bench {

double processorSeconds()
{
    constexpr double kNanoseconds = 1e9;
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / kNanoseconds;
}

} // namespace bench
