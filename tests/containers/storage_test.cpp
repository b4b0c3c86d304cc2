#include "containers/arena.h"
#include "containers/storage.h"

#include "tests/containers/allocation_failures.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <random>
#include <vector>

using namespace zorvan;

TEST(Storage, BeyondTheLimitIsAFailedAllocation)
{
    EXPECT_THROW(allocateElements<char>(kMaximumElements + 1), std::bad_alloc);
    EXPECT_NE(allocateElements<int>(4), nullptr);
}

TEST(Arena, PiecesAreAlignedAndApart)
{
    Arena arena;
    std::mt19937 random(7);
    struct Piece {
        unsigned char* start;
        std::size_t size;
        unsigned char fill;
    };
    std::vector<Piece> pieces;
    for (int i = 0; i < 20'000; ++i) {
        const std::size_t alignment = std::size_t{1} << (random() % 5);
        const std::size_t size = i % 1000 == 0 ? 200'000 : 1 + random() % 120;
        auto* start = static_cast<unsigned char*>(arena.allocate(size, alignment));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(start) % alignment, 0U);
        const auto fill = static_cast<unsigned char>(random());
        std::memset(start, fill, size);
        pieces.push_back({start, size, fill});
    }
    for (const Piece& piece : pieces) {
        for (std::size_t i = 0; i < piece.size; ++i)
            ASSERT_EQ(piece.start[i], piece.fill);
    }
}

TEST(Arena, FewChunksHoldManyPieces)
{
    Arena arena;
    zorvan::clearAllocationFailure();
    for (int i = 0; i < 100'000; ++i)
        arena.allocate(72, 8);
    // 7.2 MB: chunks of 64, 128, 256, 512 KiB, then of 1 MiB.
    EXPECT_LE(zorvan::allocationsSeen(), 12U);
}

TEST(Arena, GoesOnAfterAFailure)
{
    Arena arena;
    void* piece = nullptr;
    EXPECT_EQ(
        testing_support::failEachAllocation([&] { piece = arena.allocate(16, 16); }, [] {}), 1U);
    EXPECT_NE(piece, nullptr);
    EXPECT_THROW(arena.allocate(SIZE_MAX, 1), std::bad_alloc);
    arena.release();
    EXPECT_NE(arena.allocate(16, 16), nullptr);
}
