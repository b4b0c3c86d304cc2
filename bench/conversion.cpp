#include "bench/conversion.h"

#include "filter/entry_points.h"
#include "filter/filter_internals.h"
#include "filter/read_buffers.h"
#include "input/char_reader.h"
#include "input/stream_block.h"
#include "output/host_routines.h"
#include "scanner/markup_scanner.h"
#include "tree/html_tree.h"
#include "tree/tree_construction.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace bench {

namespace {

    /// A host stream over bytes in memory.
    struct MemoryStream {
        HostStream base;
        const Document* document;
        std::uint32_t position;
    };

    MemoryStream& self(HostStream* stream) { return *reinterpret_cast<MemoryStream*>(stream); }

    std::int32_t readBytes(
        HostStream* stream, void* buffer, std::uint32_t size, std::uint32_t* count)
    {
        MemoryStream& memory = self(stream);
        const auto length = static_cast<std::uint32_t>(memory.document->bytes.size());
        *count = std::min(size, length - std::min(length, memory.position));
        std::memcpy(buffer, memory.document->bytes.data() + memory.position, *count);
        memory.position += *count;
        return 0;
    }

    std::int32_t seekBytes(HostStream* stream, std::uint32_t, std::uint32_t position)
    {
        self(stream).position = position;
        return 0;
    }

    std::int32_t tellBytes(HostStream* stream, std::uint32_t* position)
    {
        *position = self(stream).position;
        return 0;
    }

    constexpr StreamOperations kOperations
        = {nullptr, readBytes, nullptr, seekBytes, tellBytes, nullptr, nullptr, nullptr, nullptr};

    /// A document opened in the filter, its section started, up to the first read.
    class OpenDocument {
    public:
        explicit OpenDocument(const Document& document)
            : memory_{{&kOperations}, &document, 0}
            , context_(VwAllocProc())
        {
            VwLocalUp(&memory_.base, &stream_, context_);
            VwSetUser(this, nullptr, context_);
            VwSetSoRtn(SO_EMIT_BREAK, reinterpret_cast<void*>(&OpenDocument::emitBreak), context_);
            OpenRecord record = {};
            VwStreamOpen(stream_, document.fileType, nullptr, &record, context_);
            VwStreamSection(stream_, context_);
        }

        OpenDocument(const OpenDocument&) = delete;
        OpenDocument& operator=(const OpenDocument&) = delete;

        ~OpenDocument()
        {
            VwStreamClose(stream_, context_);
            HostStream* hostStream = nullptr;
            VwLocalDown(stream_, &hostStream);
            VwFreeProc(context_);
        }

        /// One read; false when the document is done.
        bool read()
        {
            VwStreamRead(stream_, context_);
            return !done_;
        }

        HtmlFilterContext& context() { return *context_; }
        void stopAtEveryBreak() { stop_ = true; }

    private:
        static std::uint32_t emitBreak(std::uint16_t kind, std::uint32_t, void* user, void*)
        {
            auto& document = *static_cast<OpenDocument*>(user);
            if (kind == BREAK_DOCUMENT)
                document.done_ = true;
            return document.stop_ ? 1 : 0;
        }

        MemoryStream memory_;
        HtmlFilterContext* context_;
        StreamBlock* stream_ = nullptr;
        bool stop_ = false;
        bool done_ = false;
    };

} // namespace

std::uint64_t readCharacters(const Document& document)
{
    OpenDocument open(document);
    std::uint64_t count = 0;
    while (readChar(open.context()) != kEndOfInput)
        ++count;
    return count;
}

std::uint64_t scanTokens(const Document& document)
{
    OpenDocument open(document);
    std::vector<char16_t> buffer(kTokenLimit + 2);
    open.context().tokenBuffer = buffer.data();
    Token token = {};
    std::uint64_t count = 0;
    for (;;) {
        Scan(token, buffer.data(), kTokenLimit, open.context());
        if (open.context().statusFlags != 0)
            return count;
        ++count;
    }
}

std::uint64_t buildTree(const Document& document)
{
    OpenDocument open(document);
    std::vector<char16_t> buffer(kTokenLimit + 2);
    open.context().tokenBuffer = buffer.data();
    InsertNode(open.context());
    return open.context().currentTreeRoot->tree->nodeCount;
}

std::uint64_t convert(const Document& document, bool stopAtEveryBreak)
{
    OpenDocument open(document);
    if (stopAtEveryBreak)
        open.stopAtEveryBreak();
    std::uint64_t reads = 1;
    while (open.read())
        ++reads;
    return reads;
}

std::uint64_t convertCountingNodes(const Document& document)
{
    OpenDocument open(document);
    while (open.read()) { }
    return open.context().currentTreeRoot->tree->nodeCount;
}

} // namespace bench
