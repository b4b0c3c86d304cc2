#pragma once

#include "filter/entry_table.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace testing_support {

/// What a MemoryStream was asked for.
struct StreamCalls {
    std::uint32_t reads = 0;
    std::uint32_t seeks = 0;
    std::uint32_t tells = 0;
    std::uint32_t queries = 0;
    std::uint32_t seeks64 = 0;
    std::uint32_t tells64 = 0;
    std::uint32_t opens = 0;
    std::uint32_t closes = 0;

    /// All calls but queries and tells, which move nothing.
    std::uint32_t moves() const { return reads + seeks + seeks64; }
};

/// A host stream over bytes in memory. It can be told to fail, to deliver little at a time and to
/// begin at any position, so that streams of gigabytes need no gigabytes. Not to be copied or
/// moved: the filter keeps its address.
class MemoryStream : public HostStream {
public:
    explicit MemoryStream(std::string_view content = {})
        : HostStream{&narrowOperations()}
        , bytes(content.begin(), content.end())
    {
    }
    explicit MemoryStream(std::vector<std::uint8_t> content)
        : HostStream{&narrowOperations()}
        , bytes(std::move(content))
    {
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    /// Offers query, seek64 and tell64 from now on.
    void offerWidePositions() { operations = &wideOperations(); }

    /// Offers the bytes from the position `first` on; in front of it there is nothing to read.
    void beginAt(std::int64_t first)
    {
        begin = first;
        position = first;
    }

    std::vector<std::uint8_t> bytes;
    std::int64_t begin = 0; ///< position of the first byte
    std::int64_t position = 0; ///< where the next read begins
    std::uint32_t readLimit = 0xFFFFFFFF; ///< most bytes that one read delivers
    std::uint32_t readsUntilFailure = 0xFFFFFFFF; ///< reads that succeed; all later ones fail
    std::uint32_t seeksUntilFailure = 0xFFFFFFFF; ///< likewise for seek and seek64 together
    bool failTells = false;
    bool failOpens = false;
    std::int32_t queryAnswer = 0; ///< of the wide operations
    StreamCalls calls;
    std::vector<StreamRange> opened; ///< the ranges that open was called with

private:
    static MemoryStream& self(HostStream* stream) { return *static_cast<MemoryStream*>(stream); }

    static std::int32_t closeStream(HostStream* stream)
    {
        MemoryStream& that = self(stream);
        ++that.calls.closes;
        if (that.parent_ != nullptr) {
            ++that.parent_->calls.closes;
            delete &that;
        }
        return 0;
    }

    static std::int32_t readBytes(
        HostStream* stream, void* buffer, std::uint32_t size, std::uint32_t* count)
    {
        MemoryStream& that = self(stream);
        if (that.calls.reads++ >= that.readsUntilFailure)
            return 1;
        const std::int64_t end = that.begin + static_cast<std::int64_t>(that.bytes.size());
        const std::int64_t left
            = that.position < that.begin ? 0 : std::max<std::int64_t>(0, end - that.position);
        const std::int64_t taken = std::min<std::int64_t>({left, size, that.readLimit});
        if (taken > 0)
            std::memcpy(buffer, that.bytes.data() + (that.position - that.begin),
                static_cast<std::size_t>(taken));
        that.position += taken;
        *count = static_cast<std::uint32_t>(taken);
        return 0;
    }

    std::int32_t moveTo(std::uint32_t origin, std::int64_t offset)
    {
        if (seeksUntilFailure == 0)
            return 1;
        if (seeksUntilFailure != 0xFFFFFFFF)
            --seeksUntilFailure;
        if (origin != 0 && origin != 2)
            return 1;
        const std::int64_t end = begin + static_cast<std::int64_t>(bytes.size());
        const std::int64_t target = origin == 0 ? offset : end + offset;
        if (target < 0)
            return 1;
        position = target;
        return 0;
    }

    static std::int32_t seekNarrow(HostStream* stream, std::uint32_t origin, std::uint32_t position)
    {
        MemoryStream& that = self(stream);
        ++that.calls.seeks;
        // From the end the offset is a signed number.
        return that.moveTo(
            origin, origin == 2 ? static_cast<std::int32_t>(position) : std::int64_t{position});
    }

    static std::int32_t tellNarrow(HostStream* stream, std::uint32_t* position)
    {
        MemoryStream& that = self(stream);
        ++that.calls.tells;
        if (that.failTells)
            return 1;
        *position = static_cast<std::uint32_t>(that.position);
        return 0;
    }

    static std::int32_t queryWide(HostStream* stream, std::uint32_t what, std::uint32_t zero)
    {
        MemoryStream& that = self(stream);
        ++that.calls.queries;
        return what == 24 && zero == 0 ? that.queryAnswer : 1;
    }

    static std::int32_t openRange(
        HostStream** stream, std::uint32_t kind, const StreamRange* range, std::uint32_t flag)
    {
        MemoryStream& that = self(range->stream);
        ++that.calls.opens;
        that.opened.push_back(*range);
        if (that.failOpens || kind != 8 || flag != 1)
            return 1;
        const auto size = static_cast<std::uint64_t>(that.bytes.size());
        const auto begin = static_cast<std::uint64_t>(that.begin);
        const std::uint64_t end = std::min(range->end, begin + size);
        const std::uint64_t first = std::min(std::max(range->first, begin), end);
        auto part = std::make_unique<MemoryStream>(std::vector<std::uint8_t>(
            that.bytes.begin() + static_cast<std::ptrdiff_t>(first - begin),
            that.bytes.begin() + static_cast<std::ptrdiff_t>(end - begin)));
        part->parent_ = &that;
        *stream = part.release(); // freed by its close
        return 0;
    }

    static std::int32_t seekWide(HostStream* stream, std::uint32_t origin, std::int64_t position)
    {
        MemoryStream& that = self(stream);
        ++that.calls.seeks64;
        return that.moveTo(origin, position);
    }

    static std::int32_t tellWide(HostStream* stream, std::int64_t* position)
    {
        MemoryStream& that = self(stream);
        ++that.calls.tells64;
        if (that.failTells)
            return 1;
        *position = that.position;
        return 0;
    }

    static const StreamOperations& narrowOperations()
    {
        static const StreamOperations table{closeStream, readBytes, nullptr, seekNarrow, tellNarrow,
            nullptr, openRange, nullptr, nullptr};
        return table;
    }

    static const StreamOperations& wideOperations()
    {
        static const StreamOperations table{closeStream, readBytes, nullptr, seekNarrow, tellNarrow,
            queryWide, openRange, seekWide, tellWide};
        return table;
    }

    MemoryStream* parent_ = nullptr; // of a stream that open made, which its close deletes
};

} // namespace testing_support
