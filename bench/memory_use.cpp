#include "bench/memory_use.h"

#include "bench/conversion.h"

#include <cstdlib>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

    /// Resident peak, in bytes, of a child process that converts the document, or does nothing.
    std::uint64_t peakOfChild(const Document& document, bool convertIt)
    {
        const pid_t child = fork();
        if (child < 0)
            return 0;
        if (child == 0) {
            if (convertIt)
                convert(document, /*stopAtEveryBreak=*/false);
            _exit(EXIT_SUCCESS);
        }
        rusage usage = {};
        int status = 0;
        if (wait4(child, &status, 0, &usage) != child)
            return 0;
        constexpr std::uint64_t kKibibyte = 1'024;
        return static_cast<std::uint64_t>(usage.ru_maxrss) * kKibibyte;
    }

} // namespace

std::uint64_t peakMemoryOfConversion(const Document& document)
{
    const std::uint64_t idle = peakOfChild(document, /*convertIt=*/false);
    const std::uint64_t busy = peakOfChild(document, /*convertIt=*/true);
    return busy > idle ? busy - idle : 0;
}

} // namespace bench
