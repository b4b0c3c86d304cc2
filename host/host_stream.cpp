#include "host/host_stream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace host {

namespace {

    constexpr std::int32_t kDone = 0;
    constexpr std::int32_t kFailed = 1;

    constexpr std::uint32_t kOriginStart = 0;
    constexpr std::uint32_t kOriginEnd = 2;

    /// What the filter asks of query and open.
    constexpr std::uint32_t kQueryWidePositions = 24;
    constexpr std::uint32_t kRangeKind = 8;

    /// The bytes from `first` up to `end` of another document.
    class RangeStream : public DocumentStream {
    public:
        RangeStream(DocumentStream& whole, std::uint64_t first, std::uint64_t end)
            : DocumentStream(end - first)
            , whole_(whole)
            , first_(first)
        {
        }

        bool readAt(
            std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count) override
        {
            const std::uint64_t left = position < this->size() ? this->size() - position : 0;
            const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, left));
            return whole_.readAt(first_ + position, buffer, wanted, count);
        }

    private:
        DocumentStream& whole_;
        std::uint64_t first_;
    };

} // namespace

/// The operations that the filter calls.
struct StreamCalls {
    static DocumentStream& of(::HostStream* stream)
    {
        return *static_cast<DocumentStream*>(stream);
    }

    static std::int32_t close(::HostStream* stream)
    {
        DocumentStream* range = &of(stream);
        if (range->parent_ == nullptr)
            return kDone;
        std::erase_if(range->parent_->ranges_,
            [range](const std::unique_ptr<DocumentStream>& open) { return open.get() == range; });
        return kDone;
    }

    static std::int32_t read(
        ::HostStream* stream, void* buffer, std::uint32_t size, std::uint32_t* count)
    {
        DocumentStream& document = of(stream);
        *count = 0;
        if (!document.readAt(document.position_, buffer, size, *count)) {
            keepFailure(document, errno);
            return kFailed;
        }
        document.position_ += *count;
        return kDone;
    }

    static void keepFailure(DocumentStream& failed, int reason)
    {
        for (DocumentStream* each = &failed; each != nullptr; each = each->parent_) {
            if (each->readFailure_ == 0)
                each->readFailure_ = reason;
        }
    }

    static std::int32_t seekWide(::HostStream* stream, std::uint32_t origin, std::int64_t position)
    {
        DocumentStream& document = of(stream);
        if (origin != kOriginStart && origin != kOriginEnd)
            return kFailed;
        const std::int64_t base
            = origin == kOriginEnd ? static_cast<std::int64_t>(document.size_) : 0;
        if (position < -base || position > INT64_MAX - base)
            return kFailed;
        document.position_ = static_cast<std::uint64_t>(base + position);
        return kDone;
    }

    static std::int32_t seek(::HostStream* stream, std::uint32_t origin, std::uint32_t position)
    {
        // From the end the offset is signed, from the start it is not.
        const std::int64_t offset = origin == kOriginEnd
            ? static_cast<std::int64_t>(static_cast<std::int32_t>(position))
            : static_cast<std::int64_t>(position);
        return seekWide(stream, origin, offset);
    }

    static std::int32_t tellWide(::HostStream* stream, std::int64_t* position)
    {
        *position = static_cast<std::int64_t>(of(stream).position_);
        return kDone;
    }

    static std::int32_t tell(::HostStream* stream, std::uint32_t* position)
    {
        *position = static_cast<std::uint32_t>(of(stream).position_);
        return kDone;
    }

    static std::int32_t query(::HostStream*, std::uint32_t what, std::uint32_t)
    {
        return what == kQueryWidePositions ? kDone : kFailed;
    }

    static std::int32_t open(
        ::HostStream** stream, std::uint32_t kind, const ::StreamRange* range, std::uint32_t flag)
    {
        if (kind != kRangeKind || flag != 1 || range == nullptr || range->stream == nullptr)
            return kFailed;
        DocumentStream& whole = of(range->stream);
        const std::uint64_t end = std::min(range->end, whole.size_);
        if (range->first > end)
            return kFailed;
        whole.ranges_.push_back(std::make_unique<RangeStream>(whole, range->first, end));
        DocumentStream& made = *whole.ranges_.back();
        made.parent_ = &whole;
        *stream = &made;
        return kDone;
    }

    static const StreamOperations* operations()
    {
        static constexpr StreamOperations kOperations
            = {close, read, nullptr, seek, tell, query, open, seekWide, tellWide};
        return &kOperations;
    }
};

DocumentStream::DocumentStream(std::uint64_t size)
    : ::HostStream{StreamCalls::operations()}
    , size_(size)
{
}

DocumentStream::~DocumentStream() = default;

MemoryStream::MemoryStream(std::string bytes)
    : DocumentStream(bytes.size())
    , bytes_(std::move(bytes))
{
}

bool MemoryStream::readAt(
    std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count)
{
    const std::uint64_t left = position < bytes_.size() ? bytes_.size() - position : 0;
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, left));
    if (count != 0)
        std::memcpy(buffer, bytes_.data() + position, count);
    return true;
}

FileStream::FileStream(int file, std::uint64_t size)
    : DocumentStream(size)
    , file_(file)
{
}

FileStream::~FileStream() { ::close(file_); }

bool FileStream::readAt(
    std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count)
{
    // What is appended to the file meanwhile belongs to no document of this size.
    const std::uint64_t left = position < this->size() ? this->size() - position : 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, left));
    count = 0;
    if (wanted == 0)
        return true;
    ssize_t got = -1;
    do {
        got = ::pread(file_, buffer, wanted, static_cast<off_t>(position));
    } while (got < 0 && errno == EINTR);
    if (got < 0)
        return false;
    count = static_cast<std::uint32_t>(got);
    return true;
}

} // namespace host
