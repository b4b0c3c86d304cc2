#pragma once

#include "filter/entry_points.h"
#include "tests/common/memory_stream.h"
#include "tests/common/recording_host.h"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// A document driven through the entry points, with a host that records. Closed at its end, after
/// every way out.
class DocumentRun {
public:
    explicit DocumentRun(std::string_view content)
        : stream(content)
        , context(VwAllocProc())
    {
        VwLocalUp(&stream, &block, context);
        host = std::make_unique<RecordingHost>(*context);
        std::memset(&record, 0, sizeof record);
    }
    DocumentRun(const DocumentRun&) = delete;
    DocumentRun& operator=(const DocumentRun&) = delete;
    ~DocumentRun()
    {
        close();
        HostStream* hostStream = nullptr;
        VwLocalDown(block, &hostStream);
        VwFreeProc(context);
    }

    void open(std::uint16_t fileId = 1101)
    {
        isOpen_ = true;
        VwStreamOpen(block, fileId, nullptr, &record, context);
    }

    void section() { VwStreamSection(block, context); }
    std::uint16_t read() { return VwStreamRead(block, context); }

    void close()
    {
        if (isOpen_)
            VwStreamClose(block, context);
        isOpen_ = false;
    }

    /// Opens, starts a section and reads to the end of the document; answers the number of reads.
    std::uint32_t run(std::uint16_t fileId = 1101)
    {
        open(fileId);
        section();
        return readToEnd();
    }

    std::uint32_t readToEnd()
    {
        std::uint32_t reads = 0;
        do {
            read();
            ++reads;
        } while (!isDone() && reads < 1'000'000);
        return reads;
    }

    bool isDone() const { return !host->calls.empty() && host->calls.back() == "SOEmitBreak 2 0"; }

    MemoryStream stream;
    HtmlFilterContext* context;
    StreamBlock* block = nullptr;
    std::unique_ptr<RecordingHost> host;
    OpenRecord record;

private:
    bool isOpen_ = false;
};

} // namespace testing_support
