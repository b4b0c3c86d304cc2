#include "input/char_reader.h"

#include "tests/common/test_context.h"
#include "tests/input/naive_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;
using testing_support::NaiveReader;
using testing_support::TestContext;

constexpr std::uint16_t kSets[] = {0x9000, 0, 0x1000, 0x800A, 0x9002, 0x2004, 0x2005, 0x2006,
    0x2007, 0x2008, 0x2009, 0x201D, 0x201E, 0x2029, 0x202C, 0x3027, 0x4003, 0x401B, 0x402B};

std::array<std::uint16_t, 4> recentBytes(const HtmlFilterContext& context)
{
    return std::to_array(context.recentBytes);
}

/// All characters up to the end.
std::vector<std::int32_t> readAll(HtmlFilterContext& context)
{
    std::vector<std::int32_t> characters;
    while (true) {
        const std::int32_t character = readChar(context);
        if ((context.statusFlags & STATUS_END_OF_INPUT) != 0 && character == kEndOfInput)
            return characters;
        characters.push_back(character);
    }
}

std::string randomBytes(std::size_t count, std::mt19937& random)
{
    // Mostly bytes that mean something to some set.
    constexpr std::string_view kTelling = "\x1B$()BJC@~{}\n\x0E\x0F\xA1\xB0\xC3\xE3\x81<a"sv;
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = random();
        bytes.push_back(number % 3 == 0 ? static_cast<char>(number >> 8)
                                        : kTelling[(number >> 8) % kTelling.size()]);
    }
    return bytes;
}

TEST(CharReader, SingleByteSetsReadEveryByteAsItIs)
{
    for (const std::uint16_t set :
        std::to_array<std::uint16_t>({0, 0x1000, 0x800A, 0x800B, 0x802E, 0x9002})) {
        std::string bytes;
        for (int byte = 0; byte < 256; ++byte)
            bytes.push_back(static_cast<char>(byte));
        TestContext test(bytes, set);
        for (int byte = 0; byte < 256; ++byte)
            EXPECT_EQ(byte, readChar(test.context));
        EXPECT_EQ(kEndOfInput, readChar(test.context));
    }
}

TEST(CharReader, DefaultSetReplacesControlBytes)
{
    constexpr std::int32_t kTable[] = {0, 0, 0x201A, 0x0192, 0x201D, 0x2026, 0x2020, 0x2021, 0x2038,
        0x2030, 0x0160, 0x2039, 0x0152, 0, 0, 0, 0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013,
        0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0, 0x0178};
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));
    TestContext test(bytes, 0x9000);
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(
            byte >= 0x80 && byte <= 0x9F ? kTable[byte - 0x80] : byte, readChar(test.context));
}

TEST(CharReader, ReadingAfterTheEndLeavesTheStreamAlone)
{
    TestContext test("ab");
    EXPECT_EQ(2u, readAll(test.context).size());
    EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
    test.stream.bytes.push_back('c');
    const auto before = test.stream.calls;
    const auto recent = recentBytes(test.context);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(kEndOfInput, readChar(test.context));
    EXPECT_EQ(before.moves(), test.stream.calls.moves());
    EXPECT_EQ(before.tells, test.stream.calls.tells);
    EXPECT_EQ(recent, recentBytes(test.context));
}

TEST(CharReader, TheEndInSightOfTheBufferIsTheEndToo)
{
    TestContext test("abc");
    readChar(test.context);
    test.context.statusFlags = STATUS_END_OF_INPUT;
    EXPECT_EQ(kEndOfInput, readChar(test.context));
    std::uint32_t count = 1;
    bufferedBytes(test.context, count);
    EXPECT_EQ(0u, count);
    test.context.statusFlags = 0;
    EXPECT_EQ('b', readChar(test.context));
}

TEST(CharReader, OtherStatusBitsDoNotStopReading)
{
    TestContext test("abc");
    test.context.statusFlags = STATUS_HOST_STOP;
    EXPECT_EQ('a', readChar(test.context));
    EXPECT_EQ('b', readChar(test.context));
    EXPECT_EQ('c', readChar(test.context));
    EXPECT_EQ(kEndOfInput, readChar(test.context));
    EXPECT_EQ(STATUS_HOST_STOP | STATUS_END_OF_INPUT, test.context.statusFlags);
}

