#include "host/host_stream.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <unistd.h>

namespace {

using host::DocumentStream;
using host::FileStream;
using host::MemoryStream;

std::string readSome(HostStream* stream, std::uint32_t size)
{
    std::string bytes(size, '\0');
    std::uint32_t count = 0;
    EXPECT_EQ(stream->operations->read(stream, bytes.data(), size, &count), 0);
    bytes.resize(count);
    return bytes;
}

std::unique_ptr<DocumentStream> fileWith(const std::string& bytes)
{
    char name[] = "/tmp/host_stream_test_XXXXXX";
    const int file = ::mkstemp(name);
    EXPECT_EQ(::write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ::unlink(name);
    return std::make_unique<FileStream>(file, bytes.size());
}

using Maker = std::function<std::unique_ptr<DocumentStream>(const std::string&)>;

const Maker kMakers[] = {
    [](const std::string& bytes) { return std::make_unique<MemoryStream>(bytes); },
    fileWith,
};

TEST(HostStream, ReadsInPieces)
{
    for (const Maker& make : kMakers) {
        const auto stream = make("abcdefg");
        EXPECT_EQ(readSome(stream.get(), 3), "abc");
        EXPECT_EQ(readSome(stream.get(), 100), "defg");
        EXPECT_EQ(readSome(stream.get(), 100), "");
        EXPECT_EQ(stream->size(), 7u);
    }
}

TEST(HostStream, SeeksAndTells)
{
    const struct {
        std::uint32_t origin;
        std::uint32_t position;
        std::int32_t answer;
        std::uint32_t told;
        const char* next;
    } rows[] = {
        {0, 2, 0, 2, "cd"},
        {2, 0, 0, 7, ""},
        {2, 0xFFFFFFFE, 0, 5, "fg"},
        {0, 0xFFFFFFFF, 0, 0xFFFFFFFF, ""},
        {0, 7, 0, 7, ""},
        {1, 2, 1, 0, "ab"},
        {2, 0xFFFFFFF8, 1, 0, "ab"},
    };
    for (const Maker& make : kMakers) {
        for (const auto& row : rows) {
            const auto stream = make("abcdefg");
            HostStream* each = stream.get();
            EXPECT_EQ(each->operations->seek(each, row.origin, row.position), row.answer);
            std::uint32_t position = 1;
            EXPECT_EQ(each->operations->tell(each, &position), 0);
            EXPECT_EQ(position, row.told);
            EXPECT_EQ(readSome(each, 2), row.next);
        }
    }
}

TEST(HostStream, OffersWidePositions)
{
    MemoryStream stream("abc");
    HostStream* each = &stream;
    EXPECT_EQ(each->operations->query(each, 24, 0), 0);
    EXPECT_NE(each->operations->query(each, 23, 0), 0);
    EXPECT_EQ(each->operations->seek64(each, 0, 0x100000001), 0);
    std::int64_t wide = 0;
    EXPECT_EQ(each->operations->tell64(each, &wide), 0);
    EXPECT_EQ(wide, 0x100000001);
    EXPECT_EQ(readSome(each, 1), "");
    EXPECT_NE(each->operations->seek64(each, 0, -1), 0);
    EXPECT_NE(each->operations->seek64(each, 2, INT64_MAX), 0);
    EXPECT_EQ(each->operations->seek64(each, 2, -3), 0);
    EXPECT_EQ(readSome(each, 9), "abc");
}

TEST(HostStream, OpensRanges)
{
    const struct {
        std::uint64_t first;
        std::uint64_t end;
        std::int32_t answer;
        const char* bytes;
    } rows[] = {
        {2, 5, 0, "cde"},
        {0, 7, 0, "abcdefg"},
        {5, 100, 0, "fg"},
        {3, 3, 0, ""},
        {7, 7, 0, ""},
        {4, 3, 1, ""},
        {8, 9, 1, ""},
    };
    for (const Maker& make : kMakers) {
        const auto whole = make("abcdefg");
        for (const auto& row : rows) {
            HostStream* part = nullptr;
            const StreamRange range = {whole.get(), row.first, row.end};
            ASSERT_EQ(whole->operations->open(&part, 8, &range, 1), row.answer);
            if (row.answer != 0)
                continue;
            EXPECT_EQ(whole->openRanges(), 1u);
            EXPECT_EQ(readSome(part, 100), row.bytes);
            EXPECT_EQ(part->operations->seek(part, 0, 1), 0);
            EXPECT_EQ(part->operations->close(part), 0);
            EXPECT_EQ(whole->openRanges(), 0u);
        }
        std::uint32_t position = 9;
        EXPECT_EQ(whole->operations->tell(whole.get(), &position), 0);
        EXPECT_EQ(position, 0u);
    }
}

TEST(HostStream, RefusesOtherKindsOfOpen)
{
    MemoryStream stream("abc");
    const StreamRange range = {&stream, 0, 1};
    const StreamRange streamless = {nullptr, 0, 1};
    HostStream* part = nullptr;
    EXPECT_NE(stream.operations->open(&part, 7, &range, 1), 0);
    EXPECT_NE(stream.operations->open(&part, 8, &range, 0), 0);
    EXPECT_NE(stream.operations->open(&part, 8, nullptr, 1), 0);
    EXPECT_NE(stream.operations->open(&part, 8, &streamless, 1), 0);
}

TEST(HostStream, FreesRangesLeftOpen)
{
    MemoryStream stream("abcdef");
    const StreamRange range = {&stream, 1, 5};
    HostStream* part = nullptr;
    ASSERT_EQ(stream.operations->open(&part, 8, &range, 1), 0);
    HostStream* inner = nullptr;
    const StreamRange innerRange = {part, 1, 3};
    ASSERT_EQ(part->operations->open(&inner, 8, &innerRange, 1), 0);
    EXPECT_EQ(readSome(inner, 9), "cd");
    EXPECT_EQ(stream.operations->close(&stream), 0);
    EXPECT_EQ(readSome(&stream, 2), "ab");
}

TEST(HostStream, TellsAFailedRead)
{
    FileStream stream(::open("/tmp", O_RDONLY | O_DIRECTORY), 10);
    char byte = 0;
    std::uint32_t count = 7;
    EXPECT_EQ(stream.readFailure(), 0);
    EXPECT_NE(stream.operations->read(&stream, &byte, 1, &count), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(stream.readFailure(), EISDIR);
}

TEST(HostStream, KeepsTheFirstFailureOfItsRanges)
{
    FileStream stream(::open("/tmp", O_RDONLY | O_DIRECTORY), 10);
    const StreamRange range = {&stream, 1, 5};
    HostStream* part = nullptr;
    ASSERT_EQ(stream.operations->open(&part, 8, &range, 1), 0);
    char byte = 0;
    std::uint32_t count = 7;
    EXPECT_NE(part->operations->read(part, &byte, 1, &count), 0);
    EXPECT_EQ(part->operations->close(part), 0);
    EXPECT_EQ(stream.readFailure(), EISDIR);
}

} // namespace
