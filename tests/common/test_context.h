#pragma once

#include "filter/filter_internals.h"
#include "filter/html_filter_context.h"
#include "input/stream_block.h"
#include "support/wstring.h"
#include "tests/common/memory_stream.h"

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace testing_support {

/// A zeroed context over bytes in memory: what the reader and the scanner need, and no more. Not to
/// be copied or moved.
class TestContext {
public:
    /// bufferSize: bytes of the stream buffer, at least 1.
    explicit TestContext(
        std::string_view content, std::uint16_t charSet = 0x9000, std::uint32_t bufferSize = 2'048)
        : stream(content)
        , buffer_(bufferSize)
    {
        std::memset(&context, 0, sizeof context);
        std::memset(&block, 0, sizeof block);
        block.hostStream = &stream;
        block.self = &block;
        block.buffer = buffer_.data();
        block.next = buffer_.data();
        block.bufferSize = bufferSize;
        context.stream = &block;
        context.currentCharSet = charSet;
        context.pendingChars = &pendingChars_;
        context.internals = &internals;
    }
    TestContext(const TestContext&) = delete;
    TestContext& operator=(const TestContext&) = delete;

    /// Gives the context a zeroed token buffer of the size that the read driver gives it.
    void makeTokenBuffer()
    {
        tokens_.assign(kTokenLimit + 2, u'\0');
        context.tokenBuffer = tokens_.data();
        context.tokenBufferAlloc = tokens_.data();
    }

    MemoryStream stream;
    StreamBlock block;
    HtmlFilterInternals internals;
    HtmlFilterContext context;

private:
    std::vector<std::uint8_t> buffer_;
    std::vector<char16_t> tokens_;
    zorvan::WString pendingChars_;
};

} // namespace testing_support