TEST(CharReader, AFailedReadIsTheEndOfTheInput)
{
    TestContext test("abcdef", 0x9000, 2);
    test.stream.readsUntilFailure = 2;
    EXPECT_EQ((std::vector<std::int32_t>{'a', 'b', 'c', 'd'}), readAll(test.context));
    EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
}

TEST(CharReader, Utf16InBothByteOrders)
{
    struct Row {
        std::uint16_t mode;
        std::string_view bytes;
        std::vector<std::int32_t> characters;
    };
    const Row kRows[] = {
        {254, "a\0\x3D\xD8\0\0"sv, {'a', static_cast<std::int16_t>(0xD83D), 0}},
        {255, "\0a\xD8\x3D\0\0"sv, {'a', static_cast<std::int16_t>(0xD83D), 0}},
        {254, "\x0E\0\x0F\0"sv, {0x0E, 0x0F}},
        {254, "\0\x80\xFF\x7F"sv, {-0x8000, 0x7FFF}},
        // A lone last byte is a unit with the end of the input, 0xFFFF, for its other half.
        {254, "a\0b"sv, {'a', static_cast<std::int16_t>(0xFF62)}},
        {255, "\0ab"sv, {'a', 0x61FF}},
    };
    for (const Row& row : kRows) {
        for (std::uint32_t size = 1; size < 8; ++size) {
            TestContext test(row.bytes, 0x1000, size);
            test.context.unicodeBomMode = row.mode;
            EXPECT_EQ(row.characters, readAll(test.context)) << row.mode << ' ' << size;
            EXPECT_EQ(row.bytes.size(), blockPosition(test.block));
        }
    }
}

TEST(CharReader, Utf16IgnoresTheSet)
{
    TestContext test("\x1B\0"sv, 0x201D);
    test.context.unicodeBomMode = 254;
    EXPECT_EQ(0x1B, readChar(test.context));
    EXPECT_FALSE(readsBytesAsCharacters(test.context));
}

TEST(CharReader, AUnitOfFFFFReadsAsTheEndWithoutBeingIt)
{
    TestContext test("\xFF\xFF\x41\0"sv, 0x1000);
    test.context.unicodeBomMode = 254;
    EXPECT_EQ(0xFFFF, peekChar(1, test.context));
    EXPECT_EQ(0, test.context.statusFlags);
    EXPECT_EQ(kEndOfInput, readChar(test.context));
    EXPECT_EQ(0, test.context.statusFlags);
    EXPECT_EQ('A', readChar(test.context));
}

TEST(CharReader, ALoneLastByteIsUnreadAsOneUnit)
{
    for (std::uint32_t size = 1; size < 8; ++size) {
        TestContext test("a\0b\0c"sv, 0x1000, size);
        test.context.unicodeBomMode = 254;
        for (std::uint32_t n = 0; n <= 3; ++n) {
            for (int i = 0; i < 3; ++i)
                readChar(test.context);
            EXPECT_EQ(5u, blockPosition(test.block));
            unreadChars(n, test.context);
            EXPECT_EQ((3 - n) * 2 - (n == 0 ? 1 : 0), blockPosition(test.block));
            seekTo(0, test.context);
        }
        EXPECT_EQ(3u, readAll(test.context).size());
        unreadChars(2, test.context);
        EXPECT_EQ(2u, blockPosition(test.block));
    }
}

TEST(CharReader, PeekSeesRawBytesAndStaysWhereItIs)
{
    for (std::uint32_t size = 1; size < 8; ++size) {
        TestContext test("\xE3\x81\x82x", 0x3027, size);
        EXPECT_EQ(0xE3, peekChar(1, test.context));
        EXPECT_EQ(0x81, peekChar(2, test.context));
        EXPECT_EQ('x', peekChar(4, test.context));
        EXPECT_EQ(0, peekChar(0, test.context));
        EXPECT_EQ(0, test.context.statusFlags);
        EXPECT_EQ(0u, blockPosition(test.block));
        EXPECT_EQ(0x3042, readChar(test.context));
        EXPECT_EQ('x', peekChar(1, test.context));
        EXPECT_EQ(3u, blockPosition(test.block));
    }
}

