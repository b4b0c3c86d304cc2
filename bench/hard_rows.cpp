#include "bench/hard_rows.h"

#include "bench/conversion.h"
#include "bench/hard_shapes.h"
#include "bench/memory_use.h"
#include "bench/processor_time.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

    constexpr double kNanoseconds = 1e9;
    constexpr double kMebibyte = 1 << 20;
    // Short conversions are repeated, so that the first one's page faults don't count.
    constexpr double kShortSeconds = 0.2;
    constexpr int kRepeats = 5;

    struct Measure {
        bool isThere = false;
        double seconds = 0;
        std::uint64_t nodes = 0;
    };

    Measure measure(const Document& document)
    {
        Measure best;
        for (int repeat = 0; repeat < kRepeats; ++repeat) {
            const double start = processorSeconds();
            const std::uint64_t nodes = convertCountingNodes(document);
            const double seconds = processorSeconds() - start;
            best = {true, best.isThere ? std::min(best.seconds, seconds) : seconds, nodes};
            if (seconds > kShortSeconds)
                break;
        }
        return best;
    }

    /// The measure of a child process, which ends after the time allowed in any case.
    Measure measureInChild(const Document& document, std::uint32_t secondsAllowed)
    {
        Measure result;
        int ends[2] = {};
        if (pipe(ends) != 0)
            return result;
        const pid_t child = fork();
        if (child == 0) {
            alarm(secondsAllowed);
            result = measure(document);
            const bool sent = write(ends[1], &result, sizeof result) == sizeof result;
            _exit(sent ? EXIT_SUCCESS : EXIT_FAILURE);
        }
        close(ends[1]);
        if (child < 0 || read(ends[0], &result, sizeof result) != sizeof result)
            result = {};
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        return result;
    }

    double perNode(const Measure& measured)
    {
        return measured.seconds * kNanoseconds
            / static_cast<double>(std::max<std::uint64_t>(1, measured.nodes));
    }

    double perByteOf(const Measure& measured, const Document& document)
    {
        return measured.seconds * kNanoseconds / static_cast<double>(document.bytes.size());
    }

    /// Of the time for each node or, where the nodes are as many in both, for each byte.
    double growth(
        const Measure& whole, double perByte, const Measure& quarter, double quarterPerByte)
    {
        return whole.nodes != quarter.nodes ? perNode(whole) / perNode(quarter)
                                            : perByte / quarterPerByte;
    }

    void printRow(const HardShape& shape, std::uint32_t secondsAllowed)
    {
        std::printf("%-18s %9zu", shape.name, shape.benchCount);
        std::fflush(stdout); // a child must not write it again
        Document document;
        document.bytes = shape.generate(shape.benchCount);
        const Measure whole = measureInChild(document, secondsAllowed);
        if (!whole.isThere) {
            std::printf("  more than %u s, or no memory\n", secondsAllowed);
            return;
        }
        const double peak = static_cast<double>(peakMemoryOfConversion(document));
        const double perByte = perByteOf(whole, document);
        document.bytes = shape.generate(shape.benchCount / 4);
        const Measure quarter = measureInChild(document, secondsAllowed);
        const double quarterPerByte = perByteOf(quarter, document);
        std::printf(" %9llu %9.1f %9.1f %9.1f %9.1f %9.0f %7.2f\n",
            static_cast<unsigned long long>(whole.nodes), whole.seconds * 1e3, perByte,
            perNode(whole), peak / kMebibyte, peak / static_cast<double>(whole.nodes),
            growth(whole, perByte, quarter, quarterPerByte));
    }

} // namespace

int printHardRows(std::uint32_t secondsAllowed)
{
    std::printf("%-18s %9s %9s %9s %9s %9s %9s %9s %7s\n", "shape", "count", "nodes", "cpu ms",
        "ns/byte", "ns/node", "peak MiB", "B/node", "growth");
    for (const HardShape& shape : hardShapes())
        printRow(shape, secondsAllowed);
    std::printf(
        "growth: ns/node, or ns/byte where the nodes stay as many, beside those of a quarter\n"
        "of the count; 1 is linear, 4 quadratic\n");
    return 0;
}

} // namespace bench
