#include "containers/pair.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

using zorvan::Pair;

static_assert(std::is_base_of_v<zorvan::Object2, Pair<int, int*>>);
static_assert(!std::is_base_of_v<zorvan::Object, Pair<int, int*>>);
static_assert(sizeof(Pair<int, int*>) == 24);

TEST(Pair, HoldsKeyAndValue)
{
    int number = 3;
    const Pair<int, int*> empty;
    EXPECT_EQ(empty.key, 0);
    EXPECT_EQ(empty.value, nullptr);
    Pair<int, int*> pair(7, &number);
    EXPECT_EQ(pair.key, 7);
    EXPECT_EQ(pair.value, &number);
    EXPECT_TRUE(pair.equals(pair));
    EXPECT_FALSE(pair.equals(empty));
    const std::unique_ptr<zorvan::AbstractObject> root
        = std::make_unique<Pair<int, int*>>(1, nullptr);
    EXPECT_NE(root, nullptr);
}