TEST(CharReader, PeekAtTheEndSetsTheStatusAndStaysWhereItIs)
{
    for (std::uint32_t size = 1; size < 8; ++size) {
        for (const std::uint16_t n : std::to_array<std::uint16_t>({3, 4, 100, 0xFFFF})) {
            TestContext test("abcd", 0x9000, size);
            readChar(test.context);
            readChar(test.context);
            EXPECT_EQ(0xFFFF, peekChar(n, test.context));
            EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
            EXPECT_EQ(2u, blockPosition(test.block));
            EXPECT_EQ(0, peekChar(1, test.context)); // any status makes it blind
            test.context.statusFlags = 0;
            EXPECT_EQ('c', peekChar(1, test.context));
            EXPECT_EQ('c', readChar(test.context));
            EXPECT_EQ('d', readChar(test.context));
        }
    }
}

TEST(CharReader, PeekInUtf16)
{
    for (std::uint32_t size = 1; size < 10; ++size) {
        TestContext test("a\0b\0\x42\x30\x63"sv, 0x1000, size);
        test.context.unicodeBomMode = 254;
        EXPECT_EQ('a', peekChar(1, test.context));
        EXPECT_EQ(0x3042, peekChar(3, test.context));
        EXPECT_EQ(0xFF63, peekChar(4, test.context));
        EXPECT_EQ(0, peekChar(0, test.context));
        EXPECT_EQ(0, test.context.statusFlags);
        EXPECT_EQ(0xFFFF, peekChar(5, test.context));
        EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
        EXPECT_EQ(0u, blockPosition(test.block));
    }
}

TEST(CharReader, PeekByteIgnoresDecodersAndStatus)
{
    for (std::uint32_t size = 1; size < 8; ++size) {
        TestContext test("\xFF\xFE\x41\0"sv, 0x1000, size);
        test.context.unicodeBomMode = 254;
        EXPECT_EQ(0xFF, peekByte(1, test.context));
        EXPECT_EQ(0xFE, peekByte(2, test.context));
        EXPECT_EQ(0, peekByte(4, test.context));
        EXPECT_EQ(0xFFFF, peekByte(5, test.context));
        EXPECT_EQ(0xFFFF, peekByte(6, test.context));
        EXPECT_EQ(0, peekByte(0, test.context));
        EXPECT_EQ(0, test.context.statusFlags);
        EXPECT_EQ(0u, blockPosition(test.block));
        test.context.statusFlags = STATUS_HOST_STOP;
        EXPECT_EQ(0, peekByte(1, test.context));
    }
}

TEST(CharReader, PeekAndUnreadWithinTheBufferLeaveTheHostAlone)
{
    TestContext test("abcdefgh", 0x9000, 8);
    readChar(test.context);
    const auto before = test.stream.calls;
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ('h', peekChar(7, test.context));
        EXPECT_EQ('h', peekByte(7, test.context));
        readChar(test.context);
        readChar(test.context);
        unreadChars(3, test.context);
        EXPECT_EQ('a', readChar(test.context));
    }
    EXPECT_EQ(before.moves(), test.stream.calls.moves());
    EXPECT_EQ(before.tells, test.stream.calls.tells);
}

TEST(CharReader, UnreadCountsBytesAlsoAfterAMultiByteCharacter)
{
    for (std::uint32_t size = 1; size < 8; ++size) {
        TestContext test("\xE3\x81\x82x", 0x3027, size);
        EXPECT_EQ(0x3042, readChar(test.context));
        unreadChars(1, test.context);
        EXPECT_EQ(0, readChar(test.context)); // the last byte alone
        EXPECT_EQ('x', readChar(test.context));
    }
}

TEST(CharReader, UnreadLeavesTheStatus)
{
    for (std::uint32_t size = 1; size < 8; ++size) {
        TestContext test("abc", 0x9000, size);
        readAll(test.context);
        unreadChars(2, test.context);
        EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
        EXPECT_EQ(0xFFFFFFFFu, currentPosition(test.context));
        test.context.statusFlags = 0;
        EXPECT_EQ(1u, currentPosition(test.context));
        EXPECT_EQ('b', readChar(test.context));
    }
}

TEST(CharReader, UnreadIgnoresAFailedSeek)
{
    TestContext test("abcdef", 0x9000, 2);
    for (int i = 0; i < 5; ++i)
        readChar(test.context);
    test.stream.seeksUntilFailure = 1;
    unreadChars(3, test.context);
    EXPECT_EQ('c', readChar(test.context));
    readChar(test.context);
    readChar(test.context);
    unreadChars(4, test.context); // fails, and the seek of the refill with it
    EXPECT_EQ(0, test.context.statusFlags);
    EXPECT_EQ(1u, currentPosition(test.context));
    EXPECT_EQ(kEndOfInput, readChar(test.context));
    EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
}

