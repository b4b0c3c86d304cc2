// Measures the stages of a conversion in bytes per second over generated documents, and beside them
// libxml2's HTML parser on the same bytes. --pages=DIR adds the pages of a folder, --memory prints
// the peak memory of each kind and leaves, --hard measures the shapes of documents that are hard to
// build, each for at most --hard-seconds=N, and leaves, --sheet measures what a large style sheet
// costs a page and leaves.

#include "bench/conversion.h"
#include "bench/documents.h"
#include "bench/hard_rows.h"
#include "bench/memory_use.h"
#include "bench/reference_parser.h"
#include "bench/styled_page.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using bench::Document;
using Stage = std::function<std::uint64_t(const Document&)>;

constexpr std::int64_t kSmallest = 64 << 10;
constexpr std::int64_t kMiddle = 1 << 20;
constexpr std::int64_t kLargest = 16 << 20;

/// Prints the usual lines and, at the end, the conversion's time beside the reference parser's.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter()
        : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_Defaults : OO_None)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                times_[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        std::printf("\nwhole conversion / libxml2 parse, time ratio\n");
        for (const auto& [name, time] : times_) {
            const std::string prefix = "convert/";
            if (name.rfind(prefix, 0) != 0)
                continue;
            const auto reference = times_.find("libxml2/" + name.substr(prefix.size()));
            if (reference != times_.end())
                std::printf(
                    "%-32s %6.2f\n", name.c_str() + prefix.size(), time / reference->second);
        }
    }

private:
    std::map<std::string, double> times_;
};

void runStage(benchmark::State& state, const Stage& stage, const Document& document)
{
    std::uint64_t result = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(result = stage(document));
    state.SetBytesProcessed(static_cast<std::int64_t>(document.bytes.size())
        * static_cast<std::int64_t>(state.iterations()));
    state.counters["result"] = static_cast<double>(result);
}

void registerStage(const std::string& stageName, const bench::DocumentKind& kind, Stage stage)
{
    auto* registered = benchmark::RegisterBenchmark((stageName + "/" + kind.name).c_str(),
        [generate = kind.generate, stage](benchmark::State& state) {
            const Document document = generate(static_cast<std::size_t>(state.range(0)));
            runStage(state, stage, document);
            state.SetComplexityN(state.range(0));
        });
    registered->Arg(kSmallest)->Arg(kMiddle)->Arg(kLargest);
    registered->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

void registerGenerated()
{
    for (const bench::DocumentKind& kind : bench::documentKinds()) {
        registerStage("read", kind, bench::readCharacters);
        registerStage("scan", kind, bench::scanTokens);
        registerStage("build", kind, bench::buildTree);
        registerStage("convert", kind,
            [](const Document& document) { return bench::convert(document, false); });
        registerStage("libxml2", kind, bench::parseWithReference);
    }
    registerStage("convert-stop-at-every-break", bench::documentKinds().front(),
        [](const Document& document) { return bench::convert(document, true); });
}

std::vector<Document> pagesOf(const std::string& folder)
{
    std::vector<Document> pages;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        Document page;
        page.bytes.assign(std::istreambuf_iterator<char>(file), {});
        pages.push_back(std::move(page));
    }
    return pages;
}

void registerPages(const std::string& name, const std::vector<Document>& pages, Stage stage)
{
    benchmark::RegisterBenchmark(name.c_str(), [&pages, stage](benchmark::State& state) {
        std::int64_t bytes = 0;
        for (const Document& page : pages)
            bytes += static_cast<std::int64_t>(page.bytes.size());
        std::uint64_t result = 0;
        for (auto _ : state) {
            for (const Document& page : pages)
                benchmark::DoNotOptimize(result = stage(page));
        }
        state.SetBytesProcessed(bytes * static_cast<std::int64_t>(state.iterations()));
    })->Unit(benchmark::kMillisecond);
}

int printMemory()
{
    std::printf("peak memory of the whole conversion, bytes per byte of a 16 MiB document\n");
    for (const bench::DocumentKind& kind : bench::documentKinds()) {
        const Document document = kind.generate(kLargest);
        const std::uint64_t peak = bench::peakMemoryOfConversion(document);
        std::printf("%-16s %6.1f\n", kind.name,
            static_cast<double>(peak) / static_cast<double>(document.bytes.size()));
    }
    return 0;
}

/// Takes the program's own switches out of the arguments.
struct Switches {
    std::string pages;
    bool memory = false;
    bool hard = false;
    bool sheet = false;
    std::uint32_t hardSeconds = 60;
};

Switches takeSwitches(int& argc, char** argv)
{
    Switches switches;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--pages=", 8) == 0)
            switches.pages = argv[i] + 8;
        else if (std::strcmp(argv[i], "--memory") == 0)
            switches.memory = true;
        else if (std::strcmp(argv[i], "--hard") == 0)
            switches.hard = true;
        else if (std::strcmp(argv[i], "--sheet") == 0)
            switches.sheet = true;
        else if (std::strncmp(argv[i], "--hard-seconds=", 15) == 0)
            switches.hardSeconds
                = static_cast<std::uint32_t>(std::strtoul(argv[i] + 15, nullptr, 10));
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    return switches;
}

} // namespace

int main(int argc, char** argv)
{
    const Switches switches = takeSwitches(argc, argv);
    if (switches.memory)
        return printMemory();
    if (switches.hard)
        return bench::printHardRows(switches.hardSeconds);
    if (switches.sheet)
        return bench::printSheetCost();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    registerGenerated();
    std::vector<Document> pages;
    if (!switches.pages.empty()) {
        pages = pagesOf(switches.pages);
        registerPages("convert/pages", pages,
            [](const Document& document) { return bench::convert(document, false); });
        registerPages("libxml2/pages", pages, bench::parseWithReference);
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