TEST(CharReader, SeekTo)
{
    for (std::uint32_t size = 1; size < 10; ++size) {
        TestContext test("abcdefgh", 0x9000, size);
        readAll(test.context);
        for (std::uint32_t position = 0; position <= 8; ++position) {
            test.context.statusFlags = STATUS_END_OF_INPUT;
            EXPECT_EQ(position, seekTo(position, test.context));
            EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
            test.context.statusFlags = 0;
            EXPECT_EQ(position, currentPosition(test.context));
            EXPECT_EQ(position < 8 ? 'a' + static_cast<std::int32_t>(position) : kEndOfInput,
                readChar(test.context));
        }
    }
}

TEST(CharReader, SeekToTheLastPositionIsIgnored)
{
    TestContext test("abcdefgh");
    readChar(test.context);
    const auto before = test.stream.calls;
    EXPECT_EQ(1u, seekTo(0xFFFFFFFF, test.context));
    EXPECT_EQ(before.moves(), test.stream.calls.moves());
    EXPECT_EQ('b', readChar(test.context));
}

TEST(CharReader, SeekToTellsAFailedSeek)
{
    TestContext test("abcdefgh", 0x9000, 2);
    readChar(test.context);
    test.stream.seeksUntilFailure = 0;
    EXPECT_EQ(1u, seekTo(1, test.context)); // within the buffer nobody is asked
    EXPECT_EQ(0xFFFFFFFFu, seekTo(6, test.context));
    EXPECT_EQ(0, test.context.statusFlags);
    EXPECT_EQ(kEndOfInput, readChar(test.context));
    EXPECT_EQ(STATUS_END_OF_INPUT, test.context.statusFlags);
}

TEST(CharReader, PositionsBeyondFourGiBKeepTheirLowWords)
{
    TestContext test("abcdefgh", 0x9000, 4);
    test.stream.offerWidePositions();
    test.stream.beginAt((std::int64_t{1} << 32) - 3);
    test.block.bufferPos = test.stream.begin;
    readChar(test.context);
    EXPECT_EQ(0xFFFFFFFEu, currentPosition(test.context));
    EXPECT_EQ('e', peekChar(4, test.context)); // in the next buffer and back
    EXPECT_EQ(0xFFFFFFFEu, currentPosition(test.context));
    for (const std::int32_t character : {'b', 'c', 'd', 'e', 'f'})
        EXPECT_EQ(character, readChar(test.context));
    EXPECT_EQ(3u, currentPosition(test.context));
    unreadChars(5, test.context);
    EXPECT_EQ(0xFFFFFFFEu, currentPosition(test.context));
    EXPECT_EQ('b', readChar(test.context));
}

TEST(CharReader, RecentBytesHoldTheLowBytesOfWhatWasRead)
{
    using Recent = std::array<std::uint16_t, 4>;
    TestContext single("a\x84zzzzzz", 0x9000);
    readChar(single.context);
    EXPECT_EQ((Recent{0, 0, 0, 'a'}), recentBytes(single.context));
    readChar(single.context); // U+201D
    EXPECT_EQ((Recent{0, 0, 'a', 0x1D}), recentBytes(single.context));

    TestContext pairs("a\x81\x40z", 0x2005);
    readChar(pairs.context);
    readChar(pairs.context);
    EXPECT_EQ((Recent{0, 'a', 0x81, 0x40}), recentBytes(pairs.context));

    TestContext unicode("a\xE3\x81\x82", 0x3027);
    readChar(unicode.context);
    readChar(unicode.context); // U+3042 takes one place
    EXPECT_EQ((Recent{0, 0, 'a', 0x42}), recentBytes(unicode.context));
    readChar(unicode.context); // the end takes none
    EXPECT_EQ((Recent{0, 0, 'a', 0x42}), recentBytes(unicode.context));
}

TEST(CharReader, PeeksLeaveRecentBytesAlone)
{
    for (const std::uint16_t mode : std::to_array<std::uint16_t>({0, 254})) {
        TestContext test("abcdefgh", 0x1000, 3);
        test.context.unicodeBomMode = mode;
        readChar(test.context);
        const auto recent = recentBytes(test.context);
        peekChar(3, test.context);
        EXPECT_EQ(recent, recentBytes(test.context));
    }
}

TEST(CharReader, WhichSetsReadBytesAsCharacters)
{
    for (const std::uint16_t set : kSets) {
        TestContext test("", set);
        const bool entangled = set == 0x201D || set == 0x202C || set == 0x2029 || set == 0x4003;
        EXPECT_EQ(!entangled, readsBytesAsCharacters(test.context)) << std::hex << set;
        test.context.unicodeBomMode = 254;
        EXPECT_FALSE(readsBytesAsCharacters(test.context));
        for (int byte = 0; byte < 256; ++byte) {
            if (!isPlainByte(static_cast<std::uint8_t>(byte), set))
                continue;
            NaiveReader naive(std::string(1, static_cast<char>(byte)) + "\x40", set);
            EXPECT_EQ(byte, naive.read());
            EXPECT_EQ(1u, naive.at);
            EXPECT_EQ(0u, naive.state);
        }
    }
}

TEST(CharReader, SkippingBufferedBytesIsReadingThem)
{
    const std::string_view text = "abcdefghijklmnop";
    for (std::uint32_t skipped = 0; skipped <= 10; ++skipped) {
        TestContext one(text, 0x3027, 12);
        TestContext other(text, 0x3027, 12);
        readChar(one.context);
        readChar(other.context);
        std::uint32_t count = 0;
        const std::uint8_t* bytes = bufferedBytes(one.context, count);
        ASSERT_EQ(11u, count);
        EXPECT_EQ(text.substr(1, 11), std::string_view(reinterpret_cast<const char*>(bytes), 11));
        skipBufferedBytes(skipped, one.context);
        for (std::uint32_t i = 0; i < skipped; ++i)
            readChar(other.context);
        EXPECT_EQ(currentPosition(other.context), currentPosition(one.context));
        EXPECT_EQ(recentBytes(other.context), recentBytes(one.context));
        EXPECT_EQ(readAll(other.context), readAll(one.context));
    }
}

TEST(CharReader, BufferedBytesAreForBytesOnly)
{
    TestContext test("abcdef", 0x1000, 4);
    std::uint32_t count = 1;
    bufferedBytes(test.context, count);
    EXPECT_EQ(0u, count); // nothing read as yet
    test.context.unicodeBomMode = 254;
    readChar(test.context);
    bufferedBytes(test.context, count);
    EXPECT_EQ(0u, count);
    test.context.unicodeBomMode = 0;
    bufferedBytes(test.context, count);
    EXPECT_EQ(2u, count);
}

/// One way through an input, with reads, peeks and steps back, beside the naive reader.
void walkAtRandom(
    std::string_view bytes, std::uint16_t set, std::uint32_t bufferSize, std::mt19937& random)
{
    TestContext test(bytes, set, bufferSize);
    test.stream.readLimit = 1 + static_cast<std::uint32_t>(random() % 5);
    NaiveReader naive(bytes, set);
    for (int step = 0; step < 60; ++step) {
        const auto choice = random() % 8;
        if (choice == 0) {
            const std::size_t n = 1 + random() % 5;
            const bool within = naive.at + n <= bytes.size();
            ASSERT_EQ(within ? static_cast<std::uint8_t>(bytes[naive.at + n - 1]) : 0xFFFF,
                peekByte(static_cast<std::uint16_t>(n), test.context));
        } else if (choice == 1) {
            const std::size_t n = random() % (naive.at + 1);
            unreadChars(static_cast<std::uint32_t>(n), test.context);
            naive.at -= n;
        } else if (choice == 2 && step % 8 == 0) {
            naive.at = random() % (bytes.size() + 1);
            seekTo(static_cast<std::uint32_t>(naive.at), test.context);
        } else {
            ASSERT_EQ(naive.read(), readChar(test.context)) << step;
            ASSERT_EQ(naive.recent, recentBytes(test.context));
        }
        ASSERT_EQ(naive.at, blockPosition(test.block)) << step;
        ASSERT_EQ(naive.state, test.context.iso2022State);
        ASSERT_EQ(naive.ended, test.context.statusFlags == STATUS_END_OF_INPUT);
        naive.ended = false;
        test.context.statusFlags = 0;
    }
}

TEST(CharReader, BufferSizesAndStepsBackChangeNothing)
{
    std::mt19937 random(20'240'715);
    for (const std::uint16_t set : kSets) {
        for (std::uint32_t bufferSize = 1; bufferSize <= 40; ++bufferSize) {
            const std::string bytes = randomBytes(30, random);
            walkAtRandom(bytes, set, bufferSize, random);
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << std::hex << set << ' ' << bufferSize;
        }
    }
}

} // namespace
